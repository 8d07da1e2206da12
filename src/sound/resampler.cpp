#include "sound/resampler.h"

#include <algorithm>
#include <numeric>

namespace tessaro::sound {
namespace {

constexpr std::size_t kMostRowEntries = 1 << 21;

/// The middle of the slope, 0.95 of the lower half rate: it ends there.
constexpr std::int64_t kRolloffNumerator = 19, kRolloffDenominator = 20;

}  // namespace

Resampler::Resampler(std::uint32_t from, std::uint32_t to) {
    const std::uint32_t common = std::gcd(from, to);
    from_ = from / common;
    to_ = to / common;
    const std::int64_t one = std::int64_t{1} << 32;
    const std::int64_t lower = to_ < from_ ? one * to_ / from_ : one;
    cutoff_ = lower / kRolloffDenominator * kRolloffNumerator;
    half_ = static_cast<std::size_t>(ResamplingFilter().Zeros() * one / cutoff_) + 1;
    history_.assign(half_ - 1, 0);
    const std::size_t rows = to_ * 2 * half_ <= kMostRowEntries ? to_ : 1;
    rows_.resize(rows * 2 * half_);
    rowMade_.resize(rows);
}

/// The weights of the 2 * half_ inputs around an output: of the input j places before the output's
/// own whole place, filter(cutoff * (phase / to + j)) * cutoff.
void Resampler::FillRow(std::uint32_t phase, std::int32_t* row) const {
    const WindowedSinc& filter = ResamplingFilter();
    const std::int64_t offset = cutoff_ * phase / to_;
    for (std::size_t i = 0; i < 2 * half_; ++i) {
        const std::int64_t j = static_cast<std::int64_t>(half_) - static_cast<std::int64_t>(i) - 1;
        const std::int64_t u = offset + j * cutoff_;
        row[i] = static_cast<std::int32_t>(filter.At(u) * cutoff_ >> 32);
    }
}

std::span<const std::int32_t> Resampler::RowAt(std::uint32_t phase) {
    const bool all = rowMade_.size() == to_;
    const std::size_t row = all ? phase : 0;
    std::int32_t* const start = rows_.data() + row * 2 * half_;
    if (!all || !rowMade_[row]) {
        FillRow(phase, start);
        rowMade_[row] = true;
    }
    return {start, 2 * half_};
}

void Resampler::Produce(std::vector<std::int32_t>& output) {
    std::size_t at = 0;  // the first input of the next output
    while (history_.size() - at >= 2 * half_) {
        const std::span<const std::int32_t> row = RowAt(phase_);
        const std::int32_t* const input = history_.data() + at;
        std::int64_t sum = 0;
        for (std::size_t i = 0; i < row.size(); ++i)
            sum += std::int64_t{row[i]} * input[i];
        output.push_back(
            static_cast<std::int32_t>((sum + WindowedSinc::kOne / 2) >> WindowedSinc::kOneBits));
        ++made_;
        const std::uint64_t next = std::uint64_t{phase_} + from_;
        phase_ = static_cast<std::uint32_t>(next % to_);
        at += static_cast<std::size_t>(next / to_);  // a filter is longer than this
    }
    history_.erase(history_.begin(), history_.begin() + static_cast<std::ptrdiff_t>(at));
}

void Resampler::Process(std::span<const std::int32_t> input, std::vector<std::int32_t>& output) {
    taken_ += input.size();
    if (from_ == to_) {
        output.insert(output.end(), input.begin(), input.end());
        return;
    }
    history_.insert(history_.end(), input.begin(), input.end());
    Produce(output);
}

void Resampler::Finish(std::vector<std::int32_t>& output) {
    if (from_ == to_)
        return;
    const std::uint64_t all = (taken_ * to_ + from_ - 1) / from_;
    while (made_ < all) {
        history_.resize(history_.size() + half_);
        Produce(output);
    }
    output.resize(output.size() - static_cast<std::size_t>(made_ - all));
    made_ = all;
}

}  // namespace tessaro::sound
