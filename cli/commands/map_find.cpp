// tessaro map find | stats
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>

#include "cells/cell_values.h"
#include "commands/arguments.h"
#include "commands/commands.h"
#include "known/item_names.h"
#include "maps/map_area.h"
#include "report.h"

namespace tessaro::cli {

namespace {

using Json = nlohmann::ordered_json;

struct Options {
    std::string folder, map = "all", value;
    std::optional<int> plane;
};

std::vector<int> MapsOf(Game& game, const Options& options) {
    if (options.map == "all")
        return CountedFrom0(game.Maps().NumberOfMaps());
    return {MapOf(game, options.map)};
}

void Print(const Json& json) {
    std::cout << json.dump(1, ' ', true, Json::error_handler_t::replace) << '\n';
}

void Find(Game& game, const Options& options) {
    Json all = Json::array();
    bool known = false;
    for (const int number : MapsOf(game, options)) {
        const Cells cells = LoadCells(game, number);
        if (options.plane)
            cells.CheckPlane(*options.plane);
        for (int plane = 0; plane < cells.Planes(); ++plane) {
            const auto value = ValueNamed(game, plane, options.value);
            known = known || value;
            for (int y = 0; value && y < cells.height && plane == options.plane.value_or(plane);
                 ++y)
                for (int x = 0; x < cells.width; ++x) {
                    if (cells.At(plane, x, y) != *value)
                        continue;
                    if (TheManner().json)
                        all.push_back({{"map", number}, {"plane", plane}, {"x", x}, {"y", y}});
                    else
                        std::cout << "map " << number << ", plane " << plane << ": " << x << ", "
                                  << y << '\n';
                }
        }
    }
    if (!known)
        throw CommandError("\"" + options.value +
                           "\" is neither a value from 0 to 65535 nor the name of one "
                           "(map stats shows the names in use)");
    if (TheManner().json)
        Print(all);
}

/// How often each value stands on each plane, and what that amounts to.
Json StatsOf(Game& game, int number) {
    const Cells cells = LoadCells(game, number);
    const CellSet set = CellSetOf(game.Version());
    Json json{{"map", number},
              {"name", DisplayName(game.Maps(), number)},
              {"width", cells.width},
              {"height", cells.height}};
    std::map<std::string, int> kinds;
    std::map<int, int> grades;
    for (int plane = 0; plane < cells.Planes(); ++plane) {
        std::map<std::int32_t, int> counts;
        for (const std::int32_t cell : cells.planes.Plane[static_cast<std::size_t>(plane)].Grid)
            ++counts[cell];
        Json values = Json::array();
        for (const auto& [value, count] : counts) {
            const CellValue& meaning = ValueOf(set, plane, value);
            Json entry{{"value", value}, {"count", count}};
            if (!meaning.name.empty())
                entry["name"] = meaning.name;
            values.push_back(entry);
            if (set == CellSet::Unknown || meaning.kind == CellKind::Nothing)
                continue;
            if (meaning.kind != CellKind::Unknown || plane <= ThingPlane(set))
                kinds[std::string(KindName(meaning.kind))] += count;
            if (meaning.kind == CellKind::Enemy)
                grades[meaning.skill] += count;
        }
        json["planes"].push_back(values);
    }
    json["kinds"] = kinds;
    for (const auto& [grade, count] : grades)
        json["enemies_from_grade"][std::to_string(grade)] = count;
    return json;
}

void Show(const Json& json) {
    std::cout << "map " << json["map"] << ' ' << OneLine(json["name"].get<std::string>()) << ", "
              << json["width"] << " x " << json["height"] << '\n';
    for (const auto& [kind, count] : json["kinds"].items())
        std::cout << "  " << kind << ' ' << count << '\n';
    int number = 0;
    for (const Json& plane : json["planes"]) {
        std::cout << "  plane " << number++ << ", cells of each value:\n";
        for (const Json& value : plane)
            std::cout << "    " << value["value"] << ": " << value["count"]
                      << (value.contains("name") ? " " + value["name"].get<std::string>() : "")
                      << '\n';
    }
}

void Stats(Game& game, const Options& options) {
    Json all = Json::array();
    for (const int number : MapsOf(game, options)) {
        const Json json = StatsOf(game, number);
        if (TheManner().json)
            all.push_back(json);
        else
            Show(json);
    }
    if (TheManner().json)
        Print(all);
}

}  // namespace

void AddMapFind(CLI::App& command) {
    auto options = std::make_shared<Options>();
    AddFolder(command, options->folder);
    command.add_option("CODE", options->value, "The value to look for, or its name")->required();
    command.add_option("--map", options->map, "Only this map, by number or name [all]")
        ->type_name("MAP");
    command.add_option("--plane", options->plane, "Only this plane, from 0 [all]")->type_name("N");
    AddJson(command, "One JSON array instead of lines; errors as JSON too");
    command.callback([options] {
        Game game(options->folder);
        Find(game, *options);
    });
}

void AddMapStats(CLI::App& command) {
    auto options = std::make_shared<Options>();
    AddFolder(command, options->folder);
    command.add_option("MAP", options->map, "The map's number, from 0, its name, or \"all\" [all]");
    AddJson(command, "One JSON array instead of lines; errors as JSON too");
    command.callback([options] {
        Game game(options->folder);
        Stats(game, *options);
    });
}

}  // namespace tessaro::cli
