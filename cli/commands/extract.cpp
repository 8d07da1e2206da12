// tessaro extract FOLDER OUT [--kind K] [--bmp]
#include <iostream>

#include "commands/arguments.h"
#include "commands/commands.h"
#include "files.h"
#include "progress.h"
#include "report.h"

namespace tessaro::cli {

namespace {

struct Options {
    std::string folder, out;
    std::vector<std::string> kinds;
    bool bmp = false;
};

void ExtractKind(Game& game, const ItemKind& kind, const Options& options) {
    Extraction to(PathIn(options.out, kind.Name()), options.bmp);
    int items = 0, empty = 0;
    const std::vector<int> numbers = kind.Numbers(game);
    ProgressBar bar("extracting: " + kind.Name());
    std::int32_t seen = 0;
    for (const int number : numbers) {
        try {
            const Item item = LoadNamed(game, kind, number);
            if (item.empty) {
                ++empty;
                continue;
            }
            kind.Extract(game, item, to);
            ++items;
        } catch (const CommandError& error) {
            ReportAndGoOn(error.what());
        }
        bar.Step(++seen, static_cast<std::int32_t>(numbers.size()));
    }
    to.Finish();
    bar.Finish();
    Say(kind.Name() + ": " + std::to_string(items) + " items in " + std::to_string(to.Files()) +
        " files" + (empty > 0 ? ", " + std::to_string(empty) + " without data" : ""));
}

void Run(const Options& options) {
    Game game(options.folder);
    CreateFolders(options.out);
    for (const ItemKind* kind : KindsNamed(options.kinds)) {
        if (!kind->In(game))
            continue;
        try {
            ExtractKind(game, *kind, options);
        } catch (const CommandError& error) {
            ReportAndGoOn(error.what());
        }
    }
}

}  // namespace

void AddExtract(CLI::App& command) {
    auto options = std::make_shared<Options>();
    AddFolder(command, options->folder);
    command.add_option("OUT", options->out, "The folder to write into; created when missing")
        ->required();
    AddForce(command);
    AddKinds(command, options->kinds);
    command.add_flag("--bmp", options->bmp, "Pictures as BMP files instead of PNG files");
    command.callback([options] { Run(*options); });
}

}  // namespace tessaro::cli
