// A map set as it was opened: header file, data file, and the maps with what the host changed.
#pragma once

#include <vector>

#include "foundation/data_file.h"
#include "foundation/game.h"
#include "maps/map_record.h"
#include "maps/plane_coding.h"
#include "saving/new_file.h"
#include "tessaro/game_maps.h"

namespace tessaro {

/// One map of the set. Its planes come into memory when they are first asked for and stay.
struct MapItem {
    MapRecord record;
    bool inMemory = false;
    bool changed = false;  ///< since it was read or saved
    typMapPlane planes;
    enmCorruptLevel corruption = clNone;
};

/// The planes of a stored map together: a few bytes of a file must not cost gigabytes.
inline constexpr std::int64_t kMostMapCells = std::int64_t{4} * 16'777'216;
constexpr bool FitsMap(std::size_t planes, std::size_t cells) {
    return planes <= static_cast<std::size_t>(kMostMapCells) / cells;
}

/// A plane's cells as the files keep them: the low 16 bits of each, row by row.
ByteArray CellBytes(const typMapGrid& plane);

struct MapSet {
    DataFile header, data;
    MapLayout layout;  ///< of the files read
    std::uint16_t rlewTag = 0;
    bool rlewAlone = false;
    std::vector<MapItem> maps;
    /// What other tools keep in the header file behind its offsets (properties of tiles), and the
    /// slot that it begins at.
    std::size_t tailSlot = kFewestHeaderSlots;
    ByteArray tail;

    /// Reads the set that is configured: both files and every map's record.
    static MapSet Open(const Game& game, const Files& files);

    /// The planes of one map as they are stored. The data file is open.
    typMapPlane ReadPlanes(const MapRecord& record, CarmackTags tags, std::uint16_t tag,
                           enmCorruptLevel& corruption) const;
};

/// How a set is written.
struct MapWriting {
    MapLayout layout;
    PlaneForm form;
};

/// A header file for maps whose records lie at `slots`, with the tail that the set had. Fails
/// where the tail would be read as maps, or maps would take its place.
ByteArray WriteMapHeaderFile(const MapSet& set, const MapWriting& writing,
                             std::vector<std::int32_t> slots);

/// Whether `reread` holds these maps in the form in which they were to be written. Throws naming
/// map and plane.
void RequireSameMaps(const std::vector<MapItem>& maps, const MapSet& reread,
                     const MapWriting& writing);

}  // namespace tessaro
