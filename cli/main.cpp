// The tessaro command.
#include <algorithm>
#include <clocale>
#include <iostream>

#include "commands/commands.h"
#include "console.h"
#include "report.h"

namespace tessaro::cli {

namespace {

/// `--generate` prints what is installed beside the command; it is for packages, not for users.
void AddGenerate(CLI::App& app) {
    struct Kind {
        const char* name;
        Document document;
    };
    constexpr Kind kKinds[] = {{"man", Document::Manual},
                               {"bash", Document::Completion},
                               {"markdown", Document::Reference}};
    const auto print = [&app, kKinds](const std::string& name) {
        for (const Kind& kind : kKinds)
            if (name == kind.name)
                throw CLI::CallForVersion(Generate(app, kind.document), 0);
        throw CLI::ValidationError("--generate", name + " not in {man,bash,markdown}");
    };
    app.add_option_function<std::string>("--generate", print)->group("");
}

int Run(int argc, char** argv) {
    CLI::App app("Reads, edits and writes the data files of games on the Wolfenstein 3D engine",
                 "tessaro");
    app.set_version_flag("--version", TESSARO_VERSION);
    app.set_help_all_flag("--help-all", "Print the help of every command");
    AddGenerate(app);
    AddCommands(app);
    const auto usage = [](const std::string& message) {
        return Report(message + " (--help tells how)", kUsage);
    };
    try {
        app.parse(argc, argv);  // which runs the command
        std::cout.flush();
        if (!std::cout)
            return Report("cannot write to standard output", kFailed);
        return ReportWhatIsLeft();
    } catch (const CLI::Success& help) {  // --help and --version
        return app.exit(help);
    } catch (const CLI::RequiredError& error) {
        const std::vector<std::string> unknown = app.remaining(true);
        return unknown.empty()
                   ? usage(error.what())
                   : Report("there is no command " + unknown.front() + " (--help lists them)",
                            kUsage);
    } catch (const CLI::ParseError& error) {
        return usage(error.what());
    } catch (const UsageError& error) {
        return usage(error.what());
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
    using namespace tessaro::cli;
    std::setlocale(LC_CTYPE, "");  // the library asks it for the code page of names
    tessaro::SetUserInterface(&TheConsole());
    // Known before the arguments are parsed, so that what is wrong with them is told that way too.
    TheManner().json = std::any_of(argv, argv + argc, [](const char* argument) {
        return std::string_view(argument) == "--json";
    });
    return Run(argc, argv);
}
