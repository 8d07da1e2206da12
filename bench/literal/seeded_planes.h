// Planes of every kind that the codecs have met trouble with, made from a seed: the same ones for
// the tests, which compare, and the benchmarks, which measure.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace tessaro::literal {

inline std::vector<std::uint8_t> FromWords(const std::vector<int>& words) {
    std::vector<std::uint8_t> bytes;
    for (const int word : words) {
        bytes.push_back(static_cast<std::uint8_t>(word));
        bytes.push_back(static_cast<std::uint8_t>(word >> 8));
    }
    return bytes;
}

class PlaneMaker {
public:
    using Bytes = std::vector<std::uint8_t>;

    explicit PlaneMaker(unsigned seed) : random_(seed) {}

    std::size_t Below(std::size_t bound) { return bound == 0 ? 0 : random_() % bound; }

    Bytes Equal(std::size_t count) {
        return FromWords(std::vector<int>(count, static_cast<int>(Below(65'536))));
    }
    Bytes Random(std::size_t count, int values) {
        return Each(count, [&](std::size_t) { return Value(values); });
    }
    Bytes Periodic(std::size_t count, std::size_t period) {
        return Each(count, [&](std::size_t i) { return static_cast<int>(i % period); });
    }
    /// Words whose high bytes are the tags of the Carmack codes.
    Bytes TagLike(std::size_t count) {
        return Each(count, [&](std::size_t) { return 0xA700 + 256 * Value(2) + Value(3); });
    }
    /// Runs as long as the longest copy.
    Bytes Runs(std::size_t count, std::size_t length, int values) {
        int word = 0;
        return Each(count,
                    [&](std::size_t i) { return word = i % length == 0 ? Value(values) : word; });
    }
    /// Equal words between numbers that never come again: matches are many and all as long.
    Bytes Separated(std::size_t count, std::size_t length) {
        return Each(count, [&](std::size_t i) {
            return i % (length + 1) < length ? 0 : static_cast<int>(i / (length + 1) % 65'535 + 1);
        });
    }
    /// One tile again and again, with a word changed here and there.
    Bytes Tiled(std::size_t count, std::size_t size, std::size_t wordsPerChange) {
        std::vector<int> tile(size);
        for (int& word : tile)
            word = Value(20);
        return Each(count, [&](std::size_t i) {
            return Below(wordsPerChange) == 0 ? Value(400) : tile[i % size];
        });
    }
    Bytes Extremes(std::size_t count) {
        constexpr int kWords[] = {0x0000, 0xFFFF, 0x8000, 0x7FFF};
        return Each(count, [&](std::size_t) { return kWords[Below(4)]; });
    }
    /// A map: rooms with walls, corridors, floor numbers and scattered things.
    Bytes Mixed(std::size_t side) {
        return Each(side * side, [&](std::size_t i) {
            const std::size_t x = i % side, y = i / side;
            switch (y * 8 / side % 4) {
                case 0:
                    return Below(10) == 0 ? Value(64) : 1;
                case 1:
                    return Value(400);
                case 2:
                    return static_cast<int>((x / 5 + y / 7) % 9) + 90;
                default:
                    return Value(4) + 106;
            }
        });
    }
    /// One of the kinds above, of up to `most` words.
    Bytes Any(std::size_t most) {
        const std::size_t count = 1 + Below(most);
        constexpr int kValues[] = {2, 3, 4, 16, 400};
        switch (Below(9)) {
            case 0:
                return Equal(count);
            case 1:
                return Periodic(count, 1 + Below(300));
            case 2:
                return TagLike(count);
            case 3:
                return Runs(count, 1 + Below(300), 4);
            case 4:
                return Extremes(count);
            case 5:
                return Mixed(8 + Below(17));
            case 6:
                return Separated(count, 1 + Below(20));
            case 7:
                return Tiled(count, 1 + Below(100), 2 + Below(100));
            default:
                return Random(count, kValues[Below(5)]);
        }
    }
    /// Changes a few bytes, or cuts the end off, or leaves everything as it is.
    void Damage(Bytes& bytes) {
        for (std::size_t changes = Below(4); changes > 0 && !bytes.empty(); --changes)
            bytes[Below(bytes.size())] = static_cast<std::uint8_t>(Below(256));
        if (Below(3) == 0)
            bytes.resize(Below(bytes.size() + 1));
    }

private:
    template <class Word>
    Bytes Each(std::size_t count, Word word) {
        std::vector<int> words(count);
        for (std::size_t i = 0; i < count; ++i)
            words[i] = word(i);
        return FromWords(words);
    }
    int Value(int values) { return static_cast<int>(Below(static_cast<std::size_t>(values))); }

    std::mt19937 random_;
};

}  // namespace tessaro::literal
