#include "arranged_capture.h"
#include "view_reference.h"
#include "view_rig.h"

namespace velmora {
namespace {

using test::expectVector;
using test::flatPatch;
using test::twoPatches;
using test::ViewRig;

/// Two flat patches, seen along z, with the point regime armed.
struct PointRig : ViewRig {
    PointRig() {
        show(twoPatches());
        call("point.capture");
        ui.transcript.clear();
    }
};

TEST(PickPoint, WritesAddressPositionAndBothTexts) {
    PointRig rig;
    ASSERT_TRUE(rig.pick({12, 1, 0}));
    EXPECT_EQ(rig.doc.capture->capturedPatch, 1);
    EXPECT_EQ(rig.doc.capture->capturedPointSection, 1);
    EXPECT_EQ(rig.doc.capture->capturedPoint, 2);
    EXPECT_EQ(rig.doc.capture->pickedPoint, zVec<double>(12, 1, 0));
    EXPECT_EQ(rig.doc.capture->capturedPointPos, zVec<double>(12, 1, 0));
    EXPECT_TRUE(rig.doc.capture->pointPicked);
    EXPECT_EQ(rig.doc.capture->pointStatus,
              "Captured point: (Patch K=2, Section N=2, Point M=3) X=12.000000, Y=1.000000, Z=0.000000");
    EXPECT_EQ(rig.doc.capture->pointContinueStatus, "Captured point: (Patch K=2, Section N=2, Point M=3) X=12.000000, "
                                                    "Y=1.000000, Z=0.000000 // Press right button to continue ");
}

TEST(PickPoint, InALineRegimeTheTextNamesTheLineBeforeThePoint) {
    PointRig rig;
    test::holdLine(rig.doc, rig.doc.capture->capturedPatch, 2);
    ASSERT_TRUE(rig.pick({12, 0, 0}));
    EXPECT_EQ(rig.doc.capture->pointStatus,
              "Captured point: (Patch K=2, Line N=3, Point M=1) X=12.000000, Y=0.000000, Z=0.000000");
    EXPECT_EQ(rig.doc.capture->pointContinueStatus,
              rig.doc.capture->pointStatus + " // Press right button to continue ");
}

TEST(PickPoint, FailureKeepsThePatchAndTheIndicesOfTheNearest) {
    PointRig rig;
    ASSERT_TRUE(rig.pick({2, 1, 0}));
    rig.doc.capture.renumberPatch(-1);
    const std::string text = rig.doc.capture->pointStatus;
    // Beside the last corner of the second patch.
    EXPECT_FALSE(rig.pick({13.4, 2.4, 0}));
    EXPECT_EQ(rig.doc.capture->capturedPatch, -1);
    EXPECT_EQ(rig.doc.capture->capturedPointSection, 2);
    EXPECT_EQ(rig.doc.capture->capturedPoint, 3);
    EXPECT_FALSE(rig.doc.capture->pointPicked);
    EXPECT_EQ(rig.doc.capture->pickedPoint, zVec<double>(2, 1, 0));
    EXPECT_EQ(rig.doc.capture->capturedPointPos, zVec<double>(2, 1, 0));
    EXPECT_EQ(rig.doc.capture->pointStatus, text);
}

TEST(PickPoint, FindsTheSamePointsInPerspectiveAndParallelAndTurned) {
    for (const int projection : {0, 1}) {
        PatchList model{flatPatch(4, 5), flatPatch(3, 4, 2.5)};
        model[0][2][2].z = -1.5;
        ViewRig rig;
        rig.show(model);
        rig.view.runViewCommand(projection == 1 ? "view.orthographic" : "view.perspective");
        rig.view.SetEulerView({40, 25, -15});
        rig.call("point.capture");
        for (std::int32_t k = 0; k < 2; ++k) {
            for (std::int32_t n = 0; n < countOf(model[static_cast<std::size_t>(k)]); ++n) {
                for (std::int32_t m = 0; m < 4; ++m) {
                    rig.doc.capture.renumberPatch(-1);
                    const zVec<double> point = *rig.doc.pointAt(k, n, m);
                    ASSERT_TRUE(rig.pick(point)) << k << n << m;
                    EXPECT_EQ(rig.doc.capture->capturedPointPos, point);
                    EXPECT_EQ(rig.doc.capture->capturedPatch, k);
                    EXPECT_EQ(rig.doc.capture->capturedPointSection, n);
                    EXPECT_EQ(rig.doc.capture->capturedPoint, m);
                }
            }
        }
    }
}

// ---- The limit ------------------------------------------------------------------------------------------------------

/// Makes `fraction` of the model's diagonal the double `limit`; false where no diagonal gives it.
bool setLimit(DocumentState& doc, double fraction, double limit) {
    double diagonal = limit / fraction;
    for (int i = 0; i < 4 && fraction * diagonal < limit; ++i) {
        diagonal = std::nextafter(diagonal, 1e300);
    }
    for (int i = 0; i < 4 && fraction * diagonal > limit; ++i) {
        diagonal = std::nextafter(diagonal, 0.0);
    }
    doc.boxMin = {0, 0, 0};
    doc.boxMax = {diagonal, 0, 0};
    return fraction * diagonal == limit;
}

/// A pixel of which the ray's distance from the nearest point of the model can be made the limit.
struct Bound {
    PixelPoint pixel;
    double distance = 0.0;
    bool found = false;
};

Bound boundFor(ViewRig& rig, double fraction) {
    for (int x = 20; x < 580; x += 7) {
        const PixelPoint pixel{x, 211};
        const auto nearest = nearestGridPoint(rig.doc.patches, rig.view.PixelRay(pixel.x, pixel.y), {});
        if (nearest && setLimit(rig.doc, fraction, nearest->distance)) {
            return {pixel, nearest->distance, true};
        }
    }
    return {};
}

TEST(PickPoint, PassesAtExactlyAHundredthOfTheDiagonalAndFailsBeyond) {
    PointRig rig;
    const Bound bound = boundFor(rig, 0.01);
    ASSERT_TRUE(bound.found);
    EXPECT_TRUE(rig.view.PickPoint(bound.pixel));
    rig.doc.capture.renumberPatch(-1);
    ASSERT_TRUE(setLimit(rig.doc, 0.01, bound.distance));
    rig.doc.boxMax.x *= 1.0 - 1e-12;
    EXPECT_FALSE(rig.view.PickPoint(bound.pixel));
}

TEST(PickSection, PassesAtExactlyATwentiethOfTheDiagonalAndFailsBeyond) {
    ViewRig rig;
    rig.show(twoPatches());
    rig.call("line.captureSection");
    const Bound bound = boundFor(rig, 0.05);
    ASSERT_TRUE(bound.found);
    EXPECT_TRUE(rig.view.PickSection(bound.pixel));
    rig.doc.boxMax.x *= 1.0 - 1e-12;
    EXPECT_FALSE(rig.view.PickSection(bound.pixel));
}

TEST(PickLine, PassesAtExactlyHalfTheDiagonalAndFailsBeyond) {
    ViewRig rig;
    rig.show(twoPatches());
    rig.call("line.captureLine");
    const Bound bound = boundFor(rig, 0.5);
    ASSERT_TRUE(bound.found);
    EXPECT_TRUE(rig.view.PickLine(bound.pixel));
    rig.doc.boxMax.x *= 1.0 - 1e-12;
    EXPECT_FALSE(rig.view.PickLine(bound.pixel));
}

// The box is that of the last fit, not of the points as they stand.
TEST(PickPoint, LimitIsThatOfTheLastBox) {
    PointRig rig;
    rig.doc.boxMax = rig.doc.boxMin + zVec<double>(1e-6, 0, 0);
    EXPECT_FALSE(rig.view.PickPoint({rig.pixelOf({2, 1, 0}).x + 1, rig.pixelOf({2, 1, 0}).y}));
    rig.doc.boxMax = rig.doc.boxMin + zVec<double>(1e6, 0, 0);
    EXPECT_TRUE(rig.view.PickPoint({5, 5}));
}

// ---- What a point pick looks at -------------------------------------------------------------------------------------

TEST(PickPoint, StaysInTheCapturedPatchUntilItIsReset) {
    PointRig rig;
    rig.doc.capture.renumberPatch(0);
    EXPECT_FALSE(rig.pick({12, 1, 0}));
    EXPECT_EQ(rig.doc.capture->capturedPatch, 0);
    rig.doc.capture.renumberPatch(-1);
    EXPECT_TRUE(rig.pick({12, 1, 0}));
    EXPECT_EQ(rig.doc.capture->capturedPatch, 1);
}

TEST(PickPoint, StaysInTheBlockInThePatchRegime) {
    PointRig rig;
    rig.doc.capture.holdBlock();
    rig.putIntoBlock({1});
    EXPECT_FALSE(rig.pick({2, 1, 0}));
    EXPECT_TRUE(rig.pick({12, 1, 0}));
}

TEST(PickPoint, BlockIsNoLimitWhenEmptyOrOutsideThePatchRegime) {
    PointRig rig;
    rig.putIntoBlock({1});
    EXPECT_TRUE(rig.pick({2, 1, 0}));
    rig.doc.capture.renumberPatch(-1);
    rig.doc.capture.holdBlock();
    rig.putIntoBlock({});
    EXPECT_TRUE(rig.pick({2, 1, 0}));
}

TEST(PickPoint, PatchOutsideTheBlockIsNotReachedEvenAsTheCapturedOne) {
    PointRig rig;
    rig.doc.capture.holdBlock();
    rig.doc.capture.renumberPatch(0);
    test::arranged(rig.doc).capturedPoint = test::arranged(rig.doc).capturedPointSection = -1;
    rig.putIntoBlock({1});
    EXPECT_FALSE(rig.pick({2, 1, 0}));
    EXPECT_EQ(rig.doc.capture->capturedPointSection, -1);
    EXPECT_EQ(rig.doc.capture->capturedPoint, -1);
    EXPECT_FALSE(rig.doc.capture->pointPicked);
}

TEST(PickPoint, StaysInTheCapturedSection) {
    PointRig rig;
    test::holdSection(rig.doc, 0, 1);
    EXPECT_FALSE(rig.pick({2, 2, 0}));
    EXPECT_TRUE(rig.pick({2, 1, 0}));
}

TEST(PickPoint, SectionIsNoLimitWhileItsRegimeIsOnlyArmed) {
    PointRig rig;
    test::arranged(rig.doc).sectionCaptureArmed = true;
    rig.doc.capture.renumberSection(1);
    EXPECT_TRUE(rig.pick({2, 2, 0}));
}

TEST(PickPoint, StaysOnTheCapturedLine) {
    PointRig rig;
    test::holdLine(rig.doc, 0, 3);
    EXPECT_FALSE(rig.pick({2, 1, 0}));
    EXPECT_TRUE(rig.pick({3, 1, 0}));
}

TEST(PickPoint, FreePointLeavesSectionAndLineButNotThePatch) {
    PointRig rig;
    test::arranged(rig.doc).sectionCaptured = test::arranged(rig.doc).lineCaptured = true;
    rig.doc.capture.renumberPatch(0);
    rig.doc.capture.renumberSection(1);
    rig.doc.capture.renumberLine(3);
    test::arranged(rig.doc).freePointArmed = true;
    EXPECT_TRUE(rig.pick({2, 2, 0}));
    EXPECT_FALSE(rig.pick({12, 2, 0}));
}

TEST(PickPoint, InAnEmptyModelFindsNothing) {
    ViewRig rig;
    test::arranged(rig.doc).pointCaptureArmed = true;
    EXPECT_FALSE(rig.view.PickPoint({10, 10}));
    EXPECT_FALSE(rig.view.PickSection({10, 10}));
    EXPECT_FALSE(rig.view.PickLine({10, 10}));
}

TEST(PickPoint, UnderACollapsedWindowDoesNoHarm) {
    PointRig rig;
    rig.view.zoomFactor = 0.0;
    rig.view.UpdateProjection();
    rig.view.PickPoint({300, 300});
    rig.view.OnLeftButtonDown({300, 300});
    rig.view.OnMouseMove({310, 310});
    rig.view.OnLeftButtonUp({310, 310});
    EXPECT_FALSE(rig.view.leftButtonDown);
}

} // namespace
} // namespace velmora
