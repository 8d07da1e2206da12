// Which game it is, what changed in it, and names in the place of numbers.
#include <filesystem>

#include "cli/command.h"
#include "known/digests.h"
#include "known/known_game.h"

namespace tessaro::test {

namespace {

namespace fs = std::filesystem;

TEST(Known, DigestsAreTheUsualOnes) {
    EXPECT_EQ(cli::Crc32Of(Ascii("123456789")), "cbf43926");
    EXPECT_EQ(cli::Md5Of({}), "d41d8cd98f00b204e9800998ecf8427e");
    EXPECT_EQ(cli::Md5Of(Ascii("message digest")), "f96b697d7cb7938d525a2f31aaf161d0");
    EXPECT_EQ(cli::Sha1Of(Ascii("abc")), "a9993e364706816aba3e25717850c26c9cd0d89d");
    // Two blocks: the length has no room behind the text.
    const std::string letters = "abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq";
    EXPECT_EQ(cli::Sha1Of(Ascii(letters)), "84983e441c3bd26ebaae4aa1f95129e5e54670f1");
    EXPECT_EQ(cli::Md5Of(Ascii(letters)), "8215ef0796a20bcaaae116d3876c664a");
}

TEST(Known, EveryInstalledFileIsReadWhole) {
    int games = 0;
    for (const auto& entry : fs::directory_iterator(TESSARO_SOURCE "/data/games")) {
        const cli::KnownGame game = cli::ReadKnownGame(entry.path().string());
        EXPECT_FALSE(game.title.empty() || game.extensions.empty() || game.versions.empty())
            << entry.path();
        ++games;
    }
    EXPECT_GT(games, 20);
}

/// A user's own file: names of the sample game, and its version as it is made.
class OwnNames : public testing::Test {
protected:
    OwnNames() {
        setenv("XDG_DATA_HOME", data_.Path().c_str(), 1);
        std::string text =
            "tessaro game\t1\n# mine\ntitle\tLantern Keep\nextension\tLKP\nversion\t1\n";
        for (const std::string& name : ListFiles(game_.Path(), "*")) {
            const ByteArray bytes = game_.Folder().Read(name);
            text += "file\t" + name + "\t" + std::to_string(bytes.size()) +
                    "\tsha1:" + cli::Sha1Of(bytes) + "\n";
        }
        text +=
            "names\nwall\t2\tMossy_Stone\tstone with moss\nsound\t0\tTWIN\nsound\t1\tTWIN\n"
            "names\t9999\nwall\t2\tof another set\npicture\t5\tof another set\n";
        data_.MakeFolder("tessaro");
        data_.MakeFolder("tessaro/games");
        data_.Write("tessaro/games/lkp.game", Ascii(text));
    }
    ~OwnNames() override { unsetenv("XDG_DATA_HOME"); }

    Json Info(const std::vector<std::string>& more = {}) const {
        std::vector<std::string> arguments = {"info", game_.Path(), "--json"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const Ran ran = Tessaro(arguments);
        EXPECT_EQ(ran.exitCode, 0) << ran.err;
        return Json::parse(ran.out, nullptr, false);
    }

    SampleGame game_;
    TempFolder data_;
};

TEST_F(OwnNames, AGameIsOriginalUntilItIsChanged) {
    EXPECT_EQ(Info().at("state"), "original");
    EXPECT_EQ(Info().at("game"), "Lantern Keep, version 1");
    const SampleGame original;
    EXPECT_EQ(Info({"--original", original.Path()}).at("changed_items"), Json::array());
    ASSERT_EQ(Tessaro({"map", "set", game_.Path(), "1", "1", "1", "1", "77"}).exitCode, 0);
    const Json changed = Info({"--original", original.Path()});
    EXPECT_EQ(changed.at("state"), "modified");
    EXPECT_EQ(changed.at("changed_items"), Json::parse(R"([{"kind":"map","number":1}])"));
    for (const Json& file : changed.at("files"))
        EXPECT_EQ(file.at("original"),
                  file.at("name") != "GAMEMAPS.LKP" && file.at("name") != "MAPHEAD.LKP")
            << file;
}

TEST_F(OwnNames, NamesAreShownAndStandForNumbers) {
    const Json wall = ItemOf(game_.Path(), "wall", 2);
    EXPECT_EQ(wall.at("label"), "Mossy_Stone");
    EXPECT_EQ(wall.at("meaning"), "stone with moss");
    EXPECT_FALSE(ItemOf(game_.Path(), "picture", 5).contains("label")) << "names of another set";
    const TempFolder out;
    ASSERT_EQ(Tessaro({"extract", game_.Path(), out.Path(), "-k", "wall"}).exitCode, 0);
    ASSERT_TRUE(out.Has("wall/wall-002-Mossy_Stone.png"));
    const std::string first = out.File("wall/wall-000.png");
    const Ran ran = Tessaro({"import", game_.Path(), "--wall", "mossy stone", first});
    ASSERT_EQ(ran.exitCode, 0) << ran.err;
    EXPECT_EQ(ItemOf(game_.Path(), "wall", 2).at("crc32"),
              ItemOf(game_.Path(), "wall", 0).at("crc32"));
    const std::string name = ItemOf(game_.Path(), "map", 1).at("name");
    EXPECT_EQ(Tessaro({"render", game_.Path(), name, out.File("map.png")}).exitCode, 0);
    const Ran several = Tessaro({"import", game_.Path(), "--sound", "twin", first});
    EXPECT_EQ(several.exitCode, 1);
    EXPECT_NE(several.err.find("sound 0, 1"), std::string::npos) << several.err;
    const Ran none = Tessaro({"import", game_.Path(), "--wall", "attic", first});
    EXPECT_NE(none.err.find("no wall called"), std::string::npos) << none.err;
}

TEST(Known, RealGameIsKnownByItsVersionAndNames) {
    TESSARO_NEEDS_GAME_DATA();
    const TempFolder copy;
    for (const auto& entry : fs::directory_iterator(*GameFolder())) {
        const std::string file = copy.File(entry.path().filename().string());
        fs::copy(entry.path(), file);
        fs::permissions(file, fs::perms::owner_write, fs::perm_options::add);
    }
    const auto info = [&] { return Json::parse(Tessaro({"info", copy.Path(), "--json"}).out); };
    EXPECT_EQ(info().at("game"), "Wolfenstein 3D, shareware, version 1.4");
    EXPECT_EQ(info().at("state"), "original");
    EXPECT_EQ(ItemOf(copy.Path(), "sound", 0).at("label"), "HALTSND");
    EXPECT_EQ(ItemOf(copy.Path(), "picture", 3).at("label"), "H_BJPIC");
    ASSERT_EQ(Tessaro({"map", "set", copy.Path(), "WOLF1_MAP3_MAP", "1", "1", "1", "77"}).exitCode,
              0);
    EXPECT_EQ(info().at("state"), "modified");
    EXPECT_EQ(info().at("changed_items"), Json::parse(R"([{"kind":"map","number":2}])"));
    const ByteArray renamed = copy.Read("AUDIOHED.WL1");
    copy.Write("notes.txt", renamed);
    EXPECT_EQ(Tessaro({"render", copy.Path(), "0", copy.File("notes.txt"), "--force"}).exitCode, 1);
    EXPECT_EQ(copy.Read("notes.txt"), renamed) << "a known game's, whatever it is called";
}

}  // namespace

}  // namespace tessaro::test
