// A small VGA set: saving, and the dictionaries that it is compressed with.
#include "graphics/small_vga_set.h"

namespace tessaro {
namespace {

using test::BuiltChunk;
using test::DemoBytes;
using test::EndScreen;
using test::Hex;
using test::Noise;
using test::OpenSet;
using test::VgaChunks;

TEST(VgaGraph, SavingKeepsWhatNobodyReplaced) {
    OpenSet open;
    const auto header = open.set.folder.Read("VGAHEAD.TST");
    const ByteArray data =
        test::operator+(open.set.folder.Read("VGAGRAPH.TST"), test::Ascii("behind"));
    open.set.folder.Write("VGAGRAPH.TST", data);
    ASSERT_TRUE(open.graph.InitializeGraphics());
    ASSERT_TRUE(open.graph.SaveVGAGraph());
    EXPECT_EQ(open.set.folder.Read("VGAHEAD.TST"), header);
    EXPECT_EQ(open.set.folder.Read("VGAGRAPH.TST"), data);
    EXPECT_EQ(open.events.seen, test::EventsOfASave(14));

    open.graph.SetChunkData(8, Hex("AABBCCDD"));  // sparse no longer
    open.graph.SetChunkData(11, Hex("55"));       // shorter than what a chunk usually holds
    open.graph.NumberOfChunks(16);
    ASSERT_TRUE(open.graph.SaveVGAGraph());
    clsVGAGraph again;
    ASSERT_TRUE(again.InitializeGraphics());
    EXPECT_EQ(again.NumberOfChunks(), 16);
    for (clsVGAGraph* reader : {&open.graph, &again}) {
        ByteArray bytes;
        ASSERT_TRUE(reader->LoadTessaro(8, bytes));
        EXPECT_EQ(bytes, Hex("AABBCCDD"));
        ASSERT_TRUE(reader->LoadTessaro(11, bytes));
        EXPECT_EQ(bytes, Hex("55"));
        ASSERT_TRUE(reader->LoadTessaro(9, bytes));
        EXPECT_EQ(bytes, DemoBytes(5));
        ASSERT_TRUE(reader->LoadTessaro(15, bytes));
        EXPECT_EQ(bytes, ByteArray(1));
    }
    open.graph.CloseFile();
    again.NumberOfChunks(7);
    ASSERT_TRUE(again.SaveVGAGraph());
    ASSERT_TRUE(again.InitializeGraphics());
    EXPECT_EQ(again.NumberOfChunks(), 7);
    EXPECT_EQ(again.ChunkDataType(6), vgEndScreen);
    EXPECT_TRUE(open.user.boxes.empty());
}

TEST(VgaGraph, ASaveKeepsItsHandlersFromChangingTheSet) {
    OpenSet open;
    const auto data = open.set.folder.Read("VGAGRAPH.TST");
    open.graph.SaveStatus = [&](std::int32_t, std::int32_t) {
        open.user.boxes.clear();
        open.graph.NumberOfChunks(3);
        open.graph.SetChunkData(2, Hex("01"));
        open.graph.ChunkDataType(2, vgFont);
        open.graph.CloseFile();
        EXPECT_FALSE(open.graph.InitializeGraphics());
        EXPECT_FALSE(open.graph.SaveVGAGraph());
        EXPECT_EQ(open.user.boxes.size(), 6u);
    };
    EXPECT_TRUE(open.graph.SaveVGAGraph());
    EXPECT_TRUE(open.events.EndedOnce(true));
    EXPECT_EQ(open.set.folder.Read("VGAGRAPH.TST"), data);
    open.graph.NumberOfChunks(3);
    EXPECT_EQ(open.graph.NumberOfChunks(), 3);
}

TEST(VgaGraph, AnotherDictionaryMeansCompressingAgain) {
    OpenSet open;
    std::array<std::int32_t, 256> counts{};
    for (std::size_t i = 0; i < counts.size(); ++i)
        counts[i] = static_cast<std::int32_t>(i) + 1;
    ConfiguredGame().compileDictionary = Huffmanize(counts);
    ConfiguredGame().compileDictionaryLoaded = true;
    ConfiguredGame().compileExtension = "NEW";  // elsewhere: the container stays on its files
    ASSERT_TRUE(open.graph.SaveVGAGraph());
    EXPECT_EQ(open.set.folder.Read("VGADICT.NEW"),
              WriteDictionary(ConfiguredGame().compileDictionary));
    const ByteArray picture = open.Load(3);

    Game& store = ConfiguredGame();
    for (std::string* path : {&store.vgaHeaderFile, &store.vgaGraphFile, &store.vgaDictFile})
        path->replace(path->size() - 3, 3, "NEW");
    clsVGAGraph again;
    ASSERT_TRUE(again.InitializeGraphics());
    const std::vector<BuiltChunk> chunks = VgaChunks();
    for (std::size_t i = 0; i < chunks.size(); ++i) {
        if (chunks[i].sparse || chunks[i].plain)
            continue;
        ByteArray bytes;
        ASSERT_TRUE(again.LoadTessaro(static_cast<std::int32_t>(i), bytes));
        EXPECT_EQ(bytes, chunks[i].bytes) << i;
    }
    EXPECT_EQ(open.Load(3), picture);

    // A value without a code would be lost silently.
    store.compileDictionary[0] = store.compileDictionary[1];
    open.events.seen.clear();
    EXPECT_FALSE(open.graph.SaveVGAGraph());
    EXPECT_TRUE(open.events.EndedOnce(false));
    ASSERT_GE(open.events.ErrorAt(), 0);
    EXPECT_NE(open.events.seen.at(open.events.seen.size() - 2).find("no code"), std::string::npos);
}

TEST(VgaGraph, ASaveThatIsNotPermittedDoesNothing) {
    OpenSet open;
    const auto before = ListFiles(open.set.folder.Path(), "*");
    ConfiguredGame().canCompileVGAGraph = false;
    EXPECT_FALSE(open.graph.SaveVGAGraph());
    EXPECT_EQ(open.events.seen,
              (std::vector<std::string>{"SaveError 0 The graphics of this game cannot be saved.",
                                        "SaveComplete False"}));
    ConfiguredGame().canCompileVGAGraph = true;
    ConfiguredGame().outputFolder.clear();
    EXPECT_FALSE(open.graph.SaveVGAGraph());
    DeleteFileAt(open.set.folder.File("Error.log"));
    EXPECT_EQ(ListFiles(open.set.folder.Path(), "*"), before);
}

// Whichever file operation fails, the old files are there and the edit is kept for the next save.
TEST(VgaGraph, AFailureAtAnyFileOperationLosesNothing) {
    std::optional<OpenSet> open;
    const auto files = [&] {
        std::vector<ByteArray> read;
        for (const char* name : {"VGAHEAD.TST", "VGAGRAPH.TST", "VGADICT.TST"})
            read.push_back(open->set.folder.Read(name));
        return read;
    };
    std::vector<ByteArray> before;
    test::EachFailure(
        25,
        [&] {
            open.reset();
            open.emplace();
            open->graph.SetChunkData(11, Hex("0102030405"));
            before = files();
        },
        [&] { return open->graph.SaveVGAGraph(); },
        [&](bool saved) {
            EXPECT_TRUE(open->events.EndedOnce(saved));
            if (!saved) {
                EXPECT_LT(open->events.ErrorAt(), 14) << "there is no such chunk";
                EXPECT_EQ(files(), before);
                EXPECT_EQ(open->Load(6), EndScreen());
                EXPECT_TRUE(open->graph.SaveVGAGraph());
            }
            clsVGAGraph again;
            ASSERT_TRUE(again.InitializeGraphics());
            ByteArray bytes;
            ASSERT_TRUE(again.LoadTessaro(11, bytes));
            EXPECT_EQ(bytes, Hex("0102030405"));
        });
}

TEST(VgaGraph, DictionariesOfTheHost) {
    OpenSet open;
    ConfiguredGame().compileDictionary = open.set.dictionary;
    EXPECT_EQ(open.graph.GetCompressedSize(Hex("010203")), 4);
    ByteArray data = Noise(100);
    std::int32_t bits = 0;
    for (const std::uint8_t byte : data)
        bits += open.graph.GetByteHuffLength(byte);
    EXPECT_EQ(open.graph.GetCompressedSize(data), 5 + bits / 8);
    EXPECT_FALSE(open.graph.BuildVGADICT(std::vector<std::int32_t>(255)));

    const std::vector<std::int32_t> counts(256, 3);
    const ByteArray before = open.set.folder.Read("VGADICT.TST");
    ASSERT_TRUE(open.graph.BuildVGADICT(counts));
    EXPECT_EQ(open.set.folder.Read("VGADICT.TST"), WriteDictionary(SharedStore().builtDictionary));
    EXPECT_EQ(open.set.folder.Read("backup/VGADICT.TST.001"), before);
    EXPECT_EQ(SharedStore().byteCounts[255], 3);
    EXPECT_EQ(ConfiguredGame().expandDictionary, open.set.dictionary);
}

}  // namespace
}  // namespace tessaro
