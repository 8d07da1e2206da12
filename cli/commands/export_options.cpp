#include "commands/export_options.h"

#include <charconv>

#include "commands/arguments.h"
#include "console.h"
#include "report.h"

namespace tessaro::cli {

namespace {

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
    std::vector<Choice<enmMapFileType>> formats;
    for (const MapFormat& row : MapFormats())
        formats.push_back({row.option, row.type});
    AddChoice(command, "--format", format, formats,
              "The kind of file [by the extension, else kzr]");
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

const MapFormat& ExportOptions::FormatFor(const std::string& file) const {
    if (format)
        return FormatOf(*format);
    const MapFormat* byExtension = FormatOfFile(file);
    return byExtension ? *byExtension : FormatOf(mftKZRMapFile);
}

}  // namespace tessaro::cli
