#include <functional>
#include <limits>
#include <queue>
#include <utility>
#include <vector>

#include "huffman/huffman.h"
#include "huffman/huffman_tables.h"

namespace tessaro {
namespace {

constexpr std::int32_t kRetired = std::numeric_limits<std::int32_t>::max();

struct Slot {
    std::int32_t weight;
    std::size_t index;

    /// Heavier, or as heavy and later: such a slot is taken after the other.
    bool operator>(const Slot& other) const {
        return std::pair(weight, index) > std::pair(other.weight, other.index);
    }
};

}  // namespace

HuffDictionary Huffmanize(const std::array<std::int32_t, 256>& counts) {
    std::priority_queue<Slot, std::vector<Slot>, std::greater<>> slots;
    std::array<std::int16_t, 256> identities{};
    for (std::size_t i = 0; i < counts.size(); ++i) {
        identities[i] = static_cast<std::int16_t>(i);
        if (counts[i] != kRetired)
            slots.push({counts[i], i});
    }

    HuffDictionary dictionary{};
    for (std::size_t node = 0;; ++node) {
        if (slots.empty())
            throw Failure(kSubscriptOutOfRange);
        const Slot first = slots.top();
        slots.pop();
        if (slots.empty()) {
            if (IsLeaf(identities[first.index]))
                throw Failure(0, "Wierdo huffman error: last code wasn't a node!");
            if (identities[first.index] != 256 + static_cast<int>(kRootNode))
                throw Failure(0, "Wierdo huffman error: headnode wasn't 254!");
            return dictionary;
        }
        const Slot second = slots.top();
        slots.pop();
        dictionary[node] = {identities[first.index], identities[second.index]};
        identities[first.index] = static_cast<std::int16_t>(256 + node);
        const auto sum =
            Narrow<std::int32_t>(std::int64_t{first.weight} + std::int64_t{second.weight});
        if (sum != kRetired)
            slots.push({sum, first.index});
    }
}

}  // namespace tessaro
