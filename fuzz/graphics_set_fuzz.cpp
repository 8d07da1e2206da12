// Whatever a header and a data file hold, finding, expanding and typing every chunk ends in bytes
// or in a Failure. First a byte of flags, then the number of the header's entries, then both files.
#include <algorithm>

#include "graphics/chunk_content.h"
#include "graphics/chunk_expander.h"
#include "graphics/graphics_header.h"
#include "huffman/huffman.h"

namespace {

using namespace tessaro;

/// Codes of 6 to 10 bits.
HuffDictionary Dictionary() {
    std::array<std::int32_t, 256> counts{};
    for (std::size_t i = 0; i < counts.size(); ++i)
        counts[i] = static_cast<std::int32_t>(i % 29 + 1);
    return Huffmanize(counts);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const HuffDictionary dictionary = Dictionary();
    if (size < 2)
        return 0;
    const bool ega = (data[0] & 1) != 0;
    const ByteSpan files(data + 2, size - 2);
    const std::size_t headerSize = std::min<std::size_t>(files.size(), data[1] * std::size_t{3});
    const ByteSpan stored = files.subspan(headerSize);
    const auto storedSize = static_cast<std::int64_t>(stored.size());
    try {
        const auto offsets = ReadGraphicsHeader(files.first(headerSize), 3, false);
        GraphicsSet set;
        set.j98 = (data[0] & 2) != 0;
        set.dictionary = dictionary;
        set.types.assign(offsets.size() - 1, vgUnknown);
        set.counterA = data[0] >> 4;
        set.counterB = (data[0] & 4) != 0 ? 1 : 0;
        for (std::int32_t chunk = 0; chunk < set.Count(); ++chunk) {
            const ChunkSpan span = FindChunk(offsets, storedSize, set.Index(chunk));
            if (span.sparse || span.damaged || span.offset > stored.size() ||
                span.size > stored.size() - span.offset)
                continue;
            const ByteArray bytes =
                ExpandGraphicsChunk(set, ega, chunk, stored.subspan(span.offset, span.size));
            if (set.TypeOf(chunk) == vgUnknown)
                set.Recognise(chunk, TypeByContent(bytes, ega));
        }
    } catch (const Failure&) {
    }
    return 0;
}
