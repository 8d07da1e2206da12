// clsPalette: the library-wide current palette and the palette file formats.
#pragma once

#include <cstdint>
#include <string>

#include "tessaro/export.h"
#include "tessaro/types.h"

namespace tessaro {

/// The palette file formats; docs/palette-files.md draws each.
enum enmSupportedPaletteTypes : std::int32_t {
    ptUnknown = 0,
    ptJASC3 = 1,     ///< JASC text palette
    ptJASC8 = 2,     ///< RIFF palette
    ptXWE = 3,       ///< raw lump: 768 bytes of red, green, blue
    ptGAMEPAL = 4,   ///< object file with the public array _gamepal
    ptWolf4GW = 5,   ///< C source array
    ptWolf4SDL = 6,  ///< list of "RGB(" entries
};

/// The current palette (256 colours, red in the low byte, then green, then blue), which every BMP
/// image of the library carries. One palette per thread, shared by every object of the library.
class TESSARO_API clsPalette {
public:
    /// Writes the palette `PalBytes` (768 bytes: red, green and blue of colours 0 to 255, 8-bit)
    /// as a file of the type `FileType` into `OutBytes`. The object file and the two source forms
    /// hold 6-bit values, each shifted right by 2.
    /// @return False, with OutBytes unchanged, for ptUnknown or a palette of another size.
    bool CreatePaletteFileData(enmSupportedPaletteTypes FileType, const ByteArray& PalBytes,
                               ByteArray& OutBytes);

    /// Reads a palette file: ".CPP" as the C source array, ".INC" as the "RGB(" list, anything
    /// else by its first four bytes, "JASC" or "RIFF". 6-bit values come back times 4. A file of
    /// another form, one that does not parse or an empty one shows its message box; a RIFF palette
    /// that ends early is reported as failure 9 instead.
    /// @param FileType receives the type found, where it is not null.
    /// @return False, with PalBytes and FileType unchanged, when the file could not be read.
    bool LoadPaletteDataFromFile(const std::string& FileName, ByteArray& PalBytes,
                                 enmSupportedPaletteTypes* FileType = nullptr);

    /// One colour of the current palette, 0 to 255 (others fail with number 9): red in the low
    /// byte, then green, then blue, the top byte 0.
    std::int32_t Color(std::int32_t ColorNum) const;
    void Color(std::int32_t ColorNum, std::int32_t NewValue);

    /// Fills the current palette from a palette file, or, with no name, with the built-in palette
    /// of the loaded game: Spear of Destiny's for the extensions SOD and SDM, otherwise the
    /// default one. A file that cannot be read leaves the palette unchanged, reported.
    void LoadPalette(const std::string& NewPaletteFile = {});

    /// Always 256.
    std::int32_t NumberOfColors() const;

    /// The current palette as the text of a JASC palette file. Setting it takes such a text; one
    /// that does not parse leaves the palette unchanged, reported.
    std::string JASCPalette() const;
    void JASCPalette(const std::string& NewValue);

    /// The file that the current palette was last loaded from; empty for a built-in one.
    std::string PaletteFile() const;
};

}  // namespace tessaro
