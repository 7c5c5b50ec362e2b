#include "document_fixture.h"

namespace velmora::test {

namespace {

using testing::ElementsAre;

class ViewCommands : public DocumentTest {
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
        doc.ViewFeatures();
        ui.onDialog = nullptr;
        return text;
    }
};

} // namespace

TEST_F(ViewCommands, FitToWindowTakesTheBoxAnew) {
    doc.patches[0][0][0].x = -7;
    doc.FitToWindow();
    EXPECT_EQ(doc.boxMin.x, -7);
    EXPECT_THAT(viewCalls(), ElementsAre("bounds"));
}

TEST_F(ViewCommands, BlockOnlyFlipsAndRedraws) {
    doc.ToggleBlockOnly();
    EXPECT_TRUE(doc.showBlockOnly);
    EXPECT_THAT(viewCalls(), ElementsAre("redraw"));
    doc.ToggleBlockOnly();
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
    doc.ViewFeatures();
    EXPECT_TRUE(doc.showBlockOnly && doc.showFirstPoints && doc.showDoublePoints && doc.showBuffer &&
                doc.showZBlockMarkers);
    EXPECT_THAT(heard(), ElementsAre("dialog: CFeatures -> ok"));
    EXPECT_THAT(viewCalls(), ElementsAre("redraw"));
}

TEST_F(ViewCommands, CancelledFeaturesChangeNoSwitch) {
    addToBlock(0);
    doc.showBlockOnly = doc.showBuffer = true;
    doc.ViewFeatures();
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
    doc.ViewFeatures();
    EXPECT_EQ(shown(), "01100");
}

TEST_F(ViewCommands, FeaturesWithoutAZBlockEndBlockOnlyAndMarkers) {
    doc.showBlockOnly = doc.showZBlockMarkers = true;
    ui.dialogs.push_back({{"showBlockOnly", "1"}});
    doc.ViewFeatures();
    EXPECT_FALSE(doc.showBlockOnly);
    EXPECT_FALSE(doc.showZBlockMarkers);
    EXPECT_EQ(ui.transcript.size(), 2U);
    EXPECT_TRUE(ui.transcript.front().starts_with("refused: showBlockOnly=1")) << ui.transcript.front();
}

TEST_F(ViewCommands, FeaturesOfAnUnstructuredModelHaveNoDoublePoints) {
    doc.showDoublePoints = true;
    doc.featuresValues.showDoublePoints = true;
    doc.structureKind = StructureKind::Unstructured;
    EXPECT_EQ(shown(), "00000");
    ui.dialogs.push_back({});
    doc.ViewFeatures();
    EXPECT_FALSE(doc.showDoublePoints);
}

} // namespace velmora::test
