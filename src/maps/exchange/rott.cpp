// The Rise of the Triad level files: ".RTL" and, for multiplayer games, ".RTC". Maps are 128 x 128
// with three planes.
//
//  offset   width      field
//  0        4          "RTL" or "RTC" and a zero byte
//  4        4          version, 257
//  8        64 x 100   slots
//  6408                packed planes
//
//  slot     width      field             (in an empty slot)
//  0        4          1 for a map       (0)
//  4        4          CRC of the name field and the three planes before packing (65535)
//  8        4          RLEW tag (0)
//  12       4          map specials, written as 1 (0)
//  16       3 x 4      plane starts in the file (0)
//  28       3 x 4      packed plane lengths (0)
//  40       24         name of at most 22 characters, zero-padded (0)
//
// A plane is RLEW with the slot's own tag (its low 16 bits), without a length in front and without
// a Carmack layer. The CRC is not compared on reading: the games compare it between players only.
#include "maps/exchange/rott.h"

#include <array>
#include <charconv>

#include "maps/exchange/exchange_format.h"
#include "maps/rlew.h"
#include "platform/file.h"

namespace tessaro {
namespace {

constexpr std::uint32_t kVersion = 257;
constexpr std::size_t kSlotsOffset = 8;
constexpr std::size_t kSlotSize = 64;
constexpr std::size_t kPlanes = 3;
constexpr std::int32_t kSide = 128;
constexpr std::size_t kPlaneBytes = 32'768;
constexpr std::size_t kNameSize = 24;
constexpr std::size_t kNameCharacters = 22;

struct Slot {
    bool used = false;
    std::uint32_t crc = 65'535;
    std::int32_t tag = 0;  ///< its low 16 bits mark the runs
    std::array<std::uint32_t, kPlanes> start{};
    std::array<std::uint32_t, kPlanes> length{};
    std::string name;

    static Slot ReadFrom(ByteReader& in) {
        Slot slot;
        slot.used = in.U32() != 0;
        slot.crc = in.U32();
        slot.tag = in.I32();
        in.Skip(4);  // specials
        for (std::uint32_t& start : slot.start)
            start = in.U32();
        for (std::uint32_t& length : slot.length)
            length = in.U32();
        slot.name = NameBeforeZero(in.Text(kNameSize));
        return slot;
    }

    void WriteTo(ByteWriter& out) const {
        out.U32(used ? 1 : 0);
        out.U32(crc);
        out.I32(tag);
        out.U32(used ? 1 : 0);
        for (std::uint32_t value : start)
            out.U32(value);
        for (std::uint32_t value : length)
            out.U32(value);
        out.Padded(name, kNameSize);
    }
};

typMapGrid ReadPlane(ByteSpan file, const Slot& slot, std::size_t plane) {
    ByteReader in(file);
    in.Seek(slot.start[plane]);
    ByteArray cells(kPlaneBytes);
    std::int32_t length = kPlaneBytes;
    const RlewExpansion expansion =
        RlewExpand(static_cast<std::uint16_t>(slot.tag), in.Take(slot.length[plane]), cells, length,
                   LengthPrefix::None, Overrun::Cuts);
    if (expansion.endedEarly)
        throw Failure(kSubscriptOutOfRange);
    ByteReader words(cells);
    return ReadCells(words, kPlaneBytes / 2);
}

std::vector<ForeignMap> Read(ByteSpan file, const ExchangeSettings&) {
    ByteReader in(file);
    const std::string signature = in.Text(3);
    in.Skip(1);
    if (const std::uint32_t version = in.U32(); version != kVersion) {
        std::array<char, 8> digits{};
        const auto end = std::to_chars(digits.begin(), digits.end(), version, 16).ptr;
        throw Refusal("Unknown " + signature + " map file version: 0x" +
                          UpperCase(std::string_view(digits.data(), end)),
                      mbExclamation);
    }
    std::vector<ForeignMap> maps;
    for (std::int32_t i = 0; i < static_cast<std::int32_t>(kRottSlots); ++i) {
        const Slot slot = Slot::ReadFrom(in);
        if (!slot.used)
            continue;
        ForeignMap map{.name = slot.name, .width = kSide, .height = kSide, .slot = i};
        for (std::size_t plane = 0; plane < kPlanes; ++plane)
            map.planes.Plane.push_back(ReadPlane(file, slot, plane));
        maps.push_back(std::move(map));
    }
    return maps;
}

ByteArray Pack(ByteSpan cells, std::size_t plane, std::int32_t tag) try {
    return RlewCompress(static_cast<std::uint16_t>(tag), cells, LengthPrefix::None);
} catch (const Failure& failure) {
    throw Refusal(failure, "clsGameMaps.RLEWCompress",
                  "There was a problem while RLEW compressing map plane " + std::to_string(plane),
                  mbCritical, "RLEW Compress Error");
}

/// Appends the map's planes and describes them in its slot.
void WriteMap(ByteWriter& out, Slot& slot, const ForeignMap& map, std::int32_t tag) {
    if (map.width != kSide || map.height != kSide)
        throw Refusal("ROTT maps must be 128x128.", mbExclamation);
    slot.used = true;
    slot.tag = tag;
    slot.name =
        NameBeforeZero(map.name ? *map.name : std::string_view()).substr(0, kNameCharacters);
    ByteWriter field;
    field.Padded(slot.name, kNameSize);
    std::uint16_t crc = MapCRC(field.View(), 0);
    for (std::size_t plane = 0; plane < kPlanes; ++plane) {
        ByteWriter cells;
        WriteCells(cells, map, plane);
        crc = MapCRC(cells.View(), crc);
        const ByteArray packed = Pack(cells.View(), plane, tag);
        slot.start[plane] = Narrow<std::uint32_t>(out.Position());
        slot.length[plane] = Narrow<std::uint32_t>(packed.size());
        out.Bytes(packed);
    }
    slot.crc = crc;
}

ByteArray WriteFile(std::string_view signature, std::span<const ForeignMap> maps,
                    const ExchangeSettings& settings) {
    ByteWriter planes;  // behind room for the directory, so that positions are those in the file
    planes.Fill(kSlotsOffset + kSlotSize * kRottSlots, 0);
    std::array<Slot, kRottSlots> slots;
    for (const ForeignMap& map : maps) {
        if (map.slot < 0 || map.slot >= static_cast<std::int32_t>(kRottSlots))
            throw TooManyRottMaps();
        WriteMap(planes, slots[static_cast<std::size_t>(map.slot)], map, settings.rlewTag);
    }
    ByteWriter out;
    out.Padded(signature, 4);
    out.U32(kVersion);
    for (const Slot& slot : slots)
        slot.WriteTo(out);
    out.Bytes(planes.View().subspan(out.Position()));
    return out.Release();
}

constexpr std::string_view kRtl = "RTL";
constexpr std::string_view kRtc = "RTC";

template <const std::string_view& Signature>
constexpr ExchangeFormat Format(enmMapFileType type) {
    return {type, [](ByteSpan file, std::string_view) { return StartsWith(file, Signature); }, Read,
            [](std::span<const ForeignMap> maps, const ExchangeSettings& settings) {
                return WriteFile(Signature, maps, settings);
            }};
}

constexpr std::array<std::uint16_t, 256> MakeCrcTable() {
    std::array<std::uint16_t, 256> table{};
    for (unsigned i = 0; i < table.size(); ++i) {
        unsigned crc = i;
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1) != 0 ? crc >> 1 ^ 0xA001 : crc >> 1;
        table[i] = static_cast<std::uint16_t>(crc);
    }
    return table;
}

}  // namespace

Failure TooManyRottMaps() {
    return Failure(kMapExportFailure, "A Rise of the Triad file holds at most 100 maps.");
}

std::uint16_t MapCRC(ByteSpan bytes, std::uint16_t crc) {
    static constexpr auto table = MakeCrcTable();
    for (std::uint8_t byte : bytes)
        crc = static_cast<std::uint16_t>(crc >> 8 ^ table[(crc ^ byte) & 0xFF]);
    return crc;
}

constinit const ExchangeFormat kRottRtlFormat = Format<kRtl>(mftROTTRTLMapFile);
constinit const ExchangeFormat kRottRtcFormat = Format<kRtc>(mftROTTRTCMapFile);

}  // namespace tessaro
