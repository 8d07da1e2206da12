// clsVGAGraph: the compressed graphics of one game.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "tessaro/export.h"
#include "tessaro/types.h"

namespace tessaro {

/// What a chunk of the graphics file holds.
enum enmVGRAGRAPHTypes : std::int32_t {
    vgSparse = -5,
    vgBMPMaskHead = -4,
    vgSpriteHead = -3,
    vgSTRUCTPIC = -2,
    vgUnknown = -1,
    vgFont = 0,
    vgPicture = 1,
    vgTile8 = 2,
    vgEndScreen = 3,
    vgPalette = 4,
    vgDemo = 5,
    vgEndArt = 6,
    vgBMPMask = 7,
    vgSprite = 8,
    vgTile8m = 9,
    vgTile16 = 10,
    vgTile16M = 11,
    vgJAMP = 12,
    vgAreaNames = 13,
    vgMisc = 14,
    vgTrucEndScreen = 15,
};

/// One entry of a 16-colour game's sprite table, as stored. Width is in bytes of 8 pixels; the
/// origin and the clipping rectangle (inclusive) are in sixteenths of a pixel.
struct typSpriteHead {
    std::int16_t Width = 0, Height = 0, OrgX = 0, OrgY = 0, Rx1 = 0, Ry1 = 0, Rx2 = 0, Ry2 = 0,
                 Shifts = 0;
};

/// One character: a byte per pixel, row after row; nonzero is ink.
struct typChar {
    ByteArray Points;
};

/// A proportional font.
struct typFont {
    std::int16_t Height = 0;
    std::array<std::int16_t, 256> Offsets{};  ///< of the pixels, from the chunk's start
    std::array<std::uint8_t, 256> Widths{};   ///< in pixels; 0: the character is absent
    std::array<typChar, 256> Chars{};
};

/// The graphics header, data and dictionary files (docs/graphics-files.md draws them). Configure
/// clsVersion first, then call InitializeGraphics. Chunk numbers count from 0, font numbers from 1.
/// Pictures and tiles cross the interface as BMP images with the current palette: 8 bits per pixel,
/// in 16-colour games 4. Every operation reports its own failure and returns its failure value.
class TESSARO_API clsVGAGraph {
public:
    clsVGAGraph();
    ~clsVGAGraph();
    clsVGAGraph(const clsVGAGraph&) = delete;
    clsVGAGraph& operator=(const clsVGAGraph&) = delete;

    /// Reads the files of the configured game, types every chunk and loads the fonts; narrows what
    /// clsVersion permits by the executables found in the data folder. From then on the container
    /// belongs to this game, whatever clsVersion is pointed at later.
    /// @return False when a file is missing or damaged: no set is open then.
    bool InitializeGraphics();
    /// Frees the data file's bytes and drops the chunks loaded or replaced, except those that were
    /// added. Types and tables stay: chunks are served again from the file, which is read again on
    /// demand and has to be the same still (number 70).
    void CloseFile();

    std::int32_t NumberOfChunks() const;
    /// Grows the set by empty chunks or shrinks it, where CanAddOrRemoveChunks.
    void NumberOfChunks(std::int32_t NewValue);
    /// Where fonts and pictures start and how many there are, as found on opening. What a host sets
    /// here is taken as it is: pictures find their table entries by StartPics, masked pictures
    /// theirs by NumberOfPics too.
    std::int32_t StartFonts() const;
    void StartFonts(std::int32_t NewValue);
    std::int32_t StartPics() const;
    void StartPics(std::int32_t NewValue);
    std::int32_t NumberOfPics() const;
    void NumberOfPics(std::int32_t NewValue);
    std::int32_t NumberOfFonts() const;
    void NumberOfFonts(std::int32_t NewValue);
    /// Always 256 for a loaded font.
    std::int32_t NumberOfFontCharacters(std::int32_t FontNum) const;
    /// The 16-colour mode of the container's game (before a set is opened: of the configured one),
    /// which LoadDataPath sets too. A set that is open stays in the mode that it was opened in.
    bool EGAGraphics() const;
    void EGAGraphics(bool NewValue);
    /// Whether the set is read as a 98GRAPH one; set it before InitializeGraphics. The names of its
    /// files begin with 98 from then on. Such a set cannot be saved.
    bool J98Mode() const;
    void J98Mode(bool NewValue);
    /// Whether every chunk outside fonts, pictures and tiles could be loaded and typed.
    bool CouldLoadNonPictureData() const;

    enmVGRAGRAPHTypes ChunkDataType(std::int32_t Chunk) const;
    void ChunkDataType(std::int32_t Chunk, enmVGRAGRAPHTypes NewValue);
    /// The chunk at position `Pos` (from 0) among those of one type; -1 where there is none.
    std::int32_t DataTypeChunk(enmVGRAGRAPHTypes VGAType, std::int32_t Pos) const;
    std::int32_t NumberDataTypeChunks(enmVGRAGRAPHTypes VGAType) const;
    /// The level that demo `DemoNum` (from 0) plays; -1 on failure.
    std::int32_t DemoLevel(std::int32_t DemoNum);
    /// The layout of the 8 x 8 tiles: their number, tiles across and tiles down.
    void GetTile8Info(std::int32_t& NumberOfTiles, std::int32_t& NumTilesWide,
                      std::int32_t& NumTilesHigh) const;
    /// Gives another layout, for tiles nobody replaced and for the next opening; it lasts until the
    /// opening after that one.
    void SetTile8Info(std::int32_t NumberOfTiles, std::int32_t NumTilesWide,
                      std::int32_t NumTilesHigh);

    /// A chunk's expanded bytes, from memory where they are there already. `Data` receives what
    /// the slot holds also when the result is False.
    bool LoadTessaro(std::int32_t Chunk, ByteArray& Data);
    /// Replaces a chunk in memory: by its expanded bytes, or, for pictures, sprites and tiles other
    /// than masked 16 x 16 ones, by a BMP image, which is converted to the stored form (a picture
    /// of another size updates the picture table; masks stay). SaveVGAGraph writes it. A font, a
    /// picture and tiles have to be what an opening would take for them: a font ends with the
    /// pixels of its last character, a picture has its table's size, 8 x 8 tiles are whole ones, at
    /// least as many as the layout has. What is refused changes nothing (number 5). A chunk without
    /// data and one of no particular kind (vgMisc) take the type that the bytes tell.
    void SetChunkData(std::int32_t Chunk, const ByteArray& Data);
    /// Replaces the mask plane of a masked picture or a sprite in memory: the plane's bytes, one
    /// bit a pixel, or a BMP image of its size. Anything else is refused.
    void SetMaskData(std::int32_t Chunk, const ByteArray& Data);

    /// The 256 colours of a palette chunk: red in the low byte, 6-bit values times 4. Where the
    /// chunk cannot be read all of them are 0.
    bool LoadWolfPalette(std::int32_t Chunk, std::vector<std::int32_t>& Colors);
    /// Makes a palette chunk the library's current palette.
    void SetPaletteToChunk(std::int32_t ChunkNum);
    /// A picture, a masked picture (without its mask) or a 16 x 16 tile as a BMP image, and its
    /// size in pixels.
    /// @param ForcePaletteLoad makes the set's first palette chunk, if any, current beforehand.
    bool LoadWolfPicture(std::int32_t Chunk, ByteArray& Data, std::int32_t& Height,
                         std::int32_t& Width, bool ForcePaletteLoad = false);
    /// One 8 x 8 tile as a BMP image.
    bool LoadTile8(std::int32_t TileNum, ByteArray& Data);
    /// All 8 x 8 tiles in one image, laid out by GetTile8Info, and its size in pixels.
    bool LoadCompleteTile8(ByteArray& Data, std::int32_t& Height, std::int32_t& Width);
    /// All masked 8 x 8 tiles in one image, with a mask image of the same size (15 where
    /// transparent, 0 where opaque).
    bool LoadCompleteMaskTile8(ByteArray& Data, ByteArray& Mask, std::int32_t& Height,
                               std::int32_t& Width);
    /// A masked picture, its mask image and its size in pixels.
    bool LoadMaskPicture(std::int32_t Chunk, ByteArray& Data, ByteArray& Mask, std::int32_t& Height,
                         std::int32_t& Width);
    /// A 16-colour game's sprite, its mask image, its size in pixels and its table entry.
    bool LoadEGASprite(std::int32_t Chunk, ByteArray& Data, ByteArray& Mask, std::int32_t& Height,
                       std::int32_t& Width, typSpriteHead& SpriteHead);
    /// A picture's size in pixels from the picture table (masked pictures: from theirs).
    void GetPictureDimensions(std::int32_t Chunk, std::int32_t& Width, std::int32_t& Height);
    /// The names of an area-names chunk: 27 entries, the unused ones empty.
    bool LoadAreaNames(std::int32_t Chunk, std::vector<std::string>& AreaNames);

    /// Parses the expanded bytes of a font chunk.
    bool ParseFontData(const ByteArray& FontData, typFont& Font);
    /// A font chunk's expanded bytes.
    bool LoadWolfFont(std::int32_t Chunk, ByteArray& Data);
    /// One character, a byte per pixel, rows padded to a multiple of 4 with BackColor; a single
    /// byte of BackColor where the font does not have it.
    bool GetFontCharacter(std::int32_t FontNum, std::int32_t FontCharNum, ByteArray& ReturnData,
                          std::int32_t BackColor = 0, std::int32_t ForeColor = 15);
    /// A text in font number `Font`, lines split at "\r\n", rows padded as above. `ReturnWidth` is
    /// the width without padding; a text without ink across is an empty array.
    bool ConvertTextToFont(std::int32_t Font, const std::string& Text, ByteArray& ReturnData,
                           std::int32_t& ReturnWidth, std::int32_t& ReturnHeight,
                           std::int32_t BackColor = 0, std::int32_t ForeColor = 15);

    /// The length in bits of a byte value's code in the compile dictionary.
    std::int32_t GetByteHuffLength(std::uint8_t Value);
    /// The size of `Data` compressed with the compile dictionary, length field included; -1 on
    /// failure.
    std::int32_t GetCompressedSize(const ByteArray& Data);
    /// Builds the dictionary for 256 byte counts and writes it to OutputFolder under the compile
    /// extension. The loaded dictionary is not changed by this.
    bool BuildVGADICT(const std::vector<std::int32_t>& Counts);

    /// Writes header, data and dictionary anew into OutputFolder. Chunks nobody replaced keep
    /// their stored bytes as long as the dictionary stays the same; the dictionary is the one
    /// given with LoadCompileVGADictFile, otherwise the one the files were read with. Before a file
    /// is replaced the new set is opened in memory: a chunk that would read back otherwise, or be
    /// taken for another kind, fails the save and is named.
    /// @return False after a failure (also when CanCompileVGAGraph is False): the old files stand
    ///         and the edits are kept.
    bool SaveVGAGraph();
    /// From a handler of SaveStatus alone: ends the save, which then fails with "The save was
    /// stopped." Anywhere else it fails with number 5.
    void StopSave();

    SaveStatusEvent SaveStatus;
    SaveErrorEvent SaveError;
    SaveCompleteEvent SaveComplete;

private:
    friend class GraphicsSave;
    struct Self;
    std::unique_ptr<Self> self_;
};

}  // namespace tessaro
