#include "known/identity.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "files.h"
#include "items/item.h"
#include "known/digests.h"
#include "report.h"

namespace tessaro::cli {

namespace {

namespace fs = std::filesystem;

/// The files that the game is read from, and the programs beside them: editions with the same data
/// are told by those.
std::vector<DataFile> FilesOf(Game& game) {
    std::vector<DataFile> files;
    const auto add = [&](const std::string& path) {
        std::error_code error;
        if (!path.empty() && fs::is_regular_file(path, error))
            files.push_back({path, fs::path(path).filename().string(), ReadFile(path)});
    };
    for (const std::string& path : game.DataFiles())
        add(path);
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(game.Folder(), error))
        if (ExtensionOf(entry.path().string()) == "exe")
            add(entry.path().string());
    return files;
}

std::string StemOf(const std::string& name) {
    std::string stem = name.substr(0, name.find('.'));
    for (char& c : stem)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return stem;
}

bool IsProgram(const DataFile& file) {
    return ExtensionOf(file.name) == "exe";
}

bool Matches(const DataFile& file, Digests& digests, const KnownFile& row) {
    if (row.size && *row.size != file.content.size())
        return false;
    return row.digest.empty() ? row.size && StemOf(row.name) == StemOf(file.name)
                              : digests.Are(row.digest);
}

std::map<ItemKey, std::string> Checksums(Game& game) {
    std::map<ItemKey, std::string> sums;
    for (const ItemKind* kind : ItemKinds()) {
        if (!kind->In(game))
            continue;
        for (const int number : kind->Numbers(game)) {
            const Item item = kind->Load(game, number);
            sums[{kind->Name(), number}] = item.empty ? "" : Crc32Of(item.bytes);
        }
    }
    return sums;
}

}  // namespace

std::string Identity::Name() const {
    if (versions.empty())
        return "";
    std::string name = versions.front().title + ", version ";
    for (std::size_t i = 0; i < versions.size(); ++i)
        name += (i ? " or " : "") + versions[i].name;
    return name;
}

Identity Identify(Game& game) {
    Identity identity;
    identity.files = FilesOf(game);
    std::vector<Digests> digests;
    for (const DataFile& file : identity.files)
        digests.emplace_back(file.content);
    const auto isIn = [&](std::size_t file, const KnownVersion& version) {
        return std::any_of(version.files.begin(), version.files.end(), [&](const KnownFile& row) {
            return Matches(identity.files[file], digests[file], row);
        });
    };
    int best = 0;
    for (const KnownGame& known : KnownGames(game.Version().Extension()))
        for (const KnownVersion& version : known.versions) {
            int data = 0, programs = 0;
            for (std::size_t i = 0; i < identity.files.size(); ++i)
                if (isIn(i, version))
                    ++(IsProgram(identity.files[i]) ? programs : data);
            const int score = data > 0 ? 2 * data + programs : 0;
            if (score > best)
                identity.versions.clear();
            best = std::max(best, score);
            if (score > 0 && score == best)
                identity.versions.push_back(version);
        }
    if (identity.versions.empty())
        return identity;
    bool original = true;
    const KnownVersion& version = identity.versions.front();
    for (std::size_t i = 0; i < identity.files.size(); ++i) {
        DataFile& file = identity.files[i];
        file.original = isIn(i, version);
        file.known = std::any_of(version.files.begin(), version.files.end(), [&](const auto& row) {
            return StemOf(row.name) == StemOf(file.name);
        });
        original = original && (file.original || !file.known || IsProgram(file));
    }
    identity.state = original ? Identity::State::Original : Identity::State::Modified;
    return identity;
}

std::vector<ItemKey> ChangedItems(Game& game, const KnownVersion& version) {
    std::vector<ItemKey> changed;
    if (version.items.empty())
        return changed;
    for (const auto& item : Checksums(game)) {
        const auto& key = item.first;
        const auto known = version.items.find(key);
        const bool counted =
            std::any_of(version.items.begin(), version.items.end(),
                        [&](const auto& row) { return row.first.first == key.first; });
        if (counted && (known == version.items.end() || known->second != item.second))
            changed.push_back(key);
    }
    return changed;
}

std::vector<ItemKey> ChangedItems(Game& game, const std::string& originalFolder) {
    std::map<ItemKey, std::string> original;
    WithOtherGame(originalFolder, [&](Game& other) { original = Checksums(other); });
    std::vector<ItemKey> changed;
    for (const auto& item : Checksums(game)) {
        const auto& key = item.first;
        const auto known = original.find(key);
        if (known == original.end() || known->second != item.second)
            changed.push_back(key);
        if (known != original.end())
            original.erase(known);
    }
    for (const auto& [key, sum] : original)  // what is there no more
        changed.push_back(key);
    return changed;
}

}  // namespace tessaro::cli
