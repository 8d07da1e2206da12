// Several containers of one game, saved as one.
#pragma once

#include "tessaro/audio_t.h"
#include "tessaro/export.h"
#include "tessaro/game_maps.h"
#include "tessaro/vga_graph.h"
#include "tessaro/vswap.h"

namespace tessaro {

/// The containers that are to be saved; null ones are not. All belong to one game.
struct typContainers {
    clsGameMaps* Maps = nullptr;
    clsVGAGraph* Graphics = nullptr;
    clsVSwap* Pages = nullptr;
    clsAudioT* Audio = nullptr;
    enmVSWAPCompression Compression = vcGood;  ///< of the sprites of Pages
};

/// Saves all of them or none: every set is written and read back in memory before one transaction
/// replaces the files, whose old ones go to BackupFolder under one number. Each container raises
/// its own events: SaveStatus as its items are coded, in the order of the members above; at the end
/// SaveError on the one that failed (on all of them where the files could not be replaced) and
/// SaveComplete on each.
/// @return False after a failure, which has been reported by then, and for containers of different
///         games (number 5): every file is what it was, and the edits are kept. True, too, where
///         there is nothing to save.
TESSARO_API bool SaveTogether(const typContainers& Containers);

}  // namespace tessaro
