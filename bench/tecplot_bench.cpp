// Reading and writing of Tecplot files: an ordered zone of two million points in both packings and a zone of a million
// triangles, beside the bare conversion of the same numbers in memory. Put the temporary folder into memory (TMPDIR) to
// leave the disk out of the figures.

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "NumberWriter.h"
#include "SafeFile.h"
#include "zTecplotReader.h"

namespace {

using namespace velmora;

constexpr int digits = 16;
constexpr std::int32_t rowCount = 1000;
constexpr std::int32_t columnCount = 2000;

double coordinate(std::size_t axis, std::size_t point) {
    const double t = 0.001 * static_cast<double>(point);
    return axis == 0 ? std::cos(t) : axis == 1 ? std::sin(t) / 3.0 : t / 7.0;
}

template <class Zone>
void fillCoordinates(Zone& zone, std::size_t points) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
        std::vector<double>& values = zone.addVariable(std::string(1, static_cast<char>('x' + axis)))->data;
        for (std::size_t point = 0; point < points; ++point) {
            values[point] = coordinate(axis, point);
        }
    }
    zone.title = "zone";
}

zRegion makeGrid() {
    zRegion region;
    region.blocks.push_back(std::make_unique<zBlock>(columnCount, rowCount, 1));
    fillCoordinates(*region.blocks[0], std::size_t{columnCount} * rowCount);
    return region;
}

// Half a million nodes: a grid of 1000 by 500, two triangles in each cell.
zRegion_fe makeTriangles() {
    constexpr std::int32_t columns = 1000;
    constexpr std::int32_t rows = 502;
    constexpr std::int32_t triangles = 2 * (columns - 1) * (rows - 1);
    zRegion_fe region;
    region.blocks.push_back(std::make_unique<zBlock_fe>(columns * rows, 4 * triangles, triangles));
    zBlock_fe& zone = *region.blocks[0];
    fillCoordinates(zone, std::size_t{columns} * rows);
    zone.connectivity.clear();
    for (std::int32_t j = 0; j + 1 < rows; ++j) {
        for (std::int32_t i = 0; i + 1 < columns; ++i) {
            const std::int32_t a = j * columns + i;
            zone.connectivity.insert(zone.connectivity.end(),
                                     {a, a + 1, a + columns, -1, a + columns, a + 1, a + columns + 1, -1});
        }
    }
    return region;
}

void writeBlocks(const std::filesystem::path& path, const zBlock& zone) {
    SafeFile file(path);
    NumberWriter out(file, digits, NumberNotation::General);
    out.writeText("VARIABLES = \"x\" \"y\" \"z\"\nZONE I=2000, J=1000, K=1, F=BLOCK\n");
    for (const auto& variable : zone.variables) {
        for (const double value : variable->data) {
            out.writeDouble(value);
            out.writeChar('\n');
        }
    }
    if (!out.flush() || !file.commit()) {
        std::abort();
    }
}

std::string contentOf(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

// The models and their files, made once and removed at the end.
struct Fixture {
    zRegion grid = makeGrid();
    zRegion_fe surface = makeTriangles();
    std::filesystem::path folder;
    std::filesystem::path pointFile;
    std::filesystem::path blockFile;
    std::filesystem::path triangleFile;

    Fixture() {
        std::string name = (std::filesystem::temp_directory_path() / "tecplot_bench_XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) {
            std::abort();
        }
        folder = name;
        pointFile = folder / "point.dat";
        blockFile = folder / "block.dat";
        triangleFile = folder / "triangles.dat";
        zTecplotReader writer;
        writer.structuredTarget = &grid;
        writer.write(pointFile, digits);
        writer.structuredTarget = nullptr;
        writer.unstructuredTarget = &surface;
        writer.write(triangleFile, digits);
        writeBlocks(blockFile, *grid.blocks[0]);
    }
    ~Fixture() { std::filesystem::remove_all(folder); }
    Fixture(const Fixture&) = delete;
    Fixture& operator=(const Fixture&) = delete;
};

const Fixture& fixture() {
    static const Fixture instance;
    return instance;
}

using File = std::filesystem::path Fixture::*;

void reportRate(benchmark::State& state, std::uintmax_t bytes) {
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
}

// One pass over the numbers behind the header, without storing them.
void bareFromChars(benchmark::State& state, File file) {
    const std::string text = contentOf(fixture().*file);
    const std::size_t start =
        text.find('\n', text.find("F=BLOCK") != std::string::npos ? text.find("F=BLOCK") : text.find("DT=(")) + 1;
    for ([[maybe_unused]] auto step : state) {
        double sum = 0.0;
        const char* cursor = text.data() + start;
        const char* const end = text.data() + text.size();
        while (cursor != end) {
            double value = 0.0;
            cursor = std::from_chars(cursor, end, value).ptr;
            sum += value;
            ++cursor; // one blank or line feed behind every number
        }
        benchmark::DoNotOptimize(sum);
    }
    reportRate(state, text.size());
}

void readWhole(benchmark::State& state, File file) {
    const std::filesystem::path& path = fixture().*file;
    for ([[maybe_unused]] auto step : state) {
        zRegion structured;
        zRegion_fe unstructured;
        zTecplotReader().read(path, structured, unstructured);
        benchmark::DoNotOptimize(structured.blocks.size() + unstructured.blocks.size());
        state.PauseTiming();
        structured.blocks.clear();
        unstructured.blocks.clear();
        state.ResumeTiming();
    }
    reportRate(state, std::filesystem::file_size(path));
}

void bareToChars(benchmark::State& state) {
    const ZoneVariables& fields = fixture().grid.blocks[0]->variables;
    std::vector<char> buffer(std::size_t{1} << 20);
    char* const end = buffer.data() + buffer.size();
    for ([[maybe_unused]] auto step : state) {
        char* cursor = buffer.data();
        for (std::size_t point = 0; point < fields[0]->data.size(); ++point) {
            if (end - cursor < 100) {
                benchmark::ClobberMemory();
                cursor = buffer.data();
            }
            for (const auto& field : fields) {
                cursor = std::to_chars(cursor, end, field->data[point], std::chars_format::general, digits).ptr;
                *cursor++ = ' ';
            }
        }
        benchmark::DoNotOptimize(cursor);
    }
    reportRate(state, std::filesystem::file_size(fixture().pointFile));
}

void writeGrid(benchmark::State& state) {
    zTecplotReader writer;
    writer.structuredTarget = &fixture().grid;
    for ([[maybe_unused]] auto step : state) {
        writer.write(fixture().folder / "written.dat", digits);
    }
    reportRate(state, std::filesystem::file_size(fixture().pointFile));
}

void writeTriangles(benchmark::State& state) {
    zTecplotReader writer;
    writer.unstructuredTarget = &fixture().surface;
    for ([[maybe_unused]] auto step : state) {
        writer.write(fixture().folder / "written.dat", digits);
    }
    reportRate(state, std::filesystem::file_size(fixture().triangleFile));
}

BENCHMARK_CAPTURE(bareFromChars, point, &Fixture::pointFile)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readWhole, point, &Fixture::pointFile)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bareFromChars, block, &Fixture::blockFile)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readWhole, block, &Fixture::blockFile)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bareFromChars, triangles, &Fixture::triangleFile)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readWhole, triangles, &Fixture::triangleFile)->Unit(benchmark::kMillisecond);
BENCHMARK(bareToChars)->Unit(benchmark::kMillisecond);
BENCHMARK(writeGrid)->Unit(benchmark::kMillisecond);
BENCHMARK(writeTriangles)->Unit(benchmark::kMillisecond);

} // namespace
