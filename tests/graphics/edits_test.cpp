// Many edits of a set in memory, drawn by seed: what a save calls done is what a fresh object
// reads; what it refuses leaves the files as they were and says why.
#include <algorithm>
#include <cstdlib>
#include <map>
#include <random>

#include "graphics/small_vga_set.h"
#include "images/bmp_image.h"
#include "support/game.h"

namespace tessaro {
namespace {

using test::Ascii;

/// More for a long run: TESSARO_EDITS.
int EditCount() {
    const char* given = std::getenv("TESSARO_EDITS");
    return given != nullptr ? std::atoi(given) : 150;
}

class Edits : public test::InFolder {
protected:
    /// Goes on with the configured game's three files in memory.
    void MoveToMemory() {
        Game& game = ConfiguredGame();
        for (std::string* path : {&game.vgaHeaderFile, &game.vgaGraphFile, &game.vgaDictFile}) {
            const std::string name = "game" + std::string(1, kPathSeparator) + NameOf(*path);
            memory->Set(name, ReadWholeFile(*path));
            *path = name;
        }
        game.files = memory;
        game.dataPath = game.outputFolder = "game";
        game.backupFolder = "backup";
        game.compileExtension = game.vgaDictFile.substr(game.vgaDictFile.size() - 3);
        game.canCompileVGAGraph = true;
    }

    std::size_t Draw(std::size_t below) { return random() % below; }
    ByteArray Bytes(std::size_t size) {
        ByteArray bytes(size);
        for (std::uint8_t& byte : bytes)
            byte = static_cast<std::uint8_t>(Draw(4) == 0 ? Draw(256) : 0);
        return bytes;
    }

    ByteArray Load(clsVGAGraph& graph, std::int32_t chunk) {
        ByteArray bytes;
        if (graph.ChunkDataType(chunk) == vgSparse)
            return bytes;
        EXPECT_TRUE(graph.LoadTessaro(chunk, bytes)) << ui_.LastPrompt();
        return bytes;
    }

    ByteArray ForType(clsVGAGraph& graph, std::int32_t chunk) {
        ByteArray bytes = Load(graph, chunk);
        std::int32_t width = 0, height = 0;
        switch (graph.ChunkDataType(chunk)) {
            case vgPicture:
                graph.GetPictureDimensions(chunk, width, height);
                if (Draw(4) == 0) {
                    width = static_cast<std::int32_t>(4 + 4 * Draw(100));
                    height = static_cast<std::int32_t>(1 + Draw(300));
                    return modAddBMPHeader::MakeImage(
                        width, height, Bytes(static_cast<std::size_t>(width * height)), 8);
                }
                return Bytes(static_cast<std::size_t>(width * height));
            case vgFont:
                bytes[770 + Draw(bytes.size() - 770)] ^= 15;
                return bytes;
            case vgTile8:
                std::fill_n(bytes.begin(), 64 * Draw(4), std::uint8_t{0});
                bytes[Draw(64)] = static_cast<std::uint8_t>(Draw(256));
                return bytes;
            case vgPalette:
                bytes[Draw(768)] = static_cast<std::uint8_t>(Draw(64));
                return bytes;
            case vgDemo:
                bytes.resize(5 + Draw(2000), 7);
                bytes[1] = static_cast<std::uint8_t>(bytes.size());
                bytes[2] = static_cast<std::uint8_t>(bytes.size() >> 8);
                return bytes;
            case vgEndScreen:
                bytes[7 + Draw(4000)] ^= 1;
                return bytes;
            case vgEndArt:
                return Ascii("^P" + std::string(Draw(300), 'x') + "^E");
            case vgJAMP:
                return Ascii("JAMP" + std::string(Draw(50), 'y'));
            case vgSTRUCTPIC:
                return bytes;
            default:
                return Bytes(Draw(600));
        }
    }

    void EditOnce(clsVGAGraph& graph) {
        const auto chunk =
            static_cast<std::int32_t>(Draw(static_cast<std::size_t>(graph.NumberOfChunks())));
        switch (Draw(12)) {
            case 0:
                graph.NumberOfChunks(graph.NumberOfChunks() + static_cast<std::int32_t>(Draw(4)));
                break;
            case 1:
                graph.NumberOfChunks(
                    std::max(20, graph.NumberOfChunks() - static_cast<std::int32_t>(Draw(3))));
                break;
            case 2:  // whatever it is, other data
                graph.SetChunkData(chunk, Bytes(Draw(9000)));
                break;
            case 3:
                if (const std::int32_t tiles = graph.DataTypeChunk(vgTile8, 0); tiles >= 0)
                    graph.SetChunkData(tiles, ForType(graph, tiles));
                break;
            default:
                graph.SetChunkData(chunk, ForType(graph, chunk));
        }
    }

    void ExpectSame(clsVGAGraph& graph, clsVGAGraph& again) {
        ASSERT_EQ(again.NumberOfChunks(), graph.NumberOfChunks());
        EXPECT_EQ(again.NumberOfFonts(), graph.NumberOfFonts());
        for (std::int32_t chunk = 0; chunk < graph.NumberOfChunks(); ++chunk) {
            EXPECT_EQ(again.ChunkDataType(chunk), graph.ChunkDataType(chunk)) << chunk;
            EXPECT_TRUE(Load(again, chunk) == Load(graph, chunk)) << chunk;
        }
    }

    void Run() {
        int saved = 0;
        std::map<std::string, int> refusals;
        auto graph = std::make_unique<clsVGAGraph>();
        ASSERT_TRUE(graph->InitializeGraphics()) << ui_.LastPrompt();
        for (int edit = 0; edit < EditCount(); ++edit) {
            SCOPED_TRACE(edit);
            const ByteArray before = memory->Read(ConfiguredGame().vgaGraphFile);
            for (std::size_t i = 1 + Draw(3); i-- > 0;)
                EditOnce(*graph);
            ui_.boxes.clear();
            if (graph->SaveVGAGraph()) {
                ++saved;
                clsVGAGraph again;
                ASSERT_TRUE(again.InitializeGraphics());
                ExpectSame(*graph, again);
                if (HasFailure())
                    return;
                continue;
            }
            ++refusals[ui_.LastPrompt()];
            EXPECT_TRUE(memory->Read(ConfiguredGame().vgaGraphFile) == before);
            graph = std::make_unique<clsVGAGraph>();
            ASSERT_TRUE(graph->InitializeGraphics());
        }
        RecordProperty("saved", saved);
        for (const auto& [text, count] : refusals)
            std::printf("%5d %s\n", count, text.c_str());
        std::printf("%5d of %d saved\n", saved, EditCount());
    }

    std::mt19937 random{7};
    std::shared_ptr<MemoryFiles> memory = std::make_shared<MemoryFiles>();
};

TEST_F(Edits, OfASmallSet) {
    const test::SetFolder set(test::VgaChunks(), false);
    MoveToMemory();
    Run();
}

TEST_F(Edits, OfARealGame) {
    TESSARO_NEEDS_GAME_DATA();
    Game& game = ConfiguredGame();
    game.vgaHeaderFile = JoinPath(*test::GameFolder(), "VGAHEAD.WL1");
    game.vgaGraphFile = JoinPath(*test::GameFolder(), "VGAGRAPH.WL1");
    game.vgaDictFile = JoinPath(*test::GameFolder(), "VGADICT.WL1");
    MoveToMemory();
    Run();
}

}  // namespace
}  // namespace tessaro
