#include "tessaro/history.h"

#include "foundation/names.h"
#include "saving/backups.h"
#include "saving/transaction.h"
#include "support/support.h"

namespace tessaro {
namespace {

using test::Ascii;

/// A game in memory whose page file and maps are saved several times.
class Histories : public testing::Test {
protected:
    Histories() {
        test::FreshStore(app_.Path());
        files_->MakeFolder("game");
    }

    static std::string Path(const std::string& name) { return JoinPath("game", name); }
    static std::string BackupPath(const std::string& name) {
        return JoinPath(JoinPath("game", "Backup"), name);
    }
    std::string Text(const std::string& name) const {
        if (!files_->Kind(Path(name)))
            return "-";
        const ByteArray bytes = files_->Read(Path(name));
        return {bytes.begin(), bytes.end()};
    }
    void Save(std::vector<std::pair<std::string, std::string>> contents,
              std::vector<std::string> items = {}) {
        SavePlan plan;
        for (const auto& [name, text] : contents)
            plan.files.push_back({Path(name), Ascii(text)});
        plan.backupFolder = JoinPath("game", "Backup");
        plan.changed = std::move(items);
        Commit(*files_, plan);
    }
    /// The pair and the page file, as they are now.
    std::string Set() const {
        return Text("MAPHEAD.WL1") + Text("GAMEMAPS.WL1") + Text("VSWAP.WL1");
    }

    test::TempFolder app_;
    test::ScriptedUserInterface boxes_;
    std::shared_ptr<MemoryFiles> files_ = std::make_shared<MemoryFiles>();
    clsHistory history_{JoinPath("game", "Backup"), {}, files_};
};

TEST_F(Histories, GoBackAndForth) {
    EXPECT_TRUE(history_.Saves().empty());
    files_->Set(Path("MAPHEAD.WL1"), Ascii("a"));
    files_->Set(Path("GAMEMAPS.WL1"), Ascii("b"));
    Save({{"MAPHEAD.WL1", "c"}, {"GAMEMAPS.WL1", "d"}}, {"map 1", "map 3: E1M4"});
    Save({{"VSWAP.WL1", "e"}});
    Save({{"MAPHEAD.WL1", "f"}, {"GAMEMAPS.WL1", "g"}});
    EXPECT_EQ(Set(), "fge");

    const std::vector<typSave> saves = history_.Saves();
    ASSERT_EQ(saves.size(), 3u);
    EXPECT_EQ(saves[0].Items, (std::vector<std::string>{"map 1", "map 3: E1M4"}));
    EXPECT_EQ(saves[1].BackupNumber, 0) << "there was nothing to keep";
    EXPECT_EQ(saves[2].BackupNumber, 2);
    EXPECT_EQ(saves[2].Date.size(), 20u);
    ASSERT_EQ(saves[2].Files.size(), 2u);
    EXPECT_EQ(saves[2].Files[0].Path, Path("MAPHEAD.WL1"));
    EXPECT_EQ(saves[2].Files[0].Backup, BackupPath("MAPHEAD.WL1.002"));
    EXPECT_EQ(saves[2].Files[0].OldChecksum, "af63de4c8601eff2");
    EXPECT_FALSE(saves[1].Files[0].Existed);

    ASSERT_TRUE(history_.Undo());
    EXPECT_EQ(Set(), "cde");
    ASSERT_TRUE(history_.Undo());
    EXPECT_EQ(Set(), "cd-") << "what a save created is removed";
    EXPECT_EQ(history_.State(), 1);
    ASSERT_TRUE(history_.Redo());
    EXPECT_EQ(Set(), "cde");
    ASSERT_TRUE(history_.Redo());
    EXPECT_EQ(Set(), "fge");
    EXPECT_FALSE(history_.Redo());
    ASSERT_TRUE(history_.UndoTo(0));
    EXPECT_EQ(Set(), "ab-");
    EXPECT_FALSE(history_.Undo());
    ASSERT_TRUE(history_.UndoTo(5)) << "an undo's own number is a state too";
    EXPECT_EQ(Set(), "cd-");
    EXPECT_EQ(history_.State(), 1);
    Save({{"VSWAP.WL1", "h"}});
    EXPECT_FALSE(history_.Redo()) << "a save has followed";
    ASSERT_TRUE(history_.Undo());
    EXPECT_EQ(Set(), "cd-");
    EXPECT_FALSE(history_.UndoTo(99));
    EXPECT_EQ(history_.Saves().size(), 11u);
    EXPECT_EQ(boxes_.boxes.size(), 4u) << "each refusal has been reported";
}

TEST_F(Histories, RefuseFilesThatAreNotWhatTheLastSaveLeft) {
    files_->Set(Path("VSWAP.WL1"), Ascii("a"));
    Save({{"VSWAP.WL1", "b"}});
    files_->Set(Path("VSWAP.WL1"), Ascii("foreign"));
    EXPECT_FALSE(history_.Undo());
    EXPECT_EQ(Text("VSWAP.WL1"), "foreign");
    EXPECT_NE(boxes_.boxes.at(0).prompt.find("VSWAP.WL1"), std::string::npos);
    files_->Set(Path("VSWAP.WL1"), Ascii("b"));
    files_->Set(BackupPath("VSWAP.WL1.001"), Ascii("damaged"));
    EXPECT_FALSE(history_.Undo());
    files_->Remove(BackupPath("VSWAP.WL1.001"));
    EXPECT_FALSE(history_.Undo());
    EXPECT_EQ(Text("VSWAP.WL1"), "b");
}

TEST_F(Histories, ArePutTogetherFromBackupsAlone) {
    files_->Set(BackupPath("VSWAP.WL1.001"), Ascii("1"));
    files_->Set(BackupPath("MAPHEAD.WL1.001"), Ascii("2"));
    files_->Set(BackupPath("GAMEMAPS.WL1.001"), Ascii("3"));
    files_->Set(BackupPath("VSWAP.WL1.002"), Ascii("4"));
    files_->Set(BackupPath("notes.txt"), Ascii("x"));
    files_->Set(BackupPath("tessaro-journal.001"), Ascii("set aside"));
    files_->Set(Path("MAPHEAD.WL1"), Ascii("5"));
    files_->Set(Path("GAMEMAPS.WL1"), Ascii("6"));
    files_->Set(Path("VSWAP.WL1"), Ascii("7"));
    const std::vector<typSave> saves = history_.Saves();
    ASSERT_EQ(saves.size(), 3u);
    EXPECT_EQ(saves[0].Number, -2);
    EXPECT_EQ(saves[1].Files.size(), 2u);
    ASSERT_TRUE(history_.UndoTo(-1));
    EXPECT_EQ(Set(), "564") << "the page file only, as it was after the second save";
    ASSERT_TRUE(history_.UndoTo(-3));
    EXPECT_EQ(Set(), "231");
    ASSERT_TRUE(history_.Redo());
    EXPECT_EQ(Set(), "564");
}

TEST_F(Histories, ArePrunedWithoutFreeingNumbers) {
    for (const char* text : {"a", "b", "c", "d"})
        Save({{"VSWAP.WL1", text}});
    files_->Set(BackupPath("AUDIOT.WL1.001"), Ascii("older than the history"));
    EXPECT_EQ(history_.Prune(2), 3);
    EXPECT_FALSE(files_->Kind(BackupPath("VSWAP.WL1.001")));
    EXPECT_FALSE(files_->Kind(BackupPath("AUDIOT.WL1.001")));
    EXPECT_EQ(history_.Saves().size(), 2u);
    EXPECT_EQ(history_.Prune(2), 0);
    EXPECT_FALSE(history_.UndoTo(1));
    Save({{"VSWAP.WL1", "e"}});
    EXPECT_EQ(history_.Saves().back().BackupNumber, 4) << "001 lies below what was kept";
    ASSERT_TRUE(history_.UndoTo(2));
    EXPECT_EQ(Text("VSWAP.WL1"), "b");
    EXPECT_EQ(history_.Prune(-1), -1);
}

TEST_F(Histories, SurviveDamage) {
    const std::string path = BackupPath(std::string(kHistoryName));
    Save({{"VSWAP.WL1", "a"}});
    ByteArray bytes = files_->Read(path);
    bytes.resize(bytes.size() - 5);
    files_->Set(path, bytes);
    Save({{"VSWAP.WL1", "b"}});
    EXPECT_EQ(history_.Saves().size(), 2u) << "the end of the first was told again";
    EXPECT_TRUE(history_.Saves()[0].Ended);
    bytes = files_->Read(path);
    const ByteArray line =
        Ascii("begin 9 save 9 now 1 1 /etc/passwd x absent absent 0123456789abcdef\n");
    bytes.insert(bytes.end(), line.begin(), line.end());
    files_->Set(path, bytes);
    EXPECT_EQ(history_.Saves().size(), 2u) << "a checksum that is not that of its line";
    ASSERT_TRUE(history_.Undo());
    EXPECT_EQ(Text("VSWAP.WL1"), "a");

    // A history that was made elsewhere names a file of its own choice.
    const std::string astray = JoinPath("outside", "file");
    files_->Set(astray, Ascii("mine"));
    SaveRecord record;
    record.number = 9;
    record.files = {{astray, "file", std::nullopt, PrintOf(Ascii("mine"))}};
    const std::string lines = BeginLine(record, "game") + EndLine("done", 9);
    files_->Append(path, Ascii(lines), Flushed::No);
    record.files[0].path = "../outside/file";
    EXPECT_TRUE(ReadHistory(Ascii(BeginLine(record, "game")), "game").records.empty());
    EXPECT_FALSE(history_.Undo());
    EXPECT_TRUE(files_->Kind(astray));
}

}  // namespace
}  // namespace tessaro
