// A sprite's pixel pool that finds runs of pixels in itself.
#pragma once

#include <array>
#include <cstddef>
#include <limits>

#include "foundation/bytes.h"

namespace tessaro {

/// The pixels stored so far. It finds what a search from the first byte on finds. Where three bytes
/// in a row were first stored tells of most new runs that they are new, and of the others where to
/// begin to search.
class SearchablePool {
public:
    static constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();

    /// Has room for so many bytes at least.
    explicit SearchablePool(std::size_t size) : bytes_(size) { firstPlaces_.fill(kUnseen); }

    /// The lowest position of the run among the bytes stored; kNone when it is not there. Only
    /// stored bytes take part: a match with a byte yet to be written would come out wrong. A run
    /// is never empty.
    std::size_t Find(ByteSpan run) const;

    /// Stores the run at the end and returns its position.
    std::size_t Append(ByteSpan run);

    ByteArray Release();

private:
    static constexpr std::size_t kKeySize = 3;
    static constexpr unsigned kSlotBits = 12;

    static std::size_t SlotAt(const std::uint8_t* bytes) {
        const std::uint32_t key =
            bytes[0] | std::uint32_t{bytes[1]} << 8 | std::uint32_t{bytes[2]} << 16;
        return (key * 2654435761u) >> (32 - kSlotBits);
    }
    /// A position before which the run does not begin; kNone where it is not there at all.
    std::size_t LowerBound(ByteSpan run) const;

    ByteArray bytes_;
    std::size_t size_ = 0;  ///< of those stored
    static constexpr std::uint16_t kUnseen = 0xFFFF;
    static constexpr std::size_t kLatest = kUnseen - 1;
    /// Where the first three bytes of a slot begin, or earlier.
    std::array<std::uint16_t, 1u << kSlotBits> firstPlaces_;
};

}  // namespace tessaro
