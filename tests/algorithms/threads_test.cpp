// What the kernels give does not depend on the number of threads, to the last bit.

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "curve_samples.h"
#include "intersection.h"
#include "parallel.h"
#include "projection.h"
#include "random_patches.h"
#include "rebreak_patch.h"
#include "small_zones.h"
#include "smooth_patch.h"
#include "target_mesh.h"

namespace velmora::test {

namespace {

using samples::randomPatch;
using samples::sameBits;
using samples::Source;

/// Calls `work` with one thread and with more, and compares what it gives.
template <class Work>
void expectSameWithAnyThreads(const Work& work) {
    const auto withThreads = [&work](std::size_t threads) {
        const ThreadCountScope scope(threads);
        return work();
    };
    const Patch alone = withThreads(1);
    ASSERT_FALSE(alone.empty());
    for (const std::size_t threads : {2, 7, 64}) {
        EXPECT_TRUE(sameBits(withThreads(threads), alone)) << threads << " threads";
    }
}

Patch movedUp(Patch patch, double height) {
    for (PointList& section : patch) {
        for (zVec<double>& point : section) {
            point.z += height;
        }
    }
    return patch;
}

/// The triangles of a grid as a zone.
std::unique_ptr<zBlock_fe> zoneOf(const Patch& patch) {
    std::vector<zVec<double>> nodes;
    std::vector<std::int32_t> corners;
    const auto side = static_cast<std::int32_t>(patch.front().size());
    for (std::int32_t n = 0; n < countOf(patch); ++n) {
        for (std::int32_t m = 0; m < side; ++m) {
            const std::int32_t i = n * side + m;
            nodes.push_back(patch[static_cast<std::size_t>(n)][static_cast<std::size_t>(m)]);
            if (n + 1 < countOf(patch) && m + 1 < side) {
                corners.insert(corners.end(), {i, i + 1, i + side, i + side, i + 1, i + side + 1});
            }
        }
    }
    return triangleZone("grid", nodes, corners);
}

} // namespace

TEST(AnyNumberOfThreads, ProjectsPatchesToTheSamePlaces) {
    Source source(71);
    // The lines of the border miss the smaller target.
    const PatchList patches = {randomPatch(source, 40, 30, false), randomPatch(source, 25, 30, false)};
    const TriangleTree target(CellMesh({movedUp(randomPatch(source, 20, 20, false), 3)}, {false}).takeMesh());
    expectSameWithAnyThreads([&] {
        PatchList moved = patches;
        PointList missed;
        int misses = 0;
        projectPatches(moved, {1, 0}, target, nearestElementHit, missed, [&misses] { ++misses; }, {});
        EXPECT_EQ(misses, 1);
        EXPECT_GT(missed.size(), 100U);
        Patch all = moved[0];
        all.insert(all.end(), moved[1].begin(), moved[1].end());
        all.push_back(missed);
        return all;
    });
}

TEST(AnyNumberOfThreads, ProjectsZonesToTheSamePlaces) {
    Source source(72);
    const Patch moving = randomPatch(source, 60, 40, false);
    const Patch target = movedUp(randomPatch(source, 60, 40, false), 2);
    expectSameWithAnyThreads([&] {
        zRegion_fe region;
        region.blocks.push_back(zoneOf(moving));
        region.blocks.push_back(zoneOf(target));
        projectZones(region, {0}, {});
        Patch nodes(1);
        bool anyMoved = false;
        for (std::int32_t node = 0; node < region.blocks[0]->nodeCount; ++node) {
            zVec<double> at;
            region.getNode(0, node, at.x, at.y, at.z);
            nodes[0].push_back(at);
            anyMoved = anyMoved || at.z > 1;
        }
        EXPECT_TRUE(anyMoved);
        return nodes;
    });
}

TEST(AnyNumberOfThreads, FindsTheSamePiercingPointsAndTheSameFailure) {
    Source source(73);
    // Lines run across the sections, which rise through the other patch; behind line 150 there is nothing to pierce.
    Patch rising;
    for (int n = 0; n < 6; ++n) {
        PointList section;
        for (int m = 0; m < 200; ++m) {
            section.push_back({0.1 + 0.1 * m, 5 + source.real(-0.3, 0.3), n - 2.5});
        }
        rising.push_back(section);
    }
    const PatchList patches = {rising, randomPatch(source, 12, 16, false)};
    expectSameWithAnyThreads([&] {
        PiercingPoints piercing;
        const PiercingOutcome outcome = findPiercingPoints(patches, {0}, piercing, {});
        EXPECT_EQ(outcome.failure, PiercingFailure::NotFound);
        EXPECT_EQ(outcome.line, static_cast<std::int32_t>(piercing.places.size()));
        EXPECT_GT(outcome.line, 100);
        return Patch{piercing.places, piercing.before, piercing.after};
    });
}

TEST(AnyNumberOfThreads, SmoothsToTheSamePatch) {
    Source source(74);
    for (int round = 0; round < 40; ++round) {
        const Patch patch = randomPatch(source, source.whole(3, 40), source.whole(3, 40), round % 2 == 1);
        const bool lines = source.once(2);
        const bool along = source.once(4);
        expectSameWithAnyThreads([&] {
            Patch smoothed = patch;
            bool spline = !along;
            lines ? smoothLines(smoothed, spline) : smoothSections(smoothed, spline);
            smoothed.push_back({{spline ? 1.0 : 0.0, 0, 0}});
            return smoothed;
        });
    }
}

TEST(AnyNumberOfThreads, RespacesToTheSamePatch) {
    Source source(75);
    for (int round = 0; round < 60; ++round) {
        Patch patch = randomPatch(source, source.whole(4, 40), source.whole(4, 40), round % 2 == 1);
        const bool lines = source.once(2);
        if (!lines) {
            for (PointList& section : patch) { // sections of any length cut the stretch of those behind them
                section.resize(static_cast<std::size_t>(source.whole(3, static_cast<int>(section.size()))));
            }
        }
        RebreakLaw law;
        law.linear = source.once(2);
        law.fitToLawCurve = source.once(2);
        law.newCount = source.whole(2, 30);
        law.compression = source.real(0.5, 2);
        law.firstPoint = source.whole(1, 4);
        law.lastPoint = source.whole(5, 60);
        const CurveRange curves{source.whole(0, 3), source.whole(3, 60), source.whole(0, 40)};
        expectSameWithAnyThreads([&] {
            Patch respaced = patch;
            RebreakLaw own = law;
            lines ? rebreakLines(respaced, own, curves) : rebreakSections(respaced, own, curves);
            respaced.push_back({{static_cast<double>(own.firstPoint), static_cast<double>(own.lastPoint), 0}});
            return respaced;
        });
    }
}

} // namespace velmora::test
