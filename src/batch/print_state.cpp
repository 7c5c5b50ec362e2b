#include "print_values.h"

namespace velmora {

namespace {

void addKinds(Json& state, const VelmoraDoc& doc) {
    state["structureKind"] = textOf(doc.structureKind);
    state["fileKind"] = textOf(doc.fileKind);
    state["secondKind"] = textOf(doc.secondKind);
    state["blockKind"] = textOf(doc.blockKind);
    state["documentTitle"] = doc.modelFile.documentTitle;
    state["currentPath"] = doc.modelFile.currentPath;
    state["currentDirectory"] = doc.modelFile.currentDirectory;
    state["fileExtension"] = doc.modelFile.fileExtension;
    state["gridPath"] = doc.modelFile.gridPath;
    state["documentModified"] = doc.documentModified;
}

void addRegimes(Json& state, const VelmoraDoc& doc) {
    state["pointCaptureArmed"] = doc.capture->pointCaptureArmed;
    state["pointCaptured"] = doc.capture->pointCaptured;
    state["freePointArmed"] = doc.capture->freePointArmed;
    state["freePointHeld"] = doc.capture->freePointHeld;
    state["patchCaptureArmed"] = doc.capture->patchCaptureArmed;
    state["patchCaptured"] = doc.capture->patchCaptured;
    state["sectionCaptureArmed"] = doc.capture->sectionCaptureArmed;
    state["sectionCaptured"] = doc.capture->sectionCaptured;
    state["lineCaptureArmed"] = doc.capture->lineCaptureArmed;
    state["lineCaptured"] = doc.capture->lineCaptured;
    state["pointDragging"] = doc.capture->pointDragging;
    state["patchRemoving"] = doc.capture->patchRemoving;
}

void addIndices(Json& state, const VelmoraDoc& doc) {
    state["capturedPatch"] = doc.capture->capturedPatch;
    state["capturedPointSection"] = doc.capture->capturedPointSection;
    state["capturedPoint"] = doc.capture->capturedPoint;
    state["capturedSection"] = doc.capture->capturedSection;
    state["capturedLine"] = doc.capture->capturedLine;
    state["savedPatch"] = doc.capture->savedPatch;
    state["savedPointSection"] = doc.capture->savedPointSection;
    state["savedPoint"] = doc.capture->savedPoint;
    state["savedSection"] = doc.capture->savedSection;
    state["savedLine"] = doc.capture->savedLine;
    state["blockList"] = Json(std::vector<std::int32_t>(doc.blockList.begin(), doc.blockList.begin() + doc.blockCount));
    state["blockCount"] = doc.blockCount;
}

void addUndo(Json& state, const VelmoraDoc& doc) {
    state["pointClipboard"] = pointValue(doc.pointClipboard);
    state["pointClipboardFull"] = doc.pointClipboardFull;
    state["lineBufferFull"] = doc.lineBufferFull;
    state["blockClipboardFull"] = doc.blockClipboardFull;
    state["pointUndoReady"] = doc.pointUndoReady;
    state["patchUndoReady"] = doc.patchUndoReady;
    state["rebuildOnUndo"] = doc.rebuildOnUndo;
    state["patchToRemove"] = doc.capture->patchToRemove;
    state["dragCorrectsLine"] = doc.capture->dragCorrectsLine;
    state["undoNode"] = pointValue(doc.undoNode);
}

void addSwitches(Json& state, const VelmoraDoc& doc) {
    state["showBlockOnly"] = doc.showBlockOnly;
    state["showFirstPoints"] = doc.showFirstPoints;
    state["showDoublePoints"] = doc.showDoublePoints;
    state["showBuffer"] = doc.showBuffer;
    state["showZBlockMarkers"] = doc.showZBlockMarkers;
    state["partBefore"] = doc.partBefore;
    state["partAfter"] = doc.partAfter;
    state["sftOpen"] = doc.sftOpen;
    state["markersOpen"] = doc.markersOpen;
    state["cbcAppended"] = doc.cbcAppended;
    state["gridNamed"] = doc.gridNamed;
    state["fieldLoaded"] = doc.fieldLoaded;
    state["fieldMode"] = doc.fieldMode;
    state["fieldOpening"] = doc.fieldOpening;
    state["surfaceMode"] = doc.surfaceMode;
    state["pointPicked"] = doc.capture->pointPicked;
}

void addPlaces(Json& state, const VelmoraDoc& doc, const VelmoraView& view) {
    state["intersectionTolerance"] = numberValue(doc.intersectionTolerance);
    state["leftButtonDown"] = view.leftButtonDown;
    state["spinTimerOn"] = view.spinTimerOn;
    state["pickedPoint"] = pointValue(doc.capture->pickedPoint);
    state["capturedPointPos"] = pointValue(doc.capture->capturedPointPos);
    state["modelCenter"] = pointValue(doc.modelCenter);
    state["modelRadius"] = numberValue(doc.modelRadius);
    state["boxMin"] = pointValue(doc.boxMin);
    state["boxMax"] = pointValue(doc.boxMax);
    state["status"] = doc.status;
}

Json countsValue(const PatchList& patches) {
    Json counts = Json::array();
    for (const Patch& patch : patches) {
        Json sections = Json::array();
        for (const PointList& section : patch) {
            sections.push_back(section.size());
        }
        counts.push_back(std::move(sections));
    }
    return counts;
}

Json zoneSummaries(const zRegion_fe& region) {
    Json zones = Json::array();
    for (const auto& zone : region.blocks) {
        Json names = Json::array();
        for (const auto& variable : zone->variables) {
            names.push_back(variable->name);
        }
        zones.push_back({{"title", zone->title},
                         {"nodeCount", zone->nodeCount},
                         {"elementCount", zone->elementCount},
                         {"connectivitySize", zone->connectivitySize},
                         {"variables", std::move(names)}});
    }
    return zones;
}

} // namespace

Json stateValue(const VelmoraDoc& doc, const VelmoraView& view) {
    Json state = Json::object();
    addKinds(state, doc);
    addRegimes(state, doc);
    addIndices(state, doc);
    addUndo(state, doc);
    addSwitches(state, doc);
    addPlaces(state, doc, view);
    state["counts"] = countsValue(doc.patches);
    state["regionTitle"] = doc.feRegion.title;
    state["zones"] = zoneSummaries(doc.feRegion);
    return state;
}

} // namespace velmora
