#include "saving/backups.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <set>

#include "foundation/names.h"
#include "saving/journal.h"
#include "tessaro/failure.h"

namespace tessaro {
namespace {

/// False when somebody has taken one of the names meanwhile; none of ours is left then.
bool TryNumber(Files& files, const std::string& folder, const std::vector<Backup>& backups,
               std::string_view id, std::int32_t number) {
    for (std::size_t done = 0; done < backups.size(); ++done) {
        const std::string temporary = JoinPath(folder, TemporaryName(id, done));
        const std::string path = JoinPath(folder, BackupName(backups[done].name, number));
        try {
            files.Create(temporary, backups[done].bytes, Flushed::Yes, backups[done].like);
            files.Rename(temporary, path, IfTaken::Fails);
        } catch (...) {
            const bool wasThere = files.Kind(temporary).has_value();
            RemoveQuietly(files, temporary);
            for (std::size_t i = 0; i < done; ++i)
                RemoveQuietly(files, JoinPath(folder, BackupName(backups[i].name, number)));
            if (wasThere && files.Kind(path))
                return false;
            throw;
        }
    }
    return true;
}

}  // namespace

std::string BackupName(const std::string& name, std::int32_t number) {
    if (number < 1)
        return name;
    std::array<char, 16> suffix{};
    std::snprintf(suffix.data(), suffix.size(), ".%03d", static_cast<int>(number));
    return name + suffix.data();
}

std::int32_t BackupNumberOf(std::string_view backup, std::string_view name) {
    if (backup.size() < name.size() + 4 || backup[name.size()] != '.' ||
        !SameName(backup.substr(0, name.size()), name))
        return 0;
    const std::string_view digits = backup.substr(name.size() + 1);
    std::int32_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    const bool canonical = digits.size() == 3 || digits[0] != '0';
    return error == std::errc() && end == digits.data() + digits.size() && number > 0 && canonical
               ? number
               : 0;
}

std::int32_t NextFreeNumber(const std::vector<std::string>& listing,
                            const std::vector<std::string>& names, std::int32_t from) {
    std::set<std::int32_t> taken;
    for (const std::string& backup : listing) {
        for (const std::string& name : names)
            taken.insert(BackupNumberOf(backup, name));
    }
    while (taken.contains(from))
        ++from;
    return from;
}

void EnsureBackupFolder(Files& files, const std::string& folder) {
    if (folder.empty())
        throw Failure(kPathNotFound, "No backup folder is set.");
    if (files.Kind(folder))
        return;
    files.MakeFolder(folder);
    files.FlushFolder(FolderOf(folder));  // what it is to hold must not vanish with it
}

std::int32_t WriteBackups(Files& files, const std::string& folder,
                          const std::vector<Backup>& backups, std::string_view id,
                          std::int32_t from) {
    if (backups.empty())
        return 0;
    std::vector<std::string> names;
    for (const Backup& backup : backups)
        names.push_back(backup.name);
    const std::vector<std::string> listing = files.List(folder);
    std::int32_t number = NextFreeNumber(listing, names, from);
    while (!TryNumber(files, folder, backups, id, number))
        number = NextFreeNumber(listing, names, number + 1);
    return number;
}

void RemoveBackups(Files& files, const std::string& folder, const std::vector<Backup>& backups,
                   std::int32_t number) noexcept {
    try {
        for (const Backup& backup : backups)
            RemoveQuietly(files, JoinPath(folder, BackupName(backup.name, number)));
    } catch (...) {
    }
}

void RemoveQuietly(Files& files, const std::string& path) noexcept {
    try {
        files.Remove(path);
    } catch (...) {
    }
}

}  // namespace tessaro
