#include "load_files.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "apt.h"
#include "dat_geometry.h"
#include "field_file.h"
#include "format_outcome.h"
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
    FileRead record;
    std::vector<std::string> messages;
};

StructuredRead readByExtension(const std::filesystem::path& path, const std::string& extension, AptDetail detail,
                               PatchList& patches, const ReportProgress& report) {
    StructuredRead read;
    if (extension == "apt") {
        AptReadResult result = readApt(path, patches, report, detail);
        read = {result.opened,
                result.firstPassEnded || result.endReached,
                result.pointsInFile,
                result.pointsKept,
                std::move(result.record),
                {}};
        for (const FormatFault& fault : result.faults) {
            read.messages.push_back(aptMessage(fault));
        }
    } else {
        SklReadResult result = readSkl(path, patches, report);
        read = {result.opened, result.endReached, result.pointsRead, result.pointsRead, std::move(result.record), {}};
        for (const FormatFault& fault : result.faults) {
            read.messages.push_back(sklMessage(fault));
        }
    }
    return read;
}

/// The file was read: the user interface hears of it, and the tally takes what was lost.
void tell(UserInterface& ui, const FileRead& record, LoadTally& tally) {
    ui.tellFileRead(record);
    if (!record.thinned || record.changed.size() > 1) { // that of thinning is told by the points
        tally.losses.insert(tally.losses.end(), record.changed.begin(), record.changed.end());
    }
    tally.losses.insert(tally.losses.end(), record.reasons.begin(), record.reasons.end());
}

/// The same of a file that is in the model from here on, which remembers it.
void remember(VelmoraDoc& doc, const FileRead& record, LoadMode mode) {
    const bool alone = !mode.append && !mode.joins;
    doc.modelFile.memory.noteRead(record, alone);
    if (!mode.append) {
        doc.modelFile.openedPath = alone ? record.path : std::filesystem::path();
    }
}

/// Of a file that gave no model nothing was kept, whatever its headers tell of.
void keepNothing(FileRead& record) {
    for (auto& [kind, count] : record.kept) {
        count = 0;
    }
}

bool readStructured(VelmoraDoc& doc, const std::filesystem::path& path, const std::string& extension, LoadMode mode,
                    LoadTally& tally) {
    StructuredRead read;
    PatchList incoming;
    {
        const BusyScope busy(doc.ui());
        read = readByExtension(path, extension, AptDetail::Thinned, incoming, progressTo(doc.ui()));
    }
    // Compartments without a section make no model.
    const bool gaveModel = regularityOf(incoming) != Regularity::Undecided;
    const bool failed = !read.messages.empty();
    if (!gaveModel) {
        keepNothing(read.record);
    }
    if (read.opened) {
        tell(doc.ui(), read.record, tally);
    }
    if (gaveModel) {
        remember(doc, read.record, mode);
        tally.pointsRead += read.pointsInFile;
        tally.pointsKept += read.pointsKept;
        std::move(incoming.begin(), incoming.end(), std::back_inserter(doc.patches));
        if (!mode.append && read.namesFile) {
            doc.modelFile.takeExtension(extension);
        }
    }
    // What stood in the file before its fault is in the model: the fault is a loss then.
    const Severity severity = gaveModel ? Severity::Warning : Severity::NotRead;
    for (const std::string& text : read.messages) {
        doc.ui().showMessage({severity, text});
        if (gaveModel) { // else what stood before keeps its title
            doc.modelFile.setTitle("Wrong");
        }
    }
    if (!gaveModel) {
        return false;
    }
    doc.modelFile.titleWrong = failed;
    if (failed) {
        doc.checkRegularity(doc.patches);
        return false;
    }
    doc.retitle();
    return true;
}

// ---- Zones ----------------------------------------------------------------------------------------------------------

/// What the reader of zones has to tell; the messages are shown once the wait cursor is gone.
struct ZonesRead {
    bool whole = false;
    FileRead record;
    std::vector<std::string> messages;
};

ZonesRead readZonesQuietly(UserInterface& ui, const std::filesystem::path& path, zRegion& structured,
                           zRegion_fe& unstructured) {
    ZonesRead read;
    const BusyScope busy(ui);
    read.whole = readGeometry(
        path, noTranspose, structured, unstructured,
        [&read](const std::string& text) { read.messages.push_back(text); }, progressTo(ui), &read.record);
    return read;
}

/// Tells of the file, unless it could not be opened, and then shows the messages.
void show(UserInterface& ui, const ZonesRead& read, LoadTally& tally) {
    if (!read.record.path.empty()) {
        tell(ui, read.record, tally);
    }
    for (const std::string& text : read.messages) {
        ui.showMessage({Severity::NotRead, text});
    }
}

} // namespace

bool readPatches(VelmoraDoc& doc, const std::filesystem::path& path, const std::string& extension, PatchList& patches,
                 LoadTally& tally) {
    StructuredRead read;
    {
        const BusyScope busy(doc.ui());
        read = readByExtension(path, extension, AptDetail::Whole, patches, progressTo(doc.ui()));
    }
    if (read.opened) {
        tell(doc.ui(), read.record, tally);
    }
    for (const std::string& text : read.messages) {
        doc.ui().showMessage({Severity::NotRead, text});
    }
    return read.messages.empty();
}

bool readZones(VelmoraDoc& doc, const std::filesystem::path& path, zRegion& structured, zRegion_fe& unstructured,
               LoadTally& tally) {
    const ZonesRead read = readZonesQuietly(doc.ui(), path, structured, unstructured);
    show(doc.ui(), read, tally);
    return read.whole;
}

namespace {

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

/// Zones that were read become part of the model, which is one of triangles from here on. False when there are none: a
/// binary STL file, say, of which the text reader takes nothing, must not leave an empty model over it, and grids
/// without a point do not give a model of triangles their name.
bool takeModelZones(VelmoraDoc& doc, ZonesRead& read, zRegion& structured, zRegion_fe& incoming, LoadMode mode) {
    if (incoming.blocks.empty()) {
        regionToSurface(structured, incoming);
        structured.blocks.clear();
    }
    if (incoming.blocks.empty()) {
        return false;
    }
    remember(doc, read.record, mode);
    takeZones(doc, structured, incoming);
    doc.structureKind = StructureKind::Unstructured;
    return true;
}

bool readSurface(VelmoraDoc& doc, const std::filesystem::path& path, LoadMode mode, LoadTally& tally) {
    zRegion structured;
    zRegion_fe incoming;
    ZonesRead read = readZonesQuietly(doc.ui(), path, structured, incoming);
    show(doc.ui(), read, tally);
    if (!read.whole || !takeModelZones(doc, read, structured, incoming, mode)) {
        return false;
    }
    doc.modelFile.titleAsZones();
    return true;
}

/// What became of the zones' points goes into the record.
void noteZones(const ZonePatches& zones, FileRead& record) {
    if (zones.refusal != ZoneRefusal::None) {
        record.losesGeometry(std::string(messageOf(zones.refusal)));
    }
    countOf(record.kept, "zones") = countOf(zones.patches);
    countOf(record.kept, "points") = zones.pointsKept;
    noteThinning(record, zones.thinned, zones.cutAtLimit);
    if (zones.numbersReplaced > 0) {
        record.alters("Coordinates that stand for missing ones and were set to 0: " +
                      std::to_string(zones.numbersReplaced));
    }
}

bool takeStructuredZones(VelmoraDoc& doc, ZonePatches& zones, const FileRead& record, LoadMode mode, LoadTally& tally) {
    if (zones.patches.empty()) {
        return false; // grids without a point make no model
    }
    remember(doc, record, mode);
    std::move(zones.patches.begin(), zones.patches.end(), std::back_inserter(doc.patches));
    tally.pointsRead += zones.pointsRead;
    tally.pointsKept += zones.pointsKept;
    doc.structureKind = StructureKind::Structured;
    doc.modelFile.titleWrong = false;
    doc.retitle();
    return true;
}

bool readDatGeometry(VelmoraDoc& doc, const std::filesystem::path& path, LoadMode mode, LoadTally& tally) {
    zRegion structured;
    zRegion_fe incoming;
    ZonesRead read = readZonesQuietly(doc.ui(), path, structured, incoming);
    if (!read.whole || !incoming.blocks.empty()) {
        show(doc.ui(), read, tally);
        if (!read.whole || !takeModelZones(doc, read, structured, incoming, mode)) {
            return false;
        }
        doc.modelFile.titleAsZones();
        return true;
    }
    ZonePatches zones = zonesToPatches(structured, ZoneDetail::Thinned);
    noteZones(zones, read.record);
    if (zones.refusal != ZoneRefusal::None) {
        read.messages.emplace_back(messageOf(zones.refusal));
    }
    show(doc.ui(), read, tally);
    return takeStructuredZones(doc, zones, read.record, mode, tally);
}

} // namespace

bool appendUnstructuredFile(VelmoraDoc& doc, const std::filesystem::path& path, const std::string& extension,
                            LoadMode mode, LoadTally& tally) {
    if (extension != "dat" && extension != "wrl" && extension != "stl") {
        doc.ui().showMessage(message::fileTypeNotSupported);
        return false;
    }
    zRegion structured;
    zRegion_fe incoming;
    ZonesRead read = readZonesQuietly(doc.ui(), path, structured, incoming);
    show(doc.ui(), read, tally);
    if (!read.whole || !takeModelZones(doc, read, structured, incoming, mode)) {
        return false;
    }
    if (mode.append) {
        doc.modelFile.takeExtension("dat");
    } else {
        doc.modelFile.titleAsZones();
    }
    return true;
}

// ---- Field files ----------------------------------------------------------------------------------------------------

namespace {

bool readField(VelmoraDoc& doc, const std::filesystem::path& path, LoadMode mode, LoadTally& tally) {
    FieldReadResult read;
    {
        const BusyScope busy(doc.ui());
        read = readFieldFile(path, progressTo(doc.ui()));
    }
    if (read.opened) {
        tell(doc.ui(), read.record, tally);
    }
    for (const FormatFault& fault : read.faults) {
        doc.ui().showMessage({read.loaded ? Severity::Warning : Severity::NotRead, fieldMessage(fault)});
    }
    doc.fieldLoaded = read.loaded;
    if (!read.loaded || regularityOf(read.patches) == Regularity::Undecided) {
        return false;
    }
    remember(doc, read.record, mode);
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
              LoadTally& tally) {
    if (extension == "apt" || extension == "skl") {
        return readStructured(doc, path, extension, mode, tally);
    }
    if (extension == "dat") {
        return mode.field ? readField(doc, path, mode, tally) : readDatGeometry(doc, path, mode, tally);
    }
    if (extension == "wrl" || extension == "stl") {
        return readSurface(doc, path, mode, tally);
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

// ---- What is lost -----------------------------------------------------------------------------------------------------

std::string lossText(const std::vector<std::string>& losses) {
    if (losses.empty()) {
        return {};
    }
    const std::size_t more = losses.size() - 1;
    return losses.front() + (more > 0 ? "; and " + std::to_string(more) + " more" : "");
}

std::string lossText(const FileRead& record) {
    std::vector<std::string> losses = record.changed;
    losses.insert(losses.end(), record.reasons.begin(), record.reasons.end());
    return lossText(losses);
}

void showLosses(VelmoraDoc& doc, const LoadTally& tally) {
    if (!tally.losses.empty()) {
        doc.ShowStatus(lossText(tally.losses));
    }
}

} // namespace velmora
