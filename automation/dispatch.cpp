#include "dispatch.h"

#include <oleauto.h>

#include <vector>

#include "marshal.h"
#include "type_library.h"

namespace tessaro::automation {
namespace {

/// The description of one member, released with this.
class Description {
public:
    Description(ITypeInfo* info, DISPID member, WORD flags) : info_(info) {
        TYPEATTR* attributes = nullptr;
        Check(info->GetTypeAttr(&attributes));
        const UINT functions = attributes->cFuncs;
        info->ReleaseTypeAttr(attributes);
        for (UINT index = 0; index < functions && !description_; ++index) {
            Check(info->GetFuncDesc(index, &description_));
            if (description_->memid != member || !(description_->invkind & flags))
                info->ReleaseFuncDesc(std::exchange(description_, nullptr));
        }
    }
    Description(const Description&) = delete;
    Description& operator=(const Description&) = delete;
    ~Description() {
        if (description_)
            info_->ReleaseFuncDesc(description_);
    }

    /// What the parameter at `position` refers to; VT_EMPTY where it is passed by value.
    VARTYPE ReferredType(UINT position) const {
        if (!description_ || position >= static_cast<UINT>(description_->cParams))
            return VT_EMPTY;
        const TYPEDESC& type = description_->lprgelemdescParam[position].tdesc;
        if (type.vt != VT_PTR)
            return VT_EMPTY;
        const VARTYPE referred = type.lptdesc->vt;
        return referred == VT_USERDEFINED ? VARTYPE{VT_I4} : referred;  // the enumerations
    }

private:
    ITypeInfo* info_;
    FUNCDESC* description_ = nullptr;
};

/// An argument on its way through a temporary.
struct Detour {
    VARIANT original;
    Variant temporary;
    bool isTemporary = false;
};

/// The host's variable behind references to variants, or the argument itself.
VARIANT& Variable(VARIANT& argument) {
    VARIANT* variable = &argument;
    while (variable->vt == (VT_BYREF | VT_VARIANT))
        variable = Required(variable->pvarVal);
    return *variable;
}

/// Makes `argument` a reference to a temporary of the type `wanted`.
void Redirect(VARIANT& argument, VARTYPE wanted, Detour& detour) {
    VARIANT& source = Variable(argument);
    if (wanted != VT_VARIANT)
        Check(VariantChangeType(&*detour.temporary, &source, 0, wanted));
    else if (source.vt & VT_BYREF)
        *detour.temporary = source;  // the operation writes through it
    else
        Check(VariantCopy(&*detour.temporary, &source));
    detour.isTemporary = true;
    argument.vt = static_cast<VARTYPE>(VT_BYREF | wanted);
    argument.byref =
        wanted == VT_VARIANT ? static_cast<void*>(&*detour.temporary) : &detour.temporary->lVal;
}

/// Puts what came back into the host's variable, where there is one.
void Return(Detour& detour) {
    VARIANT& variable = Variable(detour.original);
    if (!detour.isTemporary || (detour.temporary->vt & VT_BYREF))
        return;
    if (!(variable.vt & VT_BYREF)) {
        if (&variable == &detour.original)
            return;  // passed by value
        Check(VariantClear(&variable));
        variable = detour.temporary.Release();
        return;
    }
    const VARTYPE type = variable.vt & VT_TYPEMASK;
    Variant converted;
    Check(VariantChangeType(&*converted, &*detour.temporary, 0, type));
    switch (type) {
        case VT_UI1:
            *variable.pbVal = converted->bVal;
            break;
        case VT_I2:
            *variable.piVal = converted->iVal;
            break;
        case VT_BOOL:
            *variable.pboolVal = converted->boolVal;
            break;
        case VT_INT:
        case VT_UINT:
        case VT_UI4:
        case VT_I4:
            *variable.plVal = converted->lVal;
            break;
        case VT_R8:
            *variable.pdblVal = converted->dblVal;
            break;
        default:
            throw Refusal{DISP_E_TYPEMISMATCH};
    }
}

}  // namespace

HRESULT InvokeMember(ITypeInfo* info, void* object, DISPID member, WORD flags,
                     DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                     UINT* badArgument) {
    const Description description(info, member, flags);
    const UINT count = Required(parameters)->cArgs;
    std::vector<VARIANT> arguments(parameters->rgvarg, parameters->rgvarg + count);
    std::vector<Detour> detours(count);
    const bool named = parameters->cNamedArgs > 0;  // a put's value, which is never a reference
    for (UINT slot = 0; slot < count && !named; ++slot) {
        VARIANT& argument = arguments[slot];
        const VARTYPE wanted = description.ReferredType(count - 1 - slot);
        detours[slot].original = argument;
        if (wanted == VT_EMPTY || argument.vt == (VT_BYREF | wanted) || argument.vt == VT_ERROR)
            continue;
        try {
            Redirect(argument, wanted, detours[slot]);
        } catch (const Refusal&) {
            if (badArgument)
                *badArgument = slot;
            throw;
        }
    }
    DISPPARAMS adapted{arguments.data(), parameters->rgdispidNamedArgs, count,
                       parameters->cNamedArgs};
    const HRESULT outcome =
        info->Invoke(object, member, flags, &adapted, result, exception, badArgument);
    if (SUCCEEDED(outcome))
        for (Detour& detour : detours)
            Return(detour);
    return outcome;
}

}  // namespace tessaro::automation
