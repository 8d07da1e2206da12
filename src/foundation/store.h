// What the objects of one thread share. Two threads are two independent libraries, and no thread
// waits for another but for a folder that it is saving.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "foundation/game.h"
#include "tessaro/failure.h"

namespace tessaro {

struct Store {
    /// The configured game.
    std::shared_ptr<Game> game = std::make_shared<Game>();
    /// Every game that some container still belongs to, so that finding one again refills it.
    std::vector<std::weak_ptr<Game>> games;
    /// Where the next LoadDataPath looks.
    std::shared_ptr<Files> files = DiskFiles();

    std::string appPath;

    // The current palette: red in the low byte, then green, then blue.
    std::array<std::int32_t, 256> palette{};
    std::string paletteFile;

    HuffDictionary builtDictionary{};
    std::array<std::int32_t, 256> byteCounts{};  ///< what builtDictionary was made from

    Failure errorState{0, ""};
};

/// The calling thread's store.
Store& SharedStore();

/// The game that clsVersion's properties read and write.
inline Game& ConfiguredGame() {
    return *SharedStore().game;
}

}  // namespace tessaro
