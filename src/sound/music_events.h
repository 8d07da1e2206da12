// The events of a song on their way between files and chunks.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "sound/chunks.h"

namespace tessaro::sound {

struct MusicEvent {
    std::uint64_t time = 0;  ///< in the ticks of its list
    std::uint8_t address = 0, value = 0;
};

/// The events of a file or a chunk, and what it says about itself.
struct Music {
    std::uint32_t ticksPerSecond = 0;
    std::vector<MusicEvent> events;  ///< by time
    std::uint64_t end = 0;           ///< when the last delay is over
    std::string title, source;
    ByteArray nameBlock;  ///< as it was found
};

Music MusicOf(const SongChunk& song, std::uint32_t ticksPerSecond);

/// Times rounded to other ticks.
Music Rescaled(Music music, std::uint32_t ticksPerSecond);

/// Events with delays, as chunks, .imf and .wlf files hold them. A delay too long for one is split
/// by writes to register 0, which does nothing. Fails (number 6) for more than a chunk can hold.
ByteArray PackEvents(const Music& music);

// What follows reads and writes whole files. Readers fail (number 5) for a file of another kind.

//  offset   width    field
//  0        2        length of the events; without it they go on to the end
//  2        4 each   register, value, u16 delay
//  then              1A hex, title, composer and remarks, each with a zero, 9 bytes of program;
//                    or a block of names as in chunks
// In front may stand "ADLIB", 1, title and game, each with a zero, a byte, and a length of 4 bytes.
ByteArray WriteImf(const Music& music);
Music ReadImf(ByteSpan file, std::uint32_t ticksPerSecond);

//  offset   width   field
//  0        4, 4    "Vgm ", length behind the first 8 bytes and these
//  8        4       version: 151 hex
//  14       4       offset of the description from here
//  18       4       samples of 1/44100 s
//  1C       4, 4    offset from here to where it loops, samples that are repeated
//  34       4       offset from here to the commands
//  50       4       clock of the YM3812
//  then             5A address value; 61 u16 samples to wait; 66 the end
//  then             "Gd3 ", 100 hex, length, eleven texts of 16-bit characters
ByteArray WriteVgm(const Music& music);
Music ReadVgm(ByteSpan file);
bool IsVgm(ByteSpan file);

}  // namespace tessaro::sound
