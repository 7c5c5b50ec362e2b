#include "VelmoraDoc.h"

#include <algorithm>
#include <limits>

#include "DocumentView.h"
#include "ModelTrial.h"
#include "UserInterface.h"
#include "vectors.h"
#include "view_extent.h"

namespace velmora {

namespace {

/// Where the running box of a model starts: the largest single-precision number.
constexpr double boxStart = 3.4028234663852886e38;
/// Status texts of models of an unusual size.
constexpr const char* noExtentStatus = "All points of the model lie in one place";
constexpr const char* vastExtentStatus = "Coordinates beyond 3.4e+38 can be edited and saved, not drawn";

/// A side of the box of no points at all is that of the start.
void closeEmptySide(double& lower, double& upper) {
    if (lower > upper) {
        lower = boxStart;
        upper = -boxStart;
    }
}

} // namespace

VelmoraDoc::VelmoraDoc(UserInterface& userInterface, const std::filesystem::path& documentsFolder)
    : DocumentState(userInterface, documentsFolder), ui_(userInterface) {}

void VelmoraDoc::detachView(DocumentView& view) {
    views_.erase(std::remove(views_.begin(), views_.end(), &view), views_.end());
}

void VelmoraDoc::ShowStatus(const std::string& text) {
    status = text;
    coveredStatus_.clear();
    ui_.showStatus(text);
}

/// The text of what is captured that stands in the status line; null when something else does.
VelmoraDoc::CaptureText VelmoraDoc::shownCaptureText() const {
    static constexpr CaptureText texts[] = {
        &CaptureState::pointStatus, &CaptureState::pointContinueStatus,   &CaptureState::sectionStatus,
        &CaptureState::lineStatus,  &CaptureState::sectionContinueStatus, &CaptureState::lineContinueStatus,
        &CaptureState::blockStatus,
    };
    const auto* shown = std::find_if(std::begin(texts), std::end(texts),
                                     [this](auto text) { return !status.empty() && (*capture).*text == status; });
    return shown == std::end(texts) ? nullptr : *shown;
}

/// The text of the curve that is captured, where that was a section and is a line now, or the other way round.
VelmoraDoc::CaptureText VelmoraDoc::textOfHeldCurve(CaptureText text) const {
    if (capture->lineCaptured) {
        return text == &CaptureState::sectionStatus           ? &CaptureState::lineStatus
               : text == &CaptureState::sectionContinueStatus ? &CaptureState::lineContinueStatus
                                                              : text;
    }
    if (capture->sectionCaptured) {
        return text == &CaptureState::lineStatus           ? &CaptureState::sectionStatus
               : text == &CaptureState::lineContinueStatus ? &CaptureState::sectionContinueStatus
                                                           : text;
    }
    return text;
}

/// Texts with numbers say what the model holds now; one that is shown is shown anew.
void VelmoraDoc::refillStatus() {
    const CaptureText shown = textOfHeldCurve(shownCaptureText());
    Capture::Numbers numbers;
    const CaptureState& now = *capture;
    if (const PointList* section = sectionAt(now.capturedPatch, now.capturedSection)) {
        numbers.sectionPoints = countOf(*section);
    }
    if (now.lineCaptured && now.capturedPatch >= 0 && now.capturedPatch < countOf(patches) && now.capturedLine >= 0) {
        numbers.linePoints = countOf(patches[static_cast<std::size_t>(now.capturedPatch)]);
    }
    if (now.pointHeld()) {
        numbers.position = positionAt(now.capturedPatch, now.capturedPointSection, now.capturedPoint);
    }
    if (blockCount > 0) {
        numbers.blockPatch = blockList[static_cast<std::size_t>(blockCount) - 1];
    }
    capture.refill(numbers);
    if (shown != nullptr && now.*shown != status) {
        ShowStatus(now.*shown);
    }
}

void VelmoraDoc::setMouseMode(MouseMode mode) {
    for (DocumentView* view : views_) {
        view->setMouseMode(mode);
    }
}

void VelmoraDoc::forceMouseMode(MouseMode mode) {
    for (DocumentView* view : views_) {
        view->forceMouseMode(mode);
    }
}

void VelmoraDoc::resetMouseMode() {
    for (DocumentView* view : views_) {
        view->resetMouseMode();
    }
}

int VelmoraDoc::principalPlane() const {
    return views_.empty() ? 0 : views_.front()->principalPlane();
}

void VelmoraDoc::redraw() {
    ++geometryRevision_;
    for (DocumentView* view : views_) {
        view->onGeometryChanged();
    }
    returnToRegimeMode();
    refillStatus();
}

void VelmoraDoc::redrawTrial() {
    ++geometryRevision_;
    for (DocumentView* view : views_) {
        view->onGeometryChanged();
    }
}

namespace {

/// The model and what is tried in its place stand where they do not belong for the life of the object.
class Aside {
public:
    explicit Aside(ModelTrial* trial) : trial_(trial) { exchange(); }
    Aside(const Aside&) = delete;
    Aside& operator=(const Aside&) = delete;
    ~Aside() { exchange(); }

private:
    void exchange() {
        if (trial_ != nullptr) {
            trial_->exchange();
        }
    }

    ModelTrial* trial_;
};

} // namespace

void VelmoraDoc::withoutTrial(const std::function<void()>& work) {
    const Aside aside(trial_);
    work();
}

void VelmoraDoc::redrawPicture() {
    for (DocumentView* view : views_) {
        view->onPictureChanged();
    }
    returnToRegimeMode();
}

void VelmoraDoc::redrawHighlight() {
    for (DocumentView* view : views_) {
        view->onHighlightChanged();
    }
    returnToRegimeMode();
}

void VelmoraDoc::returnToRegimeMode() {
    // The innermost regime comes last and wins, over a running view mode too.
    if (capture->patchCaptured) {
        setMouseMode(ModePatch);
    }
    if (capture->sectionCaptured) {
        setMouseMode(ModeSection);
    }
    if (capture->lineCaptured) {
        setMouseMode(ModeLine);
    }
    if (capture->pointCaptured) {
        setMouseMode(ModePoint);
    }
    if (capture->freePointHeld) {
        setMouseMode(ModePoint);
        if (!capture->pointCaptured) {
            setMouseMode(ModeLine);
        }
    }
}

void VelmoraDoc::updateBounds() {
    ++geometryRevision_;
    boxMin = {boxStart, boxStart, boxStart};
    boxMax = {-boxStart, -boxStart, -boxStart};
    extentStatus_.clear();
    if (structureKind == StructureKind::None) {
        return;
    }
    constexpr double beyond = std::numeric_limits<double>::infinity();
    boxMin = {beyond, beyond, beyond};
    boxMax = {-beyond, -beyond, -beyond};
    if (structureKind == StructureKind::Structured) {
        patchBounds(patches, boxMin, boxMax);
    } else {
        zoneBounds(feRegion, boxMin, boxMax);
    }
    closeEmptySide(boxMin.x, boxMax.x);
    closeEmptySide(boxMin.y, boxMax.y);
    closeEmptySide(boxMin.z, boxMax.z);
    const ViewExtent extent = viewExtentOf(boxMin, boxMax);
    modelCenter = extent.centre;
    modelRadius = extent.radius;
    for (DocumentView* view : views_) {
        view->onBoundsChanged();
    }
    if (extent.kind != ExtentKind::Usual && !holdsNothing()) {
        extentStatus_ = extent.kind == ExtentKind::None ? noExtentStatus : vastExtentStatus;
        if (status == idlePrompt) {
            ShowStatus(extentStatus_); // what a regime or the reading of a file has to say goes first
        }
    }
}

} // namespace velmora
