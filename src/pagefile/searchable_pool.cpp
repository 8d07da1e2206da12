#include "pagefile/searchable_pool.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "pagefile/lanes.h"

namespace tessaro {

std::size_t SearchablePool::LowerBound(ByteSpan run) const {
    if (run.size() > size_)
        return kNone;
    std::size_t bound = 0;
    for (std::size_t i = 0; i + kKeySize <= run.size(); ++i) {
        const std::uint16_t place = firstPlaces_[SlotAt(run.data() + i)];
        if (place == kUnseen)
            return kNone;
        bound = std::max(bound, std::max<std::size_t>(place, i) - i);
    }
    return bound;
}

std::size_t SearchablePool::Find(ByteSpan run) const {
    std::size_t at = LowerBound(run);
    if (at == kNone)
        return kNone;
    const std::size_t end = size_ - run.size() + 1;  // of the positions
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
    const std::size_t at = size_;
    size_ += run.size();
    if (size_ > bytes_.size())
        bytes_.resize(2 * size_);
    std::copy_n(run.data(), run.size(), bytes_.data() + at);
    for (std::size_t i = std::max(at, kKeySize - 1) - (kKeySize - 1); i + kKeySize <= size_; ++i) {
        std::uint16_t& place = firstPlaces_[SlotAt(bytes_.data() + i)];
        place = std::min(place, static_cast<std::uint16_t>(std::min(i, kLatest)));
    }
    return at;
}

ByteArray SearchablePool::Release() {
    bytes_.resize(size_);
    return std::move(bytes_);
}

}  // namespace tessaro
