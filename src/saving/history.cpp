#include "tessaro/history.h"

#include "foundation/guard.h"
#include "foundation/names.h"
#include "platform/system.h"
#include "saving/backups.h"
#include "saving/recovery.h"
#include "saving/text_fields.h"
#include "saving/undo.h"

namespace tessaro {
namespace {

typSavedFile Told(const SavedFile& file, const std::string& backup, bool recorded) {
    typSavedFile told;
    told.Path = PathToHost(file.path);
    told.Existed = file.before.has_value();
    told.Exists = file.after.has_value() || !recorded;
    if (file.before) {
        told.Backup = PathToHost(backup);
        told.OldSize = static_cast<std::int64_t>(file.before->size);
        told.OldChecksum = recorded ? Hex16(file.before->checksum) : "";
    }
    told.NewSize = !recorded ? -1 : file.after ? static_cast<std::int64_t>(file.after->size) : 0;
    if (file.after)
        told.NewChecksum = Hex16(file.after->checksum);
    return told;
}

}  // namespace

struct clsHistory::Self {
    std::string backupFolder, dataFolder;
    std::shared_ptr<Files> files;
    std::vector<std::string> notices;

    SaveList List() {
        notices.clear();
        SettleHistory(*files, backupFolder, dataFolder, notices);
        return {*files, backupFolder, dataFolder};
    }
    bool GoTo(const SaveList& list, std::int32_t state, SaveRecord::Kind kind) {
        std::vector<DataFile> read;
        SavePlan plan = list.PlanFor(state, read);
        plan.kind = kind;
        const SaveOutcome outcome = Commit(*files, plan);
        notices.insert(notices.end(), outcome.notices.begin(), outcome.notices.end());
        return true;
    }
};

clsHistory::clsHistory(const std::string& BackupFolder, const std::string& DataFolder,
                       std::shared_ptr<Files> Port)
    : self_(std::make_unique<Self>()) {
    self_->backupFolder = PathFromHost(BackupFolder);
    self_->dataFolder = PathFromHost(DataFolder);
    self_->files = Port ? std::move(Port) : DiskFiles();
}

clsHistory::~clsHistory() = default;

std::vector<typSave> clsHistory::Saves() {
    return Guarded("clsHistory.Saves", [&] {
        std::vector<typSave> saves;
        if (!self_->files->Kind(self_->backupFolder))
            return saves;  // nothing was ever kept
        const SaveList list = self_->List();
        for (const SaveRecord& record : list.Saves()) {
            typSave save;
            save.Number = record.number;
            save.Kind = static_cast<enmSaveKind>(record.kind);
            save.LeadsTo = record.leadsTo;
            save.Date = record.date;
            save.Ended = record.end != SaveRecord::Open;
            save.BackupNumber = record.backupNumber;
            save.Items = record.items;
            for (const SavedFile& file : record.files)
                save.Files.push_back(Told(
                    file,
                    JoinPath(self_->backupFolder, BackupName(file.backupName, record.backupNumber)),
                    list.IsRecorded(record)));
            saves.push_back(std::move(save));
        }
        return saves;
    });
}

std::int32_t clsHistory::State() {
    return Guarded("clsHistory.State", [&] { return self_->List().State(); });
}

bool clsHistory::UndoTo(std::int32_t Number) {
    return Guarded("clsHistory.UndoTo",
                   [&] { return self_->GoTo(self_->List(), Number, SaveRecord::Undo); });
}

bool clsHistory::Undo() {
    return Guarded("clsHistory.Undo", [&] {
        const SaveList list = self_->List();
        if (!list.Earlier())
            throw Failure(kInvalidProcedureCall, "There is no save to undo.");
        return self_->GoTo(list, *list.Earlier(), SaveRecord::Undo);
    });
}

bool clsHistory::Redo() {
    return Guarded("clsHistory.Redo", [&] {
        const SaveList list = self_->List();
        if (!list.Later())
            throw Failure(kInvalidProcedureCall, "There is no undo to take back.");
        return self_->GoTo(list, *list.Later(), SaveRecord::Redo);
    });
}

std::int32_t clsHistory::Prune(std::int32_t Keep) {
    return Guarded(
        "clsHistory.Prune",
        [&] {
            self_->List();
            return PruneHistory(*self_->files, self_->backupFolder, self_->dataFolder, Keep);
        },
        -1);
}

enmRecovery clsHistory::Recover(const std::string& Folder) {
    return Guarded(
        "clsHistory.Recover",
        [&] {
            const RecoveryReport report = tessaro::Recover(*self_->files, Folder);
            self_->notices.clear();
            if (!report.notice.empty())
                self_->notices.push_back(report.notice);
            return static_cast<enmRecovery>(report.state);
        },
        rcFailed);
}

bool clsHistory::Discard(const std::string& Folder, std::vector<std::string>& MovedTo) {
    return Guarded("clsHistory.Discard", [&] {
        self_->notices.clear();
        MovedTo = DiscardJournal(*self_->files, Folder, self_->backupFolder);
        return true;
    });
}

const std::vector<std::string>& clsHistory::Notices() const {
    return self_->notices;
}

}  // namespace tessaro
