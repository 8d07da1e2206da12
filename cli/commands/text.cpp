// tessaro text FOLDER --font N "..." OUT.png
#include <iostream>

#include "commands/arguments.h"
#include "commands/commands.h"
#include "files.h"
#include "known/item_names.h"
#include "report.h"

namespace tessaro::cli {

namespace {

struct Options {
    std::string folder, font, text, out;
    int ink = 15, ground = 0;
};

/// The library parts lines at carriage return and line feed; here a line break, or a backslash and
/// an n, starts a new line.
std::string Lines(const std::string& text) {
    std::string lines;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool escaped = text[i] == '\\' && i + 1 < text.size() && text[i + 1] == 'n';
        if (escaped || text[i] == '\n')
            lines += "\r\n";
        else if (text[i] != '\r')
            lines += text[i];
        i += escaped;
    }
    return lines;
}

void Run(const Options& options) {
    Game game(options.folder);
    const int font = NumberOf(game, "font", options.font);
    const int first = game.Graphics().StartFonts();
    CheckNumber("font", font, game.Graphics().NumberOfFonts(), first);
    ByteArray pixels;
    std::int32_t width = 0, height = 0;
    if (!game.Graphics().ConvertTextToFont(font - first + 1, Lines(options.text), pixels, width,
                                           height, options.ground, options.ink))
        Fail("the text was not drawn");
    if (width < 1 || height < 1)
        throw CommandError("the font has none of these characters");
    IndexedImage image;
    image.width = width;
    image.height = height;
    image.colors = CurrentColors(game.Palette());
    const std::size_t stride = pixels.size() / static_cast<std::size_t>(height);
    for (int y = 0; y < height; ++y) {
        const auto row = pixels.begin() + static_cast<std::ptrdiff_t>(stride) * y;
        image.pixels.insert(image.pixels.end(), row, row + width);
    }
    WriteFile(options.out, ToPng(image), kPngFile);
    Say(std::to_string(width) + " x " + std::to_string(height) + " pixels");
}

}  // namespace

void AddText(CLI::App& command) {
    auto options = std::make_shared<Options>();
    AddFolder(command, options->folder);
    command.add_option("TEXT", options->text, "The text; \\n starts a new line")->required();
    AddPngOut(command, options->out);
    command.add_option("--font", options->font, "The font's number, as list prints it")
        ->required()
        ->type_name("N");
    AddNumber(command, "--ink", options->ink, 0, 255, "The palette colour of the letters [15]");
    AddNumber(command, "--ground", options->ground, 0, 255, "The palette colour behind them [0]");
    command.callback([options] { Run(*options); });
}

}  // namespace tessaro::cli
