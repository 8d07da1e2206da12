// What the cells of maps mean, game by game.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "tessaro/version.h"
#include "variants.h"

namespace tessaro::cli {

/// A variant that nobody knows has the values of Wolfenstein, unless it has 16 colours.
CellSet CellSetOf(const clsVersion& version);

/// `Thing` is what has a name but no kind of its own: the treasures and gates of 16-colour games.
enum class CellKind {
    Nothing,
    Wall,
    Door,
    Floor,
    Start,
    Object,
    Turn,
    Pushwall,
    Exit,
    Enemy,
    Boss,
    Thing,
    Unknown
};

enum class Breed { Guard, Officer, Soldier, Dog, Mutant, Other };

struct CellValue {
    CellKind kind = CellKind::Unknown;
    std::string name{};  ///< "guard-patrol-east-2"; empty where the value means nothing
    int sprite = -1;     ///< objects, enemies: their sprite in the page file
    int direction = -1;  ///< 0 east, 2 north, 4 west, 6 south and between; -1: none
    Breed breed = Breed::Other;
    bool patrols = false;
    int skill = 0;         ///< enemies: the lowest grade of the game that has them, from 1
    bool upright = false;  ///< doors: the leaf runs north to south
    int lock = 0;          ///< doors: 1 gold key, 2 silver key, 3 and 4 keys of no game, 5 lift
    int area = -1;         ///< floors: 0 to 36; -1: none
};

inline constexpr std::int32_t kLiftWall = 21, kFirstDoor = 90, kLastDoor = 101, kAmbush = 106,
                              kSecretExit = 107, kFirstArea = 107, kPushwall = 98, kExit = 99,
                              kGoldKey = 43, kSilverKey = 44, kDeadGuard = 124;

/// The meaning of a value. 0 means nothing on every plane but the first, where it is unknown.
const CellValue& ValueOf(CellSet set, int plane, std::int32_t value);

/// The plane that holds what stands on the ground: 2 in Catacomb, elsewhere 1.
int ThingPlane(CellSet set);

/// "pushwall", as properties and findings call a kind.
std::string_view KindName(CellKind kind);

/// "north-east"; empty for none.
std::string_view DirectionName(int direction);

}  // namespace tessaro::cli
