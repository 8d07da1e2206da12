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

    /// Indexes the files anew; items and counts stay. A failure is reported.
    bool LoadSwapFile(const std::string& path);
    /// Takes the counts from the files and forgets all items.
    void TakeOver();
    PageItem& ItemAt(std::vector<PageItem>& items, std::int32_t number);
};

struct ImageSize {
    std::int32_t width = 0;
    std::int32_t height = 0;
};

/// A BMP image back to a wall chunk.
/// @return False where the image is not 8 bits per pixel, or after a failure, which is reported
///         under this function's own name.
bool FixWallData(ByteSpan image, ByteArray& chunk, ImageSize& size);

}  // namespace tessaro
