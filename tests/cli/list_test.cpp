// What list says: the shape of its JSON, and checksums of bytes known by hand.
#include <map>
#include <set>

#include "cli/command.h"

namespace tessaro::test {

namespace {

std::map<std::string, int> CountKinds(const Json& list) {
    std::map<std::string, int> counts;
    for (const Json& item : list)
        ++counts[item.at("kind")];
    return counts;
}

TEST(List, EveryItemHasTheKeysOfItsKind) {
    const SampleGame game;
    const std::map<std::string, std::set<std::string>> keys = {
        {"map", {"name", "width", "height", "planes"}},
        {"wall", {"width", "height"}},
        {"sprite", {"width", "height"}},
        {"sound", {}},
        {"chunk", {"type"}},
        {"picture", {"width", "height"}},
        {"font", {"height"}},
        {"audio", {"name"}},
        {"palette", {}},
    };
    const Json list = List(game.Path());
    ASSERT_TRUE(list.is_array());
    EXPECT_EQ(CountKinds(list).size(), keys.size());
    for (const Json& item : list) {
        SCOPED_TRACE(item.dump());
        std::set<std::string> expected = keys.at(item.at("kind"));
        expected.insert({"kind", "number"});
        if (item.contains("empty")) {
            EXPECT_TRUE(item.at("empty").get<bool>());
            expected.insert("empty");
            expected.erase("width");
            expected.erase("height");
        } else {
            expected.insert({"bytes", "crc32"});
            EXPECT_EQ(item.at("crc32").get<std::string>().find_first_not_of("0123456789abcdef"),
                      std::string::npos);
            EXPECT_EQ(item.at("crc32").get<std::string>().size(), 8U);
            if (item.contains("width")) {
                const int planes = item.contains("planes") ? 2 * int(item.at("planes").size()) : 1;
                EXPECT_EQ(item.at("bytes"),
                          item.at("width").get<int>() * item.at("height").get<int>() * planes);
            }
        }
        if (item.contains("notes"))
            expected.insert("notes");
        std::set<std::string> found;
        for (const auto& [key, value] : item.items())
            found.insert(key);
        EXPECT_EQ(found, expected);
    }
    // A kind asked for alone is the same as among all.
    const Json maps = List(game.Path(), {"map"});
    EXPECT_EQ(maps, Json(Json::array_t(list.begin(), list.begin() + int(maps.size()))));
}

TEST(List, GamesWith16ColoursHaveNoPageFile) {
    const auto counts = CountKinds(List(SampleGame(true).Path()));
    for (const char* kind : {"map", "chunk", "picture", "font", "audio"})
        EXPECT_TRUE(counts.contains(kind)) << kind;
    for (const char* kind : {"wall", "sprite", "sound"})
        EXPECT_FALSE(counts.contains(kind)) << kind;
}

// The checksum of "123456789" is the usual check value of this CRC, CBF43926.
TEST(List, ChecksumsAreThoseOfTheCanonicalBytes) {
    const SampleGame game;
    const TempFolder files;
    const std::string digits = files.Write("digits", Ascii("123456789"));
    ASSERT_EQ(Tessaro({"import", game.Path(), "--audio", "0", digits}).exitCode, 0);
    const Json audio = ItemOf(game.Path(), "audio", 0);
    EXPECT_EQ(audio.at("bytes"), 9);
    EXPECT_EQ(audio.at("crc32"), "cbf43926");

    // A row of 16 cells: the first four spell "12345678", low byte first, the others are 0.
    ASSERT_EQ(Tessaro({"map", "resize", game.Path(), "0", "16", "1"}).exitCode, 0);
    const int cells[] = {0x3231, 0x3433, 0x3635, 0x3837};
    for (int x = 0; x < 4; ++x)
        ASSERT_EQ(Tessaro({"map", "set", game.Path(), "0", "1", std::to_string(x), "0",
                           std::to_string(cells[x])})
                      .exitCode,
                  0);
    const Json map = ItemOf(game.Path(), "map", 0);
    EXPECT_EQ(map.at("width"), 16);
    EXPECT_EQ(map.at("height"), 1);
    ASSERT_EQ(map.at("planes").size(), 3U);
    EXPECT_EQ(map.at("planes").at(1), "a4e580a5");
    EXPECT_EQ(map.at("bytes"), 96);
}

TEST(List, NamesAreCutAndHarmless) {
    const SampleGame game;
    ASSERT_EQ(Tessaro({"map", "rename", game.Path(), "0", "  \x1B[2Jx\"y "}).exitCode, 0);
    EXPECT_EQ(ItemOf(game.Path(), "map", 0).at("name"), "\x1B[2Jx\"y");
    const Ran table = Tessaro({"list", game.Path(), "--kind", "map"});
    EXPECT_EQ(table.out.find('\x1B'), std::string::npos);
    EXPECT_NE(table.out.find("[2Jx\"y"), std::string::npos);
}

TEST(List, WhatCannotBeReadDoesNotHideTheRest) {
    const SampleGame game;
    std::string mapFile;
    for (const std::string& name : ListFiles(game.Path(), "GAMEMAPS.*"))
        mapFile = game.Folder().File(name);
    WriteWholeFile(mapFile, Ascii("TED5v1.0"));
    const Ran ran = Tessaro({"list", game.Path(), "--json"});
    EXPECT_EQ(ran.exitCode, 1);
    EXPECT_NE(ran.err.find("cannot open the maps"), std::string::npos);
    const auto counts = CountKinds(Json::parse(ran.out, nullptr, false));
    EXPECT_FALSE(counts.contains("map"));
    EXPECT_GT(counts.at("wall"), 0);
}

TEST(List, AFailureDoesNotChangeThePalette) {
    const SampleGame game;
    const TempFolder spear;  // the same game under an extension that has a palette of its own
    for (const std::string& name : ListFiles(game.Path(), "*"))
        CopyFileTo(game.Folder().File(name), spear.File(name.substr(0, name.find('.')) + ".SOD"));
    const Json palette = ItemOf(spear.Path(), "palette", 0);
    EXPECT_NE(palette, ItemOf(game.Path(), "palette", 0));
    spear.Write("GAMEMAPS.SOD", Ascii("TED5v1.0"));
    const Ran ran = Tessaro({"list", spear.Path(), "--json", "-k", "map", "-k", "palette"});
    EXPECT_EQ(ran.exitCode, 1);
    EXPECT_EQ(Json::parse(ran.out, nullptr, false).at(0), palette);
}

TEST(List, RealGameHasItsKnownCounts) {
    TESSARO_NEEDS_GAME_DATA();
    const Json list = List(*GameFolder());
    const std::map<std::string, int> expected = {{"map", 10},   {"wall", 106},  {"sprite", 436},
                                                 {"sound", 46}, {"chunk", 156}, {"picture", 144},
                                                 {"font", 2},   {"audio", 288}, {"palette", 1}};
    EXPECT_EQ(CountKinds(list), expected);
    std::map<std::string, int> filled, types;
    for (const Json& item : list) {
        filled[item.at("kind")] += !item.contains("empty");
        if (item.contains("type"))
            ++types[item.at("type")];
    }
    EXPECT_EQ(filled["wall"], 64);
    EXPECT_EQ(filled["sprite"], 226);
    EXPECT_EQ(filled["sound"], 20);
    EXPECT_EQ(types["vgPicture"], 144);
    EXPECT_EQ(types["vgDemo"], 4);
    EXPECT_EQ(types["vgEndScreen"], 2);
    EXPECT_EQ(types["vgEndArt"], 2);
    EXPECT_EQ(list.at(0).at("name"), "Wolf1 Map1");
    // From the stored bytes, by a decoder of its own kind: one item of each.
    const std::map<std::pair<std::string, int>, const char*> sums = {
        {{"map", 0}, "b3aec112"},   {{"wall", 98}, "77b69537"},  {{"sprite", 50}, "27755508"},
        {{"sound", 0}, "517aac41"}, {{"chunk", 99}, "359d6b7a"}, {{"picture", 99}, "443ea5dd"},
        {{"font", 1}, "36ce65a9"},  {{"audio", 0}, "b1db4b9f"}};
    std::size_t found = 0;
    for (const Json& item : list)
        if (const auto sum = sums.find({item.at("kind"), item.at("number")}); sum != sums.end()) {
            ++found;
            EXPECT_EQ(item.at("crc32"), sum->second) << item.dump();
        }
    EXPECT_EQ(found, sums.size());
    EXPECT_EQ(list.at(0).at("planes"), Json({"b8d06305", "52ef76a0", "d8f49994"}));
    const Ran info = Tessaro({"info", *GameFolder()});
    EXPECT_EQ(info.exitCode, 0);
    EXPECT_NE(info.out.find("4, of levels 0 2 4 6"), std::string::npos);
}

}  // namespace

}  // namespace tessaro::test
