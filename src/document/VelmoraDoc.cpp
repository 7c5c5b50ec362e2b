#include "VelmoraDoc.h"

#include <algorithm>
#include <limits>

#include "vectors.h"

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
    : modelFile(userInterface, documentsFolder), filesList(userInterface, documentsFolder), ui_(userInterface) {
    blockList.fill(-1);
    for (const char* extension : {"apt", "skl", "dat", "vrml", "apm"}) {
        filesList.names.add(extension);
    }
}

void VelmoraDoc::detachView(DocumentView& view) {
    views_.erase(std::remove(views_.begin(), views_.end(), &view), views_.end());
}

void VelmoraDoc::ShowStatus(const std::string& text) {
    status = text;
    ui_.showStatus(text);
}

void VelmoraDoc::showIdlePrompt() {
    if (!capture->pointRegimeActive() && !capture->curveRegimeActive() && !capture->patchRegimeActive()) {
        ShowStatus(idlePrompt);
    }
}

/// Texts with numbers say what the model holds now; one that is shown is shown anew.
void VelmoraDoc::refillStatus() {
    static constexpr std::string CaptureState::*texts[] = {
        &CaptureState::pointStatus, &CaptureState::pointContinueStatus,   &CaptureState::sectionStatus,
        &CaptureState::lineStatus,  &CaptureState::sectionContinueStatus, &CaptureState::lineContinueStatus,
        &CaptureState::blockStatus,
    };
    const auto* shown = std::find_if(std::begin(texts), std::end(texts),
                                     [this](auto text) { return !status.empty() && (*capture).*text == status; });
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
    if (shown != std::end(texts) && now.**shown != status) {
        ShowStatus(now.**shown);
    }
}

std::vector<std::string> VelmoraDoc::dialogNames() {
    return {"Cduplicate",      "CRebreak",
            "CInputPatch",     "CInputSection",
            "CInputLine",      "CFeatures",
            "CBeforeAfter",    "dlgEditPoint",
            "dlgViewing",      "CRegularFind",
            "CScaling",        "CBlockMove",
            "CBlockRotate",    "CFlipBlock",
            "CSymmetricBlock", "CLast_First_switch",
            "CFirstPoint",     "CExtrapolation",
            "CPrescribe",      "CRebreakPart",
            "CMerge",          "CSmooth",
            "CInterpolate",    "CCorrectLine",
            "CConvert_to_SKL", "CConvert_SKL_to_APT",
            "CUKnife",         "CIntersection",
            "CImport",         "CExport"};
}

std::optional<DialogForm> VelmoraDoc::storedDialog(std::string_view name) {
    DialogForm forms[] = {describe(duplicateValues),    describe(rebreakValues),     describe(inputPatchValues),
                          describe(inputSectionValues), describe(inputLineValues),   describe(featuresValues),
                          describe(beforeAfterValues),  describe(editPointValues),   describe(viewingValues),
                          describe(regularFindValues),  describe(scalingValues),     describe(moveValues),
                          describe(rotateValues),       describe(flipValues),        describe(symmetricValues),
                          describe(lastFirstValues),    describe(firstPointValues),  describe(extrapolationValues),
                          describe(prescribeValues),    describe(rebreakPartValues), describe(mergeValues),
                          describe(smoothValues),       describe(interpolateValues), describe(correctLineValues),
                          describe(toSklValues),        describe(toAptValues),       describe(knifeValues),
                          describe(intersectionValues), describe(importValues),      describe(exportValues)};
    for (DialogForm& form : forms) {
        if (form.name == name) {
            return std::move(form);
        }
    }
    return std::nullopt;
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

void VelmoraDoc::forgetKinds() {
    structureKind = StructureKind::None;
    fileKind = FileKind::None;
    secondKind = SecondKind::None;
}

void VelmoraDoc::clearModel() {
    ++geometryRevision_;
    patches.clear();
    feRegion.blocks.clear();
    forgetKinds();
    fieldLoaded = false;
    fieldMode = false;
    fieldOpening = false;
    fieldPatches.clear();
    cbcAppended = false;
    gridNamed = false;
}

void VelmoraDoc::checkRegularity(const PatchList& list) {
    bool sawRegular = false;
    const Regularity regularity = regularityOf(list, &sawRegular);
    if (sawRegular && fieldLoaded) {
        fieldMode = true;
    }
    if (regularity != Regularity::Undecided) {
        structureKind = StructureKind::Structured;
        fileKind = regularity == Regularity::Regular ? FileKind::Apt : FileKind::Skl;
    }
}

void VelmoraDoc::retitle() {
    checkRegularity(patches);
    if (modelFile.titleWrong || structureKind != StructureKind::Structured) {
        return;
    }
    if (fileKind == FileKind::Apt) {
        modelFile.takeExtension(fieldMode ? "dat" : "apt");
    } else if (fileKind == FileKind::Skl) {
        modelFile.takeExtension("skl");
    }
}

bool VelmoraDoc::inBlock(std::int32_t patch) const {
    const auto end = blockList.begin() + blockCount;
    return std::find(blockList.begin(), end, patch) != end;
}

std::int32_t VelmoraDoc::partCount() const {
    return structureKind == StructureKind::Unstructured ? static_cast<std::int32_t>(feRegion.blocks.size())
                                                        : countOf(patches);
}

std::vector<bool> VelmoraDoc::blockMask() const {
    std::vector<bool> mask(static_cast<std::size_t>(partCount()), false);
    for (std::int32_t i = 0; i < blockCount; ++i) {
        const std::int32_t part = blockList[static_cast<std::size_t>(i)];
        if (part >= 0 && part < partCount()) {
            mask[static_cast<std::size_t>(part)] = true;
        }
    }
    return mask;
}

std::optional<zVec<double>> VelmoraDoc::positionAt(std::int32_t patch, std::int32_t section, std::int32_t point) const {
    zVec<double> position;
    if (structureKind == StructureKind::Unstructured) {
        const bool found = feRegion.getNode(patch, point, position.x, position.y, position.z) == 0;
        return found ? std::optional(position) : std::nullopt;
    }
    const auto* found = const_cast<VelmoraDoc*>(this)->pointAt(patch, section, point);
    return found != nullptr ? std::optional(*found) : std::nullopt;
}

PointList* VelmoraDoc::sectionAt(std::int32_t patch, std::int32_t section) {
    if (patch < 0 || patch >= countOf(patches)) {
        return nullptr;
    }
    Patch& sections = patches[static_cast<std::size_t>(patch)];
    if (section < 0 || section >= countOf(sections)) {
        return nullptr;
    }
    return &sections[static_cast<std::size_t>(section)];
}

zVec<double>* VelmoraDoc::pointAt(std::int32_t patch, std::int32_t section, std::int32_t point) {
    PointList* points = sectionAt(patch, section);
    if (points == nullptr || point < 0 || point >= countOf(*points)) {
        return nullptr;
    }
    return &(*points)[static_cast<std::size_t>(point)];
}

} // namespace velmora
