// The compiled sprite: the opaque vertical runs (posts) of a square image, with one list of
// commands a column for the game's scaler.
//
//  offset       width     field
//  0            2         first column that holds an opaque pixel
//  2            2         last one
//  4            2 x C     for each of these C columns, the chunk offset of its command list
//  4 + 2C       P         pixel pool: the bytes that the posts draw from
//  then         6 each    commands of a column: end row x 2, pixels, start row x 2
//               2         0 ends each list
//
// A post draws, at each row y from its start to before its end, the chunk byte at pixels + y.
// "pixels" is signed: the offset of the post's first pixel less its start row, which the files do
// hold below zero.
#pragma once

#include "foundation/bytes.h"
#include "tessaro/vswap.h"

namespace tessaro {

/// The palette index of a transparent pixel.
inline constexpr std::uint8_t kTransparent = 255;

/// The pixels (column by column, `side` x `side`) of a compiled sprite. The command lists are
/// found through the column offsets alone: the games' own files hold a zero byte between an odd
/// pool and the lists.
ByteArray DecodeSprite(ByteSpan chunk, std::int32_t side);

/// Compiles pixels (column by column, each `height` high). No byte aligns the lists after an odd
/// pool. Numbers that do not fit their fields fail with number 6.
ByteArray CompileSprite(ByteSpan columns, std::int32_t height, enmVSWAPCompression compression);

}  // namespace tessaro
