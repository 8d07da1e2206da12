// What the registers of the YM3812 hold:
//
//     01        bit 5 lets operators have other waveforms than the sine
//     08        bit 6 chooses the bit of the F-number that counts for key scaling of rates
//     20-35     tremolo, vibrato, sustained, key scaling of rates, multiple (4 bits)
//     40-55     key scaling of the level (2 bits), total level (6)
//     60-75     attack, decay
//     80-95     sustain level, release
//     A0-A8     F-number, lower 8 bits
//     B0-B8     bit 5 the key, block (3 bits), F-number, upper 2 bits
//     BD        deep tremolo, deep vibrato, percussion, keys of the five drums
//     C0-C8     feedback (3 bits), additive
//     E0-F5     waveform (2 bits)
//
// Of the operators' registers 0-5, 8-D and 10-15 behind the first are in use: three voices' first
// operators, then their second ones. The timers, 02 to 04, make no sound.
#include <algorithm>

#include "sound/ym3812.h"

namespace tessaro::sound {
namespace {

constexpr bool Bit(unsigned value, int bit) {
    return (value >> bit & 1) != 0;
}

constexpr int kAtOnce = 60;  // an attack of such a rate takes no time

}  // namespace

Ym3812::Ym3812() {
    for (Voice& voice : voices_)
        Derive(voice);
}

void Ym3812::Reset() {
    *this = Ym3812();
}

void Ym3812::Write(std::uint8_t address, std::uint8_t value) {
    const int group = address >> 4;
    if (address == 0x01) {
        waveforms_ = Bit(value, 5);
    } else if (address == 0x08) {
        noteSelect_ = Bit(value, 6);
        for (Voice& voice : voices_)
            Derive(voice);
    } else if (address == 0xBD) {
        WritePercussion(value);
    } else if (group >= 0xA && group <= 0xC) {
        WriteVoice(address, value);
    } else if (group >= 0x2 && group != 0xD) {
        WriteOperator(address, value);
    }
}

void Ym3812::WriteOperator(std::uint8_t address, std::uint8_t value) {
    const unsigned slot = address & 0x1F, within = slot & 7;
    if (slot > 0x15 || within > 5)
        return;
    Voice& voice = voices_[slot / 8 * 3 + within % 3];
    Operator& op = voice.operators[within / 3];
    switch (address & 0xE0) {
        case 0x20:
            op.tremolo = Bit(value, 7);
            op.vibrato = Bit(value, 6);
            op.sustained = Bit(value, 5);
            op.keyScaleRate = Bit(value, 4);
            op.multiple = value & 15;
            break;
        case 0x40:
            op.keyScaleLevel = value >> 6;
            op.totalLevel = value & 63;
            break;
        case 0x60:
            op.attack = value >> 4;
            op.decay = value & 15;
            break;
        case 0x80:
            op.sustainLevel = value >> 4 == 15 ? 31 : value >> 4;  // the last is 93 dB, not 45
            op.release = value & 15;
            break;
        default:
            op.waveform = waveforms_ ? value & 3 : 0;
    }
    Derive(voice);
}

void Ym3812::WriteVoice(std::uint8_t address, std::uint8_t value) {
    const unsigned number = address & 15;
    if (number >= voices_.size())
        return;
    Voice& voice = voices_[number];
    switch (address & 0xF0) {
        case 0xA0:
            voice.frequency = static_cast<std::uint16_t>((voice.frequency & 0x300) | value);
            break;
        case 0xB0:
            voice.frequency =
                static_cast<std::uint16_t>((voice.frequency & 0xFF) | (value & 3) << 8);
            voice.block = value >> 2 & 7;
            break;
        default:
            voice.feedback = value >> 1 & 7;
            voice.additive = Bit(value, 0);
    }
    Derive(voice);
    if ((address & 0xF0) == 0xB0)
        for (Operator& op : voice.operators)
            SetKey(op, &Operator::key, Bit(value, 5));
}

void Ym3812::WritePercussion(std::uint8_t value) {
    deepTremolo_ = Bit(value, 7);
    deepVibrato_ = Bit(value, 6);
    percussion_ = Bit(value, 5);
    const auto drum = [&](int voice, int op, int bit) {
        SetKey(voices_[static_cast<std::size_t>(voice)].operators[static_cast<std::size_t>(op)],
               &Operator::drumKey, percussion_ && Bit(value, bit));
    };
    drum(6, 0, 4);  // bass drum: a whole voice
    drum(6, 1, 4);
    drum(7, 0, 0);  // hi-hat
    drum(7, 1, 3);  // snare drum
    drum(8, 0, 2);  // tom-tom
    drum(8, 1, 1);  // cymbal
}

void Ym3812::SetKey(Operator& op, bool Operator::*key, bool down) {
    const bool before = op.key || op.drumKey;
    op.*key = down;
    const bool after = op.key || op.drumKey;
    if (after && !before) {  // the wave from its start, the envelope from where it is
        const bool atOnce = op.rate[0] >= kAtOnce;
        op.phase = 0;
        op.stage = atOnce ? Stage::kDecay : Stage::kAttack;
        if (atOnce)
            op.envelope = 0;
    } else if (before && !after) {
        op.stage = Stage::kRelease;
    }
}

void Ym3812::Derive(Voice& voice) {
    const unsigned frequency = voice.frequency, block = voice.block;
    const int level = std::max(0, kKeyScaleLevel[frequency >> 6] * 4 - (8 - voice.block) * 32);
    const unsigned key = block * 2 + Bit(frequency, noteSelect_ ? 8 : 9);
    for (Operator& op : voice.operators) {
        constexpr std::array<int, 4> kShift = {8, 1, 2, 0};  // none, 3, 1.5 and 6 dB an octave
        op.fixedAttenuation = op.totalLevel * 4 + (level >> kShift[op.keyScaleLevel]);
        const unsigned scaled = op.keyScaleRate ? key : key / 4;
        const auto rate = [&](std::uint8_t stated) {
            return static_cast<std::uint8_t>(stated == 0 ? 0 : std::min(63U, stated * 4 + scaled));
        };
        const std::uint8_t release = rate(op.release);
        // What is not sustained goes on falling while the key is down.
        op.rate = {rate(op.attack), rate(op.decay), op.sustained ? std::uint8_t{0} : release,
                   release};
    }
}

}  // namespace tessaro::sound
