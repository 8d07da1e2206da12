// Notes as text, and instruments as files.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "sound/chunks.h"

namespace tessaro::sound {

struct Note {
    double frequency = 0;  ///< hertz; 0: a rest
    std::uint32_t ticks = 14;
};

/// "C4 E4:20 -:10 G#4". Fails (number 5) for anything else.
std::vector<Note> ReadNotes(std::string_view text);

//  offset   width   field
//  0        4       "SBI", 1A hex (or 1D)
//  4        32      name, up to a zero
//  36       16      instrument
struct InstrumentFile {
    std::string name;
    Instrument instrument{};
};
/// Fails (number 5) for a file of another kind and for an instrument that the games refuse.
InstrumentFile ReadInstrumentFile(ByteSpan file);

/// The bytes and the octave of an effect that plays the notes: the highest octave byte that keeps
/// the highest note within a byte, so that all are as exact as they can be. Fails (number 6) for a
/// note that no byte reaches.
struct PlayedNotes {
    std::uint8_t octave = 0;
    ByteArray steps;
};
PlayedNotes PlayNotes(const std::vector<Note>& notes);

}  // namespace tessaro::sound
