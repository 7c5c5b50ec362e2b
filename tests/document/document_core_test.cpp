#include <cmath>
#include <functional>
#include <limits>

#include "arranged_capture.h"
#include "document_fixture.h"

namespace velmora::test {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class DocumentCore : public DocumentTest {};

} // namespace

// ---- The start ------------------------------------------------------------------------------------------------------

TEST_F(DocumentCore, StartsEmpty) {
    EXPECT_EQ(doc.structureKind, StructureKind::None);
    EXPECT_EQ(doc.fileKind, FileKind::None);
    EXPECT_EQ(doc.secondKind, SecondKind::None);
    EXPECT_EQ(doc.modelFile.documentTitle, "Untitled");
    EXPECT_EQ(doc.capture->continuePrompt, "Press right button to continue");
    EXPECT_EQ(doc.capture->dragPrompt, "Press left button of mouse and drag it");
    EXPECT_TRUE(doc.patches.empty());
    for (const std::int32_t number :
         {doc.capture->capturedPatch, doc.capture->capturedPointSection, doc.capture->capturedPoint,
          doc.capture->capturedSection, doc.capture->capturedLine, doc.capture->savedPatch,
          doc.capture->savedPointSection, doc.capture->savedPoint, doc.capture->savedSection, doc.capture->savedLine}) {
        EXPECT_EQ(number, -1);
    }
    EXPECT_EQ(doc.blockCount, 0);
    EXPECT_EQ(blockCapacity, 5000);
    EXPECT_EQ(outputPrecision, 16);
    EXPECT_EQ(doc.intersectionTolerance, 0.0005);
    EXPECT_EQ(doc.modelRadius, 0);
    EXPECT_EQ(doc.modelCenter, zVec<double>());
}

TEST_F(DocumentCore, StartsWithAllFlagsClearButPartAfter) {
    for (const bool flag : {doc.pointUndoReady,
                            doc.patchUndoReady,
                            doc.capture->pointCaptureArmed,
                            doc.capture->pointCaptured,
                            doc.capture->freePointArmed,
                            doc.capture->freePointHeld,
                            doc.capture->pointDragging,
                            doc.capture->patchRemoving,
                            doc.rebuildOnUndo,
                            doc.capture->pointPicked,
                            doc.surfaceMode,
                            doc.pointClipboardFull,
                            doc.capture->patchCaptureArmed,
                            doc.capture->patchCaptured,
                            doc.capture->sectionCaptured,
                            doc.capture->sectionCaptureArmed,
                            doc.capture->lineCaptureArmed,
                            doc.capture->lineCaptured,
                            doc.showBlockOnly,
                            doc.showFirstPoints,
                            doc.showDoublePoints,
                            doc.showBuffer,
                            doc.showZBlockMarkers,
                            doc.partBefore,
                            doc.lineBufferFull,
                            doc.blockClipboardFull,
                            doc.documentModified,
                            doc.sftOpen,
                            doc.markersOpen,
                            doc.cbcAppended,
                            doc.gridNamed,
                            doc.fieldLoaded,
                            doc.fieldMode,
                            doc.fieldOpening}) {
        EXPECT_FALSE(flag);
    }
    EXPECT_TRUE(doc.partAfter);
}

TEST(DocumentStart, SaysItsTitleAndShowsNoDialog) {
    RecordingUi ui;
    VelmoraDoc doc(ui, {});
    doc.onNewDocument();
    EXPECT_THAT(ui.transcript, ElementsAre("title: Untitled"));
    EXPECT_EQ(doc.status, "For Help, press F1");
}

TEST(DocumentStart, TwoDocumentsKnowNothingOfEachOther) {
    RecordingUi ui;
    VelmoraDoc one(ui, {});
    VelmoraDoc other(ui, {});
    one.patches = {flatPatch(2, 2)};
    one.checkRegularity(one.patches);
    EXPECT_EQ(other.structureKind, StructureKind::None);
    EXPECT_TRUE(other.patches.empty());
}

// ---- Regularity -----------------------------------------------------------------------------------------------------

TEST_F(DocumentCore, AModelOfRegularPatchesIsApt) {
    doc.checkRegularity({flatPatch(2, 3), flatPatch(4, 2)});
    EXPECT_EQ(doc.structureKind, StructureKind::Structured);
    EXPECT_EQ(doc.fileKind, FileKind::Apt);
    EXPECT_EQ(doc.secondKind, SecondKind::None);
}

TEST_F(DocumentCore, OneIrregularPatchMakesTheModelSkl) {
    doc.checkRegularity({flatPatch(2, 3), patchOf({3, 4})});
    EXPECT_EQ(doc.structureKind, StructureKind::Structured);
    EXPECT_EQ(doc.fileKind, FileKind::Skl);
}

TEST_F(DocumentCore, APatchOfOneSectionMakesTheModelSkl) {
    doc.checkRegularity({flatPatch(2, 3), flatPatch(1, 3), flatPatch(2, 3)});
    EXPECT_EQ(doc.fileKind, FileKind::Skl);
}

TEST_F(DocumentCore, AnEmptyModelKeepsItsKinds) {
    doc.structureKind = StructureKind::Unstructured;
    doc.fileKind = FileKind::Skl;
    doc.checkRegularity({});
    EXPECT_EQ(doc.structureKind, StructureKind::Unstructured);
    EXPECT_EQ(doc.fileKind, FileKind::Skl);
}

TEST_F(DocumentCore, PatchesWithoutSectionsKeepTheKinds) {
    doc.checkRegularity({Patch(), Patch()});
    EXPECT_EQ(doc.structureKind, StructureKind::None);
    EXPECT_EQ(doc.fileKind, FileKind::None);
}

TEST_F(DocumentCore, FieldModeComesWithTheFirstRegularPatchOfAFieldFile) {
    doc.checkRegularity({flatPatch(2, 2)});
    EXPECT_FALSE(doc.fieldMode);
    doc.fieldLoaded = true;
    doc.checkRegularity({patchOf({2, 3}), flatPatch(2, 2)});
    EXPECT_FALSE(doc.fieldMode); // it stopped before it came to the regular one
    doc.checkRegularity({flatPatch(2, 2), patchOf({2, 3})});
    EXPECT_TRUE(doc.fieldMode);
}

// ---- Title and path -------------------------------------------------------------------------------------------------

TEST_F(DocumentCore, TitleAndPathFollowTheKindAfterAnEdit) {
    hold({flatPatch(2, 3)});
    doc.patches[0][0].pop_back();
    doc.retitle();
    EXPECT_EQ(doc.fileKind, FileKind::Skl);
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.skl");
    EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + "wing.skl");
    EXPECT_EQ(doc.modelFile.currentDirectory, shownFolder());
    EXPECT_EQ(doc.modelFile.chosenPath, folder / "wing.skl");
    EXPECT_THAT(heard(), ElementsAre("title: wing.skl"));
    doc.patches[0][1].pop_back();
    doc.retitle();
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.apt");
    EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + "wing.apt");
}

TEST_F(DocumentCore, ATitleThatStaysIsNotSaidAgain) {
    hold({flatPatch(2, 3)});
    doc.retitle();
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(DocumentCore, ARegularModelWithFieldDataIsTitledDat) {
    hold({flatPatch(2, 3)});
    doc.fieldMode = true;
    doc.retitle();
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.dat");
    EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + "wing.dat");
}

// ---- Box ------------------------------------------------------------------------------------------------------------

TEST_F(DocumentCore, BoundsComeFromTheBoxOfAllPoints) {
    doc.patches = {{{{-1, 0, 2}, {3, 0, 2}}, {{0, 4, 2}, {0, 0, 14}}}};
    doc.structureKind = StructureKind::Structured;
    updateBounds();
    EXPECT_EQ(doc.boxMin, zVec<double>(-1, 0, 2));
    EXPECT_EQ(doc.boxMax, zVec<double>(3, 4, 14));
    EXPECT_EQ(doc.modelCenter, zVec<double>(1, 2, 8));
    EXPECT_DOUBLE_EQ(doc.modelRadius, 0.525 * std::sqrt(16 + 16 + 144));
    EXPECT_THAT(viewCalls(), ElementsAre("bounds"));
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(DocumentCore, BoundsOfNothingLeaveCentreRadiusAndViewsAlone) {
    hold({flatPatch(2, 3)});
    const double radius = doc.modelRadius;
    const zVec<double> centre = doc.modelCenter;
    doc.structureKind = StructureKind::None;
    updateBounds();
    EXPECT_EQ(doc.modelRadius, radius);
    EXPECT_EQ(doc.modelCenter, centre);
    EXPECT_THAT(viewCalls(), IsEmpty());
    const double largest = std::numeric_limits<float>::max();
    EXPECT_EQ(doc.boxMin, zVec<double>(largest, largest, largest));
    EXPECT_EQ(doc.boxMax, zVec<double>(-largest, -largest, -largest));
}

TEST_F(DocumentCore, AnEditDoesNotMoveTheBox) {
    hold({flatPatch(2, 3)});
    doc.patches[0][0][0].x = -100;
    doc.retitle();
    redraw();
    EXPECT_EQ(doc.boxMin, zVec<double>());
}

// ---- What changed -------------------------------------------------------------------------------

TEST_F(DocumentCore, ViewsHearWhetherGeometryPictureOrHighlightChanged) {
    hold({flatPatch(3, 4), flatPatch(3, 4, 5.0)});
    std::uint64_t revision = doc.geometryRevision();
    const auto heardOf = [this](const std::function<void()>& act) {
        view.changes.clear();
        act();
        return view.changes;
    };
    EXPECT_THAT(heardOf([this] { call("block.only"); }), ElementsAre("picture"));
    EXPECT_THAT(heardOf([this] { doc.toggleSurface(); }), ElementsAre("picture"));
    call("patch.capture");
    doc.takePick({Pick::Target::WholePatch, true, 1, -1, -1, 0, {}});
    EXPECT_THAT(heardOf([this] { releaseButton(); }), ElementsAre("highlight"));
    EXPECT_EQ(doc.geometryRevision(), revision);

    capturePoint(0, 1, 1);
    EXPECT_THAT(heardOf([this] { call("point.copy"); }), ElementsAre("picture"));
    EXPECT_EQ(doc.geometryRevision(), revision);
    EXPECT_THAT(heardOf([this] { call("point.paste"); }), ElementsAre("geometry"));
    EXPECT_NE(doc.geometryRevision(), revision);
    revision = doc.geometryRevision();
    EXPECT_THAT(heardOf([this] { updateBounds(); }), ElementsAre("bounds"));
    EXPECT_NE(doc.geometryRevision(), revision);
}

TEST_F(DocumentCore, LeavingARegimeIsNoChangeOfTheGeometry) {
    hold({flatPatch(3, 4), flatPatch(3, 4, 5.0)});
    const std::uint64_t revision = doc.geometryRevision();
    view.changes.clear();
    capturePoint(0, 1, 1);
    doc.ExitPoint();
    captureSection(1, 2);
    doc.ExitLines();
    captureLine(0, 1);
    doc.ExitLines();
    doc.CapturePatch();
    doc.takePick({Pick::Target::WholePatch, true, 1, -1, -1, 0, {}});
    doc.moveRegimeAtRelease();
    doc.ExitPatches();
    EXPECT_EQ(doc.geometryRevision(), revision);
    EXPECT_THAT(view.changes, Not(Contains("geometry")));
    EXPECT_GE(std::count(view.changes.begin(), view.changes.end(), "picture"), 4);
}

TEST_F(DocumentCore, ThePointThatEndsItsRegimeByItsRemovalIsAChange) {
    doc.fileKind = FileKind::Skl;
    hold({{{{0, 0, 0}, {1, 0, 0}}}});
    capturePoint(0, 0, 1);
    const std::uint64_t revision = doc.geometryRevision();
    doc.CutPoint();
    EXPECT_EQ(doc.patches[0][0].size(), 1U);
    EXPECT_FALSE(doc.capture->pointRegimeActive());
    EXPECT_NE(doc.geometryRevision(), revision);
}

TEST_F(DocumentCore, GeometryHasAnotherRevisionAlsoWhenNothingIsLeftOfIt) {
    hold({flatPatch(2, 3)});
    const std::uint64_t revision = doc.geometryRevision();
    doc.structureKind = StructureKind::None;
    updateBounds();
    EXPECT_NE(doc.geometryRevision(), revision);
}

// ---- redraw ---------------------------------------------------------------------------------------------------------

TEST_F(DocumentCore, RedrawAloneTouchesNoMouseMode) {
    redraw();
    EXPECT_THAT(viewCalls(), ElementsAre("redraw"));
}

TEST_F(DocumentCore, RedrawPutsTheModesBackFromTheOutermostRegimeIn) {
    arranged(doc).patchCaptured = arranged(doc).sectionCaptured = arranged(doc).lineCaptured =
        arranged(doc).pointCaptured = true;
    redraw();
    EXPECT_THAT(viewCalls(), ElementsAre("redraw", "set patch", "set section", "set line", "set point"));
}

TEST_F(DocumentCore, RedrawWithAFreePointEndsInLineModeUnlessAPointIsCaptured) {
    arranged(doc).freePointHeld = true;
    redraw();
    EXPECT_THAT(viewCalls(), ElementsAre("redraw", "set point", "set line"));
    doc.capture.keepPoint();
    redraw();
    EXPECT_THAT(viewCalls(), ElementsAre("redraw", "set point", "set point"));
}

TEST_F(DocumentCore, ArmedRegimesAloneDoNotMoveTheModeAtRedraw) {
    arranged(doc).patchCaptureArmed = arranged(doc).sectionCaptureArmed = arranged(doc).lineCaptureArmed =
        arranged(doc).pointCaptureArmed = true;
    arranged(doc).freePointArmed = true;
    redraw();
    EXPECT_THAT(viewCalls(), ElementsAre("redraw"));
}

TEST_F(DocumentCore, EveryViewIsToldAndADetachedOneIsNot) {
    RecordingView second;
    attach(second);
    redraw();
    EXPECT_THAT(second.calls, ElementsAre("redraw"));
    detach(second);
    redraw();
    EXPECT_THAT(second.calls, ElementsAre("redraw"));
    EXPECT_THAT(viewCalls(), ElementsAre("redraw", "redraw"));
}

// ---- Status and addresses -------------------------------------------------------------------------------------------

TEST_F(DocumentCore, ShowStatusKeepsWhatItShows) {
    doc.ShowStatus("some text ");
    EXPECT_EQ(doc.status, "some text ");
    EXPECT_THAT(heard(), ElementsAre("status: some text "));
}

TEST_F(DocumentCore, AddressesOutsideTheModelGiveNothing) {
    hold({flatPatch(2, 3), Patch()});
    EXPECT_EQ(doc.sectionAt(0, 1), &doc.patches[0][1]);
    EXPECT_EQ(doc.pointAt(0, 1, 2), &doc.patches[0][1][2]);
    for (const auto& [patch, section] : {std::pair{-1, 0}, {2, 0}, {0, -1}, {0, 2}, {1, 0}}) {
        EXPECT_EQ(doc.sectionAt(patch, section), nullptr) << patch << ' ' << section;
        EXPECT_EQ(doc.pointAt(patch, section, 0), nullptr);
    }
    EXPECT_EQ(doc.pointAt(0, 0, -1), nullptr);
    EXPECT_EQ(doc.pointAt(0, 0, 3), nullptr);
}

TEST_F(DocumentCore, InBlockLooksAtValidEntriesOnly) {
    addToBlock(3);
    addToBlock(1);
    EXPECT_TRUE(doc.inBlock(3));
    EXPECT_TRUE(doc.inBlock(1));
    EXPECT_FALSE(doc.inBlock(0));
    EXPECT_FALSE(doc.inBlock(-1));
}

TEST_F(DocumentCore, RefillWritesBothPointTexts) {
    doc.capture.renumberPatch(0);
    doc.capture.renumberPoint(1, 2);
    arranged(doc).pickedPoint = {1, 2, 3};
    const std::string text = "Captured point: (Patch K=1, Section N=2, Point M=3) X=1.000000, Y=2.000000, Z=3.000000";
    arranged(doc).lineCaptured = true;
    doc.capture.describePoint(false);
    EXPECT_EQ(doc.capture->pointStatus, text);
    EXPECT_EQ(doc.capture->pointContinueStatus, text + " // Press right button to continue ");
}

TEST_F(DocumentCore, RefillOnALineExchangesLineAndPoint) {
    doc.capture.renumberPatch(0);
    doc.capture.renumberPoint(1, 2);
    arranged(doc).lineCaptured = true;
    doc.capture.describePoint(true);
    EXPECT_EQ(doc.capture->pointStatus,
              "Captured point: (Patch K=1, Section N=2, Point M=3) X=0.000000, Y=0.000000, Z=0.000000");
    EXPECT_EQ(doc.capture->pointContinueStatus,
              "Captured point: (Patch K=1, Line N=3, Point M=2) X=0.000000, Y=0.000000, "
              "Z=0.000000 // Press right button to continue ");
}

TEST_F(DocumentCore, RefillOnASectionNamesTheCapturedSection) {
    doc.capture.renumberPatch(0);
    doc.capture.renumberPoint(1, doc.capture->capturedPoint);
    doc.capture.renumberSection(6);
    doc.capture.renumberPoint(doc.capture->capturedPointSection, 2);
    arranged(doc).sectionCaptured = true;
    doc.capture.describePoint(true);
    EXPECT_EQ(doc.capture->pointContinueStatus,
              "Captured point: (Patch K=1, Section N=7, Point M=3) X=0.000000, Y=0.000000, "
              "Z=0.000000 // Press right button to continue ");
}

} // namespace velmora::test
