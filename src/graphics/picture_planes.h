// Pictures between the games' planes and linear pixels, one byte each.
//
// VGA: plane p (0 to 3) holds the columns p, p + 4, p + 8 ...; a plane's row has width \ 4 bytes.
// 16-colour: plane p holds bit p of every pixel, 8 pixels a byte, the leftmost highest; a mask,
// where there is one, is a plane of its own before the others, 1 where transparent.
#pragma once

#include <cstdint>

#include "foundation/bytes.h"

namespace tessaro {

/// The result has the size of the source. Columns beyond the last multiple of 4 stay 0: that is
/// meant. A source too small for the size fails with number 9; so does the inverse.
ByteArray FixPicturePlanesForBMP(ByteSpan source, std::int32_t width, std::int32_t height);
ByteArray FixPicturePlanesForStorage(ByteSpan source, std::int32_t width, std::int32_t height);

/// Four planes of `width` x `height` pixels, the width a multiple of 8 (else number 5).
ByteArray PixelsFromEgaPlanes(ByteSpan planes, std::int32_t width, std::int32_t height);
/// A pixel above 15 fails with number 6.
ByteArray EgaPlanesFromPixels(ByteSpan pixels, std::int32_t width, std::int32_t height);
/// 15 where the mask plane is transparent, 0 where opaque.
ByteArray PixelsFromEgaMask(ByteSpan plane, std::int32_t width, std::int32_t height);
/// Transparent wherever a pixel is not 0.
ByteArray EgaMaskFromPixels(ByteSpan pixels, std::int32_t width, std::int32_t height);

/// Two pixels a byte, the first in the high half; a row of an odd width ends with half a byte.
ByteArray PackHalfBytes(ByteSpan pixels, std::int32_t width, std::int32_t height);
ByteArray UnpackHalfBytes(ByteSpan packed, std::int32_t width, std::int32_t height);

/// The bytes of one plane.
std::size_t EgaPlaneSize(std::int32_t width, std::int32_t height);

}  // namespace tessaro
