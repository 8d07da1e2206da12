#include "graphics/graphics_set.h"

#include <algorithm>
#include <utility>

#include "foundation/code_page.h"
#include "foundation/guard.h"
#include "graphics/graphics_header.h"
#include "graphics/picture_planes.h"

namespace tessaro {

void RefuseType() {
    throw Failure(0, "Procedure was called for unsupported type!");
}

ByteSpan GraphicsSet::StoredBytes(std::int32_t chunk) const {
    const ChunkSpan span = SlotOf(chunk).inFile
                               ? FindChunk(offsets, data.Size(), catalog.Index(chunk))
                               : ChunkSpan{.sparse = true};
    if (span.sparse)
        throw Failure(0, "Tried to load sparse tile at chunk " + std::to_string(chunk));
    if (span.damaged)
        throw Failure(kSubscriptOutOfRange,
                      "The header lets chunk " + std::to_string(chunk) + " end before it begins.");
    return data.At(span.offset, span.size);
}

const ByteArray& GraphicsSet::Load(std::int32_t chunk) {
    Slot& slot = SlotOf(chunk);
    if (slot.data)
        return *slot.data;
    const ByteSpan stored = Step("clsVGAGraph.LoadChunk", [&] { return StoredBytes(chunk); });
    return Step("clsVGAGraph.ExpandGraphicsChunk", [&]() -> const ByteArray& {
        const ChunkForm form = FormOf(catalog, dictionary, chunk, stored);
        Settle(catalog, chunk, form);
        ByteArray bytes = Expand(form, stored, dictionary);
        if (IsText(form.type))
            bytes = modCodePage::BytesFromDosCodePage(bytes);
        return slot.data.emplace(std::move(bytes));
    });
}

const typFont& GraphicsSet::Font(std::int32_t number) const {
    if (number < 1 || number > std::ssize(fonts))
        throw Failure(kSubscriptOutOfRange);
    return fonts[static_cast<std::size_t>(number - 1)];
}

std::size_t GraphicsSet::PictureIndex(std::int32_t chunk) const {
    const bool masked = catalog.TypeOf(chunk) == vgBMPMask;
    const std::size_t size = masked ? catalog.maskedPictures.size() : catalog.pictures.size();
    const std::int64_t index =
        std::int64_t{chunk} - catalog.startPics - (masked ? catalog.numberOfPics : 0);
    if (index < 0 || std::cmp_greater_equal(index, size))
        throw Failure(kSubscriptOutOfRange);
    return static_cast<std::size_t>(index);
}

PictureSize GraphicsSet::SizeOf(std::int32_t chunk) const {
    const std::size_t index = PictureIndex(chunk);
    return catalog.TypeOf(chunk) == vgBMPMask ? catalog.maskedPictures[index]
                                              : catalog.pictures[index];
}

std::int64_t GraphicsSet::PictureBytes(std::int32_t chunk) const {
    const PictureSize size = SizeOf(chunk);
    return std::int64_t{size.width} * size.height / (catalog.ega ? 2 : 1);
}

const typSpriteHead& GraphicsSet::SpriteOf(std::int32_t chunk) const {
    const std::int64_t index = std::int64_t{chunk} - catalog.firstSprite;
    if (catalog.TypeOf(chunk) != vgSprite)
        RefuseType();
    if (index < 0 || index >= std::ssize(catalog.sprites))
        throw Failure(kSubscriptOutOfRange);
    return catalog.sprites[static_cast<std::size_t>(index)];
}

PictureSize GraphicsSet::MaskedSizeOf(std::int32_t chunk) const {
    if (catalog.TypeOf(chunk) == vgBMPMask)
        return SizeOf(chunk);
    const typSpriteHead& head = SpriteOf(chunk);
    return {8 * head.Width, head.Height};
}

/// The host's mask plane, or the slot's; without any mask all is opaque.
ByteArray GraphicsSet::MaskOf(std::int32_t chunk, std::size_t planeSize) const {
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
MaskedPlanes GraphicsSet::SplitMask(std::int32_t chunk, PictureSize size) const {
    const std::size_t plane = EgaPlaneSize(size.width, size.height);
    ByteSpan planes = *SlotOf(chunk).data;
    if (planes.size() / 4 < plane)
        throw Failure(kSubscriptOutOfRange);
    if (planes.size() / 5 >= plane)
        planes = planes.subspan(plane);
    return {.colors = {planes.begin(), planes.end()}, .mask = MaskOf(chunk, plane)};
}

void GraphicsSet::Resize(std::int32_t chunks) {
    constexpr std::int32_t kMostChunks = 65535;
    if (chunks < 1 || chunks > kMostChunks)
        throw Failure(kInvalidProcedureCall);
    // What is added is an empty chunk until it is given data.
    slots.resize(static_cast<std::size_t>(chunks),
                 Slot{.data = ByteArray(), .mask = {}, .replaced = true, .inFile = false});
    catalog.Resize(chunks);
    // The host may have set starts and counts to anything.
    const auto limit = [&](std::int32_t start, std::int32_t& count) {
        const std::int64_t most = std::max<std::int64_t>(std::int64_t{chunks} - start, 0);
        count = static_cast<std::int32_t>(std::min<std::int64_t>(count, most));
    };
    limit(catalog.startPics, catalog.numberOfPics);
    limit(catalog.startFonts, catalog.numberOfFonts);
}

void GraphicsSet::DropChunks() {
    catalog.pictures = opened.pictures;
    fonts = openedFonts;
    for (Slot& slot : slots)
        if (slot.inFile)
            slot = {};
}

void GraphicsSet::DropTile8() {
    if (const std::int32_t chunk = catalog.FirstTile8(); chunk >= 0)
        if (Slot& slot = SlotOf(chunk); !slot.replaced)
            slot.data.reset();
}

}  // namespace tessaro
