// Finds out how a map set is laid out.
#pragma once

#include "foundation/bytes.h"
#include "maps/map_record.h"

namespace tessaro {

/// The front of a data file that names its layout.
inline constexpr std::size_t kMapSignatureSize = 8;

struct MapSetLayout {
    MapLayout layout;
    MapHeader header;
};

/// Whether the data file has one of the extended layouts, for which ReadMapSetLayout needs all of
/// it; for the classic layout its front does.
bool HasExtendedLayout(ByteSpan dataFile);

/// Reads the header file together with the signature of the data file. Extended sets exist in two
/// forms. The first has its counts in the data file behind the signature. The second, which
/// SaveMapFile writes, has them in the header file in front of the offsets, or nowhere where they
/// are small. The first form is taken unless its first record makes no sense and the second's
/// does.
MapSetLayout ReadMapSetLayout(ByteSpan headerFile, ByteSpan dataFile);

}  // namespace tessaro
