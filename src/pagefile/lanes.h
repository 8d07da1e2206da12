// Sixteen bytes at a time, in the compilers' own portable vectors.
#pragma once

#include <cstdint>
#include <cstring>

namespace tessaro {

inline constexpr std::size_t kLaneSize = 16;

#if defined(__GNUC__) && __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
#define TESSARO_HAS_LANES 1

using Lane = std::uint8_t __attribute__((vector_size(kLaneSize)));

inline Lane LoadLane(const std::uint8_t* from) {
    Lane lane;
    std::memcpy(&lane, from, kLaneSize);
    return lane;
}

inline void StoreLane(std::uint8_t* to, const Lane& lane) {
    std::memcpy(to, &lane, kLaneSize);
}
#endif

}  // namespace tessaro
