#include "saving/journal.h"

#include <algorithm>
#include <random>

#include "foundation/names.h"
#include "saving/text_fields.h"

namespace tessaro {
namespace {

constexpr std::string_view kPrefix = ".tessaro-", kSuffix = ".tmp";
constexpr std::string_view kVersion = "tessaro-journal 1 ";

/// A name that stays in its folder and is none of saving's own.
bool IsTargetName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." && name.find('\0') == name.npos &&
           LastSeparator(name) == name.npos &&
           (kPathSeparator == '/' || name.find(':') == name.npos) && !IsTemporaryName(name) &&
           !SameName(name, kJournalName);
}

std::string EntryLine(const JournalEntry& entry) {
    std::string line = entry.after ? "replace " : "remove ";
    line += StateText(entry.before) + " " + StateText(entry.after) + " ";
    line += entry.temporary.empty() ? "-" : entry.temporary;
    return line + " " + Escaped(entry.target) + "\n";
}

std::optional<JournalEntry> ReadEntry(std::string_view line) {
    const std::vector<std::string_view> fields = Fields(line);
    JournalEntry entry;
    if (fields.size() != 5 || !ReadState(fields[1], entry.before) ||
        !ReadState(fields[2], entry.after))
        return std::nullopt;
    if (fields[3] != "-")
        entry.temporary = fields[3];
    const auto target = ReadEscaped(fields[4]);
    if (!target || !IsTargetName(*target) ||
        (!entry.temporary.empty() && (!IsTemporaryName(entry.temporary) || !entry.after)))
        return std::nullopt;
    entry.target = *target;
    return entry;
}

}  // namespace

std::string NewTransactionId() {
    std::random_device random;
    return Hex16(std::uint64_t{random()} << 32 | random());
}

std::string TemporaryName(std::string_view id, std::size_t number) {
    return std::string(kPrefix).append(id) + "-" + std::to_string(number) + std::string(kSuffix);
}

bool IsTemporaryName(std::string_view name) {
    const std::size_t fixed = kPrefix.size() + 16 + 1;
    return name.size() > fixed + kSuffix.size() && name.starts_with(kPrefix) &&
           name.ends_with(kSuffix) && ReadHex16(name.substr(kPrefix.size(), 16)) &&
           name[fixed - 1] == '-' &&
           ReadDecimal(name.substr(fixed, name.size() - fixed - kSuffix.size()));
}

std::string JournalChecksumLine(ByteSpan above) {
    return "checksum " + Hex16(PrintOf(above).checksum) + "\n";
}

ByteArray WriteJournal(const Journal& journal) {
    std::string text(kVersion);
    text += journal.id + (journal.putsBack ? " put-back\n" : " save\n");
    for (const JournalEntry& entry : journal.entries)
        text += EntryLine(entry);
    text += JournalChecksumLine(ByteArray(text.begin(), text.end()));
    return {text.begin(), text.end()};
}

std::optional<Journal> ReadJournal(ByteSpan bytes) {
    const std::string text(bytes.begin(), bytes.end());
    const std::vector<std::string_view> lines = Lines(text);
    if (bytes.size() > kLongestJournal || lines.size() < 3 || !lines[0].starts_with(kVersion))
        return std::nullopt;
    const std::vector<std::string_view> head = Fields(lines[0].substr(kVersion.size()));
    if (head.size() != 2 || !ReadHex16(head[0]))
        return std::nullopt;
    Journal journal;
    journal.id = head[0];
    journal.putsBack = head[1] == "put-back";
    for (std::size_t i = 1; i + 1 < lines.size(); ++i) {
        auto entry = ReadEntry(lines[i]);
        if (!entry || std::ranges::any_of(journal.entries, [&](const JournalEntry& other) {
                return SameName(other.target, entry->target) ||
                       (!entry->temporary.empty() && other.temporary == entry->temporary);
            }))
            return std::nullopt;
        journal.entries.push_back(std::move(*entry));
    }
    // One way to write a journal leaves nothing else to check: the checksum, unknown words,
    // blanks, what lies behind the last line.
    if (!std::ranges::equal(WriteJournal(journal), bytes))
        return std::nullopt;
    return journal;
}

}  // namespace tessaro
