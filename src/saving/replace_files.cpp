#include "saving/replace_files.h"

#include "foundation/guard.h"
#include "foundation/store.h"
#include "platform/file.h"

namespace tessaro {
namespace {

std::string TemporaryName(const std::string& path) {
    return path + ".new";
}

/// One step of undoing. Undoing goes on as far as the system lets it, also where a failure cannot
/// even be logged: the failure that caused it is the one that the caller is told of.
template <class Step>
void Quietly(Step&& step) {
    try {
        step();
    } catch (...) {
    }
}

void DeleteIfThere(const std::string& path) {
    if (FileExists(path))
        DeleteFileAt(path);
}

class Replacement {
public:
    explicit Replacement(const std::vector<NewFile>& files) : files_(files) {
        // The names keep the case that they have in their folder.
        for (const NewFile& file : files) {
            paths_.push_back(ResolveCase(file.path));
            for (std::size_t i = 0; i + 1 < paths_.size(); ++i) {
                if (SameName(paths_[i], paths_.back()))
                    throw Failure(kBadFileNameOrNumber,
                                  "Two files to be written have one name: " + paths_.back());
            }
        }
    }

    bool Run() {
        bool anyOld = false;
        std::vector<std::string> names;
        for (const std::string& path : paths_) {
            anyOld = anyOld || FileExists(path);
            names.push_back(modGlobal::FileNameFromPath(path, false));
        }
        if (anyOld && ConfiguredGame().backupFolder.empty())
            throw Failure(kPathNotFound, "No backup folder is set.");
        for (std::size_t i = 0; i < paths_.size(); ++i) {
            ++written_;
            WriteWholeFile(TemporaryName(paths_[i]), files_[i].content);
        }

        number_ = anyOld ? modGlobal::NextBackupNumber(names) : 0;
        for (const std::string& path : paths_) {
            const bool exists = FileExists(path);
            if (exists && !modGlobal::BackupFile(path, number_))
                return false;
            backedUp_.push_back(exists);
        }
        for (const std::string& path : paths_) {
            ++moved_;
            MoveFileTo(TemporaryName(path), path);
        }
        return true;
    }

    void Undo() {
        for (std::size_t i = 0; i < written_; ++i) {
            const std::string& path = paths_[i];
            Quietly([&] { DeleteIfThere(TemporaryName(path)); });
            if (i < backedUp_.size() && backedUp_[i])
                BringBack(path);
            else if (i < moved_)
                Quietly([&] { DeleteIfThere(path); });
        }
    }

private:
    void BringBack(const std::string& path) {
        // The restore acts only over a file, so one is put where nothing stands.
        Quietly([&] {
            if (!FileExists(path))
                WriteWholeFile(path, {});
        });
        Quietly([&] { modGlobal::RestoreFile(path, number_); });
    }

    const std::vector<NewFile>& files_;
    std::vector<std::string> paths_;
    std::int32_t number_ = 0;
    std::size_t written_ = 0;
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
