// The KZR map file, the library's own exchange file, and the ChaosEdit file, whose maps are read by
// the older KZR layout.
//
//  offset   width         field             (P planes, a name of S bytes)
//  0        6             "KZR1.0", "KZR2.0", "KZR2.1", "KZR3.0" or "KZR3.1"
//  6        4             number of maps (signed)
//  10       2             P                 from version 3.0 on; 2 in version 1.0, 3 in 2.x
//  12       2             S                 from version 3.1 on; 16 before
//  then     per map:
//           S             name, zero-padded; S bytes of 255 stand for no name
//           2, 2          width, height
//           2 x w x h     each of the P planes, row by row
//
// Only version 3.1 is written. What follows the last map is ignored.
#include <algorithm>

#include "maps/exchange/exchange_format.h"

namespace tessaro {
namespace {

struct Layout {
    std::int32_t maps = 0;
    std::size_t planes = 0;
    std::size_t nameSize = 16;
};

constexpr struct {
    std::string_view signature;
    std::size_t planes;  ///< 0: from the file
    bool hasNameSize;
} kVersions[] = {
    {"KZR1.0", 2, false}, {"KZR2.0", 3, false}, {"KZR2.1", 3, false},
    {"KZR3.0", 0, false}, {"KZR3.1", 0, true},
};

constexpr std::string_view kChaosEdit = "CE1.23";
constexpr std::string_view kWritten = "KZR3.1";

ForeignMap ReadMap(ByteReader& in, const Layout& layout) {
    ForeignMap map;
    const std::string name = in.Text(layout.nameSize);
    if (!std::all_of(name.begin(), name.end(), [](char c) { return c == '\xFF'; }))
        map.name = NameBeforeZero(name);
    map.width = in.I16();
    map.height = in.I16();
    const std::size_t cells = PlaneCells(map.width, map.height);
    for (std::size_t plane = 0; plane < layout.planes; ++plane)
        map.planes.Plane.push_back(ReadCells(in, cells));
    return map;
}

std::vector<ForeignMap> ReadMaps(ByteReader& in, const Layout& layout) {
    if (layout.maps < 0 || layout.planes < 1)
        throw Failure(kSubscriptOutOfRange);
    std::vector<ForeignMap> maps;  // grows as bytes prove to be there
    for (std::int32_t i = 0; i < layout.maps; ++i)
        maps.push_back(ReadMap(in, layout));
    return maps;
}

/// Whether the bytes are maps of this layout to the last byte, without reading them.
bool FitsExactly(ByteReader in, const Layout& layout) {
    if (layout.maps < 1 || layout.maps > 1000)
        return false;
    for (std::int32_t i = 0; i < layout.maps; ++i) {
        if (in.Remaining() < layout.nameSize + 4)
            return false;
        in.Skip(layout.nameSize);
        const std::size_t width = in.U16();
        const std::size_t height = in.U16();
        if (width < 1 || width > 1024 || height < 1 || height > 1024 ||
            in.Remaining() < layout.planes * width * height * 2)
            return false;
        in.Skip(layout.planes * width * height * 2);
    }
    return in.AtEnd();
}

// A ChaosEdit file does not say how many planes its maps have: the number is the one with which the
// maps end where the file does.
std::vector<ForeignMap> ReadChaosEdit(ByteSpan file) {
    ByteReader in(file);
    in.Skip(kChaosEdit.size());
    if (in.Remaining() >= 4) {
        Layout layout{.maps = in.I32()};
        for (std::size_t planes : {3u, 2u}) {
            layout.planes = planes;
            if (FitsExactly(in, layout))
                return ReadMaps(in, layout);
        }
    }
    throw UnknownFormat(file);
}

bool Recognises(ByteSpan file, std::string_view) {
    return StartsWith(file, kChaosEdit) ||
           std::any_of(std::begin(kVersions), std::end(kVersions),
                       [&](const auto& version) { return StartsWith(file, version.signature); });
}

std::vector<ForeignMap> Read(ByteSpan file, const ExchangeSettings&) {
    for (const auto& version : kVersions) {
        if (!StartsWith(file, version.signature))
            continue;
        ByteReader in(file);
        in.Skip(version.signature.size());
        Layout layout{.maps = in.I32()};
        layout.planes = version.planes != 0 ? version.planes : in.U16();
        if (version.hasNameSize)
            layout.nameSize = in.U16();
        return ReadMaps(in, layout);
    }
    return ReadChaosEdit(file);
}

// A name longer than the field leaves it all zeros: that is meant, as in the game's own files,
// where the save then fails.
void WriteName(ByteWriter& out, const ForeignMap& map, const ExchangeSettings& settings) {
    const auto size = Narrow<std::size_t>(settings.nameSize);
    if (!settings.exportNames)
        return out.Fill(size, 0xFF);
    const std::string_view name = NameBeforeZero(map.name ? *map.name : std::string_view());
    out.Padded(name.size() > size ? std::string_view() : name, size);
}

ByteArray Write(std::span<const ForeignMap> maps, const ExchangeSettings& settings) {
    ByteWriter out;
    out.Text(kWritten);
    out.I32(Narrow<std::int32_t>(maps.size()));
    out.U16(Narrow<std::uint16_t>(settings.planes));
    out.U16(Narrow<std::uint16_t>(settings.nameSize));
    for (const ForeignMap& map : maps) {
        WriteName(out, map, settings);
        out.I16(Narrow<std::int16_t>(map.width));
        out.I16(Narrow<std::int16_t>(map.height));
        for (std::int16_t plane = 0; plane < settings.planes; ++plane)
            WriteCells(out, map, Narrow<std::size_t>(plane));
    }
    return out.Release();
}

}  // namespace

constinit const ExchangeFormat kKzrFormat{mftKZRMapFile, Recognises, Read, Write};

}  // namespace tessaro
