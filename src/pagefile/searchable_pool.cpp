#include "pagefile/searchable_pool.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "pagefile/lanes.h"

namespace tessaro {

bool SearchablePool::MayHold(ByteSpan run) const {
    if (run.size() > bytes_.size())
        return false;
    std::uint32_t key = 0;
    for (std::size_t i = 0; i < run.size(); ++i) {
        key = NextKey(key, run[i]);
        if (i + 1 >= kKeySize && !seen_[Slot(key)])
            return false;
    }
    return true;
}

std::size_t SearchablePool::Find(ByteSpan run) const {
    if (!MayHold(run))
        return kNone;
    std::size_t at = 0;
    const std::size_t end = bytes_.size() - run.size() + 1;  // of the positions
    const std::uint8_t* const first = bytes_.data();
    const std::uint8_t* const last = first + run.size() - 1;
    const auto isAt = [&](std::size_t position) {
        return std::memcmp(first + position, run.data(), run.size()) == 0;
    };
#if TESSARO_HAS_LANES
    // Only where both the first and the last byte are right are the others looked at.
    const Lane firstByte = Lane{} + run.front();
    const Lane lastByte = Lane{} + run.back();
    while (at < end && end >= kLaneSize) {
        const std::size_t start = std::min(at, end - kLaneSize);
        const auto hits =
            (LoadLane(first + start) == firstByte) & (LoadLane(last + start) == lastByte);
        const auto halves = std::bit_cast<std::array<std::uint64_t, 2>>(hits);
        at = start + kLaneSize;
        if ((halves[0] | halves[1]) == 0)
            continue;
        for (std::size_t half = 0; half < 2; ++half)
            for (std::uint64_t left = halves[half]; left != 0;) {
                const int bit = std::countr_zero(left);
                const std::size_t position = start + 8 * half + static_cast<std::size_t>(bit / 8);
                if (run.size() <= 2 || isAt(position))
                    return position;
                left &= ~(std::uint64_t{0xFF} << bit);
            }
    }
#endif
    for (; at < end; ++at)
        if (isAt(at))
            return at;
    return kNone;
}

std::size_t SearchablePool::Append(ByteSpan run) {
    const std::size_t at = bytes_.size();
    bytes_.insert(bytes_.end(), run.begin(), run.end());
    for (const std::uint8_t byte : run) {
        key_ = NextKey(key_, byte);
        seen_[Slot(key_)] = true;
    }
    return at;
}

}  // namespace tessaro
