// tessaro map fill | line | copy | paste | replace, each one save
#include <cstdlib>
#include <memory>

#include "commands/arguments.h"
#include "commands/commands.h"
#include "console.h"
#include "files.h"
#include "known/item_names.h"
#include "maps/map_area.h"
#include "report.h"

namespace tessaro::cli {

namespace {

struct Options {
    std::string folder, map, value, from, to, file, source;
    int plane = 0, toX = 0, toY = 0;
    std::optional<int> onlyPlane;
    Area area;
    SaveOptions save;
    MapLayoutOptions layout;
};

/// Saves what was changed and says how much that was.
void Save(Game& game, const Options& options, int changed) {
    options.layout.Apply(game.Maps());
    if (changed > 0)
        game.SaveMaps(options.save);
    Say(std::to_string(changed) + " cells changed" + (changed > 0 ? "" : ", nothing saved"));
}

void Fill(Game& game, const Options& options) {
    Changing map(game, MapOf(game, options.map));
    map.Now().CheckPlane(options.plane);
    map.Now().CheckArea(options.area);
    const std::int32_t value = CellValueOf(game, options.plane, options.value);
    for (int y = 0; y < options.area.height; ++y)
        for (int x = 0; x < options.area.width; ++x)
            map.Set(options.plane, options.area.x + x, options.area.y + y, value);
    Save(game, options, map.Changed());
}

/// Cell by cell along the longer side, both ends included.
void Line(Game& game, const Options& options) {
    Changing map(game, MapOf(game, options.map));
    map.Now().CheckPlane(options.plane);
    map.Now().CheckArea({options.area.x, options.area.y});
    map.Now().CheckArea({options.toX, options.toY});
    const std::int32_t value = CellValueOf(game, options.plane, options.value);
    const int across = options.toX - options.area.x, down = options.toY - options.area.y;
    const int steps = std::max(std::abs(across), std::abs(down));
    const auto along = [&](int from, int length, int step) {  // to the nearest cell
        return from +
               (steps == 0 ? 0 : (2 * length * step + (length < 0 ? -steps : steps)) / (2 * steps));
    };
    for (int step = 0; step <= steps; ++step)
        map.Set(options.plane, along(options.area.x, across, step),
                along(options.area.y, down, step), value);
    Save(game, options, map.Changed());
}

/// Puts an area of some cells at a place of the map. What lies over the edge is an error, not cut.
void Put(Changing& map, const Cells& source, const Area& area, const Options& options) {
    source.CheckArea(area);
    map.Now().CheckArea({options.toX, options.toY, area.width, area.height});
    if (options.onlyPlane) {
        source.CheckPlane(*options.onlyPlane);
        map.Now().CheckPlane(*options.onlyPlane);
    }
    const int planes = std::min(source.Planes(), map.Now().Planes());
    for (int plane = 0; plane < planes; ++plane)
        for (int y = 0; y < area.height && plane == options.onlyPlane.value_or(plane); ++y)
            for (int x = 0; x < area.width; ++x)
                map.Set(plane, options.toX + x, options.toY + y,
                        source.At(plane, area.x + x, area.y + y));
}

void Copy(Game& game, const Options& options) {
    Cells source;
    const auto load = [&](Game& from) { source = LoadCells(from, MapOf(from, options.map)); };
    if (options.source.empty())
        load(game);
    else
        WithOtherGame(options.source, load);
    Changing map(game, MapOf(game, options.to));
    Put(map, source, options.area, options);
    Save(game, options, map.Changed());
}

void Paste(Game& game, const Options& options) {
    CheckReadable(options.file);
    if (game.Maps().ImportMapsForClipboard(options.file) < 1)
        Fail(options.file + " was not read");
    Cells source;
    std::string name;
    game.Maps().GetClipboardMap(0, source.planes, source.width, source.height, name);
    if (TheConsole().HasFailure())
        Fail(options.file);
    Changing map(game, MapOf(game, options.map));
    Put(map, source, {0, 0, source.width, source.height}, options);
    Save(game, options, map.Changed());
}

/// On each plane that has values of these names; numbers are the same on all.
void Replace(Game& game, const Options& options) {
    std::vector<int> maps = CountedFrom0(game.Maps().NumberOfMaps());
    if (options.map != "all")
        maps = {MapOf(game, options.map)};
    int changed = 0;
    bool known = false;
    for (const int number : maps) {
        Changing map(game, number);
        map.Now().CheckPlane(options.plane);
        const auto from = ValueNamed(game, options.plane, options.from);
        const std::int32_t to = CellValueOf(game, options.plane, options.to);
        known = known || from;
        for (int y = 0; from && y < map.Now().height; ++y)
            for (int x = 0; x < map.Now().width; ++x)
                if (map.Now().At(options.plane, x, y) == *from)
                    map.Set(options.plane, x, y, to);
        changed += map.Changed();
    }
    if (!known)
        CellValueOf(game, options.plane, options.from);  // which says what is wrong with it
    Save(game, options, changed);
}

/// What all of them take and do; each adds its own arguments between FOLDER and the options.
Options& AddChange(CLI::App& command, void (*change)(Game&, const Options&)) {
    auto options = std::make_shared<Options>();
    AddFolder(command, options->folder);
    options->save.AddTo(command);
    options->layout.AddTo(command);
    command.callback([options, change] {
        Game game(options->folder);
        change(game, *options);
    });
    return *options;
}

void AddPlane(CLI::App& command, int& plane) {
    command.add_option("PLANE", plane, "The plane, from 0")->required();
}

void AddPlace(CLI::App& command, const char* x, const char* y, int& atX, int& atY) {
    command.add_option(x, atX, "The column, from 0")->required();
    command.add_option(y, atY, "The row, from 0")->required();
}

void AddSize(CLI::App& command, Area& area) {
    command.add_option("WIDTH", area.width, "Cells across")->required();
    command.add_option("HEIGHT", area.height, "Cells down")->required();
}

void AddValue(CLI::App& command, const char* name, std::string& value, const char* help) {
    command.add_option(name, value, help)->required();
}

void AddOnlyPlane(CLI::App& command, std::optional<int>& plane) {
    command.add_option("--plane", plane, "Only this plane, from 0 [all]")->type_name("N");
}

}  // namespace

void AddMapFill(CLI::App& command) {
    Options& options = AddChange(command, Fill);
    AddMapName(command, options.map);
    AddPlane(command, options.plane);
    AddPlace(command, "X", "Y", options.area.x, options.area.y);
    AddSize(command, options.area);
    AddValue(command, "VALUE", options.value, "What the cells hold from now on, or its name");
}

void AddMapLine(CLI::App& command) {
    Options& options = AddChange(command, Line);
    AddMapName(command, options.map);
    AddPlane(command, options.plane);
    AddPlace(command, "X1", "Y1", options.area.x, options.area.y);
    AddPlace(command, "X2", "Y2", options.toX, options.toY);
    AddValue(command, "VALUE", options.value, "What the cells hold from now on, or its name");
}

void AddMapCopy(CLI::App& command) {
    Options& options = AddChange(command, Copy);
    AddMapName(command, options.map, "The map that the area is taken from");
    AddPlace(command, "X", "Y", options.area.x, options.area.y);
    AddSize(command, options.area);
    AddValue(command, "TO", options.to, "The map that receives it; it may be the same");
    AddPlace(command, "TOX", "TOY", options.toX, options.toY);
    command.add_option("--from", options.source, "Take the area from the game in DIR")
        ->type_name("DIR");
    AddOnlyPlane(command, options.onlyPlane);
}

void AddMapPaste(CLI::App& command) {
    Options& options = AddChange(command, Paste);
    AddMapName(command, options.map);
    AddPlace(command, "X", "Y", options.toX, options.toY);
    AddValue(command, "FILE", options.file,
             "A map file; its first map lands with its corner there");
    AddOnlyPlane(command, options.onlyPlane);
}

void AddMapReplace(CLI::App& command) {
    Options& options = AddChange(command, Replace);
    AddMapName(command, options.map, "The map's number, from 0, its name, or \"all\"");
    AddPlane(command, options.plane);
    AddValue(command, "A", options.from, "The value to replace, or its name");
    AddValue(command, "B", options.to, "What stands there from now on, or its name");
}

}  // namespace tessaro::cli
