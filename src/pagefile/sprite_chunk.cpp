#include "pagefile/sprite_chunk.h"

#include <algorithm>

#include "pagefile/sprite_pools.h"
#include "pagefile/transpose.h"

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
        std::ranges::copy(pool.Take(end - start),
                          column.begin() + static_cast<std::ptrdiff_t>(start));
    }
}

/// The posts of an image whose columns are `height` bytes each, in column order.
std::vector<Post> FindPosts(ByteSpan columns, std::size_t height) {
    std::vector<Post> posts;
    if (height == 0)
        return posts;
    for (std::size_t x = 0; x < columns.size() / height; ++x) {
        const ByteSpan column = columns.subspan(x * height, height);
        for (std::size_t y = 0; y < height;) {
            const auto from = column.begin() + static_cast<std::ptrdiff_t>(y);
            const auto start = std::find_if(
                from, column.end(), [](std::uint8_t pixel) { return pixel != kTransparent; });
            const auto end = std::find(start, column.end(), kTransparent);
            if (start != end)
                posts.push_back({x, static_cast<std::size_t>(start - column.begin()),
                                 static_cast<std::size_t>(end - column.begin())});
            y = static_cast<std::size_t>(end - column.begin());
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
    return Transposed(columns, size, size);
}

ByteArray CompileSprite(ByteSpan pixels, std::int32_t width, std::int32_t height,
                        enmVSWAPCompression compression) {
    const auto rows = static_cast<std::size_t>(height);
    const ByteArray columns = Transposed(pixels, rows, static_cast<std::size_t>(width));
    const std::vector<Post> posts = FindPosts(columns, rows);

    std::vector<ByteSpan> runs;
    runs.reserve(posts.size());
    for (const Post& post : posts)
        runs.push_back(
            ByteSpan(columns).subspan(post.column * rows + post.start, post.end - post.start));
    const SpritePool pool = PlaceRuns(runs, compression);

    // A wholly transparent image has one column, the first, without posts.
    const std::size_t left = posts.empty() ? 0 : posts.front().column;
    const std::size_t right = posts.empty() ? 0 : posts.back().column;
    const std::size_t poolAt = 4 + 2 * (right - left + 1);

    ByteWriter out;
    out.U16(Narrow<std::uint16_t>(left));
    out.U16(Narrow<std::uint16_t>(right));
    std::size_t list = poolAt + pool.bytes.size();
    auto post = posts.begin();
    for (std::size_t x = left; x <= right; ++x) {
        out.U16(Narrow<std::uint16_t>(list));
        for (; post != posts.end() && post->column == x; ++post)
            list += kCommandSize;
        list += kEndSize;
    }
    out.Bytes(pool.bytes);
    std::size_t i = 0;
    for (std::size_t x = left; x <= right; ++x) {
        for (; i < posts.size() && posts[i].column == x; ++i) {
            const auto at = static_cast<std::int64_t>(poolAt + pool.offsets[i]);
            out.U16(Narrow<std::uint16_t>(posts[i].end * 2));
            out.I16(Narrow<std::int16_t>(at - static_cast<std::int64_t>(posts[i].start)));
            out.U16(Narrow<std::uint16_t>(posts[i].start * 2));
        }
        out.U16(0);
    }
    return out.Release();
}

}  // namespace tessaro
