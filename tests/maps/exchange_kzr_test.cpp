// The KZR and ChaosEdit files byte by byte.
#include <gmock/gmock.h>

#include "exchange_maps.h"

namespace tessaro {
namespace {

using test::Ascii;
using test::ExpectLadder;
using test::Hex;
using test::ReadFile;
using test::operator+;
using testing::ElementsAre;

const ByteArray kKzrMap =
    Hex("0200 0100"    // width 2, height 1
        "0100 0200"    // plane 0
        "0080 FFFF");  // plane 1

TEST(Kzr, WritesAndReadsVersion31) {
    ForeignMap map{.name = std::string("Hall\0old tail", 13), .width = 2, .height = 1};
    map.planes.Plane = {{{1, 0x10002}}, {{0x8000, -1}}};  // low 16 bits count
    ExchangeSettings settings{.planes = 2, .nameSize = 6};
    const ByteArray front = Ascii("KZR3.1") + Hex("01000000 0200 0600");
    const ByteArray named = front + Ascii("Hall") + Hex("0000") + kKzrMap;
    const ByteArray nameless = front + Hex("FFFFFFFFFFFF") + kKzrMap;
    const ByteArray tooLong = front + Hex("000000000000") + kKzrMap;

    EXPECT_EQ(kKzrFormat.write({&map, 1}, settings), named);
    settings.exportNames = false;
    EXPECT_EQ(kKzrFormat.write({&map, 1}, settings), nameless);
    settings.exportNames = true;
    map.name = "Hallway";
    EXPECT_EQ(kKzrFormat.write({&map, 1}, settings), tooLong);

    const auto maps = ReadFile(named);
    ASSERT_EQ(maps.size(), 1u);
    EXPECT_EQ(maps[0].name, "Hall");
    EXPECT_EQ(maps[0].width, 2);
    EXPECT_EQ(maps[0].height, 1);
    ASSERT_EQ(maps[0].planes.Plane.size(), 2u);
    EXPECT_THAT(maps[0].planes.Plane[0].Grid, ElementsAre(1, 2));
    EXPECT_THAT(maps[0].planes.Plane[1].Grid, ElementsAre(0x8000, 0xFFFF));
    EXPECT_EQ(ReadFile(nameless)[0].name, std::nullopt);
    ExpectLadder(named);
}

TEST(Kzr, WritesMissingPlanesAsZeros) {
    const ForeignMap map = test::Counting(1, 1, {5});
    EXPECT_EQ(kKzrFormat.write({&map, 1}, {.exportNames = false, .planes = 3, .nameSize = 1}),
              Ascii("KZR3.1") + Hex("01000000 0300 0100 FF 0100 0100 0500 0000 0000"));
}

TEST(Kzr, ReadsOlderVersionsAndChaosEdit) {
    const ByteArray one = Hex("01000000");
    const ByteArray two = Hex("02000000");
    const ByteArray map = Ascii("A name of 16 ch.") + Hex("0100 0200");  // 1 x 2
    const ByteArray plane = Hex("0102 0304");
    struct {
        const char* what;
        ByteArray file;
        std::size_t maps, planes;
    } const cases[] = {
        {"1.0", Ascii("KZR1.0") + one + map + plane + plane, 1, 2},
        {"2.0", Ascii("KZR2.0") + one + map + plane + plane + plane, 1, 3},
        {"2.1", Ascii("KZR2.1") + one + map + plane + plane + plane, 1, 3},
        {"3.0", Ascii("KZR3.0") + two + Hex("0100") + map + plane + map + plane, 2, 1},
        {"ChaosEdit, 3 planes", Ascii("CE1.23") + one + map + plane + plane + plane, 1, 3},
        {"ChaosEdit, 2 planes", Ascii("CE1.23") + one + map + plane + plane, 1, 2},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.what);
        const auto maps = ReadFile(row.file);
        ASSERT_EQ(maps.size(), row.maps);
        EXPECT_EQ(maps.back().name, "A name of 16 ch.");
        EXPECT_EQ(maps.back().height, 2);
        ASSERT_EQ(maps.back().planes.Plane.size(), row.planes);
        EXPECT_THAT(maps.back().planes.Plane.back().Grid, ElementsAre(0x0201, 0x0403));
        if (row.file != cases[4].file)  // without its last plane, that is a file of two planes
            ExpectLadder(row.file);
    }
    // Bytes behind the last map: ignored in a KZR file, no known layout in a ChaosEdit one.
    EXPECT_EQ(ReadFile(cases[0].file + Hex("00")).size(), 1u);
    EXPECT_THROW(ReadFile(cases[5].file + Hex("00")), Refusal);
}

TEST(Kzr, RefusesHostileNumbers) {
    for (const char* header : {
             "FFFFFFFF 0300 0100 41 0100 0100 000000000000",  // -1 maps
             "FFFFFF7F 0300 0100 41 0100 0100 000000000000",  // two thousand million maps
             "01000000 0000 0100 41 FF7F 0002",               // no plane, 16 million cells
             "01000000 FFFF 0100 41 0100 0100 000000000000",  // 65535 planes
             "01000000 0300 0100 41 FF7F FF7F 000000000000",  // a thousand million cells
             "01000000 0300 0100 41 0000 0100 000000000000",  // no width
             "01000000 0300 0100 41 FFFF FFFF 000000000000",  // -1 x -1
             "01000000 0300 FFFF 41 0100 0100 000000000000",  // 65535 bytes of name
         })
        EXPECT_THROW(ReadFile(Ascii("KZR3.1") + Hex(header)), Failure) << header;
}

}  // namespace
}  // namespace tessaro
