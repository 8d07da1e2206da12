#include "drawing/map_picture.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "console.h"
#include "drawing/map_codes.h"
#include "report.h"
#include "variants.h"

namespace tessaro::cli {

namespace {

constexpr Rgb kFloor{52, 52, 56}, kRock{20, 20, 24}, kOutline{8, 8, 8}, kStart{64, 255, 64};
constexpr Rgb kSecretMark{255, 64, 255}, kTurnMark{84, 84, 92}, kExitMark{255, 255, 255};
constexpr Rgb kDoors[] = {{0, 190, 190}, {255, 200, 0}, {210, 210, 225}, {190, 110, 40}};
constexpr Rgb kObject{230, 200, 90};

Rgb EnemyColor(Enemy enemy) {
    switch (enemy) {
        case Enemy::Guard:
            return {200, 140, 80};
        case Enemy::Officer:
            return {235, 235, 235};
        case Enemy::Soldier:
            return {90, 120, 255};
        case Enemy::Dog:
            return {150, 90, 40};
        case Enemy::Mutant:
            return {120, 200, 120};
        case Enemy::Other:
            break;
    }
    return {255, 60, 50};
}

/// A colour for a number, far from those of its neighbours.
Rgb FlatColor(std::int32_t value) {
    const double hue = std::fmod(static_cast<double>(value) * 137.508, 360.0) / 60.0;
    const auto channel = [&](double offset) {
        const double wave =
            std::clamp(std::abs(std::fmod(hue + offset, 6.0) - 3.0) - 1.0, 0.0, 1.0);
        return static_cast<std::uint8_t>(70 + 120 * wave);
    };
    return {channel(0), channel(4), channel(2)};
}

/// A variant that nobody knows has the classic codes, unless it has 16 colours.
bool HasClassicCodes(const clsVersion& version) {
    const Variant* variant = VariantOf(version.Extension());
    return variant ? variant->codes == MapCodes::Classic : !version.EGAGraphics();
}

class MapPainter {
public:
    MapPainter(Game& game, int map, int cellSize) : game_(game), size_(cellSize) {
        std::int32_t width = 0, height = 0;
        if (!game.Maps().LoadMap(map, planes_, width, height))
            Fail("map " + std::to_string(map));
        width_ = width;
        height_ = height;
        if (std::int64_t{width_} * size_ > 16384 || std::int64_t{height_} * size_ > 16384)
            throw CommandError("the picture would be too large; give a smaller --cell");
        OpenPages();
    }

    Canvas Classic(MapCounts& counts);
    Canvas Flat();

private:
    void OpenPages();
    std::int32_t Cell(std::size_t plane, int x, int y) const;
    bool IsOpen(int x, int y) const;
    bool IsBuried(int x, int y) const;
    Rect Place(int x, int y) const { return {x * size_, y * size_, size_, size_}; }
    const IndexedImage* Picture(std::map<int, IndexedImage>& known, int number,
                                bool (clsVSwap::*load)(std::int32_t, ByteArray&), int count);
    const IndexedImage* WallPicture(std::int32_t cell);
    const IndexedImage* SpritePicture(int number);
    void DrawWall(Canvas& canvas, int x, int y);
    void DrawDoor(Canvas& canvas, int x, int y, const GroundCell& door);
    void DrawThing(Canvas& canvas, int x, int y, const ThingCell& thing);

    Game& game_;
    int size_, width_ = 0, height_ = 0;
    typMapPlane planes_;
    clsVSwap* pages_ = nullptr;
    std::map<int, IndexedImage> walls_, sprites_;
};

/// A page file that cannot be opened costs the pictures, not the map.
void MapPainter::OpenPages() {
    if (!game_.HasPages())
        return;
    try {
        pages_ = &game_.Pages();
    } catch (const CommandError&) {
        TheConsole().TakeReason();
    }
}

std::int32_t MapPainter::Cell(std::size_t plane, int x, int y) const {
    if (plane >= planes_.Plane.size())
        return 0;
    return planes_.Plane[plane]
        .Grid[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
              static_cast<std::size_t>(x)];
}

bool MapPainter::IsOpen(int x, int y) const {
    return x >= 0 && y >= 0 && x < width_ && y < height_ &&
           GroundOf(Cell(0, x, y)).ground != Ground::Wall;
}

/// Whether a wall is seen from nowhere: the rock between the rooms.
bool MapPainter::IsBuried(int x, int y) const {
    for (int dy = -1; dy <= 1; ++dy)
        for (int dx = -1; dx <= 1; ++dx)
            if (IsOpen(x + dx, y + dy))
                return false;
    return true;
}

const IndexedImage* MapPainter::Picture(std::map<int, IndexedImage>& known, int number,
                                        bool (clsVSwap::*load)(std::int32_t, ByteArray&),
                                        int count) {
    const auto [entry, isNew] = known.try_emplace(number);
    ByteArray bmp;
    if (isNew && number >= 0 && number < count && (pages_->*load)(number, bmp) && bmp.size() > 1)
        entry->second = FromBmp(bmp);
    return entry->second.width > 0 ? &entry->second : nullptr;
}

/// Each wall has two pictures, the lit one first; the last eight are those of the doors.
const IndexedImage* MapPainter::WallPicture(std::int32_t cell) {
    constexpr int kDoorPictures = 8;
    return pages_ ? Picture(walls_, (cell - 1) * 2, &clsVSwap::LoadWall,
                            pages_->NumberOfWalls() - kDoorPictures)
                  : nullptr;
}

const IndexedImage* MapPainter::SpritePicture(int number) {
    if (!pages_)
        return nullptr;
    const bool isNew = !sprites_.contains(number);
    const IndexedImage* picture =
        Picture(sprites_, number, &clsVSwap::LoadSprite, pages_->NumberOfSprites());
    if (picture && isNew) {
        sprites_[number].hole = kHole;
        sprites_[number] = Cropped(sprites_[number]);
    }
    return picture && picture->width > 0 ? picture : nullptr;
}

void MapPainter::DrawWall(Canvas& canvas, int x, int y) {
    if (IsBuried(x, y)) {
        canvas.Fill(Place(x, y), kRock);
        return;
    }
    const std::int32_t cell = Cell(0, x, y);
    if (const IndexedImage* picture = WallPicture(cell))
        canvas.Draw(*picture, Place(x, y), 288);
    else
        canvas.Fill(Place(x, y), FlatColor(cell));
}

void MapPainter::DrawDoor(Canvas& canvas, int x, int y, const GroundCell& door) {
    canvas.Fill(Place(x, y), kFloor);
    const int leaf = std::max(2, size_ / 4), aside = (size_ - leaf) / 2;
    const Rect area = door.upright ? Rect{x * size_ + aside, y * size_, leaf, size_}
                                   : Rect{x * size_, y * size_ + aside, size_, leaf};
    canvas.Fill(area, kDoors[door.lock]);
    if (size_ >= 8)
        canvas.Frame(area, kOutline);
}

void MapPainter::DrawThing(Canvas& canvas, int x, int y, const ThingCell& thing) {
    const Rect place = Place(x, y);
    const int half = size_ / 2, centerX = place.x + half, centerY = place.y + half;
    const int radius = std::max(1, half - 2);
    switch (thing.thing) {
        case Thing::Nothing:
            break;
        case Thing::Start:
            canvas.Disc(centerX, centerY, half, kOutline);
            canvas.Arrow(centerX, centerY, half, thing.direction, kStart);
            canvas.Frame({place.x - 1, place.y - 1, size_ + 2, size_ + 2}, kStart);
            break;
        case Thing::Object: {
            const IndexedImage* sprite = SpritePicture(thing.sprite);
            if (!sprite) {
                canvas.Disc(centerX, centerY, std::max(1, size_ / 5), kObject);
                break;
            }
            const int longer = std::max(sprite->width, sprite->height);
            const int width = std::max(1, sprite->width * size_ / longer);
            const int height = std::max(1, sprite->height * size_ / longer);
            canvas.Draw(*sprite, {centerX - width / 2, place.y + size_ - height, width, height});
            break;
        }
        case Thing::Turn:
            canvas.Arrow(centerX, centerY, size_ / 4, thing.direction, kTurnMark);
            break;
        case Thing::Secret:
            canvas.Frame(place, kSecretMark);
            canvas.Frame({place.x + 1, place.y + 1, size_ - 2, size_ - 2}, kSecretMark);
            if (size_ >= 12) {
                canvas.Fill({centerX - 4, centerY - 5, 8, 10}, kOutline);
                canvas.Text(centerX - 2, centerY - 4, "S", kSecretMark);
            }
            break;
        case Thing::Exit:
            canvas.Frame(place, kExitMark);
            break;
        case Thing::Enemy:
            canvas.Disc(centerX, centerY, radius, kOutline);
            canvas.Disc(centerX, centerY, radius - 1, EnemyColor(thing.enemy));
            if (thing.direction >= 0)
                canvas.Arrow(centerX, centerY, std::max(1, radius - 2), thing.direction, kOutline);
            break;
    }
}

Canvas MapPainter::Classic(MapCounts& counts) {
    Canvas canvas(width_ * size_, height_ * size_, kFloor);
    for (int y = 0; y < height_; ++y)
        for (int x = 0; x < width_; ++x) {
            const GroundCell ground = GroundOf(Cell(0, x, y));
            if (ground.ground == Ground::Wall)
                DrawWall(canvas, x, y);
            if (ground.ground == Ground::Door) {
                DrawDoor(canvas, x, y, ground);
                ++counts.doors;
            }
        }
    for (int y = 0; y < height_; ++y)
        for (int x = 0; x < width_; ++x) {
            const ThingCell thing = ThingOf(Cell(1, x, y));
            DrawThing(canvas, x, y, thing);
            counts.secrets += thing.thing == Thing::Secret;
            counts.enemies += thing.thing == Thing::Enemy;
            counts.objects += thing.thing == Thing::Object;
            counts.starts += thing.thing == Thing::Start;
        }
    return canvas;
}

/// Maps whose codes mean something else: each value of the first plane in a colour of its own, the
/// most frequent one as the ground, and a dot for what the other planes hold.
Canvas MapPainter::Flat() {
    std::map<std::int32_t, int> counts;
    for (const std::int32_t cell : planes_.Plane.front().Grid)
        ++counts[cell];
    const auto usual = std::max_element(counts.begin(), counts.end(),
                                        [](auto& a, auto& b) { return a.second < b.second; });
    Canvas canvas(width_ * size_, height_ * size_, kFloor);
    for (int y = 0; y < height_; ++y)
        for (int x = 0; x < width_; ++x) {
            const std::int32_t ground = Cell(0, x, y);
            if (ground != usual->first)
                canvas.Fill(Place(x, y), FlatColor(ground));
            for (std::size_t plane = 1; plane < planes_.Plane.size(); ++plane)
                if (const std::int32_t cell = Cell(plane, x, y)) {
                    const Rect place = Place(x, y);
                    const int inset = size_ / 4;
                    const Rect dot{place.x + inset, place.y + inset, size_ - 2 * inset,
                                   size_ - 2 * inset};
                    canvas.Fill(dot, Mixed(FlatColor(cell), {255, 255, 255}, 96));
                    canvas.Frame(dot, kOutline);
                }
        }
    return canvas;
}

}  // namespace

Canvas DrawMap(Game& game, int map, int cellSize, std::optional<MapCounts>* counts) {
    MapPainter painter(game, map, cellSize);
    if (!HasClassicCodes(game.Version()))
        return painter.Flat();
    MapCounts found;
    Canvas canvas = painter.Classic(found);
    if (counts)
        *counts = found;
    return canvas;
}

}  // namespace tessaro::cli
