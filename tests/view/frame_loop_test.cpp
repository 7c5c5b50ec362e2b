#include "view_rig.h"

namespace velmora {
namespace {

using test::FakeSurface;
using test::flatPatch;
using test::twoPatches;
using test::ViewRig;
using ::testing::ElementsAre;

/// The bare view with its hooks noted among the surface's calls.
class HookedView : public OpenGLView {
public:
    explicit HookedView(FakeSurface& noted) : OpenGLView(noted), noted_(noted) {}
    bool PreRenderScene() override { return note("PreRenderScene"); }
    void RenderStockScene() override { note("RenderStockScene"); }
    bool RenderScene() override { return note("RenderScene"); }
    void PostRenderScene() override { note("PostRenderScene"); }

private:
    bool note(const char* hook) {
        noted_.calls.emplace_back(hook);
        return true;
    }
    FakeSurface& noted_;
};

TEST(OpenGLView, CreatesDrawingAreaFormatAndContextInOrder) {
    FakeSurface surface;
    OpenGLView view(surface);
    view.OnCreate();
    EXPECT_THAT(surface.calls, ElementsAre("obtainDrawingArea", "choosePixelFormat", "selectPixelFormat",
                                           "createContext", "makeCurrent", "prepareContext"));
    EXPECT_EQ(view.lastErrorText, "No Error");
}

TEST(OpenGLView, AsksForADoubleBufferOf24ColourAnd32DepthBits) {
    FakeSurface surface;
    OpenGLView view(surface);
    surface.askedFormat = {false, 0, 0, 1, 1, 1};
    view.OnCreate();
    EXPECT_TRUE(surface.askedFormat.doubleBuffered);
    EXPECT_EQ(surface.askedFormat.colourBits, 24);
    EXPECT_EQ(surface.askedFormat.depthBits, 32);
    EXPECT_EQ(surface.askedFormat.alphaBits, 0);
    EXPECT_EQ(surface.askedFormat.accumulationBits, 0);
    EXPECT_EQ(surface.askedFormat.stencilBits, 0);
}

TEST(OpenGLView, FrameGoesFromTheClearToWhatComesBehindTheSwap) {
    FakeSurface surface;
    HookedView view(surface);
    view.OnDraw();
    EXPECT_THAT(surface.calls, ElementsAre("clearFrame", "PreRenderScene", "RenderStockScene", "RenderScene",
                                           "finishFrame", "swapBuffers", "PostRenderScene"));
}

TEST(OpenGLView, DestroysTheContextBeforeTheDrawingArea) {
    FakeSurface surface;
    OpenGLView view(surface);
    view.OnDestroy();
    EXPECT_THAT(surface.calls, ElementsAre("deleteContext", "releaseDrawingArea"));
}

TEST(OpenGLView, EachFailingCallLeavesItsText) {
    const std::pair<const char*, const char*> failures[] = {
        {"obtainDrawingArea", "Unable to get a DC"},       {"choosePixelFormat", "ChoosePixelFormat failed"},
        {"selectPixelFormat", "SelectPixelFormat failed"}, {"createContext", "wglCreateContext failed"},
        {"makeCurrent", "wglMakeCurrent failed"},          {"swapBuffers", "SwapBuffers failed"},
        {"deleteContext", "wglDeleteContext failed"},
    };
    for (const auto& [call, text] : failures) {
        FakeSurface surface;
        surface.failing = call;
        OpenGLView view(surface);
        view.OnCreate();
        view.OnDraw();
        view.OnDestroy();
        EXPECT_EQ(view.lastErrorText, text);
    }
}

TEST(OpenGLView, OnlyTheFirstFailureSurvives) {
    FakeSurface surface;
    OpenGLView view(surface);
    surface.failing = "makeCurrent";
    view.OnCreate();
    surface.failing = "swapBuffers";
    view.OnDraw();
    surface.failing = "deleteContext";
    view.OnDestroy();
    EXPECT_EQ(view.lastErrorText, "wglMakeCurrent failed");
}

TEST(OpenGLView, StopsAtAMissingDrawingArea) {
    FakeSurface surface;
    surface.failing = "obtainDrawingArea";
    OpenGLView view(surface);
    view.OnCreate();
    EXPECT_THAT(surface.calls, ElementsAre("obtainDrawingArea"));
}

TEST(OpenGLView, CountsTheBackgroundAsErased) {
    FakeSurface surface;
    OpenGLView view(surface);
    EXPECT_TRUE(view.OnEraseBkgnd());
    EXPECT_TRUE(surface.calls.empty());
}

TEST(OpenGLView, HooksOfTheBaseSucceed) {
    FakeSurface surface;
    OpenGLView view(surface);
    EXPECT_TRUE(view.PreRenderScene());
    EXPECT_TRUE(view.RenderScene());
}

TEST(OpenGLView, OnlyEscapeAsksTheFrameToClose) {
    FakeSurface surface;
    OpenGLView view(surface);
    view.OnKeyDown(ViewKey::Other);
    EXPECT_FALSE(surface.closeRequested);
    view.OnKeyDown(ViewKey::Escape);
    EXPECT_TRUE(surface.closeRequested);
}

// ---- The document's view --------------------------------------------------------------------------------------------

TEST(Frame, WithoutGeometryIsAClearedWindowWithoutATriad) {
    ViewRig rig;
    rig.paint();
    EXPECT_THAT(rig.surface.calls, ElementsAre("clearFrame", "finishFrame", "swapBuffers"));
    EXPECT_TRUE(rig.view.overlay().list.batches.empty());
    EXPECT_TRUE(rig.view.RenderScene());
}

TEST(Frame, WithoutGeometryAnyMoreLosesItsTriad) {
    ViewRig rig;
    rig.show(twoPatches());
    ASSERT_FALSE(rig.view.overlay().list.batches.empty());
    rig.ui.answers = {true};
    rig.doc.onNewDocument();
    ASSERT_TRUE(rig.doc.holdsNothing());
    rig.paint();
    EXPECT_TRUE(rig.view.overlay().list.batches.empty());
}

TEST(Frame, WithoutGeometryDoesNotSpin) {
    ViewRig rig;
    rig.view.spinActive = true;
    rig.view.spinAngle = 40.0;
    rig.view.spinAxis = {0, 0, 1};
    rig.paint();
    EXPECT_EQ(rig.view.modelRotation, identityMatrix());
}

TEST(Frame, ModelIsDrawnBetweenASecondClearAndTheSwap) {
    ViewRig rig;
    rig.show(twoPatches());
    rig.paint();
    EXPECT_THAT(rig.surface.calls, ElementsAre("clearFrame", "clearFrame", "drawScene", "finishFrame", "swapBuffers"));
    EXPECT_THAT(rig.surface.clears, ElementsAre(Colour{0, 0, 0, 0}, Colour{0, 0, 0, 1}));
}

TEST(Frame, RubberBandIsInvertedBehindTheSwap) {
    ViewRig rig;
    rig.show(twoPatches());
    rig.view.rubberBandShown = true;
    rig.view.rubberStart = {10, 20};
    rig.view.rubberEnd = {30, 45};
    rig.paint();
    ASSERT_EQ(rig.surface.rectangles.size(), 1U);
    EXPECT_EQ(rig.surface.rectangles[0], std::pair(PixelPoint{10, 20}, PixelPoint{30, 45}));
    EXPECT_THAT(rig.surface.calls,
                ElementsAre("clearFrame", "clearFrame", "drawScene", "finishFrame", "swapBuffers", "invertRectangle"));
}

TEST(Frame, NoRectangleIsDrawnWithoutARubberBand) {
    ViewRig rig;
    rig.show(twoPatches());
    rig.paint();
    EXPECT_TRUE(rig.surface.rectangles.empty());
}

TEST(Frame, CarriesListMatricesAndViewport) {
    ViewRig rig;
    rig.show(twoPatches());
    rig.view.modelRotation = rotationMatrix(90.0, {0, 0, 1});
    rig.paint();
    const SceneFrame& frame = rig.surface.lastFrame;
    EXPECT_EQ(frame.list, &rig.view.list());
    EXPECT_EQ(frame.overlay, &rig.view.overlay());
    EXPECT_EQ(frame.projection, rig.view.projectionMatrix);
    EXPECT_EQ(frame.viewport.width, 600);
    EXPECT_EQ(frame.viewport.height, 600);
    // The centre of the model stands on the line of sight, and x of the model points up.
    const zVec<double> centre = test::sent(frame.modelView, rig.doc.modelCenter);
    test::expectVector(centre, {0, 0, -27.99038155676617 * rig.doc.modelRadius}, 1e-9);
    test::expectVector(test::sent(frame.modelView, rig.doc.modelCenter + zVec<double>(1, 0, 0)) - centre, {0, 1, 0},
                       1e-12);
}

TEST(Frame, SurfaceIsFilledAndWireIsNot) {
    ViewRig rig;
    rig.show(twoPatches());
    rig.paint();
    EXPECT_FALSE(rig.surface.lastFrame.filled);
    rig.view.runViewCommand("view.surface");
    rig.paint();
    EXPECT_TRUE(rig.surface.lastFrame.filled);
    EXPECT_EQ(rig.surface.lastFrame.list->number, 2);
}

TEST(Frame, ListIsBuiltOnceForManyFrames) {
    ViewRig rig;
    rig.show(twoPatches());
    rig.paint();
    const auto revision = rig.surface.lastFrame.listRevision;
    rig.view.runViewCommand("view.iso");
    rig.paint();
    EXPECT_EQ(rig.surface.lastFrame.listRevision, revision);
    rig.doc.redraw();
    rig.paint();
    EXPECT_NE(rig.surface.lastFrame.listRevision, revision);
}

TEST(Frame, SurfaceOfSectionLinesIsRefusedOnce) {
    ViewRig rig;
    rig.show({{flatPatch(2, 3)[0], flatPatch(2, 4)[1]}});
    ASSERT_EQ(rig.doc.fileKind, FileKind::Skl);
    rig.view.runViewCommand("view.surface");
    EXPECT_TRUE(rig.doc.surfaceMode);
    EXPECT_EQ(rig.view.list().number, 1);
    rig.paint();
    EXPECT_EQ(rig.ui.count("message: surface not allowed"), 1U);
    EXPECT_FALSE(rig.doc.surfaceMode);
    EXPECT_EQ(rig.surface.lastFrame.list->number, 1);
    EXPECT_FALSE(rig.surface.lastFrame.filled);
    rig.paint();
    EXPECT_EQ(rig.ui.count("message: surface not allowed"), 1U);
}

// A model that stops being a grid while its surface is shown.
TEST(Frame, SurfaceFallsBackToWireWhenTheGridIsLost) {
    ViewRig rig;
    rig.show(twoPatches());
    rig.view.runViewCommand("view.surface");
    rig.paint();
    rig.doc.patches[0][0].pop_back();
    rig.doc.checkRegularity(rig.doc.patches);
    rig.paint();
    EXPECT_EQ(rig.ui.count("message: surface not allowed"), 1U);
    EXPECT_EQ(rig.surface.lastFrame.list->number, 1);
}

TEST(Frame, PaintDuringTheBoxIsRefusedButStillTurnsTheModel) {
    ViewRig rig;
    rig.show({flatPatch(1, 3)});
    ASSERT_EQ(rig.doc.fileKind, FileKind::Skl);
    rig.view.spinActive = true;
    rig.view.spinAngle = 40.0;
    rig.view.spinAxis = {0, 0, 1};
    rig.doc.surfaceMode = true;
    const int scenes = rig.surface.scenes;
    int refused = 0;
    rig.ui.whileBoxStands = [&rig, &refused] { refused += rig.view.RenderScene() ? 0 : 1; };
    EXPECT_TRUE(rig.view.RenderScene());
    EXPECT_EQ(refused, 1);
    EXPECT_EQ(rig.surface.scenes, scenes + 1);
    // A quarter of 40 degrees for the paint and one for the refused paint.
    test::expectMatrix(rig.view.modelRotation, rotationMatrix(20.0, {0, 0, 1}), 1e-15);
}

TEST(Frame, WholePaintDuringTheBoxShowsNoSecondBox) {
    ViewRig rig;
    rig.show({flatPatch(1, 3)});
    rig.doc.surfaceMode = true;
    rig.ui.whileBoxStands = [&rig] { rig.paint(); };
    rig.paint();
    EXPECT_EQ(rig.ui.count("message: surface not allowed"), 1U);
    EXPECT_TRUE(rig.view.RenderScene());
}

TEST(Frame, CollapsedProjectionDoesNoHarm) {
    ViewRig rig;
    rig.show(twoPatches());
    rig.view.zoomFactor = 0.0;
    rig.view.UpdateProjection();
    rig.paint();
    EXPECT_EQ(rig.view.viewAngles, zVec<double>(0, 0, 0));
}

} // namespace
} // namespace velmora
