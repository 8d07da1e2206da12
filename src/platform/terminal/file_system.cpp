// Files and folders where names differ by case: a name that does not exist as given is looked for
// in its folder without regard to case.
#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <system_error>

#include "platform/file.h"

namespace tessaro {
namespace {

bool Exists(const std::string& path, struct stat& status) {
    return ::stat(path.c_str(), &status) == 0;
}

/// Every name in a folder, sorted without regard to case; false where it cannot be read.
bool ReadFolder(const std::string& folder, std::vector<std::string>& names) {
    struct Closer {
        void operator()(DIR* handle) const { ::closedir(handle); }
    };
    const std::unique_ptr<DIR, Closer> handle(::opendir(folder.c_str()));
    if (!handle)
        return false;
    while (const dirent* entry = ::readdir(handle.get()))
        names.emplace_back(entry->d_name);
    std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
        const std::string upperA = UpperCase(a), upperB = UpperCase(b);
        return upperA != upperB ? upperA < upperB : a < b;
    });
    return true;
}

}  // namespace

std::string ResolveCase(const std::string& path) {
    struct stat status {};
    if (path.empty() || Exists(path, status))
        return path;
    const std::size_t separator = LastSeparator(path);
    const bool hasFolder = separator != std::string::npos;
    const std::string folder = hasFolder ? path.substr(0, separator + 1) : std::string();
    const std::string name = hasFolder ? path.substr(separator + 1) : path;
    std::vector<std::string> names;
    if (!ReadFolder(hasFolder ? folder : ".", names))
        return path;
    const auto found = std::find_if(names.begin(), names.end(), [&](const std::string& other) {
        return SameName(name, other);
    });
    return found == names.end() ? path : folder + *found;
}

bool SameFile(const std::string& a, const std::string& b) {
    std::error_code errorA, errorB;
    const auto fullA = std::filesystem::weakly_canonical(ResolveCase(a), errorA);
    const auto fullB = std::filesystem::weakly_canonical(ResolveCase(b), errorB);
    return errorA || errorB ? a == b : fullA == fullB;
}

bool FileExists(const std::string& path) {
    struct stat status {};
    return Exists(ResolveCase(path), status) && !S_ISDIR(status.st_mode);
}

bool FolderExists(const std::string& path) {
    struct stat status {};
    return Exists(path, status) && S_ISDIR(status.st_mode);
}

void MoveFileTo(const std::string& from, const std::string& to) {
    const std::string source = ResolveCase(from), target = ResolveCase(to);
    CallFileOperationHook(FileOperation::Move, source);
    if (std::rename(source.c_str(), target.c_str()) == 0)
        return;
    if (errno != EXDEV)
        throw FailureFromErrno(errno, source);
    CopyFileTo(source, target);
    DeleteFileAt(source);
}

void CreateFolder(const std::string& path) {
    CallFileOperationHook(FileOperation::CreateFolder, path);
    if (::mkdir(path.c_str(), 0777) != 0)
        throw FailureFromErrno(errno, path);
}

std::vector<std::string> ListFiles(const std::string& folder, std::string_view pattern) {
    std::vector<std::string> names;
    if (!ReadFolder(folder, names))
        throw FailureFromErrno(errno, folder);
    std::erase_if(names, [&](const std::string& name) {
        struct stat status {};
        return !MatchesPattern(name, pattern) || !Exists(JoinPath(folder, name), status) ||
               S_ISDIR(status.st_mode);
    });
    return names;
}

}  // namespace tessaro
