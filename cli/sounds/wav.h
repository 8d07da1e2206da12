// WAV files: what a game can hold is checked before it is handed over.
#pragma once

#include <cstdint>

#include "tessaro/types.h"

namespace tessaro::cli {

/// Samples a second of every digitised sound.
inline constexpr std::uint32_t kSoundRate = 7042;

struct Wav {
    std::uint32_t rate = 0;
    int bits = 0, channels = 0;
    ByteArray samples;
};

/// Reads the format and the samples; fails for anything that is not a PCM WAV file.
Wav ReadWav(const ByteArray& file);

/// A WAV image of 7042 Hz, 8 bits, mono, as the games play it.
ByteArray WriteWav(const ByteArray& samples);

}  // namespace tessaro::cli
