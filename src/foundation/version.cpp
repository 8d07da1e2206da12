#include "tessaro/version.h"

#include <algorithm>

#include "foundation/dictionary.h"
#include "foundation/guard.h"
#include "foundation/store.h"
#include "platform/file.h"
#include "platform/system.h"
#include "tessaro/palette.h"

namespace tessaro {
namespace {

/// Finds the games' files in one folder, whose listing is taken once.
class DataFolder {
public:
    explicit DataFolder(const std::string& path) : path_(path), names_(ListFiles(path, "*")) {}

    bool Has(const std::string& name) const {
        return std::any_of(names_.begin(), names_.end(),
                           [&](const std::string& other) { return SameName(name, other); });
    }
    bool HasMatch(std::string_view pattern) const { return !ListFiles(path_, pattern).empty(); }

    /// Assigns the path of a file, found or not: after a stop the name tried last stands.
    bool Find(const std::string& name, std::string& path) const {
        path = JoinPath(path_, name);
        return Has(name);
    }

    /// The extension of the first file that matches, empty without one.
    std::string ExtensionOf(std::string_view pattern) const {
        const std::vector<std::string> matches = ListFiles(path_, pattern);
        return matches.empty() ? std::string() : matches[0].substr(matches[0].rfind('.') + 1);
    }

private:
    std::string path_;
    std::vector<std::string> names_;
};

std::string FindDefaultFileType(const DataFolder& folder) {
    Store& store = SharedStore();
    if (std::string extension = folder.ExtensionOf("VGADICT.*"); !extension.empty()) {
        store.egaGraphics = false;
        return extension;
    }
    if (std::string extension = folder.ExtensionOf("EGADICT.*"); !extension.empty()) {
        store.egaGraphics = true;
        return extension;
    }
    return {};
}

void ResetSettings(Store& store, const std::string& dataPath) {
    store.canCompileVGAGraph = true;
    store.canAddOrRemoveChunks = true;
    store.canChangeMapSize = true;
    store.audioIsCompressed = false;
    for (std::string* text :
         {&store.audioHeaderFile, &store.audioDataFile, &store.configFile, &store.gameMapsFile,
          &store.mapHeaderFile, &store.vgaDictFile, &store.vgaGraphFile, &store.vgaHeaderFile,
          &store.vswapFile, &store.audioMusFile, &store.audioDictFile, &store.backupFolder})
        text->clear();
    store.graphicsHeaderEntrySize = 3;
    store.readSoundLengthsAsLong = false;
    store.compileDictionaryLoaded = false;
    store.dataPath = dataPath;
}

bool FindSet(const std::string& dataPath) {
    Store& store = SharedStore();
    if (!FolderExists(dataPath))
        return false;
    const DataFolder folder(dataPath);
    const std::string ext = FindDefaultFileType(folder);
    if (ext.empty())
        return false;
    store.mapsAreVersion10 = false;
    store.extension = UpperCase(ext);
    store.dataExtension = ext;

    // Bio Menace is always read through MAPTEMP, even where GAMEMAPS exists.
    if (!folder.Find("GAMEMAPS." + ext, store.gameMapsFile) || folder.HasMatch("BMENACE*.EXE")) {
        if (!folder.Find("MAPTEMP." + ext, store.gameMapsFile))
            return false;
        store.mapsAreVersion10 = true;
    }
    if (!folder.Find("MAPHEAD." + ext, store.mapHeaderFile))
        return false;
    if (!folder.Find("AUDIOT." + ext, store.audioDataFile) &&
        !folder.Find("AUDIO." + ext, store.audioDataFile))
        return false;
    if (!folder.Find("AUDIOHED." + ext, store.audioHeaderFile))
        return false;

    if (store.egaGraphics) {
        store.audioIsCompressed = folder.Find("AUDIODCT." + ext, store.audioDictFile);
        if (!store.audioIsCompressed)
            store.audioDictFile.clear();
        if (!folder.Find("EGADICT." + ext, store.vgaDictFile) ||
            !folder.Find("EGAGRAPH." + ext, store.vgaGraphFile) ||
            !folder.Find("EGAHEAD." + ext, store.vgaHeaderFile))
            return false;
        store.canCompileVGAGraph = false;
        return true;
    }
    if (!folder.Find("VSWAP." + ext, store.vswapFile) &&
        !folder.Find("GFXTILES." + ext, store.vswapFile))
        return false;
    if (!folder.Find("VGADICT." + ext, store.vgaDictFile) ||
        !folder.Find("VGAGRAPH." + ext, store.vgaGraphFile) ||
        !folder.Find("VGAHEAD." + ext, store.vgaHeaderFile))
        return false;
    store.canCompileVGAGraph = !folder.Has("WOLF1V.EXE");
    return true;
}

}  // namespace

clsVersion::clsVersion() {
    SharedStore().appPath = LibraryFolder();
    clsPalette().LoadPalette();  // foundation's one call upwards: images carry a palette from here
}

bool clsVersion::LoadDataPath(const std::string& DataPath) {
    return Guarded("clsVersion.LoadDataPath", [&] {
        ResetSettings(SharedStore(), DataPath);
        return FindSet(DataPath);
    });
}

void clsVersion::LoadCompileVGADictFile(const std::string& NewFile) {
    Guarded("clsVersion.LoadCompileVGADictFile", [&] {
        File file(NewFile, FileMode::Read);
        const ByteArray bytes = file.ReadAt(0, kDictionarySize);
        SharedStore().compileDictionary = ReadDictionary(bytes);
        SharedStore().compileDictionaryLoaded = true;
    });
}

bool clsVersion::CanCompileVGAGraph() const {
    return SharedStore().canCompileVGAGraph;
}
bool clsVersion::EGAGraphics() const {
    return SharedStore().egaGraphics;
}
bool clsVersion::CanChangeMapSize() const {
    return SharedStore().canChangeMapSize;
}
bool clsVersion::IsBlakeStone() const {
    return SharedStore().isBlakeStone;
}
bool clsVersion::CanAddOrRemoveChunks() const {
    return SharedStore().canAddOrRemoveChunks;
}

std::string clsVersion::AudioHeaderFile() const {
    return SharedStore().audioHeaderFile;
}
void clsVersion::AudioHeaderFile(const std::string& v) {
    SharedStore().audioHeaderFile = v;
}
std::string clsVersion::AudioDictFile() const {
    return SharedStore().audioDictFile;
}
void clsVersion::AudioDictFile(const std::string& v) {
    SharedStore().audioDictFile = v;
}
std::string clsVersion::AudioDataFile() const {
    return SharedStore().audioDataFile;
}
void clsVersion::AudioDataFile(const std::string& v) {
    SharedStore().audioDataFile = v;
}
std::string clsVersion::ConfigFile() const {
    return SharedStore().configFile;
}
std::string clsVersion::GameMapsFile() const {
    return SharedStore().gameMapsFile;
}
void clsVersion::GameMapsFile(const std::string& v) {
    SharedStore().gameMapsFile = v;
}
std::string clsVersion::MapHeaderFile() const {
    return SharedStore().mapHeaderFile;
}
void clsVersion::MapHeaderFile(const std::string& v) {
    SharedStore().mapHeaderFile = v;
}
std::string clsVersion::VGADictFile() const {
    return SharedStore().vgaDictFile;
}
void clsVersion::VGADictFile(const std::string& v) {
    SharedStore().vgaDictFile = v;
}
std::string clsVersion::VGAGraphFile() const {
    return SharedStore().vgaGraphFile;
}
void clsVersion::VGAGraphFile(const std::string& v) {
    SharedStore().vgaGraphFile = v;
}
std::string clsVersion::VGAHeaderFile() const {
    return SharedStore().vgaHeaderFile;
}
void clsVersion::VGAHeaderFile(const std::string& v) {
    SharedStore().vgaHeaderFile = v;
}
std::string clsVersion::VSwapFile() const {
    return SharedStore().vswapFile;
}
void clsVersion::VSwapFile(const std::string& v) {
    SharedStore().vswapFile = v;
}
std::string clsVersion::AudioMusFile() const {
    return SharedStore().audioMusFile;
}
void clsVersion::AudioMusFile(const std::string& v) {
    SharedStore().audioMusFile = v;
}
bool clsVersion::MapsAreVersion10() const {
    return SharedStore().mapsAreVersion10;
}
bool clsVersion::ReadSoundLengthsAsLong() const {
    return SharedStore().readSoundLengthsAsLong;
}
void clsVersion::CompileExtension(const std::string& v) {
    SharedStore().compileExtension = v;
}
bool clsVersion::HiResOutput() const {
    return SharedStore().hiResOutput;
}
void clsVersion::HiResOutput(bool v) {
    SharedStore().hiResOutput = v;
}
std::string clsVersion::AppPath() const {
    return SharedStore().appPath;
}
void clsVersion::AppPath(const std::string& v) {
    SharedStore().appPath = v;
}
std::string clsVersion::Extension() const {
    return SharedStore().extension;
}
std::string clsVersion::BackupFolder() const {
    return SharedStore().backupFolder;
}
void clsVersion::BackupFolder(const std::string& v) {
    SharedStore().backupFolder = v;
}
std::string clsVersion::OutputFolder() const {
    return SharedStore().outputFolder;
}
void clsVersion::OutputFolder(const std::string& v) {
    SharedStore().outputFolder = v;
}

}  // namespace tessaro
