// What is known of a game's published versions, and what its items are called: data files of ours,
// one a game (docs/known-games.md draws them), and the user's own beside them.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tessaro/types.h"

namespace tessaro::cli {

struct KnownFile {
    std::string name;
    std::optional<std::uint64_t> size;  ///< unset where nobody knows it
    std::string digest;                 ///< "crc32:", "md5:" or "sha1:" and its digits; or empty
};

/// A kind's name and a number, as `list` prints them.
using ItemKey = std::pair<std::string, int>;

struct KnownVersion {
    std::string title, name;  ///< "Wolfenstein 3D, shareware", "1.4"
    std::vector<KnownFile> files;
    std::map<ItemKey, std::string> items;  ///< their checksums; empty for one without data
};

struct KnownItem {
    std::string name, meaning;
};

/// Names that hold for every set, or for those with so many graphics chunks.
struct KnownNames {
    std::optional<int> chunks;
    std::map<ItemKey, KnownItem> items;
};

struct KnownGame {
    std::string title;
    std::vector<std::string> extensions;
    std::vector<KnownVersion> versions;
    std::vector<KnownNames> names;
};

/// Reads one such file; fails with a CommandError that names the line.
KnownGame ReadKnownGame(const std::string& path);

/// Whether these bytes are a file of any published version, whatever it is called.
bool IsOfKnownGame(const ByteArray& content);

/// What is known of the games whose files have this extension: first those named for it, then the
/// others; the user's own come last and win where they name the same item. A file that cannot be
/// read is noted and left out.
std::vector<KnownGame> KnownGames(const std::string& extension);

/// Where the data files are looked for: those installed, then the user's own.
std::vector<std::string> KnownGameFolders();

}  // namespace tessaro::cli
