// Whatever bytes a Carmack stream holds, expanding it ends in words or in a Failure; and any words
// pack into a stream that gives them back, where none looks like a code.
#include <algorithm>
#include <cstdlib>

#include "maps/carmack.h"

using namespace tessaro;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const CarmackTags tags;
    const ByteSpan source(data, size);
    for (const std::int32_t length : {64, 1023}) {
        ByteArray words(1024);
        try {
            CarmackExpand(source, words, length, tags);
        } catch (const Failure&) {
        }
    }

    const ByteSpan plain = source.first(size / 2 * 2);
    for (std::size_t i = 1; i < plain.size(); i += 2) {
        if (plain[i] == tags.nearTag || plain[i] == tags.farTag)
            return 0;
    }
    const ByteArray packed = CarmackCompress(plain, LengthPrefix::Long, tags);
    ByteArray words(plain.size());
    CarmackExpand(ByteSpan(packed).subspan(4), words, static_cast<std::int32_t>(words.size()),
                  tags);
    if (!std::ranges::equal(words, plain))
        std::abort();
    return 0;
}
