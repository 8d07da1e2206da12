// Music chunks: the length of the events, then events of four bytes, then what the composer's tools
// left behind.
#pragma once

#include "tessaro/types.h"

namespace tessaro::cli {

/// The notes that the events start: each time a voice's key goes down.
int CountNotes(const ByteArray& chunk);

/// The length and the events alone, which is a .wlf file; empty for a chunk without events.
ByteArray MusicFile(const ByteArray& chunk);

}  // namespace tessaro::cli
