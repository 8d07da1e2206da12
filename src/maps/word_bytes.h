// Words of packed map data: 16 bits, low byte first, at any address. The callers have checked that
// the bytes are there: the codecs decide that once for several words.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace tessaro {

inline constexpr std::size_t kWordBytes = 2;

inline std::uint16_t WordAt(const std::uint8_t* bytes) {
    return static_cast<std::uint16_t>(bytes[0] | bytes[1] << 8);
}

inline void PutWord(std::uint8_t* bytes, std::uint16_t word) {
    bytes[0] = static_cast<std::uint8_t>(word);
    bytes[1] = static_cast<std::uint8_t>(word >> 8);
}

/// Where an expansion stands: the next byte to read and the next one to write.
struct Cursor {
    const std::uint8_t* in;
    std::uint8_t* out;
};

/// Four words at once, each in a lane of 16 bits, the first in the lowest.
using WordQuad = std::uint64_t;
inline constexpr std::size_t kQuadWords = 4;

inline WordQuad QuadAt(const std::uint8_t* bytes) {
    return WordQuad{bytes[0]} | WordQuad{bytes[1]} << 8 | WordQuad{bytes[2]} << 16 |
           WordQuad{bytes[3]} << 24 | WordQuad{bytes[4]} << 32 | WordQuad{bytes[5]} << 40 |
           WordQuad{bytes[6]} << 48 | WordQuad{bytes[7]} << 56;
}

constexpr WordQuad InEachLane(std::uint16_t value) {
    return value * WordQuad{0x0001'0001'0001'0001};
}

/// Marks lanes by their highest bit so that the first one marked is the first that was 0. (Lanes
/// behind it may be marked for nothing.)
constexpr WordQuad FirstZeroLane(WordQuad quad) {
    return (quad - InEachLane(1)) & ~quad & InEachLane(0x8000);
}

/// The number of lanes in front of the first one that has a bit set. At least one has.
inline std::size_t LanesBefore(WordQuad quad) {
    return static_cast<std::size_t>(std::countr_zero(quad)) / 16;
}

inline void CopyQuad(std::uint8_t* target, const std::uint8_t* from) {
    std::memcpy(target, from, sizeof(WordQuad));
}

/// Four copies of one word, to be written by PutCopies: its bytes stay in the order in which they
/// stand, whatever order this machine has.
inline WordQuad CopiesOf(const std::uint8_t* word) {
    std::uint16_t bytes;
    std::memcpy(&bytes, word, sizeof bytes);
    return InEachLane(bytes);
}

inline void PutCopies(std::uint8_t* target, WordQuad copies) {
    std::memcpy(target, &copies, sizeof copies);
}

/// Eight words pass from one place to another, all read before any is written.
inline constexpr std::size_t kBlockWords = 8;
inline void CopyBlock(std::uint8_t* target, const std::uint8_t* from) {
    std::uint8_t block[kBlockWords * kWordBytes];
    std::memcpy(block, from, sizeof block);
    std::memcpy(target, block, sizeof block);
}

}  // namespace tessaro
