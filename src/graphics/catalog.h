// What a graphics set is known to hold: the type of every chunk, the tables, the tile layouts.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "tessaro/vga_graph.h"

namespace tessaro {

struct PictureSize {
    std::int32_t width = 0;  ///< in pixels
    std::int32_t height = 0;
    bool operator==(const PictureSize&) const = default;
};

struct TileLayout {
    std::int32_t tiles = 0, wide = 0, high = 0;
};

struct MaskedTileLayout {
    std::int32_t size = 0, wide = 0, high = 0;
};

class GraphicsCatalog {
public:
    bool ega = false;
    bool j98 = false;

    std::int32_t startFonts = 0, numberOfFonts = 0;
    std::int32_t startPics = 0, numberOfPics = 0;
    std::vector<PictureSize> pictures, maskedPictures;
    std::vector<typSpriteHead> sprites;
    std::int32_t firstSprite = 0;

    TileLayout tile8;
    MaskedTileLayout maskedTile8;

    std::int32_t Count() const { return static_cast<std::int32_t>(types_.size()); }
    /// The number that chunk `chunk` has in vectors; outside the set it fails with number 9.
    std::size_t Index(std::int32_t chunk) const;
    const std::vector<enmVGRAGRAPHTypes>& Types() const { return types_; }
    enmVGRAGRAPHTypes TypeOf(std::int32_t chunk) const { return types_[Index(chunk)]; }
    void Retype(std::int32_t chunk, enmVGRAGRAPHTypes type);
    /// Gives a chunk the type that it was recognised as, which counts for the chunks behind it.
    void Recognise(std::int32_t chunk, enmVGRAGRAPHTypes type);
    /// Whether a chunk of a type has been recognised so far.
    bool Found(enmVGRAGRAPHTypes type) const;
    /// Gives up chunks, or adds some of unknown type.
    void Resize(std::int32_t chunks);

    /// The type that the tables of pictures, masked pictures and sprites give a chunk; vgUnknown
    /// for one that is in none of them.
    enmVGRAGRAPHTypes TypeByTable(std::int32_t chunk) const;
    /// The chunk at a position among those of one type; -1 where there is none.
    std::int32_t ChunkOfType(enmVGRAGRAPHTypes type, std::int32_t position) const;
    /// The same for the first chunk of 8 x 8 tiles, without a search.
    std::int32_t FirstTile8() const { return firstTile8_; }
    /// Whether a chunk is stored as a bare stream, its length known from its type.
    bool HasNoLengthField(std::int32_t chunk) const;

private:
    std::vector<enmVGRAGRAPHTypes> types_;
    std::array<bool, 21> found_{};
    std::int32_t firstTile8_ = -1;
};

/// The bytes that one 8 x 8 tile takes.
inline constexpr std::size_t Tile8Size(bool ega) {
    return ega ? 32 : 64;
}

}  // namespace tessaro
