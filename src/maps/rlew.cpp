// Its plain form: bench/literal/maps_literal.h, which the tests hold it against.
#include "maps/rlew.h"

#include <algorithm>
#include <cstring>

#include "maps/word_bytes.h"

namespace tessaro {

namespace {

constexpr std::int32_t kUsualLength = 8192;  // a plane of 64 x 64 cells
constexpr std::size_t kRunBytes = 3 * kWordBytes;
constexpr std::size_t kLongestRun = 65'535;
constexpr std::size_t kLongestLiteralRun = 3;

/// What a roomy step reads and writes at most: a quad of words, then a run; blocks reach beyond it.
constexpr std::ptrdiff_t kStepSource = sizeof(WordQuad) + kRunBytes;
constexpr std::size_t kShortRun = 16;
constexpr std::ptrdiff_t kStepRoom = (kQuadWords + kShortRun) * kWordBytes;

/// Writes `count` copies of a word. The last quad ends with the run and overlaps the one before.
void FillRun(std::uint8_t* target, std::size_t count, const std::uint8_t* word) {
    const WordQuad copies = CopiesOf(word);
    if (count >= kQuadWords) {
        std::uint8_t* const last = target + (count - kQuadWords) * kWordBytes;
        for (; target < last; target += sizeof copies)
            PutCopies(target, copies);
        PutCopies(last, copies);
        return;
    }
    for (; count > 0; --count, target += kWordBytes)
        std::memcpy(target, word, kWordBytes);
}

/// The part of an expansion that is far from both ends and need not look at every word: bytes up
/// to `outEnd` are still to be written, so that whole blocks may spill over.
Cursor ExpandRoomy(std::uint16_t tag, Cursor from, const std::uint8_t* inEnd,
                   const std::uint8_t* outEnd) {
    const WordQuad tags = InEachLane(tag);
    auto [in, out] = from;
    while (inEnd - in >= kStepSource && outEnd - out >= kStepRoom) {
        if (WordAt(in) != tag) {
            const WordQuad words = QuadAt(in);
            CopyQuad(out, in);
            if (FirstZeroLane(words ^ tags) == 0) {
                in += sizeof words;
                out += sizeof words;
                continue;
            }
            do {
                in += kWordBytes;
                out += kWordBytes;
            } while (WordAt(in) != tag);
        }
        const std::size_t bytes = WordAt(in + kWordBytes) * kWordBytes;
        const WordQuad value = CopiesOf(in + 2 * kWordBytes);
        for (std::size_t done = 0; done < kShortRun * kWordBytes; done += sizeof value)
            PutCopies(out + done, value);
        if (bytes > kShortRun * kWordBytes) {
            if (outEnd - out < static_cast<std::ptrdiff_t>(bytes) + kStepRoom)
                break;
            for (std::size_t done = kShortRun * kWordBytes; done < bytes; done += sizeof value)
                PutCopies(out + done, value);
        }
        in += kRunBytes;
        out += bytes;
    }
    return {in, out};
}

/// The number of words from the front of `count` on that are equal, at least one.
std::size_t RunLength(const std::uint8_t* words, std::size_t count) {
    const std::uint16_t first = WordAt(words);
    const WordQuad quad = InEachLane(first);
    std::size_t length = 1;
    while (count - length >= kQuadWords) {
        const WordQuad same = QuadAt(words + length * kWordBytes) ^ quad;
        if (same != 0)
            return length + LanesBefore(same);
        length += kQuadWords;
    }
    while (length < count && WordAt(words + length * kWordBytes) == first)
        ++length;
    return length;
}

std::uint8_t* PutRun(std::uint8_t* out, std::uint16_t tag, std::size_t count,
                     const std::uint8_t* word) {
    PutWord(out, tag);
    PutWord(out + kWordBytes, static_cast<std::uint16_t>(count));
    std::memcpy(out + 2 * kWordBytes, word, kWordBytes);
    return out + kRunBytes;
}

/// Copies words up to where a run begins that is worth a code, or to the last few, where none can;
/// returns how many. The target has room for a quad more than are copied.
std::size_t CopyUpToRun(std::uint8_t* target, const std::uint8_t* words, std::size_t count) {
    static_assert(kLongestLiteralRun + 1 == kQuadWords);
    std::size_t at = 0;
    while (count - at > kQuadWords) {
        const std::uint8_t* const here = words + at * kWordBytes;
        const WordQuad quad = QuadAt(here);
        const WordQuad changes = (quad ^ quad >> 16) << 16 >> 16;
        if (changes == 0)
            return at;
        CopyQuad(target + at * kWordBytes, here);
        // No run of four begins at or before the last change within the four.
        at += static_cast<std::size_t>(63 - std::countl_zero(changes)) / 16 + 1;
    }
    return at;
}

}  // namespace

RlewExpansion RlewExpand(std::uint16_t tag, ByteSpan source, std::span<std::uint8_t> destination,
                         std::int32_t& length, LengthPrefix prefix, Overrun overrun) {
    RlewExpansion result;
    if (length < 1) {
        ByteReader front(source);
        length = prefix == LengthPrefix::Long ? front.I32() : front.U16();
        source = source.subspan(front.Position());
        if (length == 0) {
            length = kUsualLength;
            result.lengthWasZero = true;
        }
    }

    std::uint8_t* const first = destination.data();
    std::uint8_t* const outEnd = first + destination.size() / kWordBytes * kWordBytes;
    std::uint8_t* const promisedEnd =
        first + std::min(static_cast<std::ptrdiff_t>(std::max(length, 0)), outEnd - first);
    const std::uint8_t* const inEnd = source.data() + source.size();
    auto [in, out] = ExpandRoomy(tag, {source.data(), first}, inEnd, promisedEnd);

    std::ptrdiff_t left = length - (out - first);
    while (in != inEnd && left > 0) {
        std::size_t count = 1;
        if (inEnd - in < static_cast<std::ptrdiff_t>(kWordBytes))
            throw Failure(kSubscriptOutOfRange);
        if (WordAt(in) == tag) {
            if (inEnd - in < static_cast<std::ptrdiff_t>(kRunBytes))
                throw Failure(kSubscriptOutOfRange);
            count = WordAt(in + kWordBytes);
            in += 2 * kWordBytes;
        }
        const auto bytes = static_cast<std::ptrdiff_t>(count * kWordBytes);
        if (bytes > outEnd - out && overrun == Overrun::Fails)
            throw Failure(kSubscriptOutOfRange);
        const std::ptrdiff_t written = std::min(bytes, outEnd - out);
        FillRun(out, static_cast<std::size_t>(written) / kWordBytes, in);
        out += written;
        left -= bytes;
        in += kWordBytes;
    }
    length = static_cast<std::int32_t>(left);
    result.endedEarly = left > 0;
    if (result.endedEarly)  // what blocks have spilt
        std::memset(out, 0, static_cast<std::size_t>(std::min(outEnd - out, kStepRoom)));
    return result;
}

ByteArray RlewCompress(std::uint16_t tag, ByteSpan source, LengthPrefix prefix) {
    if (source.empty())
        throw Failure(kSubscriptOutOfRange);
    ByteWriter front;
    if (prefix == LengthPrefix::Long)
        front.U32(static_cast<std::uint32_t>(source.size()));
    else if (prefix == LengthPrefix::Short)
        front.U16(static_cast<std::uint16_t>(source.size()));  // the low 16 bits, whatever the size

    // Whatever the words are, they take no more room than they took: a run has four at least.
    const std::size_t limit = source.size() - 1;
    ByteArray packed(front.Position() + source.size() + sizeof(WordQuad));
    std::ranges::copy(front.View(), packed.begin());
    std::uint8_t* out = packed.data() + front.Position();
    const std::uint8_t* word = source.data();
    for (std::size_t remaining = source.size() / kWordBytes; remaining > 0;) {
        const std::size_t singles = CopyUpToRun(out, word, remaining);
        out += singles * kWordBytes;
        word += singles * kWordBytes;
        remaining -= singles;
        const std::size_t run = RunLength(word, std::min(remaining, kLongestRun));
        if (run > kLongestLiteralRun)
            out = PutRun(out, tag, run, word);
        else
            out = std::copy_n(word, run * kWordBytes, out);
        word += run * kWordBytes;
        remaining -= run;
    }
    packed.resize(static_cast<std::size_t>(out - packed.data()));
    if (packed.size() > limit)
        throw Failure(kSubscriptOutOfRange);
    return packed;
}

}  // namespace tessaro
