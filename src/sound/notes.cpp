#include "sound/notes.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "sound/ym3812.h"

namespace tessaro::sound {
namespace {

[[noreturn]] void Refuse(const std::string& description) {
    throw Failure(kInvalidProcedureCall, description);
}

std::string_view NextWord(std::string_view& text) {
    constexpr std::string_view kBlanks = " \t\r\n,";
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    const std::string_view word = text.substr(0, text.find_first_of(kBlanks));
    text.remove_prefix(word.size());
    return word;
}

template <class Number>
bool ReadWhole(std::string_view text, Number& number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc{} && end == text.data() + text.size();
}

/// Hertz; less than 0 for what is no note.
double FrequencyOf(std::string_view name) {
    constexpr std::string_view kLetters = "c d ef g a b";  // by semitone
    if (name == "-")
        return 0;
    if (name.empty())
        return -1;
    const std::size_t letter = kLetters.find(static_cast<char>(name[0] | 0x20));
    if (letter == std::string_view::npos || name[0] == ' ')
        return -1;
    int semitone = static_cast<int>(letter);
    name.remove_prefix(1);
    if (!name.empty() && (name[0] == '#' || name[0] == 'b')) {
        semitone += name[0] == '#' ? 1 : -1;
        name.remove_prefix(1);
    }
    int octave = 0;
    if (!ReadWhole(name, octave) || octave < 0 || octave > 9)
        return -1;
    constexpr int kA4 = 4 * 12 + 9;
    return 440 * std::exp2((octave * 12 + semitone - kA4) / 12.0);
}

}  // namespace

std::vector<Note> ReadNotes(std::string_view text) {
    std::vector<Note> notes;
    for (std::string_view word = NextWord(text); !word.empty(); word = NextWord(text)) {
        Note note;
        const std::size_t colon = word.find(':');
        note.frequency = FrequencyOf(word.substr(0, colon));
        const bool ticksGood =
            colon == std::string_view::npos || (ReadWhole(word.substr(colon + 1), note.ticks) &&
                                                note.ticks > 0 && note.ticks <= 10'000);
        if (note.frequency < 0 || !ticksGood)
            Refuse("\"" + std::string(word) +
                   "\" is no note: a letter, # or b, an octave, :ticks.");
        notes.push_back(note);
    }
    if (notes.empty())
        Refuse("There are no notes.");
    return notes;
}

InstrumentFile ReadInstrumentFile(ByteSpan file) {
    constexpr std::size_t kName = 32;
    ByteReader in(file);
    if (file.size() < 4 + kName + Instrument{}.size() || in.Text(3) != "SBI")
        Refuse("This is not an instrument file (.sbi).");
    in.Skip(1);
    InstrumentFile instrument;
    instrument.name = in.Text(kName);
    instrument.name.resize(std::min(instrument.name.size(), instrument.name.find('\0')));
    std::ranges::copy(in.Take(instrument.instrument.size()), instrument.instrument.begin());
    if (!IsGoodInstrument(instrument.instrument))
        Refuse("The instrument has no sustain in either operator: the games refuse it.");
    return instrument;
}

PlayedNotes PlayNotes(const std::vector<Note>& notes) {
    const auto byteAt = [](double frequency, int octave) {
        return std::lround(frequency * (1 << 20) / kYm3812Rate / (1 << octave));
    };
    double highest = 0;
    for (const Note& note : notes)
        highest = std::max(highest, note.frequency);
    PlayedNotes played;
    while (played.octave < 7 && byteAt(highest, played.octave) > 255)
        ++played.octave;
    for (const Note& note : notes) {
        const long byte = note.frequency == 0 ? 0 : byteAt(note.frequency, played.octave);
        if (byte > 255 || (byte == 0 && note.frequency != 0))
            throw Failure(kOverflow,
                          "A note is too high for the card, or too far below the highest.");
        played.steps.insert(played.steps.end(), note.ticks, static_cast<std::uint8_t>(byte));
    }
    played.steps.push_back(0);  // the last byte is not heard
    return played;
}

}  // namespace tessaro::sound
