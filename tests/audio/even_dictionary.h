#pragma once

#include "huffman/huffman.h"
#include "support/saving.h"

namespace tessaro::test {

/// Every byte value has a code of 8 bits.
inline HuffDictionary EvenDictionary() {
    std::array<std::int32_t, 256> counts;
    counts.fill(1);
    return Huffmanize(counts);
}

}  // namespace tessaro::test
