#include "cell_folds.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "inspected_models.h"

namespace velmora::test {

namespace {

using testing::Each;
using testing::ElementsAre;

std::vector<bool> foldsOf(const PatchList& patches, const zRegion_fe& region = {}) {
    const ModelFaces model = modelFaces(patches, region);
    return foldedCells(model, EdgeTable(model.points.count(), model.faces));
}

/// A strip of cells between y = 0 and y = 1 whose points stand at these x.
Patch strip(const std::vector<double>& x) {
    Patch patch(2);
    for (const double each : x) {
        patch[0].push_back({each, 0, 0});
        patch[1].push_back({each, 1, 0});
    }
    return patch;
}

} // namespace

TEST(FoldedCells, AFlatGridHasNone) {
    EXPECT_THAT(foldsOf({flatPatch(3, 3)}), Each(false));
}

TEST(FoldedCells, ACellThatRunsBackFoldsItselfAndItsNeighbours) {
    // x runs back from 2 to 1.5: the third cell points the other way, and so does its border with the ones beside it.
    EXPECT_THAT(foldsOf({strip({0, 1, 2, 1.5, 3, 4})}), ElementsAre(false, true, true, true, false));
}

TEST(FoldedCells, ARightAngleIsNoFold) {
    Patch patch = strip({0, 1, 1});
    patch[0][2].z = patch[1][2].z = 1;
    EXPECT_THAT(foldsOf({patch}), ElementsAre(false, false));
    patch[0][2].x = patch[1][2].x = 0.99;
    EXPECT_THAT(foldsOf({patch}), ElementsAre(true, true));
}

TEST(FoldedCells, ACellWhoseTrianglesPointAgainstEachOther) {
    // d was pulled over the diagonal a c: a dart.
    EXPECT_THAT(foldsOf({oneCell({0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0.6, 0.4, 0})}), ElementsAre(true));
}

TEST(FoldedCells, NeighboursAcrossASeamAreFound) {
    // The last section is the first one again: cells 0 and 2 share it. Cell 2 lies on the others, the other way round.
    const PointList first = {{0, 0, 0}, {0, 1, 0}};
    const PointList second = {{1, 0, 0}, {1, 1, 0}};
    const PointList third = {{2, 0, 0.1}, {2, 1, 0.1}};
    EXPECT_THAT(foldsOf({{first, second, third, first}}), ElementsAre(true, true, true));
}

TEST(FoldedCells, AnotherPatchDoesNotCount) {
    // The second patch lies on the other side of the common edge, over the first.
    const Patch a = {{{0, 0, 0}, {0, 1, 0}}, {{1, 0, 0}, {1, 1, 0}}};
    const Patch b = {{{1, 0, 0}, {1, 1, 0}}, {{0, 0, 0.1}, {0, 1, 0.1}}};
    EXPECT_THAT(foldsOf({a, b}), ElementsAre(false, false));
    const PointList& end = b[1];
    EXPECT_THAT(foldsOf({{a[0], a[1], end}}), ElementsAre(true, true)) << "as one patch they fold";
}

TEST(FoldedCells, TrianglesAreNeverFolded) {
    const zRegion_fe sheet =
        triangleRegion({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {1, 1, 0.1}}, {0, 1, 2, 0, 1, 3, 1, 0, 2, 1, 0, 2});
    EXPECT_THAT(foldsOf({}, sheet), Each(false));
    EXPECT_THAT(foldsOf({oneCell({0, 0, 0}, {1, 0, 0}, {1, -1, 0}, {0, -1, 0})}, sheet)[0], false);
}

TEST(FoldedCells, CellsOverEachOtherAtOneEdge) {
    // Five leaves at the edge from (0, 0, 0) to (0, 1, 0), each from it outwards, as every third section comes back to
    // it. Each of the sections between stands at another angle, all within a right angle.
    const PointList back = {{0, 0, 0}, {0, 1, 0}};
    Patch book;
    for (int leaf = 0; leaf < 5; ++leaf) {
        const double x = 1.0 + leaf;
        const double z = 5.0 - leaf;
        book.insert(book.end(), {back, {{x, 0, z}, {x, 1, z}}});
    }
    // Between the leaves the grid comes back: the cell there and the cell back lie on each other.
    EXPECT_THAT(foldsOf({book}), Each(true));
}

TEST(FoldedCells, ManyCellsAtOneEdgeThatAgree) {
    // A fan that passes its first section three times and always turns the same way, with an angle of 60 degrees.
    const auto spoke = [](double degrees) {
        const double t = degrees * 3.14159265358979323846 / 180.0;
        return PointList{{std::cos(t), std::sin(t), 0}, {2 * std::cos(t), 2 * std::sin(t), 0}};
    };
    Patch fan;
    std::vector<PointList> spokes;
    for (int i = 0; i < 6; ++i) {
        spokes.push_back(spoke(60.0 * i));
    }
    for (int i = 0; i < 19; ++i) {
        fan.push_back(spokes[static_cast<std::size_t>(i % 6)]);
    }
    EXPECT_THAT(foldsOf({fan}), Each(false));
}

} // namespace velmora::test
