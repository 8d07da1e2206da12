#include "graphics/graphics_header.h"

#include <algorithm>

namespace tessaro {

std::vector<std::uint32_t> ReadGraphicsHeader(ByteSpan bytes, std::int32_t entryWidth,
                                              bool hasSpareEntry) {
    std::size_t entries = bytes.size() / static_cast<std::size_t>(entryWidth);
    if (hasSpareEntry && entries > 0)
        --entries;
    if (entries == 0)
        throw Failure(kSubscriptOutOfRange);
    ByteReader in(bytes);
    std::vector<std::uint32_t> offsets;
    offsets.reserve(entries);
    for (std::size_t i = 0; i < entries; ++i)
        offsets.push_back((entryWidth == 4 ? in.U32() : in.U24()) & 0xFFFFFF);
    return offsets;
}

ByteArray WriteGraphicsHeader(const std::vector<std::uint32_t>& offsets, std::int32_t entryWidth) {
    ByteWriter out;
    for (const std::uint32_t offset : offsets)
        entryWidth == 4 ? out.U32(offset) : out.U24(offset);
    return out.Release();
}

ChunkSpan FindChunk(const std::vector<std::uint32_t>& offsets, std::int64_t dataSize,
                    std::size_t chunk) {
    if (chunk + 1 >= offsets.size())
        throw Failure(kSubscriptOutOfRange);
    const std::uint32_t offset = offsets[chunk];
    if (offset == kSparseOffset)
        return {.sparse = true};
    const auto next =
        std::find_if(offsets.begin() + static_cast<std::ptrdiff_t>(chunk) + 1, offsets.end(),
                     [](std::uint32_t other) { return other != kSparseOffset; });
    // Sizes count as the entries do, by their low 24 bits.
    const std::uint32_t end =
        next != offsets.end() ? *next : static_cast<std::uint32_t>(dataSize & 0xFFFFFF);
    if (end < offset)
        return {.damaged = true};
    return {.offset = offset, .size = end - offset};
}

}  // namespace tessaro
