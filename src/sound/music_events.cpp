#include "sound/music_events.h"

#include <algorithm>

namespace tessaro::sound {
namespace {

constexpr std::uint64_t kLongestDelay = 65535;
constexpr std::size_t kMostEventBytes = 65532;

}  // namespace

Music MusicOf(const SongChunk& song, std::uint32_t ticksPerSecond) {
    Music music;
    music.ticksPerSecond = ticksPerSecond;
    music.title = song.title;
    music.source = song.source;
    ByteReader in(song.events);
    while (!in.AtEnd()) {
        MusicEvent event{music.end};
        event.address = in.U8();
        event.value = in.U8();
        music.events.push_back(event);
        music.end += in.U16();
    }
    return music;
}

Music Rescaled(Music music, std::uint32_t ticksPerSecond) {
    const auto rescale = [&](std::uint64_t time) {
        return (time * ticksPerSecond + music.ticksPerSecond / 2) / music.ticksPerSecond;
    };
    for (MusicEvent& event : music.events)
        event.time = rescale(event.time);
    music.end = rescale(music.end);
    music.ticksPerSecond = ticksPerSecond;
    return music;
}

ByteArray PackEvents(const Music& music) {
    ByteWriter out;
    const auto put = [&out](std::uint8_t address, std::uint8_t value, std::uint64_t delay) {
        for (;; address = value = 0) {
            const std::uint64_t now = std::min(delay, kLongestDelay);
            out.U8(address);
            out.U8(value);
            out.U16(static_cast<std::uint16_t>(now));
            delay -= now;
            if (delay == 0)
                break;
            if (out.Position() > kMostEventBytes)
                break;
        }
    };
    if (!music.events.empty() && music.events.front().time > 0)
        put(0, 0, music.events.front().time);
    for (std::size_t i = 0; i < music.events.size(); ++i) {
        const MusicEvent& event = music.events[i];
        const std::uint64_t next =
            i + 1 < music.events.size() ? music.events[i + 1].time : music.end;
        put(event.address, event.value, next - event.time);
        if (out.Position() > kMostEventBytes)
            throw Failure(kOverflow,
                          "The music has more events than a song's 65532 bytes can hold.");
    }
    return out.Release();
}

}  // namespace tessaro::sound
