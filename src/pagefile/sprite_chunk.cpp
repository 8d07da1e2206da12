// Its plain form: bench/literal/pagefile_literal.h, which the tests hold it against.
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

constexpr std::size_t kOpen = 0;  // the end of a post that is yet to be met

/// Begins and ends posts where the rows from `top` on change between transparent and opaque.
void AddPosts(std::vector<Post>& posts, std::size_t column, std::size_t top, std::uint64_t bits,
              std::uint64_t before) {
    std::uint64_t changes = bits ^ (bits << 1 | before);
    if (before != 0 && changes != 0) {
        posts.back().end = top + static_cast<std::size_t>(std::countr_zero(changes));
        changes &= changes - 1;
    }
    while (changes != 0) {
        const auto start = static_cast<std::size_t>(std::countr_zero(changes));
        changes &= changes - 1;
        const std::size_t end =
            changes != 0 ? top + static_cast<std::size_t>(std::countr_zero(changes)) : kOpen;
        changes &= changes - 1;
        posts.push_back({column, top + start, end});
    }
}

/// In column order.
std::vector<Post> FindPosts(ByteSpan columns, std::size_t height) {
    std::vector<Post> posts;
    posts.reserve(128);
    for (std::size_t at = 0, x = 0; at < columns.size(); at += height, ++x) {
        std::uint64_t before = 0;  // whether the row above is opaque
        for (std::size_t top = 0; top < height; top += 64) {
            const std::uint64_t bits =
                OpaqueRows(columns.subspan(at + top, std::min<std::size_t>(height - top, 64)));
            AddPosts(posts, x, top, bits, before);
            before = bits >> 63;
        }
        if (!posts.empty() && posts.back().end == kOpen)
            posts.back().end = height;
    }
    return posts;
}

std::uint8_t* PutWord(std::uint8_t* to, std::uint16_t word) {
    to[0] = static_cast<std::uint8_t>(word);
    to[1] = static_cast<std::uint8_t>(word >> 8);
    return to + 2;
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

    const std::size_t listsAt = poolAt + pool.bytes.size();
    ByteArray chunk(listsAt + listsSize);
    std::uint8_t* head = PutWord(chunk.data(), Narrow<std::uint16_t>(left));
    head = PutWord(head, Narrow<std::uint16_t>(right));
    std::copy_n(pool.bytes.data(), pool.bytes.size(), chunk.data() + poolAt);
    std::uint8_t* list = chunk.data() + listsAt;
    auto post = posts.begin();
    auto offset = pool.offsets.begin();
    for (std::size_t x = left; x <= right; ++x) {
        head = PutWord(head, Narrow<std::uint16_t>(list - chunk.data()));
        for (; post != posts.end() && post->column == x; ++post, ++offset) {
            const auto pixels = Narrow<std::int16_t>(static_cast<std::int64_t>(poolAt + *offset) -
                                                     static_cast<std::int64_t>(post->start));
            list = PutWord(list, Narrow<std::uint16_t>(post->end * 2));
            list = PutWord(list, static_cast<std::uint16_t>(pixels));
            list = PutWord(list, Narrow<std::uint16_t>(post->start * 2));
        }
        list = PutWord(list, 0);
    }
    return chunk;
}

}  // namespace tessaro
