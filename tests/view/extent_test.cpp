#include "vectors.h"
#include "view_rig.h"

namespace velmora {
namespace {

using test::flatPatch;
using test::ViewRig;

// Models that are no size, or too large for squares of their coordinates: they are seen and picked all the same.

PatchList grownFlatPatch(double factor) {
    PatchList patches{flatPatch(3, 5)};
    for (PointList& section : patches[0]) {
        for (zVec<double>& point : section) {
            point = point * factor;
        }
    }
    return patches;
}

bool allFinite(const Matrix4& matrix) {
    return std::all_of(matrix.begin(), matrix.end(), [](double value) { return std::isfinite(value); });
}

struct Place {
    const char* name;
    zVec<double> point;
};

const Place places[] = {{"origin", {0, 0, 0}}, {"near", {1, 2, 3}}, {"far", {1e9, -2e9, 0}}, {"below", {0, 0, -7}}};

TEST(ModelWithoutExtent, IsSeenInTheMiddleAndPicked) {
    for (const int projection : {0, 1}) {
        for (const Place& place : places) {
            SCOPED_TRACE(place.name);
            ViewRig rig;
            rig.show({{{place.point, place.point}, {place.point, place.point}}});
            rig.view.runViewCommand(projection == 0 ? "view.perspective" : "view.orthographic");
            EXPECT_TRUE(allFinite(rig.view.projectionMatrix));
            EXPECT_GT(rig.doc.modelRadius, 0.0);
            const PixelPoint pixel = rig.pixelOf(place.point);
            EXPECT_EQ(pixel, (PixelPoint{300, 299}));
            rig.call("point.capture");
            EXPECT_TRUE(rig.pick(place.point));
            EXPECT_EQ(rig.doc.capture->capturedPointPos, place.point);
            EXPECT_FALSE(rig.view.PickPoint({100, 100})) << "far from the point";
        }
    }
}

TEST(ModelWithoutExtent, IsTold) {
    ViewRig rig;
    rig.show({{{{1, 2, 3}}, {{1, 2, 3}}}});
    EXPECT_EQ(rig.doc.status, "All points of the model lie in one place");
    rig.call("view.fit");
    EXPECT_EQ(rig.doc.status, "All points of the model lie in one place");
}

TEST(ModelWithoutExtent, TurnsAndMovesWithTheMouse) {
    ViewRig rig;
    rig.show({{{{1, 2, 3}, {1, 2, 3}}, {{1, 2, 3}, {1, 2, 3}}}});
    for (const char* mode : {"view.rotate", "view.rotateX", "view.translateXY", "view.translateZ"}) {
        rig.view.runViewCommand(mode);
        rig.drag({200, 200}, {260, 230});
        rig.view.OnLeftButtonUp({260, 230});
        EXPECT_TRUE(allFinite(rig.view.modelRotation)) << mode;
        EXPECT_TRUE(std::isfinite(lengthOf(rig.view.modelOffset))) << mode;
    }
}

TEST(VastModel, ProjectsAndPicksItsPoints) {
    for (const int projection : {0, 1}) {
        for (const double size : {1e20, 1e60, 1e100, 1e160, 1e290}) {
            SCOPED_TRACE(size);
            ViewRig rig;
            rig.show(grownFlatPatch(size));
            rig.view.runViewCommand(projection == 0 ? "view.perspective" : "view.orthographic");
            EXPECT_TRUE(allFinite(rig.view.projectionMatrix));
            // The patch is 4 by 2 with its middle at (2, 1): a corner stands left of and below the middle.
            const PixelPoint corner = rig.pixelOf({0, 0, 0});
            EXPECT_LT(corner.x, 290);
            EXPECT_GT(corner.x, 0);
            EXPECT_GT(corner.y, 310);
            rig.call("point.capture");
            const zVec<double> third = rig.doc.patches[0][1][3];
            EXPECT_TRUE(rig.pick(third));
            EXPECT_EQ(rig.doc.capture->capturedPointPos, third);
            EXPECT_FALSE(rig.view.PickPoint({5, 5}));
        }
    }
}

TEST(VastModel, GivesItsPatchesAndZonesToAClick) {
    for (const int projection : {0, 1}) {
        for (const double size : {1e20, 1e76, 1e100, 1e160, 1e290}) {
            SCOPED_TRACE(size);
            ViewRig rig;
            PatchList patches = grownFlatPatch(size);
            patches.push_back(patches[0]);
            for (PointList& section : patches[1]) {
                for (zVec<double>& point : section) {
                    point.z = -size; // behind the first
                }
            }
            rig.show(patches);
            rig.view.runViewCommand(projection == 0 ? "view.perspective" : "view.orthographic");
            const zVec<double> inside = zVec<double>(1.3, 0.6, 0) * size;
            EXPECT_EQ(rig.view.PickPatch(rig.pixelOf(inside)), 0);
            EXPECT_EQ(rig.view.PickPatch({5, 5}), -1);
        }
    }
}

TEST(VastModel, HasABoxOfItsOwnNumbers) {
    ViewRig rig;
    PatchList patches = grownFlatPatch(1e200);
    for (PointList& section : patches[0]) {
        for (zVec<double>& point : section) {
            point = point + zVec<double>(1e201, 1e201, 1e201);
        }
    }
    rig.show(patches);
    EXPECT_EQ(rig.doc.boxMin, patches[0].front().front());
    EXPECT_EQ(rig.doc.boxMax, patches[0].back().back());
    EXPECT_EQ(rig.doc.status, "Coordinates beyond 3.4e+38 can be edited and saved, not drawn");
}

TEST(UsualModel, TellsNothingOfItsSize) {
    ViewRig rig;
    rig.show({flatPatch(3, 5)});
    EXPECT_EQ(rig.doc.status, idlePrompt);
}

// ---- What a scaled line of sight finds ------------------------------------------------------------------------------

TEST(LineDistance, OfVastLinesIsThatOfTheSameLineScaled) {
    const PixelLine plain{{0, 0, 10}, {1, 2, -30}};
    const zVec<double> point{3, 4, 5};
    const double distance = LineDistance(plain)(point);
    for (const int exponent : {250, 600, 900}) {
        const double factor = std::ldexp(1.0, exponent);
        const PixelLine vast{plain.nearPoint * factor, plain.farPoint * factor};
        EXPECT_DOUBLE_EQ(LineDistance(vast)(point * factor), distance * factor) << exponent;
    }
}

TEST(UnprojectPoint, IsTheWayBackAtEverySize) {
    const Viewport viewport{0, 0, 400, 300};
    for (const double radius : {1e-90, 1e-20, 1.0, 1e20, 1e90, 1e200, 1e299}) {
        SCOPED_TRACE(radius);
        const double nearPlane = 0.1 * radius;
        const double s = nearPlane / (28.0 * radius);
        const Matrix4 projections[] = {
            orthographicMatrix(-radius, radius, -radius, radius, nearPlane, 250.0 * radius),
            frustumMatrix(-s * radius, s * radius, -s * radius, s * radius, nearPlane, 250.0 * radius)};
        const Matrix4 modelView = translationMatrix({0, 0, -28.0 * radius}) * rotationMatrix(30.0, {1, 2, 3});
        const zVec<double> point = zVec<double>(0.3, -0.2, 0.5) * radius;
        for (const Matrix4& projection : projections) {
            const auto window = projectPoint(point, modelView, projection, viewport);
            ASSERT_TRUE(window);
            const auto back = unprojectPoint(*window, modelView, projection, viewport);
            ASSERT_TRUE(back);
            // Depth is told over 250 radii: what rounding leaves of it is the largest part.
            EXPECT_NEAR(back->x / radius, 0.3, 1e-8);
            EXPECT_NEAR(back->y / radius, -0.2, 1e-8);
            EXPECT_NEAR(back->z / radius, 0.5, 1e-8);
        }
    }
}

// ---- A still click --------------------------------------------------------------------------------------------------

TEST(StillClick, StartsNoSpin) {
    for (const char* mode : {"view.rotate", "view.rotateX", "view.rotateY", "view.rotateZ"}) {
        ViewRig rig;
        rig.show({flatPatch(3, 5)});
        rig.view.runViewCommand(mode);
        rig.clickPixel({200, 200});
        EXPECT_FALSE(rig.view.spinActive || rig.view.spinTimerOn) << mode;
        rig.view.OnLeftButtonDown({200, 200});
        rig.view.OnLeftButtonUp({203, 202}); // less than what counts as a move
        EXPECT_FALSE(rig.view.spinActive || rig.view.spinTimerOn) << mode;
    }
}

TEST(StillClick, ADragThatComesToRestStillSpins) {
    ViewRig rig;
    rig.show({flatPatch(3, 5)});
    rig.view.runViewCommand("view.rotate");
    rig.drag({200, 200}, {230, 210});
    rig.view.OnLeftButtonUp({230, 210});
    EXPECT_TRUE(rig.view.spinActive);
}

// ---- The zBlock's colours -------------------------------------------------------------------------------------------

TEST(BlockColours, StayWhateverRegimeWaitsForItsClick) {
    const Colour blockColour{1.0F, 1.0F, 0.1F, 1.0F};
    for (const char* arm : {"point.capture", "point.free.line", "block.invert"}) {
        ViewRig rig;
        rig.show({flatPatch(3, 5), flatPatch(2, 4)});
        rig.putIntoBlock({0});
        rig.redrawPicture();
        rig.call(arm);
        ASSERT_EQ(rig.doc.blockCount, 1);
        rig.paint();
        const auto member = rig.doc.blockList[0];
        const DrawList& list = rig.view.list();
        const bool coloured = std::any_of(list.batches.begin(), list.batches.end(), [&](const DrawBatch& batch) {
            return batch.colour == blockColour && batch.vertexCount > 1;
        });
        EXPECT_TRUE(coloured) << "patch " << member;
    }
}

} // namespace
} // namespace velmora
