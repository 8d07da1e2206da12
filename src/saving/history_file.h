// What was saved, kept as one text file beside the backups: each save appends a line before it
// changes anything and another one when it has ended.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/data_file.h"
#include "tessaro/files.h"

namespace tessaro {

inline constexpr std::string_view kHistoryName = "tessaro-history.txt";

struct SavedFile {
    std::string path;                        ///< of the data file
    std::string backupName;                  ///< of its backup, without folder and number
    std::optional<FilePrint> before, after;  ///< nothing: there is no file
    bool operator==(const SavedFile&) const = default;
};

struct SaveRecord {
    enum Kind { Save, Undo, Redo };
    enum End { Open, Done, Undone };
    std::int32_t number = 0;  ///< from 1 on, in the order of the saves
    Kind kind = Save;
    std::int32_t leadsTo = 0;  ///< the state that it is: its own number, or the one gone back to
    std::string date;          ///< 2026-11-23T14:18:50Z
    std::int32_t backupNumber = 0;
    std::vector<SavedFile> files;
    std::vector<std::string> items;
    End end = Open;
    bool pruned = false;  ///< its backups have been removed
};

struct HistoryContent {
    std::vector<SaveRecord> records;
    /// The lowest number that new backups of a name may take: those below were used once.
    std::map<std::string, std::int32_t> floors;
    bool torn = false;  ///< the last line has no end
};

//  begin <number> save|undo|redo <leads to> <date> <backup number> <files> then of each file
//        <path> <backup name> <before> <after>   then the items   then the line's checksum
//  done <number> <checksum>
//  undone <number> <checksum>
//  pruned <number> <checksum>
//  floor <backup name> <number> <checksum>
// Fields stand between single blanks, texts and states as in a journal. A path is relative to the
// folder in which the backup folder lies, where the file lies below that. Lines that are damaged or
// unknown are passed over.
HistoryContent ReadHistory(ByteSpan bytes, const std::string& base);
std::string BeginLine(const SaveRecord& record, const std::string& base);
std::string EndLine(std::string_view word, std::int32_t number);
std::string FloorLine(const std::string& backupName, std::int32_t number);

/// The history in a backup folder, for who holds the folder's lock.
class HistoryLog {
public:
    HistoryLog(Files& files, std::string realBackupFolder);

    const HistoryContent& Content() const { return content_; }
    /// Writes the ends of saves that were killed, as their files tell them. What cannot be told
    /// stays open.
    void CloseOpenRecords();
    /// Appends the beginning of a save, flushed. @return its number.
    std::int32_t Begin(SaveRecord record);
    void Append(const std::string& lines, Flushed flushed);

private:
    Files& files_;
    std::string folder_, base_;
    HistoryContent content_;
};

/// The time of the call, as a record's date.
std::string DateNow();
/// What stands under a path now; nothing where there is no file.
std::optional<FilePrint> PrintNow(const Files& files, const std::string& path);

}  // namespace tessaro
