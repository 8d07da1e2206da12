// The graphics of a real game, where there is one: what is known of them, typed from the data.
#include <gtest/gtest.h>
#include <literal/huffman_literal.h>

#include "graphics/graphics_header.h"
#include "huffman/dictionary.h"
#include "huffman/huffman.h"
#include "support/game.h"
#include "support/saving.h"
#include "tessaro/vga_graph.h"

namespace tessaro {
namespace {

constexpr const char* kHeader = "VGAHEAD.WL1";
constexpr const char* kData = "VGAGRAPH.WL1";
constexpr const char* kDictionary = "VGADICT.WL1";

class RealGraphics : public test::RealGame {
protected:
    void SetUp() override {
        RealGame::SetUp();
        if (IsSkipped())
            return;
        ASSERT_TRUE(graph.InitializeGraphics());
    }

    ByteArray Expanded(std::int32_t chunk) {
        ByteArray data;
        EXPECT_TRUE(graph.LoadTessaro(chunk, data)) << chunk;
        return data;
    }

    clsVGAGraph graph;
};

TEST_F(RealGraphics, EveryChunkIsTypedFromTheData) {
    EXPECT_EQ(graph.NumberOfChunks(), 156);
    EXPECT_EQ(graph.StartFonts(), 1);
    EXPECT_EQ(graph.NumberOfFonts(), 2);
    EXPECT_EQ(graph.StartPics(), 3);
    EXPECT_EQ(graph.NumberOfPics(), 144);
    EXPECT_TRUE(graph.CouldLoadNonPictureData());
    const std::vector<enmVGRAGRAPHTypes> externs{
        vgTile8, vgEndScreen, vgEndScreen, vgEndArt, vgDemo, vgDemo, vgDemo, vgDemo, vgEndArt};
    for (std::int32_t chunk = 0; chunk < 156; ++chunk)
        EXPECT_EQ(graph.ChunkDataType(chunk), chunk == 0  ? vgSTRUCTPIC
                                              : chunk < 3 ? vgFont
                                              : chunk < 147
                                                  ? vgPicture
                                                  : externs[static_cast<std::size_t>(chunk - 147)])
            << chunk;
    for (std::int32_t demo = 0; demo < 4; ++demo)
        EXPECT_EQ(graph.DemoLevel(demo), 2 * demo);
    std::int32_t tiles = 0, wide = 0, high = 0;
    graph.GetTile8Info(tiles, wide, high);
    EXPECT_EQ(tiles, 35);
    EXPECT_EQ(Expanded(147).size(), 2240u);
    std::int32_t width = 0, height = 0;
    ByteArray title;
    ASSERT_TRUE(graph.LoadWolfPicture(graph.StartPics() + 84, title, height, width));
    EXPECT_EQ(graph.NumberOfFontCharacters(2), 256);
}

// The counts of all expanded bytes give the game's own dictionary, and with it every chunk its
// stored bytes; three chunks have a mark glued behind them.
TEST_F(RealGraphics, DictionaryAndStreamsAreRebuilt) {
    std::vector<std::int32_t> counts(256);
    for (std::int32_t chunk = 0; chunk < graph.NumberOfChunks(); ++chunk)
        for (const std::uint8_t byte : Expanded(chunk))
            ++counts[byte];
    ASSERT_TRUE(graph.BuildVGADICT(counts));
    EXPECT_EQ(folder_.Read(kDictionary), Original(kDictionary));

    const HuffDictionary dictionary = ReadDictionary(Original(kDictionary));
    const ByteArray data = Original(kData);
    const std::vector<std::uint32_t> offsets = ReadGraphicsHeader(Original(kHeader), 3, false);
    std::vector<std::int32_t> others;
    for (std::int32_t chunk = 0; chunk < graph.NumberOfChunks(); ++chunk) {
        const ByteArray expanded = Expanded(chunk);
        const auto index = static_cast<std::size_t>(chunk);
        const ByteSpan stored =
            ByteSpan(data).subspan(offsets[index], offsets[index + 1] - offsets[index]);
        const ByteArray again = chunk == 147 ? CompressStream(expanded, dictionary)
                                             : HuffCompress(expanded, dictionary);
        if (std::equal(stored.begin(), stored.end(), again.begin(), again.end()))
            continue;
        others.push_back(chunk);
        EXPECT_EQ(test::Part(stored, 0), test::operator+(again, test::Ascii("!ID!"))) << chunk;
    }
    EXPECT_EQ(others, (std::vector<std::int32_t>{0, 2, 146}));
}

TEST_F(RealGraphics, SavedUntouchedItIsTheSame) {
    test::SaveEvents events;
    events.Listen(graph);
    ASSERT_TRUE(graph.SaveVGAGraph());
    EXPECT_EQ(events.seen, test::EventsOfASave(156));
    for (const char* name : {kHeader, kData, kDictionary}) {
        EXPECT_EQ(folder_.Read(name), Original(name)) << name;
        EXPECT_EQ(folder_.Read("backup/" + std::string(name) + ".001"), Original(name)) << name;
    }
}

TEST_F(RealGraphics, AReplacedPictureChangesItsChunkAlone) {
    constexpr std::int32_t kPicture = 20;
    ByteArray image;
    std::int32_t height = 0, width = 0;
    ASSERT_TRUE(graph.LoadWolfPicture(kPicture, image, height, width));
    image.back() ^= 1;  // the last pixel of the top row
    graph.SetChunkData(kPicture, image);
    ASSERT_TRUE(graph.SaveVGAGraph());

    const auto before = ReadGraphicsHeader(Original(kHeader), 3, false);
    const auto after = ReadGraphicsHeader(folder_.Read(kHeader), 3, false);
    const ByteArray oldData = Original(kData);
    const ByteArray newData = folder_.Read(kData);
    ASSERT_EQ(after.size(), before.size());
    const auto shift =
        static_cast<std::int64_t>(newData.size()) - static_cast<std::int64_t>(oldData.size());
    for (std::size_t i = 0; i < before.size(); ++i)
        EXPECT_EQ(after[i], before[i] + (i > kPicture ? shift : 0)) << i;
    EXPECT_TRUE(std::equal(oldData.begin(), oldData.begin() + before[kPicture], newData.begin()));
    EXPECT_TRUE(std::equal(oldData.begin() + before[kPicture + 1], oldData.end(),
                           newData.begin() + after[kPicture + 1], newData.end()));

    clsVGAGraph again;
    ASSERT_TRUE(again.InitializeGraphics());
    for (clsVGAGraph* reader : {&graph, &again}) {  // the container goes on with the new files
        ByteArray reread;
        ASSERT_TRUE(reader->LoadWolfPicture(kPicture, reread, height, width));
        EXPECT_EQ(reread, image);
        ASSERT_TRUE(reader->LoadWolfPicture(kPicture + 1, reread, height, width));
    }
}

TEST_F(RealGraphics, EveryChunkExpandsAsTheLiteralWalkDoes) {
    const HuffDictionary dictionary = ReadDictionary(Original(kDictionary));
    const ByteArray data = Original(kData);
    const std::vector<std::uint32_t> offsets = ReadGraphicsHeader(Original(kHeader), 3, false);
    for (std::int32_t chunk = 0; chunk < graph.NumberOfChunks(); ++chunk) {
        const auto index = static_cast<std::size_t>(chunk);
        const std::size_t field = chunk == 147 ? 0 : 4;
        const ByteSpan stream = ByteSpan(data).subspan(offsets[index] + field,
                                                       offsets[index + 1] - offsets[index] - field);
        const ByteArray expanded = Expanded(chunk);
        ByteArray expected(expanded.size());
        auto length = static_cast<std::int32_t>(expected.size());
        literal::HuffExpand(stream, expected, length, dictionary, false);
        EXPECT_EQ(expanded, expected) << chunk;
    }
}

}  // namespace
}  // namespace tessaro
