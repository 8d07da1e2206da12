#include "maps/exchange/iphone_map.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>

#include "maps/exchange/exchange_format.h"
#include "maps/rlew.h"

namespace tessaro {
namespace {

constexpr std::string_view kSignature = "!ID!";
constexpr std::size_t kLengthsOffset = 18;
constexpr std::size_t kOffsetsOffset = 24;
constexpr std::size_t kLongestPlane = 0xFFFF;  // its length must fit 2 bytes

struct Header {
    iPhoneMapSettings settings;
    std::array<std::uint16_t, kIPhonePlanes> lengths{};
    std::array<std::uint32_t, kIPhonePlanes> offsets{};
};

Header ReadHeader(ByteReader in) {
    Header header;
    iPhoneMapSettings& settings = header.settings;
    in.Skip(kSignature.size());
    settings.RLEWTag = in.U16();
    settings.Width = in.U16();
    settings.Height = in.U16();
    settings.FloorColor = in.I32();
    settings.CeilingColor = in.I32();
    for (std::uint16_t& length : header.lengths)
        length = in.U16();
    for (std::uint32_t& offset : header.offsets)
        offset = in.U32();
    const std::uint16_t mapNameSize = in.U16();
    const std::uint16_t musicNameSize = in.U16();
    settings.ParTime = std::bit_cast<float>(in.U32());
    in.Skip(5);  // the par time again, as text
    settings.MapName = in.Text(mapNameSize);
    settings.MusicName = in.Text(musicNameSize);
    return header;
}

ByteArray ExpandPlane(ByteSpan stored, std::size_t planeBytes, std::uint16_t tag,
                      CarmackTags tags) {
    ByteArray cells(planeBytes);
    if (stored.empty())
        return cells;
    ByteReader in(stored);
    ByteArray rlew(in.U16());
    CarmackExpand(in.Take(in.Remaining()), rlew, static_cast<std::int32_t>(rlew.size()), tags);
    std::int32_t length = 0;
    const RlewExpansion expansion =
        RlewExpand(tag, rlew, cells, length, LengthPrefix::Short, Overrun::Cuts);
    if (expansion.endedEarly)
        throw Failure(kSubscriptOutOfRange);
    return cells;
}

/// Runs one stage of packing; its failure becomes the refusal that names it.
template <class Stage>
ByteArray RunStage(const char* name, Stage&& stage) try {
    return stage();
} catch (const Failure& failure) {
    throw Refusal(failure, std::string("clsGameMaps.") + name,
                  std::string("Error during ") + name + ".", mbExclamation,
                  "SaveIPhoneMapFile Error");
}

ByteArray PackPlane(ByteSpan cells, std::uint16_t tag, CarmackTags tags) {
    const ByteArray rlew =
        RunStage("RLEWCompress", [&] { return RlewCompress(tag, cells, LengthPrefix::Short); });
    return RunStage("CarmackCompress", [&] {
        ByteArray packed = CarmackCompress(rlew, LengthPrefix::Short, tags);
        if (packed.size() > kLongestPlane)
            throw Failure(kOverflow);
        return packed;
    });
}

std::string TwoDigits(std::int32_t number) {
    return {static_cast<char>('0' + number / 10), static_cast<char>('0' + number % 10)};
}

bool Recognises(ByteSpan file, std::string_view) {
    return StartsWith(file, kSignature) && file.size() >= kIPhoneMinimumSize;
}

std::vector<ForeignMap> Read(ByteSpan file, const ExchangeSettings& settings) {
    const iPhoneMapSettings record = ReadIPhoneMap(file, settings.readTags);
    ForeignMap map{.name = record.MapName, .width = record.Width, .height = record.Height};
    for (const ByteArray& plane : record.Planes) {
        ByteReader in(plane);
        map.planes.Plane.push_back(ReadCells(in, plane.size() / 2));
    }
    return {map};
}

}  // namespace

std::size_t IPhonePlaneBytes(std::int32_t width, std::int32_t height) {
    const std::size_t bytes = PlaneCells(width, height) * 2;
    if (bytes > kLongestPlane)
        throw Failure(kMapExportFailure, "iPhone map files hold maps of at most 32767 cells.");
    return bytes;
}

ParTime SplitParTime(float minutes) {
    constexpr float longest = 99 * 60 + 59;
    const float seconds = std::round(minutes * 60);
    if (!(seconds > 0))  // zero, negative or not a number
        return {};
    const auto whole = static_cast<std::int32_t>(std::min(seconds, longest));
    return {whole / 60, whole % 60};
}

iPhoneMapSettings DefaultIPhoneSettings(std::string_view mapName, std::uint16_t tag) {
    iPhoneMapSettings settings;
    settings.RLEWTag = tag;
    settings.FloorColor = 0x00707070;
    settings.CeilingColor = 0x00383838;
    settings.MapName = mapName;
    settings.MusicName = "music/GETTHEM.ogg";
    return settings;
}

iPhoneMapSettings ReadIPhoneSettings(ByteSpan file) {
    return ReadHeader(ByteReader(file, PastEnd::ReadsZero)).settings;
}

iPhoneMapSettings ReadIPhoneMap(ByteSpan file, CarmackTags tags) {
    Header header = ReadHeader(ByteReader(file));
    iPhoneMapSettings& settings = header.settings;
    const std::size_t planeBytes = IPhonePlaneBytes(settings.Width, settings.Height);
    for (std::size_t plane = 0; plane < kIPhonePlanes; ++plane) {
        ByteSpan stored;
        if (header.lengths[plane] != 0) {
            ByteReader in(file);
            in.Seek(header.offsets[plane]);
            stored = in.Take(header.lengths[plane]);
        }
        settings.Planes.push_back(ExpandPlane(stored, planeBytes, settings.RLEWTag, tags));
    }
    return std::move(settings);
}

ByteArray WriteIPhoneMap(const iPhoneMapSettings& settings, CarmackTags tags) {
    const std::size_t planeBytes = IPhonePlaneBytes(settings.Width, settings.Height);
    ByteWriter out;
    out.Text(kSignature);
    out.U16(settings.RLEWTag);
    out.U16(settings.Width);
    out.U16(settings.Height);
    out.I32(settings.FloorColor);
    out.I32(settings.CeilingColor);
    out.Fill(kIPhonePlanes * 2 + kIPhonePlanes * 4, 0);  // lengths and offsets, below
    out.U16(Narrow<std::uint8_t>(settings.MapName.size()));
    out.U16(Narrow<std::uint8_t>(settings.MusicName.size()));
    out.U32(std::bit_cast<std::uint32_t>(settings.ParTime));
    const ParTime parTime = SplitParTime(settings.ParTime);
    out.Text(TwoDigits(parTime.minutes) + ":" + TwoDigits(parTime.seconds));
    out.Text(settings.MapName);
    out.Text(settings.MusicName);
    for (std::size_t plane = 0; plane < kIPhonePlanes; ++plane) {
        const ByteArray cells =
            plane < settings.Planes.size() ? settings.Planes[plane] : ByteArray(planeBytes);
        if (cells.size() != planeBytes)
            throw Failure(kSubscriptOutOfRange);
        const ByteArray packed = PackPlane(cells, settings.RLEWTag, tags);
        out.PatchU16(kLengthsOffset + 2 * plane, static_cast<std::uint16_t>(packed.size()));
        out.PatchU32(kOffsetsOffset + 4 * plane, Narrow<std::uint32_t>(out.Position()));
        out.Bytes(packed);
    }
    return out.Release();
}

// Written through the settings form, so never straight from a list of maps.
constinit const ExchangeFormat kIPhoneFormat{mftiPhoneMapFile, Recognises, Read, nullptr};

}  // namespace tessaro
