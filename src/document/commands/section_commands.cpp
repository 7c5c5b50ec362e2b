#include "section_commands.h"

#include <algorithm>

#include "DialogValues.h"
#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "block_commands.h"
#include "capture_address.h"
#include "captured_curve.h"
#include "carried_values.h"
#include "command_rows.h"
#include "command_rules.h"
#include "exchange.h"
#include "messages.h"
#include "patch_order.h"
#include "regimes.h"
#include "show_dialog.h"

namespace velmora {

// The small tools for the captured section or line.

namespace {

/// A section that is there, or a line of patches that can be transposed.
bool curveCanBeEdited(VelmoraDoc& doc) {
    if (!curveIsThere(doc) || doc.capture->sectionCaptured) {
        return curveIsThere(doc);
    }
    const std::vector<std::int32_t> chosen = doc.chosenPatches();
    return std::all_of(chosen.begin(), chosen.end(), [&doc](std::int32_t patch) {
        return hasEqualSections(doc.patches[static_cast<std::size_t>(patch)]);
    });
}

/// Hands the captured section to `edit`. A line becomes a section for as long as that takes; with a zBlock that does
/// not hold its patch, the section of the line's number is edited. `edit` keeps the number of a line's points.
void editCurveAsSection(VelmoraDoc& doc, const std::function<void(PointList&)>& edit) {
    const bool line = !doc.capture->sectionCaptured;
    if (line) {
        exchangeSectionsAndLines(doc);
    }
    if (PointList* section = doc.sectionAt(doc.capture->capturedPatch, doc.capture->capturedSection)) {
        edit(*section);
    }
    if (line) {
        exchangeSectionsAndLines(doc);
    }
}

// ---- Move, Scaling, Flip, Rotation, Symmetric -----------------------------------------------------------------------

void transformCurve(VelmoraDoc& doc, const PointMap& map) {
    doc.beginPatchCommand(Extent::Stays);
    bool done = true;
    editCurveAsSection(doc, [&map, &done](PointList& section) { done = transformPoints(section, map); });
    if (!done) {
        doc.ui().showMessage(message::axisAbsent);
    }
    followCapturedPoint(doc);
    doc.redraw();
}

void MoveCurve(VelmoraDoc& doc) {
    if (curveCanBeEdited(doc) && showDialog(doc.ui(), doc.dialogs->move)) {
        transformCurve(doc, doc.dialogs->move.map());
    }
}

void ScaleCurve(VelmoraDoc& doc) {
    if (curveCanBeEdited(doc) && showDialog(doc.ui(), doc.dialogs->scaling)) {
        transformCurve(doc, doc.dialogs->scaling.map());
    }
}

void FlipCurve(VelmoraDoc& doc) {
    if (curveCanBeEdited(doc) && showDialog(doc.ui(), doc.dialogs->flip)) {
        transformCurve(doc, doc.dialogs->flip.map());
    }
}

void RotateCurve(VelmoraDoc& doc) {
    if (curveCanBeEdited(doc) && showDialog(doc.ui(), doc.dialogs->rotate)) {
        RotationAxis axis = doc.dialogs->rotate.axis();
        transformCurve(doc, [&axis](const zVec<double>& point) { return rotatePoint(point, axis); });
        doc.dialogs->rotate.takeEnd(axis);
    }
}

void SymmetricSection(VelmoraDoc& doc) {
    if (!curveCanBeEdited(doc) || !showDialog(doc.ui(), doc.dialogs->symmetric)) {
        return;
    }
    doc.beginPatchCommand(Extent::Stays);
    if (doc.capture->sectionCaptured) {
        doc.ui().showMessage(message::aptMayBeViolated);
        PointList& section = *doc.sectionAt(doc.capture->capturedPatch, doc.capture->capturedSection);
        section = withMirrorImage(section, doc.dialogs->symmetric.chosen());
        doc.retitle();
    }
    doc.redraw();
}

// ---- First point ----------------------------------------------------------------------------------------------------

/// Shows the dialog for the section, or the line turned to one. False for Cancel.
bool askForFirstPoint(VelmoraDoc& document, const PointList& section) {
    CFirstPoint& values = document.dialogs->firstPoint;
    const std::int32_t first = document.capture->capturedPoint;
    values.pointInside = document.capture->pointCaptured && first > 0 && first < countOf(section) - 1;
    values.closed = isClosed(section);
    return showDialog(document.ui(), values);
}

/// Gives the section another first point. `first` is the captured one.
void renumberSection(PointList& section, const CFirstPoint& values, std::int32_t first) {
    if (values.makeLoop && !section.empty()) {
        section.back() = section.front();
    }
    if (values.kind == 1) {
        std::reverse(section.begin(), section.end());
    } else {
        section = loopFrom(section, first, values.sortKind == 1);
    }
}

void FirstPoint(VelmoraDoc& doc) {
    if (!curveCanBeEdited(doc)) {
        return;
    }
    bool confirmed = false;
    editCurveAsSection(doc, [&doc, &confirmed](PointList& section) { confirmed = askForFirstPoint(doc, section); });
    if (!confirmed) {
        return;
    }
    doc.beginPatchCommand(Extent::Stays);
    editCurveAsSection(doc, [&doc](PointList& section) {
        renumberSection(section, doc.dialogs->firstPoint, doc.capture->capturedPoint);
    });
    if (doc.capture->pointCaptured) {
        // The number has not moved: it names another point now.
        doc.capture.savePoint();
        followCapturedPoint(doc);
        doc.capture.describePoint(true);
        doc.ShowStatus(doc.capture->pointContinueStatus);
    }
    doc.redraw();
}

void showCapturedPoint(VelmoraDoc& doc) {
    doc.capture.describePoint(false);
    doc.ShowStatus(doc.capture->pointContinueStatus);
}

} // namespace

// ---- Parts of a section ---------------------------------------------------------------------------------------------

std::optional<Side> chooseSide(VelmoraDoc& doc) {
    doc.dialogs->beforeAfter.choice = doc.partBefore ? 1 : 2;
    if (!showDialog(doc.ui(), doc.dialogs->beforeAfter)) {
        return std::nullopt;
    }
    doc.partBefore = doc.dialogs->beforeAfter.choice == 1;
    doc.partAfter = !doc.partBefore;
    return doc.partBefore ? Side::Before : Side::After;
}

namespace {

/// The captured section, if the captured point is a point of it; else null.
PointList* sectionOfCapturedPoint(VelmoraDoc& doc) {
    const bool there =
        doc.structureKind == StructureKind::Structured && doc.capture->sectionCaptured && doc.capture->pointCaptured &&
        doc.pointAt(doc.capture->capturedPatch, doc.capture->capturedSection, doc.capture->capturedPoint) != nullptr;
    return there ? doc.sectionAt(doc.capture->capturedPatch, doc.capture->capturedSection) : nullptr;
}

void HalveSection(VelmoraDoc& doc) {
    if (!doc.capture->sectionCaptured || !curveIsThere(doc)) {
        return;
    }
    if (const auto removed = chooseSide(doc)) {
        doc.beginPatchCommand(Extent::Stays);
        PointList& section = *doc.sectionAt(doc.capture->capturedPatch, doc.capture->capturedSection);
        section = withoutHalf(section, *removed);
        keepCaptureInside(doc);
        followCapturedPoint(doc);
        doc.retitle();
        doc.redraw();
    }
}

void KnifePart(VelmoraDoc& doc) {
    PointList* section = sectionOfCapturedPoint(doc);
    if (section == nullptr) {
        return;
    }
    if (const auto removed = chooseSide(doc)) {
        doc.beginPatchCommand(Extent::Stays);
        if (PointList* const field = doc.fieldOfSection(doc.capture->capturedPatch, doc.capture->capturedSection)) {
            *field = withoutSide(*field, doc.capture->capturedPoint, *removed);
        }
        *section = withoutSide(*section, doc.capture->capturedPoint, *removed);
        // The point at which was cut stays captured: of the points before it none is left to count.
        if (*removed == Side::Before) {
            doc.capture.renumberPoint(doc.capture->capturedPointSection, 0);
        }
        followCapturedPoint(doc);
        doc.retitle();
        showCapturedPoint(doc);
        doc.redraw();
    }
}

void CopyPart(VelmoraDoc& doc) {
    const PointList* section = sectionOfCapturedPoint(doc);
    if (section == nullptr) {
        return;
    }
    if (const auto copied = chooseSide(doc)) {
        // Here the side is what is copied: the other one is left out.
        const Side leftOut = *copied == Side::Before ? Side::After : Side::Before;
        doc.lineBuffer = withoutSide(*section, doc.capture->capturedPoint, leftOut);
        doc.lineBufferFull = true;
        showCapturedPoint(doc);
        doc.redraw();
    }
}

/// The points of the buffer take the values along that stood at the same part of the length of what they replace, up
/// to the captured point, which keeps its own.
void pasteValues(const PointList& section, PointList& values, std::int32_t point, Side replaced,
                 const PointList& part) {
    const auto at = static_cast<std::ptrdiff_t>(point);
    const bool before = replaced == Side::Before;
    const auto sideOf = [at, before](const PointList& list) {
        return before ? PointList(list.begin(), list.begin() + at + 1) : PointList(list.begin() + at, list.end());
    };
    PointList pasted = part;
    pasted.insert(before ? pasted.end() : pasted.begin(), section[static_cast<std::size_t>(point)]);
    PointList carried = sideOf(values);
    carryValues(sideOf(section), pasted, carried);
    carried.erase(before ? carried.end() - 1 : carried.begin());
    values = withSideReplaced(values, point, replaced, carried);
}

void PastePart(VelmoraDoc& doc) {
    PointList* section = sectionOfCapturedPoint(doc);
    if (section == nullptr) {
        return;
    }
    if (const auto side = chooseSide(doc)) {
        doc.beginPatchCommand(Extent::Stays);
        PointList* const field = doc.fieldOfSection(doc.capture->capturedPatch, doc.capture->capturedSection);
        if (field != nullptr) {
            pasteValues(*section, *field, doc.capture->capturedPoint, *side, doc.lineBuffer);
        }
        *section = withSideReplaced(*section, doc.capture->capturedPoint, *side, doc.lineBuffer);
        if (*side == Side::Before) {
            // By one, however long the buffer is, as far as the section goes.
            doc.capture.renumberPoint(doc.capture->capturedPointSection,
                                      std::min(doc.capture->capturedPoint + 1, countOf(*section) - 1));
        }
        doc.retitle();
        doc.redraw();
    }
}

/// As for sections and lines that are turned round: chosen again the command takes itself back, and where an Undo
/// stands for a command before it, that must not take back the two of them.
void keepReversed(VelmoraDoc& doc) {
    const bool ofPoint = doc.pointUndoReady;
    if (!ofPoint && !doc.patchUndoReady) {
        doc.keepForGuard();
        return;
    }
    doc.beginPatchCommand(Extent::Stays);
    if (ofPoint) {
        doc.SavePointUndo();
        doc.capture.savePoint();
    }
}

void ReverseSection(VelmoraDoc& doc) {
    PointList* section = sectionOfCapturedPoint(doc);
    if (section == nullptr) {
        return;
    }
    keepReversed(doc);
    if (PointList* const field = doc.fieldOfSection(doc.capture->capturedPatch, doc.capture->capturedSection)) {
        std::reverse(field->begin(), field->end());
    }
    std::reverse(section->begin(), section->end());
    doc.capture.renumberPoint(doc.capture->capturedPointSection, countOf(*section) - doc.capture->capturedPoint - 1);
    // With a snapshot or without one it is a change, asked about before leaving.
    doc.documentModified = true;
    doc.retitle();
    doc.redraw();
}

void MergeBuffer(VelmoraDoc& doc) {
    if (!doc.capture->sectionCaptured || !curveIsThere(doc)) {
        return;
    }
    doc.beginPatchCommand(Extent::Stays);
    doc.ui().showMessage(message::aptMayBeViolated);
    PointList& section = *doc.sectionAt(doc.capture->capturedPatch, doc.capture->capturedSection);
    if (PointList* const field = doc.fieldOfSection(doc.capture->capturedPatch, doc.capture->capturedSection)) {
        field->resize(section.size() + doc.lineBuffer.size()); // of points behind the last one nothing is known: 0
    }
    section.insert(section.end(), doc.lineBuffer.begin(), doc.lineBuffer.end());
    doc.retitle();
    doc.redraw();
}

void Prescribe(VelmoraDoc& doc) {
    const CPrescribe& values = doc.dialogs->prescribe;
    if (!curveIsThere(doc) || !showDialog(doc.ui(), doc.dialogs->prescribe)) {
        return;
    }
    PrescribedValues prescribed;
    prescribed.x = values.useX ? std::optional(values.x) : std::nullopt;
    prescribed.y = values.useY ? std::optional(values.y) : std::nullopt;
    prescribed.z = values.useZ ? std::optional(values.z) : std::nullopt;
    doc.beginPatchCommand(Extent::Stays);
    PointList points = capturedCurvePoints(doc);
    for (zVec<double>& point : points) {
        prescribe(point, prescribed);
    }
    putCurvePoints(doc, points);
    doc.retitle();
    doc.redraw();
}

// ---- Delete and Duplicate -------------------------------------------------------------------------------------------

void removeCapturedSection(VelmoraDoc& doc) {
    doc.beginPatchCommand(Extent::Stays);
    Patch& patch = doc.patches[static_cast<std::size_t>(doc.capture->capturedPatch)];
    if (patch.size() < 3 && doc.fileKind == FileKind::Apt) {
        doc.ui().showMessage(message::twoSectionsStay);
        doc.ExitLineRegime();
        return;
    }
    patch.erase(patch.begin() + doc.capture->capturedSection);
    if (patch.empty()) {
        const std::int32_t emptied = doc.capture->capturedPatch;
        // The patch regime goes with the last patch.
        doc.ExitLineRegime();
        takePatchOut(doc, emptied);
    } else {
        keepCaptureInside(doc);
        followCapturedPoint(doc);
    }
    doc.retitle();
    if (doc.structureKind == StructureKind::None && doc.status != idlePrompt) {
        showIdlePrompt(doc);
    }
    doc.redraw();
}

void removeCapturedLine(VelmoraDoc& doc) {
    doc.beginPatchCommand(Extent::Stays);
    Patch& patch = doc.patches[static_cast<std::size_t>(doc.capture->capturedPatch)];
    if (lineCount(patch) < 3) {
        doc.ui().showMessage(message::twoLinesStay);
        doc.ExitLineRegime();
        return;
    }
    for (PointList& section : patch) {
        if (doc.capture->capturedLine < countOf(section)) {
            section.erase(section.begin() + doc.capture->capturedLine);
        }
    }
    keepCaptureInside(doc);
    followCapturedPoint(doc);
    doc.retitle();
    doc.redraw();
}

void DeleteCurve(VelmoraDoc& doc) {
    if (curveIsThere(doc)) {
        doc.capture->sectionCaptured ? removeCapturedSection(doc) : removeCapturedLine(doc);
    }
}

void DuplicateCurve(VelmoraDoc& doc) {
    if (!curveIsThere(doc)) {
        return;
    }
    const double points = static_cast<double>(capturedCurvePoints(doc).size());
    doc.dialogs->duplicate.room = doc.memoryRoom(bytesOfSection + points * bytesOfPoint);
    if (!showDialog(doc.ui(), doc.dialogs->duplicate)) {
        return;
    }
    const auto copies = static_cast<std::size_t>(doc.dialogs->duplicate.duplicateCount - 1);
    if (copies < 1) {
        return;
    }
    doc.beginPatchCommand(Extent::Stays);
    Patch& patch = doc.patches[static_cast<std::size_t>(doc.capture->capturedPatch)];
    if (!doc.capture->sectionCaptured) {
        for (PointList& section : patch) {
            if (doc.capture->capturedLine < countOf(section)) {
                const zVec<double> point = section[static_cast<std::size_t>(doc.capture->capturedLine)];
                section.insert(section.begin() + doc.capture->capturedLine + 1, copies, point);
            }
        }
    } else {
        const PointList section = patch[static_cast<std::size_t>(doc.capture->capturedSection)];
        patch.insert(patch.begin() + doc.capture->capturedSection + 1, copies, section);
    }
    doc.retitle();
    doc.redraw();
}

// ---- Weeding and Cylinder -------------------------------------------------------------------------------------------

void Weeding(VelmoraDoc& doc) {
    const std::vector<bool> mask = doc.chosenMask();
    if (!curveCanBeEdited(doc)) {
        return;
    }
    doc.beginPatchCommand(Extent::Stays);
    const bool lines = !doc.capture->sectionCaptured;
    if (lines) {
        transposePatches(doc.patches, mask);
    }
    for (std::size_t k = 0; k < doc.patches.size(); ++k) {
        if (mask[k]) {
            weed(doc.patches[k]);
        }
    }
    if (lines) {
        transposePatches(doc.patches, mask);
    }
    if (doc.capture->pointCaptured) {
        doc.ExitPointRegime();
    }
    // Of two sections one is left, and that is no grid.
    doc.retitle();
    doc.redraw();
}

void Cylinder(VelmoraDoc& doc) {
    // Leaving the regimes forgets the address of the profile.
    const PointList profile = capturedCurvePoints(doc);
    if (profile.empty() || !doc.ui().ask(message::removeGeometry)) {
        return;
    }
    doc.keepForUndo();
    doc.structureKind = StructureKind::Structured;
    doc.fileKind = FileKind::Apt;
    leavePointAndCurves(doc);
    doc.emptyBlock();
    doc.showBlockOnly = false;
    doc.capture.forgetPatch();
    doc.patches.assign(1, revolved(profile));
    doc.checkRegularity(doc.patches);
    doc.modelFile.nameUntitled("apt");
    if (doc.status != idlePrompt) {
        showIdlePrompt(doc);
    }
    doc.updateBounds();
    doc.redraw();
}

} // namespace

std::span<const Command> sectionCommands() {
    using namespace rules;
    using enum MenuId;
    static const Command rows[] = {
        {.id = "line.scaling",
         .menuText = "&Scaling...",
         .statusText = "Scale the captured section or line",
         .run = &ScaleCurve,
         .off = noCurveOfGrid,
         .places = {{LineContext, 210}}},
        {.id = "line.move",
         .menuText = "&Move...",
         .statusText = "Move the captured section or line",
         .run = &MoveCurve,
         .off = noCurveOfGrid,
         .places = {{LineContext, 220}}},
        {.id = "line.flip",
         .menuText = "&Flip...",
         .statusText = "Reflect the captured section or line in a plane",
         .run = &FlipCurve,
         .off = noCurveOfGrid,
         .places = {{LineContext, 230}}},
        {.id = "line.symmetric",
         .menuText = "S&ymmetric...",
         .statusText = "Add the reflection in a plane to the captured section",
         .run = &SymmetricSection,
         .off = noSectionOrField,
         .places = {{LineContext, 240}}},
        {.id = "line.rotation",
         .menuText = "&Rotation...",
         .statusText = "Rotate the captured section or line about an axis",
         .run = &RotateCurve,
         .off = noCurveOfGrid,
         .places = {{LineContext, 250}}},
        {.id = "line.firstPoint",
         .menuText = "Firs&t point...",
         .statusText = "Renumber section and make current point the first",
         .run = &FirstPoint,
         .off = noCurveOfGridOrField,
         .places = {{LineContext, 310}}},
        {.id = "line.prescribe",
         .menuText = "Prescri&be...",
         .statusText = "Prescribe definite value to any coordinate of all the points from line",
         .run = &Prescribe,
         .off = noCurveOfGridOrField,
         .places = {{LineContext, 340}}},
        {.id = "line.delete",
         .menuText = "&Delete",
         .statusText = "Delete section from patch",
         .toolTip = "Delete section (line)",
         .icon = true,
         .run = &DeleteCurve,
         .off = noCurveOrField,
         .places = {{LineContext, 350}, {EditingBar, 220}}},
        {.id = "line.duplicate",
         .menuText = "Dup&licate...",
         .statusText = "Duplicate section for editing",
         .toolTip = "Duplicate section (line)",
         .icon = true,
         .run = &DuplicateCurve,
         .off = noCurveOrField,
         .places = {{LineContext, 360}, {EditingBar, 230}}},
        {.id = "line.weeding",
         .menuText = "&Weeding",
         .statusText = "Delete one-half ines (sections) from geometry",
         .run = &Weeding,
         .off = noCurveOrField,
         .places = {{LineContext, 370}}},
        {.id = "line.knife",
         .menuText = "&Knife",
         .statusText = "Halve the number of points in section",
         .run = &HalveSection,
         .off = noSectionOrField,
         .places = {{LineContext, 380}}},
        {.id = "line.cylinder",
         .menuText = "C&ylinder",
         .statusText = "Create cylinder using line as a generatrix",
         .run = &Cylinder,
         .off = [](Doc d) { return !d.capture->sectionCaptured || d.fieldMode; },
         .places = {{LineContext, 530}}},
        {.id = "buffer.merge",
         .menuText = "Buffer m&erge",
         .statusText = "Merge buffer to section",
         .run = &MergeBuffer,
         .off = [](Doc d) { return notStr(d) || !d.capture->sectionCaptured || bufferEmpty(d); },
         .places = {{LineContext, 450}}},
        {.id = "point.knifePart",
         .menuText = "&Knife part...",
         .statusText = "Delete all the points with numbers before or after the current one",
         .run = &KnifePart,
         .off = noPointOnSection,
         .places = {{PointContext, 440}}},
        {.id = "point.copyPart",
         .menuText = "Copy par&t...",
         .statusText = "Copy part of section with numbers before or after the current one to buffer",
         .run = &CopyPart,
         .off = noPointOnSection,
         .places = {{PointContext, 450}}},
        {.id = "point.pastePart",
         .menuText = "Paste part...",
         .statusText = "Add buffer to selected position",
         .run = &PastePart,
         .off = [](Doc d) { return noPointOnSection(d) || bufferEmpty(d); },
         .places = {{PointContext, 460}}},
        {.id = "point.reverseSection",
         .menuText = "First/Last in section",
         .statusText = "Change numeration of points",
         .run = &ReverseSection,
         .off = noPointOnSection,
         .places = {{PointContext, 470}}},
    };
    return rows;
}

} // namespace velmora
