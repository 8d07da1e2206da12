// The three text forms of a palette. The readers return nothing for text of another form.
#pragma once

#include <optional>
#include <string_view>

#include "foundation/bytes.h"

namespace tessaro {

/// "JASC-PAL", "0100", "256", then a line per colour, 8-bit.
ByteArray WriteJascPalette(ByteSpan palette);
/// Palettes of fewer colours leave the others black; what a line holds behind its third number
/// (some programs write an opacity) is passed over.
std::optional<ByteArray> ReadJascPalette(std::string_view text);

/// "unsigned char gamepal[768]={", the 6-bit values, five colours a line, "};".
ByteArray WriteSourceArray(ByteSpan palette);
/// The 768 numbers between the first "{" and the "}" behind it, whatever the array is called.
std::optional<ByteArray> ReadSourceArray(std::string_view text);

/// "RGB(r,g,b)" per colour with 6-bit values, five a line.
ByteArray WriteRgbList(ByteSpan palette);
/// The 256 groups of three numbers in parentheses, whatever the macro before them is called.
std::optional<ByteArray> ReadRgbList(std::string_view text);

}  // namespace tessaro
