// A map outside the container: what the exchange files hold, whatever their layout.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/bytes.h"
#include "maps/plane_cells.h"
#include "tessaro/game_maps.h"

namespace tessaro {

struct ForeignMap {
    std::optional<std::string> name = {};  ///< nothing where the file carries no name
    std::int32_t width = 0;
    std::int32_t height = 0;
    typMapPlane planes = {};
    std::int32_t slot = 0;  ///< the map's place in a file that has places for maps
};

/// Cells from 16-bit words, widened without sign, row by row.
typMapGrid ReadCells(ByteReader& in, std::size_t cells);

/// The low 16 bits of each cell of a plane, row by row. Planes and cells that the map lacks are
/// zeros: the last map of a set, once removed, keeps its size but only the cells of a new map.
void WriteCells(ByteWriter& out, const ForeignMap& map, std::size_t plane);

/// The name without its padding and without what may stand behind that: everything before the
/// first zero byte.
std::string_view NameBeforeZero(std::string_view name);

}  // namespace tessaro
