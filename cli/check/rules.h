// The rules of the check, as tables: what each is called, how grave it is, why it matters, and the
// function that looks.
#pragma once

#include <functional>
#include <span>

#include "check/findings.h"
#include "check/game_view.h"

namespace tessaro::cli {

/// Takes what a rule for maps found: where, and in what words.
using TellPlace = std::function<void(std::optional<Place>, const std::string&)>;

struct MapRule {
    RuleInfo info;
    bool catacomb;  ///< knows the 16-colour game, too; every rule knows Wolf and Spear
    void (*find)(const MapView&, const TellPlace&);
};

std::span<const MapRule> GroundRules();
std::span<const MapRule> ThingRules();

/// Takes what a rule for a game's items found: the kind as `list` calls it, the item, the words.
using TellItem = std::function<void(const char*, int, const std::string&)>;

struct ItemRule {
    RuleInfo info;
    void (*find)(const GameView&, const TellItem&);
};

std::span<const ItemRule> ItemRules();

/// Every finding, the maps' first.
Findings Check(const GameView& game);

}  // namespace tessaro::cli
