// tessaro map export FOLDER MAP|all FILE
#include <filesystem>
#include <iostream>

#include "commands/arguments.h"
#include "commands/commands.h"
#include "commands/export_options.h"
#include "files.h"
#include "known/item_names.h"
#include "report.h"

namespace tessaro::cli {

namespace {

struct Options {
    std::string folder, map, file;
    ExportOptions how;
};

/// The library would write a file of another name instead.
void CheckSizes(clsGameMaps& maps, const MapFormat& format) {
    if (format.type != mftFloEditMapFile)
        return;
    for (int map = 0; map < maps.NumberOfMaps(); ++map) {
        typMapPlane planes;
        std::int32_t width = 0, height = 0;
        if (!maps.LoadMap(map, planes, width, height))
            Fail("map " + std::to_string(map));
        if (width != 64 || height != 64)
            throw CommandError("FloEdit files hold maps of 64 x 64 cells, map " +
                               std::to_string(map) + " has " + std::to_string(width) + " x " +
                               std::to_string(height) + "; a .map file takes all");
    }
}

void ExportAll(Game& game, const Options& options) {
    const MapFormat* byExtension = FormatOfFile(options.file);
    if (!byExtension)
        throw UsageError("all maps go into a .map, .lvl, .rtl or .rtc file");
    if (options.how.FormatFor(options.file).type != byExtension->type)
        throw UsageError("with all maps the file's extension names the format");
    CheckSizes(game.Maps(), *byExtension);
    CheckReplaceable(options.file, kMapFile);
    if (!game.Maps().ExportMultiMap(CountedFrom0(game.Maps().NumberOfMaps()), options.file,
                                    !options.how.noNames))
        Fail("the maps were not exported to " + options.file);
    Say(options.file + ": " + std::to_string(game.Maps().NumberOfMaps()) + " maps");
}

void ExportOne(Game& game, const Options& options) {
    const int map = MapOf(game, options.map);
    const enmMapFileType asked = options.how.FormatFor(options.file).type;
    enmMapFileType type = asked;
    CheckReplaceable(options.file, kMapFile);
    if (!game.Maps().ExportMap(map, options.file, !options.how.noNames, type))
        Fail("map " + options.map + " was not exported to " + options.file);
    if (type != asked)
        Note(options.file + " was a " + FormatOf(type).name + " file and stays one");
    Say(options.file + ": " + DisplayName(game.Maps(), map) + ", " + FormatOf(type).name);
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

void AddMapExport(CLI::App& command) {
    auto options = std::make_shared<Options>();
    AddFolder(command, options->folder);
    AddMapName(command, options->map, "The map's number, from 0, its name, or \"all\"");
    command.add_option("FILE", options->file, "The file to write")->required();
    options->how.AddTo(command);
    AddForce(command);
    AddYes(command);
    command.callback([options] { Run(*options); });
}

}  // namespace tessaro::cli
