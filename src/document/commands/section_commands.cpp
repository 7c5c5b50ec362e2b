#include <algorithm>

#include "VelmoraDoc.h"
#include "capture_address.h"
#include "messages.h"
#include "patch_order.h"

namespace velmora {

// The small tools for the captured section or line.

/// A section that is there, or a line of patches that can be transposed.
bool VelmoraDoc::curveCanBeEdited() {
    if (!curveIsThere() || capture->sectionCaptured) {
        return curveIsThere();
    }
    const std::vector<std::int32_t> chosen = chosenPatches();
    return std::all_of(chosen.begin(), chosen.end(), [this](std::int32_t patch) {
        return hasEqualSections(patches[static_cast<std::size_t>(patch)]);
    });
}

/// Hands the captured section to `edit`. A line becomes a section for as long as that takes; with a zBlock that does
/// not hold its patch, the section of the line's number is edited. `edit` keeps the number of a line's points.
void VelmoraDoc::editCurveAsSection(const std::function<void(PointList&)>& edit) {
    const bool line = !capture->sectionCaptured;
    if (line) {
        exchangeSectionsAndLines();
    }
    if (PointList* section = sectionAt(capture->capturedPatch, capture->capturedSection)) {
        edit(*section);
    }
    if (line) {
        exchangeSectionsAndLines();
    }
}

// ---- Move, Scaling, Flip, Rotation, Symmetric -----------------------------------------------------------------------

void VelmoraDoc::transformCurve(const PointMap& map) {
    beginPatchCommand(false);
    bool done = true;
    editCurveAsSection([&map, &done](PointList& section) { done = transformPoints(section, map); });
    if (!done) {
        ui_.showMessage(message::axisAbsent);
    }
    followCapturedPoint();
    redraw();
}

void VelmoraDoc::MoveCurve() {
    if (curveCanBeEdited() && showDialog(moveValues)) {
        transformCurve(moveValues.map());
    }
}

void VelmoraDoc::ScaleCurve() {
    if (curveCanBeEdited() && showDialog(scalingValues)) {
        transformCurve(scalingValues.map());
    }
}

void VelmoraDoc::FlipCurve() {
    if (curveCanBeEdited() && showDialog(flipValues)) {
        transformCurve(flipValues.map());
    }
}

void VelmoraDoc::RotateCurve() {
    if (curveCanBeEdited() && showDialog(rotateValues)) {
        RotationAxis axis = rotateValues.axis();
        transformCurve([&axis](const zVec<double>& point) { return rotatePoint(point, axis); });
        rotateValues.takeEnd(axis);
    }
}

void VelmoraDoc::SymmetricSection() {
    if (!curveCanBeEdited() || !showDialog(symmetricValues)) {
        return;
    }
    beginPatchCommand(false);
    if (capture->sectionCaptured) {
        ui_.showMessage(message::aptMayBeViolated);
        PointList& section = *sectionAt(capture->capturedPatch, capture->capturedSection);
        section = withMirrorImage(section, symmetricValues.chosen());
        retitle();
    }
    redraw();
}

// ---- First point ----------------------------------------------------------------------------------------------------

namespace {

/// Shows the dialog for the section, or the line turned to one, and renumbers it. False for Cancel.
bool renumberSection(VelmoraDoc& document, PointList& section) {
    CFirstPoint& values = document.firstPointValues;
    const std::int32_t first = document.capture->capturedPoint;
    values.pointInside = document.capture->pointCaptured && first > 0 && first < countOf(section) - 1;
    values.closed = isClosed(section);
    if (!document.showDialog(values)) {
        return false;
    }
    if (values.makeLoop && !section.empty()) {
        section.back() = section.front();
    }
    if (values.kind == 1) {
        std::reverse(section.begin(), section.end());
    } else {
        section = loopFrom(section, first, values.sortKind == 1);
    }
    return true;
}

} // namespace

void VelmoraDoc::FirstPoint() {
    if (!curveCanBeEdited()) {
        return;
    }
    beginPatchCommand(false);
    bool renumbered = false;
    editCurveAsSection([this, &renumbered](PointList& section) { renumbered = renumberSection(*this, section); });
    if (renumbered && capture->pointCaptured) {
        // The number has not moved: it names another point now.
        capture.savePoint();
        followCapturedPoint();
        capture.describePoint(true);
        ShowStatus(capture->pointContinueStatus);
    }
    redraw();
}

void VelmoraDoc::showCapturedPoint() {
    capture.describePoint(false);
    ShowStatus(capture->pointContinueStatus);
}

// ---- Parts of a section ---------------------------------------------------------------------------------------------

/// The side of the last run, then what the user says. None for Cancel.
std::optional<Side> VelmoraDoc::chooseSide() {
    beforeAfterValues.choice = partBefore ? 1 : 2;
    if (!showDialog(beforeAfterValues)) {
        return std::nullopt;
    }
    partBefore = beforeAfterValues.choice == 1;
    partAfter = !partBefore;
    return partBefore ? Side::Before : Side::After;
}

/// The captured section, if the captured point is a point of it; else null.
PointList* VelmoraDoc::sectionOfCapturedPoint() {
    const bool there = structureKind == StructureKind::Structured && capture->sectionCaptured &&
                       capture->pointCaptured &&
                       pointAt(capture->capturedPatch, capture->capturedSection, capture->capturedPoint) != nullptr;
    return there ? sectionAt(capture->capturedPatch, capture->capturedSection) : nullptr;
}

void VelmoraDoc::HalveSection() {
    if (!capture->sectionCaptured || !curveIsThere()) {
        return;
    }
    beginPatchCommand(false);
    if (const auto removed = chooseSide()) {
        PointList& section = *sectionAt(capture->capturedPatch, capture->capturedSection);
        section = withoutHalf(section, *removed);
        keepCaptureInside(*this);
        followCapturedPoint();
        retitle();
        redraw();
    }
}

void VelmoraDoc::KnifePart() {
    PointList* section = sectionOfCapturedPoint();
    if (section == nullptr) {
        return;
    }
    beginPatchCommand(false);
    if (const auto removed = chooseSide()) {
        // The number stays, and now means another point or none; the position stays too.
        *section = withoutSide(*section, capture->capturedPoint, *removed);
        retitle();
        showCapturedPoint();
        redraw();
    }
}

void VelmoraDoc::CopyPart() {
    const PointList* section = sectionOfCapturedPoint();
    if (section == nullptr) {
        return;
    }
    if (const auto copied = chooseSide()) {
        // Here the side is what is copied: the other one is left out.
        const Side leftOut = *copied == Side::Before ? Side::After : Side::Before;
        lineBuffer = withoutSide(*section, capture->capturedPoint, leftOut);
        lineBufferFull = true;
        showCapturedPoint();
        redraw();
    }
}

void VelmoraDoc::PastePart() {
    PointList* section = sectionOfCapturedPoint();
    if (section == nullptr) {
        return;
    }
    beginPatchCommand(false);
    if (const auto replaced = chooseSide()) {
        *section = withSideReplaced(*section, capture->capturedPoint, *replaced, lineBuffer);
        if (*replaced == Side::Before) {
            capture.renumberPoint(capture->capturedPointSection,
                                  capture->capturedPoint + 1); // by one, however long the buffer is
        }
        retitle();
        redraw();
    }
}

void VelmoraDoc::ReverseSection() {
    PointList* section = sectionOfCapturedPoint();
    if (section == nullptr) {
        return;
    }
    keepForGuard();
    std::reverse(section->begin(), section->end());
    capture.renumberPoint(capture->capturedPointSection, countOf(*section) - capture->capturedPoint - 1);
    // No snapshot: the command chosen again takes it back. It is a change all the same, asked about before leaving.
    documentModified = true;
    retitle();
    redraw();
}

void VelmoraDoc::MergeBuffer() {
    if (!capture->sectionCaptured || !curveIsThere()) {
        return;
    }
    beginPatchCommand(false);
    ui_.showMessage(message::aptMayBeViolated);
    PointList& section = *sectionAt(capture->capturedPatch, capture->capturedSection);
    section.insert(section.end(), lineBuffer.begin(), lineBuffer.end());
    retitle();
    redraw();
}

void VelmoraDoc::Prescribe() {
    const CPrescribe& values = prescribeValues;
    if (!curveIsThere() || !showDialog(prescribeValues)) {
        return;
    }
    PrescribedValues prescribed;
    prescribed.x = values.useX ? std::optional(values.x) : std::nullopt;
    prescribed.y = values.useY ? std::optional(values.y) : std::nullopt;
    prescribed.z = values.useZ ? std::optional(values.z) : std::nullopt;
    beginPatchCommand(false);
    PointList points = capturedCurvePoints();
    for (zVec<double>& point : points) {
        prescribe(point, prescribed);
    }
    putCurvePoints(points);
    retitle();
    redraw();
}

// ---- Delete and Duplicate -------------------------------------------------------------------------------------------

void VelmoraDoc::DeleteCurve() {
    if (curveIsThere()) {
        capture->sectionCaptured ? removeCapturedSection() : removeCapturedLine();
    }
}

void VelmoraDoc::removeCapturedSection() {
    beginPatchCommand(false);
    Patch& patch = patches[static_cast<std::size_t>(capture->capturedPatch)];
    if (patch.size() < 3 && fileKind == FileKind::Apt) {
        ui_.showMessage(message::twoSectionsStay);
        ExitLineRegime();
        return;
    }
    patch.erase(patch.begin() + capture->capturedSection);
    if (patch.empty()) {
        const std::int32_t emptied = capture->capturedPatch;
        // The patch regime goes with the last patch.
        ExitLineRegime();
        takePatchOut(emptied);
    } else {
        keepCaptureInside(*this);
        followCapturedPoint();
    }
    retitle();
    if (structureKind == StructureKind::None && status != idlePrompt) {
        showIdlePrompt();
    }
    redraw();
}

void VelmoraDoc::removeCapturedLine() {
    beginPatchCommand(false);
    Patch& patch = patches[static_cast<std::size_t>(capture->capturedPatch)];
    if (lineCount(patch) < 3) {
        ui_.showMessage(message::twoLinesStay);
        ExitLineRegime();
        return;
    }
    for (PointList& section : patch) {
        if (capture->capturedLine < countOf(section)) {
            section.erase(section.begin() + capture->capturedLine);
        }
    }
    keepCaptureInside(*this);
    followCapturedPoint();
    retitle();
    redraw();
}

void VelmoraDoc::DuplicateCurve() {
    if (!curveIsThere() || !showDialog(duplicateValues)) {
        return;
    }
    const auto copies = static_cast<std::size_t>(duplicateValues.duplicateCount - 1);
    if (copies < 1) {
        return;
    }
    beginPatchCommand(false);
    Patch& patch = patches[static_cast<std::size_t>(capture->capturedPatch)];
    if (!capture->sectionCaptured) {
        for (PointList& section : patch) {
            if (capture->capturedLine < countOf(section)) {
                const zVec<double> point = section[static_cast<std::size_t>(capture->capturedLine)];
                section.insert(section.begin() + capture->capturedLine + 1, copies, point);
            }
        }
    } else {
        const PointList section = patch[static_cast<std::size_t>(capture->capturedSection)];
        patch.insert(patch.begin() + capture->capturedSection + 1, copies, section);
    }
    retitle();
    redraw();
}

// ---- Weeding and Cylinder -------------------------------------------------------------------------------------------

void VelmoraDoc::Weeding() {
    const std::vector<bool> mask = chosenMask();
    if (!curveCanBeEdited()) {
        return;
    }
    beginPatchCommand(false);
    const bool lines = !capture->sectionCaptured;
    if (lines) {
        transposePatches(patches, mask);
    }
    for (std::size_t k = 0; k < patches.size(); ++k) {
        if (mask[k]) {
            weed(patches[k]);
        }
    }
    if (lines) {
        transposePatches(patches, mask);
    }
    if (capture->pointCaptured) {
        ExitPointRegime();
    }
    // Of two sections one is left, and that is no grid.
    retitle();
    redraw();
}

void VelmoraDoc::Cylinder() {
    // Leaving the regimes forgets the address of the profile.
    const PointList profile = capturedCurvePoints();
    if (profile.empty() || !ui_.ask(message::removeGeometry)) {
        return;
    }
    keepForUndo();
    structureKind = StructureKind::Structured;
    fileKind = FileKind::Apt;
    leavePointAndCurves();
    emptyBlock();
    showBlockOnly = false;
    capture.forgetPatch();
    patches.assign(1, revolved(profile));
    checkRegularity(patches);
    modelFile.nameUntitled("apt");
    if (status != idlePrompt) {
        showIdlePrompt();
    }
    updateBounds();
    redraw();
}

} // namespace velmora
