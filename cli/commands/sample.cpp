// tessaro sample OUT [--ega]
#include "sample/sample.h"

#include <filesystem>

#include <iostream>

#include "commands/arguments.h"
#include "commands/commands.h"
#include "files.h"
#include "report.h"

namespace tessaro::cli {

namespace {

void Run(const std::string& out, bool ega) {
    const std::vector<sample::SampleFile> files =
        ega ? sample::MakeEgaSampleGame() : sample::MakeSampleGame();
    std::error_code error;
    if (std::filesystem::exists(out, error) && !std::filesystem::is_empty(out, error))
        throw CommandError(out + " is not an empty folder; give a new folder for the sample game");
    CreateFolders(out);
    for (const sample::SampleFile& file : files)
        WriteFile(PathIn(out, file.name), file.content, kExtractedFile);
    Say(out + ": " + std::to_string(files.size()) + " files");
}

}  // namespace

void AddSample(CLI::App& command) {
    auto out = std::make_shared<std::string>();
    auto ega = std::make_shared<bool>(false);
    command.add_option("OUT", *out, "A new or an empty folder")->required();
    command.add_flag("--ega", *ega, "A game with 16 colours instead of 256");
    command.callback([out, ega] { Run(*out, *ega); });
}

}  // namespace tessaro::cli
