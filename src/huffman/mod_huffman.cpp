#include "huffman/mod_huffman.h"

#include "foundation/guard.h"
#include "foundation/store.h"

namespace tessaro::modHuffmanExpand {

bool HuffExpand(const ByteArray& Source, ByteArray& Dest, std::int32_t& ExpandedLength,
                const HuffDictionary& Dictionary, bool KeepGoing) {
    return Guarded("modHuffmanExpand.HuffExpand", [&] {
        tessaro::HuffExpand(Source, Dest, ExpandedLength, Dictionary, KeepGoing);
        return true;
    });
}

bool HuffCompress(const ByteArray& Source, ByteArray& Dest, const HuffDictionary& Dictionary) {
    return Guarded("modHuffmanExpand.HuffCompress", [&] {
        Dest = tessaro::HuffCompress(Source, Dictionary);
        return true;
    });
}

std::int32_t DetermineChunkSize(const ByteArray& Source, ByteArray& Dest) {
    return Guarded("modHuffmanExpand.DetermineChunkSize", [&] {
        return tessaro::DetermineChunkSize(Source, Dest, ConfiguredGame().expandDictionary);
    });
}

std::int32_t DetermineHuffLength(std::uint8_t Value, const HuffDictionary& Dictionary) {
    return Guarded("modHuffmanExpand.DetermineHuffLength",
                   [&] { return tessaro::DetermineHuffLength(Value, Dictionary); });
}

}  // namespace tessaro::modHuffmanExpand

namespace tessaro::modHuffmanize {

bool Huffmanize(const std::array<std::int32_t, 256>& Counts) {
    return Guarded("modHuffmanize.Huffmanize", [&] {
        Store& store = SharedStore();
        store.byteCounts = Counts;  // also when no tree comes of them
        store.builtDictionary = tessaro::Huffmanize(Counts);
        return true;
    });
}

}  // namespace tessaro::modHuffmanize
