#include "huffman/huffman_tables.h"

#include <algorithm>
#include <cstring>
#include <optional>

namespace tessaro {
namespace {

constexpr std::size_t kSteps = std::size_t{1} << DecodeTable::kBits;

/// The greatest number of bits from a node to a leaf, or nothing where the way leads back to a
/// node above. Real dictionaries refer downwards only; a foreign one may do anything.
class DepthFinder {
public:
    explicit DepthFinder(const HuffDictionary& dictionary) : dictionary_(dictionary) {}

    std::optional<unsigned> Below(std::size_t node) {
        if (state_[node] == State::Open)
            return std::nullopt;
        if (state_[node] == State::New) {
            state_[node] = State::Open;
            unsigned depth = 0;
            for (const std::int16_t child : {dictionary_[node].Bit0, dictionary_[node].Bit1}) {
                const std::optional<unsigned> below =
                    IsLeaf(child) ? 0 : Below(static_cast<std::size_t>(child & 0xFF));
                if (!below)
                    return std::nullopt;
                depth = std::max(depth, *below + 1);
            }
            depth_[node] = depth;
            state_[node] = State::Done;
        }
        return depth_[node];
    }

private:
    enum class State : std::uint8_t { New, Open, Done };

    const HuffDictionary& dictionary_;
    std::array<State, 256> state_{};
    std::array<unsigned, 256> depth_{};
};

struct Symbol {
    std::uint8_t value = 0;
    std::uint8_t length = 0;  ///< 0: the code does not end within the table's bits
};

std::vector<Symbol> FirstSymbols(const HuffDictionary& dictionary) {
    std::vector<Symbol> symbols(kSteps);
    for (std::size_t index = 0; index < kSteps; ++index) {
        std::size_t node = kRootNode;
        for (unsigned bit = 0; bit < DecodeTable::kBits; ++bit) {
            const std::int16_t next =
                (index >> bit & 1) == 0 ? dictionary[node].Bit0 : dictionary[node].Bit1;
            node = static_cast<std::size_t>(next & 0xFF);
            if (IsLeaf(next)) {
                symbols[index] = {static_cast<std::uint8_t>(node),
                                  static_cast<std::uint8_t>(bit + 1)};
                break;
            }
        }
    }
    return symbols;
}

/// A few dictionaries with what was built from each; the one replaced next is the one used least
/// recently. Two serve a set: the graphics' and the audio's.
template <class Table>
class TableCache {
public:
    template <class Build>
    const Table& For(const HuffDictionary& dictionary, Build&& build) {
        for (std::size_t i = 0; i < entries_.size(); ++i)
            if (std::memcmp(&entries_[i].dictionary, &dictionary, sizeof(dictionary)) == 0)
                return Front(i);
        if (entries_.size() < kEntries)
            entries_.emplace_back();
        entries_.back() = {dictionary, build(dictionary)};
        return Front(entries_.size() - 1);
    }

private:
    static constexpr std::size_t kEntries = 3;
    struct Entry {
        HuffDictionary dictionary{};
        Table table;
    };

    const Table& Front(std::size_t index) {
        if (index > 0)
            std::rotate(entries_.begin(), entries_.begin() + static_cast<std::ptrdiff_t>(index),
                        entries_.begin() + static_cast<std::ptrdiff_t>(index) + 1);
        return entries_.front().table;
    }

    std::vector<Entry> entries_;
};

}  // namespace

DecodeTable BuildDecodeTable(const HuffDictionary& dictionary) {
    const std::vector<Symbol> first = FirstSymbols(dictionary);
    DecodeTable table;
    table.longest = DepthFinder(dictionary).Below(kRootNode).value_or(0);
    table.steps.resize(kSteps);
    for (std::size_t index = 0; index < kSteps; ++index) {
        DecodeStep step = 0;
        unsigned used = 0;
        unsigned count = 0;
        while (count < DecodeTable::kSymbols) {
            const Symbol& symbol = first[index >> used];
            if (symbol.length == 0 || used + symbol.length > DecodeTable::kBits)
                break;
            step |= DecodeStep{symbol.value} << (8 * ++count);
            used += symbol.length;
        }
        table.steps[index] = step | DecodeStep{used} | DecodeStep{count} << 56;
    }
    return table;
}

// A code is found from its leaf upwards: the lowest node that refers to the leaf, then the lowest
// one above it that refers to that node, and so on. Where both children are the same, Bit0 counts.
CodeTable BuildCodeTable(const HuffDictionary& dictionary) {
    constexpr int kNone = -1;
    std::array<int, 512> parents{};
    parents.fill(kNone);
    const auto note = [&](std::int16_t child, int node) {
        if (child < 0 || child > 511 || (child > 255 && child - 256 >= node))
            return;
        int& parent = parents[static_cast<std::size_t>(child)];
        if (parent == kNone)
            parent = node;
    };
    for (int node = 0; node <= static_cast<int>(kRootNode); ++node) {
        note(dictionary[static_cast<std::size_t>(node)].Bit0, node);
        note(dictionary[static_cast<std::size_t>(node)].Bit1, node);
    }

    CodeTable table;
    for (int value = 0; value < 256; ++value) {
        Code code;
        int target = value;
        for (int node = parents[static_cast<std::size_t>(target)]; node != kNone;
             node = parents[static_cast<std::size_t>(target)]) {
            const bool one = dictionary[static_cast<std::size_t>(node)].Bit0 != target;
            code.bits = code.bits << 1 | (one ? 1U : 0U);
            ++code.length;
            target = 256 + node;
        }
        // The way up from a leaf can end below the root, in a node that nothing refers to.
        const bool fromRoot = target == 256 + static_cast<int>(kRootNode);
        table.readsBack[static_cast<std::size_t>(value)] = fromRoot && code.length <= 32;
        table.longest = std::max(table.longest, code.length);
        table.codes[static_cast<std::size_t>(value)] = code;
    }
    return table;
}

const DecodeTable& DecodeTableFor(const HuffDictionary& dictionary) {
    thread_local TableCache<DecodeTable> cache;
    return cache.For(dictionary, BuildDecodeTable);
}

const CodeTable& CodeTableFor(const HuffDictionary& dictionary) {
    thread_local TableCache<CodeTable> cache;
    return cache.For(dictionary, BuildCodeTable);
}

}  // namespace tessaro
