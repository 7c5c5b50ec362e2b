// Reading and writing of .apt and .skl files of two million points, beside the least that each can cost: the bare
// conversion of the same numbers in memory. Put the temporary folder into memory (TMPDIR) to leave the disk out of the
// figures.

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "NumberReader.h"
#include "apt.h"
#include "skl.h"

namespace {

using namespace velmora;

constexpr int digits = 16;
constexpr int patchCount = 1000;
constexpr int sectionCount = 50;
constexpr int pointCount = 40;
constexpr std::int64_t points = std::int64_t{patchCount} * sectionCount * pointCount;

// Short directions: the file is over the thinning threshold, but none of it is left out.
PatchList makeModel() {
    PatchList patches(patchCount, Patch(sectionCount));
    for (int k = 0; k < patchCount; ++k) {
        for (int n = 0; n < sectionCount; ++n) {
            PointList& section = patches[static_cast<std::size_t>(k)][static_cast<std::size_t>(n)];
            for (int m = 0; m < pointCount; ++m) {
                const double u = 0.1 * n;
                const double v = 0.15 * m;
                section.emplace_back(k + std::cos(u) * std::cos(v), std::sin(u) * std::cos(v), -std::sin(v) / 3.0);
            }
        }
    }
    return patches;
}

// The model, its file and the file's text, made once and removed at the end.
struct Fixture {
    PatchList patches = makeModel();
    std::filesystem::path folder;
    std::filesystem::path file;
    std::filesystem::path lines; ///< the same model as an .skl file
    std::string text;

    Fixture() {
        std::string name = (std::filesystem::temp_directory_path() / "native_bench_XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) {
            std::abort();
        }
        folder = name;
        file = folder / "model.apt";
        lines = folder / "model.skl";
        if (!writeApt(file, patches, digits) || !writeSkl(lines, patches, digits)) {
            std::abort();
        }
        std::ifstream stream(file, std::ios::binary);
        text.assign(std::istreambuf_iterator<char>(stream), {});
    }
    ~Fixture() { std::filesystem::remove_all(folder); }
    Fixture(const Fixture&) = delete;
    Fixture& operator=(const Fixture&) = delete;
};

const Fixture& fixture() {
    static const Fixture instance;
    return instance;
}

void reportRates(benchmark::State& state) {
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(fixture().text.size()));
    state.SetItemsProcessed(state.iterations() * points);
}

void bareFromChars(benchmark::State& state) {
    const std::string& text = fixture().text;
    for ([[maybe_unused]] auto step : state) {
        double sum = 0.0;
        const char* cursor = text.data();
        const char* const end = cursor + text.size();
        while (cursor != end) {
            double value = 0.0;
            cursor = std::from_chars(cursor, end, value).ptr;
            sum += value;
            ++cursor; // one blank or line feed behind every number
        }
        benchmark::DoNotOptimize(sum);
    }
    reportRates(state);
}

// The pass that parses numbers, without storing them.
void parseNumbers(benchmark::State& state) {
    const Fixture& model = fixture();
    for ([[maybe_unused]] auto step : state) {
        NumberReader reader(model.file);
        double sum = 0.0;
        double value = 0.0;
        while (reader.readDouble(value)) {
            sum += value;
        }
        benchmark::DoNotOptimize(sum);
    }
    reportRates(state);
}

void countLines(benchmark::State& state) {
    const Fixture& model = fixture();
    for ([[maybe_unused]] auto step : state) {
        NumberReader reader(model.file);
        const bool all = reader.skipLines(points + patchCount);
        benchmark::DoNotOptimize(all);
    }
    reportRates(state);
}

// Both passes, and the model stored.
void readWholeApt(benchmark::State& state) {
    const Fixture& model = fixture();
    for ([[maybe_unused]] auto step : state) {
        PatchList patches;
        const AptReadResult result = readApt(model.file, patches);
        benchmark::DoNotOptimize(result.pointsKept);
        state.PauseTiming();
        patches.clear();
        state.ResumeTiming();
    }
    reportRates(state);
}

void bareToChars(benchmark::State& state) {
    const PatchList& patches = fixture().patches;
    std::vector<char> buffer(std::size_t{1} << 20);
    char* const end = buffer.data() + buffer.size();
    for ([[maybe_unused]] auto step : state) {
        char* cursor = buffer.data();
        const auto put = [&cursor, end](double value) {
            cursor = std::to_chars(cursor, end, value, std::chars_format::scientific, digits).ptr;
            *cursor++ = ' ';
        };
        for (const Patch& patch : patches) {
            for (const PointList& section : patch) {
                cursor = buffer.data();
                for (const zVec<double>& point : section) {
                    put(point.x);
                    put(point.y);
                    put(point.z);
                }
                benchmark::ClobberMemory();
            }
        }
    }
    reportRates(state);
}

void writeWholeApt(benchmark::State& state) {
    const Fixture& model = fixture();
    const std::filesystem::path file = model.folder / "written.apt";
    for ([[maybe_unused]] auto step : state) {
        if (!writeApt(file, model.patches, digits)) {
            state.SkipWithError("the file could not be written");
        }
    }
    reportRates(state);
}

void readWholeSkl(benchmark::State& state) {
    const Fixture& model = fixture();
    for ([[maybe_unused]] auto step : state) {
        PatchList patches;
        const SklReadResult result = readSkl(model.lines, patches);
        benchmark::DoNotOptimize(result.pointsRead);
        state.PauseTiming();
        patches.clear();
        state.ResumeTiming();
    }
    reportRates(state);
}

void writeWholeSkl(benchmark::State& state) {
    const Fixture& model = fixture();
    const std::filesystem::path file = model.folder / "written.skl";
    for ([[maybe_unused]] auto step : state) {
        if (!writeSkl(file, model.patches, digits)) {
            state.SkipWithError("the file could not be written");
        }
    }
    reportRates(state);
}

BENCHMARK(bareFromChars)->Unit(benchmark::kMillisecond);
BENCHMARK(parseNumbers)->Unit(benchmark::kMillisecond);
BENCHMARK(countLines)->Unit(benchmark::kMillisecond);
BENCHMARK(readWholeApt)->Unit(benchmark::kMillisecond);
BENCHMARK(bareToChars)->Unit(benchmark::kMillisecond);
BENCHMARK(writeWholeApt)->Unit(benchmark::kMillisecond);
BENCHMARK(readWholeSkl)->Unit(benchmark::kMillisecond);
BENCHMARK(writeWholeSkl)->Unit(benchmark::kMillisecond);

} // namespace
