// Everything that the objects of the library share. One store per thread: two threads are two
// independent libraries, and nothing locks.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "tessaro/failure.h"

namespace tessaro {

/// One inner node of a Huffman tree: a child below 256 is that byte value, any other is the node
/// with the number of its low 8 bits.
struct HuffNode {
    std::int16_t Bit0 = 0;
    std::int16_t Bit1 = 0;
    bool operator==(const HuffNode&) const = default;
};

/// The dictionary table; node 254 is the root, entry 255 is carried along unused.
using HuffDictionary = std::array<HuffNode, 256>;

struct Store {
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
    std::string appPath;
    std::string extension;
    std::string dataExtension;  ///< as the folder spells it; `extension` is in upper case
    std::string backupFolder, outputFolder;

    // The current palette: red in the low byte, then green, then blue.
    std::array<std::int32_t, 256> palette{};
    std::string paletteFile;

    // Graphics.
    std::int32_t graphicsHeaderEntrySize = 3;
    bool graphicsLoaded = false;
    HuffDictionary expandDictionary{};
    HuffDictionary compileDictionary{};
    bool compileDictionaryLoaded = false;  ///< since the last LoadDataPath
    HuffDictionary builtDictionary{};
    std::array<std::int32_t, 256> byteCounts{};  ///< what builtDictionary was made from

    // Audio.
    bool audioIsCompressed = false;
    HuffDictionary audioDictionary{};

    Failure errorState{0, ""};
};

/// The calling thread's store.
Store& SharedStore();

}  // namespace tessaro
