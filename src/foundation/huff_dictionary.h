// A Huffman dictionary as the configuration holds it; huffman/ knows what it means.
#pragma once

#include <array>
#include <cstdint>

namespace tessaro {

/// One inner node of a Huffman tree: a child below 256 is that byte value, any other is the node
/// with the number of its low 8 bits.
struct HuffNode {
    std::int16_t Bit0 = 0;
    std::int16_t Bit1 = 0;
    bool operator==(const HuffNode&) const = default;
};

/// The dictionary table; node 254 is the root, entry 255 is carried along unused.
using HuffDictionary = std::array<HuffNode, 256>;

}  // namespace tessaro
