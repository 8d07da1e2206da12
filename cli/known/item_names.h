// What items are called: `list` shows it, and it may stand wherever a number does.
#pragma once

#include <string>

#include "known/known_game.h"

namespace tessaro::cli {

class Game;

class ItemNames {
public:
    /// Reads what is known of games of this one's extension.
    explicit ItemNames(Game& game);

    /// Null for an item without a name.
    const KnownItem* Of(const std::string& kind, int number);
    /// Every number of a kind with this name, in any case; blanks, '_' and '-' are one.
    std::vector<int> Numbers(const std::string& kind, const std::string& name);

private:
    bool Holds(const KnownNames& names, const std::string& kind);

    Game& game_;
    std::vector<KnownGame> known_;
};

/// The number that a text stands for: that number itself, or an item's name. Whether there is such
/// an item is for the caller to check when it is a number.
int NumberOf(Game& game, const std::string& kind, const std::string& text);
/// The same for a map that has to be there.
int MapOf(Game& game, const std::string& text);

/// "HALTSND, guard notices the player", as people are shown a name; empty without one.
std::string Shown(const KnownItem* item);

}  // namespace tessaro::cli
