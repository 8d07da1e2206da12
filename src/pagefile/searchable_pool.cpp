#include "pagefile/searchable_pool.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "pagefile/lanes.h"

namespace tessaro {

std::size_t SearchablePool::LowerBound(ByteSpan run) const {
    if (run.size() > bytes_.size())
        return kNone;
    std::size_t bound = 0;
    std::uint32_t key = 0;
    for (std::size_t i = 0; i < run.size(); ++i) {
        key = NextKey(key, run[i]);
        if (i + 1 < kKeySize)
            continue;
        const std::size_t inRun = i + 1 - kKeySize;
        const std::uint16_t place = firstPlaces_[Slot(key)];
        if (place == kUnseen)
            return kNone;
        bound = std::max(bound, std::max<std::size_t>(place, inRun) - inRun);
    }
    return bound;
}

std::size_t SearchablePool::Find(ByteSpan run) const {
    std::size_t at = LowerBound(run);
    if (at == kNone)
        return kNone;
    const std::size_t end = bytes_.size() - run.size() + 1;  // of the positions
    const std::uint8_t* const first = bytes_.data();
    const auto isAt = [&](std::size_t position) {
        return std::memcmp(first + position, run.data(), run.size()) == 0;
    };
    if (at >= end)
        return kNone;
    if (isAt(at))
        return at;
#if TESSARO_HAS_LANES
    // Only where both the first and the last byte are right are the others looked at.
    const std::uint8_t* const last = first + run.size() - 1;
    const Lane firstByte = Lane{} + run.front();
    const Lane lastByte = Lane{} + run.back();
    const auto hitsAt = [&](std::size_t start) {
        return HitBits((LoadLane(first + start) == firstByte) &
                       (LoadLane(last + start) == lastByte));
    };
    while (at < end && end >= kLaneSize) {
        const std::size_t start = std::min(at, end - kLaneSize);
        std::uint32_t hits = hitsAt(start);
        at = start + kLaneSize;
        if (end - start >= 2 * kLaneSize) {
            hits |= hitsAt(at) << kLaneSize;
            at += kLaneSize;
        }
        for (; hits != 0; hits &= hits - 1) {
            const std::size_t position = start + static_cast<std::size_t>(std::countr_zero(hits));
            if (run.size() <= 2 || isAt(position))
                return position;
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
    std::uint32_t key = key_;
    std::size_t begin = at + 1 - kKeySize;  // wraps round for the first bytes of all
    for (const std::uint8_t byte : run) {
        key = NextKey(key, byte);
        std::uint16_t& place = firstPlaces_[Slot(key)];
        place = std::min(place, static_cast<std::uint16_t>(std::min(begin, kLatest)));
        ++begin;
    }
    key_ = key;
    return at;
}

}  // namespace tessaro
