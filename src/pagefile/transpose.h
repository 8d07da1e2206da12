// Walls and sprites are stored column by column, images row by row.
#pragma once

#include <cstddef>

#include "foundation/bytes.h"

namespace tessaro {

/// The transposed matrix: `rows` rows of `columns` bytes come back as `columns` rows of `rows`.
/// The bytes must be exactly as many as that (number 9).
ByteArray Transposed(ByteSpan bytes, std::size_t rows, std::size_t columns);

}  // namespace tessaro
