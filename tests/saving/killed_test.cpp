// Processes that are killed for real while they save or recover, and processes that save in turns.
#ifndef _WIN32

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iostream>
#include <random>

#include "foundation/names.h"
#include "saving/backups.h"
#include "saving/recovery.h"
#include "saving/transaction.h"
#include "support/faulty_files.h"
#include "support/support.h"

namespace tessaro {
namespace {

using test::Ascii;

/// Runs `body` in a process of its own. Returns its exit code; a body that returns has 0.
int InProcess(const std::function<void()>& body) {
    const pid_t child = ::fork();
    if (child == 0) {
        try {
            body();
        } catch (const Failure& failure) {
            std::cerr << failure.Description << '\n';
            ::_exit(1);
        }
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

/// The process is killed before the n-th operation.
void KillAt(test::FaultyFiles& files, int at) {
    files.onOperation = [at](int operation) {
        if (operation == at)
            ::kill(::getpid(), SIGKILL);
    };
}

struct Pair {
    explicit Pair(std::string path) : folder(std::move(path)) {}
    std::string Path(int i) const {
        return JoinPath(folder, i == 0 ? "MAPHEAD.WL1" : "GAMEMAPS.WL1");
    }
    void Save(Files& files, const std::string& text, std::vector<DataFile> read = {}) const {
        SavePlan plan;
        plan.files = {{Path(0), Ascii(text + "0")}, {Path(1), Ascii(text + "1")}};
        for (DataFile& file : read)
            plan.read.push_back(&file);
        plan.backupFolder = JoinPath(folder, "Backup");
        Commit(files, plan);
    }
    /// What both files hold; fails where they do not belong together.
    std::string Open(std::vector<DataFile>* read = nullptr) const {
        std::vector<std::string> notices;
        const auto files =
            ReadSet(*DiskFiles(), {Path(0), Path(1)}, notices, [&](const Files& port) {
                return std::vector{DataFile::Read(port, Path(0)), DataFile::Read(port, Path(1))};
            });
        std::string head(files[0].Bytes().begin(), files[0].Bytes().end());
        const std::string maps(files[1].Bytes().begin(), files[1].Bytes().end());
        EXPECT_EQ(head.substr(0, head.size() - 1), maps.substr(0, maps.size() - 1)) << "mixed";
        if (read)
            *read = files;
        return head.substr(0, head.size() - 1);
    }
    const std::string folder;
};

TEST(Killed, ASaveIsFoundOldOrNewByTheNextOpening) {
    int kills = 0, finished = 0;
    for (int at = 1;; ++at) {
        test::TempFolder folder;
        const Pair pair(folder.Path());
        folder.Write("MAPHEAD.WL1", Ascii("old0"));
        folder.Write("GAMEMAPS.WL1", Ascii("old1"));
        const auto save = [&] {
            test::FaultyFiles files(*DiskFiles());
            KillAt(files, at);
            pair.Save(files, "new");
        };
        if (InProcess(save) == 0)
            break;
        ++kills;
        // The recovery is killed as well, at each of its steps.
        for (int step = 1;; ++step) {
            const auto open = [&] {
                test::FaultyFiles files(*DiskFiles());
                KillAt(files, step);
                Recover(files, folder.Path());
            };
            if (InProcess(open) == 0)
                break;
            ++kills;
        }
        const std::string set = pair.Open();
        EXPECT_TRUE(set == "old" || set == "new") << set;
        finished += set == "new";
        pair.Save(*DiskFiles(), "next");
        EXPECT_EQ(pair.Open(), "next");
        EXPECT_EQ(DiskFiles()->List(folder.Path()).size(), 2u) << "litter";
        const auto backups = DiskFiles()->List(JoinPath(folder.Path(), "Backup"));
        EXPECT_TRUE(std::ranges::none_of(backups, IsTemporaryName));
    }
    EXPECT_GT(finished, 0);
    std::cout << kills << " processes killed, " << finished << " saves finished by others\n";
}

/// TESSARO_CONTENTION_SECONDS prolongs the search.
TEST(Killed, SaversInTurnsLoseNothing) {
    const char* wanted = std::getenv("TESSARO_CONTENTION_SECONDS");
    const int seconds = wanted ? std::atoi(wanted) : 2;
    for (const int savers : {2, 4}) {
        test::TempFolder folder;
        const Pair pair(folder.Path());
        pair.Save(*DiskFiles(), "");
        const auto saver = [&](int number) {
            // Each appends its letter to what it has read; a refusal reads again.
            const auto until =
                std::chrono::steady_clock::now() + std::chrono::milliseconds(seconds * 500);
            int saved = 0;
            std::mt19937 random(static_cast<unsigned>(number));
            while (std::chrono::steady_clock::now() < until) {
                std::vector<DataFile> read;
                const std::string text = pair.Open(&read);
                try {
                    test::FaultyFiles files(*DiskFiles());
                    pair.Save(files, text + static_cast<char>('a' + number), read);
                    ++saved;
                } catch (const Failure& failure) {
                    if (failure.Number != kPermissionDenied)
                        throw;
                }
                if (random() % 8 == 0) {  // now and then one dies in its next save
                    InProcess([&] {
                        test::FaultyFiles files(*DiskFiles());
                        KillAt(files, static_cast<int>(random() % 60));
                        std::vector<DataFile> again;
                        const std::string now = pair.Open(&again);
                        pair.Save(files, now + "x", again);
                    });
                }
            }
            std::ofstream(folder.File("saved" + std::to_string(number))) << saved;
        };
        std::vector<pid_t> children;
        for (int i = 0; i < savers; ++i) {
            children.push_back(::fork());
            if (children.back() == 0) {
                int code = 0;
                try {
                    saver(i);
                } catch (const Failure& failure) {
                    std::cerr << failure.Description << '\n';
                    code = 1;
                }
                ::_exit(testing::Test::HasFailure() ? 2 : code);
            }
        }
        for (const pid_t child : children) {
            int status = 0;
            ::waitpid(child, &status, 0);
            EXPECT_EQ(status, 0);
        }
        const std::string end = pair.Open();
        int all = 0;
        for (int i = 0; i < savers; ++i) {
            int saved = 0;
            std::ifstream(folder.File("saved" + std::to_string(i))) >> saved;
            EXPECT_EQ(std::ranges::count(end, static_cast<char>('a' + i)), saved) << "lost saves";
            all += saved;
        }
        EXPECT_GT(all, savers);
        std::cout << savers << " savers: " << all << " saves, " << std::ranges::count(end, 'x')
                  << " of killed ones finished\n";
    }
}

}  // namespace
}  // namespace tessaro

#endif
