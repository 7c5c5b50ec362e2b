#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>

#include "polyline.h"
#include "rebreak_kernels.h"

namespace velmora {
namespace {

using Column = std::vector<double>;

struct Curve {
    Column x;
    Column y;
    Column z;

    explicit Curve(std::int32_t n) : x(static_cast<std::size_t>(n)), y(x.size()), z(x.size()) {}
};

/// An uneven turn about the z axis; `seed` makes each curve another.
Curve helix(std::int32_t n, std::uint32_t seed) {
    std::mt19937 engine(seed);
    std::uniform_real_distribution<double> step(0.5, 1.5);
    Curve curve(n);
    double angle = 0;
    for (std::size_t i = 0; i < curve.x.size(); ++i) {
        angle += step(engine) * 6 / n;
        curve.x[i] = std::cos(angle);
        curve.y[i] = std::sin(angle);
        curve.z[i] = angle;
    }
    return curve;
}

constexpr std::int32_t curveCount = 20000;
constexpr std::int32_t curvePoints = 100;

std::vector<Curve> manyCurves() {
    std::vector<Curve> curves;
    curves.reserve(curveCount);
    for (std::int32_t i = 0; i < curveCount; ++i) {
        curves.push_back(helix(curvePoints, static_cast<std::uint32_t>(i)));
    }
    return curves;
}

/// 20,000 curves of 100 points to 100 points; arguments: law kind, exactness in percent.
void splineRebreakLaw(benchmark::State& state) {
    const std::vector<Curve> curves = manyCurves();
    const int kind = static_cast<int>(state.range(0));
    const auto exactness = static_cast<double>(state.range(1));
    Curve out(curvePoints);
    Column law(static_cast<std::size_t>(curvePoints));
    for (std::size_t i = 0; i < law.size(); ++i) {
        law[i] = static_cast<double>(i * (i + 20));
    }
    while (state.KeepRunning()) {
        for (const Curve& in : curves) {
            SplineRebreakLaw(in.x.data(), in.y.data(), in.z.data(), curvePoints, out.x.data(), out.y.data(),
                             out.z.data(), curvePoints, exactness, kind, 2.0, law.data());
            benchmark::ClobberMemory();
        }
    }
    state.SetItemsProcessed(state.iterations() * curveCount * curvePoints);
}
BENCHMARK(splineRebreakLaw)
    ->ArgNames({"kind", "exactness"})
    ->Args({0, 0})
    ->Args({lawCompression, 0})
    ->Args({lawPrescribed, 0})
    ->Args({lawCompression, 1})
    ->Unit(benchmark::kMillisecond);

/// 20,000 curves of 100 points to 100 points.
void linearRebreak(benchmark::State& state) {
    const std::vector<Curve> curves = manyCurves();
    Curve out(curvePoints);
    while (state.KeepRunning()) {
        for (const Curve& in : curves) {
            LinearRebreak(in.x.data(), in.y.data(), in.z.data(), curvePoints, out.x.data(), out.y.data(), out.z.data(),
                          curvePoints, 2.0);
            benchmark::ClobberMemory();
        }
    }
    state.SetItemsProcessed(state.iterations() * curveCount * curvePoints);
}
BENCHMARK(linearRebreak)->Unit(benchmark::kMillisecond);

constexpr std::int32_t longCount = 100000;

/// One curve of 100,000 points to as many; argument: 1 for a law that falls from step to step.
void linearRebreakLaw(benchmark::State& state) {
    const Curve in = helix(longCount, 1);
    Curve out(longCount);
    Column law(static_cast<std::size_t>(longCount));
    for (std::size_t i = 0; i < law.size(); ++i) {
        law[i] = static_cast<double>(state.range(0) == 0 ? i : law.size() - 1 - i);
    }
    law.back() = static_cast<double>(law.size() - 1);
    while (state.KeepRunning()) {
        LinearRebreakLaw(in.x.data(), in.y.data(), in.z.data(), longCount, out.x.data(), out.y.data(), out.z.data(),
                         longCount, law.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * longCount);
}
BENCHMARK(linearRebreakLaw)->ArgName("falling")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

/// 100,000 points all in one place.
void removeCoincidentPoints(benchmark::State& state) {
    Curve curve(longCount);
    while (state.KeepRunning()) {
        std::int32_t count = longCount;
        RemoveCoincidentPoints(curve.x.data(), curve.y.data(), curve.z.data(), count);
        benchmark::DoNotOptimize(count);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * longCount);
}
BENCHMARK(removeCoincidentPoints)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace velmora
