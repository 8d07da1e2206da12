// A game folder, opened: the configuration and the containers that commands ask for.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tessaro/tessaro.h"

namespace CLI {
class App;
}

namespace tessaro::cli {

class ItemNames;

/// Where a change goes: the options that every changing command has.
struct SaveOptions {
    std::string output;  ///< empty: the game's folder
    std::string backup;  ///< empty: "backup" in the folder that is written to

    void AddTo(CLI::App& command);
};

/// How a changed map set is laid out, where the classic layout is too narrow for it.
struct MapLayoutOptions {
    int nameSize = 0;  ///< bytes of a name; 0: as the set has them
    bool longLengths = false;

    void AddTo(CLI::App& command);
    void Apply(clsGameMaps& maps) const;
};

/// The configuration is set from the folder at once; each container opens when it is first asked
/// for. Whatever cannot be opened ends the command with the reason.
class Game {
public:
    explicit Game(const std::string& folder);
    ~Game();

    const std::string& Folder() const { return folder_; }
    clsVersion& Version() { return version_; }
    clsPalette& Palette() { return palette_; }

    clsGameMaps& Maps();
    /// 16-colour games have no page file.
    bool HasPages() const { return !version_.VSwapFile().empty(); }
    clsVSwap& Pages();
    clsVGAGraph& Graphics();
    clsAudioT& Audio();

    /// The paths of the files that the game is read from.
    std::vector<std::string> DataFiles() const;
    /// What the items of games like this one are called.
    ItemNames& Names();

    /// Sets the folders and the extension for a save, creating what is missing.
    void PrepareSave(const SaveOptions& options);
    /// The saves, each with its progress bar; a failure ends the command with the reason.
    void SaveMaps(const SaveOptions& options);
    void SavePages(const SaveOptions& options, enmVSWAPCompression compression);
    void SaveGraphics(const SaveOptions& options);
    void SaveAudio(const SaveOptions& options);

private:
    void MoveMapsTo(const std::string& output);

    std::string folder_;
    clsVersion version_;
    clsPalette palette_;
    std::unique_ptr<clsGameMaps> maps_;
    std::unique_ptr<clsVSwap> pages_;
    std::unique_ptr<clsVGAGraph> graphics_;
    std::unique_ptr<clsAudioT> audio_;
    std::unique_ptr<ItemNames> names_;
};

/// Opens a second game and hands it over; the first one stays as it is. (Each thread has a
/// configuration of its own: this takes one.)
void WithOtherGame(const std::string& folder, const std::function<void(Game&)>& work);

/// A map's name as people see it: cut at its first zero byte and trimmed.
std::string DisplayName(const clsGameMaps& maps, int map);

/// Fails unless `number` is one of `count` things counted from `first`.
void CheckNumber(const char* what, int number, int count, int first = 0);

}  // namespace tessaro::cli
