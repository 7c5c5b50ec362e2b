#include "load_files.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

#include "VelmoraDoc.h"
#include "apt.h"
#include "dat_geometry.h"
#include "field_file.h"
#include "interchange.h"
#include "messages.h"
#include "path_names.h"
#include "skl.h"
#include "zone_conversion.h"

namespace velmora {

namespace {

/// Zones come with their indices as they stand in the file.
constexpr bool noTranspose = false;

/// What the two native readers have to tell, in one form.
struct StructuredRead {
    bool opened = false;
    bool namesFile = false; ///< the reader came as far as the title
    std::int64_t pointsInFile = 0;
    std::int64_t pointsKept = 0;
    bool textBehind = false; ///< the file holds more than the reader could make sense of
    std::vector<std::string> messages;
};

StructuredRead readByExtension(const std::filesystem::path& path, const std::string& extension, PatchList& patches,
                               const ReportProgress& report) {
    StructuredRead read;
    if (extension == "apt") {
        const AptReadResult result = readApt(path, patches, report);
        read = {result.opened,       result.firstPassEnded || result.endReached,
                result.pointsInFile, result.pointsKept,
                result.textBehind,   {}};
        for (const FormatFault& fault : result.faults) {
            read.messages.push_back(aptMessage(fault));
        }
    } else {
        const SklReadResult result = readSkl(path, patches, report);
        read = {result.opened, result.endReached, result.pointsRead, result.pointsRead, result.textBehind, {}};
        for (const FormatFault& fault : result.faults) {
            read.messages.push_back(sklMessage(fault));
        }
    }
    return read;
}

bool readStructured(VelmoraDoc& doc, const std::filesystem::path& path, const std::string& extension, LoadMode mode,
                    PointTally& points) {
    const std::size_t patchesBefore = doc.patches.size();
    StructuredRead read;
    {
        const BusyScope busy(doc.ui());
        read = readByExtension(path, extension, doc.patches, progressTo(doc.ui()));
    }
    const bool failed = !read.messages.empty();
    points.read += read.pointsInFile;
    points.kept += read.pointsKept;
    if (read.opened) {
        doc.modelFile.noteCompleteness(path, !failed && !read.textBehind && read.pointsKept >= read.pointsInFile);
    }
    if (!mode.append && read.namesFile) {
        doc.modelFile.takeExtension(extension);
    }
    // What stood in the file before its fault is in the model: the fault is a loss then.
    const Severity severity = doc.patches.size() > patchesBefore ? Severity::Warning : Severity::NotRead;
    for (const std::string& text : read.messages) {
        doc.ui().showMessage({severity, text});
        if (read.opened) {
            doc.modelFile.setTitle("Wrong");
        }
    }
    if (!read.opened) {
        return false;
    }
    if (failed) {
        doc.modelFile.titleWrong = true;
        doc.checkRegularity(doc.patches);
        return false;
    }
    doc.modelFile.titleWrong = false;
    doc.retitle();
    return true;
}

} // namespace

// ---- Zones ----------------------------------------------------------------------------------------------------------

bool readZones(UserInterface& ui, const std::filesystem::path& path, zRegion& structured, zRegion_fe& unstructured) {
    // What the reader has to tell is shown once the wait cursor is gone.
    std::vector<std::string> told;
    bool read = false;
    {
        const BusyScope busy(ui);
        read = readGeometry(
            path, noTranspose, structured, unstructured, [&told](const std::string& text) { told.push_back(text); },
            progressTo(ui));
    }
    for (const std::string& text : told) {
        ui.showMessage({Severity::NotRead, text});
    }
    return read;
}

namespace {

/// The same for a file that gives the model zones: of one that fails on the way none is taken.
bool readModelZones(VelmoraDoc& doc, const std::filesystem::path& path, zRegion& structured, zRegion_fe& unstructured) {
    const bool read = readZones(doc.ui(), path, structured, unstructured);
    doc.modelFile.noteCompleteness(path, read);
    return read;
}

/// Grids among the zones, and patches that are there, become triangles behind `incoming`; all of it goes behind the
/// zones of the model.
void takeZones(VelmoraDoc& doc, zRegion& structured, zRegion_fe& incoming) {
    if (!doc.patches.empty()) {
        patchesToRegion(doc.patches, structured);
        doc.patches.clear();
    }
    regionToSurface(structured, incoming);
    if (doc.feRegion.blocks.empty()) {
        doc.feRegion.title = incoming.title;
    }
    std::move(incoming.blocks.begin(), incoming.blocks.end(), std::back_inserter(doc.feRegion.blocks));
}

bool readSurface(VelmoraDoc& doc, const std::filesystem::path& path) {
    zRegion structured;
    zRegion_fe incoming;
    if (!readModelZones(doc, path, structured, incoming)) {
        return false;
    }
    takeZones(doc, structured, incoming);
    doc.structureKind = StructureKind::Unstructured;
    doc.modelFile.titleAsZones();
    return true;
}

bool takeStructuredZones(VelmoraDoc& doc, const zRegion& structured, const std::filesystem::path& path,
                         PointTally& points) {
    ZonePatches zones = zonesToPatches(structured, ZoneDetail::Thinned);
    if (zones.refusal != ZoneRefusal::None) {
        doc.ui().showMessage({Severity::NotRead, std::string(messageOf(zones.refusal))});
        doc.modelFile.noteCompleteness(path, false);
        doc.structureKind = StructureKind::None;
        doc.secondKind = SecondKind::None;
        // A model to which the file was to be appended is still there.
        doc.checkRegularity(doc.patches);
        return false;
    }
    if (zones.patches.empty()) {
        return false; // grids without a point make no model
    }
    std::move(zones.patches.begin(), zones.patches.end(), std::back_inserter(doc.patches));
    points.read += zones.pointsRead;
    points.kept += zones.pointsKept;
    doc.modelFile.noteCompleteness(path, zones.pointsKept >= zones.pointsRead);
    doc.structureKind = StructureKind::Structured;
    doc.modelFile.titleWrong = false;
    doc.retitle();
    return true;
}

bool readDatGeometry(VelmoraDoc& doc, const std::filesystem::path& path, PointTally& points) {
    zRegion structured;
    zRegion_fe incoming;
    if (!readModelZones(doc, path, structured, incoming)) {
        return false;
    }
    if (!incoming.blocks.empty()) {
        takeZones(doc, structured, incoming);
        doc.structureKind = StructureKind::Unstructured;
        doc.modelFile.titleAsZones();
        return true;
    }
    return structured.blocks.empty() || takeStructuredZones(doc, structured, path, points);
}

} // namespace

bool appendUnstructuredFile(VelmoraDoc& doc, const std::filesystem::path& path, const std::string& extension,
                            LoadMode mode) {
    if (extension != "dat" && extension != "wrl" && extension != "stl") {
        doc.ui().showMessage(message::fileTypeNotSupported);
        return false;
    }
    zRegion structured;
    zRegion_fe incoming;
    if (!readModelZones(doc, path, structured, incoming)) {
        return false;
    }
    takeZones(doc, structured, incoming);
    doc.structureKind = StructureKind::Unstructured;
    if (mode.append) {
        doc.modelFile.takeExtension("dat");
    } else {
        doc.modelFile.titleAsZones();
    }
    return true;
}

// ---- Field files ----------------------------------------------------------------------------------------------------

namespace {

bool readField(VelmoraDoc& doc, const std::filesystem::path& path) {
    FieldReadResult read;
    {
        const BusyScope busy(doc.ui());
        read = readFieldFile(path, progressTo(doc.ui()));
    }
    for (const FormatFault& fault : read.faults) {
        doc.ui().showMessage({read.loaded ? Severity::Warning : Severity::NotRead, fieldMessage(fault)});
    }
    if (read.opened) {
        doc.modelFile.noteCompleteness(path, read.loaded && !read.textBehind);
    }
    doc.fieldLoaded = read.loaded;
    if (!read.loaded) {
        return false;
    }
    doc.patches = std::move(read.patches);
    doc.fieldPatches = std::move(read.fieldPatches);
    doc.fieldTitleLine = std::move(read.titleLine);
    doc.fieldVariablesLine = std::move(read.variablesLine);
    doc.fieldCount = read.fieldCount;
    doc.checkRegularity(doc.patches);
    doc.modelFile.titleAsZones();
    return true;
}

} // namespace

// ---- By extension -----------------------------------------------------------------------------------------------------

bool loadFile(VelmoraDoc& doc, const std::filesystem::path& path, const std::string& extension, LoadMode mode,
              PointTally& points) {
    if (extension == "apt" || extension == "skl") {
        return readStructured(doc, path, extension, mode, points);
    }
    if (extension == "dat") {
        return mode.field ? readField(doc, path) : readDatGeometry(doc, path, points);
    }
    if (extension == "wrl" || extension == "stl") {
        return readSurface(doc, path);
    }
    if (extension == "grd" && !mode.append) {
        // Only the name matters: it lets boundary conditions be named for the grid.
        doc.modelFile.gridPath = doc.modelFile.currentPath;
        doc.gridNamed = true;
        doc.structureKind = StructureKind::Unstructured;
        doc.modelFile.titleAsZones();
        return true;
    }
    doc.ui().showMessage(message::fileTypeNotSupported);
    return false;
}

} // namespace velmora
