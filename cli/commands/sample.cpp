// tessaro sample OUT [--ega]
#include "sample/sample.h"

#include <iostream>

#include "commands/commands.h"
#include "files.h"

namespace tessaro::cli {

namespace {

void Run(const std::string& out, bool ega) {
    const std::vector<sample::SampleFile> files =
        ega ? sample::MakeEgaSampleGame() : sample::MakeSampleGame();
    CreateFolders(out);  // no other game has these extensions: nothing of value is overwritten
    for (const sample::SampleFile& file : files)
        WriteFile(PathIn(out, file.name), file.content);
    std::cout << out << ": " << files.size() << " files\n";
}

}  // namespace

void AddSample(CLI::App& app) {
    CLI::App* command = app.add_subcommand("sample", "Write a small game to try things with");
    auto out = std::make_shared<std::string>();
    auto ega = std::make_shared<bool>(false);
    command->add_option("OUT", *out, "The folder to write into; created when missing")->required();
    command->add_flag("--ega", *ega, "A game with 16 colours instead of 256");
    command->callback([out, ega] { Run(*out, *ega); });
}

}  // namespace tessaro::cli
