// tessaro map convert IN OUT
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <random>

#include "commands/arguments.h"
#include "commands/commands.h"
#include "commands/export_options.h"
#include "console.h"
#include "files.h"
#include "report.h"

namespace tessaro::cli {

namespace {

namespace fs = std::filesystem;

struct Options {
    std::string in, out;
    std::optional<int> map;
    ExportOptions how;
};

/// A folder of its own under the system's one for temporary files; goes with the object.
class Workshop {
public:
    Workshop() {
        std::random_device random;
        folder_ = fs::temp_directory_path() / ("tessaro-" + std::to_string(random()));
        fs::create_directory(folder_);
    }
    ~Workshop() {
        std::error_code error;
        fs::remove_all(folder_, error);
    }
    Workshop(const Workshop&) = delete;
    Workshop& operator=(const Workshop&) = delete;

    std::string Path(const std::string& name) const { return (folder_ / name).string(); }

private:
    fs::path folder_;
};

/// The smallest map set there is, to import into: one map whose three planes are stored empty.
void WriteEmptySet(const std::string& header, const std::string& data) {
    WriteFile(header, {0xCD, 0xAB, 8, 0, 0, 0}, kExtractedFile);
    ByteArray bytes = {'T', 'E', 'D', '5', 'v', '1', '.', '0'};
    bytes.resize(bytes.size() + 3 * 4 + 3 * 2);  // offsets and lengths
    bytes.insert(bytes.end(), {64, 0, 64, 0});   // width and height
    bytes.resize(bytes.size() + 16);             // the name
    WriteFile(data, bytes, kExtractedFile);
}

void ImportAll(clsGameMaps& maps, const std::string& file) {
    const bool asked = std::exchange(TheConsole().assumeYes, true);  // there is nothing to lose
    const bool imported = maps.ImportMap(0, file);
    TheConsole().assumeYes = asked;
    if (!imported)
        Fail(file + " was not read");
    std::size_t longest = 16;
    for (int map = 0; map < maps.NumberOfMaps(); ++map)
        longest = std::max(longest, DisplayName(maps, map).size());
    maps.OutputMapNameSize(static_cast<std::int16_t>(std::min<std::size_t>(longest, 1024)));
}

void Run(const Options& options) {
    CheckReadable(options.in);
    const Workshop workshop;
    clsVersion version;
    version.AppPath(StateFolder());
    version.MapHeaderFile(workshop.Path("MAPHEAD.TMP"));
    version.GameMapsFile(workshop.Path("GAMEMAPS.TMP"));
    WriteEmptySet(version.MapHeaderFile(), version.GameMapsFile());
    clsGameMaps maps;
    if (!maps.Initialize())
        Fail("no map set to convert with");
    ImportAll(maps, options.in);
    options.how.Apply(maps);

    const MapFormat& format = options.how.FormatFor(options.out);
    enmMapFileType type = format.type;
    const bool many = !options.map && maps.NumberOfMaps() > 1;
    if (many && !format.many)
        throw UsageError("such a file holds one map; --map N says which of the " +
                         std::to_string(maps.NumberOfMaps()));
    if (options.map)
        CheckNumber("map", *options.map, maps.NumberOfMaps());
    // Exported beside the target first: an old file there would impose its own format.
    const std::string made =
        workshop.Path(std::string("new.") + (format.many ? format.extension : "map"));
    const bool exported =
        many ? maps.ExportMultiMap(CountedFrom0(maps.NumberOfMaps()), made, !options.how.noNames)
             : maps.ExportMap(options.map.value_or(0), made, !options.how.noNames, type);
    if (!exported || !fs::exists(made))
        Fail(options.in + " was not converted");
    WriteFile(options.out, ReadFile(made), kMapFile);
    Say(options.out + ": " + std::to_string(many ? maps.NumberOfMaps() : 1) + " maps, " +
        FormatOf(type).name);
}

}  // namespace

void AddMapConvert(CLI::App& command) {
    auto options = std::make_shared<Options>();
    command.add_option("IN", options->in, "The map file to read; its format is recognised")
        ->required();
    command.add_option("OUT", options->out, "The map file to write")->required();
    command.add_option("--map", options->map, "Only this map of the file, from 0")->type_name("N");
    options->how.AddTo(command);
    AddForce(command);
    command.callback([options] { Run(*options); });
}

}  // namespace tessaro::cli
