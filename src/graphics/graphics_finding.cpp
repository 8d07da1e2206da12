#include "graphics/graphics_finding.h"

#include <algorithm>
#include <utility>

#include "foundation/names.h"

namespace tessaro {
namespace {

constexpr std::array<std::string Game::*, 3> kNames{&Game::vgaDictFile, &Game::vgaGraphFile,
                                                    &Game::vgaHeaderFile};

/// The name of a 98GRAPH set's file: VGAHEAD.WJ6 becomes 98HEAD.WJ6. A name that has been turned
/// already stays.
std::string J98Name(std::string path) {
    const std::size_t separator = LastSeparator(path);
    const std::size_t name = separator == std::string::npos ? 0 : separator + 1;
    if (path.compare(name, 2, "98") != 0)
        path.replace(name, std::min<std::size_t>(3, path.size() - name), "98");
    return path;
}

}  // namespace

GraphicsFinding GraphicsFinding::Probe(const Game& game, const Files& files, bool j98) {
    const auto anyExists = [&](std::initializer_list<const char*> names) {
        return std::ranges::any_of(names, [&](const char* name) {
            const auto kind = files.Kind(JoinPath(game.dataPath, name));
            return kind && kind->type == FileKind::Regular;
        });
    };
    GraphicsFinding found;
    found.j98_ = j98;
    found.canChangeMapSize_ = true;
    if (game.egaGraphics)
        return found;
    found.isBlakeStone_ = anyExists({"BS_AOG.EXE", "BS_FIRE.EXE"});
    const bool fixed =
        found.isBlakeStone_ || anyExists({"CORR7.EXE", "C7.EXE", "CORR7CD.EXE", "WOLF1V.EXE"});
    found.canAddOrRemoveChunks_ = found.canChangeMapSize_ = !fixed;
    return found;
}

void GraphicsFinding::PutInto(Game& game) {
    game.isBlakeStone = isBlakeStone_;
    game.canAddOrRemoveChunks = canAddOrRemoveChunks_;
    game.canChangeMapSize = canChangeMapSize_;
    game.graphicsHeaderEntrySize = j98_ ? 4 : 3;
    if (dictionary)
        game.expandDictionary = *dictionary;
    if (!j98_)
        return;
    for (std::size_t i = 0; i < kNames.size(); ++i) {
        std::string& name = game.*kNames[i];
        if (std::string next = J98Name(name); next != name) {
            couldCompile_ = game.canCompileVGAGraph;
            turned_[i] = std::exchange(name, std::move(next));
        }
    }
    game.canCompileVGAGraph = false;
}

void GraphicsFinding::TakeBack(Game& game) const {
    for (std::size_t i = 0; i < kNames.size(); ++i) {
        std::string& name = game.*kNames[i];
        if (turned_[i].empty() || name != J98Name(turned_[i]))
            continue;
        name = turned_[i];
        game.canCompileVGAGraph = couldCompile_;
    }
}

}  // namespace tessaro
