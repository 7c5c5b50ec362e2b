#include "view_rig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "draw_dump.h"
#include "small_zones.h"

namespace velmora {
namespace {

using namespace test;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const Colour orange{1.0F, 0.6F, 0.0F, 1.0F};

/// A person looks at two patches side by side.
struct HoverRig : ViewRig {
    HoverRig() {
        show(twoPatches());
        surface.watched = true;
    }
    std::vector<std::string> pointed() {
        paint();
        return dump(*surface.lastFrame.pointed);
    }
    void moveTo(const zVec<double>& point) { view.OnMouseMove(pixelOf(point)); }
};

TEST(Hover, MarksTheSectionThatAClickWouldTakeAndTellsItsNumbers) {
    HoverRig rig;
    rig.call("line.captureSection");
    rig.ui.transcript.clear();
    rig.moveTo({11, 2, 0});
    ASSERT_TRUE(rig.view.candidate().has_value());
    EXPECT_EQ(rig.view.candidate()->patch, 1);
    EXPECT_EQ(rig.view.candidate()->section, 2);
    EXPECT_EQ(rig.surface.hint, "Patch K=2, Section N=3, Points M=4");
    EXPECT_EQ(rig.pointed().front(), "wide " + strip(orange, {{10, 2, 0}, {11, 2, 0}, {12, 2, 0}, {13, 2, 0}}));
    // It is no capture.
    EXPECT_EQ(rig.doc.capture->capturedSection, -1);
    EXPECT_TRUE(rig.doc.capture->sectionCaptureArmed);
    EXPECT_THAT(rig.ui.transcript, IsEmpty()) << "the prompt stays";
    rig.click({11, 2, 0});
    EXPECT_EQ(rig.doc.capture->capturedSection, 2);
}

TEST(Hover, FollowsEachPixelAndNotOnlyStepsOfSix) {
    HoverRig rig;
    rig.call("line.captureSection");
    const PixelPoint at = rig.pixelOf({11, 1, 0});
    PixelPoint mouse = rig.pixelOf({11, 2, 0});
    rig.view.OnMouseMove(mouse);
    ASSERT_EQ(rig.view.candidate()->section, 2);
    const int step = at.y > mouse.y ? 1 : -1;
    const int painted = rig.surface.repaints - rig.surface.sameFrames;
    for (int moves = 0; rig.surface.repaints - rig.surface.sameFrames == painted; ++moves) {
        ASSERT_LT(moves, 1000);
        mouse.y += step;
        rig.view.OnMouseMove(mouse);
    }
    EXPECT_FALSE(rig.view.candidate() && rig.view.candidate()->section == 2) << "the very pixel that takes it away";
}

TEST(Hover, AlongWhatIsMarkedPaintsNothing) {
    HoverRig rig;
    rig.call("line.captureSection");
    const PixelPoint at = rig.pixelOf({11, 1, 0});
    rig.view.OnMouseMove(at);
    ASSERT_TRUE(rig.view.candidate());
    const auto painted = [&rig] { return rig.surface.repaints - rig.surface.sameFrames; };
    const int before = painted();
    for (int i = 1; i < 10; ++i) {
        rig.view.OnMouseMove({at.x + i, at.y});
    }
    EXPECT_EQ(painted(), before);
    rig.view.OnMouseLeave();
    EXPECT_EQ(painted(), before + 1);
    rig.view.OnMouseMove(at);
    EXPECT_EQ(painted(), before + 2) << "marked anew";
}

TEST(Hover, TellsOfPointsLinesPatchesAndNodes) {
    HoverRig rig;
    rig.call("point.capture");
    rig.moveTo({2, 1, 0});
    EXPECT_EQ(rig.surface.hint, "Patch K=1, Section N=2, Point M=3  X=2.000000, Y=1.000000, Z=0.000000");
    EXPECT_THAT(rig.pointed(), ElementsAre(point(8, orange, {2, 1, 0}), point(4, white, {2, 1, 0})));
    rig.call("line.captureLine");
    rig.moveTo({12, 1, 0});
    EXPECT_EQ(rig.surface.hint, "Patch K=2, Line N=3, Points M=3");
    rig.call("patch.capture");
    rig.moveTo({10.5, 0.5, 0});
    EXPECT_EQ(rig.surface.hint, "Patch K=2");
    EXPECT_EQ(rig.pointed().size(), 4U) << "its sides";
}

TEST(Hover, EndsWhereNothingIsNearAtTheClickAndWhenTheMouseLeaves) {
    HoverRig rig;
    rig.call("point.capture");
    rig.moveTo({2, 1, 0});
    ASSERT_FALSE(rig.surface.hint.empty());
    rig.moveTo({6.5, 1, 0});
    EXPECT_EQ(rig.surface.hint, "");
    EXPECT_THAT(rig.pointed(), IsEmpty());
    rig.moveTo({2, 1, 0});
    rig.press({2, 1, 0});
    EXPECT_FALSE(rig.view.candidate().has_value());
    EXPECT_EQ(rig.surface.hint, "");
    rig.release({6.5, 1, 0});
    rig.call("point.capture");
    rig.moveTo({1, 1, 0});
    ASSERT_FALSE(rig.surface.hint.empty());
    rig.view.OnMouseLeave();
    EXPECT_EQ(rig.surface.hint, "");
}

TEST(Hover, IsNotThereOutsideARegimeInAViewModeAndWhereNobodyLooks) {
    HoverRig rig;
    rig.moveTo({2, 1, 0});
    EXPECT_FALSE(rig.view.candidate().has_value());
    rig.call("point.capture");
    rig.view.setMouseMode(ModeRotate);
    rig.moveTo({1, 1, 0});
    EXPECT_FALSE(rig.view.candidate().has_value());
    rig.view.setMouseMode(ModeRotate);
    rig.surface.watched = false;
    rig.moveTo({2, 1, 0});
    EXPECT_FALSE(rig.view.candidate().has_value());
}

TEST(Hover, AnEditTakesTheMarkAway) {
    HoverRig rig;
    rig.call("point.capture");
    rig.moveTo({2, 1, 0});
    rig.updateBounds();
    EXPECT_THAT(rig.pointed(), IsEmpty());
}

// ---- What is in sight -----------------------------------------------------------------------------------------------

/// A near plate of cells of size 1 at z = 1 and a far one at z = 0, whose points stand in the middle of the near one's
/// cells.
PatchList plates() {
    Patch nearPlate(4);
    Patch farPlate(3);
    for (int n = 0; n < 4; ++n) {
        for (int m = 0; m < 4; ++m) {
            nearPlate[static_cast<std::size_t>(n)].emplace_back(m, n, 1.0);
            if (n < 3 && m < 3) {
                farPlate[static_cast<std::size_t>(n)].emplace_back(m + 0.5, n + 0.5, 0.0);
            }
        }
    }
    return {farPlate, nearPlate};
}

struct SightRig : ViewRig {
    SightRig() {
        show(plates());
        useParallelProjection();
        toggleSurface();
        surface.watched = true;
        call("line.captureSection");
    }
    std::int32_t patchAt(const zVec<double>& point) {
        view.OnMouseMove(pixelOf(point));
        return view.candidate() ? view.candidate()->patch : -1;
    }
};

TEST(Sight, APointBehindTheSurfaceGivesWayToTheCornerOfTheCellUnderTheMouse) {
    SightRig rig;
    // Right over the far point (1.5, 1.5); the corners of the cell are 0.7 away, a section's limit is a twentieth of
    // the diagonal of 4.36.
    EXPECT_EQ(rig.patchAt({1.5, 1.5, 0}), 0) << "no corner lies near enough: the hidden one is meant after all";
    // Near the far point (1.5, 1.5) is nothing of the near plate; at 0.15 from the corner (1, 1) it is.
    EXPECT_EQ(rig.patchAt({1.1, 1.1, 0}), 1);
}

TEST(Sight, AHiddenPointThatIsNearerThanTheCornerIsNotMeant) {
    SightRig rig;
    // The limit of a line is half of the diagonal: a corner is near enough everywhere.
    rig.call("line.captureLine");
    EXPECT_EQ(rig.patchAt({1.5, 1.5, 0}), 1);
    rig.click({1.5, 1.5, 0});
    EXPECT_EQ(rig.doc.capture->capturedPatch, 1);
}

TEST(Sight, OfWiresAndInScriptsTheNearestPointCountsWhereverItLies) {
    SightRig rig;
    rig.call("line.captureLine");
    rig.toggleSurface();
    EXPECT_EQ(rig.patchAt({1.5, 1.5, 0}), 0);
    rig.toggleSurface();
    rig.surface.watched = false;
    rig.click({1.5, 1.5, 0});
    EXPECT_EQ(rig.doc.capture->capturedPatch, 0);
}

TEST(Sight, FromTheOtherSideTheOtherPlateIsMeant) {
    SightRig rig;
    rig.call("line.captureLine");
    rig.view.runViewCommand("view.right");
    // Seen from behind the corner (2, 2) of the near plate is hidden by the far one's cells.
    EXPECT_EQ(rig.patchAt({2, 2, 1}), 0);
}

TEST(Sight, OfZonesTheNodeOfTheFrontTriangleIsMeant) {
    ViewRig rig;
    // A small triangle behind a large one: its first node stands just beside that of the large one.
    rig.doc.feRegion = triangleRegion(
        {{0, 0, 1}, {3, 0, 1}, {0, 3, 1}, {0.05, 0.05, 0}, {0.1, 0.05, 0}, {0.05, 0.1, 0}}, {0, 1, 2, 3, 4, 5});
    rig.doc.structureKind = StructureKind::Unstructured;
    rig.updateBounds();
    rig.useParallelProjection();
    rig.toggleSurface();
    rig.surface.watched = true;
    rig.call("point.capture");
    rig.view.zoomFactor = 0.1;
    rig.view.viewCentreX = 100.0;
    rig.view.viewCentreY = 100.0;
    rig.view.UpdateProjection();
    // 0.035 from the large one's node, 0.035 from the small one's; the limit is 0.043.
    rig.view.OnMouseMove(rig.pixelOf({0.026, 0.026, 0}));
    ASSERT_TRUE(rig.view.candidate().has_value());
    EXPECT_EQ(rig.view.candidate()->point, 0);
    rig.surface.watched = false;
    EXPECT_TRUE(rig.pick({0.026, 0.026, 0}));
    EXPECT_EQ(rig.doc.capture->capturedPoint, 3);
}

} // namespace
} // namespace velmora
