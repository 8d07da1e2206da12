// tessaro map resize | add | remove | rename | set
#include <iostream>

#include "commands/commands.h"
#include "console.h"
#include "error.h"

namespace tessaro::cli {

namespace {

struct Edit {
    std::string folder, name;
    int map = -1, width = 0, height = 0, fill = 0, plane = 0, x = 0, y = 0, value = 0;
    SaveOptions save;
};

using Change = void (*)(Game&, const Edit&);

void Name(clsGameMaps& maps, int map, const std::string& name) {
    const auto room = static_cast<std::size_t>(maps.OutputMapNameSize());
    if (name.size() > room)
        throw CommandError("the name has " + std::to_string(name.size()) +
                           " characters, the maps of this game have room for " +
                           std::to_string(room));
    maps.MapName(map, name);
}

void Resize(Game& game, const Edit& edit) {
    game.Graphics();  // which tells whether this game's maps may change their size
    if (!game.Version().CanChangeMapSize() &&
        !TheConsole().Confirm("This game's maps have a fixed size. Resize all the same?"))
        Fail("the map was not resized");
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
    if (!game.Maps().SetMapCode(edit.map, edit.plane, edit.x, edit.y, edit.value))
        Fail("the cell was not set");
}

void Run(const Edit& edit, Change change, bool adds) {
    Game game(edit.folder);
    Edit now = edit;
    const int count = game.Maps().NumberOfMaps();
    if (adds && now.map < 0)
        now.map = count;
    CheckNumber("map", now.map, adds ? count + 1 : count);
    change(game, now);
    game.SaveMaps(edit.save);
    std::cout << game.Maps().NumberOfMaps() << " maps saved\n";
}

CLI::App* AddEdit(CLI::App& map, const char* name, const char* help, Change change,
                  const std::shared_ptr<Edit>& edit, bool adds = false) {
    CLI::App* command = map.add_subcommand(name, help);
    AddFolder(*command, edit->folder);
    CLI::Option* number = command->add_option(
        "MAP", edit->map,
        adds ? "The number, from 0, that it takes [the last]" : "The map's number, from 0");
    if (!adds)
        number->required();
    edit->save.AddTo(*command);
    command->callback([=] { Run(*edit, change, adds); });
    return command;
}

void AddCell(CLI::App* command, const char* option, int& value, const char* help) {
    command->add_option(option, value, help)->check(CLI::Range(0, 0xFFFF));
}

}  // namespace

void AddMapEdits(CLI::App& map) {
    auto resize = std::make_shared<Edit>();
    CLI::App* command = AddEdit(map, "resize", "Give a map a new size, keeping its top left corner",
                                Resize, resize);
    command->add_option("WIDTH", resize->width, "Cells across")->required();
    command->add_option("HEIGHT", resize->height, "Cells down")->required();
    AddCell(command, "--fill", resize->fill, "What new cells of the first plane hold [0]");

    auto add = std::make_shared<Edit>();
    command = AddEdit(map, "add", "Add an empty map of 64 x 64 cells", Add, add, true);
    command->add_option("--name", add->name, "Its name [NEW]");

    AddEdit(map, "remove", "Remove a map; the last one left is emptied instead", Remove,
            std::make_shared<Edit>());

    auto rename = std::make_shared<Edit>();
    command = AddEdit(map, "rename", "Give a map another name", Rename, rename);
    command->add_option("NAME", rename->name, "The new name")->required();

    auto set = std::make_shared<Edit>();
    command = AddEdit(map, "set", "Change one cell of a map", Set, set);
    command->add_option("PLANE", set->plane, "The plane, from 0")->required();
    command->add_option("X", set->x, "The column, from 0")->required();
    command->add_option("Y", set->y, "The row, from 0")->required();
    AddCell(command, "VALUE", set->value, "What the cell holds from now on, 0 to 65535");
    command->get_option("VALUE")->required();
}

}  // namespace tessaro::cli
