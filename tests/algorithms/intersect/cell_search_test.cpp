#include "cell_search.h"

#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "projection_reference.h"
#include "small_models.h"
#include "wavy_patch.h"

namespace velmora::test {

namespace {

using Vector = zVec<double>;

/// Points near a grid's points, edges and cells, and others.
Vector anyPlace(const Patch& patch, std::mt19937& random) {
    std::uniform_real_distribution<double> part(0, 1);
    const std::size_t n = random() % (patch.size() - 1);
    const std::size_t m = random() % (patch[n].size() - 1);
    const Vector& a = patch[n][m];
    const double s = random() % 3 == 0 ? 0 : part(random);
    const double t = random() % 3 == 0 ? 0 : part(random);
    const double off = random() % 2 == 0 ? 0 : 3e-4 * (part(random) - 0.5);
    return a + (patch[n + 1][m] - a) * s + (patch[n][m + 1] - a) * t + Vector(off, -off, off);
}

bool sameAddress(const CellAddress& a, const reference::Found& b) {
    return a.K == static_cast<std::int32_t>(b.k) && a.N == static_cast<std::int32_t>(b.n) &&
           a.M == static_cast<std::int32_t>(b.m);
}

} // namespace

TEST(GrowingGrid, FindsWhatAScanOfEverythingFinds) {
    std::mt19937 random(77);
    for (int round = 0; round < 60; ++round) {
        const double size = round % 3 == 0 ? 1e-3 : 1;
        PatchList patches = {wavy(4, 4, 0), wavy(5, 6, 0.1), flatPatch(4, 4), {{{0, 0, 0}, {1, 1, 1}}}, {}};
        for (Patch& patch : patches) {
            for (PointList& section : patch) {
                for (Vector& p : section) {
                    p = p * size + Vector(round % 2, 0, 0);
                }
            }
        }
        patches[1][2][3] = patches[1][2][2];
        const std::vector<std::int32_t> block = {0};
        GrowingGrid grid(patches, {true, false, false, false, false});
        const double tolerances[] = {1e-10, 0.0005, 0.6};
        for (int step = 0; step < 25; ++step) {
            const std::size_t k = 1 + random() % 2;
            const Vector p = anyPlace(grid.patches()[k], random);
            const double tolerance = tolerances[random() % 3];
            const auto point = grid.pointAt(p, tolerance);
            const auto plainPoint = reference::findPoint(grid.patches(), block, p, tolerance);
            ASSERT_EQ(point.has_value(), plainPoint.has_value());
            ASSERT_TRUE(!point || sameAddress(*point, *plainPoint));
            for (const bool across : {true, false}) {
                const auto edge = across ? grid.edgeAcross(p, tolerance) : grid.edgeAlong(p, tolerance);
                const auto plainEdge = reference::findEdge(grid.patches(), block, p, tolerance, across);
                ASSERT_EQ(edge.has_value(), plainEdge.has_value()) << round << " " << step;
                ASSERT_TRUE(!edge || (sameAddress(edge->begin, plainEdge->first) && edge->t == plainEdge->second));
            }
            const Vector to = anyPlace(grid.patches()[3 - k], random) - Vector(0, 0, 0.3 * size);
            const auto cell = grid.pierced(p, to);
            const auto plainCell = reference::findCell(grid.patches(), block, p, to);
            ASSERT_EQ(cell.has_value(), plainCell.has_value()) << round << " " << step;
            ASSERT_TRUE(!cell || (sameAddress(cell->cell, *plainCell) && cell->place == plainCell->hit));
            const auto still = CellTree(grid.patches(), {true, false, false, false, false}).pierced(p, to);
            ASSERT_EQ(still.has_value(), cell.has_value());
            ASSERT_TRUE(!still || still->place == cell->place);
            const auto n = static_cast<std::int32_t>(random() % (grid.patches()[k].size() - 1));
            const auto K = static_cast<std::int32_t>(k);
            if (step % 5 == 1) {
                PointList middle = grid.patches()[k][static_cast<std::size_t>(n)];
                grid.insertSection(K, n, middle);
            } else if (step % 5 == 3) {
                PointList line;
                for (const PointList& section : grid.patches()[k]) {
                    line.push_back((section[0] + section[1]) * 0.5);
                }
                grid.insertLine(K, 0, line);
                grid.setPoint({K, n, 1}, p);
            }
        }
    }
}

} // namespace velmora::test
