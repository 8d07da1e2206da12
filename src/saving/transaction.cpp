#include "saving/transaction.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "foundation/guard.h"
#include "foundation/names.h"
#include "saving/backups.h"
#include "saving/folder_locks.h"
#include "saving/journal.h"
#include "saving/quietly.h"
#include "saving/recovery.h"
#include "saving/replacement.h"
#include "saving/targets.h"

namespace tessaro {
namespace {

/// Under the locks: what the dead left is finished first. Fails where that cannot be done.
void RecoverFirst(Files& files, const std::vector<std::string>& folders, bool locked, bool oneFile,
                  std::vector<std::string>& notices) {
    for (const std::string& folder : folders) {
        const RecoveryReport report = RecoverLocked(files, folder, locked);
        if (report.state == RecoveryReport::Busy)
            throw Failure(kPermissionDenied, "The folder is in use by another program: " + folder);
        if (report.state == RecoveryReport::Stuck ||
            (report.state == RecoveryReport::Unreadable && !oneFile))
            throw Failure(kPathFileAccess, report.notice);
        if (!report.notice.empty())
            notices.push_back(report.notice);
    }
}

/// A file alone has no journal: what a failure left of it, nobody finishes.
std::string OldOrNew(const Target& target) {
    return target.path + " may hold its old or its new content.";
}

class Save {
public:
    Save(Files& files, const SavePlan& plan) : files_(files), plan_(plan) {}

    SaveOutcome Run() {
        const FolderLocks locks = LockAndRecover();
        targets_ = FindTargets(files_, plan_);
        RequireUnchanged(files_, plan_.read);
        Replacement replacement(files_, targets_);
        try {
            KeepOldFiles(replacement.Id());
            replacement.Run();
        } catch (const Failure& failure) {
            if (replacement.IsUnfinished())
                throw Unfinished(failure);
            RemoveBackups(files_, backupFolder_, backups_, outcome_.backupNumber);
            if (outcome_.number > 0)
                Quietly([&] { history_->Append(EndLine("undone", outcome_.number), Flushed::No); });
            throw;
        }
        try {
            replacement.Close();
            if (outcome_.number > 0)
                history_->Append(EndLine("done", outcome_.number), Flushed::No);
        } catch (const Failure& failure) {
            outcome_.notices.push_back("The save is complete, but not cleared up: " +
                                       failure.Description);
        }
        return std::move(outcome_);
    }

private:
    FolderLocks LockAndRecover() {
        std::vector<std::string> paths = plan_.removed;
        for (const NewFile& file : plan_.files)
            paths.push_back(file.path);
        const bool oneFile = paths.size() == 1;
        const std::vector<std::string> dataFolders = FoldersOf(files_, paths);
        if (!plan_.backupFolder.empty()) {
            EnsureBackupFolder(files_, plan_.backupFolder);
            backupFolder_ = RealFolder(files_, plan_.backupFolder);
            paths.push_back(backupFolder_);
        }
        FolderLocks locks(files_, FoldersOf(files_, paths), Sharing::Exclusive);
        RecoverFirst(files_, dataFolders, locks.Hold(), oneFile, outcome_.notices);
        // A journal in the backup folder is that of another set, and no hindrance to this one.
        if (!backupFolder_.empty() && std::ranges::count(dataFolders, backupFolder_) == 0)
            RecoverLocked(files_, backupFolder_, locks.Hold());
        return locks;
    }

    /// The old files into the backup folder, then the save into the history; both are on the disk
    /// before anything changes.
    void KeepOldFiles(std::string_view id) {
        for (const Target& target : targets_) {
            if (target.before)
                backups_.push_back({target.backupName, *target.before, target.path});
        }
        if (backupFolder_.empty()) {
            if (backups_.empty())
                return;
            throw Failure(kPathNotFound, "No backup folder is set.");
        }
        try {
            history_.emplace(files_, backupFolder_);
            history_->CloseOpenRecords();
            SaveRecord record;
            std::int32_t from = 1;
            for (const Target& target : targets_) {
                record.files.push_back(
                    {target.place, target.backupName, target.printBefore, target.printAfter});
                const auto& floors = history_->Content().floors;
                const auto floor = floors.find(UpperCase(target.backupName));
                from = std::max(from, floor == floors.end() ? 1 : floor->second);
            }
            outcome_.backupNumber = WriteBackups(files_, backupFolder_, backups_, id, from);
            record.kind = plan_.kind;
            record.leadsTo = plan_.leadsTo;
            record.backupNumber = outcome_.backupNumber;
            record.items = plan_.changed;
            outcome_.number = history_->Begin(std::move(record));
            files_.FlushFolder(backupFolder_);
        } catch (...) {
            Failure failure = CurrentFailure();
            failure.Description =
                "Folder: " + plan_.backupFolder + "\r\n\r\n" + failure.Description;
            throw failure;
        }
    }

    /// The container may meet the old files again or the new ones: both are its own.
    Failure Unfinished(const Failure& failure) {
        for (DataFile* file : plan_.read) {
            for (const NewFile& newFile : plan_.files) {
                if (SameName(newFile.path, file->Path()))
                    file->AlsoExpect(newFile.content);
            }
        }
        std::string text = failure.Description + "\r\n\r\nThe save is unfinished. ";
        if (targets_.size() > 1)
            text += "The next opening or save of the folder finishes it, by the journal " +
                    JoinPath(targets_.front().folder, kJournalName) + ".";
        else
            text += OldOrNew(targets_.front());
        if (outcome_.backupNumber > 0)
            text += " The old files are in " + plan_.backupFolder + " under the number " +
                    std::to_string(outcome_.backupNumber) + ".";
        return Failure(failure.Number, text, failure.Line);
    }

    Files& files_;
    const SavePlan& plan_;
    std::string backupFolder_;
    std::vector<Target> targets_;
    std::vector<Backup> backups_;
    std::optional<HistoryLog> history_;
    SaveOutcome outcome_;
};

/// A file where none stands, complete at once. False when somebody was quicker.
bool CreateNew(Files& files, const std::string& path, ByteSpan bytes) {
    const std::string temporary = JoinPath(FolderOf(path), TemporaryName(NewTransactionId(), 0));
    files.Create(temporary, bytes, Flushed::No);
    try {
        files.Rename(temporary, path, IfTaken::Fails);
        return true;
    } catch (...) {
        // A saver that finds the folder unlocked may have cleared the temporary away.
        const bool othersDid = files.Kind(path) || !files.Kind(temporary);
        RemoveQuietly(files, temporary);
        if (!othersDid)
            throw;
        return false;
    }
}

}  // namespace

SaveOutcome Commit(Files& files, const SavePlan& plan) {
    return Save(files, plan).Run();
}

std::vector<std::string> ReplaceOneFile(Files& files, const std::string& path, ByteSpan bytes) {
    const auto kind = files.Kind(path);
    if (kind && kind->type == FileKind::Other) {
        files.Append(path, bytes, Flushed::No);
        return {};
    }
    if (!kind && CreateNew(files, path, bytes))
        return {};
    std::vector<std::string> notices;
    const std::vector<std::string> folders = FoldersOf(files, {path});
    const FolderLocks locks(files, folders, Sharing::Exclusive);
    RecoverFirst(files, folders, locks.Hold(), true, notices);
    const std::vector<Target> targets{FindTarget(files, path, bytes)};
    Replacement replacement(files, targets);
    try {
        replacement.Run();
    } catch (const Failure& failure) {
        if (!replacement.IsUnfinished())
            throw;
        throw Failure(failure.Number, failure.Description + "\r\n\r\n" + OldOrNew(targets.front()));
    }
    return notices;
}

}  // namespace tessaro
