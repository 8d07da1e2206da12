// A small VGA set: opening, serving and replacing.
#include <algorithm>

#include "graphics/small_vga_set.h"

namespace tessaro {
namespace {

using test::BuiltChunk;
using test::Hex;
using test::operator+;
using test::Noise;
using test::OpenSet;
using test::PixelsOf;
using test::SetFolder;
using test::VgaChunks;

TEST(VgaGraph, EveryChunkIsTyped) {
    OpenSet open;
    const std::vector<enmVGRAGRAPHTypes> types{
        vgSTRUCTPIC, vgFont,   vgPicture, vgPicture, vgPicture, vgTile8, vgEndScreen,
        vgPalette,   vgSparse, vgDemo,    vgEndArt,  vgMisc,    vgMisc,  vgJAMP};
    for (std::size_t i = 0; i < types.size(); ++i)
        EXPECT_EQ(open.graph.ChunkDataType(static_cast<std::int32_t>(i)), types[i]) << i;
    EXPECT_EQ(open.graph.DemoLevel(0), 5);
    EXPECT_EQ(open.Load(12), ByteArray(1));  // one byte stands for no data
    EXPECT_TRUE(open.user.boxes.empty());
    EXPECT_EQ(open.graph.DemoLevel(1), -1);
    EXPECT_EQ(open.graph.ChunkDataType(14), vgUnknown);
}

TEST(VgaGraph, WhatCannotBeServedIsReported) {
    OpenSet open;
    clsVGAGraph& graph = open.graph;
    ByteArray data{7, 7};
    std::int32_t height = 1, width = 2;
    std::vector<std::int32_t> colors;
    struct Row {
        const char* name;
        std::function<void()> call;
        const char* title;
        const char* text;
    };
    for (const Row& row : {
             Row{"sparse", [&] { EXPECT_FALSE(graph.LoadTessaro(8, data)); },
                 "clsVGAGraph.LoadChunk Error", "Tried to load sparse tile at chunk 8"},
             Row{"no chunk", [&] { EXPECT_FALSE(graph.LoadTessaro(14, data)); },
                 "clsVGAGraph.LoadTessaro Error", "Subscript out of range"},
             Row{"no picture", [&] { EXPECT_FALSE(graph.LoadWolfPicture(5, data, height, width)); },
                 "clsVGAGraph.LoadWolfPicture Error", "Procedure was called for unsupported type!"},
             Row{"no palette chunk", [&] { graph.SetPaletteToChunk(99); },
                 "clsVGAGraph.SetPaletteToChunk Error", "Invalid chunk number: 99"},
             Row{"not a palette", [&] { graph.SetPaletteToChunk(9); },
                 "clsVGAGraph.SetPaletteToChunk Error", "Chunk number 9 is not a palette."},
             Row{"no palette bytes", [&] { EXPECT_FALSE(graph.LoadWolfPalette(9, colors)); },
                 "clsVGAGraph.LoadWolfPalette Error", "Subscript out of range"},
             Row{"no tile", [&] { EXPECT_FALSE(graph.LoadTile8(35, data)); },
                 "clsVGAGraph.LoadTile8 Error", "Subscript out of range"},
             Row{"no font", [&] { EXPECT_EQ(graph.NumberOfFontCharacters(2), 0); },
                 "clsVGAGraph.NumberOfFontCharacters Error", "Subscript out of range"},
             Row{"no colour", [&] { EXPECT_FALSE(graph.GetFontCharacter(1, 65, data, 256)); },
                 "clsVGAGraph.GetFontCharacter Error", "Overflow"},
         }) {
        SCOPED_TRACE(row.name);
        open.user.boxes.clear();
        row.call();
        ASSERT_FALSE(open.user.boxes.empty());
        EXPECT_EQ(open.user.boxes.back().title, row.title);
        EXPECT_NE(open.user.LastPrompt().find(row.text), std::string::npos)
            << open.user.LastPrompt();
    }
    EXPECT_EQ(colors, std::vector<std::int32_t>(256));
    EXPECT_EQ(height, 1);
    EXPECT_EQ(width, 2);
    EXPECT_EQ(SharedStore().palette[9], 9);
}

TEST(VgaGraph, PicturesTilesAndPalettes) {
    OpenSet open;
    ByteArray image;
    std::int32_t height = 0, width = 0;
    ASSERT_TRUE(open.graph.LoadWolfPicture(2, image, height, width));
    EXPECT_EQ(PixelsOf(image), Hex("0103 0507 0204 0608"));  // columns 0 and 4 come first
    ASSERT_TRUE(open.graph.LoadWolfPicture(4, image, height, width));
    EXPECT_EQ(PixelsOf(image), Hex("0204 0608 0103 0507"));  // two rows, the lower one first
    // Ten pixels across are two columns a plane: the last two stay empty.
    ASSERT_TRUE(open.graph.LoadWolfPicture(3, image, height, width));
    EXPECT_EQ(PixelsOf(image)[8], 0);
    EXPECT_EQ(PixelsOf(image)[9], 0);

    const ByteArray tiles = open.Load(5);
    ASSERT_TRUE(open.graph.LoadTile8(3, image));
    const ByteArray tile = PixelsOf(image);
    EXPECT_EQ(tile[7 * 8], tiles[192]);           // plane 0, first row
    EXPECT_EQ(tile[7 * 8 + 1], tiles[192 + 16]);  // plane 1
    EXPECT_EQ(tile[7], tiles[255]);               // plane 3, last byte
    ASSERT_TRUE(open.graph.LoadCompleteTile8(image, height, width));
    EXPECT_EQ(width, 40);
    EXPECT_EQ(height, 56);
    const ByteArray sheet = PixelsOf(image);
    EXPECT_EQ(sheet[55 * 40 + 24], tiles[192]);  // tile 3 in the first row of five
    EXPECT_EQ(sheet[47 * 40], tiles[64 * 5]);    // tile 5 begins the second row

    std::vector<std::int32_t> colors;
    ASSERT_TRUE(open.graph.LoadWolfPalette(7, colors));
    EXPECT_EQ(colors, std::vector<std::int32_t>(256, 16579836));
    open.graph.SetChunkData(7, Hex("40 00 80") + ByteArray(765));
    ASSERT_TRUE(open.graph.LoadWolfPalette(7, colors));
    EXPECT_EQ(colors[0], 0x02000100);  // what is above 63 spills over
    ASSERT_TRUE(open.graph.LoadWolfPicture(2, image, height, width, true));
    EXPECT_EQ(SharedStore().palette[0], 0x02000100);
}

TEST(VgaGraph, ImagesReplacePictures) {
    OpenSet open;
    ByteArray image, small;
    std::int32_t height = 0, width = 0;
    ASSERT_TRUE(open.graph.LoadWolfPicture(2, image, height, width));
    open.graph.SetChunkData(4, image);  // 8 x 1 in place of 4 x 2
    EXPECT_EQ(open.Load(4), Hex("0102 0304 0506 0708"));
    open.graph.GetPictureDimensions(4, width, height);
    EXPECT_EQ(width, 8);
    EXPECT_EQ(height, 1);
    EXPECT_EQ(open.Load(0), Hex("0800 0100 0A00 0200 0800 0100"));

    ByteArray sheet, again;
    ASSERT_TRUE(open.graph.LoadCompleteTile8(sheet, height, width));
    const ByteArray tiles = open.Load(5);
    open.graph.SetChunkData(5, sheet);
    EXPECT_EQ(open.Load(5), tiles);

    // What does not fit is refused and changes nothing; what only looks like an image is data.
    ASSERT_TRUE(open.graph.LoadTile8(0, small));
    EXPECT_TRUE(open.user.boxes.empty());
    open.graph.SetChunkData(5, small);
    EXPECT_NE(open.user.LastPrompt().find("The image must be 40 x 56 pixels."), std::string::npos);
    ByteArray odd = image;
    odd[18] = 6;
    open.graph.SetChunkData(2, odd);
    EXPECT_NE(open.user.LastPrompt().find("must be a multiple of 4"), std::string::npos);
    EXPECT_EQ(open.Load(2), Hex("0102 0304 0506 0708"));
    open.graph.SetChunkData(11, image);
    EXPECT_EQ(open.Load(11), image);
}

TEST(VgaGraph, TilesBeyondTheLayoutAreKept) {
    std::vector<BuiltChunk> chunks = VgaChunks();
    chunks[5].bytes = Noise(72 * 64, 4);
    OpenSet open(chunks);
    ByteArray sheet;
    std::int32_t height = 0, width = 0;
    EXPECT_EQ(open.Load(5).size(), 35u * 64);
    ASSERT_TRUE(open.graph.LoadCompleteTile8(sheet, height, width));
    open.graph.SetTile8Info(72, 8, 9);
    EXPECT_EQ(open.Load(5), chunks[5].bytes);
    open.graph.SetTile8Info(35, 5, 7);
    open.graph.SetChunkData(5, sheet);
    EXPECT_EQ(open.Load(5), chunks[5].bytes);
    EXPECT_TRUE(open.user.boxes.empty());
}

TEST(VgaGraph, AFailedOpeningLeavesNoSet) {
    OpenSet open;
    const auto header = open.set.folder.Read("VGAHEAD.TST");
    const auto data = open.set.folder.Read("VGAGRAPH.TST");
    std::vector<std::uint32_t> overlapping;
    for (int i = 0; i < 20; ++i)
        overlapping.insert(overlapping.end(), {0, static_cast<std::uint32_t>(data.size())});
    struct Row {
        ByteArray header, data;
        const char* text;
    };
    for (const Row& row :
         {Row{header, ByteArray(2), "Error 62 in clsVGAGraph.LoadPictureDimensions"},
          Row{WriteGraphicsHeader(overlapping, 3), data, "Error 9 in clsVGAGraph.LoadHeader"}}) {
        open.set.folder.Write("VGAHEAD.TST", row.header);
        open.set.folder.Write("VGAGRAPH.TST", row.data);
        EXPECT_FALSE(open.graph.InitializeGraphics());
        EXPECT_EQ(open.user.LastPrompt().find(row.text), 0u) << open.user.LastPrompt();
        EXPECT_EQ(open.graph.NumberOfChunks(), 0);
        EXPECT_FALSE(open.graph.SaveVGAGraph());
        EXPECT_NE(open.user.LastPrompt().find("No graphics are loaded."), std::string::npos);
        EXPECT_EQ(open.set.folder.Read("VGAGRAPH.TST"), row.data);
    }
}

TEST(VgaGraph, TextIsDrawn) {
    OpenSet open;
    ByteArray pixels;
    std::int32_t width = 0, height = 0;
    ASSERT_TRUE(open.graph.ConvertTextToFont(1, "A\r\nxAA", pixels, width, height, 1, 2));
    EXPECT_EQ(width, 10);
    EXPECT_EQ(height, 4);
    EXPECT_EQ(pixels, Hex("020102010201010101010101"
                          "010202010101010101010101"
                          "020102010202010201020101"
                          "010202010101020201010101"));
    ASSERT_TRUE(open.graph.ConvertTextToFont(1, "", pixels, width, height));
    EXPECT_TRUE(pixels.empty());
    EXPECT_EQ(width, 0);
    EXPECT_EQ(height, 2);
    ASSERT_TRUE(open.graph.GetFontCharacter(1, 'B', pixels, 4));
    EXPECT_EQ(pixels, ByteArray{4});
}

TEST(VgaGraph, OpeningNeedsItsFilesWhole) {
    struct Row {
        const char* file;
        const char* text;
    };
    for (const Row& row : {Row{"VGADICT.TST",
                               "Error 1 in clsVGAGraph.LoadHuffman: Huffman "
                               "dictionary file not found."},
                           Row{"VGAHEAD.TST", "Error 53 in clsVGAGraph.LoadHeader"},
                           Row{"VGAGRAPH.TST", "Error 53 in clsVGAGraph.LoadHeader"}}) {
        SetFolder set(VgaChunks(), false);
        test::ScriptedUserInterface user;
        DeleteFileAt(set.folder.File(row.file));
        clsVGAGraph graph;
        EXPECT_FALSE(graph.InitializeGraphics());
        ASSERT_EQ(user.boxes.size(), 1u) << row.file;
        EXPECT_EQ(user.boxes[0].prompt.find(row.text), 0u) << user.boxes[0].prompt;
    }
    // Any part of a data file opens or fails; what opens serves what is there.
    SetFolder set(VgaChunks(), false);
    const ByteArray data = set.folder.Read("VGAGRAPH.TST");
    for (std::size_t size = 0; size < data.size(); size += 37) {
        set.folder.Write("VGAGRAPH.TST", ByteSpan(data).first(size));
        test::ScriptedUserInterface user;
        clsVGAGraph graph;
        if (!graph.InitializeGraphics())
            continue;
        EXPECT_FALSE(graph.CouldLoadNonPictureData());
        ByteArray bytes;
        for (std::int32_t chunk = 0; chunk < graph.NumberOfChunks(); ++chunk)
            graph.LoadTessaro(chunk, bytes);
        EXPECT_FALSE(graph.SaveVGAGraph());
    }
}

TEST(VgaGraph, ExecutablesTellTheGame) {
    struct Row {
        const char* name;
        bool chunks, mapSize, blake;
    };
    for (const Row& row :
         {Row{nullptr, true, true, false}, Row{"bs_aog.exe", false, false, true},
          Row{"BS_FIRE.EXE", false, false, true}, Row{"C7.EXE", false, false, false},
          Row{"CORR7CD.EXE", false, false, false}, Row{"WOLF1V.EXE", false, false, false}}) {
        SetFolder set(VgaChunks(), false);
        if (row.name != nullptr)
            set.folder.Write(row.name, Hex("4D5A"));
        test::ScriptedUserInterface user;
        clsVGAGraph graph;
        ASSERT_TRUE(graph.InitializeGraphics());
        const Game& store = ConfiguredGame();
        EXPECT_EQ(store.canAddOrRemoveChunks, row.chunks);
        EXPECT_EQ(store.canChangeMapSize, row.mapSize);
        EXPECT_EQ(store.isBlakeStone, row.blake);
        graph.NumberOfChunks(20);
        EXPECT_EQ(graph.NumberOfChunks(), row.chunks ? 20 : 14);
    }
}

TEST(VgaGraph, A98GraphSet) {
    std::vector<BuiltChunk> chunks;
    chunks.push_back({Hex("08000000 0800 0200 0400 0400"), false, false, true});
    chunks.push_back({test::FontChunk(Hex("0F000F000F 000F0F0000"))});
    chunks.push_back({test::FontChunk(Hex("0F000F000F 000F0F0000"))});
    for (unsigned i = 3; i <= 12; ++i)
        chunks.push_back({Noise(16, i), false, false, true});
    chunks.push_back({Noise(40)});
    SetFolder set(chunks, false, 4, "98");
    for (std::string* path : {&ConfiguredGame().vgaDictFile, &ConfiguredGame().vgaGraphFile,
                              &ConfiguredGame().vgaHeaderFile})
        path->replace(path->rfind(kPathSeparator) + 1, 2, "VGA");
    test::ScriptedUserInterface user;
    clsVGAGraph graph;
    graph.J98Mode(true);
    for (int opening = 0; opening < 2; ++opening) {  // the names are cut once
        ASSERT_TRUE(graph.InitializeGraphics());
        EXPECT_EQ(graph.NumberOfChunks(), 14);
    }
    EXPECT_FALSE(ConfiguredGame().canCompileVGAGraph);
    ByteArray bytes;
    ASSERT_TRUE(graph.LoadTessaro(0, bytes));
    EXPECT_EQ(bytes.size(), 572u);
    EXPECT_EQ(test::Part(bytes, 4 * 135, 8), Hex("08001000 18002000"));
    ASSERT_TRUE(graph.LoadTessaro(12, bytes));
    EXPECT_EQ(bytes, Noise(16, 12));
    ASSERT_TRUE(graph.LoadTessaro(13, bytes));
    EXPECT_EQ(bytes, Noise(40));
    EXPECT_EQ(graph.ChunkDataType(13), vgPicture);
    EXPECT_EQ(graph.NumberOfFontCharacters(2), 256);
    std::int32_t height = 0, width = 0;
    EXPECT_TRUE(graph.LoadWolfPicture(3, bytes, height, width));  // 8 x 2: as large as it should be
    EXPECT_FALSE(graph.LoadWolfPicture(5, bytes, height, width));
    EXPECT_EQ(user.boxes.size(), 1u);
}

}  // namespace
}  // namespace tessaro
