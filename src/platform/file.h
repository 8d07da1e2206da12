// Files and folders of the system. Names are found without regard to case on every system; every
// operation throws Failure with its classic number.
#pragma once

#include <cstdint>
#include <cstdio>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/names.h"
#include "tessaro/failure.h"
#include "tessaro/types.h"

namespace tessaro {

enum class FileMode {
    Read,
    Write,  ///< creates the file or empties it
    Update  ///< reads and writes, creates the file where there is none
};

/// An open binary file. Positions are zero-based here. Closing does not check for errors: a writer
/// calls Close, which does; the destructor only releases.
class File {
public:
    File() = default;
    File(const std::string& path, FileMode mode);
    File(File&&) noexcept = default;
    File& operator=(File&&) noexcept = default;

    bool IsOpen() const { return handle_ != nullptr; }
    std::int64_t Size() const;
    std::int64_t Position() const;
    void Seek(std::int64_t position);
    /// Reads up to `target.size()` bytes; fewer only at the end of the file.
    std::size_t Read(std::span<std::uint8_t> target);
    /// Exactly `size` bytes from `position`. More than the file holds fails with number 62, before
    /// memory is taken for them.
    ByteArray ReadAt(std::int64_t position, std::int64_t size);
    void Write(std::span<const std::uint8_t> bytes);
    /// Writes out what is buffered and closes; fails when anything could not be written.
    void Close();
    /// Closes without caring, for files that are only read or given up.
    void Release() { handle_.reset(); }

private:
    struct Closer {
        void operator()(std::FILE* handle) const { std::fclose(handle); }
    };
    std::unique_ptr<std::FILE, Closer> handle_;
    enum class Last { Neither, Read, Write };
    void Prepare(Last next);

    std::string path_;
    Last last_ = Last::Neither;
    bool writing_ = false;
};

bool FileExists(const std::string& path);
bool FolderExists(const std::string& path);
void DeleteFileAt(const std::string& path);
/// Copies onto `to`, which is replaced; an incomplete copy is removed again.
void CopyFileTo(const std::string& from, const std::string& to);
/// Moves onto `to`, which is replaced. Where the two lie on different disks it is copied and, when
/// the copy is complete, deleted.
void MoveFileTo(const std::string& from, const std::string& to);
void CreateFolder(const std::string& path);
/// The names of the files (not folders) of a folder that match a pattern with `*` and `?`, without
/// regard to case and sorted without regard to case, as the games' systems list them. A folder
/// that cannot be read fails.
std::vector<std::string> ListFiles(const std::string& folder, std::string_view pattern);

ByteArray ReadWholeFile(const std::string& path);
/// Creates or replaces a file; checks everything up to the close.
void WriteWholeFile(const std::string& path, std::span<const std::uint8_t> bytes);

/// What the file layer is about to do, for tests that make it fail.
enum class FileOperation { Open, Read, Write, Close, Delete, Move, CreateFolder };

/// Called before each operation of the calling thread; what it throws is the operation's failure.
/// Null removes it.
void SetFileOperationHook(std::function<void(FileOperation, const std::string& path)> hook);
void CallFileOperationHook(FileOperation operation, const std::string& path);

/// What the system's last error means, as the failure of an operation on `path`.
Failure FailureFromErrno(int error, const std::string& path);
/// The name under which `path` really exists, where it differs in case; else `path` itself.
std::string ResolveCase(const std::string& path);
/// Whether two paths name one file, however each of them spells it.
bool SameFile(const std::string& a, const std::string& b);

}  // namespace tessaro
