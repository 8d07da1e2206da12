// The iPhone settings form on a terminal.
#pragma once

#include "tessaro/iphone_settings.h"
#include "tessaro/user_interface.h"

namespace tessaro {

/// Asks for each field with the terminal's input box, showing what it holds; an empty answer keeps
/// it. Where the form refuses the values, it asks again. The end of the input cancels the form.
void AskIPhoneSettings(UserInterface& terminal, frmIPhoneSettings& form);

/// Asks for a colour as six hexadecimal digits, red first; nothing for anything else.
std::optional<std::int32_t> AskColor(UserInterface& terminal, std::int32_t color);

}  // namespace tessaro
