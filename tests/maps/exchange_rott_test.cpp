// The Rise of the Triad files byte by byte.
#include "exchange_maps.h"
#include "maps/exchange/rott.h"

namespace tessaro {
namespace {

using test::Ascii;
using test::Hex;
using test::ReadFile;
using test::RefusalOf;
using test::Uniform;
using test::operator+;

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
    test::ExpectLadder(file);

    const ByteArray rtl = kRottRtlFormat.write({}, {});
    EXPECT_EQ(rtl, Ascii("RTL") + Hex("00 01010000") + EmptySlots(100));
    EXPECT_TRUE(ReadFile(rtl).empty());
}

TEST(Rott, RefusesOtherVersionsSizesAndPlanes) {
    EXPECT_EQ(RefusalOf([] { ReadFile(Ascii("RTL") + Hex("00 02010000")); }).prompt,
              "Unknown RTL map file version: 0x102");
    EXPECT_EQ(RefusalOf([] { ReadFile(Ascii("RTC") + Hex("00 EFCDAB00")); }).prompt,
              "Unknown RTC map file version: 0xABCDEF");

    const ForeignMap small = Uniform(64, {1, 1, 1});
    EXPECT_EQ(RefusalOf([&] {
                  (void)kRottRtlFormat.write({&small, 1}, {});
              }).prompt,
              "ROTT maps must be 128x128.");
    ForeignMap busy = Uniform(128, {1, 1, 1});
    busy.planes.Plane[1] = test::Counting(128, 128, {0}).planes.Plane[0];
    const Refusal packing = RefusalOf([&] { (void)kRottRtlFormat.write({&busy, 1}, {}); });
    EXPECT_EQ(packing.prompt, "There was a problem while RLEW compressing map plane 1");
    EXPECT_EQ(packing.title, "RLEW Compress Error");
    EXPECT_EQ(packing.style, mbCritical);
    EXPECT_EQ(packing.procedure, "clsGameMaps.RLEWCompress");
    busy.slot = 100;
    EXPECT_THROW((void)kRottRtlFormat.write({&busy, 1}, {}), Failure);
}

}  // namespace
}  // namespace tessaro
