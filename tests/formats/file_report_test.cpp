#include "file_report.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora {
namespace {

using testing::ElementsAre;

FileRead fileOf(const char* format, const Counts& found, const Counts& kept) {
    FileRead read;
    read.path = "/models/box.stl";
    read.bytes = 1200;
    read.format = format;
    read.found = found;
    read.kept = kept;
    return read;
}

TEST(KindInWords, IsWrittenAsAUserWritesIt) {
    EXPECT_EQ(kindInWords("facets"), "Facets");
    EXPECT_EQ(kindInWords("faceSets"), "Face sets");
    EXPECT_EQ(kindInWords(""), "");
}

TEST(FileReport, OfAFileThatWasReadWholeSaysSo) {
    EXPECT_THAT(reportLines(fileOf("apt", {{"patches", 2}, {"points", 12}}, {{"patches", 2}, {"points", 12}})),
                ElementsAre("/models/box.stl", "Format: apt, bytes: 1200", "Patches in the file: 2, all kept",
                            "Points in the file: 12, all kept", "All of its geometry was kept as it is."));
}

TEST(FileReport, NamesTheUnitThatAFileHas) {
    FileRead read = fileOf("step", {{"triangles", 12}}, {{"triangles", 12}});
    read.unit = "inch";
    EXPECT_THAT(reportLines(read),
                ElementsAre("/models/box.stl", "Format: step, bytes: 1200", "Unit of length: inch",
                            "Triangles in the file: 12, all kept", "All of its geometry was kept as it is."));
    EXPECT_EQ(unitText(fileOf("stl", {}, {})), "");
}

TEST(FileReport, TellsWhatWasChangedAndWhatWasLost) {
    FileRead read = fileOf("stl", {{"facets", 9}, {"solids", 2}}, {{"facets", 8}, {"solids", 2}});
    read.alters("Degenerate triangles: 3");
    read.losesGeometry("One facet is damaged");
    EXPECT_THAT(reportLines(read),
                ElementsAre("/models/box.stl", "Format: stl, bytes: 1200", "Facets in the file: 9, kept: 8",
                            "Solids in the file: 2, all kept", "Changed: Degenerate triangles: 3",
                            "Lost: One facet is damaged",
                            "Part of its geometry was not kept: a save over the file would lose it."));
}

TEST(FileReport, TellsACountOnceWhenItsCauseStandsBesideIt) {
    FileRead read = fileOf("stl", {{"facets", 522}, {"solids", 1}}, {{"facets", 521}, {"solids", 1}});
    read.losesGeometry("Facets in the file: 522, kept: 521 (the first facet of a solid without a name)");
    EXPECT_THAT(reportLines(read),
                ElementsAre("/models/box.stl", "Format: stl, bytes: 1200", "Solids in the file: 1, all kept",
                            "Lost: Facets in the file: 522, kept: 521 (the first facet of a solid without a name)",
                            "Part of its geometry was not kept: a save over the file would lose it."));
    FileRead scene = fileOf("wrl", {{"faceSets", 170}}, {{"faceSets", 0}});
    scene.losesGeometry("Face sets: 170, kept: 0 (commas between numbers)");
    EXPECT_THAT(reportLines(scene),
                ElementsAre("/models/box.stl", "Format: wrl, bytes: 1200",
                            "Lost: Face sets: 170, kept: 0 (commas between numbers)", "Nothing of the file was kept."));
}

TEST(FileReport, TellsACountOfAnotherKindAllTheSame) {
    FileRead read = fileOf("dat", {{"zones", 3}, {"points", 30}}, {{"zones", 1}, {"points", 10}});
    read.losesGeometry("Zones in the file: 3, kept: 1 (two are volumes)");
    EXPECT_THAT(reportLines(read), testing::Contains("Points in the file: 30, kept: 10"));
    EXPECT_THAT(reportLines(read), testing::Not(testing::Contains("Zones in the file: 3, kept: 1")));
}

TEST(FileReport, OfWhatWasMadeOfTheFileSaysHowMuch) {
    // Polygons became triangles: the file has none.
    EXPECT_THAT(reportLines(fileOf("off", {{"triangles", 0}}, {{"triangles", 12}, {"zones", 1}})),
                ElementsAre("/models/box.stl", "Format: off, bytes: 1200", "Triangles in the model: 12",
                            "Zones in the model: 1", "All of its geometry was kept as it is."));
}

TEST(FileReport, WarnsOfASaveThatWouldLoseSomething) {
    FileRead read = fileOf("dat", {{"points", 4}}, {{"points", 4}});
    read.losesDetail("Colours");
    EXPECT_EQ(reportLines(read).back(),
              "All of its geometry was kept: a save over the file would lose what is named above.");
    read.thinned = true;
    EXPECT_EQ(reportLines(read).back(), "Not all of its points were kept: a save over the file would lose the others.");
}

TEST(FileReport, KnowsAnEmptyFileFromOneThatGaveNothing) {
    FileRead read = fileOf("apt", {{"points", 0}}, {{"points", 0}});
    EXPECT_EQ(reportLines(read).back(), "Nothing of the file was kept.");
    read.bytes = 0;
    EXPECT_THAT(reportLines(read),
                ElementsAre("/models/box.stl", "Format: apt, bytes: 0", "Points in the file: 0", "The file is empty."));
}

TEST(FileReport, OfSeveralFilesLeavesALineBetween) {
    FileRead first = fileOf("apt", {}, {});
    first.bytes = 0;
    FileRead second = first;
    second.path = "b.apt";
    EXPECT_THAT(reportLines(std::vector<FileRead>{first, second}),
                ElementsAre("/models/box.stl", "Format: apt, bytes: 0", "The file is empty.", "", "b.apt",
                            "Format: apt, bytes: 0", "The file is empty."));
    EXPECT_THAT(reportLines(std::vector<FileRead>{}), testing::IsEmpty());
}

} // namespace
} // namespace velmora
