// The checksums by which known files are told.
#pragma once

#include <map>
#include <string>

#include "tessaro/types.h"

namespace tessaro::cli {

/// A file's checksums, each worked out when it is first asked for.
class Digests {
public:
    explicit Digests(const ByteArray& content) : content_(content) {}

    /// Whether one of them is this: "crc32:", "md5:" or "sha1:" and its digits.
    bool Are(const std::string& wanted);

private:
    const ByteArray& content_;
    std::map<std::string, std::string> known_;
};

/// The checksum of bytes as lower-case hexadecimal digits.
std::string Crc32Of(const ByteArray& bytes);
std::string Md5Of(const ByteArray& bytes);
std::string Sha1Of(const ByteArray& bytes);

}  // namespace tessaro::cli
