#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "small_zones.h"
#include "view_rig.h"

namespace velmora {
namespace {

using namespace test;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Two patches side by side, measured by clicks.
struct MeasuringRig : ViewRig {
    MeasuringRig() {
        show(twoPatches());
        useParallelProjection();
        view.runViewCommand("view.measure");
    }
    std::string status() const { return doc.status; }
    std::vector<std::string> labels() {
        paint();
        std::vector<std::string> texts;
        for (const DrawText& text : view.overlay().texts) {
            texts.push_back(text.text);
        }
        return texts;
    }
};

TEST(Measuring, TellsDistanceLengthAndAngleOfThePointsThatAreClicked) {
    MeasuringRig rig;
    EXPECT_EQ(rig.status(), "Click the first place");
    rig.click({0, 0, 0});
    EXPECT_EQ(rig.status(), "Patch K=1, Section N=1, Point M=1  X=0.000000, Y=0.000000, Z=0.000000: click the second "
                            "place");
    EXPECT_THAT(rig.labels(), IsEmpty());
    rig.click({3, 0, 0});
    EXPECT_EQ(rig.status(), "Distance 3: X 3, Y 0, Z 0; along the curve 3");
    EXPECT_THAT(rig.labels(), ElementsAre("3"));
    rig.click({3, 2, 0});
    EXPECT_EQ(rig.status(), "Distance 3: X 3, Y 0, Z 0; along the curve 3; angle 90 degrees");
    EXPECT_THAT(rig.labels(), ElementsAre("3", "90 deg"));
    EXPECT_EQ(rig.pixelOf(rig.view.overlay().texts[0].position), rig.pixelOf({1.5, 0, 0}));
    EXPECT_EQ(rig.pixelOf(rig.view.overlay().texts[1].position), rig.pixelOf({3, 0, 0}));
    for (const DrawText& label : rig.view.overlay().texts) {
        EXPECT_EQ(label.plate, label.text == "3" ? TextPlate::Side::Above : TextPlate::Side::Below);
        const auto seen =
            projectPoint(label.position, rig.view.modelViewMatrix, rig.view.projectionMatrix, rig.view.viewport);
        ASSERT_TRUE(seen);
        EXPECT_LT(seen->z, 0.01) << "before the line";
    }
}

TEST(Measuring, WhatRoundingLeavesIsNoLength) {
    ViewRig rig;
    rig.show({{{{0, 0, 0}, {3, 1e-16, 0}}, {{0, 2, 0}, {3, 2, 0}}}});
    rig.useParallelProjection();
    rig.view.runViewCommand("view.measure");
    rig.click({0, 0, 0});
    rig.click({3, 0, 0});
    EXPECT_EQ(rig.doc.status, "Distance 3: X 3, Y 0, Z 0; along the curve 3");
}

TEST(Measuring, BeginsAnewWithTheFourthClick) {
    MeasuringRig rig;
    for (const zVec<double>& point : {zVec<double>(0, 0, 0), {3, 0, 0}, {3, 2, 0}, {10, 0, 0}}) {
        rig.click(point);
    }
    EXPECT_THAT(rig.labels(), IsEmpty());
    rig.click({10, 2, 0});
    EXPECT_EQ(rig.status(), "Distance 2: X 0, Y 2, Z 0; along the curve 2");
}

TEST(Measuring, TakesPlacesOnTheSurfaceToo) {
    MeasuringRig rig;
    rig.click({0.5, 0.5, 0});
    rig.click({12.5, 1.5, 0});
    rig.paint();
    // A strip, seen where the clicks were, and two framed points behind it.
    const DrawList& list = rig.view.overlay().list;
    ASSERT_EQ(list.batches.front().primitive, Primitive::LineStrip);
    EXPECT_EQ(list.batches.front().vertexCount, 2U);
    EXPECT_EQ(rig.pixelOf(list.vertices[0]), rig.pixelOf({0.5, 0.5, 0}));
    EXPECT_EQ(rig.pixelOf(list.vertices[1]), rig.pixelOf({12.5, 1.5, 0}));
    EXPECT_EQ(rig.status().find("along"), std::string::npos) << rig.status();
}

TEST(Measuring, TakesNodesOfTriangles) {
    ViewRig rig;
    rig.doc.feRegion = triangleRegion({{0, 0, 0}, {3, 0, 0}, {0, 4, 0}}, {0, 1, 2});
    rig.doc.structureKind = StructureKind::Unstructured;
    rig.updateBounds();
    rig.redraw();
    rig.paint();
    rig.view.runViewCommand("view.measure");
    rig.click({3, 0, 0});
    rig.click({0, 4, 0});
    EXPECT_EQ(rig.doc.status, "Distance 5: X -3, Y 4, Z 0");
}

TEST(Measuring, SaysWhereNothingLies) {
    MeasuringRig rig;
    rig.clickPixel({2, 2});
    EXPECT_EQ(rig.status(), "Nothing to measure from lies here");
    EXPECT_TRUE(rig.view.overlay().list.batches.empty() || rig.labels().empty());
}

TEST(Measuring, EscapeEndsItAndLeavesTheWindowOpen) {
    MeasuringRig rig;
    rig.click({0, 0, 0});
    rig.click({3, 0, 0});
    rig.view.OnKeyDown(ViewKey::Escape);
    EXPECT_EQ(rig.view.mouseMode, ModeNone);
    EXPECT_FALSE(rig.surface.closeRequested);
    EXPECT_THAT(rig.labels(), IsEmpty());
    EXPECT_EQ(rig.doc.status, "For Help, press F1");
    rig.view.OnKeyDown(ViewKey::Escape);
    EXPECT_TRUE(rig.surface.closeRequested);
}

TEST(Measuring, TheCommandAgainGivesTheRegimeItsButtonBack) {
    MeasuringRig rig;
    rig.view.runViewCommand("view.measure");
    rig.call("point.capture");
    rig.view.runViewCommand("view.measure");
    EXPECT_EQ(rig.view.checkedState("view.measure"), true);
    rig.click({3, 2, 0});
    EXPECT_FALSE(rig.doc.capture->pointHeld());
    rig.view.runViewCommand("view.measure");
    EXPECT_EQ(rig.view.checkedState("view.measure"), false);
    EXPECT_EQ(rig.view.mouseMode, ModePoint);
    rig.click({3, 2, 0});
    EXPECT_TRUE(rig.doc.capture->pointHeld());
}

TEST(Measuring, ForgetsPlacesOfOtherGeometry) {
    MeasuringRig rig;
    rig.click({0, 0, 0});
    rig.click({3, 0, 0});
    rig.redraw();
    EXPECT_THAT(rig.labels(), IsEmpty());
    rig.click({3, 2, 0});
    EXPECT_THAT(rig.labels(), IsEmpty()) << "it is the first again";
}

TEST(Measuring, DoesNotTurnTheModel) {
    MeasuringRig rig;
    const Matrix4 before = rig.view.modelRotation;
    rig.drag({100, 100}, {200, 150});
    rig.view.OnLeftButtonUp({200, 150});
    EXPECT_EQ(rig.view.modelRotation, before);
    EXPECT_FALSE(rig.view.spinActive);
}

TEST(Measuring, MarksWhatAClickWouldTake) {
    MeasuringRig rig;
    rig.surface.watched = true;
    rig.view.OnMouseMove(rig.pixelOf({3, 2, 0}));
    EXPECT_EQ(rig.surface.hint, "Patch K=1, Section N=3, Point M=4  X=3.000000, Y=2.000000, Z=0.000000");
    rig.view.OnMouseMove(rig.pixelOf({1.5, 1.5, 0}));
    EXPECT_EQ(rig.surface.hint.substr(0, 2), "X=") << rig.surface.hint;
    rig.view.OnMouseMove({2, 2});
    EXPECT_EQ(rig.surface.hint, "");
}

} // namespace
} // namespace velmora
