#include "drawing/map_picture.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "console.h"
#include "drawing/cell_pictures.h"
#include "report.h"

namespace tessaro::cli {

namespace {

constexpr Rgb kFloor{52, 52, 56}, kRock{20, 20, 24}, kOutline{8, 8, 8}, kStart{64, 255, 64};
constexpr Rgb kSecretMark{255, 64, 255}, kTurnMark{84, 84, 92}, kExitMark{255, 255, 255};
constexpr Rgb kObject{230, 200, 90}, kBoss{255, 60, 50}, kStrange{255, 0, 0};
/// By their lock; 3 and 4 open with keys that no game has.
constexpr Rgb kDoors[] = {{0, 190, 190},   {255, 200, 0},   {210, 210, 225},
                          {120, 120, 120}, {120, 120, 120}, {190, 110, 40}};

Rgb BreedColor(Breed breed) {
    switch (breed) {
        case Breed::Guard:
            return {200, 140, 80};
        case Breed::Officer:
            return {235, 235, 235};
        case Breed::Soldier:
            return {90, 120, 255};
        case Breed::Dog:
            return {150, 90, 40};
        case Breed::Mutant:
            return {120, 200, 120};
        case Breed::Other:
            break;
    }
    return kBoss;
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

class MapPainter {
public:
    MapPainter(Game& game, CellStamps& stamps, int map) : stamps_(stamps), size_(stamps.Size()) {
        std::int32_t width = 0, height = 0;
        if (!game.Maps().LoadMap(map, planes_, width, height))
            Fail("map " + std::to_string(map));
        width_ = width;
        height_ = height;
        if (std::int64_t{width_} * size_ > 16384 || std::int64_t{height_} * size_ > 16384)
            throw CommandError("the picture would be too large; give a smaller --cell");
    }

    Canvas Draw(MapCounts& counts);

private:
    Canvas Classic(MapCounts& counts);
    Canvas Tiles(MapCounts& counts);
    Canvas Flat();
    std::int32_t Cell(std::size_t plane, int x, int y) const;
    const CellValue& Meaning(int plane, int x, int y) const;
    bool IsOpen(int x, int y) const;
    bool IsBuried(int x, int y) const;
    Rect Place(int x, int y) const { return {x * size_, y * size_, size_, size_}; }
    void DrawWall(Canvas& canvas, int x, int y);
    void DrawDoor(Canvas& canvas, int x, int y, const CellValue& door);
    void DrawThing(Canvas& canvas, int x, int y, const CellValue& thing);
    void DrawSprite(Canvas& canvas, int x, int y, Rgb without);
    void DrawStart(Canvas& canvas, const Rect& place, int direction);
    void DrawStrange(Canvas& canvas, const Rect& place);
    static void Count(const CellValue& thing, MapCounts& counts);

    CellStamps& stamps_;
    int size_, width_ = 0, height_ = 0;
    typMapPlane planes_;
};

std::int32_t MapPainter::Cell(std::size_t plane, int x, int y) const {
    if (plane >= planes_.Plane.size())
        return 0;
    return planes_.Plane[plane]
        .Grid[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
              static_cast<std::size_t>(x)];
}

const CellValue& MapPainter::Meaning(int plane, int x, int y) const {
    return ValueOf(stamps_.Set(), plane, Cell(static_cast<std::size_t>(plane), x, y));
}

bool MapPainter::IsOpen(int x, int y) const {
    return x >= 0 && y >= 0 && x < width_ && y < height_ && Meaning(0, x, y).kind != CellKind::Wall;
}

/// Whether a wall is seen from nowhere: the rock between the rooms.
bool MapPainter::IsBuried(int x, int y) const {
    for (int dy = -1; dy <= 1; ++dy)
        for (int dx = -1; dx <= 1; ++dx)
            if (IsOpen(x + dx, y + dy))
                return false;
    return true;
}

void MapPainter::DrawWall(Canvas& canvas, int x, int y) {
    if (IsBuried(x, y)) {
        canvas.Fill(Place(x, y), kRock);
        return;
    }
    const std::int32_t cell = Cell(0, x, y);
    if (const Stamp* picture = stamps_.Of(0, cell))
        canvas.Draw(*picture, x * size_, y * size_);
    else
        canvas.Fill(Place(x, y), FlatColor(cell));
}

void MapPainter::DrawDoor(Canvas& canvas, int x, int y, const CellValue& door) {
    canvas.Fill(Place(x, y), kFloor);
    const int leaf = std::max(2, size_ / 4), aside = (size_ - leaf) / 2;
    const Rect area = door.upright ? Rect{x * size_ + aside, y * size_, leaf, size_}
                                   : Rect{x * size_, y * size_ + aside, size_, leaf};
    canvas.Fill(area, kDoors[door.lock]);
    if (size_ >= 8)
        canvas.Frame(area, kOutline);
}

/// What stands on the ground, at the foot of its cell; where there is no picture, a dot.
void MapPainter::DrawSprite(Canvas& canvas, int x, int y, Rgb without) {
    const Rect place = Place(x, y);
    const std::int32_t cell = Cell(1, x, y);
    const Stamp* sprite = stamps_.Of(1, cell);
    if (sprite)
        canvas.Draw(*sprite, place.x + size_ / 2 - sprite->width / 2,
                    place.y + size_ - sprite->height);
    else
        canvas.Disc(place.x + size_ / 2, place.y + size_ / 2, std::max(1, size_ / 5), without);
}

void MapPainter::DrawStart(Canvas& canvas, const Rect& place, int direction) {
    const int half = size_ / 2, centerX = place.x + half, centerY = place.y + half;
    canvas.Disc(centerX, centerY, half, kOutline);
    canvas.Arrow(centerX, centerY, half, direction, kStart);
    canvas.Frame({place.x - 1, place.y - 1, size_ + 2, size_ + 2}, kStart);
}

/// A value that the game has no meaning for: a question mark, framed.
void MapPainter::DrawStrange(Canvas& canvas, const Rect& place) {
    canvas.Frame(place, kStrange);
    if (size_ >= 12)
        canvas.Text(place.x + size_ / 2 - 2, place.y + size_ / 2 - 4, "?", kStrange);
}

void MapPainter::DrawThing(Canvas& canvas, int x, int y, const CellValue& thing) {
    const Rect place = Place(x, y);
    const int half = size_ / 2, centerX = place.x + half, centerY = place.y + half;
    const int radius = std::max(1, half - 2);
    switch (thing.kind) {
        case CellKind::Start:
            DrawStart(canvas, place, thing.direction);
            break;
        case CellKind::Object:
            DrawSprite(canvas, x, y, kObject);
            break;
        case CellKind::Turn:
            canvas.Arrow(centerX, centerY, size_ / 4, thing.direction, kTurnMark);
            break;
        case CellKind::Pushwall:
            canvas.Frame(place, kSecretMark);
            canvas.Frame({place.x + 1, place.y + 1, size_ - 2, size_ - 2}, kSecretMark);
            if (size_ >= 12) {
                canvas.Fill({centerX - 4, centerY - 5, 8, 10}, kOutline);
                canvas.Text(centerX - 2, centerY - 4, "S", kSecretMark);
            }
            break;
        case CellKind::Exit:
            canvas.Frame(place, kExitMark);
            break;
        case CellKind::Enemy:
            canvas.Disc(centerX, centerY, radius, kOutline);
            canvas.Disc(centerX, centerY, radius - 1, BreedColor(thing.breed));
            if (thing.direction >= 0)
                canvas.Arrow(centerX, centerY, std::max(1, radius - 2), thing.direction, kOutline);
            break;
        case CellKind::Boss:
            DrawSprite(canvas, x, y, kBoss);
            canvas.Frame(place, kBoss);
            break;
        case CellKind::Unknown:
            DrawStrange(canvas, place);
            break;
        case CellKind::Nothing:
        case CellKind::Wall:
        case CellKind::Door:
        case CellKind::Floor:
        case CellKind::Thing:
            break;
    }
}

void MapPainter::Count(const CellValue& thing, MapCounts& counts) {
    counts.secrets += thing.kind == CellKind::Pushwall;
    counts.enemies += thing.kind == CellKind::Enemy || thing.kind == CellKind::Boss;
    counts.objects += thing.kind == CellKind::Object || thing.kind == CellKind::Thing;
    counts.starts += thing.kind == CellKind::Start;
    if (thing.kind == CellKind::Boss)
        ++counts.bosses[thing.name];
}

Canvas MapPainter::Classic(MapCounts& counts) {
    Canvas canvas(width_ * size_, height_ * size_, kFloor);
    for (int y = 0; y < height_; ++y)
        for (int x = 0; x < width_; ++x) {
            const CellValue& ground = Meaning(0, x, y);
            if (ground.kind == CellKind::Wall)
                DrawWall(canvas, x, y);
            if (ground.kind == CellKind::Door) {
                DrawDoor(canvas, x, y, ground);
                ++counts.doors;
            }
            if (ground.kind == CellKind::Unknown)
                DrawStrange(canvas, Place(x, y));
        }
    for (int y = 0; y < height_; ++y)
        for (int x = 0; x < width_; ++x) {
            DrawThing(canvas, x, y, Meaning(1, x, y));
            Count(Meaning(1, x, y), counts);
        }
    return canvas;
}

/// Games of 16 colours: both planes as the tiles that the game's own editor showed.
Canvas MapPainter::Tiles(MapCounts& counts) {
    Canvas canvas(width_ * size_, height_ * size_, kFloor);
    const int plane = ThingPlane(stamps_.Set());
    for (int y = 0; y < height_; ++y)
        for (int x = 0; x < width_; ++x) {
            const Rect place = Place(x, y);
            const std::int32_t ground = Cell(0, x, y);
            if (const Stamp* picture = stamps_.Of(0, ground))
                canvas.Draw(*picture, place.x, place.y);
            else if (ground != 0)
                canvas.Fill(place, FlatColor(ground));
            const CellValue& thing = Meaning(plane, x, y);
            Count(thing, counts);
            if (thing.kind == CellKind::Start)
                DrawStart(canvas, place, thing.direction);
            else if (const Stamp* picture =
                         stamps_.Of(plane, Cell(static_cast<std::size_t>(plane), x, y)))
                canvas.Draw(*picture, place.x, place.y);
            else if (thing.kind == CellKind::Unknown)
                DrawStrange(canvas, place);
            else if (thing.kind != CellKind::Nothing)
                canvas.Disc(place.x + size_ / 2, place.y + size_ / 2, std::max(1, size_ / 5),
                            kObject);
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

Canvas MapPainter::Draw(MapCounts& counts) {
    switch (stamps_.Set()) {
        case CellSet::Wolf:
        case CellSet::Spear:
            return Classic(counts);
        case CellSet::Catacomb:
            return Tiles(counts);
        case CellSet::Unknown:
            break;
    }
    return Flat();
}

}  // namespace

Canvas DrawMap(Game& game, int map, CellStamps& stamps, MapCounts* counts) {
    MapCounts ignored;
    return MapPainter(game, stamps, map).Draw(counts ? *counts : ignored);
}

}  // namespace tessaro::cli
