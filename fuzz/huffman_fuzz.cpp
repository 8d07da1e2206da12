// Whatever a dictionary and a stream hold, the tables decode what the plain walk decodes, and what
// can be compressed comes back.
#include <literal/huffman_literal.h>

#include <algorithm>
#include <cstdlib>

#include "huffman/dictionary.h"
#include "huffman/huffman.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tessaro;
    if (size < kDictionarySize)
        return 0;
    const HuffDictionary dictionary = ReadDictionary({data, kDictionarySize});
    const ByteSpan stream(data + kDictionarySize, size - kDictionarySize);
    for (const bool keepGoing : {false, true}) {
        ByteArray bytes(stream.size() * 3);
        ByteArray expected = bytes;
        auto length = static_cast<std::int32_t>(bytes.size());
        std::int32_t expectedLength = length;
        HuffExpand(stream, bytes, length, dictionary, keepGoing);
        literal::HuffExpand(stream, expected, expectedLength, dictionary, keepGoing);
        if (bytes != expected || length != expectedLength)
            std::abort();
    }
    ByteArray measured;
    ByteArray expected(1);
    if (DetermineChunkSize(stream, measured, dictionary) !=
            literal::DetermineChunkSize(stream, expected, dictionary) ||
        measured != expected)
        std::abort();
    if (CanCompress(stream, dictionary) && stream.size() >= 4) {
        literal::HuffCompress(stream, expected, dictionary);
        if (HuffCompress(stream, dictionary) != expected)
            std::abort();
    }
    return 0;
}
