// Folders of a game, by their real paths, and the locks on them.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tessaro/files.h"

namespace tessaro {

/// The real path of a folder; fails with number 76 where there is none.
std::string RealFolder(const Files& files, const std::string& folder);
/// The real folders in which the files of a set lie, each once, sorted: of each path the folder
/// that it names and, where it is a link, the one that the file lies in. A path of a folder stands
/// for itself.
std::vector<std::string> FoldersOf(const Files& files, const std::vector<std::string>& paths);

/// Locks on several folders. Everybody takes them in one order, so that nobody waits in a circle.
class FolderLocks {
public:
    FolderLocks() = default;
    /// `folders` as FoldersOf gives them.
    FolderLocks(Files& files, const std::vector<std::string>& folders, Sharing sharing);

    /// Whether every folder could be locked: not every file system has locks.
    bool Hold() const { return hold_; }
    void Release() {
        while (!locks_.empty())
            locks_.pop_back();
    }

private:
    std::vector<std::unique_ptr<FolderLock>> locks_;
    bool hold_ = true;
};

}  // namespace tessaro
