// The component's entries in the registry.
#pragma once

#include <windows.h>

namespace tessaro::automation {

enum class RegistrationScope { Machine, User };

/// Writes the classes, their ProgIDs and the type library; what was written before a failure is
/// removed again.
void RegisterComponent(RegistrationScope scope);
/// Removes all of it that is there: the first failure, or S_OK. ProgIDs stay as long as the DLL of
/// the other architecture is registered, which they name too.
HRESULT UnregisterComponent(RegistrationScope scope);

}  // namespace tessaro::automation
