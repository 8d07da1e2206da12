// The Huffman codec of the graphics and audio files: one static code per file family, kept in a
// dictionary of its own (huffman/dictionary.h), whose node 254 is the root.
//
//  stream       bits from each byte's lowest upwards; codes from the root downwards, no padding
//  chunk        i32 expanded length, then the stream
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "foundation/bytes.h"
#include "huffman/dictionary.h"

namespace tessaro {

inline constexpr std::size_t kRootNode = 254;

/// Decodes `source` into `dest`, which the caller has sized for `expandedLength` bytes, until that
/// many are out or the source ends; what is not reached keeps its value. With `keepGoing` it does
/// not stop there while source bytes remain before the last: `dest` and `expandedLength` grow.
/// A `dest` that is too small fails with number 9.
void HuffExpand(ByteSpan source, ByteArray& dest, std::int32_t& expandedLength,
                const HuffDictionary& dictionary, bool keepGoing);

/// The chunk for `source`: length field and stream. Fewer than 4 bytes are stored as an empty
/// chunk, four zero bytes: that is meant. A byte value without a leaf leaves no bits in the
/// stream; one whose code is longer than 32 bits fails with number 9.
ByteArray HuffCompress(ByteSpan source, const HuffDictionary& dictionary);

/// The stream alone, of any number of bytes.
ByteArray CompressStream(ByteSpan source, const HuffDictionary& dictionary);

/// Decodes a stream of unknown length into `dest`, the bits of the last byte excepted, and returns
/// the number of bytes, one more when the stream ended within a code. `dest` has one byte more.
std::int32_t DetermineChunkSize(ByteSpan source, ByteArray& dest, const HuffDictionary& dictionary);

/// How many bytes of a stream are left behind the codes of `count` bytes; nothing where it ends
/// before.
std::optional<std::size_t> BytesLeft(ByteSpan stream, std::int64_t count,
                                     const HuffDictionary& dictionary);

/// The length in bits of a byte value's code; 0 for a value without a leaf.
std::int32_t DetermineHuffLength(std::uint8_t value, const HuffDictionary& dictionary);

/// Builds the code for 256 byte counts: the two lightest slots, the lowest first among equals,
/// become a node in the place of the first, 255 times over. A count of 2147483647 never takes
/// part, which leaves the tree incomplete: a failure.
HuffDictionary Huffmanize(const std::array<std::int32_t, 256>& counts);

/// Decodes a stream into bytes of its own: `expandedLength` of them, zeros where the stream ends
/// early. A length beyond 65535 is not believed further than the stream can reach.
ByteArray ExpandStream(ByteSpan stream, std::int32_t expandedLength,
                       const HuffDictionary& dictionary, bool keepGoing = false);

/// Expands a whole chunk. One of fewer than 5 bytes is empty.
ByteArray ExpandChunk(ByteSpan chunk, const HuffDictionary& dictionary);

/// Whether every byte value of `bytes` has a code of 1 to 32 bits from the root, so that it can be
/// stored and reads back.
bool CanCompress(ByteSpan bytes, const HuffDictionary& dictionary);

}  // namespace tessaro
