// The search for the earlier words that each place of a plane may copy.
#pragma once

#include <optional>

#include "maps/chained_words.h"
#include "maps/far_words.h"

namespace tessaro {

/// Finds for each place of a plane, in order, the earlier words to copy: the longest match that a
/// code can name, of equal ones the nearest.
class MatchFinder {
public:
    /// `words` has kSpareWords behind its `count`.
    MatchFinder(const std::uint8_t* words, std::size_t count)
        : words_(words),
          count_(count),
          first_(std::in_place, words, 0, kFarReach, std::min(count, kFarReach)) {}

    Match Longest(std::size_t place) {
        const std::size_t limit = std::min(count_ - place, kLongestCopy);
        return place < kFarReach ? first_->Longest(place, limit) : LongestOfBoth(place, limit);
    }

private:
    /// Among the positions that far copies can name, and those that near copies can.
    Match LongestOfBoth(std::size_t place, std::size_t limit);
    Match LongestDistant(std::size_t place, std::size_t limit);

    const std::uint8_t* words_;
    std::size_t count_;
    std::optional<ChainedWords> first_;   ///< the positions that far copies can name
    std::optional<FarWords> tree_;        ///< the same, once the chains have proved long
    std::optional<ChainedWords> nearby_;  ///< behind them
};

}  // namespace tessaro
