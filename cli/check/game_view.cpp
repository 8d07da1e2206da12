#include "check/game_view.h"

#include <filesystem>

#include "items/item.h"
#include "report.h"

namespace tessaro::cli {

namespace {

MapView ViewOf(Game& game, const Item& item, CellSet set) {
    MapView map;
    map.number = item.number;
    map.width = *item.width;
    map.height = *item.height;
    map.set = set;
    for (const ByteArray& bytes : item.planes) {
        std::vector<std::int32_t>& plane = map.planes.emplace_back();
        for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
            plane.push_back(bytes[i] | bytes[i + 1] << 8);
    }
    const enmCorruptLevel damage = game.Maps().CorruptMap(item.number);
    map.endsEarly = damage == clHigh;
    map.lengthUnknown = damage == clLow;
    return map;
}

PageImage ImageOf(Game& game, Item& item, int chunk) {
    PageImage image;
    if (item.empty)
        return image;
    ByteArray stored;
    game.Pages().LoadChunk(chunk, stored);
    image.bytes = stored.size();
    image.pixels = std::move(item.bytes);
    return image;
}

void Take(Game& game, const std::string& kind, Item item, GameView& view) {
    if (kind == "map") {
        view.maps.push_back(ViewOf(game, item, view.set));
    } else if (kind == "wall") {
        view.walls.push_back(ImageOf(game, item, item.number));
    } else if (kind == "sprite") {
        view.sprites.push_back(ImageOf(game, item, game.Pages().NumberOfWalls() + item.number));
    } else if (kind == "chunk" && !item.empty) {
        const enmVGRAGRAPHTypes type = game.Graphics().ChunkDataType(item.number);
        if (type == vgEndArt)
            view.articles.push_back({item.number, {item.bytes.begin(), item.bytes.end()}});
    }
}

/// Walls and sprites stay in step with their numbers.
void TakeNothing(const std::string& kind, GameView& view) {
    if (kind == "wall")
        view.walls.emplace_back();
    if (kind == "sprite")
        view.sprites.emplace_back();
}

std::map<std::string, std::string> FilesOf(const clsVersion& version) {
    const auto name = [](const std::string& path) {
        return std::filesystem::path(path).filename().string();
    };
    const std::string pages = name(version.VSwapFile()), graphics = name(version.VGAGraphFile());
    return {{"map", name(version.GameMapsFile())},
            {"wall", pages},
            {"sprite", pages},
            {"sound", pages},
            {"chunk", graphics},
            {"picture", graphics},
            {"font", graphics},
            {"palette", graphics},
            {"audio", name(version.AudioDataFile())}};
}

void ReadKind(Game& game, const ItemKind& kind, GameView& view) {
    for (const int number : kind.Numbers(game)) {
        try {
            Take(game, kind.Name(), kind.Load(game, number), view);
        } catch (const CommandError& error) {
            view.unread.push_back({kind.Name(), number, OneLine(error.what())});
            TakeNothing(kind.Name(), view);
        }
    }
}

}  // namespace

GameView ViewOf(Game& game) {
    GameView view;
    view.set = CellSetOf(game.Version());
    view.files = FilesOf(game.Version());
    view.hasPages = game.HasPages();
    for (const ItemKind* kind : ItemKinds()) {
        if (!kind->In(game))
            continue;
        try {
            ReadKind(game, *kind, view);
        } catch (const CommandError& error) {  // the file itself cannot be opened
            view.unread.push_back({kind->Name(), -1, OneLine(error.what())});
        }
    }
    try {
        if (view.hasPages)
            view.highResolution = game.Pages().HiResInput();
        const int demos = game.Graphics().NumberDataTypeChunks(vgDemo);
        for (int demo = 0; demo < demos; ++demo)
            view.demoLevels.push_back(game.Graphics().DemoLevel(demo));
    } catch (const CommandError&) {  // told above
    }
    return view;
}

}  // namespace tessaro::cli
