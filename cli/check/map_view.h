// A map as rules look at it.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "cells/cell_values.h"

namespace tessaro::cli {

struct Spot {
    int x = 0, y = 0;
    friend bool operator==(const Spot&, const Spot&) = default;
};

/// The neighbour in one of eight directions: 0 east, 2 north, 4 west, 6 south.
Spot Step(Spot from, int direction);

/// Cells outside the map are walls.
class MapView {
public:
    int number = 0, width = 0, height = 0;
    std::vector<std::vector<std::int32_t>> planes;  ///< row by row
    CellSet set = CellSet::Wolf;
    bool endsEarly = false, lengthUnknown = false;  ///< what was damaged when it was read

    bool Inside(Spot spot) const {
        return spot.x >= 0 && spot.y >= 0 && spot.x < width && spot.y < height;
    }
    std::int32_t Cell(int plane, Spot spot) const;
    const CellValue& Ground(Spot spot) const;
    const CellValue& Thing(Spot spot) const;
    bool IsWall(Spot spot) const { return Ground(spot).kind == CellKind::Wall; }
    /// What the player and enemies walk on or through: anything but walls.
    bool IsOpen(Spot spot) const { return !IsWall(spot); }
    /// The area of a floor; that of an ambush cell is its neighbour's to the east, north, west or
    /// south, in this order. -1: none.
    int Area(Spot spot) const;

    /// Calls `see(spot)` for every cell, row by row.
    template <class See>
    void EachCell(See&& see) const {
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                see(Spot{x, y});
    }
    std::vector<Spot> ThingsOf(CellKind kind) const;
    std::size_t Index(Spot spot) const {
        return static_cast<std::size_t>(spot.y) * static_cast<std::size_t>(width) +
               static_cast<std::size_t>(spot.x);
    }
};

/// The lock whose key a thing is, or leaves behind when it dies: 1 gold, 2 silver; 0 for none.
int KeyOf(const CellValue& thing, std::int32_t value);

/// Where the player comes to from the start: through doors whose keys can be had, and through
/// secret walls. A door whose key is nowhere on the map counts as open, since that is a finding of
/// its own. Furniture stops nobody here: some of it does in the game, but a gap beside it is easily
/// missed.
std::vector<bool> Reached(const MapView& map);

}  // namespace tessaro::cli
