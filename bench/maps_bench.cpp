// The map codecs beside the literal ones, on the same planes, and the save of a whole set. Times of
// the pairs Literal/Fast with the same name give the ratio; every pair writes the same bytes, which
// is checked before it is measured.
#include <benchmark/benchmark.h>
#include <literal/maps_literal.h>
#include <literal/seeded_planes.h>

#include <filesystem>
#include <stdexcept>
#include <string>

#include "foundation/store.h"
#include "maps/game_maps_self.h"
#include "maps/rlew.h"
#include "real_game.h"

namespace tessaro {
namespace {

constexpr std::uint16_t kTag = 0xABCD;
using Planes = std::vector<ByteArray>;

struct PackedPlanes {
    Planes cells, runs, codes;  // the codes without their length
};

/// Both layers of some planes, which the two implementations must agree on.
PackedPlanes Pack(const Planes& planes) {
    PackedPlanes packed;
    for (const ByteArray& cells : planes) {
        const ByteArray runs = RlewCompress(kTag, cells, LengthPrefix::Long);
        ByteArray codes = CarmackCompress(runs, LengthPrefix::Long, {});
        if (runs != literal::RlewCompress(kTag, cells, 4) ||
            codes != literal::CarmackCompress(runs, true, 0xA7, 0xA8))
            throw std::logic_error("the codecs differ");
        codes.erase(codes.begin(), codes.begin() + 4);
        packed.cells.push_back(cells);
        packed.runs.push_back(runs);
        packed.codes.push_back(std::move(codes));
    }
    return packed;
}

/// Every plane of the real set under TESSARO_GAME_DATA; none without one.
Planes RealPlanes() {
    Planes planes;
    const auto header = RealFile("MAPHEAD.WL1"), data = RealFile("GAMEMAPS.WL1");
    if (!header || !data)
        return planes;
    SharedStore() = {};
    ConfiguredGame().mapHeaderFile = *header;
    ConfiguredGame().gameMapsFile = *data;
    clsGameMaps maps;
    if (!maps.Initialize())
        return planes;
    for (std::int32_t map = 0; map < maps.NumberOfMaps(); ++map) {
        typMapPlane grids;
        std::int32_t width = 0, height = 0;
        maps.LoadMap(map, grids, width, height);
        for (const typMapGrid& grid : grids.Plane)
            planes.push_back(CellBytes(grid));
    }
    return planes;
}

void Count(benchmark::State& state, const Planes& planes) {
    std::size_t bytes = 0;
    for (const ByteArray& plane : planes)
        bytes += plane.size();
    state.SetBytesProcessed(static_cast<std::int64_t>(bytes) *
                            static_cast<std::int64_t>(state.iterations()));
}

void FastCompress(benchmark::State& state, const PackedPlanes& planes) {
    for (auto _ : state) {
        for (const ByteArray& cells : planes.cells) {
            const ByteArray runs = RlewCompress(kTag, cells, LengthPrefix::Long);
            benchmark::DoNotOptimize(CarmackCompress(runs, LengthPrefix::Long, {}));
        }
    }
    Count(state, planes.cells);
}

void LiteralCompress(benchmark::State& state, const PackedPlanes& planes) {
    for (auto _ : state) {
        for (const ByteArray& cells : planes.cells) {
            const ByteArray runs = literal::RlewCompress(kTag, cells, 4);
            benchmark::DoNotOptimize(literal::CarmackCompress(runs, true, 0xA7, 0xA8));
        }
    }
    Count(state, planes.cells);
}

/// Expands both layers into buffers of their own, sized beforehand as the operations want it.
template <class Carmack, class Rlew>
void Expand(benchmark::State& state, const PackedPlanes& planes, Carmack carmack, Rlew rlew) {
    Planes runs, cells;
    for (std::size_t i = 0; i < planes.cells.size(); ++i) {
        runs.emplace_back(planes.runs[i].size());
        cells.emplace_back(planes.cells[i].size());
    }
    for (auto _ : state) {
        for (std::size_t i = 0; i < planes.cells.size(); ++i) {
            carmack(planes.codes[i], runs[i]);
            rlew(runs[i], cells[i]);
        }
        benchmark::ClobberMemory();
    }
    if (cells != planes.cells)
        state.SkipWithError("the cells differ");
    Count(state, planes.cells);
}

void FastExpand(benchmark::State& state, const PackedPlanes& planes) {
    Expand(
        state, planes,
        [](const ByteArray& codes, ByteArray& runs) {
            CarmackExpand(codes, runs, static_cast<std::int32_t>(runs.size()), {});
        },
        [](const ByteArray& runs, ByteArray& cells) {
            std::int32_t length = 0;
            RlewExpand(kTag, runs, cells, length, LengthPrefix::Long, Overrun::Fails);
        });
}

void LiteralExpand(benchmark::State& state, const PackedPlanes& planes) {
    Expand(
        state, planes,
        [](const ByteArray& codes, ByteArray& runs) {
            literal::CarmackExpand(codes, runs, static_cast<int>(runs.size()), 0xA7, 0xA8);
        },
        [](const ByteArray& runs, ByteArray& cells) {
            int length = 0;
            literal::RlewExpand(kTag, runs, cells, length, true);
        });
}

/// A plane of 65,536 words of a kind that is hard on the search, through Carmack alone.
void CarmackAlone(benchmark::State& state, const ByteArray& plane) {
    for (auto _ : state)
        benchmark::DoNotOptimize(CarmackCompress(plane, LengthPrefix::Long, {}));
    Count(state, {plane});
}

/// A folder with a set of 60 mixed maps, gone again at the end.
class SetOf60 {
public:
    SetOf60() : folder_((std::filesystem::temp_directory_path() / "tessaro-maps-bench").string()) {
        std::filesystem::remove_all(folder_);
        std::filesystem::create_directory(folder_);
        SharedStore() = {};
        SharedStore().appPath = folder_;
        ConfiguredGame().backupFolder = JoinPath(folder_, "backup");
        ConfiguredGame().gameMapsFile = JoinPath(folder_, "GAMEMAPS.TST");
        ConfiguredGame().mapHeaderFile = JoinPath(folder_, "MAPHEAD.TST");
        WriteWholeFile(ConfiguredGame().gameMapsFile, {});
        WriteWholeFile(ConfiguredGame().mapHeaderFile, {});
        literal::PlaneMaker make(60);
        auto& self = GameMapsInternals::SelfOf(maps);
        self.compileRlewTag = kTag;
        for (std::int32_t map = 0; map < 60; ++map) {
            maps.AddMap(0);
            for (typMapGrid& grid : self.set.maps.front().planes.Plane) {
                planes.push_back(make.Mixed(64));
                for (std::size_t i = 0; i < grid.Grid.size(); ++i)
                    grid.Grid[i] = planes.back()[2 * i] | planes.back()[2 * i + 1] << 8;
            }
        }
    }
    ~SetOf60() { std::filesystem::remove_all(folder_); }

    clsGameMaps maps;
    Planes planes;

private:
    std::string folder_;
};

void SaveMapSet(benchmark::State& state) {
    SetOf60 set;
    for (auto _ : state) {
        if (!set.maps.SaveMapFile())
            state.SkipWithError("the save failed");
        state.PauseTiming();
        std::filesystem::remove_all(ConfiguredGame().backupFolder);
        state.ResumeTiming();
    }
    Count(state, set.planes);
}

/// What packing alone costs such a save with the literal codecs.
void SaveMapSetLiteralCodecs(benchmark::State& state) {
    const SetOf60 set;
    for (auto _ : state) {
        for (const ByteArray& cells : set.planes)
            benchmark::DoNotOptimize(
                literal::CarmackCompress(literal::RlewCompress(kTag, cells, 2), false, 0xA7, 0xA8));
    }
    Count(state, set.planes);
}

bool Register() {
    const auto pairs = [](const std::string& name, const Planes& planes) {
        if (planes.empty())
            return;
        const PackedPlanes packed = Pack(planes);
        const auto add = [&](const std::string& job, auto run) {
            benchmark::RegisterBenchmark((job + name).c_str(), [=](benchmark::State& state) {
                run(state, packed);
            })->Unit(benchmark::kMicrosecond);
        };
        add("MapsCompress/Literal/", LiteralCompress);
        add("MapsCompress/Fast/", FastCompress);
        add("MapsExpand/Literal/", LiteralExpand);
        add("MapsExpand/Fast/", FastExpand);
    };
    pairs("mixed64", {literal::PlaneMaker(64).Mixed(64)});
    pairs("mixed256", {literal::PlaneMaker(256).Mixed(256)});
    pairs("real", RealPlanes());

    constexpr std::size_t kWords = 65'536;
    literal::PlaneMaker make(16);
    const auto alone = [](const std::string& name, const ByteArray& plane) {
        benchmark::RegisterBenchmark(("CarmackCompress/Fast/" + name).c_str(),
                                     [=](benchmark::State& state) { CarmackAlone(state, plane); })
            ->Unit(benchmark::kMicrosecond);
    };
    alone("equal", make.Equal(kWords));
    for (const std::size_t period : {2, 7, 255, 1000})
        alone("period" + std::to_string(period), make.Periodic(kWords, period));
    for (const int values : {2, 3, 4, 16, 400})
        alone("random" + std::to_string(values), make.Random(kWords, values));
    alone("taglike", make.TagLike(kWords));
    alone("runs255", make.Runs(kWords, 255, 4));
    alone("extremes", make.Extremes(kWords));

    benchmark::RegisterBenchmark("SaveMapFile/Literal/codecs60", SaveMapSetLiteralCodecs)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("SaveMapFile/Fast/maps60", SaveMapSet)
        ->Unit(benchmark::kMillisecond);
    return true;
}

[[maybe_unused]] const bool registered = Register();

}  // namespace
}  // namespace tessaro
