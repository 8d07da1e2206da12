// How a stored chunk is to be read: with a length field or as a bare stream, and what that tells of
// its type. The form is decided first; then the chunk is expanded, once.
#pragma once

#include "foundation/bytes.h"
#include "foundation/huff_dictionary.h"
#include "graphics/catalog.h"

namespace tessaro {

struct ChunkForm {
    enum Coding {
        Empty,     ///< fewer than 5 bytes
        Length,    ///< a length field, then the stream
        Bare,      ///< a stream of `length` bytes
        Measured,  ///< the same, less the last stored byte
        Plain,     ///< 98GRAPH: the bytes as they stand
        J98Table,  ///< 98GRAPH: the picture table behind a length
    };
    Coding coding = Empty;
    std::int32_t length = 0;
    bool keepGoing = false;              ///< beyond the length while there are bytes
    enmVGRAGRAPHTypes type = vgUnknown;  ///< vgUnknown: the expanded bytes tell
    TileLayout tile8{};                  ///< where the type is vgTile8
    MaskedTileLayout maskedTile8{};      ///< where the type is vgTile8m
};

/// What the chunk's bytes and what is known of the set make of a chunk. Decides only.
ChunkForm FormOf(const GraphicsCatalog& catalog, const HuffDictionary& dictionary,
                 std::int32_t chunk, ByteSpan stored);
/// The expanded length of a chunk of a tile type, that of the 8 x 8 tiles by their layout; 0 for
/// all other types.
std::int32_t TileLength(const GraphicsCatalog& catalog, enmVGRAGRAPHTypes type);
/// Notes what a form tells of a chunk.
void Settle(GraphicsCatalog& catalog, std::int32_t chunk, const ChunkForm& form);
ByteArray Expand(const ChunkForm& form, ByteSpan stored, const HuffDictionary& dictionary);

/// The expanded bytes to edit or to compress again. The tile chunk does not say how long it is;
/// more tiles than the layout has are not given up.
ByteArray ExpandWhole(const ChunkForm& form, bool ega, ByteSpan stored,
                      const HuffDictionary& dictionary);

}  // namespace tessaro
