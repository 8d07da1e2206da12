// tessaro list FOLDER [--kind K] [--json]
#include <iomanip>
#include <iostream>
#include <nlohmann/json.hpp>

#include "commands/arguments.h"
#include "commands/commands.h"
#include "known/digests.h"
#include "report.h"

namespace tessaro::cli {

namespace {

struct Options {
    std::string folder;
    std::vector<std::string> kinds;
};

using Json = nlohmann::ordered_json;

Json JsonOf(const ItemKind& kind, const Item& item) {
    Json entry{{"kind", kind.Name()}, {"number", item.number}};
    if (item.name)
        entry["name"] = *item.name;
    if (item.label)
        entry["label"] = *item.label;
    if (item.meaning)
        entry["meaning"] = *item.meaning;
    if (item.type)
        entry["type"] = *item.type;
    if (item.width)
        entry["width"] = *item.width;
    if (item.height)
        entry["height"] = *item.height;
    if (item.notes)
        entry["notes"] = *item.notes;
    if (item.empty) {
        entry["empty"] = true;
        return entry;
    }
    entry["bytes"] = item.bytes.size();
    entry["crc32"] = Crc32Of(item.bytes);
    for (const ByteArray& plane : item.planes)
        entry["planes"].push_back(Crc32Of(plane));
    return entry;
}

void Row(const std::string& kind, const std::string& number, const std::string& size,
         const std::string& bytes, const std::string& sum, const std::string& what) {
    std::cout << std::left << std::setw(8) << kind << std::right << std::setw(6) << number
              << std::setw(11) << size << std::setw(9) << bytes << "  " << std::left << std::setw(8)
              << sum << (what.empty() ? "" : "  ") << what << '\n';
}

std::string SizeOf(const Item& item) {
    if (item.width && item.height)
        return std::to_string(*item.width) + " x " + std::to_string(*item.height);
    return item.height ? std::to_string(*item.height) + " high" : "";
}

void ShowRow(const ItemKind& kind, const Item& item) {
    std::string what = OneLine(item.name.value_or(item.type.value_or("")));
    if (item.label)
        what += (what.empty() ? "" : ", ") + *item.label;
    if (item.meaning)
        what += ": " + *item.meaning;
    if (item.notes)
        what += ", " + std::to_string(*item.notes) + " notes";
    Row(kind.Name(), std::to_string(item.number), SizeOf(item),
        item.empty ? "-" : std::to_string(item.bytes.size()),
        item.empty ? "-" : Crc32Of(item.bytes), what);
}

/// An item that cannot be read is reported and left out; the others are listed.
template <class Show>
void ForEachItem(Game& game, const ItemKind& kind, Show&& show) {
    try {
        for (const int number : kind.Numbers(game)) {
            try {
                show(LoadNamed(game, kind, number));
            } catch (const CommandError& error) {
                ReportAndGoOn(error.what());
            }
        }
    } catch (const CommandError& error) {
        ReportAndGoOn(error.what());
    }
}

void Run(const Options& options) {
    Game game(options.folder);
    Json all = Json::array();
    if (!TheManner().json)
        Row("kind", "number", "size", "bytes", "crc32", "name or type");
    for (const ItemKind* kind : KindsNamed(options.kinds)) {
        if (!kind->In(game))
            continue;
        ForEachItem(game, *kind, [&](const Item& item) {
            if (TheManner().json)
                all.push_back(JsonOf(*kind, item));
            else
                ShowRow(*kind, item);
        });
    }
    if (!TheManner().json)
        return;
    std::cout << "[";
    for (std::size_t i = 0; i < all.size(); ++i)  // an item a line
        std::cout << (i ? ",\n " : "\n ")
                  << all[i].dump(-1, ' ', true, Json::error_handler_t::replace);
    std::cout << "\n]\n";
}

}  // namespace

void AddList(CLI::App& command) {
    auto options = std::make_shared<Options>();
    AddFolder(command, options->folder);
    AddKinds(command, options->kinds);
    AddJson(command, "One JSON array instead of a table; errors as JSON too");
    command.callback([options] { Run(*options); });
}

}  // namespace tessaro::cli
