// The page file's part of a save of several sets.
#pragma once

#include <memory>

#include "saving/save_set.h"
#include "tessaro/vswap.h"

namespace tessaro {

std::unique_ptr<SetSave> MakeSave(clsVSwap& pages, enmVSWAPCompression compression);

}  // namespace tessaro
