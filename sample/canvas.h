// Pixels of one byte each to draw on. Whatever falls outside is cut off.
#pragma once

#include <cstdint>
#include <string_view>

#include "tessaro/types.h"

namespace tessaro::sample {

/// A well-mixed number below 256 for each place: the grain of stone, wood and noise.
int Grain(int x, int y, int seed);

class Canvas {
public:
    Canvas(int width, int height, int color)
        : width_(width),
          height_(height),
          pixels_(static_cast<std::size_t>(width * height), static_cast<std::uint8_t>(color)) {}

    int Width() const { return width_; }
    int Height() const { return height_; }
    const ByteArray& Pixels() const { return pixels_; }
    int At(int x, int y) const { return pixels_[Index(x, y)]; }

    void Dot(int x, int y, int color);
    void Box(int x, int y, int width, int height, int color);
    void Frame(int x, int y, int width, int height, int color);
    void Disc(int x, int y, int radius, int color);
    /// A ball lit from the upper left: `ramp` is its lightest colour, darker ones follow it.
    void Ball(int x, int y, int radius, int ramp, int shades);
    /// Letters of 5 x 7 pixels, each pixel a square of `scale`.
    void Text(int x, int y, int scale, int color, std::string_view text);
    void TextCentered(int y, int scale, int color, std::string_view text);
    void Paste(const Canvas& other, int x, int y, int transparent = -1);

private:
    std::size_t Index(int x, int y) const { return static_cast<std::size_t>(y * width_ + x); }

    int width_, height_;
    ByteArray pixels_;
};

}  // namespace tessaro::sample
