// The stored forms of the map header file and of a map's record in the map data file.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "foundation/bytes.h"

namespace tessaro {

/// How the records of a map data file are laid out.
struct MapLayout {
    std::int16_t planes = 3;
    std::int16_t nameSize = 16;
    bool longLengths = false;

    /// The bytes of one record.
    std::size_t RecordSize() const;
    bool operator==(const MapLayout&) const = default;
};

/// One map's record. The name is as stored, padding included, in the code page of whoever holds
/// the record: DOS in the file, ANSI in the container.
struct MapRecord {
    std::vector<std::int32_t> planeOffsets;
    std::vector<std::int32_t> planeLengths;
    std::int16_t width = 0;
    std::int16_t height = 0;
    std::string name;

    static MapRecord ReadFrom(ByteReader& in, const MapLayout& layout);
    /// Everything up to the name, which the saver writes itself: a name that does not fit is its
    /// failure to report.
    void WriteNumbersTo(ByteWriter& out, const MapLayout& layout) const;
};

/// Writes exactly `size` bytes: the name, then zeros. A longer name becomes zeros alone.
/// @return False when the name was longer.
bool WriteMapNameField(ByteWriter& out, const std::string& name, std::size_t size);

inline constexpr std::size_t kFewestHeaderSlots = 100;

/// What a header file says when its offsets start at a given position.
struct MapHeader {
    std::uint16_t rlewTag = 0;
    std::vector<std::int32_t> offsets;  ///< at least kFewestHeaderSlots; missing ones are 0
    std::size_t offsetsAt = 2;          ///< where in the file they stand

    /// The number of maps: the first offset of 0 or below ends the list.
    std::size_t MapCount() const;

    static MapHeader ReadFrom(ByteSpan headerFile, std::size_t offsetsAt = 2);
};

/// Writes a header file. The counts stand in it only for the layouts that need them there: the
/// plane count with long lengths, longer names or more planes than the classic layout has, the
/// name size with long lengths or longer names.
void WriteMapHeader(ByteWriter& out, std::uint16_t rlewTag, const MapLayout& layout,
                    const std::vector<std::int32_t>& slots);

/// The eight characters in front of a data file in this layout.
std::string MapSignature(const MapLayout& layout);

}  // namespace tessaro
