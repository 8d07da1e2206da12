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

void ExitWithFailure() {
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

namespace {

/// The bytes of the character at the start of a text: UTF-8, and in a locale of one byte a
/// character that one. 0 where there is none that may be shown.
std::size_t Shown(std::string_view text) {
    const auto byte = [&](std::size_t at) {
        return at < text.size() ? static_cast<unsigned char>(text[at]) : 0U;
    };
    const unsigned first = byte(0);
    if (first < 0x80)
        return 1;
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    bool whole = first >= 0xC2 && first <= 0xF4 && text.size() >= length;
    for (std::size_t at = 1; at < length; ++at)
        whole = whole && (byte(at) & 0xC0) == 0x80;
    if (whole)
        return first == 0xC2 && byte(1) < 0xA0 ? 0 : length;  // the second set of control codes
    return MB_CUR_MAX == 1 && first >= 0xA0 ? 1 : 0;
}

}  // namespace

std::string OneLine(const std::string& text) {
    std::string line;
    for (std::size_t at = 0; at < text.size();) {
        const auto byte = static_cast<unsigned char>(text[at]);
        const std::size_t length = Shown(std::string_view(text).substr(at));
        if (length == 0)
            line += '?';
        else if (byte > 32 && byte != 127)
            line.append(text, at, length);
        else if (!line.empty() && line.back() != ' ')
            line += ' ';
        at += length == 0 ? 1 : length;
    }
    while (!line.empty() && line.back() == ' ')
        line.pop_back();
    return line;
}

}  // namespace tessaro::cli
