#include "command_table.h"

#include <algorithm>
#include <array>

#include "VelmoraDoc.h"

namespace velmora {

namespace {

using Doc = const VelmoraDoc&;
using Rule = bool (*)(Doc);

constexpr auto doc = CommandOwner::Document;
constexpr auto view = CommandOwner::View;
constexpr auto shell = CommandOwner::Shell;

// The rules: each is true when the state turns a command off. Asked anew each time, nothing is cached.

bool curveHeld(Doc d) {
    return d.capture->sectionCaptured || d.capture->lineCaptured;
}
bool emptyModel(Doc d) {
    return d.structureKind == StructureKind::None;
}
bool notStr(Doc d) {
    return d.structureKind != StructureKind::Structured;
}
bool notUns(Doc d) {
    return d.structureKind != StructureKind::Unstructured;
}
bool notApt(Doc d) {
    return d.fileKind != FileKind::Apt;
}

bool nonOrField(Doc d) {
    return emptyModel(d) || d.fieldMode;
}
bool nonOrNoField(Doc d) {
    return emptyModel(d) || !d.fieldMode;
}
bool notStrOrField(Doc d) {
    return notStr(d) || d.fieldMode;
}
bool notGrid(Doc d) {
    return notStr(d) || notApt(d);
}
bool notGridOrField(Doc d) {
    return notGrid(d) || d.fieldMode;
}

bool noPoint(Doc d) {
    return !d.capture->pointCaptured;
}
bool noPointOrUns(Doc d) {
    return d.structureKind == StructureKind::Unstructured || !d.capture->pointCaptured;
}
bool pointCountFixed(Doc d) {
    return noPointOrUns(d) || d.capture->lineCaptured || d.fieldMode;
}

bool noBlock(Doc d) {
    return d.blockCount < 1;
}
bool noBlockOrField(Doc d) {
    return noBlock(d) || d.fieldMode;
}
bool noPairOfPatches(Doc d) {
    return notStr(d) || d.blockCount < 2;
}

bool noCurve(Doc d) {
    return !curveHeld(d);
}
bool noCurveOrField(Doc d) {
    return noCurve(d) || d.fieldMode;
}
bool noCurveOfGrid(Doc d) {
    return notStr(d) || noCurve(d);
}
bool noCurveOfGridOrField(Doc d) {
    return noCurveOfGrid(d) || d.fieldMode;
}
bool noSectionOrField(Doc d) {
    return notStr(d) || !d.capture->sectionCaptured || d.fieldMode;
}
bool noPointOnSection(Doc d) {
    return notStr(d) || !d.capture->sectionCaptured || !d.capture->pointCaptured;
}
bool bufferEmpty(Doc d) {
    return !d.lineBufferFull;
}

const auto commands = std::to_array<Command>({
    // File
    {"file.new", "&New", "Create a new model", "New", "Ctrl+N", doc, &VelmoraDoc::onNewDocument, nullptr},
    {"file.open", "&Open...", "Open an existing model", "Open", "Ctrl+O", doc, &VelmoraDoc::openFiles, nullptr},
    {"file.append", "&Append...", "Append a file to the model", "Append", "Ctrl+A", doc, &VelmoraDoc::appendFile,
     nonOrField},
    {"file.import", "Import...", "Read a file of another program in place of the model", "Import", "", doc,
     &VelmoraDoc::importFiles, nullptr},
    {"file.export", "Export...", "Write the model as a file for other programs", "Export", "", doc,
     &VelmoraDoc::exportModel, nullptr},
    {"file.appendWrl", "Append wrl...", "Open a second, unstructured geometry beside the model", "", "", doc,
     &VelmoraDoc::AppendWrl, notStrOrField},
    {"file.closeWrl", "Close wrl", "Close the second, unstructured geometry", "", "", doc, &VelmoraDoc::CloseWrl,
     [](Doc d) { return d.secondKind == SecondKind::None; }},
    {"file.appendDat", "Append dat...", "Open a second, structured geometry beside the model", "", "", doc,
     &VelmoraDoc::AppendDat, notStrOrField},
    {"file.closeDat", "Close dat", "Close the second, structured geometry", "", "", doc, &VelmoraDoc::CloseDat,
     [](Doc d) { return d.secondKind != SecondKind::Dat; }},
    {"file.appendSft", "Append sft...", "Read pairs of initial and shifted markers", "", "", doc,
     &VelmoraDoc::AppendSft, nonOrField},
    {"file.closeSft", "Close sft", "Close the pairs of markers", "", "", doc, &VelmoraDoc::CloseSft,
     [](Doc d) { return !d.sftOpen; }},
    {"file.appendCbc", "Append CBC...", "Name the boundary conditions of the grid", "", "", doc, &VelmoraDoc::AppendCbc,
     [](Doc d) { return !d.gridNamed; }},
    {"file.openApm", "Open apm", "Read marker points", "", "", doc, &VelmoraDoc::OpenApm, notGridOrField},
    {"file.closeApm", "Close apm", "Close the marker points", "", "", doc, &VelmoraDoc::CloseApm,
     [](Doc d) { return !d.markersOpen; }},
    {"file.openField", "Open dat (field)...", "Open a model with field values", "", "", doc, &VelmoraDoc::OpenField,
     nullptr},
    {"file.saveAsField", "Save As dat (field)", "Save the model with its field values", "", "", doc,
     &VelmoraDoc::SaveField, nonOrNoField},
    {"file.closeField", "Close dat (field)", "Close the model and its field values", "", "", doc,
     &VelmoraDoc::CloseField, nonOrNoField},
    {"file.save", "&Save", "Save the model", "Save", "Ctrl+S", doc, &VelmoraDoc::saveModel, nonOrField},
    {"file.saveAs", "Save &As...", "Save the model under a new name", "", "", doc, &VelmoraDoc::saveModelAs,
     nonOrField},
    {"file.exit", "E&xit", "Quit the program", "", "", shell, nullptr, nullptr},

    // Patches and the zBlock
    {"patch.capture", "&Capture", "Capture patch for editing", "Capture patch", "", doc, &VelmoraDoc::CapturePatch,
     [](Doc d) { return emptyModel(d) || d.capture->patchCaptured; }},
    {"patch.inputAndAdd", "&Input && Add to zBlock...", "Direct input of patch number", "Input patch", "", doc,
     &VelmoraDoc::InputPatch, emptyModel},
    {"patch.addToBlock", "&Add to zBlock", "Add patch to zBlock for editing", "Add to zBlock", "", doc,
     &VelmoraDoc::AddPatchToBlock, emptyModel},
    {"patch.removeFromBlock", "&Remove from zBlock", "Remove patch from zBlock", "Remove from zBlock", "", doc,
     &VelmoraDoc::RemovePatchFromBlock, noBlock},
    {"patch.undo", "&Undo", "Undo edited patches", "Undo patch", "Ctrl+Z", doc, &VelmoraDoc::UndoPatch,
     [](Doc d) { return !d.patchUndoReady; }},
    {"patch.exit", "E&xit", "Leave the patch regime", "", "", doc, &VelmoraDoc::ExitPatches, nullptr},
    {"block.new", "New zBlock", "Create new zBlock. If zBlock exist, it is removed", "", "", doc, &VelmoraDoc::NewBlock,
     [](Doc d) { return d.blockCount == 0; }},
    {"block.invert", "Invert Selection", "Select unselected blocks and deselect selected", "", "", doc,
     &VelmoraDoc::InvertBlock, nullptr},
    {"block.only", "Block only", "Show only patches included into zBlock", "Block only", "", doc,
     &VelmoraDoc::ToggleBlockOnly, noBlock},
    {"block.extract", "&Block extract ", "Extract patches included in zBlock", "Extract zBlock", "", doc,
     &VelmoraDoc::ExtractBlock, noBlockOrField},
    {"block.delete", "Block &delete ", "Delete selected zBlock from container", "Delete zBlock", "", doc,
     &VelmoraDoc::DeleteBlock, noBlockOrField},
    {"block.saveAs", "Block Sa&ve As ...", "Save As selected zBlock", "", "", doc, &VelmoraDoc::SaveBlockAs, noBlock},
    {"block.copy", "Block copy ", "Copy selected zBlock to paste buffer", "", "", doc, &VelmoraDoc::CopyBlock,
     [](Doc d) { return noBlock(d) || notStrOrField(d); }},
    {"block.paste", "Block paste ", "Replace selected zBlock with zBlock from Paste buffer", "", "", doc,
     &VelmoraDoc::PasteBlock, [](Doc d) { return !d.blockClipboardFull || notStr(d); }},
    {"block.extrapolate", "&Extrapolate...", "Extrapolate first (last) line to increase limits of patch", "", "", doc,
     &VelmoraDoc::Extrapolate, [](Doc d) { return notGridOrField(d) || noBlock(d); }},
    {"block.matchBorder", "Match border", "Adjust border of the second patch in zBlock to the first one", "", "", doc,
     &VelmoraDoc::MatchBorder, noPairOfPatches},
    {"block.matchBorderAndGrid", "Match border && grid",
     "Adjust border of the second patch in zBlock to the first one and rebuld the second one", "", "", doc,
     &VelmoraDoc::MatchBorderAndGrid, noPairOfPatches},
    {"block.merge", "&Merge... ", "Merge patches inside of zBlock using sections or lines", "Merge patches", "", doc,
     &VelmoraDoc::MergePatches,
     [](Doc d) { return (d.structureKind == StructureKind::Structured && notApt(d)) || d.blockCount < 2; }},

    // Sections and lines
    {"line.captureSection", "Capture &Section", "Capture section for editing", "Capture section", "", doc,
     &VelmoraDoc::CaptureSection, [](Doc d) { return notStr(d) || d.capture->sectionCaptured; }},
    {"line.captureLine", "Capture &Line", "Capture line for editing", "Capture line", "", doc, &VelmoraDoc::CaptureLine,
     [](Doc d) { return emptyModel(d) || d.capture->lineCaptured || notGrid(d); }},
    {"line.inputSection", "&Section...", "Direct input of section number", "Input section", "", doc,
     &VelmoraDoc::InputSection, notStr},
    {"line.inputLine", "&Line...", "Direct input of line number", "Input line", "", doc, &VelmoraDoc::InputLine,
     notGrid},
    {"line.next", "&Next Section (Line)", "Capture the next section or line", "", "", doc,
     &VelmoraDoc::NextSectionOrLine, noCurve},
    {"line.splitPatch", "S&plit patch in zBlock", "Split patch using selected line", "Split patch", "", doc,
     &VelmoraDoc::SplitPatch, noCurveOfGrid},
    {"line.gateToPatchMode", "Gate to patch mode", "Add patch to zBlock for editing", "", "", doc,
     &VelmoraDoc::AddPatchToBlock, emptyModel},
    {"line.scaling", "&Scaling...", "Scale the captured section or line", "", "", doc, &VelmoraDoc::ScaleCurve,
     noCurveOfGrid},
    {"line.move", "&Move...", "Move the captured section or line", "", "", doc, &VelmoraDoc::MoveCurve, noCurveOfGrid},
    {"line.flip", "&Flip...", "Reflect the captured section or line in a plane", "", "", doc, &VelmoraDoc::FlipCurve,
     noCurveOfGrid},
    {"line.symmetric", "S&ymmetric...", "Add the reflection in a plane to the captured section", "", "", doc,
     &VelmoraDoc::SymmetricSection, noSectionOrField},
    {"line.rotation", "&Rotation...", "Rotate the captured section or line about an axis", "", "", doc,
     &VelmoraDoc::RotateCurve, noCurveOfGrid},
    {"line.firstPoint", "Firs&t point...", "Renumber section and make current point the first", "", "", doc,
     &VelmoraDoc::FirstPoint, noCurveOfGridOrField},
    {"line.interpolate", "&Interpolate...",
     "Interpolate section between the closest ones and move it to prescribed position", "", "", doc,
     &VelmoraDoc::Interpolate, [](Doc d) { return noCurve(d) || notGridOrField(d); }},
    {"line.rebreak", "Rebre&ak...", "Rebreak selected section (line or zBlock) in accordance with prescribed law",
     "Rebreak", "", doc, &VelmoraDoc::Rebreak,
     [](Doc d) { return noCurveOrField(d) || d.structureKind == StructureKind::Unstructured; }},
    {"line.prescribe", "Prescri&be...", "Prescribe definite value to any coordinate of all the points from line", "",
     "", doc, &VelmoraDoc::Prescribe, noCurveOfGridOrField},
    {"line.delete", "&Delete", "Delete section from patch", "Delete section (line)", "", doc, &VelmoraDoc::DeleteCurve,
     noCurveOrField},
    {"line.duplicate", "Dup&licate...", "Duplicate section for editing", "Duplicate section (line)", "", doc,
     &VelmoraDoc::DuplicateCurve, noCurveOrField},
    {"line.weeding", "&Weeding", "Delete one-half ines (sections) from geometry", "", "", doc, &VelmoraDoc::Weeding,
     noCurveOrField},
    {"line.knife", "&Knife", "Halve the number of points in section", "", "", doc, &VelmoraDoc::HalveSection,
     noSectionOrField},
    {"line.copy", "C&opy", "Copy captured line to buffer", "Copy to buffer", "Ctrl+C", doc, &VelmoraDoc::CopyToBuffer,
     noCurveOrField},
    {"line.paste", "&Paste", "Copy line from buffer to captured position", "Paste from buffer", "Ctrl+V", doc,
     &VelmoraDoc::PasteFromBuffer, [](Doc d) { return noCurve(d) || bufferEmpty(d); }},
    {"line.correct", "Correct Line...", "Correct selected line to fit it to captured point and rebuild geometry", "",
     "", doc, &VelmoraDoc::CorrectLine, [](Doc d) { return !d.capture->freePointHeld; }},
    {"line.cylinder", "C&ylinder", "Create cylinder using line as a generatrix", "", "", doc, &VelmoraDoc::Cylinder,
     [](Doc d) { return !d.capture->sectionCaptured || d.fieldMode; }},
    {"line.exit", "E&xit", "Leave the section or line regime", "", "", doc, &VelmoraDoc::ExitLines, nullptr},

    // The line buffer
    {"buffer.addPoint", "Add to \"line\" buffer", "Add selected point to buffer", "", "", doc, &VelmoraDoc::AddToBuffer,
     [](Doc d) { return !d.capture->pointPicked; }},
    {"buffer.clear", "Buffer clear ", "Remove all the points from buffer", "", "", doc, &VelmoraDoc::ClearBuffer,
     bufferEmpty},
    {"buffer.open", "Buffer Open...", "Read line from hard disk", "", "", doc, &VelmoraDoc::OpenBuffer, nullptr},
    {"buffer.open.line", "Buffer Open...", "Read line from hard disk", "", "", doc, &VelmoraDoc::OpenBuffer,
     noCurveOfGridOrField},
    {"buffer.saveAs", "Buffer Save As ...", "Save line in the choosen directory", "", "", doc, &VelmoraDoc::SaveBuffer,
     bufferEmpty},
    {"buffer.reverse", "First/Last in \"line\" buffer", "Change numeration of points", "", "", doc,
     &VelmoraDoc::ReverseBuffer, bufferEmpty},
    {"buffer.merge", "Buffer m&erge", "Merge buffer to section", "", "", doc, &VelmoraDoc::MergeBuffer,
     [](Doc d) { return notStr(d) || !d.capture->sectionCaptured || bufferEmpty(d); }},
    {"buffer.match", "Buffer match", "Match captured section or line to buffer", "", "", doc, &VelmoraDoc::MatchBuffer,
     [](Doc d) { return bufferEmpty(d) || noCurve(d); }},

    // Points
    {"point.capture", "&Capture", "Capture point for editing", "Capture point", "", doc, &VelmoraDoc::CapturePoint,
     [](Doc d) { return emptyModel(d) || d.capture->pointCaptured; }},
    {"point.next", "&Next point", "Capture the next point", "Next point", "", doc, &VelmoraDoc::CapturePoint, noPoint},
    {"point.input", "&Input...", "Direct input of point number from keyboard", "Input point", "", doc,
     &VelmoraDoc::FindPoint, noPointOrUns},
    {"point.edit", "&Edit...", "Edit coordinates of captured point", "Edit point", "", doc, &VelmoraDoc::EditPoint,
     noPoint},
    {"point.drag", "D&rag", "Drag captured point", "Drag point", "", doc, &VelmoraDoc::DragPoint,
     [](Doc d) { return noPointOrUns(d) || notApt(d); }},
    {"point.delete", "&Delete", "Delete captured point", "Delete point", "", doc, &VelmoraDoc::DeletePoint,
     pointCountFixed},
    {"point.duplicate", "Dup&licate...", "Duplicate captured point", "Duplicate point", "", doc,
     &VelmoraDoc::DuplicatePoint, pointCountFixed},
    {"point.cut", "C&ut", "Cut captured point", "Cut point", "Ctrl+X", doc, &VelmoraDoc::CutPoint,
     [](Doc d) { return noPointOrUns(d) || d.fieldMode; }},
    {"point.copy", "C&opy", "Copy captured point", "Copy point", "Ctrl+C", doc, &VelmoraDoc::CopyPoint, noPoint},
    {"point.paste", "&Paste", "Paste point from buffer to captured position", "Paste point", "Ctrl+V", doc,
     &VelmoraDoc::PastePoint, [](Doc d) { return noPoint(d) || !d.pointClipboardFull; }},
    {"point.free", "Free point", "Capture a point anywhere on the geometry", "", "", doc,
     &VelmoraDoc::CaptureFreePointInPointRegime,
     [](Doc d) { return d.capture->capturedSection < 0 && d.capture->capturedLine < 0; }},
    {"point.free.line", "Free point", "Capture a point anywhere on the geometry", "", "", doc,
     &VelmoraDoc::CaptureFreePoint, noCurveOrField},
    {"point.undo", "&Undo", "Undo edited point", "Undo point", "Ctrl+Z", doc, &VelmoraDoc::UndoPoint,
     [](Doc d) { return !d.pointUndoReady; }},
    {"point.exit", "E&xit ", "Leave the point regime", "", "", doc, &VelmoraDoc::ExitPoint, nullptr},
    {"point.rebreakPart", "Rebreak part...", "Rebreak part of selected section before (after) current point", "", "",
     doc, &VelmoraDoc::RebreakPart, [](Doc d) { return noPoint(d) || d.capture->freePointHeld || noCurve(d); }},
    {"point.knifePart", "&Knife part...", "Delete all the points with numbers before or after the current one", "", "",
     doc, &VelmoraDoc::KnifePart, noPointOnSection},
    {"point.copyPart", "Copy par&t...", "Copy part of section with numbers before or after the current one to buffer",
     "", "", doc, &VelmoraDoc::CopyPart, noPointOnSection},
    {"point.pastePart", "Paste part...", "Add buffer to selected position", "", "", doc, &VelmoraDoc::PastePart,
     [](Doc d) { return noPointOnSection(d) || bufferEmpty(d); }},
    {"point.reverseSection", "First/Last in section", "Change numeration of points", "", "", doc,
     &VelmoraDoc::ReverseSection, noPointOnSection},
    {"point.dragAndCorrect", "Drag point && correct line", "Correct line by means of drag point procedure", "", "",
     view, nullptr, [](Doc d) { return d.capture->freePointHeld || noPoint(d) || noCurve(d); }},

    // Transformations
    {"model.scaling", "&Scaling...", "Scale zBlock. If no selections work with geometry", "Scaling zBlock or geometry",
     "", doc, &VelmoraDoc::ScaleModel, emptyModel},
    {"model.move", "&Move...", "Move zBlock. If no selections work with geometry", "Move zBlock or geometry", "", doc,
     &VelmoraDoc::MoveModel, emptyModel},
    {"model.rotation", "&Rotation...", "Rotate zBlock about an axis. If no selections work with geometry",
     "Rotate zBlock or geometry", "", doc, &VelmoraDoc::RotateModel, emptyModel},
    {"model.flip", "&Flip...", "Reflect zBlock in a plane. If no selections work with geometry",
     "Flip zBlock or geometry", "", doc, &VelmoraDoc::FlipModel, emptyModel},
    {"model.symmetric", "S&ymmetric...", "Add the reflection of zBlock in a plane. If no selections work with geometry",
     "Create symmetric geometry", "", doc, &VelmoraDoc::SymmetricModel, nonOrField},
    {"model.convertation", "Convertation", "Exchange sections and lines of zBlock. If no selections work with geometry",
     "Convert sections to lines", "", doc, &VelmoraDoc::Convertation, notGridOrField},
    {"model.lastFirstSwitch", "Last/First switch...",
     "Reverse the order of sections or lines of zBlock. If no selections work with geometry", "Last_First switch", "",
     doc, &VelmoraDoc::LastFirstSwitch, notGridOrField},
    {"model.knife", "&Knife", "Cut geometry in accordance with drawn line", "Knife", "", doc, &VelmoraDoc::KnifeModel,
     notGridOrField},
    {"model.reflectToApt", "Reflect&ion to apt",
     "Project zBlock (yelow) to the rest part of geometry (out-zBlock patches)", "Reflect zBlock to apt", "", doc,
     &VelmoraDoc::ReflectToApt, [](Doc d) { return notStrOrField(d) || noBlock(d) || d.patches.size() < 2; }},
    {"model.reflectToWrl", "Reflection to wrl", "Project zBlock (yelow) to the unstructured geometry ",
     "Reflect zBlock to wrl", "", doc, &VelmoraDoc::ReflectToWrl,
     [](Doc d) { return d.secondKind != SecondKind::Wrl || noBlock(d); }},
    {"model.reflectToDat", "Reflection to dat", "Project zBlock (yelow) to the second, structured geometry", "", "",
     doc, &VelmoraDoc::ReflectToDat, [](Doc d) { return d.secondKind != SecondKind::Dat || noBlock(d); }},
    {"model.reflectToSft", "Reflection to sft", "Shift zBlock from the shifted to the initial markers", "", "", doc,
     &VelmoraDoc::ReflectToSft, [](Doc d) { return nonOrField(d) || noBlock(d); }},
    {"model.intersection", "&Intersection...",
     "Intersect zBlock (yelow) with the rest part  of geometry (out zBlock patches)", "Intersect zBlock", "", doc,
     &VelmoraDoc::Intersection,
     [](Doc d) { return notStrOrField(d) || noBlock(d) || d.patches.size() < 2 || d.blockCount >= countOf(d.patches); }},
    {"model.invisibleRemove", "I&nvisible remove", "Remove invisible part of unstructed grid", "Invisible remove", "",
     doc, &VelmoraDoc::RemoveInvisible, notUns},
    {"model.coonsRebuild", "Coons Re&build",
     "Rebuild blocks using Coons patches algorithm.  If no selections work with geometry", "Coons rebuild", "", doc,
     &VelmoraDoc::CoonsRebuild, notGridOrField},
    {"model.smooth", "Smoo&th geometry...", "Smooth zBlock using soft algorithm.  If no selections work with geometry",
     "Smooth geometry", "", doc, &VelmoraDoc::SmoothGeometry, notGridOrField},
    {"convert.toUnstructured", "&VRML or DAT", "Convert structured grid to unstructured one", "APT to DAT", "", doc,
     &VelmoraDoc::ConvertToUnstructured, [](Doc d) { return notStrOrField(d) || d.fileKind == FileKind::Skl; }},
    {"convert.toApt", "&APT...", "Convert lines (SKL) to structured grid (APT)", "SKL to APT", "", doc,
     &VelmoraDoc::ConvertToApt, [](Doc d) { return notStr(d) || d.fileKind == FileKind::Apt; }},
    {"convert.toSkl", "&SKL...", "Convert unstructured grid to lines (SKL)", "DAT to SKL", "", doc,
     &VelmoraDoc::ConvertToSkl, notUns},
    {"convert.knife", "Knife", "Cut unstructured grid by a plane", "", "", doc, &VelmoraDoc::KnifeZones, notUns},

    // View
    {"view.toolbar", "&Toolbar", "Show or hide the tool bars", "", "", shell, nullptr, nullptr},
    {"view.statusBar", "&Status Bar", "Show or hide the status line", "", "", shell, nullptr, nullptr},
    {"view.perspective", "&Perspective Projection", "Set perspective projection", "", "", view, nullptr, emptyModel},
    {"view.orthographic", "&Orthographic Projection", "Set orthographic projection", "", "", view, nullptr, emptyModel},
    {"view.top", "&Top", "Set top view", "", "", view, nullptr, emptyModel},
    {"view.bottom", "&Bottom", "Set bottom view", "", "", view, nullptr, emptyModel},
    {"view.front", "&Front", "Set front view", "", "", view, nullptr, emptyModel},
    {"view.back", "Bac&k", "Set back view", "", "", view, nullptr, emptyModel},
    {"view.right", "&Right", "Set right view", "", "", view, nullptr, emptyModel},
    {"view.left", "&Left", "Set left view", "", "", view, nullptr, emptyModel},
    {"view.iso", "&Iso", "Set iso view", "", "", view, nullptr, emptyModel},
    {"view.manual", "&Manual...", "Set manual view", "Manual", "", view, nullptr, emptyModel},
    {"view.rotate", "&Rotate", "Rotate model", "Rotate", "", view, nullptr, emptyModel},
    {"view.rotateX", "Rotate about &X axis", "Rotate model about X axis", "Rotate about X axis", "", view, nullptr,
     emptyModel},
    {"view.rotateY", "Rotate about &Y axis", "Rotate model about Y axis", "Rotate about Y axis", "", view, nullptr,
     emptyModel},
    {"view.rotateZ", "Rotate about &Z axis", "Rotate model about Z axis", "Rotate about Z axis", "", view, nullptr,
     emptyModel},
    {"view.translateXY", "Translate in XY plan&e", "Translate model in XY plane", "Translate in XY plane", "", view,
     nullptr, emptyModel},
    {"view.translateZ", "Translate in Z directio&n", "Translate model in Z direction", "Translate in Z direction", "",
     view, nullptr, emptyModel},
    {"view.shift", "S&hift", "Move model in screen plane", "Shift", "", view, nullptr, emptyModel},
    {"view.scale", "S&cale", "Change the scale of model image", "Scale", "", view, nullptr, emptyModel},
    {"view.zoomIn", "Zoom &In", "Magnify the selected part of body surface", "Zoom In", "", view, nullptr, emptyModel},
    {"view.zoomOut", "Zoom &Out", "Restore zoom", "Zoom out", "", view, nullptr, emptyModel},
    {"view.fit", "&Fit to Window", "Fit image to the window of pane", "Fit image", "", doc, &VelmoraDoc::FitToWindow,
     emptyModel},
    {"view.previous", "Pre&vious", "Set previous view", "", "", view, nullptr, [](Doc) { return true; }},
    {"view.surface", "&Surface", "Draw picture of solid body", "Surface", "", view, nullptr, emptyModel},
    {"view.threeD", "3D view", "Set 3D view", "3D view", "", view, nullptr, emptyModel},
    {"view.frontView", "Front view", "Set front view", "Front view", "", view, nullptr, emptyModel},
    {"view.upView", "Up view", "Set up view", "Up view", "", view, nullptr, emptyModel},
    {"view.sideView", "Side view", "Set side view", "Side view", "", view, nullptr, emptyModel},
    {"view.features", "&View features...", "Choose what is shown beside the model", "", "", doc,
     &VelmoraDoc::ViewFeatures, nullptr},

    // Help
    {"help.topics", "&Help Topics", "Show the user guide", "Help", "F1", shell, nullptr, nullptr},
    {"help.about", "&About Velmora...", "Show the program's version and the machine's state", "", "", shell, nullptr,
     nullptr},
});

} // namespace

std::span<const Command> commandTable() {
    return commands;
}

const Command* findCommand(std::string_view id) {
    const auto found = std::find_if(commands.begin(), commands.end(), [id](const Command& c) { return id == c.id; });
    return found == commands.end() ? nullptr : &*found;
}

std::string plainText(std::string_view menuText) {
    std::string text;
    for (std::size_t i = 0; i < menuText.size(); ++i) {
        if (menuText[i] == '&') {
            ++i;
        }
        if (i < menuText.size()) {
            text += menuText[i];
        }
    }
    while (!text.empty() && (text.back() == '.' || text.back() == ' ')) {
        text.pop_back();
    }
    return text;
}

bool isCommandOff(const VelmoraDoc& document, std::string_view id) {
    const Command* command = findCommand(id);
    return command != nullptr && command->off != nullptr && command->off(document);
}

} // namespace velmora
