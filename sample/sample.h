// The sample game "Lantern Keep": a small set of data files of our own, drawn and synthesised by
// this code, the same bytes on every run. It stands in for a game in the tests and the demo.
#pragma once

#include <string>
#include <vector>

#include "tessaro/types.h"

namespace tessaro::sample {

struct SampleFile {
    std::string name;
    ByteArray content;
};

inline constexpr const char* kVgaExtension = "LKP";
inline constexpr const char* kEgaExtension = "LKE";

/// The 256-colour game: maps, page file, graphics and audio.
std::vector<SampleFile> MakeSampleGame();

/// The 16-colour game: older maps without a third plane, graphics with masks, sprites and all kinds
/// of tiles, compressed audio with a dictionary of its own.
std::vector<SampleFile> MakeEgaSampleGame();

}  // namespace tessaro::sample
