// tessaro info FOLDER
#include <filesystem>
#include <iostream>

#include "commands/arguments.h"
#include "commands/commands.h"
#include "report.h"
#include "variants.h"

namespace tessaro::cli {

namespace {

void Line(const std::string& label, const std::string& text) {
    std::cout << label << std::string(label.size() < 12 ? 12 - label.size() : 1, ' ') << text
              << '\n';
}

std::string GameOf(const clsVersion& version) {
    if (const Variant* variant = VariantOf(version.Extension()))
        return variant->name;
    return version.EGAGraphics() ? "a game with 16 colours" : "a game with 256 colours";
}

void ShowFile(const std::string& path) {
    if (path.empty())
        return;
    std::error_code error;
    const std::filesystem::path file(path);
    const auto size = std::filesystem::file_size(file, error);
    Line("file", file.filename().string() + (error ? "" : ", " + std::to_string(size) + " bytes"));
}

void ShowFlags(const clsVersion& version) {
    const auto say = [](const char* what, bool value) {
        Line("flag", std::string(what) + (value ? " yes" : " no"));
    };
    say("EGAGraphics", version.EGAGraphics());
    say("MapsAreVersion10", version.MapsAreVersion10());
    say("CanCompileVGAGraph", version.CanCompileVGAGraph());
    say("CanChangeMapSize", version.CanChangeMapSize());
    say("CanAddOrRemoveChunks", version.CanAddOrRemoveChunks());
    say("IsBlakeStone", version.IsBlakeStone());
    say("ReadSoundLengthsAsLong", version.ReadSoundLengthsAsLong());
}

/// One room of the game; one that cannot be opened does not keep the others from being shown.
template <class Show>
void ShowRoom(Show&& show) {
    try {
        show();
    } catch (const CommandError& error) {
        ReportAndGoOn(error.what());
    }
}

void ShowCounts(Game& game) {
    const auto count = [](const char* what, int number, const std::string& more = {}) {
        Line(what, std::to_string(number) + more);
    };
    ShowRoom([&] {
        clsGameMaps& maps = game.Maps();
        count("maps", maps.NumberOfMaps(),
              ", " + std::to_string(maps.InputMapPlanes()) + " planes, names of " +
                  std::to_string(maps.InputMapNameSize()) + " bytes");
    });
    if (game.HasPages())
        ShowRoom([&] {
            clsVSwap& pages = game.Pages();
            count("walls", pages.NumberOfWalls(), pages.HiResInput() ? ", 128 x 128" : ", 64 x 64");
            count("sprites", pages.NumberOfSprites());
            count("sounds", pages.NumberOfSounds());
        });
    ShowRoom([&] {
        clsVGAGraph& graphics = game.Graphics();
        count("chunks", graphics.NumberOfChunks());
        count("fonts", graphics.NumberOfFonts(),
              graphics.NumberOfFonts() > 0 ? ", from chunk " + std::to_string(graphics.StartFonts())
                                           : "");
        count("pictures", graphics.NumberOfPics(),
              ", from chunk " + std::to_string(graphics.StartPics()));
        std::string levels;
        for (int demo = 0; demo < graphics.NumberDataTypeChunks(vgDemo); ++demo)
            levels += (demo ? " " : ", of levels ") + std::to_string(graphics.DemoLevel(demo));
        count("demos", graphics.NumberDataTypeChunks(vgDemo), levels);
    });
    ShowRoom([&] {
        clsAudioT& audio = game.Audio();
        count("audio", audio.NumberOfChunks(), " chunks");
        count("effects", audio.NumberOfSounds(), ", each for three devices");
        count("songs", audio.NumberOfSongs(), ", from chunk " + std::to_string(audio.StartMusic()));
    });
}

void Run(const std::string& folder) {
    Game game(folder);
    const clsVersion& version = game.Version();
    Line("folder", game.Folder());
    Line("game", GameOf(version));
    Line("extension", version.Extension());
    for (const std::string& path :
         {version.MapHeaderFile(), version.GameMapsFile(), version.VSwapFile(),
          version.VGADictFile(), version.VGAHeaderFile(), version.VGAGraphFile(),
          version.AudioHeaderFile(), version.AudioDictFile(), version.AudioDataFile()})
        ShowFile(path);
    ShowCounts(game);
    ShowFile(version.AudioMusFile());  // known once the page file is open
    ShowFlags(version);                // narrowed by opening the graphics
}

}  // namespace

void AddInfo(CLI::App& command) {
    auto folder = std::make_shared<std::string>();
    AddFolder(command, *folder);
    command.callback([folder] { Run(*folder); });
}

}  // namespace tessaro::cli
