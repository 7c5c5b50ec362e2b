#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "Pick.h"

namespace velmora {

/// What the user holds or is about to take with the mouse, the place of it in the model, and the status texts that
/// tell of it. Numbers count from 0, -1 for none.
struct CaptureState {
    // A regime is a pair: armed waits for the click, captured has its target.
    bool pointCaptureArmed = false;
    bool pointCaptured = false;
    bool freePointArmed = false;
    bool freePointHeld = false;
    bool patchCaptureArmed = false;
    bool patchCaptured = false;
    bool sectionCaptureArmed = false;
    bool sectionCaptured = false;
    bool lineCaptureArmed = false;
    bool lineCaptured = false;
    bool pointDragging = false;    ///< the captured point follows the mouse
    bool patchRemoving = false;    ///< the next click takes a patch out of the zBlock
    bool dragCorrectsLine = false; ///< the next drag bends the captured curve
    bool pointPicked = false;      ///< the last pick found something: capturedPointPos is drawn

    std::int32_t capturedPatch = -1;
    std::int32_t capturedPointSection = -1;
    std::int32_t capturedPoint = -1;
    std::int32_t capturedSection = -1;
    std::int32_t capturedLine = -1;
    std::int32_t savedPatch = -1; ///< the same five, to go back to after Undo point
    std::int32_t savedPointSection = -1;
    std::int32_t savedPoint = -1;
    std::int32_t savedSection = -1;
    std::int32_t savedLine = -1;
    std::int32_t patchToRemove = -1;

    zVec<double> pickedPoint;      ///< the point found by the last pick
    zVec<double> capturedPointPos; ///< where the captured point stands

    // Status texts that a later command shows again.
    std::string continuePrompt = "Press right button to continue";
    std::string dragPrompt = "Press left button of mouse and drag it";
    std::string pointStatus;
    std::string pointContinueStatus;
    std::string dragStatus;
    std::string patchStatus;
    std::string blockStatus;
    std::string removeStatus;
    std::string undoStatus;
    std::string sectionStatus;
    std::string sectionContinueStatus;
    std::string lineStatus;
    std::string lineContinueStatus;

    bool pointHeld() const { return pointCaptured || freePointHeld; }
    /// Whether this text of the status line is the one of the captured point.
    bool tellsOfPoint(const std::string& status) const {
        return !status.empty() && (status == pointStatus || status == pointContinueStatus);
    }
    bool curveHeld() const { return sectionCaptured || lineCaptured; }
    bool pointRegimeActive() const { return pointCaptureArmed || freePointArmed || pointHeld(); }
    bool curveRegimeActive() const { return sectionCaptureArmed || lineCaptureArmed || curveHeld(); }
    bool patchRegimeActive() const { return patchCaptureArmed || patchCaptured; }
};

/// A set of the flags of CaptureState.
enum CaptureFlags : std::uint16_t {
    NoFlags = 0,
    PointArmed = 1U << 0U,
    PointHeld = 1U << 1U,
    FreePointArmed = 1U << 2U,
    FreePointHeld = 1U << 3U,
    PatchArmed = 1U << 4U,
    PatchHeld = 1U << 5U,
    SectionArmed = 1U << 6U,
    SectionHeld = 1U << 7U,
    LineArmed = 1U << 8U,
    LineHeld = 1U << 9U,
    Dragging = 1U << 10U,
    Removing = 1U << 11U,
    Correcting = 1U << 12U,
    Picked = 1U << 13U,
};
constexpr CaptureFlags operator|(CaptureFlags a, CaptureFlags b) {
    return static_cast<CaptureFlags>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}

/// A set of the captured numbers.
enum CaptureNumbers : std::uint8_t {
    NoNumbers = 0,
    PatchNumber = 1U << 0U,
    PointSectionNumber = 1U << 1U,
    PointNumber = 1U << 2U,
    SectionNumber = 1U << 3U,
    LineNumber = 1U << 4U,
    RemovalNumber = 1U << 5U,
    SavedNumbers = 1U << 6U,
};
constexpr CaptureNumbers operator|(CaptureNumbers a, CaptureNumbers b) {
    return static_cast<CaptureNumbers>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}

/// What can happen to the capture.
enum class CaptureEvent : std::uint16_t {
    // Commands arm a regime: its click is waited for.
    ArmPoint,
    ArmFreePoint,
    ArmSection,
    ArmLine,
    ArmPatch,
    ArmRemoval,
    ArmDrag,
    ArmCorrection,
    // A target named by number, or kept by a command, needs no click.
    HoldPoint,
    KeepPoint,
    HoldSection,
    HoldLine,
    HoldPatch,
    // What waits for a click beside the patch regime waits no more.
    DisarmForPatch,
    DisarmForPatchNumber,
    DisarmForRemoval,
    // The left button comes up.
    ReleasePoint,
    ReleaseFreePoint,
    ReleaseDrag,
    ReleasePatch,
    ReleaseRemoval,
    ReleaseSection,
    ReleaseLine,
    ReleaseCorrection,
    // A regime ends.
    LeavePoint,
    LeaveCurve,
    LeavePatch,
    // What was captured is gone, or is there again.
    ShowPoint,
    DropPoint,
    LosePoint,
    DropPatches,
    ForgetPatch,
    ForgetNumbers,
    ForgetSaved,
    ForgetAll,
};

/// One row of the transitions: on `event`, with one of the flags `from` set (any state without a flag) and with what
/// it needs, the flags `clears` go off, those of `to` on, and the numbers `forgets` become -1.
struct CaptureMove {
    enum Need : std::uint16_t { Nothing, PointFound, SectionFound, LineFound, NoCurveNumber, NothingHeld };

    CaptureEvent event;
    CaptureFlags from;
    Need needs;
    CaptureFlags to;
    CaptureFlags clears;
    CaptureNumbers forgets;
};

/// The one owner of what is captured: everybody reads it by `->`, only the methods here write it. Which flags and
/// numbers an event changes stands in one table, moves().
class Capture {
public:
    const CaptureState* operator->() const { return &state_; }
    const CaptureState& operator*() const { return state_; }

    /// Every row, those of one event one after the other: each that fits is carried out, in this order.
    static std::span<const CaptureMove> moves();

    // ---- Regimes ----------------------------------------------------------------------------------------------------

    void armPoint() { armForPoint(CaptureEvent::ArmPoint); }
    void armFreePoint() { armForPoint(CaptureEvent::ArmFreePoint); }
    void armSection();
    void armLine();
    void armPatch();
    void armRemoval() { apply(CaptureEvent::ArmRemoval); }
    /// The next click takes a patch out; where one was waited for to add, the zBlock is captured from here on.
    void disarmForRemoval();
    void armDrag();
    void armCorrection() { apply(CaptureEvent::ArmCorrection); }
    void disarmForPatch() { apply(CaptureEvent::DisarmForPatch); }
    void disarmForPatchNumber() { apply(CaptureEvent::DisarmForPatchNumber); }

    /// The captured point is the one of its number, whatever was armed.
    void keepPoint() { apply(CaptureEvent::KeepPoint); }
    void holdPoint(std::int32_t patch, std::int32_t section, std::int32_t point, const zVec<double>& position);
    /// `points` counts the points of the section.
    void holdSection(std::int32_t patch, std::int32_t section, std::int32_t points);
    void holdLine(std::int32_t patch, std::int32_t line);
    /// `joins`: the patch is new in the zBlock.
    void holdPatch(std::int32_t patch, bool joins);
    /// The patches of the zBlock are captured, as they are.
    void holdBlock() { apply(CaptureEvent::HoldPatch); }

    void leavePoint() { apply(CaptureEvent::LeavePoint); }
    void leaveCurve() { apply(CaptureEvent::LeaveCurve); }
    void leavePatch(bool blockEmpty);

    // ---- The mouse --------------------------------------------------------------------------------------------------

    /// Takes what a pick found. A pick that found nothing near leaves the traces that the next command meets.
    void take(const Pick& pick);
    /// The numbers that a click beside the geometry leaves.
    void passBy(std::int32_t patch, std::int32_t section, std::int32_t point);
    /// The left button came up: what was waited for is captured if the pick found it. True when it is.
    bool releasePoint();
    bool releaseFreePoint();
    bool releaseSection();
    bool releaseLine();
    void releasePatch() { apply(CaptureEvent::ReleasePatch); }
    void releaseRemoval();
    void releaseDrag();
    void releaseCorrection() { apply(CaptureEvent::ReleaseCorrection); }

    // ---- What commands change ---------------------------------------------------------------------------------------

    void placePoint(const zVec<double>& position);
    void renumberPatch(std::int32_t patch) { state_.capturedPatch = patch; }
    void renumberPoint(std::int32_t section, std::int32_t point);
    void renumberSection(std::int32_t section) { state_.capturedSection = section; }
    void renumberLine(std::int32_t line) { state_.capturedLine = line; }
    /// Sections and lines of the model were exchanged: what is captured keeps its place.
    void exchangePointNumbers();
    void exchangeSectionAndLine();

    /// Keeps the numbers for restorePoint().
    void savePoint();
    void saveCurve();
    /// Undo of a point edit: the numbers kept, each once.
    void restorePoint();
    /// The kept numbers are those of `before` again.
    void returnToSaved(const CaptureState& before);
    /// The point of `before` again, after a regime was left that took it along.
    void returnToPoint(const CaptureState& before);
    /// Undo left the captured point drawn.
    void showPoint() { apply(CaptureEvent::ShowPoint); }

    void dropPoint() { apply(CaptureEvent::DropPoint); }
    /// The point went with the last one of the first section; its patch stays while patches or a curve of it are
    /// captured.
    void losePoint() { apply(CaptureEvent::LosePoint); }
    /// The patch regime and its patch are gone, the zBlock with it.
    void dropPatches() { apply(CaptureEvent::DropPatches); }
    void forgetPatch() { apply(CaptureEvent::ForgetPatch); }
    void forgetNumbers() { apply(CaptureEvent::ForgetNumbers); }
    /// Every flag off and every number none.
    void forgetAll() { apply(CaptureEvent::ForgetAll); }

    // ---- Status texts -----------------------------------------------------------------------------------------------

    /// Writes both texts of the point; `curveForm` gives the longer one the wording of the captured section or line.
    void describePoint(bool curveForm);
    /// Gives the longer text the wording of the captured curve; without one it stays.
    void namePointByCurve();
    /// What a text with numbers is to say now: how many points the captured section or line has, where the captured
    /// point stands, the last patch of the zBlock. What is not there leaves its text as it was.
    struct Numbers {
        std::optional<std::int32_t> sectionPoints;
        std::optional<std::int32_t> linePoints;
        std::optional<zVec<double>> position;
        std::optional<std::int32_t> blockPatch;
    };
    /// Writes the numbers of the texts anew; the wording of each stays.
    void refill(const Numbers& numbers);
    void tellUndone(const std::string& text) { state_.undoStatus = text; }

private:
    void apply(CaptureEvent event);
    bool fits(const CaptureMove& move) const;
    void armForPoint(CaptureEvent event);
    void takePoint(const Pick& pick);
    void takeSection(const Pick& pick);
    void takeLine(const Pick& pick);
    void describePickedPoint();

    CaptureState state_;
};

} // namespace velmora
