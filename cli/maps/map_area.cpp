#include "maps/map_area.h"

#include <charconv>

#include "cells/cell_values.h"
#include "report.h"

namespace tessaro::cli {

namespace {

constexpr std::int32_t kLargestCell = 0xFFFF;

std::size_t IndexOf(const Cells& cells, int x, int y) {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(cells.width) +
           static_cast<std::size_t>(x);
}

}  // namespace

std::int32_t Cells::At(int plane, int x, int y) const {
    return planes.Plane[static_cast<std::size_t>(plane)].Grid[IndexOf(*this, x, y)];
}

void Cells::CheckPlane(int plane) const {
    CheckNumber("plane", plane, Planes());
}

void Cells::CheckArea(const Area& area) const {
    CheckNumber("column", area.x, width);
    CheckNumber("row", area.y, height);
    if (area.width < 1 || area.height < 1)
        throw CommandError("an area has at least 1 x 1 cells, this one " +
                           std::to_string(area.width) + " x " + std::to_string(area.height));
    if (area.width > width - area.x || area.height > height - area.y)
        throw CommandError("the area reaches beyond the map: from " + std::to_string(area.x) +
                           ", " + std::to_string(area.y) + " there is room for " +
                           std::to_string(width - area.x) + " x " +
                           std::to_string(height - area.y) + " cells");
}

Cells LoadCells(Game& game, int map) {
    Cells cells;
    if (!game.Maps().LoadMap(map, cells.planes, cells.width, cells.height))
        Fail("map " + std::to_string(map));
    return cells;
}

void Changing::Set(int plane, int x, int y, std::int32_t value) {
    std::int32_t& cell =
        cells_.planes.Plane[static_cast<std::size_t>(plane)].Grid[IndexOf(cells_, x, y)];
    if (cell == value)
        return;
    if (!game_.Maps().SetMapCode(map_, plane, x, y, value))
        Fail("the cell was not set");
    cell = value;
    ++changed_;
}

std::optional<std::int32_t> ValueNamed(Game& game, int plane, const std::string& text) {
    std::int32_t number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (!text.empty() && stop == end && error == std::errc() && number >= 0 &&
        number <= kLargestCell)
        return number;
    const CellSet set = CellSetOf(game.Version());
    for (std::int32_t value = 0; value <= kLargestCell; ++value)
        if (const std::string& name = ValueOf(set, plane, value).name;
            !name.empty() && name == text)
            return value;
    return {};
}

std::int32_t CellValueOf(Game& game, int plane, const std::string& text) {
    if (const auto value = ValueNamed(game, plane, text))
        return *value;
    throw CommandError("\"" + text +
                       "\" is neither a value from 0 to 65535 nor the name of one on plane " +
                       std::to_string(plane) + " (map stats shows the names in use)");
}

}  // namespace tessaro::cli
