// Reading every chunk of a compressed audio set: 288 chunks of 100 or 1000 bytes each.
#include <benchmark/benchmark.h>
#include <literal/huffman_literal.h>

#include <algorithm>
#include <random>

#include "audio/audio_file.h"
#include "huffman/huffman.h"

namespace tessaro {
namespace {

constexpr std::size_t kChunks = 288;

/// Chunks of a byte distribution like that of effects: small values are frequent.
struct AudioSet {
    explicit AudioSet(std::size_t chunkSize) {
        std::mt19937 random(1);
        std::vector<ByteArray> chunks(kChunks, ByteArray(chunkSize));
        std::array<std::int32_t, 256> counts{};
        for (ByteArray& chunk : chunks)
            for (std::uint8_t& byte : chunk) {
                byte = static_cast<std::uint8_t>(random() & random() & random() & 0xFF);
                ++counts[byte];
            }
        dictionary = Huffmanize(counts);
        for (const ByteArray& chunk : chunks)
            stored.push_back(CompressAudioChunk(chunk, dictionary));
    }

    HuffDictionary dictionary;
    std::vector<ByteArray> stored;
};

void BM_ReadAudioSet(benchmark::State& state) {
    const AudioSet set(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state)
        for (const ByteArray& chunk : set.stored)
            benchmark::DoNotOptimize(ExpandAudioChunk(chunk, set.dictionary));
    state.SetBytesProcessed(state.iterations() * state.range(0) *
                            static_cast<std::int64_t>(kChunks));
}
BENCHMARK(BM_ReadAudioSet)->Arg(100)->Arg(1000);

void BM_ReadAudioSetLiteral(benchmark::State& state) {
    const AudioSet set(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state)
        for (const ByteArray& chunk : set.stored) {
            auto length = static_cast<std::int32_t>(state.range(0));
            ByteArray bytes(static_cast<std::size_t>(length));
            literal::HuffExpand(ByteSpan(chunk).subspan(4), bytes, length, set.dictionary, false);
            benchmark::DoNotOptimize(bytes);
        }
    state.SetBytesProcessed(state.iterations() * state.range(0) *
                            static_cast<std::int64_t>(kChunks));
}
BENCHMARK(BM_ReadAudioSetLiteral)->Arg(100)->Arg(1000);

}  // namespace
}  // namespace tessaro
