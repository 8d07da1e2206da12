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

using Block = std::uint64_t;
constexpr std::size_t kBlockWords = sizeof(Block) / kWordBytes;

/// The two bytes of a word four times over, in whatever order this machine keeps them.
Block Repeated(const std::uint8_t* word) {
    std::uint16_t pair;
    std::memcpy(&pair, word, sizeof pair);
    return pair * Block{0x0001'0001'0001'0001};
}

/// Writes `count` copies of a word. The last block ends with the run and overlaps the one before.
void FillRun(std::uint8_t* target, std::size_t count, const std::uint8_t* word) {
    const Block block = Repeated(word);
    if (count >= kBlockWords) {
        std::uint8_t* last = target + (count - kBlockWords) * kWordBytes;
        for (; target < last; target += sizeof block)
            std::memcpy(target, &block, sizeof block);
        std::memcpy(last, &block, sizeof block);
        return;
    }
    for (; count > 0; --count, target += kWordBytes)
        std::memcpy(target, &block, kWordBytes);
}

/// The number of equal words from the front of `count` words on.
std::size_t RunLength(const std::uint8_t* words, std::size_t count) {
    const Block block = Repeated(words);
    std::size_t length = 1;
    for (; length + kBlockWords <= count; length += kBlockWords) {
        if (std::memcmp(words + length * kWordBytes, &block, sizeof block) != 0)
            break;
    }
    while (length < count && std::memcmp(words + length * kWordBytes, words, kWordBytes) == 0)
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
    const std::uint8_t* const end = in + source.size();
    std::uint8_t* out = destination.data();
    std::size_t room = destination.size() / kWordBytes;
    const auto fits = [&](std::size_t words) {
        if (words > room && overrun == Overrun::Fails)
            throw Failure(kSubscriptOutOfRange);
        return std::min(words, room);
    };

    while (in != end && length > 0) {
        if (end - in < static_cast<std::ptrdiff_t>(kWordBytes))
            throw Failure(kSubscriptOutOfRange);
        std::size_t count = 1;
        const std::uint8_t* word = in;
        if (WordAt(in) == tag) {
            if (end - in < static_cast<std::ptrdiff_t>(kRunBytes))
                throw Failure(kSubscriptOutOfRange);
            count = WordAt(in + kWordBytes);
            word = in + 2 * kWordBytes;
        }
        const std::size_t written = fits(count);
        FillRun(out, written, word);
        out += written * kWordBytes;
        room -= written;
        length -= static_cast<std::int32_t>(count * kWordBytes);
        in = word + kWordBytes;
    }
    result.endedEarly = length > 0;
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
