// What the chunks of effects and songs hold; docs/audio-files.md draws them.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "foundation/bytes.h"

namespace tessaro::sound {

//  offset   width   field
//  0        4       length of the bytes
//  4        2       priority: an effect gives way to one of a higher
//  6                a byte each 1/140 s
struct SpeakerChunk {
    std::uint16_t priority = 0;
    ByteSpan steps;
};

/// An instrument as effects and .sbi files hold it: registers 20, 23, 40, 43, 60, 63, 80, 83, E0,
/// E3 and C0, then five bytes of which no register has any.
using Instrument = std::array<std::uint8_t, 16>;

//  offset   width   field
//  0        4       length of the bytes
//  4        2       priority
//  6        16      instrument
//  22       1       octave
//  23               a byte each 1/140 s
//  then             a zero, a name and a zero; or a zero alone
struct AdLibChunk {
    std::uint16_t priority = 0;
    Instrument instrument{};
    std::uint8_t octave = 0;
    ByteSpan steps;
    std::string name;
};

/// The block behind a song's events: 2 bytes, title and source as texts that end in a zero, 6
/// bytes.
inline constexpr std::size_t kNameBlock = 88, kSongTitle = 16, kSongSource = 64;

//  offset   width    field
//  0        2        length of the events
//  2        4 each   register, value, u16 delay to the next event
//  then     88       names, in most
struct SongChunk {
    ByteSpan events;  ///< whole ones
    ByteSpan behind;  ///< what follows them
    std::string title, source;
};

/// A chunk without data, or with a length beyond its end, is none.
std::optional<SpeakerChunk> ReadSpeakerChunk(ByteSpan chunk);
std::optional<AdLibChunk> ReadAdLibChunk(ByteSpan chunk);
/// Names are read where there are no events, too: the block of an absent song is all of it.
SongChunk ReadSongChunk(ByteSpan chunk);

/// The bytes that ReadSpeakerChunk and ReadAdLibChunk read. The steps are followed by a zero.
ByteArray WriteSpeakerChunk(std::uint16_t priority, ByteSpan steps);
ByteArray WriteAdLibChunk(const AdLibChunk& chunk);

/// A name block. Longer texts are cut.
ByteArray WriteNameBlock(std::string_view title, std::string_view source, std::size_t eventBytes);

/// Whether a byte sets the second operator's or the first one's sustain: an instrument of which
/// neither does stops the game.
bool IsGoodInstrument(const Instrument& instrument);

}  // namespace tessaro::sound
