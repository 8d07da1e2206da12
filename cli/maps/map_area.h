// Areas of maps: what `map fill` and its kin work on.
#pragma once

#include <optional>
#include <string>

#include "game.h"
#include "tessaro/game_maps.h"

namespace tessaro::cli {

struct Area {
    int x = 0, y = 0, width = 1, height = 1;
};

/// A map's cells as they were loaded, from a game or from a map file.
struct Cells {
    typMapPlane planes;
    std::int32_t width = 0, height = 0;

    std::int32_t At(int plane, int x, int y) const;
    int Planes() const { return static_cast<int>(planes.Plane.size()); }
    /// Fails, with the numbers that there are, for a plane that is not there.
    void CheckPlane(int plane) const;
    /// Fails for an area that is empty or reaches beyond the map.
    void CheckArea(const Area& area) const;
};

Cells LoadCells(Game& game, int map);

/// One map that is being changed; counts what really changes.
class Changing {
public:
    Changing(Game& game, int map) : game_(game), map_(map), cells_(LoadCells(game, map)) {}

    const Cells& Now() const { return cells_; }
    void Set(int plane, int x, int y, std::int32_t value);
    int Changed() const { return changed_; }

private:
    Game& game_;
    int map_, changed_ = 0;
    Cells cells_;
};

/// The value that a text stands for: 0 to 65535, or the name of what a cell of the plane means.
/// Nothing where the plane has no value of that name.
std::optional<std::int32_t> ValueNamed(Game& game, int plane, const std::string& text);
/// The same; fails where there is none.
std::int32_t CellValueOf(Game& game, int plane, const std::string& text);

}  // namespace tessaro::cli
