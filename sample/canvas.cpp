#include "sample/canvas.h"

#include <algorithm>

#include "sample/letters.h"

namespace tessaro::sample {

int Grain(int x, int y, int seed) {
    std::uint32_t value = static_cast<std::uint32_t>(x) * 374761393u +
                          static_cast<std::uint32_t>(y) * 668265263u +
                          static_cast<std::uint32_t>(seed) * 2246822519u;
    value = (value ^ (value >> 13)) * 1274126177u;
    return static_cast<int>((value ^ (value >> 16)) & 0xFF);
}

void Canvas::Dot(int x, int y, int color) {
    if (x >= 0 && x < width_ && y >= 0 && y < height_)
        pixels_[Index(x, y)] = static_cast<std::uint8_t>(color);
}

void Canvas::Box(int x, int y, int width, int height, int color) {
    for (int row = y; row < y + height; ++row)
        for (int column = x; column < x + width; ++column)
            Dot(column, row, color);
}

void Canvas::Frame(int x, int y, int width, int height, int color) {
    Box(x, y, width, 1, color);
    Box(x, y + height - 1, width, 1, color);
    Box(x, y, 1, height, color);
    Box(x + width - 1, y, 1, height, color);
}

void Canvas::Disc(int x, int y, int radius, int color) {
    for (int row = -radius; row <= radius; ++row)
        for (int column = -radius; column <= radius; ++column)
            if (row * row + column * column <= radius * radius + radius / 2)
                Dot(x + column, y + row, color);
}

void Canvas::Ball(int x, int y, int radius, int ramp, int shades) {
    for (int row = -radius; row <= radius; ++row)
        for (int column = -radius; column <= radius; ++column) {
            if (row * row + column * column > radius * radius)
                continue;
            const int away = (row + radius) + (column + radius);
            Dot(x + column, y + row, ramp + std::min(shades - 1, away * shades / (4 * radius + 1)));
        }
}

void Canvas::Text(int x, int y, int scale, int color, std::string_view text) {
    for (char letter : text) {
        for (int row = 0; row < kLetterHeight; ++row)
            for (int column = 0; column < kLetterWidth; ++column)
                if (LetterHasInk(letter, column, row))
                    Box(x + column * scale, y + row * scale, scale, scale, color);
        x += (kLetterWidth + 1) * scale;
    }
}

void Canvas::TextCentered(int y, int scale, int color, std::string_view text) {
    const int width = (static_cast<int>(text.size()) * (kLetterWidth + 1) - 1) * scale;
    Text((width_ - width) / 2, y, scale, color, text);
}

void Canvas::Paste(const Canvas& other, int x, int y, int transparent) {
    for (int row = 0; row < other.height_; ++row)
        for (int column = 0; column < other.width_; ++column)
            if (other.At(column, row) != transparent)
                Dot(x + column, y + row, other.At(column, row));
}

}  // namespace tessaro::sample
