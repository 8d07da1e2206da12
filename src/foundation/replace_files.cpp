#include "foundation/replace_files.h"

#include "foundation/guard.h"
#include "foundation/store.h"
#include "platform/file.h"

namespace tessaro {
namespace {

std::string TemporaryName(const NewFile& file) {
    return file.path + ".new";
}

/// Removes what an undone replacement left, as far as the system lets it: the failure that caused
/// the undoing is the one that the user is told of.
void DeleteQuietly(const std::string& path) {
    try {
        if (FileExists(path))
            DeleteFileAt(path);
    } catch (const Failure&) {
    }
}

class Replacement {
public:
    explicit Replacement(const std::vector<NewFile>& files) : files_(files) {}

    bool Run() {
        bool anyOld = false;
        std::vector<std::string> names;
        for (const NewFile& file : files_) {
            anyOld = anyOld || FileExists(file.path);
            names.push_back(modGlobal::FileNameFromPath(file.path, false));
        }
        if (anyOld && SharedStore().backupFolder.empty())
            throw Failure(kPathNotFound, "No backup folder is set.");
        for (const NewFile& file : files_)
            WriteWholeFile(TemporaryName(file), file.content);

        number_ = anyOld ? modGlobal::NextBackupNumber(names) : 0;
        for (const NewFile& file : files_) {
            const bool exists = FileExists(file.path);
            if (exists && !modGlobal::BackupFile(file.path, number_))
                return false;
            backedUp_.push_back(exists);
        }
        for (const NewFile& file : files_) {
            ++moved_;
            MoveFileTo(TemporaryName(file), file.path);
        }
        return true;
    }

    void Undo() {
        for (std::size_t i = 0; i < files_.size(); ++i) {
            DeleteQuietly(TemporaryName(files_[i]));
            if (i < backedUp_.size() && backedUp_[i])
                BringBack(files_[i].path);
            else if (i < moved_ && i < backedUp_.size())
                DeleteQuietly(files_[i].path);
        }
    }

private:
    void BringBack(const std::string& path) {
        try {
            // The restore acts only over a file, so one is put where nothing stands.
            if (!FileExists(path))
                WriteWholeFile(path, {});
        } catch (const Failure&) {
        }
        modGlobal::RestoreFile(path, number_);
    }

    const std::vector<NewFile>& files_;
    std::int32_t number_ = 0;
    std::vector<bool> backedUp_;
    std::size_t moved_ = 0;
};

}  // namespace

bool ReplaceFiles(const std::vector<NewFile>& files) {
    Replacement replacement(files);
    bool done = false;
    try {
        done = replacement.Run();
    } catch (...) {
        const Failure failure = CurrentFailure();
        replacement.Undo();
        throw failure;
    }
    if (!done)
        replacement.Undo();
    return done;
}

}  // namespace tessaro
