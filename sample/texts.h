// The chunks of the sample game's graphics that are no pictures.
#pragma once

#include "tessaro/types.h"

namespace tessaro::sample {

/// 80 x 25 characters with their attributes.
ByteArray MakeTextScreen();
/// The same as the 256-colour games store it: a memory image's header, the screen, an end mark.
ByteArray MakeEndScreen();
/// The default colours at dusk, 6-bit.
ByteArray MakeDuskPalette();
ByteArray MakeVgaDemo();
ByteArray MakeEgaDemo();
ByteArray MakeArticle();
ByteArray MakeAreaNames();

}  // namespace tessaro::sample
