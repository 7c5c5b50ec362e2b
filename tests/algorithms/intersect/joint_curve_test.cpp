#include "joint_curve.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "small_models.h"

namespace velmora::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Vector = zVec<double>;

} // namespace

TEST(JointSections, AreThoseWithAPointOfTheJoint) {
    Patch patch = flatPatch(4, 3);
    keepJointSections(patch, JointPoints({{1 + 9e-9, 1, 0}, {2, 3, 9e-9}, {0, 2, 1.1e-8}}));
    ASSERT_EQ(patch.size(), 2U);
    EXPECT_EQ(patch[0][0].y, 1);
    EXPECT_EQ(patch[1][0].y, 3);
    keepJointSections(patch, JointPoints({}));
    EXPECT_THAT(patch, IsEmpty());
}

TEST(Trimming, KeepsOneSideOfTheFirstPointOfTheJoint) {
    const JointPoints joint({{1, 0, 0}, {2, 0, 0}});
    Patch before = flatPatch(2, 4);
    trimSections(before, joint, true);
    EXPECT_THAT(before[0], ElementsAre(Vector(0, 0, 0), Vector(1, 0, 0)));
    EXPECT_EQ(before[1].size(), 4U);
    Patch behind = flatPatch(2, 4);
    trimSections(behind, joint, false);
    EXPECT_THAT(behind[0], ElementsAre(Vector(1, 0, 0), Vector(2, 0, 0), Vector(3, 0, 0)));
}

TEST(Snapping, MovesTheBeginOfTheFirstEdgeThatTheJointIsOn) {
    Patch patch = flatPatch(1, 4);
    snapSections(patch, JointPoints({{2.25, 0, 0}, {1.5, 0.0001, 0}}), 0.0005);
    // The way to the point beside the edge is a little longer: the root of 0.5^2 + 0.0001^2.
    EXPECT_NEAR(patch[0][1].x, 1.5 + 1e-8, 1e-12);
    patch[0][1] = {1, 0, 0};
    EXPECT_EQ(patch, flatPatch(1, 4));
}

TEST(Snapping, LeavesASectionThatHasAPointOfTheJoint) {
    Patch patch = flatPatch(1, 4);
    snapSections(patch, JointPoints({{1, 0, 0}, {2.5, 0, 0}}), 0.0005);
    EXPECT_EQ(patch, flatPatch(1, 4));
}

TEST(Respacing, GivesEverySectionTheCount) {
    Patch patch = {{{0, 0, 0}, {3, 0, 0}}, {{5, 5, 5}}, {}, {{0, 0, 0}, {0, 0, 0}, {1, 0, 0}, {3, 0, 0}}};
    respaceSections(patch, 4);
    EXPECT_THAT(patch[0], ElementsAre(Vector(0, 0, 0), Vector(1, 0, 0), Vector(2, 0, 0), Vector(3, 0, 0)));
    EXPECT_THAT(patch[1], ElementsAre(Vector(5, 5, 5), Vector(5, 5, 5), Vector(5, 5, 5), Vector(5, 5, 5)));
    EXPECT_THAT(patch[2], IsEmpty());
    ASSERT_EQ(patch[3].size(), 4U);
    EXPECT_DOUBLE_EQ(patch[3][1].x, 1);
}

} // namespace velmora::test
