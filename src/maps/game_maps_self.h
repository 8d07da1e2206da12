// What a clsGameMaps holds, for the files that carry out its operations and for the tests.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "foundation/bytes.h"
#include "maps/carmack.h"
#include "maps/length_prefix.h"
#include "maps/map_record.h"
#include "maps/plane_cells.h"
#include "maps/rlew.h"
#include "platform/file.h"
#include "saving/saving_flag.h"
#include "tessaro/game_maps.h"

namespace tessaro {

/// One map of the set. Its planes come into memory when they are first asked for and stay.
struct MapItem {
    MapRecord record;
    bool inMemory = false;
    typMapPlane planes;
    enmCorruptLevel corruption = clNone;
};

/// One map read from an exchange file for the clipboard.
struct ClipboardMap {
    std::string name;
    std::int32_t width = 0;
    std::int32_t height = 0;
    typMapPlane planes;
};

/// Nor do the planes of a stored map together: a few bytes of a file must not cost gigabytes.
inline constexpr std::int64_t kMostMapCells = 4 * kMostPlaneCells;
constexpr bool FitsMap(std::size_t planes, std::size_t cells) {
    return planes <= static_cast<std::size_t>(kMostMapCells) / cells;
}
inline constexpr std::int16_t kNewMapSide = 64;

/// `count` planes of cells that are all 0.
typMapPlane EmptyPlanes(std::size_t count, std::size_t cells);

/// A plane's cells as the files keep them: the low 16 bits of each, row by row.
ByteArray CellBytes(const typMapGrid& plane);

/// A name cut at its first zero byte, as it is shown and as other formats take it.
std::string DisplayName(const std::string& name);

struct clsGameMaps::Self {
    std::vector<MapItem> maps;
    /// Where each map's record lies in the data file; always max(100, maps) entries.
    std::vector<std::int32_t> headerSlots;
    File dataFile;

    MapLayout input;  ///< of the files read; its longLengths is LoadLengthsAsLong
    std::int16_t outputMapPlanes = 3;
    std::int16_t outputMapNameSize = 16;
    bool saveLengthsAsLong = false;

    std::int32_t longRlewTag = 0;
    std::int32_t compileRlewTag = 0;
    CarmackTags tags;
    CarmackTags compileTags;

    std::vector<ClipboardMap> clipboard;
    SavingFlag saving;

    /// Fails with number 9 for a map that does not exist.
    MapItem& MapAt(std::int32_t mapNum);
    /// Brings a map's planes into memory where they are not yet. Failures have been reported, under
    /// the name of the operation that failed, when the result is False.
    bool BringIn(std::int32_t mapNum);
    /// Gives a map planes of the host's or of an exchange file; they are in memory from then on.
    void ReplacePlanes(MapItem& item, std::int16_t width, std::int16_t height, typMapPlane planes);
    void ResizeHeaderSlots();

    LengthPrefix LoadPrefix() const {
        return input.longLengths ? LengthPrefix::Long : LengthPrefix::Short;
    }
    LengthPrefix SavePrefix() const {
        return saveLengthsAsLong ? LengthPrefix::Long : LengthPrefix::Short;
    }

    // Private operations. Each reports its own failure under its qualified name. The two expanders
    // want a destination that the caller has sized.
    bool LoadMapHeader();
    bool LoadMapData();
    /// Expands one stored plane over zeros; cells that do not fit are left out.
    bool ReadPlane(MapItem& item, std::size_t plane, ByteArray& cellBytes);
    bool CarmackExpand(ByteSpan source, ByteArray& destination, std::int32_t length) const;
    bool CarmackCompress(ByteArray& data) const;
    bool RLEWExpand(std::uint16_t tag, ByteSpan source, ByteArray& destination,
                    std::int32_t& length, enmCorruptLevel& corruption,
                    Overrun overrun = Overrun::Fails) const;
    bool RLEWCompress(std::uint16_t tag, ByteSpan source, ByteArray& destination,
                      bool writeLength) const;
    /// Writes exactly `size` bytes (0: OutputMapNameSize): the name and zeros, or zeros alone and
    /// False when the name is longer.
    bool WriteMapName(ByteWriter& out, const std::string& name, std::int16_t size) const;

    struct Save;
};

/// The way in for the tests and for helpers outside the class.
struct GameMapsInternals {
    using Self = clsGameMaps::Self;
    static clsGameMaps::Self& SelfOf(clsGameMaps& maps) { return *maps.self_; }
};

}  // namespace tessaro
