// tessaro map import FOLDER MAP FILE
#include <iostream>

#include "commands/commands.h"
#include "console.h"
#include "files.h"

namespace tessaro::cli {

namespace {

struct Options {
    std::string folder, file;
    int map = 0;
    SaveOptions save;
};

void Run(const Options& options) {
    Game game(options.folder);
    const int before = game.Maps().NumberOfMaps();
    CheckNumber("map", options.map, before + 1);  // one behind the last adds maps
    ReadFile(options.file);  // so that a missing file is told in the command's own words
    if (!game.Maps().ImportMap(options.map, options.file))
        Fail(options.file + " was not imported");
    const int added = game.Maps().NumberOfMaps() - before;
    game.SaveMaps(options.save);
    std::cout << options.file << ": imported from map " << options.map << " on";
    if (added > 0)
        std::cout << ", " << added << " maps added";
    std::cout << '\n';
}

}  // namespace

void AddMapImport(CLI::App& map) {
    CLI::App* command = map.add_subcommand("import", "Read the maps of a file into the game");
    auto options = std::make_shared<Options>();
    AddFolder(*command, options->folder);
    command->add_option("MAP", options->map, "The number, from 0, that the file's first map takes")
        ->required();
    command->add_option("FILE", options->file, "The map file; its format is recognised")
        ->required();
    options->save.AddTo(*command);
    command->callback([options] { Run(*options); });
}

}  // namespace tessaro::cli
