#include "maps/map_record.h"

#include <algorithm>

namespace tessaro {

namespace {

constexpr std::size_t kOffsetBytes = 4;
constexpr std::int16_t kClassicPlanes = 3;
constexpr std::int16_t kClassicNameSize = 16;

/// How many offsets so many bytes are taken for: a rest of two bytes is a tie, which goes to the
/// even number, one of three bytes counts as an offset.
std::size_t OffsetCount(std::size_t bytes) {
    const std::size_t whole = bytes / kOffsetBytes;
    const std::size_t rest = bytes % kOffsetBytes;
    return whole + (rest > 2 || (rest == 2 && whole % 2 != 0) ? 1 : 0);
}

}  // namespace

// A map's record:
//
//  offset   width       field           (P planes, a name of S bytes)
//  0        4 each      P offsets       from the start of the map data file
//  4P       2 or 4      P lengths       as stored; 4 bytes wide only with long lengths
//  then     2, 2        width, height   signed
//  then     S           name            DOS code page, padded

std::size_t MapLayout::RecordSize() const {
    const auto count = static_cast<std::size_t>(std::max<std::int16_t>(planes, 0));
    const auto name = static_cast<std::size_t>(std::max<std::int16_t>(nameSize, 0));
    return count * (longLengths ? 8 : 6) + 4 + name;
}

MapRecord MapRecord::ReadFrom(ByteReader& in, const MapLayout& layout) {
    MapRecord record;
    for (int plane = 0; plane < layout.planes; ++plane)
        record.planeOffsets.push_back(in.I32());
    for (int plane = 0; plane < layout.planes; ++plane)
        record.planeLengths.push_back(layout.longLengths ? in.I32() : in.U16());
    record.width = in.I16();
    record.height = in.I16();
    record.name = in.Text(static_cast<std::size_t>(layout.nameSize));
    return record;
}

void MapRecord::WriteNumbersTo(ByteWriter& out, const MapLayout& layout) const {
    for (const std::int32_t offset : planeOffsets)
        out.I32(offset);
    for (const std::int32_t length : planeLengths)
        layout.longLengths ? out.I32(length) : out.U16(static_cast<std::uint16_t>(length));
    out.I16(width);
    out.I16(height);
}

bool WriteMapNameField(ByteWriter& out, const std::string& name, std::size_t size) {
    const bool fits = name.size() <= size;
    out.Padded(fits ? name : std::string(), size);
    return fits;
}

// The header file:
//
//  0        2           RLEW tag
//  2        2           plane count     only where WriteMapHeader says so
//  then     2           name size       only where WriteMapHeader says so
//  then     4 each      offsets of the maps' records in the data file, signed; 0 ends the list

std::size_t MapHeader::MapCount() const {
    const auto end = std::ranges::find_if(offsets, [](std::int32_t offset) { return offset <= 0; });
    return static_cast<std::size_t>(end - offsets.begin());
}

MapHeader MapHeader::ReadFrom(ByteSpan headerFile, std::size_t offsetsAt) {
    ByteReader in(headerFile, PastEnd::ReadsZero);
    MapHeader header;
    header.offsetsAt = offsetsAt;
    header.rlewTag = in.U16();
    in.Seek(offsetsAt);
    const std::size_t count = std::max(kFewestHeaderSlots, OffsetCount(in.Remaining()));
    for (std::size_t i = 0; i < count; ++i)
        header.offsets.push_back(in.I32());
    return header;
}

void WriteMapHeader(ByteWriter& out, std::uint16_t rlewTag, const MapLayout& layout,
                    const std::vector<std::int32_t>& slots) {
    out.U16(rlewTag);
    const bool namesNeedSize = layout.longLengths || layout.nameSize > kClassicNameSize;
    if (namesNeedSize || layout.planes > kClassicPlanes)
        out.I16(layout.planes);
    if (namesNeedSize)
        out.I16(layout.nameSize);
    for (const std::int32_t offset : slots)
        out.I32(offset);
}

std::string MapSignature(const MapLayout& layout) {
    if (layout.longLengths)
        return "TED6v1.2";
    if (layout.nameSize != kClassicNameSize)
        return "TED6v1.1";
    return layout.planes == kClassicPlanes ? "TED5v1.0" : "TED6v1.0";
}

}  // namespace tessaro
