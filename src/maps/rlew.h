// RLEW: runs of equal words behind a marker word, the inner layer of every stored plane.
//
//  [length]         2 or 4 bytes, the byte count after expansion; left out in some files
//  tag, C, V        C copies of the word V
//  any other word   itself
#pragma once

#include <cstdint>
#include <span>

#include "foundation/bytes.h"
#include "maps/length_prefix.h"

namespace tessaro {

/// What becomes of words for which the destination has no room.
enum class Overrun { Fails, Cuts };

struct RlewExpansion {
    bool lengthWasZero = false;  ///< the prefix was 0 and 8192 bytes were taken
    bool endedEarly = false;     ///< the source ended before the length was reached
};

/// Expands into a destination of zeros. A `length` below 1 is read from the source's prefix;
/// afterwards it holds what is left over: 0 or below, positive where the source ended early, which
/// leaves the rest 0. A source that ends inside a word or a run fails.
RlewExpansion RlewExpand(std::uint16_t tag, ByteSpan source, std::span<std::uint8_t> destination,
                         std::int32_t& length, LengthPrefix prefix, Overrun overrun);

/// Packs words; a last odd byte is left out. Fails where the packed form, prefix included, is not
/// shorter than the source. Words equal to the tag are not escaped: that is meant
/// (docs/kept-behaviour.md).
ByteArray RlewCompress(std::uint16_t tag, ByteSpan source, LengthPrefix prefix);

}  // namespace tessaro
