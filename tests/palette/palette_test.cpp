#include "tessaro/palette.h"

#include "palette/palette_files.h"
#include "support/support.h"
#include "tessaro/version.h"

namespace tessaro {
namespace {

using test::Ascii;
using test::Hex;

class Palette : public test::InFolder {
protected:
    std::string WriteFile(const std::string& name, enmSupportedPaletteTypes type,
                          std::uint8_t value) {
        return folder_.Write(name, WritePaletteFile(type, ByteArray(kPaletteSize, value)));
    }

    clsPalette palette;
};

TEST_F(Palette, LoadsWhatTheNameOrTheFirstBytesSay) {
    const std::pair<std::string, enmSupportedPaletteTypes> files[] = {{"one.pal", ptJASC3},
                                                                      {"two.pal", ptJASC8},
                                                                      {"GAMEPAL.cpp", ptWolf4GW},
                                                                      {"pal.inc", ptWolf4SDL}};
    std::uint8_t value = 4;
    for (const auto& [name, type] : files) {
        const std::string path = WriteFile(name, type, value);
        ByteArray bytes;
        enmSupportedPaletteTypes found = ptUnknown;
        EXPECT_TRUE(palette.LoadPaletteDataFromFile(path, bytes, &found)) << name;
        EXPECT_EQ(bytes, ByteArray(kPaletteSize, value));
        EXPECT_EQ(found, type);
        palette.LoadPalette(path);
        EXPECT_EQ(palette.PaletteFile(), path);
        EXPECT_EQ(palette.Color(255), value * 0x010101);
        value = static_cast<std::uint8_t>(value + 4);
    }
    EXPECT_TRUE(ui_.boxes.empty());
}

struct RefusalCase {
    const char* file;
    const char* content;
    std::vector<std::pair<std::string, std::string>> boxes;  // prompt, title
};

TEST_F(Palette, RefusedFilesShowTheirBoxAndChangeNothing) {
    palette.LoadPalette();
    const std::int32_t before = palette.Color(1);
    const RefusalCase cases[] = {
        {"empty.pal", "", {{"File is 0 bytes in length.", "Empty file"}}},
        {"a.inc", "RGB(1,2)", {{"Error reading file.  Unexpected format", ""}}},
        {"b.pal", "JASC-PAL", {{"Error reading file.  Unexpected format", ""}}},
        {"c.pal",
         "raw",
         {{"Unknown palette file format!", ""},
          {"Error 0 in clsPalette.LoadPaletteDataFromFile: Unknown file format",
           "clsPalette.LoadPaletteDataFromFile Error"}}},
    };
    for (const RefusalCase& row : cases) {
        ui_.boxes.clear();
        palette.LoadPalette(folder_.Write(row.file, Ascii(row.content)));
        ASSERT_EQ(ui_.boxes.size(), row.boxes.size()) << row.file;
        for (std::size_t i = 0; i < row.boxes.size(); ++i) {
            EXPECT_EQ(ui_.boxes[i].prompt, row.boxes[i].first);
            EXPECT_EQ(ui_.boxes[i].title, row.boxes[i].second);
        }
    }
    ui_.boxes.clear();
    palette.LoadPalette(folder_.File("none.pal"));
    ASSERT_EQ(ui_.boxes.size(), 1u);
    EXPECT_EQ(ui_.boxes[0].prompt,
              "Error 53 in clsPalette.LoadPaletteDataFromFile: File not found");
    EXPECT_EQ(palette.Color(1), before);
    EXPECT_EQ(palette.PaletteFile(), "");
}

TEST_F(Palette, ColorsAreRedInTheLowByte) {
    palette.LoadPalette();
    EXPECT_EQ(palette.NumberOfColors(), 256);
    EXPECT_EQ(palette.Color(1), 0xA80000);
    ConfiguredGame().extension = "SOD";
    palette.LoadPalette();
    EXPECT_EQ(palette.Color(166), 0x003800);
    palette.Color(2, 0x7F030201);
    EXPECT_EQ(palette.Color(2), 0x030201);
    EXPECT_TRUE(palette.JASCPalette().starts_with(
        "JASC-PAL\r\n0100\r\n256\r\n0 0 0\r\n0 0 168\r\n1 2 3\r\n"));

    palette.JASCPalette("JASC-PAL\r\n0100\r\n1\r\n9 8 7\r\n");
    EXPECT_EQ(palette.Color(0), 0x070809);
    EXPECT_TRUE(ui_.boxes.empty());
    palette.JASCPalette("JASC");
    EXPECT_EQ(palette.Color(256), 0);
    palette.Color(-1, 5);
    EXPECT_EQ(ui_.boxes.size(), 3u);
    EXPECT_EQ(palette.Color(0), 0x070809);
}

TEST_F(Palette, ConfigurationBringsTheDefaultColors) {
    EXPECT_EQ(palette.Color(1), 0);
    clsVersion version;
    EXPECT_EQ(palette.Color(1), 0xA80000);
}

TEST_F(Palette, CreatesFilesOrKeepsTheOutput) {
    ByteArray out = Hex("01");
    EXPECT_FALSE(palette.CreatePaletteFileData(ptUnknown, ByteArray(kPaletteSize), out));
    EXPECT_FALSE(palette.CreatePaletteFileData(ptJASC8, ByteArray(3), out));
    EXPECT_EQ(out, Hex("01"));
    EXPECT_EQ(ui_.boxes.size(), 2u);
    EXPECT_TRUE(palette.CreatePaletteFileData(ptGAMEPAL, ByteArray(kPaletteSize), out));
    EXPECT_EQ(out.size(), 893u);
}

}  // namespace
}  // namespace tessaro
