// Export and import through the container: which file results, what the user is asked and told.
#include <gmock/gmock.h>

#include "maps/exchange/exchange_format.h"
#include "maps/exchange/iphone_map.h"
#include "support/saving.h"
#include "tessaro/game_maps.h"
#include "tessaro/iphone_settings.h"

namespace tessaro {
namespace {

using test::Ascii;
using test::Hex;
using test::Part;
using test::operator+;
using testing::Each;
using testing::ElementsAre;

/// A game of four maps: "Hall" and "Cave", 64 x 64; "Field", 128 x 128; and one that cannot be
/// loaded. Plane p of map m holds 16 m + p in every cell.
class Exchange : public test::InFolder {
protected:
    Exchange() {
        ByteWriter data, header;
        data.Text("TED5v1.0");
        header.U16(0xABCD);
        AddStored(data, header, "Hall", 64);
        AddStored(data, header, "Cave", 64);
        AddStored(data, header, "Field", 128);
        AddStored(data, header, "Lost", 64, 0x7000'0000);
        header.Fill(402 - header.Position(), 0);
        ConfiguredGame().gameMapsFile = folder_.Write("GAMEMAPS.WL1", data.View());
        ConfiguredGame().mapHeaderFile = folder_.Write("MAPHEAD.WL1", header.View());
        EXPECT_TRUE(maps.Initialize());
    }

    static void AddStored(ByteWriter& data, ByteWriter& header, const char* name,
                          std::uint16_t side, std::uint32_t misplaced = 0) {
        const std::size_t map = (header.Position() - 2) / 4;
        const std::size_t start = data.Position();
        for (std::size_t plane = 0; plane < 3; ++plane) {
            data.U16(8);  // bytes of the RLEW layer
            data.U16(static_cast<std::uint16_t>(side * side * 2));
            data.U16(0xABCD);
            data.U16(static_cast<std::uint16_t>(side * side));
            data.U16(static_cast<std::uint16_t>(16 * map + plane));
        }
        header.U32(static_cast<std::uint32_t>(data.Position()));
        for (std::size_t plane = 0; plane < 3; ++plane)
            data.U32(static_cast<std::uint32_t>(start + 10 * plane) + misplaced);
        for (int plane = 0; plane < 3; ++plane)
            data.U16(10);
        data.U16(side);
        data.U16(side);
        data.Padded(name, 16);
    }

    ByteArray Exported(std::int32_t map, std::string_view name, enmMapFileType type,
                       bool names = true) {
        EXPECT_TRUE(maps.ExportMap(map, folder_.File(name), names, type));
        return folder_.Read(name);
    }

    std::vector<ForeignMap> ReadBack(std::string_view name) {
        return ReadForeignMaps(folder_.Read(name), name, {});
    }

    /// The first cell of each plane of a map, after its side.
    std::vector<std::int32_t> Corner(std::int32_t map) {
        typMapPlane planes;
        std::int32_t width = 0, height = 0;
        EXPECT_TRUE(maps.LoadMap(map, planes, width, height));
        std::vector<std::int32_t> corner{width};
        for (const typMapGrid& plane : planes.Plane)
            corner.push_back(plane.Grid.front());
        return corner;
    }

    clsGameMaps maps;
};

// --- one map ------------------------------------------------------------------------------------

TEST_F(Exchange, ExportMapWritesTheFormatAskedFor) {
    const ByteArray kzr = Exported(1, "a.map", mftKZRMapFile);
    EXPECT_EQ(kzr.size(), 14 + 16 + 4 + 3 * 8192u);
    EXPECT_EQ(Part(kzr, 0, 36), Ascii("KZR3.1") + Hex("01000000 0300 1000") + Ascii("Cave") +
                                    ByteArray(12, 0) + Hex("4000 4000 1000"));
    EXPECT_EQ(Exported(1, "b.map", mftKZRMapFile, false)[14], 0xFF);
    EXPECT_EQ(Exported(1, "c.lvl", mftFloEditMapFile).size(), 9 + 16384u);
    EXPECT_EQ(Exported(1, "d.map", mftMapEditMapFile).size(), 16384u);
    EXPECT_EQ(Exported(2, "e.rtl", mftROTTRTLMapFile).size(), 6408 + 18u);
    EXPECT_EQ(Exported(2, "f.rtc", mftROTTRTCMapFile)[2], 'C');
    EXPECT_TRUE(ui_.boxes.empty());
}

TEST_F(Exchange, ExportMapKeepsTheFormatOfAnExistingFile) {
    Exported(0, "a.map", mftMapEditMapFile);
    enmMapFileType type = mftKZRMapFile;
    EXPECT_TRUE(maps.ExportMap(1, folder_.File("a.map"), true, type));
    EXPECT_EQ(type, mftMapEditMapFile);
    EXPECT_EQ(ReadBack("a.map")[0].planes.Plane[1].Grid[0], 17);

    folder_.Write("notes.txt", Ascii("no map"));
    type = mftKZRMapFile;
    EXPECT_TRUE(maps.ExportMap(1, folder_.File("notes.txt"), true, type));
    EXPECT_EQ(ReadBack("notes.txt")[0].name, "Cave");
}

TEST_F(Exchange, ExportMapRefusesBeforeAnExistingFileIsTouched) {
    const ByteArray old = Ascii("KZR3.1 but not really");
    struct {
        const char* name;
        ByteArray existing;
        std::int32_t map;
        enmMapFileType type;
        const char *prompt, *title;
        std::int32_t style;
    } const cases[] = {
        {"a", Ascii("x"), 0, mftUnknownMapFile, "Tried to save map to an unknown format",
         "Unknown format", mbExclamation},
        {"MAP.1", Ascii("y"), 0, mftKZRMapFile, "Tried to save map to an unknown format",
         "Unknown format", mbExclamation},
        {"a", Ascii("RTL"), 0, mftKZRMapFile, "ROTT maps must be 128x128.", "", mbExclamation},
        {"a", Ascii("FE1.0"), 2, mftKZRMapFile,
         "Error 1609 in clsGameMaps.ExportMap: FloEdit files hold maps of 64 x 64 cells only.",
         "clsGameMaps.ExportMap Error", mbCritical},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.prompt);
        folder_.Write(row.name, row.existing);
        enmMapFileType type = row.type;
        EXPECT_FALSE(maps.ExportMap(row.map, folder_.File(row.name), true, type));
        ASSERT_FALSE(ui_.boxes.empty());
        EXPECT_EQ(ui_.boxes.back().prompt, row.prompt);
        EXPECT_EQ(ui_.boxes.back().title, row.title);
        EXPECT_EQ(ui_.boxes.back().style & ~mbHelpButton, row.style);
        EXPECT_EQ(folder_.Read(row.name), row.existing);
    }
    enmMapFileType type = mftKZRMapFile;
    EXPECT_FALSE(maps.ExportMap(3, folder_.File("new"), true, type));  // cannot be loaded
    EXPECT_FALSE(maps.ExportMap(-1, folder_.File("new"), true, type));
    EXPECT_FALSE(folder_.Has("new"));
}

TEST_F(Exchange, AnInterruptedExportLeavesTheOldFile) {
    const ByteArray old = Exported(0, "a.map", mftKZRMapFile);
    test::EachFailure(
        5, [] {},
        [&] {
            enmMapFileType type = mftKZRMapFile;
            return maps.ExportMap(1, folder_.File("a.map"), true, type);
        },
        [&](bool done) {
            EXPECT_EQ(folder_.Read("a.map") == old, !done);
            EXPECT_FALSE(folder_.Has("a.map.new"));
        });
}

// --- iPhone -------------------------------------------------------------------------------------

TEST_F(Exchange, IPhoneSettingsAreAskedFor) {
    enmMapFileType type = mftiPhoneMapFile;
    EXPECT_FALSE(maps.ExportMap(1, folder_.File("a.iphone"), true, type));  // nobody answers
    EXPECT_FALSE(folder_.Has("a.iphone"));

    ui_.onForm = [](frmIPhoneSettings& form) {
        EXPECT_EQ(form.txtMapName(), "Cave");
        EXPECT_EQ(form.txtMusicName(), "music/GETTHEM.ogg");
        EXPECT_EQ(form.lblRLEWTag(), "ABCD");
        EXPECT_EQ(form.lblColor(0), 0x707070);
        EXPECT_EQ(form.lblColor(1), 0x383838);
        form.txtMusicName("music/a.ogg");
        form.vsbMinutes(1);
        form.vsbSeconds(30);
        form.cmdOK_Click();
    };
    const ByteArray first = Exported(1, "a.iphone", mftiPhoneMapFile);
    EXPECT_EQ(Part(first, 40, 24), Hex("0000C03F") + Ascii("01:30Cavemusic/a.ogg"));
    EXPECT_EQ(ReadBack("a.iphone")[0].planes.Plane[2].Grid[4095], 18);

    // The earlier file's settings come back, but the map is the new one.
    ui_.onForm = [](frmIPhoneSettings& form) {
        EXPECT_EQ(form.txtMapName(), "Cave");
        EXPECT_EQ(form.txtMusicName(), "music/a.ogg");
        EXPECT_EQ(form.vsbMinutes(), 1);
        EXPECT_EQ(form.vsbSeconds(), 30);
        form.cmdCancel_Click();
    };
    type = mftKZRMapFile;
    EXPECT_FALSE(maps.ExportMap(0, folder_.File("a.iphone"), true, type));
    EXPECT_EQ(type, mftiPhoneMapFile);
    EXPECT_EQ(folder_.Read("a.iphone"), first);
    ui_.onForm = [](frmIPhoneSettings& form) { form.cmdOK_Click(); };
    Exported(0, "a.iphone", mftKZRMapFile);
    EXPECT_EQ(ReadBack("a.iphone")[0].planes.Plane[2].Grid[0], 2);

    // A map that no iPhone file holds is refused before the form is shown.
    EXPECT_TRUE(maps.ResizeMap(2, 200, 200, 0));
    ui_.onForm = [](frmIPhoneSettings&) { FAIL() << "shown"; };
    type = mftiPhoneMapFile;
    EXPECT_FALSE(maps.ExportMap(2, folder_.File("b.iphone"), true, type));
}

TEST_F(Exchange, APlaneThatCannotBePackedIsNamedByItsStage) {
    for (std::int32_t x = 0; x < 64; ++x)
        for (std::int32_t y = 0; y < 64; ++y)
            ASSERT_TRUE(maps.SetMapCode(0, 1, x, y, 64 * y + x));
    ui_.onForm = [](frmIPhoneSettings& form) { form.cmdOK_Click(); };
    enmMapFileType type = mftiPhoneMapFile;
    EXPECT_FALSE(maps.ExportMap(0, folder_.File("a"), true, type));
    ASSERT_EQ(ui_.boxes.size(), 2u);
    EXPECT_EQ(ui_.boxes[0].title, "clsGameMaps.RLEWCompress Error");
    EXPECT_EQ(ui_.boxes[1].prompt, "Error during RLEWCompress.");
    EXPECT_FALSE(folder_.Has("a"));
}

// --- several maps -------------------------------------------------------------------------------

TEST_F(Exchange, ExportMultiMapGoesByTheExtension) {
    EXPECT_TRUE(maps.ExportMultiMap({1, 0}, folder_.File("a.lvl"), true));
    EXPECT_EQ(ReadBack("a.lvl").size(), 2u);
    EXPECT_EQ(ReadBack("a.lvl")[0].planes.Plane[0].Grid[0], 16);
    EXPECT_TRUE(maps.ExportMultiMap({2, 2}, folder_.File("a.Rtc"), true));
    EXPECT_EQ(folder_.Read("a.Rtc")[2], 'C');
    EXPECT_EQ(ReadBack("a.Rtc")[1].slot, 1);
    folder_.Write("a.txt", Ascii("old"));
    EXPECT_TRUE(maps.ExportMultiMap({0}, folder_.File("a.txt"), true));
    EXPECT_EQ(folder_.Read("a.txt"), Ascii("old")) << "no format, and nothing lost";
    EXPECT_TRUE(maps.ExportMultiMap({0}, folder_.File("b.txt"), true));
    EXPECT_TRUE(folder_.Read("b.txt").empty());
    EXPECT_TRUE(ui_.boxes.empty());

    EXPECT_FALSE(maps.ExportMultiMap({2, 0}, folder_.File("a.rtl"), true));
    EXPECT_EQ(ui_.LastPrompt(), "ROTT maps must be 128x128.");
    EXPECT_FALSE(
        maps.ExportMultiMap(std::vector<std::int32_t>(101, 2), folder_.File("a.rtl"), true));
    EXPECT_FALSE(folder_.Has("a.rtl"));
}

TEST_F(Exchange, MapsThatCannotBeLoadedAreLeftOut) {
    EXPECT_FALSE(maps.ExportMultiMap({0, 3, 2}, folder_.File("a.map"), true));
    EXPECT_EQ(ui_.LastPrompt(),
              "Error 1609 in clsGameMaps.ExportMultiMap: Error loading map data for file export");
    const auto kzr = ReadBack("a.map");
    ASSERT_EQ(kzr.size(), 2u);
    EXPECT_EQ(kzr[1].name, "Field");

    EXPECT_FALSE(maps.ExportMultiMap({3, 2}, folder_.File("a.rtl"), true));
    const auto rott = ReadBack("a.rtl");
    ASSERT_EQ(rott.size(), 1u);
    EXPECT_EQ(rott[0].slot, 1);
}

TEST_F(Exchange, FloEditGivesWayToKzrForOtherSizes) {
    EXPECT_TRUE(maps.ExportMultiMap({0, 2}, folder_.File("maps.LVL"), true));
    EXPECT_EQ(ui_.LastPrompt(),
              "FloEdit floor files do not support non-64x64 maps.  Saving as a KZR map files.");
    EXPECT_EQ(ui_.boxes.size(), 1u);
    EXPECT_FALSE(folder_.Has("maps.LVL"));
    const ByteArray written = folder_.Read("maps.map");
    EXPECT_EQ(ReadBack("maps.map").size(), 2u);

    EXPECT_FALSE(maps.ExportMultiMap({2}, folder_.File("maps.LVL"), true));
    EXPECT_EQ(ui_.LastPrompt(), "maps.map already exists. Overwrite?");
    EXPECT_EQ(ui_.boxes.back().title, "Overwrite File Confirmation");
    EXPECT_EQ(ui_.boxes.back().style, mbYesNo);
    EXPECT_EQ(folder_.Read("maps.map"), written);

    ui_.answers = {mrYes};
    EXPECT_TRUE(maps.ExportMultiMap({2}, folder_.File("maps.LVL"), true));
    EXPECT_EQ(ReadBack("maps.map").size(), 1u);
}

// --- import -------------------------------------------------------------------------------------

TEST_F(Exchange, ImportAsksBeforeMapsAreAdded) {
    EXPECT_TRUE(maps.ExportMultiMap({0, 1}, folder_.File("a.lvl"), true));
    EXPECT_FALSE(maps.ImportMap(3, folder_.File("a.lvl")));
    ASSERT_EQ(ui_.boxes.size(), 1u);
    EXPECT_EQ(ui_.boxes[0].prompt,
              "Importing this map file will result in maps being added.\r\n\r\n"
              "Current map count: 4\r\n\r\nEnd map count: 5\r\nContinue?");
    EXPECT_EQ(ui_.boxes[0].title, "Add Map Confirmation");
    EXPECT_EQ(ui_.boxes[0].style, mbYesNo + mbQuestion);
    EXPECT_EQ(maps.NumberOfMaps(), 4);

    ui_.answers = {mrYes};
    EXPECT_TRUE(maps.ImportMap(3, folder_.File("a.lvl")));
    EXPECT_EQ(maps.NumberOfMaps(), 5);
    EXPECT_THAT(Corner(3), ElementsAre(64, 0, 1, 0));  // the third plane is not in the file
    EXPECT_THAT(Corner(4), ElementsAre(64, 16, 17, 0));
    EXPECT_EQ(maps.MapName(3).substr(0, 4), "Lost");  // no name in the file
    EXPECT_EQ(maps.MapName(4), "NEW");
}

TEST_F(Exchange, ImportReplacesSizeNameAndPlanes) {
    Exported(2, "a.map", mftKZRMapFile);
    EXPECT_TRUE(maps.ImportMap(0, folder_.File("a.map")));
    EXPECT_EQ(maps.MapName(0), "Field");
    EXPECT_THAT(Corner(0), ElementsAre(128, 32, 33, 34));
    EXPECT_TRUE(ui_.boxes.empty());

    folder_.Write("p.map", Ascii("KZR3.1") + Hex("01000000 0500 0100 FF 0100 0100") +
                               Hex("0100 0200 0300 0400 FFFF"));
    EXPECT_TRUE(maps.ImportMap(1, folder_.File("p.map")));
    EXPECT_THAT(Corner(1), ElementsAre(1, 1, 2, 3));
    EXPECT_EQ(maps.MapName(1).substr(0, 4), "Cave");
    ASSERT_EQ(ui_.boxes.size(), 1u);
    EXPECT_EQ(ui_.boxes[0].prompt,
              "This file has maps that contain 5 map planes and this project is set up to use 3 "
              "planes.  The unused planes were not loaded");
    EXPECT_EQ(ui_.boxes[0].title, "Map Planes");
    EXPECT_EQ(ui_.boxes[0].style, mbInformation);
}

TEST_F(Exchange, FilesThatCannotBeReadChangeNothing) {
    ByteArray cut = Exported(0, "a.map", mftKZRMapFile);
    cut.pop_back();
    folder_.Write("cut.map", cut);
    folder_.Write("what.map", Ascii("What is this"));
    folder_.Write("short", Ascii("!I"));
    folder_.Write("b.rtl", Ascii("RTL") + Hex("00 02010000"));
    Exported(1, "b.map", mftKZRMapFile);
    EXPECT_EQ(maps.ImportMapsForClipboard(folder_.File("b.map")), 1);
    for (const char* name : {"cut.map", "what.map", "short", "b.rtl", "missing.map"}) {
        ui_.boxes.clear();
        EXPECT_FALSE(maps.ImportMap(4, folder_.File(name))) << name;
        EXPECT_EQ(ui_.boxes.size(), 1u) << name;
        EXPECT_EQ(maps.ImportMapsForClipboard(folder_.File(name)), 0) << name;
        EXPECT_EQ(ui_.boxes.size(), 2u) << name;
        EXPECT_EQ(ui_.boxes[0].style & ~mbHelpButton,
                  std::string_view(name) == "b.rtl" ? mbExclamation : mbCritical);
    }
    EXPECT_FALSE(maps.ImportMap(-1, folder_.File("b.map")));
    EXPECT_EQ(maps.NumberOfMaps(), 4);
    EXPECT_THAT(Corner(0), ElementsAre(64, 0, 1, 2));

    typMapPlane planes;
    std::int32_t width = 0, height = 0;
    std::string name;
    maps.GetClipboardMap(0, planes, width, height, name);
    EXPECT_EQ(name, "Cave");
    EXPECT_EQ(width, 64);
    ASSERT_EQ(planes.Plane.size(), 3u);
    EXPECT_THAT(planes.Plane[2].Grid, Each(18));
    ui_.boxes.clear();
    maps.GetClipboardMap(1, planes, width, height, name);
    EXPECT_EQ(ui_.boxes.size(), 1u);
    EXPECT_EQ(name, "Cave");
}

TEST_F(Exchange, FilesConvertWithoutAGame) {
    EXPECT_TRUE(maps.ExportMultiMap({0, 1}, folder_.File("a.lvl"), true));
    clsGameMaps none;
    ui_.answers = {mrYes};
    EXPECT_TRUE(none.ImportMap(0, folder_.File("a.lvl")));
    EXPECT_TRUE(none.ExportMultiMap({0, 1}, folder_.File("b.lvl"), true));
    EXPECT_EQ(folder_.Read("b.lvl"), folder_.Read("a.lvl"));
    EXPECT_EQ(ui_.boxes.size(), 1u);
}

}  // namespace
}  // namespace tessaro
