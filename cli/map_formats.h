// The map files that `map export` and `map convert` write.
#pragma once

#include <span>
#include <string>

#include "tessaro/game_maps.h"

namespace tessaro::cli {

struct MapFormat {
    enmMapFileType type;
    const char* option;     ///< what --format calls it
    const char* name;       ///< for people
    const char* extension;  ///< that stands for the format; empty: none does
    bool many;              ///< whether a file holds several maps
};

std::span<const MapFormat> MapFormats();

/// The row of a type; the first one for a type that is not written.
const MapFormat& FormatOf(enmMapFileType type);
/// The row that the extension of a file stands for, or null.
const MapFormat* FormatOfFile(const std::string& file);

}  // namespace tessaro::cli
