#include "command_table.h"
#include "view_reference.h"
#include "view_rig.h"

namespace velmora {
namespace {

using test::expectMatrix;
using test::expectVector;
using test::twoPatches;
using test::ViewRig;

struct StandardView {
    const char* command;
    Matrix4 rotation;
    zVec<double> angles;
    char along; ///< 'x', 'y', 'z' or '-'
    int repaints;
};

const Matrix4 turnedUp{1, 0, 0, 0, 0, 0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1};
const Matrix4 turnedDown{1, 0, 0, 0, 0, 0, -1, 0, 0, 1, 0, 0, 0, 0, 0, 1};
const Matrix4 turnedFront{0, 0, -1, 0, 0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 0, 1};
const Matrix4 turnedBack{0, 0, 1, 0, 0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 0, 1};
const Matrix4 turnedRound{-1, 0, 0, 0, 0, 1, 0, 0, 0, 0, -1, 0, 0, 0, 0, 1};

// A half turn about Y is read back as half turns about X and Z.
const StandardView standardViews[] = {
    {"view.top", turnedUp, {90, 0, 0}, 'y', 0},
    {"view.bottom", turnedDown, {-90, 0, 0}, '-', 0},
    {"view.front", turnedFront, {0, 90, 0}, 'x', 0},
    {"view.back", turnedBack, {0, -90, 0}, '-', 0},
    {"view.left", identityMatrix(), {0, 0, 0}, 'z', 0},
    {"view.right", turnedRound, {180, 0, -180}, '-', 0},
    {"view.frontView", turnedFront, {0, 90, 0}, 'x', 1},
    {"view.upView", turnedUp, {90, 0, 0}, 'y', 1},
    {"view.sideView", identityMatrix(), {0, 0, 0}, 'z', 1},
};

TEST(StandardViews, GiveRotationAnglesAndPrincipalDirection) {
    for (const StandardView& expected : standardViews) {
        SCOPED_TRACE(expected.command);
        ViewRig rig;
        rig.show(twoPatches());
        rig.view.modelRotation = rotationMatrix(50.0, {1, 2, 3});
        ASSERT_TRUE(rig.view.runViewCommand(expected.command));
        EXPECT_EQ(rig.view.modelRotation, expected.rotation);
        rig.paint();
        expectVector(rig.view.viewAngles, expected.angles, 1e-12);
        EXPECT_EQ(rig.view.viewAlongX, expected.along == 'x');
        EXPECT_EQ(rig.view.viewAlongY, expected.along == 'y');
        EXPECT_EQ(rig.view.viewAlongZ, expected.along == 'z');
    }
}

TEST(StandardViews, OnlyTheToolBarsFormsAskForARepaint) {
    for (const StandardView& expected : standardViews) {
        SCOPED_TRACE(expected.command);
        ViewRig rig;
        rig.show(twoPatches());
        const int before = rig.surface.repaints;
        rig.view.runViewCommand(expected.command);
        EXPECT_EQ(rig.surface.repaints - before, expected.repaints);
    }
}

TEST(StandardViews, ResetTheOffsetAndKeepZoomAndCentre) {
    for (const char* command : {"view.top", "view.left", "view.iso", "view.threeD", "view.sideView"}) {
        SCOPED_TRACE(command);
        ViewRig rig;
        rig.show(twoPatches());
        rig.view.modelOffset = {1, 2, 3};
        rig.view.zoomFactor = 0.25;
        rig.view.viewCentreX = 111.0;
        rig.view.viewCentreY = 222.0;
        rig.view.runViewCommand(command);
        EXPECT_EQ(rig.view.modelOffset, rig.view.defaultOffset);
        EXPECT_EQ(rig.view.zoomFactor, 0.25);
        EXPECT_EQ(rig.view.viewCentreX, 111.0);
        EXPECT_EQ(rig.view.viewCentreY, 222.0);
    }
}

TEST(StandardViews, LeaveTheMatrixInForceAlone) {
    ViewRig rig;
    rig.show(twoPatches());
    const Matrix4 before = rig.view.modelViewMatrix;
    rig.view.runViewCommand("view.top");
    EXPECT_EQ(rig.view.modelViewMatrix, before);
    rig.view.runViewCommand("view.iso");
    EXPECT_EQ(rig.view.modelViewMatrix, before);
}

TEST(IsoView, TurnsAboutXThenYThenZ) {
    for (const char* command : {"view.iso", "view.threeD"}) {
        SCOPED_TRACE(command);
        ViewRig rig;
        rig.show(twoPatches());
        rig.view.runViewCommand(command);
        const zVec<double> units[3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
        for (const zVec<double>& unit : units) {
            expectVector(test::sent(rig.view.modelRotation, unit), reference::eulerTurned(unit, {10, 20, 20}), 1e-15);
        }
        rig.paint();
        expectVector(rig.view.viewAngles, {10, 20, 20}, 1e-10);
        EXPECT_FALSE(rig.view.viewAlongX || rig.view.viewAlongY || rig.view.viewAlongZ);
    }
}

TEST(IsoView, OnlyTheToolBarsFormAsksForARepaint) {
    ViewRig rig;
    rig.show(twoPatches());
    const int before = rig.surface.repaints;
    rig.view.runViewCommand("view.iso");
    EXPECT_EQ(rig.surface.repaints, before);
    rig.view.runViewCommand("view.threeD");
    EXPECT_EQ(rig.surface.repaints, before + 1);
}

TEST(Paint, AnglesStayWhenTheMatrixIsNoRotation) {
    ViewRig rig;
    rig.show(twoPatches());
    rig.view.runViewCommand("view.top");
    rig.paint();
    rig.view.modelRotation = scaleMatrix({2, 2, 2});
    rig.paint();
    EXPECT_EQ(rig.view.viewAngles, zVec<double>(90, 0, 0));
    EXPECT_TRUE(rig.view.viewAlongY);
}

TEST(Paint, ThousandthOfADegreeIsNoPrincipalView) {
    ViewRig rig;
    rig.show(twoPatches());
    EXPECT_TRUE(rig.view.viewAlongZ);
    rig.view.SetEulerView({0, 0, 0.001});
    rig.paint();
    EXPECT_NEAR(rig.view.viewAngles.z, 0.001, 1e-9);
    EXPECT_FALSE(rig.view.viewAlongZ);
}

TEST(Paint, HalfOfATenThousandthOfADegreeIsStillThePrincipalView) {
    ViewRig rig;
    rig.show(twoPatches());
    rig.view.SetEulerView({0, 0, 0.00005});
    rig.paint();
    EXPECT_TRUE(rig.view.viewAlongZ);
}

// ---- Projections ----------------------------------------------------------------------------------------------------

TEST(ProjectionCommands, ChangeTheProjectionAndRepaint) {
    ViewRig rig;
    rig.show(twoPatches());
    const int before = rig.surface.repaints;
    rig.view.runViewCommand("view.orthographic");
    EXPECT_EQ(rig.view.projectionMode, 1);
    EXPECT_EQ(rig.view.projectionMatrix[15], 1.0);
    EXPECT_EQ(rig.surface.repaints, before + 1);
    rig.view.runViewCommand("view.perspective");
    EXPECT_EQ(rig.view.projectionMode, 0);
    EXPECT_EQ(rig.view.projectionMatrix[15], 0.0);
    EXPECT_EQ(rig.surface.repaints, before + 2);
}

TEST(ProjectionCommands, ProjectionThatIsOnDoesNothing) {
    ViewRig rig;
    rig.show(twoPatches());
    rig.view.zoomFactor = 0.5; // would show in a new projection
    const Matrix4 matrix = rig.view.projectionMatrix;
    const int before = rig.surface.repaints;
    rig.view.runViewCommand("view.perspective");
    EXPECT_EQ(rig.surface.repaints, before);
    EXPECT_EQ(rig.view.projectionMatrix, matrix);
}

// ---- Zoom Out and Fit -----------------------------------------------------------------------------------------------

TEST(ZoomOut, UndoesZoomCentreAndOffsetAndKeepsTheRotation) {
    ViewRig rig;
    rig.show(twoPatches());
    rig.view.runViewCommand("view.iso");
    const Matrix4 rotation = rig.view.modelRotation;
    const Matrix4 projection = rig.view.projectionMatrix;
    rig.view.zoomFactor = 0.0;
    rig.view.viewCentreX = 1.0;
    rig.view.viewCentreY = 2.0;
    rig.view.modelOffset = {7, 8, 9};
    rig.view.modelScale = {2, 2, 2};
    rig.view.UpdateProjection();
    const int before = rig.surface.repaints;
    rig.view.runViewCommand("view.zoomOut");
    EXPECT_EQ(rig.view.modelRotation, rotation);
    EXPECT_EQ(rig.view.zoomFactor, 1.0);
    EXPECT_EQ(rig.view.viewCentreX, 300.0);
    EXPECT_EQ(rig.view.viewCentreY, 300.0);
    EXPECT_EQ(rig.view.modelOffset, rig.view.defaultOffset);
    EXPECT_EQ(rig.view.modelScale, zVec<double>(1, 1, 1));
    EXPECT_EQ(rig.view.projectionMatrix, projection);
    EXPECT_EQ(rig.surface.repaints, before + 1);
}

TEST(FitToWindow, DoesNotKeepTheRotation) {
    ViewRig rig;
    rig.show(twoPatches());
    rig.view.runViewCommand("view.iso");
    rig.view.zoomFactor = 0.5;
    rig.call("view.fit");
    EXPECT_EQ(rig.view.modelRotation, identityMatrix());
    EXPECT_EQ(rig.view.zoomFactor, 1.0);
    EXPECT_EQ(rig.view.modelOffset, rig.view.defaultOffset);
}

// ---- Viewport Options -----------------------------------------------------------------------------------------------

/// The number that a field of the open dialog shows.
double shown(DialogForm& form, const char* key) {
    return *std::get<double*>(form.find(key)->value);
}

TEST(ViewportOptions, ShowAnglesDistancesAndScale) {
    ViewRig rig;
    rig.show(twoPatches());
    rig.view.runViewCommand("view.iso");
    rig.view.modelOffset = {1.5, -2.5, -70.0};
    rig.view.zoomFactor = 0.25;
    bool opened = false;
    rig.ui.onDialog = [&opened](DialogForm& form) {
        opened = true;
        EXPECT_EQ(form.title, "Viewport Options");
        EXPECT_NEAR(shown(form, "angleX"), 10.0, 1e-10);
        EXPECT_NEAR(shown(form, "angleY"), 20.0, 1e-10);
        EXPECT_NEAR(shown(form, "angleZ"), 20.0, 1e-10);
        EXPECT_EQ(shown(form, "distanceX"), 1.5);
        EXPECT_EQ(shown(form, "distanceY"), -2.5);
        EXPECT_EQ(shown(form, "distanceZ"), -70.0);
        EXPECT_EQ(shown(form, "scale"), 4.0);
    };
    EXPECT_TRUE(rig.view.runViewCommand("view.manual"));
    EXPECT_TRUE(opened);
}

// The angles are those of the matrix now, not of the last paint.
TEST(ViewportOptions, ShowTheAnglesOfAViewNotYetPainted) {
    ViewRig rig;
    rig.show(twoPatches());
    rig.view.runViewCommand("view.top");
    rig.ui.onDialog = [](DialogForm& form) { EXPECT_EQ(shown(form, "angleX"), 90.0); };
    rig.view.runViewCommand("view.manual");
}

TEST(ViewportOptions, ShowZerosWhenThereAreNoAngles) {
    ViewRig rig;
    rig.show(twoPatches());
    rig.view.runViewCommand("view.top");
    rig.paint();
    rig.view.modelRotation = scaleMatrix({2, 2, 2});
    rig.ui.onDialog = [](DialogForm& form) {
        EXPECT_EQ(shown(form, "angleX"), 0.0);
        EXPECT_EQ(shown(form, "angleY"), 0.0);
        EXPECT_EQ(shown(form, "angleZ"), 0.0);
    };
    rig.view.runViewCommand("view.manual");
}

TEST(ViewportOptions, OkTakesAnglesDistancesAndScale) {
    ViewRig rig;
    rig.show(twoPatches());
    rig.ui.dialogs.push_back({{"angleX", "0"},
                              {"angleY", "0"},
                              {"angleZ", "90"},
                              {"distanceX", "1.5"},
                              {"distanceY", "-2"},
                              {"distanceZ", "-80"},
                              {"scale", "4"}});
    const int before = rig.surface.repaints;
    rig.view.runViewCommand("view.manual");
    EXPECT_EQ(rig.view.modelRotation, (Matrix4{0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}));
    EXPECT_EQ(rig.view.modelOffset, zVec<double>(1.5, -2, -80));
    EXPECT_EQ(rig.view.zoomFactor, 0.25);
    EXPECT_EQ(rig.surface.repaints, before + 1);
}

TEST(ViewportOptions, OkWithoutAChangeRebuildsTheSameView) {
    ViewRig rig;
    rig.show(twoPatches());
    rig.view.SetEulerView({-30, 65, 140});
    rig.view.modelOffset = {1, 2, -50};
    rig.view.zoomFactor = 0.5;
    rig.view.UpdateProjection();
    const Matrix4 rotation = rig.view.modelRotation;
    const Matrix4 projection = rig.view.projectionMatrix;
    rig.ui.dialogs.push_back({});
    rig.view.runViewCommand("view.manual");
    expectMatrix(rig.view.modelRotation, rotation, 1e-12);
    expectMatrix(rig.view.projectionMatrix, projection, 1e-12);
    EXPECT_EQ(rig.view.modelOffset, zVec<double>(1, 2, -50));
}

TEST(ViewportOptions, ScaleTwoDoublesTheModelOnTheScreen) {
    ViewRig rig;
    rig.show(twoPatches());
    rig.useParallelProjection();
    const PixelPoint before = rig.pixelOf({0, 0, 0});
    rig.ui.dialogs.push_back({{"scale", "2"}});
    rig.view.runViewCommand("view.manual");
    EXPECT_EQ(rig.view.zoomFactor, 0.5);
    const PixelPoint after = rig.pixelOf({0, 0, 0});
    EXPECT_NEAR(after.x - 300, 2 * (before.x - 300), 1);
    EXPECT_NEAR(after.y - 299, 2 * (before.y - 299), 1);
}

TEST(ViewportOptions, CancelChangesNothing) {
    ViewRig rig;
    rig.show(twoPatches());
    rig.view.runViewCommand("view.iso");
    rig.view.modelOffset = {1, 2, -50};
    const Matrix4 rotation = rig.view.modelRotation;
    const Matrix4 projection = rig.view.projectionMatrix;
    const int before = rig.surface.repaints;
    EXPECT_TRUE(rig.view.runViewCommand("view.manual"));
    EXPECT_EQ(rig.ui.transcript.back(), "dialog: dlgViewing -> cancel");
    EXPECT_EQ(rig.view.modelRotation, rotation);
    EXPECT_EQ(rig.view.projectionMatrix, projection);
    EXPECT_EQ(rig.view.modelOffset, zVec<double>(1, 2, -50));
    EXPECT_EQ(rig.view.zoomFactor, 1.0);
    EXPECT_EQ(rig.surface.repaints, before);
}

// ---- The others -----------------------------------------------------------------------------------------------------

TEST(SurfaceCommand, FlipsTheModeAndRebuildsTheList) {
    ViewRig rig;
    rig.show(twoPatches());
    const int before = rig.surface.repaints;
    rig.view.runViewCommand("view.surface");
    EXPECT_GT(rig.surface.repaints, before);
    EXPECT_TRUE(rig.doc.surfaceMode);
    EXPECT_EQ(rig.view.list().number, 2);
    rig.view.runViewCommand("view.surface");
    EXPECT_FALSE(rig.doc.surfaceMode);
    EXPECT_EQ(rig.view.list().number, 1);
}

TEST(PreviousCommand, IsAlwaysOffAndOnlySaysSo) {
    ViewRig rig;
    rig.show(twoPatches());
    EXPECT_TRUE(rig.view.isViewCommandOff("view.previous"));
    EXPECT_TRUE(rig.view.runViewCommand("view.previous"));
    EXPECT_EQ(rig.ui.transcript.back(), "message: Not availabe");
}

TEST(ModeCommands, SetTheModeOfTheirNumber) {
    const std::pair<const char*, int> modes[] = {
        {"view.rotate", 0},     {"view.rotateX", 1}, {"view.rotateY", 2}, {"view.rotateZ", 3}, {"view.translateXY", 4},
        {"view.translateZ", 5}, {"view.shift", 6},   {"view.scale", 7},   {"view.zoomIn", 8},  {"view.measure", -1},
    };
    ViewRig rig;
    rig.show(twoPatches());
    for (const auto& [command, mode] : modes) {
        EXPECT_TRUE(rig.view.runViewCommand(command)) << command;
        EXPECT_EQ(rig.view.mouseMode, mode) << command;
        EXPECT_EQ(rig.surface.cursor, mode) << command;
    }
}

TEST(ViewCommands, AreOffWithoutAModelAndOnWithOne) {
    ViewRig rig;
    std::vector<std::string> ids;
    for (const Command& command : commandTable()) {
        if (command.owner == CommandOwner::View && std::string(command.id).starts_with("view.") &&
            std::string(command.id) != "view.previous") {
            ids.emplace_back(command.id);
        }
    }
    // 6 standard views, iso, oblique, 4 views of the tool bar, 10 modes, 2 projections and the other one, Manual,
    // Zoom Out, 2 fits, the view before, Surface, its edges and back faces.
    EXPECT_EQ(ids.size(), 33U);
    for (const std::string& id : ids) {
        EXPECT_TRUE(rig.view.isViewCommandOff(id)) << id;
    }
    rig.show(twoPatches());
    for (const std::string& id : ids) {
        EXPECT_FALSE(rig.view.isViewCommandOff(id)) << id;
        EXPECT_TRUE(rig.view.runViewCommand(id)) << id;
    }
}

TEST(ViewCommands, UnknownNameIsNotTaken) {
    ViewRig rig;
    EXPECT_FALSE(rig.view.runViewCommand("view.sideways"));
    EXPECT_FALSE(rig.view.runViewCommand("file.open"));
    EXPECT_FALSE(rig.view.runViewCommand(""));
}

} // namespace
} // namespace velmora
