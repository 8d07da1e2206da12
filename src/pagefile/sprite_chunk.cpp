#include "pagefile/sprite_chunk.h"

#include <cstring>
#include <limits>

#include "pagefile/sprite_pools.h"

namespace tessaro {
namespace {

struct Post {
    std::size_t column;
    std::size_t start;
    std::size_t end;  ///< the row after the last
};

constexpr std::size_t kCommandSize = 6;
constexpr std::size_t kEndSize = 2;

/// Draws the posts of one command list into the column.
void DrawColumn(ByteSpan chunk, std::size_t list, std::span<std::uint8_t> column) {
    ByteReader in(chunk);
    in.Seek(list);
    while (const std::size_t end = in.U16() / 2u) {
        const std::int32_t pixels = in.I16();
        const std::size_t start = in.U16() / 2u;
        if (start >= end)
            continue;
        const std::int64_t first = pixels + static_cast<std::int64_t>(start);
        if (end > column.size() || first < 0)
            throw Failure(kSubscriptOutOfRange);
        ByteReader pool(chunk);
        pool.Seek(static_cast<std::size_t>(first));
        std::memcpy(column.data() + start, pool.Take(end - start).data(), end - start);
    }
}

/// The first row from `from` on that holds an opaque pixel; the height where none does.
std::size_t FirstOpaque(ByteSpan column, std::size_t from) {
    // Most of a sprite is transparent: eight rows at a time.
    std::uint64_t eight = 0;
    for (; column.size() - from >= sizeof eight; from += sizeof eight) {
        std::memcpy(&eight, column.data() + from, sizeof eight);
        if (eight != ~std::uint64_t{0})
            break;
    }
    while (from < column.size() && column[from] == kTransparent)
        ++from;
    return from;
}

/// The row after the last opaque one of the post that starts at `start`.
std::size_t PostEnd(ByteSpan column, std::size_t start) {
    const void* const end = std::memchr(column.data() + start, kTransparent, column.size() - start);
    return end == nullptr
               ? column.size()
               : static_cast<std::size_t>(static_cast<const std::uint8_t*>(end) - column.data());
}

/// In column order.
std::vector<Post> FindPosts(ByteSpan columns, std::size_t height) {
    std::vector<Post> posts;
    posts.reserve(64);
    for (std::size_t at = 0, x = 0; at < columns.size(); at += height, ++x) {
        const ByteSpan column = columns.subspan(at, height);
        for (std::size_t y = FirstOpaque(column, 0); y < height; y = FirstOpaque(column, y)) {
            posts.push_back({x, y, PostEnd(column, y)});
            y = posts.back().end;
        }
    }
    return posts;
}

SpritePool PlaceRuns(SpriteRuns runs, enmVSWAPCompression compression) {
    switch (compression) {
        case vcNone:
            return PoolUnshared(runs);
        case vcOriginal:
            return PoolReused(runs);
        case vcGood:
            return PoolMerged(runs);
    }
    throw Failure(kInvalidProcedureCall);
}

}  // namespace

ByteArray DecodeSprite(ByteSpan chunk, std::int32_t side) {
    const auto size = static_cast<std::size_t>(side);
    ByteArray columns(size * size, kTransparent);
    ByteReader in(chunk);
    const std::size_t left = in.U16();
    const std::size_t right = in.U16();
    for (std::size_t x = left; x <= right; ++x) {
        if (x >= size)
            throw Failure(kSubscriptOutOfRange);
        DrawColumn(chunk, in.U16(), std::span(columns).subspan(x * size, size));
    }
    return columns;
}

ByteArray CompileSprite(ByteSpan columns, std::int32_t height, enmVSWAPCompression compression) {
    const auto rows = static_cast<std::size_t>(height);
    if (rows == 0 ? !columns.empty() : columns.size() % rows != 0)
        throw Failure(kSubscriptOutOfRange);
    const std::vector<Post> posts = FindPosts(columns, rows);

    // A wholly transparent image has one column, the first, without posts.
    const std::size_t left = posts.empty() ? 0 : posts.front().column;
    const std::size_t right = posts.empty() ? 0 : posts.back().column;
    const std::size_t count = right - left + 1;
    const std::size_t poolAt = 4 + 2 * count;
    const std::size_t listsSize = kCommandSize * posts.size() + kEndSize * count;
    if (poolAt + listsSize > 2 * std::numeric_limits<std::uint16_t>::max())
        throw Failure(kOverflow);  // no column offset reaches there, wherever the pixels are

    std::vector<ByteSpan> runs;
    runs.reserve(posts.size());
    for (const Post& post : posts)
        runs.push_back(columns.subspan(post.column * rows + post.start, post.end - post.start));
    const SpritePool pool = PlaceRuns(runs, compression);

    ByteWriter offsets;
    offsets.Reserve(poolAt + pool.bytes.size() + listsSize);
    offsets.U16(Narrow<std::uint16_t>(left));
    offsets.U16(Narrow<std::uint16_t>(right));
    ByteWriter lists;
    lists.Reserve(listsSize);
    const std::size_t listsAt = poolAt + pool.bytes.size();
    std::size_t i = 0;
    for (std::size_t x = left; x <= right; ++x) {
        offsets.U16(Narrow<std::uint16_t>(listsAt + lists.Position()));
        for (; i < posts.size() && posts[i].column == x; ++i) {
            const auto at = static_cast<std::int64_t>(poolAt + pool.offsets[i]);
            lists.U16(Narrow<std::uint16_t>(posts[i].end * 2));
            lists.I16(Narrow<std::int16_t>(at - static_cast<std::int64_t>(posts[i].start)));
            lists.U16(Narrow<std::uint16_t>(posts[i].start * 2));
        }
        lists.U16(0);
    }
    ByteWriter& out = offsets;
    out.Bytes(pool.bytes);
    out.Bytes(lists.View());
    return out.Release();
}

}  // namespace tessaro
