#include "pagefile/sprite_chunk.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>

#include "pagefile/lanes.h"
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
    while (const std::size_t twiceEnd = in.U16()) {
        const std::size_t end = twiceEnd / 2;
        ByteReader post(in.Take(kCommandSize - kEndSize));
        const std::int32_t pixels = post.I16();
        const std::size_t start = post.U16() / 2u;
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

/// One bit for each of up to 64 rows, the first row's lowest: whether it is opaque.
std::uint64_t OpaqueRows(ByteSpan rows) {
    std::uint64_t bits = 0;
    std::size_t y = 0;
#if TESSARO_HAS_LANES
    for (; y + kLaneSize <= rows.size(); y += kLaneSize)
        bits |= std::uint64_t{HitBits(LoadLane(rows.data() + y) != kTransparent)} << y;
#endif
    for (; y < rows.size(); ++y)
        bits |= std::uint64_t{rows[y] != kTransparent} << y;
    return bits;
}

/// In column order.
std::vector<Post> FindPosts(ByteSpan columns, std::size_t height) {
    std::vector<Post> posts;
    posts.reserve(64);
    for (std::size_t at = 0, x = 0; at < columns.size(); at += height, ++x) {
        bool open = false;
        for (std::size_t top = 0; top < height; top += 64) {
            const std::size_t rows = std::min<std::size_t>(height - top, 64);
            const std::uint64_t bits = OpaqueRows(columns.subspan(at + top, rows));
            for (std::size_t y = 0; y < rows;) {
                const std::uint64_t rest = bits >> y;
                y +=
                    static_cast<std::size_t>(open ? std::countr_one(rest) : std::countr_zero(rest));
                if (y >= rows)
                    break;
                if (open)
                    posts.back().end = top + y;
                else
                    posts.push_back({x, top + y, height});  // until its end is met
                open = !open;
            }
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

    std::vector<std::uint16_t> head;
    head.reserve(2 + count);
    head.push_back(Narrow<std::uint16_t>(left));
    head.push_back(Narrow<std::uint16_t>(right));
    std::vector<std::uint16_t> lists;
    lists.reserve(listsSize / 2);
    const std::size_t listsAt = poolAt + pool.bytes.size();
    std::size_t i = 0;
    for (std::size_t x = left; x <= right; ++x) {
        head.push_back(Narrow<std::uint16_t>(listsAt + 2 * lists.size()));
        for (; i < posts.size() && posts[i].column == x; ++i) {
            const auto at = static_cast<std::int64_t>(poolAt + pool.offsets[i]);
            const auto pixels =
                Narrow<std::int16_t>(at - static_cast<std::int64_t>(posts[i].start));
            lists.push_back(Narrow<std::uint16_t>(posts[i].end * 2));
            lists.push_back(static_cast<std::uint16_t>(pixels));
            lists.push_back(Narrow<std::uint16_t>(posts[i].start * 2));
        }
        lists.push_back(0);
    }
    ByteWriter out;
    out.Reserve(listsAt + listsSize);
    out.U16s(head);
    out.Bytes(pool.bytes);
    out.U16s(lists);
    return out.Release();
}

}  // namespace tessaro
