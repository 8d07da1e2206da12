// What a graphics set is made of, and its chunks' bytes.
#include "tessaro/vga_graph.h"

#include <algorithm>

#include "foundation/guard.h"
#include "graphics/vga_graph_self.h"

namespace tessaro {

clsVGAGraph::clsVGAGraph() : self_(std::make_unique<Self>()) {}
clsVGAGraph::~clsVGAGraph() = default;

void RefuseType() {
    throw Failure(0, "Procedure was called for unsupported type!");
}

/// Drops what was loaded or given; types and tables stay, and the file is opened again on demand.
void clsVGAGraph::CloseFile() {
    Guarded("clsVGAGraph.CloseFile", [&] {
        self_->saving.RefuseChange();
        self_->file.Release();
        self_->set.pictures = self_->storedPictures;
        self_->fonts = self_->storedFonts;
        for (Self::Slot& slot : self_->slots)
            if (slot.inFile)
                slot = {};
    });
}

std::int32_t clsVGAGraph::NumberOfChunks() const {
    return self_->set.Count();
}

void clsVGAGraph::NumberOfChunks(std::int32_t NewValue) {
    Guarded("clsVGAGraph.NumberOfChunks", [&] {
        self_->saving.RefuseChange();
        self_->Resize(NewValue);
    });
}

void clsVGAGraph::Self::Resize(std::int32_t chunks) {
    constexpr std::int32_t kMostChunks = 65535;
    if (chunks == set.Count())
        return;
    if (!ConfiguredGame().canAddOrRemoveChunks)
        throw Failure(kInvalidProcedureCall, "Chunks cannot be added or removed in this game.");
    if (chunks < 1 || chunks > kMostChunks)
        throw Failure(kInvalidProcedureCall);
    // What is added is an empty chunk until it is given data.
    slots.resize(static_cast<std::size_t>(chunks),
                 Slot{.data = ByteArray(), .mask = {}, .replaced = true, .inFile = false});
    set.types.resize(static_cast<std::size_t>(chunks), vgUnknown);
    // The host may have set starts and counts to anything.
    const auto limit = [&](std::int32_t start, std::int32_t& count) {
        const std::int64_t most = std::max<std::int64_t>(std::int64_t{chunks} - start, 0);
        count = static_cast<std::int32_t>(std::min<std::int64_t>(count, most));
    };
    limit(set.startPics, set.numberOfPics);
    limit(set.startFonts, set.numberOfFonts);
}

std::int32_t clsVGAGraph::StartFonts() const {
    return self_->set.startFonts;
}
void clsVGAGraph::StartFonts(std::int32_t NewValue) {
    self_->set.startFonts = NewValue;
}
std::int32_t clsVGAGraph::StartPics() const {
    return self_->set.startPics;
}
void clsVGAGraph::StartPics(std::int32_t NewValue) {
    self_->set.startPics = NewValue;
}
std::int32_t clsVGAGraph::NumberOfPics() const {
    return self_->set.numberOfPics;
}
void clsVGAGraph::NumberOfPics(std::int32_t NewValue) {
    self_->set.numberOfPics = NewValue;
}
std::int32_t clsVGAGraph::NumberOfFonts() const {
    return self_->set.numberOfFonts;
}
void clsVGAGraph::NumberOfFonts(std::int32_t NewValue) {
    self_->set.numberOfFonts = NewValue;
}
bool clsVGAGraph::EGAGraphics() const {
    return ConfiguredGame().egaGraphics;
}
void clsVGAGraph::EGAGraphics(bool NewValue) {
    ConfiguredGame().egaGraphics = NewValue;
}
bool clsVGAGraph::J98Mode() const {
    return self_->j98Mode;
}
void clsVGAGraph::J98Mode(bool NewValue) {
    self_->j98Mode = NewValue;
}
bool clsVGAGraph::CouldLoadNonPictureData() const {
    return self_->couldLoadNonPictureData;
}

enmVGRAGRAPHTypes clsVGAGraph::ChunkDataType(std::int32_t Chunk) const {
    return Guarded(
        "clsVGAGraph.ChunkDataType", [&] { return self_->set.TypeOf(Chunk); }, vgUnknown);
}

void clsVGAGraph::ChunkDataType(std::int32_t Chunk, enmVGRAGRAPHTypes NewValue) {
    Guarded("clsVGAGraph.ChunkDataType", [&] {
        self_->saving.RefuseChange();
        self_->set.types[self_->set.Index(Chunk)] = NewValue;
    });
}

std::int32_t clsVGAGraph::DataTypeChunk(enmVGRAGRAPHTypes VGAType, std::int32_t Pos) const {
    return self_->set.ChunkOfType(VGAType, Pos);
}

std::int32_t clsVGAGraph::NumberDataTypeChunks(enmVGRAGRAPHTypes VGAType) const {
    return static_cast<std::int32_t>(std::ranges::count(self_->set.types, VGAType));
}

std::int32_t clsVGAGraph::DemoLevel(std::int32_t DemoNum) {
    constexpr std::int32_t kFailed = -1;
    return Guarded(
        "clsVGAGraph.DemoLevel",
        [&] {
            const std::int32_t chunk = self_->set.ChunkOfType(vgDemo, DemoNum);
            if (chunk < 0)
                throw Failure(kSubscriptOutOfRange);
            if (!self_->Cache(chunk))
                return kFailed;
            return std::int32_t{ByteReader(self_->Data(chunk)).U8()};
        },
        kFailed);
}

void clsVGAGraph::GetTile8Info(std::int32_t& NumberOfTiles, std::int32_t& NumTilesWide,
                               std::int32_t& NumTilesHigh) const {
    const TileLayout& layout = self_->set.tile8;
    NumberOfTiles = layout.tiles;
    NumTilesWide = layout.wide;
    NumTilesHigh = layout.high;
}

void clsVGAGraph::SetTile8Info(std::int32_t NumberOfTiles, std::int32_t NumTilesWide,
                               std::int32_t NumTilesHigh) {
    self_->set.tile8 = {NumberOfTiles, NumTilesWide, NumTilesHigh};
    self_->tile8Given = true;
    // Tiles already read were cut to the layout before.
    if (const std::int32_t chunk = self_->set.ChunkOfType(vgTile8, 0); chunk >= 0)
        if (Self::Slot& slot = self_->SlotOf(chunk); !slot.replaced)
            slot.data.reset();
}

bool clsVGAGraph::LoadTessaro(std::int32_t Chunk, ByteArray& Data) {
    return Guarded("clsVGAGraph.LoadTessaro", [&] {
        const bool loaded = self_->Cache(Chunk);
        const std::optional<ByteArray>& data = self_->SlotOf(Chunk).data;
        Data = data && !data->empty() ? *data : ByteArray(1);  // one byte stands for no data
        return loaded;
    });
}

void clsVGAGraph::SetChunkData(std::int32_t Chunk, const ByteArray& Data) {
    Guarded("clsVGAGraph.SetChunkData", [&] {
        self_->saving.RefuseChange();
        self_->Replace(Chunk, Data);
    });
}

}  // namespace tessaro
