// modReadFileBytes: little-endian numbers at positions of open files.
#pragma once

#include <cstdint>

#include "platform/file.h"

namespace tessaro::modReadFileBytes {

/// Reads a number of 1 to 4 bytes at a one-based position (below 1: the current one). Bytes beyond
/// the end of the file read as zero; fewer than 4 bytes are never sign-extended. A failure is
/// reported and reads 0.
std::int32_t ReadFileBytes(File& file, std::int16_t byteCount, std::int32_t position);

/// Writes the lowest 1 to 4 bytes of a number at a one-based position (below 1: the current one).
void WriteFileBytes(File& file, const std::int32_t& value, std::int16_t byteCount,
                    std::int32_t position);

}  // namespace tessaro::modReadFileBytes
