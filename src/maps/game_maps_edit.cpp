// clsGameMaps: changing the set of maps and the size of one map, in memory.
#include <algorithm>

#include "foundation/guard.h"
#include "maps/game_maps_self.h"

namespace tessaro {

namespace {

std::size_t Index(std::int64_t width, std::int64_t x, std::int64_t y) {
    return static_cast<std::size_t>(y * width + x);
}

}  // namespace

MapItem clsGameMaps::Self::NewMap() const {
    const auto planes = static_cast<std::size_t>(std::max<std::int16_t>(set.layout.planes, 0));
    MapItem item;
    item.record.planeOffsets.resize(planes);
    item.record.planeLengths.resize(planes);
    item.record.name = "NEW";
    item.record.width = item.record.height = kNewMapSide;
    item.planes = EmptyPlanes(planes, PlaneCells(kNewMapSide, kNewMapSide));
    item.inMemory = item.changed = true;
    return item;
}

bool clsGameMaps::SetMapCode(std::int32_t MapNum, std::int32_t Plane, std::int32_t X,
                             std::int32_t Y, std::int32_t Value) {
    return Guarded("clsGameMaps.SetMapCode", [&] {
        self_->saving.RefuseChange();
        const std::int32_t value = CellValue(Value);
        MapItem& item = self_->BringIn(MapNum);
        const std::int64_t cell = std::int64_t{Y} * item.record.width + X;
        const bool inside = X >= 0 && Y >= 0 && X < item.record.width && Y < item.record.height;
        if (!inside || Plane < 0 || std::cmp_greater_equal(Plane, item.planes.Plane.size()))
            throw Failure(kSubscriptOutOfRange);
        std::vector<std::int32_t>& grid = item.planes.Plane[static_cast<std::size_t>(Plane)].Grid;
        if (std::cmp_greater_equal(cell, grid.size()))
            throw Failure(kSubscriptOutOfRange);
        grid[static_cast<std::size_t>(cell)] = value;
        item.changed = true;
        return true;
    });
}

bool clsGameMaps::ResizeMap(std::int32_t MapNum, std::int32_t NewWidth, std::int32_t NewHeight,
                            std::int32_t MapFill) {
    return Guarded("clsGameMaps.ResizeMap", [&] {
        self_->saving.RefuseChange();
        const std::int32_t oldWidth = self_->MapAt(MapNum).record.width;
        const std::int32_t oldHeight = self_->MapAt(MapNum).record.height;
        if (NewWidth == oldWidth && NewHeight == oldHeight)
            return true;
        const std::size_t cells = PlaneCells(NewWidth, NewHeight);
        const auto width = Narrow<std::int16_t>(NewWidth);
        const auto height = Narrow<std::int16_t>(NewHeight);
        const std::int32_t fill = CellValue(MapFill);

        MapItem& item = self_->BringIn(MapNum);
        const std::int32_t keptWidth = std::min(oldWidth, NewWidth);
        const std::int32_t keptHeight = std::min(oldHeight, NewHeight);
        typMapPlane planes = EmptyPlanes(item.planes.Plane.size(), cells);
        for (std::size_t plane = 0; plane < planes.Plane.size(); ++plane) {
            const std::vector<std::int32_t>& from = item.planes.Plane[plane].Grid;
            std::vector<std::int32_t>& to = planes.Plane[plane].Grid;
            if (from.size() < Index(oldWidth, 0, oldHeight))
                throw Failure(kSubscriptOutOfRange);
            // Only the first plane, that of the walls, is filled: that is meant.
            if (plane == 0)
                std::ranges::fill(to, fill);
            for (std::int32_t y = 0; y < keptHeight; ++y) {
                const auto row = from.begin() + static_cast<std::ptrdiff_t>(Index(oldWidth, 0, y));
                std::copy_n(row, keptWidth,
                            to.begin() + static_cast<std::ptrdiff_t>(Index(NewWidth, 0, y)));
            }
        }
        self_->ReplacePlanes(item, width, height, std::move(planes));
        return true;
    });
}

void clsGameMaps::AddMap(std::int32_t MapNum) {
    Guarded("clsGameMaps.AddMap", [&] {
        self_->saving.RefuseChange();
        std::vector<MapItem>& maps = self_->set.maps;
        // The set grows even when the place turns out not to exist: that is meant.
        maps.emplace_back();
        MapItem& item = self_->MapAt(MapNum);
        const enmCorruptLevel levelHere = item.corruption;  // stays with the place, as meant
        std::move_backward(maps.begin() + MapNum, maps.end() - 1, maps.end());

        item = self_->NewMap();
        item.corruption = levelHere;
    });
}

void clsGameMaps::RemoveMap(std::int32_t MapNum) {
    Guarded("clsGameMaps.RemoveMap", [&] {
        self_->saving.RefuseChange();
        MapItem& item = self_->MapAt(MapNum);
        std::vector<MapItem>& maps = self_->set.maps;
        if (maps.size() > 1) {
            maps.erase(maps.begin() + MapNum);
            return;
        }
        // The last map keeps its size and record and gets the cells of a new map: that is meant.
        const auto planes =
            static_cast<std::size_t>(std::max<std::int16_t>(self_->set.layout.planes, 0));
        item.planes = EmptyPlanes(planes, PlaneCells(kNewMapSide, kNewMapSide));
        item.inMemory = item.changed = true;
        item.record.name.clear();
    });
}

}  // namespace tessaro
