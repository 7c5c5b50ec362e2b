#include "interchange.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "triangle_tools.h"

namespace velmora {
namespace {

using testing::ElementsAre;

const std::string stlText = "solid a facet normal 0 0 0 outer loop vertex 0 0 0 vertex 1 0 0 vertex 0 1 0 endloop "
                            "endfacet endsolid a\n";
const std::string vrmlText = "#VRML V2.0 utf8\nIndexedFaceSet { coord Coordinate { point [ 0 0 0 1 0 0 0 1 0 ] } "
                             "coordIndex [ 0 1 2 ] }\n";
// x counts i, y counts j, z counts k: 3 by 2 by 2 points.
const std::string gridText = "TITLE = \"grid\"\nVARIABLES = \"x\" \"y\" \"z\"\nZONE T=\"g\" I=3 J=2 K=2 F=POINT\n"
                             "0 0 0\n1 0 0\n2 0 0\n0 1 0\n1 1 0\n2 1 0\n0 0 1\n1 0 1\n2 0 1\n0 1 1\n1 1 1\n2 1 1\n";
const std::string triangleText = "VARIABLES = \"x\" \"y\" \"z\"\nZONE N=3 E=1 ET=TRIANGLE F=FEPOINT\n"
                                 "0 0 0\n1 0 0\n0 1 0\n1 2 3\n";

class Interchange : public testing::Test {
protected:
    test::TemporaryFolder folder_;
    zRegion structured_;
    zRegion_fe unstructured_;
    std::vector<std::string> shown_;

    bool read(const std::string& name, const std::string& text, bool transpose = false) {
        return readOnly(test::writeFileText(folder_ / name, text), transpose);
    }

    bool readOnly(const std::filesystem::path& path, bool transpose = false) {
        return readGeometry(path, transpose, structured_, unstructured_,
                            [this](const std::string& text) { shown_.push_back(text); });
    }

    bool write(const std::string& name) {
        return writeGeometry(folder_ / name, 8, structured_, unstructured_,
                             [this](const std::string& text) { shown_.push_back(text); });
    }
};

// The line's number is that of the source as built; all before it is fixed.
std::string withoutLine(const std::string& text) {
    return text.substr(0, text.find_last_not_of("0123456789") + 1);
}

TEST_F(Interchange, TheExtensionChoosesTheReaderWhateverItsCase) {
    EXPECT_TRUE(read("model.stl", stlText));
    EXPECT_TRUE(read("MODEL.STL", stlText));
    EXPECT_TRUE(read("model.Wrl", vrmlText));
    EXPECT_TRUE(read("model.DAT", triangleText));
    EXPECT_THAT(test::titlesOf(unstructured_), ElementsAre("a", "a", "Zone_1", "zone"));
    EXPECT_TRUE(structured_.blocks.empty());
    EXPECT_TRUE(shown_.empty());
}

TEST_F(Interchange, AnUnknownExtensionIsNotReadAndNothingIsShown) {
    for (const char* const name : {"model.xyz", "model", "model.stl.bak", ".stl", "stl"}) {
        EXPECT_FALSE(read(name, stlText)) << name;
    }
    EXPECT_TRUE(shown_.empty());
    EXPECT_TRUE(unstructured_.blocks.empty());
}

TEST_F(Interchange, AnUnknownExtensionIsWrittenAsNothingAndIsTrue) {
    EXPECT_TRUE(write("model.xyz"));
    EXPECT_TRUE(folder_.names().empty());
    EXPECT_TRUE(shown_.empty());
}

TEST_F(Interchange, AFailedOpenShowsTheWholeReport) {
    for (const auto& [name, unit] : {std::pair("missing.dat", "zTecplotReader"),
                                     std::pair("missing.wrl", "zVRMLReader"), std::pair("missing.stl", "zSTLReader")}) {
        shown_.clear();
        EXPECT_FALSE(readOnly(folder_ / name));
        ASSERT_EQ(shown_.size(), 1U);
        EXPECT_EQ(withoutLine(shown_[0]),
                  "\n--- Error Message ---\n\nFile Error: ...\n\nIn file:\n'" + std::string(unit) + "'\n\nLine No ");
        EXPECT_NE(withoutLine(shown_[0]), shown_[0]);
    }
}

TEST_F(Interchange, AFailedOpenForWritingShowsTheWholeReport) {
    for (const auto& [name, unit] : {std::pair("no/x.dat", "zTecplotReader"), std::pair("no/x.wrl", "zVRMLReader"),
                                     std::pair("no/x.stl", "zSTLReader")}) {
        shown_.clear();
        EXPECT_FALSE(write(name));
        ASSERT_EQ(shown_.size(), 1U);
        EXPECT_EQ(withoutLine(shown_[0]),
                  "\n--- Error Message ---\n\nFile Error: ...\n\nIn file:\n'" + std::string(unit) + "'\n\nLine No ");
    }
}

TEST_F(Interchange, WhatWasReadBeforeAnErrorStays) {
    const test::CapturedErrors silence;
    EXPECT_FALSE(read("model.wrl", vrmlText + "IndexedFaceSet { color [ "));
    EXPECT_THAT(test::titlesOf(unstructured_), ElementsAre("Zone_1"));
    ASSERT_EQ(shown_.size(), 1U);
    EXPECT_THAT(shown_[0],
                testing::HasSubstr("Input-Output Error: Unexpected EOF: find_appropriate_close_brace():\n\n"));
}

TEST_F(Interchange, AnElementOfANodeThatIsNotThereIsAValueError) {
    for (const char* const element : {"1 2 4", "0 1 2", "-5 1 2", "2147483647 1 2"}) {
        unstructured_.blocks.clear();
        shown_.clear();
        std::string text = triangleText;
        text.replace(text.find("1 2 3"), 5, element);
        EXPECT_FALSE(read("model.dat", text)) << element;
        ASSERT_EQ(shown_.size(), 1U) << element;
        EXPECT_THAT(shown_[0], testing::StartsWith("\n--- Error Message ---\n\nValue Error: ")) << element;
    }
}

// A version of so many digits is more than the header's expression may be tried on, or than a number holds.
TEST_F(Interchange, AHeaderMadeToBeHardIsRefused) {
    EXPECT_FALSE(read("hard.wrl", "#VRML V" + std::string(100000, '2') + ' ' + std::string(100000, '2') + '\n'));
    EXPECT_EQ(shown_.size(), 1U);
}

TEST_F(Interchange, TransposingExchangesTheFirstTwoIndices) {
    ASSERT_TRUE(read("grid.dat", gridText, true));
    ASSERT_EQ(structured_.blocks.size(), 1U);
    const zBlock& zone = *structured_.blocks[0];
    EXPECT_EQ(zone.title, "g");
    EXPECT_EQ(zone.imax, 2);
    EXPECT_EQ(zone.jmax, 3);
    EXPECT_EQ(zone.kmax, 2);
    EXPECT_EQ(zone.total, 12);
    ASSERT_EQ(zone.variables.size(), 3U);
    EXPECT_THAT(zone.variables[0]->data, ElementsAre(0, 0, 1, 1, 2, 2, 0, 0, 1, 1, 2, 2));
    EXPECT_THAT(zone.variables[1]->data, ElementsAre(0, 1, 0, 1, 0, 1, 0, 1, 0, 1, 0, 1));
    EXPECT_THAT(zone.variables[2]->data, ElementsAre(0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 1, 1));
    EXPECT_EQ(zone.variables[0]->name, "x");
    EXPECT_EQ(zone.variables[0]->sj, 2);
}

TEST_F(Interchange, WithoutTransposingTheZoneStaysAsItIs) {
    ASSERT_TRUE(read("grid.dat", gridText));
    ASSERT_EQ(structured_.blocks.size(), 1U);
    EXPECT_EQ(structured_.blocks[0]->imax, 3);
    EXPECT_THAT(structured_.blocks[0]->variables[0]->data, ElementsAre(0, 1, 2, 0, 1, 2, 0, 1, 2, 0, 1, 2));
}

TEST_F(Interchange, AZoneWithoutPointsIsTransposedWithoutReadingAnything) {
    zRegion region;
    region.blocks.push_back(std::make_unique<zBlock>(3, 2, 0));
    region.blocks[0]->addVariable("x");
    region.blocks.push_back(std::make_unique<zBlock>(3, 2, 1));
    region.blocks[1]->addVariable("x")->data.clear();
    transposeZones(region);
    EXPECT_EQ(region.blocks[0]->imax, 2);
    EXPECT_EQ(region.blocks[0]->jmax, 3);
    EXPECT_TRUE(region.blocks[0]->variables[0]->data.empty());
    EXPECT_THAT(region.blocks[1]->variables[0]->data, ElementsAre(0, 0, 0, 0, 0, 0));
}

TEST_F(Interchange, AModelGoesThroughAllThreeFormats) {
    ASSERT_TRUE(read("model.stl", stlText));
    for (const char* const name : {"again.dat", "again.wrl", "again.stl"}) {
        ASSERT_TRUE(write(name));
        unstructured_.blocks.clear();
        ASSERT_TRUE(readOnly(folder_ / name));
        ASSERT_EQ(unstructured_.blocks.size(), 1U) << name;
        EXPECT_THAT(test::trianglesOf(*unstructured_.blocks[0]), ElementsAre(std::array<std::int64_t, 3>{0, 1, 2}));
        EXPECT_THAT(unstructured_.blocks[0]->variables[0]->data, ElementsAre(0, 1, 0));
    }
    EXPECT_TRUE(shown_.empty());
}

TEST_F(Interchange, ThePrecisionCountsForTecplotOnly) {
    ASSERT_TRUE(read("model.stl", stlText));
    unstructured_.blocks[0]->variables[0]->data[1] = 1.0 / 3.0;
    ASSERT_TRUE(write("out.dat"));
    ASSERT_TRUE(write("out.wrl"));
    ASSERT_TRUE(write("out.stl"));
    EXPECT_THAT(test::fileText(folder_ / "out.dat"), testing::HasSubstr("\n0.33333333 0 0\n"));
    EXPECT_THAT(test::fileText(folder_ / "out.wrl"), testing::HasSubstr("\n0.333333 0 0\n"));
    EXPECT_THAT(test::fileText(folder_ / "out.stl"), testing::HasSubstr("vertex 0.333333 0 0\n"));
}

// ---- Progress -------------------------------------------------------------------------------------------------------

TEST_F(Interchange, EveryFormatTellsItsProgressInReadingAndWriting) {
    constexpr std::int32_t triangles = 40000;
    auto zone = std::make_unique<zBlock_fe>(3 * triangles, 4 * triangles, triangles);
    zone->title = "many";
    for (const char* name : {"x", "y", "z"}) {
        auto& values = zone->addVariable(name)->data;
        for (std::size_t i = 0; i < values.size(); ++i) {
            values[i] = name[0] == 'z' ? 0.123456 : static_cast<double>(i % 3 == (name[0] == 'x' ? 1U : 2U)) + 0.123456;
        }
    }
    for (std::int32_t i = 0; i < 3 * triangles; ++i) {
        zone->connectivity[static_cast<std::size_t>(i / 3) * 4 + static_cast<std::size_t>(i % 3)] = i;
    }
    unstructured_.blocks.push_back(std::move(zone));
    for (const char* name : {"a.dat", "a.stl", "a.wrl"}) {
        std::vector<double> told;
        const auto report = [&told](double fraction) { told.push_back(fraction); };
        const auto expectGood = [&told, name](const char* what) {
            EXPECT_GE(told.size(), 2U) << name << what;
            EXPECT_TRUE(std::is_sorted(told.begin(), told.end())) << name << what;
            EXPECT_TRUE(told.empty() || (told.front() >= 0.0 && told.back() > 0.5 && told.back() <= 1.0))
                << name << what;
            told.clear();
        };
        const auto show = [](const std::string& text) { FAIL() << text; };
        ASSERT_TRUE(writeGeometry(folder_ / name, 8, {}, unstructured_, show, report));
        expectGood(" written");
        zRegion grids;
        zRegion_fe again;
        ASSERT_TRUE(readGeometry(folder_ / name, false, grids, again, show, report));
        expectGood(" read");
        ASSERT_EQ(again.blocks.size(), 1U);
        EXPECT_EQ(again.blocks.front()->elementCount, triangles);
    }
}

} // namespace
} // namespace velmora
