#include "marshal.h"

#include <cstring>

namespace tessaro::automation {
namespace {

thread_local bool handsOutVariants = false;

template <class T>
inline constexpr VARTYPE kVarType = VT_EMPTY;
template <>
inline constexpr VARTYPE kVarType<std::uint8_t> = VT_UI1;
template <>
inline constexpr VARTYPE kVarType<std::int16_t> = VT_I2;
template <>
inline constexpr VARTYPE kVarType<std::int32_t> = VT_I4;

SAFEARRAY* NewArray(VARTYPE type, std::size_t size) {
    SAFEARRAY* array = SafeArrayCreateVector(type, 0, static_cast<ULONG>(size));
    if (!array)
        throw Refusal{E_OUTOFMEMORY};
    return array;
}

/// An array as a variant, its elements zero or empty, and where they lie.
template <class Element>
std::pair<Variant, Element*> NewArrayVariant(VARTYPE type, std::size_t size) {
    Variant variant;
    variant->parray = NewArray(type, size);
    variant->vt = static_cast<VARTYPE>(VT_ARRAY | type);
    return {std::move(variant), static_cast<Element*>((*variant).parray->pvData)};
}

template <class T>
Variant NumbersToVariant(const std::vector<T>& numbers, bool asVariants) {
    if (asVariants) {
        auto [variant, elements] = NewArrayVariant<VARIANT>(VT_VARIANT, numbers.size());
        for (const T number : numbers) {
            std::memcpy(&elements->bVal, &number, sizeof(number));
            (elements++)->vt = kVarType<T>;
        }
        return std::move(variant);
    }
    auto [variant, elements] = NewArrayVariant<T>(kVarType<T>, numbers.size());
    if (!numbers.empty())
        std::memcpy(elements, numbers.data(), numbers.size() * sizeof(T));
    return std::move(variant);
}

/// What a variant stands for once references to other variants are followed.
const VARIANT& Resolved(const VARIANT& variant) {
    const VARIANT* inner = &variant;
    while (inner->vt == (VT_BYREF | VT_VARIANT))
        inner = Required(inner->pvarVal);
    return *inner;
}

bool IsNothing(const VARIANT& variant) {
    return variant.vt == VT_EMPTY || variant.vt == VT_NULL || variant.vt == VT_ERROR;
}

/// The array that a variant holds or refers to; null for one without storage.
SAFEARRAY* ArrayIn(const VARIANT& variant) {
    if (!(variant.vt & VT_ARRAY))
        throw Refusal{DISP_E_TYPEMISMATCH};
    SAFEARRAY* array = variant.vt & VT_BYREF ? *Required(variant.pparray) : variant.parray;
    if (array && SafeArrayGetDim(array) != 1)
        throw Refusal{DISP_E_TYPEMISMATCH};
    return array;
}

class ArrayLock {
public:
    explicit ArrayLock(SAFEARRAY* array) : array_(array) { Check(SafeArrayLock(array)); }
    ArrayLock(const ArrayLock&) = delete;
    ArrayLock& operator=(const ArrayLock&) = delete;
    ~ArrayLock() { SafeArrayUnlock(array_); }

private:
    SAFEARRAY* array_;
};

/// A host that is going through an array holds it locked.
void RefuseLocked(const SAFEARRAY* array) {
    if (array && array->cLocks != 0)
        throw Refusal{DISP_E_ARRAYISLOCKED};
}

template <class T>
void NumbersFromVariant(const VARIANT& source, std::vector<T>& numbers) {
    const VARIANT& variant = Resolved(source);
    numbers.clear();
    if (IsNothing(variant))
        return;
    SAFEARRAY* array = ArrayIn(variant);
    if (!array)
        return;
    const ArrayLock lock(array);
    VARTYPE type = VT_EMPTY;
    Check(SafeArrayGetVartype(array, &type));
    if (type == VT_RECORD)
        throw Refusal{DISP_E_TYPEMISMATCH};
    numbers.resize(array->rgsabound[0].cElements);
    if (type == kVarType<T>) {
        if (!numbers.empty())
            std::memcpy(numbers.data(), array->pvData, numbers.size() * sizeof(T));
        return;
    }
    auto* element = static_cast<std::uint8_t*>(array->pvData);
    for (T& number : numbers) {
        VARIANT reference;
        reference.vt = static_cast<VARTYPE>(VT_BYREF | type);
        reference.byref = element;
        Variant converted;
        Check(VariantChangeType(&*converted, &reference, 0, kVarType<T>));
        std::memcpy(&number, &converted->bVal, sizeof(number));
        element += SafeArrayGetElemsize(array);
    }
}

}  // namespace

bool VariantArrays() {
    return handsOutVariants;
}
void VariantArrays(bool newValue) {
    handsOutVariants = newValue;
}

std::string TextFrom(BSTR text) {
    const int length = static_cast<int>(SysStringLen(text));
    const int size =
        length == 0 ? 0
                    : WideCharToMultiByte(CP_ACP, 0, text, length, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    if (size > 0)
        WideCharToMultiByte(CP_ACP, 0, text, length, bytes.data(), size, nullptr, nullptr);
    return bytes;
}

BSTR TextToBSTR(const std::string& text) {
    const int length = static_cast<int>(text.size());
    const int size =
        length == 0 ? 0 : MultiByteToWideChar(CP_ACP, 0, text.data(), length, nullptr, 0);
    BSTR wide = SysAllocStringLen(nullptr, static_cast<UINT>(size));
    if (!wide)
        throw Refusal{E_OUTOFMEMORY};
    if (size > 0)
        MultiByteToWideChar(CP_ACP, 0, text.data(), length, wide, size);
    return wide;
}

Variant ToVariant(const ByteArray& bytes, bool asVariants) {
    return NumbersToVariant(bytes, asVariants);
}
Variant ToVariant(const std::vector<std::int16_t>& numbers, bool asVariants) {
    return NumbersToVariant(numbers, asVariants);
}
Variant ToVariant(const std::vector<std::int32_t>& numbers, bool asVariants) {
    return NumbersToVariant(numbers, asVariants);
}

Variant ToVariant(const std::vector<std::string>& texts, bool asVariants) {
    if (asVariants) {
        auto [variant, elements] = NewArrayVariant<VARIANT>(VT_VARIANT, texts.size());
        for (const std::string& text : texts) {
            elements->bstrVal = TextToBSTR(text);
            (elements++)->vt = VT_BSTR;
        }
        return std::move(variant);
    }
    auto [variant, elements] = NewArrayVariant<BSTR>(VT_BSTR, texts.size());
    for (const std::string& text : texts)
        *elements++ = TextToBSTR(text);
    return std::move(variant);
}

Variant ToVariant(const typMapPlane& planes, bool asVariants) {
    auto [variant, elements] = NewArrayVariant<VARIANT>(VT_VARIANT, planes.Plane.size());
    for (const typMapGrid& plane : planes.Plane)
        *elements++ = ToVariant(plane.Grid, asVariants).Release();
    return std::move(variant);
}

void FromVariant(const VARIANT& variant, ByteArray& bytes) {
    NumbersFromVariant(variant, bytes);
}
void FromVariant(const VARIANT& variant, std::vector<std::int32_t>& numbers) {
    NumbersFromVariant(variant, numbers);
}

void FromVariant(const VARIANT& source, std::string& text) {
    const VARIANT& variant = Resolved(source);
    text.clear();
    if (IsNothing(variant))
        return;
    Variant converted;
    Check(VariantChangeType(&*converted, const_cast<VARIANT*>(&variant), 0, VT_BSTR));
    text = TextFrom(converted->bstrVal);
}

VARIANT* Receiver(VARIANT* target, VARTYPE wanted) {
    while (target->vt == (VT_BYREF | VT_VARIANT))
        target = Required(target->pvarVal);
    if (!(target->vt & VT_BYREF)) {
        if (target->vt & VT_ARRAY)
            RefuseLocked(target->parray);
        return target;
    }
    const VARTYPE type = target->vt & ~VT_BYREF;
    const bool holdsVariants = type == (VT_ARRAY | VT_VARIANT) && wanted != VT_I4;
    if (type != wanted && !holdsVariants)
        throw Refusal{DISP_E_TYPEMISMATCH};
    if (type & VT_ARRAY) {
        // An array of fixed size lies within the host's own variables.
        constexpr USHORT kKept = FADF_AUTO | FADF_STATIC | FADF_EMBEDDED | FADF_FIXEDSIZE;
        const SAFEARRAY* array = *Required(target->pparray);
        if (array && (array->fFeatures & kKept))
            throw Refusal{DISP_E_TYPEMISMATCH};
        RefuseLocked(array);
    }
    if (type == VT_RECORD && !(target->pvRecord && IsSpriteHead(target->pRecInfo)))
        throw Refusal{DISP_E_TYPEMISMATCH};
    return target;
}

bool WantsVariants(const VARIANT* receiver, VARTYPE wanted) {
    // An array of arrays holds variants in any case.
    if ((receiver->vt & VT_BYREF) && wanted != (VT_ARRAY | VT_VARIANT))
        return receiver->vt == (VT_BYREF | VT_ARRAY | VT_VARIANT);
    return VariantArrays();
}

void HandOver(VARIANT* receiver, Variant&& value) {
    if (!(receiver->vt & VT_BYREF)) {
        Check(VariantClear(receiver));
        *receiver = value.Release();
    } else if (receiver->vt & VT_ARRAY) {
        Check(SafeArrayDestroy(*receiver->pparray));
        *receiver->pparray = value.Release().parray;
    } else if (receiver->vt == (VT_BYREF | VT_RECORD)) {
        Check(receiver->pRecInfo->RecordCopy(value->pvRecord, receiver->pvRecord));
    } else {
        *receiver->plVal = value->lVal;
    }
}

}  // namespace tessaro::automation
