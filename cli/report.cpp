#include "report.h"

#include <cstdlib>
#include <iostream>
#include <nlohmann/json.hpp>

#include "console.h"

namespace tessaro::cli {

namespace {

bool reportedAnything = false;

/// Colours on a terminal that has them, unless the user wants none.
bool Colored() {
#ifdef _WIN32
    return false;
#else
    const char* none = std::getenv("NO_COLOR");
    const char* terminal = std::getenv("TERM");
    return !(none && *none) && terminal && std::string_view(terminal) != "dumb" && IsTerminal(2);
#endif
}

/// One line on stderr, behind what standard output holds so far.
void Tell(const char* kind, const char* color, const std::string& prefix,
          const std::string& message, int exitCode = kDone) {
    std::cout.flush();
    if (TheManner().json) {
        nlohmann::ordered_json object{{kind, OneLine(message)}};
        if (exitCode != kDone)
            object["exit"] = exitCode;
        std::cerr << object.dump(-1, ' ', true, nlohmann::json::error_handler_t::replace)
                  << std::endl;
        return;
    }
    const bool colored = Colored();
    std::cerr << (colored ? color : "") << prefix << (colored ? "\x1b[0m" : "") << ' '
              << OneLine(message) << std::endl;
}

}  // namespace

Manner& TheManner() {
    static Manner manner;
    return manner;
}

void Fail(const std::string& what) {
    const std::string reason = TheConsole().TakeReason();
    throw CommandError(reason.empty() ? what : what + ": " + reason);
}

int Report(const std::string& message, int exitCode) {
    Tell("error", "\x1b[1;31m", "tessaro:", message, exitCode);
    return exitCode;
}

void ReportAndGoOn(const std::string& message) {
    Report(message, kFailed);
    reportedAnything = true;
}

void Note(const std::string& message) {
    if (!TheManner().quiet)
        Tell("note", "\x1b[33m", "tessaro: note:", message);
}

void Say(const std::string& line) {
    if (!TheManner().quiet && !TheManner().json)
        std::cout << OneLine(line) << '\n';
}

int ReportWhatIsLeft() {
    for (const std::string& notice : TheConsole().TakeNotices())
        Note(notice);
    if (TheConsole().HasFailure())
        return Report(TheConsole().TakeReason(), kFailed);
    return reportedAnything ? kFailed : kDone;
}

std::string OneLine(const std::string& text) {
    std::string line;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte > 32 && byte != 127)
            line += c;
        else if (!line.empty() && line.back() != ' ')
            line += ' ';
    }
    while (!line.empty() && line.back() == ' ')
        line.pop_back();
    return line;
}

}  // namespace tessaro::cli
