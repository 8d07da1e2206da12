// SaveMapFile: the bytes of both files, the events, and that nothing is lost when it fails.
#include <algorithm>
#include <functional>

#include "small_maps.h"
#include "support/game.h"

namespace tessaro {
namespace {

using test::Ascii;
using test::Hex;
using test::Part;
using test::operator+;

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
    ASSERT_TRUE(maps_.SetMapCode(1, 0, 3, 1, 0x1234));
    ASSERT_TRUE(maps_.SaveMapFile());
    const ByteArray data = folder_.Read("GAMEMAPS.TST");
    EXPECT_EQ(Part(data, 80, 13), Hex("0A00 1000 2200 0700 0300 001234"))
        << "seven cells as a run of the new tag, then the low half of the last, escaped";
    EXPECT_EQ(BytesOf("backup/GAMEMAPS.TST.001"), test::SmallData());
    EXPECT_EQ(BytesOf("backup/GAMEMAPS.TST.002"), test::SmallData());
    EXPECT_EQ(BytesOf("backup/MAPHEAD.TST.002"), test::SmallHeader());
    EXPECT_EQ(folder_.Read("MAPHEAD.TST")[0], 0x22);
    EXPECT_EQ(maps_.NEARTAG(), 0x12) << "what was written is read with these tags from now on";
    EXPECT_EQ(maps_.LongRLEWTag(), 0x22);
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
        "length in project information.  Aborting.");
    EXPECT_EQ(events_.seen, (std::vector<std::string>{"SaveStatus 1 2", "SaveError 2 " + text,
                                                      "SaveComplete False"}));
    ASSERT_EQ(ui_.boxes.size(), 1u);
    EXPECT_EQ(ui_.boxes[0].title, "clsGameMaps.SaveMapFile: DoRestore Error");
    EXPECT_EQ(ui_.boxes[0].prompt, "Error 1799 in clsGameMaps.SaveMapFile: DoRestore: " + text);
    EXPECT_FALSE(folder_.Has("GAMEMAPS.TST.new")) << "nothing was complete";

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
    };
    for (const Row& row : rows) {
        clsGameMaps maps;
        ASSERT_TRUE(maps.Initialize());
        ASSERT_TRUE(maps.ResizeMap(0, row.side, row.side, 0));
        auto& grid = GameMapsInternals::SelfOf(maps).set.maps[0].planes.Plane[0].Grid;
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

// What once was written so that it could not be read.
TEST_F(MapSave, WhatItCallsDoneOpensAgain) {
    struct Row {
        const char* name;
        std::int32_t side;
        std::function<std::int32_t(std::int32_t cell)> value;
    };
    const Row rows[] = {
        {"a word that looks like a copy", 8, [](int cell) { return cell == 9 ? 0xA712 : 1; }},
        {"a word that looks like an escape", 8, [](int cell) { return cell == 9 ? 0xA700 : 1; }},
        {"far tags among counts", 8, [](int cell) { return 0xA801 + cell % 3; }},
        {"the tag alone", 8, [](int cell) { return cell == 5 ? 0xABCD : 2; }},
        {"the tag twice, then a count", 8, [](int cell) { return cell < 2 ? 0xABCD : cell; }},
        {"one cell", 1, [](int) { return 7; }},
        {"no two cells alike", 64, [](int cell) { return cell; }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        clsGameMaps maps;
        ASSERT_TRUE(maps.Initialize());
        ASSERT_TRUE(maps.ResizeMap(0, row.side, row.side, 0));
        std::vector<std::int32_t> cells;
        for (std::int32_t cell = 0; cell < row.side * row.side; ++cell) {
            cells.push_back(row.value(cell));
            ASSERT_TRUE(maps.SetMapCode(0, 0, cell % row.side, cell / row.side, cells.back()));
        }
        ASSERT_TRUE(maps.SaveMapFile()) << ui_.LastPrompt();
        clsGameMaps again;
        ASSERT_TRUE(again.Initialize());
        EXPECT_EQ(Planes(again, 0).Plane.at(0).Grid, cells);
        EXPECT_EQ(again.CorruptMap(0), clNone);
    }
}

TEST_F(MapSave, WorksOnTheSettingsOfItsStart) {
    maps_.SaveStatus = [&](std::int32_t, std::int32_t) {
        maps_.SaveLengthsAsLong(true);
        maps_.CompileRLEWTAG(5);
        maps_.CompileNEARTAG(0xA8);
        maps_.OutputMapPlanes(7);
        ConfiguredGame().backupFolder = "";
        ConfiguredGame().mapsAreVersion10 = true;
        EXPECT_FALSE(maps_.SetMapCode(0, 0, 0, 0, 9));
        EXPECT_EQ(maps_.OutputMapPlanes(), 7) << "reads back at once";
    };
    EXPECT_TRUE(maps_.SaveMapFile());
    EXPECT_EQ(folder_.Read("GAMEMAPS.TST"), test::SmallData());
    EXPECT_EQ(folder_.Read("MAPHEAD.TST"), test::SmallHeader());
    ui_.boxes.clear();
    maps_.SaveStatus = nullptr;
    EXPECT_FALSE(maps_.SaveMapFile()) << "both tags are the same now";
    EXPECT_NE(ui_.LastPrompt().find("near and the far tag"), std::string::npos);
}

TEST_F(MapSave, BelongsToTheGameItWasOpenedFor) {
    const Game before = ConfiguredGame();
    SharedStore().game = std::make_shared<Game>();
    ConfiguredGame().mapHeaderFile = folder_.Write("OTHER.HED", test::SmallHeader());
    ConfiguredGame().gameMapsFile = folder_.Write("OTHER.DAT", ByteArray(40));
    maps_.CloseFile();
    EXPECT_EQ(Cell(maps_, 1, 0, 0), 3) << "read from its own files";
    ASSERT_TRUE(maps_.SetMapCode(1, 0, 0, 0, 8));
    EXPECT_TRUE(maps_.SaveMapFile()) << ui_.LastPrompt();
    EXPECT_NE(folder_.Read("GAMEMAPS.TST"), test::SmallData());
    EXPECT_EQ(folder_.Read("OTHER.DAT"), ByteArray(40));
    maps_.CloseFile();
    clsGameMaps again;
    SharedStore().game = std::make_shared<Game>(before);
    ASSERT_TRUE(again.Initialize());
    again.CloseFile();
    folder_.Write("GAMEMAPS.TST", test::SmallData());
    EXPECT_TRUE(Planes(again, 1).Plane.empty()) << "the file is not the one that was opened";
    EXPECT_NE(ui_.LastPrompt().find("changed since it was read"), std::string::npos);
}

TEST_F(MapSave, KeepsWhatOtherToolsPutBehindTheOffsets) {
    const ByteArray tail = Ascii("tile properties!");
    const ByteArray header = test::SmallHeader() + tail;
    folder_.Write("MAPHEAD.TST", header);
    ASSERT_TRUE(maps_.Initialize());
    ASSERT_TRUE(maps_.SaveMapFile());
    EXPECT_EQ(folder_.Read("MAPHEAD.TST"), header);
    maps_.OutputMapPlanes(4);  // puts a count in front
    ASSERT_TRUE(maps_.SaveMapFile());
    const ByteArray longer = folder_.Read("MAPHEAD.TST");
    EXPECT_EQ(longer.size(), header.size() + 2);
    EXPECT_EQ(Part(longer, 404), tail);

    while (maps_.NumberOfMaps() < 99)
        maps_.AddMap(0);
    EXPECT_TRUE(maps_.SaveMapFile()) << "one slot still ends the list";
    maps_.AddMap(0);
    EXPECT_FALSE(maps_.SaveMapFile()) << "the tail would be read as maps";
    EXPECT_NE(ui_.LastPrompt().find("properties of tiles"), std::string::npos);
}

TEST_F(MapSave, KeepsAProvenPairThatCannotBePutInPlace) {
    folder_.Write("GAMEMAPS.TST.new", Ascii("somebody's"));
    folder_.Write("backup", Ascii("no folder"));
    ASSERT_TRUE(maps_.SetMapCode(0, 0, 0, 0, 9));
    for (int attempt = 0; attempt < 2; ++attempt) {
        EXPECT_FALSE(maps_.SaveMapFile());
        EXPECT_NE(ui_.LastPrompt().find("have a '.new' extension added to them."),
                  std::string::npos);
        EXPECT_EQ(folder_.Read("GAMEMAPS.TST"), test::SmallData());
        EXPECT_EQ(folder_.Read("GAMEMAPS.TST.new.1"), Ascii("somebody's"));
        EXPECT_FALSE(folder_.Has("GAMEMAPS.TST.new.2")) << "its own it replaces";
    }
    ConfiguredGame().gameMapsFile = folder_.File("GAMEMAPS.TST.new");
    ConfiguredGame().mapHeaderFile = folder_.File("MAPHEAD.TST.new");
    clsGameMaps aside;
    ASSERT_TRUE(aside.Initialize());
    EXPECT_EQ(Cell(aside, 0, 0, 0), 9);
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
    GameMapsInternals::SelfOf(maps_).set.maps.clear();
    EXPECT_TRUE(fails());
}

/// Saves with file operations that fail; whatever fails, the old bytes, the host's edit and the
/// order of events survive, and the next save works.
class MapSaveFaults : public MapSave {
protected:
    /// Whoever opens the set next finds it old or new.
    void CheckAfter(bool saved) {
        clsGameMaps next;
        ASSERT_TRUE(next.Initialize());
        const ByteArray data = folder_.Read("GAMEMAPS.TST");
        const bool isOld = data == test::SmallData();
        EXPECT_TRUE(isOld || data == expected_);
        EXPECT_EQ(folder_.Read("MAPHEAD.TST") == test::SmallHeader(), isOld);
        EXPECT_TRUE(isOld || BytesOf("backup/GAMEMAPS.TST.001") == test::SmallData());
        EXPECT_FALSE(saved && isOld);
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

    void SetUp() override {
        MapSave::SetUp();
        Restart();
        ASSERT_TRUE(maps_.SaveMapFile());
        expected_ = folder_.Read("GAMEMAPS.TST");
        ASSERT_NE(expected_, test::SmallData());
    }

    ByteArray expected_;
};

TEST_F(MapSaveFaults, OneFailingOperationLosesNothing) {
    test::EachFailure(
        25, [&] { Restart(); }, [&] { return maps_.SaveMapFile(); },
        [&](bool saved) {
            CheckAfter(saved);
            if (!saved) {
                EXPECT_EQ(folder_.Read("MAPHEAD.TST"), test::SmallHeader());
                EXPECT_EQ(folder_.Read("GAMEMAPS.TST"), test::SmallData());
                EXPECT_TRUE(maps_.SaveMapFile());
            }
            EXPECT_EQ(folder_.Read("GAMEMAPS.TST"), expected_);
        });
}

TEST_F(MapSaveFaults, NothingWorkingFromOneOperationOnLosesNothing) {
    test::EachFailure(
        25, [&] { Restart(); }, [&] { return maps_.SaveMapFile(); },
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
