#include <iostream>

#include "commands/commands.h"
#include "console.h"

namespace tessaro::cli {

namespace {
bool reportedAnything = false;
}

void AddFolder(CLI::App& command, std::string& folder) {
    command.add_option("FOLDER", folder, "The folder with the game's data files")->required();
}

void AddKinds(CLI::App& command, std::vector<std::string>& names) {
    std::vector<std::string> known;
    for (const ItemKind* kind : ItemKinds())
        known.push_back(kind->Name());
    command.add_option("-k,--kind", names, "Only items of this kind; may be given again")
        ->type_name("KIND")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->check(CLI::IsMember(known));
}

std::vector<const ItemKind*> KindsNamed(const std::vector<std::string>& names) {
    if (names.empty())
        return ItemKinds();
    std::vector<const ItemKind*> kinds;
    for (const ItemKind* kind : ItemKinds())
        if (std::find(names.begin(), names.end(), kind->Name()) != names.end())
            kinds.push_back(kind);
    return kinds;
}

void ReportAndGoOn(const std::string& message) {
    std::cout.flush();
    std::cerr << "tessaro: " << OneLine(message) << std::endl;
    reportedAnything = true;
}

bool AnythingReported() {
    return reportedAnything;
}

}  // namespace tessaro::cli
