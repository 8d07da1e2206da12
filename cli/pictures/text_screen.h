// End screens: 80 x 25 characters with attributes, drawn as the text mode shows them.
#pragma once

#include "pictures/image.h"

namespace tessaro::cli {

/// Draws 4000 bytes of character and attribute pairs in cells of 8 x 16 pixels.
IndexedImage DrawTextScreen(const std::uint8_t* cells);

}  // namespace tessaro::cli
