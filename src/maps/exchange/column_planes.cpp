#include "maps/exchange/column_planes.h"

#include "maps/exchange/exchange_format.h"

namespace tessaro {
namespace {

constexpr std::size_t kSide = kColumnMapSide;
constexpr std::size_t kPlanes = 2;

/// The same cells with rows and columns exchanged.
std::vector<std::int32_t> Transposed(const std::vector<std::int32_t>& cells) {
    std::vector<std::int32_t> result(kSide * kSide);
    for (std::size_t y = 0; y < kSide; ++y)
        for (std::size_t x = 0; x < kSide; ++x)
            result[x * kSide + y] = cells[y * kSide + x];
    return result;
}

}  // namespace

ForeignMap ReadColumnMap(ByteReader& in) {
    ForeignMap map{.width = kColumnMapSide, .height = kColumnMapSide};
    for (std::size_t plane = 0; plane < kPlanes; ++plane)
        map.planes.Plane.push_back({Transposed(ReadCells(in, kSide * kSide).Grid)});
    return map;
}

void WriteColumnMap(ByteWriter& out, const ForeignMap& map, const char* formatName) {
    if (map.width != kColumnMapSide || map.height != kColumnMapSide)
        throw Failure(kMapExportFailure,
                      std::string(formatName) + " files hold maps of 64 x 64 cells only.");
    ForeignMap columns{.width = map.width, .height = map.height};
    for (std::size_t plane = 0; plane < kPlanes && plane < map.planes.Plane.size(); ++plane) {
        const auto& cells = map.planes.Plane[plane].Grid;
        if (cells.size() != kSide * kSide)
            throw Failure(kSubscriptOutOfRange);
        columns.planes.Plane.push_back({Transposed(cells)});
    }
    for (std::size_t plane = 0; plane < kPlanes; ++plane)
        WriteCells(out, columns, plane);
}

}  // namespace tessaro
