#include "regimes.h"

#include <algorithm>
#include <numeric>

#include "Act.h"
#include "DialogValues.h"
#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "command_rows.h"
#include "command_rules.h"
#include "messages.h"
#include "show_dialog.h"

namespace velmora {

// What the user meets when the capture changes: questions, mouse modes, status texts, pictures. What is captured, and
// what each step changes in it, is Capture's.

// ---- Leaving what stands in the way ---------------------------------------------------------------------------------

namespace {

/// Leaves the point regime when it has its point; one that still waits for the click stays.
void letPointGo(VelmoraDoc& doc) {
    if (doc.capture->pointHeld()) {
        doc.ExitPointRegime();
    }
}

} // namespace

void letCurveGo(VelmoraDoc& doc) {
    if (doc.capture->curveHeld()) {
        doc.ExitLineRegime();
    }
}

void leavePointRegime(VelmoraDoc& doc) {
    if (doc.capture->pointRegimeActive()) {
        doc.ExitPointRegime();
    }
}

void leavePointAndCurves(VelmoraDoc& doc) {
    leavePointRegime(doc);
    if (doc.capture->curveRegimeActive()) {
        doc.ExitLineRegime();
    }
}

void showIdlePrompt(VelmoraDoc& doc) {
    if (!doc.capture->pointRegimeActive() && !doc.capture->curveRegimeActive() && !doc.capture->patchRegimeActive()) {
        doc.ShowStatus(idlePrompt);
    }
}

// ---- Points ---------------------------------------------------------------------------------------------------------

void VelmoraDoc::CapturePoint() {
    capture.armPoint();
    forceMouseMode(ModePoint);
    ShowStatus(capture->pointStatus);
}

void VelmoraDoc::CaptureFreePoint() {
    capture.armFreePoint();
    ShowStatus(capture->pointStatus);
}

void VelmoraDoc::CaptureFreePointInPointRegime() {
    forceMouseMode(ModePoint);
    CaptureFreePoint();
}

void VelmoraDoc::ExitPointRegime() {
    capture.leavePoint();
    pointUndoReady = false;
    if (capture->sectionCaptured || capture->sectionCaptureArmed) {
        forceMouseMode(ModeSection);
        ShowStatus(capture->continuePrompt);
    } else if (capture->patchRegimeActive()) {
        forceMouseMode(ModePatch);
        ShowStatus(capture->continuePrompt);
    } else {
        resetMouseMode();
    }
    redrawPicture(); // the geometry is the same: a command that changed it tells so by itself
    refillStatus();
}

void VelmoraDoc::ExitPoint() {
    ExitPointRegime();
    showIdlePrompt(*this);
}

// ---- Sections and lines ---------------------------------------------------------------------------------------------

namespace {

void armCurveCapture(VelmoraDoc& doc, bool section) {
    if (doc.capture->patchCaptureArmed && !doc.ui().ask(message::leaveAddRegime)) {
        return;
    }
    letPointGo(doc);
    if (section ? doc.capture->lineCaptured : doc.capture->sectionCaptured) {
        doc.ExitLineRegime();
    }
    section ? doc.capture.armSection() : doc.capture.armLine();
    doc.forceMouseMode(section ? ModeSection : ModeLine);
    doc.ShowStatus(doc.capture->dragPrompt);
}

} // namespace

void VelmoraDoc::CaptureSection() {
    armCurveCapture(*this, true);
}

void VelmoraDoc::CaptureLine() {
    armCurveCapture(*this, false);
}

void VelmoraDoc::NextSectionOrLine() {
    if (capture->sectionCaptured) {
        CaptureSection();
    } else if (capture->lineCaptured) {
        CaptureLine();
    }
}

namespace {

InputContext inputContext(const VelmoraDoc& doc, bool lines) {
    InputContext context;
    context.curveCounts.reserve(doc.patches.size());
    for (const Patch& patch : doc.patches) {
        context.curveCounts.push_back(lines ? lineCount(patch) : countOf(patch));
    }
    context.block.assign(doc.blockList.begin(), doc.blockList.begin() + doc.blockCount);
    return context;
}

void holdInputCurve(VelmoraDoc& doc, bool section, std::int32_t patch, std::int32_t curve) {
    letPointGo(doc);
    if (doc.capture->lineCaptured || (!section && doc.capture->sectionCaptured)) {
        doc.ExitLineRegime();
    }
    if (section) {
        const PointList* points = doc.sectionAt(patch, curve);
        doc.capture.holdSection(patch, curve, points != nullptr ? countOf(*points) : 0);
    } else {
        doc.capture.holdLine(patch, curve);
    }
    doc.forceMouseMode(section ? ModeSection : ModeLine);
    doc.ShowStatus(curve < 0 ? doc.capture->dragPrompt
                   : section ? doc.capture->sectionContinueStatus
                             : doc.capture->lineContinueStatus);
    doc.redrawHighlight();
}

} // namespace

void VelmoraDoc::InputSection() {
    dialogs->inputSection.maximumPatches = countOf(patches);
    if (capture->capturedPatch >= 0) {
        dialogs->inputSection.patch = capture->capturedPatch + 1;
    }
    if (capture->capturedSection >= 0) {
        dialogs->inputSection.section = capture->capturedSection + 1;
    }
    if (showDialog(ui_, dialogs->inputSection, inputContext(*this, false))) {
        holdInputCurve(*this, true, dialogs->inputSection.patch - 1, dialogs->inputSection.section - 1);
        refillStatus();
    }
}

void VelmoraDoc::InputLine() {
    dialogs->inputLine.maximumPatches = countOf(patches);
    if (capture->capturedPatch >= 0) {
        dialogs->inputLine.patch = capture->capturedPatch + 1;
    }
    if (capture->capturedLine >= 0) {
        dialogs->inputLine.line = capture->capturedLine + 1;
    }
    if (showDialog(ui_, dialogs->inputLine, inputContext(*this, true))) {
        holdInputCurve(*this, false, dialogs->inputLine.patch - 1, dialogs->inputLine.line - 1);
        refillStatus();
    }
}

namespace {

void dropEmptyPatchesFromBlock(VelmoraDoc& doc) {
    const auto end = doc.blockList.begin() + doc.blockCount;
    const auto kept = std::remove_if(doc.blockList.begin(), end, [&doc](std::int32_t patch) {
        return patch >= 0 && patch < countOf(doc.patches) && doc.patches[static_cast<std::size_t>(patch)].empty();
    });
    std::fill(kept, end, -1);
    doc.blockCount = static_cast<std::int32_t>(kept - doc.blockList.begin());
}

} // namespace

void VelmoraDoc::ExitLineRegime() {
    letPointGo(*this);
    const bool wasActive = capture->curveRegimeActive();
    capture.leaveCurve();
    if (wasActive) {
        dropEmptyPatchesFromBlock(*this);
    }
    if (capture->patchRegimeActive()) {
        setMouseMode(ModePatch);
        refillStatus();
        ShowStatus(capture->blockStatus);
    } else {
        resetMouseMode();
    }
    redrawPicture();
    refillStatus();
}

void VelmoraDoc::ExitLines() {
    ExitLineRegime();
    showIdlePrompt(*this);
}

// ---- Patches and the zBlock -----------------------------------------------------------------------------------------

namespace {

void armPatchCapture(VelmoraDoc& doc) {
    doc.capture.armPatch();
    doc.forceMouseMode(ModePatch);
}

} // namespace

void VelmoraDoc::CapturePatch() {
    capture.disarmForPatch();
    letPointGo(*this);
    letCurveGo(*this);
    armPatchCapture(*this);
    ShowStatus(capture->patchStatus);
}

void VelmoraDoc::AddPatchToBlock() {
    if (blockCount >= blockCapacity) {
        ui_.showMessage(message::blockIsFull);
        return;
    }
    leavePointAndCurves(*this);
    armPatchCapture(*this);
}

void VelmoraDoc::RemovePatchFromBlock() {
    capture.armRemoval();
    leavePointAndCurves(*this);
    // One click does one thing: what waited for a patch to add has the zBlock captured from here on.
    capture.disarmForRemoval();
    ShowStatus(capture->removeStatus);
    forceMouseMode(ModePatch);
}

namespace {

void NewBlock(VelmoraDoc& doc) {
    doc.emptyBlock();
    doc.showBlockOnly = false;
    doc.redrawPicture();
    doc.AddPatchToBlock();
}

} // namespace

void VelmoraDoc::InputPatch() {
    dialogs->inputPatch.maximum = partCount();
    if (dialogs->inputPatch.maximum < 1 || !showDialog(ui_, dialogs->inputPatch)) {
        return;
    }
    const std::int32_t patch = dialogs->inputPatch.number - 1;
    const bool joins = !inBlock(patch);
    if (joins && blockCount >= blockCapacity) {
        ui_.showMessage(message::blockIsFull);
        return;
    }
    capture.disarmForPatchNumber();
    letPointGo(*this);
    letCurveGo(*this);
    capture.holdPatch(patch, joins);
    forceMouseMode(ModePatch);
    if (joins) {
        blockList[static_cast<std::size_t>(blockCount)] = patch;
        ++blockCount;
        ShowStatus(capture->blockStatus);
    }
    redrawPicture();
}

namespace {

/// Every part joins the zBlock, and the last one is held as a typed one is.
void SelectAll(VelmoraDoc& doc) {
    const std::int32_t parts = doc.partCount();
    if (parts < 1) {
        return;
    }
    if (parts > countOf(doc.blockList)) {
        doc.ui().showMessage(message::blockIsFull);
        return;
    }
    doc.capture.disarmForPatchNumber();
    letPointGo(doc);
    letCurveGo(doc);
    doc.capture.holdPatch(parts - 1, true);
    doc.forceMouseMode(ModePatch);
    std::iota(doc.blockList.begin(), doc.blockList.begin() + parts, 0);
    doc.blockCount = parts;
    doc.ShowStatus(doc.capture->blockStatus);
    doc.redrawPicture();
}

} // namespace

void VelmoraDoc::ExitPatchRegime() {
    letCurveGo(*this);
    leavePointRegime(*this); // its point is one of a patch that is about to be let go
    capture.forgetPatch();
    showBlockOnly = false;
    emptyBlock();
    EndBlockRegime();
}

void VelmoraDoc::ExitPatches() {
    ExitPatchRegime();
    showIdlePrompt(*this);
}

void VelmoraDoc::EndBlockRegime() {
    capture.leavePatch(blockCount == 0);
    pointUndoReady = false;
    resetMouseMode();
    emptyBlock();
    showBlockOnly = false;
    redrawPicture();
    refillStatus();
}

void VelmoraDoc::leaveRegimes() {
    capture.releaseCorrection();
    leavePointRegime(*this);
    if (capture->patchRegimeActive()) {
        ExitPatchRegime();
    }
    if (capture->curveRegimeActive()) {
        ExitLineRegime();
    }
    capture.forgetNumbers();
    emptyBlock();
}

// ---- The left button comes up ---------------------------------------------------------------------------------------

namespace {

void tellPoint(VelmoraDoc& doc) {
    const CaptureState& now = *doc.capture;
    doc.ui().tellAct(doc.structureKind == StructureKind::Unstructured
                         ? Act{.kind = Act::Kind::Node, .patch = now.capturedPatch, .point = now.capturedPoint}
                         : Act{.kind = Act::Kind::Point,
                               .patch = now.capturedPatch,
                               .section = now.capturedPointSection,
                               .point = now.capturedPoint});
}

/// A point and a free point that both wait take the same one: it is one click, and one act.
void takePointAtRelease(VelmoraDoc& doc) {
    const bool waits = doc.capture->pointCaptureArmed;
    const bool waitsFree = doc.capture->freePointArmed;
    if (!waits && !waitsFree) {
        return;
    }
    const bool taken = waits && doc.capture.releasePoint();
    const bool takenFree = waitsFree && doc.capture.releaseFreePoint();
    if (taken || takenFree) {
        doc.ShowStatus(doc.capture->pointContinueStatus);
        tellPoint(doc);
    } else {
        doc.ShowStatus(doc.capture->dragPrompt);
    }
}

void joinBlockAtRelease(VelmoraDoc& doc) {
    doc.capture.releasePatch();
    doc.ui().tellAct({.kind = Act::Kind::WholePatch, .patch = doc.capture->capturedPatch});
    if (!doc.inBlock(doc.capture->capturedPatch) && doc.capture->capturedPatch >= 0) {
        if (doc.blockCount >= blockCapacity) {
            doc.ui().showMessage(message::blockIsFull);
        } else {
            doc.blockList[static_cast<std::size_t>(doc.blockCount)] = doc.capture->capturedPatch;
            ++doc.blockCount;
            doc.ShowStatus(doc.capture->patchStatus);
        }
    }
    doc.redrawHighlight();
}

void removeFromBlockAtRelease(VelmoraDoc& doc) {
    doc.capture.releaseRemoval();
    doc.ui().tellAct({.kind = Act::Kind::WholePatch, .patch = doc.capture->patchToRemove});
    const auto end = doc.blockList.begin() + doc.blockCount;
    const auto found = std::find(doc.blockList.begin(), end, doc.capture->patchToRemove);
    if (found != end) {
        std::move(found + 1, end, found);
        *(end - 1) = -1;
        --doc.blockCount;
        if (doc.blockCount == 0) {
            doc.EndBlockRegime();
        }
    }
    doc.ShowStatus(doc.capture->removeStatus);
    doc.redrawHighlight();
}

void takeCurveAtRelease(VelmoraDoc& doc) {
    if (doc.capture->sectionCaptureArmed) {
        const bool taken = doc.capture.releaseSection();
        doc.ShowStatus(taken ? doc.capture->sectionContinueStatus : doc.capture->dragPrompt);
        if (taken) {
            doc.ui().tellAct({.kind = Act::Kind::Section,
                              .patch = doc.capture->capturedPatch,
                              .section = doc.capture->capturedSection});
        }
    }
    if (doc.capture->lineCaptureArmed) {
        const bool taken = doc.capture.releaseLine();
        doc.ShowStatus(taken ? doc.capture->lineContinueStatus : doc.capture->dragPrompt);
        if (taken) {
            doc.ui().tellAct(
                {.kind = Act::Kind::Line, .patch = doc.capture->capturedPatch, .point = doc.capture->capturedLine});
        }
    }
}

void takePartAtRelease(VelmoraDoc& doc) {
    if (doc.capture->patchCaptureArmed) {
        joinBlockAtRelease(doc);
    }
    if (doc.capture->patchRemoving) {
        removeFromBlockAtRelease(doc);
    } else {
        takeCurveAtRelease(doc);
    }
}

} // namespace

void VelmoraDoc::endDrag() {
    if (capture->pointDragging) {
        capture.releaseDrag();
        refillStatus();
        ShowStatus(capture->pointContinueStatus);
        ui_.tellAct({.kind = Act::Kind::Release});
    }
}

void VelmoraDoc::moveRegimeAtRelease() {
    takePointAtRelease(*this);
    endDrag();
    takePartAtRelease(*this);
}

void VelmoraDoc::takeAtRelease() {
    takePointAtRelease(*this);
    takePartAtRelease(*this);
}

std::span<const Command> regimeCommands() {
    using namespace rules;
    using enum MenuId;
    static const Command rows[] = {
        {.id = "patch.capture",
         .menuText = "&Capture",
         .statusText = "Capture patch for editing",
         .toolTip = "Capture patch",
         .icon = true,
         .run = &VelmoraDoc::CapturePatch,
         .off = [](Doc d) { return emptyModel(d) || d.capture->patchCaptured; },
         .checked = [](Doc d) { return d.capture->patchCaptureArmed || d.capture->patchCaptured; },
         .places = {{EditPatches, 110}, {GeneralBar, 210}}},
        {.id = "patch.inputAndAdd",
         .menuText = "&Input && Add to zBlock...",
         .statusText = "Direct input of patch number",
         .toolTip = "Input patch",
         .icon = true,
         .run = &VelmoraDoc::InputPatch,
         .off = emptyModel,
         .places = {{EditPatches, 120}, {GeneralBar, 220}}},
        {.id = "block.all",
         .menuText = "Select &all",
         .statusText = "Add every patch to zBlock",
         .icon = true,
         .run = &SelectAll,
         .off = emptyModel,
         .places = {{EditPatches, 125}}},
        {.id = "patch.addToBlock",
         .menuText = "&Add to zBlock",
         .statusText = "Add patch to zBlock for editing",
         .toolTip = "Add to zBlock",
         .icon = true,
         .run = &VelmoraDoc::AddPatchToBlock,
         .off = emptyModel,
         .places = {{PatchContext, 110}, {EditingBar, 110}}},
        {.id = "patch.removeFromBlock",
         .menuText = "&Remove from zBlock",
         .statusText = "Remove patch from zBlock",
         .toolTip = "Remove from zBlock",
         .icon = true,
         .run = &VelmoraDoc::RemovePatchFromBlock,
         .off = noBlock,
         .places = {{PatchContext, 120}, {EditingBar, 140}}},
        {.id = "patch.exit",
         .menuText = "E&xit",
         .statusText = "Leave the patch regime",
         .run = &VelmoraDoc::ExitPatches,
         .places = {{EditPatches, 410}, {PatchContext, 510}}},
        {.id = "block.new",
         .menuText = "New zBlock",
         .statusText = "Create new zBlock. If zBlock exist, it is removed",
         .run = &NewBlock,
         .off = [](Doc d) { return d.blockCount == 0; },
         .places = {{PatchContext, 140}}},
        {.id = "line.captureSection",
         .menuText = "Capture &Section",
         .statusText = "Capture section for editing",
         .toolTip = "Capture section",
         .icon = true,
         .run = &VelmoraDoc::CaptureSection,
         .off = [](Doc d) { return notStr(d) || d.capture->sectionCaptured; },
         .checked = [](Doc d) { return d.capture->sectionCaptureArmed || d.capture->sectionCaptured; },
         .places = {{EditLinesCapture, 110, "&Section"}, {PatchContext, 410}, {GeneralBar, 310}}},
        {.id = "line.captureLine",
         .menuText = "Capture &Line",
         .statusText = "Capture line for editing",
         .toolTip = "Capture line",
         .icon = true,
         .run = &VelmoraDoc::CaptureLine,
         .off = [](Doc d) { return emptyModel(d) || d.capture->lineCaptured || notGrid(d); },
         .checked = [](Doc d) { return d.capture->lineCaptureArmed || d.capture->lineCaptured; },
         .places = {{EditLinesCapture, 120, "&Line"}, {PatchContext, 420}, {GeneralBar, 410}}},
        {.id = "line.inputSection",
         .menuText = "&Section...",
         .statusText = "Direct input of section number",
         .toolTip = "Input section",
         .icon = true,
         .run = &VelmoraDoc::InputSection,
         .off = notStr,
         .places = {{EditLinesInput, 110}, {GeneralBar, 320}}},
        {.id = "line.inputLine",
         .menuText = "&Line...",
         .statusText = "Direct input of line number",
         .toolTip = "Input line",
         .icon = true,
         .run = &VelmoraDoc::InputLine,
         .off = notGrid,
         .places = {{EditLinesInput, 120}, {GeneralBar, 420}}},
        {.id = "line.next",
         .menuText = "&Next Section (Line)",
         .statusText = "Capture the next section or line",
         .run = &VelmoraDoc::NextSectionOrLine,
         .off = noCurve,
         .places = {{LineContext, 110}}},
        {.id = "line.gateToPatchMode",
         .menuText = "Gate to patch mode",
         .statusText = "Add patch to zBlock for editing",
         .run = &VelmoraDoc::AddPatchToBlock,
         .off = emptyModel,
         .places = {{LineContext, 130}}},
        {.id = "line.exit",
         .menuText = "E&xit",
         .statusText = "Leave the section or line regime",
         .run = &VelmoraDoc::ExitLines,
         .places = {{EditLines, 210}, {LineContext, 610}}},
        {.id = "point.capture",
         .menuText = "&Capture",
         .statusText = "Capture point for editing",
         .toolTip = "Capture point",
         .icon = true,
         .run = &VelmoraDoc::CapturePoint,
         .off = [](Doc d) { return emptyModel(d) || d.capture->pointCaptured; },
         .checked = [](Doc d) { return d.capture->pointCaptureArmed || d.capture->pointCaptured; },
         .places = {{EditPoint, 110}, {GeneralBar, 510}}},
        {.id = "point.next",
         .menuText = "&Next point",
         .statusText = "Capture the next point",
         .toolTip = "Next point",
         .icon = true,
         .run = &VelmoraDoc::CapturePoint,
         .off = noPoint,
         .places = {{PointContext, 110}, {EditingBar, 310}}},
        {.id = "point.free",
         .menuText = "Free point",
         .statusText = "Capture a point anywhere on the geometry",
         .run = &VelmoraDoc::CaptureFreePointInPointRegime,
         .off = [](Doc d) { return d.capture->capturedSection < 0 && d.capture->capturedLine < 0; },
         .places = {{PointContext, 170}}},
        {.id = "point.free.line",
         .menuText = "Free point",
         .statusText = "Capture a point anywhere on the geometry",
         .run = &VelmoraDoc::CaptureFreePoint,
         .off = noCurveOrField,
         .places = {{LineContext, 510}}},
        {.id = "point.exit",
         .menuText = "E&xit ",
         .statusText = "Leave the point regime",
         .run = &VelmoraDoc::ExitPoint,
         .places = {{PointContext, 520}}},
    };
    return rows;
}

} // namespace velmora
