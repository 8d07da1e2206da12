// Expanding a stored chunk, and telling the tile chunks, which have no length field, by their size.
#pragma once

#include "foundation/bytes.h"
#include "graphics/graphics_set.h"

namespace tessaro {

/// A chunk's expanded bytes. A chunk that is taken for a tile chunk gets its type and sets the tile
/// layout on the way. Fewer than 5 stored bytes are an empty chunk.
ByteArray ExpandGraphicsChunk(GraphicsSet& set, bool ega, std::int32_t chunk, ByteSpan stored);

/// A chunk's expanded bytes to edit or to compress again. The tile chunk does not say how long it
/// is; more tiles than the layout has are not given up.
ByteArray ExpandWhole(GraphicsSet& set, bool ega, std::int32_t chunk, ByteSpan stored);

/// The bytes that one 8 x 8 tile takes.
inline constexpr std::size_t Tile8Size(bool ega) {
    return ega ? 32 : 64;
}

/// In a 98GRAPH set everything is known by its chunk number; the last of the plain chunks.
inline constexpr std::int32_t kLastPlainJ98Chunk = 12;

}  // namespace tessaro
