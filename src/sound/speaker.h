// The PC speaker: square waves of a divided clock, without the aliases that sampling them would
// give.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "foundation/bytes.h"

namespace tessaro::sound {

inline constexpr std::uint32_t kEffectTicksPerSecond = 140;

/// The clock of the timer that drives the speaker, and what an effect's byte is times for a
/// divisor.
inline constexpr std::uint32_t kSpeakerClock = 1193182, kSpeakerDivisor = 60;

/// Plays the bytes of an effect, one each 1/140 s: 0 is silence, another a tone of clock / (60 *
/// byte). A byte like the one before runs on, any other begins with the high half of its wave. The
/// byte before the first counts as 255, so that an effect that begins with 255 is silent until it
/// changes: meant, the games do so. The speaker is off again when the last byte has been set, which
/// is thus not heard.
///
/// Each of the wave's steps is the step response of a low-pass filter, placed between the samples
/// where the timer has it, so that nothing above the half rate is folded down.
class SpeakerPlayer {
public:
    static constexpr std::int32_t kLoudness = 8192;  ///< of the 32768 of a sample

    SpeakerPlayer(ByteSpan bytes, std::uint32_t rate);

    /// Samples from the first byte's to the last one's end.
    std::uint64_t Length() const { return length_; }

    /// Appends the next `count` samples.
    void Generate(std::size_t count, std::vector<std::int32_t>& output);

private:
    /// Times are counted in a unit that both the timer's clock and the effect's ticks are whole of.
    static constexpr std::uint64_t kUnitsPerSecond = std::uint64_t{kSpeakerClock} * 70;
    static constexpr std::uint64_t kUnitsPerTick = kUnitsPerSecond / kEffectTicksPerSecond;
    static constexpr std::uint64_t kUnitsPerClock = kUnitsPerSecond / kSpeakerClock;

    struct Step {
        std::uint64_t sample = 0;  ///< the first at or behind it
        std::int64_t before = 0;   ///< how far before that sample it lies, times 2^32
        std::int32_t by = 0;
    };

    void MakeStepsUntil(std::uint64_t sample);
    void MakeStep(std::uint64_t time, int level);
    std::uint64_t SampleAt(std::uint64_t time) const;

    ByteArray bytes_;
    std::uint32_t rate_;
    std::uint64_t length_;

    std::size_t tick_ = 0;
    std::uint8_t byte_ = 255;  ///< the one before the tick
    int level_ = 0;            ///< -1, 0, 1: low, off, high
    std::uint64_t turn_ = 0;   ///< the time of the wave's next change, while it is on

    std::vector<Step> steps_;        ///< those whose ripple is not over
    std::int32_t settledLevel_ = 0;  ///< what the others come to
    std::uint64_t sample_ = 0;       ///< the next to be generated
};

}  // namespace tessaro::sound
