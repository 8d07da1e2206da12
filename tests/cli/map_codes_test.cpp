// What the cells of a map mean, as the picture shows them.
#include "drawing/map_codes.h"

#include "support/support.h"

namespace tessaro::test {

namespace {

using namespace cli;

TEST(MapCodes, GroundAndThings) {
    EXPECT_EQ(GroundOf(1).ground, Ground::Wall);
    EXPECT_EQ(GroundOf(105).ground, Ground::Wall);
    EXPECT_EQ(GroundOf(106).ground, Ground::Floor);
    EXPECT_EQ(GroundOf(0).ground, Ground::Floor);
    EXPECT_TRUE(GroundOf(90).upright);
    EXPECT_FALSE(GroundOf(91).upright);
    const int locks[] = {0, 0, 1, 1, 2, 2, 0, 0, 0, 0, 3, 3};
    for (int door = 90; door <= 101; ++door) {
        EXPECT_EQ(GroundOf(door).ground, Ground::Door);
        EXPECT_EQ(GroundOf(door).lock, locks[door - 90]) << door;
    }
    struct ThingCase {
        int cell;
        Thing thing;
        int direction, sprite;
        Enemy enemy;
    };
    constexpr ThingCase kCases[] = {
        {0, Thing::Nothing, -1, -1, Enemy::Other},
        {19, Thing::Start, 2, -1, Enemy::Other},  // north
        {20, Thing::Start, 0, -1, Enemy::Other},  // east
        {21, Thing::Start, 6, -1, Enemy::Other},  // south
        {22, Thing::Start, 4, -1, Enemy::Other},  // west
        {23, Thing::Object, -1, 2, Enemy::Other},
        {74, Thing::Object, -1, 53, Enemy::Other},
        {75, Thing::Nothing, -1, -1, Enemy::Other},
        {93, Thing::Turn, 3, -1, Enemy::Other},
        {98, Thing::Secret, -1, -1, Enemy::Other},
        {99, Thing::Exit, -1, -1, Enemy::Other},
        {109, Thing::Enemy, 2, -1, Enemy::Guard},    // standing
        {114, Thing::Enemy, 4, -1, Enemy::Guard},    // on patrol
        {144, Thing::Enemy, 0, -1, Enemy::Guard},    // of the second grade
        {187, Thing::Enemy, 6, -1, Enemy::Guard},    // of the third
        {124, Thing::Object, -1, 95, Enemy::Other},  // a dead one
        {125, Thing::Enemy, -1, -1, Enemy::Other},
        {198, Thing::Enemy, 0, -1, Enemy::Soldier},
        {206, Thing::Enemy, 0, -1, Enemy::Dog},
        {234, Thing::Enemy, 0, -1, Enemy::Mutant},
        {214, Thing::Enemy, -1, -1, Enemy::Other},
    };
    for (const ThingCase& row : kCases) {
        const ThingCell thing = ThingOf(row.cell);
        SCOPED_TRACE(row.cell);
        EXPECT_EQ(thing.thing, row.thing);
        EXPECT_EQ(thing.direction, row.direction);
        EXPECT_EQ(thing.sprite, row.sprite);
        EXPECT_EQ(thing.enemy, row.enemy);
    }
}

}  // namespace

}  // namespace tessaro::test
