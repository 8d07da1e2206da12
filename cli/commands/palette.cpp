// tessaro palette convert IN OUT --to FORMAT
#include "commands/arguments.h"
#include "commands/commands.h"
#include "files.h"
#include "report.h"

namespace tessaro::cli {

namespace {

constexpr Choice<enmSupportedPaletteTypes> kFormats[] = {{"jasc", ptJASC3}, {"riff", ptJASC8},
                                                         {"raw", ptXWE},    {"obj", ptGAMEPAL},
                                                         {"c", ptWolf4GW},  {"rgb", ptWolf4SDL}};

struct Options {
    std::string in, out;
    enmSupportedPaletteTypes to = ptJASC3;
};

void Run(const Options& options) {
    const clsVersion version;  // loads the palette that the library starts with
    clsPalette palette;
    ByteArray colors, file;
    CheckReadable(options.in);
    if (!palette.LoadPaletteDataFromFile(options.in, colors))
        Fail(options.in);
    if (!palette.CreatePaletteFileData(options.to, colors, file))
        Fail(options.out);
    WriteFile(options.out, file, kPaletteFile);
    Say(options.out + ": " + std::to_string(file.size()) + " bytes");
}

}  // namespace

void AddPaletteConvert(CLI::App& command) {
    auto options = std::make_shared<Options>();
    command
        .add_option("IN", options->in,
                    "A JASC or RIFF palette, a C array (.cpp) or an RGB list (.inc)")
        ->required();
    command.add_option("OUT", options->out, "The file to write")->required();
    AddForce(command);
    AddChoice(command, "--to", options->to, ListOf(kFormats), "The format; obj holds _gamepal")
        ->required();
    command.callback([options] { Run(*options); });
}

}  // namespace tessaro::cli
