// What the shareware game's own page file must give.
#include <algorithm>

#include "pagefile/page_index.h"
#include "pagefile/sprite_chunk.h"
#include "pagefile/vswap_fixture.h"
#include "support/game.h"

namespace tessaro {
namespace {

using test::AllItems;

class RealPageFile : public test::RealGame {
protected:
    void SetUp() override {
        RealGame::SetUp();
        if (IsSkipped())
            return;
        ASSERT_TRUE(set_.Initialize());
    }

    clsVSwap set_;
};

TEST_F(RealPageFile, EveryItemLoads) {
    EXPECT_EQ(set_.NumberOfWalls(), 106);
    EXPECT_EQ(set_.NumberOfSprites(), 436);
    EXPECT_EQ(set_.NumberOfSounds(), 46);
    EXPECT_EQ(set_.NumberOfChunks(), 663);
    const std::vector<ByteArray> items = AllItems(set_);
    ASSERT_EQ(items.size(), 588u);
    const auto withData = [&](std::size_t from, std::size_t count) {
        return std::count_if(items.begin() + static_cast<std::ptrdiff_t>(from),
                             items.begin() + static_cast<std::ptrdiff_t>(from + count),
                             [](const ByteArray& item) { return item.size() > 1; });
    };
    EXPECT_EQ(withData(0, 106), 64);
    EXPECT_EQ(withData(106, 436), 226);
    EXPECT_EQ(withData(542, 46), 20);
    EXPECT_EQ(items[542].size(), 5996u + 44);
    EXPECT_EQ(items[544].size(), 19995u + 44);
}

TEST_F(RealPageFile, SpritesCompileBackToWhatIsStored) {
    const PageIndex index = PageIndex::Open(ConfiguredGame(), *DiskFiles());
    int identical = 0;
    int oneZeroMore = 0;
    std::array<std::size_t, 3> total{};
    for (std::int32_t chunk = index.walls; chunk < index.walls + index.sprites; ++chunk) {
        const ByteArray stored = index.Read(chunk);
        if (stored.empty())
            continue;
        const ByteArray pixels = DecodeSprite(stored, 64);
        std::array<ByteArray, 3> compiled;
        for (std::size_t i = 0; i < 3; ++i) {
            compiled[i] = CompileSprite(pixels, 64, static_cast<enmVSWAPCompression>(i));
            EXPECT_EQ(DecodeSprite(compiled[i], 64), pixels) << chunk;
            total[i] += compiled[i].size();
        }
        EXPECT_LE(compiled[2].size(), compiled[1].size()) << chunk;
        if (compiled[0] == stored) {
            ++identical;
            continue;
        }
        // Otherwise the game's compiler put a zero after an odd pool and moved the lists by one.
        ByteReader in(compiled[0]);
        const std::size_t left = in.U16();
        const std::size_t columns = in.U16() - left + 1;
        const std::size_t lists = in.U16();
        ASSERT_EQ((lists - 4 - 2 * columns) % 2, 1u);
        ByteArray aligned = compiled[0];
        aligned.insert(aligned.begin() + static_cast<std::ptrdiff_t>(lists), 0);
        ByteReader offsets(compiled[0]);
        offsets.Seek(4);
        for (std::size_t i = 0; i < columns; ++i) {
            const unsigned moved = offsets.U16() + 1u;
            aligned[4 + 2 * i] = static_cast<std::uint8_t>(moved);
            aligned[5 + 2 * i] = static_cast<std::uint8_t>(moved >> 8);
        }
        EXPECT_EQ(aligned, stored) << chunk;
        ++oneZeroMore;
    }
    EXPECT_EQ(identical, 117);
    EXPECT_EQ(oneZeroMore, 109);
    EXPECT_EQ(total[0], 265773u);
    EXPECT_EQ(total[1], 255582u);
    EXPECT_LE(total[2], 248252u);
}

TEST_F(RealPageFile, SavingKeepsEveryItem) {
    const std::vector<ByteArray> items = AllItems(set_);
    const ByteArray original = Original("VSWAP.WL1");
    set_.CloseFile();
    for (const auto compression : {vcNone, vcOriginal, vcGood}) {
        folder_.Write("VSWAP.WL1", original);
        clsVSwap set;
        ASSERT_TRUE(set.Initialize());
        ASSERT_TRUE(set.SaveVSwap(compression));
        EXPECT_TRUE(AllItems(set) == items) << compression;
        clsVSwap again;
        ASSERT_TRUE(again.Initialize());
        EXPECT_TRUE(AllItems(again) == items) << compression;
        const PageIndex index = PageIndex::Open(ConfiguredGame(), *DiskFiles());
        EXPECT_EQ(index.walls, 106);
        EXPECT_EQ(index.soundStart, 542);
        const bool aligned = std::ranges::all_of(
            index.offsets, [](std::int32_t offset) { return offset % 512 == 0; });
        EXPECT_EQ(aligned, compression == vcOriginal);
        // Smaller than the game's own, all of whose chunks stand on such borders.
        EXPECT_LE(folder_.Read("VSWAP.WL1").size(), original.size());
    }
}

}  // namespace
}  // namespace tessaro
