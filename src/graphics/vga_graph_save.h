// The graphics' part of a save of several sets.
#pragma once

#include <memory>

#include "saving/save_set.h"
#include "tessaro/vga_graph.h"

namespace tessaro {

std::unique_ptr<SetSave> MakeSave(clsVGAGraph& graphics);

}  // namespace tessaro
