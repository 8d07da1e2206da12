// Files of the command's own: pictures, extracted items, what is to be imported.
#pragma once

#include <string>
#include <string_view>

#include "file_kinds.h"
#include "tessaro/types.h"

namespace tessaro::cli {

ByteArray ReadFile(const std::string& path);
/// Fails, in the command's own words, for a file that cannot be read.
void CheckReadable(const std::string& path);
/// Writes a file whole or not at all: beside its place first, then renamed onto it. Every file of
/// the command's own is written through here.
/// A file that is already there has to be of the kind; see CheckReplaceable.
void WriteFile(const std::string& path, const ByteArray& bytes, const FileKind& kind);
void CreateFolders(const std::string& path);
/// Removes a file if it is there.
void RemoveFile(const std::string& path);

/// A path below `folder`.
std::string PathIn(const std::string& folder, const std::string& name);

/// A name from a game file as a part of a file name: letters, digits, '-' and '_' stay, blanks
/// become '-', anything else (separators and points above all) '_'; at most 40 characters.
std::string SafeName(std::string_view name);

/// The extension of a path in lower case, without the point.
std::string ExtensionOf(const std::string& path);

/// The number in decimal with leading zeros.
std::string Padded(int number, int digits);

}  // namespace tessaro::cli
