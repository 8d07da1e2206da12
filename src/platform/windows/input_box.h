// The input box: a prompt, one line of text, OK and Cancel.
#pragma once

#include <optional>
#include <string>

namespace tessaro {

/// The text entered; nothing when the user cancelled.
std::optional<std::string> AskForText(const std::string& prompt, const std::string& title);

}  // namespace tessaro
