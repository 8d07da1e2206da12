#include <algorithm>
#include <bit>
#include <vector>

#include "maps/carmack.h"
#include "maps/word_bytes.h"

namespace tessaro {

namespace {

constexpr std::size_t kLongestCopy = 255;
constexpr std::size_t kNearestReach = 255;
constexpr std::size_t kShortestNear = 2;
constexpr std::size_t kShortestFar = 3;
constexpr std::size_t kChained = 4;        // the most words that a chain is keyed by
constexpr std::size_t kFarReach = 65'536;  // words that a far copy can name

struct Match {
    std::size_t length = 1;
    std::size_t place = 0;
};

/// The earlier positions whose next `kWords` words have the same hash, latest first.
template <std::size_t kWords>
class Chains {
public:
    static constexpr std::uint32_t kNone = 0xFFFF'FFFF;

    Chains(const std::uint16_t* words, std::size_t count)
        : words_(words),
          shift_(64 - std::clamp(static_cast<int>(std::bit_width(count)), 6, 16)),
          heads_(std::size_t{1} << (64 - shift_), kNone),
          previous_(count) {}

    std::uint64_t Key(std::size_t position) const {
        std::uint64_t key = 0;
        for (std::size_t i = 0; i < kWords; ++i)
            key |= std::uint64_t{words_[position + i]} << 16 * i;
        return key;
    }
    std::uint32_t First(std::uint64_t key) const { return heads_[Slot(key)]; }
    std::uint32_t Next(std::uint32_t position) const { return previous_[position]; }

    /// Takes in the positions whose key ends at or before `place`, since no match may reach into
    /// the words being coded.
    void FillUpTo(std::size_t place) {
        for (; filled_ + kWords <= place; ++filled_) {
            std::uint32_t& head = heads_[Slot(Key(filled_))];
            previous_[filled_] = std::exchange(head, static_cast<std::uint32_t>(filled_));
        }
    }

private:
    std::size_t Slot(std::uint64_t key) const {
        return static_cast<std::size_t>((key * 0x9E37'79B9'7F4A'7C15) >> shift_);
    }

    const std::uint16_t* words_;
    int shift_;
    std::vector<std::uint32_t> heads_;
    std::vector<std::uint32_t> previous_;
    std::size_t filled_ = 0;
};

/// Finds what a search of every earlier position would: the longest match, of equal ones the
/// nearest. Matches of four words and more are among the positions with the same next four words;
/// of shorter ones only the nearest counts.
class MatchFinder {
public:
    /// `words` has kChained words to spare behind its `count`.
    MatchFinder(const std::uint16_t* words, std::size_t count)
        : words_(words),
          count_(count),
          pairs_(words, count),
          triples_(words, count),
          quads_(words, count) {}

    Match Longest(std::size_t place) {
        pairs_.FillUpTo(place);
        triples_.FillUpTo(place);
        quads_.FillUpTo(place);
        const std::size_t limit = std::min(count_ - place, kLongestCopy);
        Match best;
        if (limit >= kChained)
            best = LongestOfQuads(place, limit);
        if (best.length == 1 && limit >= kShortestFar)
            best = Nearest(triples_, place, kFarReach, kShortestFar);
        if (best.length == 1 && limit >= kShortestNear)
            best = Nearest(pairs_, place, 0, kShortestNear);
        return best;
    }

private:
    /// Positions from kFarReach on can be named by near copies only.
    static bool Reachable(std::size_t position, std::size_t place, std::size_t farReach) {
        return position < farReach || place - position <= kNearestReach;
    }

    Match LongestOfQuads(std::size_t place, std::size_t limit) const {
        Match best{kChained - 1, 0};
        const std::uint64_t key = quads_.Key(place);
        for (std::uint32_t position = quads_.First(key); position != quads_.kNone;
             position = quads_.Next(position)) {
            const std::size_t most = std::min(place - position, limit);
            if (most <= best.length ||
                words_[position + best.length] != words_[place + best.length] ||
                !Reachable(position, place, kFarReach))
                continue;
            std::size_t length = 0;
            while (length < most && words_[position + length] == words_[place + length])
                ++length;
            if (length > best.length) {
                best = {length, position};
                if (length == limit)
                    break;
            }
        }
        return best.length < kChained ? Match{} : best;
    }

    template <std::size_t kWords>
    Match Nearest(const Chains<kWords>& chains, std::size_t place, std::size_t farReach,
                  std::size_t length) const {
        const std::uint64_t key = chains.Key(place);
        for (std::uint32_t position = chains.First(key); position != chains.kNone;
             position = chains.Next(position)) {
            if (!Reachable(position, place, farReach)) {
                if (farReach == 0)
                    break;
                continue;
            }
            if (chains.Key(position) == key)
                return {length, position};
        }
        return {};
    }

    const std::uint16_t* words_;
    std::size_t count_;
    Chains<2> pairs_;
    Chains<3> triples_;
    Chains<kChained> quads_;
};

/// A word's high half by the rule for escaping: as a signed number divided by 256, cut towards
/// zero. Words with a tag from 128 on are thus never escaped: that is meant
/// (docs/kept-behaviour.md).
int HighHalf(std::uint16_t word) {
    return static_cast<std::int16_t>(word) / 256;
}

}  // namespace

ByteArray CarmackCompress(ByteSpan source, LengthPrefix prefix, CarmackTags tags) {
    const std::size_t count = source.size() / kWordBytes;
    std::vector<std::uint16_t> words(count + kChained);
    for (std::size_t i = 0; i < count; ++i)
        words[i] = WordAt(source.data() + i * kWordBytes);

    // No word takes more than the three bytes of an escaped one.
    ByteArray packed(sizeof(std::uint32_t) + count * 3);
    std::uint8_t* out = packed.data();
    const auto put = [&out](std::size_t byte) { *out++ = static_cast<std::uint8_t>(byte); };
    const int prefixBytes = prefix == LengthPrefix::Long ? 4 : 2;
    for (int i = 0; i < prefixBytes; ++i)
        put(source.size() >> 8 * i);

    MatchFinder finder(words.data(), count);
    for (std::size_t place = 0; place < count;) {
        const Match match = finder.Longest(place);
        const std::size_t distance = place - match.place;
        if (match.length >= kShortestNear && distance <= kNearestReach) {
            put(match.length);
            put(tags.nearTag);
            put(distance);
        } else if (match.length >= kShortestFar) {
            put(match.length);
            put(tags.farTag);
            put(match.place);
            put(match.place >> 8);
        } else if (const int high = HighHalf(words[place]);
                   high == tags.nearTag || high == tags.farTag) {
            put(0);
            put(static_cast<std::size_t>(high));
            put(words[place]);
        } else {
            put(words[place]);
            put(static_cast<std::size_t>(words[place] >> 8));
        }
        place += match.length;
    }
    packed.resize(static_cast<std::size_t>(out - packed.data()));
    return packed;
}

}  // namespace tessaro
