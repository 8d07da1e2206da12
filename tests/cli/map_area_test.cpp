// Areas of maps: what changes, what does not, and that it is one save.
#include "cli/command.h"

namespace tessaro::test {

namespace {

/// The cells of one value on a plane of a map, as "x,y".
std::vector<std::string> Found(const std::string& game, const std::string& value, int map,
                               int plane) {
    const Ran ran = Tessaro({"map", "find", game, value, "--map", std::to_string(map), "--plane",
                             std::to_string(plane), "--json"});
    EXPECT_EQ(ran.exitCode, 0) << ran.err;
    std::vector<std::string> places;
    for (const Json& cell : Json::parse(ran.out, nullptr, false))
        places.push_back(cell.at("x").dump() + "," + cell.at("y").dump());
    return places;
}

using Places = std::vector<std::string>;

void Succeeds(const std::vector<std::string>& arguments) {
    const Ran ran = Tessaro(arguments);
    EXPECT_EQ(ran.exitCode, 0) << ran.err;
}

TEST(MapArea, FillsDrawsAndReplacesInOneSaveEach) {
    const SampleGame game;
    const std::string path = game.Path();
    Succeeds({"map", "fill", path, "0", "2", "5", "6", "3", "2", "40001"});
    EXPECT_EQ(Found(path, "40001", 0, 2), (Places{"5,6", "6,6", "7,6", "5,7", "6,7", "7,7"}));
    EXPECT_EQ(ListFiles(game.Folder().File("backup"), "GAMEMAPS.*").size(), 1U);
    // Two down, five across; the other way round the same cells.
    Succeeds({"map", "line", path, "0", "2", "10", "10", "15", "12", "40002"});
    const Places line = {"10,10", "11,10", "12,11", "13,11", "14,12", "15,12"};
    EXPECT_EQ(Found(path, "40002", 0, 2), line);
    Succeeds({"map", "line", path, "0", "2", "30", "30", "30", "30", "40002"});
    EXPECT_EQ(Found(path, "40002", 0, 2).size(), line.size() + 1);
    Succeeds({"map", "replace", path, "0", "2", "40002", "40003"});
    EXPECT_EQ(Found(path, "40002", 0, 2), Places{});
    EXPECT_EQ(Found(path, "40003", 0, 2).size(), line.size() + 1);
    Succeeds({"map", "fill", path, "0", "1", "0", "0", "1", "1", "guard-stand-east-1"});
    EXPECT_EQ(Found(path, "108", 0, 1).front(), "0,0");
    const std::size_t saves = ListFiles(game.Folder().File("backup"), "GAMEMAPS.*").size();
    const Ran nothing = Tessaro({"map", "replace", path, "all", "2", "40002", "1"});
    EXPECT_NE(nothing.out.find("nothing saved"), std::string::npos);
    EXPECT_EQ(ListFiles(game.Folder().File("backup"), "GAMEMAPS.*").size(), saves);
}

TEST(MapArea, CopiesFromMapToMapFromGameToGameAndFromAFile) {
    const SampleGame from, to;
    const TempFolder files;
    Succeeds({"map", "fill", from.Path(), "1", "2", "3", "4", "2", "1", "40001"});
    Succeeds({"map", "copy", to.Path(), "1", "2", "3", "4", "4", "0", "20", "30", "--from",
              from.Path()});
    EXPECT_EQ(Found(to.Path(), "40001", 0, 2), (Places{"21,31", "22,31"}));
    // Onto itself, one to the right: what was there before is what is copied.
    Succeeds(
        {"map", "copy", to.Path(), "0", "21", "31", "2", "1", "0", "22", "31", "--plane", "2"});
    EXPECT_EQ(Found(to.Path(), "40001", 0, 2), (Places{"21,31", "22,31", "23,31"}));
    Succeeds({"map", "resize", from.Path(), "1", "5", "6"});
    const std::string file = files.File("small.map");
    Succeeds({"map", "export", from.Path(), "1", file});
    Succeeds({"map", "paste", to.Path(), "1", "40", "50", file});
    EXPECT_EQ(Found(to.Path(), "40001", 1, 2), (Places{"43,54", "44,54"}));
    const Json before = List(to.Path(), {"map"});
    for (const std::vector<std::string>& wrong : std::vector<std::vector<std::string>>{
             {"map", "paste", to.Path(), "1", "60", "0", file},
             {"map", "copy", to.Path(), "0", "0", "0", "65", "1", "1", "0", "0"},
             {"map", "fill", to.Path(), "0", "3", "0", "0", "1", "1", "1"},
             {"map", "fill", to.Path(), "0", "0", "0", "0", "0", "1", "1"},
             {"map", "fill", to.Path(), "0", "0", "0", "0", "1", "1", "65536"},
             {"map", "find", to.Path(), "no-such-thing"}}) {
        const Ran ran = Tessaro(wrong);
        EXPECT_EQ(ran.exitCode, 1) << ran.out;
        EXPECT_NE(ran.err, "");
    }
    EXPECT_EQ(List(to.Path(), {"map"}), before);
}

TEST(MapArea, StatsCountEveryCellOnce) {
    const SampleGame game;
    Succeeds({"map", "fill", game.Path(), "0", "1", "1", "1", "3", "1", "guard-stand-east-1"});
    const Json stats = Json::parse(Tessaro({"map", "stats", game.Path(), "0", "--json"}).out).at(0);
    for (const Json& plane : stats.at("planes")) {
        int cells = 0;
        for (const Json& value : plane)
            cells += value.at("count").get<int>();
        EXPECT_EQ(cells, stats.at("width").get<int>() * stats.at("height").get<int>());
    }
    const auto guards = Found(game.Path(), "guard-stand-east-1", 0, 1).size();
    EXPECT_GE(guards, 3U);
    for (const Json& value : stats.at("planes").at(1))
        if (value.at("value") == 108) {
            EXPECT_EQ(value.at("name"), "guard-stand-east-1");
            EXPECT_EQ(value.at("count"), guards);
        }
}

}  // namespace

}  // namespace tessaro::test
