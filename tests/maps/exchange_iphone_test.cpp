// The iPhone map file byte by byte.
#include <literal/seeded_planes.h>

#include <cmath>

#include "exchange_maps.h"
#include "maps/exchange/iphone_map.h"

namespace tessaro {
namespace {

using test::Ascii;
using test::Hex;
using test::operator+;

/// 64 x 64 equal cells.
ByteArray Cells(int cell) {
    return literal::FromWords(std::vector<int>(4096, cell));
}

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
    settings.Planes = {Cells(1), Cells(2)};  // the third is missing
    EXPECT_EQ(WriteIPhoneMap(settings, {}), kIPhoneFile);

    const auto maps = test::ReadFile(kIPhoneFile);
    ASSERT_EQ(maps.size(), 1u);
    EXPECT_EQ(maps[0].name, "Wolf1 Map1 x");
    EXPECT_EQ(maps[0].width, 64);
    ASSERT_EQ(maps[0].planes.Plane.size(), 3u);
    EXPECT_EQ(maps[0].planes.Plane[1].Grid, test::Uniform(64, {2}).planes.Plane[0].Grid);
    test::ExpectLadder(kIPhoneFile);

    const iPhoneMapSettings read = ReadIPhoneMap(kIPhoneFile, {});
    EXPECT_EQ(read.FloorColor, 0x707070);
    EXPECT_EQ(read.CeilingColor, 0x383838);
    EXPECT_EQ(read.MusicName, "a.ogg");
    EXPECT_EQ(read.ParTime, 2.5F);
    EXPECT_EQ(read.Planes[0], Cells(1));
    EXPECT_EQ(ReadIPhoneSettings(ByteSpan(kIPhoneFile).first(64)).MusicName, "a.o");
}

TEST(IPhoneMap, RefusesWhatItCannotHold) {
    iPhoneMapSettings settings = DefaultIPhoneSettings("a", 0xABCD);
    settings.Width = settings.Height = 64;
    ByteWriter busy;
    for (std::uint16_t i = 0; i < 4096; ++i)
        busy.U16(i);
    settings.Planes = {busy.Release()};
    const Refusal refusal = test::RefusalOf([&] { (void)WriteIPhoneMap(settings, {}); });
    EXPECT_EQ(refusal.prompt, "Error during RLEWCompress.");
    EXPECT_EQ(refusal.title, "SaveIPhoneMapFile Error");
    EXPECT_EQ(refusal.style, mbExclamation);
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
