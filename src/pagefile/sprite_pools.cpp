#include "pagefile/sprite_pools.h"

#include <algorithm>

#include "pagefile/searchable_pool.h"

namespace tessaro {
namespace {

std::size_t TotalSize(SpriteRuns runs) {
    std::size_t total = 0;
    for (const ByteSpan run : runs)
        total += run.size();
    return total;
}

}  // namespace

SpritePool PoolUnshared(SpriteRuns runs) {
    SpritePool pool;
    pool.offsets.reserve(runs.size());
    pool.bytes.resize(TotalSize(runs));
    std::uint8_t* end = pool.bytes.data();
    for (const ByteSpan run : runs) {
        pool.offsets.push_back(static_cast<std::size_t>(end - pool.bytes.data()));
        end = std::copy_n(run.data(), run.size(), end);
    }
    return pool;
}

SpritePool PoolReused(SpriteRuns runs) {
    SpritePool pool;
    pool.offsets.reserve(runs.size());
    SearchablePool stored(TotalSize(runs));
    for (const ByteSpan run : runs) {
        const std::size_t at = stored.Find(run);
        pool.offsets.push_back(at != SearchablePool::kNone ? at : stored.Append(run));
    }
    pool.bytes = stored.Release();
    return pool;
}

}  // namespace tessaro
