// Telling the exchange files apart, and those of 64 x 64 maps byte by byte.
#include "exchange_maps.h"

namespace tessaro {
namespace {

using test::Ascii;
using test::Counting;
using test::ExpectLadder;
using test::Hex;
using test::ReadFile;
using test::operator+;

struct Detection {
    const char* start;
    std::size_t length;
    const char* name;
    enmMapFileType type;
};

TEST(DetectMapFileType, GoesBySignatureThenLengthThenName) {
    const Detection cases[] = {
        {"KZR1.0", 6, "x", mftKZRMapFile},
        {"KZR2.0", 6, "x", mftKZRMapFile},
        {"KZR2.1", 6, "x", mftKZRMapFile},
        {"KZR3.0", 6, "x", mftKZRMapFile},
        {"KZR3.1", 16384, "map.1", mftKZRMapFile},
        {"CE1.23", 6, "x", mftKZRMapFile},
        {"FE1.0", 16384, "MAP.2", mftFloEditMapFile},
        {"!ID!", 50, "x", mftiPhoneMapFile},
        {"!ID!", 49, "x", mftUnknownMapFile},
        {"RTL", 3, "x", mftROTTRTLMapFile},
        {"RTC", 3, "x", mftROTTRTCMapFile},
        {"KZR4.0", 6, "x", mftUnknownMapFile},
        {"", 16384, "map.1", mftMapEditMapFile},
        {"", 16383, "map.1", mftNitemare3DMapFile},
        {"", 0, "Map.3", mftNitemare3DMapFile},
        {"", 0, "MAP.4", mftUnknownMapFile},
    };
    for (const Detection& row : cases) {
        ByteArray file = Ascii(row.start);
        file.resize(row.length);
        const ExchangeFormat* format = DetectMapFileType(file, row.name);
        EXPECT_EQ(format ? format->type : mftUnknownMapFile, row.type)
            << row.start << " of " << row.length << " named " << row.name;
    }
}

TEST(DetectMapFileType, RefusesLaterKzrVersionsWhateverTheirLengthOrName) {
    ByteArray file = Ascii("KZR9.9");
    file.resize(16384);
    const Refusal refusal = test::RefusalOf([&] { ReadFile(file, "MAP.1"); });
    EXPECT_EQ(refusal.prompt, "Unknown map file format: KZR9.");
    EXPECT_EQ(refusal.title, "Unknown File Format");
    EXPECT_EQ(refusal.style, mbCritical);
}

/// The cells of Counting(64, 64, {first}) as they stand in a column-by-column plane.
ByteArray Columns(std::int32_t first) {
    ByteWriter out;
    for (std::int32_t x = 0; x < 64; ++x)
        for (std::int32_t y = 0; y < 64; ++y)
            out.U16(static_cast<std::uint16_t>(first + 64 * y + x));
    return out.Release();
}

TEST(FloEdit, StoresTwoPlanesColumnByColumn) {
    const std::vector<ForeignMap> maps = {Counting(64, 64, {0, 1000, 9}),
                                          Counting(64, 64, {50000})};
    const ByteArray file = Ascii("FE1.0") + Hex("02000000") + Columns(0) + Columns(1000) +
                           Columns(50000) + ByteArray(8192);
    EXPECT_EQ(kFloEditFormat.write(maps, {}), file);
    EXPECT_EQ(test::Part(file, 9, 4), Hex("0000 4000"));  // (0,0), (0,1)

    const auto read = ReadFile(file);
    ASSERT_EQ(read.size(), 2u);
    EXPECT_EQ(read[0].name, std::nullopt);
    ASSERT_EQ(read[0].planes.Plane.size(), 2u);
    EXPECT_EQ(read[0].planes.Plane[1].Grid, maps[0].planes.Plane[1].Grid);
    EXPECT_EQ(read[1].planes.Plane[0].Grid, maps[1].planes.Plane[0].Grid);

    const ByteArray single = kFloEditFormat.write({maps.data(), 1}, {});
    ExpectLadder(single);
    EXPECT_THROW(ReadFile(Ascii("FE1.0") + Hex("FFFFFF7F") + Columns(0) + Columns(0)), Failure);
    EXPECT_THROW(ReadFile(Ascii("FE1.0") + Hex("FFFFFFFF") + Columns(0) + Columns(0)), Failure);
}

TEST(MapEdit, IsTheBodyOfOneMap) {
    const ForeignMap map = Counting(64, 64, {3, 7});
    const ByteArray file = Columns(3) + Columns(7);
    EXPECT_EQ(kMapEditFormat.write({&map, 1}, {}), file);
    EXPECT_EQ(ReadFile(file)[0].planes.Plane[0].Grid, map.planes.Plane[0].Grid);
    ExpectLadder(file);
    for (const ExchangeFormat* format : {&kMapEditFormat, &kFloEditFormat}) {
        const ForeignMap wide = Counting(65, 64, {0});
        EXPECT_THROW(format->write({&wide, 1}, {}), Failure);
    }
}

TEST(Nitemare, ReadsTheFirstLevel) {
    ByteArray file = Hex("0B00") + ByteArray(512, 0x55);
    for (std::size_t cell = 0; cell < 4096; ++cell) {
        file.push_back(static_cast<std::uint8_t>(cell));       // wall
        file.push_back(static_cast<std::uint8_t>(cell >> 8));  // object
    }
    ExpectLadder(file, "MAP.1");
    const auto maps = ReadFile(file + ByteArray(8192, 0xEE), "map.2");
    ASSERT_EQ(maps.size(), 1u);
    EXPECT_EQ(maps[0].width, 64);
    EXPECT_EQ(maps[0].planes.Plane[0].Grid[65], 65);
    EXPECT_EQ(maps[0].planes.Plane[1].Grid[4095], 15);
    EXPECT_EQ(kNitemareFormat.write, nullptr);
}

}  // namespace
}  // namespace tessaro
