// The state of clsVSwap.
#pragma once

#include <memory>
#include <vector>

#include "pagefile/page_index.h"
#include "saving/saving_flag.h"
#include "tessaro/vswap.h"

namespace tessaro {

/// A wall, sprite or sound as callers see it.
struct PageItem {
    enum class From {
        File,   ///< not asked for yet
        Cache,  ///< `image` was made from the file
        Host    ///< `image` was set and is to be saved
    };
    From from = From::File;
    ByteArray image;
    std::int32_t samples = 0;  ///< of a sound that the host set

    /// A host sets an item without data in the form in which it gets one.
    bool HasData() const { return image.size() > 1; }
};

struct clsVSwap::Self {
    std::shared_ptr<Game> game;  ///< of the set; null before one was opened
    std::shared_ptr<const Finding> finding;
    PageIndex index;
    std::vector<PageItem> walls, sprites, sounds;
    std::int32_t numberOfWalls = 0;
    std::int32_t numberOfSprites = 0;
    std::int32_t numberOfSounds = 0;
    std::int32_t wallSize = 64;
    std::int32_t spriteSize = 64;
    std::int32_t outputPageSize = 4096;
    bool hiResInput = false;
    SavingFlag saving;

    /// The index with its bytes at hand.
    PageIndex& Opened();
    /// Serves these files from now on; items and counts stay.
    void Serve(PageIndex&& fresh);
    /// Takes the counts from the files and forgets all items.
    void TakeOver();
    PageItem& ItemAt(std::vector<PageItem>& items, std::int32_t number);
};

struct ImageSize {
    std::int32_t width = 0;
    std::int32_t height = 0;
};

/// A BMP image back to a wall chunk.
/// @return False where the image is not 8 bits per pixel.
bool FixWallData(ByteSpan image, ByteArray& chunk, ImageSize& size);

}  // namespace tessaro
