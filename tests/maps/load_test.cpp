// Reading map sets: a real one, the extended layouts, and files cut off anywhere.
#include "foundation/store.h"
#include "maps/game_maps_self.h"
#include "support/support.h"

namespace tessaro {
namespace {

class RealMaps : public testing::Test {
protected:
    void SetUp() override {
        TESSARO_NEEDS_GAME_DATA();
        test::FreshStore(folder_.Path());
        SharedStore().mapHeaderFile = JoinPath(*test::GameFolder(), "MAPHEAD.WL1");
        SharedStore().gameMapsFile = JoinPath(*test::GameFolder(), "GAMEMAPS.WL1");
        ASSERT_TRUE(maps_.Initialize());
    }

    test::TempFolder folder_;
    test::ScriptedUserInterface user_;
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
    EXPECT_TRUE(user_.boxes.empty());
}

TEST_F(RealMaps, PackAgainToTheStoredBytes) {
    const ByteArray data = ReadWholeFile(SharedStore().gameMapsFile);
    const auto& self = GameMapsInternals::SelfOf(maps_);
    for (std::int32_t map = 0; map < 10; ++map) {
        typMapPlane planes;
        std::int32_t width = 0, height = 0;
        ASSERT_TRUE(maps_.LoadMap(map, planes, width, height));
        const MapRecord& record = self.maps[static_cast<std::size_t>(map)].record;
        for (std::size_t plane = 0; plane < 3; ++plane) {
            ByteArray packed;
            ASSERT_TRUE(self.RLEWCompress(0xABCD, CellBytes(planes.Plane[plane]), packed, true));
            ASSERT_TRUE(self.CarmackCompress(packed));
            const auto stored = data.begin() + record.planeOffsets[plane];
            EXPECT_EQ(packed, ByteArray(stored, stored + record.planeLengths[plane]))
                << map << "/" << plane;
        }
    }
}

}  // namespace
}  // namespace tessaro
