#include "DialogValues.h"
#include "arranged_capture.h"
#include "document_fixture.h"
#include "file_texts.h"
#include "small_zones.h"

namespace velmora::test {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

const char* const removalAnswered = "question: Current geometry will be removed. Are you sure -> yes";

/// A solid of one triangle (x, 0, 0), (x + 1, 0, 0), (x, 1, 0).
std::string stlText(const std::string& name, double x) {
    std::ostringstream text;
    text << "solid " << name << "\nfacet normal 0 0 1\nouter loop\nvertex " << x << " 0 0\nvertex " << x + 1
         << " 0 0\nvertex " << x << " 1 0\nendloop\nendfacet\nendsolid " << name << "\n";
    return text.str();
}

const char* const header = "TITLE = \"t\"\nVARIABLES = \"x\" \"y\" \"z\"\n";
const char* const gridZone = "ZONE T=\"g\", I=3, J=2, K=1, F=POINT\n0 0 0\n1 0 0\n2 0 0\n0 1 0\n1 1 0\n2 1 0\n";
const char* const triangleZoneText = "ZONE T=\"s\", N=3, E=1, F=FEPOINT, ET=TRIANGLE\n5 0 0\n6 0 0\n5 1 0\n1 2 3\n";

/// One triangle as a face set of VRML 2.0.
const char* const wrlText = "#VRML V2.0 utf8\nShape { geometry IndexedFaceSet { coord Coordinate { point [ 0 0 5 "
                            "1 0 5 0 1 5 ] } coordIndex [ 0 1 2 -1 ] } }\n";

class ZoneFiles : public DocumentTest {
protected:
    std::filesystem::path file(const std::string& name, const std::string& text) {
        writeFileText(folder / name, text);
        return folder / name;
    }

    void open(const std::string& name, const std::string& text) { StateTest::open(file(name, text)); }

    Lines zoneTitles() const {
        Lines titles;
        for (const auto& zone : doc.feRegion.blocks) {
            titles.push_back(zone->title);
        }
        return titles;
    }

    void expectKinds(StructureKind structure, FileKind kind) {
        EXPECT_EQ(doc.structureKind, structure);
        EXPECT_EQ(doc.fileKind, kind);
    }

    zVec<double> node(std::ptrdiff_t zone, std::ptrdiff_t number) const {
        zVec<double> p;
        EXPECT_EQ(doc.feRegion.getNode(zone, number, p.x, p.y, p.z), 0);
        return p;
    }

    void append(const std::filesystem::path& path) {
        ui.files.push_back({path});
        call("file.append");
    }

    void saveAs(const std::string& name) {
        ui.files.push_back({folder / name});
        call("file.saveAs");
    }
};

using OpenZones = ZoneFiles;
using AppendZones = ZoneFiles;
using SaveZones = ZoneFiles;
using UndoZones = ZoneFiles;
using NodeRegime = ZoneFiles;
using FieldFile = ZoneFiles;
using PointFiles = ZoneFiles;

} // namespace

// ---- Open -----------------------------------------------------------------------------------------------------------

TEST_F(OpenZones, StlBecomesTheUnstructuredModel) {
    open("Wing.STL", stlText("body", 2));
    expectKinds(StructureKind::Unstructured, FileKind::None);
    EXPECT_THAT(zoneTitles(), ElementsAre("body"));
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.dat");
    EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + "wing.stl");
    EXPECT_EQ(doc.modelCenter, (zVec<double>(2.5, 0.5, 0)));
    EXPECT_TRUE(doc.surfaceMode);
    EXPECT_FALSE(doc.documentModified);
    EXPECT_THAT(viewCalls(), Contains("bounds"));
}

TEST_F(OpenZones, WrlNamesZonesByNumber) {
    open("b.wrl", wrlText);
    expectKinds(StructureKind::Unstructured, FileKind::None);
    EXPECT_THAT(zoneTitles(), ElementsAre("Zone_1"));
}

TEST_F(OpenZones, DatOfGridsBecomesPatches) {
    open("g.dat", std::string(header) + gridZone);
    expectKinds(StructureKind::Structured, FileKind::Apt);
    ASSERT_EQ(doc.patches.size(), 1U);
    EXPECT_EQ(countsOf(doc.patches[0]), (std::vector<std::int32_t>{3, 3}));
    EXPECT_EQ(doc.patches[0][1][2], (zVec<double>(2, 1, 0)));
    EXPECT_EQ(doc.modelFile.documentTitle, "g.apt");
    EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + "g.apt");
    EXPECT_TRUE(doc.feRegion.blocks.empty());
}

TEST_F(OpenZones, DatOfBothKindsEndsUnstructured) {
    open("m.dat", std::string(header) + gridZone + triangleZoneText);
    expectKinds(StructureKind::Unstructured, FileKind::None);
    EXPECT_THAT(zoneTitles(), ElementsAre("s", "Patch___0"));
    EXPECT_EQ(doc.feRegion.blocks[1]->elementCount, 4);
    EXPECT_TRUE(doc.patches.empty());
    EXPECT_EQ(doc.modelFile.documentTitle, "m.dat");
}

TEST_F(OpenZones, DatWithoutZonesOpensNothing) {
    open("none.dat", header);
    expectKinds(StructureKind::None, FileKind::None);
    EXPECT_THAT(heard(), Contains("message: Open procedure is canceled"));
}

TEST_F(OpenZones, FileWithoutVariablesIsRefused) {
    open("v.dat", "ZONE I=3, J=2, K=1, F=POINT\n1 2 3\n");
    EXPECT_THAT(heard(), Contains("message: Irregular structure of DAT file. The number of variables < 3"));
    expectKinds(StructureKind::None, FileKind::None);
}

TEST_F(OpenZones, FailedReadLeavesNothingBehind) {
    open("bad.dat", std::string(header) + triangleZoneText + "ZONE N=3, E=1, F=FEPOINT, ET=TRIANGLE\n5 0 0\n6 0\n");
    const Lines told = heard();
    EXPECT_THAT(told,
                Contains(StartsWith("message: \n--- Error Message ---\n\nValue Error: invalid data\nZone No: 3\n")));
    EXPECT_THAT(told, Contains("message: Open procedure is canceled"));
    EXPECT_TRUE(doc.feRegion.blocks.empty());
    expectKinds(StructureKind::None, FileKind::None);
    ui.files.push_back({file("a.stl", stlText("a", 0))});
    call("file.open");
    EXPECT_THAT(heard(), testing::Not(Contains(removalAnswered)));
    EXPECT_THAT(zoneTitles(), ElementsAre("a"));
}

TEST_F(OpenZones, MissingFileGivesTheReadersReport) {
    StateTest::open(folder / "absent.stl");
    EXPECT_THAT(heard(),
                Contains(StartsWith("message: \n--- Error Message ---\n\nFile Error: ...\n\nIn file:\n'zSTLReader'")));
}

TEST_F(OpenZones, OverAnUnstructuredModelAsks) {
    open("a.stl", stlText("a", 0));
    forget();
    ui.answers = {true};
    ui.files.push_back({file("b.stl", stlText("b", 0))});
    call("file.open");
    EXPECT_EQ(heard().front(), removalAnswered);
    EXPECT_THAT(zoneTitles(), ElementsAre("b"));
}

TEST_F(OpenZones, ListModeGathersFilesOfOneType) {
    ui.files.push_back({file("a.stl", stlText("a", 0)), file("x.wrl", wrlText), file("b.stl", stlText("b", 3))});
    call("file.open");
    EXPECT_THAT(zoneTitles(), ElementsAre("a", "b"));
    EXPECT_EQ(doc.modelFile.documentTitle, "b.dat");
    EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + "b.stl");
    EXPECT_EQ(doc.boxMax, (zVec<double>(4, 1, 0)));
}

TEST_F(OpenZones, BadFileOfAListAddsNoZone) {
    const std::string twoZones = std::string(header) + triangleZoneText + "ZONE N=3, E=1, F=FEPOINT, ET=TRIANGLE\n1\n";
    ui.files.push_back({file("a.dat", std::string(header) + triangleZoneText), file("b.dat", twoZones)});
    call("file.open");
    EXPECT_THAT(zoneTitles(), ElementsAre("s"));
}

TEST_F(OpenZones, GrdOnlyNamesTheGrid) {
    open("Net.grd", "whatever");
    expectKinds(StructureKind::Unstructured, FileKind::None);
    EXPECT_TRUE(doc.gridNamed);
    EXPECT_EQ(doc.modelFile.gridPath, shownFolder() + "net.grd");
    EXPECT_EQ(doc.modelFile.documentTitle, "net.dat");
    EXPECT_TRUE(doc.feRegion.blocks.empty());
}

TEST_F(OpenZones, GrdCannotBeAppended) {
    open("w.apt", aptText({flatPatch(2, 2)}));
    forget();
    append(file("net.grd", ""));
    EXPECT_THAT(heard(), Contains("message: This file's type is not supported by Sorvane"));
    expectKinds(StructureKind::Structured, FileKind::Apt);
}

TEST_F(OpenZones, CompartmentsWithoutSectionsAreNoModel) {
    open("e.skl", "0\n0\n");
    EXPECT_THAT(heard(), Contains("message: Open procedure is canceled"));
    EXPECT_TRUE(doc.holdsNothing());
}

TEST_F(OpenZones, AnStlFileWithoutAFacetIsNoModel) {
    open("e.stl", "solid e\nendsolid e\n");
    EXPECT_THAT(heard(), Contains("message: Open procedure is canceled"));
    expectKinds(StructureKind::None, FileKind::None);
    EXPECT_TRUE(doc.feRegion.blocks.empty());
}

// ---- Append ---------------------------------------------------------------------------------------------------------

TEST_F(AppendZones, OffersTheZoneFormats) {
    open("a.stl", stlText("a", 0));
    append({});
    Lines types;
    for (const FileType& type : ui.requests.back().types) {
        types.push_back(type.extension);
    }
    EXPECT_THAT(types, ElementsAre("dat", "wrl", "stl"));
}

TEST_F(AppendZones, PutsZonesBehindThoseOfTheModel) {
    open("a.stl", stlText("a", 0));
    append(file("b.wrl", wrlText));
    append(file("c.dat", std::string(header) + gridZone));
    EXPECT_THAT(zoneTitles(), ElementsAre("a", "Zone_1", "Patch___0"));
    EXPECT_EQ(doc.modelFile.documentTitle, "a.dat");
    EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + "a.dat");
    EXPECT_TRUE(doc.patchUndoReady);
    EXPECT_TRUE(doc.rebuildOnUndo);
    call("patch.undo");
    EXPECT_THAT(zoneTitles(), ElementsAre("a", "Zone_1"));
}

TEST_F(AppendZones, OfAnotherTypeIsRefused) {
    open("a.stl", stlText("a", 0));
    forget();
    append(file("b.apt", "1 1\n0 0 0\n"));
    EXPECT_THAT(heard(), Contains("message: This file's type is not supported by Sorvane"));
    EXPECT_THAT(zoneTitles(), ElementsAre("a"));
}

TEST_F(AppendZones, FailedReadAddsNothing) {
    open("a.stl", stlText("a", 0));
    append(file("b.dat", std::string(header) + triangleZoneText + "ZONE N=3, E=1, F=FEPOINT, ET=TRIANGLE\n1\n"));
    EXPECT_THAT(zoneTitles(), ElementsAre("a"));
}

// A zone without K has no points, and the numbers behind its header are passed over.
TEST_F(AppendZones, GridsWithoutAPointLeaveTheModelItsNameAndItsFile) {
    open("a.stl", stlText("a", 0));
    run("model.scaling");
    const bool modified = doc.documentModified;
    append(file("b.dat", std::string(header) + "ZONE I=2, J=2, F=POINT\n0 0 0\n1 0 0\n0 1 0\n1 1 0\n"));
    EXPECT_THAT(zoneTitles(), ElementsAre("a"));
    EXPECT_EQ(doc.modelFile.chosenPath, folder / "a.stl");
    EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + "a.stl");
    EXPECT_EQ(doc.modelFile.fileExtension, "stl");
    EXPECT_EQ(saveTarget(), folder / "a.stl");
    EXPECT_EQ(doc.documentModified, modified);
}

TEST_F(AppendZones, GridsOfADatJoinAStructuredModel) {
    open("w.apt", aptText({flatPatch(2, 2)}));
    append(file("g.dat", std::string(header) + gridZone));
    expectKinds(StructureKind::Structured, FileKind::Apt);
    EXPECT_EQ(doc.patches.size(), 2U);
}

TEST_F(AppendZones, GridsOfADatThatAreReadWellEndTheTitleWrong) {
    open("a.apt", "2 2\n0 0 0\n1 0 0\n0 1 0\n1 1 0\n1 1\nx\n");
    ASSERT_EQ(doc.modelFile.documentTitle, "Wrong");
    ui.files = {{file("b.dat", std::string(header) + gridZone)}};
    call("file.append");
    EXPECT_EQ(doc.patches.size(), 2U);
    EXPECT_EQ(doc.modelFile.documentTitle, "a.apt");
}

TEST_F(AppendZones, TrianglesOfADatTurnAStructuredModelIntoZones) {
    open("w.apt", aptText({flatPatch(2, 2)}));
    append(file("s.dat", std::string(header) + triangleZoneText));
    expectKinds(StructureKind::Unstructured, FileKind::Apt);
    EXPECT_THAT(zoneTitles(), ElementsAre("s", "Patch___0"));
    EXPECT_TRUE(doc.patches.empty());
    call("patch.undo");
    expectKinds(StructureKind::Structured, FileKind::Apt);
    EXPECT_EQ(doc.patches.size(), 1U);
    EXPECT_TRUE(doc.feRegion.blocks.empty());
}

TEST_F(AppendZones, RefusedDatLeavesTheStructuredModel) {
    open("w.apt", aptText({flatPatch(2, 2)}));
    forget();
    append(file("v.dat", "ZONE I=3, J=2, K=1, F=POINT\n1 2 3\n"));
    EXPECT_THAT(heard(), Contains("message: Irregular structure of DAT file. The number of variables < 3"));
    expectKinds(StructureKind::Structured, FileKind::Apt);
    EXPECT_EQ(doc.patches.size(), 1U);
}

// ---- Save -----------------------------------------------------------------------------------------------------------

TEST_F(SaveZones, OfNoTriangleLeavesFilesOfTriangles) {
    const std::string text = stlText("a", 0);
    open("a.stl", text);
    doc.feRegion.blocks[0]->elementCount = 0;
    forget();
    call("file.save");
    EXPECT_THAT(heard(), Contains("message: This model cannot be saved as stl"));
    EXPECT_EQ(fileText(folder / "a.stl"), text);
    saveAs("b.wrl");
    EXPECT_THAT(heard(), Contains("message: This model cannot be saved as wrl"));
    EXPECT_FALSE(std::filesystem::exists(folder / "b.wrl"));
    EXPECT_EQ(saveTarget(), folder / "a.stl");
    saveAs("c.dat");
    EXPECT_TRUE(std::filesystem::exists(folder / "c.dat")) << "it holds the points";
}

TEST_F(SaveZones, WritesTheFileItCameFrom) {
    open("a.dat", std::string(header) + triangleZoneText);
    doc.feRegion.setNode(0, 0, 7, 8, 9);
    doc.documentModified = true;
    forget();
    call("file.save");
    EXPECT_THAT(heard(), ElementsAre("message: DAT file is written"));
    EXPECT_FALSE(doc.documentModified);
    StateTest::open(folder / "a.dat");
    EXPECT_EQ(node(0, 0), (zVec<double>(7, 8, 9)));
}

TEST_F(SaveZones, OfAnotherFileKindWritesNothingAndSaysSo) {
    open("a.dat", std::string(header) + triangleZoneText);
    const std::string before = fileText(folder / "a.dat");
    doc.fileKind = FileKind::Apt;
    doc.feRegion.setNode(0, 0, 7, 8, 9);
    forget();
    call("file.save");
    EXPECT_THAT(heard(), ElementsAre("message: The model holds triangles now. Use Save As"));
    EXPECT_EQ(fileText(folder / "a.dat"), before);
}

TEST_F(SaveZones, FailedWriteIsReported) {
    open("a.dat", std::string(header) + triangleZoneText);
    doc.modelFile.chosenPath = folder / "no" / "such" / "a.dat";
    forget();
    call("file.save");
    EXPECT_THAT(heard(), ElementsAre(StartsWith("message: \n--- Error Message ---\n\nFile Error: ..."),
                                     "status: a.dat was not written"));
}

TEST_F(SaveZones, SaveAsOffersAndTakesTheZoneFormats) {
    open("a.stl", stlText("a", 0));
    for (const char* name : {"b.dat", "c.wrl", "d.stl"}) {
        forget();
        saveAs(name);
        EXPECT_THAT(heard(), Contains("title: " + std::string(name)));
        VelmoraDoc other(ui, folder.path());
        other.onOpenDocument(folder / name);
        ASSERT_EQ(other.feRegion.blocks.size(), 1U) << name;
        EXPECT_EQ(other.feRegion.blocks[0]->elementCount, 1) << name;
        EXPECT_EQ(other.modelCenter, doc.modelCenter) << name;
    }
    EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + "d.stl");
}

TEST_F(SaveZones, GridSavedAsDatOpensAgain) {
    const PatchList model = {flatPatch(2, 3), flatPatch(4, 2, 1.0 / 3.0)};
    open("w.apt", aptText({flatPatch(2, 2)}));
    doc.patches = model;
    forget();
    saveAs("out.dat");
    EXPECT_THAT(heard(), ElementsAre("chooser: Save As -> 1", "message: File is converted to DAT format and is written",
                                     "status: Save writes " + (folder / "out.apt").string()));
    EXPECT_EQ(doc.modelFile.documentTitle, "w.apt");
    expectKinds(StructureKind::Structured, FileKind::Apt);
    VelmoraDoc other(ui, folder.path());
    other.onOpenDocument(folder / "out.dat");
    ASSERT_EQ(other.patches.size(), 2U);
    EXPECT_EQ(other.patches[0], model[0]);
    EXPECT_NEAR(other.patches[1][3][1].z, 1.0 / 3.0, 1e-15);
}

TEST_F(SaveZones, GridSavedAsSurfaceBecomesOne) {
    for (const std::string extension : {"stl", "wrl"}) {
        open("w.apt", aptText({flatPatch(2, 3)}));
        captureSection(0, 1);
        forget();
        saveAs("out." + extension);
        expectKinds(StructureKind::Unstructured, FileKind::None);
        EXPECT_EQ(doc.modelFile.documentTitle, "out." + extension);
        EXPECT_THAT(zoneTitles(), ElementsAre("Patch___0"));
        EXPECT_TRUE(doc.patches.empty());
        EXPECT_FALSE(doc.capture->sectionCaptured);
        EXPECT_FALSE(doc.documentModified);
        EXPECT_THAT(viewCalls(), Contains("bounds"));
        VelmoraDoc other(ui, folder.path());
        other.onOpenDocument(folder / ("out." + extension));
        ASSERT_EQ(other.feRegion.blocks.size(), 1U);
        EXPECT_EQ(other.feRegion.blocks[0]->elementCount, 4);
    }
}

TEST_F(SaveZones, GridThatCannotBeWrittenAsSurfaceStaysAGrid) {
    open("w.apt", aptText({flatPatch(2, 3)}));
    saveAs("no/such/out.stl");
    expectKinds(StructureKind::Structured, FileKind::Apt);
    EXPECT_EQ(doc.patches.size(), 1U);
}

TEST_F(SaveZones, AGridWithoutAnySurfaceIsNotSavedAsTrianglesAndTheFileStays) {
    for (const PatchList& model : {PatchList{flatPatch(3, 1)}, PatchList{flatPatch(2, 1), flatPatch(4, 1)}}) {
        open("w.apt", aptText(model));
        doc.documentModified = true;
        for (const std::string extension : {"stl", "wrl"}) {
            const std::string before = fileText(file("out." + extension, "what was there"));
            forget();
            saveAs("out." + extension);
            EXPECT_THAT(heard(),
                        ElementsAre("chooser: Save As -> 1", "message: This model cannot be saved as " + extension))
                << "nothing is asked before";
            EXPECT_EQ(fileText(folder / ("out." + extension)), before);
            expectKinds(StructureKind::Structured, FileKind::Apt);
            EXPECT_EQ(doc.patches, model);
            EXPECT_TRUE(doc.documentModified);
            EXPECT_EQ(doc.saveTarget(), folder / "w.apt");
        }
    }
}

TEST_F(SaveZones, WarnsBeforeItWritesWhenTheDigitsOfTheFileMovePoints) {
    // The radius is near 1: six digits of 1000.0004 are 1000, four ten-thousandths away.
    open("w.apt", "2 2\n1000.0004 0 0\n1001 0 0\n1000 1 0\n1001 1 0\n");
    for (const char* name : {"a.stl", "b.wrl"}) {
        forget();
        saveAs(name);
        const Lines lines = heard();
        ASSERT_GE(lines.size(), 2U);
        EXPECT_THAT(lines[1], StartsWith("message: With 6 digits points move by up to 0.0004")) << name;
        call("patch.undo");
    }
}

TEST_F(SaveZones, WarnsOfTheDigitsAtEachSaveOfTriangles) {
    open("a.dat", std::string(header) + triangleZoneText);
    doc.feRegion.blocks[0]->variables[0]->data[0] = 0.123456789;
    saveAs("a.stl");
    forget();
    call("file.save");
    EXPECT_THAT(heard(), testing::Not(Contains(StartsWith("message: With")))) << "2e-7 is less than 1e-5 of the radius";
    doc.feRegion.blocks[0]->variables[0]->data[0] = 100.00049;
    forget();
    call("file.save");
    EXPECT_THAT(heard(), Contains(StartsWith("message: With 6 digits points move by up to 0.00049")));
}

TEST_F(SaveZones, WarnsOfTheSixteenDigitsOfDatWhereTheyDoNotSuffice) {
    // Neighbouring doubles near 9e15 are 1 apart, and sixteen digits tell each of them.
    open("w.apt", "2 2\n9000000000000001 0 0\n9000000000000002 0 0\n9000000000000001 1 0\n9000000000000002 1 0\n");
    forget();
    saveAs("a.dat");
    EXPECT_THAT(heard(), testing::Not(Contains(StartsWith("message: With"))));
    // Above 1e16 the seventeenth digit is needed: 10000000000100004 is written as 1.00000000001e+16.
    const std::string x[] = {"10000000000000002", "10000000000100004"};
    open("v.apt", "2 2\n" + x[0] + " 0 0\n" + x[1] + " 0 0\n" + x[0] + " 100000 0\n" + x[1] + " 100000 0\n");
    forget();
    saveAs("b.dat");
    EXPECT_THAT(heard(), Contains("message: With 16 digits points move by up to 4"));
    EXPECT_TRUE(std::filesystem::exists(folder / "b.dat"));
    forget();
    saveAs("b.apt");
    EXPECT_THAT(heard(), testing::Not(Contains(StartsWith("message: With"))))
        << "seventeen digits give each double back";
}

TEST_F(SaveZones, ModelWithoutPatchesIsNothingToSave) {
    open("w.apt", aptText({flatPatch(2, 3)}));
    doc.patches.clear();
    forget();
    saveAs("out.dat");
    EXPECT_THAT(heard(), Contains("message: There is nothing to save"));
}

// ---- Convert to zones -----------------------------------------------------------------------------------------------

TEST_F(SaveZones, ConversionMakesZonesOfThePatches) {
    open("w.apt", aptText({flatPatch(2, 3), flatPatch(3, 1), flatPatch(3, 3)}));
    captureSection(0, 1);
    call("convert.toUnstructured");
    expectKinds(StructureKind::Unstructured, FileKind::None);
    EXPECT_THAT(zoneTitles(), ElementsAre("Patch___0", "Patch___2"));
    EXPECT_EQ(doc.feRegion.blocks[0]->nodeCount, 6);
    EXPECT_EQ(doc.feRegion.blocks[0]->elementCount, 4);
    EXPECT_EQ(doc.modelFile.documentTitle, "w.dat");
    EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + "w.dat");
    EXPECT_EQ(doc.status, "Save writes " + (folder / "w.dat").string());
    EXPECT_FALSE(doc.capture->sectionCaptured);
    EXPECT_TRUE(doc.patches.empty());
    call("patch.undo");
    expectKinds(StructureKind::Structured, FileKind::Apt);
    EXPECT_EQ(doc.patches.size(), 3U);
    EXPECT_EQ(doc.modelFile.documentTitle, "w.apt");
    EXPECT_TRUE(doc.feRegion.blocks.empty());
}

// ---- Merge ----------------------------------------------------------------------------------------------------------

TEST_F(SaveZones, MergeJoinsTheZonesOfTheZBlockInItsOrder) {
    ui.files.push_back(
        {file("a.stl", stlText("a", 0)), file("b.stl", stlText("b", 3)), file("c.stl", stlText("c", 6))});
    call("file.open");
    doc.capture.holdBlock();
    addToBlock(2);
    addToBlock(0);
    addToBlock(1);
    call("block.merge");
    EXPECT_THAT(zoneTitles(), ElementsAre("c"));
    EXPECT_EQ(doc.feRegion.blocks[0]->elementCount, 3);
    EXPECT_EQ(node(0, 3), (zVec<double>(0, 0, 0)));
    EXPECT_EQ(node(0, 6), (zVec<double>(3, 0, 0)));
    EXPECT_THAT(block(), IsEmpty());
    EXPECT_FALSE(doc.capture->patchCaptured);
    call("patch.undo");
    EXPECT_THAT(zoneTitles(), ElementsAre("a", "b", "c"));
}

// ---- Undo and nodes -------------------------------------------------------------------------------------------------

TEST_F(UndoZones, BringsRemovedZonesBackUnderADatName) {
    open("a.stl", stlText("a", 0));
    ui.answers = {true};
    call("file.new");
    expectKinds(StructureKind::None, FileKind::None);
    call("patch.undo");
    expectKinds(StructureKind::Unstructured, FileKind::None);
    EXPECT_THAT(zoneTitles(), ElementsAre("a"));
    EXPECT_EQ(doc.modelFile.documentTitle, "a.dat");
    EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + "a.dat");
}

TEST_F(UndoZones, RemovedModelKnowsWhetherItWasSaved) {
    for (const bool modified : {false, true}) {
        open("a.stl", stlText("a", 0));
        doc.documentModified = modified;
        open("b.stl", stlText("b", 0));
        EXPECT_FALSE(doc.documentModified);
        call("patch.undo");
        EXPECT_EQ(doc.documentModified, modified);
    }
}

TEST_F(UndoZones, UndoAfterASaveIsAChange) {
    open("a.dat", std::string(header) + triangleZoneText);
    savePatchUndo();
    doc.patchUndoReady = true;
    call("file.save");
    EXPECT_FALSE(doc.documentModified);
    call("patch.undo");
    EXPECT_TRUE(doc.documentModified);
}

TEST_F(UndoZones, SnapshotIsACopyOfItsOwn) {
    open("a.stl", stlText("a", 0));
    savePatchUndo();
    doc.patchUndoReady = true;
    doc.feRegion.setNode(0, 0, 7, 8, 9);
    call("patch.undo");
    EXPECT_EQ(node(0, 0), (zVec<double>(0, 0, 0)));
    EXPECT_TRUE(doc.undoRegion.blocks.empty());
}

TEST_F(NodeRegime, EditMovesTheNodeAndUndoBringsItBack) {
    open("a.stl", stlText("a", 0));
    doc.capture.keepPoint();
    doc.capture.showPoint();
    doc.capture.renumberPatch(0);
    doc.capture.renumberPoint(doc.capture->capturedPointSection, 1);
    doc.capture.placePoint(node(0, 1));
    ui.dialogs = {{{"x", "7"}, {"y", "8"}, {"z", "9"}}};
    call("point.edit");
    EXPECT_EQ(node(0, 1), (zVec<double>(7, 8, 9)));
    EXPECT_EQ(doc.capture->capturedPointPos, (zVec<double>(7, 8, 9)));
    EXPECT_TRUE(doc.pointUndoReady);
    call("point.undo");
    EXPECT_EQ(node(0, 1), (zVec<double>(1, 0, 0)));
    EXPECT_EQ(doc.capture->capturedPointPos, (zVec<double>(1, 0, 0)));
    EXPECT_EQ(doc.capture->capturedPoint, 1);
}

TEST_F(NodeRegime, PasteMovesTheNode) {
    open("a.stl", stlText("a", 0));
    doc.capture.keepPoint();
    doc.capture.renumberPatch(0);
    doc.capture.renumberPoint(doc.capture->capturedPointSection, 2);
    doc.pointClipboard = {4, 5, 6};
    doc.pointClipboardFull = true;
    call("point.paste");
    EXPECT_EQ(node(0, 2), (zVec<double>(4, 5, 6)));
    EXPECT_TRUE(doc.pointUndoReady);
}

TEST_F(NodeRegime, EditWithoutANodeChangesNothing) {
    open("a.stl", stlText("a", 0));
    doc.capture.keepPoint();
    doc.capture.renumberPatch(0);
    doc.capture.renumberPoint(doc.capture->capturedPointSection, 3);
    ui.dialogs = {{{"x", "7"}}};
    call("point.edit");
    EXPECT_FALSE(doc.pointUndoReady);
}

TEST_F(NodeRegime, InputPatchCountsZones) {
    ui.files.push_back({file("a.stl", stlText("a", 0)), file("b.stl", stlText("b", 3))});
    call("file.open");
    ui.dialogs = {{{"number", "2"}}};
    call("patch.inputAndAdd");
    EXPECT_EQ(doc.dialogs->inputPatch.maximum, 2);
    EXPECT_EQ(block(), (std::vector<std::int32_t>{1}));
}

// ---- Field files ----------------------------------------------------------------------------------------------------

namespace {

const char* const fieldText = "TITLE = \"flow\"\nVARIABLES = \"X\", \"Y\", \"Z\", \"P\"\n"
                              "ZONE T=\"ZONE_0\",I=2,J=2,K=1,F= POINT\n0 0 0 10\n1 0 0 11\n0 1 0 12\n1 1 0 13\n";

} // namespace

TEST_F(FieldFile, OpensAsAGridWithValues) {
    ui.files.push_back({file("Flow.dat", fieldText)});
    call("file.openField");
    expectKinds(StructureKind::Structured, FileKind::Apt);
    EXPECT_TRUE(doc.fieldLoaded);
    EXPECT_TRUE(doc.fieldMode);
    EXPECT_TRUE(doc.fieldOpening);
    EXPECT_EQ(doc.modelFile.documentTitle, "flow.dat");
    EXPECT_EQ(doc.fieldCount, 1);
    EXPECT_EQ(doc.fieldPatches[0][1][0], (zVec<double>(12, 0, 0)));
    EXPECT_EQ(ui.requests.back().types.size(), 1U);
    EXPECT_TRUE(ui.requests.back().multiple);
    EXPECT_TRUE(doc.surfaceMode);
}

TEST_F(FieldFile, DeclinedChangesNothing) {
    hold({flatPatch(2, 2)});
    const PatchList before = doc.patches;
    call("file.openField");
    EXPECT_EQ(doc.patches, before);
    EXPECT_FALSE(doc.fieldOpening);
    expectKinds(StructureKind::Structured, FileKind::Apt);
}

TEST_F(FieldFile, CancelledAfterYesLeavesTheModelAndItsMarkers) {
    hold({flatPatch(2, 2)});
    const PatchList before = doc.patches;
    doc.markers = {{1, 2, 3}};
    doc.markersOpen = true;
    ui.answers = {true};
    call("file.openField");
    EXPECT_EQ(heard().front(), removalAnswered);
    expectKinds(StructureKind::Structured, FileKind::Apt);
    EXPECT_EQ(doc.patches, before);
    EXPECT_EQ(doc.markers.size(), 1U);
    EXPECT_TRUE(doc.markersOpen);
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.apt");
    EXPECT_FALSE(doc.fieldOpening);
}

TEST_F(FieldFile, BadLaterZoneOpensNothing) {
    ui.files.push_back({file("f.dat", std::string(fieldText) + "ZONE T=\"ZONE_1\",I=2,J=2,K=1,F= POINT\n0 0\n")});
    call("file.openField");
    const Lines told = heard();
    EXPECT_THAT(told, Contains("message: Body of APT file is wrong. Compartment N= 2"));
    EXPECT_THAT(told, Contains("message: Open procedure is canceled"));
    EXPECT_TRUE(doc.patches.empty());
    EXPECT_TRUE(doc.fieldPatches.empty());
    expectKinds(StructureKind::None, FileKind::None);
}

TEST_F(FieldFile, SavedAndOpenedAgainIsTheSame) {
    ui.files.push_back({file("f.dat", fieldText)});
    call("file.openField");
    ui.files.push_back({folder / "g.dat"});
    call("file.saveAsField");
    EXPECT_EQ(doc.modelFile.documentTitle, "g.dat");
    EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + "g.dat");
    VelmoraDoc other(ui, folder.path());
    ui.files.push_back({folder / "g.dat"});
    other.OpenField();
    EXPECT_EQ(other.patches, doc.patches);
    EXPECT_EQ(other.fieldPatches, doc.fieldPatches);
    EXPECT_EQ(other.fieldTitleLine, "TITLE = \"flow\"");
}

TEST_F(FieldFile, OfAModelThatIsNoGridIsRefused) {
    hold({patchOf({2, 3})});
    ui.files.push_back({folder / "g.dat"});
    call("file.saveAsField");
    EXPECT_THAT(heard(), Contains("message: Wrong file Extension"));
    doc.structureKind = StructureKind::Unstructured;
    ui.files.push_back({folder / "g.dat"});
    call("file.saveAsField");
    EXPECT_THAT(heard(), Contains("message: Wrong file Format"));
    EXPECT_FALSE(std::filesystem::exists(folder / "g.dat"));
}

TEST_F(FieldFile, UnderAnotherExtensionIsRefused) {
    hold({flatPatch(2, 2)});
    ui.files.push_back({folder / "g.apt"});
    call("file.saveAsField");
    EXPECT_THAT(heard(), Contains("message: Wrong file Extension"));
    EXPECT_FALSE(std::filesystem::exists(folder / "g.apt"));
}

TEST_F(FieldFile, CloseRemovesModelValuesAndRegimes) {
    ui.files.push_back({file("f.dat", fieldText)});
    call("file.openField");
    captureSection(0, 1);
    capturePoint(0, 1, 0);
    doc.pointUndoReady = doc.patchUndoReady = true;
    arranged(doc).savedPatch = arranged(doc).patchToRemove = 0;
    call("file.closeField");
    expectKinds(StructureKind::None, FileKind::None);
    EXPECT_TRUE(doc.holdsNothing());
    EXPECT_TRUE(doc.fieldPatches.empty());
    EXPECT_EQ(doc.modelFile.documentTitle, "Untitled");
    for (const bool flag : {doc.fieldLoaded, doc.fieldMode, doc.fieldOpening, doc.pointUndoReady, doc.patchUndoReady,
                            doc.capture->pointCaptured, doc.capture->sectionCaptured}) {
        EXPECT_FALSE(flag);
    }
    for (const std::int32_t number :
         {doc.capture->capturedPatch, doc.capture->capturedSection, doc.capture->capturedPoint, doc.capture->savedPatch,
          doc.capture->patchToRemove}) {
        EXPECT_EQ(number, -1);
    }
}

TEST_F(FieldFile, OpeningAnotherModelEmptiesTheValues) {
    ui.files.push_back({file("f.dat", fieldText)});
    call("file.openField");
    open("w.apt", aptText({flatPatch(2, 2)}));
    EXPECT_TRUE(doc.fieldPatches.empty());
    EXPECT_FALSE(doc.fieldLoaded);
    EXPECT_FALSE(doc.fieldMode);
    EXPECT_EQ(doc.modelFile.documentTitle, "w.apt");
}

// ---- Markers --------------------------------------------------------------------------------------------------------

TEST_F(PointFiles, SftGivesPairs) {
    ui.files.push_back({file("m.sft", "1\n2\n3\n4\n5\n6\n7\n1 2 3 0.5 0.25 0 9")});
    call("file.appendSft");
    EXPECT_EQ(doc.sftPoints, (PointList{{1, 2, 3}}));
    EXPECT_EQ(doc.sftTargets, (PointList{{1.5, 2.25, 3}}));
    EXPECT_TRUE(doc.sftOpen);
    EXPECT_THAT(viewCalls(), Contains("redraw"));
    call("file.closeSft");
    EXPECT_TRUE(doc.sftPoints.empty());
    EXPECT_TRUE(doc.sftTargets.empty());
    EXPECT_FALSE(doc.sftOpen);
}

TEST_F(PointFiles, SftOfFewLinesIsOpenAndEmpty) {
    ui.files.push_back({file("m.sft", "1\n2\n")});
    call("file.appendSft");
    EXPECT_TRUE(doc.sftPoints.empty());
    EXPECT_TRUE(doc.sftOpen);
}

TEST_F(PointFiles, SftThatIsNotThereChangesNothing) {
    doc.sftPoints = doc.sftTargets = {{1, 2, 3}};
    ui.files.push_back({folder / "no.sft"});
    call("file.appendSft");
    EXPECT_THAT(heard(), Contains("message: It is impossible to open selected file"));
    EXPECT_EQ(doc.sftPoints.size(), 1U);
    EXPECT_FALSE(doc.sftOpen);
}

TEST_F(PointFiles, SftWithoutAPairLeavesThePairsThatAreThere) {
    ui.files.push_back({file("m.sft", "1\n2\n3\n4\n5\n6\n7\n1 2 3 0.5 0.25 0 9")});
    call("file.appendSft");
    for (const auto& path : {folder / "no.sft", file("short.sft", "1\n2\n"), file("bad.sft", "foo")}) {
        ui.files.push_back({path});
        call("file.appendSft");
        EXPECT_EQ(doc.sftPoints, (PointList{{1, 2, 3}})) << path;
        EXPECT_EQ(doc.sftTargets, (PointList{{1.5, 2.25, 3}})) << path;
        EXPECT_TRUE(doc.sftOpen);
    }
}

TEST_F(PointFiles, ApmGivesMarkers) {
    ui.files.push_back({file("m.apm", "1 2 3\n4 5 6\n7 8")});
    call("file.openApm");
    EXPECT_EQ(ui.requests.back().proposed, "Markers.apm");
    EXPECT_EQ(doc.markers, (PointList{{1, 2, 3}, {4, 5, 6}}));
    EXPECT_TRUE(doc.markersOpen);
    call("file.closeApm");
    EXPECT_TRUE(doc.markers.empty());
    EXPECT_FALSE(doc.markersOpen);
}

TEST_F(PointFiles, ApmWithoutAMarkerLeavesTheMarkersThatAreThere) {
    ui.files.push_back({file("m.apm", "1 2 3\n")});
    call("file.openApm");
    for (const auto& path : {folder / "no.apm", file("empty.apm", ""), file("bad.apm", "x")}) {
        ui.files.push_back({path});
        call("file.openApm");
        EXPECT_EQ(doc.markers, (PointList{{1, 2, 3}})) << path;
        EXPECT_TRUE(doc.markersOpen);
    }
}

TEST_F(PointFiles, FirstApmWithoutAMarkerOpensNone) {
    for (const auto& path : {folder / "no.apm", file("bad.apm", "x")}) {
        ui.files.push_back({path});
        call("file.openApm");
        EXPECT_TRUE(doc.markers.empty());
        EXPECT_FALSE(doc.markersOpen);
    }
}

TEST_F(PointFiles, CancelledApmLeavesNoMarkersAndTheFlag) {
    for (const bool open : {false, true}) {
        doc.markers = {{1, 2, 3}};
        doc.markersOpen = open;
        call("file.openApm");
        EXPECT_TRUE(doc.markers.empty());
        EXPECT_EQ(doc.markersOpen, open);
    }
}

TEST_F(PointFiles, CbcEmptiesTheZonesEvenWhenCancelled) {
    open("a.stl", stlText("a", 0));
    call("file.appendCbc");
    EXPECT_TRUE(doc.feRegion.blocks.empty());
    EXPECT_TRUE(doc.cbcAppended);
}

} // namespace velmora::test
