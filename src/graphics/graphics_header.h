// The header file of the graphics: where each chunk lies in the data file.
//
//  offset      width   field
//  width x k   3       low 24 bits: offset of chunk k; 0xFFFFFF: sparse, no data
//                      (98GRAPH sets: 4 bytes an entry, of which 24 bits count)
//
// The entry after the last chunk ends it; a 98GRAPH header has one more entry, unused. A chunk ends
// where the next one that is not sparse begins.
#pragma once

#include <cstdint>
#include <vector>

#include "foundation/bytes.h"

namespace tessaro {

inline constexpr std::uint32_t kSparseOffset = 0xFFFFFF;

struct ChunkSpan {
    bool sparse = false;
    bool damaged = false;  ///< ends before it begins
    std::uint32_t offset = 0;
    std::uint32_t size = 0;
};

/// Every chunk's offset and the one behind the last; fails with number 9 without a chunk's worth.
std::vector<std::uint32_t> ReadGraphicsHeader(ByteSpan bytes, std::int32_t entryWidth,
                                              bool hasSpareEntry);
ByteArray WriteGraphicsHeader(const std::vector<std::uint32_t>& offsets, std::int32_t entryWidth);

/// Where a chunk's stored bytes lie: up to the next chunk that is not sparse, else to the end of
/// the file.
ChunkSpan FindChunk(const std::vector<std::uint32_t>& offsets, std::int64_t dataSize,
                    std::size_t chunk);

}  // namespace tessaro
