#include "pagefile/column_images.h"

#include <array>
#include <utility>

#include "images/bmp_image.h"
#include "pagefile/lanes.h"

namespace tessaro {
namespace {

constexpr std::size_t kBlock = kLaneSize;

#if TESSARO_HAS_LANES
Lane InterleavedLow(Lane a, Lane b) {
    return __builtin_shufflevector(a, b, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23);
}

Lane InterleavedHigh(Lane a, Lane b) {
    return __builtin_shufflevector(a, b, 8, 24, 9, 25, 10, 26, 11, 27, 12, 28, 13, 29, 14, 30, 15,
                                   31);
}

using Block = std::array<Lane, kBlock>;

/// One perfect shuffle of the 256 bytes: the highest bit of a byte's index becomes the lowest.
/// Four of them exchange rows and columns. Written out, the block stays in registers.
template <std::size_t... I>
[[gnu::always_inline]] inline Block Shuffled(const Block& from, std::index_sequence<I...>) {
    Block to;
    ((to[2 * I] = InterleavedLow(from[I], from[I + kBlock / 2]),
      to[2 * I + 1] = InterleavedHigh(from[I], from[I + kBlock / 2])),
     ...);
    return to;
}

template <std::size_t... I>
Block LoadBlock(const std::uint8_t* from, std::size_t stride, std::index_sequence<I...>) {
    return {LoadLane(from + I * stride)...};
}

template <std::size_t... I>
void StoreBlock(const Block& block, std::uint8_t* to, std::ptrdiff_t stride,
                std::index_sequence<I...>) {
    (StoreLane(to + static_cast<std::ptrdiff_t>(I) * stride, block[I]), ...);
}

void TransposeBlock(const std::uint8_t* from, std::size_t fromStride, std::uint8_t* to,
                    std::ptrdiff_t toStride) {
    constexpr std::make_index_sequence<kBlock / 2> pairs;
    constexpr std::make_index_sequence<kBlock> all;
    const Block block = LoadBlock(from, fromStride, all);
    const Block once = Shuffled(block, pairs);
    const Block twice = Shuffled(once, pairs);
    const Block thrice = Shuffled(twice, pairs);
    StoreBlock(Shuffled(thrice, pairs), to, toStride, all);
}
#else
void TransposeBlock(const std::uint8_t* from, std::size_t fromStride, std::uint8_t* to,
                    std::ptrdiff_t toStride) {
    for (std::size_t y = 0; y < kBlock; ++y)
        for (std::size_t x = 0; x < kBlock; ++x)
            to[static_cast<std::ptrdiff_t>(x) * toStride + static_cast<std::ptrdiff_t>(y)] =
                from[y * fromStride + x];
}
#endif

/// `rows` rows of `columns` bytes become columns; the rows made stand `toStride` apart.
void TransposeTo(const std::uint8_t* from, std::size_t rows, std::size_t columns, std::uint8_t* to,
                 std::ptrdiff_t toStride) {
    if (rows % kBlock == 0 && columns % kBlock == 0) {
        for (std::size_t y = 0; y < rows; y += kBlock)
            for (std::size_t x = 0; x < columns; x += kBlock)
                TransposeBlock(from + y * columns + x, columns,
                               to + static_cast<std::ptrdiff_t>(x) * toStride + y, toStride);
        return;
    }
    for (std::size_t y = 0; y < rows; ++y)
        for (std::size_t x = 0; x < columns; ++x)
            to[static_cast<std::ptrdiff_t>(x) * toStride + static_cast<std::ptrdiff_t>(y)] =
                from[y * columns + x];
}

}  // namespace

ByteArray Transposed(ByteSpan bytes, std::size_t rows, std::size_t columns) {
    if (columns != 0 && rows > bytes.size() / columns)
        throw Failure(kSubscriptOutOfRange);
    if (bytes.size() != rows * columns)
        throw Failure(kSubscriptOutOfRange);
    ByteArray transposed(bytes.size());
    TransposeTo(bytes.data(), rows, columns, transposed.data(), static_cast<std::ptrdiff_t>(rows));
    return transposed;
}

ByteArray ImageOfColumns(ByteSpan columns, std::int32_t side) {
    const auto size = static_cast<std::size_t>(side);
    if (side < 1 || side % 4 != 0 || columns.size() != size * size)
        throw Failure(kSubscriptOutOfRange);
    ByteArray image = modAddBMPHeader::BlankImage(side, side);
    // The top row stands last in the image, so each row goes before the one made before it.
    TransposeTo(columns.data(), size, size, image.data() + image.size() - size, -side);
    return image;
}

ColumnsOfImage StripToColumns(ByteSpan image) {
    const modAddBMPHeader::StrippedImage rows = modAddBMPHeader::RemoveBMPHeader(image);
    ColumnsOfImage stripped{{}, rows.width, rows.height, rows.bitsPerPixel};
    if (rows.bitsPerPixel == 8)
        stripped.columns = Transposed(rows.pixels, static_cast<std::size_t>(rows.height),
                                      static_cast<std::size_t>(rows.width));
    return stripped;
}

}  // namespace tessaro
