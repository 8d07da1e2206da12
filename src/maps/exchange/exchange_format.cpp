#include "maps/exchange/exchange_format.h"

#include <algorithm>

namespace tessaro {
namespace {

// In the order of detection: signatures first, then what only a length or a name tells.
constexpr const ExchangeFormat* kFormats[] = {
    &kKzrFormat,      // "KZR1.0" to "KZR3.1", "CE1.23"
    &kFloEditFormat,  // "FE1.0"
    &kIPhoneFormat,   // "!ID!"
    &kRottRtcFormat,  // "RTC"
    &kRottRtlFormat,  // "RTL"
    &kMapEditFormat,  // 16384 bytes
    &kNitemareFormat  // named "MAP.1" to "MAP.3"
};

}  // namespace

bool StartsWith(ByteSpan file, std::string_view signature) {
    return file.size() >= signature.size() &&
           std::equal(signature.begin(), signature.end(), file.begin(),
                      [](char a, std::uint8_t b) { return static_cast<std::uint8_t>(a) == b; });
}

const ExchangeFormat* DetectMapFileType(ByteSpan file, std::string_view name) {
    const auto* found = std::find_if(std::begin(kFormats), std::end(kFormats),
                                     [&](auto* format) { return format->recognises(file, name); });
    return found == std::end(kFormats) ? nullptr : *found;
}

const ExchangeFormat* FormatOfType(enmMapFileType type) {
    const auto* found = std::find_if(std::begin(kFormats), std::end(kFormats),
                                     [&](auto* format) { return format->type == type; });
    return found == std::end(kFormats) ? nullptr : *found;
}

Refusal UnknownFormat(ByteSpan file) {
    const ByteSpan start = file.first(std::min<std::size_t>(file.size(), 5));
    return {"Unknown map file format: " + std::string(start.begin(), start.end()), mbCritical,
            "Unknown File Format"};
}

std::vector<ForeignMap> ReadForeignMaps(ByteSpan file, std::string_view name,
                                        const ExchangeSettings& settings) {
    const ExchangeFormat* format = DetectMapFileType(file, name);
    // A KZR file of a later version may have the length or the name of another format.
    if (!format || (StartsWith(file, "KZR") && format != &kKzrFormat))
        throw UnknownFormat(file);
    return format->read(file, settings);
}

}  // namespace tessaro
