// WAV files of any kind in, of 16 bits out.
//
//  offset   width   field
//  0        4, 4    "RIFF", length of what follows
//  8        4       "WAVE", then chunks: 4 bytes of name, 4 of length, the bytes, a zero where they
//  are odd
//                   "fmt ":
//  0        2, 2    format (1 PCM, 3 floating point, FFFE hex: the first two bytes at 24), channels
//  4        4, 4    frames a second, bytes a second
//  12       2, 2    bytes a frame, bits a sample
//                   "data": the frames, a sample for each channel
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "foundation/bytes.h"

namespace tessaro::sound {

/// The channels of a WAV file mixed down to one.
struct WaveSound {
    std::uint32_t rate = 0;
    std::vector<std::int32_t> samples;  ///< of 24 bits, -2^23 to 2^23 - 1
    /// Whether the file has one channel of 8 bits. Its samples come back exactly then.
    bool isByteMono = false;
};

/// Reads PCM of 8, 16, 24 and 32 bits and floating point of 32 and 64. A length beyond the end
/// stands for the bytes that are there. Fails (number 5, with a description) for any other file.
WaveSound ReadWaveFile(ByteSpan file);

ByteArray WriteWaveFile(std::span<const std::int16_t> samples, std::uint32_t rate);

}  // namespace tessaro::sound
