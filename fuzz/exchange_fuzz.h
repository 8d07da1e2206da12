// What the targets of the exchange files share.
#pragma once

#include <cstdlib>

#include "maps/exchange/exchange_format.h"

namespace tessaro {

inline bool SameCells(const typMapPlane& a, const typMapPlane& b) {
    for (std::size_t plane = 0; plane < a.Plane.size(); ++plane) {
        if (a.Plane[plane].Grid != b.Plane.at(plane).Grid)
            return false;
    }
    return true;
}

/// Reads a file. Maps that were read have the cells that their sizes tell, and what is written from
/// them as a KZR file, which holds every map, reads back the same.
inline void FuzzFormat(const ExchangeFormat& format, ByteSpan file) try {
    const std::vector<ForeignMap> maps = format.read(file, {});
    if (maps.empty())
        return;
    ExchangeSettings settings;
    settings.planes = Narrow<std::int16_t>(maps.front().planes.Plane.size());
    const ByteArray written = kKzrFormat.write(maps, settings);
    const std::vector<ForeignMap> again = kKzrFormat.read(written, {});
    if (again.size() != maps.size())
        std::abort();
    for (std::size_t i = 0; i < maps.size(); ++i) {
        if (!SameCells(again[i].planes, maps[i].planes))
            std::abort();
    }
} catch (const Failure&) {
}

}  // namespace tessaro
