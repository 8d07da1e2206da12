// What the codec derives from a dictionary: a table that decodes several symbols a step, and the
// code of every byte value. Both are kept per thread for the dictionaries used last.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "huffman/huffman.h"

namespace tessaro {

/// The symbols that the next 12 bits hold: the bits that they take in byte 0, where a shift finds
/// them at once, up to six symbols in bytes 1 to 6 in stream order, their number in byte 7. A first
/// code longer than 12 bits gives 0 symbols and 0 bits.
using DecodeStep = std::uint64_t;

struct DecodeTable {
    static constexpr unsigned kBits = 12;
    static constexpr unsigned kSymbols = 6;

    std::vector<DecodeStep> steps;
    /// The longest code in bits; 0 for a dictionary that goes round in circles, whose codes have
    /// no longest one.
    unsigned longest = 0;
};

struct Code {
    std::uint32_t bits = 0;    ///< the root's bit lowest
    std::uint32_t length = 0;  ///< above 32: cannot be stored
};

struct CodeTable {
    std::array<Code, 256> codes{};
    /// Whether the code leads down from the root and has 1 to 32 bits: only then it reads back.
    std::array<bool, 256> readsBack{};
    unsigned longest = 0;  ///< of all codes
};

DecodeTable BuildDecodeTable(const HuffDictionary& dictionary);
CodeTable BuildCodeTable(const HuffDictionary& dictionary);

/// The same from the thread's cache; valid until the next call on the thread.
const DecodeTable& DecodeTableFor(const HuffDictionary& dictionary);
const CodeTable& CodeTableFor(const HuffDictionary& dictionary);

inline constexpr bool IsLeaf(std::int16_t reference) {
    return (reference & 0x100) == 0;
}

}  // namespace tessaro
