// tessaro map export FOLDER MAP|all FILE
#include <charconv>
#include <filesystem>
#include <iostream>

#include "commands/commands.h"
#include "console.h"
#include "error.h"
#include "files.h"

namespace tessaro::cli {

namespace {

struct Options {
    std::string folder, map, file;
    ExportOptions how;
};

int MapNumber(const std::string& text) {
    int number = -1;
    const char* end = text.data() + text.size();
    if (std::from_chars(text.data(), end, number).ptr != end || number < 0)
        throw UsageError("MAP is a number, or \"all\"");
    return number;
}

void ExportAll(Game& game, const Options& options) {
    if (!HoldsManyMaps(options.file))
        throw UsageError("all maps go into a .map, .lvl, .rtl or .rtc file");
    ExportOptions byExtension = options.how;
    byExtension.formatName.clear();
    if (options.how.FormatFor(options.file) != byExtension.FormatFor(options.file))
        throw UsageError("with all maps the file's extension names the format");
    if (!game.Maps().ExportMultiMap(CountedFrom0(game.Maps().NumberOfMaps()), options.file,
                                    !options.how.noNames))
        Fail("the maps were not exported to " + options.file);
    std::cout << options.file << ": " << game.Maps().NumberOfMaps() << " maps\n";
}

void ExportOne(Game& game, const Options& options) {
    const int map = MapNumber(options.map);
    CheckNumber("map", map, game.Maps().NumberOfMaps());
    const enmMapFileType asked = options.how.FormatFor(options.file);
    enmMapFileType type = asked;
    if (!game.Maps().ExportMap(map, options.file, !options.how.noNames, type))
        Fail("map " + options.map + " was not exported to " + options.file);
    if (type != asked)
        std::cerr << "tessaro: note: " << options.file << " was a " << FormatName(type)
                  << " file and stays one\n";
    std::cout << options.file << ": " << OneLine(DisplayName(game.Maps(), map)) << ", "
              << FormatName(type) << '\n';
}

void Run(const Options& options) {
    Game game(options.folder);
    options.how.Apply(game.Maps());
    if (options.map == "all")
        ExportAll(game, options);
    else
        ExportOne(game, options);
}

}  // namespace

void AddMapExport(CLI::App& map) {
    CLI::App* command = map.add_subcommand("export", "Write maps into a file of their own");
    auto options = std::make_shared<Options>();
    AddFolder(*command, options->folder);
    command->add_option("MAP", options->map, "The map's number, from 0, or \"all\"")->required();
    command->add_option("FILE", options->file, "The file to write")->required();
    options->how.AddTo(*command);
    AddYes(*command);
    command->callback([options] { Run(*options); });
}

}  // namespace tessaro::cli
