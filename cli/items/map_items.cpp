// Maps.
#include "drawing/map_picture.h"
#include "files.h"
#include "items/item.h"
#include "report.h"

namespace tessaro::cli {

namespace {

/// Canonical bytes: the cells as 16-bit numbers, row by row, plane after plane. Extracted: a KZR
/// map file and a picture.
class MapKind : public ItemKind {
public:
    std::string Name() const override { return "map"; }
    std::vector<int> Numbers(Game& game) const override {
        return CountedFrom0(game.Maps().NumberOfMaps());
    }

    Item Load(Game& game, int number) const override {
        Item item{number};
        typMapPlane planes;
        std::int32_t width = 0, height = 0;
        if (!game.Maps().LoadMap(number, planes, width, height))
            Fail("map " + std::to_string(number));
        item.name = DisplayName(game.Maps(), number);
        item.width = width;
        item.height = height;
        for (const typMapGrid& grid : planes.Plane) {
            ByteArray& plane = item.planes.emplace_back();
            plane.reserve(grid.Grid.size() * 2);
            for (const std::int32_t cell : grid.Grid) {
                plane.push_back(static_cast<std::uint8_t>(cell));
                plane.push_back(static_cast<std::uint8_t>(cell >> 8));
            }
            item.bytes.insert(item.bytes.end(), plane.begin(), plane.end());
        }
        return item;
    }

    void Extract(Game& game, const Item& item, Extraction& to) const override {
        const std::string name = SafeName(*item.name);
        Item byNumber{item.number};  // the name that the map itself has is the better one
        const std::string stem = Stem(byNumber) + (name.empty() ? "" : "-" + name);
        const std::string path = to.Path(stem + ".map");
        CheckReplaceable(path, kMapFile);
        RemoveFile(path);  // an earlier file of another format would keep its format
        enmMapFileType type = mftKZRMapFile;
        if (!game.Maps().ExportMap(item.number, path, true, type))
            Fail("map " + std::to_string(item.number));
        to.Write(stem, DrawMap(game, item.number, to.Stamps(game)));
    }
};

}  // namespace

std::vector<const ItemKind*> MapKinds() {
    static const MapKind maps;
    return {&maps};
}

}  // namespace tessaro::cli
