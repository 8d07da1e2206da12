// clsHistory: what the saves of a game replaced and wrote, and the way back.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "tessaro/export.h"
#include "tessaro/files.h"

namespace tessaro {

enum enmSaveKind : std::int32_t {
    skSave = 0,
    skUndo = 1,  ///< it brought back an earlier state
    skRedo = 2,  ///< it took back an undo
};

/// A file of a save.
struct typSavedFile {
    std::string Path;
    std::string Backup;        ///< path of the old file; empty where there was none
    bool Existed = false;      ///< before the save
    bool Exists = false;       ///< since the save
    std::int64_t OldSize = 0;  ///< in bytes
    std::int64_t NewSize = 0;  ///< -1 where it is not known
    /// FNV-1a, 64 bits, as 16 hexadecimal digits; empty where there is no file or it is not known.
    std::string OldChecksum, NewChecksum;
};

/// A save. Its number is also that of the state it led to. Backups from before there was a history
/// have been put together by game, container and number, and have numbers of 0 and below.
struct typSave {
    std::int32_t Number = 0;
    enmSaveKind Kind = skSave;
    std::int32_t LeadsTo = 0;        ///< the state that it is equal to: its own, or the one gone to
    std::string Date;                ///< in UTC: "2026-11-23T14:18:50Z"
    bool Ended = true;               ///< false for a save of which nobody knows how it ended
    std::int32_t BackupNumber = 0;   ///< 0 where it had nothing to keep
    std::vector<std::string> Items;  ///< what the container changed
    std::vector<typSavedFile> Files;
};

/// What was found of an interrupted save.
enum enmRecovery : std::int32_t {
    rcNothing = 0,
    rcFinished = 1,    ///< it has been completed, or undone where that was under way
    rcDropped = 2,     ///< its journal was of no use any more and is gone
    rcStuck = 3,       ///< its files were changed since: nothing was touched
    rcUnreadable = 4,  ///< the journal is none that the library wrote: nothing was touched
    rcBusy = 5,        ///< somebody may be saving there at this moment
    rcFailed = 6       ///< it could not be looked for or finished, which has been reported
};

/// The history of the saves whose old files lie in one backup folder. Every operation reads it
/// anew. A container that is open keeps what it read: open it again after Undo, UndoTo and Redo.
class TESSARO_API clsHistory {
public:
    /// `DataFolder` is where files of backups without a history belong; without it, the folder in
    /// which the backup folder lies. `Port` is the system's disks where none is given.
    explicit clsHistory(const std::string& BackupFolder, const std::string& DataFolder = {},
                        std::shared_ptr<Files> Port = nullptr);
    ~clsHistory();
    clsHistory(const clsHistory&) = delete;
    clsHistory& operator=(const clsHistory&) = delete;

    /// The saves that can be gone back behind, from the oldest on; none after a failure, which has
    /// been reported.
    std::vector<typSave> Saves();
    /// The state that the files are in: a save's number.
    std::int32_t State();

    /// Brings back the files of a state: as they were after the save of that number; one less than
    /// the oldest save's is the state before all. Files that were created since are removed. This
    /// is a save itself, with backups and a record of its own, so that it can be undone. It refuses
    /// (number 70) where a file is not what the last save left, and changes nothing after any
    /// failure.
    /// @return False when it failed, which has been reported.
    bool UndoTo(std::int32_t Number);
    /// Goes back by one save, past earlier undos.
    bool Undo();
    /// Takes back the last undo that no other save followed.
    bool Redo();

    /// Removes the backups of all but the newest `Keep` saves (0 or more). Their numbers are not
    /// given to new backups.
    /// @return how many saves were removed, -1 after a failure, which has been reported.
    std::int32_t Prune(std::int32_t Keep);

    /// Finishes what a process that was killed while it saved left in a folder of data files, and
    /// clears away its temporary files. Openings and saves do so by themselves. Notices tells more.
    enmRecovery Recover(const std::string& Folder);
    /// Sets a journal that cannot be followed, and the temporary files beside it, aside: moves them
    /// into the backup folder, under names with a number. The data files stay as they are.
    /// @param MovedTo receives the paths; none where there was no journal.
    /// @return False when it failed, which has been reported.
    bool Discard(const std::string& Folder, std::vector<std::string>& MovedTo);

    /// What the last operation has to tell, an interrupted save that it finished for example.
    const std::vector<std::string>& Notices() const;

private:
    struct Self;
    std::unique_ptr<Self> self_;
};

}  // namespace tessaro
