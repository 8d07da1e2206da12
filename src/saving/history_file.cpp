#include "saving/history_file.h"

#include <algorithm>
#include <array>
#include <ctime>

#include "foundation/names.h"
#include "saving/text_fields.h"

namespace tessaro {
namespace {

constexpr std::array<std::string_view, 3> kKinds{"save", "undo", "redo"};

bool IsAbsolute(std::string_view path) {
    return LastSeparator(path.substr(0, 1)) == 0 || (path.size() > 1 && path[1] == ':');
}

/// A path that says where it leads.
bool IsPlainPath(std::string_view path) {
    while (!path.empty()) {
        const std::string name = NameOf(path);
        if (name == ".." || name == ".")
            return false;
        const std::size_t separator = LastSeparator(path);
        path = path.substr(0, separator == std::string_view::npos ? 0 : separator);
    }
    return true;
}

std::string Relative(const std::string& path, const std::string& base) {
    const std::string start = base.ends_with(kPathSeparator) ? base : base + kPathSeparator;
    return path.size() > start.size() && path.starts_with(start) ? path.substr(start.size()) : path;
}

std::string WithChecksum(const std::string& line) {
    const ByteArray bytes(line.begin(), line.end());
    return line + " " + Hex16(PrintOf(bytes).checksum) + "\n";
}

std::optional<std::int32_t> ReadNumber(std::string_view text) {
    const auto value = ReadDecimal(text);
    return value && *value <= 999'999'999 ? std::optional(static_cast<std::int32_t>(*value))
                                          : std::nullopt;
}

std::optional<SaveRecord> ReadBegin(const std::vector<std::string_view>& fields,
                                    const std::string& base) {
    constexpr std::size_t kFixed = 7, kPerFile = 4;
    if (fields.size() < kFixed)
        return std::nullopt;
    // The states before the first record have numbers of 0 and below.
    const bool negative = fields[3].starts_with('-');
    const auto number = ReadNumber(fields[1]), leadsTo = ReadNumber(fields[3].substr(negative));
    const auto backupNumber = ReadNumber(fields[5]), files = ReadNumber(fields[6]);
    const auto kind = std::ranges::find(kKinds, fields[2]);
    if (!number || kind == kKinds.end() || !leadsTo || !backupNumber || !files ||
        static_cast<std::size_t>(*files) > (fields.size() - kFixed) / kPerFile)
        return std::nullopt;
    SaveRecord record;
    record.number = *number;
    record.kind = static_cast<SaveRecord::Kind>(kind - kKinds.begin());
    record.leadsTo = negative ? -*leadsTo : *leadsTo;
    record.date = fields[4];
    record.backupNumber = *backupNumber;
    std::size_t at = kFixed;
    for (std::int32_t i = 0; i < *files; ++i, at += kPerFile) {
        SavedFile file;
        const auto path = ReadEscaped(fields[at]), name = ReadEscaped(fields[at + 1]);
        if (!path || path->empty() || !IsPlainPath(*path) || !name || name->empty() ||
            LastSeparator(*name) != std::string::npos || !ReadState(fields[at + 2], file.before) ||
            !ReadState(fields[at + 3], file.after))
            return std::nullopt;
        file.path = IsAbsolute(*path) ? *path : JoinPath(base, *path);
        file.backupName = *name;
        record.files.push_back(std::move(file));
    }
    for (; at < fields.size(); ++at) {
        const auto item = ReadEscaped(fields[at]);
        if (!item)
            return std::nullopt;
        record.items.push_back(*item);
    }
    return record;
}

void ReadLine(HistoryContent& content, std::string_view line, const std::string& base) {
    const std::size_t blank = line.rfind(' ');
    if (blank == std::string_view::npos ||
        WithChecksum(std::string(line.substr(0, blank))) != std::string(line) + "\n")
        return;
    const std::vector<std::string_view> fields = Fields(line.substr(0, blank));
    if (fields[0] == "begin") {
        auto record = ReadBegin(fields, base);
        if (record && (content.records.empty() || record->number > content.records.back().number))
            content.records.push_back(std::move(*record));
        return;
    }
    const auto number = fields.size() < 2 ? std::nullopt : ReadNumber(fields.back());
    if (!number)
        return;
    if (fields[0] == "floor" && fields.size() == 3) {
        if (const auto name = ReadEscaped(fields[1]))
            content.floors[UpperCase(*name)] = *number;
        return;
    }
    const auto record = std::ranges::find(content.records, *number, &SaveRecord::number);
    if (record == content.records.end() || fields.size() != 2)
        return;
    if (fields[0] == "done" || fields[0] == "undone")
        record->end = fields[0] == "done" ? SaveRecord::Done : SaveRecord::Undone;
    if (fields[0] == "pruned")
        record->pruned = true;
}

}  // namespace

HistoryContent ReadHistory(ByteSpan bytes, const std::string& base) {
    const std::string text(bytes.begin(), bytes.end());
    HistoryContent content;
    content.torn = !text.empty() && text.back() != '\n';
    for (const std::string_view line : Lines(text))
        ReadLine(content, line, base);
    return content;
}

std::string BeginLine(const SaveRecord& record, const std::string& base) {
    std::string line = "begin " + std::to_string(record.number) + " ";
    line += kKinds[static_cast<std::size_t>(record.kind)];
    line += " " + std::to_string(record.leadsTo) + " " + record.date + " " +
            std::to_string(record.backupNumber) + " " + std::to_string(record.files.size());
    for (const SavedFile& file : record.files)
        line += " " + Escaped(Relative(file.path, base)) + " " + Escaped(file.backupName) + " " +
                StateText(file.before) + " " + StateText(file.after);
    for (const std::string& item : record.items)
        line += " " + Escaped(item);
    return WithChecksum(line);
}

std::string EndLine(std::string_view word, std::int32_t number) {
    return WithChecksum(std::string(word) + " " + std::to_string(number));
}

std::string FloorLine(const std::string& backupName, std::int32_t number) {
    return WithChecksum("floor " + Escaped(backupName) + " " + std::to_string(number));
}

HistoryLog::HistoryLog(Files& files, std::string realBackupFolder)
    : files_(files), folder_(std::move(realBackupFolder)), base_(FolderOf(folder_)) {
    const std::string path = JoinPath(folder_, kHistoryName);
    if (files_.Kind(path))
        content_ = ReadHistory(files_.Read(path), base_);
}

void HistoryLog::CloseOpenRecords() {
    for (SaveRecord& record : content_.records) {
        if (record.end != SaveRecord::Open)
            continue;
        bool isBefore = true, isAfter = true;
        for (const SavedFile& file : record.files) {
            const auto now = PrintNow(files_, file.path);
            isBefore = isBefore && now == file.before;
            isAfter = isAfter && now == file.after;
        }
        if (!isBefore && !isAfter)
            continue;
        record.end = isAfter ? SaveRecord::Done : SaveRecord::Undone;
        Append(EndLine(isAfter ? "done" : "undone", record.number), Flushed::Yes);
    }
}

std::int32_t HistoryLog::Begin(SaveRecord record) {
    record.number = content_.records.empty() ? 1 : content_.records.back().number + 1;
    if (record.kind == SaveRecord::Save)
        record.leadsTo = record.number;
    record.date = DateNow();
    Append(BeginLine(record, base_), Flushed::Yes);
    content_.records.push_back(std::move(record));
    return content_.records.back().number;
}

void HistoryLog::Append(const std::string& lines, Flushed flushed) {
    const std::string text = content_.torn ? "\n" + lines : lines;
    content_.torn = true;  // until it is known that the lines are there
    files_.Append(JoinPath(folder_, kHistoryName), ByteArray(text.begin(), text.end()), flushed);
    content_.torn = false;
}

std::string DateNow() {
    const std::time_t now = std::time(nullptr);
    std::array<char, 32> text{};
    // The thread's own copy: what gmtime gives belongs to all of them.
    std::tm utc{};
#ifdef _WIN32
    gmtime_s(&utc, &now);
#else
    gmtime_r(&now, &utc);
#endif
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &utc)};
}

std::optional<FilePrint> PrintNow(const Files& files, const std::string& path) {
    if (!files.Kind(path))
        return std::nullopt;
    return PrintOf(files.Read(path));
}

}  // namespace tessaro
