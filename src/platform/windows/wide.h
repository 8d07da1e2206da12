// Names for the system's files: in UTF-8 here, in UTF-16 there.
#pragma once

#include <cstdint>
#include <string>

#include "tessaro/failure.h"

namespace tessaro {

/// The name as the system's wide functions take it; names near the classic limit of 260 characters
/// in the form that has none. A text that is no UTF-8 fails with number 52.
std::wstring WidePath(const std::string& path);
std::string Utf8(const wchar_t* text, std::size_t size);
std::string Utf8(const std::wstring& text);

/// What one of the system's errors means, as the failure of an operation on `path`.
Failure FailureFromSystem(std::uint32_t error, const std::string& path);

}  // namespace tessaro
