#include "pagefile/sprite_chunk.h"

#include <literal/pagefile_literal.h>
#include <algorithm>
#include <random>

#include "pagefile/sprite_pools.h"
#include "support/support.h"

namespace tessaro {
namespace {

using test::Hex;

constexpr std::uint8_t t = kTransparent;

// Column 1 holds 7 8 in rows 1 and 2, column 2 an 8 in row 0 and 7 8 in rows 2 and 3.
const ByteArray kImage{t, t, t, t,   //
                       t, 7, 8, t,   //
                       8, t, 7, 8,   //
                       t, t, t, t};  // column by column

const ByteArray kUnshared =
    Hex("0100 0200  0D00 1500  07 08 08 07 08"
        "0600 0700 0200  0000"
        "0200 0A00 0000  0800 0900 0400  0000");

// What the games' own compiler makes of it: a zero byte after the odd pool.
const ByteArray kAligned =
    Hex("0100 0200  0E00 1600  07 08 08 07 08 00"
        "0600 0700 0200  0000"
        "0200 0A00 0000  0800 0900 0400  0000");

const ByteArray kShared =
    Hex("0100 0200  0A00 1200  07 08"
        "0600 0700 0200  0000"
        "0200 0900 0000  0800 0600 0400  0000");

TEST(SpriteChunk, LiteralBytesBothWays) {
    EXPECT_EQ(CompileSprite(kImage, 4, vcNone), kUnshared);
    EXPECT_EQ(CompileSprite(kImage, 4, vcOriginal), kShared);
    EXPECT_EQ(CompileSprite(kImage, 4, vcGood), kShared);
    for (const ByteArray& chunk : {kUnshared, kAligned, kShared})
        EXPECT_EQ(DecodeSprite(chunk, 4), kImage);

    // The first post starts so far down that its pixels less its row lie before the chunk.
    const ByteArray low = Hex("0000 0000  0700  09  2000 F7FF 1E00 0000");
    ByteArray image(256, t);
    image[15] = 9;
    EXPECT_EQ(CompileSprite(image, 16, vcNone), low);
    EXPECT_EQ(DecodeSprite(low, 16), image);

    // Nothing to see: one column with an empty list.
    EXPECT_EQ(CompileSprite(ByteArray(16, t), 4, vcGood), Hex("0000 0000 0600 0000"));
    EXPECT_EQ(DecodeSprite(Hex("0000 0000 0600 0000"), 4), ByteArray(16, t));
}

TEST(SpriteChunk, LongPostsOfLargeSpritesStayWhole) {
    ByteArray image(128 * 128, t);
    std::fill_n(image.begin() + 3 * 128 + 60, 10, std::uint8_t{1});   // across row 64
    std::fill_n(image.begin() + 3 * 128 + 100, 28, std::uint8_t{2});  // to the last row
    std::fill_n(image.begin() + 4 * 128, 64, std::uint8_t{3});        // to just before row 64
    const ByteArray chunk = CompileSprite(image, 128, vcNone);
    EXPECT_EQ(chunk.size(), 4u + 2 * 2 + (10 + 28 + 64) + 3 * 6 + 2 * 2);
    EXPECT_EQ(DecodeSprite(chunk, 128), image);
}

TEST(SpriteChunk, DamageIsAFailure) {
    for (std::size_t size = 0; size < kUnshared.size(); ++size)
        EXPECT_THROW(DecodeSprite(ByteSpan(kUnshared).first(size), 4), Failure) << size;
    const char* const damaged[] = {
        "0000 0400 1000 1000 1000 1000 1000 0000",  // five columns of four
        "0000 0000 0600 0A00 0600 0000 0000",       // a post that ends below the image
        "0000 0000 0600 0800 FFFF 0000 0000",       // pixels before the chunk
        "0000 0000 0600 0800 0D00 0000 0000",       // pixels behind it
        "0000 0000 FFFF 0000"};                     // a list behind it
    for (const char* chunk : damaged)
        EXPECT_THROW(DecodeSprite(Hex(chunk), 4), Failure) << chunk;
    // A start at or below the end draws nothing.
    EXPECT_EQ(DecodeSprite(Hex("0000 0000 0600 0200 FF7F 0800 0000"), 4), ByteArray(16, t));
    // An odd end is still no end of the list, not even 1.
    ByteArray pixel(16, t);
    pixel[0] = 7;
    EXPECT_EQ(DecodeSprite(Hex("0000 0000 0700 07 0100 0000 0000 0200 0600 0000 0000"), 4), pixel);
}

TEST(SpriteChunk, NumbersThatDoNotFitFail) {
    // Single pixels in a chequered pattern: the command lists pass 65,535.
    ByteArray image(256 * 256, t);
    for (std::size_t i = 0; i < image.size(); ++i)
        if ((i / 256 + i) % 2 == 0)
            image[i] = 1;
    // One wide solid area: the pool passes 32,767.
    for (const ByteArray& pixels : {image, ByteArray(256 * 256, 3)})
        EXPECT_EQ(test::FailureOf([&] { CompileSprite(pixels, 256, vcNone); }), kOverflow);
    EXPECT_THROW(CompileSprite(kImage, 4, static_cast<enmVSWAPCompression>(3)), Failure);
}

TEST(SpritePools, EveryRunIsWhereItsOffsetSays) {
    std::mt19937 random(20);
    const auto below = [&](unsigned limit) { return static_cast<unsigned>(random() % limit); };
    std::size_t reusedTotal = 0;
    std::size_t mergedTotal = 0;
    for (int round = 0; round < 600; ++round) {
        const unsigned colors = 1 + below(round % 2 == 0 ? 2 : 6);  // 0 among them
        std::vector<ByteArray> pixels(below(40));
        for (ByteArray& run : pixels) {
            run.resize(1 + below(round % 3 == 0 ? 6 : 40));
            std::ranges::generate(run, [&] { return static_cast<std::uint8_t>(below(colors)); });
        }
        const std::vector<ByteSpan> runs(pixels.begin(), pixels.end());
        const SpritePool reused = PoolReused(runs);
        literal::ReusedPool literalReused;
        for (std::size_t i = 0; i < runs.size(); ++i)
            ASSERT_EQ(reused.offsets[i], literalReused.Place(pixels[i]));
        ASSERT_EQ(reused.bytes, literalReused.bytes);
        const SpritePool merged = PoolMerged(runs);
        ASSERT_LE(merged.bytes.size(), reused.bytes.size());
        ASSERT_EQ(merged.bytes, literal::MergedRuns(pixels));
        for (std::size_t i = 0; i < runs.size(); ++i) {
            ASSERT_LE(merged.offsets[i] + runs[i].size(), merged.bytes.size());
            ASSERT_TRUE(std::ranges::equal(
                ByteSpan(merged.bytes).subspan(merged.offsets[i], runs[i].size()), runs[i]));
        }
        reusedTotal += reused.bytes.size();
        mergedTotal += merged.bytes.size();
    }
    EXPECT_LT(mergedTotal, reusedTotal * 9 / 10);
}

TEST(SpritePools, MergingPutsContainedRunsAndOverlapsTogether) {
    const std::vector<ByteArray> pixels{{3, 4, 5}, {1, 2, 3}, {4}, {5, 6}, {9, 9}, {3, 4, 5}};
    const std::vector<ByteSpan> runs(pixels.begin(), pixels.end());
    EXPECT_EQ(PoolUnshared(runs).bytes.size(), 14u);
    EXPECT_EQ(PoolReused(runs).bytes.size(), 10u);
    EXPECT_EQ(PoolMerged(runs).bytes.size(), 8u);  // 1 2 3 4 5 6 and 9 9

    // Each of these continues the other: one of the two links must stay open.
    const std::vector<ByteArray> ring{{5, 1, 2}, {2, 3, 5}};
    EXPECT_EQ(PoolMerged(std::vector<ByteSpan>(ring.begin(), ring.end())).bytes.size(), 5u);
}

}  // namespace
}  // namespace tessaro
