// The one way in which files are written: all of them or none, also for whoever is killed half-way
// or loses power.
//
// The promise. When Commit returns, the new files stand, flushed, and the old ones lie whole in the
// backup folder under one number. When it throws, every file is as it was; except that a failure
// which could not be put back says "unfinished", and the next opening or save of the folder
// finishes it: to the new set or to the old one. Killed at any moment, or without power, a set is
// found old or new, never mixed, as soon as its folder was recovered (saving/recovery.h). What
// other programs wrote is never lost without a word. Over several folders (links may lead to them)
// a failure leaves all old or all new; a kill is recovered folder by folder.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "foundation/data_file.h"
#include "saving/history_file.h"
#include "saving/new_file.h"
#include "tessaro/files.h"

namespace tessaro {

struct SavePlan {
    std::vector<NewFile> files;
    /// What the set was read from. A file whose content is another now (one that is gone counts as
    /// empty) refuses the save; what the refusal saw counts as read from then on, so that a second
    /// attempt replaces it. Files that never were read are not looked at.
    std::vector<DataFile*> read;
    /// Where old files are kept and the history is written; created where it is missing. Needed as
    /// soon as one of the files exists.
    std::string backupFolder;
    std::vector<std::string> changed;    ///< the items that this save changes, for the history
    std::vector<std::string> removed{};  ///< files that shall be no more
    SaveRecord::Kind kind = SaveRecord::Save;
    std::int32_t leadsTo = 0;  ///< the state of the history that an undo or redo goes to
};

struct SaveOutcome {
    std::int32_t backupNumber = 0;  ///< 0 where there was nothing to keep
    std::int32_t number = 0;        ///< the save's in the history; 0 without one
    std::vector<std::string> notices;
};

/// Replaces files, or makes them where they are not there. Links are followed: the real file is
/// replaced. Fails without having changed anything with number 70 for a file that is read-only or
/// was changed since it was read and for a folder that is in use, with 75 for what is no regular
/// file and beside a journal that cannot be followed, with 52 for a file named twice, with 76
/// without a backup folder; with the number of any step that fails.
SaveOutcome Commit(Files& files, const SavePlan& plan);

/// Writes one file of no set: an export, a picture, a dictionary. An existing file is replaced as
/// Commit does it, without a backup. A new one is complete or not there, but not flushed. Pipes
/// and devices are written straight.
/// @return what the user shall be told.
std::vector<std::string> ReplaceOneFile(Files& files, const std::string& path, ByteSpan bytes);

}  // namespace tessaro
