// A game as rules look at it: every item read, what could not be read named.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "check/map_view.h"
#include "game.h"

namespace tessaro::cli {

/// A wall or a sprite.
struct PageImage {
    ByteArray pixels{};     ///< empty: the number has no data
    std::size_t bytes = 0;  ///< of its page chunk
};

struct Article {
    int chunk = 0;
    std::string text{};
};

struct Unread {
    std::string kind{};
    int number = 0;
    std::string reason{};
};

struct GameView {
    CellSet set = CellSet::Wolf;
    std::vector<MapView> maps{};
    bool hasPages = true, highResolution = false;
    std::vector<PageImage> walls{}, sprites{};
    std::vector<Article> articles{};
    std::vector<int> demoLevels{};
    std::vector<Unread> unread{};
    std::map<std::string, std::string> files{};  ///< by kind: the data file's name
};

/// Loads every item; what fails is among the unread.
GameView ViewOf(Game& game);

}  // namespace tessaro::cli
