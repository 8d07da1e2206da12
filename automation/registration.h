// The component's entries in the registry.
#pragma once

namespace tessaro::automation {

enum class RegistrationScope { Machine, User };

/// Writes the classes, their ProgIDs and the type library; what was written before a failure is
/// removed again.
void RegisterComponent(RegistrationScope scope);
/// Removes all of it. What is not there, or may not be changed by this user, is left alone.
void UnregisterComponent(RegistrationScope scope);

}  // namespace tessaro::automation
