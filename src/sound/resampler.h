// From one sample rate to another, in blocks or at once.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "sound/windowed_sinc.h"

namespace tessaro::sound {

/// A windowed sinc of 64 zeros to each side. What lies above either rate's half is down by 96 dB,
/// what lies below 90 % of the lower one's is kept. Computes with whole numbers: the same on every
/// system. Sample k of the output is the input at k * from / to; before and behind the input is
/// silence.
class Resampler {
public:
    /// Rates in samples a second, from 1 on.
    Resampler(std::uint32_t from, std::uint32_t to);

    /// Takes more input and appends the output that it determines. A value may have 24 bits.
    void Process(std::span<const std::int32_t> input, std::vector<std::int32_t>& output);

    /// Ends the input: appends what is left, up to input * to / from samples in all, rounded up.
    void Finish(std::vector<std::int32_t>& output);

private:
    void Produce(std::vector<std::int32_t>& output);
    std::span<const std::int32_t> RowAt(std::uint32_t phase);
    void FillRow(std::uint32_t phase, std::int32_t* row) const;

    std::uint32_t from_, to_;            ///< without common factors
    std::int64_t cutoff_;                ///< of the input's half rate, times 2^32
    std::size_t half_;                   ///< input samples to each side
    std::vector<std::int32_t> history_;  ///< input from the first that the next output needs
    std::uint32_t phase_ = 0;            ///< of the next output between two inputs, in 1 / to_
    std::uint64_t taken_ = 0, made_ = 0;

    // The filter by phase, as far as it has been needed; a single row where all would be too many.
    std::vector<std::int32_t> rows_;
    std::vector<bool> rowMade_;
};

}  // namespace tessaro::sound
