// Carmack: words copied from earlier places of the same data, the outer layer of a stored plane.
// Each code begins with a count byte and a tag byte:
//
//  N near D        N words from D words back (D one byte)
//  N far W         N words from word W of the output on (W two bytes)
//  0 near|far L    the word whose low byte is L and whose high byte is the tag
//  any other two   the word itself
#pragma once

#include <cstdint>
#include <span>

#include "foundation/bytes.h"
#include "maps/length_prefix.h"

namespace tessaro {

struct CarmackTags {
    std::uint8_t nearTag = 0xA7;
    std::uint8_t farTag = 0xA8;
};

/// Expands codes (without their length prefix) into a destination of zeros until `length` / 2 words
/// exist, ties rounded to even. A copy may read what it is just writing, and words not written yet,
/// which are 0. Everything outside the source or the destination fails.
void CarmackExpand(ByteSpan codes, std::span<std::uint8_t> destination, std::int32_t length,
                   CarmackTags tags);

/// The most bytes that codes of this size can expand to: nothing longer needs memory.
std::size_t CarmackExpandedLimit(std::size_t codeBytes);

/// Which words that are not copied are escaped: those that the rule for files names, which leaves
/// some out that would be read as codes, or every one whose high byte is a tag.
enum class Escapes { AsStated, EveryTag };

/// Packs words behind a prefix with the source's byte length. At each place the longest earlier
/// match of at most 255 words that ends before the place is taken, the nearest of equal ones; near
/// copies need 2 words, far ones 3, and only the first 65,536 words can be named by a far copy.
ByteArray CarmackCompress(ByteSpan source, LengthPrefix prefix, CarmackTags tags,
                          Escapes escapes = Escapes::AsStated);

}  // namespace tessaro
