// What the sample game shows, drawn in the colours of the default palette.
#pragma once

#include <string_view>
#include <vector>

#include "sample/canvas.h"

namespace tessaro::sample {

/// 64 x 64 each: six kinds in a light and a dark version, then four pairs of doors.
std::vector<Canvas> DrawWalls();

/// 64 x 64 each, 255 where transparent.
std::vector<Canvas> DrawSprites();

/// The pictures of the graphics file, the title first; every width is a multiple of 8.
std::vector<Canvas> DrawPictures();

/// 35 tiles of 8 x 8: frames, arrows and bars.
std::vector<Canvas> DrawTiles();

/// The game's emblem, a lantern, with its foot at (x, y + size).
void DrawLantern(Canvas& canvas, int x, int y, int size);

}  // namespace tessaro::sample
