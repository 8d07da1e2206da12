// Telling what an expanded chunk holds by its bytes alone.
#pragma once

#include <span>
#include <vector>

#include "foundation/bytes.h"
#include "graphics/catalog.h"

namespace tessaro {

/// The type of a chunk that is neither table, font, picture nor tile; vgMisc where nothing fits.
///
///  vgJAMP           "JAMP" ...
///  vgPalette        768 bytes below 64: 256 x (red, green, blue)
///  vgEndScreen      FD 00 B8 ..., 4007 or 4008 bytes: memory image of a text screen
///  vgTrucEndScreen  4000 bytes: the screen's characters and attributes alone
///  vgEndArt         "^P" ... "^E": an article's text
///  vgDemo           u8 level, u16 length of all, u8, then the steps;
///                   16-colour: u16 level, u16 length of the steps, then these
///  vgAreaNames      16-colour: 0D 0A, then the names, each ended by 0D 0A
enmVGRAGRAPHTypes TypeByContent(ByteSpan bytes, bool ega);

/// Whether expanded bytes are a font: every inked character lies behind the tables and the last
/// one ends with the chunk.
bool LooksLikeFont(ByteSpan bytes, bool ega);

/// The entries (u16 width, u16 height) of a picture table up to the first that is no picture's.
/// 16-colour tables count widths in bytes of 8 pixels; the result is in pixels. There the number of
/// entries tells where the chunks behind the pictures begin, so that only trailing ones are cut.
std::vector<PictureSize> ReadPictureTable(ByteSpan bytes, bool ega);
std::vector<typSpriteHead> ReadSpriteTable(ByteSpan bytes);

/// What is known of a stored chunk without expanding it.
struct StoredLength {
    bool present = false;  ///< not sparse and long enough to have a length field
    std::int32_t length = 0;
};

/// The chunk from which most pictures of the table have the length field that their size calls
/// for, the lowest among equals; 0 where none has.
std::int32_t FindStartPics(const std::vector<PictureSize>& pictures,
                           std::span<const StoredLength> chunks, bool ega);

}  // namespace tessaro
