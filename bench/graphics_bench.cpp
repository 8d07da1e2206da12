// A whole graphics file: expanded, compressed and its dictionary built, each beside the literal
// form. With TESSARO_GAME_DATA the file is a real game's, otherwise made up of like bytes.
#include <benchmark/benchmark.h>
#include <literal/huffman_literal.h>

#include <array>
#include <random>
#include <string>
#include <vector>

#include "graphics/graphics_header.h"
#include "huffman/dictionary.h"
#include "huffman/huffman.h"
#include "real_game.h"

namespace tessaro {
namespace {

struct GraphicsFile {
    HuffDictionary dictionary{};
    std::array<std::int32_t, 256> counts{};
    std::vector<ByteArray> expanded;
    std::vector<ByteArray> streams;
    std::int64_t bytes = 0;

    void Add(ByteArray chunk) {
        for (const std::uint8_t byte : chunk)
            ++counts[byte];
        bytes += std::ssize(chunk);
        expanded.push_back(std::move(chunk));
    }
};

GraphicsFile ReadRealFile() {
    GraphicsFile file;
    file.dictionary = ReadDictionary(ReadWholeFile(*RealFile("VGADICT.WL1")));
    const ByteArray data = ReadWholeFile(*RealFile("VGAGRAPH.WL1"));
    const auto offsets = ReadGraphicsHeader(ReadWholeFile(*RealFile("VGAHEAD.WL1")), 3, false);
    for (std::size_t i = 0; i + 1 < offsets.size(); ++i) {
        const ByteSpan chunk = ByteSpan(data).subspan(offsets[i], offsets[i + 1] - offsets[i]);
        const std::int32_t length = ByteReader(chunk).I32();
        if (length <= 0 || length > 65535)
            continue;  // the tile chunk has no length field
        file.Add(ExpandChunk(chunk, file.dictionary));
        file.streams.emplace_back(chunk.begin() + 4, chunk.end());
    }
    return file;
}

GraphicsFile MakeFile() {
    GraphicsFile file;
    std::mt19937 random(7);
    std::geometric_distribution<int> byte(0.06);
    for (std::size_t i = 0; i < 150; ++i) {
        ByteArray chunk(500 + random() % 8000);
        for (std::size_t k = 0; k < chunk.size(); ++k)
            chunk[k] = k > 0 && random() % 3 != 0
                           ? chunk[k - 1]
                           : static_cast<std::uint8_t>(byte(random) * 29 & 0xFF);
        file.Add(std::move(chunk));
    }
    file.dictionary = Huffmanize(file.counts);
    for (const ByteArray& chunk : file.expanded)
        file.streams.push_back(CompressStream(chunk, file.dictionary));
    return file;
}

const GraphicsFile& TheFile() {
    static const GraphicsFile file = [] {
        return RealFile("VGAGRAPH.WL1") ? ReadRealFile() : MakeFile();
    }();
    return file;
}

template <class Expand>
void ExpandAll(benchmark::State& state, Expand&& expand) {
    const GraphicsFile& file = TheFile();
    ByteArray dest(65536);
    for (auto _ : state) {
        for (std::size_t i = 0; i < file.streams.size(); ++i) {
            auto length = static_cast<std::int32_t>(file.expanded[i].size());
            expand(file.streams[i], dest, length, file.dictionary, false);
            benchmark::DoNotOptimize(dest.data());
            benchmark::ClobberMemory();
        }
    }
    state.SetBytesProcessed(state.iterations() * file.bytes);
}

void BM_HuffmanExpand(benchmark::State& state) {
    ExpandAll(state, [](auto&&... arguments) { HuffExpand(arguments...); });
}
BENCHMARK(BM_HuffmanExpand);

void BM_HuffmanExpandLiteral(benchmark::State& state) {
    ExpandAll(state, [](auto&&... arguments) { literal::HuffExpand(arguments...); });
}
BENCHMARK(BM_HuffmanExpandLiteral);

void BM_HuffmanCompress(benchmark::State& state) {
    const GraphicsFile& file = TheFile();
    for (auto _ : state)
        for (const ByteArray& chunk : file.expanded)
            benchmark::DoNotOptimize(HuffCompress(chunk, file.dictionary));
    state.SetBytesProcessed(state.iterations() * file.bytes);
}
BENCHMARK(BM_HuffmanCompress);

void BM_HuffmanCompressLiteral(benchmark::State& state) {
    const GraphicsFile& file = TheFile();
    ByteArray dest;
    for (auto _ : state)
        for (const ByteArray& chunk : file.expanded) {
            literal::HuffCompress(chunk, dest, file.dictionary);
            benchmark::DoNotOptimize(dest.data());
        }
    state.SetBytesProcessed(state.iterations() * file.bytes);
}
BENCHMARK(BM_HuffmanCompressLiteral);

void BM_BuildDictionary(benchmark::State& state) {
    const GraphicsFile& file = TheFile();
    for (auto _ : state)
        benchmark::DoNotOptimize(Huffmanize(file.counts));
}
BENCHMARK(BM_BuildDictionary);

void BM_BuildDictionaryLiteral(benchmark::State& state) {
    const GraphicsFile& file = TheFile();
    for (auto _ : state)
        benchmark::DoNotOptimize(literal::Huffmanize(file.counts));
}
BENCHMARK(BM_BuildDictionaryLiteral);

}  // namespace
}  // namespace tessaro
