// What a clsGameMaps holds, for the files that carry out its operations and for the tests.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "foundation/bytes.h"
#include "foundation/store.h"
#include "maps/carmack.h"
#include "maps/map_set.h"
#include "maps/plane_cells.h"
#include "saving/saving_flag.h"
#include "tessaro/game_maps.h"

namespace tessaro {

/// One map read from an exchange file for the clipboard.
struct ClipboardMap {
    std::string name;
    std::int32_t width = 0;
    std::int32_t height = 0;
    typMapPlane planes;
};

inline constexpr std::int16_t kNewMapSide = 64;

/// `count` planes of cells that are all 0.
typMapPlane EmptyPlanes(std::size_t count, std::size_t cells);

/// A cell as it is kept, 0 to 65535. A value from -32768 to -1 stands for the word with the same
/// bits; any other fails with number 6.
std::int32_t CellValue(std::int32_t value);

struct clsGameMaps::Self {
    /// The game of the set; null before one was opened.
    std::shared_ptr<Game> game;
    MapSet set;
    std::int16_t outputMapPlanes = 3;
    std::int16_t outputMapNameSize = 16;
    bool saveLengthsAsLong = false;

    std::int32_t longRlewTag = 0;
    std::int32_t compileRlewTag = 0;
    CarmackTags tags;
    CarmackTags compileTags;

    std::vector<ClipboardMap> clipboard;
    SavingFlag saving;
    /// What this object left beside the map files under the names with ".new".
    std::vector<FilePrint> leftAside;

    Game& GameOf() const { return game ? *game : ConfiguredGame(); }
    /// Fails with number 9 for a map that does not exist.
    MapItem& MapAt(std::int32_t mapNum);
    /// A map with its planes in memory.
    MapItem& BringIn(std::int32_t mapNum);
    /// Gives a map planes of the host's or of an exchange file; they are in memory from then on.
    void ReplacePlanes(MapItem& item, std::int16_t width, std::int16_t height, typMapPlane planes);
    /// A map as AddMap makes it.
    MapItem NewMap() const;
};

/// The way in for the tests and for helpers outside the class.
struct GameMapsInternals {
    using Self = clsGameMaps::Self;
    static clsGameMaps::Self& SelfOf(clsGameMaps& maps) { return *maps.self_; }
};

}  // namespace tessaro
