// The overview picture of a map.
#pragma once

#include <map>
#include <string>

#include "drawing/cell_pictures.h"
#include "game.h"
#include "pictures/canvas.h"

namespace tessaro::cli {

/// What a map picture shows, counted.
struct MapCounts {
    int doors = 0, secrets = 0, enemies = 0, objects = 0, starts = 0;
    std::map<std::string, int> bosses{};  ///< by name; counted among the enemies, too
};

/// Draws walls with their pictures from the page file (in flat colours where there is none), and
/// doors, floors, objects, enemies, secret walls and the player's start as signs of their own.
/// Games of 16 colours show both planes as their tiles; unknown games a colour a value.
/// The stamps are the game's; whoever draws several maps keeps them.
Canvas DrawMap(Game& game, int map, CellStamps& stamps, MapCounts* counts = nullptr);

}  // namespace tessaro::cli
