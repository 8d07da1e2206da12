#include "foundation/bytes.h"
#include "graphics/picture_planes.h"
#include "pagefile/column_images.h"
#include "pagefile/page_file.h"
#include "pagefile/sprite_chunk.h"
#include "sample/art.h"
#include "sample/game_files.h"
#include "sample/letters.h"
#include "sample/maps.h"
#include "sample/sample.h"
#include "sample/sounds.h"
#include "sample/texts.h"

namespace tessaro::sample {
namespace {

constexpr std::size_t kPageAlignment = 512;

ByteArray MakePageFile() {
    PageFileImage pages(kPageAlignment);
    for (const Canvas& wall : DrawWalls())
        pages.AddChunk(Transposed(wall.Pixels(), 64, 64));
    const std::int32_t spriteStart = pages.Count();
    for (const Canvas& sprite : DrawSprites())
        pages.AddChunk(CompileSprite(Transposed(sprite.Pixels(), 64, 64), 64, vcNone));
    pages.AddChunk({});  // a sprite that this edition of the game does without
    const std::int32_t soundStart = pages.Count();

    ByteWriter list;
    for (const ByteArray& sound : MakeDigitisedSounds()) {
        list.U16(static_cast<std::uint16_t>(pages.Count() - soundStart));
        list.U16(static_cast<std::uint16_t>(sound.size()));
        pages.AddSound(sound);
    }
    pages.AddChunk(list.View());
    return pages.Assemble(spriteStart, soundStart);
}

std::vector<GraphicsChunk> MakeGraphics() {
    const std::vector<Canvas> pictures = DrawPictures();
    ByteWriter table;
    for (const Canvas& picture : pictures) {
        table.U16(static_cast<std::uint16_t>(picture.Width()));
        table.U16(static_cast<std::uint16_t>(picture.Height()));
    }
    std::vector<GraphicsChunk> chunks;
    chunks.push_back({.bytes = table.Release(), .endsGroup = true});
    chunks.push_back({.bytes = MakeFontChunk(1, false)});
    chunks.push_back({.bytes = MakeFontChunk(2, false), .endsGroup = true});
    for (const Canvas& picture : pictures)
        chunks.push_back({.bytes = FixPicturePlanesForStorage(picture.Pixels(), picture.Width(),
                                                              picture.Height())});
    chunks.back().endsGroup = true;

    ByteWriter tiles;
    for (const Canvas& tile : DrawTiles())
        tiles.Bytes(FixPicturePlanesForStorage(tile.Pixels(), 8, 8));
    chunks.push_back({.bytes = tiles.Release(), .isTile = true});

    chunks.push_back({.bytes = MakeEndScreen()});
    chunks.push_back({.bytes = MakeDuskPalette()});
    chunks.push_back({.bytes = MakeVgaDemo()});
    chunks.push_back({.bytes = MakeArticle()});
    return chunks;
}

}  // namespace

std::vector<SampleFile> MakeSampleGame() {
    const std::string extension = std::string(".") + kVgaExtension;
    MapFiles maps = WriteMapFiles(false);
    GameFiles graphics = WriteGraphicsFiles(MakeGraphics());
    GameFiles audio = WriteAudioFiles(false);
    return {{"MAPHEAD" + extension, std::move(maps.header)},
            {"GAMEMAPS" + extension, std::move(maps.data)},
            {"VSWAP" + extension, MakePageFile()},
            {"VGAHEAD" + extension, std::move(graphics.header)},
            {"VGAGRAPH" + extension, std::move(graphics.data)},
            {"VGADICT" + extension, std::move(graphics.dictionary)},
            {"AUDIOHED" + extension, std::move(audio.header)},
            {"AUDIOT" + extension, std::move(audio.data)}};
}

}  // namespace tessaro::sample
