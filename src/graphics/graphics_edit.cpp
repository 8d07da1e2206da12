// Data from the host in place of stored ones: as they are, or converted from a BMP image.
#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include "graphics/chunk_content.h"
#include "graphics/fonts.h"
#include "graphics/graphics_set.h"
#include "graphics/picture_planes.h"
#include "graphics/tiles.h"
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
    if (actual != wanted)
        throw Failure(kInvalidProcedureCall, "The image must be " + std::to_string(wanted.width) +
                                                 " x " + std::to_string(wanted.height) +
                                                 " pixels.");
}

PictureSize SheetSize(std::int32_t wide, std::int32_t high) {
    return {Narrow<std::int32_t>(std::int64_t{8} * wide),
            Narrow<std::int32_t>(std::int64_t{8} * high)};
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

/// Gives a picture a new size in the table, in memory and in the table's chunk.
void GraphicsSet::ResizePicture(std::int32_t chunk, PictureSize size) {
    const std::size_t index = PictureIndex(chunk);
    if (catalog.pictures[index] == size)
        return;
    Load(0);
    Slot& table = SlotOf(0);
    if (4 * index + 4 > table.data->size())
        throw Failure(kSubscriptOutOfRange);
    ByteWriter row;
    row.U16(Narrow<std::uint16_t>(catalog.ega ? size.width / 8 : size.width));
    row.U16(Narrow<std::uint16_t>(size.height));
    std::ranges::copy(row.View(), table.data->begin() + static_cast<std::ptrdiff_t>(4 * index));
    table.replaced = true;
    catalog.pictures[index] = size;
}

ByteArray GraphicsSet::Whole(std::int32_t chunk) {
    if (SlotOf(chunk).replaced)
        return *SlotOf(chunk).data;
    const ByteSpan stored = StoredBytes(chunk);
    const ChunkForm form = FormOf(catalog, dictionary, chunk, stored);
    Settle(catalog, chunk, form);
    return ExpandWhole(form, catalog.ega, stored, dictionary);
}

/// The expanded form of what a BMP image shows.
ByteArray GraphicsSet::FromImage(std::int32_t chunk, const ByteArray& image) {
    const bool ega = catalog.ega;
    const Pixels pixels = PixelsFromImage(image);
    switch (catalog.TypeOf(chunk)) {
        case vgPicture: {
            CheckPictureSize(pixels.size, SizeOf(chunk), ega);
            ByteArray planes = PlanesFromPixels(pixels, ega);
            ResizePicture(chunk, pixels.size);
            return planes;
        }
        case vgBMPMask:
        case vgSprite: {
            const PictureSize size = MaskedSizeOf(chunk);
            RequireSize(pixels.size, size);
            Load(chunk);
            const std::size_t planeSize = EgaPlaneSize(size.width, size.height);
            ByteArray planes = MaskOf(chunk, planeSize);
            const ByteArray colors = PlanesFromPixels(pixels, true);
            planes.insert(planes.end(), colors.begin(), colors.end());
            return planes;
        }
        case vgTile8: {
            // A stored chunk can hold more tiles than the layout shows: these stay behind the
            // sheet's.
            const TileLayout& layout = catalog.tile8;
            RequireSize(pixels.size, SheetSize(layout.wide, layout.high));
            return TilesFromSheet(pixels.bytes, Whole(chunk), ega ? TileForm::Ega : TileForm::Vga,
                                  layout.wide, layout.high);
        }
        case vgTile8m: {
            const MaskedTileLayout& layout = catalog.maskedTile8;
            RequireSize(pixels.size, SheetSize(layout.wide, layout.high));
            return TilesFromSheet(pixels.bytes, Load(chunk), TileForm::EgaMasked, layout.wide,
                                  layout.high);
        }
        case vgTile16:
            RequireSize(pixels.size, {16, 16});
            return PlanesFromPixels(pixels, ega);
        default:
            RefuseType();
    }
}

void GraphicsSet::RequireForm(std::int32_t chunk, ByteSpan bytes) const {
    const std::string name = "Chunk " + std::to_string(chunk);
    const auto require = [&](std::int64_t size) {
        if (std::cmp_not_equal(bytes.size(), size))
            throw Failure(kInvalidProcedureCall,
                          name + " has to have " + std::to_string(size) + " bytes.");
    };
    const enmVGRAGRAPHTypes type = catalog.TypeOf(chunk);
    switch (type) {
        case vgFont:
            if (!LooksLikeFont(bytes, catalog.ega))
                throw Failure(kInvalidProcedureCall,
                              name +
                                  " holds a font: the pixels of its last character have to end "
                                  "with the data.");
            break;
        case vgPicture:
            require(PictureBytes(chunk));
            break;
        case vgTile8: {
            const auto least = static_cast<std::size_t>(TileLength(catalog, type));
            const std::size_t tile = Tile8Size(catalog.ega);
            if (bytes.size() < least || bytes.size() % tile != 0)
                throw Failure(kInvalidProcedureCall,
                              name + " holds tiles of " + std::to_string(tile) +
                                  " bytes, at least " + std::to_string(least) + " bytes in all.");
            break;
        }
        case vgTile8m:
        case vgTile16:
        case vgTile16M:
            require(TileLength(catalog, type));
            break;
        default:
            break;
    }
}

void GraphicsSet::Replace(std::int32_t chunk, const ByteArray& bytes) {
    const enmVGRAGRAPHTypes before = catalog.TypeOf(chunk);
    if (before == vgUnknown || before == vgSparse)
        catalog.Retype(chunk, catalog.TypeByTable(chunk));
    const enmVGRAGRAPHTypes type = catalog.TypeOf(chunk);
    ByteArray expanded;
    std::optional<typFont> font;
    const std::int64_t fontIndex = std::int64_t{chunk} - catalog.startFonts;
    try {
        expanded = IsBMPImage(bytes) && TakesImages(type) ? FromImage(chunk, bytes) : bytes;
        if (!catalog.j98)  // there the place alone counts
            RequireForm(chunk, expanded);
        if (type == vgFont && fontIndex >= 0 && fontIndex < std::ssize(fonts) &&
            LooksLikeFont(expanded, catalog.ega))
            font = ReadFont(expanded, catalog.ega);
    } catch (...) {
        catalog.Retype(chunk, before);
        throw;
    }
    if (type == vgUnknown || type == vgMisc)
        catalog.Recognise(chunk, TypeByContent(expanded, catalog.ega));
    if (chunk == 0 && type == vgSTRUCTPIC && !catalog.j98)
        catalog.pictures = ReadPictureTable(expanded, catalog.ega);
    if (font)
        fonts[static_cast<std::size_t>(fontIndex)] = std::move(*font);
    Slot& slot = SlotOf(chunk);
    if (slot.mask && expanded.size() / 5 >= slot.mask->size())
        slot.mask.reset();  // the new bytes have a mask plane of their own
    slot.data = std::move(expanded);
    slot.replaced = true;
}

void GraphicsSet::ReplaceMask(std::int32_t chunk, const ByteArray& plane) {
    const PictureSize size = MaskedSizeOf(chunk);
    ByteArray mask = plane;
    if (IsBMPImage(plane)) {
        const Pixels pixels = PixelsFromImage(plane);
        RequireSize(pixels.size, size);
        mask = EgaMaskFromPixels(pixels.bytes, size.width, size.height);
    }
    if (mask.size() != EgaPlaneSize(size.width, size.height))
        throw Failure(kInvalidProcedureCall,
                      "A mask of " + std::to_string(size.width) + " x " +
                          std::to_string(size.height) + " pixels has " +
                          std::to_string(EgaPlaneSize(size.width, size.height)) + " bytes.");
    SlotOf(chunk).mask = std::move(mask);
}

}  // namespace tessaro
