#include "maps/far_words.h"

namespace tessaro {
namespace {

/// A tree with so many leaves has less than twice as many nodes, each but the root with one edge.
constexpr std::size_t kMostNodes = 2 * kFarReach;
constexpr int kEdgeBits = 18;
constexpr std::size_t kEdges = std::size_t{1} << kEdgeBits;
static_assert(kEdges >= 2 * kMostNodes);

constexpr std::uint64_t EdgeKey(std::uint32_t node, std::uint16_t word) {
    return std::uint64_t{node} << 16 | word;
}

}  // namespace

FarWords::FarWords(const std::uint8_t* words) : words_(words), edges_(kEdges) {
    nodes_.reserve(kMostNodes);
    nodes_.emplace_back();
    for (std::size_t position = 0; position < kFarReach; ++position)
        Add(position);
}

void FarWords::Add(std::size_t position) {
    const std::uint8_t* const words = words_ + position * kWordBytes;
    for (NodeId node = kRoot; nodes_[node].depth < kLongestCopy;) {
        const std::size_t depth = nodes_[node].depth;
        const std::uint16_t word = WordAt(words + depth * kWordBytes);
        const NodeId child = Child(node, word);
        if (child == kNone) {
            SetChild(node, word, NewNode(position, kLongestCopy));
            return;
        }
        const std::size_t other = nodes_[child].latest;
        const std::size_t same =
            depth + EqualWords(words + depth * kWordBytes, words_ + (other + depth) * kWordBytes,
                               nodes_[child].depth - depth);
        if (same == nodes_[child].depth) {
            nodes_[child].latest = static_cast<std::uint16_t>(position);
            node = child;
            continue;
        }
        const NodeId parting = NewNode(position, same);
        SetChild(node, word, parting);
        SetChild(parting, WordOf(other + same), child);
        SetChild(parting, WordOf(position + same), NewNode(position, kLongestCopy));
        return;
    }
}

Match FarWords::Longest(std::size_t place, std::size_t limit) const {
    const std::uint8_t* const words = words_ + place * kWordBytes;
    Match best{0, 0};
    for (NodeId node = kRoot; best.length < limit;) {
        node = Child(node, WordAt(words + best.length * kWordBytes));
        if (node == kNone)
            return best;
        const Node& found = nodes_[node];
        const std::size_t known = best.length;
        const std::size_t most = std::min<std::size_t>(found.depth, limit);
        best.place = found.latest;
        best.length = known + EqualWords(words + known * kWordBytes,
                                         words_ + (best.place + known) * kWordBytes, most - known);
        if (best.length < most)
            return best;
    }
    return best;
}

FarWords::NodeId FarWords::NewNode(std::size_t latest, std::size_t depth) {
    nodes_.push_back({static_cast<std::uint16_t>(latest), static_cast<std::uint16_t>(depth)});
    return static_cast<NodeId>(nodes_.size() - 1);
}

std::uint16_t FarWords::WordOf(std::size_t position) const {
    return WordAt(words_ + position * kWordBytes);
}

std::size_t FarWords::EdgeAt(NodeId node, std::uint16_t word) const {
    constexpr std::uint64_t kScatter = 0x9E37'79B9'7F4A'7C15;
    constexpr std::uint64_t kKeyMask = (std::uint64_t{1} << kChildShift) - 1;
    const std::uint64_t key = EdgeKey(node, word);
    auto at = static_cast<std::size_t>(key * kScatter >> (64 - kEdgeBits));
    while (edges_[at] != 0 && (edges_[at] & kKeyMask) != key)
        at = (at + 1) % kEdges;
    return at;
}

void FarWords::SetChild(NodeId node, std::uint16_t word, NodeId child) {
    edges_[EdgeAt(node, word)] = std::uint64_t{child} << kChildShift | EdgeKey(node, word);
}

}  // namespace tessaro
