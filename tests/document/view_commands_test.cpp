#include "state_fixture.h"

#include "DialogValues.h"

namespace velmora::test {

namespace {

using testing::ElementsAre;

class ViewCommands : public StateTest {
protected:
    ViewCommands() { hold({flatPatch(2, 3), flatPatch(2, 3)}); }

    /// What the dialog shows as it opens, as "11010"; it is then cancelled.
    std::string shown() {
        std::string text;
        ui.onDialog = [&text](DialogForm& form) {
            for (const DialogField& field : form.fields) {
                text += fieldText(field);
            }
        };
        call("view.features");
        ui.onDialog = nullptr;
        return text;
    }
};

} // namespace

TEST_F(ViewCommands, FitToWindowTakesTheBoxAnew) {
    doc.patches[0][0][0].x = -7;
    call("view.fit");
    EXPECT_EQ(doc.boxMin.x, -7);
    EXPECT_THAT(viewCalls(), ElementsAre("bounds"));
}

TEST_F(ViewCommands, BlockOnlyFlipsAndRedraws) {
    call("block.only");
    EXPECT_TRUE(doc.showBlockOnly);
    EXPECT_THAT(viewCalls(), ElementsAre("redraw"));
    call("block.only");
    EXPECT_FALSE(doc.showBlockOnly);
    EXPECT_THAT(viewCalls(), ElementsAre("redraw"));
}

TEST_F(ViewCommands, FeaturesGoBackToTheSwitchesOnOk) {
    addToBlock(0);
    ui.dialogs.push_back({{"showBlockOnly", "1"},
                          {"showFirstPoints", "1"},
                          {"showDoublePoints", "1"},
                          {"showBuffer", "1"},
                          {"showZBlockMarkers", "1"}});
    call("view.features");
    EXPECT_TRUE(doc.showBlockOnly && doc.showFirstPoints && doc.showDoublePoints && doc.showBuffer &&
                doc.showZBlockMarkers);
    EXPECT_THAT(heard(), ElementsAre("dialog: CFeatures -> ok"));
    EXPECT_THAT(viewCalls(), ElementsAre("redraw"));
}

TEST_F(ViewCommands, CancelledFeaturesChangeNoSwitch) {
    addToBlock(0);
    doc.showBlockOnly = doc.showBuffer = true;
    call("view.features");
    EXPECT_TRUE(doc.showBlockOnly && doc.showBuffer);
    EXPECT_FALSE(doc.showFirstPoints || doc.showDoublePoints || doc.showZBlockMarkers);
    EXPECT_THAT(heard(), ElementsAre("dialog: CFeatures -> cancel"));
    EXPECT_TRUE(viewCalls().empty());
}

TEST_F(ViewCommands, FeaturesOpenWithTheSwitchesOfTheDocument) {
    addToBlock(0);
    EXPECT_EQ(shown(), "00000");
    doc.showBlockOnly = doc.showBuffer = doc.showZBlockMarkers = true;
    EXPECT_EQ(shown(), "10011");
}

TEST_F(ViewCommands, FeaturesKeepFirstAndDoublePointsAsTheyWereTyped) {
    ui.dialogs.push_back({{"showFirstPoints", "1"}, {"showDoublePoints", "1"}});
    call("view.features");
    EXPECT_EQ(shown(), "01100");
}

TEST_F(ViewCommands, FeaturesWithoutAZBlockEndBlockOnlyAndMarkers) {
    doc.showBlockOnly = doc.showZBlockMarkers = true;
    ui.dialogs.push_back({{"showBlockOnly", "1"}});
    call("view.features");
    EXPECT_FALSE(doc.showBlockOnly);
    EXPECT_FALSE(doc.showZBlockMarkers);
    EXPECT_EQ(ui.transcript.size(), 2U);
    EXPECT_TRUE(ui.transcript.front().starts_with("refused: showBlockOnly=1")) << ui.transcript.front();
}

TEST_F(ViewCommands, FeaturesOfAnUnstructuredModelHaveNoDoublePoints) {
    doc.showDoublePoints = true;
    doc.dialogs->features.showDoublePoints = true;
    doc.structureKind = StructureKind::Unstructured;
    EXPECT_EQ(shown(), "00000");
    ui.dialogs.push_back({});
    call("view.features");
    EXPECT_FALSE(doc.showDoublePoints);
}

// ---- Colour by value ------------------------------------------------------------------------------------------------

TEST_F(ViewCommands, ColourByValueTellsWhyNothingIsSeenOfIt) {
    doc.surfaceMode = true;
    ui.dialogs = {{{"quantity", "2"}}, {{"quantity", "4"}}, {{"quantity", "3"}}, {}, {{"quantity", "1"}}};
    call("view.colourByValue");
    EXPECT_EQ(doc.status, "No distances to show: Compare was not run on this geometry");
    EXPECT_THAT(viewCalls(), ElementsAre("redraw"));
    doc.fieldLoaded = true;
    doc.fieldCount = 1;
    call("view.colourByValue");
    EXPECT_EQ(doc.status, "The model has no such field value");
    doc.status = "before";
    call("view.colourByValue");
    EXPECT_EQ(doc.status, "before");
    doc.surfaceMode = false;
    call("view.colourByValue");
    EXPECT_EQ(doc.status, "Colours show with Surface on");
    doc.status = "before";
    call("view.colourByValue");
    EXPECT_EQ(doc.status, "before");
    EXPECT_FALSE(doc.dialogs->colours.isOn());
}

TEST_F(ViewCommands, LinesHaveNoSurfaceToColour) {
    hold({patchOf({3, 5, 2})});
    doc.surfaceMode = false;
    ui.dialogs = {{{"quantity", "6"}}};
    call("view.colourByValue");
    EXPECT_EQ(doc.status, "Lines have no surface to colour");
}

TEST_F(ViewCommands, TheQualityOfCellsIsOfGridsAlone) {
    doc.surfaceMode = true;
    ui.dialogs = {{{"quantity", "6"}}, {{"quantity", "9"}}};
    doc.structureKind = StructureKind::Unstructured;
    call("view.colourByValue");
    EXPECT_EQ(doc.status, "Triangles have no cells to show a value of");
    doc.structureKind = StructureKind::Structured;
    doc.patches = {flatPatch(2, 2)};
    doc.status = "before";
    call("view.colourByValue");
    EXPECT_EQ(doc.status, "before");
}

TEST_F(ViewCommands, WithoutACellNothingIsColoured) {
    doc.surfaceMode = true;
    doc.structureKind = StructureKind::Structured;
    doc.patches = {{{{0, 0, 0}}, {{1, 0, 0}}, {{2, 0, 0}}}};
    ui.dialogs = {{{"quantity", "9"}}, {{"quantity", "6"}}};
    call("view.colourByValue");
    EXPECT_EQ(doc.status, "The model has no cell to colour") << "growth is of points, but they make no surface";
    doc.patches = {{{{1, 1, 1}, {1, 1, 1}}, {{1, 1, 1}, {1, 1, 1}}}};
    call("view.colourByValue");
    EXPECT_EQ(doc.status, "No cell of the model has such a value") << "a cell in one point has no sides";
}

TEST_F(ViewCommands, ColourByValueAsksForBandsAndRangeWhereTheyCount) {
    DialogForm form = describe(doc.dialogs->colours);
    openDialog(form);
    const auto live = [&form] {
        std::string keys;
        for (const DialogField& field : form.fields) {
            keys += field.on ? field.key + ' ' : "";
        }
        return keys;
    };
    EXPECT_EQ(live(), "quantity ");
    EXPECT_FALSE(setField(form, "quantity", "2"));
    EXPECT_EQ(live(), "quantity bands automatic ");
    EXPECT_FALSE(setField(form, "automatic", "0"));
    EXPECT_EQ(live(), "quantity bands automatic least most ");
    EXPECT_FALSE(setField(form, "least", "1"));
    const auto refusal = acceptDialog(form);
    ASSERT_TRUE(refusal.has_value());
    EXPECT_EQ(refusal->message, "The range must end above its start");
    EXPECT_EQ(refusal->key, "most");
    EXPECT_FALSE(setField(form, "most", "1.5"));
    EXPECT_FALSE(acceptDialog(form).has_value());
}

} // namespace velmora::test
