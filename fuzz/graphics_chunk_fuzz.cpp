// Whatever an expanded chunk holds, taking it for each kind of chunk ends in a result or in a
// Failure. The first two bytes are the size of a picture.
#include "graphics/area_names.h"
#include "graphics/chunk_content.h"
#include "graphics/picture_planes.h"
#include "graphics/tiles.h"

namespace {

template <class Take>
void Try(Take&& take) {
    try {
        (void)take();
    } catch (const tessaro::Failure&) {
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tessaro;
    if (size < 2)
        return 0;
    const std::int32_t width = data[0];
    const std::int32_t height = data[1] % 64;
    const ByteSpan bytes(data + 2, size - 2);
    for (const bool ega : {false, true}) {
        Try([&] { return TypeByContent(bytes, ega); });
        Try([&] { return ReadPictureTable(bytes, ega); });
    }
    Try([&] { return ReadSpriteTable(bytes); });
    Try([&] {
        std::vector<std::string> names;
        return ReadAreaNames(bytes, names);
    });
    Try([&] { return FixPicturePlanesForBMP(bytes, width, height); });
    Try([&] { return FixPicturePlanesForStorage(bytes, width, height); });
    Try([&] { return PixelsFromEgaPlanes(bytes, width, height); });
    Try([&] { return EgaPlanesFromPixels(bytes, width, height); });
    Try([&] { return PixelsFromEgaMask(bytes, width, height); });
    Try([&] { return UnpackHalfBytes(bytes, width, height); });
    for (const TileForm form : {TileForm::Vga, TileForm::Ega, TileForm::EgaMasked})
        Try([&] {
            const ByteArray sheet = TileSheet(bytes, form, width % 16, height % 16);
            return TilesFromSheet(sheet, bytes, form, width % 16, height % 16);
        });
    Try([&] { return TileMaskSheet(bytes, width % 16, height % 16); });
    return 0;
}
