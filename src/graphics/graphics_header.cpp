#include "graphics/graphics_header.h"

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

std::int64_t ChunkFilePosition(const std::vector<std::uint32_t>& offsets, std::int64_t dataSize,
                               std::size_t chunk) {
    if (chunk > offsets.size())
        throw Failure(kSubscriptOutOfRange);
    const std::int64_t entry = chunk < offsets.size() ? offsets[chunk] : dataSize & 0xFFFFFF;
    return entry == kSparseOffset ? -1 : entry + 1;
}

ChunkSpan FindChunk(const std::vector<std::uint32_t>& offsets, std::int64_t dataSize,
                    std::size_t chunk) {
    if (chunk + 1 >= offsets.size())
        throw Failure(kSubscriptOutOfRange);
    const std::int64_t position = ChunkFilePosition(offsets, dataSize, chunk);
    if (position < 1)
        return {.sparse = true};
    std::size_t next = chunk + 1;
    while (ChunkFilePosition(offsets, dataSize, next) == -1)
        ++next;
    const std::int64_t size = ChunkFilePosition(offsets, dataSize, next) - position;
    if (size < 0)
        return {.damaged = true};
    return {.offset = static_cast<std::uint32_t>(position - 1),
            .size = static_cast<std::uint32_t>(size)};
}

}  // namespace tessaro
