#include "file_texts.h"
#include "state_fixture.h"

namespace velmora::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// wing.apt with one patch is open.
class Append : public StateTest {
protected:
    Append() {
        std::filesystem::create_directory(folder / "other");
        writeFileText(folder / "Wing.apt", aptText({wing}));
        open(folder / "Wing.apt");
        forget();
    }

    Lines append(const std::string& name, const std::string& text) {
        writeFileText(folder / name, text);
        ui.files.push_back({folder / name});
        call("file.append");
        return heard();
    }

    Lines offered() {
        call("file.append");
        Lines types;
        for (const FileType& type : ui.requests.back().types) {
            types.push_back(type.extension);
        }
        return types;
    }

    const Patch wing = flatPatch(2, 3);
    const Patch tail = flatPatch(3, 2, 9.0);
};

} // namespace

TEST_F(Append, OffersTypesByTheKind) {
    EXPECT_THAT(offered(), ElementsAre("apt", "skl", "dat"));
    doc.fileKind = FileKind::Skl;
    EXPECT_THAT(offered(), ElementsAre("apt", "skl"));
    EXPECT_EQ(ui.requests.back().mode, ChooserMode::Append);
    EXPECT_FALSE(ui.requests.back().multiple);
}

TEST_F(Append, CancelledChangesNothing) {
    call("file.append");
    EXPECT_THAT(heard(), ElementsAre("chooser: Append -> 0"));
    EXPECT_EQ(doc.patches, PatchList{wing});
    EXPECT_FALSE(doc.patchUndoReady || doc.rebuildOnUndo || doc.documentModified);
    EXPECT_EQ(doc.modelFile.fileExtension, "apt");
    EXPECT_THAT(viewCalls(), IsEmpty());
}

TEST_F(Append, OfAFileThatGivesNothingLeavesTheTypeOfTheModel) {
    append("absent.skl", "");
    EXPECT_EQ(doc.modelFile.fileExtension, "apt");
    EXPECT_EQ(doc.patches, PatchList{wing});
    EXPECT_FALSE(doc.documentModified);
}

TEST_F(Append, PushesTheFilesPatchesBehindThoseThatAreThere) {
    EXPECT_THAT(append("other/Tail.apt", aptText({tail})), ElementsAre("chooser: Append -> 1"));
    EXPECT_EQ(doc.patches, (PatchList{wing, tail}));
    EXPECT_EQ(doc.undoPatches.copy(), PatchList{wing});
    EXPECT_TRUE(doc.patchUndoReady);
    EXPECT_TRUE(doc.rebuildOnUndo);
    EXPECT_TRUE(doc.documentModified);
}

TEST_F(Append, KeepsStemAndDirectoryOfTheFirstFile) {
    append("other/Tail.apt", aptText({tail}));
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.apt");
    EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + "wing.apt");
    EXPECT_EQ(doc.modelFile.currentDirectory, shownFolder());
    EXPECT_EQ(doc.modelFile.chosenPath, folder / "Wing.apt");
}

TEST_F(Append, ChangesTheExtensionByTheKindAlone) {
    EXPECT_THAT(append("other/lines.skl", sklText({patchOf({2, 5})})),
                ElementsAre("chooser: Append -> 1", "title: wing.skl",
                            "status: Save writes " + (folder / "Wing.skl").string()));
    EXPECT_EQ(doc.fileKind, FileKind::Skl);
    EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + "wing.skl");
    EXPECT_EQ(doc.modelFile.chosenPath, folder / "Wing.skl");
    EXPECT_EQ(doc.modelFile.fileExtension, "skl");
}

TEST_F(Append, OfARegularSklFileKeepsTheKindApt) {
    append("other/lines.skl", sklText({tail}));
    EXPECT_EQ(doc.patches, (PatchList{wing, tail}));
    EXPECT_EQ(doc.fileKind, FileKind::Apt);
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.apt");
}

TEST_F(Append, RedrawsWithoutANewBoxAndLeavesTheRegime) {
    captureSection(0, 1);
    const zVec<double> corner = doc.boxMax;
    append("tail.apt", aptText({tail}));
    EXPECT_EQ(doc.boxMax, corner);
    EXPECT_THAT(view.calls, testing::Contains("redraw"));
    EXPECT_THAT(view.calls, testing::Not(testing::Contains("bounds")));
    EXPECT_FALSE(doc.capture->sectionCaptured);
    EXPECT_EQ(doc.capture->capturedPatch, -1);
}

TEST_F(Append, UndoneRestoresTheModelAndItsBox) {
    append("tail.apt", aptText({tail}));
    viewCalls();
    call("patch.undo");
    EXPECT_EQ(doc.patches, PatchList{wing});
    EXPECT_THAT(viewCalls(), testing::Contains("bounds"));
    EXPECT_EQ(doc.boxMax, zVec<double>(2, 1, 0));
    EXPECT_FALSE(doc.rebuildOnUndo);
}

TEST_F(Append, OfAnUnsupportedTypeSaysSoAndKeepsTheModel) {
    EXPECT_THAT(append("notes.txt", ""),
                ElementsAre("chooser: Append -> 1", "message: This file's type is not supported by Sorvane"));
    EXPECT_EQ(doc.patches, PatchList{wing});
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.apt");
}

TEST_F(Append, OfAFileThatIsNotThereSaysSoAndKeepsTheModel) {
    ui.files.push_back({folder / "absent.apt"});
    call("file.append");
    EXPECT_THAT(heard(), ElementsAre("chooser: Append -> 1", "message: It is impossible to open selected file"));
    EXPECT_EQ(doc.patches, PatchList{wing});
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.apt");
}

TEST_F(Append, ThatFailsKeepsWhatWasReadUnderTheTitleWrong) {
    const Lines lines = append("tail.apt", brokenSecondCompartment);
    EXPECT_THAT(lines, testing::Contains("message: Body of APT file is wrong. Compartment N= 2"));
    EXPECT_THAT(lines, testing::Contains("title: Wrong"));
    EXPECT_EQ(doc.patches, (PatchList{wing, flatPatch(2, 2)}));
    EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + "wing.apt");
    EXPECT_TRUE(doc.patchUndoReady);
}

TEST_F(Append, ThatSucceedsEndsTheTitleWrong) {
    append("broken.apt", brokenSecondCompartment);
    EXPECT_EQ(doc.modelFile.documentTitle, "Wrong");
    append("tail.apt", aptText({tail}));
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.apt");
}

TEST_F(Append, ThatWasReadInPartTellsTheCounts) {
    append("tail.apt", brokenSecondCompartment);
    EXPECT_NE(doc.status.find("8"), std::string::npos) << doc.status;
    EXPECT_NE(doc.status.find("4"), std::string::npos) << doc.status;
}

TEST_F(Append, ThatGivesNothingLeavesTheStatusTextOfWhatIsCaptured) {
    doc.status = "Captured section: 2";
    captureSection(0, 1);
    append("notes.txt", "");
    EXPECT_EQ(doc.status, "Captured section: 2");
    append("broken.apt", "2 x\n");
    EXPECT_NE(doc.status, "Captured section: 2") << "what is wrong with the file is told";
    EXPECT_TRUE(doc.capture->sectionCaptured);
}

TEST_F(Append, ToNothingDoesNothing) {
    doc.patches.clear();
    doc.forgetKinds();
    call("file.append");
    EXPECT_THAT(heard(), IsEmpty());
    EXPECT_TRUE(ui.requests.empty());
}

TEST_F(Append, OfTrianglesTellsThatTheGridBecameTriangles) {
    const std::string facet = "solid a\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\n"
                              "endloop\nendfacet\nendsolid a\n";
    append("s.stl", facet);
    ASSERT_EQ(doc.structureKind, StructureKind::Unstructured);
    EXPECT_THAT(doc.status, testing::StartsWith("The grid became triangles"));
    append("s.stl", facet);
    EXPECT_THAT(doc.status, testing::Not(testing::HasSubstr("became")));
}

} // namespace velmora::test
