#include "sample/art.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string>

namespace tessaro::sample {
namespace {

// Ramps of the default palette: the first colour is the lightest, darker ones follow.
constexpr int kGrey = 16, kRed = 32, kOrange = 56, kYellow = 68, kGreen = 97, kBlue = 145,
              kTan = 192, kBrown = 208;
constexpr int kBlack = 0, kWhite = 15, kClear = 255;

constexpr int kSide = 64;

int Shade(int ramp, int step) {
    return ramp + std::clamp(step, 0, 15);
}

/// Bricks of 32 x 16, every second row moved by half a brick.
void Bricks(Canvas& wall, int ramp, int dark) {
    for (int y = 0; y < kSide; ++y)
        for (int x = 0; x < kSide; ++x) {
            const int row = y / 16, column = (x + row % 2 * 16) % 32;
            const bool joint = y % 16 == 15 || column == 31;
            const bool lit = y % 16 == 0 || column == 0;
            const int brick = Grain((x + row % 2 * 16) / 32, row, 3) % 3;
            wall.Dot(x, y,
                     Shade(ramp, dark + (joint ? 11
                                         : lit ? 3
                                               : 5 + brick + Grain(x, y, 1) / 128)));
        }
}

void Planks(Canvas& wall, int dark) {
    for (int y = 0; y < kSide; ++y)
        for (int x = 0; x < kSide; ++x) {
            const bool joint = x % 16 == 15 || (y == (x / 16 % 2 * 24 + 20));
            wall.Dot(x, y, Shade(kBrown, dark + (joint ? 12 : 4 + Grain(x / 2, y / 9, 7) / 86)));
        }
}

void Checks(Canvas& wall, int dark) {
    for (int y = 0; y < kSide; ++y)
        for (int x = 0; x < kSide; ++x) {
            const bool joint = x % 16 == 15 || y % 16 == 15;
            const int ramp = (x / 16 + y / 16) % 2 == 0 ? kBlue + 2 : kGrey + 3;
            wall.Dot(x, y, joint ? Shade(kGrey, 12) : ramp + dark + Grain(x / 4, y / 4, 5) / 100);
        }
}

void Moss(Canvas& wall, int dark) {
    Bricks(wall, kGrey, dark);
    for (int y = 0; y < kSide; ++y)
        for (int x = 0; x < kSide; ++x)
            if (Grain(x / 2, y / 2, 11) < y * 4 - 40)
                wall.Dot(x, y, Shade(kGreen, 6 + dark + Grain(x, y, 2) / 80));
}

void Banner(Canvas& wall, int dark) {
    Bricks(wall, kGrey, dark);
    wall.Box(14, 6, 36, 46, kRed + 4 + dark);
    wall.Frame(14, 6, 36, 46, kYellow + 2 + dark);
    for (int i = 0; i < 18; ++i)  // two tails
        for (int x : {14 + i, 49 - i})
            wall.Box(x, 52, 1, 9 - i / 2, kRed + 6 + dark);
    DrawLantern(wall, 32, 12, 32);
}

void Books(Canvas& wall, int dark) {
    wall.Box(0, 0, kSide, kSide, Shade(kBrown, 9 + dark));
    for (int shelf = 0; shelf < 4; ++shelf) {
        const int top = shelf * 16;
        wall.Box(2, top + 1, 60, 13, kBlack);
        wall.Box(0, top + 14, kSide, 2, Shade(kBrown, 5 + dark));
        for (int x = 3, book = 0; x < 58; ++book) {
            constexpr std::array<int, 5> kCovers = {kRed, kGreen, kBlue, kOrange, kTan};
            const int width = 3 + Grain(book, shelf, 1) % 3, height = 8 + Grain(book, shelf, 2) % 5;
            const int ramp = kCovers[static_cast<std::size_t>(Grain(book, shelf, 3) % 5)];
            wall.Box(x, top + 14 - height, width, height, ramp + 3 + dark);
            wall.Box(x, top + 14 - height, 1, height, ramp + 1 + dark);
            x += width + 1;
        }
    }
}

Canvas Door(int kind, int dark) {
    Canvas door(kSide, kSide, kBlack);
    if (kind == 1) {  // the jamb, seen from within the doorway
        Bricks(door, kGrey, dark + 2);
        door.Box(24, 0, 16, kSide, kBlack);
        door.Box(26, 0, 12, kSide, Shade(kGrey, 13));
        return door;
    }
    Planks(door, dark);
    for (int y : {8, 52})
        door.Box(0, y, kSide, 5, Shade(kGrey, 6 + dark));
    for (int x = 4; x < kSide; x += 8)
        for (int y : {10, 54})
            door.Disc(x, y, 1, Shade(kGrey, 2 + dark));
    const int plate = kind == 3 ? kYellow + 3 : kGrey + 5;
    door.Box(46, 28, 10, 12, plate + dark);
    door.Frame(46, 28, 10, 12, kBlack);
    door.Disc(51, 33, 1, kBlack);
    door.Box(50, 34, 3, 4, kBlack);
    if (kind == 2)
        door.Text(10, 28, 1, kYellow, "EXIT");
    return door;
}

/// A beetle in step `step` of its walk (0 to 2) or lying on its back (3).
Canvas Beetle(int step) {
    Canvas sprite(kSide, kSide, kClear);
    const bool onItsBack = step == 3;
    sprite.Ball(32, 46, 15, onItsBack ? kBrown + 5 : kGreen + 4, onItsBack ? 6 : 9);
    sprite.Box(17, 54, 31, 8, kClear);
    for (int leg = 0; leg < 3; ++leg) {
        const int lift = (leg + step) % 3 * 2;
        sprite.Box(18 + leg * 12, onItsBack ? 26 : 54, 3, onItsBack ? 9 + leg % 2 * 4 : 7 - lift,
                   kBrown + 12);
    }
    if (!onItsBack) {
        sprite.Box(31, 33, 2, 21, kBlack);
        sprite.Disc(25, 41, 2, kYellow);
        sprite.Disc(39, 41, 2, kYellow);
        sprite.Dot(25, 41, kBlack);
        sprite.Dot(39, 41, kBlack);
    }
    return sprite;
}

Canvas Keeper(bool armsUp) {
    Canvas sprite(kSide, kSide, kClear);
    for (int y = 20; y < 63; ++y)  // a cloak that widens downwards
        sprite.Box(32 - 6 - (y - 20) / 4, y, 12 + (y - 20) / 2, 1,
                   kBlue + 4 + (y % 7 == 0 ? 2 : 0) + Grain(y / 3, 1, 4) / 128);
    sprite.Box(31, 22, 2, 40, kYellow + 4);
    sprite.Ball(32, 14, 8, kTan + 2, 8);
    sprite.Box(24, 5, 17, 5, kBlue + 7);
    sprite.Box(28, 1, 9, 5, kBlue + 6);
    sprite.Box(28, 13, 2, 2, kBlack);
    sprite.Box(35, 13, 2, 2, kBlack);
    for (int y = 18; y < 27; ++y)
        sprite.Box(28 + (y - 18) / 3, y, 9 - (y - 18) / 3 * 2, 1, kGrey + 1 + y % 2);
    const int hand = armsUp ? 8 : 36;
    for (int i = 0; i < 14; ++i) {
        sprite.Box(39 + i, 28 + (hand - 28) * i / 14, 4, 5, kBlue + 5);
        sprite.Box(21 - i, 30 + i / 2, 4, 5, kBlue + 6);
    }
    DrawLantern(sprite, 54, hand, 18);
    return sprite;
}

Canvas Sprite() {
    return Canvas(kSide, kSide, kClear);
}

Canvas Title() {
    Canvas title(320, 200, kBlack);
    for (int y = 0; y < 200; ++y)
        title.Box(0, y, 320, 1, kBlue + 14 - std::min(y, 140) / 13);
    for (int i = 0; i < 90; ++i)
        title.Dot(Grain(i, 1, 9) * 320 / 256, Grain(i, 2, 9) * 110 / 256,
                  i % 4 == 0 ? kWhite : kGrey + 6);
    title.Ball(262, 40, 22, kGrey, 7);
    for (int hill = 0; hill < 3; ++hill)
        for (int x = 0; x < 320; ++x) {
            const int period = 70 + hill * 25, at = (x + hill * 31) % period;
            const int top = 128 + hill * 16 - std::min(at, period - at) / 2;
            title.Box(x, top, 1, 200 - top, kGreen + 9 + hill * 2);
        }
    for (int part = 0; part < 3; ++part) {  // the keep
        const int x = 110 + part * 36, top = part == 1 ? 52 : 84;
        title.Box(x, top, 28, 150 - top, kGrey + 8 + part);
        for (int tooth = 0; tooth < 3; ++tooth)
            title.Box(x + tooth * 11, top - 6, 6, 6, kGrey + 8 + part);
        for (int y = top + 8; y < 140; y += 22)
            title.Box(x + 11, y, 6, 10, kYellow + 1);
    }
    title.Box(100, 112, 130, 42, kGrey + 9);
    title.Box(156, 126, 18, 28, kBrown + 10);
    DrawLantern(title, 160, 14, 34);
    title.TextCentered(160, 4, kBlack, "LANTERN KEEP");
    title.TextCentered(158, 4, kYellow + 1, "LANTERN KEEP");
    title.TextCentered(190, 1, kGrey + 2, "A SMALL GAME TO TAKE APART");
    return title;
}

Canvas Panel(int width, int height) {
    Canvas panel(width, height, kGrey + 9);
    panel.Box(0, 0, width, 2, kGrey + 4);
    panel.Box(0, 0, 2, height, kGrey + 4);
    panel.Box(0, height - 2, width, 2, kGrey + 13);
    panel.Box(width - 2, 0, 2, height, kGrey + 13);
    return panel;
}

Canvas StatusBar() {
    Canvas bar = Panel(320, 40);
    constexpr std::array<const char*, 5> kLabels = {"FLOOR", "COINS", "LIGHT", "HEALTH", "KEYS"};
    for (std::size_t i = 0; i < kLabels.size(); ++i) {
        const int x = 8 + static_cast<int>(i) * 62;
        bar.Text(x, 5, 1, kYellow + 2, kLabels[i]);
        bar.Box(x, 15, 54, 20, kBlack);
        bar.Frame(x, 15, 54, 20, kGrey + 5);
    }
    return bar;
}

Canvas Face(int look) {
    Canvas face(24, 32, kBlack);
    face.Ball(12, 16, 11, kTan + 1, 9);
    face.Box(2, 2, 20, 5, kBlue + 7);
    for (int eye : {8, 15}) {
        face.Box(eye, 13, 3, 3, kWhite);
        face.Dot(eye + look, 14, kBlack);
    }
    face.Box(9, 21, 7, 2, look == 1 ? kRed + 6 : kBrown + 9);
    return face;
}

}  // namespace

void DrawLantern(Canvas& canvas, int x, int y, int size) {
    const int half = size / 4;
    canvas.Disc(x, y + size / 8, std::max(1, size / 10), kGrey + 8);
    canvas.Box(x - half / 2, y + size / 5, half + 1, size / 10 + 1, kBrown + 8);
    canvas.Box(x - half, y + size / 4, 2 * half + 1, size / 12 + 1, kBrown + 10);
    canvas.Box(x - half + 1, y + size / 3, 2 * half - 1, size / 2, kOrange + 2);
    canvas.Disc(x, y + size * 3 / 5, std::max(1, size / 7), kYellow);
    canvas.Disc(x, y + size * 3 / 5, std::max(1, size / 12), kWhite);
    canvas.Frame(x - half, y + size / 3, 2 * half + 1, size / 2, kBrown + 12);
    canvas.Box(x - half - 1, y + size * 5 / 6, 2 * half + 3, size / 8 + 1, kBrown + 10);
}

std::vector<Canvas> DrawWalls() {
    std::vector<Canvas> walls;
    for (int kind = 0; kind < 6; ++kind)
        for (int dark : {0, 3}) {
            Canvas wall(kSide, kSide, kBlack);
            switch (kind) {
                case 0:
                    Bricks(wall, kGrey, dark);
                    break;
                case 1:
                    Planks(wall, dark);
                    break;
                case 2:
                    Checks(wall, dark);
                    break;
                case 3:
                    Moss(wall, dark);
                    break;
                case 4:
                    Banner(wall, dark);
                    break;
                default:
                    Books(wall, dark);
                    break;
            }
            walls.push_back(wall);
        }
    for (int kind = 0; kind < 4; ++kind)
        for (int dark : {0, 3})
            walls.push_back(Door(kind, dark));
    return walls;
}

std::vector<Canvas> DrawSprites() {
    std::vector<Canvas> sprites = {Keeper(false), Keeper(true)};  // objects begin with the third
    Canvas lamp = Sprite();
    lamp.Box(31, 18, 2, 44, kGrey + 9);
    lamp.Box(26, 60, 12, 3, kGrey + 7);
    DrawLantern(lamp, 32, 2, 24);
    sprites.push_back(lamp);

    Canvas plant = Sprite();
    plant.Box(26, 48, 12, 14, kOrange + 5);
    plant.Box(24, 46, 16, 4, kOrange + 3);
    for (int leaf = -3; leaf <= 3; ++leaf)
        for (int i = 0; i < 26; ++i)
            plant.Box(31 + leaf * i / 4, 45 - i + std::abs(leaf) * i * i / 90, 3, 2,
                      kGreen + 4 + std::abs(leaf) + i / 8);
    sprites.push_back(plant);

    Canvas crate = Sprite();
    crate.Box(16, 30, 32, 32, kBrown + 4);
    crate.Frame(16, 30, 32, 32, kBrown + 10);
    crate.Frame(19, 33, 26, 26, kBrown + 8);
    for (int i = 0; i < 24; ++i)
        crate.Box(20 + i, 34 + i, 2, 2, kBrown + 9);
    sprites.push_back(crate);

    Canvas key = Sprite();
    key.Disc(25, 52, 6, kYellow + 2);
    key.Disc(25, 52, 3, kClear);
    key.Box(31, 51, 16, 3, kYellow + 3);
    key.Box(40, 53, 2, 5, kYellow + 4);
    key.Box(44, 53, 2, 6, kYellow + 4);
    sprites.push_back(key);

    Canvas coins = Sprite();
    for (int i = 0; i < 9; ++i)
        coins.Ball(22 + i * 5 % 21, 59 - i / 3 * 4, 3, kYellow + 1, 6);
    sprites.push_back(coins);

    for (int step = 0; step < 4; ++step)
        sprites.push_back(Beetle(step));
    return sprites;
}

std::vector<Canvas> DrawPictures() {
    std::vector<Canvas> pictures = {Title(), StatusBar()};

    Canvas ready = Panel(224, 48);
    ready.TextCentered(10, 2, kYellow + 1, "TRIM THE WICK!");
    ready.Box(16, 34, 192, 6, kBlack);
    ready.Box(16, 34, 120, 6, kOrange + 1);
    pictures.push_back(ready);

    Canvas keeper = Panel(88, 88);
    keeper.Paste(Keeper(true), 8, 16, kClear);
    pictures.push_back(keeper);

    for (int look = 0; look < 3; ++look)
        pictures.push_back(Face(look));
    for (int digit = 0; digit < 10; ++digit) {
        Canvas number(8, 16, kBlack);
        number.Text(1, 4, 1, kYellow + 1, std::string(1, static_cast<char>('0' + digit)));
        pictures.push_back(number);
    }
    return pictures;
}

std::vector<Canvas> DrawTiles() {
    std::vector<Canvas> tiles;
    for (int tile = 0; tile < 35; ++tile) {
        Canvas drawn(8, 8, kBlue + 9);
        if (tile < 9) {  // a window's frame: corners, edges and the middle
            const int column = tile % 3, row = tile / 3;
            if (column != 1)
                drawn.Box(column == 0 ? 0 : 6, 0, 2, 8, kYellow + 3);
            if (row != 1)
                drawn.Box(0, row == 0 ? 0 : 6, 8, 2, kYellow + 3);
        } else if (tile < 19) {
            drawn.Text(1, 0, 1, kWhite, std::string(1, static_cast<char>('0' + tile - 9)));
        } else if (tile < 27) {  // a bar that fills
            drawn.Box(0, 2, tile - 18, 4, kOrange + 1);
        } else {
            drawn.Ball(4, 4, 3, kRed + 2 * (tile - 27), 5);
        }
        tiles.push_back(drawn);
    }
    return tiles;
}

}  // namespace tessaro::sample
