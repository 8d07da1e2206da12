// tessaro palette convert IN OUT --to FORMAT
#include <algorithm>
#include <iostream>
#include <iterator>

#include "commands/commands.h"
#include "console.h"
#include "files.h"

namespace tessaro::cli {

namespace {

struct Format {
    const char* name;
    enmSupportedPaletteTypes type;
};

constexpr Format kFormats[] = {{"jasc", ptJASC3},  {"riff", ptJASC8}, {"raw", ptXWE},
                               {"obj", ptGAMEPAL}, {"c", ptWolf4GW},  {"rgb", ptWolf4SDL}};

struct Options {
    std::string in, out, to;
};

void Run(const Options& options) {
    const clsVersion version;  // loads the palette that the library starts with
    clsPalette palette;
    ByteArray colors, file;
    ReadFile(options.in);  // so that a missing file is told in the command's own words
    if (!palette.LoadPaletteDataFromFile(options.in, colors))
        Fail(options.in);
    const auto format = std::find_if(std::begin(kFormats), std::end(kFormats),
                                     [&](const Format& f) { return f.name == options.to; });
    if (!palette.CreatePaletteFileData(format->type, colors, file))
        Fail(options.out);
    WriteFile(options.out, file);
    std::cout << options.out << ": " << file.size() << " bytes\n";
}

}  // namespace

void AddPalette(CLI::App& app) {
    CLI::App* group = app.add_subcommand("palette", "Palette files");
    group->require_subcommand(1);
    CLI::App* command = group->add_subcommand("convert", "Write a palette file in another format");
    auto options = std::make_shared<Options>();
    command
        ->add_option("IN", options->in,
                     "A JASC or RIFF palette, a C array (.cpp) or an RGB list (.inc)")
        ->required();
    command->add_option("OUT", options->out, "The file to write")->required();
    std::vector<std::string> names;
    for (const Format& format : kFormats)
        names.push_back(format.name);
    command->add_option("--to", options->to, "jasc, riff, raw, obj (_gamepal), c or rgb")
        ->required()
        ->type_name("FORMAT")
        ->transform(CLI::IsMember(names, CLI::ignore_case).description(""));
    command->callback([options] { Run(*options); });
}

}  // namespace tessaro::cli
