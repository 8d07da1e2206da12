#include "platform/file.h"

#include "foundation/read_file_bytes.h"
#include "support/saving.h"

namespace tessaro {
namespace {

using modReadFileBytes::ReadFileBytes;
using modReadFileBytes::WriteFileBytes;
using test::Ascii;
using test::FailureOf;
using test::Hex;

TEST(Files, FailWithTheirClassicNumbers) {
    test::TempFolder folder;
    folder.MakeFolder("sub");
    folder.Write("three", Ascii("abc"));
    const auto open = [&](const std::string& name) {
        return FailureOf([&] { File(folder.File(name), FileMode::Read); });
    };
    EXPECT_EQ(open("missing"), kFileNotFound);
    EXPECT_EQ(open(JoinPath("nofolder", "missing")), kPathNotFound);
    EXPECT_EQ(open("sub"), kPathFileAccess);
    EXPECT_EQ(FailureOf([&] { DeleteFileAt(folder.File("missing")); }), kFileNotFound);
    EXPECT_EQ(FailureOf([&] { ListFiles(folder.File("nofolder"), "*"); }), kFileNotFound);
    File file(folder.File("three"), FileMode::Read);
    EXPECT_EQ(FailureOf([&] { file.ReadAt(1, 3); }), kInputPastEnd);
    EXPECT_EQ(FailureOf([&] { file.ReadAt(0, std::int64_t{1} << 50); }), kInputPastEnd)
        << "a hostile size is refused before memory is taken";
    EXPECT_EQ(FailureOf([] { File().Size(); }), kBadFileNameOrNumber);
    EXPECT_EQ(file.ReadAt(1, 2), Ascii("bc"));
}

TEST(Files, AreFoundWithoutRegardToCase) {
    test::TempFolder folder;
    folder.Write("vswap.wl6", Ascii("old"));
    EXPECT_TRUE(FileExists(folder.File("VSWAP.WL6")));
    EXPECT_EQ(folder.Read("Vswap.Wl6"), Ascii("old"));
    CopyFileTo(folder.File("VSWAP.WL6"), folder.File("copy"));
    MoveFileTo(folder.File("COPY"), folder.File("VSwap.wl6"));
    EXPECT_EQ(ListFiles(folder.Path(), "*").size(), 1u) << "no second spelling of the name";
    DeleteFileAt(folder.File("VSWAP.WL6"));
    EXPECT_TRUE(ListFiles(folder.Path(), "*").empty());
}

TEST(Files, AreTheSameHoweverTheirPathsAreSpelled) {
    test::TempFolder folder;
    folder.MakeFolder("sub");
    folder.Write("VSWAP.WL1", test::Ascii("x"));
    EXPECT_TRUE(SameFile(folder.File("VSWAP.WL1"), folder.File("vswap.wl1")));
    EXPECT_TRUE(SameFile(folder.File("VSWAP.WL1"), folder.File("sub/../VSWAP.WL1")));
    EXPECT_TRUE(SameFile(folder.File("NEW.WL1"), folder.Path() + "/./NEW.WL1")) << "not there yet";
    EXPECT_FALSE(SameFile(folder.File("VSWAP.WL1"), folder.File("VSWAP.WL6")));
    EXPECT_FALSE(SameFile(folder.File("VSWAP.WL1"), folder.File("sub/VSWAP.WL1")));
}

TEST(Files, ListMatchesInNameOrderAndLeavesFoldersOut) {
    test::TempFolder folder;
    for (const char* name : {"vgadict.WL6", "VGADICT.sod", "VGADICTX.WL6", "bmenace1.exe"})
        folder.Write(name, {});
    folder.MakeFolder("VGADICT.DIR");
    EXPECT_EQ(ListFiles(folder.Path(), "VGADICT.*"),
              (std::vector<std::string>{"VGADICT.sod", "vgadict.WL6"}));
    EXPECT_EQ(ListFiles(folder.Path(), "BMENACE*.EXE").size(), 1u);
    EXPECT_TRUE(MatchesPattern("a.b.c", "*.c"));
    EXPECT_FALSE(MatchesPattern("ab", "a?b"));
}

TEST(Files, IncompleteCopyIsRemoved) {
    test::TempFolder folder;
    folder.Write("from", Ascii("abc"));
    test::EachFailure(
        5, [] {},
        [&] {
            CopyFileTo(folder.File("from"), folder.File("to"));
            return true;
        },
        [&](bool done) { EXPECT_EQ(folder.Has("to"), done); });
    EXPECT_EQ(folder.Read("to"), Ascii("abc"));
}

class FileNumbers : public test::InFolder {};

TEST_F(FileNumbers, ReadUnsignedBelowFourBytesAndZeroBeyondTheEnd) {
    folder_.Write("f", Hex("FFFFFFFF 3412"));
    File file(folder_.File("f"), FileMode::Read);
    EXPECT_EQ(ReadFileBytes(file, 1, 1), 255);
    EXPECT_EQ(ReadFileBytes(file, 2, 1), 65535);
    EXPECT_EQ(ReadFileBytes(file, 3, 1), 16777215);
    EXPECT_EQ(ReadFileBytes(file, 4, 1), -1);
    EXPECT_EQ(ReadFileBytes(file, 2, 0), 0x1234) << "continues at the current position";
    EXPECT_EQ(ReadFileBytes(file, 4, 5), 0x1234) << "missing bytes read as zero";
    EXPECT_EQ(ReadFileBytes(file, 4, 100), 0);
    EXPECT_TRUE(ui_.boxes.empty());
}

TEST_F(FileNumbers, WriteGrowsTheFile) {
    {
        File file(folder_.File("f"), FileMode::Update);
        WriteFileBytes(file, 0x1234, 2, 1);
        WriteFileBytes(file, -2, 3, 0);
        WriteFileBytes(file, 7, 1, 8);
        EXPECT_EQ(ReadFileBytes(file, 2, 1), 0x1234) << "reading after writing";
        WriteFileBytes(file, 8, 1, 0);
        file.Close();
    }
    EXPECT_EQ(folder_.Read("f"), Hex("3412 08FFFF 0000 07"));
}

TEST_F(FileNumbers, BadCallsAreReportedAndReadZero) {
    folder_.Write("f", Hex("0102"));
    File file(folder_.File("f"), FileMode::Read);
    EXPECT_EQ(ReadFileBytes(file, 0, 1), 0);
    EXPECT_EQ(ReadFileBytes(file, 5, 1), 0);
    File closed;
    EXPECT_EQ(ReadFileBytes(closed, 2, 1), 0);
    WriteFileBytes(closed, 1, 2, 1);
    ASSERT_EQ(ui_.boxes.size(), 4u);
    EXPECT_EQ(ui_.boxes[0].title, "modReadFileBytes.ReadFileBytes Error");
    EXPECT_EQ(ui_.boxes[2].prompt,
              "Error 52 in modReadFileBytes.ReadFileBytes: Bad file name or number");
    EXPECT_EQ(ui_.boxes[3].title, "modReadFileBytes.WriteFileBytes Error");
}

}  // namespace
}  // namespace tessaro
