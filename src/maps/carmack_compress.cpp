// Its plain form: bench/literal/maps_literal.h, which the tests hold it against.
#include "maps/carmack.h"
#include "maps/match_finder.h"
#include "maps/word_bytes.h"

namespace tessaro {

namespace {

constexpr std::size_t kMostBytesOfWord = 3;  // those of an escaped one

/// A word's high half by the rule for escaping: as a signed number divided by 256, cut towards
/// zero. Words with a tag from 128 on are thus never escaped: that is meant
/// (docs/kept-behaviour.md).
int HighHalf(std::uint16_t word) {
    return static_cast<std::int16_t>(word) / 256;
}

/// Writes the codes of carmack.h one by one; the caller has seen to the room for them.
class CodeWriter {
public:
    CodeWriter(std::uint8_t* out, CarmackTags tags, Escapes escapes)
        : out_(out), tags_(tags), escapes_(escapes) {}

    void PutNear(std::size_t count, std::size_t distance) {
        Put(count);
        Put(tags_.nearTag);
        Put(distance);
    }
    void PutFar(std::size_t count, std::size_t place) {
        Put(count);
        Put(tags_.farTag);
        PutWord(place);
    }
    void PutSingle(std::uint16_t word) {
        const int high = escapes_ == Escapes::EveryTag ? word >> 8 : HighHalf(word);
        if (high == tags_.nearTag || high == tags_.farTag)
            PutEscaped(word, high);
        else
            PutWord(word);
    }
    void PutPrefix(std::size_t length, LengthPrefix prefix) {
        PutWord(length);
        if (prefix == LengthPrefix::Long)
            PutWord(length >> 16);
    }

    const std::uint8_t* Place() const { return out_; }

private:
    void PutEscaped(std::uint16_t word, int tag) {
        Put(0);
        Put(static_cast<std::size_t>(tag));
        Put(word);
    }
    void PutWord(std::size_t word) {
        Put(word);
        Put(word >> 8);
    }
    void Put(std::size_t byte) { *out_++ = static_cast<std::uint8_t>(byte); }

    std::uint8_t* out_;
    CarmackTags tags_;
    Escapes escapes_;
};

}  // namespace

ByteArray CarmackCompress(ByteSpan source, LengthPrefix prefix, CarmackTags tags, Escapes escapes) {
    const std::size_t count = source.size() / kWordBytes;
    ByteArray words((count + kSpareWords) * kWordBytes);
    std::copy_n(source.begin(), count * kWordBytes, words.begin());

    ByteArray packed(sizeof(std::uint32_t) + count * kMostBytesOfWord);
    CodeWriter out(packed.data(), tags, escapes);
    out.PutPrefix(source.size(), prefix);
    MatchFinder finder(words.data(), count);
    for (std::size_t place = 0; place < count;) {
        const Match match = finder.Longest(place);
        const std::size_t distance = place - match.place;
        if (match.length >= kShortestNear && distance <= kNearestReach)
            out.PutNear(match.length, distance);
        else if (match.length >= kShortestFar)
            out.PutFar(match.length, match.place);
        else
            out.PutSingle(WordAt(words.data() + place * kWordBytes));
        place += match.length;
    }
    packed.resize(static_cast<std::size_t>(out.Place() - packed.data()));
    return packed;
}

}  // namespace tessaro
