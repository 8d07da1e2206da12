// What a value of a map looks like: its wall, sprite or tile, from the game's own files.
#pragma once

#include <map>
#include <utility>

#include "cells/cell_values.h"
#include "game.h"
#include "pictures/canvas.h"

namespace tessaro::cli {

/// Pictures are loaded when they are first asked for. A file that cannot be opened costs the
/// pictures, not the map.
class CellPictures {
public:
    explicit CellPictures(Game& game);

    CellSet Set() const { return set_; }
    /// The picture of a value; nullptr where it has none.
    const IndexedImage* Of(int plane, std::int32_t value);

private:
    IndexedImage Load(int plane, std::int32_t value);
    IndexedImage LoadWall(std::int32_t value);
    IndexedImage LoadSprite(int number);
    IndexedImage LoadTile(int chunk);

    Game& game_;
    CellSet set_;
    clsVSwap* pages_ = nullptr;
    clsVGAGraph* graphics_ = nullptr;
    std::map<std::pair<int, std::int32_t>, IndexedImage> known_;
};

/// The same pictures as they stand in cells of some pixels across: walls and tiles fill their cell,
/// what stands on the ground is cut out and as large as fits. Each is scaled once.
class CellStamps {
public:
    CellStamps(Game& game, int size) : pictures_(game), size_(size) {}

    CellSet Set() const { return pictures_.Set(); }
    int Size() const { return size_; }
    /// nullptr where there is no picture.
    const Stamp* Of(int plane, std::int32_t value);

private:
    Stamp Make(int plane, std::int32_t value);

    CellPictures pictures_;
    int size_;
    std::map<std::pair<int, std::int32_t>, Stamp> known_;
};

/// A masked tile of 16 x 16 pixels in 16 colours, as its chunk holds it; 160 bytes.
IndexedImage MaskedTile(const ByteArray& chunk, const Colors& colors);

}  // namespace tessaro::cli
