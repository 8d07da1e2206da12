#include "sample/sounds.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "foundation/bytes.h"
#include "sample/canvas.h"

namespace tessaro::sample {
namespace {

/// A sine of 1024 steps a turn, -100 to 100: a parabola for each half turn.
int Sine(int phase) {
    const int step = phase & 511;
    const int height = step * (512 - step) * 100 / 65536;
    return (phase & 512) == 0 ? height : -height;
}

std::uint8_t Sample(int value) {
    return static_cast<std::uint8_t>(std::clamp(128 + value, 0, 255));
}

ByteArray Bell() {
    ByteArray samples;
    for (int i = 0; i < 9000; ++i) {
        const int tone = Sine(i * 64) + Sine(i * 177) / 2;  // 440 and 1217 turns a second
        samples.push_back(Sample(tone * (9000 - i) / 11000));
    }
    return samples;
}

ByteArray Creak() {
    ByteArray samples;
    for (int i = 0, phase = 0; i < 5200; ++i) {
        phase += 14 + Sine(i / 6) / 12;
        samples.push_back(Sample((phase / 16 % 8 - 4) * 14 + Grain(i / 5, 0, 1) / 16 - 8));
    }
    return samples;
}

ByteArray Step() {
    ByteArray samples;
    for (int i = 0; i < 900; ++i)
        samples.push_back(Sample((Grain(i / 3, 0, 2) - 128) * (900 - i) / 1200));
    return samples;
}

ByteArray Chirps() {
    ByteArray samples;
    for (int i = 0; i < 4096; ++i) {
        const int within = i % 1024;
        samples.push_back(Sample(within < 600 ? Sine(i * (180 + within / 4)) * 8 / 10 : 0));
    }
    return samples;
}

constexpr int kEffects = 6;

/// The steps of an effect, 140 a second: a pitch that moves from one value to another.
ByteArray Sweep(int effect, int scale) {
    ByteArray steps;
    const int count = 12 + effect * 5;
    for (int i = 0; i < count; ++i) {
        const int pitch =
            effect % 2 == 0 ? 30 + effect * 9 + i * scale : 200 - effect * 7 - i * scale;
        steps.push_back(static_cast<std::uint8_t>(i % 6 == 5 ? 0 : std::clamp(pitch, 1, 255)));
    }
    return steps;
}

}  // namespace

std::vector<ByteArray> MakeDigitisedSounds() {
    return {Bell(), Creak(), {}, Step(), Chirps()};
}

//  offset   width   field
//  0        4, 2    length, priority
//  6                steps, then a zero
std::vector<ByteArray> MakeSpeakerEffects() {
    std::vector<ByteArray> chunks;
    for (int effect = 0; effect < kEffects; ++effect) {
        const ByteArray steps = Sweep(effect, 3);
        ByteWriter out;
        out.U32(static_cast<std::uint32_t>(steps.size()));
        out.U16(static_cast<std::uint16_t>(10 * effect));
        out.Bytes(steps);
        out.U8(0);
        chunks.push_back(out.Release());
    }
    return chunks;
}

//  offset   width   field
//  0        4, 2    length, priority
//  6        16, 1   instrument, octave
//  23               steps, then a zero
std::vector<ByteArray> MakeAdLibEffects() {
    constexpr std::array<std::uint8_t, 16> kInstrument = {0x21, 0x31, 0x4F, 0x00, 0xF2, 0xD2,
                                                          0x52, 0x73, 0x00, 0x00, 0x06};
    std::vector<ByteArray> chunks;
    for (int effect = 0; effect < kEffects; ++effect) {
        const ByteArray steps = Sweep(effect, 2);
        ByteWriter out;
        out.U32(static_cast<std::uint32_t>(steps.size()));
        out.U16(static_cast<std::uint16_t>(10 * effect));
        out.Bytes(kInstrument);
        out.U8(static_cast<std::uint8_t>(3 + effect % 3));
        out.Bytes(steps);
        out.U8(0);
        chunks.push_back(out.Release());
    }
    return chunks;
}

//  offset   width    field
//  0        2        bytes of the events
//  2        4 each   register, value, u16 delay in 700ths of a second
//  then     88       name
std::vector<ByteArray> MakeSongs() {
    ByteWriter events;
    const auto set = [&events](int chip, int value, int delay = 0) {
        events.U8(static_cast<std::uint8_t>(chip));
        events.U8(static_cast<std::uint8_t>(value));
        events.U16(static_cast<std::uint16_t>(delay));
    };
    set(0, 0);
    for (int voice = 0; voice < 2; ++voice) {  // two operators a voice
        for (const auto& [base, value] : {std::pair{0x20, 0x21},
                                          {0x23, 0x31},
                                          {0x40, 0x4B},
                                          {0x43, voice == 0 ? 0x00 : 0x10},
                                          {0x60, 0xF2},
                                          {0x63, 0xD2},
                                          {0x80, 0x52},
                                          {0x83, 0x73}})
            set(base + voice, value);
        set(0xC0 + voice, 0x06);
    }
    // Semitones of one octave as the chip counts them; "a" is the lowest C, "-" a rest.
    constexpr std::array<int, 12> kNotes = {0x157, 0x16B, 0x181, 0x198, 0x1B0, 0x1CA,
                                            0x1E5, 0x202, 0x220, 0x241, 0x263, 0x287};
    constexpr std::string_view kMelody = "hkomoknkhkmkhfddhkomorqomkmhfkhh";
    constexpr std::string_view kBass = "aahhffhhddaahhaa";
    for (std::size_t i = 0; i < kMelody.size(); ++i) {
        const auto play = [&](int voice, char name, int octave) {
            const int semitone = name - 'a';
            const int note = kNotes[static_cast<std::size_t>(semitone % 12)];
            set(0xA0 + voice, note & 0xFF);
            set(0xB0 + voice, 0x20 | (octave + semitone / 12) << 2 | note >> 8);
        };
        play(0, kMelody[i], 4);
        if (i % 2 == 0)
            play(1, kBass[i / 2], 2);
        set(0, 0, 150);
        set(0xB0, 0);
        if (i % 2 == 1)
            set(0xB1, 0);
        set(0, 0, 20);
    }

    ByteWriter tune, none;
    tune.U16(Narrow<std::uint16_t>(events.Position()));
    tune.Bytes(events.View());
    tune.Padded("The Keeper's Round", 88);
    none.U16(0);
    none.Padded("none", 86);
    return {tune.Release(), none.Release()};
}

}  // namespace tessaro::sample
