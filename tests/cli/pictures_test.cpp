// Picture files read and written: forms that games never hold, but people's tools write.
#include "pictures/image.h"

#include "pictures/glyphs.h"
#include "pictures/text_screen.h"
#include "report.h"
#include "support/support.h"

namespace tessaro::test {

namespace {

using namespace cli;

// 3 x 2 pixels, a palette of black, red and green in 4 bits a pixel, red transparent.
const char* const kPalettePng =
    "89504e470d0a1a0a 0000000d49484452000000030000000204030000006f5a7b29 "
    "00000009504c5445000000ff000000ff00f483bf7e 0000000274524e53ff00e5b7304a "
    "0000000e4944415478da636054605064000000cd00437a58dbad 0000000049454e44ae426082";
// 2 x 1, 16 bits of grey: black, white.
const char* const kGreyPng =
    "89504e470d0a1a0a 0000000d494844520000000200000001100000000081d9fc15 "
    "0000000d4944415478da636060f8ff1f00030201ff392919be 0000000049454e44ae426082";
// 2 x 1, full colour with alpha: red, transparent blue.
const char* const kAlphaPng =
    "89504e470d0a1a0a 0000000d4948445200000002000000010806000000f4227f8a "
    "0000000d4944415478da63f8cfc00046000efa02fe2a405eb9 0000000049454e44ae426082";
// 2 x 2, 4 bits, rows from the bottom: 1 2 below, 0 1 above; a palette of three.
const char* const kFourBitBmp =
    "424D 4A000000 00000000 42000000 28000000 02000000 02000000 0100 0400 00000000 00000000"
    "00000000 00000000 03000000 00000000"
    "00000000 0000FF00 00FF0000 12000000 01000000";
// The same picture from the top down, in 24 bits.
const char* const kTopDownBmp =
    "424D 46000000 00000000 36000000 28000000 02000000 FEFFFFFF 0100 1800 00000000 00000000"
    "00000000 00000000 00000000 00000000"
    "000000 0000FF 0000  0000FF 00FF00 0000";

const Rgb kBlack{0, 0, 0}, kRed{255, 0, 0}, kGreen{0, 255, 0}, kBlue{0, 0, 255},
    kWhite{255, 255, 255};

struct ReadCase {
    const char* name;
    const char* file;
    int width, height;
    std::vector<Rgb> pixels;
    std::vector<std::uint8_t> opaque;
    ByteArray indices;
};

TEST(Pictures, EveryFormReadsRightWayUp) {
    const ReadCase cases[] = {
        {"palette PNG",
         kPalettePng,
         3,
         2,
         {kBlack, kRed, kGreen, kGreen, kRed, kBlack},
         {1, 0, 1, 1, 0, 1},
         {0, 1, 2, 2, 1, 0}},
        {"grey PNG", kGreyPng, 2, 1, {kBlack, kWhite}, {1, 1}, {}},
        {"alpha PNG", kAlphaPng, 2, 1, {kRed, kBlue}, {1, 0}, {}},
        {"4-bit BMP", kFourBitBmp, 2, 2, {kBlack, kRed, kRed, kGreen}, {1, 1, 1, 1}, {0, 1, 1, 2}},
        {"top-down BMP", kTopDownBmp, 2, 2, {kBlack, kRed, kRed, kGreen}, {1, 1, 1, 1}, {}},
    };
    for (const ReadCase& row : cases) {
        SCOPED_TRACE(row.name);
        const SourceImage image = ReadImage(Hex(row.file));
        EXPECT_EQ(image.width, row.width);
        EXPECT_EQ(image.height, row.height);
        EXPECT_TRUE(image.pixels == row.pixels);
        EXPECT_EQ(image.opaque, row.opaque);
        EXPECT_EQ(image.indices, row.indices);
        EXPECT_EQ(image.indexed, !row.indices.empty());
    }
}

TEST(Pictures, ShortOrLyingFilesFail) {
    for (const char* text : {kPalettePng, kGreyPng, kAlphaPng, kFourBitBmp, kTopDownBmp}) {
        const ByteArray whole = Hex(text);
        for (std::size_t size = 0; size < whole.size(); ++size) {
            const ByteArray part(whole.begin(), whole.begin() + std::ptrdiff_t(size));
            try {
                ReadImage(part);
                EXPECT_GT(size, whole.size() - 20) << "only what ends a file may be missing";
            } catch (const CommandError&) {
            }
        }
    }
    ByteArray huge = Hex(kTopDownBmp);
    huge[18 + 2] = 0x3F;  // 4 million pixels wide
    EXPECT_THROW(ReadImage(huge), CommandError);
    huge = Hex(kTopDownBmp);
    huge[18 + 1] = 0x10;  // 4098 wide, with the pixels of two
    EXPECT_THROW(ReadImage(huge), CommandError);
}

IndexedImage Checkered() {
    IndexedImage image;
    image.width = 3;
    image.height = 2;
    image.colors[0] = kRed;
    image.colors[7] = kGreen;
    image.colors[15] = kBlue;
    image.pixels = {0, 7, 15, 7, 7, 0};
    return image;
}

TEST(Pictures, WhatIsWrittenReadsBack) {
    IndexedImage image = Checkered();
    for (const ByteArray& file : {ToPng(image), ToBmp(image), ToBmp(image, 4)}) {
        const SourceImage back = ReadImage(file);
        EXPECT_EQ(back.indices, image.pixels);
        EXPECT_TRUE(back.pixels.at(2) == kBlue);
    }
    // Rows of 4 bytes: padded, the bottom one first; palette entries are blue, green, red, 0.
    const ByteArray bmp = ToBmp(image, 4);
    EXPECT_EQ(ByteArray(bmp.begin() + 54, bmp.begin() + 58), Hex("0000FF00"));
    EXPECT_EQ(ByteArray(bmp.begin() + 118, bmp.end()), Hex("77000000 07F00000"));
    image.mask = {0, 0, 1, 0, 0, 0};
    EXPECT_EQ(ReadImage(ToPng(image)).opaque, Hex("010100010101"));
}

TEST(Pictures, IndicesAreKeptOnlyWhenTheirColoursAreTheGames) {
    const IndexedImage image = Checkered();
    Colors game = image.colors;
    const SourceImage source = ReadImage(ToPng(image));
    EXPECT_TRUE(MapToColors(source, game, 256, {}).kept);
    game[3] = kWhite;  // a colour that is not in use
    EXPECT_TRUE(MapToColors(source, game, 256, {}).kept);
    game[7] = kBlack;
    game[200] = {10, 240, 5};
    const Mapped mapped = MapToColors(source, game, 256, {});
    EXPECT_FALSE(mapped.kept);
    EXPECT_EQ(mapped.image.pixels, (ByteArray{0, 200, 15, 200, 200, 0}));
    EXPECT_EQ(MapToColors(source, game, 256, std::uint8_t{200}).image.pixels.at(1), 1)
        << "the hole's colour is nobody's nearest; black is";
}

TEST(Pictures, TextScreensShowCharactersAndFrames) {
    ByteArray cells(4000);
    for (std::size_t i = 0; i < cells.size(); i += 2) {
        cells[i] = ' ';
        cells[i + 1] = 0x1F;  // white on blue
    }
    cells[0] = 0xDB;  // a block
    cells[2] = 0xC4;  // a line across
    cells[4] = 0xDF;  // the upper half
    const IndexedImage screen = DrawTextScreen(cells.data());
    EXPECT_EQ(screen.width, 640);
    EXPECT_EQ(screen.height, 400);
    const auto row = [&](int cell, int y) {
        const auto at = screen.pixels.begin() + y * 640 + cell * 8;
        return ByteArray(at, at + 8);
    };
    EXPECT_EQ(row(0, 0), ByteArray(8, 15));
    EXPECT_EQ(row(1, 7), ByteArray(8, 15)) << "a frame's line reaches both edges";
    EXPECT_EQ(row(1, 6), ByteArray(8, 1));
    EXPECT_EQ(row(2, 7), ByteArray(8, 15));
    EXPECT_EQ(row(2, 8), ByteArray(8, 1));
    EXPECT_TRUE(screen.colors[1] == (Rgb{0, 0, 0xAA}));
    EXPECT_TRUE(screen.colors[6] == (Rgb{0xAA, 0x55, 0}));
}

}  // namespace

}  // namespace tessaro::test
