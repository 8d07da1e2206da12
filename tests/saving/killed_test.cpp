// Processes that are killed for real while they save or recover, and processes that save in turns.
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <random>

#include "foundation/names.h"
#include "saving/child.h"
#include "saving/recovery.h"
#include "saving/transaction.h"
#include "support/faulty_files.h"
#include "support/support.h"

namespace tessaro {
namespace {

using test::Ascii;
using test::Child;
using test::Role;

std::string Path(const std::string& folder, int i) {
    return JoinPath(folder, i == 0 ? "MAPHEAD.WL1" : "GAMEMAPS.WL1");
}

/// The disk, for a process that is killed before the n-th operation.
class Deadly : public test::FaultyFiles {
public:
    explicit Deadly(const std::string& at) : FaultyFiles(*DiskFiles()) {
        onOperation = [n = std::stoi(at)](int operation) {
            if (operation == n)
                test::KillMyself();
        };
    }
};

/// Both files get the text, and a digit each.
void Save(Files& files, const std::string& folder, const std::string& text,
          std::vector<DataFile> read = {}) {
    SavePlan plan;
    plan.files = {{Path(folder, 0), Ascii(text + "0")}, {Path(folder, 1), Ascii(text + "1")}};
    for (DataFile& file : read)
        plan.read.push_back(&file);
    plan.backupFolder = JoinPath(folder, "Backup");
    Commit(files, plan);
}

/// The text of both files; fails where they do not belong together.
std::string Open(const std::string& folder, std::vector<DataFile>* read = nullptr) {
    std::vector<std::string> notices;
    auto files = ReadSet(*DiskFiles(), {folder}, notices, [&](const Files& port) {
        return std::vector{DataFile::Read(port, Path(folder, 0)),
                           DataFile::Read(port, Path(folder, 1))};
    });
    std::string texts[2];
    for (int i = 0; i < 2; ++i) {
        const ByteSpan bytes = files[static_cast<std::size_t>(i)].Bytes();
        texts[i].assign(bytes.begin(), bytes.end() - 1);
    }
    if (texts[0] != texts[1])
        throw Failure(0, "A mixed set: " + texts[0] + " and " + texts[1]);
    if (read)
        *read = std::move(files);
    return texts[0];
}

/// Appends a letter to what it has read, again and again; a refusal reads again. Now and then a
/// child that does the same is killed. Returns how often it has saved.
int SaveInTurns(const std::string& folder, int number, std::chrono::milliseconds time) {
    const auto until = std::chrono::steady_clock::now() + time;
    std::mt19937 random(static_cast<unsigned>(number));
    int saved = 0;
    while (std::chrono::steady_clock::now() < until) {
        try {
            std::vector<DataFile> read;
            const std::string text = Open(folder, &read);
            Save(*DiskFiles(), folder, text + static_cast<char>('a' + number), read);
            ++saved;
        } catch (const Failure& failure) {
            if (failure.Number != kPermissionDenied)  // changed by another, or in use for long
                throw;
        }
        if (random() % 8 == 0)
            Child({"append", folder, std::to_string(random() % 60)}).Wait();
    }
    return saved;
}

int Play(const Role& role) {
    const std::string &what = role.at(0), &folder = role.at(1);
    try {
        if (what == "save") {
            Deadly files(role.at(2));
            Save(files, folder, "new");
        } else if (what == "recover") {
            Deadly files(role.at(2));
            Recover(files, folder);
        } else if (what == "append") {
            std::vector<DataFile> read;
            const std::string text = Open(folder, &read);
            Deadly files(role.at(2));
            Save(files, folder, text + "x", read);
        } else {
            const int number = std::stoi(role.at(2));
            const int saved =
                SaveInTurns(folder, number, std::chrono::milliseconds(std::stoi(role.at(3))));
            std::ofstream(JoinPath(folder, "saved" + role.at(2))) << saved;
        }
    } catch (const Failure& failure) {
        if (what == "turns")
            std::cerr << failure.Description << '\n';
        return 1;
    }
    return 0;
}

const bool ready = (test::playRole = Play, true);

#ifdef _WIN32
constexpr int kEvery = 7;  // starting a process takes long there
TEST(Child, PlaysItsRole) {
    const char* words = std::getenv("TESSARO_TEST_ROLE");
    if (!words)
        return;
    Role role(1);
    for (const char c : std::string(words)) {
        if (c == '|')
            role.emplace_back();
        else
            role.back() += c;
    }
    ::ExitProcess(static_cast<UINT>(Play(role)));
}
#else
constexpr int kEvery = 1;
#endif

TEST(Killed, ASaveIsFoundOldOrNewByTheNextOpening) {
    int kills = 0, finished = 0;
    for (int at = 1;; at += kEvery) {
        test::TempFolder folder;
        folder.Write("MAPHEAD.WL1", Ascii("old0"));
        folder.Write("GAMEMAPS.WL1", Ascii("old1"));
        if (Child({"save", folder.Path(), std::to_string(at)}).Wait() == 0)
            break;
        ++kills;
        // The recovery is killed as well, at each of its steps.
        int step = 1;
        while (Child({"recover", folder.Path(), std::to_string(step)}).Wait() != 0) {
            step += kEvery;
            ++kills;
        }
        const std::string set = Open(folder.Path());
        EXPECT_TRUE(set == "old" || set == "new") << set;
        finished += set == "new";
        Save(*DiskFiles(), folder.Path(), "next");
        EXPECT_EQ(Open(folder.Path()), "next");
        EXPECT_EQ(DiskFiles()->List(folder.Path()).size(), 2u) << "litter";
        const auto backups = DiskFiles()->List(folder.File("Backup"));
        EXPECT_TRUE(std::ranges::none_of(backups, IsTemporaryName));
    }
    EXPECT_GT(finished, 0);
    std::cout << kills << " processes killed, " << finished << " saves finished by others\n";
}

/// TESSARO_CONTENTION_SECONDS prolongs the search.
TEST(Killed, SaversInTurnsLoseNothing) {
    const char* wanted = std::getenv("TESSARO_CONTENTION_SECONDS");
    const int seconds = wanted ? std::atoi(wanted) : 3;
    for (const int savers : {2, 4}) {
        test::TempFolder folder;
        Save(*DiskFiles(), folder.Path(), "");
        std::vector<Child> children;
        for (int i = 0; i < savers; ++i)
            children.emplace_back(
                Role{"turns", folder.Path(), std::to_string(i), std::to_string(seconds * 500)});
        for (const Child& child : children)
            EXPECT_EQ(child.Wait(), 0);
        const std::string end = Open(folder.Path());
        std::ptrdiff_t all = 0;
        for (int i = 0; i < savers; ++i) {
            std::ptrdiff_t saved = -1;
            std::ifstream(folder.File("saved" + std::to_string(i))) >> saved;
            EXPECT_EQ(std::ranges::count(end, static_cast<char>('a' + i)), saved) << "lost saves";
            all += saved;
        }
        EXPECT_GT(all, 1);
        std::cout << savers << " savers: " << all << " saves, " << std::ranges::count(end, 'x')
                  << " of killed ones finished\n";
    }
}

}  // namespace
}  // namespace tessaro
