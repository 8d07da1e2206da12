// A small 16-colour set with everything that such sets hold, typed and decoded.
#include <gtest/gtest.h>

#include <algorithm>

#include "graphics/set_builder.h"

namespace tessaro {
namespace {

using test::BuiltChunk;
using test::Hex;
using test::operator+;
using test::Noise;
using test::PixelsOf;

ByteArray AreaNamesText() {
    std::string text = "\r\n";
    for (int i = 0; i < 20; ++i)
        text += "@Area number " + std::to_string(i) + "\r\n";
    return test::Ascii(text + "\r\nrest");
}

std::vector<BuiltChunk> EgaChunks() {
    return {
        {Hex("0200 0200")},                                     // 0: one picture, 2 bytes x 2
        {Hex("0100 0200")},                                     // 1: one masked picture, 1 byte x 2
        {Hex("0100 0300 F0FF 2000 0000 1000 7000 2F00 0400")},  // 2: one sprite, 1 byte x 3
        {test::FontChunk(Hex("AF 5F"))},                        // 3
        {Hex("8001 0000 4002 0000 2004 0000 1008 00FF")},       // 4: the picture
        {Hex("0FF0 8000 8000 8000 8001")},                      // 5: the masked picture
        {Hex("FFFE00 010203 000000 000000 808080")},            // 6: the sprite
        {Noise(3328, 2), true},                                 // 7: 8 x 8 tiles
        {Noise(480, 3), true},                                  // 8: masked 8 x 8 tiles
        {Noise(128, 4), true},                                  // 9: a 16 x 16 tile
        {{}, false, true},                                      // 10: a sparse one
        {Noise(128, 5), true, false, false, "!ID!"},            // 11
        {Noise(160, 6), true},                                  // 12: a masked 16 x 16 tile
        {AreaNamesText()},                                      // 13
        {Hex("0700 0600 0102 0304 0506")},                      // 14: a demo of level 7
        {Noise(4000, 7)},                                       // 15: a text screen
        {test::Ascii("^Pan article^E")},                        // 16
        {Noise(40, 8)},                                         // 17
    };
}

class EgaGraphics : public testing::Test {
protected:
    test::SetFolder set{EgaChunks(), true};
    test::ScriptedUserInterface user;
    clsVGAGraph graph;
    ByteArray image, mask;
    std::int32_t height = 0, width = 0;

    void SetUp() override { ASSERT_TRUE(graph.InitializeGraphics()); }
    void TearDown() override {
        for (const test::ShownBox& box : user.boxes)
            ADD_FAILURE() << box.prompt;
    }
};

TEST_F(EgaGraphics, EveryChunkIsTyped) {
    const std::vector<enmVGRAGRAPHTypes> types{
        vgSTRUCTPIC, vgBMPMaskHead, vgSpriteHead, vgFont,          vgPicture, vgBMPMask,
        vgSprite,    vgTile8,       vgTile8m,     vgTile16,        vgSparse,  vgTile16,
        vgTile16M,   vgAreaNames,   vgDemo,       vgTrucEndScreen, vgEndArt,  vgMisc};
    for (std::size_t i = 0; i < types.size(); ++i)
        EXPECT_EQ(graph.ChunkDataType(static_cast<std::int32_t>(i)), types[i]) << i;
    EXPECT_TRUE(graph.CouldLoadNonPictureData());
    EXPECT_EQ(graph.StartFonts(), 3);
    EXPECT_EQ(graph.NumberOfFonts(), 1);
    EXPECT_EQ(graph.StartPics(), 4);
    EXPECT_EQ(graph.NumberOfPics(), 1);
    EXPECT_EQ(graph.NumberDataTypeChunks(vgTile16), 2);
    EXPECT_EQ(graph.DataTypeChunk(vgTile16, 1), 11);
    EXPECT_EQ(graph.DataTypeChunk(vgTile16, 2), -1);
    EXPECT_EQ(graph.DemoLevel(0), 7);
    EXPECT_FALSE(ConfiguredGame().canAddOrRemoveChunks);
    EXPECT_TRUE(ConfiguredGame().canChangeMapSize);

    const std::vector<BuiltChunk> chunks = EgaChunks();
    for (std::size_t i = 0; i < chunks.size(); ++i)  // each tile whole, whatever was measured
        if (!chunks[i].sparse) {
            ASSERT_TRUE(graph.LoadTessaro(static_cast<std::int32_t>(i), image));
            EXPECT_EQ(image, chunks[i].bytes) << i;
        }
}

TEST_F(EgaGraphics, PicturesHaveFourPlanes) {
    ASSERT_TRUE(graph.LoadWolfPicture(4, image, height, width));
    EXPECT_EQ(width, 16);
    EXPECT_EQ(height, 2);
    ASSERT_EQ(image.size(), 118u + 16u);
    // Planes, blue to bright: 8001 0000, 4002 0000, 2004 0000, 1008 00FF; bottom row first.
    EXPECT_EQ(PixelsOf(image), Hex("00000000 88888888 12480000 00008421"));

    ASSERT_TRUE(graph.LoadMaskPicture(5, image, mask, height, width));
    EXPECT_EQ(width, 8);
    EXPECT_EQ(height, 2);
    EXPECT_EQ(PixelsOf(image), Hex("00000008 F0000000"));
    EXPECT_EQ(PixelsOf(mask), Hex("FFFF0000 0000FFFF"));
    ASSERT_TRUE(graph.LoadWolfPicture(5, mask, height, width));
    EXPECT_EQ(mask, image);
}

TEST_F(EgaGraphics, SpritesComeWithTheirMaskAndEntry) {
    typSpriteHead head;
    ASSERT_TRUE(graph.LoadEGASprite(6, image, mask, height, width, head));
    EXPECT_EQ(width, 8);
    EXPECT_EQ(height, 3);
    EXPECT_EQ(PixelsOf(image), Hex("80000011 80000010 80000001"));
    EXPECT_EQ(PixelsOf(mask), Hex("00000000 FFFFFFF0 FFFFFFFF"));
    EXPECT_EQ(head.Width, 1);
    EXPECT_EQ(head.OrgX, -16);
    EXPECT_EQ(head.OrgY, 32);
    EXPECT_EQ(head.Ry2, 47);
    EXPECT_EQ(head.Shifts, 4);

    graph.SetMaskData(6, Hex("000100"));
    ASSERT_TRUE(graph.LoadEGASprite(6, image, mask, height, width, head));
    EXPECT_EQ(PixelsOf(mask), Hex("00000000 0000000F 00000000"));
    graph.SetMaskData(6, Hex("0001"));
    EXPECT_NE(user.LastPrompt().find("A mask of 8 x 3 pixels has 3 bytes."), std::string::npos);
    graph.SetMaskData(4, Hex("000100"));
    EXPECT_NE(user.LastPrompt().find("unsupported type"), std::string::npos);
    user.boxes.clear();
}

TEST_F(EgaGraphics, TilesMakeSheets) {
    graph.SetChunkData(7, ByteArray(32) +
                              Hex("80000000 00000000 00000000 00000000"
                                  "00000000 00000000 00000000 00000001") +
                              ByteArray(3328 - 64));
    ASSERT_TRUE(graph.LoadCompleteTile8(image, height, width));
    EXPECT_EQ(width, 64);
    EXPECT_EQ(height, 104);
    const ByteArray pixels = PixelsOf(image);
    const std::size_t row = 32;              // 64 pixels
    EXPECT_EQ(pixels[103 * row + 4], 0x10);  // tile 1, its first pixel blue
    EXPECT_EQ(pixels[96 * row + 7], 0x08);   // its last pixel bright
    EXPECT_EQ(std::ranges::count(pixels, 0), 3328 - 2);

    ASSERT_TRUE(graph.LoadTile8(1, image));  // 64 bytes a tile and 8 bits a pixel, as ever
    EXPECT_EQ(image.size(), 1078u + 64u);

    graph.SetChunkData(8, ByteArray(40 * 3) + Hex("FF00000000000000") + ByteArray(24) +
                              Hex("00000000000000F0") + ByteArray(480 - 160));
    ASSERT_TRUE(graph.LoadCompleteMaskTile8(image, mask, height, width));
    EXPECT_EQ(width, 24);
    EXPECT_EQ(height, 32);
    // Tile 3 begins the second row of 3 tiles: rows 8 to 15 from the top.
    EXPECT_EQ(PixelsOf(mask)[23 * 12], 0xFF);
    EXPECT_EQ(PixelsOf(image)[16 * 12], 0x88);
    EXPECT_EQ(std::ranges::count(PixelsOf(mask), 0), 32 * 12 - 4);

    ASSERT_TRUE(graph.LoadWolfPicture(9, image, height, width));
    EXPECT_EQ(width, 16);
    EXPECT_EQ(height, 16);
    EXPECT_EQ(image.size(), 118u + 128u);
}

TEST_F(EgaGraphics, ImagesComeBackAsPlanes) {
    for (const std::int32_t chunk : {4, 5, 9}) {
        ByteArray stored, again;
        ASSERT_TRUE(graph.LoadTessaro(chunk, stored));
        ASSERT_TRUE(graph.LoadWolfPicture(chunk, image, height, width));
        graph.SetChunkData(chunk, image);
        ASSERT_TRUE(graph.LoadTessaro(chunk, again));
        EXPECT_EQ(again, stored) << chunk;
    }
    ByteArray stored, again;
    ASSERT_TRUE(graph.LoadTessaro(7, stored));
    ASSERT_TRUE(graph.LoadCompleteTile8(image, height, width));
    graph.SetChunkData(7, image);
    ASSERT_TRUE(graph.LoadTessaro(7, again));
    EXPECT_EQ(again, stored);
}

TEST_F(EgaGraphics, FontsAndNames) {
    ByteArray pixels;
    ASSERT_TRUE(graph.GetFontCharacter(1, 'A', pixels, 3, 9));
    // The bits behind the first row fall on the second one, which overwrites them.
    EXPECT_EQ(pixels, Hex("09 03 09 03 09 03 03 03  03 09 03 09 09 03 03 03"));

    std::vector<std::string> names;
    ASSERT_TRUE(graph.LoadAreaNames(13, names));
    ASSERT_EQ(names.size(), 27u);
    EXPECT_EQ(names[0], "@Area number 0");
    EXPECT_EQ(names[19], "@Area number 19");
    EXPECT_EQ(names[20], "");
}

TEST(EgaGraphicsSet, TypesDependOnWhatCameBefore) {
    std::vector<BuiltChunk> chunks = EgaChunks();
    chunks.erase(chunks.begin() + 9, chunks.begin() + 13);  // no 16 x 16 tile before the texts
    chunks.resize(9);
    chunks.push_back({Noise(800, 9), true});  // a second masked set: the layout is the last's
    chunks.push_back({Noise(300, 10)});       // of no tile's size: by its length field
    chunks.push_back({test::Ascii("^P" + std::string(300, 'x'))});
    chunks.push_back({Noise(120, 11)});  // behind an article a length is believed
    test::SetFolder set(chunks, true);
    test::ScriptedUserInterface user;
    clsVGAGraph graph;
    ASSERT_TRUE(graph.InitializeGraphics());
    const std::vector<enmVGRAGRAPHTypes> types{vgTile8m, vgTile8m, vgMisc, vgEndArt, vgMisc};
    for (std::size_t i = 0; i < types.size(); ++i)
        EXPECT_EQ(graph.ChunkDataType(static_cast<std::int32_t>(8 + i)), types[i]) << i;
    ByteArray image, mask;
    std::int32_t height = 0, width = 0;
    ASSERT_TRUE(graph.LoadCompleteMaskTile8(image, mask, height, width));
    EXPECT_EQ(width, 40);
}

}  // namespace
}  // namespace tessaro
