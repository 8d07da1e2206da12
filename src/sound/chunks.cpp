#include "sound/chunks.h"

#include <algorithm>

namespace tessaro::sound {
namespace {

constexpr std::size_t kEffectHeader = 6, kAdLibHeader = 23, kEvent = 4;

/// The text up to a zero, at most `size` bytes; nothing where a byte is no printable character.
std::string NameAt(ByteSpan bytes, std::size_t at, std::size_t size) {
    if (at >= bytes.size())
        return {};
    bytes = bytes.subspan(at, std::min(size, bytes.size() - at));
    const auto end = std::find(bytes.begin(), bytes.end(), 0);
    const bool printable = std::all_of(
        bytes.begin(), end, [](std::uint8_t byte) { return byte >= 0x20 && byte < 0x7F; });
    return printable ? std::string(bytes.begin(), end) : std::string();
}

std::string Cut(std::string_view text, std::size_t size) {
    return std::string(text.substr(0, size - 1));
}

}  // namespace

std::optional<SpeakerChunk> ReadSpeakerChunk(ByteSpan chunk) {
    if (chunk.size() < kEffectHeader)
        return std::nullopt;
    ByteReader in(chunk);
    const std::uint32_t length = in.U32();
    SpeakerChunk effect;
    effect.priority = in.U16();
    if (length == 0 || length > in.Remaining())
        return std::nullopt;
    effect.steps = in.Take(length);
    return effect;
}

std::optional<AdLibChunk> ReadAdLibChunk(ByteSpan chunk) {
    if (chunk.size() < kAdLibHeader)
        return std::nullopt;
    ByteReader in(chunk);
    const std::uint32_t length = in.U32();
    AdLibChunk effect;
    effect.priority = in.U16();
    std::ranges::copy(in.Take(effect.instrument.size()), effect.instrument.begin());
    effect.octave = in.U8();
    if (length == 0 || length > in.Remaining())
        return std::nullopt;
    effect.steps = in.Take(length);
    effect.name = NameAt(chunk, in.Position() + 1, chunk.size());
    return effect;
}

SongChunk ReadSongChunk(ByteSpan chunk) {
    SongChunk song;
    if (chunk.size() < 2)
        return song;
    ByteReader in(chunk);
    const std::size_t length = in.U16();
    if (length > in.Remaining())
        return song;
    song.events = in.Take(length).first(length / kEvent * kEvent);
    song.behind = in.Take(in.Remaining());
    // Without events the length field is the block's own first two bytes.
    const std::size_t block = length == 0 ? 0 : 2 + length;
    if (chunk.size() >= block + kNameBlock - 2) {
        song.title = NameAt(chunk, block + 2, kSongTitle);
        song.source = NameAt(chunk, block + 2 + kSongTitle, kSongSource);
    }
    return song;
}

ByteArray WriteSpeakerChunk(std::uint16_t priority, ByteSpan steps) {
    ByteWriter out;
    out.U32(Narrow<std::uint32_t>(steps.size()));
    out.U16(priority);
    out.Bytes(steps);
    out.U8(0);
    return out.Release();
}

ByteArray WriteAdLibChunk(const AdLibChunk& chunk) {
    ByteWriter out;
    out.U32(Narrow<std::uint32_t>(chunk.steps.size()));
    out.U16(chunk.priority);
    out.Bytes(chunk.instrument);
    out.U8(chunk.octave);
    out.Bytes(chunk.steps);
    out.U8(0);
    if (!chunk.name.empty()) {
        out.Text(chunk.name);
        out.U8(0);
    }
    return out.Release();
}

ByteArray WriteNameBlock(std::string_view title, std::string_view source, std::size_t eventBytes) {
    ByteWriter out;
    out.U16(eventBytes == 0 ? 0 : 1);
    out.Padded(Cut(title, kSongTitle), kSongTitle);
    out.Padded(Cut(source, kSongSource), kSongSource);
    out.U32(0);
    out.U16(Narrow<std::uint16_t>(eventBytes));
    return out.Release();
}

bool IsGoodInstrument(const Instrument& instrument) {
    constexpr std::size_t kFirstSustain = 6, kSecondSustain = 7;
    return (instrument[kFirstSustain] | instrument[kSecondSustain]) != 0;
}

}  // namespace tessaro::sound
