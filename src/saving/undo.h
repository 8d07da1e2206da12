// Going back to what earlier saves left.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "saving/history_file.h"
#include "saving/transaction.h"

namespace tessaro {

/// The saves of a backup folder that took effect, from the oldest on. Backups that no record tells
/// of come first, in the order of their times, numbered up to 0.
class SaveList {
public:
    /// `dataFolder` is where files of backups without a record belong. Only files in it and below
    /// the folder that holds the backup folder are ever touched, whatever a history names.
    SaveList(Files& files, const std::string& backupFolder, const std::string& dataFolder);

    const std::vector<SaveRecord>& Saves() const { return saves_; }
    bool IsRecorded(const SaveRecord& save) const { return save.number > 0; }
    /// The state before all of them.
    std::int32_t Oldest() const { return saves_.empty() ? 0 : saves_.front().number - 1; }
    std::int32_t State() const { return state_; }
    /// Where Undo and Redo go; nothing where they have nothing to do.
    std::optional<std::int32_t> Earlier() const { return earlier_; }
    std::optional<std::int32_t> Later() const;
    /// What has to be written to go to a state; fails where that cannot be done. The plan refers to
    /// `read`.
    SavePlan PlanFor(std::int32_t state, std::vector<DataFile>& read) const;

private:
    void AddUnrecorded(const HistoryContent& history);
    void FollowStates();

    Files& files_;
    std::string folder_, dataFolder_;
    std::vector<SaveRecord> saves_;
    std::int32_t state_ = 0;
    std::optional<std::int32_t> earlier_;
    std::vector<std::int32_t> undone_;
};

/// Finishes what a killed save left, so that the history tells how each one ended.
void SettleHistory(Files& files, const std::string& backupFolder, const std::string& dataFolder,
                   std::vector<std::string>& notices);
/// Removes the backups of all but the newest saves. @return how many saves that were.
std::int32_t PruneHistory(Files& files, const std::string& backupFolder,
                          const std::string& dataFolder, std::int32_t keep);

}  // namespace tessaro
