// The pure readers behind the container: tables, fonts, planes, names.
#include "graphics/chunk_content.h"

#include <gtest/gtest.h>

#include "graphics/area_names.h"
#include "graphics/chunk_form.h"
#include "graphics/fonts.h"
#include "graphics/picture_planes.h"
#include "graphics/set_builder.h"

namespace tessaro {
namespace {

using test::Ascii;
using test::Hex;
using test::operator+;

TEST(TypeByContent, FirstFitCounts) {
    struct Row {
        const char* name;
        ByteArray bytes;
        enmVGRAGRAPHTypes vga, ega;
    };
    for (const Row& row : {
             Row{"nothing", {}, vgMisc, vgMisc},
             Row{"packed", Ascii("JAMPx"), vgJAMP, vgJAMP},
             Row{"palette", ByteArray(768, 63), vgPalette, vgPalette},
             Row{"768 bytes, one too bright", ByteArray(767) + ByteArray{64}, vgMisc, vgMisc},
             Row{"screen", Hex("FD00B8") + ByteArray(4005), vgEndScreen, vgEndScreen},
             Row{"screen of another size", Hex("FD00B8") + ByteArray(4003), vgMisc, vgMisc},
             Row{"bare screen", ByteArray(4000, 1), vgTrucEndScreen, vgTrucEndScreen},
             Row{"article", Ascii("^p"), vgEndArt, vgEndArt},
             Row{"demo with its length", Hex("02 0600 00 1122"), vgDemo, vgMisc},
             Row{"demo with its steps' length", Hex("0200 0200 1122"), vgMisc, vgDemo},
             Row{"as long as its length, too short", Hex("02 0400 00"), vgMisc, vgMisc},
             Row{"names", Ascii("\r\nTown\r\n"), vgMisc, vgAreaNames},
         }) {
        EXPECT_EQ(TypeByContent(row.bytes, false), row.vga) << row.name;
        EXPECT_EQ(TypeByContent(row.bytes, true), row.ega) << row.name;
    }
}

TEST(PictureTable, EndsAtTheFirstEntryThatIsNoPicture) {
    const ByteArray table = Hex("4001 C800  0800 0800  8102 0100  0800 0800");
    EXPECT_EQ(ReadPictureTable(table, false).size(), 2u);  // 641 x 1 is none
    // 320 bytes across are 2560 pixels; what lies behind counts on, except at the end.
    EXPECT_EQ(ReadPictureTable(table, true).size(), 4u);
    EXPECT_EQ(ReadPictureTable(ByteSpan(table).first(12), true).size(), 2u);
    EXPECT_EQ(ReadPictureTable(Hex("5000 C800 0000 0100"), true)[0].width, 640);
    EXPECT_EQ(ReadPictureTable(ByteSpan(table).first(7), false).size(), 1u);
}

TEST(FindStartPics, MostPicturesThenTheLowest) {
    const std::vector<PictureSize> pictures{{8, 1}, {8, 2}, {8, 1}};
    const auto chunks = [](std::initializer_list<std::int32_t> lengths) {
        std::vector<StoredLength> all;
        for (const std::int32_t length : lengths)
            all.push_back({length != 0, length});
        return all;
    };
    EXPECT_EQ(FindStartPics(pictures, chunks({12, 800, 8, 16, 8}), false), 2);
    EXPECT_EQ(FindStartPics(pictures, chunks({12, 8, 0, 0, 0, 8}), false), 1);  // 1 to 1
    EXPECT_EQ(FindStartPics(pictures, chunks({12, 9, 9, 9}), false), 0);
    EXPECT_EQ(FindStartPics(pictures, chunks({12, 800, 4, 8, 4}), true), 2);  // half a byte each
}

// The length field decides first; without a sensible one the first such chunk is the tile chunk,
// and the later ones go by what they measure.
TEST(ChunkForm, TypesVgaTilesBySize) {
    HuffDictionary plain{};  // every byte value a code of 8 bits: a measured size is exact
    for (std::size_t level = 0, node = 0, from = 0; level < 8; ++level) {
        const std::size_t count = std::size_t{128} >> level;
        for (std::size_t i = 0; i < count; ++i, ++node) {
            const auto child = [&](std::size_t k) {
                return static_cast<std::int16_t>(level == 0 ? k : 256 + from + k);
            };
            plain[node] = {child(2 * i), child(2 * i + 1)};
        }
        from = node - count;
    }
    GraphicsCatalog catalog;
    catalog.Resize(20);
    const auto expand = [&](std::int32_t chunk, std::size_t size) {
        // As a length field: -1.
        const ByteArray stored = CompressStream(ByteArray(size, 0xFF), plain);
        const ChunkForm form = FormOf(catalog, plain, chunk, stored);
        Settle(catalog, chunk, form);
        return Expand(form, stored, plain).size();
    };
    struct Row {
        std::int32_t chunk;
        std::size_t size, expanded;
        enmVGRAGRAPHTypes type;
    };
    for (const Row& row : {
             Row{1, 4, 0, vgUnknown},  // 4 bytes and one of none, but for a length of -1 nothing
             Row{2, 9, 2240, vgTile8},
             Row{3, 226, 256, vgTile16},
             Row{4, 264, 256, vgTile16},
             Row{5, 225, 0, vgUnknown},
             Row{6, 529, 512, vgTile16M},
             Row{7, 256, 0, vgUnknown},  // no more tiles behind the masked ones
             Row{8, 501, 512, vgTile16M},
         }) {
        if (row.chunk == 1)
            catalog.Recognise(0, vgTile8);
        if (row.chunk == 2)
            catalog.Retype(0, vgUnknown);
        EXPECT_EQ(expand(row.chunk, row.size), row.expanded) << row.chunk;
        EXPECT_EQ(catalog.TypeOf(row.chunk), row.type) << row.chunk;
    }
    catalog.Recognise(0, vgEndArt);
    expand(9, 512);
    EXPECT_EQ(catalog.TypeOf(9), vgUnknown);
    EXPECT_EQ(FormOf(catalog, plain, 10, ByteArray(4, 0xFF)).coding, ChunkForm::Empty);
}

TEST(Fonts, EveryLengthShortOfTheWholeFails) {
    const ByteArray whole = test::FontChunk(Hex("0100010001 0001010000"));
    EXPECT_TRUE(LooksLikeFont(whole, false));
    const typFont font = ReadFont(whole, false);
    EXPECT_EQ(font.Chars['A'].Points, Hex("0100010001 0001010000"));
    EXPECT_TRUE(font.Chars['B'].Points.empty());
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_THROW(ReadFont(ByteSpan(whole).first(size), false), Failure) << size;
        EXPECT_FALSE(LooksLikeFont(ByteSpan(whole).first(size), false)) << size;
    }
    ByteArray high = whole;
    high[1] = 0x40;  // 5 x 16386 pixels
    EXPECT_THROW(ReadFont(high, false), Failure);
    EXPECT_FALSE(LooksLikeFont(high, false));
    EXPECT_FALSE(LooksLikeFont(whole + ByteArray{0}, false));
}

TEST(AreaNames, LinesAndTheirLimit) {
    std::vector<std::string> names;
    EXPECT_TRUE(ReadAreaNames(Ascii("xxOne\r\n\r\nTwo\r\nrest"), names));
    EXPECT_EQ(names[0], "One");
    EXPECT_EQ(names[1], "\r\nTwo");  // an empty line is no name and is not passed over
    EXPECT_EQ(names[2], "");
    std::string many = "\r\n";
    for (int i = 0; i < 28; ++i)
        many += "n\r\n";
    EXPECT_FALSE(ReadAreaNames(Ascii(many), names));
    EXPECT_EQ(names, std::vector<std::string>(27, "n"));
    EXPECT_TRUE(ReadAreaNames({}, names));
}

TEST(PicturePlanes, BothWaysAndWithinBounds) {
    for (std::int32_t width : {4, 8, 320})
        for (std::int32_t height : {1, 3}) {
            const ByteArray pixels = test::Noise(static_cast<std::size_t>(width * height));
            EXPECT_EQ(FixPicturePlanesForBMP(FixPicturePlanesForStorage(pixels, width, height),
                                             width, height),
                      pixels);
        }
    EXPECT_THROW(FixPicturePlanesForBMP(ByteArray(15), 8, 2), Failure);
    EXPECT_THROW(PixelsFromEgaPlanes(ByteArray(7), 8, 2), Failure);
    EXPECT_THROW(PixelsFromEgaPlanes(ByteArray(80), 12, 2), Failure);
    EXPECT_THROW(EgaPlanesFromPixels(ByteArray(16, 16), 8, 2), Failure);
    EXPECT_EQ(PackHalfBytes(Hex("010203 040506"), 3, 2), Hex("1230 4560"));
    EXPECT_EQ(UnpackHalfBytes(Hex("1230 4560"), 3, 2), Hex("010203 040506"));
}

TEST(GraphicsHeader, PlacesOfChunks) {
    const ByteArray bytes = Hex("000000 FFFFFF 100000 080000 FFFFFF 99");
    const auto offsets = ReadGraphicsHeader(bytes, 3, false);
    ASSERT_EQ(offsets.size(), 5u);
    EXPECT_EQ(FindChunk(offsets, 100, 0).size, 16u);  // up to the next that is not sparse
    EXPECT_TRUE(FindChunk(offsets, 100, 1).sparse);
    EXPECT_TRUE(FindChunk(offsets, 100, 2).damaged);
    EXPECT_EQ(FindChunk(offsets, 100, 3).size, 92u);  // a sparse last entry: the file's end
    EXPECT_THROW(FindChunk(offsets, 100, 4), Failure);
    EXPECT_THROW(ReadGraphicsHeader(Hex("0102"), 3, false), Failure);
    // Four bytes an entry, of which 24 bits count, and one entry to spare.
    EXPECT_EQ(ReadGraphicsHeader(Hex("00000000 08000001 FFFFFFFF"), 4, true),
              (std::vector<std::uint32_t>{0, 8}));
}

}  // namespace
}  // namespace tessaro
