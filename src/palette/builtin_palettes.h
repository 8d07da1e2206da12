// The palettes that the games carry in their executables.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace tessaro {

/// Red, green and blue of colours 0 to 255, 8-bit.
using PaletteBytes = std::array<std::uint8_t, 768>;

/// The palette of a game by its extension: Spear of Destiny's for SOD and SDM, otherwise the
/// default one, whose first 16 colours are those of the 16-colour games.
PaletteBytes BuiltInPalette(std::string_view extension);

}  // namespace tessaro
