// Import by libraries of others beside these libraries alone, which read the same files and hand nothing on: CGNS and
// VRML of a million triangles, STEP of a hundred balls made triangles. What Import has beyond is the process of its
// own, the pipe, and the model.

#include <array>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <BRepMesh_IncrementalMesh.hxx>
#include <BRepPrimAPI_MakeSphere.hxx>
#include <BRep_Builder.hxx>
#include <Inventor/SoDB.h>
#include <Inventor/SoInput.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <STEPControl_Reader.hxx>
#include <STEPControl_Writer.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Shape.hxx>
#include <benchmark/benchmark.h>
#include <cgnslib.h>
#include <gp_Pnt.hxx>

#include "exchange_files.h"
#include "wavy_sheet.h"

namespace {

using namespace velmora;

constexpr double chord = 0.1;

void writeBalls(const std::filesystem::path& path) {
    TopoDS_Compound balls;
    const BRep_Builder builder;
    builder.MakeCompound(balls);
    for (int i = 0; i < 100; ++i) {
        builder.Add(balls, BRepPrimAPI_MakeSphere(gp_Pnt(25.0 * i, 0.0, 0.0), 10.0).Shape());
    }
    STEPControl_Writer writer;
    if (writer.Transfer(balls, STEPControl_AsIs) != IFSelect_RetDone ||
        writer.Write(path.c_str()) != IFSelect_RetDone) {
        std::abort();
    }
}

// The files, made once and removed at the end.
struct Fixture {
    bench::FolderOfFiles folder;

    Fixture() {
        Message::DefaultMessenger()->ChangePrinters().Clear();
        SoDB::init();
        const ExchangeModel grid = bench::wavySheet(1001, 501);
        ExchangeModel triangles;
        WriteOutcome written;
        FileRead record;
        const bool made = exportFile(folder / "model.wrl", grid, {}, written) == ExportOutcome::Done &&
                          exportFile(folder / "model.obj", grid, {}, written) == ExportOutcome::Done &&
                          importFile(folder / "model.obj", {}, triangles, record) == ImportOutcome::Done &&
                          exportFile(folder / "model.cgns", triangles, {}, written) == ExportOutcome::Done;
        if (!made) {
            std::abort();
        }
        writeBalls(folder / "model.step");
    }
};

const Fixture& fixture() {
    static const Fixture instance;
    return instance;
}

void importWhole(benchmark::State& state, const char* file) {
    const std::filesystem::path path = fixture().folder / file;
    ImportOptions options;
    options.chord = chord;
    for ([[maybe_unused]] auto step : state) {
        auto model = std::make_unique<ExchangeModel>();
        FileRead record;
        if (importFile(path, options, *model, record) != ImportOutcome::Done) {
            std::abort();
        }
        benchmark::DoNotOptimize(model.get());
        state.PauseTiming();
        model.reset();
        state.ResumeTiming();
    }
}

void demand(bool good) {
    if (!good) {
        std::abort();
    }
}

// Coordinates and corners into arrays.
void readCgnsAlone(const std::filesystem::path& path) {
    int file = 0;
    std::array<char, 33> name{};
    std::array<cgsize_t, 9> sizes{};
    demand(cg_open(path.c_str(), CG_MODE_READ, &file) == CG_OK);
    demand(cg_zone_read(file, 1, 1, name.data(), sizes.data()) == CG_OK);
    const cgsize_t first = 1;
    std::vector<double> values(static_cast<std::size_t>(sizes[0]));
    for (const char* const axis : {"CoordinateX", "CoordinateY", "CoordinateZ"}) {
        demand(cg_coord_read(file, 1, 1, axis, CGNS_ENUMV(RealDouble), &first, sizes.data(), values.data()) == CG_OK);
        benchmark::DoNotOptimize(values.data());
    }
    std::vector<cgsize_t> corners(3 * static_cast<std::size_t>(sizes[1]));
    demand(cg_elements_read(file, 1, 1, 1, corners.data(), nullptr) == CG_OK);
    benchmark::DoNotOptimize(corners.data());
    cg_close(file);
}

void readVrmlAlone(const std::filesystem::path& path) {
    SoInput input;
    demand(input.openFile(path.c_str()) != FALSE);
    SoSeparator* const scene = SoDB::readAll(&input);
    demand(scene != nullptr);
    scene->ref();
    scene->unref();
}

void readStepAlone(const std::filesystem::path& path) {
    STEPControl_Reader reader;
    demand(reader.ReadFile(path.c_str()) == IFSelect_RetDone);
    reader.TransferRoots();
    const TopoDS_Shape shape = reader.OneShape();
    const BRepMesh_IncrementalMesh mesher(shape, chord, Standard_False, 0.5, Standard_False);
    demand(mesher.IsDone());
}

template <class Read>
void alone(benchmark::State& state, Read read, const char* file) {
    const std::filesystem::path path = fixture().folder / file;
    for ([[maybe_unused]] auto step : state) {
        read(path);
    }
}

BENCHMARK_CAPTURE(alone, cgns, readCgnsAlone, "model.cgns")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(importWhole, cgns, "model.cgns")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(alone, vrml, readVrmlAlone, "model.wrl")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(importWhole, vrml, "model.wrl")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(alone, step, readStepAlone, "model.step")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(importWhole, step, "model.step")->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
