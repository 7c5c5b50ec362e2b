#include <gmock/gmock.h>

#include <cmath>

#include "SessionFixture.h"

// What is printed about a model: report, curve, and what the line "measure" tells.

namespace velmora {
namespace {

using test::SessionFixture;
using testing::ElementsAre;

/// The names of an object's members in their order.
std::vector<std::string> namesOf(const Json& value) {
    std::vector<std::string> names;
    for (const auto& [name, member] : value.items()) {
        names.push_back(name);
    }
    return names;
}

class PrintInspect : public SessionFixture {
protected:
    void openPlate() { must("open " + file("plate.apt")); }

    Json measured(const std::string& places) {
        must("measure " + places);
        EXPECT_EQ(event("print").at("what"), "measure");
        return event("print").at("value");
    }
};

TEST_F(PrintInspect, AReportHasItsMembersInTheirOrder) {
    openPlate();
    const Json report = printed("report");
    EXPECT_THAT(namesOf(report),
                ElementsAre("box", "patches", "sections", "points", "cells", "zones", "nodes", "triangles", "area",
                            "volume", "components", "openBorder", "badEdges", "gaps", "patch", "zone"));
    EXPECT_THAT(namesOf(report.at("patch").at(0)),
                ElementsAre("area", "smallestStep", "largestStep", "growth", "aspect", "skew", "warp", "repeatedPoints",
                            "collapsedCells", "foldedCells", "at"));
    EXPECT_THAT(namesOf(report.at("patch").at(0).at("at")),
                ElementsAre("smallestStep", "largestStep", "growth", "aspect", "skew", "warp", "repeatedPoints",
                            "collapsedCells", "foldedCells"));
    EXPECT_EQ(report.at("box"), Json({{0.0, 0.0, 0.0}, {4.0, 3.0, 0.0}}));
    EXPECT_EQ(report.at("cells"), 12);
    EXPECT_EQ(report.at("area"), 12.0);
    EXPECT_EQ(report.at("openBorder"), 14.0);
    EXPECT_EQ(report.at("volume"), Json());
}

TEST_F(PrintInspect, PlacesOfAReportCountFromOne) {
    PatchList two{test::flatPatch(3, 4), test::flatPatch(3, 4, 5.0)};
    two[1][2][1] = two[1][2][0];
    test::writeFileText(folder / "two.apt", aptText(two));
    must("open " + file("two.apt"));
    const Json patch = printed("report").at("patch").at(1);
    EXPECT_EQ(patch.at("repeatedPoints"), 1);
    EXPECT_EQ(patch.at("at").at("repeatedPoints"), Json({2, 3, 2}));
    EXPECT_EQ(patch.at("smallestStep"), 0.0);
    EXPECT_EQ(patch.at("at").at("smallestStep"), Json({2, 3, 1}));
    EXPECT_EQ(patch.at("at").at("largestStep"), Json({2, 3, 2}));
    EXPECT_EQ(patch.at("at").at("collapsedCells"), Json());
}

TEST_F(PrintInspect, AReportTellsTheGeometryAsItStands) {
    openPlate();
    EXPECT_EQ(printed("report").at("box").at(1), Json({4.0, 3.0, 0.0}));
    must("run model.move deltaX=10");
    EXPECT_EQ(printed("report").at("box").at(1), Json({14.0, 3.0, 0.0}));
    must("run convert.toUnstructured");
    const Json report = printed("report");
    EXPECT_EQ(report.at("patches"), 0);
    EXPECT_EQ(report.at("triangles"), 24);
    EXPECT_EQ(report.at("zones"), 1);
    EXPECT_EQ(namesOf(report.at("zone").at(0)),
              (std::vector<std::string>{"title", "nodes", "triangles", "area", "degenerate"}));
    EXPECT_EQ(report.at("area"), 12.0);
}

TEST_F(PrintInspect, ACurveHasItsMembersInTheirOrder) {
    openPlate();
    EXPECT_THAT(namesOf(printed("curve")), ElementsAre("points", "steps", "growth", "curvature", "length"));
    must("run line.inputSection patch=1 section=2");
    const Json curve = printed("curve");
    EXPECT_EQ(curve.at("points").size(), 5U);
    EXPECT_EQ(curve.at("points").at(4), Json({4.0, 1.0, 0.0}));
    EXPECT_EQ(curve.at("steps"), Json({1.0, 1.0, 1.0, 1.0}));
    EXPECT_EQ(curve.at("growth"), Json({nullptr, 1.0, 1.0, 1.0, nullptr}));
    EXPECT_EQ(curve.at("curvature"), Json({nullptr, 0.0, 0.0, 0.0, nullptr}));
    EXPECT_EQ(curve.at("length"), Json({0.0, 1.0, 2.0, 3.0, 4.0}));
}

TEST_F(PrintInspect, MeasureTakesPlacesOfEachKind) {
    openPlate();
    EXPECT_EQ(measured("1/1/1 1/4/5"),
              Json({{"distance", 5.0}, {"delta", {4.0, 3.0, 0.0}}, {"along", nullptr}, {"angle", nullptr}}));
    EXPECT_EQ(measured("1/2/1 1/2/4").at("along"), 3.0);
    EXPECT_EQ(measured("-1,0,0.5 1e0,0,0.5").at("delta"), Json({2.0, 0.0, 0.0}));
    EXPECT_EQ(measured("0,0,7 1/1/1 3,0,0").at("angle"), 90.0);
    must("run convert.toUnstructured");
    EXPECT_EQ(measured("1/1 1/2 ").at("along"), Json());
}

TEST_F(PrintInspect, MeasureRefusesWhatIsNotThere) {
    openPlate();
    const std::string usage = "the line \"measure\" cannot be read so; write measure A B [C], each K/N/M, ZONE/NODE or "
                              "X,Y,Z";
    EXPECT_EQ(errorOf("measure"), usage);
    EXPECT_EQ(errorOf("measure 1/1/1"), usage);
    EXPECT_EQ(errorOf("measure 1/1/1 1/1/1 1/1/1 1/1/1"), usage);
    for (const char* const word : {"1", "1/2/3/4", "1/x/2", "0/1/1", "1/1/0", "1,2", "1,2,3,4", "1,2,x", "1,2,inf",
                                   "1//1", "1/-1/1", "1/1/1.5", ",,"}) {
        EXPECT_EQ(errorOf(std::string("measure 1/1/1 ") + word),
                  '"' + std::string(word) + "\" is no place; write K/N/M (from 1), ZONE/NODE (from 1) or X,Y,Z");
    }
    EXPECT_EQ(errorOf("measure 1/5/1 1/1/1"),
              "the model has no point \"1/5/1\"; print state tells its patches, zones and their counts");
    EXPECT_EQ(errorOf("measure 1/1/1 1/1/6"),
              "the model has no point \"1/1/6\"; print state tells its patches, zones and their counts");
    EXPECT_EQ(errorOf("measure 1/1/1 1/1/1 1/1"),
              "the model has no node \"1/1\"; print state tells its patches, zones and their counts");
}

// ---- Legend ---------------------------------------------------------------------------------------------------------

TEST_F(PrintInspect, TheLegendIsThatOfTheValuesThatAreShown) {
    openPlate();
    const auto texts = [this] { return printed("scene overlay").at("texts").size(); };
    EXPECT_EQ(texts(), 0U);
    must("run model.compare target=3 file=" + file("plate.apt"));
    must("run view.colourByValue quantity=2 bands=4");
    EXPECT_EQ(texts(), 2U) << "a title and the one distance, 0";
    must("run line.inputSection section=1");
    must("run line.move deltaZ=1");
    must("run model.compare target=3 file=" + file("plate.apt"));
    EXPECT_EQ(texts(), 5U) << "a title and four bands";
    must("run view.colourByValue bands=3");
    EXPECT_EQ(texts(), 4U);
    must("run view.surface");
    EXPECT_EQ(texts(), 0U) << "lines have no such colours";
    must("run view.surface");
    EXPECT_EQ(texts(), 4U);
    must("run view.colourByValue quantity=1");
    EXPECT_EQ(texts(), 0U);
}

} // namespace
} // namespace velmora
