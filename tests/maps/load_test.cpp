// Reading map sets: a real one, the extended layouts, and files cut off anywhere.
#include <algorithm>
#include <array>

#include "small_maps.h"
#include "support/game.h"

namespace tessaro {
namespace {

using test::operator+;

class RealMaps : public test::RealGame {
protected:
    void SetUp() override {
        RealGame::SetUp();
        if (IsSkipped())
            return;
        ASSERT_TRUE(maps_.Initialize());
    }

    clsGameMaps maps_;
};

TEST_F(RealMaps, AreAllThereAndWhole) {
    ASSERT_EQ(maps_.NumberOfMaps(), 10);
    EXPECT_EQ(DisplayName(maps_.MapName(0)), "Wolf1 Map1");
    EXPECT_EQ(maps_.MapName(0).size(), 16u) << "padding is kept";
    EXPECT_EQ(maps_.InputMapPlanes(), 3);
    EXPECT_EQ(maps_.InputMapNameSize(), 16);
    EXPECT_EQ(maps_.LongRLEWTag(), 43'981);
    EXPECT_EQ(maps_.CompileRLEWTAG(), -21'555);
    for (std::int32_t map = 0; map < 10; ++map) {
        typMapPlane planes;
        std::int32_t width = 0, height = 0;
        ASSERT_TRUE(maps_.LoadMap(map, planes, width, height)) << map;
        EXPECT_EQ(maps_.CorruptMap(map), clNone) << map;
        EXPECT_EQ(width, 64);
        EXPECT_EQ(height, 64);
        ASSERT_EQ(planes.Plane.size(), 3u);
        EXPECT_EQ(planes.Plane[2].Grid.size(), 4096u);
    }
}

TEST_F(RealMaps, PackAgainToTheStoredBytes) {
    const ByteArray data = ReadWholeFile(ConfiguredGame().gameMapsFile);
    const auto& self = GameMapsInternals::SelfOf(maps_);
    for (std::int32_t map = 0; map < 10; ++map) {
        typMapPlane planes;
        std::int32_t width = 0, height = 0;
        ASSERT_TRUE(maps_.LoadMap(map, planes, width, height));
        const MapRecord& record = self.set.maps[static_cast<std::size_t>(map)].record;
        for (std::size_t plane = 0; plane < 3; ++plane) {
            EXPECT_EQ(EncodePlane(CellBytes(planes.Plane[plane]), {}),
                      test::Part(data, static_cast<std::size_t>(record.planeOffsets[plane]),
                                 static_cast<std::size_t>(record.planeLengths[plane])))
                << map << "/" << plane;
        }
    }
}

class MapLoad : public test::SmallMaps {
protected:
    /// The small set with some bytes of its data file changed.
    void Patch(std::size_t offset, const char* bytes) {
        ByteArray data = folder_.Read("GAMEMAPS.TST");
        const ByteArray patch = test::Hex(bytes);
        std::ranges::copy(patch, data.begin() + static_cast<std::ptrdiff_t>(offset));
        folder_.Write("GAMEMAPS.TST", data);
    }
};

constexpr std::size_t kFirstRecord = 38;

TEST_F(MapLoad, HandsOutWhatTheFilesHold) {
    clsGameMaps maps;
    ASSERT_TRUE(maps.Initialize());
    ASSERT_EQ(maps.NumberOfMaps(), 2);
    EXPECT_EQ(maps.MapName(0), std::string("First\0xxx\0\0\0\0\0\0\0", 16));
    EXPECT_EQ(maps.MapName(1), "Sixteen letters!");
    maps.MapName(1, "  spaced  out ");
    EXPECT_EQ(maps.MapName(1), "spaced  out");
    for (std::size_t plane = 0; plane < 3; ++plane)
        EXPECT_EQ(Planes(maps, 1).Plane.at(plane).Grid,
                  std::vector<std::int32_t>(8, static_cast<int>(plane) + 3));

    EXPECT_TRUE(maps.SetMapCode(0, 2, 3, 1, 77));
    maps.CloseFile();
    EXPECT_EQ(Cell(maps, 0, 2, 7), 77) << "an edited map is served from memory";
    for (const auto& [map, plane, x, y] : std::vector<std::array<std::int32_t, 4>>{{2, 0, 0, 0},
                                                                                   {-1, 0, 0, 0},
                                                                                   {0, 3, 0, 0},
                                                                                   {0, -1, 0, 0},
                                                                                   {0, 0, 4, 0},
                                                                                   {0, 0, 0, 2},
                                                                                   {0, 0, -1, 1}})
        EXPECT_FALSE(maps.SetMapCode(map, plane, x, y, 1));
    EXPECT_EQ(ui_.boxes.size(), 7u);
    EXPECT_TRUE(maps.MapName(2).empty());
    EXPECT_EQ(maps.CorruptMap(-1), clNone);
}

TEST_F(MapLoad, MeetsDamageAsTheFormatsDo) {
    struct Row {
        const char* name;
        std::size_t offset;
        const char* bytes;
        bool loads;
        enmCorruptLevel level;
        std::vector<std::int32_t> cells;  ///< of the first plane
    };
    const std::vector<std::int32_t> zeros(8);
    const Row rows[] = {
        {"an empty plane with an offset that means nothing", kFirstRecord,
         "85FFFFFF 12000000 1C000000 0000", true, clNone, zeros},
        {"a wide cell", 16, "FFFF", true, clNone, std::vector<std::int32_t>(8, 65'535)},
        {"no prefix in the inner layer", 10, "0000", true, clHigh, std::vector<std::int32_t>(8, 1)},
        {"an inner layer that ends early", 14, "0500", true, clHigh, {1, 1, 1, 1, 1, 0, 0, 0}},
        {"a run beyond the last cell", 14, "FF00", true, clNone, std::vector<std::int32_t>(8, 1)},
        {"an outer layer of length 0", 8, "0000", true, clNone, zeros},
        {"a negative outer length", 8, "0080", false, clNone, {}},
        {"codes that end early", 8, "FF7F", false, clNone, {}},
        {"a plane outside the file", kFirstRecord, "00010000", false, clNone, {}},
        {"a plane in front of the file", kFirstRecord, "FFFFFFFF", false, clNone, {}},
        {"no width", kFirstRecord + 18, "0000", false, clNone, {}},
        {"too many cells", kFirstRecord + 18, "FF7FFF7F", false, clNone, {}},
    };
    for (const Row& row : rows) {
        SetUp();
        ui_.boxes.clear();
        Patch(row.offset, row.bytes);
        clsGameMaps maps;
        ASSERT_TRUE(maps.Initialize());
        const typMapPlane planes = Planes(maps, 0);
        EXPECT_EQ(planes.Plane.size(), row.loads ? 3u : 0u) << row.name;
        EXPECT_EQ(maps.CorruptMap(0), row.level) << row.name;
        EXPECT_EQ(ui_.boxes.size(), row.loads ? 0u : 1u) << row.name;
        if (row.loads) {
            EXPECT_EQ(planes.Plane[0].Grid, row.cells) << row.name;
        }
        EXPECT_EQ(Planes(maps, 1).Plane.size(), 3u) << row.name;
    }
}

TEST_F(MapLoad, AnEmptyOuterLayerKeepsTheUsualTag) {
    Patch(8, "0000");
    clsGameMaps maps;
    ASSERT_TRUE(maps.Initialize());
    maps.LongRLEWTag(0x1234);
    EXPECT_EQ(Cell(maps, 0, 0, 0), 0xABCD);
    EXPECT_EQ(maps.CorruptMap(0), clHigh);
}

TEST_F(MapLoad, TheHeaderFileEndsTheListOfMaps) {
    struct Row {
        std::size_t size, slots;
    };
    for (const Row& row : {Row{402, 100}, Row{22, 100}, Row{0, 100}, Row{404, 100}, Row{405, 101},
                           Row{406, 101}, Row{408, 102}, Row{410, 102}})
        EXPECT_EQ(MapHeader::ReadFrom(ByteArray(row.size)).offsets.size(), row.slots) << row.size;
    const MapHeader header =
        MapHeader::ReadFrom(test::Hex("CDAB CA080000 A00F0000 00000000 28230000"));
    EXPECT_EQ(header.MapCount(), 2u);
    EXPECT_EQ(header.rlewTag, 0xABCD);

    folder_.Write("MAPHEAD.TST", test::Hex("CDAB 00000000 26000000"));
    clsGameMaps maps;
    EXPECT_FALSE(maps.Initialize());
    EXPECT_EQ(maps.NumberOfMaps(), 0);
}

TEST_F(MapLoad, ExtendedCountsBehindTheSignature) {
    folder_.Write("GAMEMAPS.TST", test::Ascii("TED6v1.2") + test::Hex("0200 0400") +
                                      test::Hex("0A000000 10000000 2200 0800 3412") +
                                      test::Hex("0C000000 CDCDCDCD  0E000000 00000000  0400 0200") +
                                      test::Ascii("Long"));
    folder_.Write("MAPHEAD.TST", test::Hex("2200 1A000000"));
    clsGameMaps maps;
    ASSERT_TRUE(maps.Initialize());
    EXPECT_EQ(maps.InputMapPlanes(), 2);
    EXPECT_EQ(maps.OutputMapNameSize(), 4);
    EXPECT_TRUE(maps.LoadLengthsAsLong());
    EXPECT_EQ(maps.MapName(0), "Long");
    EXPECT_EQ(maps.LongRLEWTag(), 0x22);
    EXPECT_EQ(Cell(maps, 0, 0, 7), 0x1234);
    EXPECT_EQ(Cell(maps, 0, 1, 7), 0);

    folder_.Write("GAMEMAPS.TST", test::SmallData());
    folder_.Write("MAPHEAD.TST", test::SmallHeader());
    ASSERT_TRUE(maps.Initialize());
    EXPECT_FALSE(maps.LoadLengthsAsLong());
    EXPECT_TRUE(maps.SaveLengthsAsLong()) << "stays as the earlier set has left it";
    EXPECT_EQ(Cell(maps, 1, 0, 0), 3);
}

/// Cut off anywhere, the files give maps that are whole, marked as damaged, or refused.
TEST_F(MapLoad, CutOffAnywhere) {
    for (const char* name : {"GAMEMAPS.TST", "MAPHEAD.TST"}) {
        for (const bool extended : {false, true}) {
            SetUp();
            clsGameMaps whole;
            ASSERT_TRUE(whole.Initialize());
            if (extended) {
                whole.OutputMapPlanes(4);
                whole.SaveLengthsAsLong(true);
                ASSERT_TRUE(whole.SaveMapFile());
            }
            const std::vector<typMapPlane> expected{Planes(whole, 0), Planes(whole, 1)};
            whole.CloseFile();
            const ByteArray bytes = folder_.Read(name);
            int refused = 0;
            for (std::size_t size = 0; size < bytes.size(); ++size) {
                folder_.Write(name, ByteSpan(bytes).first(size));
                clsGameMaps maps;
                if (!maps.Initialize()) {
                    ++refused;
                    continue;
                }
                for (std::int32_t map = 0; map < maps.NumberOfMaps(); ++map) {
                    const typMapPlane planes = Planes(maps, map);
                    refused += planes.Plane.empty() ? 1 : 0;
                    for (std::size_t plane = 0;
                         plane < std::min<std::size_t>(planes.Plane.size(), 3); ++plane) {
                        if (maps.CorruptMap(map) == clNone) {
                            EXPECT_EQ(planes.Plane[plane].Grid,
                                      expected[static_cast<std::size_t>(map)].Plane.at(plane).Grid)
                                << name << " " << size;
                        }
                    }
                }
            }
            EXPECT_GT(refused, 2) << name;
        }
    }
}

}  // namespace
}  // namespace tessaro
