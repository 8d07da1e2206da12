// One file of a set as it was read: its bytes and where it lies; no handle stays open.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "foundation/bytes.h"
#include "tessaro/files.h"

namespace tessaro {

/// What tells one content from another: for files whose bytes are no longer at hand.
struct FilePrint {
    std::uint64_t size = 0;
    std::uint64_t checksum = 0;  ///< FNV-1a, 64 bits
    bool operator==(const FilePrint&) const = default;
};
FilePrint PrintOf(ByteSpan bytes);

class DataFile {
public:
    DataFile() = default;
    static DataFile Read(const Files& files, const std::string& path);

    /// The path it was read at, as it was given; empty for a file that never was read.
    const std::string& Path() const { return path_; }
    bool WasRead() const { return !path_.empty(); }
    bool IsOpen() const { return open_; }

    ByteSpan Bytes() const;
    std::int64_t Size() const { return static_cast<std::int64_t>(Bytes().size()); }
    /// Exactly `size` bytes; more than there are fails with number 62. The span lasts until the
    /// file is closed or read again.
    ByteSpan At(std::int64_t offset, std::int64_t size) const;

    /// Frees the bytes; what they were is remembered.
    void Close();
    /// Reads a closed file again, and fails with number 70 where it is no longer what was read.
    void Reopen(const Files& files);

    /// Whether these bytes are what was read last.
    bool Is(ByteSpan bytes) const;
    /// From now on `bytes` count as what was read: they were seen, or have been written.
    void Assume(ByteSpan bytes);
    /// From now on `bytes` count as what was read, too: a save that could not be finished may still
    /// put them there.
    void AlsoExpect(ByteSpan bytes) { alsoExpected_ = PrintOf(bytes); }

private:
    std::string path_;
    ByteArray bytes_;
    bool open_ = false;
    FilePrint print_;  ///< while the file is closed, or where other bytes are assumed
    bool assumed_ = false;
    std::optional<FilePrint> alsoExpected_;
};

}  // namespace tessaro
