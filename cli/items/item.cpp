#include "items/item.h"

#include <numeric>

#include "files.h"
#include "known/item_names.h"
#include "report.h"

namespace tessaro::cli {

std::string Extraction::Path(const std::string& name) {
    CreateFolders(folder_);
    ++files_;
    return PathIn(folder_, name);
}

void Extraction::Write(const std::string& name, const ByteArray& bytes, const FileKind& kind) {
    WriteFile(Path(name), bytes, kind);
}

void Extraction::Later(const std::string& name, const FileKind& kind,
                       std::function<ByteArray()> make) {
    workers_.Do(
        [path = Path(name), &kind, make = std::move(make)] { WriteFile(path, make(), kind); });
}

void Extraction::Write(const std::string& stem, const IndexedImage& image) {
    if (asBmp_)
        Later(stem + ".bmp", kBmpFile,
              [image] { return ToBmp(image, image.colorCount == 16 ? 4 : 8); });
    else
        Later(stem + ".png", kPngFile, [image] { return ToPng(image); });
}

void Extraction::Write(const std::string& stem, Canvas drawing) {
    Later(stem + ".png", kPngFile, [drawing = std::move(drawing)] { return drawing.Png(); });
}

void Extraction::Finish() {
    for (const std::string& failure : workers_.Finish())
        ReportAndGoOn(failure);
}

CellStamps& Extraction::Stamps(Game& game) {
    constexpr int kCell = 16;
    if (!stamps_)
        stamps_ = std::make_unique<CellStamps>(game, kCell);
    return *stamps_;
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
