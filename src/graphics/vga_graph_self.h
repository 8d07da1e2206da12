// The state of one graphics container.
#pragma once

#include <memory>
#include <optional>

#include "foundation/store.h"
#include "graphics/graphics_finding.h"
#include "graphics/graphics_set.h"
#include "saving/saving_flag.h"
#include "tessaro/vga_graph.h"

namespace tessaro {

struct clsVGAGraph::Self {
    bool j98Mode = false;
    std::optional<TileLayout> givenTile8;  ///< by the host, for the next opening
    std::shared_ptr<Game> game;            ///< that the set was opened for
    std::shared_ptr<GraphicsFinding> found;
    std::shared_ptr<const Finding> finding;
    GraphicsSet set;
    SavingFlag saving;

    /// The container's game; before a set is opened, the configured one.
    Game& GameOf() const { return game ? *game : ConfiguredGame(); }
    /// Whether pictures have 16 colours, once a set is open as it was opened.
    bool Ega() const { return game ? set.catalog.ega : ConfiguredGame().egaGraphics; }
    /// The set with its data file's bytes at hand.
    GraphicsSet& Opened() {
        if (set.data.WasRead())
            set.data.Reopen(*game->files);
        return set;
    }
    /// A chunk's expanded bytes; only what is not in memory needs the file.
    const ByteArray& Load(std::int32_t chunk);
    /// The same for the first chunk of a type; fails with number 9 where there is none.
    const ByteArray& LoadFirst(enmVGRAGRAPHTypes type);

    void Open();
};

}  // namespace tessaro
