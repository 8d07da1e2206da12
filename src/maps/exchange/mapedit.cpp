// The MapEdit map file (".MAP"): one map, column by column (column_planes.h), without a header. Its
// length of exactly 16384 bytes is all that tells it.
#include "maps/exchange/column_planes.h"
#include "maps/exchange/exchange_format.h"

namespace tessaro {
namespace {

bool Recognises(ByteSpan file, std::string_view) {
    return file.size() == kColumnMapSize;
}

std::vector<ForeignMap> Read(ByteSpan file, const ExchangeSettings&) {
    ByteReader in(file);
    return {ReadColumnMap(in)};
}

ByteArray Write(std::span<const ForeignMap> maps, const ExchangeSettings&) {
    if (maps.size() != 1)
        throw Failure(kMapExportFailure, "A MapEdit file holds exactly one map.");
    ByteWriter out;
    WriteColumnMap(out, maps.front(), "MapEdit");
    return out.Release();
}

}  // namespace

constinit const ExchangeFormat kMapEditFormat{mftMapEditMapFile, Recognises, Read, Write};

}  // namespace tessaro
