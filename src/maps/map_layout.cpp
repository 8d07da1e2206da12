#include "maps/map_layout.h"

#include <algorithm>
#include <optional>
#include <string_view>

namespace tessaro {

namespace {

// The front of a data file:
//
//  0    8    signature
//  8    2    plane count     first form of "TED6v1.0", "TED6v1.1" and "TED6v1.2"
//  10   2    name size       first form of "TED6v1.1" and "TED6v1.2"
//
//  "TED6v1.0"   own plane count, 16-byte names, 16-bit lengths
//  "TED6v1.1"   own plane count, own name size, 16-bit lengths
//  "TED6v1.2"   own plane count, own name size, 32-bit lengths
//  any other    3 planes, 16-byte names, 16-bit lengths

constexpr std::string_view kOwnPlanes = "TED6v1.0";
constexpr std::string_view kOwnNames = "TED6v1.1";
constexpr std::string_view kLongLengths = "TED6v1.2";
constexpr std::string_view kMarker = "!ID!";
constexpr std::int16_t kMostPlanes = 64;
constexpr std::int16_t kLongestName = 1024;

std::string_view TextAt(ByteSpan bytes, std::size_t offset, std::size_t size) {
    const ByteSpan rest = bytes.subspan(std::min(offset, bytes.size()));
    return {reinterpret_cast<const char*>(rest.data()), std::min(size, rest.size())};
}

std::string_view Signature(ByteSpan dataFile) {
    return TextAt(dataFile, 0, kMapSignatureSize);
}

/// The record of the first map, where it makes sense in this layout.
std::optional<MapRecord> FirstRecord(const MapSetLayout& set, ByteSpan dataFile) {
    const MapLayout& layout = set.layout;
    if (layout.planes < 1 || layout.planes > kMostPlanes || layout.nameSize < 1 ||
        layout.nameSize > kLongestName || set.header.MapCount() == 0)
        return {};
    const auto offset = static_cast<std::size_t>(set.header.offsets.front());
    if (offset > dataFile.size() || layout.RecordSize() > dataFile.size() - offset)
        return {};
    ByteReader in(dataFile.subspan(offset));
    MapRecord record = MapRecord::ReadFrom(in, layout);
    for (std::size_t plane = 0; plane < record.planeOffsets.size(); ++plane) {
        const std::int64_t start = record.planeOffsets[plane];
        const std::int64_t length = record.planeLengths[plane];
        if (length != 0 && (start < 0 || length < 0 ||
                            start + length > static_cast<std::int64_t>(dataFile.size())))
            return {};
    }
    return record;
}

/// Whether the record is one of the saver's: a map with cells, behind its planes, which follow each
/// other.
bool FollowsItsPlanes(const MapRecord& record, std::int64_t recordOffset) {
    if (record.width < 1 || record.height < 1)
        return false;
    std::int64_t position = record.planeOffsets.front();
    for (std::size_t plane = 0; plane < record.planeOffsets.size(); ++plane) {
        if (record.planeOffsets[plane] != position)
            return false;
        position += record.planeLengths[plane];
    }
    return position == recordOffset;
}

MapSetLayout FirstForm(ByteSpan headerFile, ByteSpan dataFile) {
    ByteReader in(dataFile, PastEnd::ReadsZero);
    in.Seek(kMapSignatureSize);
    MapLayout layout;
    layout.planes = in.I16();
    if (Signature(dataFile) != kOwnPlanes)
        layout.nameSize = in.I16();
    layout.longLengths = Signature(dataFile) == kLongLengths;
    return {layout, MapHeader::ReadFrom(headerFile)};
}

/// The second form with the counts that its header file holds: none, the plane count, or both.
/// What it does not hold follows from the first record: the plane count from its plane offsets,
/// the name size from the marker behind it.
class SecondForm {
public:
    SecondForm(ByteSpan headerFile, ByteSpan dataFile)
        : headerFile_(headerFile), dataFile_(dataFile) {}

    std::optional<MapSetLayout> Read() const {
        const std::string_view signature = Signature(dataFile_);
        if (signature == kLongLengths)
            return WithBothCounts();
        if (signature == kOwnNames) {
            if (auto set = WithBothCounts(); set && set->layout.nameSize > MapLayout{}.nameSize)
                return set;
        }
        if (auto set = WithPlaneCount())
            return set;
        return WithoutCounts();
    }

private:
    std::int16_t CountAt(std::size_t offset) const {
        ByteReader in(headerFile_, PastEnd::ReadsZero);
        in.Seek(offset);
        return in.I16();
    }

    std::optional<MapSetLayout> WithBothCounts() const {
        MapSetLayout set{{CountAt(2), CountAt(4), Signature(dataFile_) == kLongLengths},
                         MapHeader::ReadFrom(headerFile_, 6)};
        return FirstRecord(set, dataFile_) ? std::optional(set) : std::nullopt;
    }

    std::optional<MapSetLayout> WithPlaneCount() const {
        return WithPlanes(CountAt(2), 4, MapLayout{}.planes + 1, kMostPlanes);
    }

    std::optional<MapSetLayout> WithoutCounts() const {
        for (std::int16_t planes = 1; planes <= MapLayout{}.planes; ++planes) {
            if (auto set = WithPlanes(planes, 2, 1, MapLayout{}.planes))
                return set;
        }
        return {};
    }

    std::optional<MapSetLayout> WithPlanes(std::int16_t planes, std::size_t offsetsAt, int fewest,
                                           int most) const {
        if (planes < fewest || planes > most)
            return {};
        MapSetLayout set{{planes, MapLayout{}.nameSize, false},
                         MapHeader::ReadFrom(headerFile_, offsetsAt)};
        const std::int32_t offset = set.header.offsets.front();
        if (offset <= 0)
            return {};
        if (Signature(dataFile_) == kOwnNames) {
            set.layout.nameSize = 0;
            const std::size_t name = static_cast<std::size_t>(offset) + set.layout.RecordSize();
            do {
                ++set.layout.nameSize;
            } while (set.layout.nameSize < MapLayout{}.nameSize &&
                     TextAt(dataFile_, name + static_cast<std::size_t>(set.layout.nameSize),
                            kMarker.size()) != kMarker);
        }
        const auto record = FirstRecord(set, dataFile_);
        const bool fits =
            record && FollowsItsPlanes(*record, offset) &&
            TextAt(dataFile_, static_cast<std::size_t>(offset) + set.layout.RecordSize(),
                   kMarker.size()) == kMarker;
        return fits ? std::optional(set) : std::nullopt;
    }

    ByteSpan headerFile_;
    ByteSpan dataFile_;
};

}  // namespace

bool HasExtendedLayout(ByteSpan dataFile) {
    const std::string_view signature = Signature(dataFile);
    return signature == kOwnPlanes || signature == kOwnNames || signature == kLongLengths;
}

MapSetLayout ReadMapSetLayout(ByteSpan headerFile, ByteSpan dataFile) {
    if (!HasExtendedLayout(dataFile))
        return {MapLayout{}, MapHeader::ReadFrom(headerFile)};
    MapSetLayout first = FirstForm(headerFile, dataFile);
    if (!FirstRecord(first, dataFile)) {
        if (auto second = SecondForm(headerFile, dataFile).Read())
            return *second;
    }
    return first;
}

}  // namespace tessaro
