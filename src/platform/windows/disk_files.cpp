// The disks of a system that finds names without regard to case by itself, shares files by what
// their openers allow, and has no lock that a folder could carry.
#include <windows.h>

#include <aclapi.h>

#include <algorithm>
#include <chrono>
#include <limits>
#include <memory>
#include <thread>
#include <utility>

#include "foundation/names.h"
#include "platform/windows/wide.h"
#include "tessaro/files.h"

namespace tessaro {
namespace {

using namespace std::chrono_literals;

constexpr std::uint64_t kLargestFile = std::numeric_limits<std::int32_t>::max();
constexpr const char* kLockName = ".tessaro.lock";
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

bool IsPassing(DWORD error) {
    return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION;
}

/// Virus scanners and indexers hold files for moments: what they are in the way of is tried again
/// for a second. `operation` tells whether it worked, `passes` whether an error may pass by itself.
template <class Operation>
bool Patiently(Operation&& operation, bool (*passes)(DWORD) = IsPassing) {
    const auto until = std::chrono::steady_clock::now() + 1s;
    while (!operation()) {
        const DWORD error = GetLastError();
        if (!passes(error) || std::chrono::steady_clock::now() >= until) {
            SetLastError(error);
            return false;
        }
        std::this_thread::sleep_for(20ms);
    }
    return true;
}

/// An open file or folder. What is written must be closed by Close, which tells of failures.
class Handle {
public:
    /// Whether it was opened; GetLastError tells why not.
    bool Open(const std::wstring& path, DWORD access, DWORD sharing, DWORD creation, DWORD flags) {
        return Patiently([&] { return TryOpen(path, access, sharing, creation, flags); });
    }
    bool TryOpen(const std::wstring& path, DWORD access, DWORD sharing, DWORD creation,
                 DWORD flags) {
        handle_ = CreateFileW(path.c_str(), access, sharing, nullptr, creation, flags, nullptr);
        return handle_ != INVALID_HANDLE_VALUE;
    }
    Handle() = default;
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() {
        if (handle_ != INVALID_HANDLE_VALUE)
            CloseHandle(handle_);
    }

    HANDLE Get() const { return handle_; }
    bool Write(ByteSpan bytes) const {
        while (!bytes.empty()) {
            DWORD count = 0;
            const auto part = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), 1u << 20));
            if (!WriteFile(handle_, bytes.data(), part, &count, nullptr))
                return false;
            bytes = bytes.subspan(count);
        }
        return true;
    }
    bool Close() { return CloseHandle(std::exchange(handle_, INVALID_HANDLE_VALUE)) != 0; }

private:
    HANDLE handle_ = INVALID_HANDLE_VALUE;
};

class DiskLock final : public FolderLock {
public:
    explicit DiskLock(std::unique_ptr<Handle> file) : file_(std::move(file)) {}

private:
    std::unique_ptr<Handle> file_;  ///< deleted when it is closed
};

[[noreturn]] void ThrowLast(const std::string& path) {
    throw FailureFromSystem(GetLastError(), path);
}

bool IsMissing(DWORD error) {
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND ||
           error == ERROR_INVALID_NAME || error == ERROR_INVALID_DRIVE ||
           error == ERROR_BAD_NETPATH || error == ERROR_BAD_NET_NAME;
}

/// With links followed and in the spelling of the folders.
std::string RealPath(HANDLE file, const std::string& path) {
    std::wstring real(32768, L'\0');
    real.resize(GetFinalPathNameByHandleW(file, real.data(), static_cast<DWORD>(real.size()),
                                          FILE_NAME_NORMALIZED | VOLUME_NAME_DOS));
    if (real.empty()) {  // a drive that has no such names
        const std::wstring wide = WidePath(path);
        real.resize(32768);
        real.resize(
            GetFullPathNameW(wide.c_str(), static_cast<DWORD>(real.size()), real.data(), nullptr));
    }
    if (real.starts_with(L"\\\\?\\UNC\\"))
        return "\\" + Utf8(real.substr(7));
    return Utf8(real.starts_with(L"\\\\?\\") ? real.substr(4) : real);
}

/// Who may read and write the file, as it was set for this one; what it inherits comes by itself.
void TakeAfter(HANDLE file, const std::wstring& like) {
    PACL list = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (GetNamedSecurityInfoW(like.c_str(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr,
                              nullptr, &list, nullptr, &descriptor) != ERROR_SUCCESS)
        return;  // a drive without them
    const std::unique_ptr<void, HLOCAL(WINAPI*)(HLOCAL)> owner(descriptor, LocalFree);
    SECURITY_DESCRIPTOR_CONTROL control = 0;
    DWORD revision = 0;
    GetSecurityDescriptorControl(descriptor, &control, &revision);
    const SECURITY_INFORMATION inherits = (control & SE_DACL_PROTECTED) != 0
                                              ? PROTECTED_DACL_SECURITY_INFORMATION
                                              : UNPROTECTED_DACL_SECURITY_INFORMATION;
    const DWORD error = SetSecurityInfo(file, SE_FILE_OBJECT, DACL_SECURITY_INFORMATION | inherits,
                                        nullptr, nullptr, list, nullptr);
    if (error != ERROR_SUCCESS && error != ERROR_NOT_SUPPORTED)
        SetLastError(error), ThrowLast(Utf8(like));
}

class Disk final : public Files {
public:
    ByteArray Read(const std::string& path) const override {
        Handle file;
        const std::uint64_t size = OpenToRead(file, path);
        if (size > kLargestFile)
            throw Failure(kOutOfMemory, "The file has 2 GiB or more: " + path);
        return ReadFrom(file, path, 0, static_cast<std::size_t>(size));
    }

    ByteArray ReadAt(const std::string& path, std::uint64_t offset,
                     std::size_t size) const override {
        Handle file;
        const std::uint64_t end = OpenToRead(file, path);
        const std::uint64_t rest = offset < end ? end - offset : 0;
        return ReadFrom(file, path, offset,
                        static_cast<std::size_t>(std::min<std::uint64_t>(size, rest)));
    }

    std::optional<FileKind> Kind(const std::string& path) const override {
        const std::wstring wide = WidePath(path);
        Handle file;
        FileKind kind;
        if (!file.Open(wide, FILE_READ_ATTRIBUTES, kShareAll, OPEN_EXISTING,
                       FILE_FLAG_BACKUP_SEMANTICS)) {
            const DWORD error = GetLastError();
            if (!IsMissing(error))
                throw FailureFromSystem(error, path);
            if (GetFileAttributesW(wide.c_str()) == INVALID_FILE_ATTRIBUTES)
                return std::nullopt;
            kind.type = FileKind::Other;  // a link that leads nowhere
            kind.realPath = path;
            return kind;
        }
        BY_HANDLE_FILE_INFORMATION told{};
        if (GetFileType(file.Get()) != FILE_TYPE_DISK ||
            !GetFileInformationByHandle(file.Get(), &told)) {
            kind.type = FileKind::Other;
            kind.realPath = path;
            return kind;
        }
        const bool folder = (told.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        kind.type = folder ? FileKind::Folder : FileKind::Regular;
        kind.realPath = RealPath(file.Get(), path);
        kind.identity = std::to_string(told.dwVolumeSerialNumber) + "/" +
                        std::to_string(Joined(told.nFileIndexHigh, told.nFileIndexLow));
        kind.size = folder ? 0 : Joined(told.nFileSizeHigh, told.nFileSizeLow);
        // From 100 nanoseconds since 1601.
        kind.time = static_cast<std::int64_t>(Joined(told.ftLastWriteTime.dwHighDateTime,
                                                     told.ftLastWriteTime.dwLowDateTime) -
                                              116'444'736'000'000'000) *
                    100;
        kind.readOnly =
            !folder && ((told.dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0 || !MayWrite(wide));
        return kind;
    }

    std::vector<std::string> List(const std::string& folder) const override {
        std::vector<std::string> names;
        WIN32_FIND_DATAW entry{};
        const HANDLE search =
            FindFirstFileExW(WidePath(JoinPath(folder, "*")).c_str(), FindExInfoBasic, &entry,
                             FindExSearchNameMatch, nullptr, FIND_FIRST_EX_LARGE_FETCH);
        if (search == INVALID_HANDLE_VALUE) {
            if (GetLastError() == ERROR_FILE_NOT_FOUND)  // the empty root of a drive
                return names;
            ThrowLast(folder);
        }
        do {
            if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
                names.push_back(Utf8(entry.cFileName));
        } while (FindNextFileW(search, &entry));
        const DWORD error = GetLastError();
        FindClose(search);
        if (error != ERROR_NO_MORE_FILES)
            throw FailureFromSystem(error, folder);
        SortNames(names);
        return names;
    }

    void Create(const std::string& path, ByteSpan bytes, Flushed flushed,
                const std::string& like) override {
        const std::wstring wide = WidePath(path);
        const std::wstring model = like.empty() ? std::wstring() : WidePath(like);
        DWORD attributes = FILE_ATTRIBUTE_NORMAL;
        if (!like.empty()) {
            attributes = GetFileAttributesW(model.c_str());
            if (attributes == INVALID_FILE_ATTRIBUTES)
                ThrowLast(like);
            attributes &= FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE |
                          FILE_ATTRIBUTE_NOT_CONTENT_INDEXED | FILE_ATTRIBUTE_ENCRYPTED;
        }
        Handle file;
        const DWORD access = GENERIC_WRITE | (like.empty() ? 0 : DWORD{READ_CONTROL | WRITE_DAC});
        if (!file.Open(wide, access, FILE_SHARE_READ, CREATE_NEW, attributes))
            ThrowLast(path);
        try {
            if (!like.empty())
                TakeAfter(file.Get(), model);
            if (!file.Write(bytes) || (flushed == Flushed::Yes && !FlushFileBuffers(file.Get())) ||
                !file.Close())
                ThrowLast(path);
        } catch (...) {
            if (file.Get() != INVALID_HANDLE_VALUE)
                file.Close();
            DeleteFileW(wide.c_str());
            throw;
        }
    }

    void Append(const std::string& path, ByteSpan bytes, Flushed flushed) override {
        Handle file;
        const auto kind = Kind(path);
        const DWORD access =
            kind && kind->type == FileKind::Other ? DWORD{GENERIC_WRITE} : DWORD{FILE_APPEND_DATA};
        if (!file.Open(WidePath(path), access, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_ALWAYS,
                       FILE_ATTRIBUTE_NORMAL) ||
            !file.Write(bytes) || (flushed == Flushed::Yes && !FlushFileBuffers(file.Get())) ||
            !file.Close())
            ThrowLast(path);
    }

    void Rename(const std::string& from, const std::string& to, IfTaken ifTaken) override {
        const std::wstring source = WidePath(from), target = WidePath(to);
        const bool replaces = ifTaken == IfTaken::Replaces;
        const DWORD flags =
            MOVEFILE_WRITE_THROUGH | (replaces ? DWORD{MOVEFILE_REPLACE_EXISTING} : 0);
        // A target that somebody has open is told as "access denied".
        const auto passes = [](DWORD error) {
            return IsPassing(error) || error == ERROR_ACCESS_DENIED;
        };
        if (!Patiently([&] { return MoveFileExW(source.c_str(), target.c_str(), flags) != 0; },
                       replaces ? static_cast<bool (*)(DWORD)>(passes) : IsPassing))
            ThrowLast(to);
    }

    /// Renames are written through; what else a folder has to keep is flushed where the system can.
    void FlushFolder(const std::string& folder) override {
        Handle handle;
        const auto isNotSupported = [](DWORD error) {
            return error == ERROR_ACCESS_DENIED || error == ERROR_INVALID_FUNCTION ||
                   error == ERROR_NOT_SUPPORTED || error == ERROR_INVALID_HANDLE ||
                   error == ERROR_INVALID_PARAMETER;
        };
        if ((!handle.Open(WidePath(folder), FILE_ADD_FILE | SYNCHRONIZE, kShareAll, OPEN_EXISTING,
                          FILE_FLAG_BACKUP_SEMANTICS) ||
             !FlushFileBuffers(handle.Get())) &&
            !isNotSupported(GetLastError()))
            ThrowLast(folder);
    }

    void Remove(const std::string& path) override {
        const std::wstring wide = WidePath(path);
        if (!Patiently([&] { return DeleteFileW(wide.c_str()) != 0; }))
            ThrowLast(path);
    }

    void MakeFolder(const std::string& path) override {
        if (!CreateDirectoryW(WidePath(path).c_str(), nullptr))
            ThrowLast(path);
    }

    /// Readers have no lock. A saver's is a file that nobody else can open and that goes with its
    /// last handle; one that was left is none.
    std::unique_ptr<FolderLock> Lock(const std::string& folder, Sharing sharing) override {
        if (sharing == Sharing::Shared)
            return nullptr;
        const std::wstring path = WidePath(JoinPath(folder, kLockName));
        const auto until = std::chrono::steady_clock::now() + 2s;
        for (;;) {
            auto file = std::make_unique<Handle>();
            if (file->TryOpen(path, GENERIC_READ | GENERIC_WRITE | DELETE, 0, OPEN_ALWAYS,
                              FILE_ATTRIBUTE_HIDDEN | FILE_FLAG_DELETE_ON_CLOSE))
                return std::make_unique<DiskLock>(std::move(file));
            const DWORD error = GetLastError();
            // The file of another's lock that is being deleted denies access.
            if (!IsPassing(error) && error != ERROR_ACCESS_DENIED)
                throw FailureFromSystem(error, folder);
            if (std::chrono::steady_clock::now() >= until)
                throw Failure(kPermissionDenied,
                              error == ERROR_ACCESS_DENIED
                                  ? "The folder cannot be written: " + folder
                                  : "The folder is in use by another program: " + folder);
            std::this_thread::sleep_for(10ms);
        }
    }

private:
    static std::uint64_t Joined(DWORD high, DWORD low) { return std::uint64_t{high} << 32 | low; }

    static bool MayWrite(const std::wstring& path) {
        Handle file;
        return file.TryOpen(path, GENERIC_WRITE, kShareAll, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL) ||
               (GetLastError() != ERROR_ACCESS_DENIED && GetLastError() != ERROR_WRITE_PROTECT);
    }

    /// The file's size; what is no regular file is refused.
    static std::uint64_t OpenToRead(Handle& file, const std::string& path) {
        const std::wstring wide = WidePath(path);
        if (!file.Open(wide, GENERIC_READ, kShareAll, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL)) {
            const DWORD error = GetLastError();
            const DWORD attributes = GetFileAttributesW(wide.c_str());
            if (attributes != INVALID_FILE_ATTRIBUTES &&
                (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
                throw Failure(kPathFileAccess, "This is no regular file: " + path);
            throw FailureFromSystem(error, path);
        }
        LARGE_INTEGER size{};
        if (GetFileType(file.Get()) != FILE_TYPE_DISK)
            throw Failure(kPathFileAccess, "This is no regular file: " + path);
        if (!GetFileSizeEx(file.Get(), &size))
            ThrowLast(path);
        return static_cast<std::uint64_t>(size.QuadPart);
    }

    static ByteArray ReadFrom(const Handle& file, const std::string& path, std::uint64_t offset,
                              std::size_t size) {
        ByteArray bytes(size);
        LARGE_INTEGER from{};
        from.QuadPart = static_cast<LONGLONG>(offset);
        if (!SetFilePointerEx(file.Get(), from, nullptr, FILE_BEGIN))
            ThrowLast(path);
        std::size_t done = 0;
        while (done < size) {
            DWORD count = 0;
            const auto part = static_cast<DWORD>(std::min<std::size_t>(size - done, 1u << 20));
            if (!ReadFile(file.Get(), bytes.data() + done, part, &count, nullptr))
                ThrowLast(path);
            if (count == 0)
                break;
            done += count;
        }
        bytes.resize(done);
        return bytes;
    }
};

}  // namespace

std::shared_ptr<Files> DiskFiles() {
    static const std::shared_ptr<Files> disk = std::make_shared<Disk>();
    return disk;
}

}  // namespace tessaro
