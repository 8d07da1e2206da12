// clsVersion: the project configuration that every container reads.
#pragma once

#include <memory>
#include <string>

#include "tessaro/export.h"
#include "tessaro/files.h"
#include "tessaro/types.h"

namespace tessaro {

/// The full paths of a game's data files, the variant's extension, the output and backup folders,
/// and what the loaded game permits.
///
/// All settings live in one store per thread, not in the object: every clsVersion and every
/// container on the same thread sees the same values. Create a clsVersion, call LoadDataPath with
/// the game's folder, adjust, then create the containers, which read the settings whenever they
/// need them.
///
/// Paths are UTF-8 outside Windows and in the ANSI code page on Windows. Data files are found
/// without regard to case on every system.
///
/// A container writes each data file as OutputFolder, the separator, the base name of the
/// configured input file up to its first point, "." and CompileExtension: VSWAP.WL6 with the
/// compile extension WL1 is written as VSWAP.WL1. (The map container alone works in place.)
class TESSARO_API clsVersion {
public:
    /// Sets AppPath to the library's own folder and loads the default game palette.
    clsVersion();

    /// Forgets the game before, then finds a complete set of one game's files in `DataPath`, a
    /// folder without a trailing separator: the extension from VGADICT.* (else EGADICT.*, a
    /// 16-colour game), then the map, audio, page and graphics files of that extension.
    /// Every file name, BackupFolder and what the game permits are reset first, so set
    /// BackupFolder and AudioMusFile after it. Extension, EGAGraphics and MapsAreVersion10 keep
    /// their values until a dictionary file names the game; AppPath, OutputFolder,
    /// CompileExtension and HiResOutput are the host's and stay.
    /// @return True when the set is complete. False leaves the settings as they stood where the
    ///         search ended (the name tried last stays) and reports nothing but unexpected
    ///         failures, such as an unreadable folder.
    bool LoadDataPath(const std::string& DataPath);

    /// Where the next LoadDataPath looks and what the game found there is read from and saved to:
    /// the system's disks, unless a host gives a port of its own. Another port is another game.
    /// The error log and palette files stay on the disk. Null stands for DiskFiles().
    std::shared_ptr<tessaro::Files> Files() const;
    void Files(std::shared_ptr<tessaro::Files> NewValue);

    /// Reads the first 1024 bytes of `NewFile` as the dictionary that graphics are compiled with,
    /// from now until the next LoadDataPath. A missing, short or unreadable file is reported, and
    /// the dictionary keeps what it held.
    void LoadCompileVGADictFile(const std::string& NewFile);

    /// Whether the graphics file may be rewritten: never for 16-colour games.
    bool CanCompileVGAGraph() const;
    /// Whether the game has 16-colour graphics (EGADICT, EGAGRAPH, EGAHEAD) and no page file.
    bool EGAGraphics() const;
    /// Whether maps may be resized. True after LoadDataPath; opening the graphics narrows it.
    bool CanChangeMapSize() const;
    /// Whether the game is Blake Stone. Set by opening the graphics.
    bool IsBlakeStone() const;
    /// Whether graphics chunks may be added or removed. Narrowed like CanChangeMapSize.
    bool CanAddOrRemoveChunks() const;

    /// AUDIOHED: the audio header file.
    std::string AudioHeaderFile() const;
    void AudioHeaderFile(const std::string& NewValue);
    /// AUDIODCT, 16-colour games only; empty where the game has none.
    std::string AudioDictFile() const;
    void AudioDictFile(const std::string& NewValue);
    /// AUDIOT or AUDIO: the audio data file.
    std::string AudioDataFile() const;
    void AudioDataFile(const std::string& NewValue);
    /// Always empty: nothing in the library sets it.
    std::string ConfigFile() const;
    /// GAMEMAPS or MAPTEMP: the map data file.
    std::string GameMapsFile() const;
    void GameMapsFile(const std::string& NewValue);
    /// MAPHEAD: the map header file.
    std::string MapHeaderFile() const;
    void MapHeaderFile(const std::string& NewValue);
    /// VGADICT or EGADICT: the graphics dictionary.
    std::string VGADictFile() const;
    void VGADictFile(const std::string& NewValue);
    /// VGAGRAPH or EGAGRAPH: the graphics data.
    std::string VGAGraphFile() const;
    void VGAGraphFile(const std::string& NewValue);
    /// VGAHEAD or EGAHEAD: the graphics header.
    std::string VGAHeaderFile() const;
    void VGAHeaderFile(const std::string& NewValue);
    /// VSWAP or GFXTILES: the page file; empty for 16-colour games.
    std::string VSwapFile() const;
    void VSwapFile(const std::string& NewValue);
    /// AUDIOMUS: the extra file of digitised sounds; empty where the game has none. Opening the
    /// page file sets it.
    std::string AudioMusFile() const;
    void AudioMusFile(const std::string& NewValue);

    /// Whether the map data file is the older MAPTEMP kind (planes without the Carmack layer).
    bool MapsAreVersion10() const;
    /// Whether sound lengths are 32-bit. Set by opening the page file.
    bool ReadSoundLengthsAsLong() const;
    /// The extension, without the point, of the files that the containers write.
    void CompileExtension(const std::string& NewValue);
    /// Whether the page file is written with pages for 128 x 128 walls and sprites.
    bool HiResOutput() const;
    void HiResOutput(bool NewValue);
    /// The folder of the error log, "Error.log".
    std::string AppPath() const;
    void AppPath(const std::string& NewValue);
    /// The extension of the game variant in upper case, without the point: "WL6".
    std::string Extension() const;
    /// The folder that receives the files that a save replaces. Created when it is needed, one
    /// level only. Emptied by LoadDataPath.
    std::string BackupFolder() const;
    void BackupFolder(const std::string& NewValue);
    /// The folder that receives the files that the containers write.
    std::string OutputFolder() const;
    void OutputFolder(const std::string& NewValue);
};

}  // namespace tessaro
