#include "drawing/cell_pictures.h"

#include <algorithm>

#include "console.h"
#include "report.h"

namespace tessaro::cli {

namespace {

// Catacomb: the chunk of value 0 on the ground and of the thing 0.
constexpr int kFirstGroundTile = 168, kFirstThingTile = 384;
constexpr int kTileSide = 16;
constexpr std::size_t kTilePlane = kTileSide * kTileSide / 8, kMaskedTile = 5 * kTilePlane;

template <class Container>
Container* OpenedOrNothing(Game& game, Container& (Game::*open)()) {
    try {
        return &(game.*open)();
    } catch (const CommandError&) {
        TheConsole().TakeReason();
        return nullptr;
    }
}

}  // namespace

CellPictures::CellPictures(Game& game) : game_(game), set_(CellSetOf(game.Version())) {
    if (game.HasPages())
        pages_ = OpenedOrNothing(game, &Game::Pages);
    if (set_ == CellSet::Catacomb)
        graphics_ = OpenedOrNothing(game, &Game::Graphics);
}

const IndexedImage* CellPictures::Of(int plane, std::int32_t value) {
    const auto [entry, isNew] = known_.try_emplace({plane, value});
    if (isNew)
        entry->second = Load(plane, value);
    return entry->second.width > 0 ? &entry->second : nullptr;
}

IndexedImage CellPictures::Load(int plane, std::int32_t value) {
    if (set_ == CellSet::Unknown || value <= 0)
        return {};
    if (set_ == CellSet::Catacomb) {
        if (plane != 0 && plane != ThingPlane(set_))
            return {};
        return LoadTile((plane == 0 ? kFirstGroundTile : kFirstThingTile) + value);
    }
    const CellValue& meaning = ValueOf(set_, plane, value);
    if (meaning.kind == CellKind::Wall)
        return LoadWall(value);
    return meaning.sprite >= 0 ? LoadSprite(meaning.sprite) : IndexedImage{};
}

/// Each wall has two pictures, the lit one first; the last eight are those of the doors.
IndexedImage CellPictures::LoadWall(std::int32_t value) {
    constexpr int kDoorPictures = 8;
    const int number = (value - 1) * 2;
    ByteArray bmp;
    if (!pages_ || number >= pages_->NumberOfWalls() - kDoorPictures ||
        !pages_->LoadWall(number, bmp) || bmp.size() < 2)
        return {};
    return FromBmp(bmp);
}

IndexedImage CellPictures::LoadSprite(int number) {
    ByteArray bmp;
    if (!pages_ || number >= pages_->NumberOfSprites() || !pages_->LoadSprite(number, bmp) ||
        bmp.size() < 2)
        return {};
    IndexedImage image = FromBmp(bmp);
    image.hole = kHole;
    return image;
}

IndexedImage CellPictures::LoadTile(int chunk) {
    if (!graphics_ || chunk >= graphics_->NumberOfChunks())
        return {};
    const enmVGRAGRAPHTypes type = graphics_->ChunkDataType(chunk);
    ByteArray bytes;
    if (type == vgTile16) {
        std::int32_t height = 0, width = 0;
        if (graphics_->LoadWolfPicture(chunk, bytes, height, width))
            return FromBmp(bytes);
    } else if (type == vgTile16M && graphics_->LoadTessaro(chunk, bytes) &&
               bytes.size() == kMaskedTile) {
        return MaskedTile(bytes, CurrentColors(game_.Palette()));
    }
    TheConsole().TakeReason();
    return {};
}

const Stamp* CellStamps::Of(int plane, std::int32_t value) {
    const auto [entry, isNew] = known_.try_emplace({plane, value});
    if (isNew)
        entry->second = Make(plane, value);
    return entry->second.width > 0 ? &entry->second : nullptr;
}

Stamp CellStamps::Make(int plane, std::int32_t value) {
    constexpr int kWallBrightness = 288;  // small pictures look darker
    const IndexedImage* picture = pictures_.Of(plane, value);
    if (!picture)
        return {};
    if (Set() == CellSet::Catacomb)
        return Scaled(*picture, size_, size_);
    if (plane == 0)
        return Scaled(*picture, size_, size_, kWallBrightness);
    const IndexedImage sprite = Cropped(*picture);
    if (sprite.width == 0)
        return {};
    const int longer = std::max(sprite.width, sprite.height);
    return Scaled(sprite, std::max(1, sprite.width * size_ / longer),
                  std::max(1, sprite.height * size_ / longer));
}

/// A mask plane, 1 where transparent, then a plane each for blue, green, red and bright; the
/// leftmost pixel is the highest bit.
IndexedImage MaskedTile(const ByteArray& chunk, const Colors& colors) {
    IndexedImage image{kTileSide, kTileSide, {}, colors, 16, {}, {}};
    for (std::size_t pixel = 0; pixel < kTilePlane * 8; ++pixel) {
        const auto bit = [&](std::size_t plane) {
            return chunk[plane * kTilePlane + pixel / 8] >> (7 - pixel % 8) & 1;
        };
        image.mask.push_back(static_cast<std::uint8_t>(bit(0)));
        image.pixels.push_back(
            static_cast<std::uint8_t>(bit(1) | bit(2) << 1 | bit(3) << 2 | bit(4) << 3));
    }
    return image;
}

}  // namespace tessaro::cli
