// tessaro map import FOLDER MAP FILE
#include <iostream>

#include "commands/arguments.h"
#include "commands/commands.h"
#include "files.h"
#include "known/item_names.h"
#include "report.h"

namespace tessaro::cli {

namespace {

struct Options {
    std::string folder, map, file;
    SaveOptions save;
    MapLayoutOptions layout;
};

void Run(const Options& options) {
    Game game(options.folder);
    const int before = game.Maps().NumberOfMaps();
    const int map = NumberOf(game, "map", options.map);
    CheckNumber("map", map, before + 1);  // one behind the last adds maps
    CheckReadable(options.file);
    options.layout.Apply(game.Maps());
    if (!game.Maps().ImportMap(map, options.file))
        Fail(options.file + " was not imported");
    const int added = game.Maps().NumberOfMaps() - before;
    game.SaveMaps(options.save);
    Say(options.file + ": imported from map " + std::to_string(map) + " on" +
        (added > 0 ? ", " + std::to_string(added) + " maps added" : ""));
}

}  // namespace

void AddMapImport(CLI::App& command) {
    auto options = std::make_shared<Options>();
    AddFolder(command, options->folder);
    AddMapName(command, options->map,
               "The number, from 0, that the file's first map takes, or the name of the map there");
    command.add_option("FILE", options->file, "The map file; its format is recognised")->required();
    options->save.AddTo(command);
    options->layout.AddTo(command);
    command.callback([options] { Run(*options); });
}

}  // namespace tessaro::cli
