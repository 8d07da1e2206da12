// RLEW and Carmack: the bytes they write and read, and their agreement with the literal codecs.
#include <literal/maps_literal.h>
#include <literal/seeded_planes.h>

#include <random>
#include <stdexcept>

#include "maps/far_words.h"
#include "maps/plane_coding.h"
#include "maps/rlew.h"
#include "support/support.h"

namespace tessaro {
namespace {

using literal::FromWords;
using test::FailureOf;
using test::Hex;

constexpr std::uint16_t kTag = 0xABCD;

TEST(Rlew, PacksRunsOfFourAndMore) {
    struct Row {
        const char* name;
        std::vector<int> plane, packed;
    };
    std::vector<int> longRun(70'000, 7);
    const Row rows[] = {
        {"three stay literal", {7, 7, 7, 9, 9, 9, 9, 9}, {7, 7, 7, kTag, 5, 9}},
        {"four become a run", {7, 7, 7, 7, 9}, {kTag, 4, 7, 9}},
        {"a long run splits", longRun, {kTag, 65'535, 7, kTag, 4'465, 7}},
        {"tag cells are not escaped", {kTag, 9, 9, 9, 9}, {kTag, kTag, 4, 9}},
        {"three tags are not escaped",
         {kTag, kTag, kTag, 1, 1, 1, 1, 1},
         {kTag, kTag, kTag, kTag, 5, 1}},
    };
    for (const Row& row : rows)
        EXPECT_EQ(RlewCompress(kTag, FromWords(row.plane), LengthPrefix::None),
                  FromWords(row.packed))
            << row.name;
    EXPECT_EQ(RlewCompress(kTag, FromWords({1, 1, 1, 1, 1, 1}), LengthPrefix::Short),
              Hex("0C00 CDAB 0600 0100"));
    EXPECT_EQ(RlewCompress(kTag, FromWords({1, 1, 1, 1, 1, 1}), LengthPrefix::Long),
              Hex("0C000000 CDAB 0600 0100"));
    EXPECT_EQ(RlewCompress(kTag, FromWords(longRun), LengthPrefix::Short),
              Hex("E022 CDAB FFFF 0700 CDAB 7111 0700"));  // the low half of 140,000
    EXPECT_EQ(FailureOf([] { RlewCompress(kTag, Hex("010001000100"), LengthPrefix::None); }), 9)
        << "the destination is one byte shorter than the source";
    EXPECT_EQ(FailureOf([] { RlewCompress(kTag, {}, LengthPrefix::None); }), 9);
}

TEST(Rlew, ExpandsAndTellsWhatWasMissing) {
    struct Row {
        const char* name;
        ByteArray source;
        std::int32_t length, left;
        ByteArray cells;
        enmCorruptLevel level;
    };
    const Row rows[] = {
        {"prefix", Hex("0800 CDAB 0300 0500 0600"), 0, 0, Hex("0500 0500 0500 0600"), clNone},
        {"no prefix", Hex("0100 0200 0300"), 4, 0, Hex("0100 0200 0000 0000"), clNone},
        {"ends early", Hex("0800 0100 0200"), 0, 4, Hex("0100 0200 0000 0000"), clHigh},
        {"odd length", Hex("0300 0100 0200"), 0, -1, Hex("0100 0200 0000 0000"), clNone},
        {"empty run", Hex("0200 CDAB 0000 0500 0600"), 0, 0, Hex("0600 0000 0000 0000"), clNone},
    };
    for (const Row& row : rows) {
        ByteArray cells(8);
        std::int32_t length = row.length;
        const RlewExpansion result =
            RlewExpand(kTag, row.source, cells, length, LengthPrefix::Short, Overrun::Fails);
        EXPECT_EQ(cells, row.cells) << row.name;
        EXPECT_EQ(length, row.left) << row.name;
        EXPECT_EQ(result.endedEarly, row.level == clHigh) << row.name;
    }

    const PlaneForm form{.rlewTag = kTag, .rlewAlone = true};
    enmCorruptLevel level = clNone;
    EXPECT_EQ(DecodePlane(Hex("0000 CDAB 0010 0500"), 4096, form, level),
              FromWords(std::vector<int>(4096, 5)));
    EXPECT_EQ(level, clLow) << "a prefix of 0 stands for 8192";
    level = clHigh;
    DecodePlane(Hex("0000 CDAB 0010 0500"), 4096, form, level);
    EXPECT_EQ(level, clHigh) << "only clNone is raised to clLow";
}

TEST(Rlew, FailsAtBothEndsOrCuts) {
    const ByteArray longRun = Hex("0400 CDAB 0500 0700");
    ByteArray cells(4);
    std::int32_t length = 0;
    EXPECT_EQ(FailureOf([&] {
                  RlewExpand(kTag, longRun, cells, length, LengthPrefix::Short, Overrun::Fails);
              }),
              9);
    length = 0;
    EXPECT_FALSE(
        RlewExpand(kTag, longRun, cells, length, LengthPrefix::Short, Overrun::Cuts).endedEarly);
    EXPECT_EQ(cells, Hex("0700 0700"));
    EXPECT_EQ(length, -6);
    for (const char* cut : {"04", "0400 01", "0400 CDAB", "0400 CDAB 0200", "0400 CDAB 0200 07"}) {
        length = 0;
        EXPECT_EQ(FailureOf([&] {
                      RlewExpand(kTag, Hex(cut), cells, length, LengthPrefix::Short, Overrun::Cuts);
                  }),
                  9)
            << cut;
    }
}

TEST(Carmack, ExpandsEveryCode) {
    struct Row {
        const char* name;
        ByteArray codes;
        std::int32_t length;
        ByteArray words;
    };
    const Row rows[] = {
        {"escaped near", Hex("00 A7 05"), 2, Hex("05A7")},
        {"escaped far", Hex("00 A8 05"), 2, Hex("05A8")},
        {"near copy repeats itself", Hex("3412 04 A7 01"), 10, Hex("3412 3412 3412 3412 3412")},
        {"far copy", Hex("0100 0200 0300 02 A8 0100"), 10, Hex("0100 0200 0300 0200 0300")},
        {"far copy of words to come", Hex("0100 02 A8 0100"), 6, Hex("0100 0000 0000")},
        {"half a word less", Hex("0100 0200 0300"), 5, Hex("0100 0200")},
        {"half a word more", Hex("0100 0200 0300 0400"), 7, Hex("0100 0200 0300 0400")},
        {"nothing to do", Hex(""), 0, Hex("")},
        {"negative", Hex(""), -6, Hex("")},
    };
    for (const Row& row : rows) {
        ByteArray words(row.words.size());
        CarmackExpand(row.codes, words, row.length, {});
        EXPECT_EQ(words, row.words) << row.name;
    }
}

TEST(CarmackExpansion, FailsOutsideItsArrays) {
    for (const char* codes : {"", "05", "0100", "00A7", "02A7", "01A7 01", "0100 02A7 02",
                              "0100 02A8", "0100 02A8 00", "0100 02A8 0300", "0100 04A8 0000"}) {
        ByteArray words(8);
        EXPECT_THROW(CarmackExpand(Hex(codes), words, 8, {}), Failure) << codes;
    }
}

// Planes that the usual coding would not give back: words that look like its tags and counts.
TEST(PlaneCoding, GivesBackWhateverAPlaneHolds) {
    const std::vector<std::uint16_t> odd{0xABCD, 0xA701, 0xA712, 0xA8FF, 0xA700, 0x0003,
                                         0x0001, 0xFFFF, 0x0000, 0x5AB,  0xCDAB, 0x8000};
    std::mt19937 random(14);
    for (int round = 0; round < 400; ++round) {
        const std::size_t cells = 1 + random() % 600;
        ByteWriter out;
        std::uint16_t word = 0;
        for (std::size_t i = 0; i < cells; ++i) {
            if (random() % 3 != 0)
                word = round % 4 == 0 ? static_cast<std::uint16_t>(random())
                                      : odd[random() % odd.size()];
            out.U16(word);
        }
        const PlaneForm form{round % 2 != 0 ? LengthPrefix::Long : LengthPrefix::Short, 0xABCD,
                             round % 5 == 0 ? CarmackTags{0x12, 0x34} : CarmackTags{},
                             round % 7 == 0};
        enmCorruptLevel level = clNone;
        const ByteArray cellBytes = out.Release();
        ASSERT_EQ(DecodePlane(EncodePlane(cellBytes, form), cells, form, level), cellBytes)
            << round;
        ASSERT_EQ(level, clNone) << round;
    }
}

TEST(Carmack, Packs) {
    const CarmackTags low{0x12, 0x00};
    struct Row {
        const char* name;
        ByteArray words, packed;
        CarmackTags tags;
    };
    const Row rows[] = {
        {"equal words",
         Hex("0700 0700 0700 0700 0700 0700 0700 0700"),
         Hex("1000 0700 0700 02A702 04A704"),
         {}},
        {"high tags are not escaped", Hex("05A7 06A8"), Hex("0400 05A7 06A8"), {}},
        {"low tags are", Hex("0512 0013 0500"), Hex("0600 001205 0013 000005"), low},
        {"a quotient of 0 from below", Hex("01FF 00FF"), Hex("0400 000001 00FF"), low},
        {"odd byte left out", Hex("0100 02"), Hex("0300 0100"), {}},
    };
    for (const Row& row : rows)
        EXPECT_EQ(CarmackCompress(row.words, LengthPrefix::Short, row.tags), row.packed)
            << row.name;

    // Two words repeated beyond the reach of a near copy stay literal, three become a far copy.
    std::vector<int> plane{1, 2, 3};
    for (int i = 0; i < 300; ++i)
        plane.push_back(1000 + i);
    plane.insert(plane.end(), {1, 2, 9, 1, 2, 3});
    const ByteArray packed = CarmackCompress(FromWords(plane), LengthPrefix::Long, {});
    EXPECT_EQ(test::Part(packed, packed.size() - 10), Hex("0100 0200 0900 03A8 0000"));
}

TEST(Codecs, AgreeWithTheLiteralOnes) {
    literal::PlaneMaker make(1);
    for (int round = 0; round < 3000; ++round) {
        const ByteArray plane = make.Any(round % 50 == 0 ? 5000 : 500);
        const CarmackTags tags = round % 5 == 0 ? CarmackTags{0x01, 0x00} : CarmackTags{};
        const ByteArray packed = CarmackCompress(plane, LengthPrefix::Long, tags);
        ASSERT_EQ(packed, literal::CarmackCompress(plane, true, tags.nearTag, tags.farTag))
            << round;

        ByteArray runs, literalRuns;
        const bool held =
            FailureOf([&] { runs = RlewCompress(kTag, plane, LengthPrefix::Short); }) == 0;
        try {
            literalRuns = literal::RlewCompress(kTag, plane, 2);
            EXPECT_TRUE(held) << round;
        } catch (const std::exception&) {
            EXPECT_FALSE(held) << round;
        }
        ASSERT_EQ(runs, literalRuns) << round;
    }
}

TEST(Codecs, AgreeWithTheLiteralOnesOnManyWords) {
    literal::PlaneMaker make(4);
    for (const int values : {2, 3, 4, 16}) {
        ByteArray plane = make.Random(9'000, values);
        const ByteArray runs = make.Runs(3'000, 3 + make.Below(255), values);
        plane.insert(plane.begin() + 8'000, runs.begin(), runs.end());
        EXPECT_EQ(CarmackCompress(plane, LengthPrefix::Long, {}),
                  literal::CarmackCompress(plane, true, 0xA7, 0xA8))
            << values;
    }
}

// Behind word 65,535 matches outside the reach of a near copy cannot be named. Blocks that repeat
// with small changes offer every mixture of the two at each place.
TEST(Codecs, AgreeWithTheLiteralOnesOnFarPlaces) {
    literal::PlaneMaker make(2);
    for (const std::size_t period : {100u, 250u, 300u}) {
        const ByteArray block = make.Random(period, 40);
        ByteArray plane;
        while (plane.size() < 140'000) {
            plane.insert(plane.end(), block.begin(), block.end());
            plane[plane.size() - 2 * (1 + make.Below(period))] = 99;
        }
        EXPECT_EQ(CarmackCompress(plane, LengthPrefix::Long, {}),
                  literal::CarmackCompress(plane, true, 0xA7, 0xA8))
            << period;
    }
}

// Matches so many and so alike that the far places are searched in their tree.
TEST(Codecs, AgreeWithTheLiteralOnesWhereMatchesAbound) {
    literal::PlaneMaker make(5);
    ByteArray plane = make.Periodic(50'000, 1'000);
    const ByteArray separated = make.Separated(17'000, 9);
    plane.insert(plane.end(), separated.begin(), separated.end());
    EXPECT_EQ(CarmackCompress(plane, LengthPrefix::Long, {}),
              literal::CarmackCompress(plane, true, 0xA7, 0xA8));
}

TEST(FarWords, FindWhatASearchOfEveryPositionFinds) {
    constexpr std::size_t kPlaces = 600;
    constexpr std::size_t kCount = kFarReach + kLongestCopy + kPlaces;
    literal::PlaneMaker make(6);
    for (ByteArray plane :
         {make.Random(kCount, 2), make.Random(kCount, 16), make.Runs(kCount, 3, 4),
          make.Separated(kCount, 7), make.Tiled(kCount, 64, 50), make.Equal(kCount)}) {
        plane.resize(plane.size() + kSpareWords * kWordBytes);
        const FarWords words(plane.data());
        for (std::size_t tried = 0; tried < 20; ++tried) {
            const std::size_t place = kFarReach + kLongestCopy + make.Below(kPlaces);
            const std::size_t limit = std::min(kCount - place, kLongestCopy);
            Match best{0, 0};
            for (std::size_t position = 0; position < kFarReach; ++position) {
                const std::size_t length =
                    EqualWords(&plane[position * 2], &plane[place * 2], limit);
                if (length > 0 && length >= best.length)
                    best = {length, position};
            }
            const Match found = words.Longest(place, limit);
            ASSERT_EQ(found.length, best.length) << place;
            ASSERT_EQ(found.place, best.place) << place;
        }
    }
}

/// Expands with both; they must agree on failing, and where they do not fail on every byte.
TEST(Codecs, ExpandAsTheLiteralOnesWhateverTheSource) {
    literal::PlaneMaker make(3);
    for (int round = 0; round < 6000; ++round) {
        ByteArray source = CarmackCompress(make.Any(300), LengthPrefix::Short, {});
        source.erase(source.begin(), source.begin() + 2);
        make.Damage(source);
        const auto length = static_cast<std::int32_t>(make.Below(700));
        const std::size_t room = static_cast<std::size_t>(length) + make.Below(600);

        ByteArray words(room), literalWords = words;
        const bool expanded = FailureOf([&] { CarmackExpand(source, words, length, {}); }) == 0;
        try {
            literal::CarmackExpand(source, literalWords, length, 0xA7, 0xA8);
            ASSERT_TRUE(expanded) << round;
            ASSERT_EQ(words, literalWords) << round;
        } catch (const std::out_of_range&) {
            ASSERT_FALSE(expanded) << round;
        }

        const auto tag = static_cast<std::uint16_t>(make.Below(4));
        ByteArray cells(room), literalCells = cells;
        int left = static_cast<int>(make.Below(2)) * length, literalLeft = left;
        bool lasted = false;
        const bool ran =
            FailureOf([&] {
                lasted = !RlewExpand(tag, source, cells, left, LengthPrefix::Short, Overrun::Fails)
                              .endedEarly;
            }) == 0;
        try {
            const bool literalLasted =
                literal::RlewExpand(tag, source, literalCells, literalLeft, false);
            ASSERT_TRUE(ran) << round;
            ASSERT_EQ(cells, literalCells) << round;
            ASSERT_EQ(left, literalLeft) << round;
            ASSERT_EQ(lasted, literalLasted) << round;
        } catch (const std::out_of_range&) {
            ASSERT_FALSE(ran) << round;
        }
    }
}

}  // namespace
}  // namespace tessaro
