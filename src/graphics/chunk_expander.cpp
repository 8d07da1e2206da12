#include "graphics/chunk_expander.h"

#include <algorithm>

#include "huffman/huffman.h"

namespace tessaro {
namespace {

ByteArray ExpandBare(const GraphicsSet& set, std::int32_t chunk, ByteSpan stored,
                     std::int64_t length) {
    if (length < 0)
        throw Failure(kInvalidProcedureCall);
    return ExpandStream(stored, Narrow<std::int32_t>(length), set.dictionary, chunk == 0);
}

ByteArray ExpandTile8(GraphicsSet& set, bool ega, std::int32_t chunk, ByteSpan stored) {
    TileLayout& layout = set.tile8;
    if (layout.wide == 0) {
        layout.wide = 5;
        layout.high = 7;
    }
    const std::int64_t tiles = std::int64_t{layout.wide} * layout.high;
    layout.tiles = Narrow<std::int32_t>(tiles);
    return ExpandBare(set, chunk, stored, tiles * static_cast<std::int64_t>(Tile8Size(ega)));
}

/// The expanded length of the tile types that have one; 0 for all others.
std::int32_t FixedLength(const GraphicsSet& set, bool ega, enmVGRAGRAPHTypes type) {
    switch (type) {
        case vgTile8m:
            return set.maskedTile8.size;
        case vgTile16:
            return ega ? 128 : 256;
        case vgTile16M:
            return ega ? 160 : 512;
        default:
            return 0;
    }
}

ByteArray ExpandByType(const GraphicsSet& set, bool ega, std::int32_t chunk, ByteSpan stored) {
    const std::int32_t length = FixedLength(set, ega, set.TypeOf(chunk));
    return length > 0 ? ExpandBare(set, chunk, stored, length)
                      : ExpandChunk(stored, set.dictionary);
}

/// Behind the sprites of a 16-colour set come the tiles, which have no length field, and up to the
/// first article nothing there is believed to have one.
bool LiesBehindSprites(const GraphicsSet& set, bool ega, std::int32_t chunk) {
    return ega && set.counterB >= 1 && chunk > set.counterA + set.counterB + 1 &&
           !set.Found(vgEndArt);
}

bool Within(std::int32_t size, std::int32_t low, std::int32_t high) {
    return size >= low && size <= high;
}

/// Tells a tile chunk by its measured size. That is a little off, for the last stored byte is not
/// decoded and "!ID!" may be glued behind; and what a size is taken for depends on what came
/// before. Two of the conditions look for another type than the one they give: that is meant.
enmVGRAGRAPHTypes TypeBySize(GraphicsSet& set, bool ega, std::int32_t size) {
    if (!ega) {
        if (!set.Found(vgTile16M) && Within(size, 226, 264))
            return vgTile16;
        if (!set.Found(vgEndArt) && Within(size, 501, 529))
            return vgTile16M;
        return vgUnknown;
    }
    if (set.Found(vgTile16)) {
        if (!set.Found(vgTile16M) && size < 154)
            return vgTile16;
        if (!set.Found(vgAreaNames) && size < 200)
            return vgTile16M;
        return vgUnknown;
    }
    if (Within(size, 451, 507)) {
        set.maskedTile8 = {480, 3, 4};
        return vgTile8m;
    }
    if (Within(size, 776, 824)) {
        set.maskedTile8 = {800, 5, 4};
        return vgTile8m;
    }
    return Within(size, 101, 155) ? vgTile16 : vgUnknown;
}

// A 98GRAPH set mixes compressed and plain chunks: the form of each follows from its number.
ByteArray ExpandJ98Chunk(GraphicsSet& set, std::int32_t chunk, ByteSpan stored) {
    constexpr std::size_t kTableSize = 572;  // 143 entries of width and height
    if (chunk == 0) {
        set.Recognise(chunk, vgSTRUCTPIC);
        ByteArray table(stored.begin() + std::min<std::ptrdiff_t>(4, std::ssize(stored)),
                        stored.end());
        table.resize(std::max(table.size(), kTableSize));
        for (std::size_t entry = 130; entry < 143; ++entry) {
            const bool small = entry < 136;
            table[4 * entry] = small ? 8 : 24;
            table[4 * entry + 1] = 0;
            table[4 * entry + 2] = small ? 16 : 32;
            table[4 * entry + 3] = 0;
        }
        return table;
    }
    set.Recognise(chunk, chunk < 3 ? vgFont : vgPicture);
    if (chunk >= 3 && chunk <= kLastPlainJ98Chunk)
        return {stored.begin(), stored.end()};
    return ExpandChunk(stored, set.dictionary);
}

}  // namespace

ByteArray ExpandGraphicsChunk(GraphicsSet& set, bool ega, std::int32_t chunk, ByteSpan stored) {
    if (set.j98)
        return ExpandJ98Chunk(set, chunk, stored);
    if (stored.size() < 5)
        return {};
    const std::int32_t firstTile8 = set.ChunkOfType(vgTile8, 0);
    if (firstTile8 == chunk)
        return ExpandTile8(set, ega, chunk, stored);
    const std::int32_t length = ByteReader(stored).I32();
    if (length > 0 && length < 65536 && !LiesBehindSprites(set, ega, chunk))
        return ExpandByType(set, ega, chunk, stored);
    if (firstTile8 < 0) {
        set.Recognise(chunk, vgTile8);
        if (ega)
            set.tile8 = {104, 8, 13};
        return ExpandTile8(set, ega, chunk, stored);
    }
    if (set.TypeOf(chunk) != vgUnknown)
        return ExpandByType(set, ega, chunk, stored);

    ByteArray measured;
    const std::int32_t size = DetermineChunkSize(stored, measured, set.dictionary);
    const enmVGRAGRAPHTypes type = TypeBySize(set, ega, size);
    if (type == vgUnknown)
        return ExpandChunk(stored, set.dictionary);
    set.Recognise(chunk, type);
    measured.resize(static_cast<std::size_t>(FixedLength(set, ega, type)));
    return measured;
}

ByteArray ExpandWhole(GraphicsSet& set, bool ega, std::int32_t chunk, ByteSpan stored) {
    ByteArray bytes = ExpandGraphicsChunk(set, ega, chunk, stored);
    if (set.TypeOf(chunk) != vgTile8 || !set.HasNoLengthField(chunk))
        return bytes;
    // Up to 8 symbols may lie in the last byte, which is not measured.
    ByteArray measured;
    const std::int32_t size = DetermineChunkSize(stored, measured, set.dictionary) + 8;
    const auto tile = static_cast<std::int32_t>(Tile8Size(ega));
    const std::int32_t whole = size / tile * tile;
    if (std::cmp_greater(whole, bytes.size()))
        bytes = ExpandStream(stored, whole, set.dictionary);
    return bytes;
}

}  // namespace tessaro
