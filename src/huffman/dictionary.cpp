#include "huffman/dictionary.h"

namespace tessaro {

HuffDictionary ReadDictionary(ByteSpan bytes) {
    ByteReader in(bytes);
    HuffDictionary dictionary;
    for (HuffNode& node : dictionary) {
        node.Bit0 = in.I16();
        node.Bit1 = in.I16();
    }
    return dictionary;
}

ByteArray WriteDictionary(const HuffDictionary& dictionary) {
    ByteWriter out;
    for (const HuffNode& node : dictionary) {
        out.I16(node.Bit0);
        out.I16(node.Bit1);
    }
    return out.Release();
}

}  // namespace tessaro
