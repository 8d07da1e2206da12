// How arguments and results cross between the component's interfaces and the library.
//
// A pair of types, the library's and automation's, decides everything: Crossing<Inner, Outer> below
// is chosen by it, and component.h builds whole calls from such crossings.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <concepts>
#include <string>
#include <type_traits>
#include <vector>

#include "tessaro/game_maps.h"
#include "tessaro/types.h"
#include "tessaro/vga_graph.h"

namespace tessaro::automation {

/// Why a call is refused before the library sees it, or cannot hand over its result.
struct Refusal {
    HRESULT code;
};

inline void Check(HRESULT result) {
    if (FAILED(result))
        throw Refusal{result};
}

template <class Pointer>
Pointer* Required(Pointer* pointer) {
    if (!pointer)
        throw Refusal{E_POINTER};
    return pointer;
}

/// An owned VARIANT.
class Variant {
public:
    Variant() { VariantInit(&value_); }
    Variant(const Variant&) = delete;
    Variant(Variant&& other) noexcept : value_(other.Release()) {}
    Variant& operator=(const Variant&) = delete;
    ~Variant() { VariantClear(&value_); }

    VARIANT& operator*() { return value_; }
    const VARIANT& operator*() const { return value_; }
    VARIANT* operator->() { return &value_; }
    /// Gives the content up to the caller.
    VARIANT Release() {
        VARIANT content = value_;
        VariantInit(&value_);
        return content;
    }

private:
    VARIANT value_;
};

/// The component's setting IVersion.VariantArrays; one per thread, like every setting.
bool VariantArrays();
void VariantArrays(bool newValue);

// Texts. The library's are in the ANSI code page.
std::string TextFrom(BSTR text);
BSTR TextToBSTR(const std::string& text);

// Items into variants. With `asVariants`, arrays hold variants and records are arrays of fields.
Variant ToVariant(const ByteArray& bytes, bool asVariants);
Variant ToVariant(const std::vector<std::int16_t>& numbers, bool asVariants);
Variant ToVariant(const std::vector<std::int32_t>& numbers, bool asVariants);
Variant ToVariant(const std::vector<std::string>& texts, bool asVariants);
Variant ToVariant(const typMapPlane& planes, bool asVariants);
Variant ToVariant(const typSpriteHead& head, bool asVariants);
Variant ToVariant(const typFont& font, bool asVariants);

// Items out of variants: any one-dimensional array whose elements can be converted. Nothing
// (an empty variant, a missing argument, an array without storage) is an empty item.
void FromVariant(const VARIANT& variant, ByteArray& bytes);
void FromVariant(const VARIANT& variant, std::vector<std::int32_t>& numbers);
void FromVariant(const VARIANT& variant, std::string& text);

/// What an [in, out] variant of the host is, underneath: the variant that receives an item of the
/// type `wanted` (VT_ARRAY with an element type, VT_RECORD or VT_I4). A plain variant receives
/// anything. A reference is refused, before the operation runs, where it leads to anything but an
/// item of that type or an array of variants, or to an array or a record that cannot be replaced.
VARIANT* Receiver(VARIANT* target, VARTYPE wanted);
/// Puts `value` into a receiver: replaces a plain variant's content, or what it refers to.
void HandOver(VARIANT* receiver, Variant&& value);
/// Whether the receiver takes variants for elements that are handed out as `wanted`: where a
/// reference's type tells, as it says, otherwise as the setting says.
bool WantsVariants(const VARIANT* receiver, VARTYPE wanted);
/// Whether that is the record that a typSpriteHead is handed out as.
bool IsSpriteHead(IRecordInfo* record);

/// What an item is handed out as.
template <class Item>
inline constexpr VARTYPE kHandedOutAs = VT_ARRAY | VT_VARIANT;
template <>
inline constexpr VARTYPE kHandedOutAs<ByteArray> = VT_ARRAY | VT_UI1;
template <>
inline constexpr VARTYPE kHandedOutAs<std::vector<std::int32_t>> = VT_ARRAY | VT_I4;
template <>
inline constexpr VARTYPE kHandedOutAs<std::vector<std::string>> = VT_ARRAY | VT_BSTR;
template <>
inline constexpr VARTYPE kHandedOutAs<typSpriteHead> = VT_RECORD;

// ---- results -----------------------------------------------------------------------------------

inline void StoreResult(bool value, VARIANT_BOOL* result) {
    *Required(result) = value ? VARIANT_TRUE : VARIANT_FALSE;
}
inline void StoreResult(const std::string& value, BSTR* result) {
    *Required(result) = TextToBSTR(value);
}
template <class Inner, class Outer>
requires(!std::same_as<Inner, bool>) void StoreResult(Inner value, Outer* result) {
    *Required(result) = static_cast<Outer>(value);
}

// ---- arguments ---------------------------------------------------------------------------------

/// One argument on its way through a call: taken from its automation form when it is made, so that
/// a bad one is refused before the operation runs; seen by the operation as Inner(); handed back
/// afterwards. `succeeded` says whether the operation reported success: an argument that the
/// operation did not touch keeps its value.
template <class Inner, class Outer>
class Crossing;

template <class T>
concept Scalar = std::is_arithmetic_v<T> || std::is_enum_v<T>;

template <Scalar T, Scalar Outer>
class Crossing<T, Outer> {
public:
    explicit Crossing(Outer outer) : value_(From(outer)) {}
    T Inner() { return value_; }
    void HandBack(bool) {}

private:
    static T From(Outer outer) {
        if constexpr (std::same_as<T, bool>)
            return outer != VARIANT_FALSE;
        else
            return static_cast<T>(outer);
    }
    T value_;
};

template <>
class Crossing<const std::string&, BSTR> {
public:
    explicit Crossing(BSTR outer) : value_(TextFrom(outer)) {}
    const std::string& Inner() { return value_; }
    void HandBack(bool) {}

private:
    std::string value_;
};

template <class T>
class Crossing<const T&, VARIANT> {
public:
    explicit Crossing(const VARIANT& outer) { FromVariant(outer, value_); }
    const T& Inner() { return value_; }
    void HandBack(bool) {}

private:
    T value_;
};

template <Scalar T, Scalar Outer>
class Crossing<T&, Outer*> {
public:
    explicit Crossing(Outer* outer) : outer_(Required(outer)), value_(static_cast<T>(*outer)) {}
    T& Inner() { return value_; }
    void HandBack(bool) { *outer_ = static_cast<Outer>(value_); }

private:
    Outer* outer_;
    T value_;
};

template <>
class Crossing<std::string&, BSTR*> {
public:
    explicit Crossing(BSTR* outer) : outer_(Required(outer)), value_(TextFrom(*outer)) {}
    std::string& Inner() { return value_; }
    void HandBack(bool) {
        BSTR text = TextToBSTR(value_);
        SysFreeString(*outer_);
        *outer_ = text;
    }

private:
    BSTR* outer_;
    std::string value_;
};

template <class T>
class Crossing<T&, VARIANT*> {
public:
    explicit Crossing(VARIANT* outer) : receiver_(Receiver(Required(outer), kHandedOutAs<T>)) {}
    T& Inner() { return value_; }
    void HandBack(bool succeeded) {
        if (succeeded || HoldsSomething())
            HandOver(receiver_, ToVariant(value_, WantsVariants(receiver_, kHandedOutAs<T>)));
    }

private:
    bool HoldsSomething() const {
        if constexpr (requires { value_.empty(); })
            return !value_.empty();
        else if constexpr (requires { value_.Plane; })
            return !value_.Plane.empty();
        else
            return false;
    }
    VARIANT* receiver_;
    T value_;
};

/// An optional enumeration that the operation hands out.
template <Scalar T>
class Crossing<T*, VARIANT*> {
public:
    explicit Crossing(VARIANT* outer) {
        if (outer && outer->vt != VT_ERROR)  // VT_ERROR: the host left the argument out
            receiver_ = Receiver(outer, VT_I4);
    }
    T* Inner() { return receiver_ ? &value_ : nullptr; }
    void HandBack(bool succeeded) {
        if (!receiver_ || !succeeded)
            return;
        Variant number;
        number->vt = VT_I4;
        number->lVal = static_cast<LONG>(value_);
        HandOver(receiver_, std::move(number));
    }

private:
    VARIANT* receiver_ = nullptr;
    T value_{};
};

}  // namespace tessaro::automation
