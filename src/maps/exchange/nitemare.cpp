// The Nitemare 3D map files "MAP.1" to "MAP.3", which are only read.
//
//  offset   width      field
//  0        2          number of levels N
//  2        256        class of each wall number
//  258      256        class of each object number
//  514      8192 x N   levels of 64 x 64 cells, row by row: a wall byte, then an object byte
//
// The first level is read: its walls become plane 0, its objects plane 1. N is not relied on.
#include "maps/exchange/exchange_format.h"
#include "platform/file.h"

namespace tessaro {
namespace {

constexpr std::size_t kLevels = 514;
constexpr std::int32_t kSide = 64;

bool Recognises(ByteSpan, std::string_view name) {
    return SameName(name, "MAP.1") || SameName(name, "MAP.2") || SameName(name, "MAP.3");
}

std::vector<ForeignMap> Read(ByteSpan file, const ExchangeSettings&) {
    ByteReader in(file);
    in.Skip(kLevels);
    ByteReader level(in.Take(kSide * kSide * 2));
    ForeignMap map{.width = kSide, .height = kSide};
    map.planes.Plane.resize(2);
    while (!level.AtEnd())
        for (typMapGrid& plane : map.planes.Plane)
            plane.Grid.push_back(level.U8());
    return {map};
}

}  // namespace

constinit const ExchangeFormat kNitemareFormat{mftNitemare3DMapFile, Recognises, Read, nullptr};

}  // namespace tessaro
