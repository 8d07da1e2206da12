#include "items/item.h"

#include <numeric>

#include "files.h"
#include "known/item_names.h"

namespace tessaro::cli {

std::string Extraction::Path(const std::string& name) {
    CreateFolders(folder_);
    ++files_;
    return PathIn(folder_, name);
}

void Extraction::Write(const std::string& name, const ByteArray& bytes, const FileKind& kind) {
    WriteFile(Path(name), bytes, kind);
}

void Extraction::Write(const std::string& stem, const IndexedImage& image) {
    if (asBmp_)
        Write(stem + ".bmp", ToBmp(image, image.colorCount == 16 ? 4 : 8), kBmpFile);
    else
        Write(stem + ".png", ToPng(image), kPngFile);
}

std::string ItemKind::Stem(const Item& item) const {
    return Name() + "-" + Padded(item.number, 3) + (item.label ? "-" + SafeName(*item.label) : "");
}

const std::vector<const ItemKind*>& ItemKinds() {
    static const std::vector<const ItemKind*> kinds = [] {
        std::vector<const ItemKind*> all;
        for (const auto& room :
             {MapKinds(), PageKinds(), GraphicsKinds(), AudioKinds(), PaletteKinds()})
            all.insert(all.end(), room.begin(), room.end());
        return all;
    }();
    return kinds;
}

bool HasNoData(const ByteArray& bytes) {
    return bytes.empty() || (bytes.size() == 1 && bytes[0] == 0);
}

Item LoadNamed(Game& game, const ItemKind& kind, int number) {
    Item item = kind.Load(game, number);
    if (const KnownItem* known = game.Names().Of(kind.Name(), number)) {
        item.label = known->name;
        if (!known->meaning.empty())
            item.meaning = known->meaning;
    }
    return item;
}

std::vector<int> CountedFrom0(int count) {
    std::vector<int> numbers(static_cast<std::size_t>(count > 0 ? count : 0));
    std::iota(numbers.begin(), numbers.end(), 0);
    return numbers;
}

}  // namespace tessaro::cli
