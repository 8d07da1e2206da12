#include <algorithm>
#include <limits>

#include "foundation/bytes.h"
#include "graphics/picture_planes.h"
#include "palette/builtin_palettes.h"
#include "sample/art.h"
#include "sample/game_files.h"
#include "sample/letters.h"
#include "sample/maps.h"
#include "sample/sample.h"
#include "sample/texts.h"

namespace tessaro::sample {
namespace {

constexpr int kClear = 255;

/// The nearest of the 16 colours, with a fine pattern where a colour lies between two of them.
int SixteenColors(int color, int x, int y) {
    constexpr int kPattern[2][2] = {{-24, 8}, {24, -8}};
    static const PaletteBytes palette = BuiltInPalette(std::string_view());
    const auto part = [&](int entry, std::size_t i) {
        return int{palette[static_cast<std::size_t>(entry) * 3 + i]};
    };
    int best = 0, bestDistance = std::numeric_limits<int>::max();
    for (int entry = 0; entry < 16; ++entry) {
        int distance = 0;
        for (std::size_t i = 0; i < 3; ++i) {
            const int off = part(color, i) + kPattern[y & 1][x & 1] - part(entry, i);
            distance += off * off;
        }
        if (distance < bestDistance) {
            bestDistance = distance;
            best = entry;
        }
    }
    return best;
}

/// A part of a drawing, every `step`-th pixel of it, in 16 colours; transparent pixels stay so.
Canvas Reduced(const Canvas& from, int left, int top, int width, int height, int step = 1) {
    Canvas reduced(width, height, kClear);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            if (const int color = from.At(left + x * step, top + y * step); color != kClear)
                reduced.Dot(x, y, SixteenColors(color, x, y));
    return reduced;
}

Canvas Reduced(const Canvas& from) {
    return Reduced(from, 0, 0, from.Width(), from.Height());
}

/// A sprite without the empty columns and rows around it, its width a multiple of 8.
Canvas Cropped(const Canvas& from) {
    int left = from.Width(), top = from.Height(), right = 0, bottom = 0;
    for (int y = 0; y < from.Height(); ++y)
        for (int x = 0; x < from.Width(); ++x)
            if (from.At(x, y) != kClear) {
                left = std::min(left, x / 8 * 8);
                right = std::max(right, x / 8 * 8 + 8);
                top = std::min(top, y);
                bottom = std::max(bottom, y + 1);
            }
    return Reduced(from, left, top, right - left, bottom - top);
}

ByteArray Planes(const Canvas& canvas) {
    return EgaPlanesFromPixels(canvas.Pixels(), canvas.Width(), canvas.Height());
}

ByteArray MaskedPlanes(const Canvas& canvas) {
    ByteArray colors = canvas.Pixels(), clear(colors.size());
    for (std::size_t i = 0; i < colors.size(); ++i)
        if (colors[i] == kClear) {
            colors[i] = 0;
            clear[i] = 15;
        }
    ByteArray planes = EgaMaskFromPixels(clear, canvas.Width(), canvas.Height());
    const ByteArray color = EgaPlanesFromPixels(colors, canvas.Width(), canvas.Height());
    planes.insert(planes.end(), color.begin(), color.end());
    return planes;
}

ByteArray SizeTable(const std::vector<Canvas>& pictures) {
    ByteWriter table;
    for (const Canvas& picture : pictures) {
        table.U16(static_cast<std::uint16_t>(picture.Width() / 8));
        table.U16(static_cast<std::uint16_t>(picture.Height()));
    }
    return table.Release();
}

ByteArray SpriteTable(const std::vector<Canvas>& sprites) {
    ByteWriter table;
    for (const Canvas& sprite : sprites) {
        table.U16(static_cast<std::uint16_t>(sprite.Width() / 8));
        table.U16(static_cast<std::uint16_t>(sprite.Height()));
        table.Fill(8, 0);  // origin and the rectangle's upper left corner
        table.U16(static_cast<std::uint16_t>((sprite.Width() - 1) * 16));
        table.U16(static_cast<std::uint16_t>((sprite.Height() - 1) * 16));
        table.U16(4);
    }
    return table.Release();
}

/// 104 tiles: those of the 256-colour game, then the letters from blank on.
ByteArray Tiles8() {
    ByteWriter tiles;
    const std::vector<Canvas> drawn = DrawTiles();
    for (std::size_t i = 0; i < 104; ++i) {
        Canvas letter(8, 8, 1);
        letter.Text(1, 0, 1, 15, std::string(1, static_cast<char>(' ' + i - drawn.size())));
        tiles.Bytes(Planes(i < drawn.size() ? Reduced(drawn[i]) : letter));
    }
    return tiles.Release();
}

/// 12 masked tiles: lights that grow.
ByteArray MaskedTiles8() {
    ByteWriter tiles;
    for (int i = 0; i < 12; ++i) {
        Canvas tile(8, 8, kClear);
        tile.Disc(3 + i % 2, 4 - i % 3, 1 + i % 4, i % 2 == 0 ? 14 : 12);
        tile.Dot(3 + i % 2, 4 - i % 3, 15);
        tile.Dot(i % 8, 7 - i % 5, 6);
        tiles.Bytes(MaskedPlanes(tile));
    }
    return tiles.Release();
}

std::vector<GraphicsChunk> MakeGraphics() {
    const std::vector<Canvas> drawn = DrawPictures(), walls = DrawWalls(), figures = DrawSprites();
    std::vector<Canvas> pictures, masked, sprites;
    for (std::size_t i : {0u, 1u, 2u, 4u, 5u, 6u})
        pictures.push_back(Reduced(drawn[i]));
    masked.push_back(Cropped(figures[0]));           // the keeper
    masked.push_back(Cropped(figures[3]));           // a plant
    for (std::size_t i : {7u, 8u, 9u, 10u, 5u, 6u})  // beetles, key, coins
        sprites.push_back(Cropped(figures[i]));

    std::vector<GraphicsChunk> chunks;
    chunks.push_back({.bytes = SizeTable(pictures)});
    chunks.push_back({.bytes = SizeTable(masked)});
    chunks.push_back({.bytes = SpriteTable(sprites), .endsGroup = true});
    chunks.push_back({.bytes = MakeFontChunk(1, true)});
    chunks.push_back({.bytes = MakeFontChunk(2, true), .endsGroup = true});
    for (const Canvas& picture : pictures)
        chunks.push_back({.bytes = Planes(picture)});
    for (const Canvas& picture : masked)
        chunks.push_back({.bytes = MaskedPlanes(picture)});
    for (const Canvas& sprite : sprites)
        chunks.push_back({.bytes = MaskedPlanes(sprite)});
    chunks.back().endsGroup = true;
    chunks.push_back({.bytes = Tiles8(), .isTile = true});
    chunks.push_back({.bytes = MaskedTiles8(), .isTile = true});
    for (std::size_t i = 0; i < 8; ++i) {  // walls in small, one place left free
        if (i == 5)
            chunks.push_back({.sparse = true});
        chunks.push_back({.bytes = Planes(Reduced(walls[i], 0, 0, 16, 16, 4)), .isTile = true});
    }
    for (std::size_t i : {10u, 2u, 1u, 0u}) {
        chunks.push_back(
            {.bytes = MaskedPlanes(Reduced(figures[i], 0, 0, 16, 16, 4)), .isTile = true});
        if (i == 2)
            chunks.push_back({.sparse = true});
    }
    chunks.push_back({.bytes = MakeAreaNames()});
    chunks.push_back({.bytes = MakeArticle()});
    chunks.push_back({.bytes = MakeEgaDemo()});
    chunks.push_back({.bytes = MakeTextScreen()});
    return chunks;
}

}  // namespace

std::vector<SampleFile> MakeEgaSampleGame() {
    const std::string extension = std::string(".") + kEgaExtension;
    MapFiles maps = WriteMapFiles(true);
    GameFiles graphics = WriteGraphicsFiles(MakeGraphics());
    GameFiles audio = WriteAudioFiles(true);
    return {{"MAPHEAD" + extension, std::move(maps.header)},
            {"MAPTEMP" + extension, std::move(maps.data)},
            {"EGAHEAD" + extension, std::move(graphics.header)},
            {"EGAGRAPH" + extension, std::move(graphics.data)},
            {"EGADICT" + extension, std::move(graphics.dictionary)},
            {"AUDIOHED" + extension, std::move(audio.header)},
            {"AUDIOT" + extension, std::move(audio.data)},
            {"AUDIODCT" + extension, std::move(audio.dictionary)}};
}

}  // namespace tessaro::sample
