#include <gtest/gtest.h>

#include "QtUserInterface.h"
#include "file_types.h"

namespace velmora::test {
namespace {

FileRequest request(ChooserMode mode) {
    FileRequest asked;
    asked.mode = mode;
    asked.types = {{"apt", "Geometry"}, {"skl", "Sections"}};
    return asked;
}

TEST(Chooser, ReadingOffersAllTypesFirst) {
    const ChooserFilters filters = chooserFilters(request(ChooserMode::Open));
    EXPECT_EQ(filters.texts,
              QStringList({"Available Files (*.apt;*.skl)", "Geometry Files (*.apt)", "Sections Files (*.skl)"}));
    EXPECT_EQ(filters.patterns, QStringList({"*.apt *.skl", "*.apt", "*.skl"}));
}

TEST(Chooser, WritingOffersTheTypesOnly) {
    for (const ChooserMode mode : {ChooserMode::SaveAs, ChooserMode::Export}) {
        EXPECT_EQ(chooserFilters(request(mode)).texts,
                  QStringList({"Geometry Files (*.apt)", "Sections Files (*.skl)"}));
    }
}

TEST(Chooser, ASingleTypeToReadStandsAlone) {
    FileRequest asked = request(ChooserMode::Import);
    asked.types.pop_back();
    EXPECT_EQ(chooserFilters(asked).texts, QStringList({"Geometry Files (*.apt)"}));
}

TEST(Chooser, OpensOnTheTypeOfTheProposedFile) {
    FileRequest asked = request(ChooserMode::Open);
    asked.proposed = "/models/Wing.SKL";
    EXPECT_EQ(firstFilter(chooserFilters(asked), asked, QString()), 2);
    asked.mode = ChooserMode::SaveAs;
    EXPECT_EQ(firstFilter(chooserFilters(asked), asked, QString()), 1);
}

TEST(Chooser, OpensOnTheFirstEntryWhenNothingFits) {
    FileRequest asked = request(ChooserMode::Open);
    EXPECT_EQ(firstFilter(chooserFilters(asked), asked, QString()), 0);
    asked.proposed = "/models/wing.stl";
    EXPECT_EQ(firstFilter(chooserFilters(asked), asked, QString()), 0);
    asked.proposed = "/models/wing";
    EXPECT_EQ(firstFilter(chooserFilters(asked), asked, QString()), 0) << "no extension is not the entry of all types";
}

TEST(Chooser, TheTypeUsedLastComesBeforeTheProposedOne) {
    FileRequest asked = request(ChooserMode::Open);
    asked.proposed = "/models/wing.skl";
    EXPECT_EQ(firstFilter(chooserFilters(asked), asked, QStringLiteral("Geometry Files (*.apt)")), 1);
    EXPECT_EQ(firstFilter(chooserFilters(asked), asked, QStringLiteral("Markers Files (*.apm)")), 2)
        << "one that is not offered now does not count";
}

TEST(Chooser, ShowsTheTypesAsUsersKnowThem) {
    FileRequest asked;
    asked.mode = ChooserMode::SaveAs;
    asked.types = singleFileTypes();
    EXPECT_EQ(chooserFilters(asked).texts,
              QStringList({" All Files (*.*)", "Unstructured Files (*.wrl)", "Velmora Geometry Files (*.apt)",
                           "TecPlot Geometry Files (*.dat)", "Velmora Geometry Files (*.skl)",
                           "Velmora Geometry Files (*.ext)", "Unstructured Files (*.stl)", "Structured Files (*.sft)",
                           "Velmora Geometry Files (*.apm)", "Detalization  Files (*.cbc)",
                           "Detalization  Files (*.bc)", "Velmora FlowField Files (*.dat)"}));
    EXPECT_EQ(flowFieldType().typeName, "Velmora FlowField");
    ASSERT_EQ(fileTypesNamed({"skl", "dat"}).size(), 2U);
    EXPECT_EQ(fileTypesNamed({"skl", "dat"})[1].typeName, "TecPlot Geometry");
}

} // namespace
} // namespace velmora::test
