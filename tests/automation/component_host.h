// A host of the component, as a compiled program is one.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "tessaro/types.h"
#include "tessaro_com.h"

namespace tessaro::test {

/// A counted reference, handed out by `Out`.
template <class Interface>
class Ref {
public:
    Ref() = default;
    Ref(const Ref&) = delete;
    Ref(Ref&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
    Ref& operator=(Ref&& other) noexcept {
        std::swap(pointer_, other.pointer_);
        return *this;
    }
    ~Ref() { Reset(); }
    Interface* operator->() const { return pointer_; }
    Interface* Get() const { return pointer_; }
    void** Out() {
        Reset();
        return reinterpret_cast<void**>(&pointer_);
    }
    void Reset() {
        if (pointer_)
            pointer_->Release();
        pointer_ = nullptr;
    }

private:
    Interface* pointer_ = nullptr;
};

/// A text on its way in or out.
class Text {
public:
    Text() = default;
    explicit Text(const std::wstring& text) : text_(SysAllocString(text.c_str())) {}
    explicit Text(const std::string& ascii) : Text(std::wstring(ascii.begin(), ascii.end())) {}
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;
    ~Text() { SysFreeString(text_); }
    operator BSTR() const { return text_; }
    BSTR* Out() { return &text_; }
    std::string Ascii() const { return std::string(text_, text_ + SysStringLen(text_)); }

private:
    BSTR text_ = nullptr;
};

/// An owned variant.
struct Var : VARIANT {
    Var() { VariantInit(this); }
    explicit Var(LONG number) : Var() {
        vt = VT_I4;
        lVal = number;
    }
    Var(Var&& other) noexcept : VARIANT(other) { VariantInit(&other); }
    ~Var() { VariantClear(this); }
};

/// An array of bytes in a variant, as compiled hosts pass it.
Var Bytes(const ByteArray& bytes);
/// An array of variants holding 16-bit numbers, as scripts pass it.
Var ScriptArray(const std::vector<SHORT>& numbers);
/// The bytes of an array of bytes; fails the test for anything else.
ByteArray BytesOf(const VARIANT& variant);
/// The numbers of an array of 32-bit numbers.
std::vector<std::int32_t> NumbersOf(const VARIANT& variant);

/// Makes the classes available from the DLL's manifest, without registration, in an apartment.
class ComponentScope {
public:
    ComponentScope();
    ~ComponentScope();
    ComponentScope(const ComponentScope&) = delete;
    ComponentScope& operator=(const ComponentScope&) = delete;

private:
    HANDLE context_ = INVALID_HANDLE_VALUE;
    ULONG_PTR cookie_ = 0;
};

/// A new object by its ProgID.
template <class Interface>
Ref<Interface> Create(const std::wstring& progId) {
    CLSID id{};
    Ref<Interface> object;
    if (SUCCEEDED(CLSIDFromProgID(progId.c_str(), &id)))
        CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface), object.Out());
    return object;
}

/// Calls a member by name, as scripts do.
HRESULT Call(IDispatch* object, const wchar_t* member, std::vector<VARIANT> arguments,
             VARIANT* result, WORD flags = DISPATCH_METHOD);
/// A script's variable as it is passed to a member.
VARIANT ByReference(VARIANT& variable);

/// A sink that notes every event with its arguments: "SaveStatus 1 12".
class RecordingSink final : public IDispatch {
public:
    explicit RecordingSink(REFIID events) : events_(events) {}
    virtual ~RecordingSink() = default;
    std::vector<std::string> seen;
    std::function<void()> onEvent;

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override { return 2; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
        return E_NOTIMPL;
    }
    STDMETHODIMP Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*,
                        EXCEPINFO*, UINT*) override;

private:
    const IID events_;
};

/// Connects a sink to an object's events for as long as this lives.
class Connection {
public:
    Connection(IUnknown* object, RecordingSink& sink, REFIID events);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

private:
    Ref<IConnectionPoint> point_;
    DWORD cookie_ = 0;
};

}  // namespace tessaro::test
