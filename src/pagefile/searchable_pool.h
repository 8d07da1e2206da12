// A sprite's pixel pool that finds runs of pixels in itself.
#pragma once

#include <array>
#include <cstddef>
#include <limits>
#include <vector>

#include "foundation/bytes.h"

namespace tessaro {

/// The pixels stored so far, with every position known by the four bytes that begin there. It
/// finds what a search from the first byte on finds.
class SearchablePool {
public:
    static constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();

    SearchablePool() {
        first_.fill(kNone);
        count_.fill(0);
    }

    /// The lowest position of the run among the bytes stored; kNone when it is not there. Only
    /// stored bytes take part: a match with a byte yet to be written would come out wrong.
    std::size_t Find(ByteSpan run) const;

    /// Stores the run at the end and returns its position.
    std::size_t Append(ByteSpan run);

    std::size_t Size() const { return bytes_.size(); }
    ByteArray Release() { return std::move(bytes_); }

private:
    static constexpr std::size_t kKeySize = 4;
    static constexpr unsigned kKeyBits = 10;

    static std::size_t Key(const std::uint8_t* bytes);

    ByteArray bytes_;
    std::vector<std::size_t> next_;  ///< the next position with the same key
    std::array<std::size_t, 1u << kKeyBits> first_, last_, count_;
};

}  // namespace tessaro
