// A save stopped at every step, by a fault, a kill or a power cut, and recovered: old or new.
#include <gtest/gtest.h>

#include <deque>
#include <map>

#include "foundation/names.h"
#include "saving/recovery.h"
#include "saving/transaction.h"
#include "support/faulty_files.h"
#include "support/forgetting_files.h"
#include "support/support.h"

namespace tessaro {
namespace {

using test::Ascii;
using test::Fault;
using test::FaultyFiles;
using test::ForgettingFiles;
using Contents = std::vector<std::optional<ByteArray>>;

struct Breach : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// A set of files "f0" ... in the folder D, and backups in B.
struct World {
    int files;
    bool lastIsNew = false;
    bool firstStays = false;
    bool lastGoes = false;
};

class Ladder {
public:
    explicit Ladder(const World& world) : world_(world) {
        for (int i = 0; i < world.files; ++i) {
            const std::string number = std::to_string(i);
            before_.push_back(Ascii("old bytes " + number));
            after_.push_back(Ascii("new bytes, more of them " + number));
        }
        if (world.lastIsNew)
            before_.back().reset();
        if (world.lastGoes)
            after_.back().reset();
        if (world.firstStays)
            after_.front() = before_.front();
        for (int i = 0; i < world.files; ++i) {
            if (before_[Index(i)])
                seeded_.Seed(Path(i), *before_[Index(i)]);
        }
        for (const std::string& path : kForeign)
            seeded_.Seed(path, Ascii("foreign"));
    }

    /// Saves with a fault and tries whatever may be found afterwards. Returns the operations.
    int Climb(Fault fault, int at, std::size_t cuts) {
        ForgettingFiles disk = seeded_;
        FaultyFiles port(disk, fault, at);
        port.leftOut = leftOut;
        SavePlan plan;
        std::vector<DataFile> read;
        for (int i = 0; i < world_.files; ++i) {
            if (after_[Index(i)])
                plan.files.push_back({Path(i), *after_[Index(i)]});
            else
                plan.removed.push_back(Path(i));
            if (before_[Index(i)])
                read.push_back(DataFile::Read(disk, Path(i)));
        }
        for (DataFile& file : read)
            plan.read.push_back(&file);
        plan.backupFolder = "B";
        found_.clear();
        disk.step = [&] {
            if (port.Operations() >= at)
                found_.try_emplace(disk.state, Both);
        };
        std::string failure;
        try {
            Commit(port, plan);
        } catch (const Failure& failed) {
            failure = failed.Description;
        }
        disk.step = [] {};
        flushes.merge(port.flushes);
        ++saves;
        const bool unfinished = failure.find("unfinished") != std::string::npos;
        const Allowed allowed = failure.empty() ? New : unfinished ? Both : Old;
        if (!unfinished)
            RequireSet(disk, allowed, "right after the save");
        found_.insert_or_assign(disk.state, allowed);
        if (failure.empty() && fault == Fault::None &&
            after_[0]) {  // another program writes, flushed
            ForgettingFiles changed = disk;
            auto& content = changed.state.contents[Index(changed.state.now.at(Path(0)))];
            content.now = *(content.kept = Ascii("another program's"));
            found_.try_emplace(changed.state, Foreign);
        }
        for (const auto& [state, what] : found_)
            TryRecovery(state, what, cuts);
        return port.Operations();
    }

    std::set<std::string> flushes;  ///< every kind of flush that was seen
    std::string leftOut;            ///< the kind that is not done
    int saves = 0, killed = 0, powerCuts = 0, recovered = 0;

private:
    enum Allowed { Old = 1, New = 2, Both = 3, Foreign = 4 };

    static std::size_t Index(int i) { return static_cast<std::size_t>(i); }
    static std::string Path(int i) { return JoinPath("D", "f" + std::to_string(i)); }

    void TryRecovery(const ForgettingFiles::State& state, Allowed allowed, std::size_t cuts) {
        ForgettingFiles disk;
        disk.folders = {"D", "B"};
        disk.state = state;
        ++killed;
        RecoverAndCheck(disk, allowed, cuts);
        for (auto& cut : disk.PowerCuts(cuts, random_)) {
            ++powerCuts;
            ForgettingFiles after = disk;
            after.state = std::move(cut);
            RecoverAndCheck(after, allowed, 0);
        }
    }

    void RecoverAndCheck(ForgettingFiles disk, Allowed allowed, std::size_t cuts) {
        std::deque<ForgettingFiles> stopped;
        disk.step = [&] {
            if (cuts > 0)
                stopped.push_back(disk);
        };
        RecoverBoth(disk);
        RequireSet(disk, allowed, "after the recovery");
        RequireTidy(disk);
        stopped.push_back(disk);
        if (cuts == 0)
            return;
        for (const ForgettingFiles& half : stopped) {
            auto states = half.PowerCuts(4, random_);
            states.push_back(half.state);
            for (auto& cut : states) {
                ForgettingFiles again = half;
                again.state = std::move(cut);
                RecoverBoth(again);
                RequireSet(again, allowed, "after a recovery that was interrupted");
                RequireTidy(again);
            }
        }
    }

    void RecoverBoth(Files& disk) {
        ++recovered;
        for (const char* folder : {"D", "B"}) {
            FaultyFiles port(disk);
            if (leftOut.starts_with(kInRecovery))
                port.leftOut = leftOut.substr(kInRecovery.size());
            const RecoveryReport report = Recover(port, folder);
            for (const std::string& flush : port.flushes)
                flushes.insert(std::string(kInRecovery) + flush);
            if (report.state == RecoveryReport::Stuck || report.state == RecoveryReport::Unreadable)
                throw Breach("stuck: " + report.notice);
        }
    }

    void RequireSet(const ForgettingFiles& disk, Allowed allowed, const std::string& when) {
        Contents now;
        for (int i = 0; i < world_.files; ++i) {
            const bool there = disk.Kind(Path(i)).has_value();
            now.push_back(there ? std::optional(disk.Read(Path(i))) : std::nullopt);
        }
        Contents foreign = after_;
        foreign.front() = Ascii("another program's");
        if (!(((allowed & Old) && now == before_) || ((allowed & New) && now == after_) ||
              ((allowed & Foreign) && now == foreign)))
            throw Breach("a mixed or wrong set " + when);
        RequireHistory(disk, now);
        for (int i = 0; i < world_.files; ++i) {
            const std::string backup = JoinPath("B", "f" + std::to_string(i) + ".002");
            const bool kept = disk.Kind(backup).has_value();
            if (kept && disk.Read(backup) != before_[Index(i)])
                throw Breach("a backup that is not whole " + when);
            if (!kept && before_[Index(i)] && now == after_)
                throw Breach("new files without a backup " + when);
        }
    }

    /// Whether it tells of the save, and nothing that is not so.
    void RequireHistory(const ForgettingFiles& disk, const Contents& now) {
        const std::string path = JoinPath("B", kHistoryName);
        HistoryContent history;
        if (disk.Kind(path))
            history = ReadHistory(disk.Read(path), ".");
        const auto end = history.records.empty() ? SaveRecord::Open : history.records.back().end;
        if (before_ == after_ || now != after_) {
            if (end == SaveRecord::Done && now == before_ && before_ != after_)
                throw Breach("the history tells of a save that was not made");
        } else if (history.records.empty() || end == SaveRecord::Undone) {
            throw Breach("the history misses the save");
        }
    }

    void RequireTidy(const ForgettingFiles& disk) {
        for (const std::string& path : kForeign) {
            if (!disk.Kind(path) || disk.Read(path) != Ascii("foreign"))
                throw Breach("a foreign file: " + path);
        }
        for (const auto& [path, content] : disk.state.now) {
            const std::string name = NameOf(path);
            if (name == kJournalName || IsTemporaryName(name))
                throw Breach("litter: " + path);
        }
    }

    static constexpr std::string_view kInRecovery = "in a recovery, ";
    inline static const std::vector<std::string> kForeign{
        JoinPath("D", ".hidden"), JoinPath("D", "f0.new"), JoinPath("B", "f0.001"),
        JoinPath("D", ".tessaro-0123456789abcdef-0.tmp2")};

    World world_;
    Contents before_, after_;
    ForgettingFiles seeded_;
    std::map<ForgettingFiles::State, Allowed> found_;
    std::mt19937 random_{1};
};

class PowerCut : public testing::TestWithParam<World> {};

/// All faults at all operations; the first breach, or nothing.
std::string FirstBreach(Ladder& ladder, std::size_t cuts) {
    std::string where;
    try {
        const int operations = ladder.Climb(Fault::None, 0, 512);
        for (const Fault fault : {Fault::WithoutEffect, Fault::AfterEffect, Fault::FromThereOn}) {
            for (int at = 1; at <= operations; ++at) {
                where = "fault " + std::to_string(static_cast<int>(fault)) + " at " +
                        std::to_string(at) + ": ";
                ladder.Climb(fault, at, cuts);
            }
        }
    } catch (const Breach& breach) {
        return where + breach.what();
    }
    return {};
}

TEST_P(PowerCut, LeavesTheOldFilesOrTheNewOnes) {
    Ladder ladder(GetParam());
    EXPECT_EQ(FirstBreach(ladder, 8), "");
    std::cout << ladder.saves << " saves, " << ladder.killed << " killed, " << ladder.powerCuts
              << " power cuts, " << ladder.recovered << " recoveries\n";
}

INSTANTIATE_TEST_SUITE_P(Sets, PowerCut,
                         testing::Values(World{1}, World{1, true}, World{2}, World{3, true, true},
                                         World{.files = 1, .lastGoes = true},
                                         World{.files = 3, .lastGoes = true}));

TEST(PowerCut, IsSurvivedBecauseOfEveryFlush) {
    Ladder whole({2, true});
    EXPECT_EQ(FirstBreach(whole, 24), "");
    std::set<std::string> unneeded;
    for (const std::string& flush : whole.flushes) {
        Ladder ladder({2, true});
        ladder.leftOut = flush;
        if (FirstBreach(ladder, 24).empty())
            unneeded.insert(flush);
    }
    // Nothing was pending any more, no journal names what is swept from the backup folder, and a
    // journal whose work is done may come back.
    EXPECT_EQ(unneeded, (std::set<std::string>{"D after flushing", "in a recovery, B after nothing",
                                               "in a recovery, D after flushing",
                                               "in a recovery, D after removing the journal"}));
}

}  // namespace
}  // namespace tessaro
