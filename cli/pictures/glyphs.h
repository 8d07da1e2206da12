// The command's own small letters: for the numbers on sheets and for text screens.
#pragma once

#include <cstdint>

namespace tessaro::cli {

inline constexpr int kGlyphWidth = 6;   ///< five columns and a gap
inline constexpr int kGlyphHeight = 8;  ///< the lowest row holds descenders

/// Whether a character (32 to 126) has ink in a column (0 to 4) and row (0 to 7).
bool GlyphInk(char character, int column, int row);

/// Whether a character of a text screen (code page 437) has ink at a pixel of its 8 x 16 cell.
bool ScreenInk(std::uint8_t character, int x, int y);

}  // namespace tessaro::cli
