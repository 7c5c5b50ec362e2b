// Import beside the least that it can cost: a binary STL file of a million triangles beside the bare reading of its
// bytes, PLOT3D text beside a bare conversion of its numbers. Put the temporary folder into memory (TMPDIR) to leave
// the disk out of the figures.

#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include "exchange_files.h"
#include "wavy_sheet.h"

namespace {

using namespace velmora;

// The files, made once and removed at the end.
struct Fixture {
    bench::FolderOfFiles folder;

    Fixture() {
        const ExchangeModel model = bench::wavySheet(1001, 501); // a million triangles
        ExportOptions text;
        text.binary = false;
        WriteOutcome written;
        const bool made = exportFile(folder / "model.stl", model, {}, written) == ExportOutcome::Done &&
                          exportFile(folder / "model.p3d", model, {}, written) == ExportOutcome::Done &&
                          exportFile(folder / "model.xyz", model, text, written) == ExportOutcome::Done &&
                          exportFile(folder / "model.obj", model, {}, written) == ExportOutcome::Done &&
                          exportFile(folder / "model.ply", model, {}, written) == ExportOutcome::Done &&
                          exportFile(folder / "model.dat", model, {}, written) == ExportOutcome::Done;
        if (!made) {
            std::abort();
        }
    }
};

const Fixture& fixture() {
    static const Fixture instance;
    return instance;
}

std::string bytesOf(const std::filesystem::path& path) {
    std::string bytes(std::filesystem::file_size(path), '\0');
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    std::size_t size = 0;
    while (size < bytes.size()) {
        const ssize_t count = ::read(descriptor, bytes.data() + size, bytes.size() - size);
        if (count <= 0) {
            std::abort();
        }
        size += static_cast<std::size_t>(count);
    }
    ::close(descriptor);
    return bytes;
}

void reportRate(benchmark::State& state, const char* file) {
    state.SetBytesProcessed(state.iterations() *
                            static_cast<std::int64_t>(std::filesystem::file_size(fixture().folder / file)));
}

void bareRead(benchmark::State& state, const char* file) {
    const std::filesystem::path path = fixture().folder / file;
    for ([[maybe_unused]] auto step : state) {
        benchmark::DoNotOptimize(bytesOf(path));
    }
    reportRate(state, file);
}

// Every number of a text of numbers and white space, each kept.
void bareFromChars(benchmark::State& state, const char* file) {
    const std::filesystem::path path = fixture().folder / file;
    for ([[maybe_unused]] auto step : state) {
        const std::string text = bytesOf(path);
        std::vector<double> numbers;
        const char* cursor = text.data();
        const char* const end = cursor + text.size();
        while (cursor < end) {
            if (*cursor == ' ' || *cursor == '\n') {
                ++cursor;
                continue;
            }
            double value = 0.0;
            cursor = std::from_chars(cursor, end, value).ptr;
            numbers.push_back(value);
        }
        benchmark::DoNotOptimize(numbers.data());
    }
    reportRate(state, file);
}

void importWhole(benchmark::State& state, const char* file) {
    const std::filesystem::path path = fixture().folder / file;
    for ([[maybe_unused]] auto step : state) {
        auto model = std::make_unique<ExchangeModel>();
        FileRead record;
        if (importFile(path, {}, *model, record) != ImportOutcome::Done) {
            std::abort();
        }
        benchmark::DoNotOptimize(model.get());
        state.PauseTiming();
        model.reset();
        state.ResumeTiming();
    }
    reportRate(state, file);
}

BENCHMARK_CAPTURE(bareRead, stl, "model.stl")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(importWhole, stl, "model.stl")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(bareFromChars, plot3dText, "model.xyz")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(importWhole, plot3dText, "model.xyz")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(importWhole, plot3dBinary, "model.p3d")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(importWhole, obj, "model.obj")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(importWhole, plyBinary, "model.ply")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(importWhole, tecplot, "model.dat")->Unit(benchmark::kMillisecond);

} // namespace
