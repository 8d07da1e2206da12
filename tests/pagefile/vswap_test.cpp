#include "tessaro/vswap.h"

#include "pagefile/vswap_fixture.h"

namespace tessaro {
namespace {

using test::Hex;

class VSwap : public test::VSwapFixture {
protected:
    std::string LastBox() const { return ui_.boxes.back().title + "|" + ui_.LastPrompt(); }
};

const ByteArray kOneByte{0};

TEST_F(VSwap, ItemsComeAsImages) {
    folder_.Write("vswap.tst", SmallSet());  // names are found in any case
    clsVSwap set;
    ASSERT_TRUE(set.Initialize());
    EXPECT_EQ(set.NumberOfWalls(), 2);
    EXPECT_EQ(set.NumberOfSprites(), 2);
    EXPECT_EQ(set.NumberOfSounds(), 3);
    EXPECT_EQ(set.NumberOfChunks(), 9);
    EXPECT_FALSE(set.HiResInput());

    ByteArray data;
    ASSERT_TRUE(set.LoadWall(0, data));
    ASSERT_EQ(data.size(), 5174u);
    // The pixel of column x, row y; the bottom row comes first.
    const auto pixel = [&](std::size_t x, std::size_t y) { return data[1078 + (63 - y) * 64 + x]; };
    EXPECT_EQ(pixel(0, 0), 0);
    EXPECT_EQ(pixel(0, 9), 9);
    EXPECT_EQ(pixel(20, 1), 61);
    ASSERT_TRUE(set.LoadSprite(0, data));
    EXPECT_EQ(pixel(5, 62), 1);
    EXPECT_EQ(pixel(5, 63), 2);
    EXPECT_EQ(pixel(5, 61), 255);
    EXPECT_EQ(pixel(6, 62), 255);

    std::int32_t length = 0;
    for (const auto& [sound, samples] : {std::pair{0, 5000}, {2, 1}}) {
        ASSERT_TRUE(set.LoadSound(sound, data, length));
        EXPECT_EQ(length, samples);
        EXPECT_EQ(data, Wav(static_cast<std::size_t>(samples)));
    }
    // Without data: one byte, and nothing is reported.
    EXPECT_TRUE(set.LoadWall(1, data));
    EXPECT_EQ(data, kOneByte);
    EXPECT_TRUE(set.LoadSprite(1, data));
    EXPECT_EQ(data, kOneByte);
    EXPECT_TRUE(set.LoadSound(1, data, length));
    EXPECT_EQ(data, kOneByte);
    EXPECT_EQ(length, 0);
    set.LoadChunk(1, data);
    EXPECT_EQ(data, kOneByte);
    set.LoadChunk(4, data);  // the first page of a sound takes its other pages along
    EXPECT_EQ(data, Samples(5000));
    EXPECT_TRUE(ui_.boxes.empty());

    EXPECT_FALSE(set.LoadWall(2, data));
    EXPECT_FALSE(set.LoadSprite(-1, data));
    EXPECT_FALSE(set.LoadSound(3, data, length));
    set.LoadChunk(9, data);
    ASSERT_EQ(ui_.boxes.size(), 4u);
    EXPECT_EQ(ui_.boxes[0].prompt, "Error 9 in clsVSwap.LoadWall: Subscript out of range");

    set.CloseFile();
    set.LoadChunk(0, data);
    EXPECT_EQ(data.size(), 4096u) << "read again";
    EXPECT_EQ(ui_.boxes.size(), 4u);
}

TEST_F(VSwap, SoundListsEndAndMarkAsTheGamesDo) {
    struct Case {
        const char* name;
        const char* list;  // over pages of 4096, 904, 0 (no data) and 20 bytes
        std::vector<std::int32_t> lengths;
    };
    const Case cases[] = {{"ZeroFirstIsASound", "0000 8813  0300 1400", {5000, 20}},
                          {"ZeroLaterEnds", "0100 8803  0000 8813  0300 1400", {904}},
                          {"NegativeIsNotCounted", "0000 8813  FFFF 0900  0300 1400", {5000, 20}},
                          {"Length65535IsEmpty", "0000 FFFF  0300 1400", {0, 20}},
                          {"NoDataKeepsItsPageLength", "0000 8813  0200 0A00", {5000, 0}},
                          {"Empty", "", {}}};
    for (const Case& row : cases) {
        PageFileImage image(1);
        image.AddChunk(WallChunk());
        image.AddSound(Samples(5000));
        image.AddSound({});
        image.AddSound(Samples(20));
        image.AddChunk(Hex(row.list));
        folder_.Write("VSWAP.TST", image.Assemble(1, 1));
        clsVSwap set;
        ASSERT_TRUE(set.Initialize()) << row.name;
        std::vector<std::int32_t> lengths;
        for (std::int32_t i = 0; i < set.NumberOfSounds(); ++i) {
            ByteArray data;
            std::int32_t length = -1;
            EXPECT_TRUE(set.LoadSound(i, data, length));
            EXPECT_EQ(data.size(), length == 0 ? 1u : static_cast<std::size_t>(length) + 44);
            lengths.push_back(length);
        }
        EXPECT_EQ(lengths, row.lengths) << row.name;
    }
    EXPECT_TRUE(ui_.boxes.empty());
}

TEST_F(VSwap, SetsWithoutSoundsAndHiResSetsOpen) {
    PageFileImage image(1);
    image.AddChunk(ByteArray(16384, 3));
    image.AddChunk(Hex("7F00 7F00 0700 09  0001 87FF FE00 0000"));
    folder_.Write("VSWAP.TST", image.Assemble(1, 2));
    clsVSwap set;
    ASSERT_TRUE(set.Initialize());
    EXPECT_TRUE(set.HiResInput());
    EXPECT_EQ(set.NumberOfSounds(), 0);
    ByteArray data;
    ASSERT_TRUE(set.LoadWall(0, data));
    EXPECT_EQ(data.size(), 1078u + 16384);
    ASSERT_TRUE(set.LoadSprite(0, data));
    EXPECT_EQ(data[1078 + 127], 9);
    EXPECT_TRUE(ui_.boxes.empty());
}

TEST_F(VSwap, DamageIsReportedWhereItIs) {
    clsVSwap set;
    EXPECT_FALSE(set.Initialize());
    EXPECT_EQ(LastBox(),
              "clsVSwap.LoadSwapFile Error|Error 53 in clsVSwap.LoadSwapFile: File not found");
    const ByteArray whole = SmallSet();
    const std::size_t tables = PageTable::Size(9);
    for (std::size_t size = 0; size <= whole.size(); size += size < tables ? 1 : 997) {
        ui_.boxes.clear();
        folder_.Write("VSWAP.TST", ByteSpan(whole).first(size));
        EXPECT_EQ(set.Initialize(), size >= tables) << size;
        ASSERT_EQ(ui_.boxes.size(), 1u);
        if (size < tables)
            continue;
        // The list lies at the end: walls and sprites open without the sounds.
        EXPECT_EQ(ui_.boxes[0].prompt, "Unable to load digital sounds");
        EXPECT_EQ(ui_.boxes[0].title, "Error loading digital sounds");
        EXPECT_EQ(ui_.boxes[0].style, mbInformation);
        EXPECT_EQ(set.NumberOfSprites(), 2);
    }
    ConfiguredGame().vswapFile.clear();
    ui_.boxes.clear();
    EXPECT_FALSE(set.Initialize());
    EXPECT_TRUE(ui_.boxes.empty());
}

TEST_F(VSwap, HostsReplaceAndAddItems) {
    folder_.Write("VSWAP.TST", SmallSet());
    clsVSwap set;
    ASSERT_TRUE(set.Initialize());
    set.SetChunkData(1, Bmp(64, 4));
    set.SetChunkData(3, Bmp(64, 5));
    set.SetSoundData(1, Wav(9));
    ByteArray data;
    std::int32_t length = 0;
    EXPECT_TRUE(set.LoadWall(1, data));
    EXPECT_EQ(data, Bmp(64, 4));
    EXPECT_TRUE(set.LoadSprite(1, data));
    EXPECT_EQ(data, Bmp(64, 5));
    EXPECT_TRUE(set.LoadSound(1, data, length));
    EXPECT_EQ(data, Wav(9));
    EXPECT_EQ(length, 9);

    set.NumberOfWalls(3);
    EXPECT_TRUE(set.LoadWall(2, data));
    EXPECT_EQ(data, kOneByte);
    set.SetChunkData(3, Bmp(64, 6));  // sprites now begin at 3
    EXPECT_TRUE(set.LoadSprite(0, data));
    EXPECT_EQ(data, Bmp(64, 6));
    set.NumberOfWalls(1);  // drops nothing
    EXPECT_EQ(set.NumberOfWalls(), 1);
    EXPECT_TRUE(set.LoadWall(1, data));
    EXPECT_EQ(data, Bmp(64, 4));
    EXPECT_TRUE(ui_.boxes.empty());

    set.SetChunkData(99, data);
    set.SetSoundData(3, data);
    set.NumberOfSounds(-1);
    set.NumberOfSprites(40000);
    EXPECT_EQ(ui_.boxes.size(), 4u);
    EXPECT_EQ(set.NumberOfSounds(), 3);
    EXPECT_EQ(set.NumberOfSprites(), 2);
}

TEST_F(VSwap, CompressedSizes) {
    clsVSwap set;
    EXPECT_EQ(set.GetSpriteCompressedSize(Bmp(64, 255), vcNone), 8);
    EXPECT_EQ(set.GetSpriteCompressedSize(Bmp(64, 1), vcNone), 4 + 128 + 4096 + 64 * 8);
    EXPECT_EQ(set.GetSpriteCompressedSize(Bmp(64, 1), vcOriginal), 4 + 128 + 64 + 64 * 8);
    EXPECT_EQ(set.GetSpriteCompressedSize(kOneByte, vcGood), 1);
    ByteArray deep = Bmp(64, 1);
    deep[28] = 24;
    deep.resize(54 + 64 * 64 * 3);
    EXPECT_EQ(set.GetSpriteCompressedSize(deep, vcNone), -1);
    EXPECT_TRUE(ui_.boxes.empty());
    EXPECT_EQ(set.GetSpriteCompressedSize(ByteArray(30), vcNone), -1);
    EXPECT_EQ(set.GetSpriteCompressedSize(ByteArray(10), vcNone), -1);
    EXPECT_EQ(ui_.boxes.size(), 1u);
    EXPECT_GT(set.GetSpriteCompressedSize(Bmp(128, 1), vcGood), 0);
    EXPECT_EQ(set.GetSpriteCompressedSize(Bmp(132, 1), vcGood), -1);
    EXPECT_EQ(LastBox(),
              "clsVSwap.GetSpriteCompressedSize Error|Error 5 in clsVSwap.GetSpriteCompressedSize: "
              "The BMP has 132 x 132 pixels. A sprite has at most 128 x 128.");
}

}  // namespace
}  // namespace tessaro
