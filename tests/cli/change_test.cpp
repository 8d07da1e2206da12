// What comes out goes back in, with backups, and pictures keep their colours.
#include <algorithm>
#include <filesystem>

#include "cli/command.h"

namespace tessaro::test {

namespace {

namespace fs = std::filesystem;

struct RoundTripCase {
    const char* kind;
    const char* option;
    const char* extension;
    bool bmp;

    friend void PrintTo(const RoundTripCase& row, std::ostream* out) { *out << row.kind; }
};

class RoundTrip : public testing::TestWithParam<RoundTripCase> {};

/// The file of one item of a kind goes into another item of it, which then is the first one.
TEST_P(RoundTrip, AnExtractedFileComesBackAsItWas) {
    const SampleGame game;
    const TempFolder out;
    const std::string kind = GetParam().kind;
    std::vector<int> filled = Filled(game.Path(), kind);
    std::erase_if(filled, [&](int n) {  // pictures and texts differ from other chunks
        return kind == "chunk" && ItemOf(game.Path(), kind, n).at("type") != "vgDemo";
    });
    ASSERT_FALSE(filled.empty());
    const int from = filled.front(), to = filled.back();
    std::vector<std::string> extract = {"extract", game.Path(), out.Path(), "--kind", kind};
    if (GetParam().bmp)
        extract.push_back("--bmp");
    ASSERT_EQ(Tessaro(extract).exitCode, 0);
    std::string file;
    for (const auto& entry : fs::directory_iterator(out.File(kind))) {
        std::string number = std::to_string(from);
        number.insert(0, 3 - number.size(), '0');
        if (entry.path().filename().string().starts_with(kind + "-" + number) &&
            entry.path().extension() == GetParam().extension)
            file = entry.path().string();
    }
    const Ran import =
        Tessaro({"import", game.Path(), GetParam().option, std::to_string(to), file});
    ASSERT_EQ(import.exitCode, 0) << import.err;
    EXPECT_EQ(ItemOf(game.Path(), kind, to).at("crc32"),
              ItemOf(game.Path(), kind, from).at("crc32"));
    EXPECT_EQ(import.out.find("nearest"), std::string::npos) << "the indices are kept";
    EXPECT_FALSE(ListFiles(game.Folder().File("backup"), "*.001").empty());
}

INSTANTIATE_TEST_SUITE_P(Kind, RoundTrip,
                         testing::Values(RoundTripCase{"wall", "--wall", ".png", false},
                                         RoundTripCase{"wall", "--wall", ".bmp", true},
                                         RoundTripCase{"sprite", "--sprite", ".png", false},
                                         RoundTripCase{"sprite", "--sprite", ".bmp", true},
                                         RoundTripCase{"sound", "--sound", ".wav", false},
                                         RoundTripCase{"picture", "--picture", ".png", false},
                                         RoundTripCase{"chunk", "--chunk", ".bin", false},
                                         RoundTripCase{"audio", "--audio", ".bin", false}),
                         [](const auto& row) {
                             return std::string(row.param.kind) + (row.param.bmp ? "Bmp" : "");
                         });

/// A BMP file of 24 bits a pixel, 64 x 64: one color above, another below.
ByteArray TwoColors(const std::string& above, const std::string& below) {
    ByteArray file =
        Hex("424D 36300000 00000000 36000000 28000000 40000000 40000000 0100 1800"
            "00000000 00300000 00000000 00000000 00000000 00000000");
    for (int pixel = 0; pixel < 64 * 64; ++pixel) {
        const ByteArray color = Hex(pixel < 64 * 32 ? below : above);  // the bottom row comes first
        file.insert(file.end(), color.begin(), color.end());
    }
    return file;
}

/// The pixel bytes of an 8-bit BMP file of 64 x 64, by row from the top.
std::uint8_t PixelOf(const ByteArray& bmp, int x, int y) {
    return bmp.at(static_cast<std::size_t>(1078 + (63 - y) * 64 + x));
}

// The default palette's 0 is black, 15 white, 4 (168, 0, 0); 255 is (152, 0, 136).
TEST(Import, OtherColoursBecomeTheNearestAndTheHoleStaysAHole) {
    const SampleGame game;
    const TempFolder files;
    const std::string file = files.Write("two.bmp", TwoColors("FAFDFB", "880098"));
    const std::string wall = std::to_string(Filled(game.Path(), "wall").front());
    const std::string sprite = std::to_string(Filled(game.Path(), "sprite").front());
    const Ran ran = Tessaro({"import", game.Path(), "--wall", wall, file});
    ASSERT_EQ(ran.exitCode, 0) << ran.err;
    EXPECT_NE(ran.out.find("nearest"), std::string::npos);
    ASSERT_EQ(Tessaro({"import", game.Path(), "--sprite", sprite, file}).exitCode, 0);
    ASSERT_EQ(Tessaro({"extract", game.Path(), files.Path(), "--kind", "wall", "--kind", "sprite",
                       "--bmp"})
                  .exitCode,
              0);
    for (const auto& [kind, number] : {std::pair("wall", wall), std::pair("sprite", sprite)}) {
        const std::string name = std::string(kind) + "/" + kind + "-" +
                                 std::string(3 - number.size(), '0') + number + ".bmp";
        const ByteArray bmp = files.Read(name);
        EXPECT_EQ(PixelOf(bmp, 5, 0), 15) << name;
        EXPECT_EQ(PixelOf(bmp, 5, 31), 15) << name;
        EXPECT_EQ(PixelOf(bmp, 5, 32), 255) << name;
    }
}

TEST(Extract, SpritePicturesKeepThePaletteAndAreCutOut) {
    const SampleGame game;
    const TempFolder out;
    ASSERT_EQ(Tessaro({"extract", game.Path(), out.Path(), "--kind", "sprite"}).exitCode, 0);
    const auto names = ListFiles(out.File("sprite"), "*.png");
    ASSERT_FALSE(names.empty());
    const ByteArray png = out.Read("sprite/" + names.front());
    const auto chunk = [&](const char* type) {
        const ByteArray wanted = Ascii(type);
        return std::search(png.begin(), png.end(), wanted.begin(), wanted.end());
    };
    const auto palette = chunk("PLTE"), holes = chunk("tRNS");
    ASSERT_TRUE(palette != png.end() && holes != png.end());
    EXPECT_EQ(ByteArray(palette - 4, palette), Hex("00000300"));
    EXPECT_EQ(ByteArray(palette + 4 + 3 * 15, palette + 4 + 3 * 16), Hex("FCFCFC"));
    ByteArray alpha(256, 0xFF);
    alpha[255] = 0;
    EXPECT_EQ(ByteArray(holes - 4, holes), Hex("00000100"));
    EXPECT_EQ(ByteArray(holes + 4, holes + 260), alpha);
}

TEST(Extract, NamesFromTheGameStayInTheFolder) {
    const SampleGame game;
    const TempFolder out;
    ASSERT_EQ(Tessaro({"map", "rename", game.Path(), "0", "../../../evil/x"}).exitCode, 0);
    ASSERT_EQ(Tessaro({"extract", game.Path(), out.File("a/b/c/d"), "--kind", "map"}).exitCode, 0);
    int files = 0;
    for (const auto& entry : fs::recursive_directory_iterator(out.Path()))
        if (entry.is_regular_file()) {
            ++files;
            EXPECT_EQ(entry.path().parent_path(), out.File("a/b/c/d/map"));
        }
    EXPECT_EQ(files, 2 * static_cast<int>(Filled(game.Path(), "map").size()));
}

TEST(Change, OutputElsewhereLeavesTheGameAsItIs) {
    const SampleGame game;
    const TempFolder out;
    const Json before = List(game.Path());
    for (const auto& entry : fs::directory_iterator(game.Path()))
        fs::copy(entry.path(), out.File(entry.path().filename().string()));
    const auto change = [&](const char* value) {
        const Ran ran = Tessaro({"map", "set", game.Path(), "0", "0", "1", "1", value, "--output",
                                 out.Path(), "--backup", out.File("old/ones")});
        ASSERT_EQ(ran.exitCode, 0) << ran.err;
    };
    change("77");
    const Json changed = ItemOf(out.Path(), "map", 0);
    EXPECT_NE(changed.at("crc32"), ItemOf(game.Path(), "map", 0).at("crc32"));
    const ByteArray saved = out.Read(ListFiles(out.Path(), "GAMEMAPS.*").front());
    change("78");  // starts from the game again; what stands in DIR is kept as a backup
    EXPECT_EQ(List(game.Path()), before);
    EXPECT_FALSE(FolderExists(game.Folder().File("backup")));
    bool kept = false;
    for (const std::string& name : ListFiles(out.File("old/ones"), "GAMEMAPS.*"))
        kept |= out.Read("old/ones/" + name) == saved;
    EXPECT_TRUE(kept);
}

TEST(Change, AFailedImportLeavesTheGameAsItIs) {
    const SampleGame game;
    const TempFolder files;
    const Json before = List(game.Path());
    const std::string damaged = files.Write("bad.map", Ascii("KZR3.1\x7F\x7F"));
    EXPECT_EQ(Tessaro({"map", "import", game.Path(), "0", damaged, "--yes"}).exitCode, 1);
    const std::string narrow = files.Write("two.bmp", TwoColors("000000", "000000"));
    EXPECT_EQ(Tessaro({"import", game.Path(), "--picture", "0", narrow}).exitCode, 1);
    EXPECT_EQ(List(game.Path()), before);
    EXPECT_FALSE(FolderExists(game.Folder().File("backup")));
}

struct FormatCase {
    const char* format;
    int side;
    int planes;  ///< that the format holds

    friend void PrintTo(const FormatCase& row, std::ostream* out) { *out << row.format; }
};

class MapFormats : public testing::TestWithParam<FormatCase> {};

TEST_P(MapFormats, AMapGoesOutAndComesBack) {
    const SampleGame game;
    const TempFolder files;
    const std::string side = std::to_string(GetParam().side), file = files.File("one.dat");
    ASSERT_EQ(Tessaro({"map", "resize", game.Path(), "0", side, side}).exitCode, 0);
    const Json before = ItemOf(game.Path(), "map", 0);
    const Ran out = Tessaro({"map", "export", game.Path(), "0", file, "--format", GetParam().format,
                             "--music", "m.ogg"});
    ASSERT_EQ(out.exitCode, 0) << out.err;
    ASSERT_EQ(Tessaro({"map", "resize", game.Path(), "0", "8", "8"}).exitCode, 0);
    const Ran in = Tessaro({"map", "import", game.Path(), "0", file});
    ASSERT_EQ(in.exitCode, 0) << in.err;
    const Json after = ItemOf(game.Path(), "map", 0);
    EXPECT_EQ(after.at("width"), GetParam().side);
    for (int plane = 0; plane < GetParam().planes; ++plane)
        EXPECT_EQ(after.at("planes").at(std::size_t(plane)),
                  before.at("planes").at(std::size_t(plane)));
}

INSTANTIATE_TEST_SUITE_P(Format, MapFormats,
                         testing::Values(FormatCase{"kzr", 70, 3}, FormatCase{"floedit", 64, 2},
                                         FormatCase{"mapedit", 64, 2}, FormatCase{"iphone", 64, 3},
                                         FormatCase{"rtl", 128, 3}, FormatCase{"rtc", 128, 3}),
                         [](const auto& row) { return std::string(row.param.format); });

TEST(MapCommands, ConvertNeedsNoGame) {
    const SampleGame game;
    const TempFolder files;
    ASSERT_EQ(Tessaro({"map", "export", game.Path(), "all", files.File("all.map")}).exitCode, 0);
    const Ran there = Tessaro({"map", "convert", files.File("all.map"), files.File("all.lvl")});
    ASSERT_EQ(there.exitCode, 0) << there.err;
    const ByteArray floEdit = files.Read("all.lvl");
    EXPECT_EQ(ByteArray(floEdit.begin(), floEdit.begin() + 5), Ascii("FE1.0"));
    ASSERT_EQ(Tessaro({"map", "convert", files.File("all.lvl"), files.File("all.lvl")}).exitCode, 0)
        << "onto itself";
    EXPECT_EQ(files.Read("all.lvl"), floEdit);
    EXPECT_EQ(Tessaro({"map", "convert", files.File("all.lvl"), files.File("one.dat"), "--format",
                       "mapedit"})
                  .exitCode,
              2)
        << "which of the maps?";
    ASSERT_EQ(Tessaro({"map", "convert", files.File("all.lvl"), files.File("one.dat"), "--format",
                       "mapedit", "--map", "0"})
                  .exitCode,
              0);
    EXPECT_EQ(files.Read("one.dat"), ByteArray(floEdit.begin() + 9, floEdit.begin() + 9 + 16384));
}

TEST(MapCommands, AddRemoveAndTheQuestion) {
    const SampleGame game;
    const TempFolder files;
    const int count = static_cast<int>(Filled(game.Path(), "map").size());
    const std::string one = files.File("one.map"), end = std::to_string(count);
    ASSERT_EQ(Tessaro({"map", "export", game.Path(), "0", one}).exitCode, 0);
    const Ran asked = Tessaro({"map", "import", game.Path(), end, one});
    EXPECT_EQ(asked.exitCode, 1);
    EXPECT_NE(asked.err.find("--yes"), std::string::npos);
    const Ran ran = Tessaro({"map", "import", game.Path(), end, one, "--yes"});
    ASSERT_EQ(ran.exitCode, 0) << ran.err;
    EXPECT_EQ(ran.err, "") << "no progress bar where there is no terminal";
    EXPECT_EQ(ItemOf(game.Path(), "map", count).at("crc32"),
              ItemOf(game.Path(), "map", 0).at("crc32"));
    ASSERT_EQ(Tessaro({"map", "add", game.Path(), "0", "--name", "Attic"}).exitCode, 0);
    EXPECT_EQ(ItemOf(game.Path(), "map", 0).at("name"), "Attic");
    ASSERT_EQ(Tessaro({"map", "remove", game.Path(), "0"}).exitCode, 0);
    EXPECT_EQ(static_cast<int>(Filled(game.Path(), "map").size()), count + 1);
    EXPECT_EQ(ItemOf(game.Path(), "map", count).at("name"),
              ItemOf(game.Path(), "map", 0).at("name"));
}

}  // namespace

}  // namespace tessaro::test
