// IDispatch for the dual interfaces, through their description in the type library.
#pragma once

#include <windows.h>

#include <oaidl.h>

namespace tessaro::automation {

/// Calls a member of `object`, which implements the interface that `info` describes.
///
/// Scripting hosts pass every variable as a reference to a variant, and constants by value, where
/// a member wants a reference to a number or a text. Such arguments go through a temporary of the
/// wanted type, and what comes back goes into the host's variable.
HRESULT InvokeMember(ITypeInfo* info, void* object, DISPID member, WORD flags,
                     DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                     UINT* badArgument);

}  // namespace tessaro::automation
