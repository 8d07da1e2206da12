// A caller that has the installed package alone: makes a palette file, reads it back, and answers
// the library's message box itself.
#include <tessaro/tessaro.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

namespace {

class Quiet : public tessaro::UserInterface {
public:
    tessaro::enmMsgBoxResult MsgBox(const std::string&, std::int32_t, const std::string&,
                                    const std::string&, std::int32_t) override {
        ++boxes;
        return tessaro::mrOK;
    }
    std::optional<std::string> InputBox(const std::string&, const std::string&) override {
        return std::nullopt;
    }
    void ShowIPhoneSettings(tessaro::frmIPhoneSettings&) override {}
    std::optional<std::int32_t> ChooseColor(std::int32_t) override { return std::nullopt; }

    int boxes = 0;
};

int failures = 0;

void Expect(bool holds, const char* what) {
    if (!holds) {
        std::cerr << "does not hold: " << what << "\n";
        ++failures;
    }
}

}  // namespace

int main(int argc, char** argv) {
    using namespace tessaro;
    if (argc != 2)
        return 2;
    const std::filesystem::path folder = argv[1];
    std::filesystem::create_directories(folder);

    Quiet quiet;
    SetUserInterface(&quiet);
    clsVersion version;
    version.AppPath(folder.string());
    clsPalette palette;
    Expect(palette.NumberOfColors() == 256, "a palette has 256 colours");

    ByteArray rgb(768);
    for (std::size_t i = 0; i < rgb.size(); ++i)
        rgb[i] = static_cast<std::uint8_t>(i / 3);  // a grey ramp
    ByteArray file;
    Expect(palette.CreatePaletteFileData(ptJASC3, rgb, file), "a palette file is made");
    const std::string path = (folder / "GREY.PAL").string();
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(file.data()),
               static_cast<std::streamsize>(file.size()));

    palette.LoadPalette(path);
    Expect(quiet.boxes == 0 && palette.Color(200) == 200 * 0x010101, "the file is read back");

    palette.LoadPalette((folder / "MISSING.PAL").string());
    Expect(quiet.boxes == 1 && palette.Color(200) == 200 * 0x010101,
           "a missing file shows one box and changes nothing");
    Expect(!version.LoadDataPath(folder.string()), "an empty folder is no game");

    clsGameMaps maps;  // each of the other classes can be made and let go
    clsVGAGraph graphics;
    clsVSwap pages;
    clsAudioT audio;
    std::cout << (failures == 0 ? "ok\n" : "failed\n");
    return failures == 0 ? 0 : 1;
}
