#include "check/map_view.h"

namespace tessaro::cli {

Spot Step(Spot from, int direction) {
    constexpr int kAcross[] = {1, 1, 0, -1, -1, -1, 0, 1};
    constexpr int kDown[] = {0, -1, -1, -1, 0, 1, 1, 1};
    return {from.x + kAcross[direction], from.y + kDown[direction]};
}

std::int32_t MapView::Cell(int plane, Spot spot) const {
    const auto index = static_cast<std::size_t>(plane);
    return index < planes.size() ? planes[index][Index(spot)] : 0;
}

const CellValue& MapView::Ground(Spot spot) const {
    return ValueOf(set, 0, Inside(spot) ? Cell(0, spot) : 1);
}

const CellValue& MapView::Thing(Spot spot) const {
    const int plane = ThingPlane(set);
    return ValueOf(set, plane, Inside(spot) ? Cell(plane, spot) : 0);
}

int MapView::Area(Spot spot) const {
    if (!Inside(spot) || Cell(0, spot) != kAmbush)
        return Ground(spot).area;
    for (const int direction : {0, 2, 4, 6})
        if (const int area = Ground(Step(spot, direction)).area; area >= 0)
            return area;
    return -1;
}

std::vector<Spot> MapView::ThingsOf(CellKind kind) const {
    std::vector<Spot> spots;
    EachCell([&](Spot spot) {
        if (Thing(spot).kind == kind)
            spots.push_back(spot);
    });
    return spots;
}

int KeyOf(const CellValue& thing, std::int32_t value) {
    if (thing.kind == CellKind::Object)
        return value == kGoldKey ? 1 : value == kSilverKey ? 2 : 0;
    if (thing.kind != CellKind::Boss)
        return 0;
    for (const char* holder : {"hans", "gretel", "trans", "uber-mutant", "wilhelm", "death-knight"})
        if (thing.name == holder)
            return 1;
    return 0;
}

namespace {

constexpr std::size_t kLocks = 6;
using Keys = std::array<bool, kLocks>;

/// Every cell that can be walked to with these keys.
std::vector<bool> Flood(const MapView& map, const Keys& keys) {
    std::vector<bool> reached(map.planes.front().size());
    std::vector<Spot> open = map.ThingsOf(CellKind::Start);
    while (!open.empty()) {
        const Spot spot = open.back();
        open.pop_back();
        const CellValue& ground = map.Ground(spot);
        const bool passable = map.IsOpen(spot) || map.Thing(spot).kind == CellKind::Pushwall;
        if (!map.Inside(spot) || reached[map.Index(spot)] || !passable ||
            !keys[static_cast<std::size_t>(ground.lock)])
            continue;
        reached[map.Index(spot)] = true;
        for (const int direction : {0, 2, 4, 6})
            open.push_back(Step(spot, direction));
    }
    return reached;
}

}  // namespace

std::vector<bool> Reached(const MapView& map) {
    Keys onMap{}, keys{true, true, true, true, true, true};
    const auto collect = [&](Keys& into, const std::vector<bool>* where) {
        map.EachCell([&](Spot spot) {
            if (!where || (*where)[map.Index(spot)])
                if (const int key = KeyOf(map.Thing(spot), map.Cell(ThingPlane(map.set), spot)))
                    into[static_cast<std::size_t>(key)] = true;
        });
    };
    collect(onMap, nullptr);
    for (const int key : {1, 2})
        keys[static_cast<std::size_t>(key)] = !onMap[static_cast<std::size_t>(key)];
    for (;;) {
        std::vector<bool> reached = Flood(map, keys);
        Keys found = keys;
        collect(found, &reached);
        if (found == keys)
            return reached;
        keys = found;
    }
}

}  // namespace tessaro::cli
