// Where the pixels of a sprite's posts stand in its pixel pool: one routine for each degree of
// sharing. A run is the pixels of one post, never empty.
#pragma once

#include <span>
#include <vector>

#include "foundation/bytes.h"

namespace tessaro {

struct SpritePool {
    ByteArray bytes;
    std::vector<std::size_t> offsets;  ///< of each run, in their order
};

using SpriteRuns = std::span<const ByteSpan>;

/// vcNone: every run has its own bytes.
SpritePool PoolUnshared(SpriteRuns runs);

/// vcOriginal: a run that stands in the pool already, wherever it stands first, is not stored
/// again.
SpritePool PoolReused(SpriteRuns runs);

/// vcGood: runs contained in others are dropped and the others overlap as far as a greedy merge
/// can make them. Never larger than PoolReused.
SpritePool PoolMerged(SpriteRuns runs);

}  // namespace tessaro
