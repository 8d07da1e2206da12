// The note of a save of several files: what takes whose place, so that whoever finds it can finish
// what a killed process began.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/data_file.h"
#include "tessaro/types.h"

namespace tessaro {

inline constexpr std::string_view kJournalName = ".tessaro-journal";
/// A longer one is none of ours.
inline constexpr std::size_t kLongestJournal = 1 << 20;

/// Sixteen hexadecimal digits that no other transaction has.
std::string NewTransactionId();
/// `.tessaro-<16 hex>-<n>.tmp`: hidden, and nothing that a search of data files looks for.
std::string TemporaryName(std::string_view id, std::size_t number);
bool IsTemporaryName(std::string_view name);

struct JournalEntry {
    std::string temporary;  ///< empty where the target already is what it shall be
    std::string target;
    std::optional<FilePrint> before;  ///< nothing: there was no file
    std::optional<FilePrint> after;   ///< nothing: the target is removed
    bool operator==(const JournalEntry&) const = default;
};

/// The names are those of files in the journal's own folder.
struct Journal {
    std::string id;
    bool putsBack = false;  ///< the old files are what it leads to
    std::vector<JournalEntry> entries;
    bool operator==(const Journal&) const = default;
};

//  tessaro-journal 1 <16 hex: transaction> save | put-back
//  replace <before> <after> <temporary, or -> <target>
//  remove <before> absent - <target>
//  checksum <16 hex: of all lines above>
// A state is <size>:<16 hex: checksum>, or `absent`. In names, bytes below 21h, 7Fh and the percent
// sign are written as %XX. Lines end with a line feed.
ByteArray WriteJournal(const Journal& journal);
/// The last line, of all that stands above it.
std::string JournalChecksumLine(ByteSpan above);
/// Nothing where the bytes are not, to the last one, a journal that WriteJournal could have made.
std::optional<Journal> ReadJournal(ByteSpan bytes);

}  // namespace tessaro
