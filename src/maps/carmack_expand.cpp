// Its plain form: bench/literal/maps_literal.h, which the tests hold it against.
#include <algorithm>
#include <cstring>

#include "maps/carmack.h"
#include "maps/word_bytes.h"

namespace tessaro {

namespace {

constexpr std::size_t kLongestCopy = 255;
constexpr std::size_t kShortestCopyCode = 3;
constexpr std::ptrdiff_t kLongestCode = 4;
/// What a roomy step writes at most.
constexpr std::ptrdiff_t kStepRoom = kBlockWords * kWordBytes;

/// Copies words forwards, as if one at a time: a copy may repeat what it has just written.
void CopyWords(std::uint8_t* target, const std::uint8_t* from, std::size_t count) {
    for (; count > 0; --count, target += kWordBytes, from += kWordBytes)
        std::memmove(target, from, kWordBytes);
}

/// The part of an expansion that is far from both ends and has only short copies of what is there
/// already: bytes up to `outEnd` are still to be written, so that whole blocks may spill over.
Cursor ExpandRoomy(CarmackTags tags, Cursor from, const std::uint8_t* inEnd,
                   const std::uint8_t* first, const std::uint8_t* outEnd) {
    auto [in, out] = from;
    while (inEnd - in >= kLongestCode && outEnd - out >= kStepRoom) {
        const std::size_t count = in[0];
        const std::uint8_t tag = in[1];
        if (tag == tags.nearTag) {
            const std::size_t back = in[2] * kWordBytes;
            if (count - 1 >= kBlockWords || count * kWordBytes > back ||
                back > static_cast<std::size_t>(out - first))
                break;
            CopyBlock(out, out - back);
            out += count * kWordBytes;
            in += 3;
        } else if (tag == tags.farTag) {
            const std::size_t source = WordAt(in + 2) * kWordBytes;
            if (count - 1 >= kBlockWords ||
                source + count * kWordBytes > static_cast<std::size_t>(out - first))
                break;
            CopyBlock(out, first + source);
            out += count * kWordBytes;
            in += 4;
        } else {
            std::memcpy(out, in, kWordBytes);
            in += kWordBytes;
            out += kWordBytes;
        }
    }
    return {in, out};
}

}  // namespace

std::size_t CarmackExpandedLimit(std::size_t codeBytes) {
    return (codeBytes / kShortestCopyCode + 1) * kLongestCopy * kWordBytes;
}

void CarmackExpand(ByteSpan codes, std::span<std::uint8_t> destination, std::int32_t length,
                   CarmackTags tags) {
    if (length < 1)
        return;
    // An odd length is half a word too many or too few: ties go to the even number.
    std::size_t words = static_cast<std::size_t>(length) / kWordBytes;
    if (length % 2 != 0 && words % 2 != 0)
        ++words;

    const std::uint8_t* const inEnd = codes.data() + codes.size();
    std::uint8_t* const first = destination.data();
    Cursor cursor{codes.data(), first};
    const std::size_t room = destination.size() / kWordBytes;
    std::uint8_t* const promisedEnd = first + std::min(words, room) * kWordBytes;
    const auto need = [](bool holds) {
        if (!holds)
            throw Failure(kSubscriptOutOfRange);
    };

    for (;;) {
        cursor = ExpandRoomy(tags, cursor, inEnd, first, promisedEnd);
        auto& [in, out] = cursor;
        const auto at = static_cast<std::size_t>(out - first) / kWordBytes;
        if (at >= words)
            return;
        const std::ptrdiff_t left = inEnd - in;
        need(left >= 2);
        const std::size_t count = in[0];
        const std::uint8_t tag = in[1];
        const bool isNear = tag == tags.nearTag;
        if (!isNear && tag != tags.farTag) {
            need(at < room);
            std::memcpy(out, in, kWordBytes);
            out += kWordBytes;
            in += 2;
        } else if (count == 0) {
            need(left >= 3 && at < room);
            out[0] = in[2];
            out[1] = tag;
            out += kWordBytes;
            in += 3;
        } else {
            need(left >= (isNear ? 3 : 4));
            // A near copy from before the first word wraps round to a place beyond any room.
            const std::size_t from = isNear ? at - in[2] : WordAt(in + 2);
            in += isNear ? 3 : 4;
            need(at + count <= room && from <= room - count);
            if (from >= at && out < promisedEnd)  // words not written yet are 0, spilt or not
                std::memset(out, 0,
                            static_cast<std::size_t>(std::min(promisedEnd - out, kStepRoom)));
            CopyWords(out, first + from * kWordBytes, count);
            out += count * kWordBytes;
        }
    }
}

}  // namespace tessaro
