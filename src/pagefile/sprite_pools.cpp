#include "pagefile/sprite_pools.h"

#include "pagefile/searchable_pool.h"

namespace tessaro {
SpritePool PoolUnshared(SpriteRuns runs) {
    SpritePool pool;
    for (const ByteSpan run : runs) {
        pool.offsets.push_back(pool.bytes.size());
        pool.bytes.insert(pool.bytes.end(), run.begin(), run.end());
    }
    return pool;
}

SpritePool PoolReused(SpriteRuns runs) {
    SpritePool pool;
    SearchablePool stored;
    for (const ByteSpan run : runs) {
        const std::size_t at = stored.Find(run);
        pool.offsets.push_back(at != SearchablePool::kNone ? at : stored.Append(run));
    }
    pool.bytes = stored.Release();
    return pool;
}

}  // namespace tessaro
