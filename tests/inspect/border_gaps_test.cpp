#include "border_gaps.h"

#include <cmath>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "inspected_models.h"

namespace velmora::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct SeenGap {
    int patch;
    int other;
    double largest;
    bool operator==(const SeenGap&) const = default;
};

std::vector<SeenGap> gapsOf(const PatchList& patches, double reach, const zRegion_fe& region = {}) {
    const ModelFaces model = modelFaces(patches, region);
    std::vector<SeenGap> seen;
    for (const BorderGap& gap : borderGaps(model, EdgeTable(model.points.count(), model.faces), reach)) {
        seen.push_back({gap.patch, gap.other, gap.largest});
    }
    return seen;
}

} // namespace

TEST(BorderGaps, SidesThatLieCloseToEachOther) {
    // The lines at x = 2 and x = 2.125, three points each.
    const PatchList patches = {flatPatch(3, 3), flatPatchAt(3, 4, {2.125, 0, 0})};
    EXPECT_THAT(gapsOf(patches, 0.125), ElementsAre(SeenGap{0, 1, 0.125}));
    EXPECT_THAT(gapsOf(patches, 0.124), IsEmpty());
}

TEST(BorderGaps, TheLargestDistanceCountsWhereverItIs) {
    PatchList patches = {flatPatch(3, 3), flatPatchAt(3, 4, {2, 0, 0})};
    patches[1][1][0] = {2.0625, 1, 0};
    patches[1][2][0] = {2, 2, 0.03125};
    EXPECT_THAT(gapsOf(patches, 0.1), ElementsAre(SeenGap{0, 1, 0.0625}));
    patches[1][1][0] = {2.25, 1, 0};
    EXPECT_THAT(gapsOf(patches, 0.1), IsEmpty());
}

TEST(BorderGaps, SidesWithOtherPointsAreComparedAsLines) {
    // Lines from (2, 0) to (2, 2): of three points, and of five with its middle off by 1/16.
    PatchList patches = {flatPatch(3, 3), flatPatchAt(5, 2, {2, 0, 0})};
    for (PointList& section : patches[1]) {
        for (zVec<double>& p : section) {
            p.y *= 0.5;
        }
    }
    EXPECT_THAT(gapsOf(patches, 0.1), ElementsAre(SeenGap{0, 1, 0.0})) << "one curve, but not one border";
    patches[1][1][0].x += 0.0625;
    EXPECT_THAT(gapsOf(patches, 0.1), ElementsAre(SeenGap{0, 1, 0.0625}));
}

TEST(BorderGaps, ASideThatIsLongerIsNone) {
    // The second one reaches from y = 0 to y = 3.
    EXPECT_THAT(gapsOf({flatPatch(3, 3), flatPatchAt(4, 4, {2.125, 0, 0})}, 0.25), IsEmpty());
    EXPECT_THAT(gapsOf({flatPatchAt(4, 4, {2.125, 0, 0}), flatPatch(3, 3)}, 0.25), IsEmpty());
}

TEST(BorderGaps, SectionsAndLinesReversedOrNot) {
    // The last line of the first patch against the first section of the second, which runs the other way.
    const Patch turned = {{{2.125, 2, 0}, {2.125, 1, 0}, {2.125, 0, 0}}, {{4, 2, 0}, {4, 1, 0}, {4, 0, 0}}};
    EXPECT_THAT(gapsOf({flatPatch(3, 3), turned}, 0.2), ElementsAre(SeenGap{0, 1, 0.125}));
    EXPECT_THAT(gapsOf({turned, flatPatch(3, 3)}, 0.2), ElementsAre(SeenGap{0, 1, 0.125}));
}

TEST(BorderGaps, JoinedSidesAreNone) {
    EXPECT_THAT(gapsOf({flatPatch(3, 3), flatPatchAt(3, 3, {2, 0, 0})}, 0.5), IsEmpty());
}

TEST(BorderGaps, ASideThatIsJoinedInPartIsNone) {
    // Point (0, 0) and (0, 1) of the second patch are those of the first; the third stands off.
    PatchList patches = {flatPatch(3, 3), flatPatchAt(3, 3, {2, 0, 0})};
    patches[1][2][0] = {2.0625, 2, 0};
    EXPECT_THAT(gapsOf(patches, 0.5), IsEmpty());
    // A triangle at one of its edges joins a side too.
    const zRegion_fe triangle = triangleRegion({{2, 0, 0}, {2, 1, 0}, {2, 0, 5}}, {0, 1, 2});
    EXPECT_THAT(gapsOf({flatPatch(3, 3), flatPatchAt(3, 3, {2.125, 0, 0})}, 0.5, triangle), IsEmpty());
}

TEST(BorderGaps, SidesOfOnePatchAreNone) {
    // A thin strip, and a ring that is not quite closed.
    EXPECT_THAT(gapsOf({{{{0, 0, 0}, {5, 0, 0}}, {{0, 0.0625, 0}, {5, 0.0625, 0}}}}, 0.1), IsEmpty());
}

TEST(BorderGaps, ASideThatIsAPointIsNone) {
    const Patch a = {{{0, 0, 0}, {0, 0, 0}}, {{1, 0, 0}, {1, 1, 0}}};
    const Patch b = {{{0, 0, 0.0625}, {0, 0, 0.0625}}, {{-1, 0, 0}, {-1, 1, 0}}};
    EXPECT_THAT(gapsOf({a, b}, 0.1), IsEmpty());
}

TEST(BorderGaps, EachPairOfSidesCountsByPatchThenByOther) {
    // Four patches around x = 2: the last lines of 0 and 1 lie near the first lines of 2 and 3.
    PatchList patches = {flatPatch(3, 3), flatPatch(3, 3, 0.0625), flatPatchAt(3, 3, {2.03125, 0, 0}),
                         flatPatchAt(3, 3, {2.03125, 0, 0.0625})};
    for (const std::size_t k : {0, 1}) {
        for (PointList& section : patches[k]) {
            section[0].z += 10.0 * static_cast<double>(k);
            section[1].z += 10.0 * static_cast<double>(k);
        }
    }
    for (const std::size_t k : {2, 3}) {
        for (PointList& section : patches[k]) {
            section[1].z -= 10.0 * static_cast<double>(k);
            section[2].z -= 10.0 * static_cast<double>(k);
        }
    }
    EXPECT_THAT(gapsOf(patches, 0.04), ElementsAre(SeenGap{0, 2, 0.03125}, SeenGap{1, 3, 0.03125}));
    const double across = std::hypot(0.03125, 0.0625);
    EXPECT_THAT(gapsOf(patches, 0.0625), ElementsAre(SeenGap{0, 1, 0.0625}, SeenGap{0, 2, 0.03125},
                                                     SeenGap{1, 3, 0.03125}, SeenGap{2, 3, 0.0625}));
    EXPECT_THAT(gapsOf(patches, 0.07),
                ElementsAre(SeenGap{0, 1, 0.0625}, SeenGap{0, 2, 0.03125}, SeenGap{0, 3, across}, SeenGap{1, 2, across},
                            SeenGap{1, 3, 0.03125}, SeenGap{2, 3, 0.0625}));
}

TEST(BorderGaps, WithoutPatchesThereIsNone) {
    EXPECT_THAT(gapsOf({}, 1.0), IsEmpty());
    EXPECT_THAT(gapsOf({}, 1.0, triangleRegion(boxCorners(1, 1, 1), boxTriangles())), IsEmpty());
}

} // namespace velmora::test
