// A map plane's cells and the bytes that a map data file keeps of them.
#pragma once

#include "foundation/bytes.h"
#include "maps/carmack.h"
#include "maps/length_prefix.h"
#include "tessaro/game_maps.h"

namespace tessaro {

/// How the planes of a set are coded.
struct PlaneForm {
    LengthPrefix prefix = LengthPrefix::Short;
    std::uint16_t rlewTag = 0xABCD;
    CarmackTags tags = {};
    bool rlewAlone = false;  ///< the older kind, without the Carmack layer
};

/// Expands a stored plane into its cells, two bytes each; those beyond the stored ones stay 0.
/// Raises `corruption` as the streams tell.
ByteArray DecodePlane(ByteSpan stored, std::size_t cells, const PlaneForm& form,
                      enmCorruptLevel& corruption);

/// Packs a plane's cells, two bytes each. A plane that the usual coding does not give back, or
/// cannot hold, is coded in a second way that every reader knows: each word that would be taken
/// for a code is escaped. Fails for a plane too large for the lengths of the form; the description
/// goes on behind the plane's name.
ByteArray EncodePlane(ByteSpan cells, const PlaneForm& form);

}  // namespace tessaro
