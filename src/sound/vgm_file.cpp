#include <algorithm>

#include "sound/music_events.h"

namespace tessaro::sound {
namespace {

constexpr std::uint32_t kRate = 44100, kVersion = 0x151, kClock = 3579545;
constexpr std::size_t kHeader = 0x80, kDescription = 0x14, kLoop = 0x1C, kCommands = 0x34,
                      kClockAt = 0x50;
constexpr std::uint8_t kWrite = 0x5A, kWait = 0x61, kWait60 = 0x62, kWait50 = 0x63, kEnd = 0x66,
                       kData = 0x67, kCopy = 0x68;

[[noreturn]] void Refuse(const char* description) {
    throw Failure(kInvalidProcedureCall, description);
}

void PutText16(ByteWriter& out, std::string_view text) {
    for (const char c : text)
        out.U16(static_cast<std::uint8_t>(c));
    out.U16(0);
}

void PutDescription(ByteWriter& out, const Music& music) {
    ByteWriter texts;
    constexpr int kTexts = 11, kTitle = 0, kSystem = 4, kNotes = 10;
    for (int i = 0; i < kTexts; ++i)
        PutText16(texts, i == kTitle    ? std::string_view(music.title)
                         : i == kSystem ? std::string_view("AdLib")
                         : i == kNotes  ? std::string_view(music.source)
                                        : std::string_view());
    out.Text("Gd3 ");
    out.U32(0x100);
    out.U32(Narrow<std::uint32_t>(texts.Position()));
    out.Bytes(texts.View());
}

std::string ReadTitle(ByteSpan file, std::size_t at) {
    std::string title;
    for (at += 12; at + 1 < file.size() && (file[at] | file[at + 1]) != 0; at += 2)
        title += file[at + 1] == 0 && file[at] >= 0x20 && file[at] < 0x7F
                     ? static_cast<char>(file[at])
                     : '?';
    return title;
}

/// How many bytes follow a command that is for another chip.
std::size_t BytesBehind(std::uint8_t command) {
    if (command < 0x30 || (command >= 0x64 && command < 0x90))
        Refuse("The VGM file has a command that no version knows.");
    if (command < 0x40 || command == 0x4F || command == 0x50)
        return 1;
    if (command < 0x60 || (command >= 0xA0 && command < 0xC0))
        return 2;
    if (command < 0xA0) {
        constexpr std::size_t kStream[] = {4, 4, 5, 10, 1, 4};
        return command < 0x96 ? kStream[command - 0x90] : 0;
    }
    return command < 0xE0 ? 3 : 4;
}

}  // namespace

bool IsVgm(ByteSpan file) {
    constexpr std::string_view kMagic = "Vgm ";
    return file.size() >= kMagic.size() && std::equal(kMagic.begin(), kMagic.end(), file.begin());
}

ByteArray WriteVgm(const Music& music) {
    const Music timed = Rescaled(music, kRate);
    ByteWriter out;
    out.Text("Vgm ");
    out.Fill(kHeader - 4, 0);
    out.PatchU32(8, kVersion);
    out.PatchU32(0x18, Narrow<std::uint32_t>(timed.end));
    out.PatchU32(kLoop, kHeader - kLoop);
    out.PatchU32(kLoop + 4, Narrow<std::uint32_t>(timed.end));
    out.PatchU32(kCommands, kHeader - kCommands);
    out.PatchU32(kClockAt, kClock);
    std::uint64_t now = 0;
    const auto waitUntil = [&](std::uint64_t time) {
        for (; now < time;) {
            const std::uint64_t wait = std::min<std::uint64_t>(time - now, 0xFFFF);
            out.U8(kWait);
            out.U16(static_cast<std::uint16_t>(wait));
            now += wait;
        }
    };
    const auto write = [&out](std::uint8_t address, std::uint8_t value) {
        out.U8(kWrite);
        out.U8(address);
        out.U8(value);
    };
    write(0x01, 0x20);  // as the games begin
    for (const MusicEvent& event : timed.events) {
        waitUntil(event.time);
        write(event.address, event.value);
    }
    waitUntil(timed.end);
    out.U8(kEnd);
    out.PatchU32(kDescription, Narrow<std::uint32_t>(out.Position() - kDescription));
    PutDescription(out, music);
    out.PatchU32(4, Narrow<std::uint32_t>(out.Position() - 4));
    return out.Release();
}

Music ReadVgm(ByteSpan file) {
    ByteReader in(file, PastEnd::ReadsZero);
    const auto at = [&in](std::size_t offset) {
        in.Seek(offset);
        return in.U32();
    };
    const std::uint32_t version = at(8), commands = version < 0x150 ? 0 : at(kCommands);
    const std::size_t start = commands == 0 ? 0x40 : kCommands + std::size_t{commands};
    const std::uint32_t clock = version < kVersion || start <= kClockAt ? 0 : at(kClockAt);
    if (clock == 0)
        Refuse("The VGM file is not for the YM3812.");
    if ((clock & 0x40000000U) != 0)
        Refuse("The VGM file is for two YM3812, a song for one.");
    Music music;
    music.ticksPerSecond = kRate;
    if (const std::uint32_t description = at(kDescription); description != 0)
        music.title = ReadTitle(file, kDescription + std::size_t{description});
    in.Seek(start);
    for (bool done = false; !done && !in.AtEnd();) {
        const std::uint8_t command = in.U8();
        if (command == kWrite) {
            MusicEvent event{music.end};
            event.address = in.U8();
            event.value = in.U8();
            // What the games write themselves before a song.
            if (!music.events.empty() || event.address != 0x01 || event.value != 0x20)
                music.events.push_back(event);
        } else if (command == kWait) {
            music.end += in.U16();
        } else if (command == kWait60 || command == kWait50) {
            music.end += command == kWait60 ? kRate / 60 : kRate / 50;
        } else if (command >= 0x70 && command < 0x90) {
            music.end += (command & 15U) + (command < 0x80 ? 1 : 0);
        } else if (command == kData) {
            in.Skip(2);
            in.Skip(in.U32());
        } else if (command == kCopy) {
            in.Skip(11);
        } else if (command == kEnd) {
            done = true;
        } else {
            in.Skip(BytesBehind(command));
        }
    }
    if (music.events.empty())
        Refuse("The VGM file has no events.");
    return music;
}

}  // namespace tessaro::sound
