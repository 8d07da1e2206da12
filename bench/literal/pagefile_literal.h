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

/// Every run behind the one before.
struct UnsharedPool {
    Bytes bytes;
    std::size_t Place(const Bytes& run) {
        bytes.insert(bytes.end(), run.begin(), run.end());
        return bytes.size() - run.size();
    }
};

/// A run that stands in the pool already is not stored again.
struct ReusedPool {
    Bytes bytes;
    std::size_t Place(const Bytes& run) {
        const std::size_t place = SearchPool(bytes, run);
        if (place == bytes.size())
            bytes.insert(bytes.end(), run.begin(), run.end());
        return place;
    }
};

/// The runs joined greedily, of all pairs of chains the one with the longest overlap first.
inline Bytes JoinedRuns(const std::vector<Bytes>& runs) {
    constexpr std::size_t kNone = static_cast<std::size_t>(-1);
    const std::size_t count = runs.size();
    std::vector<std::size_t> next(count, kNone), before(count, kNone), shared(count, 0);
    const auto headOf = [&](std::size_t run) {
        while (before[run] != kNone)
            run = before[run];
        return run;
    };
    const auto overlap = [&](const Bytes& a, const Bytes& b, std::size_t size) {
        for (std::size_t k = 0; k < size; ++k)
            if (a[a.size() - size + k] != b[k])
                return false;
        return true;
    };
    std::size_t longest = 0;
    for (const Bytes& run : runs)
        longest = run.size() > longest ? run.size() : longest;
    for (std::size_t size = longest; size-- > 1;)
        for (std::size_t a = 0; a < count; ++a)
            for (std::size_t b = 0; b < count && next[a] == kNone && runs[a].size() > size; ++b)
                if (before[b] == kNone && runs[b].size() > size && headOf(a) != b &&
                    overlap(runs[a], runs[b], size)) {
                    next[a] = b;
                    before[b] = a;
                    shared[b] = size;
                }
    Bytes text;
    for (std::size_t head = 0; head < count; ++head)
        if (before[head] == kNone)
            for (std::size_t run = head; run != kNone; run = next[run])
                text.insert(text.end(),
                            runs[run].begin() + static_cast<std::ptrdiff_t>(shared[run]),
                            runs[run].end());
    return text;
}

/// The shortest that is known of: the runs that stand in no other joined, longest first or last
/// first, or else what reusing leaves.
inline Bytes MergedRuns(const std::vector<Bytes>& runs) {
    std::vector<Bytes> kept, backwards;
    for (std::size_t size = 255; size > 0; --size)
        for (const Bytes& run : runs) {
            bool contained = run.size() != size;
            for (std::size_t k = 0; k < kept.size() && !contained; ++k)
                contained = SearchPool(kept[k], run) < kept[k].size();
            if (!contained)
                kept.push_back(run);
        }
    backwards.assign(kept.rbegin(), kept.rend());
    Bytes merged = JoinedRuns(kept);
    const Bytes other = JoinedRuns(backwards);
    if (other.size() < merged.size())
        merged = other;
    ReusedPool reused;
    for (const Bytes& run : runs)
        reused.Place(run);
    return reused.bytes.size() < merged.size() ? reused.bytes : merged;
}

/// A pool that is known beforehand.
struct FinishedPool {
    Bytes bytes;
    std::size_t Place(const Bytes& run) const { return SearchPool(bytes, run); }
};

/// Compiles rows of pixels.
template <class Pool>
Bytes Compile(const Bytes& pixels, int side, Pool pool) {
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
    Bytes run;
    const auto close = [&](int start, int end) {
        records.push_back({end, static_cast<int>(pool.Place(run)), start});
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
    int list = poolAt + static_cast<int>(pool.bytes.size());
    number(list);
    for (std::size_t i = 0; i + 1 < records.size(); ++i) {
        list += records[i].end != 0 ? 6 : 2;
        if (records[i].end == 0)
            number(list);
    }
    chunk.insert(chunk.end(), pool.bytes.begin(), pool.bytes.end());
    for (const Record& record : records) {
        number(record.end * 2);
        if (record.end != 0) {
            number(poolAt + record.offset - record.start);
            number(record.start * 2);
        }
    }
    return chunk;
}

/// The pixels of every post of some rows, column by column.
inline std::vector<Bytes> RunsOf(const Bytes& pixels, int side) {
    struct Collector {
        Bytes bytes;
        std::vector<Bytes>* runs;
        std::size_t Place(const Bytes& run) {
            runs->push_back(run);
            return 0;
        }
    };
    std::vector<Bytes> runs;
    Compile(pixels, side, Collector{{}, &runs});
    return runs;
}

}  // namespace tessaro::literal
