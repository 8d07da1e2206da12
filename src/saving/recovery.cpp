#include "saving/recovery.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <thread>

#include "foundation/forwarding_files.h"
#include "foundation/guard.h"
#include "foundation/names.h"
#include "saving/backups.h"

namespace tessaro {
namespace {

enum class Now { Before, After, Both, Other };

/// What stands under a name of the journal's folder. A link or anything else but a regular file
/// was not put there by a save.
Now Compare(const Files& files, const std::string& folder, const std::string& name,
            const std::optional<FilePrint>& before, const std::optional<FilePrint>& after) {
    const auto told = [](bool isBefore, bool isAfter) {
        return isBefore ? (isAfter ? Now::Both : Now::Before) : isAfter ? Now::After : Now::Other;
    };
    const std::string path = JoinPath(folder, name);
    const auto kind = files.Kind(path);
    if (!kind)
        return told(!before, !after);
    if (kind->type != FileKind::Regular || FolderOf(kind->realPath) != folder ||
        !SameName(NameOf(kind->realPath), name))
        return Now::Other;
    const auto sizeFits = [&](const auto& print) { return print && print->size == kind->size; };
    if (!sizeFits(before) && !sizeFits(after))
        return Now::Other;
    const FilePrint print = PrintOf(files.Read(path));
    return told(before == print, after == print);
}

struct Plan {
    std::vector<const JournalEntry*> toDo;
    bool possible = true;
    bool temporaries = false;  ///< one of them is there
    bool allBefore = true, someBefore = false;
};

Plan PlanOf(const Files& files, const std::string& folder, const Journal& journal) {
    Plan plan;
    for (const JournalEntry& entry : journal.entries) {
        const Now target = Compare(files, folder, entry.target, entry.before, entry.after);
        const bool isBefore = target == Now::Before || target == Now::Both;
        bool ready = !entry.after;
        if (!entry.temporary.empty() && files.Kind(JoinPath(folder, entry.temporary))) {
            plan.temporaries = true;
            ready = Compare(files, folder, entry.temporary, entry.after, entry.after) == Now::Both;
        }
        plan.allBefore = plan.allBefore && isBefore;
        plan.someBefore = plan.someBefore || target == Now::Before;
        if (target == Now::After || target == Now::Both)
            continue;
        if (isBefore && ready)
            plan.toDo.push_back(&entry);
        else
            plan.possible = false;
    }
    return plan;
}

/// Clears away what processes that are no more have left, and only what bears our names.
void Sweep(Files& files, const std::string& folder) {
    std::vector<std::string> litter = files.List(folder);
    std::erase_if(litter, [](const std::string& name) { return !IsTemporaryName(name); });
    if (litter.empty())
        return;
    files.FlushFolder(folder);  // a journal that names them must not come back after them
    for (const std::string& name : litter) {
        const std::string path = JoinPath(folder, name);
        try {
            const auto kind = files.Kind(path);
            if (kind && kind->type == FileKind::Regular && FolderOf(kind->realPath) == folder)
                files.Remove(path);
        } catch (const Failure&) {  // the next one tries again
        }
    }
}

std::string Listed(const std::vector<std::string>& names) {
    std::string list;
    for (const std::string& name : names)
        list += (list.empty() ? "" : ", ") + name;
    return list;
}

bool IsYoung(const FileKind& journal) {
    using namespace std::chrono;
    const auto now = duration_cast<nanoseconds>(system_clock::now().time_since_epoch()).count();
    return now - journal.time < nanoseconds(10s).count();
}

RecoveryReport FollowJournal(Files& files, const std::string& folder, const std::string& path,
                             const FileKind& kind) {
    RecoveryReport report;
    report.folder = folder;
    std::optional<Journal> journal;
    if (kind.type == FileKind::Regular && kind.size <= kLongestJournal)
        journal = ReadJournal(files.Read(path));
    const std::string aside = " To set it aside: tessaro recover " + folder + " --discard";
    if (!journal) {
        report.state = RecoveryReport::Unreadable;
        report.notice = "A journal that cannot be read was left alone: " + path + "." + aside;
        return report;
    }
    for (const JournalEntry& entry : journal->entries)
        report.files.push_back(entry.target);

    const Plan plan = PlanOf(files, folder, *journal);
    const bool nobodyNeedsIt = plan.allBefore || (!plan.temporaries && !plan.someBefore);
    if (!plan.possible && !nobodyNeedsIt) {
        report.state = RecoveryReport::Stuck;
        report.notice = "An interrupted save of " + Listed(report.files) + " in " + folder +
                        " cannot be completed: the files were changed since. Nothing was touched." +
                        aside;
        return report;
    }
    if (plan.possible) {
        if (!plan.toDo.empty())
            files.FlushFolder(folder);  // the journal that was seen may be in memory only
        for (const JournalEntry* entry : plan.toDo) {
            const std::string target = JoinPath(folder, entry->target);
            if (entry->after)
                files.Rename(JoinPath(folder, entry->temporary), target, IfTaken::Replaces);
            else
                files.Remove(target);
        }
        files.FlushFolder(folder);
    }
    files.Remove(path);
    files.FlushFolder(folder);
    report.state = plan.possible ? RecoveryReport::Finished : RecoveryReport::Dropped;
    report.notice = "An interrupted save of " + Listed(report.files) + " in " + folder +
                    (!plan.possible      ? " had left a journal that was of no use any more."
                     : journal->putsBack ? " was undone: the old files are in place."
                                         : " was completed: the new files are in place.");
    return report;
}

/// Remembers what stood under each name before it was first read, and tells whether it still does.
class WatchedFiles final : public ForwardingFiles {
public:
    using ForwardingFiles::ForwardingFiles;

    ByteArray Read(const std::string& path) const override {
        Watch(path);
        return below_.Read(path);
    }
    ByteArray ReadAt(const std::string& path, std::uint64_t offset,
                     std::size_t size) const override {
        Watch(path);
        return below_.ReadAt(path, offset, size);
    }
    std::optional<FileKind> Kind(const std::string& path) const override { return Watch(path); }

    bool Same() const {
        return std::ranges::all_of(
            seen_, [&](const auto& seen) { return Mark(below_.Kind(seen.first)) == seen.second; });
    }

private:
    static std::string Mark(const std::optional<FileKind>& kind) {
        return kind ? kind->identity + " " + std::to_string(kind->size) + " " +
                          std::to_string(kind->time)
                    : std::string();
    }
    std::optional<FileKind> Watch(const std::string& path) const {
        auto kind = below_.Kind(path);
        seen_.try_emplace(path, Mark(kind));
        return kind;
    }

    mutable std::map<std::string, std::string> seen_;
};

bool AnyJournal(const Files& files, const std::vector<std::string>& folders) {
    return std::ranges::any_of(folders, [&](const std::string& folder) {
        return files.Kind(JoinPath(folder, kJournalName)).has_value();
    });
}

/// One attempt of an opening; false when somebody else was at work.
bool TryToRead(Files& files, const std::vector<std::string>& folders,
               std::vector<std::string>& notices, const std::function<void(const Files&)>& body) {
    FolderLocks locks(files, folders, Sharing::Shared);
    if (AnyJournal(files, folders)) {
        locks.Release();  // two that hold a shared lock and want more would wait for each other
        locks = FolderLocks(files, folders, Sharing::Exclusive);
        for (const std::string& folder : folders) {
            const RecoveryReport report = RecoverLocked(files, folder, locks.Hold());
            if (report.state == RecoveryReport::Busy)
                return false;
            if (!report.notice.empty() && std::ranges::count(notices, report.notice) == 0)
                notices.push_back(report.notice);
        }
    }
    if (locks.Hold()) {
        body(files);
        return true;
    }
    const WatchedFiles journals(files), watched(files);
    for (const std::string& folder : folders)
        (void)journals.Kind(JoinPath(folder, kJournalName));
    try {
        body(watched);
    } catch (...) {  // perhaps because half a set was read
        if (journals.Same() && watched.Same())
            throw;
        return false;
    }
    return journals.Same() && watched.Same();
}

}  // namespace

RecoveryReport RecoverLocked(Files& files, const std::string& realFolder, bool locked) {
    RecoveryReport report;
    report.folder = realFolder;
    const std::string path = JoinPath(realFolder, kJournalName);
    const auto kind = files.Kind(path);
    if (kind && !locked && IsYoung(*kind)) {
        report.state = RecoveryReport::Busy;
        return report;
    }
    if (kind) {
        try {
            report = FollowJournal(files, realFolder, path, *kind);
        } catch (...) {
            const Failure failure = CurrentFailure();
            throw Failure(failure.Number, "An interrupted save in " + realFolder +
                                              " could not be completed: " + failure.Description);
        }
    }
    const bool journalStays =
        report.state == RecoveryReport::Stuck || report.state == RecoveryReport::Unreadable;
    if (locked && !journalStays)
        Sweep(files, realFolder);
    return report;
}

RecoveryReport Recover(Files& files, const std::string& folder) {
    const std::string real = RealFolder(files, folder);
    const FolderLocks lock(files, {real}, Sharing::Exclusive);
    return RecoverLocked(files, real, lock.Hold());
}

std::vector<std::string> DiscardJournal(Files& files, const std::string& folder,
                                        const std::string& backupFolder) {
    const std::string real = RealFolder(files, folder);
    EnsureBackupFolder(files, backupFolder);
    const std::string backups = RealFolder(files, backupFolder);
    const FolderLocks locks(files, FoldersOf(files, {real, backups}), Sharing::Exclusive);
    if (!files.Kind(JoinPath(real, kJournalName)))
        return {};

    std::vector<std::string> names = files.List(real);
    std::erase_if(names, [](const std::string& name) { return !IsTemporaryName(name); });
    names.insert(names.begin(), std::string(kJournalName));
    std::vector<ByteArray> contents;
    for (const std::string& name : names)
        contents.push_back(files.Read(JoinPath(real, name)));
    std::vector<Backup> copies;
    for (std::size_t i = 0; i < names.size(); ++i)
        copies.push_back({names[i].substr(1), contents[i], {}});
    const std::int32_t number = WriteBackups(files, backups, copies, NewTransactionId());
    files.FlushFolder(backups);
    std::vector<std::string> paths;
    for (const Backup& copy : copies)
        paths.push_back(JoinPath(backups, BackupName(copy.name, number)));
    files.Remove(JoinPath(real, names.front()));
    files.FlushFolder(real);  // the journal goes before what it names
    for (std::size_t i = 1; i < names.size(); ++i)
        files.Remove(JoinPath(real, names[i]));
    return paths;
}

void ReadSetWith(Files& files, const std::vector<std::string>& paths,
                 std::vector<std::string>& notices, const std::function<void(const Files&)>& body) {
    using namespace std::chrono_literals;
    const std::vector<std::string> folders = FoldersOf(files, paths);
    const auto until = std::chrono::steady_clock::now() + 2s;
    while (!TryToRead(files, folders, notices, body)) {
        if (std::chrono::steady_clock::now() >= until)
            throw Failure(kPermissionDenied,
                          "The files are being written by another program: " + folders.front());
        std::this_thread::sleep_for(20ms);
    }
}

}  // namespace tessaro
