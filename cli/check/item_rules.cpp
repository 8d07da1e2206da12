// Rules of a game's items, and of what its maps ask of them.
#include <map>
#include <set>

#include "check/rules.h"

namespace tessaro::cli {

namespace {

constexpr std::size_t kDoorPictures = 8, kPageSize = 4096;

bool KnowsPages(const GameView& game) {
    return game.hasPages && (game.set == CellSet::Wolf || game.set == CellSet::Spear);
}

void Unreadable(const GameView& game, const TellItem& tell) {
    for (const Unread& item : game.unread)
        tell(item.kind.c_str(), item.number, item.reason);
}

void TooLarge(const GameView& game, const TellItem& tell) {
    if (game.highResolution)
        return;
    const auto look = [&](const char* kind, const std::vector<PageImage>& images) {
        for (std::size_t i = 0; i < images.size(); ++i)
            if (images[i].bytes > kPageSize)
                tell(kind, static_cast<int>(i),
                     std::to_string(images[i].bytes) + " bytes; a page has 4096");
    };
    look("wall", game.walls);
    look("sprite", game.sprites);
}

/// Where each value is used first: the map and the cell.
std::map<std::int32_t, std::pair<int, Spot>> Used(const GameView& game, int plane) {
    std::map<std::int32_t, std::pair<int, Spot>> used;
    for (const MapView& map : game.maps)
        map.EachCell([&](Spot spot) { used.try_emplace(map.Cell(plane, spot), map.number, spot); });
    return used;
}

std::string Where(const std::pair<int, Spot>& place) {
    return "first on map " + std::to_string(place.first) + " at (" +
           std::to_string(place.second.x) + "," + std::to_string(place.second.y) + ")";
}

std::size_t WallPictures(const GameView& game) {
    return game.walls.size() > kDoorPictures ? game.walls.size() - kDoorPictures : 0;
}

void WallWithoutPicture(const GameView& game, const TellItem& tell) {
    if (!KnowsPages(game))
        return;
    for (const auto& [value, place] : Used(game, 0)) {
        if (ValueOf(game.set, 0, value).kind != CellKind::Wall)
            continue;
        const auto lit = static_cast<std::size_t>(value - 1) * 2;
        for (const std::size_t picture : {lit, lit + 1})
            if (picture >= WallPictures(game) || game.walls[picture].pixels.empty()) {
                tell("wall", static_cast<int>(picture),
                     "missing; value " + std::to_string(value) + " shows it, " + Where(place));
                break;
            }
    }
}

/// One finding for a sprite, however many values show it.
void ThingWithoutSprite(const GameView& game, const TellItem& tell) {
    if (!KnowsPages(game))
        return;
    std::set<int> told;
    for (const auto& [value, place] : Used(game, ThingPlane(game.set))) {
        const CellValue& thing = ValueOf(game.set, ThingPlane(game.set), value);
        const auto sprite = static_cast<std::size_t>(thing.sprite);
        if (thing.sprite < 0 ||
            (sprite < game.sprites.size() && !game.sprites[sprite].pixels.empty()) ||
            !told.insert(thing.sprite).second)
            continue;
        tell("sprite", thing.sprite, "missing; " + thing.name + " shows it, " + Where(place));
    }
}

void UnusedWalls(const GameView& game, const TellItem& tell) {
    if (!KnowsPages(game) || game.maps.empty())
        return;
    const auto used = Used(game, 0);
    for (std::size_t picture = 0; picture < WallPictures(game); ++picture) {
        const auto value = static_cast<std::int32_t>(picture / 2 + 1);
        if (game.walls[picture].pixels.empty() || used.contains(value))
            continue;
        tell("wall", static_cast<int>(picture),
             "no map uses value " + std::to_string(value) +
                 (value == kLiftWall + 1 ? ", which the game shows when a lift was used" : ""));
    }
}

void IdenticalSprites(const GameView& game, const TellItem& tell) {
    std::map<ByteArray, std::vector<std::size_t>> groups;
    for (std::size_t i = 0; i < game.sprites.size(); ++i)
        if (!game.sprites[i].pixels.empty())
            groups[game.sprites[i].pixels].push_back(i);
    std::map<std::size_t, std::string> inOrder;
    for (const auto& [pixels, numbers] : groups)
        for (std::size_t i = 1; i < numbers.size(); ++i)
            inOrder[numbers.front()] += (i > 1 ? ", " : "") + std::to_string(numbers[i]);
    for (const auto& [first, others] : inOrder)
        tell("sprite", static_cast<int>(first), "the same as " + others);
}

void ArticleWithoutEnd(const GameView& game, const TellItem& tell) {
    for (const Article& article : game.articles)
        if (article.text.find("^E") == std::string::npos &&
            article.text.find("^e") == std::string::npos)
            tell("chunk", article.chunk, "a text without the ^E that ends it");
}

void DemoWithoutLevel(const GameView& game, const TellItem& tell) {
    for (std::size_t demo = 0; demo < game.demoLevels.size(); ++demo)
        if (const int level = game.demoLevels[demo];
            level < 0 || static_cast<std::size_t>(level) >= game.maps.size())
            tell("chunk", -1,
                 "demo " + std::to_string(demo) + " plays level " + std::to_string(level) +
                     ", and there is none");
}

constexpr ItemRule kRules[] = {
    {{"unreadable", Severity::Error, "a save may lose it"}, Unreadable},
    {{"larger-than-a-page", Severity::Error, "the game stops with an error"}, TooLarge},
    {{"wall-without-picture", Severity::Error, "the game shows another one or fails"},
     WallWithoutPicture},
    {{"thing-without-sprite", Severity::Error, "the game shows another one or fails"},
     ThingWithoutSprite},
    {{"article-without-end", Severity::Error, "the game stops with an error"}, ArticleWithoutEnd},
    {{"demo-without-level", Severity::Error, "the game fails when the demo plays"},
     DemoWithoutLevel},
    {{"unused-wall", Severity::Note, "there may be room for another"}, UnusedWalls},
    {{"identical-sprites", Severity::Note, "one may have been meant to differ"}, IdenticalSprites},
};

}  // namespace

std::span<const ItemRule> ItemRules() {
    return kRules;
}

}  // namespace tessaro::cli
