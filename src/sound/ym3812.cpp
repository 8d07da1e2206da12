#include "sound/ym3812.h"

#include <algorithm>

namespace tessaro::sound {
namespace {

constexpr int kPhaseShift = 9, kTurnMask = 1023;

// Tremolo: a triangle of 210 steps of 64 samples (3.7 Hz). Vibrato: eight steps of 1024 samples
// (6.1 Hz). Nothing that all operators share changes within 64 samples.
constexpr std::uint32_t kStretch = 64, kTremoloSteps = 210, kVibratoStep = 1024;

constexpr int kDrumLoudness = 2;  // the chip mixes percussion in twice

constexpr unsigned BitOf(std::uint32_t value, int bit) {
    return value >> bit & 1;
}

/// Of every four places those at which an envelope moves, or moves twice as far, by the remainder
/// of its rate on division by 4; the fast ones, from 52 on, put a single one elsewhere.
using Places = std::array<unsigned, 4>;
constexpr Places kPlaces = {0b0000, 0b0100, 0b1010, 0b1110};
constexpr Places kFastPlaces = {0b0000, 0b0010, 0b1010, 0b1110};

constexpr bool IsAt(const Places& places, unsigned rate, std::uint32_t place) {
    return BitOf(places[rate & 3], static_cast<int>(place & 3)) != 0;
}

}  // namespace

bool Ym3812::Audible(const Operator& op) {
    constexpr int kInaudible = 384;  // 72 dB down even the top of the wave is 0
    return op.stage != Stage::kRelease || op.envelope + op.fixedAttenuation < kInaudible;
}

bool Ym3812::Silent() const {
    return std::none_of(voices_.begin(), voices_.end(), [](const Voice& voice) {
        return Audible(voice.operators[1]) || (voice.additive && Audible(voice.operators[0]));
    });
}

/// An envelope moves by one step, depending on its effective rate:
///
///     0 to 3     never
///     4 to 51    when 2^(12 - rate / 4) samples have passed: every odd time, and where rate % 4 is
///                1 to 3 at one to three of four even times
///     52 to 63   on every sample, by 1, 2 or 4, and twice as far for one to three of four pairs of
///                samples, but never by more than 4
inline void Ym3812::MoveEnvelope(Operator& op, std::uint32_t clock) {
    if (op.stage == Stage::kAttack && op.envelope == 0) {
        op.stage = Stage::kDecay;
        return;
    }
    if (op.stage == Stage::kDecay && op.envelope >> 4 >= op.sustainLevel) {
        op.stage = Stage::kSustain;
        return;
    }
    const unsigned rate = op.rate[static_cast<std::size_t>(op.stage)];
    if (rate < 4)
        return;
    int by = 1;
    if (rate < 52) {
        const unsigned shift = 12 - rate / 4;
        const std::uint32_t time = clock >> shift;

        if (time << shift != clock || (time % 2 == 0 && !IsAt(kPlaces, rate, time / 2)))
            return;
    } else {
        const bool further = IsAt(kFastPlaces, rate, clock / 2 + 1);
        by = std::min(4, (further ? 2 : 1) << (rate / 4 - 13));
    }
    if (op.stage != Stage::kAttack)
        op.envelope = std::min(op.envelope + by, kSilentAttenuation);
    else  // the louder the slower
        op.envelope += ~op.envelope * by >> 3;
}

inline int Ym3812::Output(const Ym3812Tables& tables, const Operator& op, int push, int tremolo) {
    const int turn = static_cast<int>(op.phase >> kPhaseShift) + push;
    const unsigned wave = tables.wave[op.waveform][static_cast<std::size_t>(turn & kTurnMask)];
    const int attenuation = std::min(op.envelope + op.fixedAttenuation + (op.tremolo ? tremolo : 0),
                                     kSilentAttenuation);
    const int level = tables.level[(wave & ~unsigned{Ym3812Tables::kNegative}) +
                                   static_cast<unsigned>(attenuation) * 8];
    return (wave & Ym3812Tables::kNegative) != 0 ? ~level : level;
}

/// The step of an operator's phase; vibrato moves the F-number by its upper three bits.
inline std::uint32_t Ym3812::StepOf(const Voice& voice, const Operator& op, const Modulation& now) {
    int frequency = voice.frequency;
    if (op.vibrato) {
        const int most = frequency >> 7;
        const int by = (now.vibrato % 2 != 0 ? most >> 1
                        : now.vibrato != 0   ? most
                                             : 0) >>
                       now.vibratoShift;
        frequency += now.vibrato < 0 ? -by : by;
    }
    const auto base = static_cast<std::uint32_t>(frequency) << voice.block >> 1;
    return base * kDoubledMultiple[op.multiple] >> 1;
}

void Ym3812::GenerateVoice(Voice& voice, std::span<int> mix, const Modulation& now,
                           std::uint32_t clock, bool bassDrum) {
    const Ym3812Tables& tables = TheYm3812Tables();
    Operator &first = voice.operators[0], &second = voice.operators[1];
    const std::uint32_t firstStep = StepOf(voice, first, now);
    const std::uint32_t secondStep = StepOf(voice, second, now);
    if (!Audible(first) && !Audible(second)) {
        // Unheard, but for a feedback that grows from the last bit of what was before.
        first.phase += firstStep * static_cast<std::uint32_t>(mix.size());
        second.phase += secondStep * static_cast<std::uint32_t>(mix.size());
        for (std::size_t i = 0; i < mix.size(); ++i, ++clock) {
            MoveEnvelope(first, clock);
            MoveEnvelope(second, clock);
        }
        first.output = Output(tables, first, 0, now.tremolo);
        first.outputBefore = first.output;
        return;
    }
    const int feedbackShift = 9 - voice.feedback;
    const bool additive = voice.additive;
    for (int& sample : mix) {
        first.phase += firstStep;
        second.phase += secondStep;
        const int push =
            voice.feedback == 0 ? 0 : (first.output + first.outputBefore) >> feedbackShift;
        first.outputBefore = first.output;
        first.output = Output(tables, first, push, now.tremolo);
        const int output = Output(tables, second, additive ? 0 : first.output, now.tremolo);
        if (bassDrum)  // the second operator alone, pushed or not
            sample += kDrumLoudness * output;
        else
            sample += additive ? first.output + output : output;
        MoveEnvelope(first, clock);
        MoveEnvelope(second, clock);
        ++clock;
    }
}

/// The noise after the shift register has moved once for so many operators.
bool Ym3812::Noise(int operators) {
    for (int i = 0; i < operators; ++i)
        noise_ = noise_ >> 1 | ((noise_ ^ noise_ >> 14) & 1) << 22;
    return (noise_ & 1) != 0;
}

/// Hi-hat, snare drum and cymbal take a few bits of the hi-hat's and the cymbal's phases, and
/// noise, for a phase; the tom-tom is a plain operator.
void Ym3812::GenerateCymbals(std::span<int> mix, const Modulation& now) {
    const Ym3812Tables& tables = TheYm3812Tables();
    Voice &seventh = voices_[7], &eighth = voices_[8];
    Operator &hiHat = seventh.operators[0], &snare = seventh.operators[1];
    Operator &tom = eighth.operators[0], &cymbal = eighth.operators[1];
    const std::array<std::uint32_t, 4> steps = {
        StepOf(seventh, hiHat, now), StepOf(seventh, snare, now), StepOf(eighth, tom, now),
        StepOf(eighth, cymbal, now)};
    // What is given here as a whole phase is what an operator would have with a phase of 0.
    const auto outputAt = [&](const Operator& op, unsigned turn) {
        return Output(tables, op,
                      static_cast<int>(turn) - static_cast<int>(op.phase >> kPhaseShift),
                      now.tremolo);
    };
    for (std::size_t i = 0; i < mix.size(); ++i) {
        hiHat.phase += steps[0];
        snare.phase += steps[1];
        tom.phase += steps[2];
        cymbal.phase += steps[3];
        constexpr int kToHiHat = 14, kToSnare = 3, kRest = 1;  // in the order of the operators
        const std::uint32_t hat = hiHat.phase >> kPhaseShift, ring = cymbal.phase >> kPhaseShift;
        const unsigned mixed = (BitOf(hat, 2) ^ BitOf(hat, 7)) | (BitOf(hat, 3) ^ BitOf(ring, 5)) |
                               (BitOf(ring, 3) ^ BitOf(ring, 5));
        const unsigned hatNoise = Noise(kToHiHat), snareNoise = Noise(kToSnare);
        Noise(kRest);
        const int drums = outputAt(hiHat, mixed << 9 | ((mixed ^ hatNoise) != 0 ? 0xD0U : 0x34U)) +
                          outputAt(snare, BitOf(hat, 8) << 9 | (BitOf(hat, 8) ^ snareNoise) << 8) +
                          Output(tables, tom, 0, now.tremolo) +
                          outputAt(cymbal, mixed << 9 | 0x100U);
        mix[i] += kDrumLoudness * drums;
        for (Operator* const op : {&hiHat, &snare, &tom, &cymbal})
            MoveEnvelope(*op, clock_ + static_cast<std::uint32_t>(i));
    }
}

void Ym3812::GenerateStretch(std::span<int> mix) {
    Modulation now;
    const int place = static_cast<int>(clock_ / kStretch % kTremoloSteps), top = kTremoloSteps / 2;
    now.tremolo = (place < top ? place : 2 * top - place) >> (deepTremolo_ ? 2 : 4);
    constexpr std::array<int, 8> kVibrato = {0, 1, 2, 1, 0, -1, -2, -1};
    now.vibrato = kVibrato[clock_ / kVibratoStep % kVibrato.size()];
    now.vibratoShift = deepVibrato_ ? 0 : 1;

    for (std::size_t i = 0; i < voices_.size() - (percussion_ ? 2 : 0); ++i)
        GenerateVoice(voices_[i], mix, now, clock_, percussion_ && i == 6);
    if (percussion_)
        GenerateCymbals(mix, now);
    clock_ += static_cast<std::uint32_t>(mix.size());
}

void Ym3812::Generate(std::span<std::int16_t> samples) {
    std::array<int, kStretch> mix;
    while (!samples.empty()) {
        const std::size_t count =
            std::min<std::size_t>(samples.size(), kStretch - clock_ % kStretch);
        std::fill_n(mix.begin(), count, 0);
        GenerateStretch(std::span(mix).first(count));
        std::transform(mix.begin(), mix.begin() + static_cast<std::ptrdiff_t>(count),
                       samples.begin(), [](int sample) {
                           return static_cast<std::int16_t>(std::clamp(sample, -32768, 32767));
                       });
        samples = samples.subspan(count);
    }
}

}  // namespace tessaro::sound
