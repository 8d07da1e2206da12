#include "maps/match_finder.h"

namespace tessaro {
namespace {

constexpr std::size_t kKeptNearby = 256;
static_assert(kKeptNearby >= kNearestReach);
/// So many steps through chains take longer than to make the tree.
constexpr std::size_t kPatience = 1'000'000;

}  // namespace

Match MatchFinder::LongestOfBoth(std::size_t place, std::size_t limit) {
    if (!nearby_)
        nearby_.emplace(words_, place - kNearestReach, count_, kKeptNearby);
    const Match nearby = nearby_->LongestNear(place, limit);
    if (nearby.length == limit)
        return nearby;
    const Match distant = LongestDistant(place, limit);
    return distant.length > std::max(nearby.length, kShortestFar - 1) ? distant : nearby;
}

Match MatchFinder::LongestDistant(std::size_t place, std::size_t limit) {
    // The tree does not ask whether the words that it finds end in front of the place.
    if (!tree_ && place >= kFarReach + kLongestCopy && first_->Steps() > kPatience) {
        tree_.emplace(words_);
        first_.reset();
    }
    return tree_ ? tree_->Longest(place, limit) : first_->Longest(place, limit);
}

}  // namespace tessaro
