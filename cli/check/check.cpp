#include "check/rules.h"

namespace tessaro::cli {

namespace {

std::string FileOf(const GameView& game, const std::string& kind) {
    const auto file = game.files.find(kind);
    return file == game.files.end() ? "" : file->second;
}

bool Knows(const MapRule& rule, CellSet set) {
    return set == CellSet::Wolf || set == CellSet::Spear ||
           (set == CellSet::Catacomb && rule.catacomb);
}

}  // namespace

Findings Check(const GameView& game) {
    Findings findings;
    for (const MapView& map : game.maps)
        for (const auto& rules : {GroundRules(), ThingRules()})
            for (const MapRule& rule : rules)
                if (Knows(rule, map.set))
                    rule.find(map, [&](std::optional<Place> place, const std::string& text) {
                        findings.push_back(
                            {rule.info, FileOf(game, "map"), "map", map.number, place, text});
                    });
    for (const ItemRule& rule : ItemRules())
        rule.find(game, [&](const char* kind, int number, const std::string& text) {
            findings.push_back({rule.info, FileOf(game, kind), kind, number, {}, text});
        });
    return findings;
}

}  // namespace tessaro::cli
