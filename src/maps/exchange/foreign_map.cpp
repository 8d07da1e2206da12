#include "maps/exchange/foreign_map.h"

#include <algorithm>

namespace tessaro {

typMapGrid ReadCells(ByteReader& in, std::size_t cells) {
    ByteReader words(in.Take(cells * 2));  // proves that the bytes are there
    typMapGrid plane;
    plane.Grid.reserve(cells);
    for (std::size_t i = 0; i < cells; ++i)
        plane.Grid.push_back(words.U16());
    return plane;
}

void WriteCells(ByteWriter& out, const ForeignMap& map, std::size_t plane) {
    const std::size_t cells = PlaneCells(map.width, map.height);
    if (plane >= map.planes.Plane.size())
        return out.Fill(cells * 2, 0);
    const auto& grid = map.planes.Plane[plane].Grid;
    const std::size_t stored = std::min(cells, grid.size());
    for (std::size_t i = 0; i < stored; ++i)
        out.U16(static_cast<std::uint16_t>(grid[i]));
    out.Fill((cells - stored) * 2, 0);
}

std::string_view NameBeforeZero(std::string_view name) {
    return name.substr(0, name.find('\0'));
}

}  // namespace tessaro
