// What a graphics set is made of, and its chunks' bytes.
#include "tessaro/vga_graph.h"

#include <algorithm>

#include "foundation/guard.h"
#include "graphics/vga_graph_self.h"
#include "platform/system.h"
#include "saving/recovery.h"
#include "saving/save_set.h"

namespace tessaro {

clsVGAGraph::clsVGAGraph() : self_(std::make_unique<Self>()) {}
clsVGAGraph::~clsVGAGraph() = default;

// The new set takes the container over once it is open, so that no failure, not even one of a box
// shown on the way, leaves half of it behind.
bool clsVGAGraph::InitializeGraphics() {
    return Guarded("clsVGAGraph.InitializeGraphics", [&] {
        self_->saving.RefuseChange();
        if (self_->found && self_->game == SharedStore().game)
            self_->found->TakeBack(*self_->game);
        Self fresh;
        fresh.j98Mode = self_->j98Mode;
        fresh.givenTile8 = self_->givenTile8;
        if (fresh.givenTile8)
            fresh.set.catalog.tile8 = *fresh.givenTile8;
        *self_ = fresh;
        fresh.Open();
        *self_ = std::move(fresh);
        return true;
    });
}

void clsVGAGraph::Self::Open() {
    game = SharedStore().game;
    found = std::make_shared<GraphicsFinding>(GraphicsFinding::Probe(*game, *game->files, j98Mode));
    finding = game->Take([it = found](Game& refilled) { it->PutInto(refilled); });
    const GraphicsOptions options{j98Mode, givenTile8.value_or(TileLayout())};
    std::vector<std::string> notices;
    set =
        ReadSet(*game->files, {game->vgaHeaderFile, game->vgaGraphFile, game->vgaDictFile}, notices,
                [&](const Files& files) { return GraphicsSet::Open(*game, files, options); });
    givenTile8.reset();
    game->expandDictionary = set.dictionary;
    found->dictionary = set.dictionary;
    ShowNotices(notices);
    for (const OpeningTrouble& trouble : set.troubles) {
        if (trouble.procedure.empty())
            CurrentUserInterface().MsgBox(trouble.failure.Description, mbCritical | mbOKOnly, "",
                                          "", 0);
        else
            Report(trouble.procedure, trouble.failure);
    }
}

/// Drops what was loaded or given; types and tables stay, and the file is opened again on demand.
void clsVGAGraph::CloseFile() {
    Guarded("clsVGAGraph.CloseFile", [&] {
        self_->saving.RefuseChange();
        self_->set.data.Close();
        self_->set.DropChunks();
    });
}

std::int32_t clsVGAGraph::NumberOfChunks() const {
    return self_->set.Count();
}

void clsVGAGraph::NumberOfChunks(std::int32_t NewValue) {
    Guarded("clsVGAGraph.NumberOfChunks", [&] {
        self_->saving.RefuseChange();
        if (NewValue == self_->set.Count())
            return;
        if (!self_->GameOf().canAddOrRemoveChunks)
            throw Failure(kInvalidProcedureCall, "Chunks cannot be added or removed in this game.");
        self_->set.Resize(NewValue);
    });
}

std::int32_t clsVGAGraph::StartFonts() const {
    return self_->set.catalog.startFonts;
}
void clsVGAGraph::StartFonts(std::int32_t NewValue) {
    Guarded("clsVGAGraph.StartFonts", [&] {
        self_->saving.RefuseChange();
        self_->set.catalog.startFonts = NewValue;
    });
}
std::int32_t clsVGAGraph::StartPics() const {
    return self_->set.catalog.startPics;
}
void clsVGAGraph::StartPics(std::int32_t NewValue) {
    Guarded("clsVGAGraph.StartPics", [&] {
        self_->saving.RefuseChange();
        self_->set.catalog.startPics = NewValue;
    });
}
std::int32_t clsVGAGraph::NumberOfPics() const {
    return self_->set.catalog.numberOfPics;
}
void clsVGAGraph::NumberOfPics(std::int32_t NewValue) {
    Guarded("clsVGAGraph.NumberOfPics", [&] {
        self_->saving.RefuseChange();
        self_->set.catalog.numberOfPics = NewValue;
    });
}
std::int32_t clsVGAGraph::NumberOfFonts() const {
    return self_->set.catalog.numberOfFonts;
}
void clsVGAGraph::NumberOfFonts(std::int32_t NewValue) {
    Guarded("clsVGAGraph.NumberOfFonts", [&] {
        self_->saving.RefuseChange();
        self_->set.catalog.numberOfFonts = NewValue;
    });
}
bool clsVGAGraph::EGAGraphics() const {
    return self_->GameOf().egaGraphics;
}
void clsVGAGraph::EGAGraphics(bool NewValue) {
    self_->GameOf().egaGraphics = NewValue;
}
bool clsVGAGraph::J98Mode() const {
    return self_->j98Mode;
}
void clsVGAGraph::J98Mode(bool NewValue) {
    self_->j98Mode = NewValue;
}
bool clsVGAGraph::CouldLoadNonPictureData() const {
    return self_->set.couldLoadNonPictureData;
}

enmVGRAGRAPHTypes clsVGAGraph::ChunkDataType(std::int32_t Chunk) const {
    return Guarded(
        "clsVGAGraph.ChunkDataType", [&] { return self_->set.catalog.TypeOf(Chunk); }, vgUnknown);
}

void clsVGAGraph::ChunkDataType(std::int32_t Chunk, enmVGRAGRAPHTypes NewValue) {
    Guarded("clsVGAGraph.ChunkDataType", [&] {
        self_->saving.RefuseChange();
        self_->set.catalog.Retype(Chunk, NewValue);
    });
}

std::int32_t clsVGAGraph::DataTypeChunk(enmVGRAGRAPHTypes VGAType, std::int32_t Pos) const {
    return self_->set.catalog.ChunkOfType(VGAType, Pos);
}

std::int32_t clsVGAGraph::NumberDataTypeChunks(enmVGRAGRAPHTypes VGAType) const {
    return static_cast<std::int32_t>(std::ranges::count(self_->set.catalog.Types(), VGAType));
}

std::int32_t clsVGAGraph::DemoLevel(std::int32_t DemoNum) {
    return Guarded(
        "clsVGAGraph.DemoLevel",
        [&] {
            const std::int32_t chunk = self_->set.catalog.ChunkOfType(vgDemo, DemoNum);
            if (chunk < 0)
                throw Failure(kSubscriptOutOfRange);
            return std::int32_t{ByteReader(self_->Load(chunk)).U8()};
        },
        -1);
}

void clsVGAGraph::GetTile8Info(std::int32_t& NumberOfTiles, std::int32_t& NumTilesWide,
                               std::int32_t& NumTilesHigh) const {
    const TileLayout& layout = self_->set.catalog.tile8;
    NumberOfTiles = layout.tiles;
    NumTilesWide = layout.wide;
    NumTilesHigh = layout.high;
}

void clsVGAGraph::SetTile8Info(std::int32_t NumberOfTiles, std::int32_t NumTilesWide,
                               std::int32_t NumTilesHigh) {
    Guarded("clsVGAGraph.SetTile8Info", [&] {
        self_->saving.RefuseChange();
        self_->givenTile8 = TileLayout{NumberOfTiles, NumTilesWide, NumTilesHigh};
        self_->set.catalog.tile8 = *self_->givenTile8;
        self_->set.DropTile8();  // tiles already read were cut to the layout before
    });
}

const ByteArray& clsVGAGraph::Self::Load(std::int32_t chunk) {
    if (!set.SlotOf(chunk).data)
        Step("clsVGAGraph.LoadChunk", [&] { Opened(); });
    return set.Load(chunk);
}

const ByteArray& clsVGAGraph::Self::LoadFirst(enmVGRAGRAPHTypes type) {
    const std::int32_t chunk = set.catalog.ChunkOfType(type, 0);
    if (chunk < 0)
        throw Failure(kSubscriptOutOfRange);
    return Load(chunk);
}

bool clsVGAGraph::LoadTessaro(std::int32_t Chunk, ByteArray& Data) {
    return Guarded("clsVGAGraph.LoadTessaro", [&] {
        if (!self_->set.SlotOf(Chunk).data)
            Data = ByteArray(1);  // one byte stands for no data, also where it cannot be loaded
        const ByteArray& bytes = self_->Load(Chunk);
        Data = bytes.empty() ? ByteArray(1) : bytes;
        return true;
    });
}

void clsVGAGraph::SetChunkData(std::int32_t Chunk, const ByteArray& Data) {
    Guarded("clsVGAGraph.SetChunkData", [&] {
        self_->saving.RefuseChange();
        if (IsBMPImage(Data))  // what the image does not show comes from the file
            self_->Opened();
        self_->set.Replace(Chunk, Data);
    });
}

void clsVGAGraph::SetMaskData(std::int32_t Chunk, const ByteArray& Data) {
    Guarded("clsVGAGraph.SetMaskData", [&] {
        self_->saving.RefuseChange();
        self_->set.ReplaceMask(Chunk, Data);
    });
}

}  // namespace tessaro
