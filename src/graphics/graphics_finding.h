// What opening the graphics finds out about their game.
#pragma once

#include <array>
#include <optional>
#include <string>

#include "foundation/game.h"

namespace tessaro {

class GraphicsFinding {
public:
    /// Looks for the executables that tell one game from another.
    static GraphicsFinding Probe(const Game& game, const Files& files, bool j98);

    std::optional<HuffDictionary> dictionary;  ///< that the graphics were read with

    /// Narrows what the game permits; names the files of a 98GRAPH set, whose names may have been
    /// turned before, and keeps it from being written.
    void PutInto(Game& game);
    /// Gives a game the names back that were turned.
    void TakeBack(Game& game) const;

private:
    bool isBlakeStone_ = false;
    bool canAddOrRemoveChunks_ = false;
    bool canChangeMapSize_ = false;
    bool j98_ = false;
    std::array<std::string, 3> turned_;  ///< as they were before
    bool couldCompile_ = false;
};

}  // namespace tessaro
