// tessaro map, and what its commands share
#include <array>
#include <charconv>

#include "commands/commands.h"
#include "console.h"
#include "error.h"
#include "files.h"

namespace tessaro::cli {

namespace {

struct Format {
    enmMapFileType type;
    const char* option;
    const char* name;
    const char* extension;  ///< that stands for the format
};

constexpr std::array<Format, 6> kFormats = {{
    {mftKZRMapFile, "kzr", "KZR", "map"},
    {mftFloEditMapFile, "floedit", "FloEdit", "lvl"},
    {mftMapEditMapFile, "mapedit", "MapEdit", ""},
    {mftiPhoneMapFile, "iphone", "iPhone", ""},
    {mftROTTRTLMapFile, "rtl", "Rise of the Triad (RTL)", "rtl"},
    {mftROTTRTCMapFile, "rtc", "Rise of the Triad (RTC)", "rtc"},
}};

std::int32_t Hexadecimal(const std::string& text, std::size_t digits, const char* option) {
    std::int32_t value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value, 16);
    if (text.empty() || text.size() > digits || stop != end || error != std::errc() || value < 0)
        throw UsageError(std::string(option) + ": at most " + std::to_string(digits) +
                         " hexadecimal digits");
    return value;
}

/// RRGGBB to a colour with red in the low byte.
std::int32_t ColorFrom(const std::string& text, const char* option) {
    const std::int32_t value = Hexadecimal(text, 6, option);
    return value >> 16 | (value & 0xFF00) | (value & 0xFF) << 16;
}

/// "M:SS" to minutes and seconds.
void ParTimeFrom(const std::string& text, IPhoneOptions& form) {
    int minutes = -1, seconds = -1;
    const char* end = text.data() + text.size();
    const auto [colon, error] = std::from_chars(text.data(), end, minutes);
    const bool ended = error == std::errc() && colon != end && *colon == ':' &&
                       std::from_chars(colon + 1, end, seconds).ptr == end;
    if (!ended || minutes < 0 || minutes > frmIPhoneSettings::vsbMinutesMax || seconds < 0 ||
        seconds > frmIPhoneSettings::vsbSecondsMax)
        throw UsageError("--par: minutes and seconds such as 1:30, at most 99:59");
    form.minutes = minutes;
    form.seconds = seconds;
}

}  // namespace

void ExportOptions::AddTo(CLI::App& command) {
    std::vector<std::string> names;
    for (const Format& format : kFormats)
        names.push_back(format.option);
    command
        .add_option("--format", formatName,
                    "kzr, floedit, mapedit, iphone, rtl or rtc [by the extension, else kzr]")
        ->type_name("F")
        ->check(CLI::IsMember(names).description(""));
    command.add_flag("--no-names", noNames, "Leave the names out of a KZR file");
    command.add_option("--tag", tag, "RLEW tag for an iPhone or Rise of the Triad file")
        ->type_name("HEX");
    IPhoneOptions& form = TheConsole().iphone;
    command.add_option("--name", form.mapName, "iPhone: the map's name");
    command.add_option("--music", form.musicName, "iPhone: the music file");
    command.add_option("--par", par, "iPhone: the par time")->type_name("M:SS");
    command.add_option("--floor", floor, "iPhone: the floor's colour")->type_name("RRGGBB");
    command.add_option("--ceiling", ceiling, "iPhone: the ceiling's colour")->type_name("RRGGBB");
}

void ExportOptions::Apply(clsGameMaps& maps) const {
    IPhoneOptions& form = TheConsole().iphone;
    if (!par.empty())
        ParTimeFrom(par, form);
    if (!floor.empty())
        form.floor = ColorFrom(floor, "--floor");
    if (!ceiling.empty())
        form.ceiling = ColorFrom(ceiling, "--ceiling");
    if (!tag.empty()) {
        form.tag = Hexadecimal(tag, 4, "--tag");
        maps.CompileRLEWTAG(*form.tag);
    }
}

enmMapFileType ExportOptions::FormatFor(const std::string& file) const {
    const std::string extension = ExtensionOf(file);
    for (const Format& format : kFormats)
        if (formatName.empty() ? extension == format.extension && !extension.empty()
                               : formatName == format.option)
            return format.type;
    return mftKZRMapFile;
}

std::string FormatName(enmMapFileType type) {
    for (const Format& format : kFormats)
        if (format.type == type)
            return format.name;
    return "unknown";
}

bool HoldsManyMaps(const std::string& file) {
    const std::string extension = ExtensionOf(file);
    for (const Format& format : kFormats)
        if (!extension.empty() && extension == format.extension)
            return true;
    return false;
}

void AddMap(CLI::App& app) {
    CLI::App* map = app.add_subcommand("map", "Exchange and change maps");
    map->require_subcommand(1);
    AddMapExport(*map);
    AddMapImport(*map);
    AddMapConvert(*map);
    AddMapEdits(*map);
}

}  // namespace tessaro::cli
