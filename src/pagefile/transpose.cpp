#include "pagefile/transpose.h"

#include <array>
#include <cstring>

namespace tessaro {
namespace {

constexpr std::size_t kBlock = 16;

#if defined(__GNUC__)
using Lane = std::uint8_t __attribute__((vector_size(kBlock)));

Lane InterleavedLow(Lane a, Lane b) {
    return __builtin_shufflevector(a, b, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23);
}

Lane InterleavedHigh(Lane a, Lane b) {
    return __builtin_shufflevector(a, b, 8, 24, 9, 25, 10, 26, 11, 27, 12, 28, 13, 29, 14, 30, 15,
                                   31);
}

/// One perfect shuffle of the 256 bytes: the bit that was the highest of a byte's index becomes
/// the lowest. Four of the eight bits moved exchange rows and columns.
void Shuffle(const std::array<Lane, kBlock>& from, std::array<Lane, kBlock>& to) {
    for (std::size_t i = 0; i < kBlock / 2; ++i) {
        to[2 * i] = InterleavedLow(from[i], from[i + kBlock / 2]);
        to[2 * i + 1] = InterleavedHigh(from[i], from[i + kBlock / 2]);
    }
}

void TransposeBlock(const std::uint8_t* from, std::size_t fromStride, std::uint8_t* to,
                    std::size_t toStride) {
    std::array<Lane, kBlock> a, b;
    for (std::size_t i = 0; i < kBlock; ++i)
        std::memcpy(&a[i], from + i * fromStride, kBlock);
    Shuffle(a, b);
    Shuffle(b, a);
    Shuffle(a, b);
    Shuffle(b, a);
    for (std::size_t i = 0; i < kBlock; ++i)
        std::memcpy(to + i * toStride, &a[i], kBlock);
}
#else
void TransposeBlock(const std::uint8_t* from, std::size_t fromStride, std::uint8_t* to,
                    std::size_t toStride) {
    for (std::size_t y = 0; y < kBlock; ++y)
        for (std::size_t x = 0; x < kBlock; ++x)
            to[x * toStride + y] = from[y * fromStride + x];
}
#endif

}  // namespace

ByteArray Transposed(ByteSpan bytes, std::size_t rows, std::size_t columns) {
    if (columns != 0 && rows > bytes.size() / columns)
        throw Failure(kSubscriptOutOfRange);
    if (bytes.size() != rows * columns)
        throw Failure(kSubscriptOutOfRange);
    ByteArray transposed(bytes.size());
    if (rows % kBlock == 0 && columns % kBlock == 0) {
        for (std::size_t y = 0; y < rows; y += kBlock)
            for (std::size_t x = 0; x < columns; x += kBlock)
                TransposeBlock(bytes.data() + y * columns + x, columns,
                               transposed.data() + x * rows + y, rows);
    } else {
        for (std::size_t y = 0; y < rows; ++y)
            for (std::size_t x = 0; x < columns; ++x)
                transposed[x * rows + y] = bytes[y * columns + x];
    }
    return transposed;
}

}  // namespace tessaro
