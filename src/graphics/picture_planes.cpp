#include "graphics/picture_planes.h"

namespace tessaro {
namespace {

struct Size {
    std::size_t width, height;

    Size(std::int32_t w, std::int32_t h) {
        if (w < 0 || h < 0)
            throw Failure(kInvalidProcedureCall);
        width = static_cast<std::size_t>(w);
        height = static_cast<std::size_t>(h);
    }
    std::size_t Area() const { return width * height; }
};

void Require(ByteSpan bytes, std::size_t size) {
    if (bytes.size() < size)
        throw Failure(kSubscriptOutOfRange);
}

/// Calls `move(linear, stored)` for the places of each pixel, plane after plane.
template <class Move>
void WalkPlanes(ByteSpan source, Size size, Move&& move) {
    const std::size_t columns = size.width / 4;
    if (columns > 0 && size.height > 0)
        Require(source, size.width * (size.height - 1) + 4 * columns);
    std::size_t stored = 0;
    for (std::size_t plane = 0; plane < 4; ++plane)
        for (std::size_t row = 0; row < size.height; ++row) {
            const std::size_t first = size.width * row + plane;
            for (std::size_t c = 0; c < columns; ++c)
                move(first + 4 * c, stored++);
        }
}

}  // namespace

ByteArray FixPicturePlanesForBMP(ByteSpan source, std::int32_t width, std::int32_t height) {
    ByteArray dest(source.size());
    WalkPlanes(source, {width, height},
               [&](std::size_t linear, std::size_t stored) { dest[linear] = source[stored]; });
    return dest;
}

ByteArray FixPicturePlanesForStorage(ByteSpan source, std::int32_t width, std::int32_t height) {
    ByteArray dest(source.size());
    WalkPlanes(source, {width, height},
               [&](std::size_t linear, std::size_t stored) { dest[stored] = source[linear]; });
    return dest;
}

std::size_t EgaPlaneSize(std::int32_t width, std::int32_t height) {
    const Size size(width, height);
    if (size.width % 8 != 0)
        throw Failure(kInvalidProcedureCall);
    return size.Area() / 8;
}

ByteArray PixelsFromEgaPlanes(ByteSpan planes, std::int32_t width, std::int32_t height) {
    const std::size_t planeSize = EgaPlaneSize(width, height);
    Require(planes, 4 * planeSize);
    ByteArray pixels(8 * planeSize);
    for (std::size_t plane = 0; plane < 4; ++plane)
        for (std::size_t i = 0; i < planeSize; ++i) {
            const unsigned bits = planes[plane * planeSize + i];
            for (std::size_t bit = 0; bit < 8; ++bit)
                pixels[8 * i + bit] = static_cast<std::uint8_t>(pixels[8 * i + bit] |
                                                                (bits >> (7 - bit) & 1) << plane);
        }
    return pixels;
}

ByteArray EgaPlanesFromPixels(ByteSpan pixels, std::int32_t width, std::int32_t height) {
    const std::size_t planeSize = EgaPlaneSize(width, height);
    Require(pixels, 8 * planeSize);
    ByteArray planes(4 * planeSize);
    for (std::size_t i = 0; i < 8 * planeSize; ++i) {
        if (pixels[i] > 15)
            throw Failure(kOverflow);
        for (std::size_t plane = 0; plane < 4; ++plane) {
            std::uint8_t& target = planes[plane * planeSize + i / 8];
            target = static_cast<std::uint8_t>(target | (pixels[i] >> plane & 1) << (7 - i % 8));
        }
    }
    return planes;
}

ByteArray PixelsFromEgaMask(ByteSpan plane, std::int32_t width, std::int32_t height) {
    const std::size_t planeSize = EgaPlaneSize(width, height);
    Require(plane, planeSize);
    ByteArray pixels(8 * planeSize);
    for (std::size_t i = 0; i < pixels.size(); ++i)
        pixels[i] = (plane[i / 8] >> (7 - i % 8) & 1) != 0 ? 15 : 0;
    return pixels;
}

ByteArray EgaMaskFromPixels(ByteSpan pixels, std::int32_t width, std::int32_t height) {
    ByteArray plane(EgaPlaneSize(width, height));
    Require(pixels, 8 * plane.size());
    for (std::size_t i = 0; i < 8 * plane.size(); ++i)
        if (pixels[i] != 0)
            plane[i / 8] = static_cast<std::uint8_t>(plane[i / 8] | 0x80 >> i % 8);
    return plane;
}

ByteArray PackHalfBytes(ByteSpan pixels, std::int32_t width, std::int32_t height) {
    const Size size(width, height);
    Require(pixels, size.Area());
    const std::size_t row = (size.width + 1) / 2;
    ByteArray packed(row * size.height);
    for (std::size_t y = 0; y < size.height; ++y)
        for (std::size_t x = 0; x < size.width; ++x) {
            std::uint8_t& target = packed[y * row + x / 2];
            const unsigned pixel = pixels[y * size.width + x] & 15U;
            target = static_cast<std::uint8_t>(target | pixel << (x % 2 == 0 ? 4 : 0));
        }
    return packed;
}

ByteArray UnpackHalfBytes(ByteSpan packed, std::int32_t width, std::int32_t height) {
    const Size size(width, height);
    const std::size_t row = (size.width + 1) / 2;
    Require(packed, row * size.height);
    ByteArray pixels(size.Area());
    for (std::size_t y = 0; y < size.height; ++y)
        for (std::size_t x = 0; x < size.width; ++x)
            pixels[y * size.width + x] = packed[y * row + x / 2] >> (x % 2 == 0 ? 4 : 0) & 15;
    return pixels;
}

}  // namespace tessaro
