#include "sound/windowed_sinc.h"

#include <cmath>
#include <numbers>

namespace tessaro::sound {
namespace {

/// The modified Bessel function of the first kind and order 0, of 2 sqrt(`quarter`).
double Bessel(double quarter) {
    double term = 1, sum = 1;
    for (int k = 1; term > sum * 1e-17; ++k) {
        term *= quarter / k / k;
        sum += term;
    }
    return sum;
}

}  // namespace

double ExactWindowedSinc(int step, int zeros, double beta) {
    constexpr double kOne = WindowedSinc::kOne;
    if (step == 0)
        return kOne;
    const double u = static_cast<double>(step) / WindowedSinc::kStepsPerZero;
    const double x = u / zeros, quarter = beta * beta / 4;
    // The sine of the part within a zero, so that at each zero it is one.
    const int within = step % WindowedSinc::kStepsPerZero;
    const double sine = std::sin(std::numbers::pi * within / WindowedSinc::kStepsPerZero) *
                        (step / WindowedSinc::kStepsPerZero % 2 == 0 ? 1 : -1);
    return kOne * sine / (std::numbers::pi * u) * Bessel(quarter * (1 - x * x)) / Bessel(quarter);
}

WindowedSinc::WindowedSinc(int zeros, double beta) : zeros_(zeros) {
    const int steps = zeros * kStepsPerZero;
    values_.reserve(static_cast<std::size_t>(steps) + 1);
    for (int step = 0; step <= steps; ++step)
        values_.push_back(
            static_cast<std::int32_t>(std::llround(ExactWindowedSinc(step, zeros, beta))));

    // The integral from the end towards 0 by trapezoids, made to be one half there, in whole
    // numbers.
    std::vector<std::int64_t> twice(values_.size());
    for (std::size_t i = values_.size() - 1; i > 0; --i)
        twice[i - 1] = twice[i] + values_[i - 1] + values_[i];
    rest_.reserve(values_.size());
    for (const std::int64_t area : twice)
        rest_.push_back(static_cast<std::int32_t>(area * (kOne / 2 >> 8) / (twice[0] >> 8)));
}

const WindowedSinc& ResamplingFilter() {
    static const WindowedSinc filter(kResamplingZeros, kResamplingBeta);
    return filter;
}

const WindowedSinc& SpeakerFilter() {
    static const WindowedSinc filter(kSpeakerZeros, kSpeakerBeta);
    return filter;
}

}  // namespace tessaro::sound
