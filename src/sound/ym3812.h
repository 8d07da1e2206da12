// The YM3812: nine voices of two operators each, or six and five of percussion.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "sound/ym3812_tables.h"

namespace tessaro::sound {

/// The chip divides its clock, 14.31818 MHz / 4, by 72: samples a second.
inline constexpr std::uint32_t kYm3812Rate = 49716;

/// An emulation of the chip's documented behaviour: its registers as its application manual gives
/// them, its tables and the widths of its numbers as measurements of the chip showed them. It
/// computes with whole numbers alone, so that its samples are the same everywhere.
///
/// An operator is a sine whose phase another may push:
///
///     phase += step, 19 bits, of which the upper 10 choose one of 1024 steps of a turn
///     step   = F-number * 2^block / 2 * multiple
///     output = +-level(wave(phase + modulation) + 8 * attenuation)
///     attenuation = envelope + 4 * total level + key scaling + tremolo   (0.188 dB each)
///
/// A voice is the second of its operators, pushed by the first, which pushes itself by what its
/// last two outputs were; or the sum of both.
class Ym3812 {
public:
    Ym3812();

    /// Everything silent, all registers 0.
    void Reset();

    /// Sets a register, 0 to 255. Keys are seen at once: one that goes up and down again between
    /// two samples strikes a new note, as on a card, where no two writes come so close.
    void Write(std::uint8_t address, std::uint8_t value);

    /// The next samples, -32768 to 32767.
    void Generate(std::span<std::int16_t> samples);

    /// Whether nothing sounds, nor will until a register is written.
    bool Silent() const;

private:
    enum class Stage : std::uint8_t { kAttack, kDecay, kSustain, kRelease };

    struct Operator {
        // As written.
        bool tremolo = false, vibrato = false, sustained = false, keyScaleRate = false;
        std::uint8_t multiple = 0, keyScaleLevel = 0, totalLevel = 0, waveform = 0;
        std::uint8_t attack = 0, decay = 0, sustainLevel = 0, release = 0;
        bool key = false, drumKey = false;

        // What follows from that and from the voice.
        int fixedAttenuation = 0;            ///< total level and key scaling
        std::array<std::uint8_t, 4> rate{};  ///< effective, by stage: 0 (never) to 63

        // What moves.
        Stage stage = Stage::kRelease;
        int envelope = kSilentAttenuation;
        std::uint32_t phase = 0;
        int output = 0, outputBefore = 0;
    };

    struct Voice {
        std::array<Operator, 2> operators;
        std::uint16_t frequency = 0;
        std::uint8_t block = 0;
        std::uint8_t feedback = 0;
        bool additive = false;
    };

    /// What all operators see of the chip for a stretch of samples in which it does not change.
    struct Modulation {
        int tremolo = 0;       ///< the attenuation it adds
        int vibrato = 0;       ///< -2 to 2, in halves of its most
        int vibratoShift = 0;  ///< 1 where it is shallow
    };

    void WriteOperator(std::uint8_t address, std::uint8_t value);
    void WriteVoice(std::uint8_t address, std::uint8_t value);
    void WritePercussion(std::uint8_t value);
    static void SetKey(Operator& op, bool Operator::*key, bool down);
    void Derive(Voice& voice);

    void GenerateStretch(std::span<int> mix);
    static void GenerateVoice(Voice& voice, std::span<int> mix, const Modulation& now,
                              std::uint32_t clock, bool bassDrum);
    void GenerateCymbals(std::span<int> mix, const Modulation& now);
    bool Noise(int operators);

    static int Output(const Ym3812Tables& tables, const Operator& op, int push, int tremolo);
    static std::uint32_t StepOf(const Voice& voice, const Operator& op, const Modulation& now);
    static void MoveEnvelope(Operator& op, std::uint32_t clock);
    static bool Audible(const Operator& op);

    std::array<Voice, 9> voices_;
    std::uint32_t clock_ = 0;  ///< samples since the reset
    std::uint32_t noise_ = 1;  ///< a shift register of 23 bits
    bool waveforms_ = false;   ///< register 01 lets operators have others than the sine
    bool noteSelect_ = false;
    bool deepTremolo_ = false, deepVibrato_ = false, percussion_ = false;
};

}  // namespace tessaro::sound
