#include "graphics/chunk_form.h"

#include <algorithm>
#include <array>

#include "huffman/huffman.h"

namespace tessaro {
namespace {

/// The expanded length of the tile types that have one; 0 for all others.
std::int32_t FixedLength(const GraphicsCatalog& catalog, enmVGRAGRAPHTypes type) {
    switch (type) {
        case vgTile8m:
            return catalog.maskedTile8.size;
        case vgTile16:
            return catalog.ega ? 128 : 256;
        case vgTile16M:
            return catalog.ega ? 160 : 512;
        default:
            return 0;
    }
}

ChunkForm FormOfType(const GraphicsCatalog& catalog, std::int32_t chunk, enmVGRAGRAPHTypes type) {
    const std::int32_t length = FixedLength(catalog, type);
    return {.coding = length > 0 ? ChunkForm::Bare : ChunkForm::Length,
            .length = length,
            .keepGoing = chunk == 0,
            .type = type,
            .maskedTile8 = catalog.maskedTile8};
}

ChunkForm FormOfTile8(const GraphicsCatalog& catalog, std::int32_t chunk, TileLayout layout) {
    if (layout.wide == 0) {
        layout.wide = 5;
        layout.high = 7;
    }
    const std::int64_t tiles = std::int64_t{layout.wide} * layout.high;
    layout.tiles = Narrow<std::int32_t>(tiles);
    const auto length =
        Narrow<std::int32_t>(tiles * static_cast<std::int64_t>(Tile8Size(catalog.ega)));
    if (length < 0)
        throw Failure(kInvalidProcedureCall);
    return {.coding = ChunkForm::Bare,
            .length = length,
            .keepGoing = chunk == 0,
            .type = vgTile8,
            .tile8 = layout};
}

/// The form of the chunk that becomes the tile chunk.
ChunkForm FormOfNewTile8(const GraphicsCatalog& catalog, std::int32_t chunk) {
    return FormOfTile8(catalog, chunk, catalog.ega ? TileLayout{104, 8, 13} : catalog.tile8);
}

/// Behind the sprites of a 16-colour set come the tiles, which have no length field, and up to the
/// first article nothing there is believed to have one.
bool LiesBehindSprites(const GraphicsCatalog& catalog, std::int32_t chunk) {
    return catalog.ega && !catalog.sprites.empty() &&
           chunk >= catalog.firstSprite + std::ssize(catalog.sprites) && !catalog.Found(vgEndArt);
}

/// Behind a stream that fits there is its empty last byte, "!ID!", both or nothing.
bool Fits(const std::optional<std::size_t>& bytesLeft) {
    constexpr std::array<std::size_t, 4> kFitting{0, 1, 4, 5};
    return bytesLeft && std::ranges::find(kFitting, *bytesLeft) != kFitting.end();
}

/// The first bytes of the tiles may look like a length. Then what is behind them does not fit that
/// length, and the bare stream fits the layout's.
bool AreTilesInSpite(const GraphicsCatalog& catalog, std::int32_t chunk, ByteSpan stored,
                     std::int32_t length, const HuffDictionary& dictionary) {
    const auto left = BytesLeft(stored.subspan(4), length, dictionary);
    return (!left || *left > 5) &&
           Fits(BytesLeft(stored, FormOfNewTile8(catalog, chunk).length, dictionary));
}

bool Within(std::int32_t size, std::int32_t low, std::int32_t high) {
    return size >= low && size <= high;
}

/// Tells a tile chunk by its measured size. That is a little off, for the last stored byte is not
/// decoded and "!ID!" may be glued behind; and what a size is taken for depends on what came
/// before. Two of the conditions look for another type than the one they give: that is meant.
ChunkForm FormBySize(const GraphicsCatalog& catalog, std::int32_t size) {
    const auto tile = [&](enmVGRAGRAPHTypes type, MaskedTileLayout layout = {}) {
        return ChunkForm{.coding = ChunkForm::Measured,
                         .length = layout.size > 0 ? layout.size : FixedLength(catalog, type),
                         .type = type,
                         .maskedTile8 = layout};
    };
    const ChunkForm other{.coding = ChunkForm::Length};
    if (!catalog.ega) {
        if (!catalog.Found(vgTile16M) && Within(size, 226, 264))
            return tile(vgTile16);
        if (!catalog.Found(vgEndArt) && Within(size, 501, 529))
            return tile(vgTile16M);
        return other;
    }
    if (catalog.Found(vgTile16)) {
        if (!catalog.Found(vgTile16M) && size < 154)
            return tile(vgTile16);
        if (!catalog.Found(vgAreaNames) && size < 200)
            return tile(vgTile16M);
        return other;
    }
    if (Within(size, 451, 507))
        return tile(vgTile8m, {480, 3, 4});
    if (Within(size, 776, 824))
        return tile(vgTile8m, {800, 5, 4});
    return Within(size, 101, 155) ? tile(vgTile16) : other;
}

// A 98GRAPH set mixes compressed and plain chunks: the form of each follows from its number.
ChunkForm FormOfJ98(std::int32_t chunk) {
    constexpr std::int32_t kLastPlain = 12;
    if (chunk == 0)
        return {.coding = ChunkForm::J98Table, .type = vgSTRUCTPIC};
    return {.coding = chunk >= 3 && chunk <= kLastPlain ? ChunkForm::Plain : ChunkForm::Length,
            .type = chunk < 3 ? vgFont : vgPicture};
}

ByteArray ExpandJ98Table(ByteSpan stored) {
    constexpr std::size_t kTableSize = 572;  // 143 entries of width and height
    ByteArray table(stored.begin() + std::min<std::ptrdiff_t>(4, std::ssize(stored)), stored.end());
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

}  // namespace

ChunkForm FormOf(const GraphicsCatalog& catalog, const HuffDictionary& dictionary,
                 std::int32_t chunk, ByteSpan stored) {
    if (catalog.j98)
        return FormOfJ98(chunk);
    const enmVGRAGRAPHTypes type = catalog.TypeOf(chunk);
    if (stored.size() < 5)
        return {.coding = ChunkForm::Empty, .type = type};
    if (chunk == catalog.FirstTile8())
        return FormOfTile8(catalog, chunk, catalog.tile8);
    const std::int32_t length = ByteReader(stored).I32();
    const bool believed = length > 0 && length < 65536 && !LiesBehindSprites(catalog, chunk);
    if (catalog.FirstTile8() < 0 && type == vgUnknown &&
        (!believed || AreTilesInSpite(catalog, chunk, stored, length, dictionary)))
        return FormOfNewTile8(catalog, chunk);
    if (believed || type != vgUnknown)
        return FormOfType(catalog, chunk, type);
    ByteArray measured;
    return FormBySize(catalog, DetermineChunkSize(stored, measured, dictionary));
}

std::int32_t TileLength(const GraphicsCatalog& catalog, enmVGRAGRAPHTypes type) {
    return type == vgTile8 ? FormOfTile8(catalog, 0, catalog.tile8).length
                           : FixedLength(catalog, type);
}

void Settle(GraphicsCatalog& catalog, std::int32_t chunk, const ChunkForm& form) {
    if (form.type == vgUnknown)
        return;
    if (form.type != catalog.TypeOf(chunk))
        catalog.Recognise(chunk, form.type);
    if (form.type == vgTile8 && form.coding == ChunkForm::Bare)
        catalog.tile8 = form.tile8;
    if (form.type == vgTile8m && form.coding != ChunkForm::Empty)
        catalog.maskedTile8 = form.maskedTile8;
}

ByteArray Expand(const ChunkForm& form, ByteSpan stored, const HuffDictionary& dictionary) {
    switch (form.coding) {
        case ChunkForm::Length:
            return ExpandChunk(stored, dictionary);
        case ChunkForm::Bare:
            return ExpandStream(stored, form.length, dictionary, form.keepGoing);
        case ChunkForm::Measured:
            return ExpandStream(stored.first(stored.size() - 1), form.length, dictionary);
        case ChunkForm::Plain:
            return {stored.begin(), stored.end()};
        case ChunkForm::J98Table:
            return ExpandJ98Table(stored);
        default:
            return {};
    }
}

ByteArray ExpandWhole(const ChunkForm& form, bool ega, ByteSpan stored,
                      const HuffDictionary& dictionary) {
    if (form.type != vgTile8 || form.coding != ChunkForm::Bare)
        return Expand(form, stored, dictionary);
    // Up to 8 symbols may lie in the last byte, which is not measured.
    ByteArray measured;
    const std::int32_t size = DetermineChunkSize(stored, measured, dictionary) + 8;
    const auto tile = static_cast<std::int32_t>(Tile8Size(ega));
    if (const std::int32_t whole = size / tile * tile; whole > form.length)
        return ExpandStream(stored, whole, dictionary);
    return Expand(form, stored, dictionary);
}

}  // namespace tessaro
