#include "Capture.h"

#include <array>
#include <utility>

#include "status_texts.h"

namespace velmora {

namespace {

constexpr const char* findPatchPrompt = "Find patch and click it";

bool holds(const std::string& text, const char* words) {
    return text.find(words) != std::string::npos;
}

using Event = CaptureEvent;
using Move = CaptureMove;

constexpr CaptureFlags armedFlags = PointArmed | FreePointArmed | PatchArmed | SectionArmed | LineArmed;
constexpr CaptureFlags pointFlags = PointArmed | PointHeld | FreePointArmed | FreePointHeld;
constexpr CaptureFlags curveFlags = SectionArmed | SectionHeld | LineArmed | LineHeld;
constexpr CaptureFlags otherFlags = Dragging | Removing | Correcting | Picked;
constexpr CaptureFlags allFlags = pointFlags | curveFlags | PatchArmed | PatchHeld | otherFlags;
constexpr CaptureNumbers capturedNumbers = PatchNumber | PointSectionNumber | PointNumber | SectionNumber | LineNumber;

// A click beside the geometry leaves everything armed: no row of a release fits. A point is looked for inside the
// section or line that is captured, so their patch stays.
constexpr Move allMoves[] = {
    {Event::ArmPoint, NoFlags, Move::Nothing, PointArmed,
     PointHeld | FreePointArmed | FreePointHeld | PatchArmed | SectionArmed | LineArmed | Removing | Picked,
     PointNumber},
    {Event::ArmPoint, NoFlags, Move::NoCurveNumber, NoFlags, NoFlags, PatchNumber},
    {Event::ArmFreePoint, NoFlags, Move::Nothing, FreePointArmed,
     FreePointHeld | PatchArmed | SectionArmed | LineArmed | Removing, PointNumber},
    {Event::ArmFreePoint, NoFlags, Move::NoCurveNumber, NoFlags, NoFlags, PatchNumber},
    {Event::ArmSection, NoFlags, Move::Nothing, SectionArmed,
     PointArmed | FreePointArmed | PatchArmed | Removing | SectionHeld | LineArmed | LineHeld,
     SectionNumber | PatchNumber},
    {Event::ArmLine, NoFlags, Move::Nothing, LineArmed,
     PointArmed | FreePointArmed | PatchArmed | Removing | LineHeld | SectionArmed | SectionHeld,
     LineNumber | PatchNumber},
    {Event::ArmPatch, NoFlags, Move::Nothing, PatchArmed, PatchHeld | Removing, PatchNumber},
    {Event::ArmRemoval, NoFlags, Move::Nothing, Removing, NoFlags, NoNumbers},
    {Event::ArmDrag, NoFlags, Move::Nothing, Dragging, NoFlags, NoNumbers},
    {Event::ArmCorrection, NoFlags, Move::Nothing, Correcting, NoFlags, NoNumbers},

    {Event::HoldPoint, NoFlags, Move::Nothing, PointHeld | Picked, PointArmed, NoNumbers},
    {Event::KeepPoint, NoFlags, Move::Nothing, PointHeld, PointArmed, NoNumbers},
    {Event::HoldSection, NoFlags, Move::Nothing, SectionHeld, armedFlags | Removing | LineHeld, NoNumbers},
    {Event::HoldLine, NoFlags, Move::Nothing, LineHeld, armedFlags | Removing | SectionHeld, NoNumbers},
    {Event::HoldPatch, NoFlags, Move::Nothing, PatchHeld, PatchArmed | Removing, NoNumbers},

    {Event::DisarmForPatch, NoFlags, Move::Nothing, NoFlags, PointArmed | FreePointArmed | SectionArmed | LineArmed,
     NoNumbers},
    {Event::DisarmForPatchNumber, NoFlags, Move::Nothing, NoFlags, PointArmed | SectionArmed, NoNumbers},
    {Event::DisarmForRemoval, PatchArmed, Move::Nothing, PatchHeld, PatchArmed, NoNumbers},

    {Event::ReleasePoint, PointArmed, Move::PointFound, PointHeld, PointArmed, NoNumbers},
    {Event::ReleaseFreePoint, FreePointArmed, Move::PointFound, FreePointHeld, FreePointArmed, NoNumbers},
    {Event::ReleaseDrag, Dragging, Move::Nothing, NoFlags, Dragging, NoNumbers},
    {Event::ReleasePatch, PatchArmed, Move::Nothing, PatchHeld, PatchArmed, NoNumbers},
    {Event::ReleaseRemoval, Removing, Move::Nothing, NoFlags, Removing, NoNumbers},
    {Event::ReleaseSection, SectionArmed, Move::SectionFound, SectionHeld, SectionArmed, NoNumbers},
    {Event::ReleaseLine, LineArmed, Move::LineFound, LineHeld, LineArmed, NoNumbers},
    {Event::ReleaseCorrection, Correcting, Move::Nothing, NoFlags, Correcting, NoNumbers},

    {Event::LeavePoint, NoFlags, Move::Nothing, NoFlags, pointFlags | Dragging | Correcting | Picked, NoNumbers},
    {Event::LeavePoint, NoFlags, Move::NoCurveNumber, NoFlags, NoFlags, PatchNumber},
    {Event::LeaveCurve, SectionArmed | SectionHeld, Move::Nothing, NoFlags, SectionArmed | SectionHeld, SectionNumber},
    {Event::LeaveCurve, LineArmed | LineHeld, Move::Nothing, NoFlags, LineArmed | LineHeld, LineNumber},
    {Event::LeaveCurve, NoFlags, Move::Nothing, NoFlags, Picked, PatchNumber},
    {Event::LeavePatch, NoFlags, Move::Nothing, NoFlags, PatchArmed | PatchHeld | Removing | Picked, NoNumbers},

    {Event::ShowPoint, NoFlags, Move::Nothing, Picked, NoFlags, NoNumbers},
    {Event::DropPoint, NoFlags, Move::Nothing, NoFlags, PointHeld | Picked, PointNumber},
    {Event::LosePoint, NoFlags, Move::Nothing, NoFlags, NoFlags, PointSectionNumber | PointNumber},
    {Event::LosePoint, NoFlags, Move::NothingHeld, NoFlags, NoFlags, PatchNumber},
    {Event::DropPatches, NoFlags, Move::Nothing, NoFlags, PatchArmed | PatchHeld | Removing, PatchNumber},
    {Event::ForgetPatch, NoFlags, Move::Nothing, NoFlags, NoFlags, PatchNumber},
    {Event::ForgetNumbers, NoFlags, Move::Nothing, NoFlags, NoFlags, capturedNumbers},
    {Event::ForgetSaved, NoFlags, Move::Nothing, NoFlags, NoFlags, SavedNumbers},
    {Event::ForgetAll, NoFlags, Move::Nothing, NoFlags, allFlags, capturedNumbers | RemovalNumber | SavedNumbers},
};

struct FlagField {
    CaptureFlags flag;
    bool CaptureState::*field;
};

constexpr std::array<FlagField, 14> flagFields{{{PointArmed, &CaptureState::pointCaptureArmed},
                                                {PointHeld, &CaptureState::pointCaptured},
                                                {FreePointArmed, &CaptureState::freePointArmed},
                                                {FreePointHeld, &CaptureState::freePointHeld},
                                                {PatchArmed, &CaptureState::patchCaptureArmed},
                                                {PatchHeld, &CaptureState::patchCaptured},
                                                {SectionArmed, &CaptureState::sectionCaptureArmed},
                                                {SectionHeld, &CaptureState::sectionCaptured},
                                                {LineArmed, &CaptureState::lineCaptureArmed},
                                                {LineHeld, &CaptureState::lineCaptured},
                                                {Dragging, &CaptureState::pointDragging},
                                                {Removing, &CaptureState::patchRemoving},
                                                {Correcting, &CaptureState::dragCorrectsLine},
                                                {Picked, &CaptureState::pointPicked}}};

struct NumberField {
    CaptureNumbers number;
    std::int32_t CaptureState::*field;
};

constexpr std::array<NumberField, 11> numberFields{{{PatchNumber, &CaptureState::capturedPatch},
                                                    {PointSectionNumber, &CaptureState::capturedPointSection},
                                                    {PointNumber, &CaptureState::capturedPoint},
                                                    {SectionNumber, &CaptureState::capturedSection},
                                                    {LineNumber, &CaptureState::capturedLine},
                                                    {RemovalNumber, &CaptureState::patchToRemove},
                                                    {SavedNumbers, &CaptureState::savedPatch},
                                                    {SavedNumbers, &CaptureState::savedPointSection},
                                                    {SavedNumbers, &CaptureState::savedPoint},
                                                    {SavedNumbers, &CaptureState::savedSection},
                                                    {SavedNumbers, &CaptureState::savedLine}}};

} // namespace

// ---- Transitions ----------------------------------------------------------------------------------------------------

std::span<const CaptureMove> Capture::moves() {
    return allMoves;
}

bool Capture::fits(const CaptureMove& move) const {
    bool from = move.from == NoFlags;
    for (const FlagField& known : flagFields) {
        from = from || ((move.from & known.flag) != 0 && state_.*known.field);
    }
    switch (move.needs) {
    case CaptureMove::Nothing:
        return from;
    case CaptureMove::PointFound:
        return from && state_.pointPicked;
    case CaptureMove::SectionFound:
        return from && state_.capturedSection >= 0;
    case CaptureMove::LineFound:
        return from && state_.capturedLine >= 0;
    case CaptureMove::NoCurveNumber:
        return from && state_.capturedSection < 0 && state_.capturedLine < 0;
    case CaptureMove::NothingHeld:
        return from && !state_.patchCaptured && !state_.curveHeld();
    }
    return false;
}

void Capture::apply(CaptureEvent event) {
    for (const CaptureMove& move : allMoves) {
        if (move.event != event || !fits(move)) {
            continue;
        }
        for (const FlagField& known : flagFields) {
            bool& flag = state_.*known.field;
            flag = (flag && (move.clears & known.flag) == 0) || (move.to & known.flag) != 0;
        }
        for (const NumberField& known : numberFields) {
            if ((move.forgets & known.number) != 0) {
                state_.*known.field = -1;
            }
        }
    }
}

// ---- Regimes --------------------------------------------------------------------------------------------------------

void Capture::armForPoint(CaptureEvent event) {
    apply(event);
    state_.pointStatus = state_.dragPrompt;
}

void Capture::armSection() {
    apply(CaptureEvent::ArmSection);
    state_.sectionStatus = state_.dragPrompt;
}

void Capture::armLine() {
    apply(CaptureEvent::ArmLine);
    state_.lineStatus = state_.dragPrompt;
}

void Capture::armPatch() {
    apply(CaptureEvent::ArmPatch);
    state_.patchStatus = findPatchPrompt;
}

void Capture::disarmForRemoval() {
    apply(CaptureEvent::DisarmForRemoval);
    state_.removeStatus = findPatchPrompt;
}

void Capture::armDrag() {
    apply(CaptureEvent::ArmDrag);
    state_.dragStatus = state_.dragPrompt;
}

void Capture::holdPoint(std::int32_t patch, std::int32_t section, std::int32_t point, const zVec<double>& position) {
    apply(CaptureEvent::HoldPoint);
    state_.capturedPatch = patch;
    renumberPoint(section, point);
    placePoint(position);
}

void Capture::holdSection(std::int32_t patch, std::int32_t section, std::int32_t points) {
    apply(CaptureEvent::HoldSection);
    state_.capturedPatch = patch;
    state_.capturedSection = section;
    if (section >= 0) {
        state_.sectionStatus = capturedSectionText(patch, section, points);
        state_.sectionContinueStatus = state_.sectionStatus + curveContinueClause;
    }
}

void Capture::holdLine(std::int32_t patch, std::int32_t line) {
    apply(CaptureEvent::HoldLine);
    state_.capturedPatch = patch;
    state_.capturedLine = line;
    if (line >= 0) {
        state_.lineContinueStatus = inputtedLineText(patch, line);
    }
}

void Capture::holdPatch(std::int32_t patch, bool joins) {
    apply(CaptureEvent::HoldPatch);
    state_.capturedPatch = patch;
    if (joins) {
        state_.blockStatus = capturedPatchText(patch);
    }
}

void Capture::leavePatch(bool blockEmpty) {
    apply(CaptureEvent::LeavePatch);
    if (blockEmpty) {
        state_.removeStatus = "Choose any item from menu to continue";
    }
}

// ---- The mouse ------------------------------------------------------------------------------------------------------

void Capture::take(const Pick& pick) {
    switch (pick.target) {
    case Pick::Target::Point:
    case Pick::Target::Node:
        takePoint(pick);
        break;
    case Pick::Target::Section:
        takeSection(pick);
        break;
    case Pick::Target::Line:
        takeLine(pick);
        break;
    case Pick::Target::WholePatch:
        state_.capturedPatch = pick.patch;
        if (pick.found) {
            state_.patchStatus = capturedPatchText(pick.patch);
        }
        break;
    case Pick::Target::Removal:
        state_.patchToRemove = pick.patch;
        break;
    case Pick::Target::DragPlace:
        if (pick.found) {
            placePoint(pick.position);
            state_.dragStatus = "Drag point: X=" + fixedText(pick.position.x) + ", Y=" + fixedText(pick.position.y) +
                                ", Z=" + fixedText(pick.position.z) + " ";
        }
        break;
    case Pick::Target::PlanePlace:
        if (pick.found) {
            placePoint(pick.position);
            describePickedPoint();
        }
        break;
    }
}

/// The numbers of the nearest stay where it is too far away, though not its patch.
void Capture::takePoint(const Pick& pick) {
    state_.pointPicked = false;
    if (pick.target == Pick::Target::Node) {
        state_.capturedPoint = pick.point;
    } else if (pick.patch >= 0) {
        renumberPoint(pick.section, pick.point);
    }
    if (pick.found) {
        state_.capturedPatch = pick.patch;
        placePoint(pick.position);
        describePickedPoint();
        state_.pointPicked = true;
    }
}

/// The patch of the nearest point stays, found or not.
void Capture::takeSection(const Pick& pick) {
    state_.capturedSection = pick.found ? pick.section : -1;
    if (pick.patch >= 0) {
        state_.capturedPatch = pick.patch;
    }
    if (pick.found) {
        state_.sectionStatus = capturedSectionText(pick.patch, pick.section, pick.points);
        state_.sectionContinueStatus = state_.sectionStatus + curveContinueClause;
    }
}

/// As for a section, but a line that was not found leaves the one before.
void Capture::takeLine(const Pick& pick) {
    state_.capturedPointSection = -1;
    if (pick.patch >= 0) {
        state_.capturedPatch = pick.patch;
    }
    if (pick.found) {
        state_.capturedLine = pick.point;
        state_.lineStatus = capturedLineText(pick.patch, pick.point, pick.points);
        state_.lineContinueStatus = state_.lineStatus + pointContinueClause;
    }
}

void Capture::passBy(std::int32_t patch, std::int32_t section, std::int32_t point) {
    state_.capturedPatch = patch;
    renumberPoint(section, point);
    if (state_.pointCaptureArmed || state_.freePointArmed) {
        state_.pointPicked = false;
    }
}

bool Capture::releasePoint() {
    apply(CaptureEvent::ReleasePoint);
    return !state_.pointCaptureArmed;
}

bool Capture::releaseFreePoint() {
    apply(CaptureEvent::ReleaseFreePoint);
    return !state_.freePointArmed;
}

bool Capture::releaseSection() {
    apply(CaptureEvent::ReleaseSection);
    return !state_.sectionCaptureArmed;
}

bool Capture::releaseLine() {
    apply(CaptureEvent::ReleaseLine);
    return !state_.lineCaptureArmed;
}

void Capture::releaseRemoval() {
    apply(CaptureEvent::ReleaseRemoval);
    state_.removeStatus = state_.continuePrompt;
}

void Capture::releaseDrag() {
    apply(CaptureEvent::ReleaseDrag);
    namePointByCurve();
}

// ---- What commands change -------------------------------------------------------------------------------------------

void Capture::placePoint(const zVec<double>& position) {
    state_.pickedPoint = state_.capturedPointPos = position;
}

void Capture::renumberPoint(std::int32_t section, std::int32_t point) {
    state_.capturedPointSection = section;
    state_.capturedPoint = point;
}

void Capture::exchangePointNumbers() {
    std::swap(state_.capturedPoint, state_.capturedPointSection);
}

void Capture::exchangeSectionAndLine() {
    if (state_.curveHeld()) {
        const bool wasSection = std::exchange(state_.sectionCaptured, !state_.sectionCaptured);
        state_.lineCaptured = wasSection;
        (wasSection ? state_.capturedLine : state_.capturedSection) =
            std::exchange(wasSection ? state_.capturedSection : state_.capturedLine, -1);
        if (wasSection) { // it names the count of its points too, which is filled in with the next picture
            state_.lineContinueStatus =
                capturedLineText(state_.capturedPatch, state_.capturedLine, 0) + pointContinueClause;
        }
    }
}

void Capture::savePoint() {
    state_.savedPatch = state_.capturedPatch;
    state_.savedPointSection = state_.capturedPointSection;
    state_.savedPoint = state_.capturedPoint;
}

void Capture::saveCurve() {
    state_.savedSection = state_.capturedSection;
    state_.savedLine = state_.capturedLine;
}

void Capture::restorePoint() {
    state_.capturedPatch = state_.savedPatch;
    renumberPoint(state_.savedPointSection, state_.savedPoint);
    if (state_.savedLine >= 0) {
        state_.capturedLine = state_.savedLine;
    }
    if (state_.savedSection >= 0) {
        state_.capturedSection = state_.savedSection;
    }
    apply(CaptureEvent::ForgetSaved);
}

void Capture::returnToSaved(const CaptureState& before) {
    state_.savedPatch = before.savedPatch;
    state_.savedPointSection = before.savedPointSection;
    state_.savedPoint = before.savedPoint;
    state_.savedSection = before.savedSection;
    state_.savedLine = before.savedLine;
}

void Capture::returnToPoint(const CaptureState& before) {
    state_.pointPicked = before.pointPicked;
    state_.capturedPatch = before.capturedPatch;
    renumberPoint(before.capturedPointSection, before.capturedPoint);
}

// ---- Status texts ---------------------------------------------------------------------------------------------------

void Capture::describePoint(bool curveForm) {
    const CaptureState& s = state_;
    state_.pointStatus =
        capturedPointText(false, {s.capturedPatch, s.capturedPointSection, s.capturedPoint}, s.pickedPoint);
    state_.pointContinueStatus = s.pointStatus + pointContinueClause;
    if (curveForm) {
        namePointByCurve();
    }
}

void Capture::namePointByCurve() {
    const CaptureState& s = state_;
    if (s.lineCaptured) {
        state_.pointContinueStatus =
            capturedPointText(true, {s.capturedPatch, s.capturedPoint, s.capturedPointSection}, s.pickedPoint) +
            pointContinueClause;
    }
    if (s.sectionCaptured) {
        state_.pointContinueStatus =
            capturedPointText(false, {s.capturedPatch, s.capturedSection, s.capturedPoint}, s.pickedPoint) +
            pointContinueClause;
    }
}

void Capture::refill(const Numbers& numbers) {
    CaptureState& s = state_;
    if (s.sectionCaptured && numbers.sectionPoints) {
        s.sectionStatus = capturedSectionText(s.capturedPatch, s.capturedSection, *numbers.sectionPoints);
        s.sectionContinueStatus = s.sectionStatus + curveContinueClause;
    }
    if (s.lineCaptured && numbers.linePoints) {
        const bool counts = holds(s.lineContinueStatus, ", Points M=");
        s.lineStatus = capturedLineText(s.capturedPatch, s.capturedLine, *numbers.linePoints);
        s.lineContinueStatus =
            counts ? s.lineStatus + pointContinueClause : inputtedLineText(s.capturedPatch, s.capturedLine);
    }
    if (s.pointHeld() && numbers.position) {
        for (std::string* text : {&s.pointStatus, &s.pointContinueStatus}) {
            if (!holds(*text, "Captured point:")) {
                continue;
            }
            const bool line = holds(*text, ", Line N=");
            const bool goesOn = holds(*text, pointContinueClause);
            const std::int32_t curve = line ? s.capturedPoint : s.capturedPointSection;
            const std::int32_t point = line ? s.capturedPointSection : s.capturedPoint;
            *text = capturedPointText(line, {s.capturedPatch, curve, point}, *numbers.position);
            *text += goesOn ? pointContinueClause : "";
        }
    }
    if (numbers.blockPatch) {
        s.blockStatus = capturedPatchText(*numbers.blockPatch);
    }
}

/// Both texts of a point under the mouse name it by the line that is captured.
void Capture::describePickedPoint() {
    describePoint(false);
    if (state_.lineCaptured) {
        state_.pointStatus = capturedPointText(
            true, {state_.capturedPatch, state_.capturedPoint, state_.capturedPointSection}, state_.pickedPoint);
        state_.pointContinueStatus = state_.pointStatus + pointContinueClause;
    }
}

} // namespace velmora
