// Old files under a number in the backup folder.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tessaro/files.h"

namespace tessaro {

/// `NAME.EXT.001`; the bare name without a number (0).
std::string BackupName(const std::string& name, std::int32_t number);
/// The number in a backup's name; 0 where it has none.
std::int32_t BackupNumberOf(std::string_view backup, std::string_view name);
/// The first number from `from` (1 or more) on under which none of the names stands in a folder
/// that holds the files `listing`.
std::int32_t NextFreeNumber(const std::vector<std::string>& listing,
                            const std::vector<std::string>& names, std::int32_t from = 1);

/// Makes the folder, one level, where it is missing; fails with number 76 without a name for it.
void EnsureBackupFolder(Files& files, const std::string& folder);

struct Backup {
    std::string name;  ///< of the file, without a folder
    ByteSpan bytes;
    std::string like;  ///< the file whose permissions the backup gets; empty for none
};

/// Writes all of them under one number, the next from `from` on that is free for every one, whole;
/// their contents are flushed, their names not yet. `id` is the transaction's.
/// @return the number, 0 without backups. After a failure none is left.
std::int32_t WriteBackups(Files& files, const std::string& folder,
                          const std::vector<Backup>& backups, std::string_view id,
                          std::int32_t from = 1);
/// Removes the backups of one number as far as the system lets it.
void RemoveBackups(Files& files, const std::string& folder, const std::vector<Backup>& backups,
                   std::int32_t number) noexcept;

/// Removes a file of our own that may be there, as far as the system lets it.
void RemoveQuietly(Files& files, const std::string& path) noexcept;

}  // namespace tessaro
