// Rules of the first plane: walls, doors, floors, and what a map is as a whole.
#include <map>
#include <set>

#include "check/rules.h"

namespace tessaro::cli {

namespace {

constexpr int kSide = 64, kMostDoors = 64, kDoorsNear = 61;

Place At(Spot spot, int plane = 0) {
    return {plane, spot.x, spot.y};
}

std::string Counted(std::size_t count, const std::string& one, const std::string& many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

void Damaged(const MapView& map, const TellPlace& tell) {
    if (map.endsEarly)
        tell({}, "a plane ends early; the cells beyond were read as 0");
    if (map.lengthUnknown)
        tell({}, "a plane does not say how long it is");
}

void WrongSize(const MapView& map, const TellPlace& tell) {
    if (map.width != kSide || map.height != kSide)
        tell({}, std::to_string(map.width) + " x " + std::to_string(map.height) +
                     " cells; the game knows 64 x 64");
}

void EdgeOpen(const MapView& map, const TellPlace& tell) {
    std::vector<Spot> open;
    map.EachCell([&](Spot spot) {
        const bool edge =
            spot.x == 0 || spot.y == 0 || spot.x == map.width - 1 || spot.y == map.height - 1;
        if (edge && map.IsOpen(spot))
            open.push_back(spot);
    });
    if (!open.empty())
        tell(At(open.front()),
             Counted(open.size(), "cell of the map's edge is", "cells of the map's edge are") +
                 " no wall");
}

/// Every value is told once a map, at its first cell.
void MeaninglessValues(const MapView& map, const TellPlace& tell) {
    for (const int plane : {0, ThingPlane(map.set)}) {
        if (plane == 0 && map.set == CellSet::Catacomb)
            continue;  // every value of its ground is a tile
        std::map<std::int32_t, std::pair<Spot, std::size_t>> strange;
        map.EachCell([&](Spot spot) {
            const std::int32_t value = map.Cell(plane, spot);
            if (ValueOf(map.set, plane, value).kind == CellKind::Unknown)
                ++strange.try_emplace(value, spot, 0).first->second.second;
        });
        for (const auto& [value, where] : strange)
            tell(At(where.first, plane), "value " + std::to_string(value) + " means nothing, in " +
                                             Counted(where.second, "cell", "cells"));
    }
}

template <class See>
void EachDoor(const MapView& map, See&& see) {
    map.EachCell([&](Spot spot) {
        if (const CellValue& ground = map.Ground(spot); ground.kind == CellKind::Door)
            see(spot, ground);
    });
}

/// The first of a door's two directions of travel; the other is opposite.
int Through(const CellValue& door) {
    return door.upright ? 0 : 2;
}

void DoorWithoutWalls(const MapView& map, const TellPlace& tell) {
    EachDoor(map, [&](Spot spot, const CellValue& door) {
        const int along = Through(door) + 2;
        for (const int direction : {along, (along + 4) & 7})
            if (map.Ground(Step(spot, direction)).kind == CellKind::Floor) {
                tell(At(spot),
                     door.name + " has no wall to its " + std::string(DirectionName(direction)));
                return;
            }
    });
}

void DoorBesideNoArea(const MapView& map, const TellPlace& tell) {
    EachDoor(map, [&](Spot spot, const CellValue& door) {
        for (const int direction : {Through(door), Through(door) + 4})
            if (const Spot side = Step(spot, direction); map.Area(side) < 0) {
                tell(At(spot),
                     door.name + " has no area to its " + std::string(DirectionName(direction)));
                return;
            }
    });
}

void AmbushWithoutArea(const MapView& map, const TellPlace& tell) {
    map.EachCell([&](Spot spot) {
        if (map.Cell(0, spot) == kAmbush && map.Area(spot) < 0)
            tell(At(spot), "an ambush cell with no area beside it");
    });
}

/// A pair of areas is told once a map. The way to the secret exit is area 0 and touches others by
/// its nature.
void AreasTouch(const MapView& map, const TellPlace& tell) {
    std::set<std::pair<int, int>> told;
    map.EachCell([&](Spot spot) {
        const int area = map.Ground(spot).area;
        for (const int direction : {0, 6}) {
            const int other = map.Ground(Step(spot, direction)).area;
            if (area > 0 && other > 0 && area != other &&
                told.insert(std::minmax(area, other)).second)
                tell(At(spot), "areas " + std::to_string(area) + " and " + std::to_string(other) +
                                   " touch without a door");
        }
    });
}

void DoorWithoutKey(const MapView& map, const TellPlace& tell) {
    std::set<int> keys;
    map.EachCell([&](Spot spot) {
        keys.insert(KeyOf(map.Thing(spot), map.Cell(ThingPlane(map.set), spot)));
    });
    EachDoor(map, [&](Spot spot, const CellValue& door) {
        constexpr int kLift = 5;
        if (door.lock > 0 && door.lock < kLift && !keys.contains(door.lock))
            tell(At(spot), door.name + ", and its key is nowhere on the map");
    });
}

int Doors(const MapView& map) {
    int doors = 0;
    EachDoor(map, [&](Spot, const CellValue&) { ++doors; });
    return doors;
}

void TooManyDoors(const MapView& map, const TellPlace& tell) {
    if (const int doors = Doors(map); doors > kMostDoors)
        tell({}, std::to_string(doors) + " doors; the game has room for 64");
}

void NearlyTooManyDoors(const MapView& map, const TellPlace& tell) {
    if (const int doors = Doors(map); doors >= kDoorsNear && doors <= kMostDoors)
        tell({}, std::to_string(doors) + " doors of at most 64");
}

constexpr MapRule kRules[] = {
    {{"map-damaged", Severity::Error, "a save makes the loss final"}, true, Damaged},
    {{"map-size", Severity::Error, "the game takes every map for 64 x 64"}, false, WrongSize},
    {{"map-edge-open", Severity::Warning, "who comes there leaves the map, and the game hangs"},
     false,
     EdgeOpen},
    {{"meaningless-value", Severity::Warning, "the game ignores it or stops with an error"},
     true,
     MeaninglessValues},
    {{"door-without-walls", Severity::Warning, "its leaf slides through the open"},
     false,
     DoorWithoutWalls},
    {{"door-beside-no-area", Severity::Error, "the game joins areas that do not exist"},
     false,
     DoorBesideNoArea},
    {{"ambush-without-area", Severity::Error, "who stands there is in an area that does not exist"},
     false,
     AmbushWithoutArea},
    {{"areas-touch", Severity::Warning, "enemies of one do not hear the player in the other"},
     false,
     AreasTouch},
    {{"door-without-key", Severity::Warning, "it never opens"}, false, DoorWithoutKey},
    {{"too-many-doors", Severity::Error, "the game stops with an error"}, false, TooManyDoors},
    {{"nearly-too-many-doors", Severity::Note, "hardly any can be added"},
     false,
     NearlyTooManyDoors},
};

}  // namespace

std::span<const MapRule> GroundRules() {
    return kRules;
}

}  // namespace tessaro::cli
