// How work grows with what there is of it: each row measures one operation at sizes far apart and
// tells the time per item at each, in nanoseconds, and the slope: the exponent of the power of the
// size that fits the times best, 1 where twice as much takes twice as long.
#include <benchmark/benchmark.h>
#include <literal/seeded_planes.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <ctime>
#include <filesystem>
#include <functional>
#include <memory>
#include <numeric>
#include <random>
#include <stdexcept>
#include <string>

#include "foundation/global.h"
#include "foundation/store.h"
#include "graphics/graphics_header.h"
#include "huffman/dictionary.h"
#include "huffman/huffman.h"
#include "maps/carmack.h"
#include "maps/rlew.h"
#include "pagefile/page_file.h"
#include "platform/file.h"
#include "tessaro/vga_graph.h"
#include "tessaro/vswap.h"

namespace tessaro {
namespace {

constexpr std::uint16_t kTag = 0xABCD;

double ProcessorSeconds() {
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

/// The shortest of some passes: at least three, and for a tenth of a second.
double BestTime(const std::function<void()>& work) {
    double best = 1e9;
    const double begin = ProcessorSeconds();
    for (int pass = 0; pass < 3 || ProcessorSeconds() - begin < 0.1; ++pass) {
        const double start = ProcessorSeconds();
        // A clock's tick is a microsecond: what is short is done several times.
        int times = 0;
        do {
            work();
            ++times;
        } while (ProcessorSeconds() - start < 1e-3);
        best = std::min(best, (ProcessorSeconds() - start) / times);
    }
    return best;
}

using Sizes = std::vector<std::size_t>;
/// Makes what a size needs and returns the work on it.
using Maker = std::function<std::function<void()>(std::size_t size)>;

void Measure(benchmark::State& state, const Sizes& sizes, const Maker& make) {
    std::vector<double> x, y;
    for (auto _ : state) {
        for (const std::size_t size : sizes) {
            const double time = BestTime(make(size));
            x.push_back(std::log(static_cast<double>(size)));
            y.push_back(std::log(time));
            state.counters["ns@" + std::to_string(size)] = time / static_cast<double>(size) * 1e9;
        }
    }
    const double count = static_cast<double>(x.size());
    const double xMean = std::accumulate(x.begin(), x.end(), 0.0) / count;
    const double yMean = std::accumulate(y.begin(), y.end(), 0.0) / count;
    double covariance = 0, variance = 0;
    for (std::size_t i = 0; i < x.size(); ++i) {
        covariance += (x[i] - xMean) * (y[i] - yMean);
        variance += (x[i] - xMean) * (x[i] - xMean);
    }
    state.counters["slope"] = covariance / variance;
}

/// A folder of its own, which is configured as the game's, gone again at the end.
class Folder {
public:
    Folder() : path_((std::filesystem::temp_directory_path() / "tessaro-growth-bench").string()) {
        std::filesystem::remove_all(path_);
        std::filesystem::create_directory(path_);
        SharedStore() = {};
        SharedStore().appPath = path_;
        ConfiguredGame() = {};
        ConfiguredGame().dataPath = ConfiguredGame().backupFolder = path_;
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder() { std::filesystem::remove_all(path_); }
    std::string Write(const std::string& name, ByteSpan bytes) const {
        WriteWholeFile(JoinPath(path_, name), bytes);
        return JoinPath(path_, name);
    }

private:
    std::string path_;
};

void Expect(bool opened) {
    if (!opened)
        throw std::logic_error("the set made for the measurement does not open");
}

std::function<void()> OpenGraphics(std::size_t chunks) {
    std::mt19937 random(3);
    std::array<std::int32_t, 256> counts{};
    counts.fill(1);
    const HuffDictionary dictionary = Huffmanize(counts);
    ByteArray data, bytes(16);
    std::vector<std::uint32_t> offsets;
    for (std::size_t i = 0; i < chunks; ++i) {
        std::ranges::generate(bytes, [&] { return static_cast<std::uint8_t>(random()); });
        const ByteArray chunk = HuffCompress(bytes, dictionary);
        offsets.push_back(static_cast<std::uint32_t>(data.size()));
        data.insert(data.end(), chunk.begin(), chunk.end());
    }
    offsets.push_back(static_cast<std::uint32_t>(data.size()));
    const auto folder = std::make_shared<Folder>();
    ConfiguredGame().vgaDictFile = folder->Write("VGADICT.TST", WriteDictionary(dictionary));
    ConfiguredGame().vgaHeaderFile = folder->Write("VGAHEAD.TST", WriteGraphicsHeader(offsets, 3));
    ConfiguredGame().vgaGraphFile = folder->Write("VGAGRAPH.TST", data);
    return [folder] {
        clsVGAGraph graph;
        Expect(graph.InitializeGraphics());
    };
}

std::function<void()> OpenPageFile(std::size_t sounds) {
    PageFileImage image(512);
    ByteWriter list;
    for (std::size_t sound = 0; sound < sounds; ++sound) {
        image.AddChunk(ByteArray(64, static_cast<std::uint8_t>(sound)));
        list.U16(static_cast<std::uint16_t>(sound));
        list.U16(64);
    }
    image.AddChunk(list.View());
    const auto folder = std::make_shared<Folder>();
    ConfiguredGame().vswapFile = folder->Write("VSWAP.TST", image.Assemble(0, 0));
    return [folder] {
        clsVSwap container;
        Expect(container.Initialize());
    };
}

std::function<void()> FindBackupNumber(std::size_t backups) {
    const auto folder = std::make_shared<Folder>();
    for (std::size_t i = 1; i <= backups; ++i) {
        const std::string number = std::to_string(i);
        folder->Write(
            "A.TST." + std::string(number.size() < 3 ? 3 - number.size() : 0, '0') + number, {});
    }
    return [folder] { benchmark::DoNotOptimize(modGlobal::NextBackupNumber({"A.TST", "B.TST"})); };
}

bool Register() {
    const auto add = [](const std::string& name, const Sizes& sizes, const Maker& make) {
        benchmark::RegisterBenchmark(("Growth/" + name).c_str(),
                                     [=](benchmark::State& state) { Measure(state, sizes, make); })
            ->Iterations(1)
            ->Unit(benchmark::kMillisecond);
    };
    using literal::PlaneMaker;
    using Plane = PlaneMaker::Bytes;

    // The layers of whole levels, by cells; then Carmack on words that are hard to search.
    const Sizes levels = {256 * 256, 512 * 512, 1024 * 1024, 2048 * 2048};
    const auto level = [](std::size_t cells) {
        return PlaneMaker(1).Mixed(static_cast<std::size_t>(std::sqrt(cells)));
    };
    add("MapsCompress/mixed", levels, [=](std::size_t cells) {
        return [plane = level(cells)] {
            const ByteArray runs = RlewCompress(kTag, plane, LengthPrefix::Long);
            benchmark::DoNotOptimize(CarmackCompress(runs, LengthPrefix::Long, {}));
        };
    });
    add("MapsExpand/mixed", levels, [=](std::size_t cells) {
        const Plane plane = level(cells);
        const ByteArray runs = RlewCompress(kTag, plane, LengthPrefix::Long);
        ByteArray codes = CarmackCompress(runs, LengthPrefix::Long, {});
        codes.erase(codes.begin(), codes.begin() + 4);
        return [codes, size = runs.size(), all = plane.size()] {
            ByteArray expanded(size), words(all);
            CarmackExpand(codes, expanded, static_cast<std::int32_t>(size), {});
            std::int32_t length = 0;
            RlewExpand(kTag, expanded, words, length, LengthPrefix::Long, Overrun::Fails);
            benchmark::DoNotOptimize(words.data());
        };
    });
    const auto carmack = [&](const std::string& kind,
                             const std::function<Plane(std::size_t)>& plane) {
        add("CarmackCompress/" + kind, {10'000, 100'000, 1'000'000}, [=](std::size_t words) {
            return [made = plane(words)] {
                benchmark::DoNotOptimize(CarmackCompress(made, LengthPrefix::Long, {}));
            };
        });
    };
    carmack("equal", [](std::size_t n) { return PlaneMaker(1).Equal(n); });
    carmack("period7", [](std::size_t n) { return PlaneMaker(1).Periodic(n, 7); });
    carmack("period255", [](std::size_t n) { return PlaneMaker(1).Periodic(n, 255); });
    carmack("period1000", [](std::size_t n) { return PlaneMaker(1).Periodic(n, 1000); });
    carmack("counter", [](std::size_t n) { return PlaneMaker(1).Periodic(n, 65'536); });
    carmack("runs3", [](std::size_t n) { return PlaneMaker(1).Runs(n, 3, 4); });
    carmack("runs255", [](std::size_t n) { return PlaneMaker(1).Runs(n, 255, 4); });
    for (const std::size_t length : {4, 5, 20})
        carmack("separated" + std::to_string(length),
                [=](std::size_t n) { return PlaneMaker(1).Separated(n, length); });
    for (const int values : {2, 3, 4, 16, 400})
        carmack("random" + std::to_string(values),
                [=](std::size_t n) { return PlaneMaker(1).Random(n, values); });
    for (const std::size_t noise : {10, 100, 1000})
        carmack("tiled" + std::to_string(noise),
                [=](std::size_t n) { return PlaneMaker(1).Tiled(n, 64 * 64, noise); });

    const auto huffman = [&](const std::string& name, bool expands) {
        add(name, {1'000, 100'000, 10'000'000}, [=](std::size_t size) {
            std::mt19937 random(2);
            std::array<std::int32_t, 256> counts{};
            ByteArray bytes(size);
            for (std::uint8_t& byte : bytes)
                ++counts[byte = static_cast<std::uint8_t>(random() & random() & random() & 0xFF)];
            const HuffDictionary dictionary = Huffmanize(counts);
            const ByteArray stream = CompressStream(bytes, dictionary);
            return std::function<void()>([=] {
                benchmark::DoNotOptimize(
                    expands ? ExpandStream(stream, static_cast<std::int32_t>(size), dictionary)
                            : CompressStream(bytes, dictionary));
            });
        });
    };
    huffman("HuffmanExpand", true);
    huffman("HuffmanCompress", false);

    add("OpenGraphics", {10, 1'000, 100'000}, OpenGraphics);
    add("OpenPageFile", {10, 1'000, 16'000}, OpenPageFile);
    add("NextBackupNumber", {10, 1'000, 10'000}, FindBackupNumber);
    return true;
}

[[maybe_unused]] const bool registered = Register();

}  // namespace
}  // namespace tessaro
