// Files and folders through the system's ANSI functions.
#include <windows.h>

#include <algorithm>
#include <cerrno>

#include "platform/file.h"

namespace tessaro {
namespace {

Failure FailureFromLastError(const std::string& path) {
    switch (GetLastError()) {
        case ERROR_FILE_NOT_FOUND:
        case ERROR_PATH_NOT_FOUND:
            return FailureFromErrno(ENOENT, path);
        case ERROR_ACCESS_DENIED:
        case ERROR_SHARING_VIOLATION:
        case ERROR_LOCK_VIOLATION:
        case ERROR_WRITE_PROTECT:
            return Failure(kPermissionDenied);
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL:
            return Failure(kDiskFull);
        case ERROR_INVALID_NAME:
            return Failure(kBadFileNameOrNumber);
        default:
            return Failure(kPathFileAccess);
    }
}

DWORD Attributes(const std::string& path) {
    return GetFileAttributesA(path.c_str());
}

/// From the drive on, with backslashes and without "." and "..".
std::string FullPath(const std::string& path) {
    std::string full(GetFullPathNameA(path.c_str(), 0, nullptr, nullptr), '\0');
    full.resize(
        GetFullPathNameA(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
    return full;
}

}  // namespace

std::string ResolveCase(const std::string& path) {
    if (path.find_first_of("*?") != std::string::npos)  // would be a pattern
        return path;
    WIN32_FIND_DATAA entry{};
    const HANDLE search = FindFirstFileA(path.c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE)
        return path;
    FindClose(search);
    return path.substr(0, LastSeparator(path) + 1) + entry.cFileName;  // npos + 1 is 0
}

bool SameFile(const std::string& a, const std::string& b) {
    const std::string fullA = FullPath(a), fullB = FullPath(b);
    return CompareStringA(LOCALE_INVARIANT, NORM_IGNORECASE, fullA.c_str(), -1, fullB.c_str(),
                          -1) == CSTR_EQUAL;
}

bool FileExists(const std::string& path) {
    const DWORD attributes = Attributes(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

bool FolderExists(const std::string& path) {
    const DWORD attributes = Attributes(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

void MoveFileTo(const std::string& from, const std::string& to) {
    CallFileOperationHook(FileOperation::Move, from);
    if (!MoveFileExA(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_COPY_ALLOWED))
        throw FailureFromLastError(from);
}

void CreateFolder(const std::string& path) {
    CallFileOperationHook(FileOperation::CreateFolder, path);
    if (!CreateDirectoryA(path.c_str(), nullptr))
        throw FailureFromLastError(path);
}

std::vector<std::string> ListFiles(const std::string& folder, std::string_view pattern) {
    std::vector<std::string> names;
    WIN32_FIND_DATAA entry{};
    const HANDLE search = FindFirstFileA(JoinPath(folder, "*").c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE) {
        if (GetLastError() == ERROR_FILE_NOT_FOUND)  // the empty root of a drive
            return names;
        throw FailureFromLastError(folder);
    }
    do {
        if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0 &&
            MatchesPattern(entry.cFileName, pattern))
            names.emplace_back(entry.cFileName);
    } while (FindNextFileA(search, &entry));
    FindClose(search);
    std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
        return UpperCase(a) < UpperCase(b);
    });
    return names;
}

}  // namespace tessaro
