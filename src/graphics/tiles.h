// Tiles between their chunks and linear pixels. A tile chunk holds its tiles one after another,
// each with all its planes (picture_planes.h); a sheet is one image of all of them, row by row.
#pragma once

#include "foundation/bytes.h"
#include "graphics/catalog.h"

namespace tessaro {

enum class TileForm {
    Vga,        ///< 64 bytes
    Ega,        ///< 32 bytes
    EgaMasked,  ///< 40 bytes, the mask first
};

std::size_t TileSize(TileForm form);

/// 8 x 8 tiles as pixels, `wide` across and `high` down; places without a tile stay 0.
ByteArray TileSheet(ByteSpan chunk, TileForm form, std::int32_t wide, std::int32_t high);
/// Their masks: 15 where transparent, 0 where opaque and where there is no tile.
ByteArray TileMaskSheet(ByteSpan chunk, std::int32_t wide, std::int32_t high);

/// The tiles of a sheet put back over the first tiles of `chunk`, whose masks stay.
ByteArray TilesFromSheet(ByteSpan sheet, ByteSpan chunk, TileForm form, std::int32_t wide,
                         std::int32_t high);

}  // namespace tessaro
