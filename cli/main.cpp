// The tessaro command.
#include <clocale>
#include <iostream>

#include "commands/commands.h"
#include "console.h"
#include "error.h"

namespace tessaro::cli {

namespace {

constexpr int kDone = 0, kFailed = 1, kUsage = 2;

void AddCommands(CLI::App& app) {
    app.require_subcommand(1);
    app.set_version_flag("--version", TESSARO_VERSION);
    app.set_help_all_flag("--help-all", "Print the help of every command");
    AddInfo(app);
    AddList(app);
    AddRender(app);
    AddSheet(app);
    AddExtract(app);
    AddImport(app);
    AddMap(app);
    AddText(app);
    AddPalette(app);
    AddSample(app);
}

int Report(const std::string& message, int exitCode) {
    std::cerr << "tessaro: " << OneLine(message) << std::endl;
    return exitCode;
}

/// What the library reported although the operation went through, and what it noted.
int LeftOver() {
    for (const std::string& notice : TheConsole().TakeNotices())
        std::cerr << "tessaro: note: " << notice << std::endl;
    if (TheConsole().HasFailure())
        return Report(TheConsole().TakeReason(), kFailed);
    return AnythingReported() ? kFailed : kDone;
}

int Run(int argc, char** argv) {
    CLI::App app("Reads, edits and writes the data files of games on the Wolfenstein 3D engine",
                 "tessaro");
    AddCommands(app);
    try {
        app.parse(argc, argv);  // which runs the command
        std::cout.flush();
        if (!std::cout)
            return Report("cannot write to standard output", kFailed);
        return LeftOver();
    } catch (const CLI::Success& help) {  // --help and --version
        return app.exit(help);
    } catch (const CLI::RequiredError& error) {
        const std::vector<std::string> unknown = app.remaining(true);
        return Report(unknown.empty()
                          ? std::string(error.what()) + " (--help tells how)"
                          : "there is no command " + unknown.front() + " (--help lists them)",
                      kUsage);
    } catch (const CLI::ParseError& error) {
        return Report(std::string(error.what()) + " (--help tells how)", kUsage);
    } catch (const UsageError& error) {
        return Report(std::string(error.what()) + " (--help tells how)", kUsage);
    } catch (const std::exception& error) {
        // A log that cannot be written leaves the library as a failure of its own; the user is told
        // what was to be logged.
        const std::string reported = TheConsole().TakeReason();
        return Report(
            dynamic_cast<const Failure*>(&error) && !reported.empty() ? reported : error.what(),
            kFailed);
    }
}

}  // namespace

}  // namespace tessaro::cli

int main(int argc, char** argv) {
    std::setlocale(LC_CTYPE, "");  // the library asks it for the code page of names
    tessaro::SetUserInterface(&tessaro::cli::TheConsole());
    return tessaro::cli::Run(argc, argv);
}
