// The codec's routines as the library's modules offer them: failures are reported under the
// routine's name and turned into its failure value.
#pragma once

#include "huffman/huffman.h"

namespace tessaro::modHuffmanExpand {

bool HuffExpand(const ByteArray& Source, ByteArray& Dest, std::int32_t& ExpandedLength,
                const HuffDictionary& Dictionary, bool KeepGoing);
bool HuffCompress(const ByteArray& Source, ByteArray& Dest, const HuffDictionary& Dictionary);
/// With the expand dictionary.
std::int32_t DetermineChunkSize(const ByteArray& Source, ByteArray& Dest);
std::int32_t DetermineHuffLength(std::uint8_t Value, const HuffDictionary& Dictionary);

}  // namespace tessaro::modHuffmanExpand

namespace tessaro::modHuffmanize {

/// Fills the built dictionary and the byte counts beside it.
bool Huffmanize(const std::array<std::int32_t, 256>& Counts);

}  // namespace tessaro::modHuffmanize
