// The codec taken at its word, bit by bit and node by node: what the fast one is held against.
#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "foundation/store.h"

namespace tessaro::literal {

inline void HuffExpand(std::span<const std::uint8_t> source, std::vector<std::uint8_t>& dest,
                       std::int32_t& expandedLength, const HuffDictionary& dictionary,
                       bool keepGoing) {
    std::size_t node = 254;
    unsigned mask = 1;
    std::size_t at = 0;
    std::int32_t count = 0;
    while (at < source.size() &&
           !(count >= expandedLength && (!keepGoing || at + 1 == source.size()))) {
        if (count == expandedLength) {
            ++expandedLength;
            dest.resize(static_cast<std::size_t>(expandedLength) + 1);
        }
        const int value = (source[at] & mask) == 0 ? dictionary[node].Bit0 : dictionary[node].Bit1;
        if (mask == 128) {
            ++at;
            mask = 1;
        } else {
            mask *= 2;
        }
        if ((value & 256) == 0) {
            dest[static_cast<std::size_t>(count)] = static_cast<std::uint8_t>(value & 255);
            ++count;
            node = 254;
        } else {
            node = static_cast<std::size_t>(value & 255);
        }
    }
}

inline std::int32_t DetermineChunkSize(std::span<const std::uint8_t> source,
                                       std::vector<std::uint8_t>& dest,
                                       const HuffDictionary& dictionary) {
    std::size_t node = 254;
    unsigned mask = 1;
    std::size_t at = 0;
    std::int32_t count = 0;
    std::int32_t capacity = 0;
    while (at + 1 < source.size()) {
        if (count == capacity) {
            ++capacity;
            dest.resize(static_cast<std::size_t>(capacity) + 1);
        }
        const int value = (source[at] & mask) == 0 ? dictionary[node].Bit0 : dictionary[node].Bit1;
        if (mask == 128) {
            ++at;
            mask = 1;
        } else {
            mask *= 2;
        }
        if ((value & 256) == 0) {
            dest[static_cast<std::size_t>(count)] = static_cast<std::uint8_t>(value & 255);
            ++count;
            node = 254;
        } else {
            node = static_cast<std::size_t>(value & 255);
        }
    }
    return capacity;
}

/// Codes of more than 32 bits are beyond it.
inline void HuffCompress(std::span<const std::uint8_t> source, std::vector<std::uint8_t>& dest,
                         const HuffDictionary& dictionary) {
    dest.assign(5, 0);
    if (source.size() < 4) {
        dest.assign(4, 0);
        return;
    }
    for (std::size_t i = 0; i < 4; ++i)
        dest[i] = static_cast<std::uint8_t>(source.size() >> (8 * i));
    std::size_t at = 4;
    unsigned mask = 1;
    std::array<std::uint8_t, 32> bits;
    for (const std::uint8_t value : source) {
        int target = value;
        int found = 0;
        for (int node = 0; node <= 254; ++node) {
            const HuffNode& entry = dictionary[static_cast<std::size_t>(node)];
            if (entry.Bit0 == target) {
                bits[static_cast<std::size_t>(found++)] = 0;
                target = 256 + node;
            } else if (entry.Bit1 == target) {
                bits[static_cast<std::size_t>(found++)] = 1;
                target = 256 + node;
            }
        }
        while (found > 0) {
            dest[at] = static_cast<std::uint8_t>(dest[at] |
                                                 bits[static_cast<std::size_t>(--found)] * mask);
            if (mask == 128) {
                mask = 1;
                ++at;
                dest.resize(at + 1);
            } else {
                mask *= 2;
            }
        }
    }
}

/// Counts whose tree comes out whole.
inline HuffDictionary Huffmanize(const std::array<std::int32_t, 256>& counts) {
    constexpr std::int32_t kRetired = std::numeric_limits<std::int32_t>::max();
    std::array<std::int32_t, 256> weights = counts;
    std::array<int, 256> identities{};
    for (int i = 0; i < 256; ++i)
        identities[static_cast<std::size_t>(i)] = i;
    HuffDictionary dictionary{};
    for (std::size_t node = 0; node < 255; ++node) {
        std::size_t chosen[2] = {256, 256};
        for (int pick = 0; pick < 2; ++pick) {
            std::int32_t best = kRetired;
            for (std::size_t slot = 0; slot < 256; ++slot) {
                if ((pick == 0 || slot != chosen[0]) && weights[slot] < best) {
                    best = weights[slot];
                    chosen[pick] = slot;
                }
            }
        }
        dictionary[node] = {static_cast<std::int16_t>(identities[chosen[0]]),
                            static_cast<std::int16_t>(identities[chosen[1]])};
        identities[chosen[0]] = 256 + static_cast<int>(node);
        weights[chosen[0]] += weights[chosen[1]];
        weights[chosen[1]] = kRetired;
    }
    return dictionary;
}

}  // namespace tessaro::literal
