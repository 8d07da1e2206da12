// clsGameMaps: the maps of one game.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "tessaro/export.h"
#include "tessaro/types.h"

namespace tessaro {

/// One plane of a map: its cells row by row (index y x width + x). A 16-bit cell of a file widens
/// without sign, 0 to 65535.
struct typMapGrid {
    std::vector<std::int32_t> Grid;
};

/// All planes of a map.
struct typMapPlane {
    std::vector<typMapGrid> Plane;
};

/// How far a map's stored planes were damaged when it was loaded.
enum enmCorruptLevel : std::int32_t {
    clNone = 0,
    clLow = 1,   ///< a plane did not say how long it is; the usual 8192 bytes were taken
    clHigh = 2,  ///< a plane ended early; the cells beyond are 0
};

/// The files in which maps are exchanged with other editors and games; docs/exchange-files.md
/// draws each.
enum enmMapFileType : std::int32_t {
    mftUnknownMapFile = 0,
    mftKZRMapFile = 1,         ///< KZR map file; ChaosEdit files are read as this kind too
    mftFloEditMapFile = 2,     ///< ".LVL", 64 x 64, two planes
    mftMapEditMapFile = 3,     ///< ".MAP", exactly 16384 bytes, 64 x 64, two planes
    mftiPhoneMapFile = 4,      ///< one map for the iPhone
    mftNitemare3DMapFile = 5,  ///< "MAP.1" to "MAP.3", read only
    mftROTTRTLMapFile = 6,     ///< Rise of the Triad, 128 x 128, three planes
    mftROTTRTCMapFile = 7,     ///< the same for multiplayer maps
};

/// The map header file and the map data file of one game (docs/map-files.md draws both).
/// Configure clsVersion first, then call Initialize; CloseFile releases the data file. Map numbers
/// and plane numbers count from 0. Every operation reports its own failure and returns its failure
/// value; results are handed over only when all of them exist.
class TESSARO_API clsGameMaps {
public:
    clsGameMaps();
    ~clsGameMaps();
    clsGameMaps(const clsGameMaps&) = delete;
    clsGameMaps& operator=(const clsGameMaps&) = delete;

    /// Reads the map header file and every map's record. The data file stays open for LoadMap.
    /// @return False when a file is missing, a record does not lie in its file, or there is no map.
    bool Initialize();

    /// Closes the data file; LoadMap opens it again when it needs it.
    void CloseFile();

    /// Expands map `MapNum` into `MapDataPlanes` and sets `Width` and `Height` in cells. A map
    /// that is in memory already is served from memory, edits included. A plane that ends early is
    /// handed out as far as it goes and raises CorruptMap(MapNum) to clHigh.
    /// @return False when the map could not be read; the arguments keep their values.
    bool LoadMap(std::int32_t MapNum, typMapPlane& MapDataPlanes, std::int32_t& Width,
                 std::int32_t& Height);

    /// Changes one cell in memory, loading the map when it is not there yet.
    /// @return False (number 9) for a map, plane or place that does not exist.
    bool SetMapCode(std::int32_t MapNum, std::int32_t Plane, std::int32_t X, std::int32_t Y,
                    std::int32_t Value);

    std::int32_t NumberOfMaps() const;
    /// The stored name without leading and trailing blanks; other padding, such as zero bytes, is
    /// kept. Setting stores the text unchanged; whether it fits is checked by SaveMapFile.
    std::string MapName(std::int32_t MapNum) const;
    void MapName(std::int32_t MapNum, const std::string& NewValue);
    enmCorruptLevel CorruptMap(std::int32_t MapNum) const;

    /// Planes per map and bytes of the name field in the files read.
    std::int16_t InputMapPlanes() const;
    std::int16_t InputMapNameSize() const;
    /// Planes per map and bytes of the name field in the files that SaveMapFile writes. Setting
    /// the name size cuts every stored name to it.
    std::int16_t OutputMapPlanes() const;
    void OutputMapPlanes(std::int16_t NewValue);
    std::int16_t OutputMapNameSize() const;
    void OutputMapNameSize(std::int16_t NewValue);
    /// Whether stored lengths are read and written 32 bits wide. While the loaded set has them,
    /// writing them cannot be switched off.
    bool LoadLengthsAsLong() const;
    bool SaveLengthsAsLong() const;
    void SaveLengthsAsLong(bool NewValue);

    /// The RLEW tag that maps are read with (its low 16 bits) and the one they are written with.
    /// After reading a header with the tag ABCD (hexadecimal) the first is 43981, the second
    /// -21555: the difference is meant.
    std::int32_t LongRLEWTag() const;
    void LongRLEWTag(std::int32_t NewValue);
    std::int32_t CompileRLEWTAG() const;
    void CompileRLEWTAG(std::int32_t NewValue);
    /// The Carmack tags, for reading and for writing.
    std::uint8_t NEARTAG() const;
    void NEARTAG(std::uint8_t NewValue);
    std::uint8_t FARTAG() const;
    void FARTAG(std::uint8_t NewValue);
    std::uint8_t CompileNEARTAG() const;
    void CompileNEARTAG(std::uint8_t NewValue);
    std::uint8_t CompileFARTAG() const;
    void CompileFARTAG(std::uint8_t NewValue);

    /// Writes both map files anew, in place, in the layout of the output settings: complete ".new"
    /// files first, then the old files move to BackupFolder under one number, then the new ones
    /// take their places. SaveStatus after each map, SaveComplete at the end in every outcome.
    /// @return False after a failure: the old files are back, the ".new" files stay beside them,
    ///         and the container serves what it served before.
    bool SaveMapFile();
    /// From a handler of SaveStatus alone: ends the save, which then fails with "The save was
    /// stopped." Anywhere else it fails with number 5.
    void StopSave();

    /// Gives a map a new size, keeping its top left corner. New cells hold `MapFill` in the first
    /// plane and 0 in the others.
    /// @return False for an unknown map or a size without cells or beyond 16,777,216 of them.
    bool ResizeMap(std::int32_t MapNum, std::int32_t NewWidth, std::int32_t NewHeight,
                   std::int32_t MapFill);
    /// Inserts an empty 64 x 64 map named "NEW" at `MapNum`, moving the maps from there on up.
    void AddMap(std::int32_t MapNum);
    /// Removes a map, moving the later ones down. The last remaining map is blanked instead.
    void RemoveMap(std::int32_t MapNum);

    /// Writes one map into a file of its own. An existing file of a known format keeps its format,
    /// whatever `FileType` asks for; the type used is handed back in it. Nothing happens to an
    /// existing file until the new one is complete. For an iPhone file the user fills in
    /// frmIPhoneSettings first.
    /// @param ExportNames whether KZR files carry the map's name.
    /// @return False, too, when the user cancels the form; nothing is written then.
    bool ExportMap(std::int32_t MapNum, const std::string& FileName, bool ExportNames,
                   enmMapFileType& FileType);
    /// Writes the listed maps into one file whose extension names the format: ".LVL" FloEdit,
    /// ".MAP" KZR, ".RTL" and ".RTC" Rise of the Triad (map i of the list in slot i). Any other
    /// extension leaves an empty file and returns True: that is meant.
    /// FloEdit files hold 64 x 64 maps only: with any other map the list goes to a KZR file with
    /// the extension ".map", after a question where that exists.
    /// @return False, too, when maps that could not be loaded were left out of the file.
    bool ExportMultiMap(const std::vector<std::int32_t>& MapArray, const std::string& FileName,
                        bool ExportNames);
    /// Reads every map of a file into this set from `MapNum` on, after asking where maps have to
    /// be added for that. A damaged file changes nothing.
    bool ImportMap(std::int32_t MapNum, const std::string& FileName);
    /// Reads every map of a file into the clipboard set, which it replaces.
    /// @return The number of maps read; 0 on failure, which leaves the clipboard set as it was.
    std::int32_t ImportMapsForClipboard(const std::string& FileName);
    /// Hands out map `MapNum` of the clipboard set.
    void GetClipboardMap(std::int32_t MapNum, typMapPlane& PlaneData, std::int32_t& Width,
                         std::int32_t& Height, std::string& Name);

    SaveStatusEvent SaveStatus;
    /// Its `Chunk` is the plane or header slot last written, no map number: that is meant. The
    /// description names the map.
    SaveErrorEvent SaveError;
    SaveCompleteEvent SaveComplete;

private:
    friend struct GameMapsInternals;
    friend class MapSave;
    struct Self;
    std::unique_ptr<Self> self_;
};

}  // namespace tessaro
