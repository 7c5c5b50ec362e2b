#include "arranged_capture.h"
#include "view_rig.h"

namespace velmora {
namespace {

using test::expectVector;
using test::twoPatches;
using test::ViewRig;

const Colour red{1, 0, 0, 1};
const Colour green{0, 1, 0, 1};
const Colour yellow{1, 1, 0, 1};
const Colour white{1, 1, 1, 1};

struct Corner {
    double x;
    double y;
};

/// One batch of the triad: positions in pixels from the lower left.
struct Expected {
    Primitive primitive;
    Colour colour;
    float pointSize;
    float lineWidth;
    std::vector<Corner> corners;
};

/// The batches of the triad, with the tips of X, Y and Z and the corners of the triangle worked out by hand.
std::vector<Expected> triadOf(Corner origin, Corner x, Corner y, Corner z, const std::vector<Corner>& triangle) {
    const auto letterX =
        std::vector<Corner>{{x.x + 4, x.y + 5}, {x.x + 12, x.y - 5}, {x.x + 4, x.y - 5}, {x.x + 12, x.y + 5}};
    const auto letterY = std::vector<Corner>{{y.x, y.y + 5}, {y.x + 4, y.y},     {y.x + 8, y.y + 5},
                                             {y.x + 4, y.y}, {y.x + 4, y.y - 5}, {y.x + 4, y.y}};
    const auto letterZ = std::vector<Corner>{{z.x, z.y + 5},     {z.x + 8, z.y + 5}, {z.x, z.y - 5},
                                             {z.x + 8, z.y + 5}, {z.x, z.y - 5},     {z.x + 8, z.y - 5}};
    return {
        {Primitive::Lines, red, 1, 1, {origin, x}},    {Primitive::Points, red, 3, 1, {x}},
        {Primitive::Lines, green, 1, 1, {origin, y}},  {Primitive::Points, green, 3, 1, {y}},
        {Primitive::Lines, yellow, 1, 1, {origin, z}}, {Primitive::Points, yellow, 3, 1, {z}},
        {Primitive::Lines, red, 1, 2, letterX},        {Primitive::Lines, green, 1, 2, letterY},
        {Primitive::Lines, yellow, 1, 2, letterZ},     {Primitive::Triangles, white, 1, 1, triangle},
    };
}

void expectTriad(ViewRig& rig, const std::vector<Expected>& expected) {
    rig.paint();
    const DrawList& list = rig.view.overlay().list;
    const SceneFrame& frame = rig.surface.lastFrame;
    ASSERT_EQ(list.batches.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        SCOPED_TRACE("batch " + std::to_string(i));
        const DrawBatch& batch = list.batches[i];
        EXPECT_EQ(batch.primitive, expected[i].primitive);
        EXPECT_EQ(batch.colour, expected[i].colour);
        EXPECT_EQ(batch.pointSize, expected[i].pointSize);
        EXPECT_EQ(batch.lineWidth, expected[i].lineWidth);
        EXPECT_EQ(batch.outlineFront, expected[i].primitive == Primitive::Triangles);
        EXPECT_FALSE(batch.lit);
        ASSERT_EQ(batch.vertexCount, expected[i].corners.size());
        for (std::size_t v = 0; v < batch.vertexCount; ++v) {
            const auto at =
                projectPoint(list.vertices[batch.firstVertex + v], frame.modelView, frame.projection, frame.viewport);
            ASSERT_TRUE(at);
            expectVector(*at, {expected[i].corners[v].x, expected[i].corners[v].y, 0.01}, 1e-6);
        }
    }
}

TEST(Triad, StandsInTheUpperLeftCornerOfTheUnturnedView) {
    for (const int projection : {0, 1}) {
        ViewRig rig;
        rig.show(twoPatches());
        rig.view.runViewCommand(projection == 1 ? "view.orthographic" : "view.perspective");
        rig.view.OnSize(800, 500);
        // H - 44 = 456. Z points at the eye: its tip is the origin.
        expectTriad(rig, triadOf({40, 456}, {76, 456}, {40, 492}, {40, 456}, {{60, 456}, {40, 474}, {40, 456}}));
    }
}

TEST(Triad, TurnsWithTheModelSeenFromTheTop) {
    ViewRig rig;
    rig.show(twoPatches());
    rig.view.runViewCommand("view.top");
    // A quarter turn about X: Y points at the eye, Z down.
    expectTriad(rig, triadOf({40, 556}, {76, 556}, {40, 556}, {40, 520}, {{60, 556}, {40, 556}, {40, 538}}));
}

TEST(Triad, TurnsWithTheModelAboutZ) {
    ViewRig rig;
    rig.show(twoPatches());
    rig.view.SetEulerView({0, 0, 30});
    const double c = 36 * std::sqrt(3.0) / 2;
    const double cornerC = std::sqrt(3.0) / 2;
    // The triangle is 20 pixels wide and 18 high per unit.
    expectTriad(rig, triadOf({40, 556}, {40 + c, 556 + 18}, {40 - 18, 556 + c}, {40, 556},
                             {{40 + 20 * cornerC, 556 + 9}, {40 - 10, 556 + 18 * cornerC}, {40, 556}}));
}

TEST(Triad, KeepsItsSizeUnderZoomAndShift) {
    ViewRig rig;
    rig.show(twoPatches());
    rig.view.zoomFactor = 0.05;
    rig.view.viewCentreX = 420.0;
    rig.view.modelOffset = rig.view.modelOffset + zVec<double>(3, 4, 5);
    rig.view.UpdateProjection();
    expectTriad(rig, triadOf({40, 556}, {76, 556}, {40, 592}, {40, 556}, {{60, 556}, {40, 574}, {40, 556}}));
}

TEST(Triad, IsAsLargeToTheEyeWhereAPixelIsFiner) {
    ViewRig rig;
    rig.surface.scale = 2.0;
    rig.show(twoPatches());
    rig.paint();
    const DrawList& list = rig.view.overlay().list;
    const SceneFrame& frame = rig.surface.lastFrame;
    ASSERT_FALSE(list.batches.empty());
    // The stroke of X: 40 pixels right of and 44 below the corner, 36 long, each two of the surface's.
    const Corner ends[] = {{80, 600 - 88}, {152, 600 - 88}};
    for (std::size_t v = 0; v < 2; ++v) {
        const auto at = projectPoint(list.vertices[v], frame.modelView, frame.projection, frame.viewport);
        ASSERT_TRUE(at);
        expectVector(*at, {ends[v].x, ends[v].y, 0.01}, 1e-6);
    }
}

TEST(Triad, StandsBehindTheCapturedPointInDrawingOrder) {
    ViewRig rig;
    rig.show(twoPatches());
    rig.doc.capture.showPoint();
    rig.doc.capture.placePoint({2, 1, 0});
    rig.paint();
    const DrawList& list = rig.view.overlay().list;
    ASSERT_EQ(list.batches.size(), 12U);
    EXPECT_EQ(list.batches[0].primitive, Primitive::Points);
    EXPECT_EQ(list.batches[0].colour, white);
    EXPECT_EQ(list.batches[0].pointSize, 6.0F);
    EXPECT_EQ(list.vertices[list.batches[0].firstVertex], zVec<double>(2, 1, 0));
    EXPECT_EQ(list.batches[1].primitive, Primitive::Points);
    EXPECT_EQ(list.batches[1].colour, red);
    EXPECT_EQ(list.batches[1].pointSize, 8.0F);
    EXPECT_FALSE(list.batches[0].framing);
    EXPECT_TRUE(list.batches[1].framing);
    EXPECT_EQ(list.vertices[list.batches[1].firstVertex], zVec<double>(2, 1, 0));
    EXPECT_EQ(list.batches[2].primitive, Primitive::Lines);
}

TEST(Triad, IsDrawnWithoutACapturedPointToo) {
    ViewRig rig;
    rig.show(twoPatches());
    rig.doc.capture.placePoint({2, 1, 0});
    rig.paint();
    EXPECT_EQ(rig.view.overlay().list.batches.size(), 10U);
}

} // namespace
} // namespace velmora
