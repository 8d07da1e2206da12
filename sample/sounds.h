// What the sample game sounds like, computed with whole numbers alone.
#pragma once

#include <vector>

#include "tessaro/types.h"

namespace tessaro::sample {

/// Samples of 7042 a second, 128 at rest; one sound has none.
std::vector<ByteArray> MakeDigitisedSounds();

/// Equally many of each: chunks for the PC speaker and for the AdLib card.
std::vector<ByteArray> MakeSpeakerEffects();
std::vector<ByteArray> MakeAdLibEffects();

/// Song chunks: a short tune and a place without one.
std::vector<ByteArray> MakeSongs();

}  // namespace tessaro::sample
