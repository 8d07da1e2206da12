#include "platform/file.h"

#include <cerrno>
#include <utility>

namespace tessaro {
namespace {

thread_local std::function<void(FileOperation, const std::string&)> operationHook;

int SeekStream(std::FILE* stream, std::int64_t offset, int origin) {
#ifdef _WIN32
    return _fseeki64(stream, offset, origin);
#else
    return fseeko(stream, offset, origin);
#endif
}

std::int64_t TellStream(std::FILE* stream) {
#ifdef _WIN32
    return _ftelli64(stream);
#else
    return ftello(stream);
#endif
}

}  // namespace

void SetFileOperationHook(std::function<void(FileOperation, const std::string&)> hook) {
    operationHook = std::move(hook);
}

void CallFileOperationHook(FileOperation operation, const std::string& path) {
    if (operationHook)
        operationHook(operation, path);
}

Failure FailureFromErrno(int error, const std::string& path) {
    switch (error) {
        case ENOENT: {
            const std::size_t separator = LastSeparator(path);
            const bool folderMissing = separator != std::string::npos && separator > 0 &&
                                       !FolderExists(path.substr(0, separator));
            return Failure(folderMissing ? kPathNotFound : kFileNotFound);
        }
        case ENOTDIR:
            return Failure(kPathNotFound);
        case EACCES:
        case EEXIST:
        case EPERM:
        case EROFS:
            return Failure(kPermissionDenied);
        case ENOSPC:
        case EFBIG:
            return Failure(kDiskFull);
        case EIO:
            return Failure(kDeviceIOError);
        case ENAMETOOLONG:
        case EINVAL:
            return Failure(kBadFileNameOrNumber);
        case ENOMEM:
            return Failure(kOutOfMemory);
        default:
            return Failure(kPathFileAccess);
    }
}

File::File(const std::string& path, FileMode mode) : path_(ResolveCase(path)) {
    CallFileOperationHook(FileOperation::Open, path_);
    writing_ = mode != FileMode::Read;
    if (FolderExists(path_))
        throw Failure(kPathFileAccess);
    const char* openMode = mode == FileMode::Read ? "rb" : mode == FileMode::Write ? "wb" : "r+b";
    handle_.reset(std::fopen(path_.c_str(), openMode));
    if (!handle_ && mode == FileMode::Update && errno == ENOENT)
        handle_.reset(std::fopen(path_.c_str(), "w+b"));
    if (!handle_)
        throw FailureFromErrno(errno, path_);
}

std::int64_t File::Size() const {
    if (!handle_)
        throw Failure(kBadFileNameOrNumber);
    const std::int64_t position = TellStream(handle_.get());
    if (SeekStream(handle_.get(), 0, SEEK_END) != 0)
        throw FailureFromErrno(errno, path_);
    const std::int64_t size = TellStream(handle_.get());
    if (SeekStream(handle_.get(), position, SEEK_SET) != 0)
        throw FailureFromErrno(errno, path_);
    return size;
}

std::int64_t File::Position() const {
    if (!handle_)
        throw Failure(kBadFileNameOrNumber);
    return TellStream(handle_.get());
}

void File::Seek(std::int64_t position) {
    if (!handle_)
        throw Failure(kBadFileNameOrNumber);
    if (position < 0)
        throw Failure(kInvalidProcedureCall);
    if (SeekStream(handle_.get(), position, SEEK_SET) != 0)
        throw FailureFromErrno(errno, path_);
    last_ = Last::Neither;
}

/// A stream wants a seek between reading and writing.
void File::Prepare(Last next) {
    if (!handle_)
        throw Failure(kBadFileNameOrNumber);
    CallFileOperationHook(next == Last::Read ? FileOperation::Read : FileOperation::Write, path_);
    if (last_ != Last::Neither && last_ != next)
        SeekStream(handle_.get(), 0, SEEK_CUR);
    last_ = next;
}

std::size_t File::Read(std::span<std::uint8_t> target) {
    Prepare(Last::Read);
    const std::size_t count = std::fread(target.data(), 1, target.size(), handle_.get());
    if (count < target.size() && std::ferror(handle_.get()) != 0)
        throw FailureFromErrno(errno, path_);
    return count;
}

ByteArray File::ReadAt(std::int64_t position, std::int64_t size) {
    if (position < 0 || size < 0)
        throw Failure(kInvalidProcedureCall);
    const std::int64_t fileSize = Size();
    if (position > fileSize || size > fileSize - position)
        throw Failure(kInputPastEnd);
    if (!std::in_range<std::size_t>(size))
        throw Failure(kOutOfMemory);
    ByteArray bytes(static_cast<std::size_t>(size));
    Seek(position);
    if (Read(bytes) < bytes.size())
        throw Failure(kInputPastEnd);
    return bytes;
}

void File::Write(std::span<const std::uint8_t> bytes) {
    Prepare(Last::Write);
    if (std::fwrite(bytes.data(), 1, bytes.size(), handle_.get()) < bytes.size())
        throw FailureFromErrno(errno, path_);
}

void File::Close() {
    if (!handle_)
        return;
    CallFileOperationHook(FileOperation::Close, path_);
    const bool flushed = !writing_ || std::fflush(handle_.get()) == 0;
    const int flushError = errno;
    const bool closed = std::fclose(handle_.release()) == 0;
    if (!flushed)
        throw FailureFromErrno(flushError, path_);
    if (!closed && writing_)
        throw FailureFromErrno(errno, path_);
}

ByteArray ReadWholeFile(const std::string& path) {
    File file(path, FileMode::Read);
    return file.ReadAt(0, file.Size());
}

void WriteWholeFile(const std::string& path, std::span<const std::uint8_t> bytes) {
    File file(path, FileMode::Write);
    try {
        file.Write(bytes);
        file.Close();
    } catch (...) {
        file.Release();
        throw;
    }
}

void CopyFileTo(const std::string& from, const std::string& to) {
    File source(from, FileMode::Read);
    File target(to, FileMode::Write);
    try {
        ByteArray block(65536);
        while (const std::size_t count = source.Read(block))
            target.Write(std::span(block).first(count));
        target.Close();
    } catch (...) {
        target.Release();
        std::remove(ResolveCase(to).c_str());
        throw;
    }
}

void DeleteFileAt(const std::string& path) {
    const std::string name = ResolveCase(path);
    CallFileOperationHook(FileOperation::Delete, name);
    if (std::remove(name.c_str()) != 0)
        throw FailureFromErrno(errno, name);
}

}  // namespace tessaro
