#include <gmock/gmock.h>

#include <sstream>

#include "command_rig.h"
#include "field_file.h"

// The distances of Compare as files.

namespace velmora::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

class DistanceCommands : public CommandRig {
protected:
    /// A cell at the height 0, one at 1 and one at 3; the last two are the zBlock, which is compared with the first.
    DistanceCommands() {
        hold({flatPatch(2, 2), flatPatch(2, 2, 1), flatPatch(2, 2, 3)});
        runAll(addPatch(3) + addPatch(2));
        run({.id = "model.compare", .fields = {{"target", "2"}}});
        forget();
    }

    void save(const std::string& name) { run({.id = "model.saveDistances", .files = {name}}); }

    /// Zones: a triangle in z = 0, and one with the nodes' heights 1, 2 and 1 above it, compared with the first.
    void compareTriangles() {
        holdZones({});
        doc.feRegion.blocks.push_back(triangleZone("low", {{0, 0, 0}, {4, 0, 0}, {0, 4, 0}}, {0, 1, 2}));
        doc.feRegion.blocks.push_back(triangleZone("high", {{0, 0, 1}, {1, 0, 2}, {0, 1, 1}}, {0, 1, 2}));
        updateBounds();
        runAll(addPatch(2));
        run({.id = "model.compare", .fields = {{"target", "2"}}});
    }
};

TEST_F(DistanceCommands, OffUntilSomethingIsComparedAndAfterAnEdit) {
    EXPECT_FALSE(isCommandOff(doc, "model.saveDistances"));
    run({.id = "model.move", .fields = {{"deltaZ", "0.5"}}});
    EXPECT_TRUE(isCommandOff(doc, "model.saveDistances"));
}

TEST_F(DistanceCommands, ATableOfThePointsThatWereCompared) {
    save("far.csv");
    EXPECT_EQ(fileText(folder / "far.csv"), "patch,section,point,x,y,z,distance\n"
                                            "2,1,1,0,0,1,1\n2,1,2,1,0,1,1\n2,2,1,0,1,1,1\n2,2,2,1,1,1,1\n"
                                            "3,1,1,0,0,3,3\n3,1,2,1,0,3,3\n3,2,1,0,1,3,3\n3,2,2,1,1,3,3\n");
}

TEST_F(DistanceCommands, ATableOfTheNodesThatWereCompared) {
    compareTriangles();
    save("far.csv");
    EXPECT_EQ(fileText(folder / "far.csv"), "zone,node,x,y,z,distance\n2,1,0,0,1,1\n2,2,1,0,2,2\n2,3,0,1,1,1\n");
}

TEST_F(DistanceCommands, AFieldValueOfTheGridThatWasCompared) {
    save("far.dat");
    const FieldReadResult read = readFieldFile(folder / "far.dat");
    ASSERT_TRUE(read.loaded);
    EXPECT_EQ(read.variablesLine, R"(VARIABLES = "X", "Y", "Z", "distance")");
    EXPECT_EQ(read.fieldCount, 1);
    EXPECT_EQ(read.patches, (PatchList{flatPatch(2, 2, 1), flatPatch(2, 2, 3)}));
    const zVec<double> one(1, 0, 0);
    const zVec<double> three(3, 0, 0);
    EXPECT_EQ(read.fieldPatches, (PatchList{{{one, one}, {one, one}}, {{three, three}, {three, three}}}));
    EXPECT_EQ(doc.patches.size(), 3U) << "the model stays, and has no field by it";
    EXPECT_FALSE(doc.fieldLoaded);
}

TEST_F(DistanceCommands, AVariableOfTheZonesThatWereCompared) {
    compareTriangles();
    save("far.dat");
    EXPECT_EQ(doc.feRegion.blocks[1]->findVariable("distance"), nullptr) << "the model has none of it";
    std::istringstream file(fileText(folder / "far.dat"));
    std::string line;
    while (std::getline(file, line) && line.find("VARIABLES") == std::string::npos) {
    }
    EXPECT_EQ(line, R"(VARIABLES = "x" "y" "z" "distance")");
    while (std::getline(file, line) && line.find("DT=") == std::string::npos) {
        EXPECT_EQ(line.find("low"), std::string::npos) << "that one was not compared";
    }
    std::vector<double> values(12);
    for (double& value : values) {
        file >> value;
    }
    EXPECT_THAT(values, ElementsAre(0, 0, 1, 1, 1, 0, 2, 2, 0, 1, 1, 1));
}

TEST_F(DistanceCommands, OtherTypesAreRefused) {
    save("far.apt");
    EXPECT_THAT(heard(), Contains("message: This model cannot be saved as apt"));
    EXPECT_FALSE(std::filesystem::exists(folder / "far.apt"));
    hold({patchOf({3, 2})});
    doc.referencePatches = {flatPatch(2, 2)};
    run({.id = "model.compare", .fields = {{"target", "1"}}});
    save("far.dat");
    EXPECT_THAT(heard(), Contains("message: This model cannot be saved as dat")) << "lines of two lengths";
    save("far.csv");
    EXPECT_TRUE(std::filesystem::exists(folder / "far.csv"));
}

TEST_F(DistanceCommands, AFileOfSomebodyElseIsAskedAbout) {
    const std::string other = "kept\n";
    writeFileText(folder / "far.csv", other);
    ui.answers = {false};
    ui.files = {{folder / "far.csv"}};
    call("model.saveDistances");
    EXPECT_EQ(fileText(folder / "far.csv"), other);
    save("far.csv");
    EXPECT_EQ(fileText(folder / "far.csv").substr(0, 5), "patch");
    forget();
    save("far.csv");
    EXPECT_THAT(heard(), Not(Contains(testing::HasSubstr("Overwrite it?")))) << "it came from here";
}

TEST_F(DistanceCommands, WithoutAPlaceNothingIsLost) {
    save("gone/far.csv");
    EXPECT_THAT(heard(), Contains("message: It is impossible to save current file"));
    EXPECT_NE(doc.comparison(), nullptr);
}

} // namespace
} // namespace velmora::test
