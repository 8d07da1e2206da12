// Graphics sets built by hand: chunk by chunk, in a folder of their own.
#pragma once

#include <string>
#include <vector>

#include "graphics/graphics_header.h"
#include "huffman/dictionary.h"
#include "huffman/huffman.h"
#include "support/support.h"
#include "tessaro/vga_graph.h"

namespace tessaro::test {

struct BuiltChunk {
    ByteArray bytes;    ///< expanded
    bool bare = false;  ///< stored without a length field
    bool sparse = false;
    bool plain = false;   ///< stored as it stands
    std::string glued{};  ///< behind the stored bytes
};

/// Bytes of all values, so that every code has about 8 bits.
inline ByteArray Noise(std::size_t size, unsigned seed = 1) {
    ByteArray bytes(size);
    for (std::uint8_t& byte : bytes) {
        seed = seed * 1664525 + 1013904223;
        byte = static_cast<std::uint8_t>(seed >> 24);
    }
    return bytes;
}

/// A font chunk with the one character 'A' of 5 x 2, its pixel bytes at 770.
inline ByteArray FontChunk(const ByteArray& pixels) {
    ByteArray font(770);
    font[0] = 2;
    font[2 + 2 * 'A'] = 0x02;
    font[3 + 2 * 'A'] = 0x03;
    font[514 + 'A'] = 5;
    return font + pixels;
}

/// A set in a fresh folder, configured and ready to be opened; saves go to the same files.
class SetFolder {
public:
    SetFolder(const std::vector<BuiltChunk>& chunks, bool ega, std::int32_t entryWidth = 3,
              const std::string& stem = "VGA") {
        std::array<std::int32_t, 256> counts{};
        for (const BuiltChunk& chunk : chunks)
            for (const std::uint8_t byte : chunk.bytes)
                counts[byte] += 1;
        dictionary = Huffmanize(counts);

        ByteArray data;
        std::vector<std::uint32_t> offsets;
        for (const BuiltChunk& chunk : chunks) {
            offsets.push_back(chunk.sparse ? kSparseOffset
                                           : static_cast<std::uint32_t>(data.size()));
            if (chunk.sparse)
                continue;
            const ByteArray stored = chunk.plain  ? chunk.bytes
                                     : chunk.bare ? CompressStream(chunk.bytes, dictionary)
                                                  : HuffCompress(chunk.bytes, dictionary);
            data.insert(data.end(), stored.begin(), stored.end());
            data.insert(data.end(), chunk.glued.begin(), chunk.glued.end());
        }
        offsets.push_back(static_cast<std::uint32_t>(data.size()));
        if (entryWidth == 4)
            offsets.push_back(0);
        FreshStore(folder.Path());
        Game& store = ConfiguredGame();
        store.dataPath = folder.Path();
        store.vgaHeaderFile =
            folder.Write(stem + "HEAD.TST", WriteGraphicsHeader(offsets, entryWidth));
        store.vgaGraphFile = folder.Write(stem + "GRAPH.TST", data);
        store.vgaDictFile = folder.Write(stem + "DICT.TST", WriteDictionary(dictionary));
        store.egaGraphics = ega;
        store.canCompileVGAGraph = !ega;
        store.compileExtension = "TST";
        store.outputFolder = folder.Path();
        store.backupFolder = folder.File("backup");
        for (std::int32_t i = 0; i < 256; ++i)
            SharedStore().palette[static_cast<std::size_t>(i)] = i;
    }

    TempFolder folder;
    HuffDictionary dictionary;
};

/// The pixel rows of a BMP image as they are stored: the bottom row first, padded.
inline ByteArray PixelsOf(const ByteArray& image) {
    return Part(image, image.at(10) + image.at(11) * std::size_t{256});
}

}  // namespace tessaro::test
