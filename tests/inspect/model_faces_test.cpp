#include "model_faces.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "inspected_models.h"

namespace velmora::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Pairs = std::vector<std::pair<int, int>>;

Pairs edgesOf(const Face& face) {
    Pairs pairs;
    for (const FaceEdge& edge : FaceEdges(face)) {
        pairs.emplace_back(edge.from, edge.to);
    }
    return pairs;
}

} // namespace

TEST(FaceEdges, RunAlongTheOutline) {
    EXPECT_EQ(edgesOf({{7, 5, 6, 9}}), (Pairs{{7, 5}, {5, 6}, {6, 9}, {9, 7}}));
    EXPECT_EQ(edgesOf({{7, 5, 6, -1}}), (Pairs{{7, 5}, {5, 6}, {6, 7}}));
}

TEST(FaceEdges, AnEdgeOfLengthZeroIsNone) {
    EXPECT_EQ(edgesOf({{1, 1, 2, 3}}), (Pairs{{1, 2}, {2, 3}, {3, 1}}));
    EXPECT_EQ(edgesOf({{1, 2, 3, 1}}), (Pairs{{1, 2}, {2, 3}, {3, 1}}));
}

TEST(FaceEdges, FewerThanThreeDifferentPointsMakeNoEdges) {
    EXPECT_THAT(edgesOf({{1, 1, 2, -1}}), IsEmpty());
    EXPECT_THAT(edgesOf({{1, 2, 1, -1}}), IsEmpty());
    EXPECT_THAT(edgesOf({{1, 1, 1, 1}}), IsEmpty());
    EXPECT_THAT(edgesOf({{1, 1, 2, 2}}), IsEmpty());
    EXPECT_THAT(edgesOf({{1, 2, 2, 1}}), IsEmpty());
    EXPECT_THAT(edgesOf({{1, 2, 1, 2}}), IsEmpty());
    EXPECT_THAT(edgesOf({{1, 1, 1, 2}}), IsEmpty());
    EXPECT_THAT(edgesOf({{1, 2, 1, 1}}), IsEmpty());
}

TEST(FaceEdges, OppositeCornersThatAreEqualMakeAnEdgeTwice) {
    EXPECT_EQ(edgesOf({{1, 2, 1, 3}}), (Pairs{{1, 2}, {2, 1}, {1, 3}, {3, 1}}));
}

TEST(ModelFaces, CellsRunFromTheSectionToTheNextOne) {
    const ModelFaces model = modelFaces({flatPatch(2, 3)}, {});
    // Points are numbered as they come: section 0 has 0, 1, 2, section 1 has 3, 4, 5.
    ASSERT_EQ(model.faces.size(), 2U);
    EXPECT_THAT(model.faces[0].corners, ElementsAre(0, 3, 4, 1));
    EXPECT_THAT(model.faces[1].corners, ElementsAre(1, 4, 5, 2));
    EXPECT_EQ(model.patches[0].cellCount(), 2U);
    EXPECT_EQ(model.patchPoint(model.patches[0], 1, 2), 5);
}

TEST(ModelFaces, SectionsOfDifferentLengthsMakeNoCells) {
    Patch uneven = flatPatch(3, 3);
    uneven[2].pop_back();
    const ModelFaces model = modelFaces({uneven, flatPatch(1, 5), flatPatch(5, 1), {}, flatPatch(2, 2, 1.0)}, {});
    EXPECT_EQ(model.faces.size(), 1U);
    EXPECT_THAT(std::vector({model.patches[0].cellCount(), model.patches[1].cellCount(), model.patches[2].cellCount(),
                             model.patches[3].cellCount(), model.patches[4].cellCount()}),
                ElementsAre(0U, 0U, 0U, 0U, 1U));
    EXPECT_EQ(model.patches[4].firstFace, 0U);
}

TEST(ModelFaces, PatchesAndZonesShareTheirPoints) {
    const ModelFaces model =
        modelFaces({flatPatch(2, 2)}, triangleRegion({{5, 5, 5}, {1, 0, 0}, {0, 0, 0}}, {0, 1, 2}));
    ASSERT_EQ(model.faces.size(), 2U);
    EXPECT_THAT(model.faces[1].corners, ElementsAre(4, 1, 0, -1));
    EXPECT_THAT(model.firstTriangle, ElementsAre(1U, 2U));
}

TEST(ModelFaces, TrianglesOfNodesThatAreNotThereAreLeftOut) {
    const ModelFaces model =
        modelFaces({}, triangleRegion({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {0, 1, 3, 0, 1, 2, -1, 0, 1}));
    ASSERT_EQ(model.faces.size(), 1U);
    EXPECT_THAT(model.faces[0].corners, ElementsAre(0, 1, 2, -1));
}

TEST(ModelFaces, AZoneWithoutCoordinatesHasNoFaces) {
    zRegion_fe region;
    region.blocks.push_back(std::make_unique<zBlock_fe>(3, 4, 1));
    region.blocks.push_back(oneTriangle(0));
    const ModelFaces model = modelFaces({}, region);
    EXPECT_THAT(model.firstTriangle, ElementsAre(0U, 0U, 1U));
}

} // namespace velmora::test
