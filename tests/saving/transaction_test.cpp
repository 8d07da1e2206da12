#include "saving/transaction.h"

#include <filesystem>

#include "foundation/names.h"
#include "saving/backups.h"
#include "saving/recovery.h"
#include "support/faulty_files.h"
#include "support/support.h"

namespace tessaro {
namespace {

using test::Ascii;

/// A pair of data files on the disk and how it is saved.
class Transactions : public testing::Test {
protected:
    Transactions() {
        folder_.Write("MAPHEAD.WL1", Ascii("old head"));
        folder_.Write("GAMEMAPS.WL1", Ascii("old maps"));
        Read();
    }
    void Read() {
        head_ = DataFile::Read(*files_, folder_.File("MAPHEAD.WL1"));
        maps_ = DataFile::Read(*files_, folder_.File("GAMEMAPS.WL1"));
    }
    SavePlan Plan(std::string_view head = "new head", std::string_view maps = "new maps") {
        SavePlan plan;
        plan.files = {{folder_.File("maphead.wl1"), Ascii(head)},
                      {folder_.File("GAMEMAPS.WL1"), Ascii(maps)}};
        plan.read = {&head_, &maps_};
        plan.backupFolder = folder_.File("Backup");
        return plan;
    }
    /// The failure of a save: its number and text; 0 when it succeeds.
    Failure FailureOf(const SavePlan& plan) {
        try {
            Commit(*files_, plan);
        } catch (const Failure& failure) {
            return failure;
        }
        return {0, ""};
    }
    std::string Text(const std::string& name) const {
        const ByteArray bytes = folder_.Read(name);
        return {bytes.begin(), bytes.end()};
    }
    void ExpectOldPair() const {
        EXPECT_EQ(Text("MAPHEAD.WL1"), "old head");
        EXPECT_EQ(Text("GAMEMAPS.WL1"), "old maps");
        EXPECT_EQ(files_->List(folder_.Path()).size(), 2u) << "litter";
    }
    static std::string InBackups(const std::string& name) { return JoinPath("Backup", name); }

    test::TempFolder folder_;
    std::shared_ptr<Files> files_ = DiskFiles();
    DataFile head_, maps_;
};

TEST_F(Transactions, KeepOldFilesUnderOneNumberAndNamesAsTheFolderSpellsThem) {
    folder_.MakeFolder("Backup");
    folder_.Write(InBackups("maphead.wl1.001"), Ascii("older"));
    EXPECT_EQ(Commit(*files_, Plan()).backupNumber, 2);
    EXPECT_EQ(Text("MAPHEAD.WL1"), "new head");
    EXPECT_EQ(Text("GAMEMAPS.WL1"), "new maps");
    EXPECT_EQ(Text(InBackups("MAPHEAD.WL1.002")), "old head");
    EXPECT_EQ(Text(InBackups("GAMEMAPS.WL1.002")), "old maps");
    EXPECT_EQ(files_->List(folder_.Path()),
              (std::vector<std::string>{"GAMEMAPS.WL1", "MAPHEAD.WL1"}));

    EXPECT_EQ(NextFreeNumber({"A.001", "b.002", "A.0003", "A.3", "A.1000", "AB.003"}, {"A", "B"}),
              3);
    EXPECT_EQ(NextFreeNumber({"A.001", "A.999", "A.1000"}, {"A"}, 999), 1001);
}

TEST_F(Transactions, RefuseWhatAnotherProgramChangedOnce) {
    folder_.Write("GAMEMAPS.WL1", Ascii("foreign maps"));
    const Failure refused = FailureOf(Plan());
    EXPECT_EQ(refused.Number, kPermissionDenied);
    EXPECT_NE(refused.Description.find("GAMEMAPS.WL1"), std::string::npos);
    EXPECT_EQ(refused.Description.find("MAPHEAD.WL1"), std::string::npos);
    EXPECT_EQ(Text("MAPHEAD.WL1"), "old head");
    folder_.Write("GAMEMAPS.WL1", Ascii("foreign once more"));
    EXPECT_EQ(FailureOf(Plan()).Number, kPermissionDenied);
    EXPECT_EQ(FailureOf(Plan()).Number, 0) << "what was refused counts as read";
    EXPECT_EQ(Text(InBackups("GAMEMAPS.WL1.001")), "foreign once more");

    Read();
    DeleteFileAt(folder_.File("MAPHEAD.WL1"));
    EXPECT_EQ(FailureOf(Plan()).Number, kPermissionDenied) << "a file that is gone";
    EXPECT_EQ(FailureOf(Plan()).Number, 0);
}

TEST_F(Transactions, RefuseTargetsThatTheyMayNotReplace) {
    const auto expectRefused = [&](const SavePlan& plan, std::int32_t number,
                                   std::string_view text) {
        const Failure failure = FailureOf(plan);
        EXPECT_EQ(failure.Number, number) << failure.Description;
        EXPECT_NE(failure.Description.find(text), std::string::npos) << failure.Description;
        EXPECT_EQ(Text("MAPHEAD.WL1"), "old head");
    };
    SavePlan plan = Plan();
    plan.backupFolder.clear();
    expectRefused(plan, kPathNotFound, "No backup folder is set.");
    ExpectOldPair();
    plan = Plan();
    plan.files.push_back({folder_.File("gamemaps.wl1"), {}});
    expectRefused(plan, kBadFileNameOrNumber, "one name");
    plan.files.back().path = folder_.File("Backup");
    expectRefused(plan, kPathFileAccess, "no regular file");
    plan.files.back().path = folder_.File(JoinPath("missing", "file"));
    expectRefused(plan, kPathNotFound, "folder");
    plan = Plan();
    plan.backupFolder = folder_.File("MAPHEAD.WL1");
    expectRefused(plan, kPathNotFound, "folder");
    std::filesystem::permissions(folder_.File("GAMEMAPS.WL1"), std::filesystem::perms(0444));
    expectRefused(Plan(), kPermissionDenied, "read-only");
    std::filesystem::permissions(folder_.File("GAMEMAPS.WL1"), std::filesystem::perms(0666));
}

TEST_F(Transactions, AcceptTheirOwnUnfinishedFiles) {
    // Everything fails from the second rename on: nothing can be put back either.
    int operations = 0;
    for (int at = 1;; ++at) {
        test::FaultyFiles faulty(*files_, test::Fault::FromThereOn, at);
        try {
            Commit(faulty, Plan());
        } catch (const Failure& failure) {
            if (failure.Description.find("unfinished") == std::string::npos ||
                Text("MAPHEAD.WL1") == Text("GAMEMAPS.WL1"))
                continue;
            EXPECT_NE(failure.Description.find(kJournalName), std::string::npos);
            operations = at;
        }
        break;
    }
    ASSERT_GT(operations, 0);
    EXPECT_EQ(FailureOf(Plan("newer head", "newer maps")).Number, 0)
        << "whichever set the recovery led to is the container's own";
    EXPECT_EQ(Text("GAMEMAPS.WL1"), "newer maps");
}

TEST_F(Transactions, LeaveJournalsOfOthersAlone) {
    for (const char* text : {"", "tessaro-journal 1", "another program's"}) {
        folder_.Write(kJournalName, Ascii(text));
        const Failure failure = FailureOf(Plan());
        EXPECT_EQ(failure.Number, kPathFileAccess);
        EXPECT_NE(failure.Description.find("--discard"), std::string::npos);
        EXPECT_EQ(Text(std::string(kJournalName)), text);
        std::vector<std::string> notices;
        const auto opened = ReadSet(*files_, {maps_.Path()}, notices,
                                    [&](const Files& files) { return files.Read(maps_.Path()); });
        EXPECT_EQ(opened, Ascii("old maps"));
        EXPECT_EQ(notices.size(), 1u);
        SavePlan alone = Plan();
        alone.files.resize(1);
        alone.files[0].content = Ascii("old head");
        EXPECT_EQ(FailureOf(alone).Number, 0) << "one file needs no journal";
    }
    const std::string temporary = folder_.Write(TemporaryName("0123456789abcdef", 7), Ascii("x"));
    const auto aside = DiscardJournal(*files_, folder_.Path(), folder_.File("Backup"));
    ASSERT_EQ(aside.size(), 2u);
    EXPECT_EQ(files_->Read(aside[0]), Ascii("another program's"));
    EXPECT_EQ(files_->Read(aside[1]), Ascii("x"));
    EXPECT_FALSE(FileExists(temporary));
    EXPECT_EQ(FailureOf(Plan()).Number, 0);
    EXPECT_TRUE(FileExists(aside[1])) << "no litter";
}

TEST_F(Transactions, ExportsReplaceAFileOrMakeIt) {
    const std::string path = folder_.File("picture.bmp");
    ReplaceOneFile(*files_, path, Ascii("first"));
    EXPECT_EQ(Text("picture.bmp"), "first");
    ReplaceOneFile(*files_, folder_.File("PICTURE.BMP"), Ascii("second"));
    EXPECT_EQ(Text("picture.bmp"), "second");
    for (const auto fault : {test::Fault::WithoutEffect, test::Fault::AfterEffect}) {
        for (int at = 1;; ++at) {
            test::FaultyFiles faulty(*files_, fault, at);
            try {
                ReplaceOneFile(faulty, path, Ascii("third"));
                break;
            } catch (const Failure&) {
                EXPECT_EQ(Text("picture.bmp"), "second") << at;
            }
            EXPECT_EQ(files_->List(folder_.Path()).size(), 3u) << "litter at " << at;
        }
        EXPECT_EQ(Text("picture.bmp"), "third");
        ReplaceOneFile(*files_, path, Ascii("second"));
    }
}

TEST_F(Transactions, CarryNamesOfAnyLengthAndScript) {
    const std::string name = "карта ☃ " + std::string(200, 'x');
    SavePlan plan = Plan();
    plan.files.push_back({folder_.File(name), Ascii("long")});
    ASSERT_EQ(FailureOf(plan).Number, 0);
    plan.files.back().content = Ascii("longer");
    plan.read.clear();
    ASSERT_EQ(FailureOf(plan).Number, 0);
    EXPECT_EQ(files_->Read(folder_.File(name)), Ascii("longer"));
    EXPECT_EQ(files_->Read(folder_.File(InBackups(name + ".002"))), Ascii("long"))
        << "the number that is free for all three";
    EXPECT_EQ(files_->Kind(folder_.File(name))->realPath.substr(folder_.Path().size() + 1), name);
    files_->Remove(folder_.File(name));
    files_->Remove(folder_.File(InBackups(name + ".002")));
}

#ifndef _WIN32
TEST_F(Transactions, ReplaceWhatLinksLeadTo) {
    folder_.MakeFolder("elsewhere");
    MoveFileTo(folder_.File("GAMEMAPS.WL1"), folder_.File("elsewhere/real maps"));
    std::filesystem::create_symlink("elsewhere/real maps", folder_.File("GAMEMAPS.WL1"));
    std::filesystem::permissions(folder_.File("elsewhere/real maps"), std::filesystem::perms(0640));
    const auto expectLink = [&](const std::string& maps) {
        EXPECT_TRUE(std::filesystem::is_symlink(folder_.File("GAMEMAPS.WL1")));
        EXPECT_EQ(Text("elsewhere/real maps"), maps);
        EXPECT_EQ(std::filesystem::status(folder_.File("elsewhere/real maps")).permissions(),
                  std::filesystem::perms(0640));
        EXPECT_EQ(files_->List(folder_.File("elsewhere")).size(), 1u) << "litter";
    };
    for (int at = 1;; ++at) {
        test::FaultyFiles faulty(*files_, test::Fault::WithoutEffect, at);
        try {
            Commit(faulty, Plan());
            break;
        } catch (const Failure& failure) {
            expectLink("old maps");
            EXPECT_EQ(Text("MAPHEAD.WL1"), "old head") << at;
        }
    }
    Recover(*files_, folder_.File("elsewhere"));  // where it was the journal's removal that failed
    expectLink("new maps");
    EXPECT_TRUE(folder_.Has("Backup/GAMEMAPS.WL1.001")) << "under the name of the data file";

    Read();
    DeleteFileAt(folder_.File("elsewhere/real maps"));
    EXPECT_EQ(FailureOf(Plan()).Number, kPathFileAccess) << "a link that leads nowhere";
}
#endif

}  // namespace
}  // namespace tessaro
