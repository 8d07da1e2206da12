// tessaro render FOLDER MAP OUT.png
#include <iostream>

#include "cells/cell_values.h"
#include "commands/arguments.h"
#include "commands/commands.h"
#include "drawing/map_picture.h"
#include "files.h"
#include "known/item_names.h"
#include "report.h"

namespace tessaro::cli {

namespace {

struct Options {
    std::string folder, map, out;
    int cell = 16;
};

void Run(const Options& options) {
    Game game(options.folder);
    const int map = MapOf(game, options.map);
    MapCounts counts;
    CellStamps stamps(game, options.cell);
    const Canvas picture = DrawMap(game, map, stamps, &counts);
    WriteFile(options.out, picture.Png(), kPngFile);
    const auto number = [](int count, const char* what) { return std::to_string(count) + what; };
    const std::string name = Shown(game.Names().Of("map", map));
    std::string line = DisplayName(game.Maps(), map) + (name.empty() ? "" : " (" + name + ")") +
                       ": " + number(picture.Width() / options.cell, " x ") +
                       number(picture.Height() / options.cell, " cells");
    if (CellSetOf(game.Version()) == CellSet::Unknown) {
        Say(line + ", whose codes are not known here; colours and dots stand for them");
        return;
    }
    line += number(counts.doors, " doors, ").insert(0, ", ") +
            number(counts.secrets, " secret walls, ") + number(counts.enemies, " enemies, ") +
            number(counts.objects, " objects");
    for (const auto& [boss, count] : counts.bosses)
        line += ", " + boss + (count > 1 ? " (" + std::to_string(count) + ")" : "");
    Say(line);
}

}  // namespace

void AddRender(CLI::App& command) {
    auto options = std::make_shared<Options>();
    AddFolder(command, options->folder);
    AddMapName(command, options->map);
    AddPngOut(command, options->out);
    AddNumber(command, "--cell", options->cell, 4, 64, "Pixels across a cell [16]");
    command.callback([options] { Run(*options); });
    command.footer(
        "Walls wear their pictures, rock between the rooms is black. Doors are bars: cyan, with a\n"
        "gold or silver lock, brown for lifts. Discs are enemies, facing where their mark points;\n"
        "bosses are framed in red. The green arrow is the player's start; a magenta S marks a\n"
        "secret wall, a red question mark a value that means nothing to the game.");
}

}  // namespace tessaro::cli
