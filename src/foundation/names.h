// Names of files, as texts alone.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tessaro {

#ifdef _WIN32
inline constexpr char kPathSeparator = '\\';
#else
inline constexpr char kPathSeparator = '/';
#endif

/// Folder and name with the system's separator between them.
std::string JoinPath(const std::string& folder, std::string_view name);
/// The position of the separator that ends the folder part; npos without one. On Windows either
/// kind of slash ends it.
std::size_t LastSeparator(std::string_view path);
/// The folder part without its separator ("." where there is none, the separator alone for the
/// root), and the part behind it.
std::string FolderOf(std::string_view path);
std::string NameOf(std::string_view path);

/// Compares names as the games' systems do: without regard to the case of A to Z.
bool SameName(std::string_view a, std::string_view b);
std::string UpperCase(std::string_view text);
/// Sorted without regard to case, as the games' systems list a folder.
void SortNames(std::vector<std::string>& names);
/// Whether a name matches a pattern with `*` and `?`, without regard to case.
bool MatchesPattern(std::string_view name, std::string_view pattern);

}  // namespace tessaro
