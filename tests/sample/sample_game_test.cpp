#include <algorithm>
#include <map>

#include "images/bmp_image.h"
#include "sample/art.h"
#include "sample/maps.h"
#include "sample/sounds.h"
#include "support/game.h"
#include "tessaro/tessaro.h"

namespace tessaro {
namespace {

using modAddBMPHeader::RemoveBMPHeader;

class SampleGame : public test::GameInFolder {
protected:
    void CheckMaps() {
        clsGameMaps maps;
        ASSERT_TRUE(maps.Initialize());
        ASSERT_EQ(maps.NumberOfMaps(), 3);
        const auto drawn = sample::MakeMaps();
        for (std::int32_t number = 0; number < 3; ++number) {
            const sample::SampleMap& map = drawn[static_cast<std::size_t>(number)];
            typMapPlane loaded;
            std::int32_t width = 0, height = 0;
            ASSERT_TRUE(maps.LoadMap(number, loaded, width, height));
            EXPECT_EQ(width, 64);
            EXPECT_EQ(height, 64);
            EXPECT_EQ(maps.CorruptMap(number), clNone);
            EXPECT_EQ(maps.MapName(number).substr(0, map.name.size()), map.name);
            ASSERT_EQ(loaded.Plane.size(), 3u);
            EXPECT_TRUE(std::equal(map.walls.begin(), map.walls.end(), loaded.Plane[0].Grid.begin(),
                                   loaded.Plane[0].Grid.end()));
            EXPECT_TRUE(std::equal(map.objects.begin(), map.objects.end(),
                                   loaded.Plane[1].Grid.begin(), loaded.Plane[1].Grid.end()));
            EXPECT_EQ(std::count(map.objects.begin(), map.objects.end(), 19), 1) << "one start";
            EXPECT_GE(std::count(map.walls.begin(), map.walls.end(), 100), 1) << "an exit";
        }
    }

    void CheckAudio() {
        clsAudioT audio;
        ASSERT_TRUE(audio.InitializeMusic());
        EXPECT_EQ(audio.NumberOfChunks(), 20);
        EXPECT_EQ(audio.StartMusic(), 18);
        EXPECT_EQ(audio.NumberOfSounds(), 6);
        EXPECT_EQ(audio.NumberOfSongs(), 2);
        const auto speaker = sample::MakeSpeakerEffects();
        const auto songs = sample::MakeSongs();
        ByteArray data;
        std::int32_t size = 0;
        ASSERT_TRUE(audio.LoadChunk(1, data, size));
        EXPECT_EQ(data, speaker[1]);
        ASSERT_TRUE(audio.LoadChunk(12, data, size));
        EXPECT_EQ(size, 0);
        ASSERT_TRUE(audio.LoadChunk(18, data, size));
        EXPECT_EQ(data, songs[0]);
    }

    static std::map<enmVGRAGRAPHTypes, int> Kinds(const clsVGAGraph& graphics) {
        std::map<enmVGRAGRAPHTypes, int> kinds;
        for (std::int32_t chunk = 0; chunk < graphics.NumberOfChunks(); ++chunk)
            ++kinds[graphics.ChunkDataType(chunk)];
        return kinds;
    }
};

TEST_F(SampleGame, IsTheSameOnEveryRun) {
    for (auto make : {sample::MakeSampleGame, sample::MakeEgaSampleGame}) {
        const auto first = make(), second = make();
        ASSERT_EQ(first.size(), 8u);
        for (std::size_t i = 0; i < first.size(); ++i)
            EXPECT_EQ(first[i].content, second[i].content) << first[i].name;
    }
}

TEST_F(SampleGame, MapsAndAudio) {
    Open(sample::MakeSampleGame());
    EXPECT_EQ(version_.Extension(), sample::kVgaExtension);
    EXPECT_FALSE(version_.EGAGraphics());
    EXPECT_FALSE(version_.MapsAreVersion10());
    CheckMaps();
    CheckAudio();
}

TEST_F(SampleGame, PageFile) {
    Open(sample::MakeSampleGame());
    clsVSwap pages;
    ASSERT_TRUE(pages.Initialize());
    const auto walls = sample::DrawWalls(), sprites = sample::DrawSprites();
    const auto sounds = sample::MakeDigitisedSounds();
    ASSERT_EQ(pages.NumberOfWalls(), static_cast<std::int32_t>(walls.size()));
    ASSERT_EQ(pages.NumberOfSprites(), static_cast<std::int32_t>(sprites.size()) + 1);
    ASSERT_EQ(pages.NumberOfSounds(), static_cast<std::int32_t>(sounds.size()));
    ByteArray data;
    for (std::size_t i = 0; i < walls.size(); ++i) {
        ASSERT_TRUE(pages.LoadWall(static_cast<std::int32_t>(i), data));
        EXPECT_EQ(RemoveBMPHeader(data).pixels, walls[i].Pixels()) << i;
    }
    for (std::size_t i = 0; i < sprites.size(); ++i) {
        ASSERT_TRUE(pages.LoadSprite(static_cast<std::int32_t>(i), data));
        EXPECT_EQ(RemoveBMPHeader(data).pixels, sprites[i].Pixels()) << i;
    }
    for (std::size_t i = 0; i < sounds.size(); ++i) {
        std::int32_t length = -1;
        ASSERT_TRUE(pages.LoadSound(static_cast<std::int32_t>(i), data, length));
        EXPECT_EQ(length, static_cast<std::int32_t>(sounds[i].size())) << i;
    }
}

TEST_F(SampleGame, Graphics) {
    Open(sample::MakeSampleGame());
    clsVGAGraph graphics;
    ASSERT_TRUE(graphics.InitializeGraphics());
    const auto pictures = sample::DrawPictures();
    const int count = static_cast<int>(pictures.size());
    EXPECT_EQ(graphics.StartFonts(), 1);
    EXPECT_EQ(graphics.NumberOfFonts(), 2);
    EXPECT_EQ(graphics.StartPics(), 3);
    EXPECT_EQ(graphics.NumberOfPics(), count);
    EXPECT_TRUE(graphics.CouldLoadNonPictureData());
    const std::map<enmVGRAGRAPHTypes, int> kinds = {
        {vgSTRUCTPIC, 1}, {vgFont, 2},    {vgPicture, count}, {vgTile8, 1},
        {vgEndScreen, 1}, {vgPalette, 1}, {vgDemo, 1},        {vgEndArt, 1}};
    EXPECT_EQ(Kinds(graphics), kinds);
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        ByteArray data;
        std::int32_t height = 0, width = 0;
        ASSERT_TRUE(
            graphics.LoadWolfPicture(3 + static_cast<std::int32_t>(i), data, height, width));
        EXPECT_EQ(width, pictures[i].Width());
        EXPECT_EQ(RemoveBMPHeader(data).pixels, pictures[i].Pixels()) << i;
    }
    const auto tiles = sample::DrawTiles();
    for (std::size_t i = 0; i < tiles.size(); ++i) {
        ByteArray data;
        ASSERT_TRUE(graphics.LoadTile8(static_cast<std::int32_t>(i), data));
        EXPECT_EQ(RemoveBMPHeader(data).pixels, tiles[i].Pixels()) << i;
    }
    ByteArray text;
    std::int32_t width = 0, height = 0;
    ASSERT_TRUE(graphics.ConvertTextToFont(2, "Keep 4.", text, width, height));
    EXPECT_EQ(width, (6 * 6 + 4) * 2);
    EXPECT_EQ(height, 18);
    EXPECT_EQ(std::count(text.begin(), text.begin() + width, 0), width) << "a gap above the ink";
}

TEST_F(SampleGame, SixteenColors) {
    Open(sample::MakeEgaSampleGame());
    EXPECT_EQ(version_.Extension(), sample::kEgaExtension);
    EXPECT_TRUE(version_.EGAGraphics());
    EXPECT_TRUE(version_.MapsAreVersion10());
    CheckMaps();
    CheckAudio();

    clsVGAGraph graphics;
    ASSERT_TRUE(graphics.InitializeGraphics());
    EXPECT_EQ(graphics.StartFonts(), 3);
    EXPECT_EQ(graphics.NumberOfFonts(), 2);
    EXPECT_EQ(graphics.StartPics(), 5);
    EXPECT_TRUE(graphics.CouldLoadNonPictureData());
    const std::map<enmVGRAGRAPHTypes, int> kinds = {
        {vgSTRUCTPIC, 1}, {vgBMPMaskHead, 1}, {vgSpriteHead, 1}, {vgFont, 2},
        {vgPicture, 6},   {vgBMPMask, 2},     {vgSprite, 6},     {vgTile8, 1},
        {vgTile8m, 1},    {vgTile16, 8},      {vgTile16M, 4},    {vgSparse, 2},
        {vgAreaNames, 1}, {vgEndArt, 1},      {vgDemo, 1},       {vgTrucEndScreen, 1}};
    EXPECT_EQ(Kinds(graphics), kinds);
    ByteArray data, mask;
    std::int32_t height = 0, width = 0;
    typSpriteHead head;
    const std::int32_t beetle = graphics.DataTypeChunk(vgSprite, 0);
    ASSERT_TRUE(graphics.LoadEGASprite(beetle, data, mask, height, width, head));
    EXPECT_EQ(width, head.Width * 8);
    EXPECT_EQ(head.Rx2, (width - 1) * 16);
    const auto tile = RemoveBMPHeader(mask);
    EXPECT_EQ(tile.pixels.front(), 0xFF) << "corners are transparent";
    EXPECT_EQ(std::count(tile.pixels.begin(), tile.pixels.end(), 0) > 100, true);
    EXPECT_TRUE(graphics.LoadWolfPicture(graphics.DataTypeChunk(vgTile16, 7), data, height, width));
    EXPECT_EQ(width, 16);
    EXPECT_TRUE(graphics.LoadCompleteMaskTile8(data, mask, height, width));
    EXPECT_EQ(width * height, 12 * 64);
    std::vector<std::string> names;
    ASSERT_TRUE(graphics.LoadAreaNames(graphics.DataTypeChunk(vgAreaNames, 0), names));
    EXPECT_EQ(names[14], "Under the Lantern");
}

}  // namespace
}  // namespace tessaro
