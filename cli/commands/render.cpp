// tessaro render FOLDER MAP OUT.png
#include <iostream>

#include "commands/commands.h"
#include "console.h"
#include "drawing/map_picture.h"
#include "files.h"

namespace tessaro::cli {

namespace {

struct Options {
    std::string folder, out;
    int map = 0, cell = 16;
};

void Run(const Options& options) {
    Game game(options.folder);
    CheckNumber("map", options.map, game.Maps().NumberOfMaps());
    MapCounts counts;
    const Canvas picture = DrawMap(game, options.map, options.cell, &counts);
    WriteFile(options.out, picture.Png());
    std::cout << OneLine(DisplayName(game.Maps(), options.map)) << ": "
              << picture.Width() / options.cell << " x " << picture.Height() / options.cell
              << " cells, " << counts.doors << " doors, " << counts.secrets << " secret walls, "
              << counts.enemies << " enemies, " << counts.objects << " objects\n";
}

}  // namespace

void AddRender(CLI::App& app) {
    CLI::App* command = app.add_subcommand("render", "Draw an overview picture of a map");
    auto options = std::make_shared<Options>();
    AddFolder(*command, options->folder);
    command->add_option("MAP", options->map, "The map's number, from 0")->required();
    command->add_option("OUT", options->out, "The PNG file to write")->required();
    command->add_option("--cell", options->cell, "Pixels across a cell [16]")
        ->check(CLI::Range(4, 64));
    command->callback([options] { Run(*options); });
    command->footer(
        "Walls wear their pictures, rock between the rooms is black. Doors are bars: cyan, with a\n"
        "gold or silver lock, brown for lifts. Discs are enemies, facing where their mark points;\n"
        "the green arrow is the player's start; a magenta S marks a secret wall.");
}

}  // namespace tessaro::cli
