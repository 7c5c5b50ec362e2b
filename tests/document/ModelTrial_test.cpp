#include "ModelTrial.h"

#include "Pick.h"
#include "command_rig.h"

namespace velmora::test {
namespace {

/// A command with a dialog that shows what its fields come to.
struct TriedCommand {
    const char* id;
    std::function<void(DocumentState&)> arrange;
    Fields fields;
};

class TrialTest : public CommandRig {
protected:
    void arrange(const TriedCommand& command) {
        hold({flatPatch(5, 6), flatPatch(4, 7, 2)});
        ui.onDialog = nullptr;
        doc.capture.forgetAll();
        doc.emptyBlock();
        doc.documentModified = false;
        command.arrange(doc);
        redraw();
    }

    /// What OK makes of the model.
    PatchList resultOf(const TriedCommand& command) {
        arrange(command);
        runWith(command.id, command.fields);
        return doc.patches;
    }

    /// Sets the fields as a window does, and says so.
    static void set(DialogForm& form, const Fields& fields) {
        for (const auto& [key, text] : fields) {
            ASSERT_FALSE(setField(form, key, text).has_value()) << key;
        }
        form.tried(true);
    }
};

const std::vector<TriedCommand>& triedCommands() {
    const auto nothing = [](DocumentState&) {};
    const auto section = [](DocumentState& doc) { holdSection(doc, 0, 2); };
    const auto line = [](DocumentState& doc) { holdLine(doc, 0, 3); };
    const auto lastInBlock = [](DocumentState& doc) {
        doc.blockList[0] = 1;
        doc.blockCount = 1;
    };
    const auto pointOnSection = [](DocumentState& doc) {
        holdSection(doc, 0, 2);
        holdPoint(doc, 0, 2, 3);
    };
    const auto pointOnLine = [](DocumentState& doc) {
        holdLine(doc, 0, 3);
        holdPoint(doc, 0, 3, 3);
    };
    static const std::vector<TriedCommand> commands = {
        {"model.move", nothing, {{"deltaX", "2.5"}}},
        {"model.move", lastInBlock, {{"deltaZ", "-1"}}},
        {"model.scaling", nothing, {{"scale", "3"}}},
        {"model.rotation", nothing, {{"x2", "1"}, {"y2", "0"}, {"z2", "0"}, {"angle", "30"}}},
        {"model.smooth",
         [](DocumentState& doc) { doc.patches[0][2][3].x = 3.4; },
         {{"regime", "4"}, {"function", "2"}}},
        {"line.rebreak", section, {{"newCount", "9"}, {"compression", "3"}}},
        {"line.rebreak", section, {{"regime", "2"}, {"newCount", "4"}}},
        {"line.rebreak", line, {{"regime", "2"}, {"newCount", "8"}}},
        {"point.rebreakPart", pointOnSection, {{"compression", "3"}}},
        {"point.rebreakPart", pointOnLine, {{"compression", "3"}}},
    };
    return commands;
}

TEST_F(TrialTest, TheModelIsShownAsOkWouldLeaveItAndCancelTakesItBackToTheBit) {
    for (const TriedCommand& command : triedCommands()) {
        SCOPED_TRACE(command.id);
        const PatchList result = resultOf(command);
        arrange(command);
        const std::string before = document_->rescueBytes() + undoState() + doc.status;
        const PatchList model = doc.patches;
        ASSERT_NE(result, model);
        int opened = 0;
        ui.onDialog = [&](DialogForm& form) {
            ++opened;
            EXPECT_EQ(doc.patches, model) << "nothing was set yet";
            const std::uint64_t shown = doc.geometryRevision();
            set(form, command.fields);
            EXPECT_EQ(doc.patches, result);
            EXPECT_NE(doc.geometryRevision(), shown) << "the views do not learn of it";
            document_->withoutTrial([&] { EXPECT_EQ(document_->rescueBytes() + undoState() + doc.status, before); });
            EXPECT_EQ(doc.patches, result);
            form.tried(false);
            EXPECT_EQ(doc.patches, model) << "a value that was refused";
            form.tried(true);
        };
        ui.dialogs.clear();
        call(command.id);
        EXPECT_EQ(opened, 1);
        EXPECT_EQ(document_->rescueBytes() + undoState() + doc.status, before);
    }
}

TEST_F(TrialTest, OkRunsTheCommandOnceOnTheModelItself) {
    for (const TriedCommand& command : triedCommands()) {
        SCOPED_TRACE(command.id);
        const PatchList result = resultOf(command);
        arrange(command);
        const PatchList model = doc.patches;
        ui.onDialog = [&](DialogForm& form) { set(form, command.fields); };
        runWith(command.id, {});
        EXPECT_EQ(doc.patches, result);
        call("patch.undo");
        EXPECT_EQ(doc.patches, model);
    }
}

TEST_F(TrialTest, ThePlotOfTheCapturedCurveFollows) {
    const auto section = [](DocumentState& state) { holdSection(state, 0, 2); };
    const auto pointOnSection = [](DocumentState& state) {
        holdSection(state, 0, 2);
        holdPoint(state, 0, 2, 3);
    };
    const std::vector<TriedCommand> all = {
        {"model.smooth",
         [section](DocumentState& state) {
             state.patches[0][2][3].x = 3.4;
             section(state);
         },
         {{"regime", "4"}, {"function", "2"}}},
        {"point.rebreakPart", pointOnSection, {{"compression", "3"}}},
    };
    for (const TriedCommand& command : all) {
        SCOPED_TRACE(command.id);
        const PointList wanted = resultOf(command)[0][2];
        arrange(command);
        const PatchList model = doc.patches;
        std::vector<PointList> told;
        PatchList behind;
        doc.dialogs->onCurveTried = [&](const PointList& curve) {
            told.push_back(curve);
            behind = doc.patches;
        };
        ui.onDialog = [&](DialogForm& form) { set(form, command.fields); };
        ui.dialogs.clear();
        call(command.id);
        doc.dialogs->onCurveTried = nullptr;
        ASSERT_FALSE(told.empty());
        EXPECT_EQ(told.back(), wanted);
        EXPECT_EQ(behind, model) << "the curve as it stands is plotted behind";
    }
}

TEST_F(TrialTest, ZonesAreShownToo) {
    holdTriangles();
    const std::string before = document_->rescueBytes();
    const double x = node(0, 1).x;
    ui.onDialog = [&](DialogForm& form) {
        set(form, {{"deltaX", "5"}});
        EXPECT_EQ(node(0, 1).x, x + 5);
    };
    ui.dialogs.clear();
    call("model.move");
    EXPECT_EQ(document_->rescueBytes(), before);
}

TEST_F(TrialTest, WhatIsNotFiniteOrAnAxisOfNoLengthShowsTheModelItself) {
    hold({flatPatch(3, 3)});
    const PatchList model = doc.patches;
    ui.onDialog = [&](DialogForm& form) {
        set(form, {{"deltaX", "1"}});
        EXPECT_NE(doc.patches, model);
        set(form, {{"deltaX", "1e308"}, {"deltaY", "1e308"}});
        EXPECT_NE(doc.patches, model) << "large, and finite";
    };
    ui.dialogs.clear();
    call("model.move");
    ui.onDialog = [&](DialogForm& form) {
        set(form, {{"scale", "1e300"}});
        EXPECT_NE(doc.patches, model);
    };
    call("model.scaling");
    doc.patches[0][1][1].x = 1e200;
    const PatchList vast = doc.patches;
    ui.onDialog = [&](DialogForm& form) {
        set(form, {{"scale", "1e200"}});
        EXPECT_EQ(doc.patches, vast) << "a point would be infinitely far away";
    };
    call("model.scaling");
    ui.onDialog = [&](DialogForm& form) {
        set(form, {{"x2", "0"}, {"angle", "30"}});
        EXPECT_EQ(doc.patches, vast) << "both ends of the axis are one point";
    };
    call("model.rotation");
}

TEST_F(TrialTest, ALargeModelIsNotTried) {
    hold({flatPatch(401, 500)}); // 500 points more than are tried
    const PatchList model = doc.patches;
    ui.onDialog = [&](DialogForm& form) {
        set(form, {{"deltaX", "1"}});
        EXPECT_EQ(doc.patches, model);
    };
    ui.dialogs.clear();
    call("model.move");
}

TEST_F(TrialTest, ALineThatIsBentShowsWhileItsNumbersAreSet) {
    hold({flatPatch(5, 6)});
    const auto arrangeLine = [this] {
        doc.patches = {flatPatch(5, 6)};
        holdLine(doc, 0, 3);
        document_->CaptureFreePoint();
        document_->takePick({Pick::Target::Point, true, 0, 2, 1, 0, *doc.pointAt(0, 2, 1)});
        document_->moveRegimeAtRelease();
    };
    arrangeLine();
    runWith("line.correct", {{"power", "0.9"}});
    const PatchList result = doc.patches;
    arrangeLine();
    const PatchList model = doc.patches;
    ASSERT_NE(result, model);
    std::vector<PointList> told;
    doc.dialogs->onCurveTried = [&told](const PointList& curve) { told.push_back(curve); };
    ui.onDialog = [&](DialogForm& form) {
        set(form, {{"power", "0.9"}});
        EXPECT_EQ(doc.patches, result);
    };
    ui.dialogs.clear();
    call("line.correct");
    EXPECT_EQ(doc.patches, model);
    PointList bent;
    for (const PointList& section : result[0]) {
        bent.push_back(section[3]); // it keeps three lines before it
    }
    ASSERT_FALSE(told.empty());
    EXPECT_EQ(told.back(), bent) << "the plot of the captured line follows";
}

} // namespace
} // namespace velmora::test
