#include "sample/texts.h"

#include <algorithm>
#include <string_view>

#include "foundation/bytes.h"
#include "palette/builtin_palettes.h"
#include "sample/canvas.h"

namespace tessaro::sample {
namespace {

constexpr std::size_t kColumns = 80, kRows = 25;

}  // namespace

ByteArray MakeTextScreen() {
    ByteArray screen;
    for (std::size_t cell = 0; cell < kColumns * kRows; ++cell) {
        const std::size_t row = cell / kColumns, column = cell % kColumns;
        const bool frame = row == 0 || row == kRows - 1 || column == 0 || column == kColumns - 1;
        screen.push_back(frame ? 0xB1 : ' ');
        screen.push_back(frame ? 0x16 : 0x1E);
    }
    const auto write = [&screen](std::size_t row, std::string_view text) {
        std::size_t at = 2 * (row * kColumns + (kColumns - text.size()) / 2);
        for (char letter : text) {
            screen[at] = static_cast<std::uint8_t>(letter);
            at += 2;
        }
    };
    write(5, "L A N T E R N   K E E P");
    write(9, "The light still burns. You put it there.");
    write(11, "This small game exists to be taken apart and put together again.");
    write(18, "Good night.");
    return screen;
}

ByteArray MakeEndScreen() {
    ByteWriter out;
    out.U8(0xFD);
    out.U16(0xB800);
    out.U16(0);
    const ByteArray screen = MakeTextScreen();
    out.U16(static_cast<std::uint16_t>(screen.size()));
    out.Bytes(screen);
    out.U8(0x1A);
    return out.Release();
}

ByteArray MakeDuskPalette() {
    ByteArray dusk;
    const PaletteBytes day = BuiltInPalette(std::string_view());
    for (std::size_t i = 0; i < day.size(); ++i) {
        const int value = day[i] / 4;  // less red and green, a little more blue
        dusk.push_back(static_cast<std::uint8_t>(i % 3 == 0   ? value * 5 / 8
                                                 : i % 3 == 1 ? value * 6 / 8
                                                              : std::min(63, value + 4)));
    }
    return dusk;
}

ByteArray MakeVgaDemo() {
    constexpr int kSteps = 120;
    ByteWriter out;
    out.U8(0);  // the map
    out.U16(4 + 3 * kSteps);
    out.U8(0);
    for (int i = 0; i < kSteps; ++i) {
        out.U8(i % 40 == 39 ? 2 : 0);
        out.U8(static_cast<std::uint8_t>(Grain(i / 10, 0, 5) % 3 * 35 - 35));
        out.U8(static_cast<std::uint8_t>(-70));
    }
    return out.Release();
}

ByteArray MakeEgaDemo() {
    ByteWriter out;
    out.U16(1);  // the map
    out.U16(80);
    for (int i = 0; i < 40; ++i) {
        out.U8(static_cast<std::uint8_t>(3 + Grain(i, 0, 6) % 20));
        out.U8(static_cast<std::uint8_t>(1 << Grain(i, 1, 6) % 5));
    }
    return out.Release();
}

ByteArray MakeArticle() {
    ByteWriter out;
    out.Text(
        "^P\r\n^C7d\r\nThe keeper of the Lantern has gone up the stairs, and the light has gone "
        "out. Beetles walk the halls.\r\n\r\nFind the key in the library, the oil in the cellar, "
        "and climb the tower before the ships come in.\r\n"
        "^P\r\n^C2c\r\nBeetles fear the light. Doors open when you knock; one wall does, too.\r\n"
        "^E\r\n");
    return out.Release();
}

ByteArray MakeAreaNames() {
    ByteWriter out;
    out.Text("\r\n");
    for (const char* name :
         {"The Gate", "The Way North", "The Great Hall", "The Library of Moths", "The Oil Cellar",
          "The Keeper's Room", "The Cloister Walk", "The Inner Court", "The Well House",
          "The Blue Stair", "The Banner Loft", "The Beetle Nest", "The Long Gallery",
          "The Lamp Room", "Under the Lantern"}) {
        out.Text(name);
        out.Text("\r\n");
    }
    out.Text("\r\n");
    return out.Release();
}

}  // namespace tessaro::sample
