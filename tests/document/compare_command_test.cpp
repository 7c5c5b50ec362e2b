#include <gmock/gmock.h>

#include <cmath>
#include <cstring>
#include <limits>

#include "CImport.h"
#include "command_rig.h"
#include "file_texts.h"

// Compare: which points, which surface, and how long what was found holds.

namespace velmora::test {
namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::EndsWith;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

/// A binary STL file of one facet with these nine coordinates.
std::string binaryFacet(const std::array<float, 9>& corners) {
    std::string text(84 + 50, '\0');
    text[80] = 1;
    std::memcpy(text.data() + 84 + 12, corners.data(), sizeof corners); // behind the normal
    return text;
}

class CompareCommand : public CommandRig {
protected:
    /// Patches at the heights 0, 1 and 3, each of 2 by 2 points.
    CompareCommand() { hold({flatPatch(2, 2), flatPatch(2, 2, 1), flatPatch(2, 2, 3)}); }

    void compare(int target, std::vector<std::string> files = {}) {
        forget();
        run({.id = "model.compare", .fields = {{"target", std::to_string(target)}}, .files = std::move(files)});
    }

    std::vector<double> values() const {
        return doc.comparison() != nullptr ? doc.comparison()->values : std::vector<double>();
    }

    const std::string plateAtTwo = "2 2\n0 0 2\n1 0 2\n0 1 2\n1 1 2\n";
};

TEST_F(CompareCommand, WithTheOtherPatches) {
    runAll(addPatch(3) + addPatch(2));
    compare(2);
    // Of the zBlock in the order of the model: patch 2 is 1 away from patch 1, patch 3 is 3 away.
    EXPECT_THAT(values(), ElementsAre(1, 1, 1, 1, 3, 3, 3, 3));
    EXPECT_EQ(doc.comparison()->at->part, 2);
    EXPECT_EQ(doc.status, "Largest distance 3 at Patch K=3, Section N=1, Point M=1; mean 2, rms 2.23607");
}

TEST_F(CompareCommand, WithoutAZBlockAllPointsAreCompared) {
    doc.referenceRegion.blocks.push_back(triangleZone("far", {{0, 0, 0}, {4, 0, 0}, {0, 4, 0}}, {0, 1, 2}));
    compare(1);
    EXPECT_THAT(values(), ElementsAre(0, 0, 0, 0, 1, 1, 1, 1, 3, 3, 3, 3));
}

TEST_F(CompareCommand, WithTheSecondGeometry) {
    runAll(addPatch(2));
    doc.referenceRegion.blocks.push_back(triangleZone("far", {{0, 0, 6}, {4, 0, 6}, {0, 4, 6}}, {0, 1, 2}));
    compare(1);
    EXPECT_THAT(values(), ElementsAre(5, 5, 5, 5));
    doc.referencePatches = {flatPatch(2, 2, 1.5)};
    compare(1);
    EXPECT_THAT(values(), ElementsAre(0.5, 0.5, 0.5, 0.5));
}

TEST_F(CompareCommand, WithAFileOfPatches) {
    compare(3, {file("at_two.apt", plateAtTwo).string()});
    EXPECT_THAT(values(), ElementsAre(2, 2, 2, 2, 1, 1, 1, 1, 1, 1, 1, 1));
    EXPECT_EQ(doc.patches.size(), 3U) << "the model stays";
    EXPECT_FALSE(doc.documentModified);
}

TEST_F(CompareCommand, WithAFileOfTriangles) {
    const std::string facet = "facet normal 0 0 1\nouter loop\nvertex 0 0 5\nvertex 4 0 5\nvertex 0 4 5\nendloop\n"
                              "endfacet\n";
    compare(3, {file("at_five.stl", "solid a\n" + facet + "endsolid a\n").string()});
    EXPECT_THAT(values(), ElementsAre(5, 5, 5, 5, 4, 4, 4, 4, 2, 2, 2, 2));
}

TEST_F(CompareCommand, WithAFileOfZonesThatAreGrids) {
    compare(3, {file("at_two.dat", "VARIABLES = \"X\", \"Y\", \"Z\"\nZONE T=\"a\", I=2, J=2, K=1, F=POINT\n"
                                   "0 0 2\n1 0 2\n0 1 2\n1 1 2\n")
                    .string()});
    EXPECT_THAT(values(), ElementsAre(2, 2, 2, 2, 1, 1, 1, 1, 1, 1, 1, 1));
}

TEST_F(CompareCommand, AFileAboveTheLimitOfPointsCountsWhole) {
    // A plane but for every second point of every second section: those that Open leaves out.
    Patch bumps = flatPatch(460, 460);
    for (std::size_t n = 1; n < bumps.size(); n += 2) {
        for (std::size_t m = 1; m < bumps[n].size(); m += 2) {
            bumps[n][m].z = 1;
        }
    }
    hold({{{bumps[1][1], bumps[1][3]}, {bumps[301][1], bumps[301][3]}}});
    compare(3, {file("bumps.apt", aptText({bumps})).string()});
    EXPECT_THAT(values(), ElementsAre(0, 0, 0, 0));
    EXPECT_EQ(doc.status, "Largest distance 0 at Patch K=1, Section N=1, Point M=1; mean 0, rms 0");
}

TEST_F(CompareCommand, TheFileIsLookedForBesideTheModel) {
    open(file("wing.apt", plateAtTwo));
    compare(3);
    EXPECT_EQ(ui.requests.back().proposed, folder / "");
    doc.modelFile.chosenPath.clear();
    compare(3);
    EXPECT_EQ(ui.requests.back().proposed, std::filesystem::path()) << "the model has no file";
}

TEST_F(CompareCommand, WithABinaryStlFile) {
    doc.dialogs->importing.scale = 7; // of Import, and of no other command
    compare(3, {file("at_five.stl", binaryFacet({0, 0, 5, 4, 0, 5, 0, 4, 5})).string()});
    EXPECT_THAT(values(), ElementsAre(5, 5, 5, 5, 4, 4, 4, 4, 2, 2, 2, 2));
    EXPECT_THAT(heard(), Not(Contains(StartsWith("message: "))));
    EXPECT_EQ(doc.patches.size(), 3U) << "the model stays";
}

TEST_F(CompareCommand, WhatIsLostOfTheFileIsTold) {
    // A solid without a name loses its first facet.
    const std::string low = "facet normal 0 0 1\nouter loop\nvertex 0 0 3\nvertex 4 0 3\nvertex 0 4 3\nendloop\n"
                            "endfacet\n";
    const std::string high = "facet normal 0 0 1\nouter loop\nvertex 0 0 5\nvertex 4 0 5\nvertex 0 4 5\nendloop\n"
                             "endfacet\n";
    compare(3, {file("nameless.stl", "solid\n" + low + high + "endsolid\n").string()});
    EXPECT_THAT(values(), ElementsAre(5, 5, 5, 5, 4, 4, 4, 4, 2, 2, 2, 2));
    EXPECT_THAT(doc.status, StartsWith("Largest distance 5 at Patch K=1, Section N=1, Point M=1; mean 3.66667, rms"));
    EXPECT_THAT(doc.status, EndsWith("; of the file: Facets in the file: 2, kept: 1 (the first facet of a solid "
                                     "without a name)"));
}

TEST_F(CompareCommand, AFileWithoutASurfaceIsRefusedWithTheReason) {
    const float none = std::numeric_limits<float>::quiet_NaN();
    compare(3, {file("nan.stl", binaryFacet({0, 0, none, 4, 0, 5, 0, 4, 5})).string()});
    EXPECT_THAT(heard(), Contains("message: There is no surface to compare with: Facets with coordinates that are not "
                                  "finite: 1"));
    EXPECT_EQ(doc.comparison(), nullptr);
}

TEST_F(CompareCommand, ATargetWithoutASurfaceIsRefused) {
    compare(1);
    EXPECT_THAT(heard(), Contains("message: There is no surface to compare with"));
    EXPECT_EQ(doc.comparison(), nullptr);
    compare(2);
    EXPECT_THAT(heard(), Contains("message: There is no surface to compare with"))
        << "all is compared, not with itself";
    EXPECT_EQ(doc.comparison(), nullptr);
    runAll(addPatch(1) + addPatch(2) + addPatch(3));
    compare(2);
    EXPECT_THAT(heard(), Contains("message: There is no surface to compare with"));
    // Sections of different lengths have no cells.
    compare(3, {file("lines.skl", "2\n2\n0 0 0\n1 0 0\n3\n0 1 0\n1 1 0\n2 1 0\n").string()});
    EXPECT_THAT(heard(), Contains("message: There is no surface to compare with"));
    EXPECT_EQ(doc.comparison(), nullptr);
}

TEST_F(CompareCommand, AFileThatCannotBeReadLeavesWhatWasFound) {
    compare(3, {file("at_two.apt", plateAtTwo).string()});
    ASSERT_THAT(values(), SizeIs(12));
    for (const char* const text : {"2 2\n0 0 2\n1 0 2\n0 1 two\n1 1 2\n", ""}) {
        compare(3, {file("broken.apt", text).string()});
        EXPECT_THAT(values(), SizeIs(12));
    }
    compare(3, {(folder / "not_there.apt").string()});
    EXPECT_THAT(heard(), Contains("message: It is impossible to open selected file"));
    compare(3, {file("points.ext", "1\n0 0 0\n").string()});
    EXPECT_THAT(heard(), Contains("message: This file's type is not supported by Sorvane"));
    compare(3);
    EXPECT_THAT(values(), SizeIs(12)) << "the chooser was cancelled";
}

TEST_F(CompareCommand, CancelLeavesWhatWasFound) {
    compare(3, {file("at_two.apt", plateAtTwo).string()});
    ui.dialogs.clear();
    call("model.compare");
    EXPECT_THAT(values(), SizeIs(12));
}

TEST_F(CompareCommand, HoldsUntilTheGeometryIsAnotherOne) {
    EXPECT_EQ(doc.comparison(), nullptr) << "before the first";
    runAll(addPatch(2));
    compare(2);
    ASSERT_NE(doc.comparison(), nullptr);
    runAll(addPatch(3));
    EXPECT_NE(doc.comparison(), nullptr) << "another zBlock is no edit";
    runAll({{.id = "patch.exit"}});
    EXPECT_NE(doc.comparison(), nullptr) << "to leave it is none";
    runAll(addPatch(2) + addPatch(3));
    run({.id = "model.move", .fields = {{"deltaZ", "0.5"}}});
    EXPECT_EQ(doc.comparison(), nullptr);
    compare(2);
    EXPECT_THAT(values(), ElementsAre(1.5, 1.5, 1.5, 1.5, 3.5, 3.5, 3.5, 3.5));
    runAll({{.id = "patch.undo"}});
    EXPECT_EQ(doc.comparison(), nullptr);
}

TEST_F(CompareCommand, ChangesNothingAndTakesNoUndoStep) {
    runAll(addPatch(2));
    run({.id = "model.move", .fields = {{"deltaZ", "0.5"}}});
    const std::string before = Picture::ofAll(doc);
    compare(2);
    EXPECT_EQ(Picture::ofAll(doc), before);
    EXPECT_TRUE(doc.patchUndoReady);
}

TEST_F(CompareCommand, ZonesByTheirNodes) {
    holdZones({});
    doc.feRegion.blocks.push_back(triangleZone("low", {{0, 0, 0}, {4, 0, 0}, {0, 4, 0}}, {0, 1, 2}));
    doc.feRegion.blocks.push_back(triangleZone("high", {{0, 0, 1}, {1, 0, 2}, {0, 1, 1}}, {0, 1, 2}));
    updateBounds();
    runAll(addPatch(2));
    compare(2);
    EXPECT_THAT(values(), ElementsAre(1, 2, 1));
    EXPECT_EQ(doc.status.substr(0, 45), "Largest distance 2 at Patch K=2, Point M=2; m");
}

} // namespace
} // namespace velmora::test
