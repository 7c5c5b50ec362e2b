#include "arranged_capture.h"
#include "state_fixture.h"

namespace velmora::test {

namespace {

using testing::ElementsAre;

class EditPoint : public StateTest {
protected:
    EditPoint() {
        hold({flatPatch(3, 4)});
        capturePoint(0, 1, 2);
    }
};

const char* const editedText =
    "Captured point: (Patch K=1, Section N=2, Point M=3) X=1.500000, Y=-2.000000, Z=0.250000";

} // namespace

TEST_F(EditPoint, ShowsThePickedPoint) {
    arranged(doc).pickedPoint = {7, 8, 9};
    Lines shown;
    ui.onDialog = [&shown](DialogForm& form) {
        for (const DialogField& field : form.fields) {
            shown.push_back(fieldText(field));
        }
    };
    call("point.edit");
    EXPECT_THAT(shown, ElementsAre("7", "8", "9"));
}

TEST_F(EditPoint, MovesThePointAndAllThatStandsForIt) {
    ui.dialogs.push_back({{"x", "1.5"}, {"y", "-2"}, {"z", "0.25"}});
    call("point.edit");
    const zVec<double> moved(1.5, -2, 0.25);
    EXPECT_EQ(doc.patches[0][1][2], moved);
    EXPECT_EQ(doc.capture->pickedPoint, moved);
    EXPECT_EQ(doc.capture->capturedPointPos, moved);
    EXPECT_EQ(doc.capture->pointStatus, editedText);
    EXPECT_THAT(heard(), ElementsAre("dialog: dlgEditPoint -> ok",
                                     std::string("status: ") + editedText + " // Press right button to continue "));
    EXPECT_THAT(viewCalls(), ElementsAre("redraw", "set point"));
}

TEST_F(EditPoint, ChangesNoOtherPoint) {
    PatchList expected = doc.patches;
    expected[0][1][2].x = 5;
    ui.dialogs.push_back({{"x", "5"}});
    call("point.edit");
    EXPECT_EQ(doc.patches, expected);
    EXPECT_EQ(doc.fileKind, FileKind::Apt);
}

TEST_F(EditPoint, TakesASnapshotAndTheAddress) {
    const PatchList before = doc.patches;
    ui.dialogs.push_back({{"x", "5"}});
    call("point.edit");
    EXPECT_EQ(doc.pointUndoPatches.copy(), before);
    EXPECT_TRUE(doc.pointUndoReady);
    EXPECT_FALSE(doc.patchUndoReady);
    EXPECT_TRUE(doc.documentModified);
    EXPECT_EQ(doc.capture->savedPatch, 0);
    EXPECT_EQ(doc.capture->savedPointSection, 1);
    EXPECT_EQ(doc.capture->savedPoint, 2);
}

TEST_F(EditPoint, CancelledChangesNothing) {
    const PatchList before = doc.patches;
    call("point.edit");
    EXPECT_EQ(doc.patches, before);
    EXPECT_FALSE(doc.pointUndoReady);
    EXPECT_FALSE(doc.documentModified);
    EXPECT_TRUE(doc.pointUndoPatches.empty());
    EXPECT_THAT(heard(), ElementsAre("dialog: dlgEditPoint -> cancel"));
    EXPECT_TRUE(viewCalls().empty());
}

TEST_F(EditPoint, OnALineSpeaksOfTheLine) {
    captureLine(0, 2);
    ui.dialogs.push_back({});
    call("point.edit");
    EXPECT_EQ(doc.status, "Captured point: (Patch K=1, Line N=3, Point M=2) X=2.000000, Y=1.000000, Z=0.000000 // "
                          "Press right button to continue ");
}

TEST_F(EditPoint, WithAnAddressOutsideTheModelDoesNothing) {
    doc.capture.renumberPoint(doc.capture->capturedPointSection, 99);
    const PatchList before = doc.patches;
    ui.dialogs.push_back({{"x", "5"}});
    call("point.edit");
    EXPECT_EQ(doc.patches, before);
    EXPECT_FALSE(doc.pointUndoReady);
}

} // namespace velmora::test
