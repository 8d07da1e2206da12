#include "commands/arguments.h"

#include <algorithm>

#include "console.h"
#include "file_kinds.h"
#include "report.h"

namespace tessaro::cli {

void AddFolder(CLI::App& command, std::string& folder) {
    command.add_option("FOLDER", folder, "The folder with the game's data files")->required();
}

CLI::Option* AddMapName(CLI::App& command, std::string& map, const char* help) {
    return command.add_option("MAP", map, help)->required();
}

void AddPngOut(CLI::App& command, std::string& out) {
    command.add_option("OUT", out, "The PNG file to write")->required();
    AddForce(command);
}

void AddKinds(CLI::App& command, std::vector<std::string>& names) {
    std::vector<std::string> known;
    for (const ItemKind* kind : ItemKinds())
        known.push_back(kind->Name());
    command.add_option("-k,--kind", names, "Only items of this kind; may be given again")
        ->type_name(OneOf(known))
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->check(CLI::IsMember(known).description(""));
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

CLI::Option* AddNumber(CLI::App& command, const char* option, int& value, int least, int most,
                       const char* help) {
    return command.add_option(option, value, help)
        ->type_name(std::to_string(least) + ".." + std::to_string(most))
        ->check(CLI::Range(least, most).description(""));
}

std::string OneOf(const std::vector<std::string>& names) {
    std::string all;
    for (const std::string& name : names)
        all += (all.empty() ? "" : "|") + name;
    return all;
}

void AddForce(CLI::App& command) {
    command.add_flag("-f,--force", ReplaceOtherKinds(),
                     "Replace an existing file of another kind; never a game's data");
}

void AddYes(CLI::App& command) {
    command.add_flag("-y,--yes", TheConsole().assumeYes, "Answer every question with yes");
}

void AddJson(CLI::App& command, const char* help) {
    command.add_flag("--json", TheManner().json, help);
}

}  // namespace tessaro::cli
