// Earlier words of a plane, chained by what begins at each position.
#pragma once

#include <bit>
#include <cstdint>
#include <vector>

#include "maps/word_match.h"

namespace tessaro {

/// Earlier positions by a hash of the words that begin there, the latest first. Links name the
/// position after the one they lead to, so that 0 ends a chain.
class PositionChains {
public:
    /// Keeps the latest `kept` positions; where there are more of them, a power of two.
    explicit PositionChains(std::size_t kept)
        : shift_(64 - std::clamp(static_cast<int>(std::bit_width(kept)), 6, 16)),
          mask_(std::bit_ceil(kept) - 1),
          heads_(kept == 0 ? 0 : std::size_t{1} << (64 - shift_)),
          links_(kept) {}

    void Insert(std::size_t position, std::uint64_t key) {
        std::uint32_t& head = heads_[Slot(key)];
        links_[position & mask_] = head;
        head = static_cast<std::uint32_t>(position + 1);
    }

    /// Shows the positions with the key's hash from the latest down to `oldest` until one of them
    /// ends the search; returns how many it has shown.
    template <class Ends>
    std::size_t Search(std::uint64_t key, std::size_t oldest, Ends ends) const {
        std::size_t shown = 0;
        for (std::uint32_t link = heads_[Slot(key)]; link > oldest;
             link = links_[(link - 1) & mask_]) {
            ++shown;
            if (ends(std::size_t{link} - 1))
                break;
        }
        return shown;
    }

private:
    static constexpr std::uint64_t kScatter = 0x9E37'79B9'7F4A'7C15;
    std::size_t Slot(std::uint64_t key) const {
        return static_cast<std::size_t>((key * kScatter) >> shift_);
    }

    int shift_;
    std::size_t mask_;
    std::vector<std::uint32_t> heads_;
    std::vector<std::uint32_t> links_;
};

/// Finds the longest match that a search of all positions taken in would find, of equal ones the
/// nearest. A match of n words and more begins at a position with the same next n words, so that
/// the chain of the longest key that finds anything holds the best match; of two words only the
/// nearest counts.
class ChainedWords {
public:
    /// For the positions from `begin` to `end`, of which the latest `kept` are kept.
    ChainedWords(const std::uint8_t* words, std::size_t begin, std::size_t end, std::size_t kept)
        : words_(words),
          end_(end),
          hasLongKeys_(kept >= kManyWords),
          pairs_(kept),
          triples_(kept),
          quads_(hasLongKeys_ ? kept : 0),
          octets_(hasLongKeys_ ? kept : 0),
          filled_(begin),
          octetsFilled_(begin) {}

    /// Matches of up to `limit` words.
    Match Longest(std::size_t place, std::size_t limit) {
        constexpr std::size_t oldest = 0;
        FillUpTo(place);
        const WordQuad key = Key(place);
        if (hasLongKeys_ && limit >= kOctetWords) {
            const Match match = LongestIn<kOctetWords>(octets_, OctetKey(place), oldest, place,
                                                       limit, {.length = kOctetWords - 1});
            if (match.length >= kOctetWords)
                return match;
            limit = kOctetWords - 1;
        }
        if (hasLongKeys_ && limit >= kQuadWords) {
            const Match match = LongestIn<kQuadWords>(quads_, key, oldest, place, limit,
                                                      {.length = kQuadWords - 1});
            if (match.length >= kQuadWords)
                return match;
            limit = kQuadWords - 1;
        }
        if (limit >= kTripleWords) {
            const Match match = LongestOfTriple(place, key, oldest, limit);
            if (match.length >= kTripleWords)
                return match;
        }
        return limit >= kPairWords ? NearestPair(place, key) : Match{};
    }

    /// The same where no match further back than near copies reach is wanted.
    Match LongestNear(std::size_t place, std::size_t limit) {
        FillUpTo(place);
        const WordQuad key = Key(place);
        const Match pair = limit >= kPairWords ? NearestPair(place, key) : Match{};
        if (pair.length < kPairWords || limit < kTripleWords)
            return pair;  // without a pair there is nothing longer
        const Match match = LongestOfTriple(place, key, place - kNearestReach, limit);
        return match.length >= kTripleWords ? match : pair;
    }

    /// How many positions have been looked at so far.
    std::size_t Steps() const { return steps_; }

private:
    static constexpr std::size_t kPairWords = 2;
    static constexpr std::size_t kTripleWords = 3;
    static constexpr std::size_t kOctetWords = 8;
    static_assert(kOctetWords <= kSpareWords);
    /// From this size on the longer keys are worth their upkeep.
    static constexpr std::size_t kManyWords = 8'192;

    const std::uint8_t* At(std::size_t position) const { return words_ + position * kWordBytes; }
    WordQuad Key(std::size_t position) const { return QuadAt(At(position)); }
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
        for (; filled_ + kQuadWords <= place && filled_ < end_; ++filled_) {
            const WordQuad key = Key(filled_);
            pairs_.Insert(filled_, Pair(key));
            triples_.Insert(filled_, Triple(key));
            if (hasLongKeys_)
                quads_.Insert(filled_, key);
        }
        if (!hasLongKeys_)
            return;
        for (; octetsFilled_ + kOctetWords <= place && octetsFilled_ < end_; ++octetsFilled_)
            octets_.Insert(octetsFilled_, OctetKey(octetsFilled_));
    }

    /// The longest match of up to `limit` words in the chain of a key of `Least` words; `best`
    /// where none there is longer.
    template <std::size_t Least>
    Match LongestIn(const PositionChains& chains, std::uint64_t key, std::size_t oldest,
                    std::size_t place, std::size_t limit, Match best) {
        // A longer match has the same words where the best one ends, and one more.
        constexpr std::size_t kCompared = std::min(Least, kQuadWords);
        const auto ending = [&](std::size_t position) {
            return Key(position + best.length + 1 - kCompared) << (kQuadWords - kCompared) * 16;
        };
        if (best.length == limit)
            return best;
        WordQuad wanted = ending(place);
        steps_ += chains.Search(key, oldest, [&](std::size_t position) {
            if (ending(position) != wanted)
                return false;
            const std::size_t most = std::min(place - position, limit);
            if (most <= best.length)
                return false;
            const std::size_t length = EqualWords(At(position), At(place), most);
            if (length > best.length) {
                best = {length, position};
                wanted = ending(place);
            }
            return best.length == limit;
        });
        return best;
    }

    Match LongestOfTriple(std::size_t place, WordQuad key, std::size_t oldest, std::size_t limit) {
        Match best{.length = kTripleWords - 1};
        if (place >= kTripleWords && Triple(Key(place - kTripleWords)) == Triple(key))
            best = {kTripleWords, place - kTripleWords};
        return LongestIn<kTripleWords>(triples_, Triple(key), oldest, place, limit, best);
    }

    Match NearestPair(std::size_t place, WordQuad key) const {
        for (const std::size_t back : {2u, 3u}) {
            if (place >= back && Pair(Key(place - back)) == Pair(key))
                return {kPairWords, place - back};
        }
        Match match;
        const std::size_t oldest = std::max(place, kNearestReach) - kNearestReach;
        pairs_.Search(Pair(key), oldest, [&](std::size_t position) {
            if (Pair(Key(position)) != Pair(key))
                return false;
            match = {kPairWords, position};
            return true;
        });
        return match;
    }

    const std::uint8_t* words_;
    std::size_t end_;
    bool hasLongKeys_;
    PositionChains pairs_, triples_, quads_, octets_;
    std::size_t filled_, octetsFilled_;
    std::size_t steps_ = 0;
};

}  // namespace tessaro
