// What the cells of the classic map sets mean.
#pragma once

#include <cstdint>

namespace tessaro::cli {

/// The first plane.
enum class Ground { Wall, Door, Floor };

struct GroundCell {
    Ground ground = Ground::Floor;
    bool upright = false;  ///< doors: the leaf runs north to south
    int lock = 0;          ///< doors: 0 none, 1 gold key, 2 silver key, 3 lift
};

GroundCell GroundOf(std::int32_t cell);

/// The second plane.
enum class Thing { Nothing, Start, Object, Turn, Secret, Exit, Enemy };

enum class Enemy { Guard, Officer, Soldier, Dog, Mutant, Other };

struct ThingCell {
    Thing thing = Thing::Nothing;
    int direction = -1;  ///< 0 east, 2 north, 4 west, 6 south and between; -1: none
    int sprite = -1;     ///< objects: their sprite in the page file
    Enemy enemy = Enemy::Other;
};

ThingCell ThingOf(std::int32_t cell);

}  // namespace tessaro::cli
