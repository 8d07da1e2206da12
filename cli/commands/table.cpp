#include "commands/arguments.h"
#include "commands/commands.h"
#include "report.h"

namespace tessaro::cli {

namespace {

constexpr Command kCommands[] = {
    {"info", "Tell which game a folder holds, and how much", AddInfo},
    {"list", "List the items of a game with their checksums", AddList},
    {"render", "Draw an overview picture of a map", AddRender},
    {"sheet", "Draw all walls and sprites on one sheet, with their numbers", AddSheet},
    {"check", "Tell what a save could lose, a game fail on, a player stumble over", AddCheck},
    {"extract", "Write the items of a game into files, a folder per kind", AddExtract},
    {"import", "Replace one item of a game by a file", AddImport},
    {"map", "Exchange and change maps", nullptr},
    {"map export", "Write maps into a file of their own", AddMapExport},
    {"map import", "Read the maps of a file into the game", AddMapImport},
    {"map convert", "Turn a map file into one of another format, without a game", AddMapConvert},
    {"map resize", "Give a map a new size, keeping its top left corner", AddMapResize},
    {"map add", "Add an empty map of 64 x 64 cells", AddMapAdd},
    {"map remove", "Remove a map; the last one left is emptied instead", AddMapRemove},
    {"map rename", "Give a map another name", AddMapRename},
    {"map set", "Change one cell of a map", AddMapSet},
    {"map fill", "Fill an area of a plane with one value", AddMapFill},
    {"map line", "Draw a line of one value from cell to cell", AddMapLine},
    {"map copy", "Copy an area from map to map, or from another game", AddMapCopy},
    {"map paste", "Put the map of a map file into a map", AddMapPaste},
    {"map replace", "Replace a value of a plane by another", AddMapReplace},
    {"map find", "Tell where a value stands", AddMapFind},
    {"map stats", "Count what maps hold", AddMapStats},
    {"text", "Draw a text in one of the game's fonts", AddText},
    {"palette", "Palette files", nullptr},
    {"palette convert", "Write a palette file in another format", AddPaletteConvert},
    {"history", "List the saves of a game that can be undone", AddHistory},
    {"undo", "Bring back the files as they were before the last save", AddUndo},
    {"redo", "Take back the last undo", AddRedo},
    {"prune", "Remove the backups of old saves", AddPrune},
    {"recover", "Finish what an interrupted save left", AddRecover},
    {"sample", "Write a small game to try things with", AddSample},
};

/// The options that every command has.
void AddManner(CLI::App& command) {
    command.add_flag("-q,--quiet", TheManner().quiet, "Print results and errors only");
    if (!command.get_option_no_throw("--json"))
        AddJson(command, "Errors and notes as one JSON object a line");
}

}  // namespace

std::span<const Command> Commands() {
    return kCommands;
}

void AddCommands(CLI::App& app) {
    app.require_subcommand(1);
    for (const Command& row : kCommands) {
        const std::string name = row.name;
        const std::size_t blank = name.find(' ');
        CLI::App* above =
            blank == std::string::npos ? &app : app.get_subcommand(name.substr(0, blank));
        CLI::App* command = above->add_subcommand(name.substr(blank + 1), row.summary);
        if (row.add) {
            row.add(*command);
            AddManner(*command);
        } else {
            command->require_subcommand(1);
        }
    }
}

}  // namespace tessaro::cli
