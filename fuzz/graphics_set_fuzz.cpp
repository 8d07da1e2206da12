// Whatever a header and a data file hold, opening them and loading every chunk ends in bytes or in
// a Failure. First a byte of flags, then the number of the header's entries, then both files.
#include <algorithm>

#include "graphics/graphics_set.h"
#include "huffman/dictionary.h"
#include "huffman/huffman.h"

namespace {

using namespace tessaro;

/// Codes of 6 to 10 bits.
ByteArray Dictionary() {
    std::array<std::int32_t, 256> counts{};
    for (std::size_t i = 0; i < counts.size(); ++i)
        counts[i] = static_cast<std::int32_t>(i % 29 + 1);
    return WriteDictionary(Huffmanize(counts));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const ByteArray dictionary = Dictionary();
    if (size < 2)
        return 0;
    const std::span files(data + 2, size - 2);
    const std::size_t headerSize = std::min<std::size_t>(files.size(), data[1] * std::size_t{3});
    MemoryFiles memory;
    Game game;
    game.egaGraphics = (data[0] & 1) != 0;
    game.vgaHeaderFile = "HEAD";
    game.vgaGraphFile = "GRAPH";
    game.vgaDictFile = "DICT";
    memory.Set("HEAD", {files.begin(), files.begin() + static_cast<std::ptrdiff_t>(headerSize)});
    memory.Set("GRAPH", {files.begin() + static_cast<std::ptrdiff_t>(headerSize), files.end()});
    memory.Set("DICT", dictionary);
    try {
        GraphicsSet set = GraphicsSet::Open(game, memory, {.j98 = (data[0] & 2) != 0});
        for (std::int32_t chunk = 0; chunk < set.Count(); ++chunk) {
            try {
                set.Load(chunk);
            } catch (const Failure&) {
            }
        }
    } catch (const Failure&) {
    }
    return 0;
}
