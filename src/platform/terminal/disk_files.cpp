// The disks of a system whose names differ by case: a name that does not exist as given is looked
// for in its folder without regard to case.
#include <dirent.h>
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <limits>
#include <memory>
#include <thread>
#include <utility>

#include "foundation/names.h"
#include "platform/file.h"
#include "tessaro/files.h"

namespace tessaro {
namespace {

constexpr std::uint64_t kLargestFile = std::numeric_limits<std::int32_t>::max();

/// An open file or folder. What is written must be closed by Close, which tells of failures.
class Descriptor {
public:
    Descriptor(const std::string& path, int flags, mode_t mode = 0666) : path_(path) {
        do {
            number_ = ::open(path.c_str(), flags | O_CLOEXEC, mode);
        } while (number_ < 0 && errno == EINTR);
        if (number_ < 0)
            throw FailureFromErrno(errno, path);
    }
    Descriptor(Descriptor&& other) noexcept
        : path_(std::move(other.path_)), number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&&) = delete;
    ~Descriptor() {
        if (number_ >= 0)
            ::close(number_);
    }

    int Number() const { return number_; }
    struct stat Status() const {
        struct stat status {};
        if (::fstat(number_, &status) != 0)
            throw FailureFromErrno(errno, path_);
        return status;
    }
    ByteArray ReadAt(std::uint64_t offset, std::size_t size) const {
        ByteArray bytes(size);
        std::size_t done = 0;
        while (done < size) {
            const ssize_t count = ::pread(number_, bytes.data() + done, size - done,
                                          static_cast<off_t>(offset + done));
            if (count < 0 && errno == EINTR)
                continue;
            if (count < 0)
                throw FailureFromErrno(errno, path_);
            if (count == 0)
                break;
            done += static_cast<std::size_t>(count);
        }
        bytes.resize(done);
        return bytes;
    }
    void Write(ByteSpan bytes) {
        while (!bytes.empty()) {
            const ssize_t count = ::write(number_, bytes.data(), bytes.size());
            if (count < 0 && errno == EINTR)
                continue;
            if (count < 0)
                throw FailureFromErrno(errno, path_);
            bytes = bytes.subspan(static_cast<std::size_t>(count));
        }
    }
    void Flush() {
        if (::fsync(number_) != 0 && errno != EINVAL && errno != ENOTSUP)
            throw FailureFromErrno(errno, path_);
    }
    void Close() {
        const int number = std::exchange(number_, -1);
        if (::close(number) != 0 && errno != EINTR)
            throw FailureFromErrno(errno, path_);
    }

private:
    std::string path_;
    int number_ = -1;
};

class DiskLock final : public FolderLock {
public:
    explicit DiskLock(std::unique_ptr<Descriptor> folder) : folder_(std::move(folder)) {}

private:
    std::unique_ptr<Descriptor> folder_;
};

std::string RealPath(const std::string& path) {
    const std::unique_ptr<char, void (*)(void*)> real(::realpath(path.c_str(), nullptr), std::free);
    if (!real)
        throw FailureFromErrno(errno, path);
    return real.get();
}

std::string Identity(const struct stat& status) {
    return std::to_string(status.st_dev) + "/" + std::to_string(status.st_ino);
}

class Disk final : public Files {
public:
    ByteArray Read(const std::string& path) const override {
        const Descriptor file = Open(path);
        const auto size = static_cast<std::uint64_t>(file.Status().st_size);
        if (size > kLargestFile)
            throw Failure(kOutOfMemory, "The file has 2 GiB or more: " + path);
        return file.ReadAt(0, static_cast<std::size_t>(size));
    }

    ByteArray ReadAt(const std::string& path, std::uint64_t offset,
                     std::size_t size) const override {
        const Descriptor file = Open(path);
        const auto end = static_cast<std::uint64_t>(file.Status().st_size);
        const std::uint64_t rest = offset < end ? end - offset : 0;
        return file.ReadAt(offset, static_cast<std::size_t>(std::min<std::uint64_t>(size, rest)));
    }

    std::optional<FileKind> Kind(const std::string& path) const override {
        const std::string name = ResolveCase(path);
        struct stat status {};
        if (::stat(name.c_str(), &status) != 0) {
            if (errno != ENOENT && errno != ENOTDIR)
                throw FailureFromErrno(errno, name);
            if (::lstat(name.c_str(), &status) != 0)
                return std::nullopt;
            FileKind nowhere;  // a link whose file is gone: nothing may take its place unseen
            nowhere.type = FileKind::Other;
            nowhere.realPath = name;
            nowhere.identity = Identity(status);
            return nowhere;
        }
        FileKind kind;
        kind.type = S_ISREG(status.st_mode)   ? FileKind::Regular
                    : S_ISDIR(status.st_mode) ? FileKind::Folder
                                              : FileKind::Other;
        kind.realPath = RealPath(name);
        kind.identity = Identity(status);
        kind.size = static_cast<std::uint64_t>(status.st_size);
        kind.time = static_cast<std::int64_t>(status.st_mtim.tv_sec) * 1'000'000'000 +
                    status.st_mtim.tv_nsec;
        kind.readOnly = (status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0 ||
                        ::access(name.c_str(), W_OK) != 0;
        return kind;
    }

    std::vector<std::string> List(const std::string& folder) const override {
        return ListFiles(folder, "*");
    }

    void Create(const std::string& path, ByteSpan bytes, Flushed flushed,
                const std::string& like) override {
        if (path != ResolveCase(path))  // taken, spelt in another case
            throw FailureFromErrno(EEXIST, path);
        Descriptor file(path, O_WRONLY | O_CREAT | O_EXCL);
        try {
            if (!like.empty())
                TakeAfter(file, ResolveCase(like));
            file.Write(bytes);
            if (flushed == Flushed::Yes)
                file.Flush();
            file.Close();
        } catch (...) {
            ::unlink(path.c_str());
            throw;
        }
    }

    void Append(const std::string& path, ByteSpan bytes, Flushed flushed) override {
        Descriptor file(ResolveCase(path), O_WRONLY | O_CREAT | O_APPEND);
        file.Write(bytes);
        if (flushed == Flushed::Yes)
            file.Flush();
        file.Close();
    }

    void Rename(const std::string& from, const std::string& to, IfTaken ifTaken) override {
        const std::string source = ResolveCase(from), target = ResolveCase(to);
        if (ifTaken == IfTaken::Replaces) {
            if (::rename(source.c_str(), target.c_str()) != 0)
                throw FailureFromErrno(errno, target);
            return;
        }
        if (target != to)
            throw FailureFromErrno(EEXIST, to);
#ifdef RENAME_NOREPLACE
        if (::renameat2(AT_FDCWD, source.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
            return;
        if (errno != EINVAL && errno != ENOSYS)
            throw FailureFromErrno(errno, to);
#endif
        // A second name is only ever made where there is none.
        if (::link(source.c_str(), to.c_str()) != 0)
            throw FailureFromErrno(errno, to);
        if (::unlink(source.c_str()) != 0)
            throw FailureFromErrno(errno, source);
    }

    void FlushFolder(const std::string& folder) override {
        Descriptor(folder, O_RDONLY | O_DIRECTORY).Flush();
    }

    void Remove(const std::string& path) override {
        const std::string name = ResolveCase(path);
        if (::unlink(name.c_str()) != 0)
            throw FailureFromErrno(errno, name);
    }

    void MakeFolder(const std::string& path) override {
        if (::mkdir(path.c_str(), 0777) != 0)
            throw FailureFromErrno(errno, path);
    }

    std::unique_ptr<FolderLock> Lock(const std::string& folder, Sharing sharing) override {
        using namespace std::chrono_literals;
        const int kind = sharing == Sharing::Exclusive ? LOCK_EX : LOCK_SH;
        const auto until = std::chrono::steady_clock::now() + 2s;
        for (;;) {
            if (::access(folder.c_str(), R_OK) != 0 && errno == EACCES)
                return nullptr;  // it can be entered but not be opened
            auto opened = std::make_unique<Descriptor>(folder, O_RDONLY | O_DIRECTORY);
            if (::flock(opened->Number(), kind | LOCK_NB) == 0) {
                struct stat now {};
                // While this waited, another folder may have taken the place of the one opened.
                if (::stat(folder.c_str(), &now) == 0 &&
                    Identity(now) == Identity(opened->Status()))
                    return std::make_unique<DiskLock>(std::move(opened));
            } else if (errno != EWOULDBLOCK && errno != EINTR) {
                return nullptr;  // a file system without locks
            }
            if (std::chrono::steady_clock::now() >= until)
                throw Failure(kPermissionDenied,
                              "The folder is in use by another program: " + folder);
            std::this_thread::sleep_for(10ms);
        }
    }

private:
    /// For reading; what is no regular file is refused before it can block.
    static Descriptor Open(const std::string& path) {
        const std::string name = ResolveCase(path);
        Descriptor file(name, O_RDONLY | O_NONBLOCK);
        if (!S_ISREG(file.Status().st_mode))
            throw Failure(kPathFileAccess, "This is no regular file: " + name);
        return file;
    }

    static void TakeAfter(const Descriptor& file, const std::string& like) {
        struct stat status {};
        if (::stat(like.c_str(), &status) != 0)
            throw FailureFromErrno(errno, like);
        // Whoever may not give a file away keeps it; its permissions are set last, because a
        // change of owner takes some of them back.
        [[maybe_unused]] const int given = ::fchown(file.Number(), status.st_uid, status.st_gid);
        if (::fchmod(file.Number(), status.st_mode & 07777) != 0)
            throw FailureFromErrno(errno, like);
    }
};

}  // namespace

std::shared_ptr<Files> DiskFiles() {
    static const std::shared_ptr<Files> disk = std::make_shared<Disk>();
    return disk;
}

}  // namespace tessaro
