// What a process that was killed while it saved left behind: finished or told, never half.
#pragma once

#include <functional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "saving/folder_locks.h"
#include "saving/journal.h"
#include "tessaro/files.h"

namespace tessaro {

struct RecoveryReport {
    enum State {
        Nothing,     ///< no journal was there
        Finished,    ///< what the journal says has been done, or had been
        Dropped,     ///< the journal was of no use any more
        Stuck,       ///< the files are not as the journal knows them: nothing was touched
        Unreadable,  ///< the journal is none of ours: nothing was touched
        Busy         ///< somebody may be saving there at this moment, where nothing can be locked
    };
    State state = Nothing;
    std::string folder;  ///< its real path
    std::vector<std::string> files;
    std::string notice;  ///< for the user; empty when there is nothing to tell
};

/// Finishes the interrupted save of a folder, or touches nothing, and clears away what the dead
/// left. Neither backups nor space are needed. Locks the folder exclusively. Throws where a step
/// fails; the journal is still there then, and the next attempt goes on with it.
RecoveryReport Recover(Files& files, const std::string& folder);
/// The same for who holds the exclusive lock. `locked` is false where the file system has none:
/// then nothing is cleared away and a journal of the last ten seconds is let be.
RecoveryReport RecoverLocked(Files& files, const std::string& realFolder, bool locked);

/// Sets a journal that cannot be finished aside: copies it and the temporary files of its folder
/// into the backup folder, under names with a number, then removes them. The data files stay as
/// they are.
/// @return the copies' paths; none where there was no journal.
std::vector<std::string> DiscardJournal(Files& files, const std::string& folder,
                                        const std::string& backupFolder);

/// Runs `body`, which opens a set, while nobody writes it, after an interrupted save of its
/// folders has been finished. `paths` name the files of the set (which need not exist) or folders.
/// Where readers cannot lock, `body` runs again until the files that it read were the same before
/// and after: it reads through the port that it is given and changes nothing else that stays.
/// Not to be used within a save. Adds to `notices` what the user shall be told.
void ReadSetWith(Files& files, const std::vector<std::string>& paths,
                 std::vector<std::string>& notices, const std::function<void(const Files&)>& body);

template <class Body>
std::invoke_result_t<Body&, const Files&> ReadSet(Files& files,
                                                  const std::vector<std::string>& paths,
                                                  std::vector<std::string>& notices, Body&& body) {
    std::optional<std::invoke_result_t<Body&, const Files&>> result;
    ReadSetWith(files, paths, notices, [&](const Files& port) { result.emplace(body(port)); });
    return std::move(*result);
}

}  // namespace tessaro
