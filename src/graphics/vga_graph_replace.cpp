// Data from the host in place of stored ones: as they are, or converted from a BMP image.
#include <algorithm>

#include "foundation/guard.h"
#include "graphics/chunk_content.h"
#include "graphics/chunk_expander.h"
#include "graphics/fonts.h"
#include "graphics/picture_planes.h"
#include "graphics/tiles.h"
#include "graphics/vga_graph_self.h"
#include "images/bmp_image.h"

namespace tessaro {
namespace {

struct Pixels {
    ByteArray bytes;  ///< one a pixel
    PictureSize size;
};

Pixels PixelsFromImage(ByteSpan image) {
    modAddBMPHeader::StrippedImage stripped = modAddBMPHeader::RemoveBMPHeader(image);
    const PictureSize size{stripped.width, stripped.height};
    if (stripped.bitsPerPixel == 8)
        return {std::move(stripped.pixels), size};
    if (stripped.bitsPerPixel != 4)
        throw Failure(kInvalidProcedureCall, "The image does not have 4 or 8 bits per pixel.");
    return {UnpackHalfBytes(stripped.pixels, size.width, size.height), size};
}

bool TakesImages(enmVGRAGRAPHTypes type) {
    switch (type) {
        case vgPicture:
        case vgBMPMask:
        case vgSprite:
        case vgTile8:
        case vgTile8m:
        case vgTile16:
        case vgTile16M:
            return true;
        default:
            return false;
    }
}

void RequireSize(PictureSize actual, PictureSize wanted) {
    if (actual.width != wanted.width || actual.height != wanted.height)
        throw Failure(kInvalidProcedureCall, "The image must be " + std::to_string(wanted.width) +
                                                 " x " + std::to_string(wanted.height) +
                                                 " pixels.");
}

/// A picture's planes have whole bytes, and the picture table ends at the first entry beyond 640 x
/// 480: other sizes would not read back. A width that the table has already is let pass.
void CheckPictureSize(PictureSize size, PictureSize old, bool ega) {
    const std::int32_t step = ega ? 8 : 4;
    if (size.width < 1 || size.height < 1 || size.width > 640 || size.height > 480)
        throw Failure(kInvalidProcedureCall, "A picture is 1 x 1 to 640 x 480 pixels.");
    if (size.width % step != 0 && size.width != old.width)
        throw Failure(kInvalidProcedureCall,
                      "A picture's width must be a multiple of " + std::to_string(step) + ".");
}

ByteArray PlanesFromPixels(const Pixels& pixels, bool ega) {
    return ega ? EgaPlanesFromPixels(pixels.bytes, pixels.size.width, pixels.size.height)
               : FixPicturePlanesForStorage(pixels.bytes, pixels.size.width, pixels.size.height);
}

}  // namespace

bool IsBMPImage(ByteSpan bytes) {
    constexpr std::size_t kHeader = 54;
    if (bytes.size() < kHeader || bytes[0] != 'B' || bytes[1] != 'M')
        return false;
    ByteReader in(bytes);
    in.Seek(2);
    return in.U32() == bytes.size();
}

/// Gives a picture a new size in the tables, in memory and in the table's chunk.
void clsVGAGraph::Self::ResizePicture(std::int32_t chunk, PictureSize size) {
    PictureSize& entry = SizeOf(chunk);
    if (entry.width == size.width && entry.height == size.height)
        return;
    const bool ega = ConfiguredGame().egaGraphics;
    if (!Cache(0))
        throw Failure(kSubscriptOutOfRange);
    Slot& table = SlotOf(0);
    const auto at = static_cast<std::size_t>(chunk - set.startPics) * 4;
    if (at + 4 > table.data->size())
        throw Failure(kSubscriptOutOfRange);
    ByteWriter row;
    row.U16(Narrow<std::uint16_t>(ega ? size.width / 8 : size.width));
    row.U16(Narrow<std::uint16_t>(size.height));
    std::ranges::copy(row.View(), table.data->begin() + static_cast<std::ptrdiff_t>(at));
    table.replaced = true;
    entry = size;
}

/// The expanded form of what a BMP image shows.
ByteArray clsVGAGraph::Self::StoredForm(std::int32_t chunk, const ByteArray& image) {
    const bool ega = ConfiguredGame().egaGraphics;
    const Pixels pixels = PixelsFromImage(image);
    const auto sheet = [&](TileForm form, std::int32_t wide, std::int32_t high) {
        RequireSize(pixels.size, {8 * wide, 8 * high});
        // A stored chunk can hold more tiles than the layout shows: these stay behind the sheet's.
        if (Slot& slot = SlotOf(chunk); form != TileForm::EgaMasked && !slot.replaced)
            return TilesFromSheet(pixels.bytes, ExpandWhole(set, ega, chunk, ReadStored(chunk)),
                                  form, wide, high);
        if (!Cache(chunk))
            throw Failure(kSubscriptOutOfRange);
        return TilesFromSheet(pixels.bytes, Data(chunk), form, wide, high);
    };
    switch (set.TypeOf(chunk)) {
        case vgPicture: {
            CheckPictureSize(pixels.size, SizeOf(chunk), ega);
            ByteArray planes = PlanesFromPixels(pixels, ega);
            ResizePicture(chunk, pixels.size);
            return planes;
        }
        case vgBMPMask:
        case vgSprite: {
            const PictureSize size =
                set.TypeOf(chunk) == vgBMPMask
                    ? SizeOf(chunk)
                    : PictureSize{8 * SpriteOf(chunk).Width, SpriteOf(chunk).Height};
            RequireSize(pixels.size, size);
            if (!Cache(chunk))
                throw Failure(kSubscriptOutOfRange);
            const std::size_t planeSize = EgaPlaneSize(size.width, size.height);
            ByteArray planes = MaskOf(chunk, planeSize);
            if (planes.size() != planeSize)
                throw Failure(kInvalidProcedureCall, "The mask has another size than the picture.");
            const ByteArray colors = PlanesFromPixels(pixels, true);
            planes.insert(planes.end(), colors.begin(), colors.end());
            return planes;
        }
        case vgTile8:
            return sheet(ega ? TileForm::Ega : TileForm::Vga, set.tile8.wide, set.tile8.high);
        case vgTile8m:
            return sheet(TileForm::EgaMasked, set.maskedTile8.wide, set.maskedTile8.high);
        case vgTile16:
            RequireSize(pixels.size, {16, 16});
            return PlanesFromPixels(pixels, ega);
        default:
            RefuseType();
    }
}

void clsVGAGraph::Self::Replace(std::int32_t chunk, const ByteArray& data) {
    const bool ega = ConfiguredGame().egaGraphics;
    const enmVGRAGRAPHTypes type = set.TypeOf(chunk);
    ByteArray bytes = IsBMPImage(data) && TakesImages(type) ? StoredForm(chunk, data) : data;
    if (type == vgUnknown || type == vgSparse)
        set.Recognise(chunk, TypeByContent(bytes, ega));
    if (chunk == 0 && type == vgSTRUCTPIC && !set.j98)
        set.pictures = ReadPictureTable(bytes, ega);
    const std::int64_t font = std::int64_t{chunk} - set.startFonts;
    if (type == vgFont && font >= 0 && font < std::ssize(fonts) && LooksLikeFont(bytes, ega))
        fonts[static_cast<std::size_t>(font)] = ReadFont(bytes, ega);
    Slot& slot = SlotOf(chunk);
    if (slot.mask && bytes.size() / 5 >= slot.mask->size())
        slot.mask.reset();  // the new bytes have a mask plane of their own
    slot.data = std::move(bytes);
    slot.replaced = true;
}

void clsVGAGraph::SetMaskData(std::int32_t Chunk, const ByteArray& Data) {
    Guarded("clsVGAGraph.SetMaskData", [&] {
        self_->saving.RefuseChange();
        ByteArray plane = Data;
        if (IsBMPImage(Data)) {
            const Pixels pixels = PixelsFromImage(Data);
            plane = EgaMaskFromPixels(pixels.bytes, pixels.size.width, pixels.size.height);
        }
        self_->SlotOf(Chunk).mask = std::move(plane);
    });
}

}  // namespace tessaro
