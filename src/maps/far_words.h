// The words that far copies can name, as a search tree. Beyond them the places keep coming while
// this set stays the same, and a chain of candidates could be followed for ever.
#pragma once

#include <cstdint>
#include <vector>

#include "maps/word_match.h"

namespace tessaro {

/// A tree of the first kFarReach positions by the kLongestCopy words that begin at each. Positions
/// that agree share a path from the root; where they part is a node. Each node knows the latest
/// position below it, whose words stand for those on its path. Building and searching take steps
/// for the words looked at, whatever the words are.
class FarWords {
public:
    /// `words` has kFarReach + kLongestCopy words at least and outlives the tree.
    explicit FarWords(const std::uint8_t* words);

    /// The longest match of the words at `place`, up to `limit` of them, the latest of equal ones.
    Match Longest(std::size_t place, std::size_t limit) const;

private:
    using NodeId = std::uint32_t;
    static constexpr NodeId kRoot = 0;
    static constexpr NodeId kNone = 0;  // the root is nobody's child

    struct Node {
        std::uint16_t latest = 0;
        std::uint16_t depth = 0;  ///< words on the path from the root
    };

    void Add(std::size_t position);
    NodeId NewNode(std::size_t latest, std::size_t depth);
    std::uint16_t WordOf(std::size_t position) const;
    /// The edge that leaves `node` with `word`, or the free place for it.
    std::size_t EdgeAt(NodeId node, std::uint16_t word) const;
    NodeId Child(NodeId node, std::uint16_t word) const {
        return ChildOf(edges_[EdgeAt(node, word)]);
    }
    void SetChild(NodeId node, std::uint16_t word, NodeId child);

    // An edge in 64 bits: child, parent and word; an edge that leads to no child is free.
    static constexpr int kChildShift = 40;
    static NodeId ChildOf(std::uint64_t edge) { return static_cast<NodeId>(edge >> kChildShift); }

    const std::uint8_t* words_;
    std::vector<Node> nodes_;
    std::vector<std::uint64_t> edges_;
};

}  // namespace tessaro
