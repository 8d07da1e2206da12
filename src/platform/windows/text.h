// Texts for the system's own functions. The library's are in the ANSI code page.
#pragma once

#include <string>

namespace tessaro {

std::wstring ToWide(const std::string& text);
std::string FromWide(const std::wstring& text);

}  // namespace tessaro
