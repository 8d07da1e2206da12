// The maps of a real game through every format that is written.
#include "support/game.h"
#include "tessaro/game_maps.h"
#include "tessaro/iphone_settings.h"

namespace tessaro {
namespace {

class ExchangeOfRealLevels : public test::RealGame {};

TEST_F(ExchangeOfRealLevels, EveryFormatGivesBackWhatItHolds) {
    ui_.onForm = [](frmIPhoneSettings& form) { form.cmdOK_Click(); };
    clsGameMaps maps;
    ASSERT_TRUE(maps.Initialize());
    struct {
        enmMapFileType type;
        std::size_t planes;
        std::int32_t side;
    } const formats[] = {{mftKZRMapFile, 3, 64},      {mftFloEditMapFile, 2, 64},
                         {mftMapEditMapFile, 2, 64},  {mftiPhoneMapFile, 3, 64},
                         {mftROTTRTLMapFile, 3, 128}, {mftROTTRTCMapFile, 3, 128}};
    for (std::int32_t map = 0; map < maps.NumberOfMaps(); ++map) {
        for (const auto& format : formats) {
            SCOPED_TRACE(testing::Message() << "map " << map << ", format " << format.type);
            ASSERT_TRUE(maps.ResizeMap(map, format.side, format.side, 1));
            typMapPlane before, after;
            std::int32_t width = 0, height = 0;
            ASSERT_TRUE(maps.LoadMap(map, before, width, height));
            enmMapFileType type = format.type;
            const std::string path = folder_.File(std::to_string(map) + "." + std::to_string(type));
            ASSERT_TRUE(maps.ExportMap(map, path, true, type));
            EXPECT_EQ(maps.ImportMapsForClipboard(path), 1);
            std::string name;
            maps.GetClipboardMap(0, after, width, height, name);
            EXPECT_EQ(width, format.side);
            for (std::size_t plane = 0; plane < format.planes; ++plane)
                EXPECT_EQ(after.Plane.at(plane).Grid, before.Plane.at(plane).Grid);
        }
    }
}

}  // namespace
}  // namespace tessaro
