#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "DialogValues.h"
#include "SafeFile.h"
#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "WorkCancelled.h"
#include "capture_address.h"
#include "command_rows.h"
#include "command_rules.h"
#include "corner_box.h"
#include "cut_zones.h"
#include "interchange.h"
#include "messages.h"
#include "section_commands.h"
#include "show_dialog.h"
#include "write_files.h"

namespace velmora {

// ---- Knife of grids -------------------------------------------------------------------------------------------------

namespace {

/// Knife of a grid: halves the sections of the zBlock, or of all patches.
void KnifeModel(VelmoraDoc& doc) {
    if (doc.structureKind != StructureKind::Structured) {
        return;
    }
    const auto removed = chooseSide(doc);
    if (!removed) {
        return;
    }
    doc.beginPatchCommand(Extent::Stays);
    {
        const BusyScope busy(doc.ui());
        for (const std::int32_t patch : doc.chosenInModelOrder()) {
            for (PointList& section : doc.patches[static_cast<std::size_t>(patch)]) {
                section = withoutHalf(section, *removed);
            }
        }
    }
    keepCaptureInside(doc);
    followCapturedPoint(doc);
    doc.redraw();
}

// ---- Knife of triangles ---------------------------------------------------------------------------------------------

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

/// Says what is wrong with the plane; false when there is nothing to cut.
bool knifeReachesBody(VelmoraDoc& doc) {
    const CUKnife& values = doc.dialogs->knife;
    const auto isOutside = [](double at, double low, double high) { return at < low || at > high; };
    if (values.planeKind < 4) {
        const std::string axis = values.planeKind == 1 ? "X" : values.planeKind == 2 ? "Y" : "Z";
        if (isOutside(values.section, values.min, values.max)) {
            doc.ui().showMessage(message::sectionOutOfBody(axis));
            return false;
        }
        return true;
    }
    if (planeOf(values).normal == zVec<double>()) {
        doc.ui().showMessage(message::normalAbsent);
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
            doc.ui().showMessage(message::pointOutOfBody(coordinate.axis));
        }
    }
    return true;
}

/// What is to be kept, or saved, holds a triangle. Says so when it does not: the body is worth more than no triangle,
/// and so is the file that Save would empty.
bool knifeLeavesParts(VelmoraDoc& doc) {
    const CUKnife& values = doc.dialogs->knife;
    const KnifePlane plane = planeOf(values);
    const bool before = values.cutKind == 2 || standsOn(doc.feRegion, plane, Side::Before);
    const bool after = values.cutKind == 1 || standsOn(doc.feRegion, plane, Side::After);
    if (!before || !after) {
        doc.ui().showMessage(message::conversionWithoutResult);
    }
    return before && after;
}

zRegion_fe cutPart(VelmoraDoc& doc, Side kept) {
    const BusyScope busy(doc.ui());
    return partOf(doc.feRegion, planeOf(doc.dialogs->knife), kept, progressTo(doc.ui()));
}

/// The part goes through a file, which leaves to its zones what a file of it would hold, and becomes the model once it
/// is read back; before that nothing has changed.
bool keepPartOfZones(VelmoraDoc& doc, Side kept) {
    const ScratchFolder scratch;
    if (scratch.path.empty()) {
        doc.ui().showMessage(message::cannotSave);
        return false;
    }
    const std::filesystem::path temporary = scratch.path / "part.dat";
    const zRegion_fe cut = cutPart(doc, kept);
    zRegion structured;
    zRegion_fe part;
    std::vector<std::string> told;
    const auto tell = [&told](const std::string& text) { told.push_back(text); };
    bool done = false;
    {
        const BusyScope busy(doc.ui());
        done = writeGeometry(temporary, outputPrecision, {}, cut, tell, progressTo(doc.ui())) &&
               readGeometry(temporary, false, structured, part, tell, progressTo(doc.ui()));
    }
    for (const std::string& text : told) {
        doc.ui().showMessage({Severity::NotWritten, text});
    }
    if (done) {
        // Only now: a cut that was cancelled or could not be done leaves the snapshot of the command before.
        doc.beginPatchCommand(Extent::Stays);
        doc.feRegion = std::move(part);
    }
    return done;
}

/// What a name stood for before work that may be given up: the file, if there was one. It is held open, and so is there
/// under no name that a program which is killed could leave behind.
class FileBefore {
public:
    explicit FileBefore(std::filesystem::path path) : path_(std::move(path)), held_(path_, std::ios::binary) {
        std::error_code error;
        wasThere_ = std::filesystem::exists(path_, error);
    }

    void bringBack() {
        std::error_code error;
        if (!wasThere_) {
            std::filesystem::remove(path_, error);
        } else if (held_.is_open()) {
            copyHeld();
        }
    }

private:
    void copyHeld() {
        constexpr std::size_t blockSize = std::size_t{1} << 16;
        std::string block(blockSize, '\0');
        SafeFile file(path_);
        do {
            held_.read(block.data(), static_cast<std::streamsize>(block.size()));
            file.write({block.data(), static_cast<std::size_t>(held_.gcount())});
        } while (held_);
        if (held_.eof()) {
            file.commit();
        }
    }

    std::filesystem::path path_;
    std::ifstream held_;
    bool wasThere_ = false;
};

/// Both files are asked about, and both can be written, before one is; given up in the middle, none is left.
void savePartsOfZones(VelmoraDoc& doc) {
    const std::filesystem::path before = partPath(doc.modelFile.chosenPath, "_1");
    const std::filesystem::path after = partPath(doc.modelFile.chosenPath, "_2");
    if (!mayOverwrite(doc, before, TargetFrom::Model, FileContent::Part) ||
        !mayOverwrite(doc, after, TargetFrom::Model, FileContent::Part)) {
        return;
    }
    for (const std::filesystem::path& part : {before, after}) {
        if (!canBeWritten(part)) {
            doc.ui().showMessage(message::cannotSave);
            tellNotWritten(doc, part);
            return;
        }
    }
    FileBefore first(before);
    try {
        if (writeZones(doc, before, {}, cutPart(doc, Side::Before), FileContent::Part) &&
            writeZones(doc, after, {}, cutPart(doc, Side::After), FileContent::Part)) {
            doc.ui().showMessage(message::partsAreSaved);
        }
    } catch (const WorkCancelled&) {
        first.bringBack();
        throw;
    }
}

/// Knife of triangles: cuts by a plane.
void KnifeZones(VelmoraDoc& doc) {
    if (doc.structureKind != StructureKind::Unstructured) {
        return;
    }
    if (doc.lineBufferFull && doc.lineBuffer.size() >= 3) {
        takePlane(doc.dialogs->knife, planeThrough(doc.lineBuffer[0], doc.lineBuffer[1], doc.lineBuffer[2]));
    }
    takeBox(doc.dialogs->knife, cornerBox(doc.feRegion));
    doc.dialogs->knife.section = 0.0;
    if (!showDialog(doc.ui(), doc.dialogs->knife) || !knifeReachesBody(doc) || !knifeLeavesParts(doc)) {
        return;
    }
    if (doc.dialogs->knife.cutKind == 3) {
        savePartsOfZones(doc);
    } else if (keepPartOfZones(doc, doc.dialogs->knife.cutKind == 1 ? Side::Before : Side::After)) {
        followCapturedPoint(doc);
    }
    doc.redraw();
}

// ---- Invisible remove -----------------------------------------------------------------------------------------------

/// Nothing tells which part is visible, so there is never one to keep: the command ends with its message.
void RemoveInvisible(VelmoraDoc& doc) {
    if (doc.structureKind != StructureKind::Unstructured) {
        return;
    }
    doc.beginPatchCommand(Extent::Stays);
    doc.ui().showMessage(message::visiblePartNotSelected);
}

} // namespace

std::span<const Command> knifeCommands() {
    using namespace rules;
    using enum MenuId;
    static const Command rows[] = {
        {.id = "model.knife",
         .menuText = "&Knife",
         .statusText = "Cut geometry in accordance with drawn line",
         .toolTip = "Knife",
         .icon = true,
         .run = &KnifeModel,
         .off = notGridOrField,
         .places = {{Transformations, 180}, {TransformationsBar, 280}}},
        {.id = "model.invisibleRemove",
         .menuText = "I&nvisible remove",
         .statusText = "Remove invisible part of unstructed grid",
         .toolTip = "Invisible remove",
         .run = &RemoveInvisible,
         .off = notUns,
         .places = {{Transformations, 330}, {PatchContext, 360}}},
        {.id = "convert.knife",
         .menuText = "Knife",
         .statusText = "Cut unstructured grid by a plane",
         .run = &KnifeZones,
         .off = notUns,
         .places = {{ConvertTo, 140}}},
    };
    return rows;
}

} // namespace velmora
