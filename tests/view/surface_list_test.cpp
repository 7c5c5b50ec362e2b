#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

#include "arranged_capture.h"
#include "draw_rig.h"

namespace velmora {
namespace {

using namespace test;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Three sections of three points over the plane, the height of point (n, m) being m squared: point (m, n, m * m).
Patch trough() {
    Patch patch = flatPatch(3, 3);
    for (PointList& section : patch) {
        section[1].z = 1.0;
        section[2].z = 4.0;
    }
    return patch;
}

void expectNormal(const Patch& patch, std::size_t n, std::size_t m, const zVec<double>& expected) {
    SCOPED_TRACE("point " + std::to_string(n) + " " + std::to_string(m));
    const zVec<double> normal = gridNormal(patch, n, m);
    EXPECT_NEAR(normal.x, expected.x, 1e-15);
    EXPECT_NEAR(normal.y, expected.y, 1e-15);
    EXPECT_NEAR(normal.z, expected.z, 1e-15);
}

TEST(GridNormal, OfAFlatPatchPointsUpEverywhere) {
    const Patch patch = flatPatch(3, 4);
    for (std::size_t n = 0; n < 3; ++n) {
        for (std::size_t m = 0; m < 4; ++m) {
            expectNormal(patch, n, m, {0, 0, 1});
        }
    }
}

TEST(GridNormal, ReversedSectionsTurnItRound) {
    Patch patch = flatPatch(3, 4);
    std::swap(patch[0], patch[2]);
    expectNormal(patch, 1, 1, {0, 0, -1});
    expectNormal(patch, 0, 0, {0, 0, -1});
}

// (a - c) x (b - d) = (-2, -2, -4) x (-2, 2, -4) = (16, 0, -8).
TEST(GridNormal, InnerPointTakesItsFourDiagonalNeighbours) {
    const double unit = std::sqrt(5.0);
    expectNormal(trough(), 1, 1, {-2 / unit, 0, 1 / unit});
}

// On the border the missing section is the point's own: (-2, -1, -4) x (-2, 1, -4) = (8, 0, -4).
TEST(GridNormal, BorderPointClampsTheSection) {
    const double unit = std::sqrt(5.0);
    expectNormal(trough(), 0, 1, {-2 / unit, 0, 1 / unit});
    expectNormal(trough(), 2, 1, {-2 / unit, 0, 1 / unit});
}

// At the first point: (-1, -2, -1) x (-1, 2, -1) = (4, 0, -4). At the last: (-1, -2, -3) x (-1, 2, -3) = (12, 0, -4).
TEST(GridNormal, BorderPointClampsTheLine) {
    expectNormal(trough(), 1, 0, {-1 / std::sqrt(2.0), 0, 1 / std::sqrt(2.0)});
    expectNormal(trough(), 1, 2, {-3 / std::sqrt(10.0), 0, 1 / std::sqrt(10.0)});
}

// (-1, -1, -1) x (-1, 1, -1) = (2, 0, -2) at the first corner, (-1, -1, -3) x (-1, 1, -3) = (6, 0, -2) at the last.
TEST(GridNormal, CornerPointClampsBoth) {
    expectNormal(trough(), 0, 0, {-1 / std::sqrt(2.0), 0, 1 / std::sqrt(2.0)});
    expectNormal(trough(), 2, 0, {-1 / std::sqrt(2.0), 0, 1 / std::sqrt(2.0)});
    expectNormal(trough(), 0, 2, {-3 / std::sqrt(10.0), 0, 1 / std::sqrt(10.0)});
    expectNormal(trough(), 2, 2, {-3 / std::sqrt(10.0), 0, 1 / std::sqrt(10.0)});
}

// The neighbours may not lie in one plane: P(0,0) = (0,0,0), P(2,0) = (0,2,1), P(2,2) = (2,2,0), P(0,2) = (2,0,0).
TEST(GridNormal, OfATwistedCellTakesTheCrossOfTheDiagonals) {
    Patch patch = flatPatch(3, 3);
    patch[2][0].z = 1.0;
    // (-2, -2, 0) x (-2, 2, 1) = (-2, 2, -8), length sqrt(72).
    const double length = std::sqrt(72.0);
    expectNormal(patch, 1, 1, {2 / length, -2 / length, 8 / length});
}

TEST(GridNormal, CoincidentNeighboursGiveNoNumberAndNoHarm) {
    const Patch patch(3, PointList(3, zVec<double>(1, 1, 1)));
    EXPECT_TRUE(std::isnan(gridNormal(patch, 1, 1).x));
    const DrawRig rig({patch});
    EXPECT_EQ(rig.surface().size(), 2U);
}

TEST(GridNormal, OfASinglePointOrLineDoesNoHarm) {
    EXPECT_TRUE(std::isnan(gridNormal({{{1, 2, 3}}}, 0, 0).x));
    EXPECT_TRUE(std::isnan(gridNormal({{{1, 2, 3}}, {{4, 5, 6}}}, 1, 0).x));
}

// ---- Strips ---------------------------------------------------------------------------------------------------------

const zVec<double> up{0, 0, 1};

TEST(SurfaceList, StripWalksFromTheLastPointToTheFirst) {
    const DrawRig rig({flatPatch(2, 3)});
    EXPECT_THAT(
        rig.surface(),
        ElementsAre(quads(
            table[0],
            {{{2, 0, 0}, up}, {{2, 1, 0}, up}, {{1, 0, 0}, up}, {{1, 1, 0}, up}, {{0, 0, 0}, up}, {{0, 1, 0}, up}})));
}

TEST(SurfaceList, EveryPairOfSectionsIsAStripInTheColourOfItsPatch) {
    PatchList model{flatPatch(3, 2), square(10)};
    const DrawRig rig(model);
    EXPECT_THAT(rig.surface(),
                ElementsAre(quads(table[0], {{{1, 0, 0}, up}, {{1, 1, 0}, up}, {{0, 0, 0}, up}, {{0, 1, 0}, up}}),
                            quads(table[0], {{{1, 1, 0}, up}, {{1, 2, 0}, up}, {{0, 1, 0}, up}, {{0, 2, 0}, up}}),
                            quads(table[1], {{{11, 0, 0}, up}, {{11, 1, 0}, up}, {{10, 0, 0}, up}, {{10, 1, 0}, up}})));
}

TEST(SurfaceList, EachVertexCarriesTheNormalOfItsGridPoint) {
    // Bent along both directions: no two points share a normal.
    Patch patch = trough();
    for (std::size_t n = 0; n < 3; ++n) {
        for (zVec<double>& point : patch[n]) {
            point.z += static_cast<double>(n * n * n);
        }
    }
    const DrawRig rig({patch});
    const DrawList list = buildDrawList(rig.doc, 2);
    ASSERT_EQ(list.vertices.size(), 12U);
    ASSERT_EQ(list.normals.size(), 12U);
    for (std::size_t i = 0; i < 12; ++i) {
        const zVec<double>& at = list.vertices[i];
        const zVec<double> expected = gridNormal(patch, static_cast<std::size_t>(at.y), static_cast<std::size_t>(at.x));
        EXPECT_EQ(list.normals[i], expected) << i;
    }
}

TEST(SurfaceList, PatchOfOneSectionHasNoStrips) {
    DrawRig rig({flatPatch(1, 4)});
    EXPECT_THAT(rig.surface(), IsEmpty());
}

TEST(SurfaceList, SkipsPatchesAsTheWireListDoes) {
    DrawRig rig(squares(14));
    rig.doc.showBlockOnly = true;
    rig.block({0, 11, 12});
    const auto square4 = [](double x, const Colour& colour) {
        return quads(colour, {{{x + 1, 0, 0}, up}, {{x + 1, 1, 0}, up}, {{x, 0, 0}, up}, {{x, 1, 0}, up}});
    };
    EXPECT_THAT(rig.surface(),
                ElementsAre(square4(0, blockYellow), square4(110, blockYellow), square4(120, blockYellow)));
}

TEST(SurfaceList, CapturedSectionAndLineAreNotShown) {
    DrawRig rig(squares(1));
    arranged(rig.doc).sectionCaptured = arranged(rig.doc).lineCaptured = true;
    arranged(rig.doc).capturedPatch = arranged(rig.doc).capturedSection = arranged(rig.doc).capturedLine = 0;
    EXPECT_EQ(rig.surface().size(), 1U);
    EXPECT_THAT(pointsOnly(rig.surface()), IsEmpty());
}

/// Sum of r * n dA over the front faces of a strip of quads, r from the origin.
double flux(const DrawList& list, const DrawBatch& strip) {
    double sum = 0;
    const auto side = [](const zVec<double>& a, const zVec<double>& b, const zVec<double>& c) {
        return 0.5 * dot(a, cross(b - a, c - a));
    };
    for (std::size_t i = strip.firstVertex; i + 3 < strip.firstVertex + strip.vertexCount; i += 2) {
        const zVec<double>* const v = &list.vertices[i];
        sum += side(v[0], v[1], v[3]) + side(v[0], v[3], v[2]);
    }
    return sum;
}

// Through the ends of the patches, where they are open, goes less than through their sides: the wing stands on the
// plane z = 0, its tip closes it, and the body lies along x. So the flux is positive where the front of a patch is
// outside.
TEST(SurfaceList, ExamplesHaveTheirFrontsOutside) {
    for (const char* const name : {"wing.apt", "body.apt"}) {
        DrawRig rig{PatchList{}};
        rig.doc.onOpenDocument(std::filesystem::path(VELMORA_EXAMPLES) / name);
        const DrawList list = buildDrawList(rig.doc, 2);
        std::size_t batch = 0;
        for (const Patch& patch : rig.doc.patches) {
            double sum = 0;
            for (std::size_t n = 0; n + 1 < patch.size(); ++n) {
                ASSERT_EQ(list.batches.at(batch).primitive, Primitive::QuadStrip);
                sum += flux(list, list.batches[batch++]);
            }
            EXPECT_GT(sum, 0.1) << name;
        }
        EXPECT_EQ(batch, list.batches.size());
    }
}

TEST(SurfaceList, SectionsWithoutPointsDoNoHarm) {
    DrawRig rig({{{}, {}}, square(10)});
    ASSERT_EQ(rig.doc.fileKind, FileKind::Apt);
    rig.doc.showFirstPoints = rig.doc.showDoublePoints = true;
    EXPECT_EQ(rig.surface().back().substr(0, 5), "point");
}

} // namespace
} // namespace velmora
