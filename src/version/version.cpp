#include "tessaro/version.h"

#include <algorithm>

#include "foundation/guard.h"
#include "foundation/names.h"
#include "foundation/store.h"
#include "huffman/dictionary.h"
#include "platform/system.h"
#include "saving/recovery.h"
#include "saving/save_set.h"
#include "tessaro/palette.h"

namespace tessaro {
namespace {

/// Finds the games' files in one folder, whose listing is taken once.
class DataFolder {
public:
    DataFolder(const Files& files, const std::string& path)
        : path_(path), names_(files.List(path)) {}

    bool Has(const std::string& name) const {
        return std::ranges::any_of(names_,
                                   [&](const std::string& other) { return SameName(name, other); });
    }
    /// The first name that matches, empty without one.
    std::string FirstMatch(std::string_view pattern) const {
        const auto found = std::ranges::find_if(
            names_, [&](const std::string& name) { return MatchesPattern(name, pattern); });
        return found == names_.end() ? std::string() : *found;
    }

    /// Assigns the path of a file, found or not: after a stop the name tried last stands.
    bool Find(const std::string& name, std::string& path) const {
        path = JoinPath(path_, name);
        return Has(name);
    }

    /// The extension of the first file that matches, empty without one.
    std::string ExtensionOf(std::string_view pattern) const {
        const std::string name = FirstMatch(pattern);
        return name.substr(name.rfind('.') + 1);  // npos + 1 is 0
    }

private:
    std::string path_;
    std::vector<std::string> names_;
};

std::string FindDefaultFileType(const DataFolder& folder, Game& game) {
    if (std::string extension = folder.ExtensionOf("VGADICT.*"); !extension.empty()) {
        game.egaGraphics = false;
        return extension;
    }
    if (std::string extension = folder.ExtensionOf("EGADICT.*"); !extension.empty()) {
        game.egaGraphics = true;
        return extension;
    }
    return {};
}

/// A game before its files are looked for. What a host configured stays, and so does what only a
/// dictionary file decides.
Game Unfound(const Game& before, const std::shared_ptr<Files>& files, const std::string& dataPath) {
    Game game;
    game.files = files;
    game.dataPath = dataPath;
    game.canCompileVGAGraph = true;
    game.canAddOrRemoveChunks = true;
    game.canChangeMapSize = true;
    game.egaGraphics = before.egaGraphics;
    game.isBlakeStone = before.isBlakeStone;
    game.mapsAreVersion10 = before.mapsAreVersion10;
    game.compileExtension = before.compileExtension;
    game.hiResOutput = before.hiResOutput;
    game.outputFolder = before.outputFolder;
    game.extension = before.extension;
    game.dataExtension = before.dataExtension;
    game.compileDictionary = before.compileDictionary;
    game.expandDictionary = before.expandDictionary;
    game.audioDictionary = before.audioDictionary;
    return game;
}

/// A save that was killed half-way is completed, or undone, before its files are looked for.
std::string FinishInterruptedSave(const Game& game) {
    const auto kind = game.files->Kind(game.dataPath);
    if (!kind || kind->type != FileKind::Folder ||
        !game.files->Kind(JoinPath(game.dataPath, kJournalName)))
        return {};
    return Recover(*game.files, game.dataPath).notice;
}

/// @param named whether a dictionary file named the game.
bool FindSet(Game& game, bool& named) {
    const auto kind = game.files->Kind(game.dataPath);
    if (!kind || kind->type != FileKind::Folder)
        return false;
    const DataFolder folder(*game.files, game.dataPath);
    const std::string ext = FindDefaultFileType(folder, game);
    if (ext.empty())
        return false;
    named = true;
    game.mapsAreVersion10 = false;
    game.extension = UpperCase(ext);
    game.dataExtension = ext;

    // Bio Menace is always read through MAPTEMP, even where GAMEMAPS exists.
    if (!folder.Find("GAMEMAPS." + ext, game.gameMapsFile) ||
        !folder.FirstMatch("BMENACE*.EXE").empty()) {
        if (!folder.Find("MAPTEMP." + ext, game.gameMapsFile))
            return false;
        game.mapsAreVersion10 = true;
    }
    if (!folder.Find("MAPHEAD." + ext, game.mapHeaderFile))
        return false;
    if (!folder.Find("AUDIOT." + ext, game.audioDataFile) &&
        !folder.Find("AUDIO." + ext, game.audioDataFile))
        return false;
    if (!folder.Find("AUDIOHED." + ext, game.audioHeaderFile))
        return false;

    if (game.egaGraphics) {
        game.audioIsCompressed = folder.Find("AUDIODCT." + ext, game.audioDictFile);
        if (!game.audioIsCompressed)
            game.audioDictFile.clear();
        if (!folder.Find("EGADICT." + ext, game.vgaDictFile) ||
            !folder.Find("EGAGRAPH." + ext, game.vgaGraphFile) ||
            !folder.Find("EGAHEAD." + ext, game.vgaHeaderFile))
            return false;
        game.canCompileVGAGraph = false;
        return true;
    }
    if (!folder.Find("VSWAP." + ext, game.vswapFile) &&
        !folder.Find("GFXTILES." + ext, game.vswapFile))
        return false;
    if (!folder.Find("VGADICT." + ext, game.vgaDictFile) ||
        !folder.Find("VGAGRAPH." + ext, game.vgaGraphFile) ||
        !folder.Find("VGAHEAD." + ext, game.vgaHeaderFile))
        return false;
    game.canCompileVGAGraph = !folder.Has("WOLF1V.EXE");
    return true;
}

/// The game of a folder that a container still belongs to.
std::shared_ptr<Game> KnownGame(const std::shared_ptr<Files>& files, const std::string& dataPath) {
    Store& store = SharedStore();
    std::erase_if(store.games, [](const auto& game) { return game.expired(); });
    for (const auto& weak : store.games) {
        std::shared_ptr<Game> game = weak.lock();
        if (game->files == files && !game->dataPath.empty() &&
            SameFolder(*files, game->dataPath, dataPath))
            return game;
    }
    return nullptr;
}

/// Makes `next` the configured game. The same files found anew are the same game, so that its
/// containers follow.
void Configure(Game next, std::shared_ptr<Game> known, bool named) {
    Store& store = SharedStore();
    if (known && named && known->extension == next.extension) {
        next.findings = std::move(known->findings);
        *known = std::move(next);
        known->TakeFindingsAgain();
    } else {
        known = std::make_shared<Game>(std::move(next));
        store.games.push_back(known);
    }
    store.game = std::move(known);
}

}  // namespace

clsVersion::clsVersion() {
    SharedStore().appPath = DefaultAppPath();
    clsPalette().LoadPalette();  // images carry a palette from here on
}

bool clsVersion::LoadDataPath(const std::string& DataPath) {
    return Guarded("clsVersion.LoadDataPath", [&] {
        const Store& store = SharedStore();
        const std::string folder = PathFromHost(DataPath);
        const std::shared_ptr<Game> known = KnownGame(store.files, folder);
        if (known && known->saving > 0)
            throw Failure(kInvalidProcedureCall,
                          "This cannot be done while the set is being saved.");
        Game next = Unfound(*store.game, store.files, folder);
        bool named = false;
        try {
            const std::string notice = FinishInterruptedSave(next);
            const bool complete = FindSet(next, named);
            Configure(std::move(next), known, named);
            if (!notice.empty())
                ShowNotices({notice});
            return complete;
        } catch (...) {  // the settings stand where the search ended
            Configure(std::move(next), nullptr, false);
            throw;
        }
    });
}

void clsVersion::LoadCompileVGADictFile(const std::string& NewFile) {
    Guarded("clsVersion.LoadCompileVGADictFile", [&] {
        Game& game = ConfiguredGame();
        const ByteArray bytes = game.files->ReadAt(PathFromHost(NewFile), 0, kDictionarySize);
        if (bytes.size() < kDictionarySize)
            throw Failure(kInputPastEnd);
        game.compileDictionary = ReadDictionary(bytes);
        game.compileDictionaryLoaded = true;
    });
}

std::shared_ptr<tessaro::Files> clsVersion::Files() const {
    return SharedStore().files;
}
void clsVersion::Files(std::shared_ptr<tessaro::Files> NewValue) {
    SharedStore().files = NewValue ? std::move(NewValue) : DiskFiles();
}

bool clsVersion::CanCompileVGAGraph() const {
    return ConfiguredGame().canCompileVGAGraph;
}
bool clsVersion::EGAGraphics() const {
    return ConfiguredGame().egaGraphics;
}
bool clsVersion::CanChangeMapSize() const {
    return ConfiguredGame().canChangeMapSize;
}
bool clsVersion::IsBlakeStone() const {
    return ConfiguredGame().isBlakeStone;
}
bool clsVersion::CanAddOrRemoveChunks() const {
    return ConfiguredGame().canAddOrRemoveChunks;
}

std::string clsVersion::AudioHeaderFile() const {
    return PathToHost(ConfiguredGame().audioHeaderFile);
}
void clsVersion::AudioHeaderFile(const std::string& v) {
    ConfiguredGame().audioHeaderFile = PathFromHost(v);
}
std::string clsVersion::AudioDictFile() const {
    return PathToHost(ConfiguredGame().audioDictFile);
}
void clsVersion::AudioDictFile(const std::string& v) {
    ConfiguredGame().audioDictFile = PathFromHost(v);
}
std::string clsVersion::AudioDataFile() const {
    return PathToHost(ConfiguredGame().audioDataFile);
}
void clsVersion::AudioDataFile(const std::string& v) {
    ConfiguredGame().audioDataFile = PathFromHost(v);
}
std::string clsVersion::ConfigFile() const {
    return ConfiguredGame().configFile;
}
std::string clsVersion::GameMapsFile() const {
    return PathToHost(ConfiguredGame().gameMapsFile);
}
void clsVersion::GameMapsFile(const std::string& v) {
    ConfiguredGame().gameMapsFile = PathFromHost(v);
}
std::string clsVersion::MapHeaderFile() const {
    return PathToHost(ConfiguredGame().mapHeaderFile);
}
void clsVersion::MapHeaderFile(const std::string& v) {
    ConfiguredGame().mapHeaderFile = PathFromHost(v);
}
std::string clsVersion::VGADictFile() const {
    return PathToHost(ConfiguredGame().vgaDictFile);
}
void clsVersion::VGADictFile(const std::string& v) {
    ConfiguredGame().vgaDictFile = PathFromHost(v);
}
std::string clsVersion::VGAGraphFile() const {
    return PathToHost(ConfiguredGame().vgaGraphFile);
}
void clsVersion::VGAGraphFile(const std::string& v) {
    ConfiguredGame().vgaGraphFile = PathFromHost(v);
}
std::string clsVersion::VGAHeaderFile() const {
    return PathToHost(ConfiguredGame().vgaHeaderFile);
}
void clsVersion::VGAHeaderFile(const std::string& v) {
    ConfiguredGame().vgaHeaderFile = PathFromHost(v);
}
std::string clsVersion::VSwapFile() const {
    return PathToHost(ConfiguredGame().vswapFile);
}
void clsVersion::VSwapFile(const std::string& v) {
    ConfiguredGame().vswapFile = PathFromHost(v);
}
std::string clsVersion::AudioMusFile() const {
    return PathToHost(ConfiguredGame().audioMusFile);
}
void clsVersion::AudioMusFile(const std::string& v) {
    ConfiguredGame().audioMusFile = PathFromHost(v);
}
bool clsVersion::MapsAreVersion10() const {
    return ConfiguredGame().mapsAreVersion10;
}
bool clsVersion::ReadSoundLengthsAsLong() const {
    return ConfiguredGame().readSoundLengthsAsLong;
}
void clsVersion::CompileExtension(const std::string& v) {
    ConfiguredGame().compileExtension = v;
}
bool clsVersion::HiResOutput() const {
    return ConfiguredGame().hiResOutput;
}
void clsVersion::HiResOutput(bool v) {
    ConfiguredGame().hiResOutput = v;
}
std::string clsVersion::AppPath() const {
    return SharedStore().appPath;
}
void clsVersion::AppPath(const std::string& v) {
    SharedStore().appPath = v;
}
std::string clsVersion::Extension() const {
    return ConfiguredGame().extension;
}
std::string clsVersion::BackupFolder() const {
    return PathToHost(ConfiguredGame().backupFolder);
}
void clsVersion::BackupFolder(const std::string& v) {
    ConfiguredGame().backupFolder = PathFromHost(v);
}
std::string clsVersion::OutputFolder() const {
    return PathToHost(ConfiguredGame().outputFolder);
}
void clsVersion::OutputFolder(const std::string& v) {
    ConfiguredGame().outputFolder = PathFromHost(v);
}

}  // namespace tessaro
