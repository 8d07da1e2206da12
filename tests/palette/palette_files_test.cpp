#include "palette/palette_files.h"

#include <numeric>

#include "palette/builtin_palettes.h"
#include "palette/text_palettes.h"
#include "support/support.h"

namespace tessaro {
namespace {

using test::Hex;
using test::Part;
using test::TextOf;

/// Every value from 0 to 255, three times.
ByteArray Ramp() {
    ByteArray palette(kPaletteSize);
    std::iota(palette.begin(), palette.end(), std::uint8_t{0});
    return palette;
}

ByteArray SixBits(ByteArray palette) {
    for (std::uint8_t& value : palette)
        value &= 0xFC;
    return palette;
}

TEST(PaletteFiles, ObjectFileHoldsEightFixedRecordsAroundTheColors) {
    const PaletteBytes palette = BuiltInPalette("WL6");
    const ByteArray file = WritePaletteFile(ptGAMEPAL, palette);
    ASSERT_EQ(file.size(), 893u);
    EXPECT_EQ(Part(file, 0, 119),
              Hex("80 0E00 0C 47414D4550414C2E42494E20 00"
                  "88 0F00 0000 4D616B654F424A207631 2E31 EA"
                  "96 2800 06 4447524F5550 05 5F44415441 04 44415441 00 05 5F54455854 04 434F4445"
                  "08 4641525F44415441 AD"
                  "98 0700 48 0003 02 03 04 0D"
                  "9A 0400 01 FF 01 61"
                  "90 0F00 01 01 08 5F67616D6570616C 0000 00 FF"
                  "A0 0403 01 0000"));
    EXPECT_EQ(Part(file, 119, 9), Hex("00 00 00 00 00 2A 00 2A 00"));
    // Colour 255, the games' transparent one, is a purple.
    EXPECT_EQ(Part(file, file.size() - 9), Hex("26 00 22 E6 8A 02 00 00 74"));

    const ByteArray other = WritePaletteFile(ptGAMEPAL, Ramp());
    ASSERT_EQ(other.size(), 893u);
    EXPECT_TRUE(std::equal(file.begin(), file.begin() + 119, other.begin()));
    EXPECT_TRUE(std::equal(file.end() - 6, file.end(), other.end() - 6));
    EXPECT_EQ(other[119 + 767], 63);
}

TEST(PaletteFiles, RiffPaletteIsFourBytesLongerThanItsColors) {
    const ByteArray file = WritePaletteFile(ptJASC8, Ramp());
    ASSERT_EQ(file.size(), 1052u);
    EXPECT_EQ(Part(file, 0, 32),
              Hex("52494646 14040000 50414C20 64617461 08040000 0003 0001 00010200 03040500"));
    EXPECT_EQ(Part(file, file.size() - 8), Hex("FD FE FF 00 00 00 00 00"));
    EXPECT_EQ(ReadPaletteFile(ptJASC8, file), Ramp());
    for (std::size_t size = 0; size < 1048; ++size)
        EXPECT_THROW(ReadPaletteFile(ptJASC8, ByteSpan(file).first(size)), Failure) << size;
    ByteArray noPalette = file;
    noPalette[8] = 'W';
    EXPECT_FALSE(ReadPaletteFile(ptJASC8, noPalette));
}

TEST(PaletteFiles, TextForms) {
    const std::string jasc = TextOf(WritePaletteFile(ptJASC3, Ramp()));
    EXPECT_TRUE(jasc.starts_with("JASC-PAL\r\n0100\r\n256\r\n0 1 2\r\n3 4 5\r\n"));
    EXPECT_TRUE(jasc.ends_with("\r\n250 251 252\r\n253 254 255\r\n"));

    ByteArray palette(kPaletteSize, 0);
    palette[0] = 255;
    palette[4] = 40;
    const std::string array = TextOf(WritePaletteFile(ptWolf4GW, palette));
    EXPECT_TRUE(
        array.starts_with("unsigned char gamepal[768]={\r\n"
                          " 63,  0,  0,  0, 10,  0,  0,  0,  0,  0,  0,  0,  0,  0,  0,\r\n"
                          "  0,  0,  0,"));
    EXPECT_TRUE(array.ends_with(",\r\n  0,  0,  0};\r\n"));
    EXPECT_EQ(array.size(), 30u + 768 * 4 - 1 + 51 * 2 + 4);

    const std::string list = TextOf(WritePaletteFile(ptWolf4SDL, palette));
    EXPECT_TRUE(
        list.starts_with("RGB( 63,  0,  0),RGB(  0, 10,  0),RGB(  0,  0,  0),"
                         "RGB(  0,  0,  0),RGB(  0,  0,  0),\r\nRGB("));
    EXPECT_TRUE(list.ends_with(",\r\nRGB(  0,  0,  0)\r\n"));
    EXPECT_EQ(list.size(), 256u * 17 - 1 + 52 * 2);

    EXPECT_EQ(ReadJascPalette(jasc), Ramp());
    EXPECT_EQ(ReadPaletteFile(ptWolf4GW, WritePaletteFile(ptWolf4GW, Ramp())), SixBits(Ramp()));
    EXPECT_EQ(ReadPaletteFile(ptWolf4SDL, WritePaletteFile(ptWolf4SDL, Ramp())), SixBits(Ramp()));
    EXPECT_EQ(WritePaletteFile(ptXWE, Ramp()), Ramp());
    EXPECT_THROW(WritePaletteFile(ptUnknown, Ramp()), Failure);
    EXPECT_THROW(WritePaletteFile(ptJASC3, ByteArray(767)), Failure);
}

TEST(PaletteFiles, TextOfOtherProgramsIsReadByItsNumbers) {
    std::string list = "// colours\r\n", array = "byte pal [] = {\n";
    for (int i = 0; i < 256; ++i) {
        list += "COLOR ( 1,\t2 ,63 )\n";
        array += "1,2,63,\n";
    }
    ByteArray expected;
    for (int i = 0; i < 256; ++i)
        expected.insert(expected.end(), {4, 8, 252});
    EXPECT_EQ(ReadRgbList(list), expected);
    EXPECT_EQ(ReadSourceArray(array + "} ;"), expected);

    expected.assign(kPaletteSize, 0);
    expected[0] = 7, expected[1] = 8, expected[2] = 9, expected[5] = 255;
    EXPECT_EQ(ReadJascPalette("JASC-PAL\n0100\n2\n7 8  9 255\n\n0\t0 255"), expected);
}

TEST(PaletteFiles, TextThatDoesNotParse) {
    const std::string jasc = TextOf(WriteJascPalette(Ramp()));
    const std::string array = TextOf(WriteSourceArray(Ramp()));
    const std::string list = TextOf(WriteRgbList(Ramp()));
    const auto with = [](std::string text, std::string_view old, std::string_view replacement) {
        return text.replace(text.find(old), old.size(), replacement);
    };
    for (const std::string& text :
         {std::string("JASC"), with(jasc, "256", "0"), with(jasc, "256", "257"),
          with(jasc, "255", "256"), with(jasc, "254", "-1"), with(jasc, "1 2", "1 x"),
          with(jasc, "253 254 255\r\n", "253 254")})
        EXPECT_FALSE(ReadJascPalette(text)) << text.substr(0, 40);
    for (const std::string& text :
         {std::string(), with(array, "{", " "), with(array, "}", " "), with(array, " 63", " 64"),
          with(array, "{", "{1,"), with(array, " 63,", ""), with(array, " 63", "0x3F")})
        EXPECT_FALSE(ReadSourceArray(text)) << text.substr(0, 40);
    for (const std::string& text :
         {std::string(), with(list, "(", "(1,"), with(list, " 63", "64"), with(list, ")", " "),
          with(with(list, "(", "(1,"), ", 63)", ")"), list + "RGB(1,2,3)",
          list.substr(0, list.size() - 20)})
        EXPECT_FALSE(ReadRgbList(text)) << text.substr(0, 40);
}

TEST(BuiltInPalettes, SpearOfDestinyDiffersInTwoColors) {
    const PaletteBytes standard = BuiltInPalette("WL1");
    for (const char* extension : {"SOD", "SDM"}) {
        const PaletteBytes spear = BuiltInPalette(extension);
        EXPECT_EQ(Part(spear, 498, 6), Hex("00 38 00 00 28 00"));
        EXPECT_TRUE(std::equal(spear.begin(), spear.begin() + 498, standard.begin()));
        EXPECT_TRUE(std::equal(spear.begin() + 504, spear.end(), standard.begin() + 504));
    }
    EXPECT_EQ(Part(standard, 498, 6), Hex("B4 20 FC A8 00 FC"));
    // The 16 colours of the older display adapters come first.
    EXPECT_EQ(Part(standard, 0, 48),
              Hex("000000 0000A8 00A800 00A8A8 A80000 A800A8 A85400 A8A8A8"
                  "545454 5454FC 54FC54 54FCFC FC5454 FC54FC FCFC54 FCFCFC"));
}

}  // namespace
}  // namespace tessaro
