#include "sound/speaker.h"

#include <algorithm>

#include "sound/windowed_sinc.h"

namespace tessaro::sound {
namespace {

/// Of the half rate, in hundredths: where the filter's slope ends, the half rate is.
constexpr std::int64_t kCutoff = 91;

constexpr std::uint64_t kReach =
    kSpeakerZeros * 100 / kCutoff + 1;  // samples to each side of a step

std::uint64_t DividedUp(std::uint64_t value, std::uint64_t by) {
    return (value + by - 1) / by;
}

}  // namespace

SpeakerPlayer::SpeakerPlayer(ByteSpan bytes, std::uint32_t rate)
    : bytes_(bytes.begin(), bytes.end()),
      rate_(rate),
      length_(DividedUp(std::uint64_t{bytes.size()} * rate, kEffectTicksPerSecond)) {}

std::uint64_t SpeakerPlayer::SampleAt(std::uint64_t time) const {
    return DividedUp(time * rate_, kUnitsPerSecond);
}

void SpeakerPlayer::MakeStep(std::uint64_t time, int level) {
    const std::uint64_t sample = SampleAt(time);
    const std::uint64_t before = sample * kUnitsPerSecond - time * rate_;
    if (level != level_)
        steps_.push_back({sample, static_cast<std::int64_t>((before << 32) / kUnitsPerSecond),
                          (level - level_) * kLoudness});
    level_ = level;
}

void SpeakerPlayer::MakeStepsUntil(std::uint64_t sample) {
    while (tick_ < bytes_.size()) {
        const std::uint64_t time = tick_ * kUnitsPerTick;
        if (SampleAt(time) > sample)
            break;
        const std::uint8_t byte = bytes_[tick_++];
        if (byte != byte_) {
            MakeStep(time, byte != 0 ? 1 : 0);
            turn_ = time + byte * kSpeakerDivisor / 2 * kUnitsPerClock;
            byte_ = byte;
        }
        if (tick_ == bytes_.size())
            MakeStep(time, 0);
        for (; level_ != 0 && turn_ < time + kUnitsPerTick;
             turn_ += byte_ * kSpeakerDivisor / 2 * kUnitsPerClock)
            MakeStep(turn_, -level_);
    }
}

void SpeakerPlayer::Generate(std::size_t count, std::vector<std::int32_t>& output) {
    const WindowedSinc& filter = SpeakerFilter();
    const std::uint64_t end = sample_ + count;
    MakeStepsUntil(end + kReach);
    std::vector<std::int64_t> ripples(count, 0);
    std::vector<std::int32_t> settled(count,
                                      0);  // steps that are over, at the sample where they are
    for (const Step& step : steps_) {
        const std::uint64_t over = std::min(step.sample + kReach, end);
        for (std::uint64_t k = std::max(step.sample - std::min(step.sample, kReach), sample_);
             k < over; ++k) {
            const std::int64_t distance =
                (static_cast<std::int64_t>(k - step.sample) << 32) + step.before;
            ripples[static_cast<std::size_t>(k - sample_)] +=
                step.by * filter.StepAt(distance * kCutoff / 100);
        }
        if (over < end)
            settled[static_cast<std::size_t>(over - sample_)] += step.by;
    }
    for (std::size_t i = 0; i < count; ++i) {
        settledLevel_ += settled[i];
        output.push_back(settledLevel_ +
                         static_cast<std::int32_t>((ripples[i] + WindowedSinc::kOne / 2) >>
                                                   WindowedSinc::kOneBits));
    }
    sample_ = end;
    std::erase_if(steps_, [end](const Step& step) { return step.sample + kReach < end; });
}

}  // namespace tessaro::sound
