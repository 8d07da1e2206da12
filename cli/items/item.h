// Everything a game holds, kind by kind: what `list` shows and `extract` writes.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "drawing/cell_pictures.h"
#include "file_kinds.h"
#include "game.h"
#include "pictures/canvas.h"
#include "workers.h"

namespace tessaro::cli {

/// One item of a game. What does not apply to its kind stays unset.
struct Item {
    int number = 0;
    std::optional<std::string> name{}, type{};
    std::optional<std::string> label{}, meaning{};  ///< what the item is known as
    std::optional<int> width{}, height{}, notes{};
    bool empty = false;               ///< the game has the number but no data for it
    ByteArray bytes{};                ///< the canonical bytes, whose checksum `list` shows
    std::vector<ByteArray> planes{};  ///< maps: the canonical bytes plane by plane
    std::optional<IndexedImage> image{};
};

/// Where extracted files go, and how pictures are written.
class Extraction {
public:
    Extraction(std::string folder, bool asBmp) : folder_(std::move(folder)), asBmp_(asBmp) {}

    /// A path for a file of the given name, below the folder.
    std::string Path(const std::string& name);
    void Write(const std::string& name, const ByteArray& bytes,
               const FileKind& kind = kExtractedFile);
    /// Writes a picture as `stem`.png or .bmp.
    void Write(const std::string& stem, const IndexedImage& image);
    /// Writes a drawing as `stem`.png.
    void Write(const std::string& stem, Canvas drawing);
    /// Waits for what is being written, and reports what could not be.
    void Finish();
    int Files() const { return files_; }
    /// What map pictures are made of, kept from map to map.
    CellStamps& Stamps(Game& game);

private:
    /// The bytes are made and written on another thread.
    void Later(const std::string& name, const FileKind& kind, std::function<ByteArray()> make);

    std::string folder_;
    bool asBmp_;
    int files_ = 0;
    std::unique_ptr<CellStamps> stamps_;
    Workers workers_;
};

/// One kind of items. A kind that a game cannot have is not `In` it.
class ItemKind {
public:
    virtual ~ItemKind() = default;
    virtual std::string Name() const = 0;
    virtual bool In(Game&) const { return true; }
    virtual std::vector<int> Numbers(Game& game) const = 0;
    virtual Item Load(Game& game, int number) const = 0;
    virtual void Extract(Game& game, const Item& item, Extraction& to) const = 0;

protected:
    /// "sound-000-HALTSND": the file name of an item, without an extension.
    std::string Stem(const Item& item) const;
};

/// What has no data crosses the interface as nothing, or as one zero byte.
bool HasNoData(const ByteArray& bytes);

/// Loads an item and says what it is known as.
Item LoadNamed(Game& game, const ItemKind& kind, int number);

/// In the order in which `list` shows them.
const std::vector<const ItemKind*>& ItemKinds();

/// 0 to `count` - 1.
std::vector<int> CountedFrom0(int count);

// The kinds, by the room that they come from.
std::vector<const ItemKind*> MapKinds();
std::vector<const ItemKind*> PageKinds();
std::vector<const ItemKind*> GraphicsKinds();
std::vector<const ItemKind*> AudioKinds();
std::vector<const ItemKind*> PaletteKinds();

}  // namespace tessaro::cli
