#include "command_keys.h"

#include "CommandTest.h"

namespace velmora::test {

namespace {

using testing::ElementsAre;

class CommandKeys : public CommandTest {
protected:
    std::vector<std::string> ids(const char* key) const {
        std::vector<std::string> found;
        for (const Command* command : commandsOfKey(doc, key)) {
            found.emplace_back(command->id);
        }
        return found;
    }
    /// What a person gets who presses the key.
    void press(const char* key) {
        for (const Command* command : commandsOfKey(doc, key)) {
            if (!isCommandOff(doc, command->id)) {
                run(command->id);
                return;
            }
        }
    }
};

} // namespace

TEST_F(CommandKeys, AKeyOfOneCommandIsItsOwnAndAnEmptyOneNobodys) {
    EXPECT_THAT(ids("Ctrl+S"), ElementsAre("file.save"));
    EXPECT_THAT(ids(""), ElementsAre());
}

TEST_F(CommandKeys, WithAPointCapturedItsCommandsComeFirst) {
    hold({flatPatch(3, 4)});
    captureSection(0, 1);
    EXPECT_THAT(ids("Ctrl+C"), ElementsAre("line.copy", "point.copy"));
    EXPECT_THAT(ids("Ctrl+V"), ElementsAre("line.paste", "point.paste"));
    capturePoint(0, 1, 2);
    EXPECT_THAT(ids("Ctrl+C"), ElementsAre("point.copy", "line.copy"));
    EXPECT_THAT(ids("Ctrl+V"), ElementsAre("point.paste", "line.paste"));
}

TEST_F(CommandKeys, WithAPointCapturedCopyAndPasteAreThePointsAndLeaveTheSection) {
    hold({flatPatch(3, 4)});
    doc.lineBuffer = flatPatch(1, 4, 9)[0];
    doc.lineBufferFull = true;
    captureSection(0, 1);
    capturePoint(0, 1, 2);
    press("Ctrl+C");
    EXPECT_TRUE(doc.pointClipboardFull);
    EXPECT_EQ(doc.lineBuffer, flatPatch(1, 4, 9)[0]);
    capturePoint(0, 1, 3);
    press("Ctrl+V");
    EXPECT_EQ(doc.patches[0][1], (PointList{{0, 1, 0}, {1, 1, 0}, {2, 1, 0}, {2, 1, 0}}));
    call("point.exit");
    press("Ctrl+V");
    EXPECT_EQ(doc.patches[0][1], doc.lineBuffer);
}

TEST_F(CommandKeys, UndoTakesBackTheNewerOfTheTwoSnapshots) {
    hold({flatPatch(3, 4)});
    capturePoint(0, 1, 1);
    runWith("model.move", {{"deltaX", "1"}});
    const PatchList moved = doc.patches;
    runWith("point.edit", {{"z", "5"}});
    press("Ctrl+Z");
    EXPECT_EQ(doc.patches, moved); // the move is older, and stays
    runWith("point.edit", {{"z", "5"}});
    const PatchList edited = doc.patches;
    runWith("model.move", {{"deltaX", "1"}});
    press("Ctrl+Z");
    EXPECT_EQ(doc.patches, edited);
}

} // namespace velmora::test
