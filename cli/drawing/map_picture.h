// The overview picture of a map.
#pragma once

#include "game.h"
#include "pictures/canvas.h"

namespace tessaro::cli {

/// What a map picture shows, counted; only for maps whose codes are known.
struct MapCounts {
    int doors = 0, secrets = 0, enemies = 0, objects = 0, starts = 0;
};

/// Draws walls with their pictures from the page file (in flat colours where there is none), and
/// doors, floors, objects, enemies, secret walls and the player's start as signs of their own.
Canvas DrawMap(Game& game, int map, int cellSize = 16, std::optional<MapCounts>* counts = nullptr);

}  // namespace tessaro::cli
