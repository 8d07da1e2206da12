// Input: the header file's size in 16 bits, the header file, the data file. Whatever they hold,
// finding the music and expanding every chunk ends in bytes or in a Failure, and what a chunk
// expands to comes back from the form that a save gives it.
#include <algorithm>
#include <array>
#include <cstdlib>

#include "audio/audio_file.h"
#include "huffman/huffman.h"

namespace {

tessaro::HuffDictionary EvenDictionary() {
    std::array<std::int32_t, 256> counts;
    counts.fill(1);
    return tessaro::Huffmanize(counts);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace tessaro;
    static const HuffDictionary dictionary = EvenDictionary();
    try {
        ByteReader in(ByteSpan(bytes, size));
        const std::size_t headerSize = in.U16();
        const auto offsets = ReadAudioHeader(in.Take(std::min(headerSize, in.Remaining())));
        const auto start = FindStartMusic(offsets, size % 2 == 1);
        if (start && (*start < 0 || static_cast<std::size_t>(*start) + 1 >= offsets.size()))
            std::abort();
        const ByteSpan data = in.Take(in.Remaining());
        for (std::size_t chunk = 0; chunk + 1 < std::min<std::size_t>(offsets.size(), 64);
             ++chunk) {
            const AudioRange range =
                FindAudioRange(offsets, chunk, static_cast<std::int64_t>(data.size()));
            const auto available = static_cast<std::int64_t>(data.size());
            if (range.offset < 0 || range.offset > available ||
                range.size > available - range.offset)
                continue;
            const ByteSpan stored = data.subspan(static_cast<std::size_t>(range.offset),
                                                 static_cast<std::size_t>(range.size));
            const ByteArray expanded = ExpandAudioChunk({stored.begin(), stored.end()}, dictionary);
            if (expanded.size() <= 65535 &&
                ExpandAudioChunk(CompressAudioChunk(expanded, dictionary), dictionary) != expanded)
                std::abort();
        }
    } catch (const Failure&) {
    }
    return 0;
}
