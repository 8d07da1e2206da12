// The one place that tells the user something besides results: how a command ends when it cannot do
// its work, failures that do not end it, notes, and what was done.
#pragma once

#include <stdexcept>
#include <string>

namespace tessaro::cli {

inline constexpr int kDone = 0, kFailed = 1, kUsage = 2;

/// The one line that the user sees on stderr, behind "tessaro: ". Exit code 1.
class CommandError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The arguments make no sense together. Exit code 2.
class UsageError : public CommandError {
public:
    using CommandError::CommandError;
};

/// How the command talks; set by options that every command has.
struct Manner {
    bool quiet = false;  ///< results and errors only
    bool json = false;   ///< errors and notes as one JSON object a line
};

Manner& TheManner();

/// Throws a CommandError: what was tried, and the reason that the library gave.
[[noreturn]] void Fail(const std::string& what);

/// Tells an error that ends the command, and hands back the exit code.
int Report(const std::string& message, int exitCode);
/// A failure that does not end the command: its line is told at once, and the exit code will be 1.
void ReportAndGoOn(const std::string& message);
/// The exit code will be 1 without another word.
void ExitWithFailure();
/// What the user should know although it worked.
void Note(const std::string& message);
/// What was done, on stdout; kept back where only results and errors are wanted.
void Say(const std::string& line);
/// Tells what the library reported although the command went through, and what it noted; hands back
/// the exit code.
int ReportWhatIsLeft();

/// Runs of blanks, line breaks and control characters become one blank, and bytes that are no text
/// a question mark: what stands in a file must not drive the terminal.
std::string OneLine(const std::string& text);

}  // namespace tessaro::cli
