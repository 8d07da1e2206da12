// modGlobal: the common failure routine, its log, and the backups of data files.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tessaro/failure.h"

namespace tessaro::modGlobal {

/// Makes `failure` the pending one, which the next ReportError reports.
void SetErrorState(const Failure& failure);

/// Shows the pending failure in a message box titled with the procedure's qualified name, appends
/// it to "Error.log" in AppPath and clears the error state. It has no guard: a log that cannot be
/// written is the caller's failure.
void ReportError(std::string_view procedure);

/// Creates BackupFolder where it does not exist, one level only.
void EnsureBackupFolder();

/// The smallest number from 1 on under which none of the named files has a backup, so that the
/// files of one save share one number.
std::int32_t NextBackupNumber(const std::vector<std::string>& fileNames);

/// Moves a data file into BackupFolder, with the number (from 1 on) appended as ".001". A missing
/// file is False but no failure; everything else that goes wrong is reported.
bool BackupFile(const std::string& path, std::int32_t number);

/// Moves the backup back over the file at `path`. Without a file there it does nothing: a restore
/// is only attempted over the new, failed file.
bool RestoreFile(const std::string& path, std::int32_t number);

/// The part of a path behind its last separator, cut before its first point where asked.
std::string FileNameFromPath(std::string_view path, bool dropExtension);

}  // namespace tessaro::modGlobal
