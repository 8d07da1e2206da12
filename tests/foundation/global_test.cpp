#include "foundation/global.h"

#include <regex>

#include "foundation/guard.h"
#include "foundation/store.h"
#include "platform/system.h"
#include "saving/replace_files.h"
#include "support/saving.h"

namespace tessaro {
namespace {

using namespace modGlobal;
using test::Ascii;

class Global : public test::InFolder {
protected:
    Global() { ConfiguredGame().backupFolder = folder_.File("backup"); }

    std::string Log() const { return test::TextOf(folder_.Read("Error.log")); }
};

TEST_F(Global, ReportShowsLogsAndClears) {
    SetErrorState(Failure(53));
    ReportError("clsGameMaps.LoadMap");
    ASSERT_EQ(ui_.boxes.size(), 1u);
    EXPECT_EQ(ui_.boxes[0].prompt, "Error 53 in clsGameMaps.LoadMap: File not found");
    EXPECT_EQ(ui_.boxes[0].title, "clsGameMaps.LoadMap Error");
    EXPECT_EQ(ui_.boxes[0].style, mbCritical);
    EXPECT_TRUE(std::regex_match(
        Log(), std::regex("Date/Time: \\d\\d/\\d\\d/\\d{4} \\d\\d:\\d\\d [^\r\n]+\r\n"
                          "Procedure: clsGameMaps\\.LoadMap\r\nError number: 53\r\n"
                          "Description: File not found\r\n-{52}\r\n")))
        << Log();

    SetErrorState(Failure(-7, "Odd", 12));
    ReportError("a.b");
    EXPECT_EQ(ui_.boxes[1].prompt, "Error -7 in a.b at line 12: Odd");
    EXPECT_NE(Log().find("Error number: -7\r\nLine: 12\r\nDescription: Odd\r\n"),
              std::string::npos);
    EXPECT_EQ(SharedStore().errorState.Number, 0);
    EXPECT_EQ(SharedStore().errorState.Description, "");
}

TEST_F(Global, HelpIsOfferedForItsFamilyOfNumbersWhereTheFileExists) {
    const std::string helpFile = JoinPath(LibraryFolder(), "KZR.chm");
    WriteWholeFile(helpFile, {});
    for (const std::int32_t number : {1399, 1400, 1699, 1700, -1500}) {
        SetErrorState(Failure(number, "x"));
        ReportError("a.b");
    }
    DeleteFileAt(helpFile);
    SetErrorState(Failure(1500, "x"));
    ReportError("a.b");
    ASSERT_EQ(ui_.boxes.size(), 6u);
    for (const int withHelp : {1, 2}) {
        EXPECT_EQ(ui_.boxes[static_cast<std::size_t>(withHelp)].style, mbCritical | mbHelpButton);
        EXPECT_EQ(ui_.boxes[static_cast<std::size_t>(withHelp)].helpFile, helpFile);
    }
    EXPECT_EQ(ui_.boxes[1].helpContext, 1400);
    for (const int without : {0, 3, 4, 5})
        EXPECT_EQ(ui_.boxes[static_cast<std::size_t>(without)].style, mbCritical);
}

TEST_F(Global, ALogThatCannotBeWrittenKeepsToReportErrorAlone) {
    SharedStore().appPath = folder_.File("nowhere");
    EXPECT_THROW(ReportError("a.b"), Failure);
    EXPECT_FALSE(Guarded("a.b", []() -> bool { throw Failure(5); }));
    EXPECT_EQ(ui_.boxes.back().prompt, "Error 5 in a.b: Invalid procedure call or argument");
}

TEST_F(Global, AFailureIsReportedUnderTheInnermostStep) {
    EXPECT_FALSE(Guarded("a.b", [] {
        return Step("a.outer",
                    [] { return Step("a.inner", []() -> bool { throw Failure(kDiskFull); }); });
    }));
    ASSERT_EQ(ui_.boxes.size(), 1u);
    EXPECT_EQ(ui_.boxes[0].title, "a.inner Error");
}

TEST_F(Global, GuardTurnsEveryExceptionIntoTheFailureValue) {
    EXPECT_EQ(Guarded(
                  "a.b", []() -> int { throw std::bad_alloc(); }, -1),
              -1);
    EXPECT_EQ(ui_.boxes.back().prompt, "Error 7 in a.b: Out of memory");
    Guarded("a.b", [] { throw std::runtime_error("host"); });
    EXPECT_EQ(ui_.boxes.back().prompt, "Error 0 in a.b: host");
    Guarded("a.b", [] { throw 5; });
    EXPECT_EQ(ui_.boxes.size(), 3u);
}

TEST_F(Global, BackupNumbersAreSharedByAllFilesOfASave) {
    folder_.MakeFolder("backup");
    EXPECT_EQ(NextBackupNumber({"A.WL6", "B.WL6"}), 1);
    folder_.Write(JoinPath("backup", "B.WL6.001"), {});
    EXPECT_EQ(NextBackupNumber({"A.WL6", "B.WL6"}), 2);
    folder_.Write(JoinPath("backup", "A.WL6.002"), {});
    EXPECT_EQ(NextBackupNumber({"A.WL6", "B.WL6"}), 3);
    EXPECT_EQ(NextBackupNumber({"C.WL6"}), 1);
}

TEST_F(Global, BackupMovesTheFileAndRestoreBringsItBack) {
    const std::string path = folder_.Write("A.WL6", Ascii("old"));
    ASSERT_TRUE(BackupFile(path, 12));
    EXPECT_FALSE(FileExists(path));
    EXPECT_EQ(folder_.Read(JoinPath("backup", "A.WL6.012")), Ascii("old"));
    EXPECT_FALSE(RestoreFile(path, 12)) << "only over a new, failed file";
    folder_.Write("A.WL6", Ascii("half"));
    ASSERT_TRUE(RestoreFile(path, 12));
    EXPECT_EQ(folder_.Read("A.WL6"), Ascii("old"));
    EXPECT_FALSE(folder_.Has(JoinPath("backup", "A.WL6.012")));
    EXPECT_FALSE(RestoreFile(path, 12)) << "nothing left to restore";
    EXPECT_FALSE(BackupFile(folder_.File("missing"), 1));
    ASSERT_TRUE(BackupFile(path, 1234));
    EXPECT_TRUE(folder_.Has(JoinPath("backup", "A.WL6.1234")));
    EXPECT_TRUE(ui_.boxes.empty());
}

TEST_F(Global, UnnumberedBackupsReplaceEachOtherAndNumberedOnesNever) {
    const std::string path = folder_.Write("A", Ascii("1"));
    ASSERT_TRUE(BackupFile(path, 0));
    folder_.Write("A", Ascii("2"));
    ASSERT_TRUE(BackupFile(path, 0));
    EXPECT_EQ(folder_.Read(JoinPath("backup", "A")), Ascii("2"));

    folder_.Write(JoinPath("backup", "A.003"), Ascii("kept"));
    folder_.Write("A", Ascii("3"));
    EXPECT_FALSE(BackupFile(path, 3));
    EXPECT_EQ(ui_.boxes.back().prompt, "Error 0 in modGlobal.BackupFile: Bad backup number!");
    EXPECT_EQ(folder_.Read("A"), Ascii("3"));
    EXPECT_EQ(folder_.Read(JoinPath("backup", "A.003")), Ascii("kept"));
}

TEST_F(Global, BackupFolderIsMadeOneLevelDeepOnly) {
    const std::string path = folder_.Write("A", Ascii("1"));
    ConfiguredGame().backupFolder = JoinPath(folder_.File("no"), "deeper");
    EXPECT_FALSE(BackupFile(path, 1));
    EXPECT_EQ(ui_.boxes.back().prompt,
              "Error 76 in modGlobal.BackupFile: Folder: " + ConfiguredGame().backupFolder +
                  "\r\n\r\nPath not found");
    EXPECT_EQ(folder_.Read("A"), Ascii("1"));
}

TEST_F(Global, FileNamesWithAndWithoutExtension) {
    EXPECT_EQ(FileNameFromPath(JoinPath("x", "A.B.C"), false), "A.B.C");
    EXPECT_EQ(FileNameFromPath(JoinPath("x", "A.B.C"), true), "A");
    EXPECT_EQ(FileNameFromPath("A.B", false), "A.B");
    EXPECT_THROW(FileNameFromPath("NOPOINT", true), Failure);
    ConfiguredGame().outputFolder = "out";
    EXPECT_THROW((void)ConfiguredGame().OutputPath("VSWAP.WL6"), Failure)
        << "without a compile extension";
    ConfiguredGame().compileExtension = "WL1";
    EXPECT_EQ(ConfiguredGame().OutputPath(JoinPath("game", "VSWAP.WL6")),
              JoinPath("out", "VSWAP.WL1"));
}

TEST_F(Global, ReplacedFilesKeepTheCaseOfTheirNames) {
    folder_.Write("vswap.wl6", Ascii("old"));
    const std::string path = folder_.File("VSWAP.WL6");
    {
        test::FailingFiles failing(6);  // the move of the new file, after the old one has gone
        EXPECT_THROW(ReplaceFiles({{path, Ascii("new")}}), Failure);
        EXPECT_TRUE(failing.Failed());
    }
    EXPECT_EQ(ListFiles(folder_.Path(), "v*"), std::vector<std::string>{"vswap.wl6"});
    EXPECT_EQ(folder_.Read("vswap.wl6"), Ascii("old"));
    ASSERT_TRUE(ReplaceFiles({{path, Ascii("new")}}));
    EXPECT_EQ(ListFiles(folder_.Path(), "v*"), std::vector<std::string>{"vswap.wl6"});
    EXPECT_EQ(folder_.Read("vswap.wl6"), Ascii("new"));
}

TEST_F(Global, ALogThatCannotBeWrittenDoesNotKeepOldFilesAway) {
    const std::string a = folder_.Write("A.WL6", Ascii("old a"));
    const std::string b = folder_.Write("B.WL6", Ascii("old b"));
    SharedStore().appPath = folder_.File("nowhere");
    {
        // The move of the first new file, then that of the first restore.
        const test::FailingFiles failing(3, 4, FileOperation::Move);
        EXPECT_EQ(test::FailureOf([&] {
                      ReplaceFiles({{a, Ascii("new a")}, {b, Ascii("new b")}});
                  }),
                  kDiskFull);
    }
    EXPECT_EQ(folder_.Read(JoinPath("backup", "A.WL6.001")), Ascii("old a"));
    EXPECT_EQ(folder_.Read("B.WL6"), Ascii("old b"));
}

TEST_F(Global, ReplacingFilesIsAllOrNothingAtEveryFileOperation) {
    const std::string a = folder_.File("A.WL6"), b = folder_.File("B.WL6"),
                      c = folder_.File("C.WL6");
    test::EachFailure(
        15,
        [&] {
            folder_.RemoveFolder("backup");
            folder_.Write("A.WL6", Ascii("old a"));
            folder_.Write("B.WL6", Ascii("old b"));
        },
        [&] {
            return ReplaceFiles({{a, Ascii("new a")}, {c, Ascii("new c")}, {b, Ascii("new b")}});
        },
        [&](bool done) {
            EXPECT_EQ(folder_.Read("A.WL6"), Ascii(done ? "new a" : "old a"));
            EXPECT_EQ(folder_.Read("B.WL6"), Ascii(done ? "new b" : "old b"));
            EXPECT_EQ(FileExists(c), done);
            EXPECT_TRUE(ListFiles(folder_.Path(), "*.new").empty());
        });
    EXPECT_EQ(folder_.Read("C.WL6"), Ascii("new c"));
    EXPECT_THROW(ReplaceFiles({{a, Ascii("x")}, {folder_.File("a.wl6"), Ascii("y")}}), Failure)
        << "two files under one name";
    ConfiguredGame().backupFolder.clear();
    EXPECT_THROW(ReplaceFiles({{a, Ascii("x")}}), Failure) << "nowhere to put the old file";
    EXPECT_EQ(folder_.Read("A.WL6"), Ascii("new a"));
}

}  // namespace
}  // namespace tessaro
