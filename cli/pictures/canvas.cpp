#include "pictures/canvas.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "pictures/glyphs.h"
#include "pictures/png_file.h"

namespace tessaro::cli {

Canvas::Canvas(int width, int height, Rgb background)
    : width_(width),
      height_(height),
      pixels_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), background) {}

void Canvas::Set(int x, int y, Rgb color) {
    if (x >= 0 && y >= 0 && x < width_ && y < height_)
        pixels_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
                static_cast<std::size_t>(x)] = color;
}

void Canvas::Fill(const Rect& area, Rgb color) {
    const int left = std::max(0, area.x), right = std::min(width_, area.x + area.width);
    const int top = std::max(0, area.y), bottom = std::min(height_, area.y + area.height);
    for (int y = top; y < bottom && left < right; ++y)
        std::fill_n(pixels_.begin() + std::ptrdiff_t{y} * width_ + left, right - left, color);
}

void Canvas::Frame(const Rect& area, Rgb color) {
    Fill({area.x, area.y, area.width, 1}, color);
    Fill({area.x, area.y + area.height - 1, area.width, 1}, color);
    Fill({area.x, area.y, 1, area.height}, color);
    Fill({area.x + area.width - 1, area.y, 1, area.height}, color);
}

void Canvas::Disc(int centerX, int centerY, int radius, Rgb color) {
    for (int y = -radius; y <= radius; ++y)
        for (int x = -radius; x <= radius; ++x)
            if (x * x + y * y <= radius * radius + radius / 2)
                Set(centerX + x, centerY + y, color);
}

void Canvas::Arrow(int centerX, int centerY, int radius, int direction, Rgb color) {
    constexpr std::array<std::array<int, 2>, 8> kWays = {
        {{1, 0}, {1, -1}, {0, -1}, {-1, -1}, {-1, 0}, {-1, 1}, {0, 1}, {1, 1}}};
    const auto [dx, dy] = kWays[static_cast<std::size_t>(direction & 7)];
    const bool diagonal = dx != 0 && dy != 0;
    for (int y = -radius; y <= radius; ++y)
        for (int x = -radius; x <= radius; ++x) {
            int along = x * dx + y * dy;
            int aside = std::abs(x * dy - y * dx);
            if (diagonal) {  // the diagonal's unit is longer
                along = along * 2 / 3;
                aside = aside * 2 / 3;
            }
            if (along <= radius && along >= -radius && aside * 2 <= radius - along)
                Set(centerX + x, centerY + y, color);
        }
}

Stamp Scaled(const IndexedImage& image, int width, int height, int brightness) {
    Stamp stamp{width, height, {}, {}};
    const auto count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    stamp.pixels.resize(count);
    stamp.ink.resize(count);
    if (image.width < 1 || image.height < 1) {
        stamp.solid = false;
        return stamp;
    }
    const auto span = [](int place, int size, int length) {
        const int from = place * length / size;
        return std::pair(from, std::max(from + 1, (place + 1) * length / size));
    };
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const auto [left, right] = span(x, width, image.width);
            const auto [top, bottom] = span(y, height, image.height);
            int red = 0, green = 0, blue = 0, pixels = 0;
            for (int row = top; row < bottom; ++row)
                for (int column = left; column < right; ++column) {
                    const auto at = static_cast<std::size_t>(row * image.width + column);
                    if (image.IsHole(at))
                        continue;
                    const Rgb& color = image.colors[image.pixels[at]];
                    red += color.red;
                    green += color.green;
                    blue += color.blue;
                    ++pixels;
                }
            if (pixels * 3 < (right - left) * (bottom - top)) {  // mostly hole
                stamp.solid = false;
                continue;
            }
            const auto channel = [&](int sum) {
                return static_cast<std::uint8_t>(std::min(255, sum / pixels * brightness / 256));
            };
            const auto at = static_cast<std::size_t>(y * width + x);
            stamp.pixels[at] = {channel(red), channel(green), channel(blue)};
            stamp.ink[at] = 1;
        }
    return stamp;
}

void Canvas::Draw(const Stamp& stamp, int x, int y) {
    const int left = std::max(0, -x), right = std::min(stamp.width, width_ - x);
    const int top = std::max(0, -y), bottom = std::min(stamp.height, height_ - y);
    for (int row = top; row < bottom && left < right; ++row) {
        const auto from = static_cast<std::size_t>(row) * static_cast<std::size_t>(stamp.width);
        const auto to = static_cast<std::size_t>(y + row) * static_cast<std::size_t>(width_);
        for (int column = left; column < right; ++column) {
            const std::size_t at = from + static_cast<std::size_t>(column);
            if (stamp.solid || stamp.ink[at])
                pixels_[to + static_cast<std::size_t>(x + column)] = stamp.pixels[at];
        }
    }
}

void Canvas::Text(int x, int y, std::string_view text, Rgb color) {
    for (const char character : text) {
        for (int column = 0; column < 5; ++column)
            for (int row = 0; row < kGlyphHeight; ++row)
                if (GlyphInk(character, column, row))
                    Set(x + column, y + row, color);
        x += kGlyphWidth;
    }
}

ByteArray Canvas::Png() const {
    PngPixels png{width_, height_, 3, {}, nullptr, 0, {}};
    static_assert(sizeof(Rgb) == 3);
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(pixels_.data());
    png.bytes.assign(bytes, bytes + pixels_.size() * sizeof(Rgb));
    return WritePng(png);
}

IndexedImage Cropped(const IndexedImage& image) {
    int left = image.width, right = -1, top = image.height, bottom = -1;
    for (int y = 0; y < image.height; ++y)
        for (int x = 0; x < image.width; ++x)
            if (!image.IsHole(static_cast<std::size_t>(y * image.width + x))) {
                left = std::min(left, x);
                right = std::max(right, x);
                top = std::min(top, y);
                bottom = std::max(bottom, y);
            }
    IndexedImage cropped = image;
    cropped.pixels.clear();
    cropped.mask.clear();
    cropped.width = std::max(0, right - left + 1);
    cropped.height = std::max(0, bottom - top + 1);
    for (int y = top; y <= bottom; ++y)
        for (int x = left; x <= right; ++x) {
            const auto at = static_cast<std::size_t>(y * image.width + x);
            cropped.pixels.push_back(image.pixels[at]);
            if (!image.mask.empty())
                cropped.mask.push_back(image.mask[at]);
        }
    return cropped;
}

Rgb Mixed(Rgb a, Rgb b, int shareOfB) {
    const auto channel = [&](int from, int to) {
        return static_cast<std::uint8_t>(from + (to - from) * shareOfB / 256);
    };
    return {channel(a.red, b.red), channel(a.green, b.green), channel(a.blue, b.blue)};
}

}  // namespace tessaro::cli
