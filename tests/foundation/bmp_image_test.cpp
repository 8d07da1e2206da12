#include "images/bmp_image.h"

#include "support/support.h"

namespace tessaro {
namespace {

using modAddBMPHeader::AddBMPHeader;
using modAddBMPHeader::RemoveBMPHeader;
using modAddBMPHeader::StrippedImage;
using test::Hex;
using test::Part;

class BmpImage : public test::InFolder {
protected:
    BmpImage() {
        SharedStore().palette[0] = 0x030201;  // red 1, green 2, blue 3
        SharedStore().palette[15] = 0xFCFDFE;
        SharedStore().palette[255] = 0x102030;
    }
};

/// A header as far as the fields that are read; `height` may be negative.
ByteArray Image(std::int32_t width, std::int32_t height, std::int16_t bits, std::size_t offset,
                std::string_view rows) {
    ByteWriter out;
    out.Text("BM");
    out.Fill(16, 0);
    out.I32(width);
    out.I32(height);
    out.U16(1);
    out.I16(bits);
    out.Fill(offset - out.Position(), 0xEE);
    out.Bytes(Hex(rows));
    return out.Release();
}

TEST_F(BmpImage, EightBitsABottomRowFirst) {
    const ByteArray image = AddBMPHeader(3, 2, Hex("0A 0B 0C 0D 0E 0F"), false);
    EXPECT_EQ(Part(image, 0, 58),
              Hex("42 4D 3E 04 00 00 00 00 00 00 36 04 00 00"  // 1086 bytes, pixels at 1078
                  "28 00 00 00 03 00 00 00 02 00 00 00 01 00 08 00"
                  "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"
                  "03 02 01 00"));
    EXPECT_EQ(Part(image, 1074), Hex("10 20 30 00  0D 0E 0F 00  0A 0B 0C 00"));
    EXPECT_EQ(AddBMPHeader(64, 64, ByteArray(4096), false).size(), 5174u);
    EXPECT_EQ(AddBMPHeader(0, 7, {}, false).size(), 1078u);
}

TEST_F(BmpImage, FourBitsInThe16ColorModeUnlessForced) {
    ConfiguredGame().egaGraphics = true;
    const ByteArray image = AddBMPHeader(5, 2, Hex("12 34 50 67 89 A0"), false);
    ASSERT_EQ(image.size(), 118u + 8u);
    EXPECT_EQ(Part(image, 10, 4), Hex("76 00 00 00"));
    EXPECT_EQ(image[28], 4);
    EXPECT_EQ(Part(image, 114), Hex("FC FD FE 00  67 89 A0 00  12 34 50 00"));
    EXPECT_EQ(AddBMPHeader(2, 1, Hex("01 02"), true).size(), 1078u + 4u);

    const StrippedImage stripped = RemoveBMPHeader(image);
    EXPECT_EQ(stripped.pixels, Hex("12 34 50 67 89 A0"));
    EXPECT_EQ(stripped.bitsPerPixel, 4);
    EXPECT_EQ(stripped.width, 5);
}

TEST_F(BmpImage, RefusesFewerPixelsThanTheSizeNeeds) {
    EXPECT_THROW(AddBMPHeader(3, 2, ByteArray(5), false), Failure);
    EXPECT_THROW(AddBMPHeader(-1, 2, ByteArray(5), false), Failure);
    EXPECT_THROW(AddBMPHeader(0x7FFFFFFF, 0x7FFFFFFF, ByteArray(5), false), Failure);
}

struct StripCase {
    const char* name;
    std::int32_t width, height;
    std::int16_t bits;
    std::size_t offset;
    const char* rows;
    const char* pixels;
};
class BmpStrip : public testing::TestWithParam<StripCase> {};

TEST_P(BmpStrip, Pixels) {
    const StripCase& row = GetParam();
    const ByteArray image = Image(row.width, row.height, row.bits, row.offset, row.rows);
    const StrippedImage stripped = RemoveBMPHeader(image);
    EXPECT_EQ(stripped.pixels, Hex(row.pixels));
    EXPECT_EQ(stripped.height, std::abs(row.height));
    if (stripped.pixels.empty())
        return;
    for (std::size_t size = 0; size < image.size(); ++size)
        EXPECT_THROW(RemoveBMPHeader(ByteSpan(image).first(size)), Failure) << size;
}

INSTANTIATE_TEST_SUITE_P(
    Image, BmpStrip,
    testing::Values(
        StripCase{"PaddedRows", 3, 2, 8, 1078, "04 05 06 EE 01 02 03 EE", "01 02 03 04 05 06"},
        StripCase{"TopRowFirst", 3, -2, 8, 1078, "01 02 03 EE 04 05 06 EE", "01 02 03 04 05 06"},
        StripCase{"FourBitsOddWidth", 3, 1, 4, 118, "12 30 EE EE", "12 30"},
        StripCase{"TrueColor", 1, 2, 24, 54, "04 05 06 EE 01 02 03 EE", "01 02 03 04 05 06"},
        StripCase{"OneBitHasNoPixels", 3, 2, 1, 62, "01 02 03 04", ""},
        StripCase{"UnknownDepthHasNoPixels", 1, 1, 32, 54, "01 02 03 04", ""}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(BmpImage, RefusesHostileSizesBeforeTakingMemory) {
    for (auto [width, height] : {std::pair{0x7FFFFFFF, 0x7FFFFFFF},
                                 {4, 0x7FFFFFFF},
                                 {-4, 1},
                                 {4, std::numeric_limits<std::int32_t>::min()}})
        EXPECT_THROW(RemoveBMPHeader(Image(width, height, 8, 1078, "01 02 03 04")), Failure);
}

}  // namespace
}  // namespace tessaro
