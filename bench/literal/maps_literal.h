// The map codecs as plainly as their rules can be written down: byte by byte, every index checked,
// every earlier place searched. The tests hold the library's codecs against these, and the
// benchmarks measure both in one run.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace tessaro::literal {

using Bytes = std::vector<std::uint8_t>;

inline int Word(const Bytes& bytes, std::size_t at) {
    return bytes.at(at) | bytes.at(at + 1) << 8;
}

inline void SetWord(Bytes& bytes, std::size_t at, int word) {
    bytes.at(at) = static_cast<std::uint8_t>(word);
    bytes.at(at + 1) = static_cast<std::uint8_t>(word >> 8);
}

inline void CarmackExpand(const Bytes& source, Bytes& destination, int length, int nearTag,
                          int farTag) {
    int words = length / 2;
    if (length % 2 != 0 && words % 2 != 0)
        ++words;  // an odd length is a tie, which rounds to the even number
    std::size_t s = 0, d = 0;
    const auto copy = [&](std::size_t from, int count) {
        for (; count > 0; --count) {
            destination.at(d) = destination.at(from);
            destination.at(d + 1) = destination.at(from + 1);
            d += 2;
            from += 2;
        }
    };
    while (words > 0) {
        const int count = source.at(s);
        const int tag = source.at(s + 1);
        s += 2;
        if (tag == nearTag || tag == farTag) {
            if (count == 0) {
                destination.at(d) = source.at(s);
                destination.at(d + 1) = static_cast<std::uint8_t>(tag);
                s += 1;
                d += 2;
                words -= 1;
            } else if (tag == nearTag) {
                const std::size_t back = source.at(s);
                s += 1;
                copy(d - 2 * back, count);
                words -= count;
            } else {
                const auto from = static_cast<std::size_t>(Word(source, s));
                s += 2;
                copy(2 * from, count);
                words -= count;
            }
        } else {
            destination.at(d) = static_cast<std::uint8_t>(count);
            destination.at(d + 1) = static_cast<std::uint8_t>(tag);
            d += 2;
            words -= 1;
        }
    }
}

inline Bytes CarmackCompress(const Bytes& data, bool longPrefix, int nearTag, int farTag) {
    const std::size_t n = data.size() / 2;
    std::vector<std::int16_t> words;
    for (std::size_t i = 0; i < n; ++i)
        words.push_back(static_cast<std::int16_t>(Word(data, 2 * i)));
    Bytes out;
    const auto put = [&](std::size_t byte) { out.push_back(static_cast<std::uint8_t>(byte)); };
    for (std::size_t i = 0; i < (longPrefix ? 4u : 2u); ++i)
        put(data.size() >> 8 * i);

    std::size_t c = 0, remaining = n;
    while (remaining > 0) {
        const std::int16_t v = words[c];
        std::size_t best = 0, place = 0;
        for (std::size_t j = 0; j < c; ++j) {
            if (words[j] != v || (j > 65'535 && c - j > 255))
                continue;
            const std::size_t limit = std::min({c - j, remaining, std::size_t{255}});
            std::size_t length = 1;
            if (limit > 1) {
                while (length < limit && words[j + length] == words[c + length])
                    ++length;
            }
            if (length >= best) {
                best = length;
                place = j;
            }
        }
        const std::size_t distance = c - place;
        std::size_t advance = best;
        if (best >= 2 && distance <= 255) {
            put(best);
            put(static_cast<std::size_t>(nearTag));
            put(distance);
        } else if (best >= 3) {
            put(best);
            put(static_cast<std::size_t>(farTag));
            put(place);
            put(place >> 8);
        } else {
            advance = 1;
            const int high = v / 256;
            const auto bits = static_cast<std::uint16_t>(v);
            if (high == nearTag || high == farTag) {
                put(0);
                put(static_cast<std::size_t>(high));
                put(bits);
            } else {
                put(bits);
                put(static_cast<std::size_t>(bits >> 8));
            }
        }
        c += advance;
        remaining -= advance;
    }
    return out;
}

/// Returns whether the source lasted; `length` as the library's.
inline bool RlewExpand(int tag, const Bytes& source, Bytes& destination, int& length,
                       bool longPrefix) {
    std::size_t s = 0, d = 0;
    if (length < 1) {
        length = Word(source, 0);
        s = 2;
        if (longPrefix) {
            length |= Word(source, 2) << 16;
            s = 4;
        }
        if (length == 0)
            length = 8192;
    }
    while (s < source.size() && length > 0) {
        const int word = Word(source, s);
        s += 2;
        if (word == tag) {
            const int count = Word(source, s);
            const int value = Word(source, s + 2);
            for (int i = 0; i < count; ++i) {
                SetWord(destination, d, value);
                d += 2;
            }
            s += 4;
            length -= 2 * count;
        } else {
            SetWord(destination, d, word);
            d += 2;
            length -= 2;
        }
    }
    return length <= 0;
}

/// Throws where the packed form is not shorter than the source.
inline Bytes RlewCompress(int tag, const Bytes& source, int prefixBytes) {
    Bytes destination(source.size() - 1);
    std::size_t d = 0;
    for (int i = 0; i < prefixBytes; ++i)
        destination.at(d++) = static_cast<std::uint8_t>(source.size() >> 8 * i);
    int previous = -1, run = 0;
    const auto put = [&](int word) {
        SetWord(destination, d, word);
        d += 2;
    };
    const auto flush = [&] {
        if (run > 3) {
            put(tag);
            put(run);
            put(previous);
        } else {
            for (int i = 0; i < run; ++i)
                put(previous);
        }
    };
    for (std::size_t s = 0; s + 1 < source.size(); s += 2) {
        const int word = Word(source, s);
        if (word == previous && run < 65'535) {
            ++run;
        } else {
            flush();
            previous = word;
            run = 1;
        }
    }
    flush();
    destination.resize(d);
    return destination;
}

}  // namespace tessaro::literal
