#include <cmath>

#include "marker_shift.h"
#include "zone_fixture.h"

namespace velmora::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Vec = zVec<double>;

const std::string differ = "message: Number of Initial and Shifted Markers is Different.\n\noperation canceled";
const std::string identical = "message: It Seem's that Images are Identical. Try Different ones.";
const std::string notPositive = "message:    ZMatrix AT*A is NOT positive.\n   Rank [A] < NumPar";
const std::string notSolved = "message: Linear Equation Solution Failed. Try Another Parameters.\n\noperation canceled";

Lines times(int count, const Lines& lines) {
    Lines all;
    for (int i = 0; i < count; ++i) {
        all.insert(all.end(), lines.begin(), lines.end());
    }
    return all;
}

/// All 64 places with coordinates of -90, -30, 30 and 90: over them each coordinate says nothing about the others.
PointList cubeOfMarkers() {
    PointList markers;
    const double levels[] = {-90, -30, 30, 90};
    for (const double x : levels) {
        for (const double y : levels) {
            for (const double z : levels) {
                markers.push_back({x, y, z});
            }
        }
    }
    return markers;
}

class MarkerShiftCommand : public ZoneTest {
protected:
    /// Each marker stands at a place of the cube now; `back` tells where it stood first.
    void shiftBack(Vec (*back)(const Vec&)) {
        doc.sftTargets = cubeOfMarkers();
        doc.sftPoints.clear();
        for (const Vec& p : doc.sftTargets) {
            doc.sftPoints.push_back(back(p));
        }
    }

    /// The document with two patches, the first of them in the zBlock.
    void holdTwoPatches() {
        hold({raisedPatch(), flatPatch(2, 2, 50.0)});
        addToBlock(0);
    }

    static Patch raisedPatch() {
        return {{{0, 0, 1}, {10, 0, 2}, {20, 5, 3}}, {{1, 12, 4}, {11, 14, -5}, {-30, 16, 60}}};
    }

    void expectFirstPatch(Vec (*map)(const Vec&)) {
        const Patch before = raisedPatch();
        for (std::size_t n = 0; n < before.size(); ++n) {
            for (std::size_t m = 0; m < before[n].size(); ++m) {
                const Vec expected = map(before[n][m]);
                const Vec& p = doc.patches[0][n][m];
                EXPECT_NEAR(p.x, expected.x, 1e-9) << n << m;
                EXPECT_NEAR(p.y, expected.y, 1e-9) << n << m;
                EXPECT_NEAR(p.z, expected.z, 1e-9) << n << m;
            }
        }
        EXPECT_EQ(doc.patches[1], flatPatch(2, 2, 50.0));
    }

    /// Runs with what the lists hold in every view; nothing may move, and the messages come once for each plane.
    void expectRefused(const Lines& onePlane) {
        holdTwoPatches();
        const PatchList before = doc.patches;
        for (view.plane = 0; view.plane <= 3; ++view.plane) {
            call("model.reflectToSft");
            EXPECT_EQ(heard(), times(view.plane == 0 ? 3 : 2, onePlane)) << view.plane;
            EXPECT_EQ(doc.patches, before) << view.plane;
        }
    }

    void takeMarkers(std::size_t count, Vec (*place)(double), const Vec& delta) {
        doc.sftPoints.clear();
        doc.sftTargets.clear();
        for (std::size_t i = 0; i < count; ++i) {
            doc.sftPoints.push_back(place(static_cast<double>(i)));
            doc.sftTargets.push_back(doc.sftPoints.back() + delta);
        }
    }
};

Vec onSpiral(double t) {
    return {t * std::cos(t), t * std::sin(t), 5.0 * std::cos(3.0 * t) * t};
}

Vec onLine(double t) {
    return {t, 2 * t, 3 * t};
}

/// Of the four views below: y gains half of x, which the plane (y, z) cannot know, and z gains 4.
Vec shearedUp(const Vec& p) {
    return {p.x, p.y + 0.5 * p.x, p.z + 4.0};
}

} // namespace

TEST_F(MarkerShiftCommand, AlongXMovesYAndZByTheirPlaneAndThenXByTheNext) {
    shiftBack(shearedUp);
    holdTwoPatches();
    view.plane = 1;
    call("model.reflectToSft");
    expectFirstPatch([](const Vec& p) { return Vec{p.x, p.y, p.z + 4.0}; });
    EXPECT_THAT(heard(), IsEmpty()) << "how well the fit meets the pairs is not shown";
    EXPECT_NE(doc.markerShift.report, "");
}

TEST_F(MarkerShiftCommand, AlongYMovesXAndZByTheirPlaneAndThenYByTheNext) {
    shiftBack(shearedUp);
    holdTwoPatches();
    view.plane = 2;
    call("model.reflectToSft");
    expectFirstPatch(shearedUp);
}

TEST_F(MarkerShiftCommand, AlongZMovesXAndYByTheirPlaneAndThenZByTheNext) {
    shiftBack(shearedUp);
    holdTwoPatches();
    view.plane = 3;
    call("model.reflectToSft");
    expectFirstPatch(shearedUp);
}

TEST_F(MarkerShiftCommand, ObliquelyTakesTheMeanOfTheTwoPlanesOfACoordinate) {
    shiftBack(shearedUp);
    holdTwoPatches();
    call("model.reflectToSft");
    expectFirstPatch([](const Vec& p) { return Vec{p.x, p.y + 0.25 * p.x, p.z + 4.0}; });
}

TEST_F(MarkerShiftCommand, WithoutAViewIsOblique) {
    shiftBack(shearedUp);
    holdTwoPatches();
    view.plane = 3;
    detach(view);
    call("model.reflectToSft");
    attach(view);
    expectFirstPatch([](const Vec& p) { return Vec{p.x, p.y + 0.25 * p.x, p.z + 4.0}; });
}

TEST_F(MarkerShiftCommand, ReadsInItsSecondPassWhatTheFirstHasMoved) {
    shiftBack([](const Vec& p) { return Vec{p.x, p.y + 10.0, p.z + 0.5 * p.y}; });
    holdTwoPatches();
    view.plane = 3;
    call("model.reflectToSft");
    expectFirstPatch([](const Vec& p) { return Vec{p.x, p.y + 10.0, p.z + 0.5 * (p.y + 10.0)}; });

    holdTwoPatches();
    doc.blockCount = 1;
    view.plane = 0;
    call("model.reflectToSft");
    expectFirstPatch([](const Vec& p) { return Vec{p.x, p.y + 10.0, p.z + 0.25 * p.y}; });
}

TEST_F(MarkerShiftCommand, TellsOfAPlaneInWhichNothingMovedAndGoesOnWithTheOther) {
    shiftBack([](const Vec& p) { return Vec{p.x, p.y + 0.5 * p.x, p.z}; });
    holdTwoPatches();
    view.plane = 2;
    call("model.reflectToSft");
    EXPECT_THAT(heard(), ElementsAre(identical));
    expectFirstPatch([](const Vec& p) { return Vec{p.x, p.y + 0.5 * p.x, p.z}; });
}

TEST_F(MarkerShiftCommand, MovesFlatMarkersInTheirOwnPlane) {
    shiftBack([](const Vec& p) { return Vec{p.x + 3.0, p.y - 2.0, p.z}; });
    for (PointList* list : {&doc.sftPoints, &doc.sftTargets}) {
        for (Vec& p : *list) {
            p.z = 0.0;
        }
    }
    holdTwoPatches();
    view.plane = 3;
    call("model.reflectToSft");
    EXPECT_THAT(heard(), ElementsAre(notPositive, notSolved));
    expectFirstPatch([](const Vec& p) { return Vec{p.x + 3.0, p.y - 2.0, p.z}; });
}

TEST_F(MarkerShiftCommand, MovesTheZoneOfTheZBlockAlone) {
    holdZones({4, 3, 5});
    addToBlock(2);
    addToBlock(0);
    shiftBack(shearedUp);
    view.plane = 3;
    call("model.reflectToSft");
    EXPECT_THAT(heard(), IsEmpty());
    for (const auto& [zone, nodes] : {std::pair{0, 4}, {1, 3}, {2, 5}}) {
        for (int n = 0; n < nodes; ++n) {
            const Vec before(n, zone, 0);
            const Vec expected = zone == 1 ? before : shearedUp(before);
            const Vec p = node(zone, n);
            EXPECT_NEAR(p.x, expected.x, 1e-9);
            EXPECT_NEAR(p.y, expected.y, 1e-9);
            EXPECT_NEAR(p.z, expected.z, 1e-9);
        }
    }
    view.plane = 0;
    holdZones({4, 3, 5});
    call("model.reflectToSft");
    EXPECT_NEAR(node(0, 2).y, 0.5, 1e-9);
    EXPECT_EQ(node(1, 2), (Vec{2, 1, 0}));
    EXPECT_NEAR(node(2, 2).y, 2.5, 1e-9);
}

TEST_F(MarkerShiftCommand, LeavesAZoneWithoutCoordinates) {
    holdZones({3, 3});
    doc.feRegion.blocks[0]->variables[1]->name = "pressure";
    const std::vector<double> before = doc.feRegion.blocks[0]->variables[0]->data;
    addToBlock(0);
    addToBlock(1);
    shiftBack(shearedUp);
    for (view.plane = 0; view.plane <= 3; ++view.plane) {
        call("model.reflectToSft");
    }
    EXPECT_EQ(doc.feRegion.blocks[0]->variables[0]->data, before);
    EXPECT_NEAR(node(1, 0).z, 16.0, 1e-9);
}

TEST_F(MarkerShiftCommand, PassesOverEntriesOfNoPatchAndMovesNothingWithoutAZBlock) {
    shiftBack(shearedUp);
    holdTwoPatches();
    doc.blockCount = 0;
    for (const int entry : {-1, 7, 0}) {
        addToBlock(entry);
    }
    view.plane = 3;
    call("model.reflectToSft");
    expectFirstPatch(shearedUp);
    hold({raisedPatch(), flatPatch(2, 2, 50.0)});
    doc.blockCount = 0;
    call("model.reflectToSft");
    EXPECT_EQ(doc.patches[0], raisedPatch());
}

TEST_F(MarkerShiftCommand, TakesASnapshotAndKeepsTheView) {
    shiftBack(shearedUp);
    holdTwoPatches();
    doc.rebuildOnUndo = true;
    const PatchList before = doc.patches;
    const Vec corner = doc.boxMax;
    view.plane = 3;
    call("model.reflectToSft");
    EXPECT_TRUE(doc.patchUndoReady && doc.documentModified);
    EXPECT_FALSE(doc.rebuildOnUndo);
    EXPECT_EQ(doc.undoPatches.copy(), before);
    EXPECT_EQ(doc.boxMax, corner);
    EXPECT_THAT(viewCalls(), ElementsAre("redraw"));
    EXPECT_EQ(ui.busyDepth, 0);
    call("patch.undo");
    EXPECT_EQ(doc.patches, before);
}

TEST_F(MarkerShiftCommand, TakesTheCapturedPointAlong) {
    shiftBack(shearedUp);
    holdTwoPatches();
    capturePoint(0, 1, 2);
    call("model.reflectToSft");
    EXPECT_EQ(doc.capture->capturedPointPos, doc.patches[0][1][2]);
    EXPECT_EQ(doc.capture->pickedPoint, doc.patches[0][1][2]);
}

TEST_F(MarkerShiftCommand, WithoutMarkersTakesThemForIdentical) {
    expectRefused({identical});
    EXPECT_TRUE(doc.patchUndoReady);
}

TEST_F(MarkerShiftCommand, KeepsCoordinatesWhoseSumIsTooLarge) {
    const PatchList far = {{{{1.5e308, -1.5e308, 0}, {1.0, 1.5e308, -0.5}}, {{0, 1, 2}, {3, 4, 1.7e308}}}};
    hold(far);
    addToBlock(0);
    call("model.reflectToSft");
    EXPECT_EQ(doc.patches, far);
}

TEST_F(MarkerShiftCommand, RefusesMarkersThatDidNotMove) {
    takeMarkers(20, onSpiral, {0, 0, 0});
    expectRefused({identical});
}

TEST_F(MarkerShiftCommand, RefusesListsOfDifferentLength) {
    takeMarkers(20, onSpiral, {1, 2, 3});
    doc.sftPoints.pop_back();
    expectRefused({differ});
    doc.sftPoints.clear();
    expectRefused({differ});
}

TEST_F(MarkerShiftCommand, RefusesFewerThanTenAndMoreThanAThousandPairs) {
    for (const std::size_t count : {1U, 2U, 9U, 1001U}) {
        takeMarkers(count, onSpiral, {1, 2, 3});
        expectRefused({notSolved});
        doc.blockCount = 0;
    }
    for (const std::size_t count : {10U, 1000U}) {
        takeMarkers(count, onSpiral, {1, 2, 3});
        holdTwoPatches();
        view.plane = 3;
        call("model.reflectToSft");
        EXPECT_THAT(heard(), IsEmpty()) << count;
        doc.blockCount = 0;
    }
}

TEST_F(MarkerShiftCommand, RefusesMarkersOnALine) {
    takeMarkers(20, onLine, {1, 2, 4});
    expectRefused({notPositive, notSolved});
}

TEST_F(MarkerShiftCommand, OfAModelThatIsNoneAsksWhatItIs) {
    shiftBack(shearedUp);
    view.plane = 3;
    call("model.reflectToSft");
    EXPECT_THAT(heard(), ElementsAre("message: Ento setka ili avoska?"));
    EXPECT_THAT(viewCalls(), ElementsAre("redraw"));
    EXPECT_TRUE(doc.patchUndoReady);
}

} // namespace velmora::test
