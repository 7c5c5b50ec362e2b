#include "arranged_capture.h"
#include "view_rig.h"

namespace velmora {
namespace {

using test::expectVector;
using test::flatPatch;
using test::twoPatches;
using test::ViewRig;
using ::testing::ElementsAre;

// ---- On the grid ----------------------------------------------------------------------------------------------------

/// The middle point of a flat patch is captured, with a coarse grid to drag it on.
struct GridRig : ViewRig {
    GridRig() {
        show({flatPatch(3, 3), flatPatch(3, 3, 5.0)});
        doc.capture.renumberPatch(0);
        test::arranged(doc).capturedPointSection = test::arranged(doc).capturedPoint = 1;
        doc.capture.placePoint({1, 1, 0});
        doc.capture.keepPoint();
        doc.capture.showPoint();
        doc.dragPatches = {{{{0.5, 0.5, 0}, {1.5, 0.5, 0}}, {{0.5, 1.5, 0}, {1.5, 1.5, 0}}}};
        doc.capture.armDrag();
        view.forceMouseMode(ModePoint);
        ui.transcript.clear();
    }
    const zVec<double>& point() { return *doc.pointAt(0, 1, 1); }
};

TEST(PickDragPoint, TakesTheNearestPointOfTheGridAndLeavesTheAddress) {
    GridRig rig;
    ASSERT_TRUE(rig.view.PickDragPoint(rig.pixelOf({1.5, 0.5, 0})));
    EXPECT_EQ(rig.doc.capture->pickedPoint, zVec<double>(1.5, 0.5, 0));
    EXPECT_EQ(rig.doc.capture->capturedPointPos, zVec<double>(1.5, 0.5, 0));
    EXPECT_EQ(rig.doc.capture->dragStatus, "Drag point: X=1.500000, Y=0.500000, Z=0.000000 ");
    EXPECT_EQ(rig.doc.capture->capturedPatch, 0);
    EXPECT_EQ(rig.doc.capture->capturedPointSection, 1);
    EXPECT_EQ(rig.doc.capture->capturedPoint, 1);
}

TEST(PickDragPoint, NoFilterOfTheRegimesApplies) {
    GridRig rig;
    test::arranged(rig.doc).patchCaptured = test::arranged(rig.doc).sectionCaptured =
        test::arranged(rig.doc).lineCaptured = true;
    rig.putIntoBlock({1});
    rig.doc.capture.renumberPatch(1);
    rig.doc.capture.renumberSection(0);
    rig.doc.capture.renumberLine(0);
    EXPECT_TRUE(rig.view.PickDragPoint(rig.pixelOf({1.5, 1.5, 0})));
}

TEST(PickDragPoint, FailureKeepsThePlaceAndTheText) {
    GridRig rig;
    test::arranged(rig.doc).dragStatus = "as it was";
    EXPECT_FALSE(rig.view.PickDragPoint(rig.pixelOf({1.0, 0.7, 0})));
    EXPECT_EQ(rig.doc.capture->pickedPoint, zVec<double>(1, 1, 0));
    EXPECT_EQ(rig.doc.capture->capturedPointPos, zVec<double>(1, 1, 0));
    EXPECT_EQ(rig.doc.capture->dragStatus, "as it was");
}

TEST(PickDragPoint, LimitIsAHundredthOfTheDiagonal) {
    GridRig rig;
    const PixelPoint pixel = rig.pixelOf({1.4, 1.3, 0});
    const double distance = RayDistance(rig.view.PixelRay(pixel.x, pixel.y), {1.5, 1.5, 0});
    rig.doc.boxMin = {0, 0, 0};
    rig.doc.boxMax = {0, distance * 100.0 * (1.0 + 1e-9), 0};
    EXPECT_TRUE(rig.view.PickDragPoint(pixel));
    rig.doc.boxMax = {0, distance * 100.0 * (1.0 - 1e-9), 0};
    EXPECT_FALSE(rig.view.PickDragPoint(pixel));
}

TEST(PointDrag, PressAndEveryMoveWriteThePointIntoTheModel) {
    GridRig rig;
    rig.press({1.5, 0.5, 0});
    EXPECT_EQ(rig.point(), zVec<double>(1.5, 0.5, 0));
    rig.view.OnMouseMove(rig.pixelOf({0.5, 1.5, 0}));
    EXPECT_EQ(rig.point(), zVec<double>(0.5, 1.5, 0));
    EXPECT_THAT(rig.ui.transcript, ElementsAre("status: Drag point: X=1.500000, Y=0.500000, Z=0.000000 ",
                                               "status: Drag point: X=0.500000, Y=1.500000, Z=0.000000 "));
    Patch expected = flatPatch(3, 3);
    expected[1][1] = {0.5, 1.5, 0};
    EXPECT_EQ(rig.doc.patches[0], expected) << "the neighbours stay";
}

TEST(PointDrag, OffTheGridThePointKeepsItsPlace) {
    GridRig rig;
    rig.press({1.5, 0.5, 0});
    rig.view.OnMouseMove(rig.pixelOf({1.0, 1.0, 0}));
    EXPECT_EQ(rig.point(), zVec<double>(1.5, 0.5, 0));
    EXPECT_EQ(rig.ui.transcript.back(), "status: Drag point: X=1.500000, Y=0.500000, Z=0.000000 ");
}

TEST(PointDrag, ReleaseEndsItAndFurtherMovesDoNothing) {
    GridRig rig;
    test::arranged(rig.doc).pointContinueStatus = "the point";
    rig.click({1.5, 0.5, 0});
    EXPECT_FALSE(rig.doc.capture->pointDragging);
    EXPECT_TRUE(rig.doc.capture->pointCaptured);
    EXPECT_EQ(rig.ui.transcript.back(), "status: the point");
    rig.drag(rig.pixelOf({1.5, 0.5, 0}), rig.pixelOf({0.5, 1.5, 0}));
    EXPECT_EQ(rig.point(), zVec<double>(1.5, 0.5, 0));
}

// The command's own grid: two chords on each side of the point, each direction cut by a hundred points.
TEST(PointDrag, CommandsGridIsAHundredPointsAcrossTheNeighbours) {
    GridRig rig;
    rig.call("point.drag");
    const double step = 2.0 / 99.0;
    const zVec<double> node{63 * step, 20 * step, 0};
    rig.press(node);
    expectVector(rig.point(), node, 1e-9);
}

// ---- In the plane of the screen -------------------------------------------------------------------------------------

struct PrincipalView {
    const char* command;
    double zVec<double>::*kept;
    double zVec<double>::*first;
    double zVec<double>::*second;
};

using V = zVec<double>;
const PrincipalView principalViews[] = {
    {"view.front", &V::x, &V::y, &V::z}, {"view.top", &V::y, &V::x, &V::z}, {"view.left", &V::z, &V::x, &V::y}};

/// Five sections of five points that wind through all three directions; the middle point is captured.
Patch windingPatch() {
    Patch patch;
    for (int n = 0; n < 5; ++n) {
        PointList section;
        for (int m = 0; m < 5; ++m) {
            section.push_back({m + 0.1 * n * n, n + 0.2 * m * m, 0.5 * m + 0.3 * n * m});
        }
        patch.push_back(section);
    }
    return patch;
}

struct PlaneRig : ViewRig {
    explicit PlaneRig(const char* command, bool section = true) {
        show({windingPatch()});
        view.runViewCommand(command);
        paint();
        doc.capture.renumberPoint(2, 1);
        section ? test::holdSection(doc, 0, 2) : test::holdLine(doc, 0, 1);
        doc.capture.keepPoint();
        doc.capture.placePoint(windingPatch()[2][1]);
        view.forceMouseMode(ModePoint);
        ui.transcript.clear();
    }
    /// The pixel of the captured point, moved.
    PixelPoint beside(int dx, int dy) {
        const PixelPoint pixel = pixelOf(windingPatch()[2][1]);
        return {pixel.x + dx, pixel.y + dy};
    }
};

TEST(PickPlanePoint, MeetsTheCoordinatePlaneThroughThePointInThePrincipalViews) {
    for (const PrincipalView& view : principalViews) {
        for (const char* projection : {"view.perspective", "view.orthographic"}) {
            SCOPED_TRACE(std::string(view.command) + " " + projection);
            PlaneRig rig(view.command);
            rig.view.runViewCommand(projection);
            const PixelPoint pixel = rig.beside(40, -25);
            rig.view.PickPlanePoint(pixel);
            const zVec<double>& picked = rig.doc.capture->pickedPoint;
            EXPECT_EQ(picked.*view.kept, windingPatch()[2][1].*view.kept);
            EXPECT_LT(RayDistance(rig.view.PixelRay(pixel.x, pixel.y), picked), 1e-9);
            EXPECT_EQ(rig.doc.capture->capturedPointPos, picked);
            EXPECT_NE(picked, windingPatch()[2][1]);
            EXPECT_EQ(rig.doc.patches[0], windingPatch()) << "only a pick";
        }
    }
}

TEST(PickPlanePoint, RayAlongThePlaneGivesItsNearPoint) {
    // So small a model that the ray is shorter than a millionth.
    Patch tiny = flatPatch(3, 3);
    for (PointList& section : tiny) {
        for (zVec<double>& point : section) {
            point = point * 1e-9;
        }
    }
    ViewRig rig;
    rig.show({tiny});
    ASSERT_TRUE(rig.view.viewAlongZ);
    rig.doc.capture.renumberPatch(0);
    rig.doc.capture.renumberPoint(0, 0);
    const PixelLine ray = rig.view.PixelRay(310, 290);
    ASSERT_LT(std::abs(ray.farPoint.z - ray.nearPoint.z), 1e-6);
    rig.view.PickPlanePoint({310, 290});
    EXPECT_EQ(rig.doc.capture->pickedPoint, ray.nearPoint);
}

TEST(PickPlanePoint, WithoutAPrincipalViewThePickedPointStays) {
    PlaneRig rig("view.iso");
    ASSERT_FALSE(rig.view.viewAlongX || rig.view.viewAlongY || rig.view.viewAlongZ);
    test::arranged(rig.doc).pickedPoint = {7, 8, 9};
    rig.view.PickPlanePoint(rig.beside(40, -25));
    EXPECT_EQ(rig.doc.capture->pickedPoint, zVec<double>(7, 8, 9));
    EXPECT_EQ(rig.doc.capture->pointStatus,
              "Captured point: (Patch K=1, Section N=3, Point M=2) X=7.000000, Y=8.000000, Z=9.000000");
}

TEST(PickPlanePoint, FillsBothTextsWithTheNumbersOfTheLineFirst) {
    PlaneRig rig("view.iso", false);
    test::arranged(rig.doc).pickedPoint = {7, 8, 9};
    rig.view.PickPlanePoint({300, 300});
    EXPECT_EQ(rig.doc.capture->pointStatus,
              "Captured point: (Patch K=1, Line N=2, Point M=3) X=7.000000, Y=8.000000, Z=9.000000");
    EXPECT_EQ(rig.doc.capture->pointContinueStatus,
              rig.doc.capture->pointStatus + " // Press right button to continue ");
}

// ---- Bending the curve ----------------------------------------------------------------------------------------------

/// The plain form: `curve` with point `i` moved by `delta` in the two coordinates of the view.
PointList bent(const PointList& curve, std::size_t i, const zVec<double>& delta, const PrincipalView& view) {
    const auto length = [&](std::size_t a, std::size_t b) {
        return std::hypot(curve[a].*view.first - curve[b].*view.first, curve[a].*view.second - curve[b].*view.second);
    };
    const std::size_t n = curve.size();
    std::vector<double> weight(n, 1.0);
    std::vector<double> lower{0.0};
    for (std::size_t k = 0; k < i; ++k) {
        lower.push_back(lower.back() + length(k, k + 1));
    }
    for (std::size_t k = 0; k < i; ++k) {
        weight[k] = std::pow(lower[k] / lower[i], 0.7 - static_cast<double>(k) / static_cast<double>(i) * 0.6);
    }
    std::vector<double> upper{0.0};
    for (std::size_t k = n - 1; k > i; --k) {
        upper.push_back(upper.back() + length(k - 1, k));
    }
    for (std::size_t k = n - 1; k > i; --k) {
        const auto steps = static_cast<double>(n - 1 - k);
        weight[k] = std::pow(upper[n - 1 - k] / upper.back(), 0.7 - steps / static_cast<double>(n - i) * 0.6);
    }
    PointList result = curve;
    for (std::size_t k = 0; k < n; ++k) {
        result[k].*view.first += weight[k] * delta.*view.first;
        result[k].*view.second += weight[k] * delta.*view.second;
    }
    return result;
}

void expectPoints(const PointList& actual, const PointList& expected) {
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < actual.size(); ++i) {
        SCOPED_TRACE("point " + std::to_string(i));
        expectVector(actual[i], expected[i], 1e-12);
    }
}

PointList lineOf(const Patch& patch, std::size_t m) {
    PointList line;
    for (const PointList& section : patch) {
        line.push_back(section[m]);
    }
    return line;
}

TEST(CorrectLineByDrag, BendsTheSectionInThePlaneOfEachPrincipalView) {
    for (const PrincipalView& view : principalViews) {
        SCOPED_TRACE(view.command);
        PlaneRig rig(view.command);
        const Patch before = windingPatch();
        const zVec<double> delta{0.5, -0.75, 0.25};
        rig.view.CorrectLineByDrag(before[2][1] + delta);
        expectPoints(rig.doc.patches[0][2], bent(before[2], 1, delta, view));
        for (const std::size_t other : {0, 1, 3, 4}) {
            EXPECT_EQ(rig.doc.patches[0][other], before[other]);
        }
    }
}

TEST(CorrectLineByDrag, BendsTheLineAcrossTheSections) {
    for (const PrincipalView& view : principalViews) {
        SCOPED_TRACE(view.command);
        PlaneRig rig(view.command, false);
        const Patch before = windingPatch();
        const zVec<double> delta{0.5, -0.75, 0.25};
        rig.view.CorrectLineByDrag(before[2][1] + delta);
        expectPoints(lineOf(rig.doc.patches[0], 1), bent(lineOf(before, 1), 2, delta, view));
        for (const std::size_t other : {0, 2, 3, 4}) {
            EXPECT_EQ(lineOf(rig.doc.patches[0], other), lineOf(before, other));
        }
    }
}

TEST(CorrectLineByDrag, WithoutAPrincipalViewNothingMoves) {
    PlaneRig rig("view.iso");
    rig.view.CorrectLineByDrag({9, 9, 9});
    EXPECT_EQ(rig.doc.patches[0], windingPatch());
}

TEST(LineCorrection, PressPicksOnlyTheDragBendsAndTheReleaseEndsIt) {
    const PrincipalView& view = principalViews[2];
    PlaneRig rig(view.command);
    const Patch before = windingPatch();
    rig.view.runViewCommand("point.dragAndCorrect");
    rig.view.OnLeftButtonDown(rig.beside(0, 0));
    EXPECT_EQ(rig.doc.patches[0], before);
    EXPECT_TRUE(rig.doc.capture->dragCorrectsLine);
    rig.view.OnMouseMove(rig.beside(40, -25));
    const zVec<double> target = rig.doc.capture->capturedPointPos;
    expectPoints(rig.doc.patches[0][2], bent(before[2], 1, target - before[2][1], view));
    expectVector(rig.doc.patches[0][2][1], target, 1e-12);
    EXPECT_THAT(rig.ui.transcript, ElementsAre("status: " + rig.doc.capture->pointStatus));
    // The release corrects to the same place once more: the point is there already.
    const Patch bentPatch = rig.doc.patches[0];
    const int repaints = rig.surface.repaints;
    rig.view.OnLeftButtonUp(rig.beside(40, -25));
    EXPECT_FALSE(rig.doc.capture->dragCorrectsLine);
    expectPoints(rig.doc.patches[0][2], bentPatch[2]);
    EXPECT_GT(rig.surface.repaints, repaints);
    rig.drag(rig.beside(0, 0), rig.beside(90, 90));
    EXPECT_EQ(rig.doc.patches[0], bentPatch) << "one drag for one command";
}

TEST(LineCorrection, ClickWithoutADragCorrectsAtTheRelease) {
    const PrincipalView& view = principalViews[2];
    PlaneRig rig(view.command);
    const Patch before = windingPatch();
    rig.view.runViewCommand("point.dragAndCorrect");
    rig.clickPixel(rig.beside(30, 10));
    const zVec<double> target = rig.doc.capture->capturedPointPos;
    expectPoints(rig.doc.patches[0][2], bent(before[2], 1, target - before[2][1], view));
}

} // namespace
} // namespace velmora
