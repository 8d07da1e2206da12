// Changing the set of maps and the size of one map.
#include "small_maps.h"

namespace tessaro {
namespace {

class MapChanges : public test::SmallMaps {
protected:
    void SetUp() override {
        SmallMaps::SetUp();
        ASSERT_TRUE(maps_.Initialize());
        self_ = &GameMapsInternals::SelfOf(maps_);
    }

    clsGameMaps maps_;
    decltype(&GameMapsInternals::SelfOf(maps_)) self_ = nullptr;
};

TEST_F(MapChanges, ResizeKeepsTheTopLeftCorner) {
    struct Row {
        std::int32_t width, height;
        std::vector<std::int32_t> first, second;
    };
    const Row rows[] = {
        {4, 2, {1, 2, 3, 4, 5, 6, 7, 8}, {2, 2, 2, 2, 2, 2, 2, 2}},
        {6, 1, {1, 2, 3, 4, 99, 99}, {2, 2, 2, 2, 0, 0}},
        {2, 3, {1, 2, 5, 6, 99, 99}, {2, 2, 2, 2, 0, 0}},
        {5,
         3,
         {1, 2, 3, 4, 99, 5, 6, 7, 8, 99, 99, 99, 99, 99, 99},
         {2, 2, 2, 2, 0, 2, 2, 2, 2, 0, 0, 0, 0, 0, 0}},
    };
    for (const Row& row : rows) {
        clsGameMaps maps;
        ASSERT_TRUE(maps.Initialize());
        for (std::int32_t i = 0; i < 8; ++i)
            ASSERT_TRUE(maps.SetMapCode(0, 0, i % 4, i / 4, i + 1));
        ASSERT_TRUE(maps.ResizeMap(0, row.width, row.height, 99));
        typMapPlane planes;
        std::int32_t width = 0, height = 0;
        ASSERT_TRUE(maps.LoadMap(0, planes, width, height));
        EXPECT_EQ(planes.Plane[0].Grid, row.first);
        EXPECT_EQ(planes.Plane[1].Grid, row.second);
        EXPECT_EQ(width, row.width);
        EXPECT_EQ(height, row.height);
    }
}

TEST_F(MapChanges, ResizeRefusesWhatIsNoMap) {
    struct Row {
        std::int32_t map, width, height, number;
    };
    for (const Row& row : {Row{2, 4, 4, 9}, Row{-1, 4, 4, 9}, Row{0, 0, 4, 9}, Row{0, 4, -1, 9},
                           Row{0, 4097, 4096, 7}, Row{0, 40'000, 1, 6}}) {
        EXPECT_FALSE(maps_.ResizeMap(row.map, row.width, row.height, 0));
        EXPECT_EQ(ui_.boxes.back().prompt.find("Error " + std::to_string(row.number) + " in"), 0u);
        EXPECT_EQ(Cell(maps_, 0, 0, 7), 1);
    }
}

TEST_F(MapChanges, AddMovesTheOthersUp) {
    self_->set.maps[0].corruption = clHigh;
    maps_.AddMap(0);
    ASSERT_EQ(maps_.NumberOfMaps(), 3);
    EXPECT_EQ(maps_.MapName(0), "NEW");
    EXPECT_EQ(DisplayName(maps_.MapName(1)), "First");
    EXPECT_EQ(maps_.CorruptMap(0), clHigh) << "the level stays with the place";
    EXPECT_EQ(maps_.CorruptMap(1), clHigh);
    const typMapPlane planes = Planes(maps_, 0);
    ASSERT_EQ(planes.Plane.size(), 3u);
    EXPECT_EQ(planes.Plane[2].Grid, std::vector<std::int32_t>(4096, 0));
    EXPECT_EQ(Cell(maps_, 2, 0, 0), 3) << "read from the file at its new place";
    maps_.AddMap(3);
    EXPECT_EQ(maps_.MapName(3), "NEW");
    EXPECT_TRUE(ui_.boxes.empty());

    maps_.AddMap(9);
    EXPECT_EQ(maps_.NumberOfMaps(), 5) << "the set has grown all the same";
    maps_.AddMap(-1);
    EXPECT_EQ(maps_.NumberOfMaps(), 6);
    EXPECT_EQ(ui_.boxes.size(), 2u);
    EXPECT_TRUE(Planes(maps_, 5).Plane.empty());
}

TEST_F(MapChanges, RemoveMovesTheOthersDownAndBlanksTheLast) {
    maps_.RemoveMap(2);
    EXPECT_EQ(maps_.NumberOfMaps(), 2) << "outside the list nothing changes";
    EXPECT_EQ(ui_.boxes.size(), 1u);
    maps_.RemoveMap(0);
    ASSERT_EQ(maps_.NumberOfMaps(), 1);
    EXPECT_EQ(Cell(maps_, 0, 1, 0), 4);
    maps_.RemoveMap(0);
    ASSERT_EQ(maps_.NumberOfMaps(), 1);
    EXPECT_EQ(maps_.MapName(0), "");
    EXPECT_EQ(Planes(maps_, 0).Plane.at(1).Grid, std::vector<std::int32_t>(4096, 0));
    EXPECT_EQ(self_->set.maps[0].record.width, 4) << "the record keeps its size";
    EXPECT_EQ(self_->set.maps[0].record.planeOffsets[0], 80);
}

TEST_F(MapChanges, TheHeaderHasASlotForEveryMap) {
    while (maps_.NumberOfMaps() < 101)
        maps_.AddMap(0);
    ASSERT_TRUE(maps_.SaveMapFile());
    EXPECT_EQ(folder_.Read("MAPHEAD.TST").size(), 2u + 4 * 101);
    maps_.RemoveMap(0);
    ASSERT_TRUE(maps_.SaveMapFile());
    EXPECT_EQ(folder_.Read("MAPHEAD.TST").size(), 2u + 4 * 100);
}

TEST_F(MapChanges, CellsAreWords) {
    for (const auto& [value, kept] : {std::pair{65'535, 65'535}, {-1, 65'535}, {-32'768, 32'768}}) {
        EXPECT_TRUE(maps_.SetMapCode(0, 0, 0, 0, value));
        EXPECT_EQ(Cell(maps_, 0, 0, 0), kept);
    }
    for (const std::int32_t value : {65'536, 70'000, -32'769}) {
        EXPECT_FALSE(maps_.SetMapCode(0, 0, 0, 0, value)) << value;
        EXPECT_FALSE(maps_.ResizeMap(0, 9, 9, value)) << value;
        EXPECT_EQ(ui_.LastPrompt(), "Error 6 in clsGameMaps.ResizeMap: Overflow");
    }
    EXPECT_EQ(Cell(maps_, 0, 0, 0), 32'768);
}

}  // namespace
}  // namespace tessaro
