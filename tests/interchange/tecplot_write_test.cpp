// Files byte for byte, and back.

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FileSizeLimit.h"
#include "tecplot_tools.h"

namespace velmora {
namespace {

using test::errorText;
using test::fileText;
using test::TecplotOutcome;

std::unique_ptr<zBlock> grid(const std::string& title, std::int32_t i, std::int32_t j,
                             const std::vector<std::pair<std::string, std::vector<double>>>& fields) {
    auto zone = std::make_unique<zBlock>(i, j, 1);
    for (const auto& [name, values] : fields) {
        zone->addVariable(name)->data = values;
    }
    zone->title = title;
    return zone;
}

std::unique_ptr<zBlock_fe> triangle(const std::string& title) {
    auto zone = std::make_unique<zBlock_fe>(3, 4, 1);
    zone->connectivity = {2, 0, 1, -1};
    zone->addVariable("x")->data = {0.5, 1, 0};
    zone->addVariable("y")->data = {0, 0.25, 1e-7};
    zone->addVariable("z")->data = {0, -0.0, 123456789};
    zone->title = title;
    return zone;
}

class TecplotWrite : public testing::Test {
protected:
    test::TemporaryFolder folder_;
    std::filesystem::path path_ = folder_ / "a.dat";
    zRegion structured_;
    zRegion_fe unstructured_;

    std::string written(int precision) {
        zTecplotReader writer;
        writer.structuredTarget = &structured_;
        writer.unstructuredTarget = &unstructured_;
        writer.write(path_, precision);
        return fileText(path_);
    }
};

TEST_F(TecplotWrite, OrderedZonesStandPointAfterPoint) {
    structured_.title = "a title";
    structured_.blocks.push_back(
        grid("one", 2, 2, {{"x", {0, 1, 0, 1}}, {"Y", {0, 0, 1, 1}}, {"z", {0.1, 1e20, -2.5e-5, 1.0 / 3}}}));
    structured_.blocks.push_back(grid("", 1, 2, {{"x", {1, 2}}, {"y", {3, 4}}, {"z", {5, 6}}}));
    EXPECT_EQ(written(16), "TITLE = \"a title\"\n"
                           "VARIABLES = \"x\" \"Y\" \"z\"\n"
                           "ZONE T=\"one\"\n"
                           "ZONETYPE=ORDERED, I=2, J=2, K=1\n"
                           "DATAPACKING=POINT\n"
                           "DT=(DOUBLE,DOUBLE,DOUBLE)\n"
                           "0 0 0.1\n"
                           "1 0 1e+20\n"
                           "0 1 -2.5e-05\n"
                           "1 1 0.3333333333333333\n"
                           "ZONE T=\"Zone_2\"\n"
                           "ZONETYPE=ORDERED, I=1, J=2, K=1\n"
                           "DATAPACKING=POINT\n"
                           "DT=(DOUBLE,DOUBLE,DOUBLE)\n"
                           "1 3 5\n"
                           "2 4 6\n");
}

TEST_F(TecplotWrite, AQuoteInANameWouldEndItAndIsWrittenAsASingleOne) {
    structured_.title = "\"12\" pipe";
    structured_.blocks.push_back(grid("\"", 1, 1, {{"x", {0}}, {"y", {0}}, {"z", {0}}}));
    const std::string text = written(16);
    EXPECT_THAT(text, testing::StartsWith("TITLE = \"'12' pipe\"\nVARIABLES = \"x\" \"y\" \"z\"\nZONE T=\"'\"\n"));
}

TEST_F(TecplotWrite, TrianglesNameThreeNodesFromOne) {
    unstructured_.title = "t";
    unstructured_.blocks.push_back(triangle("f"));
    EXPECT_EQ(written(6), "TITLE = \"t\"\n"
                          "VARIABLES = \"x\" \"y\" \"z\"\n"
                          "ZONE T=\"f\"\n"
                          "ZONETYPE=FETRIANGLE, NODES=3, ELEMENTS=1\n"
                          "DATAPACKING=POINT\n"
                          "DT=(SINGLE,SINGLE,SINGLE)\n"
                          "0.5 0 0\n"
                          "1 0.25 -0\n"
                          "0 1e-07 1.23457e+08\n"
                          "3 1 2\n");
}

TEST_F(TecplotWrite, FifteenDigitsAreTheFirstThatAreDouble) {
    structured_.blocks.push_back(grid("", 1, 1, {{"x", {1.0 / 3}}}));
    EXPECT_NE(written(14).find("DT=(SINGLE)\n0.33333333333333\n"), std::string::npos);
    EXPECT_NE(written(15).find("DT=(DOUBLE)\n0.333333333333333\n"), std::string::npos);
    EXPECT_NE(written(-1).find("DT=(SINGLE)\n0.333333\n"), std::string::npos) << "as a stream takes it";
    EXPECT_NE(written(0).find("DT=(SINGLE)\n0.3\n"), std::string::npos);
}

TEST_F(TecplotWrite, ANumberThatIsNotFiniteIsRefusedWithItsPlace) {
    for (const double bad : {std::numeric_limits<double>::infinity(), std::nan("")}) {
        structured_.blocks.clear();
        structured_.blocks.push_back(grid("a", 1, 1, {{"x", {1}}}));
        structured_.blocks.push_back(grid("b", 3, 1, {{"x", {1, 2, 3}}, {"y", {4, bad, 6}}}));
        const auto error = test::errorOf([this] { written(6); });
        ASSERT_TRUE(error);
        EXPECT_EQ(error->text(), "Zone 2, node 2, y: the number is not finite, and could not be read again");
    }
}

TEST_F(TecplotWrite, OfTwoRegionsWithZonesOnlyTheStructuredOneIsWritten) {
    structured_.title = "s";
    structured_.blocks.push_back(grid("one", 1, 1, {{"x", {1}}}));
    unstructured_.blocks.push_back(triangle("f"));
    const std::string text = written(6);
    EXPECT_EQ(text, "TITLE = \"s\"\nVARIABLES = \"x\"\nZONE T=\"one\"\nZONETYPE=ORDERED, I=1, J=1, K=1\n"
                    "DATAPACKING=POINT\nDT=(SINGLE)\n1\n");
}

TEST_F(TecplotWrite, TheNamesAreThoseOfTheFirstZoneAndTheRowsEachZonesOwn) {
    structured_.blocks.push_back(grid("a", 1, 1, {{"x", {1}}, {"y", {2}}}));
    structured_.blocks.push_back(grid("b", 1, 1, {{"p", {3}}, {"q", {4}}, {"r", {5}}}));
    const std::string text = written(6);
    EXPECT_NE(text.find("VARIABLES = \"x\" \"y\"\n"), std::string::npos);
    EXPECT_NE(
        text.find("ZONE T=\"b\"\nZONETYPE=ORDERED, I=1, J=1, K=1\nDATAPACKING=POINT\nDT=(SINGLE,SINGLE)\n3 4 5\n"),
        std::string::npos);
}

TEST_F(TecplotWrite, AZoneWithoutFieldsOrPointsHasNoRows) {
    structured_.blocks.push_back(std::make_unique<zBlock>(2, 2, 1));
    structured_.blocks.push_back(std::make_unique<zBlock>(3, 3, 0));
    structured_.blocks.back()->addVariable("x");
    EXPECT_EQ(written(6),
              "TITLE = \"\"\nVARIABLES =\nZONE T=\"Zone_1\"\nZONETYPE=ORDERED, I=2, J=2, K=1\nDATAPACKING=POINT\n"
              "DT=()\nZONE T=\"Zone_2\"\nZONETYPE=ORDERED, I=3, J=3, K=0\nDATAPACKING=POINT\nDT=()\n");
}

TEST_F(TecplotWrite, ArraysShorterThanTheCountsAreWrittenAsFarAsTheyGo) {
    unstructured_.blocks.push_back(triangle("f"));
    unstructured_.blocks[0]->variables[1]->data.resize(1);
    unstructured_.blocks[0]->connectivity.resize(3);
    const std::string text = written(6);
    EXPECT_TRUE(text.ends_with(")\n0.5 0 0\n")) << text;
}

TEST_F(TecplotWrite, WithoutZonesTheFileIsEmpty) {
    EXPECT_EQ(written(6), "");
    zTecplotReader().write(folder_ / "b.dat", 6);
    EXPECT_EQ(fileText(folder_ / "b.dat"), "");
}

TEST_F(TecplotWrite, AFileThatCannotBeOpenedRaisesAFileErrorWithoutText) {
    const auto error = test::errorOf([this] { zTecplotReader().write(folder_ / "none" / "a.dat", 6); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->name() + ": " + error->text(), "File Error: ...");
    EXPECT_EQ(error->file(), "zTecplotReader");
}

TEST_F(TecplotWrite, AFileThatCannotBeWrittenToItsEndRaisesAFileError) {
    structured_.blocks.push_back(grid("", 1, 1, {{"x", {1}}}));
    zTecplotReader writer;
    writer.structuredTarget = &structured_;
    const auto error = test::errorOf([&] {
        const test::FileSizeLimit full(0);
        writer.write(folder_ / "full.dat", 6);
    });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->name(), "File Error");
}

TEST_F(TecplotWrite, WhatIsWrittenWithSeventeenDigitsReadsAsTheSameZones) {
    structured_.title = "t";
    structured_.blocks.push_back(grid("a b", 2, 2,
                                      {{"x", {0.1, 1e300, -1e-300, 1.0 / 3}},
                                       {"y", {1, 2, 3, std::acos(-1.0)}},
                                       {"z", {-0.0, 5e-324, 2, std::exp(1.0)}}}));
    written(17);
    const TecplotOutcome outcome = test::readTecplot(path_);
    ASSERT_EQ(errorText(outcome), "");
    EXPECT_EQ(outcome.structured.title, "t");
    const zBlock& zone = *outcome.structured.blocks.at(0);
    EXPECT_EQ(zone.title, "a b");
    for (std::size_t axis = 0; axis < 3; ++axis) {
        EXPECT_EQ(zone.variables[axis]->data, structured_.blocks[0]->variables[axis]->data);
    }
}

TEST_F(TecplotWrite, AZoneWithoutTitleGetsItsNumberForOneAsReadersTakeNoneThatIsEmpty) {
    for (const char* const title : {"one", ""}) {
        structured_.blocks.push_back(
            grid(title, 2, 2, {{"x", {1, 2, 3, 4}}, {"y", {1, 2, 3, 4}}, {"z", {1, 2, 3, 4}}}));
        unstructured_.blocks.push_back(triangle(title));
    }
    written(16);
    const TecplotOutcome grids = test::readTecplot(path_);
    EXPECT_EQ(errorText(grids), "");
    ASSERT_EQ(grids.structured.blocks.size(), 2U);
    EXPECT_EQ(grids.structured.blocks[0]->title, "one");
    EXPECT_EQ(grids.structured.blocks[1]->title, "Zone_2");
    structured_.blocks.clear();
    written(16);
    const TecplotOutcome triangles = test::readTecplot(path_);
    EXPECT_EQ(errorText(triangles), "");
    ASSERT_EQ(triangles.unstructured.blocks.size(), 2U);
    EXPECT_EQ(triangles.unstructured.blocks[1]->title, "Zone_2");
}

TEST_F(TecplotWrite, WhatOpenDoesNotTakeOfAGridIsNoted) {
    const auto notes = [this] {
        zTecplotReader writer;
        writer.structuredTarget = &structured_;
        return writer.write(path_, 16).notes;
    };
    structured_.blocks.push_back(
        grid("one", 2, 2, {{"x", {1, 2, 3, -1e8}}, {"y", {1, 2, 3, 4}}, {"z", {1, 2, 3, 4}}, {"p", {-2e8, 0, 0, 0}}}));
    EXPECT_THAT(notes(), testing::IsEmpty());
    structured_.blocks.push_back(grid("line", 3, 1, {{"x", {1, 2, 3}}, {"y", {1, 2, -1.5e8}}, {"z", {-2e8, 2, 3}}}));
    structured_.blocks.push_back(grid("column", 1, 2, {{"x", {1, 2}}, {"y", {1, 2}}, {"z", {1, 2}}}));
    EXPECT_THAT(notes(),
                testing::ElementsAre("Patches less than 2 points wide, which Open does not take from a .dat: 2",
                                     "Coordinates below -1e8, which Open takes from a .dat as 0: 2"));
}

TEST_F(TecplotWrite, ANameThatEndsTheListOfVariablesForTheReaderIsWrittenWithoutWhatDoes) {
    unstructured_.blocks.push_back(triangle("a"));
    for (const char* const name : {"static pressure [Pa]", "", "cp/c~(1)-_2"}) {
        unstructured_.blocks[0]->addVariable(name)->data = {1, 2, 3};
    }
    written(16);
    const TecplotOutcome again = test::readTecplot(path_, false);
    EXPECT_EQ(errorText(again), "");
    ASSERT_EQ(again.unstructured.blocks.size(), 1U);
    std::vector<std::string> names;
    for (const auto& variable : again.unstructured.blocks[0]->variables) {
        names.push_back(variable->name);
    }
    EXPECT_THAT(names, testing::ElementsAre("x", "y", "z", "static_pressure__Pa_", "_", "cp/c~(1)-_2"));
}

TEST_F(TecplotWrite, QuadrilateralsComeBackAsTriangles) {
    const TecplotOutcome read =
        test::readTecplotText("VARIABLES = \"x\" \"y\" \"z\"\nZONE T=\"q\" N=4 E=1 ET=QUADRILATERAL"
                              " F=POINT\n0 0 0\n1 0 0\n1 1 0\n0 1 0\n1 2 3 4\n");
    ASSERT_EQ(errorText(read), "");
    copyRegion(read.unstructured, unstructured_);
    EXPECT_EQ(written(6), "TITLE = \"Untitled\"\nVARIABLES = \"x\" \"y\" \"z\"\nZONE T=\"q\"\n"
                          "ZONETYPE=FETRIANGLE, NODES=4, ELEMENTS=2\nDATAPACKING=POINT\nDT=(SINGLE,SINGLE,SINGLE)\n"
                          "0 0 0\n1 0 0\n1 1 0\n0 1 0\n1 2 3\n3 4 1\n");
    const TecplotOutcome again = test::readTecplot(path_);
    ASSERT_EQ(errorText(again), "");
    EXPECT_EQ(again.unstructured.blocks.at(0)->connectivity, unstructured_.blocks[0]->connectivity);
}

} // namespace
} // namespace velmora
