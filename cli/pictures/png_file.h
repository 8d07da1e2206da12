// The PNG files, through libpng.
#pragma once

#include "pictures/image.h"

namespace tessaro::cli {

SourceImage ReadPng(const ByteArray& file);

/// One channel: palette indices with the palette; three: red, green, blue; four: with alpha.
struct PngPixels {
    int width = 0, height = 0, channels = 1;
    ByteArray bytes;
    const Colors* colors = nullptr;
    int colorCount = 256;
    std::optional<std::uint8_t> hole{};
};

ByteArray WritePng(const PngPixels& pixels);

}  // namespace tessaro::cli
