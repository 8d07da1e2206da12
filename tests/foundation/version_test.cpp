#include "tessaro/version.h"

#include "support/game.h"

namespace tessaro {
namespace {

class Version : public test::InFolder {
protected:
    Version() { version_.AppPath(folder_.Path()); }

    void Files(std::initializer_list<const char*> names) {
        for (const char* name : names)
            folder_.Write(name, {});
    }
    bool Load() { return version_.LoadDataPath(folder_.Path()); }

    clsVersion version_;
};

constexpr std::initializer_list<const char*> kWolf = {"VGADICT.WL6", "VGAGRAPH.WL6", "VGAHEAD.WL6",
                                                      "VSWAP.WL6",   "GAMEMAPS.WL6", "MAPHEAD.WL6",
                                                      "AUDIOT.WL6",  "AUDIOHED.WL6"};

TEST_F(Version, CompleteSetIsFound) {
    Files(kWolf);
    version_.BackupFolder("somewhere");
    ASSERT_TRUE(Load());
    EXPECT_EQ(version_.Extension(), "WL6");
    EXPECT_FALSE(version_.EGAGraphics());
    EXPECT_FALSE(version_.MapsAreVersion10());
    EXPECT_TRUE(version_.CanCompileVGAGraph());
    EXPECT_EQ(version_.VSwapFile(), folder_.File("VSWAP.WL6"));
    EXPECT_EQ(version_.AudioDataFile(), folder_.File("AUDIOT.WL6"));
    EXPECT_EQ(version_.BackupFolder(), "");

    Files({"wolf1v.exe"});
    ASSERT_TRUE(Load());
    EXPECT_FALSE(version_.CanCompileVGAGraph());
    clsVersion other;
    EXPECT_EQ(other.Extension(), "WL6") << "one store for every object of the thread";
}

TEST_F(Version, LowerCaseNamesCountAndTheExtensionIsRaised) {
    for (const char* name : kWolf) {
        std::string lower = name;
        for (char& c : lower)
            c = static_cast<char>(std::tolower(c));
        folder_.Write(lower, {});
    }
    ASSERT_TRUE(Load());
    EXPECT_EQ(version_.Extension(), "WL6");
    EXPECT_EQ(version_.MapHeaderFile(), folder_.File("MAPHEAD.wl6"));
    EXPECT_TRUE(FileExists(version_.MapHeaderFile()));
}

TEST_F(Version, EachMissingFileStopsTheSearchWhereItStands) {
    struct Case {
        const char* missing;
        std::string (clsVersion::*lastTried)() const;
        std::string (clsVersion::*notReached)() const;
    };
    using V = clsVersion;
    const Case cases[] = {
        {"GAMEMAPS.WL6", &V::GameMapsFile, &V::MapHeaderFile},
        {"MAPHEAD.WL6", &V::MapHeaderFile, &V::AudioDataFile},
        {"AUDIOT.WL6", &V::AudioDataFile, &V::AudioHeaderFile},
        {"AUDIOHED.WL6", &V::AudioHeaderFile, &V::VSwapFile},
        {"VSWAP.WL6", &V::VSwapFile, &V::VGADictFile},
        {"VGAGRAPH.WL6", &V::VGAGraphFile, &V::VGAHeaderFile},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.missing);
        Files(kWolf);
        DeleteFileAt(folder_.File(row.missing));
        EXPECT_FALSE(Load());
        EXPECT_NE((version_.*row.lastTried)(), "");
        EXPECT_EQ((version_.*row.notReached)(), "");
    }
    EXPECT_TRUE(ui_.boxes.empty()) << "an incomplete set is no failure";
}

TEST_F(Version, OlderMapsAreRead) {
    Files(kWolf);
    Files({"MAPTEMP.WL6"});
    ASSERT_TRUE(Load());
    EXPECT_FALSE(version_.MapsAreVersion10());
    DeleteFileAt(folder_.File("GAMEMAPS.WL6"));
    ASSERT_TRUE(Load());
    EXPECT_TRUE(version_.MapsAreVersion10());
    EXPECT_EQ(version_.GameMapsFile(), folder_.File("MAPTEMP.WL6"));
    Files({"GAMEMAPS.WL6", "BMENACE2.EXE"});
    ASSERT_TRUE(Load());
    EXPECT_TRUE(version_.MapsAreVersion10()) << "Bio Menace, though GAMEMAPS exists";
}

TEST_F(Version, SixteenColourGamesHaveNoPageFile) {
    Files({"EGADICT.BM1", "EGAGRAPH.BM1", "EGAHEAD.BM1", "MAPTEMP.BM1", "MAPHEAD.BM1", "AUDIO.BM1",
           "AUDIOHED.BM1"});
    ASSERT_TRUE(Load());
    EXPECT_TRUE(version_.EGAGraphics());
    EXPECT_FALSE(version_.CanCompileVGAGraph());
    EXPECT_EQ(version_.VSwapFile(), "");
    EXPECT_EQ(version_.AudioDictFile(), "");
    EXPECT_FALSE(ConfiguredGame().audioIsCompressed);
    Files({"AUDIODCT.BM1"});
    ASSERT_TRUE(Load());
    EXPECT_EQ(version_.AudioDictFile(), folder_.File("AUDIODCT.BM1"));
    EXPECT_TRUE(ConfiguredGame().audioIsCompressed);
}

TEST_F(Version, AFolderWithoutAGameEmptiesTheSettings) {
    Files(kWolf);
    ASSERT_TRUE(Load());
    test::TempFolder empty;
    EXPECT_FALSE(version_.LoadDataPath(empty.Path()));
    EXPECT_EQ(version_.GameMapsFile() + version_.VGADictFile() + version_.VSwapFile(), "");
    EXPECT_FALSE(version_.LoadDataPath(empty.File("missing")));
    EXPECT_TRUE(ui_.boxes.empty());
}

TEST_F(Version, CompileDictionaryIsKeptWhenItsFileFails) {
    ByteArray dictionary(1024);
    dictionary[0] = 7;
    version_.LoadCompileVGADictFile(folder_.Write("dict", dictionary));
    EXPECT_EQ(ConfiguredGame().compileDictionary[0].Bit0, 7);
    EXPECT_TRUE(ConfiguredGame().compileDictionaryLoaded);
    version_.LoadCompileVGADictFile(folder_.File("missing"));
    dictionary.resize(1023);
    version_.LoadCompileVGADictFile(folder_.Write("short", dictionary));
    ASSERT_EQ(ui_.boxes.size(), 2u);
    EXPECT_EQ(ui_.boxes[0].title, "clsVersion.LoadCompileVGADictFile Error");
    EXPECT_EQ(ConfiguredGame().compileDictionary[0].Bit0, 7);
    Load();
    EXPECT_FALSE(ConfiguredGame().compileDictionaryLoaded);
}

class RealVersion : public test::RealGame {};

TEST_F(RealVersion, IsFound) {
    EXPECT_EQ(version_.Extension(), "WL1");
}

}  // namespace
}  // namespace tessaro
