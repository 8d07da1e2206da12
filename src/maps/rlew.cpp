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
void ExpandRoomy(std::uint16_t tag, const std::uint8_t*& inPlace, const std::uint8_t* inEnd,
                 std::uint8_t*& outPlace, const std::uint8_t* outEnd) {
    const WordQuad tags = InEachLane(tag);
    const std::uint8_t* in = inPlace;
    std::uint8_t* out = outPlace;
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
    inPlace = in;
    outPlace = out;
}

/// The number of words from the front of `count` on that are equal.
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

    const std::uint8_t* in = source.data();
    const std::uint8_t* const inEnd = in + source.size();
    std::uint8_t* const first = destination.data();
    std::uint8_t* out = first;
    std::uint8_t* const outEnd = first + destination.size() / kWordBytes * kWordBytes;
    std::uint8_t* const promisedEnd =
        first + std::min(static_cast<std::ptrdiff_t>(std::max(length, 0)), outEnd - first);
    ExpandRoomy(tag, in, inEnd, out, promisedEnd);

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

    ByteArray packed(source.size() - 1);
    std::size_t position = 0;
    const auto take = [&](std::size_t bytes) {
        if (bytes > packed.size() - position)
            throw Failure(kSubscriptOutOfRange);
        return packed.data() + std::exchange(position, position + bytes);
    };
    std::ranges::copy(front.View(), take(front.Position()));

    const std::uint8_t* word = source.data();
    std::size_t remaining = source.size() / kWordBytes;
    while (remaining > 0) {
        const std::size_t run = RunLength(word, std::min(remaining, kLongestRun));
        if (run > kLongestLiteralRun) {
            std::uint8_t* out = take(kRunBytes);
            PutWord(out, tag);
            PutWord(out + kWordBytes, static_cast<std::uint16_t>(run));
            std::memcpy(out + 2 * kWordBytes, word, kWordBytes);
        } else {
            std::memcpy(take(run * kWordBytes), word, run * kWordBytes);
        }
        word += run * kWordBytes;
        remaining -= run;
    }
    packed.resize(position);
    return packed;
}

}  // namespace tessaro
