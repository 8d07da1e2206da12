#include "saving/undo.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <tuple>

#include "foundation/names.h"
#include "saving/backups.h"
#include "saving/folder_locks.h"
#include "saving/recovery.h"
#include "tessaro/failure.h"

namespace tessaro {
namespace {

/// The files that one save writes together, by how their names begin.
std::string ContainerOf(const std::string& name) {
    static constexpr std::array<std::pair<std::string_view, std::string_view>, 5> kContainers{
        {{"MAP", "maps"},
         {"GAMEMAPS", "maps"},
         {"VGA", "graphics"},
         {"EGA", "graphics"},
         {"AUDIO", "audio"}}};
    std::string upper = UpperCase(name);
    for (const auto& [start, container] : kContainers) {
        if (upper.starts_with(start))
            return std::string(container) + upper.substr(std::min(upper.find('.'), upper.size()));
    }
    return upper;
}

/// The name that a backup was made of, and its number.
std::optional<std::pair<std::string, std::int32_t>> ReadBackupName(const std::string& backup) {
    const std::size_t point = backup.rfind('.');
    if (point == std::string::npos || point == 0)
        return std::nullopt;
    const std::string name = backup.substr(0, point);
    const std::int32_t number = BackupNumberOf(backup, name);
    return number > 0 ? std::optional(std::pair(name, number)) : std::nullopt;
}

std::string BackupPathOf(const std::string& folder, const SaveRecord& save, const SavedFile& file) {
    return JoinPath(folder, BackupName(file.backupName, save.backupNumber));
}

/// Whether a file is one of the game's: a history that came from elsewhere must not lead astray.
bool IsOfTheGame(const Files& files, const std::string& path, const std::string& backupFolder,
                 const std::string& dataFolder) {
    const auto folder = files.Kind(FolderOf(path));
    if (!folder || folder->type != FileKind::Folder)
        return false;
    const std::string base = FolderOf(backupFolder);
    const std::string inside = base.ends_with(kPathSeparator) ? base : base + kPathSeparator;
    return folder->realPath == base || folder->realPath.starts_with(inside) ||
           folder->realPath == dataFolder;
}

/// Files without a record belong into the folder that holds the backup folder where none is named.
std::string DataFolderOf(const Files& files, const std::string& backupFolder,
                         const std::string& dataFolder) {
    return dataFolder.empty() ? FolderOf(backupFolder) : RealFolder(files, dataFolder);
}

}  // namespace

SaveList::SaveList(Files& files, const std::string& backupFolder, const std::string& dataFolder)
    : files_(files),
      folder_(RealFolder(files, backupFolder)),
      dataFolder_(DataFolderOf(files, folder_, dataFolder)) {
    const HistoryLog log(files, folder_);
    AddUnrecorded(log.Content());
    for (const SaveRecord& record : log.Content().records) {
        if (record.end != SaveRecord::Undone)
            saves_.push_back(record);
    }
    FollowStates();
    // Behind what was pruned nobody gets any more.
    const auto pruned = std::ranges::find_if(saves_.rbegin(), saves_.rend(), &SaveRecord::pruned);
    saves_.erase(saves_.begin(), pruned.base());
}

void SaveList::AddUnrecorded(const HistoryContent& history) {
    std::set<std::pair<std::string, std::int32_t>> recorded;
    for (const SaveRecord& record : history.records) {
        for (const SavedFile& file : record.files)
            recorded.emplace(UpperCase(file.backupName), record.backupNumber);
    }
    struct Group {
        SaveRecord save;
        std::int64_t time = 0;
    };
    std::map<std::pair<std::string, std::int32_t>, Group> groups;
    for (const std::string& backup : files_.List(folder_)) {
        const auto named = ReadBackupName(backup);
        if (!named || named->first.starts_with("tessaro-") ||  // a journal that was set aside
            recorded.contains({UpperCase(named->first), named->second}))
            continue;
        const auto kind = files_.Kind(JoinPath(folder_, backup));
        if (!kind || kind->type != FileKind::Regular)
            continue;
        Group& group = groups[{ContainerOf(named->first), named->second}];
        group.time = std::max(group.time, kind->time);
        group.save.backupNumber = named->second;
        group.save.end = SaveRecord::Done;
        group.save.files.push_back({JoinPath(dataFolder_, named->first), named->first,
                                    FilePrint{kind->size, 0}, std::nullopt});
    }
    std::vector<Group> sorted;
    for (auto& [key, group] : groups)
        sorted.push_back(std::move(group));
    std::ranges::stable_sort(sorted, {}, [](const Group& group) {
        return std::pair(group.time, group.save.backupNumber);
    });
    for (Group& group : sorted) {
        group.save.number = static_cast<std::int32_t>(saves_.size() + 1 - sorted.size());
        group.save.leadsTo = group.save.number;
        saves_.push_back(std::move(group.save));
    }
}

void SaveList::FollowStates() {
    state_ = Oldest();
    std::map<std::int32_t, std::int32_t> earlier;
    for (const SaveRecord& save : saves_) {
        if (save.kind == SaveRecord::Save) {
            undone_.clear();
            earlier[save.number] = state_;
        } else if (save.kind == SaveRecord::Undo) {
            undone_.push_back(state_);
        } else if (!undone_.empty()) {
            undone_.pop_back();
        }
        state_ = save.leadsTo;
    }
    if (const auto found = earlier.find(state_); found != earlier.end())
        earlier_ = found->second;
}

std::optional<std::int32_t> SaveList::Later() const {
    return undone_.empty() ? std::nullopt : std::optional(undone_.back());
}

SavePlan SaveList::PlanFor(std::int32_t state, std::vector<DataFile>& read) const {
    const bool known = state == Oldest() || std::ranges::count(saves_, state, &SaveRecord::number);
    if (!known || state < Oldest())
        throw Failure(kInvalidProcedureCall,
                      "The history has no such state: " + std::to_string(state));
    // Of each file the first save behind the state kept what is wanted, the last one left what
    // must be there now.
    struct Way {
        const SaveRecord* first = nullptr;
        const SavedFile *wanted = nullptr, *left = nullptr;
        bool isLeftKnown = false;
    };
    std::map<std::string, Way> ways;
    SavePlan plan;
    for (const SaveRecord& save : saves_) {
        if (save.number <= state)
            continue;
        for (const SavedFile& file : save.files) {
            Way& way = ways[UpperCase(file.path)];
            if (!way.first) {
                way.first = &save;
                way.wanted = &file;
            }
            way.left = &file;
            way.isLeftKnown = IsRecorded(save);
        }
        for (const std::string& item : save.items) {
            if (std::ranges::count(plan.changed, item) == 0)
                plan.changed.push_back(item);
        }
    }
    read.reserve(ways.size());
    for (const auto& [key, way] : ways) {
        const std::string& path = way.wanted->path;
        if (!IsOfTheGame(files_, path, folder_, dataFolder_))
            throw Failure(kPermissionDenied,
                          "The history names a file that is none of this game: " + path);
        if (files_.Kind(path))
            read.push_back(DataFile::Read(files_, path));
        if (way.isLeftKnown && PrintNow(files_, path) != way.left->after)
            throw Failure(kPermissionDenied, "This file is not what the last save left: " + path);
        if (!way.wanted->before) {
            plan.removed.push_back(path);
            continue;
        }
        const std::string backup = BackupPathOf(folder_, *way.first, *way.wanted);
        plan.files.push_back({path, files_.Read(backup)});
        if (IsRecorded(*way.first) && PrintOf(plan.files.back().content) != way.wanted->before)
            throw Failure(kPathFileAccess, "This backup is not what was kept: " + backup);
    }
    for (DataFile& file : read)
        plan.read.push_back(&file);
    plan.backupFolder = folder_;
    plan.leadsTo = state;  // or, where that was itself a way back, the state it went to
    if (const auto save = std::ranges::find(saves_, state, &SaveRecord::number);
        save != saves_.end())
        plan.leadsTo = save->leadsTo;
    return plan;
}

void SettleHistory(Files& files, const std::string& backupFolder, const std::string& dataFolder,
                   std::vector<std::string>& notices) {
    const std::string folder = RealFolder(files, backupFolder);
    const std::string data = DataFolderOf(files, folder, dataFolder);
    std::vector<std::string> paths{folder};
    const HistoryLog log(files, folder);
    for (const SaveRecord& record : log.Content().records) {
        for (const SavedFile& file : record.files) {
            if (record.end == SaveRecord::Open && IsOfTheGame(files, file.path, folder, data))
                paths.push_back(file.path);
        }
    }
    if (paths.size() == 1)
        return;
    const std::vector<std::string> folders = FoldersOf(files, paths);
    const FolderLocks locks(files, folders, Sharing::Exclusive);
    for (const std::string& each : folders) {
        const RecoveryReport report = RecoverLocked(files, each, locks.Hold());
        if (!report.notice.empty())
            notices.push_back(report.notice);
    }
    HistoryLog(files, folder).CloseOpenRecords();
}

std::int32_t PruneHistory(Files& files, const std::string& backupFolder,
                          const std::string& dataFolder, std::int32_t keep) {
    if (keep < 0)
        throw Failure(kInvalidProcedureCall);
    const std::string folder = RealFolder(files, backupFolder);
    const FolderLocks locks(files, {folder}, Sharing::Exclusive);
    const SaveList list(files, folder, dataFolder);
    const std::vector<SaveRecord>& saves = list.Saves();
    const std::size_t count = saves.size() - std::min(saves.size(), static_cast<std::size_t>(keep));
    if (count == 0)
        return 0;
    std::string lines;
    std::map<std::string, std::int32_t> floors;
    for (std::size_t i = 0; i < count; ++i) {
        if (list.IsRecorded(saves[i]))
            lines += EndLine("pruned", saves[i].number);
        for (const SavedFile& file : saves[i].files) {
            std::int32_t& floor = floors[UpperCase(file.backupName)];
            floor = std::max(floor, saves[i].backupNumber + 1);
        }
    }
    HistoryLog log(files, folder);
    for (const auto& [name, floor] : floors) {
        const auto known = log.Content().floors.find(name);
        if (known == log.Content().floors.end() || known->second < floor)
            lines += FloorLine(name, floor);
    }
    log.Append(lines, Flushed::Yes);
    files.FlushFolder(folder);  // the history tells of it before a backup goes
    for (std::size_t i = 0; i < count; ++i) {
        for (const SavedFile& file : saves[i].files) {
            if (file.before)
                RemoveQuietly(files, BackupPathOf(folder, saves[i], file));
        }
    }
    return static_cast<std::int32_t>(count);
}

}  // namespace tessaro
