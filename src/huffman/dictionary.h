// The stored form of a Huffman dictionary: 256 records of two 16-bit numbers, Bit0 then Bit1.
#pragma once

#include "foundation/bytes.h"
#include "foundation/huff_dictionary.h"

namespace tessaro {

inline constexpr std::size_t kDictionarySize = 1024;

/// Reads a dictionary from its 1024 bytes (fewer fail); entry 255 is kept as it stands.
HuffDictionary ReadDictionary(ByteSpan bytes);
ByteArray WriteDictionary(const HuffDictionary& dictionary);

}  // namespace tessaro
