#include "map_formats.h"

#include "files.h"

namespace tessaro::cli {

namespace {

constexpr MapFormat kFormats[] = {
    {mftKZRMapFile, "kzr", "KZR", "map", true},
    {mftFloEditMapFile, "floedit", "FloEdit", "lvl", true},
    {mftMapEditMapFile, "mapedit", "MapEdit", "", false},
    {mftiPhoneMapFile, "iphone", "iPhone", "", false},
    {mftROTTRTLMapFile, "rtl", "Rise of the Triad (RTL)", "rtl", true},
    {mftROTTRTCMapFile, "rtc", "Rise of the Triad (RTC)", "rtc", true},
};

}  // namespace

std::span<const MapFormat> MapFormats() {
    return kFormats;
}

const MapFormat& FormatOf(enmMapFileType type) {
    for (const MapFormat& format : kFormats)
        if (format.type == type)
            return format;
    return kFormats[0];
}

const MapFormat* FormatOfFile(const std::string& file) {
    const std::string extension = ExtensionOf(file);
    for (const MapFormat& format : kFormats)
        if (!extension.empty() && extension == format.extension)
            return &format;
    return nullptr;
}

}  // namespace tessaro::cli
