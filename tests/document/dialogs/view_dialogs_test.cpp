#include "dialog_tests.h"

namespace velmora::test {

namespace {

using testing::ElementsAre;

CFeatures allTicked() {
    CFeatures values;
    values.showBlockOnly = values.showFirstPoints = values.showDoublePoints = true;
    values.showBuffer = values.showZBlockMarkers = true;
    values.blockEmpty = false;
    return values;
}

} // namespace

// ---- Fields ---------------------------------------------------------------------------------------------------------

TEST(DialogFields, OfCompare) {
    EXPECT_THAT(
        linesOf("CCompare"),
        ElementsAre("Compare", "target |  | radio | 1 | \"Second geometry\" \"Patches outside of zBlock\" \"File\""));
}

TEST(DialogFields, OfSavePicture) {
    EXPECT_THAT(linesOf("CPicture"),
                ElementsAre("Save picture", "width | Width | int | 800 | 1 to 16384",
                            "height | Height | int | 600 | 1 to 16384",
                            "ground |  | radio | 1 | \"Black ground\" \"White ground\" \"Clear ground\"",
                            "triad | With the axes | check | 1"));
}

TEST(DialogFields, OfColourByValue) {
    EXPECT_THAT(
        linesOf("CColours"),
        ElementsAre("Colour by value",
                    "quantity |  | radio | 1 | \"None\" \"Distance of Compare\" \"Field value 1\" \"Field value "
                    "2\" \"Field value 3\" \"Aspect of cells\" \"Skew of cells\" \"Warp of cells\" \"Growth of steps\"",
                    "bands | Bands | int | 10 | 2 to 20", "automatic | Range of the values | check | 1",
                    "least | From | real | 0 | any", "most | To | real | 1 | any"));
}

TEST(DialogFields, OfViewFeatures) {
    EXPECT_THAT(linesOf("CFeatures"),
                ElementsAre("View features", "showBlockOnly | Block only | check | 0",
                            "showFirstPoints | First points | check | 0",
                            "showDoublePoints | Double points | check | 0", "showBuffer | Buffer | check | 0",
                            "showZBlockMarkers | Markers in zBlock | check | 0"));
}

TEST(DialogFields, OfViewportOptions) {
    EXPECT_THAT(linesOf("dlgViewing"),
                ElementsAre("Viewport Options", "angleX | Angle X | real | 0 | any",
                            "angleY | Angle Y | real | 0 | any", "angleZ | Angle Z | real | 0 | any",
                            "distanceX | Distance X | real | 0 | any", "distanceY | Distance Y | real | 0 | any",
                            "distanceZ | Distance Z | real | 0 | any", "scale | Scale | real | 1 | 0.01 to 10000000"));
}

TEST(ViewFeaturesDialog, LeavesAllOnWithAZBlockInAStructuredModel) {
    CFeatures values = allTicked();
    DialogForm form = describe(values);
    openDialog(form);
    EXPECT_EQ(liveFields(form).size(), 5U);
    EXPECT_TRUE(values.showBlockOnly && values.showDoublePoints && values.showZBlockMarkers);
}

TEST(ViewFeaturesDialog, ClearsAndDisablesBlockOnlyAndMarkersWithoutAZBlock) {
    CFeatures values = allTicked();
    values.blockEmpty = true;
    DialogForm form = describe(values);
    openDialog(form);
    EXPECT_THAT(liveFields(form), ElementsAre("showFirstPoints", "showDoublePoints", "showBuffer"));
    EXPECT_FALSE(values.showBlockOnly);
    EXPECT_FALSE(values.showZBlockMarkers);
    EXPECT_TRUE(values.showFirstPoints && values.showDoublePoints && values.showBuffer);
}

TEST(ViewFeaturesDialog, ClearsAndDisablesDoublePointsInAnUnstructuredModel) {
    CFeatures values = allTicked();
    values.unstructured = true;
    DialogForm form = describe(values);
    openDialog(form);
    EXPECT_THAT(liveFields(form), ElementsAre("showBlockOnly", "showFirstPoints", "showBuffer", "showZBlockMarkers"));
    EXPECT_FALSE(values.showDoublePoints);
}

TEST(RangesOfDialogs, ScaleOfViewportOptionsRefusesWhatIsOutOfIt) {
    dlgViewing values;
    DialogForm form = describe(values);
    EXPECT_TRUE(setField(form, "scale", "0.009").has_value());
    EXPECT_TRUE(setField(form, "scale", "10000001").has_value());
    EXPECT_FALSE(setField(form, "scale", "0.01").has_value());
    EXPECT_FALSE(setField(form, "scale", "1e7").has_value());
    EXPECT_FALSE(setField(form, "angleX", "-7200").has_value());
}

class FeatureSwitch : public CommandRig {};

TEST_F(FeatureSwitch, EachBoxIsItsOwnSwitch) {
    const std::pair<const char*, bool DocumentState::*> switches[] = {
        {"showBlockOnly", &DocumentState::showBlockOnly},
        {"showFirstPoints", &DocumentState::showFirstPoints},
        {"showDoublePoints", &DocumentState::showDoublePoints},
        {"showBuffer", &DocumentState::showBuffer},
        {"showZBlockMarkers", &DocumentState::showZBlockMarkers}};
    hold({flatPatch(2, 2), flatPatch(2, 2, 1)});
    runAll(addPatch(1));
    for (const auto& [key, chosen] : switches) {
        for (const bool on : {true, false}) {
            run({.id = "view.features", .fields = {{key, on ? "1" : "0"}}});
            for (const auto& [other, flag] : switches) {
                EXPECT_EQ(doc.*flag, on && flag == chosen) << key << ' ' << other;
            }
        }
    }
}

} // namespace velmora::test
