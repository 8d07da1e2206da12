#include "known/item_names.h"

#include <algorithm>
#include <cctype>
#include <charconv>

#include "console.h"
#include "game.h"
#include "report.h"

namespace tessaro::cli {

namespace {

std::string Plain(std::string name) {
    for (char& c : name)
        c = c == '_' || c == '-' ? ' '
                                 : static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return name;
}

}  // namespace

ItemNames::ItemNames(Game& game) : game_(game), known_(KnownGames(game.Version().Extension())) {
    std::reverse(known_.begin(), known_.end());  // the user's own first
    for (KnownGame& game_of : known_)
        std::reverse(game_of.names.begin(), game_of.names.end());  // the narrower ones first
}

/// Names of graphics depend on the version, which the number of chunks tells.
bool ItemNames::Holds(const KnownNames& names, const std::string& kind) {
    if (!names.chunks)
        return true;
    if (kind != "chunk" && kind != "picture" && kind != "font")
        return false;
    try {
        return game_.Graphics().NumberOfChunks() == *names.chunks;
    } catch (const CommandError&) {  // which whoever wants the graphics will be told
        return false;
    }
}

const KnownItem* ItemNames::Of(const std::string& kind, int number) {
    for (const KnownGame& known : known_)
        for (const KnownNames& names : known.names)
            if (const auto item = names.items.find({kind, number});
                item != names.items.end() && Holds(names, kind))
                return &item->second;
    return nullptr;
}

std::vector<int> ItemNames::Numbers(const std::string& kind, const std::string& name) {
    std::vector<int> numbers;
    const std::string wanted = Plain(name);
    for (const KnownGame& known : known_)
        for (const KnownNames& names : known.names)
            for (const auto& [key, item] : names.items)
                if (key.first == kind && Plain(item.name) == wanted && Holds(names, kind) &&
                    Of(kind, key.second) == &item)
                    numbers.push_back(key.second);
    if (kind == "map")
        for (int map = 0; map < game_.Maps().NumberOfMaps(); ++map)
            if (Plain(DisplayName(game_.Maps(), map)) == wanted)
                numbers.push_back(map);
    if (kind == "chunk")  // pictures are chunks, too
        for (const int number : Numbers("picture", name))
            numbers.push_back(number);
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    return numbers;
}

int NumberOf(Game& game, const std::string& kind, const std::string& text) {
    int number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (!text.empty() && stop == end && error == std::errc())
        return number;
    const std::vector<int> numbers = game.Names().Numbers(kind, text);
    if (numbers.empty())
        throw CommandError("there is no " + kind + " called \"" + text + "\" (list --kind " + kind +
                           " shows numbers and names)");
    if (numbers.size() > 1) {
        std::string all;
        for (const int one : numbers)
            all += (all.empty() ? "" : ", ") + std::to_string(one);
        throw CommandError("\"" + text + "\" is the name of several: " + kind + " " + all +
                           "; give the number");
    }
    return numbers.front();
}

int MapOf(Game& game, const std::string& text) {
    const int map = NumberOf(game, "map", text);
    CheckNumber("map", map, game.Maps().NumberOfMaps());
    return map;
}

std::string Shown(const KnownItem* item) {
    if (!item)
        return "";
    return item->name + (item->meaning.empty() ? "" : ", " + item->meaning);
}

}  // namespace tessaro::cli
