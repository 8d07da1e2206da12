// tessaro sheet FOLDER OUT.png
#include <iostream>

#include "commands/arguments.h"
#include "commands/commands.h"
#include "files.h"
#include "pictures/canvas.h"
#include "pictures/glyphs.h"
#include "report.h"

namespace tessaro::cli {

namespace {

constexpr int kAcross = 16, kSide = 64, kGap = 4, kLine = kGlyphHeight + 1,
              kTitle = kGlyphHeight + 3;
constexpr int kCellWidth = kSide + kGap, kNameLines = 2, kLetters = kCellWidth / kGlyphWidth;
constexpr Rgb kGround{24, 24, 28}, kHole{0, 96, 96}, kText{235, 235, 235}, kName{160, 160, 170};

struct Section {
    std::string title;
    std::vector<Item> items;
    bool named = false;

    int CellHeight() const { return kSide + kGap + 2 + kLine * (named ? 1 + kNameLines : 1); }
    int Rows() const { return (static_cast<int>(items.size()) + kAcross - 1) / kAcross; }
};

Section Collect(Game& game, const std::string& kindName) {
    const ItemKind& kind = *KindsNamed({kindName}).front();
    Section section;
    for (const int number : kind.Numbers(game))
        if (Item item = LoadNamed(game, kind, number); !item.empty) {
            section.named = section.named || item.label;
            section.items.push_back(std::move(item));
        }
    section.title = std::to_string(section.items.size()) + " " + kindName + "s with data, of " +
                    std::to_string(kind.Numbers(game).size());
    return section;
}

void Run(const std::string& folder, const std::string& out) {
    Game game(folder);
    const Section sections[] = {Collect(game, "wall"), Collect(game, "sprite")};
    int height = kGap;
    for (const Section& section : sections)
        height += kTitle + kGap + section.Rows() * section.CellHeight();
    Canvas sheet(kGap + kAcross * kCellWidth, height, kGround);
    int top = kGap;
    for (const Section& section : sections) {
        sheet.Text(kGap, top, section.title, kText);
        top += kTitle + kGap;
        for (std::size_t i = 0; i < section.items.size(); ++i) {
            const int x = kGap + static_cast<int>(i) % kAcross * kCellWidth;
            const int y = top + static_cast<int>(i) / kAcross * section.CellHeight();
            sheet.Fill({x, y, kSide, kSide}, kHole);
            sheet.Draw(*section.items[i].image, {x, y, kSide, kSide});
            sheet.Text(x + 1, y + kSide + 2, std::to_string(section.items[i].number), kText);
            const std::string name = section.items[i].label.value_or("");
            for (int line = 0; line < kNameLines; ++line)  // as much of it as there is room for
                if (const auto from = static_cast<std::size_t>(line * kLetters); from < name.size())
                    sheet.Text(x + 1, y + kSide + 2 + (line + 1) * kLine,
                               name.substr(from, kLetters), kName);
        }
        top += section.Rows() * section.CellHeight();
    }
    WriteFile(out, sheet.Png(), kPngFile);
    Say(sections[0].title + "; " + sections[1].title);
}

}  // namespace

void AddSheet(CLI::App& command) {
    auto folder = std::make_shared<std::string>(), out = std::make_shared<std::string>();
    AddFolder(command, *folder);
    AddPngOut(command, *out);
    command.callback([folder, out] { Run(*folder, *out); });
}

}  // namespace tessaro::cli
