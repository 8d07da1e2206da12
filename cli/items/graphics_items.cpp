// Chunks of the graphics file, and the pictures and fonts among them.
#include <algorithm>
#include <array>

#include "items/item.h"
#include "pictures/text_screen.h"
#include "report.h"

namespace tessaro::cli {

namespace {

constexpr std::size_t kScreenHeader = 7, kScreenCells = 4000;

std::string TypeName(enmVGRAGRAPHTypes type) {
    constexpr std::array kNames = {
        "vgSparse",    "vgBMPMaskHead", "vgSpriteHead",   "vgSTRUCTPIC", "vgUnknown", "vgFont",
        "vgPicture",   "vgTile8",       "vgEndScreen",    "vgPalette",   "vgDemo",    "vgEndArt",
        "vgBMPMask",   "vgSprite",      "vgTile8m",       "vgTile16",    "vgTile16M", "vgJAMP",
        "vgAreaNames", "vgMisc",        "vgTrucEndScreen"};
    static_assert(kNames.size() == vgTrucEndScreen - vgSparse + 1);
    const auto index = static_cast<std::size_t>(type - vgSparse);
    return index < kNames.size() ? kNames[index] : "vgUnknown";
}

ByteArray LoadBytes(Game& game, int chunk) {
    ByteArray bytes;
    if (!game.Graphics().LoadTessaro(chunk, bytes))
        Fail("chunk " + std::to_string(chunk));
    return bytes;
}

/// Canonical bytes: the expanded bytes. Extracted: those bytes, and what they show.
class ChunkKind : public ItemKind {
public:
    std::string Name() const override { return "chunk"; }
    std::vector<int> Numbers(Game& game) const override {
        return CountedFrom0(game.Graphics().NumberOfChunks());
    }

    Item Load(Game& game, int number) const override {
        Item item{number};
        const enmVGRAGRAPHTypes type = game.Graphics().ChunkDataType(number);
        item.type = TypeName(type);
        item.empty = type == vgSparse;
        if (!item.empty)
            item.bytes = LoadBytes(game, number);
        item.empty = HasNoData(item.bytes);
        return item;
    }

    void Extract(Game& game, const Item& item, Extraction& to) const override {
        const enmVGRAGRAPHTypes type = game.Graphics().ChunkDataType(item.number);
        const bool text = type == vgEndArt || type == vgAreaNames;
        to.Write(Stem(item) + (text ? ".txt" : ".bin"), item.bytes);
        const bool hasHeader = type == vgEndScreen;
        const std::size_t cells = hasHeader ? kScreenHeader : 0;
        if ((hasHeader || type == vgTrucEndScreen) && item.bytes.size() >= cells + kScreenCells)
            to.Write(Stem(item), DrawTextScreen(item.bytes.data() + cells));
        ExtractTiles(game, type, item, to);
    }

private:
    void ExtractTiles(Game& game, enmVGRAGRAPHTypes type, const Item& item, Extraction& to) const {
        clsVGAGraph& graphics = game.Graphics();
        ByteArray bmp, mask;
        std::int32_t height = 0, width = 0;
        bool drawn = false;
        if (type == vgTile8 && graphics.DataTypeChunk(vgTile8, 0) == item.number)
            drawn = graphics.LoadCompleteTile8(bmp, height, width);
        else if (type == vgTile8m && graphics.DataTypeChunk(vgTile8m, 0) == item.number)
            drawn = graphics.LoadCompleteMaskTile8(bmp, mask, height, width);
        else if (type == vgTile16)
            drawn = graphics.LoadWolfPicture(item.number, bmp, height, width);
        else
            return;
        if (!drawn)
            Fail("the tiles of chunk " + std::to_string(item.number));
        IndexedImage image = FromBmp(bmp);
        if (!mask.empty())
            image.mask = FromBmp(mask).pixels;
        to.Write(Stem(item), image);
    }
};

/// Pictures, and in 16-colour games masked pictures and sprites, by their chunk numbers. Canonical
/// bytes: the palette indices, row by row.
class PictureKind : public ItemKind {
public:
    std::string Name() const override { return "picture"; }

    std::vector<int> Numbers(Game& game) const override {
        clsVGAGraph& graphics = game.Graphics();
        std::vector<int> numbers;
        const int first = graphics.StartPics(), end = first + graphics.NumberOfPics();
        for (int chunk = 0; chunk < graphics.NumberOfChunks(); ++chunk) {
            const enmVGRAGRAPHTypes type = graphics.ChunkDataType(chunk);
            if (type == vgPicture || type == vgBMPMask || type == vgSprite ||
                (type == vgSparse && chunk >= first && chunk < end))
                numbers.push_back(chunk);
        }
        return numbers;
    }

    Item Load(Game& game, int number) const override {
        clsVGAGraph& graphics = game.Graphics();
        Item item{number};
        const enmVGRAGRAPHTypes type = graphics.ChunkDataType(number);
        item.empty = type == vgSparse || HasNoData(LoadBytes(game, number));
        if (item.empty)
            return item;
        ByteArray bmp, mask;
        std::int32_t height = 0, width = 0;
        typSpriteHead head;
        const bool loaded =
            type == vgBMPMask  ? graphics.LoadMaskPicture(number, bmp, mask, height, width)
            : type == vgSprite ? graphics.LoadEGASprite(number, bmp, mask, height, width, head)
                               : graphics.LoadWolfPicture(number, bmp, height, width);
        if (!loaded)
            Fail("picture " + std::to_string(number));
        item.image = FromBmp(bmp);
        if (!mask.empty())
            item.image->mask = FromBmp(mask).pixels;
        item.width = width;
        item.height = height;
        item.bytes = item.image->pixels;
        return item;
    }

    void Extract(Game&, const Item& item, Extraction& to) const override {
        to.Write(Stem(item), *item.image);
    }
};

/// Canonical bytes: the pixels of all characters in turn. Extracted: a sheet of 16 x 16 characters.
class FontKind : public ItemKind {
public:
    std::string Name() const override { return "font"; }

    std::vector<int> Numbers(Game& game) const override {
        std::vector<int> numbers = CountedFrom0(game.Graphics().NumberOfFonts());
        for (int& number : numbers)
            number += game.Graphics().StartFonts();
        return numbers;
    }

    Item Load(Game& game, int number) const override {
        Item item{number};
        const typFont font = LoadFont(game, number);
        item.height = font.Height;
        for (const typChar& character : font.Chars)
            item.bytes.insert(item.bytes.end(), character.Points.begin(), character.Points.end());
        return item;
    }

    void Extract(Game& game, const Item& item, Extraction& to) const override {
        const typFont font = LoadFont(game, item.number);
        const int cellWidth = 1 + *std::max_element(font.Widths.begin(), font.Widths.end());
        const int cellHeight = 1 + font.Height;
        constexpr int kAcross = 16, kCharacters = 256;
        constexpr std::uint8_t kGround = 0, kInk = 15;
        IndexedImage sheet;
        sheet.width = kAcross * cellWidth;
        sheet.height = kCharacters / kAcross * cellHeight;
        sheet.colors = CurrentColors(game.Palette());
        sheet.pixels.assign(
            static_cast<std::size_t>(sheet.width) * static_cast<std::size_t>(sheet.height),
            kGround);
        for (int c = 0; c < kCharacters; ++c) {
            const auto index = static_cast<std::size_t>(c);
            const ByteArray& points = font.Chars[index].Points;
            const int width = font.Widths[index];
            for (std::size_t i = 0; i < points.size() && width > 0; ++i) {
                const int x = c % kAcross * cellWidth + static_cast<int>(i) % width;
                const int y = c / kAcross * cellHeight + static_cast<int>(i) / width;
                if (points[i] != 0)
                    sheet.pixels[static_cast<std::size_t>(y * sheet.width + x)] = kInk;
            }
        }
        to.Write(Stem(item), sheet);
    }

private:
    static typFont LoadFont(Game& game, int chunk) {
        ByteArray bytes;
        typFont font;
        if (!game.Graphics().LoadWolfFont(chunk, bytes) ||
            !game.Graphics().ParseFontData(bytes, font))
            Fail("font " + std::to_string(chunk));
        return font;
    }
};

}  // namespace

std::vector<const ItemKind*> GraphicsKinds() {
    static const ChunkKind chunks;
    static const PictureKind pictures;
    static const FontKind fonts;
    return {&chunks, &pictures, &fonts};
}

}  // namespace tessaro::cli
