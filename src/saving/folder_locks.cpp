#include "saving/folder_locks.h"

#include <algorithm>

#include "foundation/names.h"
#include "tessaro/failure.h"

namespace tessaro {

std::string RealFolder(const Files& files, const std::string& folder) {
    const auto kind = files.Kind(folder);
    if (!kind || kind->type != FileKind::Folder)
        throw Failure(kPathNotFound, "There is no such folder: " + folder);
    return kind->realPath;
}

std::vector<std::string> FoldersOf(const Files& files, const std::vector<std::string>& paths) {
    std::vector<std::string> folders;
    for (const std::string& path : paths) {
        const auto kind = files.Kind(path);
        if (kind && kind->type == FileKind::Folder) {
            folders.push_back(kind->realPath);
            continue;
        }
        folders.push_back(RealFolder(files, FolderOf(path)));
        if (kind)
            folders.push_back(FolderOf(kind->realPath));
    }
    std::ranges::sort(folders);
    folders.erase(std::unique(folders.begin(), folders.end()), folders.end());
    return folders;
}

FolderLocks::FolderLocks(Files& files, const std::vector<std::string>& folders, Sharing sharing) {
    for (const std::string& folder : folders) {
        locks_.push_back(files.Lock(folder, sharing));
        hold_ = hold_ && locks_.back();
    }
}

}  // namespace tessaro
