// modAddBMPHeader: pixels in and out of BMP images.
//
//  offset   width        field
//  0        2            "BM"
//  2        4            file size: pixel offset + stride x height
//  6        4            0
//  10       4            pixel offset: 1078 at 8 bits, 118 at 4
//  14       4            40
//  18       4, 4         width, height (positive: bottom row first)
//  26       2, 2         1, bits per pixel
//  30       24           0
//  54       4 x 2^bits   colours: blue, green, red, 0
//  then     stride x h   rows, each padded to a multiple of 4 bytes
#pragma once

#include <cstdint>

#include "foundation/bytes.h"

namespace tessaro::modAddBMPHeader {

/// Wraps pixels (top row first) as a BMP image with the current palette. `force8Bits` keeps 8 bits
/// per pixel in the 16-colour mode, which otherwise has 4 (first pixel of a byte in the high half,
/// (width + 1) / 2 bytes a row). Fewer pixel bytes than the size needs fail with number 9.
ByteArray AddBMPHeader(std::int32_t width, std::int32_t height, ByteSpan pixels, bool force8Bits);

/// The same in a depth of 4 or 8 bits per pixel, whatever the mode is.
ByteArray MakeImage(std::int32_t width, std::int32_t height, ByteSpan pixels,
                    std::int32_t bitsPerPixel);

/// The same with 8 bits per pixel, of which all are still 0: for callers whose pixels come in
/// another order. The pixels begin at kPixels8Bit.
ByteArray BlankImage(std::int32_t width, std::int32_t height);
inline constexpr std::size_t kPixels8Bit = 1078;

struct StrippedImage {
    ByteArray pixels;  ///< top row first; 4-bit rows stay packed. Unknown depths have none.
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t bitsPerPixel = 0;
};

/// The pixels of a BMP image. Where they start follows from the depth (4: 118, 8: 1078, 24: 54),
/// not from the file: that is meant. A negative height means top row first.
StrippedImage RemoveBMPHeader(ByteSpan image);

}  // namespace tessaro::modAddBMPHeader
