#include "arranged_capture.h"
#include "command_table.h"

#include <map>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "RecordingUi.h"
#include "VelmoraDoc.h"

namespace velmora::test {

namespace {

using testing::ElementsAreArray;
using testing::UnorderedElementsAreArray;

const char* const allIds[] = {
    "file.new",
    "file.open",
    "file.append",
    "file.import",
    "file.export",
    "file.save",
    "file.saveAs",
    "file.exit",
    "file.appendWrl",
    "file.closeWrl",
    "file.appendDat",
    "file.closeDat",
    "file.appendSft",
    "file.closeSft",
    "file.appendCbc",
    "file.openApm",
    "file.closeApm",
    "file.openField",
    "file.saveAsField",
    "file.closeField",
    "patch.capture",
    "patch.inputAndAdd",
    "patch.addToBlock",
    "patch.removeFromBlock",
    "patch.undo",
    "patch.exit",
    "block.new",
    "block.invert",
    "block.only",
    "block.extract",
    "block.delete",
    "block.saveAs",
    "block.copy",
    "block.paste",
    "block.extrapolate",
    "block.matchBorder",
    "block.matchBorderAndGrid",
    "block.merge",
    "line.captureSection",
    "line.captureLine",
    "line.inputSection",
    "line.inputLine",
    "line.next",
    "line.exit",
    "line.splitPatch",
    "line.gateToPatchMode",
    "line.scaling",
    "line.move",
    "line.flip",
    "line.symmetric",
    "line.rotation",
    "line.firstPoint",
    "line.interpolate",
    "line.rebreak",
    "line.prescribe",
    "line.delete",
    "line.duplicate",
    "line.weeding",
    "line.knife",
    "line.copy",
    "line.paste",
    "line.correct",
    "line.cylinder",
    "buffer.addPoint",
    "buffer.clear",
    "buffer.open",
    "buffer.open.line",
    "buffer.saveAs",
    "buffer.reverse",
    "buffer.merge",
    "buffer.match",
    "point.capture",
    "point.next",
    "point.input",
    "point.edit",
    "point.drag",
    "point.delete",
    "point.duplicate",
    "point.cut",
    "point.copy",
    "point.paste",
    "point.free",
    "point.free.line",
    "point.undo",
    "point.exit",
    "point.rebreakPart",
    "point.knifePart",
    "point.copyPart",
    "point.pastePart",
    "point.reverseSection",
    "point.dragAndCorrect",
    "model.scaling",
    "model.move",
    "model.rotation",
    "model.flip",
    "model.symmetric",
    "model.convertation",
    "model.lastFirstSwitch",
    "model.knife",
    "model.reflectToApt",
    "model.reflectToWrl",
    "model.reflectToDat",
    "model.reflectToSft",
    "model.intersection",
    "model.invisibleRemove",
    "model.coonsRebuild",
    "model.smooth",
    "convert.toUnstructured",
    "convert.toApt",
    "convert.toSkl",
    "convert.knife",
    "view.toolbar",
    "view.statusBar",
    "view.perspective",
    "view.orthographic",
    "view.top",
    "view.bottom",
    "view.front",
    "view.back",
    "view.right",
    "view.left",
    "view.iso",
    "view.manual",
    "view.rotate",
    "view.rotateX",
    "view.rotateY",
    "view.rotateZ",
    "view.translateXY",
    "view.translateZ",
    "view.shift",
    "view.scale",
    "view.zoomIn",
    "view.zoomOut",
    "view.fit",
    "view.previous",
    "view.surface",
    "view.threeD",
    "view.frontView",
    "view.upView",
    "view.sideView",
    "view.features",
    "help.topics",
    "help.about",
};

struct StatusText {
    const char* command;
    const char* text;
};

const StatusText statusTexts[] = {
    // Points
    {"point.delete", "Delete captured point"},
    {"point.duplicate", "Duplicate captured point"},
    {"point.edit", "Edit coordinates of captured point"},
    {"point.cut", "Cut captured point"},
    {"point.copy", "Copy captured point"},
    {"point.paste", "Paste point from buffer to captured position"},
    {"point.input", "Direct input of point number from keyboard"},
    {"point.drag", "Drag captured point"},
    {"point.dragAndCorrect", "Correct line by means of drag point procedure"},
    {"point.undo", "Undo edited point"},
    {"point.rebreakPart", "Rebreak part of selected section before (after) current point"},
    {"point.knifePart", "Delete all the points with numbers before or after the current one"},
    {"point.copyPart", "Copy part of section with numbers before or after the current one to buffer"},
    {"point.pastePart", "Add buffer to selected position"},
    {"point.reverseSection", "Change numeration of points"},
    // The line buffer
    {"line.copy", "Copy captured line to buffer"},
    {"line.paste", "Copy line from buffer to captured position"},
    {"buffer.addPoint", "Add selected point to buffer"},
    {"buffer.clear", "Remove all the points from buffer"},
    {"buffer.saveAs", "Save line in the choosen directory"},
    {"buffer.open", "Read line from hard disk"},
    {"buffer.open.line", "Read line from hard disk"},
    {"buffer.reverse", "Change numeration of points"},
    {"buffer.merge", "Merge buffer to section"},
    // Sections and lines
    {"line.delete", "Delete section from patch"},
    {"line.duplicate", "Duplicate section for editing"},
    {"line.rebreak", "Rebreak selected section (line or zBlock) in accordance with prescribed law"},
    {"line.splitPatch", "Split patch using selected line"},
    {"line.gateToPatchMode", "Add patch to zBlock for editing"},
    {"line.firstPoint", "Renumber section and make current point the first"},
    {"line.knife", "Halve the number of points in section"},
    {"line.prescribe", "Prescribe definite value to any coordinate of all the points from line"},
    {"line.interpolate", "Interpolate section between the closest ones and move it to prescribed position"},
    {"line.correct", "Correct selected line to fit it to captured point and rebuild geometry"},
    {"line.weeding", "Delete one-half ines (sections) from geometry"},
    {"line.cylinder", "Create cylinder using line as a generatrix"},
    // Patches and the zBlock
    {"patch.capture", "Capture patch for editing"},
    {"patch.addToBlock", "Add patch to zBlock for editing"},
    {"patch.removeFromBlock", "Remove patch from zBlock"},
    {"patch.inputAndAdd", "Direct input of patch number"},
    {"patch.undo", "Undo edited patches"},
    {"block.new", "Create new zBlock. If zBlock exist, it is removed"},
    {"block.invert", "Select unselected blocks and deselect selected"},
    {"block.extract", "Extract patches included in zBlock"},
    {"block.delete", "Delete selected zBlock from container"},
    {"block.copy", "Copy selected zBlock to paste buffer"},
    {"block.paste", "Replace selected zBlock with zBlock from Paste buffer"},
    {"block.saveAs", "Save As selected zBlock"},
    {"block.only", "Show only patches included into zBlock"},
    {"block.merge", "Merge patches inside of zBlock using sections or lines"},
    {"block.matchBorder", "Adjust border of the second patch in zBlock to the first one"},
    {"block.matchBorderAndGrid",
     "Adjust border of the second patch in zBlock to the first one and rebuld the second one"},
    {"block.extrapolate", "Extrapolate first (last) line to increase limits of patch"},
    // The model
    {"model.knife", "Cut geometry in accordance with drawn line"},
    {"model.reflectToApt", "Project zBlock (yelow) to the rest part of geometry (out-zBlock patches)"},
    {"model.reflectToWrl", "Project zBlock (yelow) to the unstructured geometry "},
    {"model.intersection", "Intersect zBlock (yelow) with the rest part  of geometry (out zBlock patches)"},
    {"model.invisibleRemove", "Remove invisible part of unstructed grid"},
    {"model.coonsRebuild", "Rebuild blocks using Coons patches algorithm.  If no selections work with geometry"},
    {"model.smooth", "Smooth zBlock using soft algorithm.  If no selections work with geometry"},
    {"convert.toUnstructured", "Convert structured grid to unstructured one"},
    {"convert.toApt", "Convert lines (SKL) to structured grid (APT)"},
    {"convert.toSkl", "Convert unstructured grid to lines (SKL)"},
    // The view
    {"view.rotate", "Rotate model"},
    {"view.rotateX", "Rotate model about X axis"},
    {"view.rotateY", "Rotate model about Y axis"},
    {"view.rotateZ", "Rotate model about Z axis"},
    {"view.translateXY", "Translate model in XY plane"},
    {"view.translateZ", "Translate model in Z direction"},
    {"view.shift", "Move model in screen plane"},
    {"view.scale", "Change the scale of model image"},
    {"view.zoomIn", "Magnify the selected part of body surface"},
    {"view.perspective", "Set perspective projection"},
    {"view.orthographic", "Set orthographic projection"},
    {"view.top", "Set top view"},
    {"view.bottom", "Set bottom view"},
    {"view.front", "Set front view"},
    {"view.back", "Set back view"},
    {"view.left", "Set left view"},
    {"view.right", "Set right view"},
    {"view.iso", "Set iso view"},
    {"view.manual", "Set manual view"},
    {"view.zoomOut", "Restore zoom"},
    {"view.fit", "Fit image to the window of pane"},
    {"view.previous", "Set previous view"},
    {"view.surface", "Draw picture of solid body"},
};

std::vector<std::string> idsOfTable() {
    std::vector<std::string> ids;
    for (const Command& command : commandTable()) {
        ids.emplace_back(command.id);
    }
    return ids;
}

} // namespace

TEST(CommandTable, HoldsExactlyTheCommandsThatScriptsKnow) {
    EXPECT_THAT(idsOfTable(), UnorderedElementsAreArray(allIds));
}

TEST(CommandTable, HasNoIdTwice) {
    const std::vector<std::string> ids = idsOfTable();
    EXPECT_EQ(std::set<std::string>(ids.begin(), ids.end()).size(), ids.size());
}

TEST(CommandTable, FindsEachOfItsCommandsAndNoOther) {
    for (const Command& command : commandTable()) {
        EXPECT_EQ(findCommand(command.id), &command);
    }
    EXPECT_EQ(findCommand("file"), nullptr);
    EXPECT_EQ(findCommand(""), nullptr);
    EXPECT_EQ(findCommand("FILE.NEW"), nullptr);
}

TEST(CommandTable, GivesEveryCommandATextAndAStatusText) {
    for (const Command& command : commandTable()) {
        EXPECT_NE(std::string(command.menuText), "") << command.id;
        EXPECT_NE(std::string(command.statusText), "") << command.id;
    }
}

TEST(CommandTable, SaysTheStatusTextsThatUsersKnow) {
    for (const auto& [id, text] : statusTexts) {
        const Command* command = findCommand(id);
        ASSERT_NE(command, nullptr) << id;
        EXPECT_EQ(std::string(command->statusText), text) << id;
    }
}

TEST(CommandTable, HasTheAcceleratorsAndNoOther) {
    std::map<std::string, std::set<std::string>> byKey;
    for (const Command& command : commandTable()) {
        if (*command.accelerator != '\0') {
            byKey[command.accelerator].insert(command.id);
        }
    }
    const std::map<std::string, std::set<std::string>> expected = {
        {"Ctrl+N", {"file.new"}},
        {"Ctrl+O", {"file.open"}},
        {"Ctrl+A", {"file.append"}},
        {"Ctrl+S", {"file.save"}},
        // The standard edit commands, for what is captured.
        {"Ctrl+C", {"line.copy", "point.copy"}},
        {"Ctrl+V", {"line.paste", "point.paste"}},
        {"Ctrl+X", {"point.cut"}},
        {"Ctrl+Z", {"patch.undo", "point.undo"}},
        {"F1", {"help.topics"}},
    };
    EXPECT_EQ(byKey, expected);
}

TEST(CommandTable, RunsOnlyDocumentCommandsByADocumentMethod) {
    for (const Command& command : commandTable()) {
        if (command.owner != CommandOwner::Document) {
            EXPECT_EQ(command.run, nullptr) << command.id;
        }
    }
}

TEST(CommandTable, RunsTheMethodOfEachCommandThatIsThere) {
    const std::map<std::string, void (VelmoraDoc::*)()> expected = {
        {"file.new", &VelmoraDoc::onNewDocument},
        {"file.open", &VelmoraDoc::openFiles},
        {"file.append", &VelmoraDoc::appendFile},
        {"file.save", &VelmoraDoc::saveModel},
        {"file.saveAs", &VelmoraDoc::saveModelAs},
        {"patch.inputAndAdd", &VelmoraDoc::InputPatch},
        {"patch.undo", &VelmoraDoc::UndoPatch},
        {"block.only", &VelmoraDoc::ToggleBlockOnly},
        {"line.captureSection", &VelmoraDoc::CaptureSection},
        {"line.captureLine", &VelmoraDoc::CaptureLine},
        {"line.inputSection", &VelmoraDoc::InputSection},
        {"line.inputLine", &VelmoraDoc::InputLine},
        {"line.next", &VelmoraDoc::NextSectionOrLine},
        {"line.rebreak", &VelmoraDoc::Rebreak},
        {"point.capture", &VelmoraDoc::CapturePoint},
        {"point.next", &VelmoraDoc::CapturePoint},
        {"point.edit", &VelmoraDoc::EditPoint},
        {"point.free", &VelmoraDoc::CaptureFreePointInPointRegime},
        {"point.free.line", &VelmoraDoc::CaptureFreePoint},
        {"point.undo", &VelmoraDoc::UndoPoint},
        {"view.fit", &VelmoraDoc::FitToWindow},
        {"view.features", &VelmoraDoc::ViewFeatures},
    };
    for (const auto& [id, method] : expected) {
        EXPECT_TRUE(findCommand(id)->run == method) << id;
    }
}

TEST(CommandTable, EndsEachRegimeByItsExit) {
    RecordingUi ui;
    VelmoraDoc doc(ui, {});
    arranged(doc).pointCaptured = arranged(doc).sectionCaptured = arranged(doc).patchCaptured = true;
    (doc.*findCommand("point.exit")->run)();
    EXPECT_FALSE(doc.capture->pointRegimeActive());
    EXPECT_TRUE(doc.capture->sectionCaptured && doc.capture->patchCaptured);
    (doc.*findCommand("line.exit")->run)();
    EXPECT_FALSE(doc.capture->curveRegimeActive());
    EXPECT_TRUE(doc.capture->patchCaptured);
    (doc.*findCommand("patch.exit")->run)();
    EXPECT_FALSE(doc.capture->patchRegimeActive());
}

TEST(CommandTable, NamesTheOwnerOfEachCommand) {
    for (const Command& command : commandTable()) {
        const std::string id = command.id;
        CommandOwner owner = CommandOwner::Document;
        if (id == "file.exit" || id == "view.toolbar" || id == "view.statusBar" || id.starts_with("help.")) {
            owner = CommandOwner::Shell;
        } else if (id == "point.dragAndCorrect" ||
                   (id.starts_with("view.") && id != "view.fit" && id != "view.features")) {
            owner = CommandOwner::View;
        }
        EXPECT_EQ(command.owner, owner) << id;
    }
}

TEST(CommandTable, HasAMethodForEveryDocumentCommand) {
    for (const Command& command : commandTable()) {
        EXPECT_EQ(command.run != nullptr, command.owner == CommandOwner::Document) << command.id;
    }
}

TEST(PlainText, LosesAccessMarksDotsAndClosingBlanks) {
    EXPECT_EQ(plainText("&Append..."), "Append");
    EXPECT_EQ(plainText("&Input && Add to zBlock..."), "Input & Add to zBlock");
    EXPECT_EQ(plainText("Block Sa&ve As ..."), "Block Save As");
    EXPECT_EQ(plainText("E&xit "), "Exit");
    EXPECT_EQ(plainText("Add to \"line\" buffer"), "Add to \"line\" buffer");
    EXPECT_EQ(plainText(""), "");
    EXPECT_EQ(plainText("&"), "");
}

} // namespace velmora::test
