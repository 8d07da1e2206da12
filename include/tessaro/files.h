// Where a game's files live: on the disk, in memory, or wherever a host keeps them.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tessaro/export.h"
#include "tessaro/types.h"

namespace tessaro {

/// What stands under a name.
struct FileKind {
    enum Type { Regular, Folder, Other /**< a pipe, a device, a link that leads nowhere */ };
    Type type = Regular;
    /// The name with links followed and in the case that its folder spells it in.
    std::string realPath;
    /// Equal for two names of one file, different for two files of one port.
    std::string identity;
    std::uint64_t size = 0;
    /// When the content changed last, in nanoseconds since 1970 where the port has a clock.
    std::int64_t time = 0;
    /// No write bit for anybody, or the system says that writing is not permitted.
    bool readOnly = false;
};

/// Whether a file's bytes are on the disk when the call returns, so that they outlive a power cut.
enum class Flushed : bool { No, Yes };
/// What renaming onto a name that is taken does.
enum class IfTaken : bool { Fails, Replaces };
enum class Sharing : bool { Shared, Exclusive };

/// A lock on a folder; letting go of it unlocks.
class TESSARO_API FolderLock {
public:
    FolderLock() = default;
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;
    virtual ~FolderLock();
};

/// The port through which the library reads and writes a game's files. DiskFiles is the default;
/// a host may give another to clsVersion::Files before LoadDataPath.
///
/// Paths are texts in UTF-8; folder and name are joined with the system's separator. A file is
/// found without regard to the case of A to Z, and keeps the case that it has. Every operation
/// throws Failure with a classic number: 53 and 76 for what is not there, 61 for a full disk, 70
/// for what is not permitted, 75 for what is no file, 57 for a device that fails.
class TESSARO_API Files {
public:
    Files() = default;
    Files(const Files&) = delete;
    Files& operator=(const Files&) = delete;
    virtual ~Files();

    /// A whole regular file of less than 2 GiB. Pipes, devices and folders fail with number 75.
    virtual ByteArray Read(const std::string& path) const = 0;
    /// Up to `size` bytes from `offset` (from 0) on; fewer only at the end of the file.
    virtual ByteArray ReadAt(const std::string& path, std::uint64_t offset,
                             std::size_t size) const = 0;
    /// What stands under a name; nothing where the name is free. Anything else that keeps it from
    /// being told (no permission, a device that fails) fails.
    virtual std::optional<FileKind> Kind(const std::string& path) const = 0;
    /// The names of everything in a folder but folders, sorted without regard to case.
    virtual std::vector<std::string> List(const std::string& folder) const = 0;

    /// Makes a new file, complete or not at all; a name that is taken fails with number 70 (in
    /// `errno` terms: exists). Where `like` names a file, the new one gets its permissions and,
    /// as far as that is permitted, its owner.
    virtual void Create(const std::string& path, ByteSpan bytes, Flushed flushed,
                        const std::string& like = {}) = 0;
    /// Adds bytes behind a file's end in one write; makes the file where there is none.
    virtual void Append(const std::string& path, ByteSpan bytes, Flushed flushed) = 0;
    /// Gives a file another name in one step. Both lie on one disk. With IfTaken::Fails a taken
    /// name fails with number 70 and nothing happens.
    virtual void Rename(const std::string& from, const std::string& to, IfTaken ifTaken) = 0;
    /// Makes the names of a folder outlive a power cut. Where a system has no such thing it is
    /// done.
    virtual void FlushFolder(const std::string& folder) = 0;
    virtual void Remove(const std::string& path) = 0;
    /// One level; its parent is there.
    virtual void MakeFolder(const std::string& path) = 0;
    /// Waits up to two seconds for a folder that another process or object has locked, then fails
    /// with number 70. Nothing where a lock of this kind cannot be had. The lock ends with its
    /// process. It is not re-entrant.
    virtual std::unique_ptr<FolderLock> Lock(const std::string& folder, Sharing sharing) = 0;
};

/// The system's disks.
TESSARO_API std::shared_ptr<Files> DiskFiles();

/// Files in memory: a game that a host holds as bytes. Folders exist as soon as they are named by
/// MakeFolder or by a file in them. One object serves one thread.
class TESSARO_API MemoryFiles final : public Files {
public:
    MemoryFiles();
    ~MemoryFiles() override;

    /// Puts a file there, or replaces it.
    void Set(const std::string& path, ByteArray bytes);

    ByteArray Read(const std::string& path) const override;
    ByteArray ReadAt(const std::string& path, std::uint64_t offset,
                     std::size_t size) const override;
    std::optional<FileKind> Kind(const std::string& path) const override;
    std::vector<std::string> List(const std::string& folder) const override;
    void Create(const std::string& path, ByteSpan bytes, Flushed flushed,
                const std::string& like = {}) override;
    void Append(const std::string& path, ByteSpan bytes, Flushed flushed) override;
    void Rename(const std::string& from, const std::string& to, IfTaken ifTaken) override;
    void FlushFolder(const std::string& folder) override;
    void Remove(const std::string& path) override;
    void MakeFolder(const std::string& path) override;
    std::unique_ptr<FolderLock> Lock(const std::string& folder, Sharing sharing) override;

private:
    struct Self;
    std::unique_ptr<Self> self_;
};

}  // namespace tessaro
