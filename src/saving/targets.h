// The files that a save is to replace, as it finds them under its locks.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "saving/transaction.h"

namespace tessaro {

struct Target {
    std::string path;        ///< of the real file; links have been followed
    std::string folder;      ///< the real one that it lies in
    std::string place;       ///< where the data file is, or the link to it
    std::string backupName;  ///< of the data file, in the case that its folder spells it
    std::optional<ByteArray> before;
    std::optional<ByteSpan> after;
    std::optional<FilePrint> printBefore, printAfter;
};

/// Reads what stands there; refuses what may not be replaced.
/// Without bytes the file shall be removed.
Target FindTarget(const Files& files, const std::string& path, std::optional<ByteSpan> bytes);
std::vector<Target> FindTargets(const Files& files, const SavePlan& plan);
/// Refuses a save of files that another program has changed.
void RequireUnchanged(const Files& files, const std::vector<DataFile*>& read);

}  // namespace tessaro
