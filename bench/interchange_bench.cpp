// Reading and writing of STL and VRML files of a million triangles, beside the least that each can cost: the bare
// conversion of the same numbers in memory. Put the temporary folder into memory (TMPDIR) to leave the disk out of the
// figures.

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>

#include <benchmark/benchmark.h>

#include "zSTLReader.h"
#include "zVRMLReader.h"

namespace {

using namespace velmora;

constexpr std::int32_t columns = 1001;
constexpr std::int32_t rows = 501;
constexpr std::int64_t triangles = std::int64_t{2} * (columns - 1) * (rows - 1);

// A wavy sheet.
zRegion_fe makeModel() {
    constexpr std::int32_t elements = 2 * (columns - 1) * (rows - 1);
    auto zone = std::make_unique<zBlock_fe>(columns * rows, 4 * elements, elements);
    zone->title = "sheet";
    zArray<double>* const x = zone->addVariable("x");
    zArray<double>* const y = zone->addVariable("y");
    zArray<double>* const z = zone->addVariable("z");
    for (std::int32_t node = 0; node < columns * rows; ++node) {
        const std::int32_t column = node % columns;
        const std::int32_t row = node / columns;
        const double u = 0.01 * column;
        const double v = 0.013 * row;
        const auto index = static_cast<std::size_t>(node);
        x->data[index] = u + 0.1 * std::sin(v);
        y->data[index] = v - 3.0;
        z->data[index] = std::sin(3.0 * u) * std::cos(v);
    }
    auto entry = zone->connectivity.begin();
    for (std::int32_t row = 0; row + 1 < rows; ++row) {
        for (std::int32_t column = 0; column + 1 < columns; ++column) {
            const std::int32_t a = row * columns + column;
            for (const std::int32_t value : {a, a + 1, a + columns, -1, a + columns, a + 1, a + columns + 1, -1}) {
                *entry++ = value;
            }
        }
    }
    zRegion_fe region;
    region.blocks.push_back(std::move(zone));
    return region;
}

// The model and its files, made once and removed at the end.
struct Fixture {
    zRegion_fe region = makeModel();
    std::filesystem::path folder;

    Fixture() {
        std::string name = (std::filesystem::temp_directory_path() / "interchange_bench_XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) {
            std::abort();
        }
        folder = name;
        zSTLReader().write(folder / "model.stl", region);
        zVRMLReader().write(folder / "model.wrl", region);
    }
    ~Fixture() { std::filesystem::remove_all(folder); }
    Fixture(const Fixture&) = delete;
    Fixture& operator=(const Fixture&) = delete;
};

const Fixture& fixture() {
    static const Fixture instance;
    return instance;
}

void reportRates(benchmark::State& state, const char* file) {
    state.SetBytesProcessed(state.iterations() *
                            static_cast<std::int64_t>(std::filesystem::file_size(fixture().folder / file)));
    state.SetItemsProcessed(state.iterations() * triangles);
}

// Every number of the file, found by the first character that can begin one.
void bareFromChars(benchmark::State& state, const char* file) {
    std::ifstream stream(fixture().folder / file, std::ios::binary);
    const std::string text(std::istreambuf_iterator<char>(stream), {});
    for ([[maybe_unused]] auto step : state) {
        double sum = 0.0;
        const char* cursor = text.data();
        const char* const end = cursor + text.size();
        while (cursor < end) {
            if ((*cursor >= '0' && *cursor <= '9') || *cursor == '-') {
                double value = 0.0;
                cursor = std::from_chars(cursor, end, value).ptr;
                sum += value;
            }
            ++cursor;
        }
        benchmark::DoNotOptimize(sum);
    }
    reportRates(state, file);
}

template <class Reader>
void readWhole(benchmark::State& state, const char* file) {
    const Fixture& model = fixture();
    for ([[maybe_unused]] auto step : state) {
        auto region = std::make_unique<zRegion_fe>();
        Reader().read(model.folder / file, *region);
        benchmark::DoNotOptimize(region->blocks.size());
        state.PauseTiming();
        region.reset();
        state.ResumeTiming();
    }
    reportRates(state, file);
}

// The numbers that a file of each format holds of a triangle or a node, in the notation of the files.
void bareToChars(benchmark::State& state, int numbersPerTriangle) {
    const zBlock_fe& zone = *fixture().region.blocks[0];
    std::array<char, 64> buffer{};
    for ([[maybe_unused]] auto step : state) {
        const std::int64_t numbers = triangles * numbersPerTriangle;
        std::size_t node = 0;
        for (std::int64_t number = 0; number < numbers; ++number) {
            std::to_chars(buffer.data(), buffer.data() + buffer.size(),
                          zone.variables[static_cast<std::size_t>(number % 3)]->data[node], std::chars_format::general,
                          6);
            benchmark::ClobberMemory();
            node = node + 1 == zone.variables[0]->data.size() ? 0 : node + 1;
        }
    }
    state.SetItemsProcessed(state.iterations() * triangles);
}

template <class Reader>
void writeWhole(benchmark::State& state, const char* file) {
    const Fixture& model = fixture();
    for ([[maybe_unused]] auto step : state) {
        Reader().write(model.folder / (std::string("written_") + file), model.region);
    }
    reportRates(state, file);
}

void readStl(benchmark::State& state) {
    readWhole<zSTLReader>(state, "model.stl");
}

void readVrml(benchmark::State& state) {
    readWhole<zVRMLReader>(state, "model.wrl");
}

void writeStl(benchmark::State& state) {
    writeWhole<zSTLReader>(state, "model.stl");
}

void writeVrml(benchmark::State& state) {
    writeWhole<zVRMLReader>(state, "model.wrl");
}

BENCHMARK_CAPTURE(bareFromChars, stl, "model.stl")->Unit(benchmark::kMillisecond);
BENCHMARK(readStl)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bareFromChars, vrml, "model.wrl")->Unit(benchmark::kMillisecond);
BENCHMARK(readVrml)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bareToChars, stl, 12)->Unit(benchmark::kMillisecond);
BENCHMARK(writeStl)->Unit(benchmark::kMillisecond);
// Three numbers for each node, of which there are half as many as triangles; the indices are not counted.
BENCHMARK_CAPTURE(bareToChars, vrml, 1)->Unit(benchmark::kMillisecond);
BENCHMARK(writeVrml)->Unit(benchmark::kMillisecond);

} // namespace
