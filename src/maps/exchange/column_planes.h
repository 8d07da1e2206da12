// The body that FloEdit and MapEdit files share: one 64 x 64 map with two planes.
//
//  offset   width   field
//  0        8192    plane 0: 4096 cells column by column, the k-th at x = k / 64, y = k mod 64
//  8192     8192    plane 1, the same
#pragma once

#include "maps/exchange/foreign_map.h"

namespace tessaro {

inline constexpr std::size_t kColumnMapSize = 16'384;
inline constexpr std::int32_t kColumnMapSide = 64;

ForeignMap ReadColumnMap(ByteReader& in);

/// A map of another size fails with `formatName` in the description; planes beyond the second are
/// not stored, missing ones are zeros.
void WriteColumnMap(ByteWriter& out, const ForeignMap& map, const char* formatName);

}  // namespace tessaro
