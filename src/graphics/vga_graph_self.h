// The state of one graphics container.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "foundation/store.h"
#include "graphics/graphics_header.h"
#include "graphics/graphics_set.h"
#include "platform/file.h"
#include "saving/saving_flag.h"
#include "tessaro/vga_graph.h"

namespace tessaro {

/// The colour planes and the mask plane of a masked picture or sprite.
struct MaskedPlanes {
    ByteArray colors, mask;
};

struct clsVGAGraph::Self {
    struct Slot {
        /// The expanded bytes (texts in the system's code page) once they were loaded or given.
        std::optional<ByteArray> data;
        std::optional<ByteArray> mask;  ///< a mask plane that the host gave
        bool replaced = false;          ///< the data are the host's: the next save writes them
        bool inFile = true;             ///< false for chunks that were added
    };

    bool j98Mode = false;
    bool tile8Given = false;  ///< by the host: such a layout outlives the next opening
    bool couldLoadNonPictureData = false;
    GraphicsSet set;
    std::vector<Slot> slots;
    std::vector<typFont> fonts;  ///< font number n at n - 1
    // The picture sizes and fonts without the host's edits.
    std::vector<PictureSize> storedPictures;
    std::vector<typFont> storedFonts;

    // The data file, and where it had which chunk when it was opened.
    std::string dataPath;
    std::vector<std::uint32_t> offsets;
    std::int64_t dataSize = 0;
    File file;
    SavingFlag saving;
    ByteArray whole;  ///< the file's bytes while the set is being opened

    /// A container without a set, configured as this one is.
    Self Fresh() const;
    bool Open();
    /// Sets what the configuration permits for the game in the data folder.
    void ProbeGame() const;
    bool LoadHuffman();
    bool LoadHeader();
    bool LoadPictureDimensions();
    bool LoadWolfFonts();
    bool LoadNonPictureData();

    Slot& SlotOf(std::int32_t chunk) { return slots[set.Index(chunk)]; }
    /// A chunk's stored bytes from the data file, which is opened for it where necessary.
    ByteArray ReadStored(std::int32_t chunk);
    /// Brings a chunk into its slot; a failure has been reported.
    bool Cache(std::int32_t chunk);
    /// The bytes of a chunk that is in its slot.
    const ByteArray& Data(std::int32_t chunk) { return *SlotOf(chunk).data; }
    const typFont& Font(std::int32_t number) const;

    /// A picture's or masked picture's size in pixels.
    PictureSize& SizeOf(std::int32_t chunk);
    PictureSize SizeOf(std::int32_t chunk) const { return const_cast<Self*>(this)->SizeOf(chunk); }
    typSpriteHead& SpriteOf(std::int32_t chunk);
    void Replace(std::int32_t chunk, const ByteArray& data);
    void Resize(std::int32_t chunks);

    MaskedPlanes SplitMask(std::int32_t chunk, PictureSize size);
    /// A masked picture's mask plane: the host's, or the slot's; without any mask all is opaque.
    ByteArray MaskOf(std::int32_t chunk, std::size_t planeSize);

    bool Save(const SaveStatusEvent& status, const SaveErrorEvent& error);

private:
    std::optional<ByteArray> StoredAtOpening(std::size_t chunk) const;
    void TypeJ98Chunks();
    void TypeTables(std::int32_t tables);
    std::int32_t FindFonts(std::int32_t limit);
    ByteArray StoredForm(std::int32_t chunk, const ByteArray& image);
    void ResizePicture(std::int32_t chunk, PictureSize size);

    struct NewData {
        ByteArray data;
        std::vector<std::uint32_t> offsets;
    };
    /// A chunk in the form in which a save with `dictionary` stores it; nothing where it is sparse.
    std::optional<ByteArray> Encode(std::int32_t chunk, const HuffDictionary& dictionary);
    /// `chunk` says where it got to.
    NewData EncodeAll(const HuffDictionary& dictionary, const SaveStatusEvent& status,
                      std::int32_t& chunk);
    /// Serves the files just written in place of those that were open.
    void Adopt(const std::vector<std::uint32_t>& newOffsets, std::size_t newSize,
               const HuffDictionary& dictionary);
};

/// Whether the bytes are a BMP image: the signature and a size that agrees.
bool IsBMPImage(ByteSpan bytes);

inline bool IsText(enmVGRAGRAPHTypes type) {
    return type == vgEndArt || type == vgAreaNames;
}

/// What an operation says to a chunk of a type that it cannot serve.
[[noreturn]] void RefuseType();

}  // namespace tessaro
