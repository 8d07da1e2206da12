// Sixteen bytes at a time, where the processor surely has such registers.
#pragma once

#include <cstdint>
#include <cstring>

#if defined(__GNUC__) && defined(__SSE2__)
#define TESSARO_HAS_LANES 1
#include <emmintrin.h>
#endif

namespace tessaro {

inline constexpr std::size_t kLaneSize = 16;

#if TESSARO_HAS_LANES
using Lane = std::uint8_t __attribute__((vector_size(kLaneSize)));

inline Lane LoadLane(const std::uint8_t* from) {
    Lane lane;
    std::memcpy(&lane, from, kLaneSize);
    return lane;
}

inline void StoreLane(std::uint8_t* to, const Lane& lane) {
    std::memcpy(to, &lane, kLaneSize);
}

/// One bit for each byte of a comparison, the first byte's lowest.
template <class Comparison>
std::uint32_t HitBits(Comparison hits) {
    static_assert(sizeof(Comparison) == kLaneSize);
    return static_cast<std::uint32_t>(_mm_movemask_epi8(reinterpret_cast<__m128i>(hits)));
}
#endif

}  // namespace tessaro
