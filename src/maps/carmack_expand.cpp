#include <algorithm>
#include <cstring>

#include "maps/carmack.h"
#include "maps/word_bytes.h"

namespace tessaro {

namespace {

constexpr std::size_t kLongestCopy = 255;
constexpr std::size_t kShortestCopyCode = 3;
constexpr std::ptrdiff_t kLongestCode = 4;
constexpr std::size_t kBlockBytes = 8;

/// Copies words forwards, as if one at a time: a copy may repeat what it has just written. Whole
/// blocks need the two places at least a block apart; the last block ends with the copy and
/// overlaps the one before.
void CopyWords(std::uint8_t* target, const std::uint8_t* from, std::size_t count) {
    const std::size_t bytes = count * kWordBytes;
    const auto apart = static_cast<std::size_t>(target - from);  // huge where `from` lies ahead
    if (bytes < kBlockBytes || apart < kBlockBytes) {
        for (std::uint8_t* end = target + bytes; target != end; target += kWordBytes) {
            std::memmove(target, from, kWordBytes);
            from += kWordBytes;
        }
        return;
    }
    std::uint8_t block[kBlockBytes];
    const std::size_t last = bytes - kBlockBytes;
    for (std::size_t at = 0; at < last; at += kBlockBytes) {
        std::memcpy(block, from + at, kBlockBytes);
        std::memcpy(target + at, block, kBlockBytes);
    }
    std::memcpy(block, from + last, kBlockBytes);
    std::memcpy(target + last, block, kBlockBytes);
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

    const std::uint8_t* in = codes.data();
    const std::uint8_t* const end = in + codes.size();
    const std::size_t room = destination.size() / kWordBytes;
    std::uint8_t* const out = destination.data();
    std::size_t at = 0;  // in words, as all places of the output here
    const auto need = [](bool holds) {
        if (!holds)
            throw Failure(kSubscriptOutOfRange);
    };

    while (at < words) {
        const bool roomy = end - in >= kLongestCode;
        need(roomy || end - in >= 2);
        const std::uint8_t count = in[0];
        const std::uint8_t tag = in[1];
        if (tag != tags.nearTag && tag != tags.farTag) {
            need(at < room);
            std::memcpy(out + at * kWordBytes, in, kWordBytes);
            ++at;
            in += 2;
            continue;
        }
        if (count == 0) {
            need((roomy || end - in >= 3) && at < room);
            out[at * kWordBytes] = in[2];
            out[at * kWordBytes + 1] = tag;
            ++at;
            in += 3;
            continue;
        }
        std::size_t from;
        if (tag == tags.nearTag) {
            need(roomy || end - in >= 3);
            need(in[2] <= at);
            from = at - in[2];
            in += 3;
        } else {
            need(roomy);
            from = WordAt(in + 2);
            in += 4;
        }
        need(at + count <= room && from + count <= room);
        CopyWords(out + at * kWordBytes, out + from * kWordBytes, count);
        at += count;
    }
}

}  // namespace tessaro
