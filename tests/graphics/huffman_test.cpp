#include "huffman/huffman.h"

#include <gtest/gtest.h>
#include <literal/huffman_literal.h>

#include <algorithm>
#include <limits>
#include <random>

#include "support/support.h"

namespace tessaro {
namespace {

using Counts = std::array<std::int32_t, 256>;

/// A chain: byte 0 has the code 0, byte 1 the code 10, byte 2 the code 110 and so on, bits in the
/// order of the stream.
HuffDictionary Chain() {
    HuffDictionary dictionary{};
    for (int node = 254; node >= 0; --node)
        dictionary[static_cast<std::size_t>(node)] = {
            static_cast<std::int16_t>(254 - node),
            static_cast<std::int16_t>(node == 0 ? 255 : 256 + node - 1)};
    return dictionary;
}

Counts RandomCounts(std::mt19937& random, int kind) {
    Counts counts{};
    for (std::size_t i = 0; i < counts.size(); ++i) {
        const auto value = static_cast<std::int32_t>(random() % 1000);
        counts[i] = kind == 0   ? value
                    : kind == 1 ? value % 4
                    : kind == 2 ? 1 << (i % 20)
                                : (value % 8 == 0 ? value * 100 : 0);
    }
    return counts;
}

ByteArray RandomBytes(std::mt19937& random, std::size_t size, unsigned spread) {
    ByteArray bytes(size);
    for (std::uint8_t& byte : bytes)
        byte = static_cast<std::uint8_t>(random() % (1 + random() % spread));
    return bytes;
}

TEST(Huffmanize, PairsTheLightestSlotsLowestFirst) {
    Counts counts{};
    counts.fill(1000);
    counts[7] = 5;
    counts[3] = 6;
    counts[200] = 6;
    const HuffDictionary dictionary = Huffmanize(counts);
    EXPECT_EQ(dictionary[0], (HuffNode{7, 3}));
    EXPECT_EQ(dictionary[1], (HuffNode{200, 256}));  // 6, then 11 in the slot of byte 7
    EXPECT_EQ(dictionary[2], (HuffNode{257, 0}));    // 17, then the first of the thousands
    EXPECT_EQ(dictionary[255], HuffNode{});
}

TEST(Huffmanize, AllZeroCountsMakeAChain) {
    const HuffDictionary dictionary = Huffmanize(Counts{});
    EXPECT_EQ(dictionary[0], (HuffNode{0, 1}));
    EXPECT_EQ(dictionary[1], (HuffNode{256, 2}));
    EXPECT_EQ(dictionary[254], (HuffNode{256 + 253, 255}));
}

TEST(Huffmanize, IncompleteTreesFail) {
    constexpr std::int32_t kNever = std::numeric_limits<std::int32_t>::max();
    Counts counts{};
    struct Row {
        const char* name;
        std::size_t usable;
        std::int32_t number;
        const char* description;
    };
    for (const Row& row : {Row{"one retired", 255, 0, "Wierdo huffman error: headnode wasn't 254!"},
                           Row{"one left", 1, 0, "Wierdo huffman error: last code wasn't a node!"},
                           Row{"none left", 0, kSubscriptOutOfRange, "Subscript out of range"}}) {
        SCOPED_TRACE(row.name);
        counts.fill(kNever);
        std::fill_n(counts.begin(), row.usable, 1);
        try {
            Huffmanize(counts);
            ADD_FAILURE() << "no failure";
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.Number, row.number);
            EXPECT_EQ(failure.Description, row.description);
        }
    }
    counts.fill(kNever - 1);
    EXPECT_EQ(test::FailureOf([&] { Huffmanize(counts); }), kOverflow);
}

TEST(HuffCompress, LiteralBytes) {
    const HuffDictionary chain = Chain();
    struct Row {
        const char* name;
        ByteArray source, chunk;
    };
    for (const Row& row : {
             Row{"empty", {}, {0, 0, 0, 0}},
             Row{"three bytes are stored as none", {1, 2, 3}, {0, 0, 0, 0}},
             Row{"0 10 110 0, 7 bits", {0, 1, 2, 0}, {4, 0, 0, 0, 0b0011010}},
             Row{"8 bits end with a byte of none", {1, 1, 1, 1}, {4, 0, 0, 0, 0b01010101, 0}},
             Row{"across bytes", {0, 3, 3, 1}, {4, 0, 0, 0, 0b11101110, 0b010}},
         }) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(HuffCompress(row.source, chain), row.chunk);
        EXPECT_EQ(ExpandChunk(row.chunk, chain), row.source.size() < 4 ? ByteArray{} : row.source);
    }
}

TEST(HuffCompress, CodesTheStreamCannotHold) {
    HuffDictionary chain = Chain();
    EXPECT_EQ(DetermineHuffLength(31, chain), 32);
    EXPECT_EQ(DetermineHuffLength(255, chain), 255);
    EXPECT_NO_THROW(HuffCompress(ByteArray(4, 31), chain));
    EXPECT_THROW(HuffCompress(ByteArray(4, 32), chain), Failure);
    EXPECT_FALSE(CanCompress(ByteArray{32}, chain));

    chain[254].Bit0 = 1;  // byte 0 has no leaf now: it leaves no bits but counts
    EXPECT_EQ(HuffCompress(ByteArray{0, 0, 0, 0}, chain), (ByteArray{4, 0, 0, 0, 0}));
    EXPECT_FALSE(CanCompress(ByteArray{0}, chain));

    chain = Chain();
    chain[254].Bit1 = 0;  // nothing refers to node 253 now: the codes below do not read back
    EXPECT_EQ(DetermineHuffLength(1, chain), 1);
    EXPECT_FALSE(CanCompress(ByteArray{1}, chain));
    EXPECT_TRUE(CanCompress(ByteArray{0}, chain));
}

TEST(HuffExpand, StopsWhereItIsTold) {
    const HuffDictionary chain = Chain();
    const ByteArray stream{0b00011010, 0b0};  // 0, 1, 2, then zeros
    struct Row {
        const char* name;
        std::int32_t length;
        bool keepGoing;
        ByteArray dest, after;
        std::int32_t lengthAfter;
    };
    for (const Row& row : {
             Row{"at the length", 2, false, {9, 9, 9}, {0, 1, 9}, 2},
             Row{"nothing wanted", -3, false, {9}, {9}, -3},
             Row{"at the end of the source",
                 20,
                 false,
                 ByteArray(20, 9),
                 {0, 1, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 9, 9, 9, 9, 9, 9, 9},
                 20},
             // The eighth bit is the fifth symbol: the array grows for it, with an index to
             // spare, and decoding ends on reaching the last byte.
             Row{"onwards to the last byte", 2, true, {9, 9}, {0, 1, 2, 0, 0, 0}, 5},
         }) {
        SCOPED_TRACE(row.name);
        ByteArray dest = row.dest;
        std::int32_t length = row.length;
        HuffExpand(stream, dest, length, chain, row.keepGoing);
        EXPECT_EQ(dest, row.after);
        EXPECT_EQ(length, row.lengthAfter);
    }
    ByteArray small(1);
    std::int32_t length = 2;
    EXPECT_THROW(HuffExpand(stream, small, length, chain, false), Failure);
    // Hostile lengths take no memory that the stream could not fill.
    EXPECT_LE(ExpandStream(stream, std::numeric_limits<std::int32_t>::max(), chain).size(),
              65'535u);
    EXPECT_TRUE(ExpandChunk(ByteArray{9, 0, 0, 0}, chain).empty());
}

TEST(DetermineChunkSize, LeavesOutTheLastByte) {
    const HuffDictionary chain = Chain();
    struct Row {
        const char* name;
        ByteArray source;
        std::int32_t size;
        ByteArray dest;
    };
    for (const Row& row : {
             Row{"nothing", {}, 0, {0}},
             Row{"only a last byte", {0}, 0, {0}},
             Row{"whole codes", {0b00011010, 0xFF}, 5, {0, 1, 2, 0, 0, 0}},
             Row{"ends within a code", {0b10011010, 0xFF}, 5, {0, 1, 2, 0, 0, 0}},
         }) {
        SCOPED_TRACE(row.name);
        ByteArray dest;
        EXPECT_EQ(DetermineChunkSize(row.source, dest, chain), row.size);
        EXPECT_EQ(dest, row.dest);
    }
}

// Whatever the dictionary and the bytes: the tables give what the plain walk gives.
TEST(Huffman, AgreesWithTheLiteralWalk) {
    std::mt19937 random(20'220'503);
    for (int round = 0; round < 120; ++round) {
        SCOPED_TRACE(round);
        const Counts counts = RandomCounts(random, round % 4);
        HuffDictionary dictionary = Huffmanize(counts);
        ASSERT_EQ(dictionary, literal::Huffmanize(counts));
        if (round % 3 == 0)  // a foreign dictionary: anything, circles and unused leaves included
            for (int i = 0; i < 1 + round % 7; ++i)
                dictionary[random() % 256] = {static_cast<std::int16_t>(random() % 512),
                                              static_cast<std::int16_t>(random() % 65'536)};

        const ByteArray source = RandomBytes(random, random() % 3000, 256);
        if (std::ranges::all_of(source, [&](std::uint8_t value) {
                return DetermineHuffLength(value, dictionary) <= 32;
            })) {
            ByteArray chunk;
            literal::HuffCompress(source, chunk, dictionary);
            ASSERT_EQ(HuffCompress(source, dictionary), chunk);
        }
        const ByteArray stream = RandomBytes(random, random() % 600, 256);
        const auto length = static_cast<std::int32_t>(random() % 1500);
        for (const bool keepGoing : {false, true}) {
            ByteArray dest(static_cast<std::size_t>(length), 0xEE);
            ByteArray expected = dest;
            std::int32_t grown = length;
            std::int32_t expectedGrown = length;
            HuffExpand(stream, dest, grown, dictionary, keepGoing);
            literal::HuffExpand(stream, expected, expectedGrown, dictionary, keepGoing);
            ASSERT_EQ(dest, expected);
            ASSERT_EQ(grown, expectedGrown);
        }
        ByteArray measured;
        ByteArray expected(1);
        ASSERT_EQ(DetermineChunkSize(stream, measured, dictionary),
                  literal::DetermineChunkSize(stream, expected, dictionary));
        ASSERT_EQ(measured, expected);
    }
}

}  // namespace
}  // namespace tessaro
