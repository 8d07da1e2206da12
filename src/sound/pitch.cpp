#include "sound/pitch.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "sound/speaker.h"

namespace tessaro::sound {
namespace {

constexpr std::size_t kWindow = 320, kShortest = 3;
constexpr std::size_t kLongest = kPitchRate * 255 * kSpeakerDivisor / kSpeakerClock + 1;
constexpr double kLittle = 0.15, kSoft = 0.03;  // of the mean difference; of the loudest stretch

double Loudness(std::span<const std::int32_t> samples) {
    double sum = 0;
    for (const std::int32_t sample : samples)
        sum += double{1} * sample * sample;
    return std::sqrt(sum / static_cast<double>(samples.size()));
}

double Difference(std::span<const std::int32_t> samples, std::size_t shift) {
    double sum = 0;
    for (std::size_t i = 0; i < kWindow; ++i) {
        const double by = double{1} * samples[i] - samples[i + shift];
        sum += by * by;
    }
    return sum;
}

double CrossingPitch(std::span<const std::int32_t> samples) {
    int crossings = 0;
    for (std::size_t i = 1; i < kWindow; ++i)
        crossings += (samples[i - 1] < 0) != (samples[i] < 0);
    return crossings * double{kPitchRate} / (2 * kWindow);
}

/// The lowest place of a parabola through three values, from the middle one.
double Lowest(double before, double at, double behind) {
    const double bend = before - 2 * at + behind;
    return bend > 0 ? (before - behind) / (2 * bend) : 0;
}

double PitchOf(std::span<const std::int32_t> samples) {
    std::vector<double> relative(kLongest + 1, 1);
    double sum = 0;
    for (std::size_t shift = 1; shift <= kLongest; ++shift) {
        const double difference = Difference(samples, shift);
        sum += difference;
        relative[shift] = sum > 0 ? difference * static_cast<double>(shift) / sum : 1;
    }
    for (std::size_t shift = kShortest; shift < kLongest; ++shift)
        if (relative[shift] < kLittle && relative[shift] <= relative[shift + 1])
            return kPitchRate / (static_cast<double>(shift) +
                                 Lowest(relative[shift - 1], relative[shift], relative[shift + 1]));
    return CrossingPitch(samples);
}

}  // namespace

std::vector<double> FollowPitch(std::span<const std::int32_t> samples) {
    constexpr std::size_t kStretch = kWindow + kLongest;
    // Silence around, so that the stretch of each time has its middle there.
    std::vector<std::int32_t> padded(kStretch / 2, 0);
    padded.insert(padded.end(), samples.begin(), samples.end());
    padded.resize(padded.size() + kStretch, 0);
    const std::size_t times =
        (samples.size() * kEffectTicksPerSecond + kPitchRate - 1) / kPitchRate;
    std::vector<double> loudness, pitches;
    const auto stretchAt = [&](std::size_t time) {
        return std::span<const std::int32_t>(padded).subspan(
            time * kPitchRate / kEffectTicksPerSecond, kStretch);
    };
    for (std::size_t time = 0; time < times; ++time)  // of the tick itself
        loudness.push_back(
            Loudness(stretchAt(time).subspan(kStretch / 2, kPitchRate / kEffectTicksPerSecond)));
    const double loudest = loudness.empty() ? 0 : *std::ranges::max_element(loudness);
    for (std::size_t time = 0; time < times; ++time)
        pitches.push_back(
            loudest > 0 && loudness[time] >= kSoft * loudest ? PitchOf(stretchAt(time)) : 0);
    return pitches;
}

}  // namespace tessaro::sound
