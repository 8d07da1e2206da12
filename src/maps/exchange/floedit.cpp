// The FloEdit floor file (".LVL").
//
//  offset   width       field
//  0        5           "FE1.0"
//  5        4           number of maps N (signed)
//  9        16384 x N   the maps, column by column (column_planes.h)
#include "maps/exchange/column_planes.h"
#include "maps/exchange/exchange_format.h"

namespace tessaro {
namespace {

constexpr std::string_view kSignature = "FE1.0";

bool Recognises(ByteSpan file, std::string_view) {
    return StartsWith(file, kSignature);
}

std::vector<ForeignMap> Read(ByteSpan file, const ExchangeSettings&) {
    ByteReader in(file);
    in.Skip(kSignature.size());
    const auto count = Narrow<std::uint32_t>(in.I32());
    if (count > in.Remaining() / kColumnMapSize)
        throw Failure(kSubscriptOutOfRange);
    std::vector<ForeignMap> maps;
    for (std::uint32_t i = 0; i < count; ++i)
        maps.push_back(ReadColumnMap(in));
    return maps;
}

ByteArray Write(std::span<const ForeignMap> maps, const ExchangeSettings&) {
    ByteWriter out;
    out.Text(kSignature);
    out.I32(Narrow<std::int32_t>(maps.size()));
    for (const ForeignMap& map : maps)
        WriteColumnMap(out, map, "FloEdit");
    return out.Release();
}

}  // namespace

constinit const ExchangeFormat kFloEditFormat{mftFloEditMapFile, Recognises, Read, Write};

}  // namespace tessaro
