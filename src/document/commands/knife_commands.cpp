#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "VelmoraDoc.h"
#include "capture_address.h"
#include "corner_box.h"
#include "cut_zones.h"
#include "interchange.h"
#include "messages.h"
#include "write_files.h"

namespace velmora {

// ---- Knife of grids -------------------------------------------------------------------------------------------------

void VelmoraDoc::KnifeModel() {
    if (structureKind != StructureKind::Structured) {
        return;
    }
    snapshotBeforeAsking();
    const auto removed = chooseSide();
    if (!removed) {
        return;
    }
    patchUndoReady = true;
    rebuildOnUndo = false;
    {
        const BusyScope busy(ui_);
        for (const std::int32_t patch : chosenInModelOrder()) {
            for (PointList& section : patches[static_cast<std::size_t>(patch)]) {
                section = withoutHalf(section, *removed);
            }
        }
    }
    keepCaptureInside(*this);
    followCapturedPoint();
    redraw();
}

// ---- Knife of triangles ---------------------------------------------------------------------------------------------

namespace {

/// A file beside `model` with its stem and a mark: "wing" and "_1" name "wing_1.dat".
std::filesystem::path partPath(const std::filesystem::path& model, const std::string& mark) {
    return model.parent_path() / (model.stem().string() + mark + ".dat");
}

/// A folder of this command alone, with all that is put into it gone at the end; without a path when there is no room
/// for one. It does not stand beside the model, whose folder may be one that nobody can write to.
class ScratchFolder {
public:
    ScratchFolder() {
        std::error_code error;
        std::string name = (std::filesystem::temp_directory_path(error) / "velmora-XXXXXX").string();
        path = !error && ::mkdtemp(name.data()) != nullptr ? std::filesystem::path(name) : std::filesystem::path();
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ~ScratchFolder() {
        std::error_code ignored;
        if (!path.empty()) {
            std::filesystem::remove_all(path, ignored);
        }
    }

    std::filesystem::path path;
};

/// The part of a region on one side of a plane, with the coordinates alone: files of triangles are read back with no
/// other field. A zone without coordinates has no part.
zRegion_fe partOf(const zRegion_fe& region, const KnifePlane& plane, Side kept, const ReportProgress& progress) {
    zRegion_fe part;
    copyRegion(region, part);
    splitZones(part, plane, progress);
    keepSide(part, plane, kept);
    for (auto& zone : part.blocks) {
        const ZoneCoordinates at = coordinatesOf(zone->variables);
        if (!at) {
            zone.reset();
            continue;
        }
        ZoneVariables coordinates;
        for (const zArray<double>* const field : {at.x, at.y, at.z}) {
            coordinates.push_back(std::make_unique<zArray<double>>(*field));
        }
        zone->variables = std::move(coordinates);
    }
    part.blocks.erase(std::remove(part.blocks.begin(), part.blocks.end(), nullptr), part.blocks.end());
    return part;
}

KnifePlane planeOf(const CUKnife& values) {
    KnifePlane plane;
    plane.axis = values.planeKind - 1;
    plane.section = values.section;
    plane.point = {values.x, values.y, values.z};
    plane.normal = unitVector({values.nx, values.ny, values.nz});
    return plane;
}

void takePlane(CUKnife& values, const KnifePlane& plane) {
    values.x = plane.point.x;
    values.y = plane.point.y;
    values.z = plane.point.z;
    values.nx = plane.normal.x;
    values.ny = plane.normal.y;
    values.nz = plane.normal.z;
}

void takeBox(CUKnife& values, const CornerBox& box) {
    values.xMin = box.lower.x;
    values.xMax = box.upper.x;
    values.yMin = box.lower.y;
    values.yMax = box.upper.y;
    values.zMin = box.lower.z;
    values.zMax = box.upper.z;
}

} // namespace

/// Says what is wrong with the plane; false when there is nothing to cut.
bool VelmoraDoc::knifeReachesBody() {
    const CUKnife& values = knifeValues;
    const auto isOutside = [](double at, double low, double high) { return at < low || at > high; };
    if (values.planeKind < 4) {
        const std::string axis = values.planeKind == 1 ? "X" : values.planeKind == 2 ? "Y" : "Z";
        if (isOutside(values.section, values.min, values.max)) {
            ui_.showMessage(message::sectionOutOfBody(axis));
            return false;
        }
        return true;
    }
    if (planeOf(values).normal == zVec<double>()) {
        ui_.showMessage(message::normalAbsent);
        return false;
    }
    const struct {
        const char* axis;
        double at;
        double low;
        double high;
    } coordinates[] = {{"X", values.x, values.xMin, values.xMax},
                       {"Y", values.y, values.yMin, values.yMax},
                       {"Z", values.z, values.zMin, values.zMax}};
    for (const auto& coordinate : coordinates) {
        if (isOutside(coordinate.at, coordinate.low, coordinate.high)) {
            ui_.showMessage(message::pointOutOfBody(coordinate.axis));
        }
    }
    return true;
}

void VelmoraDoc::KnifeZones() {
    if (structureKind != StructureKind::Unstructured) {
        return;
    }
    snapshotBeforeAsking();
    if (lineBufferFull && lineBuffer.size() >= 3) {
        takePlane(knifeValues, planeThrough(lineBuffer[0], lineBuffer[1], lineBuffer[2]));
    }
    takeBox(knifeValues, cornerBox(feRegion));
    knifeValues.section = 0.0;
    if (!showDialog(knifeValues) || !knifeReachesBody()) {
        return;
    }
    if (knifeValues.cutKind == 3) {
        savePartsOfZones();
    } else if (keepPartOfZones(knifeValues.cutKind == 1 ? Side::Before : Side::After)) {
        // Only once the model is another one: a cut that was cancelled or could not be done leaves nothing to undo.
        patchUndoReady = true;
        rebuildOnUndo = false;
        followCapturedPoint();
    }
    redraw();
}

zRegion_fe VelmoraDoc::cutPart(Side kept) {
    const BusyScope busy(ui_);
    return partOf(feRegion, planeOf(knifeValues), kept, progressTo(ui_));
}

/// The part goes through a file, which leaves to its zones what a file of it would hold, and becomes the model once it
/// is read back; before that nothing has changed.
bool VelmoraDoc::keepPartOfZones(Side kept) {
    const ScratchFolder scratch;
    if (scratch.path.empty()) {
        ui_.showMessage(message::cannotSave);
        return false;
    }
    const std::filesystem::path temporary = scratch.path / "part.dat";
    const zRegion_fe cut = cutPart(kept);
    zRegion structured;
    zRegion_fe part;
    std::vector<std::string> told;
    const auto tell = [&told](const std::string& text) { told.push_back(text); };
    bool done = false;
    {
        const BusyScope busy(ui_);
        done = writeGeometry(temporary, outputPrecision, {}, cut, tell, progressTo(ui_)) &&
               readGeometry(temporary, false, structured, part, tell, progressTo(ui_));
    }
    for (const std::string& text : told) {
        ui_.showMessage({Severity::NotWritten, text});
    }
    if (done) {
        feRegion = std::move(part);
    }
    return done;
}

/// Both files are asked about before one is written.
void VelmoraDoc::savePartsOfZones() {
    const std::filesystem::path before = partPath(modelFile.chosenPath, "_1");
    const std::filesystem::path after = partPath(modelFile.chosenPath, "_2");
    if (mayOverwrite(*this, before, TargetFrom::Model) && mayOverwrite(*this, after, TargetFrom::Model) &&
        writeZones(*this, before, {}, cutPart(Side::Before)) && writeZones(*this, after, {}, cutPart(Side::After))) {
        ui_.showMessage(message::partsAreSaved);
    }
}

// ---- Invisible remove -----------------------------------------------------------------------------------------------

/// Nothing tells which part is visible, so there is never one to keep: the command ends with its message.
void VelmoraDoc::RemoveInvisible() {
    if (structureKind != StructureKind::Unstructured) {
        return;
    }
    beginPatchCommand(false);
    ui_.showMessage(message::visiblePartNotSelected);
}

} // namespace velmora
