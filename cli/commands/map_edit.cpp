// tessaro map resize | add | remove | rename | set
#include "commands/arguments.h"
#include "commands/commands.h"
#include "console.h"
#include "known/item_names.h"
#include "maps/map_area.h"
#include "report.h"

namespace tessaro::cli {

namespace {

struct Edit {
    std::string folder, mapName, name, value;
    int map = -1, width = 0, height = 0, fill = 0, plane = 0, x = 0, y = 0;
    SaveOptions save;
    MapLayoutOptions layout;
};

using Change = void (*)(Game&, const Edit&);

void Name(clsGameMaps& maps, int map, const std::string& name) {
    const auto room = static_cast<std::size_t>(maps.OutputMapNameSize());
    if (name.size() > room)
        throw CommandError("the name has " + std::to_string(name.size()) +
                           " characters, the maps of this game have room for " +
                           std::to_string(room) +
                           "; shorten it, or give --name-size for a game that is built for it");
    maps.MapName(map, name);
}

void Resize(Game& game, const Edit& edit) {
    game.Graphics();  // which tells whether this game's maps may change their size
    if (!game.Version().CanChangeMapSize() &&
        !TheConsole().Confirm("This game's maps have a fixed size. Resize all the same?"))
        Fail("the map was not resized");
    constexpr std::int64_t kMostCells = 16'777'216;
    if (edit.width < 1 || edit.height < 1 || std::int64_t{edit.width} * edit.height > kMostCells)
        throw CommandError("a map cannot have " + std::to_string(edit.width) + " x " +
                           std::to_string(edit.height) + " cells (at least 1 x 1, at most " +
                           std::to_string(kMostCells) + " in all)");
    if (!game.Maps().ResizeMap(edit.map, edit.width, edit.height, edit.fill))
        Fail("the map was not resized");
}

void Add(Game& game, const Edit& edit) {
    game.Maps().AddMap(edit.map);
    if (TheConsole().HasFailure())
        Fail("no map was added");
    if (!edit.name.empty())
        Name(game.Maps(), edit.map, edit.name);
}

void Remove(Game& game, const Edit& edit) {
    game.Maps().RemoveMap(edit.map);
    if (TheConsole().HasFailure())
        Fail("the map was not removed");
}

void Rename(Game& game, const Edit& edit) {
    Name(game.Maps(), edit.map, edit.name);
}

void Set(Game& game, const Edit& edit) {
    Changing map(game, edit.map);
    map.Now().CheckPlane(edit.plane);
    map.Now().CheckArea({edit.x, edit.y});
    map.Set(edit.plane, edit.x, edit.y, CellValueOf(game, edit.plane, edit.value));
}

void Run(const Edit& edit, Change change, bool adds) {
    Game game(edit.folder);
    Edit now = edit;
    const int count = game.Maps().NumberOfMaps();
    if (adds && now.map < 0)
        now.map = count;
    if (!adds)
        now.map = MapOf(game, now.mapName);
    CheckNumber("map", now.map, adds ? count + 1 : count);
    now.layout.Apply(game.Maps());
    change(game, now);
    game.SaveMaps(edit.save);
    Say(std::to_string(game.Maps().NumberOfMaps()) + " maps saved");
}

/// What every change of the map set takes and does; the rest are the command's own arguments.
Edit& AddEdit(CLI::App& command, Change change, bool adds = false) {
    auto edit = std::make_shared<Edit>();
    AddFolder(command, edit->folder);
    if (adds)
        command.add_option("MAP", edit->map, "The number, from 0, that it takes [the last]");
    else
        AddMapName(command, edit->mapName);
    edit->save.AddTo(command);
    edit->layout.AddTo(command);
    command.callback([=] { Run(*edit, change, adds); });
    return *edit;
}

}  // namespace

void AddMapResize(CLI::App& command) {
    Edit& edit = AddEdit(command, Resize);
    command.add_option("WIDTH", edit.width, "Cells across")->required();
    command.add_option("HEIGHT", edit.height, "Cells down")->required();
    AddNumber(command, "--fill", edit.fill, 0, 0xFFFF,
              "What new cells of the first plane hold [0]");
}

void AddMapAdd(CLI::App& command) {
    Edit& edit = AddEdit(command, Add, true);
    command.add_option("--name", edit.name, "Its name [NEW]");
}

void AddMapRemove(CLI::App& command) {
    AddEdit(command, Remove);
}

void AddMapRename(CLI::App& command) {
    Edit& edit = AddEdit(command, Rename);
    command.add_option("NAME", edit.name, "The new name")->required();
}

void AddMapSet(CLI::App& command) {
    Edit& edit = AddEdit(command, Set);
    command.add_option("PLANE", edit.plane, "The plane, from 0")->required();
    command.add_option("X", edit.x, "The column, from 0")->required();
    command.add_option("Y", edit.y, "The row, from 0")->required();
    command.add_option("VALUE", edit.value, "What the cell holds from now on, or its name")
        ->required();
}

}  // namespace tessaro::cli
