// What of the Rise of the Triad files others need to know: the CRC and the size of the directory.
#pragma once

#include <cstdint>

#include "foundation/bytes.h"

namespace tessaro {

inline constexpr std::size_t kRottSlots = 100;

/// The failure of an export of more maps than there are slots.
Failure TooManyRottMaps();

/// Continues a CRC-16 of the ARC kind (reflected polynomial A001) over further bytes.
std::uint16_t MapCRC(ByteSpan bytes, std::uint16_t crc);

}  // namespace tessaro
