#include "tessaro/user_interface.h"

#include <utility>

#include "platform/system.h"

namespace tessaro {
namespace {

thread_local UserInterface* installed = nullptr;

}  // namespace

UserInterface::~UserInterface() = default;

UserInterface* SetUserInterface(UserInterface* Interface) {
    return std::exchange(installed, Interface);
}

UserInterface& CurrentUserInterface() {
    return installed != nullptr ? *installed : DefaultUserInterface();
}

}  // namespace tessaro
