#include "reader_fixture.h"
#include "small_zones.h"

namespace velmora {
namespace {

using test::Corners;
using test::Point;
using testing::Contains;
using testing::ElementsAre;
using testing::SizeIs;

class VrmlReader : public test::ReaderTest {
protected:
    ImportOutcome readData(const std::string& name) { return read(std::filesystem::path(VELMORA_TEST_DATA) / name); }
};

const std::string triangle =
    "IndexedFaceSet { coord Coordinate { point [ 0 0 0, 1 0 0, 0 1 0.5 ] } coordIndex [ 0 1 2 ] }";

TEST_F(VrmlReader, AFaceSetKeepsItsPointsUnderTheNearestName) {
    ASSERT_EQ(readText("a.wrl", "#VRML V2.0 utf8\nDEF outer Transform { children DEF wing Shape { geometry " +
                                    triangle + " } }\nDEF body Group { children Shape { geometry " + triangle +
                                    " } }\nShape { geometry " + triangle + " }"),
              ImportOutcome::Done);
    EXPECT_THAT(test::titlesOf(model_), ElementsAre("wing", "body", ""));
    const Corners wanted = {{{0, 0, 0}, {1, 0, 0}, {0, 1, 0.5}}};
    EXPECT_THAT(test::cornersOf(model_), ElementsAre(wanted, wanted, wanted));
    EXPECT_EQ(record_.format, "vrml2");
    EXPECT_TRUE(record_.complete);
    EXPECT_EQ(countOf(record_.kept, "zones"), 3);
    EXPECT_EQ(countOf(record_.kept, "points"), 9);
}

// Scaled by 2, then moved: the first at x 10, the second, which USE puts, mirrored at x -10.
TEST_F(VrmlReader, EachPlaceWhereUsePutsASetIsAZoneAtItsPlace) {
    ASSERT_EQ(readText("a.wrl", "#VRML V2.0 utf8\nTransform { scale 2 2 2 translation 10 0 0 children DEF part Shape { "
                                "geometry " +
                                    triangle +
                                    " } }\nTransform { scale -1 1 1 translation -10 0 0 children USE part }"),
              ImportOutcome::Done);
    EXPECT_THAT(test::titlesOf(model_), ElementsAre("part", "part"));
    EXPECT_THAT(test::cornersOf(model_), ElementsAre(Corners{{{10, 0, 0}, {12, 0, 0}, {10, 2, 1}}},
                                                     Corners{{{-10, 1, 0.5}, {-11, 0, 0}, {-10, 0, 0}}}));
    EXPECT_THAT(record_.changed, ElementsAre("Shapes whose place became part of their points: 2",
                                             "Shapes that stand at several places, each a zone: 1"));
    EXPECT_TRUE(record_.complete);
    EXPECT_FALSE(record_.lossless);
}

TEST_F(VrmlReader, APrototypeHasTheNameOfItsPlace) {
    ASSERT_EQ(readText("a.wrl", "#VRML V2.0 utf8\nPROTO Part [] { Shape { geometry " + triangle +
                                    " } }\nDEF fin Part {}\nDEF rudder Part {}"),
              ImportOutcome::Done);
    EXPECT_THAT(test::titlesOf(model_), ElementsAre("fin", "rudder"));
}

// Whatever letters a title has: no shape is lost behind its name.
TEST_F(VrmlReader, EveryTitleThatIsExportedLeavesAFileThatIsRead) {
    std::vector<std::string> titles = {"DEF", "USE", "NULL", "TRUE", "IS", "PROTO", "field", "7", "-", "(", "\x7F"};
    for (char letter = ' '; letter < '\x7F'; ++letter) {
        titles.push_back(std::string("a") + letter + 'b');
        titles.push_back(std::string(1, letter) + 'b');
    }
    ExchangeModel model;
    for (const std::string& title : titles) {
        model.region.blocks.push_back(test::triangleZone(title, {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {0, 1, 2}));
    }
    WriteOutcome outcome;
    ASSERT_EQ(exportFile(folder_ / "a.wrl", model, {}, outcome), ExportOutcome::Done);
    ASSERT_EQ(read(folder_ / "a.wrl"), ImportOutcome::Done);
    EXPECT_TRUE(record_.complete);
    EXPECT_EQ(countOf(record_.kept, "zones"), static_cast<std::int64_t>(titles.size()));
    EXPECT_EQ(model_.region.blocks.size(), titles.size());
}

TEST_F(VrmlReader, NamesThatTheLibraryChangesAreTold) {
    readText("a.wrl", "#VRML V2.0 utf8\nDEF Fl\xC3\xBCgel Shape { geometry " + triangle + " }");
    EXPECT_THAT(record_.reasons, ElementsAre("Names with letters outside of ASCII are not kept as they are"));
    EXPECT_FALSE(record_.lossless);
    readText("a.wrl", "#VRML V2.0 utf8\n# Fl\xC3\xBCgel\nDEF wing Shape { geometry " + triangle + " }");
    EXPECT_THAT(record_.reasons, ElementsAre());
    EXPECT_TRUE(record_.lossless);
}

TEST_F(VrmlReader, ColoursAndTexturesAreALossAndAMaterialWithoutOneIsNot) {
    const auto shape = [](const std::string& appearance) {
        return "#VRML V2.0 utf8\nShape { appearance Appearance { " + appearance + " } geometry " + triangle + " }";
    };
    ASSERT_EQ(readText("a.wrl", shape("material Material { }")), ImportOutcome::Done);
    EXPECT_TRUE(record_.lossless);
    EXPECT_THAT(record_.reasons, testing::IsEmpty());
    for (const char* appearance :
         {"material Material { diffuseColor 1 0 0 }", "material Material { emissiveColor 0 1 0 }",
          "texture PixelTexture { image 1 1 1 0xFF }"}) {
        ASSERT_EQ(readText("a.wrl", shape(appearance)), ImportOutcome::Done);
        EXPECT_FALSE(record_.lossless) << appearance;
        EXPECT_TRUE(record_.complete) << appearance;
        EXPECT_THAT(record_.reasons, ElementsAre("Colours and materials are not kept")) << appearance;
    }
}

TEST_F(VrmlReader, WhatExportWritesIsReadWithoutALoss) {
    ASSERT_EQ(readText("a.wrl", "#VRML V2.0 utf8\nShape { geometry " + triangle + " }"), ImportOutcome::Done);
    const ExchangeModel model = std::move(model_);
    WriteOutcome written;
    ASSERT_EQ(exportFile(folder_ / "b.wrl", ExchangeView(model.patches, model.region), {}, written),
              ExportOutcome::Done);
    ASSERT_EQ(read(folder_ / "b.wrl"), ImportOutcome::Done);
    EXPECT_TRUE(record_.lossless) << testing::PrintToString(record_.reasons);
    EXPECT_EQ(test::cornersOf(model_), test::cornersOf(model));
}

TEST_F(VrmlReader, NodesBesideTheShapesAreALossOfDetail) {
    const std::string shape = "Shape { geometry " + triangle + " }\n";
    const std::pair<std::string, const char*> scenes[] = {
        {"LOD { level [ " + shape + shape + "] }", "Nodes of which only what they show is read: LOD"},
        {"Switch { whichChoice -1 choice [ " + shape + "] }\n" + shape,
         "Nodes of which only what they show is read: Switch"},
        {"Switch { whichChoice -1 choice [ Anchor { url \"b.wrl\" children " + shape + "} ] }\n" + shape,
         "Nodes that are not kept: Anchor"},
        {"Anchor { url \"b.wrl\" children " + shape + "}", "Nodes that are not kept: Anchor"},
        {"Viewpoint { position 0 0 9 }\nDirectionalLight { }\nBackground { skyColor 1 0 0 }\n" + shape,
         "Views, lights and backgrounds that are not kept: 3"},
        {"WorldInfo { title \"wing\" }\n" + shape, "The title of the scene is not kept"}};
    for (const auto& [scene, reason] : scenes) {
        ASSERT_EQ(readText("a.wrl", "#VRML V2.0 utf8\n" + scene), ImportOutcome::Done) << scene;
        EXPECT_THAT(record_.reasons, Contains(reason)) << scene;
        EXPECT_TRUE(record_.complete) << scene;
        EXPECT_FALSE(record_.lossless) << scene;
        EXPECT_EQ(countOf(record_.kept, "zones"), 1) << scene;
    }
    readText("a.wrl", "#VRML V2.0 utf8\nWorldInfo { title \"\" info \"title\" }\n" + shape);
    EXPECT_TRUE(record_.lossless) << testing::PrintToString(record_.reasons);
}

TEST_F(VrmlReader, NodesOfTheFirstVersionAreToldToo) {
    const std::string faces =
        "Coordinate3 { point [ 0 0 0, 1 0 0, 0 1 0.5 ] }\nIndexedFaceSet { coordIndex [ 0, 1, 2 ] }";
    readText("a.wrl",
             "#VRML V1.0 ascii\nPerspectiveCamera { }\nSeparator { WWWAnchor { name \"b.wrl\" " + faces + " } }\n");
    EXPECT_THAT(record_.reasons, ElementsAre("Nodes that are not kept: WWWAnchor",
                                             "Views, lights and backgrounds that are not kept: 1"));
    EXPECT_EQ(countOf(record_.kept, "zones"), 1);
}

TEST_F(VrmlReader, ClockwiseFacesAreTurned) {
    ASSERT_EQ(readText("a.wrl",
                       "#VRML V2.0 utf8\nShape { geometry IndexedFaceSet { ccw FALSE coord Coordinate { point [ "
                       "0 0 0, 1 0 0, 0 1 0 ] } coordIndex [ 0 1 2 -1 ] } }"),
              ImportOutcome::Done);
    EXPECT_THAT(test::cornersOf(model_), ElementsAre(Corners{{{0, 1, 0}, {1, 0, 0}, {0, 0, 0}}}));
}

TEST_F(VrmlReader, InventorAndItsFaceSets) {
    ASSERT_EQ(readText("a.iv",
                       "#Inventor V2.1 ascii\nDEF hull Separator { Translation { translation 0 0 5 } Coordinate3 { "
                       "point [ 0 0 0, 1 0 0, 1 1 0, 0 1 0, 9 9 9, 2 0 0, 2 1 0 ] } FaceSet { numVertices [ 4 ] } "
                       "FaceSet { startIndex 4 numVertices [ 3 ] } }"),
              ImportOutcome::Done);
    EXPECT_EQ(record_.format, "inventor");
    EXPECT_THAT(test::titlesOf(model_), ElementsAre("hull", "hull"));
    EXPECT_EQ(countOf(record_.kept, "triangles"), 3);
    EXPECT_THAT(test::nodesOf(*model_.region.blocks[1]), ElementsAre(Point{9, 9, 14}, Point{2, 0, 5}, Point{2, 1, 5}));
}

TEST_F(VrmlReader, WrongNumbersLoseTheirFaceAlone) {
    ASSERT_EQ(readText("a.wrl",
                       "#VRML V2.0 utf8\nShape { geometry IndexedFaceSet { coord Coordinate { point [ 0 0 0, 1 0 0, "
                       "0 1 0 ] } coordIndex [ 0 1 3 -1 0 1 2 -1 -2147483648 1 2 -1 0 1 -1 ] } }"),
              ImportOutcome::Done);
    EXPECT_EQ(countOf(record_.kept, "triangles"), 1);
    EXPECT_FALSE(record_.complete);
    EXPECT_THAT(record_.reasons,
                ElementsAre("Faces of fewer than three corners: 1", "Faces with points that are not there: 2"));
}

// Points that are far off stand where single precision has them, and that is worth telling.
TEST_F(VrmlReader, SinglePrecisionIsToldWhereItMovesPoints) {
    const auto shapeAt = [](const std::string& x) {
        return "#VRML V2.0 utf8\nShape { geometry IndexedFaceSet { coord Coordinate { point [ " + x + ".3 0 0, " + x +
               ".9 0 0, " + x + ".3 1 0 ] } coordIndex [ 0 1 2 ] } }";
    };
    readText("a.wrl", shapeAt("0"));
    EXPECT_EQ(model_.libraryMoves, 0.0);
    readText("a.wrl", shapeAt("1048576"));
    EXPECT_GT(model_.libraryMoves, 0.05); // half of the last bit, 2^-4 there
    EXPECT_LT(model_.libraryMoves, 0.07);
}

// ---- Other files ----------------------------------------------------------------------------------------------------

TEST_F(VrmlReader, OtherFilesAreReadInTheFolderAlone) {
    std::filesystem::create_directories(folder_ / "own/parts");
    const std::string part = "#VRML V2.0 utf8\nDEF part Shape { geometry " + triangle + " }";
    test::writeFileText(folder_ / "secret.wrl", part);
    test::writeFileText(folder_ / "own/parts/part.wrl", part);
    const auto withInline = [&](const std::string& url) {
        return read(test::writeFileText(folder_ / "own/a.wrl", "#VRML V2.0 utf8\nShape { geometry " + triangle +
                                                                   " }\nInline { url \"" + url + "\" }"));
    };
    EXPECT_EQ(withInline("parts/part.wrl"), ImportOutcome::Done);
    EXPECT_THAT(model_.region.blocks, SizeIs(2));
    EXPECT_TRUE(record_.complete);
    for (const std::string& url :
         {std::string("../secret.wrl"), (folder_ / "secret.wrl").string(), std::string("http://example.org/a.wrl")}) {
        EXPECT_EQ(withInline(url), ImportOutcome::Done) << url;
        EXPECT_THAT(model_.region.blocks, SizeIs(1)) << url;
        EXPECT_FALSE(record_.complete) << url;
        EXPECT_THAT(record_.reasons, Contains("Files outside of the folder of this one, which are not read: 1")) << url;
    }
    EXPECT_EQ(withInline("a.wrl"), ImportOutcome::Done);
    EXPECT_THAT(model_.region.blocks, SizeIs(1));
    EXPECT_THAT(record_.reasons, Contains("Files that name themselves, read once: 1"));
    const auto withFile = [&](const std::string& name) {
        return read(test::writeFileText(folder_ / "own/a.iv", "#Inventor V2.1 ascii\nFile { name \"" + name + "\" }"));
    };
    EXPECT_EQ(withFile("parts/part.wrl"), ImportOutcome::Done);
    EXPECT_EQ(withFile((folder_ / "secret.wrl").string()), ImportOutcome::Failed);
    EXPECT_EQ(withFile("../secret.wrl"), ImportOutcome::Failed);
}

TEST_F(VrmlReader, AFileMayBeALinkToElsewhere) {
    std::filesystem::create_directories(folder_ / "far");
    test::writeFileText(folder_ / "far/a.wrl", "#VRML V2.0 utf8\nShape { geometry " + triangle + " }");
    std::filesystem::create_directories(folder_ / "own");
    std::filesystem::create_symlink(folder_ / "far/a.wrl", folder_ / "own/link.wrl");
    EXPECT_EQ(read(folder_ / "own/link.wrl"), ImportOutcome::Done);
}

// ---- Bad files ------------------------------------------------------------------------------------------------------

TEST_F(VrmlReader, AFileThatMakesTheLibraryFailIsTold) {
    std::string deep = "#VRML V2.0 utf8\n";
    for (int i = 0; i < 1'000'000; ++i) {
        deep += "Group{children[";
    }
    EXPECT_EQ(readText("deep.wrl", deep), ImportOutcome::Failed);
    EXPECT_FALSE(record_.complete);
    EXPECT_THAT(record_.reasons, ElementsAre("The reader of such files failed at this one"));
    EXPECT_EQ(readText("none.wrl", "#VRML V2.0 utf8\n}}}"), ImportOutcome::Failed);
    EXPECT_FALSE(record_.complete);
    options_.childMemory = std::uint64_t{1} << 28;
    std::string many = "#VRML V2.0 utf8\nShape { geometry IndexedFaceSet { coord Coordinate { point [";
    for (int i = 0; i < 8'000'000; ++i) {
        many += " 0 0 0";
    }
    EXPECT_EQ(readText("large.wrl", many), ImportOutcome::Failed);
    EXPECT_FALSE(record_.complete);
}

TEST_F(VrmlReader, AShapeThatMultipliesItselfComesToAnEnd) {
    std::string text = "#VRML V2.0 utf8\nTransform { children [ DEF n0 Shape { geometry " + triangle + " }";
    for (int level = 1; level < 7; ++level) {
        text += "\nDEF n" + std::to_string(level) + " Group { children [";
        for (int i = 0; i < 10; ++i) {
            text += " USE n" + std::to_string(level - 1);
        }
        text += " ] }";
    }
    EXPECT_EQ(readText("a.wrl", text + " ] }"), ImportOutcome::Failed);
    EXPECT_THAT(record_.reasons, ElementsAre("The memory does not suffice"));
}

TEST_F(VrmlReader, APictureThatIsNotThereIsNoGeometry) {
    ASSERT_EQ(readText("a.wrl", "#VRML V2.0 utf8\nShape { appearance Appearance { texture ImageTexture { url "
                                "\"none.png\" } } geometry " +
                                    triangle + " }"),
              ImportOutcome::Done);
    EXPECT_TRUE(record_.complete);
    EXPECT_THAT(record_.reasons, ElementsAre("Colours and materials are not kept"));
}

TEST_F(VrmlReader, AFileCutAnywhereIsToldWheneverItGivesLess) {
    const std::string text =
        "#VRML V2.0 utf8\nShape { geometry " + triangle + " }\nShape { geometry " + triangle + " }\n";
    const std::size_t between = text.find("\nShape", text.find("coordIndex"));
    for (std::size_t size = 1; size < text.size(); size += 3) {
        readText("a.wrl", text.substr(0, size));
        const bool isWhole = size == between || size == between + 1; // of one shape
        EXPECT_TRUE(!record_.complete || test::cornersOf(model_).size() == 2 || isWhole || size < 16) << size;
    }
}

TEST_F(VrmlReader, OfADamagedFileTheNodesBeforeTheFaultAreKept) {
    const std::string good = "#VRML V2.0 utf8\nDEF first Shape { geometry " + triangle + " }\n";
    for (const std::string& bad :
         {"Shape { geometry " + triangle.substr(0, 60),
          std::string("Shape { geometry IndexedFaceSet { coord Coordinate { point [ nan 0 0, 1 0 0, 0 1 0 ] } "
                      "coordIndex [ 0 1 2 ] } }")}) {
        EXPECT_EQ(readText("a.wrl", good + bad), ImportOutcome::Done) << bad;
        EXPECT_THAT(test::titlesOf(model_), ElementsAre("first")) << bad;
        EXPECT_FALSE(record_.complete) << bad;
        EXPECT_THAT(record_.reasons,
                    Contains(testing::StartsWith("Places that the reader of the format does not understand: ")))
            << bad;
    }
}

// ---- Real files -----------------------------------------------------------------------------------------------------

// Faces, area and box by VTK 9.1 (vtkVRMLImporter), which places actors by their matrices, in single precision.
TEST_F(VrmlReader, RealFilesAreThoseOfAnotherReader) {
    ASSERT_EQ(readData("many_corners.wrl"), ImportOutcome::Done);
    EXPECT_THAT(test::cornersOf(model_), SizeIs(142));
    EXPECT_NEAR(area(), 91.38906242, 1e-6);
    expectBox({-2, 2, -2, 2, 0, 7}, 1e-6);
    ASSERT_EQ(readData("named_coordinates.wrl"), ImportOutcome::Done);
    EXPECT_THAT(model_.region.blocks, SizeIs(31));
    EXPECT_THAT(test::cornersOf(model_), SizeIs(372));
    EXPECT_NEAR(area(), 186.0, 1e-6);
    expectBox({0, 61, 0, 1, 0, 1}, 1e-6);
    ASSERT_EQ(readData("comma_points.wrl"), ImportOutcome::Done);
    EXPECT_THAT(model_.region.blocks, SizeIs(2));
    expectBox({-3, 3, -3, 3, -1, 4}, 1e-6);
}

// Scales along turned axes, which VTK leaves out. The box of the 42 face sets is that of their points and of the
// products of the transforms above them, worked out by numpy; cylinders and boxes beside them reach further up only.
TEST_F(VrmlReader, PlacesOfARealSceneAreTheProductsOfItsTransforms) {
    ASSERT_EQ(readData("tank.wrl"), ImportOutcome::Done);
    EXPECT_THAT(model_.region.blocks, SizeIs(140));
    expectBox({-1.74346, 1.99894508, 0, 2.290820, 0.235644, 1.35709049}, 1e-4);
    EXPECT_THAT(record_.changed, Contains("Shapes of which triangles were made: 98"));
}

// That reader crashes at the first of these and finds nothing in the others. Numbers of points, of polygons' corners
// less two, and boxes are those of the lists of numbers in the files; one stands under a quarter turn about x.
TEST_F(VrmlReader, RealFilesThatOthersRefuse) {
    ASSERT_EQ(readData("block.wrl"), ImportOutcome::Done);
    EXPECT_THAT(model_.region.blocks, SizeIs(14));
    EXPECT_EQ(countOf(record_.kept, "points"), 72);
    EXPECT_THAT(test::cornersOf(model_), SizeIs(48));
    expectBox({0, 0.2, 0, 0.45, -0.2, 0}, 1e-7);
    ASSERT_EQ(readData("pa10_base_no_header.wrl"), ImportOutcome::Done);
    EXPECT_EQ(countOf(record_.kept, "points"), 24);
    EXPECT_THAT(test::cornersOf(model_), SizeIs(44));
    expectBox({-0.117, 0.117, -0.117, 0.117, 0, 0.2}, 1e-6);
    EXPECT_THAT(record_.changed, Contains("The first line, which tells the kind of the file, is missing"));
    // A quadrilateral and four triangles at each of the 28 places where USE puts one of the sets.
    ASSERT_EQ(readData("vrml1_indexedfaceset.wrl"), ImportOutcome::Done);
    EXPECT_EQ(record_.format, "vrml1");
    EXPECT_EQ(countOf(record_.kept, "zones"), 28);
    EXPECT_EQ(countOf(record_.kept, "triangles"), 168);
}

} // namespace
} // namespace velmora
