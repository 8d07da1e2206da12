// Opening a graphics set: dictionary, header, tables, and a type for every chunk.
#include <algorithm>
#include <utility>

#include "foundation/code_page.h"
#include "foundation/guard.h"
#include "graphics/chunk_content.h"
#include "graphics/chunk_expander.h"
#include "graphics/fonts.h"
#include "graphics/vga_graph_self.h"
#include "huffman/huffman.h"

namespace tessaro {
namespace {

/// Names the file of a 98GRAPH set: VGAHEAD.WJ6 becomes 98HEAD.WJ6. A name that has been turned
/// already stays.
void TurnToJ98Name(std::string& path) {
    const std::size_t separator = LastSeparator(path);
    const std::size_t name = separator == std::string::npos ? 0 : separator + 1;
    if (path.compare(name, 2, "98") != 0)
        path.replace(name, std::min<std::size_t>(3, path.size() - name), "98");
}

}  // namespace

clsVGAGraph::Self clsVGAGraph::Self::Fresh() const {
    Self fresh;
    fresh.j98Mode = fresh.set.j98 = j98Mode;
    fresh.tile8Given = tile8Given;
    if (tile8Given)
        fresh.set.tile8 = set.tile8;
    return fresh;
}

void clsVGAGraph::Self::ProbeGame() const {
    Game& store = ConfiguredGame();
    const auto anyExists = [&](std::initializer_list<const char*> names) {
        return std::ranges::any_of(
            names, [&](const char* name) { return FileExists(JoinPath(store.dataPath, name)); });
    };
    store.isBlakeStone = !store.egaGraphics && anyExists({"BS_AOG.EXE", "BS_FIRE.EXE"});
    const bool fixed =
        store.isBlakeStone ||
        (!store.egaGraphics && anyExists({"CORR7.EXE", "C7.EXE", "CORR7CD.EXE", "WOLF1V.EXE"}));
    store.canAddOrRemoveChunks = !store.egaGraphics && !fixed;
    store.canChangeMapSize = !fixed;
    store.graphicsHeaderEntrySize = j98Mode ? 4 : 3;
    if (j98Mode) {
        store.canCompileVGAGraph = false;
        for (std::string* path : {&store.vgaDictFile, &store.vgaGraphFile, &store.vgaHeaderFile})
            TurnToJ98Name(*path);
    }
}

bool clsVGAGraph::Self::LoadHuffman() {
    return Guarded("clsVGAGraph.LoadHuffman", [&] {
        Game& store = ConfiguredGame();
        if (!FileExists(store.vgaDictFile))
            throw Failure(1, "Huffman dictionary file not found.");
        File dictionary(store.vgaDictFile, FileMode::Read);
        set.dictionary = ReadDictionary(dictionary.ReadAt(0, kDictionarySize));
        store.expandDictionary = set.dictionary;
        return true;
    });
}

bool clsVGAGraph::Self::LoadHeader() {
    return Guarded("clsVGAGraph.LoadHeader", [&] {
        constexpr std::size_t kMostChunks = 1'000'000;
        constexpr std::int64_t kMostOverlap = 4;
        const Game& store = ConfiguredGame();
        offsets = ReadGraphicsHeader(ReadWholeFile(store.vgaHeaderFile),
                                     store.graphicsHeaderEntrySize, set.j98);
        if (offsets.size() > kMostChunks)
            throw Failure(kOutOfMemory);
        dataPath = store.vgaGraphFile;
        file = File(dataPath, FileMode::Read);
        dataSize = file.Size();
        whole = file.ReadAt(0, dataSize);
        set.types.assign(offsets.size() - 1, vgUnknown);
        slots.assign(set.types.size(), {});
        std::int64_t stored = 0;
        for (std::size_t i = 0; i < set.types.size(); ++i) {
            const ChunkSpan span = FindChunk(offsets, dataSize, i);
            if (span.sparse)
                set.types[i] = vgSparse;
            if (!span.damaged && span.offset + std::int64_t{span.size} <= dataSize)
                stored += span.size;
        }
        // Chunks hardly share bytes; a header that has many of them do so takes hours to expand.
        if (stored > kMostOverlap * dataSize)
            throw Failure(kSubscriptOutOfRange);
        return true;
    });
}

std::optional<ByteArray> clsVGAGraph::Self::StoredAtOpening(std::size_t chunk) const {
    if (chunk >= slots.size())
        return std::nullopt;
    const ChunkSpan span = FindChunk(offsets, dataSize, chunk);
    if (span.sparse || span.damaged || span.offset > whole.size() ||
        span.size > whole.size() - span.offset)
        return std::nullopt;
    const ByteSpan bytes = ByteSpan(whole).subspan(span.offset, span.size);
    return ByteArray(bytes.begin(), bytes.end());
}

void clsVGAGraph::Self::TypeJ98Chunks() {
    ByteReader table(Data(0));
    while (table.Remaining() >= 4) {
        const std::int32_t width = table.U16();
        set.pictures.push_back({width, table.U16()});
    }
    for (std::int32_t chunk = 1; chunk < set.Count(); ++chunk)
        if (set.TypeOf(chunk) != vgSparse)
            set.Recognise(chunk, chunk < 3 ? vgFont : vgPicture);
    set.startFonts = 1;
    set.numberOfFonts = std::clamp(set.Count() - 1, 0, 2);
    set.startPics = 3;
    set.numberOfPics =
        std::clamp(set.Count() - 3, 0, static_cast<std::int32_t>(set.pictures.size()));
}

/// Looks for the fonts below chunk `limit` and returns the number of tables before them. A
/// 16-colour set has up to three tables.
std::int32_t clsVGAGraph::Self::FindFonts(std::int32_t limit) {
    const bool ega = ConfiguredGame().egaGraphics;
    const auto isFont = [&](std::int32_t chunk) {
        const std::optional<ByteArray> stored = StoredAtOpening(static_cast<std::size_t>(chunk));
        return stored && LooksLikeFont(ExpandChunk(*stored, set.dictionary), ega);
    };
    std::int32_t tables = 1;
    while (ega && tables < 3 && !isFont(tables))
        ++tables;
    set.startFonts = tables;
    set.numberOfFonts = 0;
    while (tables + set.numberOfFonts < limit && isFont(tables + set.numberOfFonts))
        ++set.numberOfFonts;
    return tables;
}

/// Reads the tables of masked pictures and sprites and gives their chunks their types.
void clsVGAGraph::Self::TypeTables(std::int32_t tables) {
    const auto readTable = [&](std::int32_t chunk) {
        const std::optional<ByteArray> stored = StoredAtOpening(static_cast<std::size_t>(chunk));
        return stored ? ExpandChunk(*stored, set.dictionary) : ByteArray();
    };
    const auto give = [&](std::int32_t first, std::size_t count, enmVGRAGRAPHTypes type) {
        const std::int64_t end =
            std::min<std::int64_t>(set.Count(), first + static_cast<std::int64_t>(count));
        for (std::int32_t chunk = first; chunk < end; ++chunk)
            if (set.TypeOf(chunk) == vgUnknown)
                set.Recognise(chunk, type);
    };
    give(0, 1, vgSTRUCTPIC);
    if (tables > 1) {
        give(1, 1, vgBMPMaskHead);
        set.maskedPictures = ReadPictureTable(readTable(1), true);
    }
    if (tables > 2) {
        give(2, 1, vgSpriteHead);
        set.sprites = ReadSpriteTable(readTable(2));
    }
    give(set.startFonts, static_cast<std::size_t>(set.numberOfFonts), vgFont);
    give(set.startPics, static_cast<std::size_t>(set.numberOfPics), vgPicture);
    const std::int32_t firstMasked = set.startPics + set.numberOfPics;
    give(firstMasked, set.maskedPictures.size(), vgBMPMask);
    const auto firstSprite = Narrow<std::int32_t>(firstMasked + std::ssize(set.maskedPictures));
    give(firstSprite, set.sprites.size(), vgSprite);
    set.counterA = firstSprite - 2;
    set.counterB = Narrow<std::int32_t>(set.sprites.size());
}

bool clsVGAGraph::Self::LoadPictureDimensions() {
    return Guarded("clsVGAGraph.LoadPictureDimensions", [&] {
        const bool ega = ConfiguredGame().egaGraphics;
        const ByteArray stored = ReadStored(0);
        if (set.j98) {
            SlotOf(0).data = ExpandGraphicsChunk(set, ega, 0, stored);
            TypeJ98Chunks();
            return true;
        }
        SlotOf(0).data = ExpandChunk(stored, set.dictionary);
        set.pictures = ReadPictureTable(Data(0), ega);

        std::vector<StoredLength> lengths(slots.size());
        for (std::size_t i = 0; i < slots.size(); ++i) {
            const ChunkSpan span = FindChunk(offsets, dataSize, i);
            if (span.sparse || span.size < 5 || span.offset + std::size_t{4} > whole.size())
                continue;
            ByteReader in(whole);
            in.Seek(span.offset);
            lengths[i] = {true, in.I32()};
        }
        set.startPics = FindStartPics(set.pictures, lengths, ega);
        const std::int32_t tables = FindFonts(set.startPics > 0 ? set.startPics : set.Count());
        if (set.startPics == 0)
            set.startPics = tables + set.numberOfFonts;
        set.numberOfPics = std::clamp(set.Count() - set.startPics, 0,
                                      static_cast<std::int32_t>(set.pictures.size()));
        TypeTables(tables);
        return true;
    });
}

// In chunk order, each chunk's type settled right after its expansion: what a tile's size is taken
// for depends on the types found before. The expanded bytes are not kept, so that a later load
// expands each tile whole by its type.
bool clsVGAGraph::Self::LoadNonPictureData() {
    return Guarded("clsVGAGraph.LoadNonPictureData", [&] {
        const bool ega = ConfiguredGame().egaGraphics;
        std::optional<Failure> firstFailure;
        for (std::int32_t chunk = 1; chunk < set.Count(); ++chunk) {
            if (set.TypeOf(chunk) != vgUnknown)
                continue;
            try {  // a damaged chunk does not keep the others from being typed
                const ByteArray bytes = ExpandGraphicsChunk(set, ega, chunk, ReadStored(chunk));
                if (set.TypeOf(chunk) == vgUnknown)
                    set.Recognise(chunk, TypeByContent(bytes, ega));
            } catch (const Failure& failure) {
                if (!firstFailure)
                    firstFailure = failure;
            }
        }
        if (firstFailure)
            throw *firstFailure;
        return true;
    });
}

bool clsVGAGraph::Self::Open() {
    ProbeGame();
    if (!LoadHuffman() || !LoadHeader() || !LoadPictureDimensions())
        return false;
    if (set.numberOfFonts > 0)
        LoadWolfFonts();
    couldLoadNonPictureData = LoadNonPictureData();
    whole = {};
    storedPictures = set.pictures;
    storedFonts = fonts;
    return true;
}

// The new set takes the container over once it is open, so that no failure, not even one of a box
// shown on the way, leaves half of it behind.
bool clsVGAGraph::InitializeGraphics() {
    return Guarded("clsVGAGraph.InitializeGraphics", [&] {
        self_->saving.RefuseChange();
        *self_ = self_->Fresh();
        Self opened = self_->Fresh();
        if (!opened.Open())
            return false;
        *self_ = std::move(opened);
        return true;
    });
}

ByteArray clsVGAGraph::Self::ReadStored(std::int32_t chunk) {
    const std::size_t index = set.Index(chunk);
    const ChunkSpan span =
        slots[index].inFile ? FindChunk(offsets, dataSize, index) : ChunkSpan{.sparse = true};
    if (span.sparse)
        throw Failure(0, "Tried to load sparse tile at chunk " + std::to_string(chunk));
    if (span.damaged)
        throw Failure(kSubscriptOutOfRange,
                      "The header lets chunk " + std::to_string(chunk) + " end before it begins.");
    if (!whole.empty()) {
        ByteReader in(whole);
        in.Seek(span.offset);
        const ByteSpan bytes = in.Take(span.size);
        return {bytes.begin(), bytes.end()};
    }
    if (!file.IsOpen())
        file = File(dataPath, FileMode::Read);
    return file.ReadAt(span.offset, span.size);
}

bool clsVGAGraph::Self::Cache(std::int32_t chunk) {
    Slot& slot = SlotOf(chunk);
    if (slot.data)
        return true;
    ByteArray stored;
    const bool read = Guarded("clsVGAGraph.LoadChunk", [&] {
        stored = ReadStored(chunk);
        return true;
    });
    return read && Guarded("clsVGAGraph.ExpandGraphicsChunk", [&] {
               ByteArray bytes =
                   ExpandGraphicsChunk(set, ConfiguredGame().egaGraphics, chunk, stored);
               if (IsText(set.TypeOf(chunk)))
                   bytes = modCodePage::BytesFromDosCodePage(bytes);
               slot.data = std::move(bytes);
               return true;
           });
}

}  // namespace tessaro
