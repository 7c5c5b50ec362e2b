#include "exporters.h"

#include <gmock/gmock.h>

#include "exchange_tools.h"
#include "small_zones.h"

namespace velmora {
namespace {

using test::Bytes;

class Exporters : public testing::Test {
protected:
    test::TemporaryFolder folder_;
    WriteOutcome outcome_;
    FileWritten& record_ = outcome_.record;

    std::string written(ExportOutcome outcome, const std::string& name) const {
        EXPECT_EQ(outcome, ExportOutcome::Done);
        const std::string text = test::fileText(folder_ / name);
        EXPECT_EQ(record_.bytes, text.size());
        EXPECT_EQ(record_.path, folder_ / name);
        return text;
    }
    std::string write(const ExchangeModel& model, const std::string& name, const ExportOptions& options = {}) {
        return written(exportFile(folder_ / name, model, options, outcome_), name);
    }
    /// What Import makes of a file that was written.
    test::Imported readBack(const std::string& name) const {
        test::Imported again;
        EXPECT_EQ(importFile(folder_ / name, {}, again.model, again.record), ImportOutcome::Done) << name;
        EXPECT_TRUE(again.record.complete) << name;
        return again;
    }
};

ExportOptions text(int digits = 17) {
    ExportOptions options;
    options.binary = false;
    options.digits = digits;
    return options;
}

ExchangeModel twoZones() {
    ExchangeModel model;
    model.region.blocks.push_back(test::triangleZone("left side", {{0, 0, 0}, {0.1, 0, 0}, {0, 2, 0}}, {0, 1, 2}));
    model.region.blocks.push_back(test::triangleZone("solid", {{0, 0, 1}, {1, 0, 1}, {2, 0, 1}}, {0, 1, 2}));
    return model;
}

ExchangeModel twoGrids() {
    ExchangeModel model;
    model.patches = {{{{0, 1, 2}, {3, 4, 5}, {6, 7, 0.1}}, {{0, 11, 12}, {13, 14, 15}, {16, 17, 18}}},
                     {{{1, 1, 1}, {2, 2, 2}}, {{3, 3, 3}, {4, 4, 4}}}};
    return model;
}

TEST_F(Exporters, WhatAFormatHasNoRoomForIsNoted) {
    using testing::ElementsAre;
    using testing::IsEmpty;
    ExchangeModel zones = twoZones();
    write(zones, "a.stl");
    EXPECT_THAT(outcome_.notes, ElementsAre("Zones that are one in the file: 2"));
    write(zones, "a.ply");
    EXPECT_THAT(outcome_.notes, ElementsAre("Zones that are one in the file: 2"));
    write(zones, "a.stl", text());
    EXPECT_THAT(outcome_.notes, IsEmpty());
    zones.region.blocks[0]->variables.push_back(std::make_unique<zArray<double>>(3, 1, 1, "p"));
    write(zones, "a.obj");
    EXPECT_THAT(outcome_.notes, ElementsAre("Values at points are not written"));
    ExchangeModel grids = twoGrids();
    grids.patches.push_back({{{0, 0, 0}, {1, 0, 0}}});
    write(grids, "a.obj");
    EXPECT_THAT(outcome_.notes, ElementsAre("Patches without a surface, left out: 1"));
    write(grids, "a.p3d");
    EXPECT_THAT(outcome_.notes, IsEmpty());
}

// "solid" and "left side" stand as they are but in VRML; a variable keeps its letters but for what the reader of
// Tecplot ends a name at.
TEST_F(Exporters, NamesThatBecomeOthersAreNoted) {
    using testing::Contains;
    using testing::IsEmpty;
    const std::string titles = "Titles that are written in other letters: ";
    ExchangeModel model = twoZones();
    for (const char* name : {"a.obj", "a.cgns", "a.dat"}) {
        write(model, name);
        EXPECT_THAT(outcome_.notes, IsEmpty()) << name;
    }
    write(model, "a.wrl");
    EXPECT_THAT(outcome_.notes, Contains(titles + '1'));
    model.region.blocks[0]->title = "a \"b\" of a title that is longer than others";
    model.region.blocks[1]->title = "a/b";
    write(model, "a.dat");
    EXPECT_THAT(outcome_.notes, Contains(titles + '1'));
    write(model, "a.cgns");
    EXPECT_THAT(outcome_.notes, Contains(titles + '2'));
    for (const auto& zone : model.region.blocks) {
        zone->variables.push_back(std::make_unique<zArray<double>>(3, 1, 1, "Cp [-]"));
        zone->variables.push_back(std::make_unique<zArray<double>>(3, 1, 1, "Cp(total)"));
    }
    write(model, "b.dat");
    EXPECT_THAT(outcome_.notes, Contains("Names of variables that are written in other letters: 1"));
}

TEST_F(Exporters, TextStlHasASolidForEachZoneAndItsNormals) {
    EXPECT_EQ(
        write(twoZones(), "a.stl", text(6)),
        "solid left side\n"
        " facet normal 0 0 1\n  outer loop\n   vertex 0 0 0\n   vertex 0.1 0 0\n   vertex 0 2 0\n  endloop\n endfacet\n"
        "endsolid left side\n"
        "solid solid\n"
        " facet normal 0 0 0\n  outer loop\n   vertex 0 0 1\n   vertex 1 0 1\n   vertex 2 0 1\n  endloop\n endfacet\n"
        "endsolid solid\n");
    EXPECT_EQ(record_.format, "stl-text");
    EXPECT_EQ(record_.counts, (Counts{{"facets", 2}, {"solids", 2}, {"triangles", 2}}));
}

TEST_F(Exporters, ASolidWithoutANameThatReadersTakeGetsOne) {
    ExchangeModel model;
    for (const char* const title : {"wing", "", "facet"}) {
        model.region.blocks.push_back(test::oneTriangle(0.0, 0.0, title));
    }
    const std::string solids = write(model, "a.stl", text(6));
    EXPECT_THAT(solids, testing::HasSubstr("solid wing\n"));
    EXPECT_THAT(solids, testing::HasSubstr("endsolid wing\nsolid Zone_2\n facet"));
    EXPECT_THAT(solids, testing::HasSubstr("endsolid Zone_2\nsolid facet_\n facet"));
}

TEST_F(Exporters, BinaryStlIsOneSolidInSinglePrecision) {
    std::string header = "left side";
    header.resize(80, ' ');
    Bytes wanted;
    wanted.addText(header).add(std::uint32_t{2});
    wanted.addAll<float>({0, 0, 1, 0, 0, 0, 0.1, 0, 0, 0, 2, 0}).add(std::uint16_t{0});
    wanted.addAll<float>({0, 0, 0, 0, 0, 1, 1, 0, 1, 2, 0, 1}).add(std::uint16_t{0});
    EXPECT_EQ(write(twoZones(), "a.stl"), wanted.text);
    EXPECT_EQ(record_.format, "stl-binary");
    EXPECT_EQ(record_.counts, (Counts{{"facets", 2}, {"solids", 1}, {"triangles", 2}}));
}

TEST_F(Exporters, ABinaryHeaderNeverBeginsWithSolid) {
    for (const char* const title : {"solid", "Solid body", "  SOLID"}) {
        ExchangeModel model;
        model.region.blocks.push_back(test::oneTriangle(0.0, 0.0, title));
        const std::string bytes = write(model, "a.stl");
        EXPECT_EQ(bytes.substr(0, 10), "zone " + bytes.substr(5, 5)) << title;
        EXPECT_EQ(bytes.size(), 134U);
    }
}

TEST_F(Exporters, ObjHasAnObjectForEachZone) {
    EXPECT_EQ(write(twoZones(), "a.obj"), "o left side\nv 0 0 0\nv 0.10000000000000001 0 0\nv 0 2 0\nf 1 2 3\n"
                                          "o solid\nv 0 0 1\nv 1 0 1\nv 2 0 1\nf 4 5 6\n");
    EXPECT_EQ(record_.format, "obj");
    EXPECT_EQ(record_.counts, (Counts{{"zones", 2}, {"points", 6}, {"faces", 2}, {"triangles", 2}}));
}

TEST_F(Exporters, PlyIsOneMesh) {
    const std::string end = "element face 2\nproperty list uchar int vertex_indices\nend_header\n";
    EXPECT_EQ(write(twoZones(), "a.ply", text(6)),
              "ply\nformat ascii 1.0\nelement vertex 6\nproperty double x\nproperty double y\nproperty double z\n" +
                  end + "0 0 0\n0.1 0 0\n0 2 0\n0 0 1\n1 0 1\n2 0 1\n3 0 1 2\n3 3 4 5\n");
    Bytes wanted;
    wanted.addText("ply\nformat binary_little_endian 1.0\nelement vertex 6\nproperty double x\nproperty double "
                   "y\nproperty double z\n" +
                   end);
    const std::vector<double> points = {0, 0, 0, 0.1, 0, 0, 0, 2, 0, 0, 0, 1, 1, 0, 1, 2, 0, 1};
    wanted.addAll<double>(points)
        .add(std::uint8_t{3})
        .addAll<std::int32_t>({0, 1, 2})
        .add(std::uint8_t{3})
        .addAll<std::int32_t>({3, 4, 5});
    EXPECT_EQ(write(twoZones(), "a.ply"), wanted.text);
    EXPECT_EQ(record_.counts, (Counts{{"points", 6}, {"faces", 2}, {"triangles", 2}}));
    ExportOptions single;
    single.doublePrecision = false;
    const std::string bytes = write(twoZones(), "a.ply", single);
    EXPECT_NE(bytes.find("property float x\n"), std::string::npos);
    EXPECT_EQ(bytes.size(), wanted.text.size() - 3 - std::size_t{18} * 4); // "float" is a letter shorter than "double"
}

TEST_F(Exporters, VrmlHasANamedShapeForEachZone) {
    ExchangeModel model = twoZones();
    model.region.blocks[1]->title = "7 [up].down";
    const std::string shape =
        " {\n  appearance Appearance {\n    material Material {}\n  }\n  geometry IndexedFaceSet {\n"
        "    coord Coordinate {\n      point [\n";
    EXPECT_EQ(write(model, "a.wrl", text(6)),
              "#VRML V2.0 utf8\nDEF left_side Shape" + shape +
                  "0 0 0\n0.1 0 0\n0 2 0\n      ]\n    }\n    coordIndex [\n0 1 2 -1\n    ]\n  }\n}\n"
                  "DEF _7__up__down Shape" +
                  shape + "0 0 1\n1 0 1\n2 0 1\n      ]\n    }\n    coordIndex [\n0 1 2 -1\n    ]\n  }\n}\n");
    EXPECT_EQ(record_.format, "vrml2");
    EXPECT_EQ(countOf(record_.counts, "faceSets"), 2);
}

TEST_F(Exporters, Plot3dTextHasEachCoordinateForItself) {
    EXPECT_EQ(write(twoGrids(), "a.xyz", text()), "2\n3 2 1\n2 2 1\n"
                                                  "0 3 6 0\n13 16\n1 4 7 11\n14 17\n2 5 0.10000000000000001 12\n15 18\n"
                                                  "1 2 3 4\n1 2 3 4\n1 2 3 4\n");
    EXPECT_EQ(record_.format, "plot3d");
    EXPECT_EQ(record_.counts, (Counts{{"zones", 2}, {"patches", 2}, {"sections", 4}, {"points", 10}}));
}

TEST_F(Exporters, BinaryPlot3dIsInRecords) {
    Bytes wanted;
    wanted.addAll<std::int32_t>({4, 2, 4, 24, 3, 2, 1, 2, 2, 1, 24, 144});
    wanted.addAll<double>({0, 3, 6, 0, 13, 16, 1, 4, 7, 11, 14, 17, 2, 5, 0.1, 12, 15, 18})
        .addAll<std::int32_t>({144, 96});
    wanted.addAll<double>({1, 2, 3, 4, 1, 2, 3, 4, 1, 2, 3, 4}).add(std::int32_t{96});
    EXPECT_EQ(write(twoGrids(), "a.p3d"), wanted.text);
    ExportOptions single;
    single.doublePrecision = false;
    EXPECT_EQ(write(twoGrids(), "a.p3d", single).size(), wanted.text.size() - std::size_t{30} * 4);
}

TEST_F(Exporters, TecplotKeepsGridsAsGrids) {
    const std::string written = write(twoGrids(), "a.dat");
    EXPECT_EQ(written.substr(0, written.find("DATAPACKING")),
              "TITLE = \"\"\nVARIABLES = \"x\" \"y\" \"z\"\nZONE T=\"Patch 1\"\nZONETYPE=ORDERED, I=3, J=2, K=1\n");
    EXPECT_NE(written.find("\n6 7 0.10000000000000001\n"), std::string::npos);
    EXPECT_EQ(record_.format, "tecplot");
    EXPECT_EQ(record_.counts, (Counts{{"zones", 2}, {"points", 10}, {"variables", 3}}));
}

// Written with every digit, each format gives the model back.
TEST_F(Exporters, EveryFormatGivesItsTrianglesBack) {
    ExchangeModel model;
    model.region.blocks.push_back(
        test::triangleZone("thirds", {{1.0 / 3, 0, 0}, {2.0 / 3, 1e-17, 0}, {1e6 / 3, 2, 0.1}}, {0, 1, 2}));
    model.region.blocks.push_back(test::oneTriangle(1e-9, 1e9, "far"));
    for (const bool binary : {false, true}) {
        for (const std::string& name : std::vector<std::string>{"a.stl", "a.obj", "a.ply", "a.dat"}) {
            if (binary && name == "a.stl") {
                continue; // single precision
            }
            ExportOptions options;
            options.binary = binary;
            write(model, name, options);
            const test::Imported again = readBack(name);
            EXPECT_EQ(test::cornersOf(again.model), test::cornersOf(model)) << name;
            EXPECT_EQ(again.record.format, record_.format);
            EXPECT_EQ(kept(again, "triangles"), 2);
            if (name != "a.ply") {
                EXPECT_EQ(test::titlesOf(again.model), test::titlesOf(model)) << name;
            }
        }
    }
}

TEST_F(Exporters, EveryFormatOfGridsGivesThemBack) {
    ExchangeModel model = twoGrids();
    model.patches[0][1][1] = {1.0 / 3, 1e-17, -1e300};
    for (const bool binary : {false, true}) {
        for (const std::string& name : std::vector<std::string>{"a.p3d", "a.xyz", "a.dat"}) {
            ExportOptions options;
            options.binary = binary;
            write(model, name, options);
            EXPECT_EQ(readBack(name).model.patches, model.patches) << name;
        }
    }
}

TEST_F(Exporters, GridsGoOutAsTrianglesThatLookToTheFront) {
    ExchangeModel model;
    model.patches = {{{{0, 0, 0}, {1, 0, 0}}, {{0, 1, 0}, {1, 1, 0}}}};
    for (const std::string& name : std::vector<std::string>{"a.stl", "a.obj", "a.ply"}) {
        write(model, name);
        EXPECT_EQ(
            test::cornersOf(readBack(name).model),
            (std::vector<test::Corners>{{{{0, 0, 0}, {1, 1, 0}, {0, 1, 0}}}, {{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}}}}))
            << name;
    }
}

TEST_F(Exporters, EqualPointsMergeWhenAsked) {
    ExchangeModel model;
    model.region =
        test::triangleRegion({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, {0, 1, 2, 3, 4, 5});
    ExportOptions merge;
    merge.merge = true;
    EXPECT_EQ(write(model, "a.obj", merge), "o body\nv 0 0 0\nv 1 0 0\nv 0 1 0\nv 1 1 0\nf 1 2 3\nf 2 4 3\n");
    write(model, "a.dat", merge);
    EXPECT_EQ(countOf(record_.counts, "points"), 4);
    EXPECT_NE(test::fileText(folder_ / "a.dat").find("NODES=4, ELEMENTS=2"), std::string::npos);
    EXPECT_EQ(model.region.blocks[0]->nodeCount, 6);
}

TEST_F(Exporters, AFileThatCannotBeWrittenLeavesNothing) {
    for (const std::string& name : std::vector<std::string>{"a.stl", "a.obj", "a.ply", "a.wrl", "a.dat"}) {
        EXPECT_EQ(exportFile(folder_ / "none" / name, twoZones(), {}, outcome_), ExportOutcome::CannotWrite) << name;
    }
    EXPECT_EQ(exportFile(folder_ / "none" / "a.p3d", twoGrids(), {}, outcome_), ExportOutcome::CannotWrite);
    EXPECT_TRUE(folder_.names().empty());
}

} // namespace
} // namespace velmora
