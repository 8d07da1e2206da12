// Arguments that several commands have.
#pragma once

#include <CLI/CLI.hpp>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "items/item.h"

namespace tessaro::cli {

/// The FOLDER that nearly every command starts with.
void AddFolder(CLI::App& command, std::string& folder);
/// The MAP of a game; MapOf finds it.
CLI::Option* AddMapName(CLI::App& command, std::string& map,
                        const char* help = "The map's number, from 0, or its name");
/// The OUT that receives a picture, and --force.
void AddPngOut(CLI::App& command, std::string& out);
/// --kind K, as often as wanted.
void AddKinds(CLI::App& command, std::vector<std::string>& names);
/// The kinds of those names, all kinds for none.
std::vector<const ItemKind*> KindsNamed(const std::vector<std::string>& names);
/// -f, --force
void AddForce(CLI::App& command);
/// -y, --yes
void AddYes(CLI::App& command);
/// What `--json` prints besides errors; without it that is nothing.
void AddJson(CLI::App& command, const char* help);

/// A number that an option or an argument takes, within limits.
CLI::Option* AddNumber(CLI::App& command, const char* option, int& value, int least, int most,
                       const char* help);
/// "a|b|c": how the help shows what an option takes.
std::string OneOf(const std::vector<std::string>& names);

/// One of the values that an option takes, by name.
template <class T>
struct Choice {
    const char* name;
    T value;
};

template <class T, std::size_t N>
std::vector<Choice<T>> ListOf(const Choice<T> (&choices)[N]) {
    return {std::begin(choices), std::end(choices)};
}

/// An option that takes the name of a choice in any case; the help lists them. `target` is set when
/// the option is given.
template <class Target, class T>
CLI::Option* AddChoice(CLI::App& command, const char* option, Target& target,
                       const std::vector<Choice<T>>& choices, const char* help) {
    std::vector<std::string> names;
    for (const Choice<T>& choice : choices)
        names.push_back(choice.name);
    const auto take = [&target, choices](const std::string& name) {
        for (const Choice<T>& choice : choices)
            if (name == choice.name)
                target = choice.value;
    };
    return command.add_option_function<std::string>(option, take, help)
        ->type_name(OneOf(names))
        ->transform(CLI::IsMember(names, CLI::ignore_case).description(""));
}

}  // namespace tessaro::cli
