#include "automation/component_host.h"

#include <gtest/gtest.h>
#include <ocidl.h>

#include <algorithm>
#include <cstring>

namespace tessaro::test {
namespace {

template <class T>
std::vector<T> Elements(const VARIANT& variant, VARTYPE type) {
    if (variant.vt != (VT_ARRAY | type)) {
        ADD_FAILURE() << "an array of type " << type << " expected, got " << variant.vt;
        return {};
    }
    const T* first = static_cast<const T*>(variant.parray->pvData);
    return std::vector<T>(first, first + variant.parray->rgsabound[0].cElements);
}

}  // namespace

Var Bytes(const ByteArray& bytes) {
    Var variant;
    variant.parray = SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(bytes.size()));
    variant.vt = VT_ARRAY | VT_UI1;
    std::copy(bytes.begin(), bytes.end(), static_cast<BYTE*>(variant.parray->pvData));
    return variant;
}

Var ScriptArray(const std::vector<SHORT>& numbers) {
    Var variant;
    variant.parray = SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(numbers.size()));
    variant.vt = VT_ARRAY | VT_VARIANT;
    auto* element = static_cast<VARIANT*>(variant.parray->pvData);
    for (const SHORT number : numbers) {
        element->vt = VT_I2;
        (element++)->iVal = number;
    }
    return variant;
}

ByteArray BytesOf(const VARIANT& variant) {
    return Elements<BYTE>(variant, VT_UI1);
}

std::vector<std::int32_t> NumbersOf(const VARIANT& variant) {
    return Elements<std::int32_t>(variant, VT_I4);
}

ComponentScope::ComponentScope() {
    EXPECT_TRUE(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)));
    ACTCTXA context{};
    context.cbSize = sizeof(context);
    context.lpSource = TESSARO_COMPONENT_FOLDER "/Tessaro.Component.manifest";
    context_ = CreateActCtxA(&context);
    EXPECT_NE(context_, INVALID_HANDLE_VALUE);
    EXPECT_TRUE(ActivateActCtx(context_, &cookie_));
}

ComponentScope::~ComponentScope() {
    DeactivateActCtx(0, cookie_);
    ReleaseActCtx(context_);
    CoUninitialize();
}

HRESULT Call(IDispatch* object, const wchar_t* member, std::vector<VARIANT> arguments,
             VARIANT* result, WORD flags) {
    std::wstring name = member;
    LPOLESTR names = name.data();
    DISPID id = 0;
    const HRESULT known = object->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id);
    if (FAILED(known))
        return known;
    std::reverse(arguments.begin(), arguments.end());
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
    if (flags == DISPATCH_PROPERTYPUT) {
        parameters.rgdispidNamedArgs = &put;
        parameters.cNamedArgs = 1;
    }
    EXCEPINFO exception{};
    const HRESULT outcome = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                                           result, &exception, nullptr);
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
    return outcome == DISP_E_EXCEPTION ? exception.scode : outcome;
}

VARIANT ByReference(VARIANT& variable) {
    VARIANT reference;
    reference.vt = VT_BYREF | VT_VARIANT;
    reference.pvarVal = &variable;
    return reference;
}

STDMETHODIMP RecordingSink::QueryInterface(REFIID iid, void** object) {
    const bool known = iid == __uuidof(IUnknown) || iid == __uuidof(IDispatch) || iid == events_;
    *object = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
}

STDMETHODIMP RecordingSink::Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* parameters,
                                   VARIANT*, EXCEPINFO*, UINT*) {
    static const char* const names[] = {"?", "SaveStatus", "SaveError", "SaveComplete"};
    std::string line = names[event];
    for (UINT index = parameters->cArgs; index-- > 0;) {
        Var text;
        VariantChangeType(&text, &parameters->rgvarg[index], VARIANT_ALPHABOOL, VT_BSTR);
        line += ' ' + std::string(text.bstrVal, text.bstrVal + SysStringLen(text.bstrVal));
    }
    seen.push_back(line);
    if (onEvent)
        onEvent();
    return S_OK;
}

Connection::Connection(IUnknown* object, RecordingSink& sink, REFIID events) {
    Ref<IConnectionPointContainer> container;
    EXPECT_EQ(object->QueryInterface(__uuidof(IConnectionPointContainer), container.Out()), S_OK);
    EXPECT_EQ(
        container->FindConnectionPoint(events, reinterpret_cast<IConnectionPoint**>(point_.Out())),
        S_OK);
    EXPECT_EQ(point_->Advise(&sink, &cookie_), S_OK);
}

Connection::~Connection() {
    EXPECT_EQ(point_->Unadvise(cookie_), S_OK);
}

}  // namespace tessaro::test
