// The jobs of the page file over all walls and sprites of a real game, which TESSARO_GAME_DATA
// names (the folder above wl1).
#include <benchmark/benchmark.h>
#include <literal/pagefile_literal.h>

#include <array>
#include <filesystem>

#include "foundation/store.h"
#include "images/bmp_image.h"
#include "pagefile/column_images.h"
#include "pagefile/page_index.h"
#include "pagefile/sprite_chunk.h"
#include "pagefile/sprite_pools.h"
#include "real_game.h"
#include "tessaro/vswap.h"

namespace tessaro {
namespace {

struct GameSet {
    std::string path;
    std::vector<ByteArray> walls, sprites;    ///< those with data
    std::vector<ByteArray> spriteRows;        ///< pixels row by row
    std::vector<std::vector<ByteSpan>> runs;  ///< the posts of each sprite, in its chunk
    std::size_t bytes = 0;

    static std::vector<ByteSpan> Runs(ByteSpan chunk) {
        std::vector<ByteSpan> runs;
        ByteReader in(chunk);
        const std::size_t left = in.U16();
        const std::size_t right = in.U16();
        for (std::size_t x = left; x <= right; ++x) {
            ByteReader list(chunk);
            list.Seek(in.U16());
            while (const std::size_t end = list.U16() / 2u) {
                const int pixels = list.I16();
                const std::size_t start = list.U16() / 2u;
                runs.push_back(chunk.subspan(
                    static_cast<std::size_t>(pixels + static_cast<int>(start)), end - start));
            }
        }
        return runs;
    }

    static const GameSet* Load(benchmark::State& state) {
        static const GameSet set = [] {
            GameSet loaded;
            const auto path = RealFile("VSWAP.WL1");
            if (!path)
                return loaded;
            loaded.path = *path;
            Game game;
            game.vswapFile = loaded.path;
            const PageIndex index = PageIndex::Open(game, *DiskFiles());
            for (std::int32_t chunk = 0; chunk < index.walls + index.sprites; ++chunk) {
                ByteArray stored = index.Read(chunk);
                if (stored.empty())
                    continue;
                loaded.bytes += stored.size();
                if (chunk < index.walls) {
                    loaded.walls.push_back(std::move(stored));
                    continue;
                }
                loaded.spriteRows.push_back(Transposed(DecodeSprite(stored, 64), 64, 64));
                loaded.runs.push_back(Runs(stored));
                loaded.sprites.push_back(std::move(stored));
            }
            return loaded;
        }();
        if (set.walls.empty()) {
            state.SkipWithError("set TESSARO_GAME_DATA");
            return nullptr;
        }
        state.SetBytesProcessed(0);
        return &set;
    }
};

/// The images of all walls and sprites, as callers get them.
void BM_DecodeWallsAndSprites(benchmark::State& state) {
    const GameSet* set = GameSet::Load(state);
    if (set == nullptr)
        return;
    for (auto _ : state) {
        for (const ByteArray& wall : set->walls)
            benchmark::DoNotOptimize(ImageOfColumns(wall, 64));
        for (const ByteArray& sprite : set->sprites)
            benchmark::DoNotOptimize(ImageOfColumns(DecodeSprite(sprite, 64), 64));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(set->bytes));
}
BENCHMARK(BM_DecodeWallsAndSprites)->Unit(benchmark::kMicrosecond);

void BM_DecodeWallsAndSpritesLiteral(benchmark::State& state) {
    const GameSet* set = GameSet::Load(state);
    if (set == nullptr)
        return;
    volatile int side = 64;  // read from the set, not known to the compiler
    const auto image = [&](const literal::Bytes& pixels) {
        return literal::BmpImage(pixels, static_cast<std::size_t>(side), SharedStore().palette);
    };
    for (const ByteArray& wall : set->walls)
        if (image(literal::DecodeWall(wall, 64)) != ImageOfColumns(wall, 64))
            state.SkipWithError("different walls");
    for (const ByteArray& sprite : set->sprites)
        if (image(literal::DecodeSprite(sprite, 64)) !=
            ImageOfColumns(DecodeSprite(sprite, 64), 64))
            state.SkipWithError("different sprites");
    for (auto _ : state) {
        for (const ByteArray& wall : set->walls)
            benchmark::DoNotOptimize(
                image(literal::DecodeWall(wall, static_cast<std::size_t>(side))));
        for (const ByteArray& sprite : set->sprites)
            benchmark::DoNotOptimize(image(literal::DecodeSprite(sprite, side)));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(set->bytes));
}
BENCHMARK(BM_DecodeWallsAndSpritesLiteral)->Unit(benchmark::kMicrosecond);

/// From pixels to chunks. The argument is the compression; the counter tells the bytes of all
/// compiled sprites.
void BM_CompileSprites(benchmark::State& state) {
    const GameSet* set = GameSet::Load(state);
    if (set == nullptr)
        return;
    const auto compression = static_cast<enmVSWAPCompression>(state.range(0));
    std::size_t bytes = 0;
    for (auto _ : state) {
        bytes = 0;
        for (const ByteArray& pixels : set->spriteRows)
            bytes += CompileSprite(Transposed(pixels, 64, 64), 64, compression).size();
        benchmark::DoNotOptimize(bytes);
    }
    state.counters["bytes"] = static_cast<double>(bytes);
}
BENCHMARK(BM_CompileSprites)
    ->Arg(vcNone)
    ->Arg(vcOriginal)
    ->Arg(vcGood)
    ->Unit(benchmark::kMicrosecond);

literal::Bytes CompileLiterally(const literal::Bytes& pixels, enmVSWAPCompression compression) {
    switch (compression) {
        case vcNone:
            return literal::Compile(pixels, 64, literal::UnsharedPool{});
        case vcOriginal:
            return literal::Compile(pixels, 64, literal::ReusedPool{});
        default: {
            const literal::Bytes merged = literal::MergedRuns(literal::RunsOf(pixels, 64));
            return literal::Compile(pixels, 64, literal::FinishedPool{merged});
        }
    }
}

void BM_CompileSpritesLiteral(benchmark::State& state) {
    const GameSet* set = GameSet::Load(state);
    if (set == nullptr)
        return;
    const auto compression = static_cast<enmVSWAPCompression>(state.range(0));
    for (const ByteArray& pixels : set->spriteRows)
        if (CompileLiterally(pixels, compression) !=
            CompileSprite(Transposed(pixels, 64, 64), 64, compression))
            state.SkipWithError("compiled differently");
    for (auto _ : state)
        for (const ByteArray& pixels : set->spriteRows)
            benchmark::DoNotOptimize(CompileLiterally(pixels, compression));
}
BENCHMARK(BM_CompileSpritesLiteral)
    ->Arg(vcNone)
    ->Arg(vcOriginal)
    ->Arg(vcGood)
    ->Unit(benchmark::kMicrosecond);

/// The pixel pools of vcOriginal alone.
void BM_ReusePixels(benchmark::State& state) {
    const GameSet* set = GameSet::Load(state);
    if (set == nullptr)
        return;
    for (auto _ : state)
        for (const auto& runs : set->runs)
            benchmark::DoNotOptimize(PoolReused(runs));
}
BENCHMARK(BM_ReusePixels)->Unit(benchmark::kMicrosecond);

void BM_ReusePixelsLiteral(benchmark::State& state) {
    const GameSet* set = GameSet::Load(state);
    if (set == nullptr)
        return;
    const auto place = [](const std::vector<ByteSpan>& runs) {
        SpritePool pool;
        for (const ByteSpan run : runs) {
            pool.offsets.push_back(literal::SearchPool(pool.bytes, run));
            if (pool.offsets.back() == pool.bytes.size())
                pool.bytes.insert(pool.bytes.end(), run.begin(), run.end());
        }
        return pool;
    };
    for (const auto& runs : set->runs)
        if (place(runs).offsets != PoolReused(runs).offsets)
            state.SkipWithError("different places");
    for (auto _ : state)
        for (const auto& runs : set->runs)
            benchmark::DoNotOptimize(place(runs));
}
BENCHMARK(BM_ReusePixelsLiteral)->Unit(benchmark::kMicrosecond);

/// A whole page file from disk to disk, nothing edited.
void BM_SavePageFile(benchmark::State& state) {
    const GameSet* set = GameSet::Load(state);
    if (set == nullptr)
        return;
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / "tessaro-bench-pagefile";
    std::filesystem::create_directories(folder);
    SharedStore().appPath = ConfiguredGame().dataPath = ConfiguredGame().outputFolder =
        folder.string();
    ConfiguredGame().backupFolder = (folder / "backup").string();
    ConfiguredGame().dataExtension = "WL1";
    ConfiguredGame().compileExtension = "OUT";
    ConfiguredGame().vswapFile = set->path;
    const std::filesystem::path output = folder / "VSWAP.OUT";
    clsVSwap container;
    if (!container.Initialize())
        state.SkipWithError("cannot open the set");
    for (auto _ : state) {
        if (!container.SaveVSwap(static_cast<enmVSWAPCompression>(state.range(0))))
            state.SkipWithError("cannot save");
        state.PauseTiming();
        std::filesystem::remove(output);
        state.ResumeTiming();
    }
    container.CloseFile();
    std::filesystem::remove_all(folder);
}
BENCHMARK(BM_SavePageFile)
    ->Arg(vcNone)
    ->Arg(vcOriginal)
    ->Arg(vcGood)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tessaro
