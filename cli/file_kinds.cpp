#include "file_kinds.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
#include <string_view>
#include <vector>

#include "files.h"
#include "known/known_game.h"
#include "report.h"

namespace tessaro::cli {

namespace {

namespace fs = std::filesystem;

bool Starts(const ByteArray& content, std::string_view text, std::size_t at = 0) {
    return content.size() >= at + text.size() &&
           std::equal(text.begin(), text.end(), content.begin() + static_cast<std::ptrdiff_t>(at),
                      [](char a, std::uint8_t b) { return static_cast<std::uint8_t>(a) == b; });
}

bool IsPng(const ByteArray& content) {
    return Starts(content, "\x89PNG\r\n\x1a\n");
}

bool IsBmp(const ByteArray& content) {
    return Starts(content, "BM");
}

bool IsWav(const ByteArray& content) {
    return Starts(content, "RIFF") && Starts(content, "WAVE", 8);
}

bool IsMap(const ByteArray& content) {
    constexpr std::string_view kSignatures[] = {"KZR", "CE1.23", "FE1.0", "!ID!", "RTL", "RTC"};
    constexpr std::size_t kMapEditSize = 16384;  // that format has no signature
    return content.size() == kMapEditSize ||
           std::any_of(std::begin(kSignatures), std::end(kSignatures),
                       [&](std::string_view signature) { return Starts(content, signature); });
}

bool IsPalette(const ByteArray& content) {
    constexpr std::size_t kRawSize = 768;  // nothing but the colours
    return content.size() == kRawSize || Starts(content, "JASC-PAL") ||
           (Starts(content, "RIFF") && Starts(content, "PAL ", 8)) ||
           Starts(content, "unsigned char gamepal") || Starts(content, "RGB(") ||
           Starts(content, "GAMEPAL", 4);
}

bool IsAnything(const ByteArray&) {
    return true;
}

/// Whether a file is named as the games name their data: "VSWAP.WL6".
bool HasNameOfGameData(const fs::path& path) {
    constexpr std::array<std::string_view, 16> kNames = {
        "VSWAP",   "GFXTILES", "AUDIOMUS", "GAMEMAPS", "MAPTEMP", "MAPHEAD",
        "VGADICT", "VGAHEAD",  "VGAGRAPH", "EGADICT",  "EGAHEAD", "EGAGRAPH",
        "AUDIOT",  "AUDIOHED", "AUDIODCT", "AUDIO"};
    std::string stem = path.filename().string();
    stem.resize(std::min(stem.size(), stem.find('.')));
    for (char& c : stem)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return std::find(kNames.begin(), kNames.end(), stem) != kNames.end();
}

std::vector<fs::path>& ProtectedFiles() {
    static std::vector<fs::path> files;
    return files;
}

bool IsProtected(const fs::path& path) {
    return std::any_of(ProtectedFiles().begin(), ProtectedFiles().end(), [&](const fs::path& file) {
        std::error_code error;
        return fs::equivalent(file, path, error);
    });
}

}  // namespace

const FileKind kPngFile{"a PNG file", IsPng}, kBmpFile{"a BMP file", IsBmp},
    kWavFile{"a WAV file", IsWav}, kMapFile{"a map file", IsMap},
    kPaletteFile{"a palette file", IsPalette}, kExtractedFile{"an extracted item", IsAnything};

void Protect(const std::string& path) {
    ProtectedFiles().emplace_back(path);
}

bool& ReplaceOtherKinds() {
    static bool force = false;
    return force;
}

void CheckReplaceable(const std::string& path, const FileKind& kind) {
    std::error_code error;
    if (!fs::is_regular_file(path, error))  // a free name, or a pipe, which loses nothing
        return;
    const bool isOpen = IsProtected(path);
    ByteArray content;
    if (!isOpen) {
        content = ReadFile(path);
        if (content.empty() || kind.is(content))
            return;
    }
    if (isOpen || HasNameOfGameData(path) || (ReplaceOtherKinds() && IsOfKnownGame(content)))
        throw CommandError(path +
                           " is a game's data file and is never replaced by this command; "
                           "give another name");
    if (!ReplaceOtherKinds())
        throw CommandError(path + " is there and is not " + kind.name +
                           "; --force replaces it, or give another name");
}

}  // namespace tessaro::cli
