// What a graphics set is known to hold: the type of every chunk, the tables, the tile layouts.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "foundation/store.h"
#include "tessaro/vga_graph.h"

namespace tessaro {

struct PictureSize {
    std::int32_t width = 0;  ///< in pixels
    std::int32_t height = 0;
};

struct TileLayout {
    std::int32_t tiles = 0, wide = 0, high = 0;
};

struct MaskedTileLayout {
    std::int32_t size = 0, wide = 0, high = 0;
};

struct GraphicsSet {
    bool j98 = false;
    HuffDictionary dictionary{};  ///< the one that the files were read with

    std::vector<enmVGRAGRAPHTypes> types;
    /// The types that have been recognised so far, which decides what a later tile is taken for.
    std::array<bool, 21> found{};

    std::int32_t startFonts = 0, numberOfFonts = 0;
    std::int32_t startPics = 0, numberOfPics = 0;
    std::vector<PictureSize> pictures, maskedPictures;
    std::vector<typSpriteHead> sprites;
    /// In 16-colour sets: the first sprite chunk less 2 (A), and the number of sprites (B). Their
    /// sum and 1 is the last sprite chunk.
    std::int32_t counterA = 0, counterB = 0;

    TileLayout tile8;
    MaskedTileLayout maskedTile8;

    std::int32_t Count() const { return static_cast<std::int32_t>(types.size()); }
    /// The number that chunk `chunk` has in the vectors; outside the set it fails with number 9.
    std::size_t Index(std::int32_t chunk) const;
    enmVGRAGRAPHTypes TypeOf(std::int32_t chunk) const { return types[Index(chunk)]; }
    /// Gives a chunk the type that it was recognised as.
    void Recognise(std::int32_t chunk, enmVGRAGRAPHTypes type);
    bool Found(enmVGRAGRAPHTypes type) const;
    /// The chunk at a position among those of one type; -1 where there is none.
    std::int32_t ChunkOfType(enmVGRAGRAPHTypes type, std::int32_t position) const;
    /// Whether a chunk is stored as a bare stream, its length known from its type.
    bool HasNoLengthField(std::int32_t chunk) const;
};

}  // namespace tessaro
