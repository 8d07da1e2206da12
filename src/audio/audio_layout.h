// How a new audio data file is laid out.
#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "audio/audio_file.h"

namespace tessaro {

struct AudioLayout {
    ByteArray data;
    std::vector<std::int32_t> offsets;  ///< of each chunk, and the closing one
};

/// Whether chunks can be exchanged where they lie: no range of a replaced chunk shares bytes with
/// another's, or lies within one.
bool CanExchangeInPlace(const std::vector<std::int32_t>& offsets, std::int64_t fileSize,
                        const std::map<std::int32_t, ByteArray>& replaced);

/// The old file with the ranges of the replaced chunks exchanged. Offsets move by the growth before
/// them, so that a list that steps back, and whatever lies between or behind the chunks, stays as
/// it is. `replaced` holds stored forms.
AudioLayout ExchangeInPlace(const std::vector<std::int32_t>& offsets, ByteSpan data,
                            const std::map<std::int32_t, ByteArray>& replaced);

/// One chunk for a file that is laid out anew.
struct AudioPiece {
    bool sparse = false;
    ByteArray bytes;
};

/// Chunks in a row, sharing nothing, between what the old file had before its first chunk and
/// behind its last. From `step` on (0: nowhere) they come first in the file: the list still steps
/// back there.
AudioLayout LayInARow(const std::vector<AudioPiece>& pieces, std::size_t step, ByteSpan before,
                      ByteSpan behind);

/// The first chunk whose offset is below the one before it; 0 where the list never steps back.
std::size_t FindStep(const std::vector<std::int32_t>& offsets);

}  // namespace tessaro
