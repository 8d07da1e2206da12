#include "audio/audio_layout.h"

#include <algorithm>
#include <utility>

namespace tessaro {
namespace {

struct Range {
    std::int64_t begin = 0, end = 0;
};

Range RangeOf(const std::vector<std::int32_t>& offsets, std::size_t chunk, std::int64_t fileSize) {
    const AudioRange range = FindAudioRange(offsets, chunk, fileSize);
    return {range.offset, range.offset + range.size};
}

/// Whether one range shares bytes with another, or lies within it without having any.
bool Touches(Range one, Range other) {
    return one.begin < other.end && other.begin < one.end;
}

}  // namespace

bool CanExchangeInPlace(const std::vector<std::int32_t>& offsets, std::int64_t fileSize,
                        const std::map<std::int32_t, ByteArray>& replaced) {
    for (const auto& [chunk, bytes] : replaced) {
        const auto index = static_cast<std::size_t>(chunk);
        if (offsets[index] < 0)  // a sparse chunk has no range
            return false;
        const Range range = RangeOf(offsets, index, fileSize);
        if (range.end > fileSize)
            return false;
        for (std::size_t other = 0; other + 1 < offsets.size(); ++other) {
            if (other != index && offsets[other] >= 0 &&
                Touches(range, RangeOf(offsets, other, fileSize)))
                return false;
        }
    }
    return true;
}

AudioLayout ExchangeInPlace(const std::vector<std::int32_t>& offsets, ByteSpan data,
                            const std::map<std::int32_t, ByteArray>& replaced) {
    const auto fileSize = static_cast<std::int64_t>(data.size());
    // In file order; of two at one place the lower chunk comes first.
    std::vector<std::pair<Range, std::int32_t>> ranges;
    for (const auto& [chunk, bytes] : replaced)
        ranges.emplace_back(RangeOf(offsets, static_cast<std::size_t>(chunk), fileSize), chunk);
    std::ranges::sort(ranges, [](const auto& a, const auto& b) {
        return std::pair(a.first.begin, a.second) < std::pair(b.first.begin, b.second);
    });

    ByteWriter out;
    std::int64_t done = 0;
    const auto copyUpTo = [&](std::int64_t end) {
        out.Bytes(
            data.subspan(static_cast<std::size_t>(done), static_cast<std::size_t>(end - done)));
        done = end;
    };
    for (const auto& [range, chunk] : ranges) {
        copyUpTo(range.begin);
        out.Bytes(replaced.at(chunk));
        done = range.end;
    }
    copyUpTo(fileSize);

    AudioLayout layout;
    for (std::size_t i = 0; i < offsets.size(); ++i) {
        std::int64_t moved = offsets[i];
        if (offsets[i] != kSparseAudioOffset) {
            for (const auto& [range, chunk] : ranges) {
                if (std::pair(range.begin, std::int64_t{chunk}) <
                    std::pair(std::int64_t{offsets[i]}, static_cast<std::int64_t>(i)))
                    moved += std::ssize(replaced.at(chunk)) - (range.end - range.begin);
            }
        }
        layout.offsets.push_back(Narrow<std::int32_t>(moved));
    }
    layout.data = out.Release();
    return layout;
}

AudioLayout LayInARow(const std::vector<AudioPiece>& pieces, std::size_t step, ByteSpan before,
                      ByteSpan behind) {
    AudioLayout layout;
    layout.offsets.resize(pieces.size() + 1, kSparseAudioOffset);
    ByteWriter out;
    out.Bytes(before);
    const auto put = [&](std::size_t from, std::size_t to) {
        for (std::size_t i = from; i < to; ++i) {
            if (pieces[i].sparse)
                continue;
            layout.offsets[i] = Narrow<std::int32_t>(out.Position());
            out.Bytes(pieces[i].bytes);
        }
    };
    put(step, pieces.size());
    layout.offsets.back() = Narrow<std::int32_t>(out.Position());
    put(0, step);
    out.Bytes(behind);
    layout.data = out.Release();
    return layout;
}

std::size_t FindStep(const std::vector<std::int32_t>& offsets) {
    std::int32_t last = kSparseAudioOffset;
    for (std::size_t i = 0; i + 1 < offsets.size(); ++i) {
        if (offsets[i] == kSparseAudioOffset)
            continue;
        if (offsets[i] < last)
            return i;
        last = offsets[i];
    }
    return 0;
}

}  // namespace tessaro
