// Walls and sprites are stored, and here worked on, column by column; images hold rows.
#pragma once

#include <cstddef>

#include "foundation/bytes.h"

namespace tessaro {

/// The transposed matrix: `rows` rows of `columns` bytes come back as `columns` rows of `rows`.
/// The bytes must be exactly as many as that (number 9).
ByteArray Transposed(ByteSpan bytes, std::size_t rows, std::size_t columns);

/// The BMP image of a square given column by column, with the current palette.
ByteArray ImageOfColumns(ByteSpan columns, std::int32_t side);

struct ColumnsOfImage {
    ByteArray columns;  ///< empty where the image has not 8 bits per pixel
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t bitsPerPixel = 0;
};

/// The way back, from a BMP image of any size.
ColumnsOfImage StripToColumns(ByteSpan image);

}  // namespace tessaro
