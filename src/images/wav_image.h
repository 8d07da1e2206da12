// modAddWAVHeader: sound samples in and out of WAV images.
//
//  offset   width   field
//  0        4       "RIFF"
//  4        4       sample length + 36
//  8        4, 4    "WAVE", "fmt "
//  16       4       16
//  20       2, 2    1 (PCM), channels: 1
//  24       4, 4    samples a second, bytes a second: 7042
//  32       2, 2    1, bits per sample: 8
//  36       4       "data"
//  40       4       sample length
//  44               samples
#pragma once

#include <cstdint>

#include "foundation/bytes.h"

namespace tessaro::modAddWAVHeader {

/// What a WAV image holds. Format values that it does not state are 0.
struct Wave {
    ByteArray samples;  ///< empty without a "data" chunk
    std::int32_t sampleRate = 0;
    std::int16_t bitsPerSample = 0;
    std::int16_t channels = 0;
};

/// The header above in front of the samples; both size fields come from `sampleLength`.
ByteArray WriteWave(std::int32_t sampleLength, ByteSpan samples);

/// Looks for the first "fmt " and the first "data" chunk, passing over whatever it does not know.
/// A data size beyond the end stands for the bytes that are there.
Wave ReadWave(ByteSpan image);

/// WriteWave in place, guarded: a failure is reported and leaves `data` unchanged.
void AddWaveHeader(std::int32_t sampleLength, ByteArray& data);

/// ReadWave, guarded: a failure is reported and leaves no samples and a format of zeros.
void RemoveWaveHeader(const ByteArray& image, ByteArray& samples, std::int32_t& sampleRate,
                      std::int16_t& bitsPerSample, std::int16_t& channels);

}  // namespace tessaro::modAddWAVHeader
