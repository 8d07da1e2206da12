// A graphics set as it was opened: header, data and dictionary, what they hold, and what the host
// changed since.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "foundation/data_file.h"
#include "foundation/game.h"
#include "graphics/chunk_form.h"
#include "saving/new_file.h"

namespace tessaro {

struct GraphicsOptions {
    bool j98 = false;
    TileLayout tile8{};  ///< of the 8 x 8 tiles, where a host gave one
};

/// What opening met and went on in spite of.
struct OpeningTrouble {
    std::string procedure;  ///< empty: the text alone is shown
    Failure failure;
};

struct GraphicsPaths {
    std::string header, data, dictionary;
};

/// The colour planes and the mask plane of a masked picture or sprite.
struct MaskedPlanes {
    ByteArray colors, mask;
};

inline bool IsText(enmVGRAGRAPHTypes type) {
    return type == vgEndArt || type == vgAreaNames;
}

/// What an operation says to a chunk of a type that it cannot serve.
[[noreturn]] void RefuseType();

struct GraphicsSet {
    struct Slot {
        /// The expanded bytes (texts in the system's code page) once they were loaded or given.
        std::optional<ByteArray> data;
        std::optional<ByteArray> mask;  ///< a mask plane that the host gave
        bool replaced = false;          ///< the data are the host's: the next save writes them
        bool inFile = true;             ///< false for chunks that were added
    };

    DataFile header, data, dictionaryFile;
    HuffDictionary dictionary{};
    std::vector<std::uint32_t> offsets;
    GraphicsCatalog opened, catalog;          ///< as found on opening; with the host's changes
    std::vector<typFont> openedFonts, fonts;  ///< font number n at n - 1
    std::vector<Slot> slots;
    bool couldLoadNonPictureData = false;
    std::vector<OpeningTrouble> troubles;

    /// Reads the set that is configured.
    static GraphicsSet Open(const Game& game, const Files& files, const GraphicsOptions& options);

    std::int32_t Count() const { return catalog.Count(); }
    Slot& SlotOf(std::int32_t chunk) { return slots[catalog.Index(chunk)]; }
    const Slot& SlotOf(std::int32_t chunk) const { return slots[catalog.Index(chunk)]; }
    /// A chunk's bytes as the data file holds them. Fails for one that it does not hold.
    ByteSpan StoredBytes(std::int32_t chunk) const;
    /// Brings a chunk into its slot, where it is not there already, and hands out its bytes.
    const ByteArray& Load(std::int32_t chunk);
    const typFont& Font(std::int32_t number) const;
    /// A picture's or masked picture's size in pixels.
    PictureSize SizeOf(std::int32_t chunk) const;
    const typSpriteHead& SpriteOf(std::int32_t chunk) const;
    /// The size of a masked picture or a sprite.
    PictureSize MaskedSizeOf(std::int32_t chunk) const;
    /// A loaded chunk's planes: the slot's, or the mask that the host gave.
    MaskedPlanes SplitMask(std::int32_t chunk, PictureSize size) const;

    /// The host's edits. What they refuse changes nothing.
    void Replace(std::int32_t chunk, const ByteArray& bytes);
    void ReplaceMask(std::int32_t chunk, const ByteArray& plane);
    void Resize(std::int32_t chunks);
    /// Drops what was loaded or replaced, but for the chunks that were added.
    void DropChunks();
    /// Drops the tiles that were loaded by the layout before.
    void DropTile8();

    /// Called with each chunk that is written, and before it with the chunk that is in work.
    struct Progress {
        std::function<void(std::int32_t chunk)> at, done;
    };
    /// The three files, coded with a dictionary.
    std::vector<NewFile> Write(const GraphicsPaths& paths, const HuffDictionary& codes,
                               const Progress& progress) const;
    /// Whether `reread` serves what this set was asked to write. Throws naming the chunk.
    void RequireSame(const GraphicsSet& reread) const;
    /// Takes over the files just written; what was loaded or given stays at hand.
    void Adopt(GraphicsSet&& reread);

private:
    void LoadHuffman(const Game& game, const Files& files);
    void LoadHeader(const Game& game, const Files& files);
    void LoadPictureDimensions();
    void LoadWolfFonts();
    void LoadNonPictureData();
    void TypeJ98Chunks();
    std::int32_t FindFonts(std::int32_t limit);
    void TypeByTables(std::int32_t tables);
    void TypeChunk(std::int32_t chunk);
    void FindTilesAmongPictures();
    std::optional<ByteSpan> StoredIfThere(std::int32_t chunk) const;

    std::size_t PictureIndex(std::int32_t chunk) const;
    /// The bytes that a picture of its table's size has.
    std::int64_t PictureBytes(std::int32_t chunk) const;
    /// Refuses bytes that an opening would not take for a font, a picture or tiles.
    void RequireForm(std::int32_t chunk, ByteSpan bytes) const;
    ByteArray MaskOf(std::int32_t chunk, std::size_t planeSize) const;
    /// The bytes of a chunk to edit, with all tiles that are stored.
    ByteArray Whole(std::int32_t chunk);
    ByteArray FromImage(std::int32_t chunk, const ByteArray& image);
    void ResizePicture(std::int32_t chunk, PictureSize size);

    std::optional<ByteArray> Encode(std::int32_t chunk, const HuffDictionary& codes) const;
    enmVGRAGRAPHTypes WantedType(std::int32_t chunk) const;
    bool SameBytes(std::int32_t chunk, const GraphicsSet& reread) const;
};

/// Whether the bytes are a BMP image: the signature and a size that agrees.
bool IsBMPImage(ByteSpan bytes);

}  // namespace tessaro
