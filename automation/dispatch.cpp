#include "dispatch.h"

#include <oleauto.h>

#include <cstring>
#include <utility>
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

/// The size of a number or text that a reference of this type leads to; 0 for other types.
std::size_t SizeBehind(VARTYPE reference) {
    switch (reference & ~VT_BYREF) {
        case VT_I1:
        case VT_UI1:
            return 1;
        case VT_I2:
        case VT_UI2:
        case VT_BOOL:
            return 2;
        case VT_I4:
        case VT_UI4:
        case VT_INT:
        case VT_UINT:
        case VT_R4:
            return 4;
        case VT_I8:
        case VT_UI8:
        case VT_R8:
        case VT_CY:
        case VT_DATE:
            return 8;
        case VT_BSTR:
            return sizeof(BSTR);
        default:
            return 0;
    }
}

/// Makes `argument` a reference to a temporary of the type `wanted`.
void Redirect(VARIANT& argument, VARTYPE wanted, Detour& detour) {
    VARIANT& source = Variable(argument);
    if (wanted != VT_VARIANT) {
        if ((source.vt & VT_BYREF) && SizeBehind(source.vt) == 0)
            throw Refusal{DISP_E_TYPEMISMATCH};
        Check(VariantChangeType(&*detour.temporary, &source, 0, wanted));
    } else if (source.vt & VT_BYREF) {
        *detour.temporary = source;  // the operation writes through it
    } else {
        Check(VariantCopy(&*detour.temporary, &source));
    }
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
    const VARTYPE type = variable.vt & ~VT_BYREF;
    Variant converted;
    Check(VariantChangeType(&*converted, &*detour.temporary, 0, type));
    if (type == VT_BSTR)
        std::swap(*variable.pbstrVal, converted->bstrVal);  // the old text goes with `converted`
    else
        std::memcpy(variable.byref, &converted->bVal, SizeBehind(type));
}

}  // namespace

HRESULT InvokeMember(ITypeInfo* info, void* object, DISPID member, WORD flags,
                     DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                     UINT* badArgument) {
    const Description description(info, member, flags);
    const UINT count = Required(parameters)->cArgs;
    std::vector<VARIANT> arguments(parameters->rgvarg, parameters->rgvarg + count);
    std::vector<Detour> detours(count);
    for (UINT slot = 0; slot < count; ++slot) {
        VARIANT& argument = arguments[slot];
        // Named arguments come first, each with its position; a put's value, whose name is no
        // position, is never a reference. The others stand last to first.
        const UINT position = slot < parameters->cNamedArgs
                                  ? static_cast<UINT>(parameters->rgdispidNamedArgs[slot])
                                  : count - 1 - slot;
        const VARTYPE wanted = description.ReferredType(position);
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
