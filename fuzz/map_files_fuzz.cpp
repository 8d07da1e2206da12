// Whatever a map header file and a map data file hold, reading them ends in maps or in failures
// that have been reported. The input is the header file's size (2 bytes), the header file and the
// data file; the highest bit of the size says that the planes are of the older kind.
#include <algorithm>
#include <filesystem>
#include <random>
#include <string>

#include "foundation/store.h"
#include "maps/game_maps_self.h"
#include "platform/file.h"
#include "tessaro/user_interface.h"

using namespace tessaro;

namespace {

class Silent : public UserInterface {
public:
    enmMsgBoxResult MsgBox(const std::string&, std::int32_t, const std::string&, const std::string&,
                           std::int32_t) override {
        return {};
    }
    std::optional<std::string> InputBox(const std::string&, const std::string&) override {
        return {};
    }
    void ShowIPhoneSettings(frmIPhoneSettings&) override {}
    std::optional<std::int32_t> ChooseColor(std::int32_t) override { return {}; }
};

/// A folder of its own for the two files and the log.
struct Folder {
    Folder()
        : path((std::filesystem::temp_directory_path() /
                ("tessaro-map-files-fuzz-" + std::to_string(std::random_device{}())))
                   .string()) {
        std::filesystem::create_directory(path);
    }
    ~Folder() { std::filesystem::remove_all(path); }
    std::string path;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Folder folder;
    static Silent silent;
    if (size < 2)
        return 0;
    ByteReader in(ByteSpan(data, size), PastEnd::ReadsZero);
    const std::uint16_t front = in.U16();
    const ByteSpan header = in.Take(front & 0x7FFF);
    std::filesystem::remove(JoinPath(folder.path, "Error.log"));
    SetUserInterface(&silent);
    SharedStore().appPath = folder.path;
    ConfiguredGame().mapsAreVersion10 = (front & 0x8000) != 0;
    ConfiguredGame().mapHeaderFile = JoinPath(folder.path, "header");
    ConfiguredGame().gameMapsFile = JoinPath(folder.path, "data");
    WriteWholeFile(ConfiguredGame().mapHeaderFile, header);
    WriteWholeFile(ConfiguredGame().gameMapsFile, in.Take(in.Remaining()));

    clsGameMaps maps;
    if (!maps.Initialize())
        return 0;
    for (std::int32_t map = 0; map < std::min(maps.NumberOfMaps(), 4); ++map) {
        const MapRecord& record =
            GameMapsInternals::SelfOf(maps).set.maps[static_cast<std::size_t>(map)].record;
        if (std::int64_t{record.width} * record.height > 65'536)
            continue;  // legal, and slow
        typMapPlane planes;
        std::int32_t width = 0, height = 0;
        maps.LoadMap(map, planes, width, height);
    }
    return 0;
}
