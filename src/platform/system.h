// What else differs by system.
#pragma once

#include <cstdint>
#include <string>

#include "tessaro/user_interface.h"

namespace tessaro {

/// The folder that holds the library (or the program that it is linked into).
std::string LibraryFolder();

/// Where the error log goes unless a host says otherwise: the library's folder where it can be
/// written, otherwise the user's folder for such things, made where it is not there.
std::string DefaultAppPath();

/// A path as hosts give it (in the ANSI code page on Windows) as a files port takes it, in UTF-8;
/// and back.
std::string PathFromHost(const std::string& path);
std::string PathToHost(const std::string& path);

/// The system's ANSI code page: from the system on Windows, from the locale elsewhere (1251 for a
/// CP1251 locale, 65001 for UTF-8, 0 where it is none that the library knows).
std::uint32_t ActiveCodePage();

/// The system's conversion between single-byte code pages 1251 and 866; an empty text when it
/// fails. The result has at most as many bytes as the text.
std::string ConvertBetweenCodePages(const std::string& text, std::uint32_t source,
                                    std::uint32_t target);

/// The local date and time as "MM/DD/YYYY HH:MM AMPM".
std::string LocalTimestamp();

/// The thread's user interface: what the host installed, otherwise the system's default.
UserInterface& CurrentUserInterface();

/// The system's own: message boxes on Windows, the terminal elsewhere.
UserInterface& DefaultUserInterface();

}  // namespace tessaro
