#include "model_report.h"

#include <cmath>

#include <gtest/gtest.h>

#include "inspected_models.h"
#include "random_patches.h"
#include "report_reference.h"

// The report against its plain rules, on random models in which much coincides.

namespace velmora::test {

namespace {

using samples::Source;

/// Coordinates of a coarse raster: points, edges and whole cells repeat, normals vanish.
Patch coarse(Source& source, int sections, int points) {
    Patch patch;
    for (int n = 0; n < sections; ++n) {
        PointList section;
        for (int m = 0; m < points; ++m) {
            const auto any = [&source] { return source.once(5) ? -0.0 : static_cast<double>(source.whole(0, 2)); };
            section.push_back({any(), any(), any()});
        }
        patch.push_back(section);
    }
    return patch;
}

PatchList anyPatches(Source& source) {
    PatchList patches;
    for (int k = source.whole(0, 3); k > 0; --k) {
        const int sections = source.whole(1, 6);
        const int points = source.whole(1, 6);
        patches.push_back(source.once(2) ? coarse(source, sections, points)
                                         : samples::randomPatch(source, sections, points, true));
        if (source.once(6)) {
            patches.back().back().pop_back(); // uneven, or without a point
        }
        if (source.once(4)) { // joined to the one before along a section
            patches.back().front() = patches.front().back();
        }
        if (source.once(4)) { // closed to a ring
            patches.back().push_back(patches.back().front());
        }
    }
    return patches;
}

zRegion_fe anyZones(Source& source) {
    zRegion_fe region;
    for (int k = source.whole(0, 2); k > 0; --k) {
        std::vector<Vector> nodes;
        std::vector<std::int32_t> corners;
        const int count = source.whole(3, 9);
        for (int i = 0; i < count; ++i) {
            nodes.push_back(coarse(source, 1, 1)[0][0]);
        }
        for (int i = 3 * source.whole(0, 14); i > 0; --i) {
            corners.push_back(source.whole(0, count - 1));
        }
        if (source.once(3)) { // a closed body beside or through the rest
            nodes = boxCorners(1, 2, 2);
            corners = boxTriangles();
            for (std::size_t t = 0; t < corners.size(); t += 3) {
                if (source.once(3)) {
                    std::swap(corners[t], corners[t + 1]);
                }
            }
        }
        region.blocks.push_back(triangleZone("zone", nodes, corners));
    }
    return region;
}

void expectNear(const std::optional<double>& found, const std::optional<double>& expected, double tolerance) {
    ASSERT_EQ(found.has_value(), expected.has_value());
    if (found) {
        ASSERT_NEAR(*found, *expected, tolerance);
    }
}

void expectQuality(const PatchQuality& found, const Patch& patch) {
    const reference::Quality expected = reference::qualityOf(patch);
    ASSERT_NEAR(found.area, expected.area, 1e-12 * (1 + expected.area));
    ASSERT_EQ(found.smallestStep.value, expected.smallestStep);
    ASSERT_EQ(found.largestStep.value, expected.largestStep);
    ASSERT_DOUBLE_EQ(*found.growth.value, expected.growth);
    ASSERT_NO_FATAL_FAILURE(expectNear(found.aspect.value, expected.aspect, 1e-12 * expected.aspect.value_or(0)));
    // Angles near 0 and near half a turn by their cosines have half of the digits.
    ASSERT_NO_FATAL_FAILURE(expectNear(found.skew.value, expected.skew, 1e-7));
    ASSERT_NO_FATAL_FAILURE(expectNear(found.warp.value, expected.warp, 1e-5));
    ASSERT_EQ(found.repeatedPoints.count, expected.repeatedPoints);
    ASSERT_EQ(found.collapsedCells.count, expected.collapsedCells);
    ASSERT_EQ(found.foldedCells.count, static_cast<std::int64_t>(expected.foldedCells.size()));
    if (!expected.foldedCells.empty()) {
        const std::size_t first = *expected.foldedCells.begin();
        const std::size_t row = patch.front().size() - 1;
        ASSERT_EQ(found.foldedCells.at->section, static_cast<int>(first / row));
        ASSERT_EQ(found.foldedCells.at->point, static_cast<int>(first % row));
    }
}

} // namespace

TEST(ModelReportDifferential, EqualsThePlainRules) {
    Source source(5);
    int closed = 0;
    int bad = 0;
    int folded = 0;
    for (int round = 0; round < 3000; ++round) {
        const PatchList patches = anyPatches(source);
        const zRegion_fe region = anyZones(source);
        const ModelReport report = modelReport(patches, region, 1.0);
        const Vector centre = report.box ? ((*report.box)[0] + (*report.box)[1]) * 0.5 : Vector();
        const reference::Body expected = reference::bodyOf(reference::facesOf(patches, region), centre);
        ASSERT_EQ(report.body.components, expected.components) << "round " << round;
        ASSERT_EQ(report.body.badEdges, expected.badEdges) << "round " << round;
        ASSERT_NEAR(report.body.openBorder, expected.openBorder, 1e-10) << "round " << round;
        ASSERT_NO_FATAL_FAILURE(expectNear(report.body.volume, expected.volume, 1e-10)) << "round " << round;
        for (std::size_t k = 0; k < patches.size(); ++k) {
            ASSERT_NO_FATAL_FAILURE(expectQuality(report.patches[k], patches[k])) << "round " << round;
            folded += report.patches[k].foldedCells.count > 0 ? 1 : 0;
        }
        closed += report.body.volume ? 1 : 0;
        bad += report.body.badEdges > 0 ? 1 : 0;
    }
    // The rounds reach what is rare.
    EXPECT_GT(closed, 20);
    EXPECT_GT(bad, 100);
    EXPECT_GT(folded, 100);
}

} // namespace velmora::test
