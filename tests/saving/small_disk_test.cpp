// Saves on small disks of their own, by a user without privileges: no space, no inodes, nothing to
// write to, links from disk to disk. Skipped where the system does not give such disks.
#ifdef __linux__

#include <gtest/gtest.h>
#include <linux/capability.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>

#include "foundation/names.h"
#include "saving/recovery.h"
#include "saving/transaction.h"
#include "support/support.h"

namespace tessaro {
namespace {

using test::Ascii;

constexpr int kNoDisk = 77;

bool MountDisk(const std::string& folder, const char* options) {
    return ::mount("none", folder.c_str(), "tmpfs", 0, options) == 0;
}

/// Names of its own for what is mounted; only this process and its children see it.
bool HaveOwnMounts() {
    const uid_t user = ::geteuid();
    const gid_t group = ::getegid();
    if (user != 0) {
        if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0)
            return false;
        std::ofstream("/proc/self/setgroups") << "deny";
        std::ofstream("/proc/self/uid_map") << user << ' ' << user << " 1";
        std::ofstream("/proc/self/gid_map") << group << ' ' << group << " 1";
    } else if (::unshare(CLONE_NEWNS) != 0) {
        return false;
    }
    return ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

bool GiveUpPrivileges() {
    if (::geteuid() == 0)
        return ::setgid(65534) == 0 && ::setuid(65534) == 0;
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct none[2]{};
    return ::syscall(SYS_capset, &header, none) == 0;
}

class SmallDisk : public testing::Test {
protected:
    /// Runs `body` in a process of its own on a disk of its own. `prepare` comes while it still has
    /// privileges.
    void Run(
        const char* options, const std::function<void()>& body,
        const std::function<bool()>& prepare = [] { return true; }) {
        const pid_t child = ::fork();
        if (child == 0) {
            if (!HaveOwnMounts() || !MountDisk(folder_.Path(), options) || !prepare() ||
                !GiveUpPrivileges())
                ::_exit(kNoDisk);
            try {
                body();
            } catch (const Failure& failure) {
                ADD_FAILURE() << failure.Description;
            }
            ::_exit(HasFailure() ? 1 : 0);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        if (WIFEXITED(status) && WEXITSTATUS(status) == kNoDisk)
            GTEST_SKIP() << "this system gives no disk of its own to a test";
        EXPECT_EQ(status, 0);
    }
    std::string Path(const std::string& name) const { return folder_.File(name); }
    void WritePair() const {
        WriteWholeFile(Path("MAPHEAD.WL1"), ByteArray(400, 'o'));
        WriteWholeFile(Path("GAMEMAPS.WL1"), ByteArray(9000, 'o'));
    }
    bool IsPairOf(std::uint8_t byte) const {
        return std::ranges::count(ReadWholeFile(Path("MAPHEAD.WL1")), byte) == 400 &&
               std::ranges::count(ReadWholeFile(Path("GAMEMAPS.WL1")), byte) == 9000;
    }
    /// The number of the failure.
    int Save(std::string* text = nullptr) const {
        SavePlan plan;
        plan.files = {{Path("MAPHEAD.WL1"), ByteArray(400, 'n')},
                      {Path("GAMEMAPS.WL1"), ByteArray(9000, 'n')}};
        plan.backupFolder = Path("Backup");
        try {
            Commit(*DiskFiles(), plan);
        } catch (const Failure& failure) {
            if (text)
                *text = failure.Description;
            return failure.Number;
        }
        return 0;
    }
    std::size_t FilesThere() const { return DiskFiles()->List(folder_.Path()).size(); }

    test::TempFolder folder_;
};

TEST_F(SmallDisk, WithoutSpaceKeepsTheOldFiles) {
    Run("size=400k,mode=777", [&] {
        WritePair();
        // A page less is taken each time, until everything fits.
        std::uintmax_t spare = 0;
        for (;; spare += 4096) {
            const auto free = std::filesystem::space(folder_.Path()).available;
            WriteWholeFile(Path("filler"), ByteArray(free - std::min(free, spare), 'f'));
            const int number = Save();
            std::filesystem::remove(Path("filler"));
            if (number == 0)
                break;
            EXPECT_EQ(number, kDiskFull) << spare;
            EXPECT_TRUE(IsPairOf('o')) << spare;
            EXPECT_EQ(FilesThere(), 2u) << "litter with " << spare;
        }
        EXPECT_GE(spare, 6u * 4096) << "the pair, its backups, the journal, the history";
        EXPECT_TRUE(IsPairOf('n'));
    });
}

TEST_F(SmallDisk, WithoutInodesKeepsTheOldFiles) {
    Run("size=4m,nr_inodes=40,mode=777", [&] {
        WritePair();
        std::filesystem::create_directory(Path("fillers"));
        int spare = 0;
        for (;; ++spare) {
            int fillers = 0;
            while (std::ofstream(Path("fillers/" + std::to_string(fillers))))
                ++fillers;
            for (int i = 0; i < std::min(spare, fillers); ++i)
                std::filesystem::remove(Path("fillers/" + std::to_string(i)));
            const int number = Save();
            for (int i = 0; i < fillers; ++i)
                std::filesystem::remove(Path("fillers/" + std::to_string(i)));
            if (number == 0)
                break;
            EXPECT_EQ(number, kDiskFull) << spare;
            EXPECT_TRUE(IsPairOf('o')) << spare;
            EXPECT_EQ(FilesThere(), 2u) << "litter with " << spare;
        }
        EXPECT_GE(spare, 5);
        EXPECT_TRUE(IsPairOf('n'));
    });
}

TEST_F(SmallDisk, ThatCannotBeWrittenIsReadAsItStands) {
    const auto mountReadOnly = [&] {
        WritePair();
        std::filesystem::create_directory(Path("Backup"));
        return ::mount("none", folder_.Path().c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) ==
               0;
    };
    Run(
        "mode=777",
        [&] {
            std::vector<std::string> notices;
            EXPECT_EQ(
                ReadSet(*DiskFiles(), {Path("MAPHEAD.WL1")}, notices,
                        [&](const Files& port) { return port.Read(Path("MAPHEAD.WL1")).size(); }),
                400u);
            EXPECT_TRUE(notices.empty());
            EXPECT_EQ(Save(), kPermissionDenied);
        },
        mountReadOnly);

    // With a journal that would have to be followed an opening fails, and says why.
    const auto leaveJournal = [&] {
        Journal journal;
        journal.id = "0123456789abcdef";
        journal.entries = {{TemporaryName(journal.id, 0), "MAPHEAD.WL1",
                            PrintOf(ByteArray(400, 'o')), PrintOf(Ascii("new"))}};
        WriteWholeFile(Path(TemporaryName(journal.id, 0)), Ascii("new"));
        WriteWholeFile(Path(std::string(kJournalName)), WriteJournal(journal));
        return mountReadOnly();
    };
    Run(
        "mode=777",
        [&] {
            std::vector<std::string> notices;
            try {
                ReadSet(*DiskFiles(), {folder_.Path()}, notices, [](const Files&) { return 0; });
                ADD_FAILURE() << "it was opened";
            } catch (const Failure& failure) {
                EXPECT_NE(failure.Description.find("could not be completed"), std::string::npos);
            }
        },
        leaveJournal);
}

TEST_F(SmallDisk, OfAnotherUserIsLeftAlone) {
    std::string text;
    Run(
        "mode=777",
        [&] {
            WritePair();
            std::filesystem::permissions(Path("GAMEMAPS.WL1"), std::filesystem::perms(0444));
            EXPECT_EQ(Save(&text), kPermissionDenied);
            EXPECT_NE(text.find("read-only"), std::string::npos) << text;
            std::filesystem::permissions(Path("GAMEMAPS.WL1"), std::filesystem::perms(0640));
            std::filesystem::create_directory(Path("Backup"));
            std::filesystem::permissions(Path("Backup"), std::filesystem::perms(0555));
            EXPECT_EQ(Save(&text), kPermissionDenied);
            EXPECT_NE(text.find("Folder: "), std::string::npos) << text;
            std::filesystem::permissions(Path("Backup"), std::filesystem::perms(0755));
            std::filesystem::permissions(folder_.Path(), std::filesystem::perms(0555));
            EXPECT_EQ(Save(), kPermissionDenied);
            EXPECT_TRUE(IsPairOf('o'));
            EXPECT_EQ(FilesThere(), 2u);
            std::filesystem::permissions(folder_.Path(), std::filesystem::perms(0755));
            EXPECT_EQ(Save(), 0);
            EXPECT_EQ(std::filesystem::status(Path("GAMEMAPS.WL1")).permissions(),
                      std::filesystem::perms(0640));
        },
        [&] { return ::chown(folder_.Path().c_str(), 65534, 65534) == 0 || ::geteuid() != 0; });
}

TEST_F(SmallDisk, LinksLeadFromOneToAnother) {
    const auto mountMore = [&] {
        for (const char* name : {"other", "Backup"}) {
            std::filesystem::create_directory(Path(name));
            if (!MountDisk(Path(name), "size=200k,mode=777"))
                return false;
        }
        return true;
    };
    Run(
        "size=200k,mode=777",
        [&] {
            WritePair();
            std::filesystem::copy(Path("GAMEMAPS.WL1"), Path("other/maps"));
            std::filesystem::remove(Path("GAMEMAPS.WL1"));
            std::filesystem::create_symlink("other/maps", Path("GAMEMAPS.WL1"));
            // The other disk is too full: both stay as they are.
            WriteWholeFile(Path("other/filler"), ByteArray(188 * 1024, 'f'));
            EXPECT_EQ(Save(), kDiskFull);
            EXPECT_TRUE(IsPairOf('o'));
            std::filesystem::remove(Path("other/filler"));
            EXPECT_EQ(Save(), 0);
            EXPECT_TRUE(IsPairOf('n'));
            EXPECT_TRUE(std::filesystem::is_symlink(Path("GAMEMAPS.WL1")));
            EXPECT_EQ(ReadWholeFile(Path("Backup/GAMEMAPS.WL1.001")), ByteArray(9000, 'o'));
            EXPECT_EQ(DiskFiles()->List(Path("other")).size(), 1u) << "litter";
        },
        mountMore);
}

}  // namespace
}  // namespace tessaro

#endif
