// How a command ends when it cannot do its work.
#pragma once

#include <stdexcept>
#include <string>

namespace tessaro::cli {

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

}  // namespace tessaro::cli
