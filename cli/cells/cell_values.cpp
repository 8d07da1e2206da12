#include "cells/cell_values.h"

#include <array>
#include <vector>

namespace tessaro::cli {

namespace {

using Values = std::vector<CellValue>;

constexpr int kValues = 512, kFirstStart = 19, kFirstObject = 23, kFirstObjectSprite = 2,
              kFirstTurn = 90, kAreas = 37;

/// Standing and patrolling enemies face east, north, west, south, in this order; each group comes
/// again for the two harder grades, `step` higher.
struct EnemyGroup {
    int first, step;
    Breed breed;
    const char* name;
    int sprite;  ///< in Wolf; Spear has four objects more before them
};

constexpr EnemyGroup kGroups[] = {
    {108, 36, Breed::Guard, "guard", 50},    {116, 36, Breed::Officer, "officer", 238},
    {126, 36, Breed::Soldier, "ss", 138},    {134, 36, Breed::Dog, "dog", 99},
    {216, 18, Breed::Mutant, "mutant", 187},
};

struct Named {
    int value;
    const char* name;
    int sprite;
};

constexpr Named kWolfBosses[] = {
    {160, "fake-hitler", 321}, {178, "hitler", 334}, {179, "fat-face", 396}, {196, "schabbs", 307},
    {197, "gretel", 385},      {214, "hans", 296},   {215, "gift", 360},     {224, "blinky", 288},
    {225, "clyde", 292},       {226, "pinky", 290},  {227, "inky", 294},
};
constexpr Named kSpearBosses[] = {
    {106, "spectre", 377},     {107, "angel-of-death", 385}, {125, "trans", 326},
    {142, "uber-mutant", 349}, {143, "wilhelm", 337},        {161, "death-knight", 362},
};

/// From value 23 on.
constexpr const char* kObjects[] = {"puddle",
                                    "green-barrel",
                                    "table-with-chairs",
                                    "floor-lamp",
                                    "chandelier",
                                    "hanged-man",
                                    "dog-food",
                                    "red-pillar",
                                    "tree",
                                    "skeleton-flat",
                                    "sink",
                                    "potted-plant",
                                    "urn",
                                    "bare-table",
                                    "ceiling-light",
                                    "kitchen-stuff",
                                    "suit-of-armor",
                                    "hanging-cage",
                                    "skeleton-in-cage",
                                    "bones-1",
                                    "gold-key",
                                    "silver-key",
                                    "bunk-bed",
                                    "basket",
                                    "food",
                                    "medikit",
                                    "clip",
                                    "machine-gun",
                                    "gatling-gun",
                                    "cross",
                                    "chalice",
                                    "chest",
                                    "crown",
                                    "one-up",
                                    "gibs",
                                    "barrel",
                                    "well",
                                    "empty-well",
                                    "blood",
                                    "flag",
                                    "call-apogee",
                                    "bones-2",
                                    "bones-3",
                                    "bones-4",
                                    "pots",
                                    "stove",
                                    "spears",
                                    "vines"};

/// Where Spear differs, and what it adds.
constexpr Named kSpearObjects[] = {
    {33, "gibs-sink", 12},        {38, "gibs-blocking", 17},
    {45, "cage-with-skulls", 24}, {63, "red-ceiling-light", 42},
    {67, "gibs-cow", 46},         {68, "well-with-blood", 47},
    {69, "satan-statue", 48},     {71, "brown-column", 50},
    {72, "clip-box", 51},         {73, "truck", 52},
    {74, "spear-of-destiny", 53},
};

/// From value 1 on.
constexpr const char* kCatacombThings[] = {
    "start-north", "start-east", "start-south", "start-west", "bolt",     "nuke",     "potion",
    "red-key",     "yellow-key", "green-key",   "blue-key",   "scroll-1", "scroll-2", "scroll-3",
    "scroll-4",    "scroll-5",   "scroll-6",    "scroll-7",   "scroll-8", "goal",     "chest",
    "troll-1",     "orc-1",      "warp-0",      "bat-1",      "demon-1",  "mage-1",   "nemesis",
    "bounce-1",    "bounce-2",   "warp-1",      "warp-2",     "warp-3",   "warp-4",   nullptr,
    "troll-2",     "orc-2",      "bat-2",       "demon-2",    "mage-2",   "troll-3",  "orc-3",
    "bat-3",       "demon-3",    "mage-3"};

constexpr std::array kDirections = {"east", "north-east", "north", "north-west",
                                    "west", "south-west", "south", "south-east"};

CellValue& At(Values& values, int value) {
    return values[static_cast<std::size_t>(value)];
}

Values Grounds() {
    constexpr const char* kDoors[] = {"normal", "gold", "silver", "lock3", "lock4", "elevator"};
    Values values(kValues);
    for (int value = 1; value < kAmbush; ++value)
        At(values, value) = {CellKind::Wall,
                             value == kLiftWall ? "elevator" : "wall-" + std::to_string(value)};
    for (int value = kFirstDoor; value <= kLastDoor; ++value) {
        CellValue& door = At(values, value);
        door.kind = CellKind::Door;
        door.lock = (value - kFirstDoor) / 2;
        door.upright = value % 2 == 0;
        door.name = std::string("door-") + kDoors[door.lock] + (door.upright ? "-ns" : "-ew");
    }
    for (int area = 0; area < kAreas; ++area) {
        CellValue& floor = At(values, kFirstArea + area);
        floor.kind = CellKind::Floor;
        floor.area = area;
        floor.name = area == 0 ? "secret-exit" : "area-" + std::to_string(area);
    }
    At(values, kAmbush) = {CellKind::Floor, "ambush"};
    return values;
}

void AddStarts(Values& values, int first) {
    for (int i = 0; i < 4; ++i) {  // north, east, south, west
        CellValue& start = At(values, first + i);
        start.kind = CellKind::Start;
        start.direction = (2 - 2 * i) & 7;
        start.name = "start-" + std::string(DirectionName(start.direction));
    }
}

void AddEnemies(Values& values, const EnemyGroup& group, int spriteShift) {
    for (int grade = 0; grade < 3; ++grade)
        for (int place = 0; place < 8; ++place) {
            CellValue& enemy = At(values, group.first + grade * group.step + place);
            enemy.kind = CellKind::Enemy;
            enemy.sprite = group.sprite + spriteShift;
            enemy.direction = place % 4 * 2;
            enemy.breed = group.breed;
            enemy.patrols = place >= 4;
            enemy.skill = grade + 1;
            enemy.name = std::string(group.name) + (enemy.patrols ? "-patrol-" : "-stand-") +
                         std::string(DirectionName(enemy.direction)) + "-" +
                         std::to_string(enemy.skill);
        }
}

void AddNamed(Values& values, const Named& named, CellKind kind) {
    CellValue& value = At(values, named.value);
    value.kind = kind;
    value.name = named.name;
    value.sprite = named.sprite;
    if (kind == CellKind::Boss)
        value.skill = 1;
}

Values Things(bool spear) {
    constexpr int kSpearSprites = 4, kDeadGuardSprite = 95;
    const int shift = spear ? kSpearSprites : 0;
    Values values(kValues);
    At(values, 0).kind = CellKind::Nothing;
    AddStarts(values, kFirstStart);
    for (int i = 0; i < static_cast<int>(std::size(kObjects)); ++i)
        AddNamed(values, {kFirstObject + i, kObjects[i], kFirstObjectSprite + i}, CellKind::Object);
    if (spear)
        for (const Named& object : kSpearObjects)
            AddNamed(values, object, CellKind::Object);
    AddNamed(values, {kDeadGuard, "dead-guard", kDeadGuardSprite + shift}, CellKind::Object);
    for (int direction = 0; direction < 8; ++direction) {
        CellValue& turn = At(values, kFirstTurn + direction);
        turn.kind = CellKind::Turn;
        turn.direction = direction;
        turn.name = "turn-" + std::string(DirectionName(direction));
    }
    At(values, kPushwall) = {CellKind::Pushwall, "pushwall"};
    At(values, kExit) = {CellKind::Exit, "exit"};
    for (const EnemyGroup& group : kGroups)
        AddEnemies(values, group, shift);
    if (spear)
        for (const Named& boss : kSpearBosses)
            AddNamed(values, boss, CellKind::Boss);
    else
        for (const Named& boss : kWolfBosses)
            AddNamed(values, boss, CellKind::Boss);
    return values;
}

Values CatacombThings() {
    Values values(kValues);
    At(values, 0).kind = CellKind::Nothing;
    for (int i = 0; i < static_cast<int>(std::size(kCatacombThings)); ++i)
        if (kCatacombThings[i])
            At(values, 1 + i) = {CellKind::Thing, kCatacombThings[i]};
    AddStarts(values, 1);
    for (CellValue& value : values)
        for (const std::string_view enemy : {"troll", "orc", "bat", "demon", "mage", "nemesis"})
            if (value.name.starts_with(enemy)) {
                value.kind = enemy == "nemesis" ? CellKind::Boss : CellKind::Enemy;
                value.skill = enemy == "nemesis" ? 1 : value.name.back() - '0';
            }
    return values;
}

/// The values of one plane; nothing where they are not known.
const Values* PlaneOf(CellSet set, int plane) {
    static const Values grounds = Grounds(), wolf = Things(false), spear = Things(true),
                        catacomb = CatacombThings();
    if (plane == 0)
        return set == CellSet::Wolf || set == CellSet::Spear ? &grounds : nullptr;
    if (plane != ThingPlane(set))
        return nullptr;
    switch (set) {
        case CellSet::Wolf:
            return &wolf;
        case CellSet::Spear:
            return &spear;
        case CellSet::Catacomb:
            return &catacomb;
        case CellSet::Unknown:
            break;
    }
    return nullptr;
}

}  // namespace

/// Sets of unknown extensions with 256 colours and pages are taken for those of Wolf, as nearly all
/// that people make are.
CellSet CellSetOf(const clsVersion& version) {
    if (const Variant* variant = VariantOf(version.Extension()))
        return variant->cells;
    return version.EGAGraphics() ? CellSet::Unknown : CellSet::Wolf;
}

const CellValue& ValueOf(CellSet set, int plane, std::int32_t value) {
    static const CellValue unknown{}, nothing{CellKind::Nothing};
    const Values* values = PlaneOf(set, plane);
    if (!values)
        return value == 0 && plane > 0 ? nothing : unknown;
    return value >= 0 && value < kValues ? (*values)[static_cast<std::size_t>(value)] : unknown;
}

int ThingPlane(CellSet set) {
    return set == CellSet::Catacomb ? 2 : 1;
}

std::string_view KindName(CellKind kind) {
    constexpr std::array kNames = {"nothing",  "wall", "door",  "floor", "start", "object", "turn",
                                   "pushwall", "exit", "enemy", "boss",  "thing", "unknown"};
    return kNames[static_cast<std::size_t>(kind)];
}

std::string_view DirectionName(int direction) {
    return direction < 0 ? "" : kDirections[static_cast<std::size_t>(direction)];
}

}  // namespace tessaro::cli
