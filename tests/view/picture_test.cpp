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

} // namespace
} // namespace velmora
