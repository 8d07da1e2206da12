// Opening a graphics set: dictionary, header, tables, and a type for every chunk.
#include <algorithm>
#include <array>
#include <utility>

#include "foundation/guard.h"
#include "graphics/chunk_content.h"
#include "graphics/fonts.h"
#include "graphics/graphics_header.h"
#include "graphics/graphics_set.h"
#include "huffman/huffman.h"

namespace tessaro {

GraphicsSet GraphicsSet::Open(const Game& game, const Files& files,
                              const GraphicsOptions& options) {
    GraphicsSet set;
    set.catalog.ega = game.egaGraphics;
    set.catalog.j98 = options.j98;
    set.catalog.tile8 = options.tile8;
    Step("clsVGAGraph.LoadHuffman", [&] { set.LoadHuffman(game, files); });
    Step("clsVGAGraph.LoadHeader", [&] { set.LoadHeader(game, files); });
    Step("clsVGAGraph.LoadPictureDimensions", [&] { set.LoadPictureDimensions(); });
    if (set.catalog.numberOfFonts > 0)
        set.LoadWolfFonts();
    set.LoadNonPictureData();
    set.opened = set.catalog;
    set.openedFonts = set.fonts;
    return set;
}

void GraphicsSet::LoadHuffman(const Game& game, const Files& files) {
    if (!files.Kind(game.vgaDictFile))
        throw Failure(1, "Huffman dictionary file not found.");
    dictionaryFile = DataFile::Read(files, game.vgaDictFile);
    dictionary = ReadDictionary(dictionaryFile.Bytes());
}

void GraphicsSet::LoadHeader(const Game& game, const Files& files) {
    constexpr std::size_t kMostChunks = 1'000'000;
    constexpr std::int64_t kMostOverlap = 4;
    header = DataFile::Read(files, game.vgaHeaderFile);
    offsets = ReadGraphicsHeader(header.Bytes(), game.graphicsHeaderEntrySize, catalog.j98);
    if (offsets.size() > kMostChunks)
        throw Failure(kOutOfMemory);
    data = DataFile::Read(files, game.vgaGraphFile);
    catalog.Resize(static_cast<std::int32_t>(offsets.size() - 1));
    slots.assign(offsets.size() - 1, {});
    std::int64_t stored = 0;
    for (std::int32_t chunk = 0; chunk < Count(); ++chunk) {
        const ChunkSpan span = FindChunk(offsets, data.Size(), catalog.Index(chunk));
        if (span.sparse)
            catalog.Retype(chunk, vgSparse);
        if (!span.damaged && span.offset + std::int64_t{span.size} <= data.Size())
            stored += span.size;
    }
    // Chunks hardly share bytes; a header that has many of them do so takes hours to expand.
    if (stored > kMostOverlap * data.Size())
        throw Failure(kSubscriptOutOfRange);
}

std::optional<ByteSpan> GraphicsSet::StoredIfThere(std::int32_t chunk) const {
    if (chunk >= Count())
        return std::nullopt;
    const ChunkSpan span = FindChunk(offsets, data.Size(), catalog.Index(chunk));
    if (span.sparse || span.damaged || span.offset + std::int64_t{span.size} > data.Size())
        return std::nullopt;
    return data.At(span.offset, span.size);
}

void GraphicsSet::LoadPictureDimensions() {
    const ByteSpan table = StoredBytes(0);
    if (catalog.j98) {
        TypeJ98Chunks();
        return;
    }
    catalog.pictures = ReadPictureTable(ExpandChunk(table, dictionary), catalog.ega);
    std::vector<StoredLength> lengths(slots.size());
    for (std::int32_t chunk = 0; chunk < Count(); ++chunk) {
        if (const auto stored = StoredIfThere(chunk); stored && stored->size() >= 5)
            lengths[catalog.Index(chunk)] = {true, ByteReader(*stored).I32()};
    }
    catalog.startPics = FindStartPics(catalog.pictures, lengths, catalog.ega);
    const std::int32_t tables = FindFonts(catalog.startPics > 0 ? catalog.startPics : Count());
    if (catalog.startPics == 0)
        catalog.startPics = tables + catalog.numberOfFonts;
    catalog.numberOfPics = std::clamp(Count() - catalog.startPics, 0,
                                      static_cast<std::int32_t>(catalog.pictures.size()));
    TypeByTables(tables);
}

void GraphicsSet::TypeJ98Chunks() {
    const ByteSpan stored = StoredBytes(0);
    const ByteArray table = Expand(FormOf(catalog, dictionary, 0, stored), stored, dictionary);
    ByteReader in(table);
    while (in.Remaining() >= 4) {
        const std::int32_t width = in.U16();
        catalog.pictures.push_back({width, in.U16()});
    }
    for (std::int32_t chunk = 0; chunk < Count(); ++chunk)
        if (catalog.TypeOf(chunk) != vgSparse)
            catalog.Recognise(chunk, chunk == 0 ? vgSTRUCTPIC : chunk < 3 ? vgFont : vgPicture);
    catalog.startFonts = 1;
    catalog.numberOfFonts = std::clamp(Count() - 1, 0, 2);
    catalog.startPics = 3;
    catalog.numberOfPics =
        std::clamp(Count() - 3, 0, static_cast<std::int32_t>(catalog.pictures.size()));
}

/// Looks for the fonts below chunk `limit` and returns the number of tables before them. A
/// 16-colour set has up to three tables.
std::int32_t GraphicsSet::FindFonts(std::int32_t limit) {
    const auto isFont = [&](std::int32_t chunk) {
        const auto stored = StoredIfThere(chunk);
        return stored && LooksLikeFont(ExpandChunk(*stored, dictionary), catalog.ega);
    };
    std::int32_t tables = 1;
    while (catalog.ega && tables < 3 && !isFont(tables))
        ++tables;
    catalog.startFonts = tables;
    catalog.numberOfFonts = 0;
    while (tables + catalog.numberOfFonts < limit && isFont(tables + catalog.numberOfFonts))
        ++catalog.numberOfFonts;
    return tables;
}

/// Reads the tables of masked pictures and sprites and gives all chunks their types that the tables
/// tell.
void GraphicsSet::TypeByTables(std::int32_t tables) {
    const auto readTable = [&](std::int32_t chunk) {
        const auto stored = StoredIfThere(chunk);
        return stored ? ExpandChunk(*stored, dictionary) : ByteArray();
    };
    if (tables > 1)
        catalog.maskedPictures = ReadPictureTable(readTable(1), true);
    if (tables > 2)
        catalog.sprites = ReadSpriteTable(readTable(2));
    catalog.firstSprite = Narrow<std::int32_t>(catalog.startPics + catalog.numberOfPics +
                                               std::ssize(catalog.maskedPictures));
    const auto typeOf = [&](std::int32_t chunk) {
        constexpr std::array kTables{vgSTRUCTPIC, vgBMPMaskHead, vgSpriteHead};
        if (chunk < tables)
            return kTables[static_cast<std::size_t>(chunk)];
        const std::int32_t font = chunk - catalog.startFonts;
        return font >= 0 && font < catalog.numberOfFonts ? vgFont : catalog.TypeByTable(chunk);
    };
    for (std::int32_t chunk = 0; chunk < Count(); ++chunk) {
        const enmVGRAGRAPHTypes type = typeOf(chunk);
        if (type != vgUnknown && catalog.TypeOf(chunk) == vgUnknown)
            catalog.Recognise(chunk, type);
    }
}

/// Goes on without the fonts from the first one on that cannot be read.
void GraphicsSet::LoadWolfFonts() {
    for (std::int32_t number = 1; number <= catalog.numberOfFonts; ++number) {
        ByteArray bytes;
        try {
            bytes = Load(catalog.startFonts + number - 1);
        } catch (const Failure& failure) {
            troubles.push_back({CurrentProcedure("clsVGAGraph.LoadWolfFont"), failure});
            troubles.push_back({"clsVGAGraph.LoadWolfFonts",
                                {1608, "Error loading font #" + std::to_string(number)}});
            return;
        }
        try {
            fonts.push_back(ReadFont(bytes, catalog.ega));
        } catch (const Failure& failure) {
            troubles.push_back({"clsVGAGraph.ParseFontData", failure});
            troubles.push_back({"", {0, "Error parsing font data"}});
            return;
        }
    }
}

void GraphicsSet::TypeChunk(std::int32_t chunk) {
    const ByteSpan stored = StoredBytes(chunk);
    const ChunkForm form = FormOf(catalog, dictionary, chunk, stored);
    Settle(catalog, chunk, form);
    if (form.type == vgUnknown)
        catalog.Recognise(chunk, TypeByContent(Expand(form, stored, dictionary), catalog.ega));
}

// In chunk order, each chunk's type settled right away: what a tile's size is taken for depends on
// the types found before. The expanded bytes are not kept, so that a later load expands each tile
// whole by its type.
void GraphicsSet::LoadNonPictureData() {
    std::optional<Failure> firstFailure;
    for (std::int32_t chunk = 1; chunk < Count(); ++chunk) {
        if (catalog.TypeOf(chunk) != vgUnknown)
            continue;
        try {  // a damaged chunk does not keep the others from being typed
            TypeChunk(chunk);
        } catch (const Failure& failure) {
            if (!firstFailure)
                firstFailure = failure;
        }
    }
    FindTilesAmongPictures();
    couldLoadNonPictureData = !firstFailure;
    if (firstFailure)
        troubles.push_back({"clsVGAGraph.LoadNonPictureData", *firstFailure});
}

/// A table may count the tiles among the pictures; then their chunk has no picture's size.
void GraphicsSet::FindTilesAmongPictures() {
    for (std::int32_t chunk = 0; chunk < Count() && catalog.FirstTile8() < 0; ++chunk) {
        if (catalog.j98 || catalog.TypeOf(chunk) != vgPicture)
            continue;
        const auto stored = StoredIfThere(chunk);
        if (!stored || stored->size() < 5 || ByteReader(*stored).I32() == PictureBytes(chunk))
            continue;
        catalog.Retype(chunk, vgUnknown);
        const ChunkForm form = FormOf(catalog, dictionary, chunk, *stored);
        catalog.Retype(chunk, vgPicture);
        if (form.type == vgTile8)
            Settle(catalog, chunk, form);
    }
}

}  // namespace tessaro
