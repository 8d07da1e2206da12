// clsGameMaps: reading the map files.
#include <utility>

#include "foundation/guard.h"
#include "maps/game_maps_self.h"
#include "saving/recovery.h"
#include "saving/save_set.h"

namespace tessaro {

bool clsGameMaps::Initialize() {
    return Guarded("clsGameMaps.Initialize", [&] {
        self_->saving.RefuseChange();
        self_->set = {};
        self_->game = nullptr;
        const std::shared_ptr<Game> game = SharedStore().game;
        std::vector<std::string> notices;
        MapSet set = ReadSet(*game->files, {game->mapHeaderFile, game->gameMapsFile}, notices,
                             [&](const Files& files) { return MapSet::Open(*game, files); });
        self_->game = game;
        self_->set = std::move(set);
        const MapLayout& layout = self_->set.layout;
        self_->outputMapPlanes = layout.planes;
        self_->outputMapNameSize = layout.nameSize;
        self_->saveLengthsAsLong = self_->saveLengthsAsLong || layout.longLengths;
        const std::uint16_t tag = self_->set.rlewTag;
        self_->compileRlewTag = static_cast<std::int16_t>(tag);
        self_->longRlewTag = static_cast<std::int32_t>(
            (static_cast<std::uint32_t>(self_->longRlewTag) & 0xFFFF'0000) | tag);
        ShowNotices(notices);
        return true;
    });
}

MapItem& clsGameMaps::Self::BringIn(std::int32_t mapNum) {
    MapItem& item = MapAt(mapNum);
    if (!item.inMemory) {
        if (set.data.WasRead())
            set.data.Reopen(*game->files);
        item.planes = set.ReadPlanes(item.record, tags, static_cast<std::uint16_t>(longRlewTag),
                                     item.corruption);
        item.inMemory = true;
    }
    return item;
}

bool clsGameMaps::LoadMap(std::int32_t MapNum, typMapPlane& MapDataPlanes, std::int32_t& Width,
                          std::int32_t& Height) {
    return Guarded("clsGameMaps.LoadMap", [&] {
        const MapItem& item = self_->BringIn(MapNum);
        typMapPlane planes = item.planes;
        MapDataPlanes = std::move(planes);
        Width = item.record.width;
        Height = item.record.height;
        return true;
    });
}

}  // namespace tessaro
