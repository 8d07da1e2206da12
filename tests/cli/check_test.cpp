// Every rule of the check, on a map that has what it looks for and on one that just has not.
#include <algorithm>

#include "check/rules.h"
#include "cli/command.h"

namespace tessaro::test {

namespace {

using namespace cli;

/// A block of cells that is set to one value.
struct Edit {
    int plane, x, y, value, width = 1, height = 1;
};
using Edits = std::vector<Edit>;

/// Two rooms in rock: area 1 with the start, a door, area 2 with a lift in its east wall. Nothing
/// is wrong with it.
MapView Sound(const Edits& edits = {}) {
    MapView map;
    map.width = map.height = 64;
    map.planes.assign(3, std::vector<std::int32_t>(64 * 64));
    const Edits rooms = {{0, 0, 0, 1, 64, 64},   {0, 10, 10, 108, 30, 20}, {0, 40, 12, 90},
                         {0, 41, 10, 109, 5, 5}, {0, 46, 12, 21},          {1, 12, 12, 20}};
    for (const Edits* list : {&rooms, &edits})
        for (const Edit& edit : *list)
            for (int i = 0; i < edit.width * edit.height; ++i)
                map.planes[std::size_t(edit.plane)]
                          [map.Index({edit.x + i % edit.width, edit.y + i / edit.width})] =
                    edit.value;
    return map;
}

std::vector<std::string> RulesOf(const GameView& game) {
    std::vector<std::string> rules;
    for (const cli::Finding& finding : Check(game))
        rules.push_back(finding.rule.id);
    return rules;
}

/// The sound map with walls, sprites and no unused picture.
GameView Game(const Edits& edits = {}, CellSet set = CellSet::Wolf) {
    GameView game;
    game.set = set;
    game.maps = {Sound(edits)};
    game.maps[0].set = set;
    game.hasPages = false;
    return game;
}

struct MapCase {
    const char* rule;
    Edits has, hasNot;
    int findings = 1;
    CellSet set = CellSet::Wolf;
};

const MapCase kCheckCases[] = {
    {"map-edge-open", {{0, 0, 10, 108, 10}}, {{0, 1, 10, 108, 9}}},
    {"meaningless-value", {{1, 15, 15, 72, 2}}, {{1, 15, 15, 70, 2}}},
    {"meaningless-value", {{1, 15, 15, 214}}, {{1, 15, 15, 72}}, 1, CellSet::Spear},
    {"meaningless-value", {{2, 15, 15, 35}}, {{2, 15, 15, 36}}, 1, CellSet::Catacomb},
    {"door-without-walls", {{0, 40, 11, 108}}, {{0, 40, 11, 90}}},
    {"door-beside-no-area", {{0, 41, 12, 2}}, {{0, 41, 12, 106}}},
    {"ambush-without-area", {{0, 5, 5, 106}}, {{0, 9, 11, 106}}},
    {"areas-touch", {{0, 40, 14, 109}}, {{0, 40, 14, 106}}},
    {"door-without-key", {{0, 40, 12, 92}}, {{0, 40, 12, 92}, {1, 15, 15, 43}}},
    {"door-without-key", {{0, 40, 12, 94}, {1, 15, 15, 214}}, {{0, 40, 12, 92}, {1, 15, 15, 214}}},
    {"door-without-key", {{0, 40, 12, 96}, {1, 15, 15, 43, 2}}, {{0, 40, 12, 100}}},
    {"too-many-doors", {{0, 10, 20, 90, 16, 4}}, {{0, 10, 20, 90, 9, 7}}},
    {"nearly-too-many-doors", {{0, 10, 20, 90, 10, 6}}, {{0, 10, 20, 90, 59}}},
    {"not-one-start", {{1, 12, 12, 0}}, {{1, 12, 12, 19}}},
    {"not-one-start", {{1, 13, 12, 22}}, {{1, 13, 12, 23}}},
    {"not-one-start", {{2, 12, 12, 1, 2}}, {{2, 12, 12, 1}}, 1, CellSet::Catacomb},
    {"no-exit", {{0, 46, 12, 1}}, {{0, 46, 12, 1}, {1, 15, 15, 99}}},
    {"no-exit", {{0, 46, 12, 1}, {0, 43, 9, 21}}, {{0, 46, 12, 1}, {0, 46, 10, 21}}},
    {"no-exit", {{0, 46, 12, 1}, {1, 15, 15, 214}}, {{0, 46, 12, 1}, {1, 15, 15, 196}}},
    {"pushwall-stuck", {{1, 20, 9, 98}}, {{1, 20, 9, 98}, {0, 20, 8, 108}}},
    {"pushwall-stuck", {{1, 20, 20, 98}}, {{1, 20, 20, 98}, {0, 20, 20, 5}}},
    {"pushwall-waits",
     {{1, 20, 8, 98, 1, 2}, {0, 19, 8, 108}, {0, 21, 8, 108}},
     {{1, 20, 9, 98}, {0, 20, 8, 108}}},
    {"patrol-into-wall", {{1, 20, 20, 112}}, {{1, 20, 20, 108}}},
    {"patrol-into-wall", {{1, 30, 12, 112}, {0, 40, 12, 1}}, {{1, 30, 12, 112}, {1, 43, 12, 94}}},
    {"patrol-ends",
     {{1, 20, 20, 112, 2}, {1, 25, 20, 92}},
     {{1, 20, 20, 112}, {1, 25, 20, 94}, {1, 15, 20, 90}}},
    {"turn-into-wall", {{1, 39, 20, 90}}, {{1, 38, 20, 90}}},
    {"thing-in-wall", {{1, 40, 20, 23}, {1, 40, 12, 108}}, {{1, 40, 20, 98}, {1, 39, 20, 23}}, 2},
    {"unreachable", {{0, 20, 5, 108, 3}, {1, 21, 5, 52, 2}}, {{0, 20, 5, 108, 3}, {1, 21, 5, 98}}},
    {"unreachable",
     {{0, 40, 12, 92}, {1, 43, 12, 43}},  // the key behind its own door
     {{0, 40, 12, 92}, {1, 43, 12, 44}}},
    {"unreachable",
     {{0, 40, 12, 3}, {1, 43, 12, 23}},
     {{0, 40, 12, 3}, {1, 40, 12, 98}, {1, 43, 12, 23}}},
    {"too-many-things", {{1, 10, 18, 108, 15, 10}}, {{1, 10, 18, 108, 149}}},
    {"too-many-things", {{1, 10, 10, 23, 20, 20}, {1, 30, 20, 23}}, {{1, 10, 10, 23, 20, 20}}},
    {"nearly-too-many-things", {{1, 10, 18, 108, 142}}, {{1, 10, 18, 108, 141}}},
};

TEST(Check, RulesOfMaps) {
    EXPECT_EQ(RulesOf(Game()), std::vector<std::string>());
    for (const MapCase& row : kCheckCases) {
        SCOPED_TRACE(row.rule);
        for (const Edits* edits : {&row.has, &row.hasNot}) {
            const auto rules = RulesOf(Game(*edits, row.set));
            EXPECT_EQ(std::count(rules.begin(), rules.end(), row.rule),
                      edits == &row.has ? row.findings : 0)
                << "map " << &row - kCheckCases << testing::PrintToString(rules);
        }
    }
}

TEST(Check, RulesOfItems) {
    struct ItemCase {
        const char* rule;
        void (*has)(GameView&);
        void (*hasNot)(GameView&);
    };
    const ItemCase cases[] = {
        {"map-damaged", [](GameView& game) { game.maps[0].endsEarly = true; }, nullptr},
        {"map-size", [](GameView& game) { game.maps[0].height = 63; }, nullptr},
        {"unreadable",
         [](GameView& game) {
             game.unread = {{"sound", 3, "damaged"}};
         },
         nullptr},
        {"larger-than-a-page", [](GameView& game) { game.sprites[0].bytes = 4097; },
         [](GameView& game) { game.sprites[0].bytes = 4096; }},
        {"wall-without-picture", [](GameView& game) { game.walls[41].pixels.clear(); },
         [](GameView& game) { game.walls[42].pixels.clear(); }},
        {"wall-without-picture", [](GameView& game) { game.walls.resize(49); },
         [](GameView& game) { game.walls.resize(50); }},
        {"thing-without-sprite", [](GameView& game) { game.sprites[3].pixels.clear(); },
         [](GameView& game) { game.sprites[2].pixels.clear(); }},
        {"unused-wall", [](GameView& game) { game.walls[3].pixels = {1}; },
         [](GameView& game) { game.walls[49].pixels = {1}; }},
        {"identical-sprites", [](GameView& game) { game.sprites[3] = game.sprites[4]; },
         [](GameView& game) { game.sprites[5] = game.sprites[6] = {}; }},
        {"article-without-end",
         [](GameView& game) {
             game.articles = {{9, "^P text"}};
         },
         [](GameView& game) {
             game.articles = {{9, "^P text ^E"}};
         }},
        {"demo-without-level",
         [](GameView& game) {
             game.demoLevels = {0, 1};
         },
         [](GameView& game) {
             game.demoLevels = {0, 0};
         }},
    };
    for (const ItemCase& row : cases) {
        SCOPED_TRACE(row.rule);
        for (const auto change : {row.has, row.hasNot}) {
            GameView game = Game({{1, 15, 15, 24}});
            game.hasPages = true;
            game.walls.resize(42 + 8);  // pictures of the walls 1 to 21, then of the doors
            for (const auto used : std::initializer_list<std::size_t>{0, 1, 40, 41})
                game.walls[used].pixels = {1};
            for (std::uint8_t i = 0; i < 7; ++i)
                game.sprites.push_back({{i}, 10});
            if (change)
                change(game);
            const auto rules = RulesOf(game);
            EXPECT_EQ(std::count(rules.begin(), rules.end(), row.rule), change == row.has)
                << testing::PrintToString(rules);
        }
    }
}

TEST(Check, SaysWhereAndEndsWithTheSeverityAskedFor) {
    const SampleGame game;
    const Ran text = Tessaro({"check", game.Path()});
    EXPECT_EQ(text.exitCode, 1);
    EXPECT_NE(text.out.find("plane 1 (20,16): guard-stand-east-1 stands in a wall"),
              std::string::npos);
    const Json found = Json::parse(Tessaro({"check", game.Path(), "--json"}).out);
    const auto thing = std::find_if(found.begin(), found.end(), [](const Json& finding) {
        return finding.at("rule") == "thing-in-wall";
    });
    ASSERT_NE(thing, found.end());
    EXPECT_EQ(thing->at("file"), "GAMEMAPS.LKP");
    EXPECT_EQ(thing->at("number"), 1);
    EXPECT_EQ(thing->at("x"), 20);
    const SampleGame unknown(true);
    EXPECT_EQ(Tessaro({"check", unknown.Path(), "--severity", "note"}).exitCode, 0);
}

TEST(Check, CountsOfARealGame) {
    TESSARO_NEEDS_GAME_DATA();
    const Ran ran = Tessaro({"check", *GameFolder(), "--json"});
    EXPECT_EQ(ran.exitCode, 1);
    std::map<std::string, int> counts;
    for (const Json& finding : Json::parse(ran.out))
        ++counts[finding.at("rule")];
    const std::map<std::string, int> expected = {{"map-edge-open", 1},
                                                 {"pushwall-waits", 1},
                                                 {"patrol-ends", 3},
                                                 {"unused-wall", 14},
                                                 {"identical-sprites", 2}};
    EXPECT_EQ(counts, expected);
    EXPECT_EQ(Tessaro({"check", *GameFolder(), "--severity", "error"}).exitCode, 0);
}

}  // namespace

}  // namespace tessaro::test
