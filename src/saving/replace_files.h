// The last step of the saves: complete new files take the places of old ones, all or none.
#pragma once

#include <vector>

#include "saving/new_file.h"

namespace tessaro {

/// Writes each file complete beside its place (under its name with ".new" appended), backs up the
/// old ones that exist under one number, and moves the new ones in. The caller has closed its own
/// handles on them. Files that did not exist are nothing to back up.
/// @return False when a backup could not be made, which has been reported by then.
/// Throws the Failure of any other step. Either way the old files are back under their names and
/// no new one is left.
bool ReplaceFiles(const std::vector<NewFile>& files);

}  // namespace tessaro
