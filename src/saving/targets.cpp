#include "saving/targets.h"

#include "foundation/names.h"
#include "saving/folder_locks.h"
#include "tessaro/failure.h"

namespace tessaro {

Target FindTarget(const Files& files, const std::string& path, std::optional<ByteSpan> bytes) {
    Target target;
    target.backupName = NameOf(path);
    const std::string folder = RealFolder(files, FolderOf(path));
    if (const auto kind = files.Kind(path)) {
        if (kind->type != FileKind::Regular)
            throw Failure(kPathFileAccess, "This is no regular file: " + path);
        if (kind->readOnly)
            throw Failure(kPermissionDenied, "The file is read-only: " + path);
        target.path = kind->realPath;
        target.folder = FolderOf(kind->realPath);
        if (SameName(NameOf(target.path), target.backupName))
            target.backupName = NameOf(target.path);
        target.before = files.Read(target.path);
        target.printBefore = PrintOf(*target.before);
    } else {
        target.folder = folder;
        target.path = JoinPath(folder, target.backupName);
    }
    target.place = JoinPath(folder, target.backupName);
    target.after = bytes;
    if (bytes)
        target.printAfter = PrintOf(*bytes);
    return target;
}

std::vector<Target> FindTargets(const Files& files, const SavePlan& plan) {
    std::vector<Target> targets;
    const auto add = [&](const std::string& path, std::optional<ByteSpan> bytes) {
        Target target = FindTarget(files, path, bytes);
        for (const Target& other : targets) {
            // Two files of one name, in different folders, would be one in the backup folder.
            if (SameName(target.path, other.path) || SameName(target.backupName, other.backupName))
                throw Failure(kBadFileNameOrNumber,
                              "Two files to be written have one name: " + path);
        }
        targets.push_back(std::move(target));
    };
    for (const NewFile& file : plan.files)
        add(file.path, file.content);
    for (const std::string& path : plan.removed)
        add(path, std::nullopt);
    return targets;
}

void RequireUnchanged(const Files& files, const std::vector<DataFile*>& read) {
    std::string changed;
    for (DataFile* file : read) {
        if (!file->WasRead())
            continue;
        const ByteArray now = files.Kind(file->Path()) ? files.Read(file->Path()) : ByteArray();
        if (file->Is(now))
            continue;
        file->Assume(now);
        changed += (changed.empty() ? "" : ", ") + file->Path();
    }
    if (!changed.empty())
        throw Failure(kPermissionDenied,
                      "Changed by another program since it was read: " + changed +
                          ". Nothing was saved. Saving again replaces it; its content goes to the "
                          "backups.");
}

}  // namespace tessaro
