// What is configured for one game, as one value: a container holds on to the game that it was
// initialised for, and a save works on a copy taken when it began.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "foundation/huff_dictionary.h"
#include "tessaro/files.h"

namespace tessaro {

struct Game;

/// What opening a container found out about its game (permissions, names, widths). It lives with
/// the container, and goes into the game again when the game is found anew.
using Finding = std::function<void(Game&)>;

struct Game {
    std::shared_ptr<Files> files = DiskFiles();

    // Settings (clsVersion documents each).
    std::string dataPath;
    bool canCompileVGAGraph = false;
    bool egaGraphics = false;
    bool canChangeMapSize = false;
    bool isBlakeStone = false;
    bool canAddOrRemoveChunks = false;
    std::string audioHeaderFile, audioDictFile, audioDataFile, configFile, gameMapsFile,
        mapHeaderFile, vgaDictFile, vgaGraphFile, vgaHeaderFile, vswapFile, audioMusFile;
    bool mapsAreVersion10 = false;
    bool readSoundLengthsAsLong = false;
    std::string compileExtension;
    bool hiResOutput = false;
    std::string extension;
    std::string dataExtension;  ///< as the folder spells it; `extension` is in upper case
    std::string backupFolder, outputFolder;

    // Graphics.
    std::int32_t graphicsHeaderEntrySize = 3;
    HuffDictionary expandDictionary{};
    HuffDictionary compileDictionary{};
    bool compileDictionaryLoaded = false;  ///< since the last LoadDataPath

    // Audio.
    bool audioIsCompressed = false;
    HuffDictionary audioDictionary{};

    /// Of the containers that are open.
    std::vector<std::weak_ptr<const Finding>> findings;
    /// Containers of this game that are being saved.
    int saving = 0;

    /// Takes what a container found, now and whenever the game is found anew, for as long as the
    /// container keeps what this returns.
    [[nodiscard]] std::shared_ptr<const Finding> Take(Finding finding);
    /// Puts every finding that is still kept into this game.
    void TakeFindingsAgain();

    /// The path that a container writes a configured input file to: OutputFolder, its base name
    /// and CompileExtension. Fails where one of the two settings is empty.
    std::string OutputPath(const std::string& inputPath) const;
};

/// Whether two folders of a game's files are one, links followed.
bool SameFolder(const Files& files, const std::string& a, const std::string& b);

}  // namespace tessaro
