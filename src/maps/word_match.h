// What the search for earlier words of a plane finds, and how far its codes reach.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "maps/word_bytes.h"

namespace tessaro {

inline constexpr std::size_t kLongestCopy = 255;
inline constexpr std::size_t kNearestReach = 255;
inline constexpr std::size_t kShortestNear = 2;
inline constexpr std::size_t kShortestFar = 3;
inline constexpr std::size_t kFarReach = 65'536;  // words that a far copy can name
/// Words that are read behind the last one of a plane, where quads begin in front of it. They are
/// never matched.
inline constexpr std::size_t kSpareWords = 8;

struct Match {
    std::size_t length = 1;
    std::size_t place = 0;
};

/// How many words are the same at two places, `most` where all of them are.
inline std::size_t EqualWords(const std::uint8_t* a, const std::uint8_t* b, std::size_t most) {
    for (std::size_t length = 0; length < most; length += kQuadWords) {
        const WordQuad difference =
            QuadAt(a + length * kWordBytes) ^ QuadAt(b + length * kWordBytes);
        if (difference != 0)
            return std::min(length + LanesBefore(difference), most);
    }
    return most;
}

}  // namespace tessaro
