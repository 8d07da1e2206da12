#include <algorithm>

#include "sound/music_events.h"

namespace tessaro::sound {
namespace {

constexpr std::uint8_t kTag = 0x1A;
constexpr std::string_view kHeader("ADLIB\1", 6);
constexpr std::string_view kProgram("Tessaro\0\0", 9);
constexpr std::size_t kEvent = 4;

[[noreturn]] void Refuse(const char* description) {
    throw Failure(kInvalidProcedureCall, description);
}

std::string TextUpToZero(ByteReader& in) {
    std::string text;
    while (!in.AtEnd()) {
        const auto byte = static_cast<char>(in.U8());
        if (byte == 0)
            break;
        text += byte;
    }
    return text;
}

bool IsRegister(std::uint8_t address) {
    const int group = address >> 5, slot = address & 0x1F;
    if (address <= 0x08 || address == 0xBD)
        return true;
    if (group == 5 || group == 6)  // A0 to C8
        return (address & 15) <= 8 && slot <= 0x18 && !(group == 6 && slot > 8);
    return group > 0 && slot <= 0x15 && (slot & 7) <= 5;
}

/// Events alone, which nothing announces: files of this kind begin with one that does nothing, or
/// at least write to no register that the chip does not have.
bool AreEvents(ByteSpan bytes) {
    for (std::size_t at = 0; at + 2 <= bytes.size(); at += kEvent)
        if (!IsRegister(bytes[at]))
            return false;
    return bytes.size() >= kEvent;
}

void ReadBehind(ByteReader in, Music& music) {
    if (in.AtEnd())
        return;
    const ByteSpan rest = in.Take(in.Remaining());
    if (rest[0] == kTag) {
        ByteReader tag(rest.subspan(1));
        music.title = TextUpToZero(tag);
        const std::string composer = TextUpToZero(tag), remarks = TextUpToZero(tag);
        music.source = remarks.empty() ? composer : remarks;
    } else if (rest.size() + 2 >= kNameBlock) {
        music.nameBlock.assign(rest.begin(), rest.end());
    }
}

}  // namespace

ByteArray WriteImf(const Music& music) {
    const ByteArray events = PackEvents(music);
    ByteWriter out;
    out.U16(Narrow<std::uint16_t>(events.size()));
    out.Bytes(events);
    out.U8(kTag);
    for (const std::string_view text :
         {std::string_view(music.title), std::string_view(), std::string_view(music.source)}) {
        out.Text(text);
        out.U8(0);
    }
    out.Text(kProgram);
    return out.Release();
}

Music ReadImf(ByteSpan file, std::uint32_t ticksPerSecond) {
    Music music;
    ByteReader in(file);
    std::size_t length = 0;
    if (file.size() >= kHeader.size() && std::equal(kHeader.begin(), kHeader.end(), file.begin())) {
        in.Skip(kHeader.size());
        music.title = TextUpToZero(in);
        music.source = TextUpToZero(in);
        if (in.Remaining() < 5)
            Refuse("The music file ends in its header.");
        in.Skip(1);
        length = in.U32();
    } else {
        if (in.Remaining() < 2)
            Refuse("This is not a music file.");
        length = in.U16();
        // A last delay may be missing.
        const bool isLength = length != 0 && length % kEvent == 0 && length <= in.Remaining() + 2;
        if (!isLength) {
            if (!AreEvents(file))
                Refuse("This is not a music file: it holds neither a length nor events.");
            in.Seek(0);
            length = 0;
        }
    }
    const std::size_t bytes = length == 0 ? in.Remaining() : std::min(length, in.Remaining());
    ByteReader events(in.Take(bytes));
    while (events.Remaining() >= 2) {
        MusicEvent event{music.end};
        event.address = events.U8();
        event.value = events.U8();
        music.events.push_back(event);
        if (events.Remaining() >= 2)
            music.end += events.U16();
    }
    if (music.events.empty())
        Refuse("The music file has no events.");
    music.ticksPerSecond = ticksPerSecond;
    ReadBehind(in, music);
    return music;
}

}  // namespace tessaro::sound
