// The exchange files byte by byte, without a container.
#include <gmock/gmock.h>

#include <cmath>

#include "maps/exchange/exchange_format.h"
#include "maps/exchange/iphone_map.h"
#include "maps/exchange/rott.h"
#include "support/support.h"

namespace tessaro {
namespace {

using test::Ascii;
using test::Hex;
using testing::ElementsAre;

ByteArray operator+(ByteArray left, const ByteArray& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

ByteArray Words(std::size_t count, std::uint16_t word) {
    ByteWriter out;
    for (std::size_t i = 0; i < count; ++i)
        out.U16(word);
    return out.Release();
}

std::vector<ForeignMap> ReadFile(const ByteArray& file, std::string_view name = "a.map") {
    return ReadForeignMaps(file, name, {});
}

/// A map whose plane p holds first[p], first[p] + 1, ... from its top left cell on.
ForeignMap Counting(std::int32_t width, std::int32_t height, std::vector<std::int32_t> first) {
    ForeignMap map{.width = width, .height = height};
    for (std::int32_t cell : first) {
        typMapGrid plane;
        for (std::int32_t i = 0; i < width * height; ++i)
            plane.Grid.push_back(cell++);
        map.planes.Plane.push_back(plane);
    }
    return map;
}

ForeignMap Uniform(std::int32_t side, std::vector<std::int32_t> cells) {
    ForeignMap map{.width = side, .height = side};
    for (std::int32_t cell : cells)
        map.planes.Plane.push_back(
            {std::vector<std::int32_t>(static_cast<std::size_t>(side * side), cell)});
    return map;
}

/// Every file cut short is refused, whatever the cut.
void ExpectLadder(const ByteArray& whole, std::string_view name = "a.map") {
    EXPECT_NO_THROW(ReadFile(whole, name));
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const ByteArray cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
        EXPECT_THROW(ReadFile(cut, name), Failure) << length << " of " << whole.size();
    }
}

// --- telling them apart -------------------------------------------------------------------------

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
    try {
        ReadFile(file, "MAP.1");
        FAIL() << "read";
    } catch (const Refusal& refusal) {
        EXPECT_EQ(refusal.prompt, "Unknown map file format: KZR9.");
        EXPECT_EQ(refusal.title, "Unknown File Format");
        EXPECT_EQ(refusal.style, mbCritical);
    }
}

// --- KZR and ChaosEdit --------------------------------------------------------------------------

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
    const ForeignMap map = Counting(1, 1, {5});
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

// --- FloEdit and MapEdit ------------------------------------------------------------------------

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
                           Columns(50000) + Words(4096, 0);
    EXPECT_EQ(kFloEditFormat.write(maps, {}), file);
    EXPECT_EQ(ByteArray(file.begin() + 9, file.begin() + 13), Hex("0000 4000"));  // (0,0), (0,1)

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

// --- Nitemare 3D --------------------------------------------------------------------------------

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

// --- Rise of the Triad --------------------------------------------------------------------------

ByteArray EmptySlots(std::size_t count) {
    ByteArray slots;
    for (std::size_t i = 0; i < count; ++i)
        slots = slots + Hex("00000000 FFFF0000") + ByteArray(56, 0);
    return slots;
}

TEST(Rott, MapCRCIsOfTheArcKind) {
    EXPECT_EQ(MapCRC(Ascii("123456789"), 0), 0xBB3D);
    EXPECT_EQ(MapCRC(Ascii("6789"), MapCRC(Ascii("12345"), 0)), 0xBB3D);
}

TEST(Rott, WritesAndReadsAHundredSlots) {
    ForeignMap map = Uniform(128, {7, 8, 9});
    map.name = "Ruins of the temple, west";
    map.slot = 2;
    const ByteArray planes = Hex("CDAB 0040 0700  CDAB 0040 0800  CDAB 0040 0900");
    const ByteArray file =
        Ascii("RTC") + Hex("00 01010000") + EmptySlots(2) +
        Hex("01000000 15A10000 CDABFFFF 01000000 08190000 0E190000 14190000 06000000 06000000 "
            "06000000") +
        Ascii("Ruins of the temple, w") + Hex("0000") + EmptySlots(97) + planes;
    EXPECT_EQ(kRottRtcFormat.write({&map, 1}, {.rlewTag = -21555}), file)
        << "the tag is written whole, with its sign";

    const auto maps = ReadFile(file);
    ASSERT_EQ(maps.size(), 1u);
    EXPECT_EQ(maps[0].slot, 2);
    EXPECT_EQ(maps[0].name, "Ruins of the temple, w");
    EXPECT_EQ(maps[0].width, 128);
    ASSERT_EQ(maps[0].planes.Plane.size(), 3u);
    for (std::size_t plane = 0; plane < 3; ++plane)
        EXPECT_EQ(maps[0].planes.Plane[plane].Grid, map.planes.Plane[plane].Grid);
    ExpectLadder(file);

    const ByteArray rtl = kRottRtlFormat.write({}, {});
    EXPECT_EQ(rtl, Ascii("RTL") + Hex("00 01010000") + EmptySlots(100));
    EXPECT_TRUE(ReadFile(rtl).empty());
}

TEST(Rott, RefusesOtherVersionsSizesAndPlanes) {
    const auto refusal = [](auto&& step) {
        try {
            step();
        } catch (const Refusal& refused) {
            return refused;
        }
        return Refusal("", 0);
    };
    EXPECT_EQ(refusal([] { ReadFile(Ascii("RTL") + Hex("00 02010000")); }).prompt,
              "Unknown RTL map file version: 0x102");
    EXPECT_EQ(refusal([] { ReadFile(Ascii("RTC") + Hex("00 EFCDAB00")); }).prompt,
              "Unknown RTC map file version: 0xABCDEF");

    const ForeignMap small = Uniform(64, {1, 1, 1});
    EXPECT_EQ(refusal([&] {
                  (void)kRottRtlFormat.write({&small, 1}, {});
              }).prompt,
              "ROTT maps must be 128x128.");
    ForeignMap busy = Uniform(128, {1, 1, 1});
    for (std::size_t i = 0; i < busy.planes.Plane[1].Grid.size(); ++i)
        busy.planes.Plane[1].Grid[i] = static_cast<std::int32_t>(i);
    const Refusal packing = refusal([&] { (void)kRottRtlFormat.write({&busy, 1}, {}); });
    EXPECT_EQ(packing.prompt, "There was a problem while RLEW compressing map plane 1");
    EXPECT_EQ(packing.title, "RLEW Compress Error");
    EXPECT_EQ(packing.style, mbCritical);
    EXPECT_EQ(packing.procedure, "clsGameMaps.RLEWCompress");
    busy.slot = 100;
    EXPECT_THROW((void)kRottRtlFormat.write({&busy, 1}, {}), Failure);
}

// --- iPhone -------------------------------------------------------------------------------------

// A plane of 4096 equal cells: Carmack length 8, RLEW length 8192, one run.
ByteArray IPhonePlane(const char* cell) {
    return Hex("0800 0020 CDAB 0010") + Hex(cell);
}

const ByteArray kIPhoneFile = Ascii("!ID!") +
                              Hex("CDAB 4000 4000"     // tag, width, height
                                  "70707000 38383800"  // floor, ceiling
                                  "0A00 0A00 0A00"     // lengths
                                  "42000000 4C000000 56000000"
                                  "0C00 0500"    // 12 characters, 5 characters
                                  "00002040") +  // 2.5
                              Ascii("02:30Wolf1 Map1 xa.ogg") +
                              IPhonePlane("0100") + IPhonePlane("0200") + IPhonePlane("0000");

TEST(IPhoneMap, WritesAndReads) {
    iPhoneMapSettings settings = DefaultIPhoneSettings("Wolf1 Map1 x", 0xABCD);
    settings.Width = settings.Height = 64;
    settings.MusicName = "a.ogg";
    settings.ParTime = 2.5F;
    settings.Planes = {Words(4096, 1), Words(4096, 2)};  // the third is missing
    EXPECT_EQ(WriteIPhoneMap(settings, {}), kIPhoneFile);

    const auto maps = ReadFile(kIPhoneFile);
    ASSERT_EQ(maps.size(), 1u);
    EXPECT_EQ(maps[0].name, "Wolf1 Map1 x");
    EXPECT_EQ(maps[0].width, 64);
    ASSERT_EQ(maps[0].planes.Plane.size(), 3u);
    EXPECT_EQ(maps[0].planes.Plane[1].Grid, Uniform(64, {2}).planes.Plane[0].Grid);
    ExpectLadder(kIPhoneFile);

    const iPhoneMapSettings read = ReadIPhoneMap(kIPhoneFile, {});
    EXPECT_EQ(read.FloorColor, 0x707070);
    EXPECT_EQ(read.CeilingColor, 0x383838);
    EXPECT_EQ(read.MusicName, "a.ogg");
    EXPECT_EQ(read.ParTime, 2.5F);
    EXPECT_EQ(read.Planes[0], Words(4096, 1));
    EXPECT_EQ(ReadIPhoneSettings(ByteSpan(kIPhoneFile).first(64)).MusicName, "a.o");
}

TEST(IPhoneMap, RefusesWhatItCannotHold) {
    iPhoneMapSettings settings = DefaultIPhoneSettings("a", 0xABCD);
    settings.Width = settings.Height = 64;
    ByteWriter busy;
    for (std::uint16_t i = 0; i < 4096; ++i)
        busy.U16(i);
    settings.Planes = {busy.Release()};
    try {
        (void)WriteIPhoneMap(settings, {});
        FAIL() << "written";
    } catch (const Refusal& refusal) {
        EXPECT_EQ(refusal.prompt, "Error during RLEWCompress.");
        EXPECT_EQ(refusal.title, "SaveIPhoneMapFile Error");
        EXPECT_EQ(refusal.style, mbExclamation);
    }
    settings.Planes.clear();
    settings.Width = settings.Height = 256;  // its plane length does not fit 2 bytes
    EXPECT_THROW((void)WriteIPhoneMap(settings, {}), Failure);
    settings.Width = settings.Height = 64;
    settings.MusicName.assign(256, 'm');
    EXPECT_THROW((void)WriteIPhoneMap(settings, {}), Failure);
}

TEST(IPhoneMap, SplitsParTimes) {
    struct {
        float minutes;
        std::int32_t expectedMinutes, expectedSeconds;
    } const cases[] = {{1 + 20 / 60.0F, 1, 20}, {1.9999F, 2, 0}, {0.0083F, 0, 0},  {-3, 0, 0},
                       {1e30F, 99, 59},         {NAN, 0, 0},     {99.999F, 99, 59}};
    for (const auto& row : cases) {
        const ParTime time = SplitParTime(row.minutes);
        EXPECT_EQ(time.minutes, row.expectedMinutes) << row.minutes;
        EXPECT_EQ(time.seconds, row.expectedSeconds) << row.minutes;
    }
}

}  // namespace
}  // namespace tessaro
