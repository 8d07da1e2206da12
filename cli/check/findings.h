// What a check finds, and how its rules tell it.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tessaro::cli {

/// Note: a fact worth knowing. Warning: a player stumbles over it. Error: the game fails on it, or
/// a save loses it.
enum class Severity { Note, Warning, Error };

/// A cell of a map.
struct Place {
    int plane = 0, x = 0, y = 0;
};

/// What a rule is called and why it matters; docs/checks.md tells more of each.
struct RuleInfo {
    const char* id;
    Severity severity;
    const char* why;  ///< half a sentence, "the player cannot pass"
};

struct Finding {
    RuleInfo rule{};
    std::string file{};  ///< the data file's name
    std::string kind{};  ///< as `list` calls it
    int number = -1;     ///< of the item; -1: none
    std::optional<Place> place{};
    std::string text{};
};

using Findings = std::vector<Finding>;

}  // namespace tessaro::cli
