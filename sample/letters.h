// The letters of the sample game, and the font chunks made of them.
#pragma once

#include "tessaro/types.h"

namespace tessaro::sample {

inline constexpr int kLetterWidth = 5;
inline constexpr int kLetterHeight = 7;

/// Small letters look like capitals; what the game has no letter for is blank.
bool LetterHasInk(char letter, int column, int row);

/// A font of all characters from blank to "z", each pixel of a letter a square of `scale`: a byte
/// a pixel (0 or 15), in the 16-colour game a bit.
ByteArray MakeFontChunk(int scale, bool ega);

}  // namespace tessaro::sample
