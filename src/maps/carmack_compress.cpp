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
constexpr std::size_t kFarReach = 65'536;  // words that a far copy can name
constexpr std::size_t kOctetWords = 8;
constexpr std::size_t kSpareWords = kOctetWords;  // read, but never matched, behind the last word
/// From this size on the longer keys are worth their upkeep.
constexpr std::size_t kManyWords = 8'192;

struct Match {
    std::size_t length = 1;
    std::size_t place = 0;
};

/// Earlier positions by a hash of the words that begin there, the latest first.
class Chains {
public:
    static constexpr std::uint32_t kNone = 0xFFFF'FFFF;

    explicit Chains(std::size_t count)
        : shift_(64 - std::clamp(static_cast<int>(std::bit_width(count)), 6, 16)),
          heads_(count == 0 ? 0 : std::size_t{1} << (64 - shift_), kNone),
          previous_(count) {}

    void Insert(std::size_t position, std::uint64_t key) {
        std::uint32_t& head = heads_[Slot(key)];
        previous_[position] = head;
        head = static_cast<std::uint32_t>(position);
    }
    std::uint32_t First(std::uint64_t key) const { return heads_[Slot(key)]; }
    std::uint32_t Next(std::uint32_t position) const { return previous_[position]; }

private:
    static constexpr std::uint64_t kScatter = 0x9E37'79B9'7F4A'7C15;
    std::size_t Slot(std::uint64_t key) const {
        return static_cast<std::size_t>((key * kScatter) >> shift_);
    }

    int shift_;
    std::vector<std::uint32_t> heads_;
    std::vector<std::uint32_t> previous_;
};

/// Finds what a search of every earlier position would: the longest match, of equal ones the
/// nearest. A match of n words and more begins at a position with the same next n words, so that
/// the chain of the longest key that finds anything holds the best match; of two and three words
/// only the nearest counts.
class MatchFinder {
public:
    /// `words` has kSpareWords behind its `count`.
    MatchFinder(const std::uint8_t* words, std::size_t count)
        : words_(words),
          count_(count),
          pairs_(count),
          triples_(count),
          quads_(count),
          octets_(count < kManyWords ? 0 : count) {}

    Match Longest(std::size_t place) {
        FillUpTo(place);
        std::size_t limit = std::min(count_ - place, kLongestCopy);
        const WordQuad key = Key(place);
        if (limit >= kOctetWords && count_ >= kManyWords) {
            const Match match = LongestIn(octets_, OctetKey(place), place, kOctetWords, limit);
            if (match.length > 1)
                return match;
            limit = kOctetWords - 1;
        }
        if (limit >= kQuadWords) {
            const Match match = LongestIn(quads_, key, place, kQuadWords, limit);
            if (match.length > 1)
                return match;
        }
        if (limit >= kShortestFar) {
            if (const Match match = NearestTriple(place, key); match.length > 1)
                return match;
        }
        return limit >= kShortestNear ? NearestPair(place, key) : Match{};
    }

private:
    WordQuad Key(std::size_t position) const { return QuadAt(words_ + position * kWordBytes); }
    std::uint64_t OctetKey(std::size_t position) const {
        return std::rotl(Key(position) * 0xD6E8'FEB8'6659'FD93, 32) ^ Key(position + kQuadWords);
    }
    /// The first two and three words of a key, apart from the rest.
    static WordQuad Pair(WordQuad key) { return key << 32; }
    static WordQuad Triple(WordQuad key) { return key << 16; }

    /// Takes in the positions that have all the words of their key in front of the place, since no
    /// match may reach into the words being coded. Triples and pairs wait for the same moment; the
    /// few that could match before are compared where they are looked for.
    void FillUpTo(std::size_t place) {
        for (; filled_ + kQuadWords <= place; ++filled_) {
            const WordQuad key = Key(filled_);
            pairs_.Insert(filled_, Pair(key));
            triples_.Insert(filled_, Triple(key));
            quads_.Insert(filled_, key);
        }
        if (count_ < kManyWords)
            return;
        for (; octetsFilled_ + kOctetWords <= place; ++octetsFilled_)
            octets_.Insert(octetsFilled_, OctetKey(octetsFilled_));
    }

    /// Positions from kFarReach on can be named by near copies only.
    static bool Reachable(std::size_t position, std::size_t place) {
        return position < kFarReach || place - position <= kNearestReach;
    }

    std::size_t MatchLength(std::size_t position, std::size_t place, std::size_t most) const {
        std::size_t length = 0;
        while (length < most) {
            const WordQuad difference = Key(position + length) ^ Key(place + length);
            if (difference != 0)
                return std::min(length + LanesBefore(difference), most);
            length += kQuadWords;
        }
        return most;
    }

    /// The longest match of `least` to `limit` words in the chain of a key of `least` words.
    Match LongestIn(const Chains& chains, std::uint64_t key, std::size_t place, std::size_t least,
                    std::size_t limit) const {
        Match best{least - 1, 0};
        // A longer match has the same words where the best one ends, and one more.
        WordQuad ending = Key(place + best.length + 1 - kQuadWords);
        for (std::uint32_t position = chains.First(key); position != Chains::kNone;
             position = chains.Next(position)) {
            if (Key(position + best.length + 1 - kQuadWords) != ending)
                continue;
            const std::size_t most = std::min(place - position, limit);
            if (most <= best.length || !Reachable(position, place))
                continue;
            const std::size_t length = MatchLength(position, place, most);
            if (length > best.length) {
                best = {length, position};
                if (length == limit)
                    break;
                ending = Key(place + best.length + 1 - kQuadWords);
            }
        }
        return best.length < least ? Match{} : best;
    }

    Match NearestTriple(std::size_t place, WordQuad key) const {
        if (place >= 3 && Triple(Key(place - 3)) == Triple(key))
            return {3, place - 3};
        for (std::uint32_t position = triples_.First(Triple(key)); position != Chains::kNone;
             position = triples_.Next(position)) {
            if (Triple(Key(position)) == Triple(key) && Reachable(position, place))
                return {3, position};
        }
        return {};
    }

    Match NearestPair(std::size_t place, WordQuad key) const {
        for (const std::size_t back : {2u, 3u}) {
            if (place >= back && Pair(Key(place - back)) == Pair(key))
                return {2, place - back};
        }
        for (std::uint32_t position = pairs_.First(Pair(key));
             position != Chains::kNone && place - position <= kNearestReach;
             position = pairs_.Next(position)) {
            if (Pair(Key(position)) == Pair(key))
                return {2, position};
        }
        return {};
    }

    const std::uint8_t* words_;
    std::size_t count_;
    Chains pairs_, triples_, quads_, octets_;
    std::size_t filled_ = 0;
    std::size_t octetsFilled_ = 0;
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
    ByteArray words((count + kSpareWords) * kWordBytes);
    std::copy_n(source.begin(), count * kWordBytes, words.begin());

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
        const std::uint16_t word = WordAt(words.data() + place * kWordBytes);
        if (match.length >= kShortestNear && distance <= kNearestReach) {
            put(match.length);
            put(tags.nearTag);
            put(distance);
        } else if (match.length >= kShortestFar) {
            put(match.length);
            put(tags.farTag);
            put(match.place);
            put(match.place >> 8);
        } else if (const int high = HighHalf(word); high == tags.nearTag || high == tags.farTag) {
            put(0);
            put(static_cast<std::size_t>(high));
            put(word);
        } else {
            put(word);
            put(static_cast<std::size_t>(word >> 8));
        }
        place += match.length;
    }
    packed.resize(static_cast<std::size_t>(out - packed.data()));
    return packed;
}

}  // namespace tessaro
