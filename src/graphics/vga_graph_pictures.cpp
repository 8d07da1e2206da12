// Palettes, pictures, tiles and sprites as callers see them.
#include <algorithm>

#include "foundation/guard.h"
#include "graphics/area_names.h"
#include "graphics/chunk_expander.h"
#include "graphics/picture_planes.h"
#include "graphics/tiles.h"
#include "graphics/vga_graph_self.h"
#include "images/bmp_image.h"

namespace tessaro {
namespace {

/// Linear pixels as a BMP image in the depth of the current mode.
ByteArray MakeImage(ByteSpan pixels, std::int32_t width, std::int32_t height) {
    if (!ConfiguredGame().egaGraphics)
        return modAddBMPHeader::AddBMPHeader(width, height, pixels, false);
    return modAddBMPHeader::AddBMPHeader(width, height, PackHalfBytes(pixels, width, height),
                                         false);
}

struct MaskedImages {
    ByteArray image, mask;
};

MaskedImages MakeMaskedImages(const MaskedPlanes& planes, PictureSize size) {
    return {MakeImage(PixelsFromEgaPlanes(planes.colors, size.width, size.height), size.width,
                      size.height),
            MakeImage(PixelsFromEgaMask(planes.mask, size.width, size.height), size.width,
                      size.height)};
}

}  // namespace

PictureSize& clsVGAGraph::Self::SizeOf(std::int32_t chunk) {
    const bool masked = set.TypeOf(chunk) == vgBMPMask;
    std::vector<PictureSize>& table = masked ? set.maskedPictures : set.pictures;
    const std::int64_t index =
        std::int64_t{chunk} - set.startPics - (masked ? set.numberOfPics : 0);
    if (index < 0 || index >= std::ssize(table))
        throw Failure(kSubscriptOutOfRange);
    return table[static_cast<std::size_t>(index)];
}

typSpriteHead& clsVGAGraph::Self::SpriteOf(std::int32_t chunk) {
    const std::int64_t index = std::int64_t{chunk} - set.counterA - 2;
    if (set.TypeOf(chunk) != vgSprite)
        RefuseType();
    if (index < 0 || index >= std::ssize(set.sprites))
        throw Failure(kSubscriptOutOfRange);
    return set.sprites[static_cast<std::size_t>(index)];
}

ByteArray clsVGAGraph::Self::MaskOf(std::int32_t chunk, std::size_t planeSize) {
    const Slot& slot = SlotOf(chunk);
    if (slot.mask)
        return *slot.mask;
    if (slot.data->size() / 5 < planeSize)
        return ByteArray(planeSize);
    return {slot.data->begin(), slot.data->begin() + static_cast<std::ptrdiff_t>(planeSize)};
}

/// The slot holds the mask plane before the four colour planes; the host may have given these
/// alone, or another mask. Sizes come from a table of the file: no memory is taken for one that the
/// slot's bytes do not bear out.
MaskedPlanes clsVGAGraph::Self::SplitMask(std::int32_t chunk, PictureSize size) {
    const std::size_t plane = EgaPlaneSize(size.width, size.height);
    ByteSpan data = *SlotOf(chunk).data;
    if (data.size() / 4 < plane)
        throw Failure(kSubscriptOutOfRange);
    if (data.size() / 5 >= plane)
        data = data.subspan(plane);
    return {.colors = {data.begin(), data.end()}, .mask = MaskOf(chunk, plane)};
}

bool clsVGAGraph::LoadWolfPalette(std::int32_t Chunk, std::vector<std::int32_t>& Colors) {
    return Guarded("clsVGAGraph.LoadWolfPalette", [&] {
        Colors.assign(256, 0);
        if (!self_->Cache(Chunk))
            return false;
        ByteReader in(self_->Data(Chunk));
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
        if (self_->set.TypeOf(ChunkNum) != vgPalette)
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
        const bool ega = ConfiguredGame().egaGraphics;
        const enmVGRAGRAPHTypes type = self_->set.TypeOf(Chunk);
        if (type != vgPicture && type != vgBMPMask && type != vgTile16)
            RefuseType();
        if (const std::int32_t palette = self_->set.ChunkOfType(vgPalette, 0);
            ForcePaletteLoad && palette >= 0)
            SetPaletteToChunk(palette);
        const PictureSize size = type == vgTile16 ? PictureSize{16, 16} : self_->SizeOf(Chunk);
        if (!self_->Cache(Chunk))
            return false;

        const ByteArray& stored = self_->Data(Chunk);
        const std::size_t area =
            static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
        // A 98GRAPH set has pictures in a form of its own; what has another size is one of them.
        if (self_->set.j98 && stored.size() != area)
            RefuseType();
        if (type == vgTile16 && stored.size() != (ega ? area / 2 : area))
            throw Failure(kSubscriptOutOfRange);
        const ByteArray pixels =
            type == vgBMPMask
                ? PixelsFromEgaPlanes(self_->SplitMask(Chunk, size).colors, size.width, size.height)
            : ega ? PixelsFromEgaPlanes(stored, size.width, size.height)
                  : FixPicturePlanesForBMP(stored, size.width, size.height);
        Data = MakeImage(pixels, size.width, size.height);
        Height = size.height;
        Width = size.width;
        return true;
    });
}

// 64 bytes a tile and 8 bits a pixel in either mode: that is meant.
bool clsVGAGraph::LoadTile8(std::int32_t TileNum, ByteArray& Data) {
    return Guarded("clsVGAGraph.LoadTile8", [&] {
        const std::int32_t chunk = self_->set.ChunkOfType(vgTile8, 0);
        if (chunk < 0 || TileNum < 0)
            throw Failure(kSubscriptOutOfRange);
        if (!self_->Cache(chunk))
            return false;
        ByteReader in(self_->Data(chunk));
        const std::size_t tile = TileSize(TileForm::Vga);
        in.Seek(tile * static_cast<std::size_t>(TileNum));
        const ByteArray pixels = FixPicturePlanesForBMP(in.Take(tile), 8, 8);
        Data = modAddBMPHeader::AddBMPHeader(8, 8, pixels, true);
        return true;
    });
}

bool clsVGAGraph::LoadCompleteTile8(ByteArray& Data, std::int32_t& Height, std::int32_t& Width) {
    return Guarded("clsVGAGraph.LoadCompleteTile8", [&] {
        const std::int32_t chunk = self_->set.ChunkOfType(vgTile8, 0);
        if (chunk < 0)
            throw Failure(kSubscriptOutOfRange);
        if (!self_->Cache(chunk))
            return false;
        const TileLayout& layout = self_->set.tile8;
        const TileForm form = ConfiguredGame().egaGraphics ? TileForm::Ega : TileForm::Vga;
        const ByteArray sheet = TileSheet(self_->Data(chunk), form, layout.wide, layout.high);
        Data = MakeImage(sheet, 8 * layout.wide, 8 * layout.high);
        Height = 8 * layout.high;
        Width = 8 * layout.wide;
        return true;
    });
}

bool clsVGAGraph::LoadCompleteMaskTile8(ByteArray& Data, ByteArray& Mask, std::int32_t& Height,
                                        std::int32_t& Width) {
    return Guarded("clsVGAGraph.LoadCompleteMaskTile8", [&] {
        const std::int32_t chunk = self_->set.ChunkOfType(vgTile8m, 0);
        if (chunk < 0)
            throw Failure(kSubscriptOutOfRange);
        if (!self_->Cache(chunk))
            return false;
        const MaskedTileLayout& layout = self_->set.maskedTile8;
        const std::int32_t width = 8 * layout.wide;
        const std::int32_t height = 8 * layout.high;
        const ByteArray& tiles = self_->Data(chunk);
        ByteArray image = MakeImage(TileSheet(tiles, TileForm::EgaMasked, layout.wide, layout.high),
                                    width, height);
        Mask = MakeImage(TileMaskSheet(tiles, layout.wide, layout.high), width, height);
        Data = std::move(image);
        Height = height;
        Width = width;
        return true;
    });
}

bool clsVGAGraph::LoadMaskPicture(std::int32_t Chunk, ByteArray& Data, ByteArray& Mask,
                                  std::int32_t& Height, std::int32_t& Width) {
    return Guarded("clsVGAGraph.LoadMaskPicture", [&] {
        if (self_->set.TypeOf(Chunk) != vgBMPMask)
            RefuseType();
        const PictureSize size = self_->SizeOf(Chunk);
        if (!self_->Cache(Chunk))
            return false;
        MaskedImages images = MakeMaskedImages(self_->SplitMask(Chunk, size), size);
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
        const typSpriteHead& head = self_->SpriteOf(Chunk);
        const PictureSize size{8 * head.Width, head.Height};
        if (!self_->Cache(Chunk))
            return false;
        MaskedImages images = MakeMaskedImages(self_->SplitMask(Chunk, size), size);
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
        const PictureSize size = self_->SizeOf(Chunk);
        Width = size.width;
        Height = size.height;
    });
}

bool clsVGAGraph::LoadAreaNames(std::int32_t Chunk, std::vector<std::string>& AreaNames) {
    return Guarded("clsVGAGraph.LoadAreaNames", [&] {
        if (!self_->Cache(Chunk))
            return false;
        std::vector<std::string> names;
        if (!ReadAreaNames(self_->Data(Chunk), names))
            throw Failure(kSubscriptOutOfRange);
        AreaNames = std::move(names);
        return true;
    });
}

}  // namespace tessaro
