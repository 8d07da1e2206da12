// Which published version a game is, and what was changed in it.
#pragma once

#include "game.h"
#include "known/known_game.h"

namespace tessaro::cli {

struct DataFile {
    std::string path, name;
    ByteArray content;
    bool original = false;  ///< as in the version that was found
    bool known = false;     ///< the version has a file of this name
};

struct Identity {
    enum class State { Unknown, Modified, Original };

    State state = State::Unknown;
    /// The versions that have most of the files; several may share them.
    std::vector<KnownVersion> versions;
    std::vector<DataFile> files;

    /// "Wolfenstein 3D, shareware, version 1.4"; empty where nothing is known.
    std::string Name() const;
};

Identity Identify(Game& game);

/// The items that differ from those of a version, kind by kind. Nothing where the version's items
/// are not known.
std::vector<ItemKey> ChangedItems(Game& game, const KnownVersion& version);
/// The items of one game that differ from those of another, in the same way.
std::vector<ItemKey> ChangedItems(Game& game, const std::string& originalFolder);

}  // namespace tessaro::cli
