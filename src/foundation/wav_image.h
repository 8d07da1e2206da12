// modAddWAVHeader: sound samples in and out of WAV images (44-byte header, 7042 Hz, 8-bit, mono).
#pragma once

#include <cstdint>

#include "foundation/bytes.h"

namespace tessaro::modAddWAVHeader {

/// Puts the header in front of the samples in `data`; both size fields come from `sampleLength`.
void AddWaveHeader(std::int32_t sampleLength, ByteArray& data);

/// The samples of a WAV image and its format; an image without a "data" chunk leaves `samples`
/// empty.
void RemoveWaveHeader(const ByteArray& image, ByteArray& samples, std::int32_t& sampleRate,
                      std::int16_t& bitsPerSample, std::int16_t& channels);

}  // namespace tessaro::modAddWAVHeader
