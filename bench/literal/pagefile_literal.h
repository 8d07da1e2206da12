// The chunks of the page file decoded and compiled pixel by pixel, as their formats are told: what
// the fast code is held against.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace tessaro::literal {

using Bytes = std::vector<std::uint8_t>;

inline int ReadU16(std::span<const std::uint8_t> bytes, std::size_t at) {
    return bytes[at] | bytes[at + 1] << 8;
}

/// A wall's pixels row by row.
inline Bytes DecodeWall(std::span<const std::uint8_t> chunk, std::size_t side) {
    Bytes pixels(side * side);
    std::size_t k = 0;
    for (std::size_t x = 0; x < side; ++x)
        for (std::size_t y = 0; y < side; ++y)
            pixels[x + y * side] = chunk[k++];
    return pixels;
}

inline Bytes DecodeSprite(std::span<const std::uint8_t> chunk, int side) {
    Bytes pixels(static_cast<std::size_t>(side * side), 255);
    const int left = ReadU16(chunk, 0);
    const int right = ReadU16(chunk, 2);
    for (int x = left; x <= right; ++x) {
        std::size_t at =
            static_cast<std::size_t>(ReadU16(chunk, static_cast<std::size_t>(4 + 2 * (x - left))));
        while (ReadU16(chunk, at) != 0) {
            const int end = ReadU16(chunk, at) / 2;
            const int offset = static_cast<std::int16_t>(ReadU16(chunk, at + 2));
            const int start = ReadU16(chunk, at + 4) / 2;
            for (int y = start; y < end; ++y)
                pixels[static_cast<std::size_t>(x + y * side)] =
                    chunk[static_cast<std::size_t>(offset + y)];
            at += 6;
        }
    }
    return pixels;
}

/// A BMP image, top row of the pixels first.
inline Bytes BmpImage(const Bytes& pixels, std::size_t side,
                      std::span<const std::int32_t, 256> palette) {
    Bytes image(1078 + side * side);
    std::size_t at = 0;
    const auto number = [&](std::size_t value, int width) {
        for (int i = 0; i < width; ++i)
            image[at++] = static_cast<std::uint8_t>(value >> (8 * i));
    };
    number('B', 1);
    number('M', 1);
    number(1078 + side * side, 4);
    number(0, 4);
    number(1078, 4);
    number(40, 4);
    number(side, 4);
    number(side, 4);
    number(1, 2);
    number(8, 2);
    number(0, 8);
    at = 54;
    for (const std::int32_t color : palette) {
        image[at++] = static_cast<std::uint8_t>(color >> 16);
        image[at++] = static_cast<std::uint8_t>(color >> 8);
        image[at++] = static_cast<std::uint8_t>(color);
        image[at++] = 0;
    }
    for (std::size_t row = 0; row < side; ++row)
        for (std::size_t x = 0; x < side; ++x)
            image[image.size() - (row + 1) * side + x] = pixels[row * side + x];
    return image;
}

/// The first place of the run in the pool, position by position and byte by byte; the pool's size
/// where it is not there.
inline std::size_t SearchPool(const Bytes& pool, std::span<const std::uint8_t> run) {
    for (std::size_t p = 0; p + run.size() <= pool.size(); ++p) {
        bool same = true;
        for (std::size_t k = 0; k < run.size(); ++k)
            if (pool[p + k] != run[k]) {
                same = false;
                break;
            }
        if (same)
            return p;
    }
    return pool.size();
}

/// Compiles rows of pixels with a pool that is searched so.
inline Bytes CompileReusing(const Bytes& pixels, int side) {
    struct Record {
        int end;
        int offset;
        int start;
    };
    const auto pixel = [&](int x, int y) { return pixels[static_cast<std::size_t>(x + y * side)]; };
    int left = 0;
    int right = 0;
    bool found = false;
    for (int x = 0; x < side; ++x)
        for (int y = 0; y < side; ++y)
            if (pixel(x, y) < 255) {
                if (!found)
                    left = x;
                found = true;
                right = x;
            }
    std::vector<Record> records;
    Bytes pool;
    Bytes run;
    const auto close = [&](int start, int end) {
        const std::size_t place = SearchPool(pool, run);
        if (place == pool.size())
            pool.insert(pool.end(), run.begin(), run.end());
        records.push_back({end, static_cast<int>(place), start});
        run.clear();
    };
    for (int x = left; x <= right; ++x) {
        int start = -1;
        for (int y = 0; y < side; ++y) {
            if (pixel(x, y) < 255) {
                if (start < 0)
                    start = y;
                run.push_back(pixel(x, y));
            } else if (start >= 0) {
                close(start, y);
                start = -1;
            }
        }
        if (start >= 0)
            close(start, side);
        records.push_back({0, 0, 0});
    }
    Bytes chunk;
    const auto number = [&](int value) {
        chunk.push_back(static_cast<std::uint8_t>(value));
        chunk.push_back(static_cast<std::uint8_t>(value >> 8));
    };
    number(left);
    number(right);
    const int poolAt = 4 + 2 * (right - left + 1);
    int list = poolAt + static_cast<int>(pool.size());
    number(list);
    for (std::size_t i = 0; i + 1 < records.size(); ++i) {
        list += records[i].end != 0 ? 6 : 2;
        if (records[i].end == 0)
            number(list);
    }
    chunk.insert(chunk.end(), pool.begin(), pool.end());
    for (const Record& record : records) {
        number(record.end * 2);
        if (record.end != 0) {
            number(poolAt + record.offset - record.start);
            number(record.start * 2);
        }
    }
    return chunk;
}

}  // namespace tessaro::literal
