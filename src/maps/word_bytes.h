// Words of packed map data: 16 bits, low byte first, at any address. The callers have checked that
// the bytes are there; the expanders decide that once for a whole run.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace tessaro {

inline constexpr std::size_t kWordBytes = 2;

inline std::uint16_t WordAt(const std::uint8_t* bytes) {
    return static_cast<std::uint16_t>(bytes[0] | bytes[1] << 8);
}

inline void PutWord(std::uint8_t* bytes, std::uint16_t word) {
    bytes[0] = static_cast<std::uint8_t>(word);
    bytes[1] = static_cast<std::uint8_t>(word >> 8);
}

}  // namespace tessaro
