#include "sample/game_files.h"

#include <array>
#include <utility>

#include "foundation/bytes.h"
#include "huffman/dictionary.h"
#include "huffman/huffman.h"
#include "sample/sounds.h"

namespace tessaro::sample {
namespace {

constexpr const char* kGroupEnd = "!ID!";

void Count(const ByteArray& bytes, std::array<std::int32_t, 256>& counts) {
    for (std::uint8_t byte : bytes)
        ++counts[byte];
}

}  // namespace

GameFiles WriteGraphicsFiles(const std::vector<GraphicsChunk>& chunks) {
    std::array<std::int32_t, 256> counts{};
    for (const GraphicsChunk& chunk : chunks)
        Count(chunk.bytes, counts);
    const HuffDictionary dictionary = Huffmanize(counts);

    ByteWriter header, data;
    for (const GraphicsChunk& chunk : chunks) {
        if (chunk.sparse) {
            header.U24(0xFFFFFF);
            continue;
        }
        header.U24(static_cast<std::uint32_t>(data.Position()));
        const ByteArray stored = HuffCompress(chunk.bytes, dictionary);
        data.Bytes(ByteSpan(stored).subspan(chunk.isTile ? 4 : 0));
        if (chunk.endsGroup)
            data.Text(kGroupEnd);
    }
    header.U24(static_cast<std::uint32_t>(data.Position()));
    return {header.Release(), data.Release(), WriteDictionary(dictionary)};
}

GameFiles WriteAudioFiles(bool compressed) {
    const auto speaker = MakeSpeakerEffects(), adLib = MakeAdLibEffects(), songs = MakeSongs();
    std::vector<ByteArray> chunks = speaker;
    chunks.insert(chunks.end(), adLib.begin(), adLib.end());
    chunks.insert(chunks.end(), speaker.size(), ByteArray{});
    const std::size_t firstSong = chunks.size();
    chunks.insert(chunks.end(), songs.begin(), songs.end());

    GameFiles files;
    HuffDictionary dictionary{};
    if (compressed) {
        std::array<std::int32_t, 256> counts{};
        for (const ByteArray& chunk : chunks)
            Count(chunk, counts);
        dictionary = Huffmanize(counts);
        files.dictionary = WriteDictionary(dictionary);
    }
    ByteWriter header, data;
    for (std::size_t i = 0; i < chunks.size(); ++i) {
        header.I32(static_cast<std::int32_t>(data.Position()));
        data.Bytes(compressed && !chunks[i].empty() ? HuffCompress(chunks[i], dictionary)
                                                    : chunks[i]);
        if (i < firstSong && i % speaker.size() == speaker.size() - 1)
            data.Text(kGroupEnd);
    }
    header.I32(static_cast<std::int32_t>(data.Position()));
    files.header = header.Release();
    files.data = data.Release();
    return files;
}

}  // namespace tessaro::sample
