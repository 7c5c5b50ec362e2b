#include "picture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "view_rig.h"

namespace velmora {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr Colour white{1.0F, 1.0F, 1.0F, 1.0F};
constexpr Colour red{1.0F, 0.0F, 0.0F, 1.0F};

/// A picture of 200 by 100 pixels in which x and y from -1 to 1 are seen.
class SvgPicture : public testing::Test {
protected:
    std::string svg() {
        SceneFrame frame;
        frame.list = &list;
        frame.held = &held;
        frame.overlay = &overlay;
        frame.modelView = identityMatrix();
        frame.projection = identityMatrix();
        frame.pixelScale = scale;
        return svgOf(frame, settings);
    }
    void addLine(const zVec<double>& from, const zVec<double>& to, const Colour& colour) {
        list.begin(Primitive::Lines, colour);
        list.addVertices({from, to});
    }

    DrawList list;
    DrawList held;
    Overlay overlay;
    PictureSettings settings{200, 100, PictureGround::Black, true};
    double scale = 1.0;
};

TEST_F(SvgPicture, OfNothingIsItsGround) {
    EXPECT_EQ(svg(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                     "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"200\" height=\"100\">\n"
                     "<rect width=\"200\" height=\"100\" fill=\"#000000\"/>\n</svg>\n");
    settings.ground = PictureGround::White;
    EXPECT_THAT(svg(), HasSubstr("fill=\"#ffffff\""));
    settings.ground = PictureGround::Clear;
    EXPECT_THAT(svg(), Not(HasSubstr("rect")));
}

TEST_F(SvgPicture, HasItsUpperLeftAtMinusOneAndOne) {
    addLine({-1, 1, 0}, {0.5, -0.25, 0}, red);
    EXPECT_THAT(svg(), HasSubstr("<path d=\"M0 0L150 62.5\" fill=\"none\" stroke=\"#ff0000\" stroke-width=\"1\"/>"));
}

TEST_F(SvgPicture, OnAWhiteGroundWhiteLinesAreBlack) {
    settings.ground = PictureGround::White;
    addLine({-1, 0, 0}, {1, 0, 0}, white);
    addLine({-1, 0, 0}, {1, 0, 0}, red);
    EXPECT_THAT(svg(), HasSubstr("stroke=\"#000000\""));
    EXPECT_THAT(svg(), HasSubstr("stroke=\"#ff0000\""));
    settings.ground = PictureGround::Clear;
    EXPECT_THAT(svg(), HasSubstr("stroke=\"#ffffff\""));
}

TEST_F(SvgPicture, WhatIsHeldStandsOverTheModel) {
    addLine({-1, 0, 0}, {1, 0, 0}, red);
    const std::string without = svg();
    held.begin(Primitive::Lines, white);
    held.addVertices({{0, 1, 0}, {0, -1, 0}});
    const std::string line = "<path d=\"M100 0L100 100\" fill=\"none\" stroke=\"#ffffff\" stroke-width=\"1\"/>\n";
    EXPECT_EQ(svg(), std::string(without).insert(without.find("</svg>"), line));
}

TEST(Picture, OfASurfaceShowsEdgesAndBacksAndWhatIsHeld) {
    test::ViewRig rig;
    rig.show(test::twoPatches());
    rig.doc.surfaceMode = true;
    rig.view.edgesShown = true;
    rig.view.backFacesFilled = true;
    rig.call("line.captureSection");
    rig.click(rig.doc.patches[0][0][1]);
    ASSERT_TRUE(rig.doc.capture->sectionCaptured);
    withPicture(rig.view, rig.doc, {200, 100, PictureGround::Black, true}, [&](const SceneFrame& frame) {
        EXPECT_TRUE(frame.filled);
        EXPECT_TRUE(frame.edges);
        EXPECT_TRUE(frame.backFilled);
        ASSERT_NE(frame.held, nullptr);
        const PointList& section = rig.doc.patches[static_cast<std::size_t>(rig.doc.capture->capturedPatch)]
                                                  [static_cast<std::size_t>(rig.doc.capture->capturedSection)];
        EXPECT_THAT(frame.held->vertices, testing::IsSupersetOf(section)) << "the captured section";
    });
}

TEST_F(SvgPicture, LinesAreCutAtItsSides) {
    addLine({-3, 0, 0}, {1, 0, 0}, red);
    EXPECT_THAT(svg(), HasSubstr("d=\"M0 50L200 50\""));
    list.clear();
    addLine({-3, 0, 0}, {-2, 0.5, 0}, red);
    addLine({0, 0, -5}, {0, 1, -4}, red); // in front of what is seen
    EXPECT_THAT(svg(), Not(HasSubstr("path")));
}

TEST_F(SvgPicture, AStripIsALineFromPointToPointAndAFaceItsOutline) {
    list.begin(Primitive::LineStrip, red);
    list.addVertices({{-1, 0, 0}, {0, 0, 0}, {0, 1, 0}});
    EXPECT_THAT(svg(), HasSubstr("d=\"M0 50L100 50M100 50L100 0\""));
    list.clear();
    list.begin(Primitive::Triangles, red);
    list.addVertices({{-1, 0, 0}, {0, 0, 0}, {0, 1, 0}});
    EXPECT_THAT(svg(), HasSubstr("d=\"M0 50L100 50M100 50L100 0M100 0L0 50\""));
    list.clear();
    list.begin(Primitive::QuadStrip, red);
    list.addVertices({{-1, 1, 0}, {-1, 0, 0}, {0, 1, 0}, {0, 0, 0}});
    EXPECT_THAT(svg(), HasSubstr("d=\"M0 0L0 50M0 0L100 0M0 50L100 50M100 0L100 50\""));
}

TEST_F(SvgPicture, APointIsASquareOfItsSize) {
    overlay.list.point({0, 0, 0}, 6.0F, red);
    EXPECT_THAT(svg(), HasSubstr("<path d=\"M97 47h6v6h-6z\" fill=\"#ff0000\"/>"));
}

TEST_F(SvgPicture, TextsStandAtTheirPlaces) {
    overlay.texts.push_back({"<7&", {0, 0, 0}, red});
    overlay.texts.push_back({"out", {2, 0, 0}, red});
    EXPECT_THAT(svg(), HasSubstr("<text x=\"100\" y=\"50\" fill=\"#ff0000\" font-size=\"12\">&lt;7&amp;</text>"));
    EXPECT_THAT(svg(), Not(HasSubstr("out")));
}

// 10 to the right and 6 up, on letters that are thicker by 3 on each side.
TEST_F(SvgPicture, ATextOnAPlateStandsBesideItsPlaceOnBlack) {
    overlay.texts.push_back({"7", {0, 0, 0}, red, TextPlate::Side::Above});
    EXPECT_THAT(svg(), HasSubstr("<text x=\"110\" y=\"44\" fill=\"#000000\" stroke=\"#000000\" stroke-width=\"6\" "
                                 "stroke-linejoin=\"round\" font-size=\"12\">7</text>\n"
                                 "<text x=\"110\" y=\"44\" fill=\"#ff0000\" font-size=\"12\">7</text>"));
}

// Its upper edge is 6 below the place: with letters of 12 its foot is 18 below.
TEST_F(SvgPicture, ATextOnAPlateBelowItsPlaceLeavesThatFree) {
    overlay.texts.push_back({"7", {0, 0, 0}, red, TextPlate::Side::Below});
    EXPECT_THAT(svg(), HasSubstr("<text x=\"110\" y=\"68\" fill=\"#ff0000\" font-size=\"12\">7</text>"));
}

TEST_F(SvgPicture, WhatHasItsSizeInPixelsGrowsByTheScale) {
    scale = 3.0;
    addLine({-1, 1, 0}, {1, 1, 0}, red);
    overlay.list.point({0, 0, 0}, 6.0F, red);
    overlay.texts.push_back({"7", {0, 0, 0}, red, TextPlate::Side::Above});
    EXPECT_THAT(svg(), HasSubstr("M0 0L200 0\" fill=\"none\" stroke=\"#ff0000\" stroke-width=\"3\""));
    EXPECT_THAT(svg(), HasSubstr("M91 41h18v18h-18z"));
    EXPECT_THAT(svg(), HasSubstr("<text x=\"130\" y=\"32\" fill=\"#ff0000\" font-size=\"36\">7</text>"));
}

TEST(Picture, ALargeOneHasLargerMarks) {
    const auto scaleOf = [](int width, int height) {
        return pixelScaleOf({width, height, PictureGround::Black, true});
    };
    EXPECT_EQ(scaleOf(1, 1), 1.0);
    EXPECT_EQ(scaleOf(1920, 1080), 1.0);
    EXPECT_EQ(scaleOf(16384, 100), 1.0) << "a strip has no room for more";
    EXPECT_EQ(scaleOf(3840, 2160), 2.0);
    EXPECT_EQ(scaleOf(9000, 5000), 6.0);
    EXPECT_EQ(scaleOf(5000, 9000), 6.0);
    EXPECT_EQ(scaleOf(16384, 16384), 18.0);
}

// The triad's middle stands 40 to the right and 44 down, and the first axis is 36 long, each twice.
TEST(Picture, IsDrawnAtItsScaleWhateverTheWindowHas) {
    test::ViewRig rig;
    rig.surface.scale = 3.0;
    rig.show(test::twoPatches());
    rig.paint();
    withPicture(rig.view, rig.doc, {2400, 1800, PictureGround::Black, true}, [](const SceneFrame& frame) {
        EXPECT_EQ(frame.pixelScale, 2.0);
        const DrawList& list = frame.overlay->list;
        const auto from = projectPoint(list.vertices[0], frame.modelView, frame.projection, frame.viewport);
        const auto to = projectPoint(list.vertices[1], frame.modelView, frame.projection, frame.viewport);
        ASSERT_TRUE(from && to);
        test::expectVector(*from, {80, 1800 - 88, 0.01}, 1e-6);
        test::expectVector(*to, {152, 1800 - 88, 0.01}, 1e-6);
    });
    EXPECT_EQ(rig.view.pixelScale(), 3.0) << "as before";
}

} // namespace
} // namespace velmora
