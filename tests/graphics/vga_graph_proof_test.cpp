// What a save calls done opens again, as the game that it belongs to; what would not is refused.
#include <numeric>

#include "graphics/small_vga_set.h"
#include "images/bmp_image.h"
#include "support/game.h"

namespace tessaro {
namespace {

using test::Ascii;
using test::BuiltChunk;
using test::Hex;
using test::operator+;
using test::Noise;
using test::OpenSet;
using test::VgaChunks;

/// 35 tiles whose stream begins like a length field of 1 to 65535: after the first byte come 60 of
/// the value whose code is all zeros.
ByteArray TilesLikeALength(const HuffDictionary& dictionary) {
    std::int16_t zeros = dictionary[kRootNode].Bit0;
    while (zeros > 255)
        zeros = dictionary[static_cast<std::size_t>(zeros - 256)].Bit0;
    ByteArray tiles = Noise(35 * 64, 4);
    std::fill_n(tiles.begin() + 1, 60, static_cast<std::uint8_t>(zeros));
    for (tiles[0] = 0;; ++tiles[0]) {
        const std::int32_t length = ByteReader(CompressStream(tiles, dictionary)).I32();
        if (length > 0 && length < 65536)
            return tiles;
    }
}

TEST(GraphicsProof, TilesAreFoundWhateverTheirFirstBytes) {
    OpenSet open;
    const ByteArray tiles = TilesLikeALength(open.set.dictionary);
    open.graph.SetChunkData(5, tiles);
    ASSERT_TRUE(open.graph.SaveVGAGraph()) << open.user.LastPrompt();
    clsVGAGraph again;
    ASSERT_TRUE(again.InitializeGraphics());
    EXPECT_EQ(again.DataTypeChunk(vgTile8, 0), 5);
    ByteArray bytes;
    ASSERT_TRUE(again.LoadTessaro(5, bytes));
    EXPECT_EQ(bytes, tiles);
    EXPECT_EQ(again.ChunkDataType(11), vgMisc);
}

TEST(GraphicsProof, APictureOfItsTablesSizeIsNeverTheTiles) {
    std::vector<BuiltChunk> chunks = VgaChunks();
    chunks[5] = {Noise(50)};
    OpenSet open(chunks);
    open.graph.SetChunkData(2, modAddBMPHeader::MakeImage(320, 240, ByteArray(320 * 240, 1), 8));
    const ByteArray picture = open.Load(2);
    ASSERT_TRUE(open.graph.SaveVGAGraph()) << open.user.LastPrompt();
    clsVGAGraph again;
    ASSERT_TRUE(again.InitializeGraphics());
    ByteArray bytes;
    ASSERT_TRUE(again.LoadTessaro(2, bytes));
    EXPECT_EQ(bytes, picture);
    EXPECT_EQ(again.ChunkDataType(2), vgPicture);
    EXPECT_EQ(again.DataTypeChunk(vgTile8, 0), -1);
}

TEST(GraphicsProof, DataThatNoOpeningWouldRecogniseAreRefused) {
    OpenSet open;
    struct Row {
        std::int32_t chunk;
        ByteArray data;
        const char* text;
    };
    for (const Row& row :
         {Row{1, open.Load(1) + ByteArray(1), "Chunk 1 holds a font"},
          Row{2, ByteArray(9), "Chunk 2 has to have 8 bytes."},
          Row{5, ByteArray(34 * 64), "Chunk 5 holds tiles of 64 bytes, at least 2240 bytes"},
          Row{5, ByteArray(35 * 64 + 1), "Chunk 5 holds tiles of 64 bytes"}}) {
        const ByteArray before = open.Load(row.chunk);
        open.graph.SetChunkData(row.chunk, row.data);
        EXPECT_NE(open.user.LastPrompt().find(row.text), std::string::npos)
            << open.user.LastPrompt();
        EXPECT_EQ(open.Load(row.chunk), before);
    }
    ASSERT_TRUE(open.graph.SaveVGAGraph());
    EXPECT_EQ(open.graph.NumberOfFontCharacters(1), 256);
}

TEST(GraphicsProof, AChunkThatWouldBeTakenForAnotherKindFailsTheSave) {
    OpenSet open;
    const ByteArray before = open.set.folder.Read("VGAGRAPH.TST");
    open.graph.SetChunkData(9, Hex("01 02"));
    EXPECT_FALSE(open.graph.SaveVGAGraph());
    EXPECT_EQ(open.user.LastPrompt(),
              "Error 0 in clsVGAGraph.SaveVGAGraph: Chunk 9 would be taken for other data instead "
              "of a demo. Give it other data, or set its type to what it holds.");
    EXPECT_TRUE(open.events.EndedOnce(false));
    EXPECT_EQ(open.set.folder.Read("VGAGRAPH.TST"), before);
    EXPECT_EQ(open.Load(9), Hex("01 02"));
    open.graph.ChunkDataType(9, vgMisc);
    EXPECT_TRUE(open.graph.SaveVGAGraph()) << open.user.LastPrompt();

    open.graph.SetChunkData(11, ByteArray(768, 5));  // nothing in particular becomes a palette
    EXPECT_EQ(open.graph.ChunkDataType(11), vgPalette);
    open.graph.ChunkDataType(6, vgMisc);  // a note of the host's, which no file holds
    EXPECT_TRUE(open.graph.SaveVGAGraph()) << open.user.LastPrompt();
    // A table may count the tiles among the pictures, but not the screen behind them.
    const ByteArray table = Hex("0800 0100 0A00 0200 0400 0200 0800 0800");
    open.graph.SetChunkData(0, table);
    EXPECT_TRUE(open.graph.SaveVGAGraph()) << open.user.LastPrompt();
    open.graph.SetChunkData(0, table + Hex("0800 0800"));
    EXPECT_FALSE(open.graph.SaveVGAGraph());
    EXPECT_NE(open.user.LastPrompt().find("Chunk 6 would be taken for a picture instead of an end "
                                          "screen. Undo what was changed before it."),
              std::string::npos)
        << open.user.LastPrompt();
}

TEST(GraphicsProof, ALayoutOfTilesLastsFromTheNextOpeningToTheOneAfterIt) {
    OpenSet open;
    std::int32_t tiles = 0, wide = 0, high = 0;
    open.graph.SetTile8Info(72, 8, 9);
    for (const std::int32_t expected : {72, 72, 35}) {
        open.Load(5);
        open.graph.GetTile8Info(tiles, wide, high);
        EXPECT_EQ(tiles, expected);
        ASSERT_TRUE(open.graph.InitializeGraphics());
    }
}

TEST(GraphicsProof, ASaveWorksOnTheSettingsAtItsStart) {
    OpenSet open;
    const ByteArray header = open.set.folder.Read("VGAHEAD.TST");
    const ByteArray data = open.set.folder.Read("VGAGRAPH.TST");
    clsVGAGraph other;
    other.J98Mode(true);
    open.graph.SaveStatus = [&](std::int32_t chunk, std::int32_t) {
        Game& game = ConfiguredGame();
        if (chunk == 1) {
            EXPECT_FALSE(other.InitializeGraphics()) << "there is no such set";
        }
        game.compileExtension = "ELSE";
        game.canCompileVGAGraph = false;
        game.compileDictionaryLoaded = true;
        game.egaGraphics = true;
        open.graph.StartPics(7);
        open.graph.SetTile8Info(1, 1, 1);
        EXPECT_FALSE(open.graph.BuildVGADICT(std::vector<std::int32_t>(256)));
    };
    EXPECT_TRUE(open.graph.SaveVGAGraph()) << open.user.LastPrompt();
    EXPECT_EQ(open.set.folder.Read("VGAHEAD.TST"), header);
    EXPECT_EQ(open.set.folder.Read("VGAGRAPH.TST"), data);
    EXPECT_EQ(open.graph.StartPics(), 2);
    EXPECT_FALSE(open.graph.SaveVGAGraph()) << "which is not permitted any more";

    ConfiguredGame().canCompileVGAGraph = true;
    ConfiguredGame().compileDictionaryLoaded = false;
    open.graph.SaveStatus = [&](std::int32_t chunk, std::int32_t) {
        if (chunk == 3)
            open.graph.StopSave();
    };
    open.events.seen.clear();
    EXPECT_FALSE(open.graph.SaveVGAGraph());
    EXPECT_EQ(open.events.seen, (std::vector<std::string>{"SaveError 2 The save was stopped.",
                                                          "SaveComplete False"}));
    open.graph.StopSave();
    EXPECT_TRUE(open.user.LastPrompt().starts_with("Error 5 in clsVGAGraph.StopSave"));
}

TEST(GraphicsProof, TwoGamesAreSavedEachAsItself) {
    OpenSet open;
    const std::shared_ptr<Game> first = SharedStore().game;
    std::vector<BuiltChunk> chunks = VgaChunks();
    chunks[11].bytes = Noise(3000, 9);
    OpenSet second(chunks);
    const ByteArray untouched = second.set.folder.Read("VGAGRAPH.TST");
    EXPECT_NE(first, SharedStore().game);
    open.graph.SetChunkData(11, second.Load(11));
    ASSERT_TRUE(open.graph.SaveVGAGraph()) << second.user.LastPrompt();
    ASSERT_TRUE(second.graph.SaveVGAGraph());
    EXPECT_EQ(second.set.folder.Read("VGAGRAPH.TST"), untouched);
    SharedStore().game = first;
    clsVGAGraph again;
    ASSERT_TRUE(again.InitializeGraphics());
    ByteArray bytes;
    ASSERT_TRUE(again.LoadTessaro(11, bytes));
    EXPECT_EQ(bytes, chunks[11].bytes);
}

TEST(GraphicsProof, AFileThatAnotherProgramChangedIsReplacedAtTheSecondAttempt) {
    OpenSet open;
    const ByteArray changed = open.set.folder.Read("VGADICT.TST") + Ascii("more");
    open.set.folder.Write("VGADICT.TST", changed);
    open.graph.SetChunkData(11, Hex("0102030405"));
    EXPECT_FALSE(open.graph.SaveVGAGraph());
    EXPECT_TRUE(open.user.LastPrompt().starts_with("Error 70 in")) << open.user.LastPrompt();
    EXPECT_TRUE(open.graph.SaveVGAGraph()) << open.user.LastPrompt();
    EXPECT_EQ(open.set.folder.Read("backup/VGADICT.TST.001"), changed);

    // A dictionary that the container itself has built is no such change.
    std::vector<std::int32_t> counts(256);
    std::iota(counts.begin(), counts.end(), 1);
    ASSERT_TRUE(open.graph.BuildVGADICT(counts));
    clsVersion().LoadCompileVGADictFile(open.set.folder.File("VGADICT.TST"));
    ASSERT_TRUE(open.graph.SaveVGAGraph()) << open.user.LastPrompt();
    EXPECT_EQ(ConfiguredGame().expandDictionary, SharedStore().builtDictionary);
    open.graph.CloseFile();
    open.set.folder.Write("VGAGRAPH.TST", Ascii("another file"));
    ByteArray bytes;
    EXPECT_FALSE(open.graph.LoadTessaro(11, bytes));
    EXPECT_TRUE(open.user.LastPrompt().starts_with("Error 70 in clsVGAGraph.LoadChunk"));
}

class J98Game : public test::GameInFolder {};

TEST_F(J98Game, StaysReadOnlyWhenItsFolderIsFoundAgain) {
    Open(sample::MakeSampleGame());
    const std::string extension = version_.Extension();
    for (const char* name : {"HEAD.", "GRAPH.", "DICT."}) {
        ByteArray bytes = folder_.Read("VGA" + (name + extension));
        if (name == std::string("HEAD.")) {
            ByteWriter wide;
            for (const std::uint32_t offset : ReadGraphicsHeader(bytes, 3, false))
                wide.U32(offset);
            wide.U32(0);
            bytes = wide.Release();
        }
        folder_.Write("98" + (name + extension), bytes);
    }
    clsVGAGraph graph;
    graph.J98Mode(true);
    ASSERT_TRUE(graph.InitializeGraphics());
    const ByteArray data = folder_.Read("VGAGRAPH." + extension);
    ASSERT_TRUE(version_.LoadDataPath(folder_.Path()));
    EXPECT_FALSE(version_.CanCompileVGAGraph());
    EXPECT_EQ(version_.VGAHeaderFile(), folder_.File("98HEAD." + extension));
    EXPECT_FALSE(graph.SaveVGAGraph());
    EXPECT_NE(ui_.LastPrompt().find("cannot be saved"), std::string::npos);
    EXPECT_EQ(folder_.Read("VGAGRAPH." + extension), data);

    graph.J98Mode(false);  // the same container goes on to the other set of the folder
    ASSERT_TRUE(graph.InitializeGraphics());
    EXPECT_EQ(version_.VGAHeaderFile(), folder_.File("VGAHEAD." + extension));
    EXPECT_TRUE(version_.CanCompileVGAGraph());
    ui_.boxes.clear();
}

}  // namespace
}  // namespace tessaro
