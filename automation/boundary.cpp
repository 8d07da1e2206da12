#include <windows.h>

#include <oleauto.h>

#include <new>

#include "component.h"
#include "tessaro/failure.h"

namespace tessaro::automation {
namespace {

/// Leaves a description for the host, which asks for it when a member fails. Memory may be short
/// here: without it the host sees the number alone.
void Describe(const Failure& failure) noexcept {
    Reference<ICreateErrorInfo> creation;
    Reference<IErrorInfo> information;
    if (FAILED(CreateErrorInfo(creation.Out())))
        return;
    try {
        Variant text;
        text->bstrVal = TextToBSTR(failure.Description);
        text->vt = VT_BSTR;
        wchar_t source[] = L"Tessaro";
        creation->SetDescription(text->bstrVal);
        creation->SetSource(source);
    } catch (const Refusal&) {
        return;
    }
    if (SUCCEEDED(creation->QueryInterface(__uuidof(IErrorInfo),
                                           reinterpret_cast<void**>(information.Out()))))
        SetErrorInfo(0, information.Get());
}

}  // namespace

HRESULT CurrentResult() noexcept {
    SetErrorInfo(0, nullptr);  // what an earlier failure left would be taken for this one's
    try {
        throw;
    } catch (const Refusal& refusal) {
        return refusal.code;
    } catch (const Failure& failure) {
        Describe(failure);
        // The run-time failures have their own place among the automation errors.
        return MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, failure.Number & 0xFFFF);
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_UNEXPECTED;
    }
}

}  // namespace tessaro::automation
