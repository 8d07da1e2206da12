// Palettes: the game's own, and those among the graphics chunks.
#include "items/item.h"
#include "report.h"

namespace tessaro::cli {

namespace {

/// Number 0 is the palette that the game starts with, any other number that of a chunk. Canonical
/// bytes: red, green and blue of the 256 colours, 8 bits each.
class PaletteKind : public ItemKind {
public:
    std::string Name() const override { return "palette"; }

    std::vector<int> Numbers(Game& game) const override {
        std::vector<int> numbers = {0};
        clsVGAGraph& graphics = game.Graphics();
        for (int i = 0; i < graphics.NumberDataTypeChunks(vgPalette); ++i)
            numbers.push_back(graphics.DataTypeChunk(vgPalette, i));
        return numbers;
    }

    Item Load(Game& game, int number) const override {
        Item item{number};
        if (number == 0) {
            for (const Rgb& color : CurrentColors(game.Palette()))
                item.bytes.insert(item.bytes.end(), {color.red, color.green, color.blue});
            return item;
        }
        std::vector<std::int32_t> colors;
        if (!game.Graphics().LoadWolfPalette(number, colors))
            Fail("palette " + std::to_string(number));
        for (const std::int32_t color : colors)
            for (const int shift : {0, 8, 16})
                item.bytes.push_back(static_cast<std::uint8_t>(color >> shift));
        return item;
    }

    void Extract(Game& game, const Item& item, Extraction& to) const override {
        ByteArray file;
        if (!game.Palette().CreatePaletteFileData(ptJASC3, item.bytes, file))
            Fail("palette " + std::to_string(item.number));
        to.Write(Stem(item) + ".pal", file, kPaletteFile);
    }
};

}  // namespace

std::vector<const ItemKind*> PaletteKinds() {
    static const PaletteKind palettes;
    return {&palettes};
}

}  // namespace tessaro::cli
