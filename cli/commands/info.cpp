// tessaro info FOLDER [--original DIR] [--json]
#include <iostream>
#include <nlohmann/json.hpp>

#include "commands/arguments.h"
#include "commands/commands.h"
#include "known/digests.h"
#include "known/identity.h"
#include "report.h"
#include "variants.h"

namespace tessaro::cli {

namespace {

using Json = nlohmann::ordered_json;

struct Options {
    std::string folder, original;
};

/// What is told, as lines of text or as one JSON object.
class Telling {
public:
    void Line(const std::string& label, const std::string& text) {
        if (!TheManner().json)
            std::cout << label << std::string(label.size() < 12 ? 12 - label.size() : 1, ' ')
                      << OneLine(text) << '\n';
    }
    void Count(const std::string& what, int number, const std::string& more = {}) {
        Line(what, std::to_string(number) + more);
        json["counts"][what] = number;
    }

    Json json = Json::object();
};

std::string GameOf(const clsVersion& version) {
    if (const Variant* variant = VariantOf(version.Extension()))
        return variant->name;
    return version.EGAGraphics() ? "a game with 16 colours" : "a game with 256 colours";
}

/// "map 0 to 3, wall 7": what `list` calls the items.
std::string Ranges(const std::vector<ItemKey>& items) {
    std::string text, kind;
    for (std::size_t i = 0; i < items.size(); ++i) {
        std::size_t last = i;
        while (last + 1 < items.size() && items[last + 1].first == items[i].first &&
               items[last + 1].second == items[last].second + 1)
            ++last;
        text += (text.empty() ? "" : ", ") + (kind == items[i].first ? "" : items[i].first + " ") +
                std::to_string(items[i].second);
        if (last > i)
            text += " to " + std::to_string(items[last].second);
        kind = items[i].first;
        i = last;
    }
    return text;
}

void TellChanges(const std::vector<ItemKey>& items, Telling& telling) {
    telling.Line("changed", items.empty() ? "no item" : Ranges(items));
    telling.json["changed_items"] = Json::array();
    for (const auto& [kind, number] : items)
        telling.json["changed_items"].push_back({{"kind", kind}, {"number", number}});
}

void TellIdentity(Game& game, const Options& options, Telling& telling) {
    const Identity identity = Identify(game);
    const bool known = identity.state != Identity::State::Unknown;
    const bool original = identity.state == Identity::State::Original;
    const std::string name = known ? identity.Name() : GameOf(game.Version());
    telling.Line("game", name);
    telling.Line("state", original ? "original"
                          : known  ? "modified"
                                   : "not a known version of any game");
    telling.Line("extension", game.Version().Extension());
    telling.json["game"] = name;
    telling.json["state"] = original ? "original" : known ? "modified" : "unknown";
    telling.json["extension"] = game.Version().Extension();
    for (const DataFile& file : identity.files) {
        const char* is = !known || !file.known ? "" : file.original ? ", original" : ", modified";
        telling.Line("file",
                     file.name + ", " + std::to_string(file.content.size()) + " bytes" + is);
        Json entry{
            {"name", file.name}, {"bytes", file.content.size()}, {"crc32", Crc32Of(file.content)}};
        if (known && file.known)
            entry["original"] = file.original;
        telling.json["files"].push_back(entry);
    }
    if (!options.original.empty())
        TellChanges(ChangedItems(game, options.original), telling);
    else if (known && !original && !identity.versions.front().items.empty())
        TellChanges(ChangedItems(game, identity.versions.front()), telling);
}

void TellFlags(const clsVersion& version, Telling& telling) {
    const auto say = [&](const char* what, bool value) {
        telling.Line("flag", std::string(what) + (value ? " yes" : " no"));
        telling.json["flags"][what] = value;
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
template <class Tell>
void TellRoom(Tell&& tell) {
    try {
        tell();
    } catch (const CommandError& error) {
        ReportAndGoOn(error.what());
    }
}

void TellCounts(Game& game, Telling& telling) {
    TellRoom([&] {
        clsGameMaps& maps = game.Maps();
        telling.Count("maps", maps.NumberOfMaps(),
                      ", " + std::to_string(maps.InputMapPlanes()) + " planes, names of " +
                          std::to_string(maps.InputMapNameSize()) + " bytes");
    });
    if (game.HasPages())
        TellRoom([&] {
            clsVSwap& pages = game.Pages();
            telling.Count("walls", pages.NumberOfWalls(),
                          pages.HiResInput() ? ", 128 x 128" : ", 64 x 64");
            telling.Count("sprites", pages.NumberOfSprites());
            telling.Count("sounds", pages.NumberOfSounds());
        });
    TellRoom([&] {
        clsVGAGraph& graphics = game.Graphics();
        telling.Count("chunks", graphics.NumberOfChunks());
        telling.Count("fonts", graphics.NumberOfFonts(),
                      graphics.NumberOfFonts() > 0
                          ? ", from chunk " + std::to_string(graphics.StartFonts())
                          : "");
        telling.Count("pictures", graphics.NumberOfPics(),
                      ", from chunk " + std::to_string(graphics.StartPics()));
        std::string levels;
        for (int demo = 0; demo < graphics.NumberDataTypeChunks(vgDemo); ++demo)
            levels += (demo ? " " : ", of levels ") + std::to_string(graphics.DemoLevel(demo));
        telling.Count("demos", graphics.NumberDataTypeChunks(vgDemo), levels);
    });
    TellRoom([&] {
        clsAudioT& audio = game.Audio();
        telling.Count("audio", audio.NumberOfChunks(), " chunks");
        telling.Count("effects", audio.NumberOfSounds(), ", each for three devices");
        telling.Count("songs", audio.NumberOfSongs(),
                      ", from chunk " + std::to_string(audio.StartMusic()));
    });
}

void Run(const Options& options) {
    Game game(options.folder);
    Telling telling;
    telling.Line("folder", game.Folder());
    telling.json["folder"] = game.Folder();
    if (game.HasPages())  // which tells whether there is a file of sounds
        TellRoom([&] { game.Pages(); });
    TellRoom([&] { TellIdentity(game, options, telling); });
    TellCounts(game, telling);
    TellFlags(game.Version(), telling);  // narrowed by opening the graphics
    if (TheManner().json)
        std::cout << telling.json.dump(1, ' ', true, Json::error_handler_t::replace) << '\n';
}

}  // namespace

void AddInfo(CLI::App& command) {
    auto options = std::make_shared<Options>();
    AddFolder(command, options->folder);
    command
        .add_option("--original", options->original,
                    "A folder with the original game; tells which items differ from it")
        ->type_name("DIR");
    AddJson(command, "One JSON object instead of lines; errors as JSON too");
    command.callback([options] { Run(*options); });
}

}  // namespace tessaro::cli
