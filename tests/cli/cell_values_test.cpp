// What the cells of a map mean.
#include "cells/cell_values.h"

#include "drawing/cell_pictures.h"
#include "support/support.h"

namespace tessaro::test {

namespace {

using namespace cli;

struct CellCase {
    CellSet set;
    int plane, value;
    CellKind kind;
    const char* name;
    int direction = -1, sprite = -1;
};

constexpr CellCase kCases[] = {
    {CellSet::Wolf, 0, 0, CellKind::Unknown, ""},
    {CellSet::Wolf, 0, 21, CellKind::Wall, "elevator"},
    {CellSet::Wolf, 0, 89, CellKind::Wall, "wall-89"},
    {CellSet::Wolf, 0, 90, CellKind::Door, "door-normal-ns"},
    {CellSet::Wolf, 0, 95, CellKind::Door, "door-silver-ew"},
    {CellSet::Spear, 0, 100, CellKind::Door, "door-elevator-ns"},
    {CellSet::Wolf, 0, 105, CellKind::Wall, "wall-105"},
    {CellSet::Wolf, 0, 106, CellKind::Floor, "ambush"},
    {CellSet::Wolf, 0, 143, CellKind::Floor, "area-36"},
    {CellSet::Wolf, 0, 144, CellKind::Unknown, ""},
    {CellSet::Wolf, 1, 0, CellKind::Nothing, ""},
    {CellSet::Wolf, 1, 19, CellKind::Start, "start-north", 2},
    {CellSet::Wolf, 1, 22, CellKind::Start, "start-west", 4},
    {CellSet::Wolf, 1, 23, CellKind::Object, "puddle", -1, 2},
    {CellSet::Wolf, 1, 70, CellKind::Object, "vines", -1, 49},
    {CellSet::Wolf, 1, 71, CellKind::Unknown, ""},
    {CellSet::Spear, 1, 71, CellKind::Object, "brown-column", -1, 50},
    {CellSet::Spear, 1, 45, CellKind::Object, "cage-with-skulls", -1, 24},
    {CellSet::Wolf, 1, 93, CellKind::Turn, "turn-north-west", 3},
    {CellSet::Wolf, 1, 106, CellKind::Unknown, ""},
    {CellSet::Spear, 1, 106, CellKind::Boss, "spectre", -1, 377},
    {CellSet::Wolf, 1, 114, CellKind::Enemy, "guard-patrol-west-1", 4, 50},
    {CellSet::Spear, 1, 114, CellKind::Enemy, "guard-patrol-west-1", 4, 54},
    {CellSet::Wolf, 1, 124, CellKind::Object, "dead-guard", -1, 95},
    {CellSet::Wolf, 1, 187, CellKind::Enemy, "guard-patrol-south-3", 6, 50},
    {CellSet::Wolf, 1, 214, CellKind::Boss, "hans", -1, 296},
    {CellSet::Spear, 1, 214, CellKind::Unknown, ""},
    {CellSet::Wolf, 1, 253, CellKind::Enemy, "mutant-stand-north-3", 2, 187},
    {CellSet::Wolf, 2, 0, CellKind::Nothing, ""},
    {CellSet::Wolf, 1, 65535, CellKind::Unknown, ""},
    {CellSet::Catacomb, 2, 2, CellKind::Start, "start-east", 0},
    {CellSet::Catacomb, 2, 35, CellKind::Unknown, ""},
    {CellSet::Catacomb, 2, 45, CellKind::Enemy, "mage-3"},
    {CellSet::Catacomb, 1, 45, CellKind::Unknown, ""},
    {CellSet::Unknown, 1, 45, CellKind::Unknown, ""},
};

TEST(CellValues, HaveTheirMeaningInEachGame) {
    for (const CellCase& row : kCases) {
        SCOPED_TRACE(std::to_string(row.plane) + " " + std::to_string(row.value));
        const CellValue& cell = ValueOf(row.set, row.plane, row.value);
        EXPECT_EQ(cell.kind, row.kind);
        EXPECT_EQ(cell.name, row.name);
        EXPECT_EQ(cell.direction, row.direction);
        EXPECT_EQ(cell.sprite, row.sprite);
    }
}

// Two pixels: the first transparent, the second in bright red (bits blue, green, red, bright).
TEST(CellValues, MaskedTilesAreFivePlanes) {
    ByteArray chunk(160);
    chunk[0] = 0x80;
    chunk[3 * 32] = chunk[4 * 32] = 0x40;
    const IndexedImage tile = MaskedTile(chunk, {});
    EXPECT_EQ(ByteArray(tile.pixels.begin(), tile.pixels.begin() + 3), Hex("00 0C 00"));
    EXPECT_EQ(ByteArray(tile.mask.begin(), tile.mask.begin() + 3), Hex("01 00 00"));
    EXPECT_EQ(tile.pixels.size(), 256U);
}

}  // namespace

}  // namespace tessaro::test
