// Proportional fonts.
//
//  offset   width     field
//  0        2         height (signed)
//  2        2 x 256   offset of each character's pixels from the chunk's start (signed)
//  514      256       width of each character; 0: absent
//  770                pixels: a byte each, row after row; in 16-colour games a bit each, the
//                     highest first, every row on a byte of its own
#pragma once

#include <array>
#include <string_view>

#include "foundation/bytes.h"
#include "tessaro/vga_graph.h"

namespace tessaro {

inline constexpr std::size_t kFontPixels = 770;

struct FontHead {
    std::int16_t height = 0;
    std::array<std::int16_t, 256> offsets{};
    std::array<std::uint8_t, 256> widths{};
};

FontHead ReadFontHead(ByteSpan bytes);

/// Fails with number 6 where a character has more than 32767 pixels, with 9 where its pixels do
/// not lie in the chunk.
typFont ReadFont(ByteSpan bytes, bool ega);

struct RenderedText {
    ByteArray pixels;        ///< rows padded with the background to a multiple of 4
    std::int32_t width = 0;  ///< without the padding
    std::int32_t height = 0;
};

/// Draws a text, its lines split at CR LF. Colours outside 0 to 255 fail with number 6. A text
/// that is 0 wide has no pixels but a height. A character with a width but no pixels is a gap.
RenderedText RenderText(const typFont& font, std::string_view text, std::int32_t backColor,
                        std::int32_t foreColor);

/// Draws one character; a single pixel of background where the font does not have it.
ByteArray RenderCharacter(const typFont& font, std::int32_t character, std::int32_t backColor,
                          std::int32_t foreColor);

}  // namespace tessaro
