// The three maps of the sample game.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "tessaro/types.h"

namespace tessaro::sample {

inline constexpr int kMapSide = 64;

/// Cells of walls and objects, row by row.
struct SampleMap {
    std::string name;
    std::vector<std::uint16_t> walls, objects;
};

std::array<SampleMap, 3> MakeMaps();

/// The header file and the data file: with the Carmack layer and a third plane of zeros, or
/// the older kind with RLEW alone and no third plane.
struct MapFiles {
    ByteArray header, data;
};
MapFiles WriteMapFiles(bool older);

}  // namespace tessaro::sample
