#include "drawing/map_codes.h"

namespace tessaro::cli {

namespace {

constexpr int kFirstDoor = 90, kLastDoor = 101, kFirstFloor = 106;
constexpr int kFirstStart = 19, kFirstObject = 23, kLastObject = 74, kFirstObjectSprite = 2;
constexpr int kFirstTurn = 90, kSecret = 98, kExit = 99, kFirstEnemy = 108, kDeadGuard = 124;
constexpr int kDeadGuardSprite = 95;

/// Standing and patrolling enemies face east, north, west, south, in this order; each group comes
/// again for the two harder grades, `step` higher.
struct EnemyGroup {
    int first, step;
    Enemy enemy;
};

constexpr EnemyGroup kGroups[] = {
    {108, 36, Enemy::Guard}, {116, 36, Enemy::Officer}, {126, 36, Enemy::Soldier},
    {134, 36, Enemy::Dog},   {216, 18, Enemy::Mutant},
};

}  // namespace

GroundCell GroundOf(std::int32_t cell) {
    if (cell >= kFirstDoor && cell <= kLastDoor) {
        const int kind = (cell - kFirstDoor) / 2;
        const int lock = kind == 1 ? 1 : kind == 2 ? 2 : kind == 5 ? 3 : 0;
        return {Ground::Door, cell % 2 == 0, lock};
    }
    return {cell > 0 && cell < kFirstFloor ? Ground::Wall : Ground::Floor};
}

ThingCell ThingOf(std::int32_t cell) {
    if (cell >= kFirstStart && cell < kFirstStart + 4)  // north, east, south, west
        return {Thing::Start, (2 - 2 * (cell - kFirstStart)) & 7};
    if (cell >= kFirstObject && cell <= kLastObject)
        return {Thing::Object, -1, kFirstObjectSprite + cell - kFirstObject};
    if (cell == kDeadGuard)
        return {Thing::Object, -1, kDeadGuardSprite};
    if (cell >= kFirstTurn && cell < kFirstTurn + 8)
        return {Thing::Turn, cell - kFirstTurn};
    if (cell == kSecret)
        return {Thing::Secret};
    if (cell == kExit)
        return {Thing::Exit};
    if (cell < kFirstEnemy)
        return {};
    for (const EnemyGroup& group : kGroups)
        for (int grade = 0; grade < 3; ++grade) {
            const int place = cell - group.first - grade * group.step;
            if (place >= 0 && place < 8)
                return {Thing::Enemy, place % 4 * 2, -1, group.enemy};
        }
    return {Thing::Enemy};
}

}  // namespace tessaro::cli
