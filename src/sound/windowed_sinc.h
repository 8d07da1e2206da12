// The low-pass filter of the resampler and of the speaker's steps: a sinc in a Kaiser window.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tessaro::sound {

/// sinc(u) * kaiser(u / zeros) for u from 0 to `zeros`, and its integral from there, as tables of
/// kStepsPerZero entries a zero that are read with linear interpolation (good to -106 dB).
///
///     sinc(u)   = sin(pi u) / (pi u)
///     kaiser(x) = I0(beta sqrt(1 - x^2)) / I0(beta),   I0(x) = sum of ((x / 2)^k / k!)^2
///
/// Entries are rounded to whole numbers, and all that uses them computes with whole numbers.
class WindowedSinc {
public:
    static constexpr int kStepsPerZero = 512, kOneBits = 28;
    static constexpr std::int64_t kOne = std::int64_t{1} << kOneBits;

    WindowedSinc(int zeros, double beta);

    int Zeros() const { return zeros_; }

    /// The value times 2^28 at `u` / 2^32 zeros, of which the sign does not matter; 0 beyond the
    /// last.
    std::int64_t At(std::int64_t u) const { return Read(values_, u < 0 ? -u : u); }

    /// What a step of 2^28 at 0 has become at `u` / 2^32 zeros: 0 to 2^28 with the ripple of the
    /// filter.
    std::int64_t StepAt(std::int64_t u) const {
        return u < 0 ? Read(rest_, -u) : kOne - Read(rest_, u);
    }

private:
    static std::int64_t Read(const std::vector<std::int32_t>& table, std::int64_t u) {
        constexpr int kFractionBits = 32 - 9;  // 2^9 steps a zero
        const auto index = static_cast<std::size_t>(u >> kFractionBits);
        if (index + 1 >= table.size())
            return 0;
        const std::int64_t fraction = u & ((std::int64_t{1} << kFractionBits) - 1);
        const std::int64_t from = table[index], to = table[index + 1];
        return from + ((to - from) * fraction >> kFractionBits);
    }

    int zeros_;
    std::vector<std::int32_t> values_;
    std::vector<std::int32_t> rest_;  ///< the integral from u on, half of 2^28 at 0
};

/// The formula before it is rounded, in units of 2^-28. None of the entries that the two filters
/// below use comes so near to a tie that the last bits of a system's sine could decide it.
double ExactWindowedSinc(int step, int zeros, double beta);

/// The resampler's (stops 96 dB) and the speaker's; made at the first call.
const WindowedSinc& ResamplingFilter();
const WindowedSinc& SpeakerFilter();

inline constexpr int kResamplingZeros = 64, kSpeakerZeros = 32;
inline constexpr double kResamplingBeta = 9.6, kSpeakerBeta = 9.0;

}  // namespace tessaro::sound
