#include "section_commands.h"

#include <algorithm>

#include "DialogValues.h"
#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "block_commands.h"
#include "capture_address.h"
#include "captured_curve.h"
#include "carried_values.h"
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

} // namespace

// ---- Move, Scaling, Flip, Rotation, Symmetric -----------------------------------------------------------------------

namespace {

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

} // namespace

void VelmoraDoc::MoveCurve() {
    if (curveCanBeEdited(*this) && showDialog(ui_, dialogs->move)) {
        transformCurve(*this, dialogs->move.map());
    }
}

void VelmoraDoc::ScaleCurve() {
    if (curveCanBeEdited(*this) && showDialog(ui_, dialogs->scaling)) {
        transformCurve(*this, dialogs->scaling.map());
    }
}

void VelmoraDoc::FlipCurve() {
    if (curveCanBeEdited(*this) && showDialog(ui_, dialogs->flip)) {
        transformCurve(*this, dialogs->flip.map());
    }
}

void VelmoraDoc::RotateCurve() {
    if (curveCanBeEdited(*this) && showDialog(ui_, dialogs->rotate)) {
        RotationAxis axis = dialogs->rotate.axis();
        transformCurve(*this, [&axis](const zVec<double>& point) { return rotatePoint(point, axis); });
        dialogs->rotate.takeEnd(axis);
    }
}

void VelmoraDoc::SymmetricSection() {
    if (!curveCanBeEdited(*this) || !showDialog(ui_, dialogs->symmetric)) {
        return;
    }
    beginPatchCommand(Extent::Stays);
    if (capture->sectionCaptured) {
        ui_.showMessage(message::aptMayBeViolated);
        PointList& section = *sectionAt(capture->capturedPatch, capture->capturedSection);
        section = withMirrorImage(section, dialogs->symmetric.chosen());
        retitle();
    }
    redraw();
}

// ---- First point ----------------------------------------------------------------------------------------------------

namespace {

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

} // namespace

void VelmoraDoc::FirstPoint() {
    if (!curveCanBeEdited(*this)) {
        return;
    }
    bool confirmed = false;
    editCurveAsSection(*this, [this, &confirmed](PointList& section) { confirmed = askForFirstPoint(*this, section); });
    if (!confirmed) {
        return;
    }
    beginPatchCommand(Extent::Stays);
    editCurveAsSection(
        *this, [this](PointList& section) { renumberSection(section, dialogs->firstPoint, capture->capturedPoint); });
    if (capture->pointCaptured) {
        // The number has not moved: it names another point now.
        capture.savePoint();
        followCapturedPoint(*this);
        capture.describePoint(true);
        ShowStatus(capture->pointContinueStatus);
    }
    redraw();
}

namespace {

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

} // namespace

void VelmoraDoc::HalveSection() {
    if (!capture->sectionCaptured || !curveIsThere(*this)) {
        return;
    }
    if (const auto removed = chooseSide(*this)) {
        beginPatchCommand(Extent::Stays);
        PointList& section = *sectionAt(capture->capturedPatch, capture->capturedSection);
        section = withoutHalf(section, *removed);
        keepCaptureInside(*this);
        followCapturedPoint(*this);
        retitle();
        redraw();
    }
}

void VelmoraDoc::KnifePart() {
    PointList* section = sectionOfCapturedPoint(*this);
    if (section == nullptr) {
        return;
    }
    if (const auto removed = chooseSide(*this)) {
        beginPatchCommand(Extent::Stays);
        if (PointList* const field = fieldOfSection(capture->capturedPatch, capture->capturedSection)) {
            *field = withoutSide(*field, capture->capturedPoint, *removed);
        }
        *section = withoutSide(*section, capture->capturedPoint, *removed);
        // The point at which was cut stays captured: of the points before it none is left to count.
        if (*removed == Side::Before) {
            capture.renumberPoint(capture->capturedPointSection, 0);
        }
        followCapturedPoint(*this);
        retitle();
        showCapturedPoint(*this);
        redraw();
    }
}

void VelmoraDoc::CopyPart() {
    const PointList* section = sectionOfCapturedPoint(*this);
    if (section == nullptr) {
        return;
    }
    if (const auto copied = chooseSide(*this)) {
        // Here the side is what is copied: the other one is left out.
        const Side leftOut = *copied == Side::Before ? Side::After : Side::Before;
        lineBuffer = withoutSide(*section, capture->capturedPoint, leftOut);
        lineBufferFull = true;
        showCapturedPoint(*this);
        redraw();
    }
}

namespace {

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

} // namespace

void VelmoraDoc::PastePart() {
    PointList* section = sectionOfCapturedPoint(*this);
    if (section == nullptr) {
        return;
    }
    if (const auto side = chooseSide(*this)) {
        beginPatchCommand(Extent::Stays);
        PointList* const field = fieldOfSection(capture->capturedPatch, capture->capturedSection);
        if (field != nullptr) {
            pasteValues(*section, *field, capture->capturedPoint, *side, lineBuffer);
        }
        *section = withSideReplaced(*section, capture->capturedPoint, *side, lineBuffer);
        if (*side == Side::Before) {
            // By one, however long the buffer is, as far as the section goes.
            capture.renumberPoint(capture->capturedPointSection,
                                  std::min(capture->capturedPoint + 1, countOf(*section) - 1));
        }
        retitle();
        redraw();
    }
}

void VelmoraDoc::ReverseSection() {
    PointList* section = sectionOfCapturedPoint(*this);
    if (section == nullptr) {
        return;
    }
    keepForGuard();
    if (PointList* const field = fieldOfSection(capture->capturedPatch, capture->capturedSection)) {
        std::reverse(field->begin(), field->end());
    }
    std::reverse(section->begin(), section->end());
    capture.renumberPoint(capture->capturedPointSection, countOf(*section) - capture->capturedPoint - 1);
    // No snapshot: the command chosen again takes it back. It is a change all the same, asked about before leaving.
    documentModified = true;
    retitle();
    redraw();
}

void VelmoraDoc::MergeBuffer() {
    if (!capture->sectionCaptured || !curveIsThere(*this)) {
        return;
    }
    beginPatchCommand(Extent::Stays);
    ui_.showMessage(message::aptMayBeViolated);
    PointList& section = *sectionAt(capture->capturedPatch, capture->capturedSection);
    if (PointList* const field = fieldOfSection(capture->capturedPatch, capture->capturedSection)) {
        field->resize(section.size() + lineBuffer.size()); // of points behind the last one nothing is known: 0
    }
    section.insert(section.end(), lineBuffer.begin(), lineBuffer.end());
    retitle();
    redraw();
}

void VelmoraDoc::Prescribe() {
    const CPrescribe& values = dialogs->prescribe;
    if (!curveIsThere(*this) || !showDialog(ui_, dialogs->prescribe)) {
        return;
    }
    PrescribedValues prescribed;
    prescribed.x = values.useX ? std::optional(values.x) : std::nullopt;
    prescribed.y = values.useY ? std::optional(values.y) : std::nullopt;
    prescribed.z = values.useZ ? std::optional(values.z) : std::nullopt;
    beginPatchCommand(Extent::Stays);
    PointList points = capturedCurvePoints(*this);
    for (zVec<double>& point : points) {
        prescribe(point, prescribed);
    }
    putCurvePoints(*this, points);
    retitle();
    redraw();
}

// ---- Delete and Duplicate -------------------------------------------------------------------------------------------

namespace {

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

} // namespace

void VelmoraDoc::DeleteCurve() {
    if (curveIsThere(*this)) {
        capture->sectionCaptured ? removeCapturedSection(*this) : removeCapturedLine(*this);
    }
}

void VelmoraDoc::DuplicateCurve() {
    if (!curveIsThere(*this)) {
        return;
    }
    const double points = static_cast<double>(capturedCurvePoints(*this).size());
    dialogs->duplicate.room = memoryRoom(bytesOfSection + points * bytesOfPoint);
    if (!showDialog(ui_, dialogs->duplicate)) {
        return;
    }
    const auto copies = static_cast<std::size_t>(dialogs->duplicate.duplicateCount - 1);
    if (copies < 1) {
        return;
    }
    beginPatchCommand(Extent::Stays);
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
    if (!curveCanBeEdited(*this)) {
        return;
    }
    beginPatchCommand(Extent::Stays);
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
    const PointList profile = capturedCurvePoints(*this);
    if (profile.empty() || !ui_.ask(message::removeGeometry)) {
        return;
    }
    keepForUndo();
    structureKind = StructureKind::Structured;
    fileKind = FileKind::Apt;
    leavePointAndCurves(*this);
    emptyBlock();
    showBlockOnly = false;
    capture.forgetPatch();
    patches.assign(1, revolved(profile));
    checkRegularity(patches);
    modelFile.nameUntitled("apt");
    if (status != idlePrompt) {
        showIdlePrompt(*this);
    }
    updateBounds();
    redraw();
}

} // namespace velmora
