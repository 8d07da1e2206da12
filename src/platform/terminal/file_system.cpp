// Files and folders where names differ by case: a name that does not exist as given is looked for
// in its folder without regard to case.
#include <dirent.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string_view>
#include <system_error>

#include "platform/file.h"

namespace tessaro {
namespace {

bool Exists(const std::string& path, struct stat& status) {
    return ::stat(path.c_str(), &status) == 0;
}

/// Hands every entry of a folder to `visit`; false where it cannot be read.
template <class Visit>
bool ReadFolder(const std::string& folder, Visit&& visit) {
    struct Closer {
        void operator()(DIR* handle) const { ::closedir(handle); }
    };
    const std::unique_ptr<DIR, Closer> handle(::opendir(folder.c_str()));
    if (!handle)
        return false;
    while (const dirent* entry = ::readdir(handle.get()))
        visit(*entry);
    return true;
}

/// The system is asked only about what the folder itself does not tell.
bool IsFileIn(const std::string& folder, const dirent& entry) {
    if (entry.d_type != DT_UNKNOWN && entry.d_type != DT_LNK)
        return entry.d_type != DT_DIR;
    struct stat status {};
    return Exists(JoinPath(folder, entry.d_name), status) && !S_ISDIR(status.st_mode);
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
    std::string found;  // of several, the one that sorts first
    ReadFolder(hasFolder ? folder : ".", [&](const dirent& entry) {
        const std::string_view other = entry.d_name;
        if (SameName(name, other) && (found.empty() || other < found))
            found = other;
    });
    return found.empty() ? path : folder + found;
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
    const bool read = ReadFolder(folder, [&](const dirent& entry) {
        if (MatchesPattern(entry.d_name, pattern) && IsFileIn(folder, entry))
            names.emplace_back(entry.d_name);
    });
    if (!read)
        throw FailureFromErrno(errno, folder);
    SortNames(names);
    return names;
}

}  // namespace tessaro
