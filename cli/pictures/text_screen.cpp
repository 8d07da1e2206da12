#include "pictures/text_screen.h"

#include "pictures/glyphs.h"

namespace tessaro::cli {

namespace {

constexpr int kColumns = 80, kRows = 25, kCellWidth = 8, kCellHeight = 16;

/// The sixteen colours of the text mode: one bit each for blue, green, red and brightness, with the
/// dark yellow made brown.
Rgb TextColor(int index) {
    const int bright = index & 8 ? 0x55 : 0;
    const auto channel = [&](int bit) {
        return static_cast<std::uint8_t>((index & bit ? 0xAA : 0) + bright);
    };
    return index == 6 ? Rgb{0xAA, 0x55, 0} : Rgb{channel(4), channel(2), channel(1)};
}

}  // namespace

IndexedImage DrawTextScreen(const std::uint8_t* cells) {
    IndexedImage image;
    image.width = kColumns * kCellWidth;
    image.height = kRows * kCellHeight;
    image.colorCount = 16;
    for (int i = 0; i < 16; ++i)
        image.colors[static_cast<std::size_t>(i)] = TextColor(i);
    for (int y = 0; y < image.height; ++y)
        for (int x = 0; x < image.width; ++x) {
            const std::uint8_t* cell = cells + 2 * (y / kCellHeight * kColumns + x / kCellWidth);
            const bool ink = ScreenInk(cell[0], x % kCellWidth, y % kCellHeight);
            const int attribute = cell[1];  // its highest bit blinks
            image.pixels.push_back(
                static_cast<std::uint8_t>(ink ? attribute & 15 : attribute >> 4 & 7));
        }
    return image;
}

}  // namespace tessaro::cli
