// Palettes, pictures, tiles and sprites as callers see them.
#include <algorithm>

#include "foundation/guard.h"
#include "graphics/area_names.h"
#include "graphics/picture_planes.h"
#include "graphics/tiles.h"
#include "graphics/vga_graph_self.h"
#include "images/bmp_image.h"

namespace tessaro {
namespace {

/// Linear pixels as a BMP image in the depth of the set.
ByteArray MakeImage(ByteSpan pixels, PictureSize size, bool ega) {
    if (!ega)
        return modAddBMPHeader::MakeImage(size.width, size.height, pixels, 8);
    return modAddBMPHeader::MakeImage(size.width, size.height,
                                      PackHalfBytes(pixels, size.width, size.height), 4);
}

struct MaskedImages {
    ByteArray image, mask;
};

MaskedImages MakeMaskedImages(const MaskedPlanes& planes, PictureSize size, bool ega) {
    return {MakeImage(PixelsFromEgaPlanes(planes.colors, size.width, size.height), size, ega),
            MakeImage(PixelsFromEgaMask(planes.mask, size.width, size.height), size, ega)};
}

}  // namespace

bool clsVGAGraph::LoadWolfPalette(std::int32_t Chunk, std::vector<std::int32_t>& Colors) {
    return Guarded("clsVGAGraph.LoadWolfPalette", [&] {
        Colors.assign(256, 0);
        ByteReader in(self_->Load(Chunk));
        std::vector<std::int32_t> colors(256);
        for (std::int32_t& color : colors)
            color = static_cast<std::int32_t>(in.U24() * 4);  // not clamped: that is meant
        Colors = std::move(colors);
        return true;
    });
}

void clsVGAGraph::SetPaletteToChunk(std::int32_t ChunkNum) {
    Guarded("clsVGAGraph.SetPaletteToChunk", [&] {
        const std::string number = std::to_string(ChunkNum);
        if (ChunkNum < 0 || ChunkNum >= self_->set.Count())
            throw Failure(0, "Invalid chunk number: " + number);
        if (self_->set.catalog.TypeOf(ChunkNum) != vgPalette)
            throw Failure(0, "Chunk number " + number + " is not a palette.");
        std::vector<std::int32_t> colors;
        if (!LoadWolfPalette(ChunkNum, colors))
            throw Failure(0, "Error loading palette chunk number: " + number);
        std::ranges::copy(colors, SharedStore().palette.begin());
    });
}

bool clsVGAGraph::LoadWolfPicture(std::int32_t Chunk, ByteArray& Data, std::int32_t& Height,
                                  std::int32_t& Width, bool ForcePaletteLoad) {
    return Guarded("clsVGAGraph.LoadWolfPicture", [&] {
        const bool ega = self_->set.catalog.ega;
        const enmVGRAGRAPHTypes type = self_->set.catalog.TypeOf(Chunk);
        if (type != vgPicture && type != vgBMPMask && type != vgTile16)
            RefuseType();
        if (const std::int32_t palette = self_->set.catalog.ChunkOfType(vgPalette, 0);
            ForcePaletteLoad && palette >= 0)
            SetPaletteToChunk(palette);
        const GraphicsSet& set = self_->set;
        const PictureSize size = type == vgTile16 ? PictureSize{16, 16} : set.SizeOf(Chunk);
        const ByteArray& stored = self_->Load(Chunk);
        const std::size_t area =
            static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
        // A 98GRAPH set has pictures in a form of its own; what has another size is one of them.
        if (set.catalog.j98 && stored.size() != area)
            RefuseType();
        if (type == vgTile16 && stored.size() != (ega ? area / 2 : area))
            throw Failure(kSubscriptOutOfRange);
        const ByteArray pixels =
            type == vgBMPMask
                ? PixelsFromEgaPlanes(set.SplitMask(Chunk, size).colors, size.width, size.height)
            : ega ? PixelsFromEgaPlanes(stored, size.width, size.height)
                  : FixPicturePlanesForBMP(stored, size.width, size.height);
        Data = MakeImage(pixels, size, ega);
        Height = size.height;
        Width = size.width;
        return true;
    });
}

// 64 bytes a tile and 8 bits a pixel in either mode: that is meant.
bool clsVGAGraph::LoadTile8(std::int32_t TileNum, ByteArray& Data) {
    return Guarded("clsVGAGraph.LoadTile8", [&] {
        if (TileNum < 0)
            throw Failure(kSubscriptOutOfRange);
        ByteReader in(self_->LoadFirst(vgTile8));
        const std::size_t tile = TileSize(TileForm::Vga);
        in.Seek(tile * static_cast<std::size_t>(TileNum));
        const ByteArray pixels = FixPicturePlanesForBMP(in.Take(tile), 8, 8);
        Data = modAddBMPHeader::MakeImage(8, 8, pixels, 8);
        return true;
    });
}

bool clsVGAGraph::LoadCompleteTile8(ByteArray& Data, std::int32_t& Height, std::int32_t& Width) {
    return Guarded("clsVGAGraph.LoadCompleteTile8", [&] {
        const ByteArray& tiles = self_->LoadFirst(vgTile8);
        const bool ega = self_->set.catalog.ega;
        const TileLayout& layout = self_->set.catalog.tile8;
        const ByteArray sheet =
            TileSheet(tiles, ega ? TileForm::Ega : TileForm::Vga, layout.wide, layout.high);
        Data = MakeImage(sheet, {8 * layout.wide, 8 * layout.high}, ega);
        Height = 8 * layout.high;
        Width = 8 * layout.wide;
        return true;
    });
}

bool clsVGAGraph::LoadCompleteMaskTile8(ByteArray& Data, ByteArray& Mask, std::int32_t& Height,
                                        std::int32_t& Width) {
    return Guarded("clsVGAGraph.LoadCompleteMaskTile8", [&] {
        const ByteArray& tiles = self_->LoadFirst(vgTile8m);
        const bool ega = self_->set.catalog.ega;
        const MaskedTileLayout& layout = self_->set.catalog.maskedTile8;
        const PictureSize size{8 * layout.wide, 8 * layout.high};
        ByteArray image =
            MakeImage(TileSheet(tiles, TileForm::EgaMasked, layout.wide, layout.high), size, ega);
        Mask = MakeImage(TileMaskSheet(tiles, layout.wide, layout.high), size, ega);
        Data = std::move(image);
        Height = size.height;
        Width = size.width;
        return true;
    });
}

bool clsVGAGraph::LoadMaskPicture(std::int32_t Chunk, ByteArray& Data, ByteArray& Mask,
                                  std::int32_t& Height, std::int32_t& Width) {
    return Guarded("clsVGAGraph.LoadMaskPicture", [&] {
        GraphicsSet& set = self_->set;
        if (set.catalog.TypeOf(Chunk) != vgBMPMask)
            RefuseType();
        const PictureSize size = set.SizeOf(Chunk);
        self_->Load(Chunk);
        MaskedImages images = MakeMaskedImages(set.SplitMask(Chunk, size), size, set.catalog.ega);
        Data = std::move(images.image);
        Mask = std::move(images.mask);
        Height = size.height;
        Width = size.width;
        return true;
    });
}

bool clsVGAGraph::LoadEGASprite(std::int32_t Chunk, ByteArray& Data, ByteArray& Mask,
                                std::int32_t& Height, std::int32_t& Width,
                                typSpriteHead& SpriteHead) {
    return Guarded("clsVGAGraph.LoadEGASprite", [&] {
        GraphicsSet& set = self_->set;
        const typSpriteHead& head = set.SpriteOf(Chunk);
        const PictureSize size{8 * head.Width, head.Height};
        self_->Load(Chunk);
        MaskedImages images = MakeMaskedImages(set.SplitMask(Chunk, size), size, set.catalog.ega);
        Data = std::move(images.image);
        Mask = std::move(images.mask);
        Height = size.height;
        Width = size.width;
        SpriteHead = head;
        return true;
    });
}

void clsVGAGraph::GetPictureDimensions(std::int32_t Chunk, std::int32_t& Width,
                                       std::int32_t& Height) {
    Guarded("clsVGAGraph.GetPictureDimensions", [&] {
        const PictureSize size = self_->set.SizeOf(Chunk);
        Width = size.width;
        Height = size.height;
    });
}

bool clsVGAGraph::LoadAreaNames(std::int32_t Chunk, std::vector<std::string>& AreaNames) {
    return Guarded("clsVGAGraph.LoadAreaNames", [&] {
        std::vector<std::string> names;
        if (!ReadAreaNames(self_->Load(Chunk), names))
            throw Failure(kSubscriptOutOfRange);
        AreaNames = std::move(names);
        return true;
    });
}

}  // namespace tessaro
