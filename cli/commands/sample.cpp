// tessaro sample OUT [--ega]
#include "sample/sample.h"

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
    CreateFolders(out);  // no other game has these extensions: nothing of value is overwritten
    for (const sample::SampleFile& file : files)
        WriteFile(PathIn(out, file.name), file.content);
    Say(out + ": " + std::to_string(files.size()) + " files");
}

}  // namespace

void AddSample(CLI::App& command) {
    auto out = std::make_shared<std::string>();
    auto ega = std::make_shared<bool>(false);
    command.add_option("OUT", *out, "The folder to write into; created when missing")->required();
    command.add_flag("--ega", *ega, "A game with 16 colours instead of 256");
    command.callback([out, ega] { Run(*out, *ega); });
}

}  // namespace tessaro::cli
