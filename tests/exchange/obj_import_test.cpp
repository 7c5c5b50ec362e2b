#include "obj_import.h"

#include <gmock/gmock.h>

#include "exchange_tools.h"

namespace velmora::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Triangle = std::array<std::int32_t, 3>;

Imported read(const std::string& text, const ImportOptions& options = {}) {
    return importText(importObj, text, options);
}

const std::string square = "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\n";

TEST(ObjImport, TheFilesPointsAreKept) {
    const Imported file = read(square + "f 1 2 3\nf 1 3 4\n");
    ASSERT_EQ(file.model.region.blocks.size(), 1U);
    EXPECT_THAT(nodesOf(*file.model.region.blocks[0]),
                ElementsAre(Point{0, 0, 0}, Point{1, 0, 0}, Point{1, 1, 0}, Point{0, 1, 0}));
    EXPECT_THAT(trianglesOf(*file.model.region.blocks[0]), ElementsAre(Triangle{0, 1, 2}, Triangle{0, 2, 3}));
    EXPECT_EQ(file.record.format, "obj");
    EXPECT_TRUE(file.record.complete);
    EXPECT_TRUE(file.record.lossless);
    EXPECT_EQ(file.record.found, (Counts{{"zones", 1}, {"points", 4}, {"faces", 2}, {"triangles", 2}}));
    EXPECT_EQ(file.record.kept, file.record.found);
}

TEST(ObjImport, CornersMayHaveTexturesAndNormals) {
    for (const char* const face :
         {"f 1/1 2/2 3/3", "f 1//7 2//7 3//7", "f 1/1/1 2/2/2 3/3/3", "f 1/ 2/ 3/", "fo 1 2 3"}) {
        EXPECT_THAT(cornersOf(read(square + face).model), ElementsAre(Corners{{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}}}))
            << face;
    }
}

TEST(ObjImport, NegativeNumbersCountBackFromTheLastPointSoFar) {
    const Imported file = read("v 0 0 0\nv 1 0 0\nv 0 1 0\nf -3 -2 -1\nv 5 0 0\nf -4 -3 -1\n");
    EXPECT_THAT(cornersOf(file.model),
                ElementsAre(Corners{{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}}, Corners{{{0, 0, 0}, {1, 0, 0}, {5, 0, 0}}}));
    EXPECT_TRUE(file.record.complete);
}

TEST(ObjImport, AFaceMayComeBeforeItsPoints) {
    EXPECT_EQ(cornersOf(read("f 1 2 3\n" + square).model).size(), 1U);
}

TEST(ObjImport, PolygonsBecomeTrianglesInsideTheirBorder) {
    // A dart whose corner 3 is reflex: from corner 1 only corner 3 is seen.
    const Imported file = read("v 0 0 0\nv 4 2 0\nv 1 2 0\nv 0 4 0\nf 2 3 4 1\n");
    double area = 0.0;
    for (const Corners& c : cornersOf(file.model)) {
        const double part =
            0.5 * ((c[1][0] - c[0][0]) * (c[2][1] - c[0][1]) - (c[1][1] - c[0][1]) * (c[2][0] - c[0][0]));
        EXPECT_GT(part, 0.0);
        area += part;
    }
    EXPECT_DOUBLE_EQ(area, 5.0); // by hand: 0.5 * |sum of x_i y_j - x_j y_i| = 0.5 * (0 + 6 + 4 + 0)
    EXPECT_EQ(file.record.changed, std::vector<std::string>{"Polygons that became triangles: 1"});
    EXPECT_TRUE(file.record.complete);
    EXPECT_FALSE(file.record.lossless);
    EXPECT_EQ(kept(file, "faces"), 1);
    EXPECT_EQ(kept(file, "triangles"), 2);
}

TEST(ObjImport, GroupsAndObjectsAreZonesUnderTheirNames) {
    const Imported file = read(
        square + "o wing\nf 1 2 3\ng upper side\nf 1 2 4\ng lower\nf 2 3 4\ng upper side\nf 1 3 4\no tail\nf 1 2 3\n");
    EXPECT_THAT(titlesOf(file.model), ElementsAre("wing", "upper side", "lower", "tail"));
    EXPECT_EQ(file.model.region.blocks[1]->elementCount, 2);
    EXPECT_EQ(found(file, "zones"), 4);
    EXPECT_EQ(kept(file, "zones"), 4);
    EXPECT_EQ(kept(file, "points"), 4);
}

TEST(ObjImport, ObjectsOfOneNameAreZonesOfTheirOwnAndAGroupGoesOn) {
    const Imported file = read(square + "o rib\nf 1 2 3\no rib\nf 1 2 4\no \nf 2 3 4\no \nf 1 3 4\ng skin\nf 1 2 3\n"
                                        "g other\nf 1 2 4\ng skin\nf 2 3 4\n");
    EXPECT_THAT(titlesOf(file.model), ElementsAre("rib", "rib", "", "", "skin", "other"));
    EXPECT_EQ(file.model.region.blocks[4]->elementCount, 2);
}

TEST(ObjImport, AZoneHasThePointsThatItUsesInTheirOrder) {
    const Imported file = read(square + "v 9 9 9\ng a\nf 4 2 1\ng b\nf 3 4 5\n");
    EXPECT_THAT(nodesOf(*file.model.region.blocks[0]), ElementsAre(Point{0, 0, 0}, Point{1, 0, 0}, Point{0, 1, 0}));
    EXPECT_THAT(trianglesOf(*file.model.region.blocks[0]), ElementsAre(Triangle{2, 1, 0}));
    EXPECT_THAT(nodesOf(*file.model.region.blocks[1]), ElementsAre(Point{1, 1, 0}, Point{0, 1, 0}, Point{9, 9, 9}));
}

TEST(ObjImport, PointsThatNoFaceUsesAreLeftOutAndTold) {
    const Imported file = read(square + "f 1 2 3\n");
    EXPECT_EQ(file.model.region.blocks[0]->nodeCount, 3);
    EXPECT_TRUE(file.record.complete);
    EXPECT_FALSE(file.record.lossless);
    EXPECT_EQ(file.record.changed, std::vector<std::string>{"Points that no face uses, left out: 1"});
    EXPECT_EQ(found(file, "points"), 4);
    EXPECT_EQ(kept(file, "points"), 3);
}

TEST(ObjImport, ALineGoesOnBehindABackslashAndEndsAtAComment) {
    const Imported file = read("# made by hand\nv 0 0 \\\n 0\nv 1 0 0 # second\nv 0 1 0\nf 1 \\\r\n2 3 # 4 5\n");
    EXPECT_THAT(cornersOf(file.model), ElementsAre(Corners{{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}}));
    EXPECT_TRUE(file.record.complete);
}

TEST(ObjImport, WrongNumbersLoseTheirFaceAlone) {
    for (const char* const face :
         {"f 1 2 5", "f 1 2 0", "f 1 2 -5", "f 1 2 x", "f 1 2 99999999999999999999", "f 1 2 -2147483648"}) {
        const Imported file = read(square + face + "\nf 1 2 3\nf 1 3 4\n");
        EXPECT_EQ(kept(file, "faces"), 2) << face;
        EXPECT_EQ(found(file, "faces"), 3);
        EXPECT_FALSE(file.record.complete);
        EXPECT_THAT(file.record.reasons, ElementsAre("Faces with points that are not there: 1"));
    }
}

TEST(ObjImport, FacesOfFewerThanThreeCornersAreTold) {
    const Imported file = read(square + "f 1 2 3\nf 1 3 4\nf 1 2\nf\n");
    EXPECT_THAT(file.record.reasons, ElementsAre("Faces of fewer than three corners: 2"));
    EXPECT_EQ(kept(file, "triangles"), 2);
}

TEST(ObjImport, APointThatCannotBeReadKeepsItsNumber) {
    const Imported file = read("v 0 0 0\nv 1 y 0\nv 1 1 0\nv 0 1 0\nf 1 2 3\nf 1 3 4\n");
    EXPECT_THAT(cornersOf(file.model), ElementsAre(Corners{{{0, 0, 0}, {1, 1, 0}, {0, 1, 0}}}));
    EXPECT_THAT(file.record.reasons,
                ElementsAre("Points that cannot be read: 1", "Faces with coordinates that are not finite: 1"));
}

TEST(ObjImport, APointWhoseLastNumberGoesOnIsNotTakenForItsBeginning) {
    for (const char* const last : {"0,5", "0_", "0'", "1.5.5"}) {
        const Imported file = read(square + "v 0 0 " + last + "\nf 1 2 3\nf 1 2 5\n");
        EXPECT_FALSE(file.record.complete) << last;
        EXPECT_THAT(file.record.reasons, testing::Contains("Points that cannot be read: 1")) << last;
        EXPECT_EQ(cornersOf(file.model).size(), 1U) << last;
    }
    for (const char* const last : {"0", "0 1", "0 # a remark", "0\t", "0\r"}) {
        EXPECT_TRUE(read(square + "v 0 0 " + last + "\nf 1 2 3\nf 1 4 5\n").record.complete) << last;
    }
}

TEST(ObjImport, WhatIsNoPolygonIsTold) {
    const Imported file = read(square + "f 1 2 3\nf 1 3 4\nl 1 2 3\np 4\n");
    EXPECT_FALSE(file.record.complete);
    EXPECT_THAT(file.record.reasons, ElementsAre("Lines, points and free forms, which are no polygons: 2"));
}

TEST(ObjImport, AStatementThatIsNotKnownMayHaveBeenAFaceAndIsTold) {
    for (const char* const damaged : {"f1 1 3 4\n", "} 1 3 4\n", "F 1 3 4\n"}) {
        const Imported file = read(square + "f 1 2 3\nf 1 2 4\n" + damaged);
        EXPECT_FALSE(file.record.complete) << damaged;
        EXPECT_THAT(file.record.reasons, ElementsAre("Statements that are not known: 1")) << damaged;
    }
    const Imported known = read("mtllib a\n" + square + "vn 0 0 1\ns off\nf 1 2 3\nf 1 3 4\n");
    EXPECT_TRUE(known.record.complete);
    EXPECT_THAT(known.record.reasons, IsEmpty());
}

TEST(ObjImport, MaterialsColoursAndTexturesAreToldAsLost) {
    const Imported file =
        read("mtllib a.mtl\nv 0 0 0 1 0 0\nv 1 0 0 1 0 0\nv 0 1 0 1 0 0\nvt 0 0\nusemtl red\nf 1 2 3\n");
    EXPECT_TRUE(file.record.complete);
    EXPECT_FALSE(file.record.lossless);
    EXPECT_THAT(file.record.reasons, ElementsAre("Materials are not kept", "Colours of points are not kept",
                                                 "Texture coordinates are not kept"));
}

TEST(ObjImport, OtherFilesAreNotReadAndTold) {
    const Imported file = read(square + "f 1 2 3\nf 1 3 4\ncall /etc/passwd\n");
    EXPECT_FALSE(file.record.complete);
    EXPECT_THAT(file.record.reasons, ElementsAre("Another file is called, which is not read"));
}

TEST(ObjImport, EqualPointsOfAZoneMerge) {
    ImportOptions merge;
    merge.merge = true;
    const Imported file = read("v 0 0 0\nv 1 0 0\nv 0 1 0\nv 1 0 0\nv 0 1 0\nv 1 1 0\nf 1 2 3\nf 4 6 5\n", merge);
    EXPECT_THAT(nodesOf(*file.model.region.blocks[0]),
                ElementsAre(Point{0, 0, 0}, Point{1, 0, 0}, Point{0, 1, 0}, Point{1, 1, 0}));
    EXPECT_THAT(trianglesOf(*file.model.region.blocks[0]), ElementsAre(Triangle{0, 1, 2}, Triangle{1, 3, 2}));
    EXPECT_EQ(file.record.changed, std::vector<std::string>{"Points merged: 2"});
    EXPECT_EQ(kept(file, "points"), 6);
}

TEST(ObjImport, AScaleThatMakesACoordinateInfiniteLosesTheFace) {
    ImportOptions options;
    options.scale = 1e200;
    const Imported file = read("v 0 0 0\nv 1e200 0 0\nv 0 1 0\nv 0 0 1\nf 1 2 3\nf 1 3 4\n", options);
    EXPECT_EQ(kept(file, "triangles"), 1);
    EXPECT_FALSE(file.record.complete);
}

TEST(ObjImport, NothingRecognisedIsNotComplete) {
    EXPECT_FALSE(read("hello world\n").record.complete);
    const Imported nothing = read("");
    EXPECT_TRUE(nothing.record.complete);
    EXPECT_THAT(nothing.record.reasons, IsEmpty());
    EXPECT_TRUE(nothing.model.empty());
}

} // namespace
} // namespace velmora::test
