// Rules of what stands on a map: the start, secret walls, patrols, things, and the way out.
#include <map>
#include <set>

#include "check/rules.h"

namespace tessaro::cli {

namespace {

constexpr int kMostActors = 150, kActorsNear = 143, kMostObjects = 400, kObjectsNear = 380;

Place At(const MapView& map, Spot spot) {
    return {ThingPlane(map.set), spot.x, spot.y};
}

void NotOneStart(const MapView& map, const TellPlace& tell) {
    const std::vector<Spot> starts = map.ThingsOf(CellKind::Start);
    if (starts.empty())
        tell({}, "the player has no start");
    else if (starts.size() > 1)
        tell(At(map, starts[1]), std::to_string(starts.size()) + " starts");
}

/// Whether a secret wall has room behind it on some side and the player on the other.
bool CanMove(const MapView& map, Spot spot, bool othersMoved) {
    const auto isFree = [&](Spot side) {
        const bool moved = othersMoved && map.Thing(side).kind == CellKind::Pushwall;
        return moved || map.Ground(side).kind == CellKind::Floor;
    };
    for (const int direction : {0, 2, 4, 6})
        if (isFree(Step(spot, direction)) && isFree(Step(spot, (direction + 4) & 7)))
            return true;
    return false;
}

void StuckPushwall(const MapView& map, const TellPlace& tell) {
    for (const Spot spot : map.ThingsOf(CellKind::Pushwall))
        if (!map.IsWall(spot))
            tell(At(map, spot), "a secret wall where no wall is");
        else if (!CanMove(map, spot, true))
            tell(At(map, spot), "a secret wall that no side can push");
}

void WaitingPushwall(const MapView& map, const TellPlace& tell) {
    for (const Spot spot : map.ThingsOf(CellKind::Pushwall))
        if (map.IsWall(spot) && !CanMove(map, spot, false) && CanMove(map, spot, true))
            tell(At(map, spot), "a secret wall that another one holds");
}

struct PatrolEnd {
    Spot spot;
    int turns = 0;  ///< marks passed on the way
};

/// Where a patrol comes to a wall: it turns at each mark on its way and is followed until it walks
/// in a circle. A mark that points at a wall itself is a finding of another rule.
std::optional<PatrolEnd> EndOf(const MapView& map, Spot spot) {
    int direction = map.Thing(spot).direction, turns = 0;
    std::set<int> seen;
    bool atMark = false;
    while (seen.insert(static_cast<int>(map.Index(spot)) * 8 + direction).second) {
        const Spot next = Step(spot, direction);
        if (map.IsWall(next))
            return atMark ? std::nullopt : std::optional(PatrolEnd{spot, turns});
        spot = next;
        const CellValue& thing = map.Thing(spot);
        atMark = thing.kind == CellKind::Turn;
        if (atMark)
            direction = thing.direction;
        turns += atMark;
    }
    return std::nullopt;
}

template <class See>
void EachPatrolEnd(const MapView& map, See&& see) {
    for (const Spot spot : map.ThingsOf(CellKind::Enemy))
        if (map.Thing(spot).patrols && map.IsOpen(spot))
            if (const auto end = EndOf(map, spot))
                see(spot, *end);
}

std::string Coordinates(Spot spot) {
    return "(" + std::to_string(spot.x) + "," + std::to_string(spot.y) + ")";
}

void PatrolIntoWall(const MapView& map, const TellPlace& tell) {
    EachPatrolEnd(map, [&](Spot spot, const PatrolEnd& end) {
        if (end.turns == 0)
            tell(At(map, spot), map.Thing(spot).name + " walks straight to " +
                                    Coordinates(end.spot) + ", into a wall");
    });
}

/// One finding for each place where patrols end, however many do.
void PatrolEnds(const MapView& map, const TellPlace& tell) {
    std::map<std::size_t, std::pair<Spot, int>> ends;
    EachPatrolEnd(map, [&](Spot, const PatrolEnd& end) {
        if (end.turns > 0)
            ++ends.try_emplace(map.Index(end.spot), end.spot, 0).first->second.second;
    });
    for (const auto& [index, end] : ends)
        tell(At(map, end.first), std::to_string(end.second) +
                                     (end.second == 1 ? " patrol comes" : " patrols come") +
                                     " to a wall here, past the marks");
}

void TurnIntoWall(const MapView& map, const TellPlace& tell) {
    for (const Spot spot : map.ThingsOf(CellKind::Turn))
        if (map.IsOpen(spot) && map.IsWall(Step(spot, map.Thing(spot).direction)))
            tell(At(map, spot), map.Thing(spot).name + " points at a wall");
}

void ThingInWall(const MapView& map, const TellPlace& tell) {
    map.EachCell([&](Spot spot) {
        const CellValue& thing = map.Thing(spot);
        const bool stands = thing.kind == CellKind::Object || thing.kind == CellKind::Enemy ||
                            thing.kind == CellKind::Boss || thing.kind == CellKind::Start;
        const CellKind ground = map.Ground(spot).kind;
        if (stands && (ground == CellKind::Wall || ground == CellKind::Door))
            tell(At(map, spot), thing.name + " stands in a " + std::string(KindName(ground)));
    });
}

/// One finding for each room that is shut off, with what is in it.
void Unreachable(const MapView& map, const TellPlace& tell) {
    if (map.ThingsOf(CellKind::Start).empty())
        return;
    std::vector<bool> seen = Reached(map);
    map.EachCell([&](Spot first) {
        if (seen[map.Index(first)] || map.IsWall(first))
            return;
        std::vector<Spot> open{first}, things;
        while (!open.empty()) {
            const Spot spot = open.back();
            open.pop_back();
            if (!map.Inside(spot) || seen[map.Index(spot)] || map.IsWall(spot))
                continue;
            seen[map.Index(spot)] = true;
            const CellKind kind = map.Thing(spot).kind;
            if (kind == CellKind::Object || kind == CellKind::Enemy || kind == CellKind::Boss)
                things.push_back(spot);
            for (const int direction : {0, 2, 4, 6})
                open.push_back(Step(spot, direction));
        }
        if (things.empty())
            return;
        std::string text = map.Thing(things.front()).name;
        if (things.size() > 1)
            text += " and " + std::to_string(things.size() - 1) + " more";
        tell(At(map, things.front()), text + " in a place without a way to it");
    });
}

/// A lift works from its east or west side.
bool IsWayOut(const MapView& map, Spot spot) {
    for (const int direction : {0, 4})
        if (const Spot side = Step(spot, direction);
            map.Inside(side) && map.Cell(0, side) == kLiftWall)
            return true;
    const CellValue& thing = map.Thing(spot);
    for (const char* end :
         {"exit", "schabbs", "hitler", "gift", "fat-face", "angel-of-death", "spear-of-destiny"})
        if (thing.name == end)
            return true;
    return false;
}

void NoExit(const MapView& map, const TellPlace& tell) {
    if (map.ThingsOf(CellKind::Start).empty())
        return;
    const std::vector<bool> reached = Reached(map);
    bool found = false;
    map.EachCell(
        [&](Spot spot) { found = found || (reached[map.Index(spot)] && IsWayOut(map, spot)); });
    if (!found)
        tell({}, "neither a lift nor another way out can be reached");
}

/// Everything that moves in the hardest grade, the player and dead guards included.
int Actors(const MapView& map) {
    int actors = 1;
    map.EachCell([&](Spot spot) {
        const CellValue& thing = map.Thing(spot);
        actors += thing.kind == CellKind::Enemy || thing.kind == CellKind::Boss ||
                  thing.name == "dead-guard";
    });
    return actors;
}

int Objects(const MapView& map) {
    int objects = 0;
    map.EachCell([&](Spot spot) {
        const CellValue& thing = map.Thing(spot);
        objects += thing.kind == CellKind::Object && thing.name != "dead-guard";
    });
    return objects;
}

void TooMany(const MapView& map, const TellPlace& tell) {
    if (const int actors = Actors(map); actors > kMostActors)
        tell({}, std::to_string(actors) + " actors; the game has room for 150");
    if (const int objects = Objects(map); objects > kMostObjects)
        tell({}, std::to_string(objects) + " objects; the game has room for 400");
}

void NearlyTooMany(const MapView& map, const TellPlace& tell) {
    if (const int actors = Actors(map); actors >= kActorsNear && actors <= kMostActors)
        tell({}, std::to_string(actors) + " actors of at most 150");
    if (const int objects = Objects(map); objects >= kObjectsNear && objects <= kMostObjects)
        tell({}, std::to_string(objects) + " objects of at most 400");
}

constexpr MapRule kRules[] = {
    {{"not-one-start", Severity::Error, "the game begins at the last one, or nowhere"},
     true,
     NotOneStart},
    {{"no-exit", Severity::Warning, "the level cannot be won"}, false, NoExit},
    {{"pushwall-stuck", Severity::Warning, "it counts as a secret, and nobody can find it"},
     false,
     StuckPushwall},
    {{"pushwall-waits", Severity::Note, "it cannot move before the one beside it has"},
     false,
     WaitingPushwall},
    {{"patrol-into-wall", Severity::Warning, "it stops there, since no mark turns it"},
     false,
     PatrolIntoWall},
    {{"patrol-ends", Severity::Note, "it stops where its marks lead it into a wall"},
     false,
     PatrolEnds},
    {{"turn-into-wall", Severity::Warning, "who turns there stops"}, false, TurnIntoWall},
    {{"thing-in-wall", Severity::Warning, "nobody gets at it"}, false, ThingInWall},
    {{"unreachable", Severity::Warning, "100% cannot be had"}, false, Unreachable},
    {{"too-many-things", Severity::Error, "the game stops with an error"}, false, TooMany},
    {{"nearly-too-many-things", Severity::Note, "hardly any can be added"}, false, NearlyTooMany},
};

}  // namespace

std::span<const MapRule> ThingRules() {
    return kRules;
}

}  // namespace tessaro::cli
