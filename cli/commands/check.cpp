// tessaro check FOLDER [--json] [--severity S]
#include <algorithm>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>

#include "check/rules.h"
#include "commands/arguments.h"
#include "commands/commands.h"
#include "report.h"

namespace tessaro::cli {

namespace {

struct Options {
    std::string folder;
    Severity severity = Severity::Warning;
};

constexpr Choice<Severity> kSeverities[] = {
    {"note", Severity::Note}, {"warning", Severity::Warning}, {"error", Severity::Error}};

std::string NameOf(Severity severity) {
    return kSeverities[static_cast<std::size_t>(severity)].name;
}

std::string Line(const Finding& finding) {
    std::string line = NameOf(finding.rule.severity) + ": " + finding.file + ": " + finding.kind;
    if (finding.number >= 0)
        line += " " + std::to_string(finding.number);
    if (finding.place)
        line += " plane " + std::to_string(finding.place->plane) + " (" +
                std::to_string(finding.place->x) + "," + std::to_string(finding.place->y) + ")";
    return line + ": " + OneLine(finding.text) + " - " + finding.rule.why + " [" + finding.rule.id +
           "]\n";
}

using Json = nlohmann::ordered_json;

Json JsonOf(const Finding& finding) {
    Json entry{{"rule", finding.rule.id},
               {"severity", NameOf(finding.rule.severity)},
               {"file", finding.file},
               {"kind", finding.kind}};
    if (finding.number >= 0)
        entry["number"] = finding.number;
    if (finding.place) {
        entry["plane"] = finding.place->plane;
        entry["x"] = finding.place->x;
        entry["y"] = finding.place->y;
    }
    entry["text"] = finding.text;
    entry["why"] = finding.rule.why;
    return entry;
}

void ShowJson(const Findings& findings) {
    std::cout << "[";
    for (std::size_t i = 0; i < findings.size(); ++i)  // a finding a line
        std::cout << (i ? ",\n " : "\n ")
                  << JsonOf(findings[i]).dump(-1, ' ', true, Json::error_handler_t::replace);
    std::cout << "\n]\n";
}

void Show(const Findings& findings) {
    std::map<Severity, int> counts;
    for (const Finding& finding : findings) {
        std::cout << Line(finding);
        ++counts[finding.rule.severity];
    }
    std::cout << counts[Severity::Error] << " errors, " << counts[Severity::Warning]
              << " warnings, " << counts[Severity::Note] << " notes\n";
}

void Run(const Options& options) {
    Game game(options.folder);
    const Findings findings = Check(ViewOf(game));
    if (TheManner().json)
        ShowJson(findings);
    else
        Show(findings);
    for (const Finding& finding : findings)
        if (finding.rule.severity >= options.severity)
            ExitWithFailure();
}

}  // namespace

void AddCheck(CLI::App& command) {
    auto options = std::make_shared<Options>();
    AddFolder(command, options->folder);
    AddJson(command, "One JSON array instead of lines; errors as JSON too");
    AddChoice(command, "--severity", options->severity, ListOf(kSeverities),
              "Exit code 1 from this on [warning]");
    command.callback([options] { Run(*options); });
}

}  // namespace tessaro::cli
