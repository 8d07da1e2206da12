// SaveMapFile: the bytes of both files, the events, and that nothing is lost when it fails.
#include <algorithm>

#include "map_set.h"
#include "support/game.h"

namespace tessaro {
namespace {

using test::Ascii;
using test::Hex;
using test::Part;
using test::operator+;

constexpr const char* kHint =
    "\r\n\r\nThere was a problem replacing your map files.  Your compiled files are intact, but "
    "have a '.new' extension added to them.  You will need to correct this problem manually.";

class MapSave : public test::SmallMaps {
protected:
    void SetUp() override {
        SmallMaps::SetUp();
        ASSERT_TRUE(maps_.Initialize());
        events_.Listen(maps_);
    }

    clsGameMaps maps_;
    test::SaveEvents events_;
};

TEST_F(MapSave, WritesTheSetBackAndBacksUpTheOldOne) {
    ASSERT_TRUE(maps_.SaveMapFile());
    EXPECT_EQ(folder_.Read("GAMEMAPS.TST"), test::SmallData());
    EXPECT_EQ(folder_.Read("MAPHEAD.TST"), test::SmallHeader());
    EXPECT_FALSE(folder_.Has("GAMEMAPS.TST.new"));
    EXPECT_FALSE(folder_.Has("MAPHEAD.TST.new"));
    EXPECT_EQ(events_.seen, test::EventsOfASave(2));

    maps_.CompileRLEWTAG(0x7FFE'0022);
    maps_.CompileNEARTAG(0x12);
    ASSERT_TRUE(maps_.SetMapCode(1, 0, 3, 1, 0x1'1234));
    ASSERT_TRUE(maps_.SaveMapFile());
    const ByteArray data = folder_.Read("GAMEMAPS.TST");
    EXPECT_EQ(Part(data, 80, 13), Hex("0A00 1000 2200 0700 0300 001234"))
        << "seven cells as a run of the new tag, then the low half of the last, escaped";
    EXPECT_EQ(BytesOf("backup/GAMEMAPS.TST.001"), test::SmallData());
    EXPECT_EQ(BytesOf("backup/GAMEMAPS.TST.002"), test::SmallData());
    EXPECT_EQ(BytesOf("backup/MAPHEAD.TST.002"), test::SmallHeader());
    EXPECT_EQ(folder_.Read("MAPHEAD.TST")[0], 0x22);
    EXPECT_EQ(Cell(maps_, 1, 0, 7), 0x1'1234) << "the cache keeps what the host set";
}

TEST_F(MapSave, WritesRlewAloneForTheOlderKind) {
    for (std::int32_t map = 0; map < 2; ++map)
        Planes(maps_, map);
    ConfiguredGame().mapsAreVersion10 = true;
    ASSERT_TRUE(maps_.SaveMapFile());
    const ByteArray data = folder_.Read("GAMEMAPS.TST");
    EXPECT_EQ(Part(data, 8, 8), Hex("1000 CDAB 0800 0100"));
    clsGameMaps again;
    ASSERT_TRUE(again.Initialize());
    EXPECT_EQ(Cell(again, 1, 2, 7), 5);
}

struct LayoutRow {
    std::int16_t planes, nameSize;
    bool longLengths;
    const char* signature;
    const char* headerFront;  ///< up to the first offset
};

class MapLayouts : public MapSave, public testing::WithParamInterface<LayoutRow> {};

TEST_P(MapLayouts, AreWrittenAndReadAgain) {
    const LayoutRow& row = GetParam();
    maps_.CloseFile();  // an open file cannot be moved on Windows
    for (const bool older : {false, true}) {
        ConfiguredGame().mapsAreVersion10 = false;
        folder_.Write("GAMEMAPS.TST", test::SmallData());
        folder_.Write("MAPHEAD.TST", test::SmallHeader());
        clsGameMaps maps;
        ASSERT_TRUE(maps.Initialize());
        for (std::int32_t map = 0; map < 2; ++map)
            Planes(maps, map);
        ConfiguredGame().mapsAreVersion10 = older;
        maps.OutputMapPlanes(row.planes);
        maps.OutputMapNameSize(row.nameSize);
        maps.SaveLengthsAsLong(row.longLengths);
        ASSERT_TRUE(maps.SaveMapFile()) << ui_.LastPrompt();

        const ByteArray front = Hex(row.headerFront);
        const ByteArray header = folder_.Read("MAPHEAD.TST");
        EXPECT_EQ(header.size(), front.size() + 400);
        EXPECT_EQ(Part(header, 0, front.size()), front);
        const ByteArray data = folder_.Read("GAMEMAPS.TST");
        EXPECT_EQ(Part(data, 0, 8), Ascii(row.signature));

        clsGameMaps again;
        ASSERT_TRUE(again.Initialize());
        EXPECT_EQ(again.InputMapPlanes(), row.planes);
        EXPECT_EQ(again.InputMapNameSize(), row.nameSize);
        EXPECT_EQ(again.LoadLengthsAsLong(), row.longLengths);
        EXPECT_EQ(again.SaveLengthsAsLong(), row.longLengths);
        ASSERT_EQ(again.NumberOfMaps(), 2);
        EXPECT_EQ(DisplayName(again.MapName(0)), "First");
        EXPECT_EQ(
            DisplayName(again.MapName(1)),
            std::string("Sixteen letters!").substr(0, static_cast<std::size_t>(row.nameSize)));
        const typMapPlane planes = Planes(again, 1);
        ASSERT_EQ(planes.Plane.size(), static_cast<std::size_t>(row.planes));
        for (std::size_t plane = 0; plane < planes.Plane.size(); ++plane)
            EXPECT_EQ(planes.Plane[plane].Grid,
                      std::vector<std::int32_t>(8, plane < 3 ? static_cast<int>(plane) + 3 : 0));
        again.SaveLengthsAsLong(false);
        EXPECT_EQ(again.SaveLengthsAsLong(), row.longLengths) << "cannot be switched off";
    }
}

INSTANTIATE_TEST_SUITE_P(Layout, MapLayouts,
                         testing::Values(LayoutRow{3, 16, false, "TED5v1.0", "CDAB"},
                                         LayoutRow{1, 16, false, "TED6v1.0", "CDAB"},
                                         LayoutRow{2, 16, false, "TED6v1.0", "CDAB"},
                                         LayoutRow{4, 16, false, "TED6v1.0", "CDAB 0400"},
                                         LayoutRow{3, 12, false, "TED6v1.1", "CDAB"},
                                         LayoutRow{2, 9, false, "TED6v1.1", "CDAB"},
                                         LayoutRow{5, 12, false, "TED6v1.1", "CDAB 0500"},
                                         LayoutRow{3, 20, false, "TED6v1.1", "CDAB 0300 1400"},
                                         LayoutRow{64, 300, false, "TED6v1.1", "CDAB 4000 2C01"},
                                         LayoutRow{3, 16, true, "TED6v1.2", "CDAB 0300 1000"},
                                         LayoutRow{4, 32, true, "TED6v1.2", "CDAB 0400 2000"}));

TEST_F(MapSave, KeepsTheOldFilesWhenANameIsTooLong) {
    maps_.MapName(1, "Seventeen letters");
    EXPECT_FALSE(maps_.SaveMapFile());
    EXPECT_EQ(folder_.Read("GAMEMAPS.TST"), test::SmallData());
    const std::string text = std::string(
                                 "Could not save map 1 due to map name being too long.  Change "
                                 "length in project information.  Aborting.") +
                             kHint;
    EXPECT_EQ(events_.seen, (std::vector<std::string>{"SaveStatus 1 2", "SaveError 2 " + text,
                                                      "SaveComplete False"}));
    ASSERT_EQ(ui_.boxes.size(), 1u);
    EXPECT_EQ(ui_.boxes[0].title, "clsGameMaps.SaveMapFile: DoRestore Error");
    EXPECT_EQ(ui_.boxes[0].prompt, "Error 1799 in clsGameMaps.SaveMapFile: DoRestore: " + text);
    EXPECT_TRUE(folder_.Has("GAMEMAPS.TST.new"));

    maps_.OutputMapNameSize(17);
    EXPECT_TRUE(maps_.SaveMapFile());
    EXPECT_FALSE(folder_.Has("GAMEMAPS.TST.new"));
    maps_.OutputMapNameSize(5);
    EXPECT_EQ(maps_.MapName(1), "Seven");
}

TEST_F(MapSave, KeepsItsHandlersFromChangingWhatItReliesOn) {
    maps_.SaveStatus = [&](std::int32_t, std::int32_t) {
        ui_.boxes.clear();
        maps_.RemoveMap(1);
        maps_.AddMap(0);
        EXPECT_FALSE(maps_.ResizeMap(0, 8, 8, 1));
        EXPECT_FALSE(maps_.ImportMap(0, folder_.Write("A.MAP", ByteArray(16384))));
        EXPECT_FALSE(maps_.Initialize());
        EXPECT_FALSE(maps_.SaveMapFile());
        EXPECT_EQ(ui_.boxes.size(), 6u);
    };
    bool again = false;
    maps_.SaveComplete = [&](bool success) { again = success && maps_.Initialize(); };
    EXPECT_TRUE(maps_.SaveMapFile());
    EXPECT_TRUE(again) << "the set is written by then";
    EXPECT_EQ(folder_.Read("GAMEMAPS.TST"), test::SmallData());
    EXPECT_EQ(folder_.Read("MAPHEAD.TST"), test::SmallHeader());
    maps_.RemoveMap(1);
    EXPECT_EQ(maps_.NumberOfMaps(), 1);
}

TEST_F(MapSave, RefusesWhatWouldNotReadBack) {
    struct Row {
        const char* name;
        std::int32_t side;
        std::size_t run;  ///< equal cells in a row
        const char* inDescription;
    };
    const Row rows[] = {
        {"cells beyond 16 bits", 182, 5, "map 0 because its plane 0 is too large for 16-bit"},
        {"runs beyond a signed length", 181, 5, "map 0 because its plane 0 is too large for"},
        {"no runs", 8, 1, "map 0 because its plane 0 has too few runs of equal cells"},
    };
    for (const Row& row : rows) {
        clsGameMaps maps;
        ASSERT_TRUE(maps.Initialize());
        ASSERT_TRUE(maps.ResizeMap(0, row.side, row.side, 0));
        auto& grid = GameMapsInternals::SelfOf(maps).maps[0].planes.Plane[0].Grid;
        for (std::size_t i = 0; i < grid.size(); ++i)
            grid[i] = static_cast<std::int32_t>(i / row.run);
        EXPECT_FALSE(maps.SaveMapFile()) << row.name;
        EXPECT_NE(ui_.LastPrompt().find(row.inDescription), std::string::npos)
            << row.name << ": " << ui_.LastPrompt();
        EXPECT_EQ(folder_.Read("GAMEMAPS.TST"), test::SmallData());
    }

    ASSERT_TRUE(maps_.ResizeMap(0, 300, 300, 7));
    maps_.SaveLengthsAsLong(true);
    EXPECT_TRUE(maps_.SaveMapFile());
    clsGameMaps again;
    ASSERT_TRUE(again.Initialize());
    EXPECT_EQ(Cell(again, 0, 0, 89'999), 7);
    EXPECT_EQ(again.CorruptMap(0), clNone);
}

TEST_F(MapSave, NeedsMapsSettingsAndABackupFolder) {
    const auto fails = [&] {
        events_.seen.clear();
        return !maps_.SaveMapFile() && events_.EndedOnce(false) &&
               folder_.Read("GAMEMAPS.TST") == test::SmallData() &&
               folder_.Read("MAPHEAD.TST") == test::SmallHeader();
    };
    for (const int planes : {-1, 0, 65}) {
        maps_.OutputMapPlanes(static_cast<std::int16_t>(planes));
        EXPECT_TRUE(fails()) << planes;
    }
    maps_.OutputMapPlanes(3);
    ConfiguredGame().backupFolder.clear();
    EXPECT_TRUE(fails());
    EXPECT_NE(events_.seen[2].find("SaveError 99 No backup folder is set."), std::string::npos)
        << "the number is the last header slot";
    ConfiguredGame().backupFolder = folder_.File("backup");
    maps_.AddMap(7);
    EXPECT_TRUE(fails()) << "the map that a failed AddMap leaves holds nothing";
    EXPECT_NE(events_.seen[2].find("Could not load map 2 in order to save.  Aborting."),
              std::string::npos);
    GameMapsInternals::SelfOf(maps_).maps.clear();
    EXPECT_TRUE(fails());
}

/// Saves with file operations that fail; whatever fails, the old bytes, the host's edit and the
/// order of events survive, and the next save works.
class MapSaveFaults : public MapSave {
protected:
    void CheckAfter(bool saved) {
        if (!saved) {
            EXPECT_TRUE(BytesOf("GAMEMAPS.TST") == test::SmallData() ||
                        BytesOf("backup/GAMEMAPS.TST.001") == test::SmallData());
            EXPECT_TRUE(BytesOf("MAPHEAD.TST") == test::SmallHeader() ||
                        BytesOf("backup/MAPHEAD.TST.001") == test::SmallHeader());
        }
        EXPECT_TRUE(events_.EndedOnce(saved));
        EXPECT_EQ(Cell(maps_, 0, 0, 0), 9);
    }

    /// Starts over with a set of which map 0 has been edited.
    void Restart() {
        folder_.RemoveFolder("backup");
        folder_.Write("GAMEMAPS.TST", test::SmallData());
        folder_.Write("MAPHEAD.TST", test::SmallHeader());
        ASSERT_TRUE(maps_.Initialize());
        for (std::int32_t x = 0; x < 4; ++x)
            ASSERT_TRUE(maps_.SetMapCode(0, 0, x, 0, 9));
        events_.seen.clear();
    }
};

TEST_F(MapSaveFaults, OneFailingOperationLosesNothing) {
    Restart();
    ASSERT_TRUE(maps_.SaveMapFile());
    const ByteArray expected = folder_.Read("GAMEMAPS.TST");
    ASSERT_NE(expected, test::SmallData());
    test::EachFailure(
        15, [&] { Restart(); }, [&] { return maps_.SaveMapFile(); },
        [&](bool saved) {
            CheckAfter(saved);
            if (!saved) {
                EXPECT_EQ(folder_.Read("MAPHEAD.TST"), test::SmallHeader());
                EXPECT_EQ(folder_.Read("GAMEMAPS.TST"), test::SmallData());
                EXPECT_TRUE(maps_.SaveMapFile());
            }
            EXPECT_EQ(folder_.Read("GAMEMAPS.TST"), expected);
        });
}

TEST_F(MapSaveFaults, NothingWorkingFromOneOperationOnLosesNothing) {
    test::EachFailure(
        15, [&] { Restart(); }, [&] { return maps_.SaveMapFile(); },
        [&](bool saved) { CheckAfter(saved); }, test::Fails::FromThenOn);
}

class RealMapSave : public test::RealGame {};

TEST_F(RealMapSave, ChangesWhatItMustAlone) {
    const ByteArray oldData = Original("GAMEMAPS.WL1"), oldHeader = Original("MAPHEAD.WL1");
    clsGameMaps maps;
    ASSERT_TRUE(maps.Initialize());
    ASSERT_TRUE(maps.SaveMapFile());

    // The real file has three stray bytes behind its signature, which move everything, and one
    // marker less at its end.
    constexpr std::int32_t kStray = 3;
    ByteArray data = oldData, header = oldHeader;
    const auto lower = [](ByteArray& bytes, std::size_t at) {
        std::int32_t offset = ByteReader(ByteSpan(bytes).subspan(at)).I32() - kStray;
        for (std::size_t i = 0; i < 4; ++i)
            bytes[at + i] = static_cast<std::uint8_t>(offset >> 8 * i);
        return static_cast<std::size_t>(offset);
    };
    for (std::size_t map = 0; map < 10; ++map) {
        const std::size_t record = lower(header, 2 + 4 * map) + kStray;
        for (std::size_t plane = 0; plane < 3; ++plane)
            lower(data, record + 4 * plane);
    }
    data.erase(data.begin() + 8, data.begin() + 8 + kStray);
    EXPECT_EQ(folder_.Read("GAMEMAPS.WL1"), data + Ascii("!ID!"));
    EXPECT_EQ(folder_.Read("MAPHEAD.WL1"), header);

    ASSERT_TRUE(maps.SetMapCode(9, 2, 0, 0, 1));
    ASSERT_TRUE(maps.SaveMapFile());
    const ByteArray changed = folder_.Read("GAMEMAPS.WL1");
    const auto ninth = static_cast<std::size_t>(ByteReader(ByteSpan(header).subspan(38)).I32());
    const std::int32_t lastPlane = ByteReader(ByteSpan(data).subspan(ninth + 8)).I32();
    EXPECT_TRUE(std::equal(changed.begin(), changed.begin() + lastPlane, data.begin()));
}

}  // namespace
}  // namespace tessaro
