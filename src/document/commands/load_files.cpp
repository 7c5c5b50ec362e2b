#include <algorithm>

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

// One file goes to the reader of its extension; what came of it sets kinds, title and path.

namespace {

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

} // namespace

bool VelmoraDoc::loadFile(const std::filesystem::path& path, const std::string& extension) {
    if (extension == "apt" || extension == "skl") {
        return readStructured(path, extension);
    }
    if (extension == "dat") {
        return fieldOpening ? readField(path) : readDatGeometry(path);
    }
    if (extension == "wrl" || extension == "stl") {
        return readSurface(path);
    }
    if (extension == "grd" && !appendMode) {
        // Only the name matters: it lets boundary conditions be named for the grid.
        gridPath = currentPath;
        gridNamed = true;
        structureKind = "uns";
        titleAsZones();
        return true;
    }
    ui_.showMessage(message::fileTypeNotSupported);
    return false;
}

bool VelmoraDoc::readStructured(const std::filesystem::path& path, const std::string& extension) {
    const std::size_t patchesBefore = patches.size();
    StructuredRead read;
    {
        const BusyScope busy(ui_);
        read = readByExtension(path, extension, patches, progressTo(ui_));
    }
    const bool failed = !read.messages.empty();
    pointsRead_ += read.pointsInFile;
    pointsKept_ += read.pointsKept;
    if (read.opened) {
        noteCompleteness(path, !failed && !read.textBehind && read.pointsKept >= read.pointsInFile);
    }
    if (!appendMode && read.namesFile) {
        takeExtension(extension);
    }
    // What stood in the file before its fault is in the model: the fault is a loss then.
    const Severity severity = patches.size() > patchesBefore ? Severity::Warning : Severity::NotRead;
    for (const std::string& text : read.messages) {
        ui_.showMessage({severity, text});
        if (read.opened) {
            setTitle("Wrong");
        }
    }
    if (!read.opened) {
        return false;
    }
    if (failed) {
        titleWrong_ = true;
        checkRegularity(patches);
        return false;
    }
    titleWrong_ = false;
    retitle();
    return true;
}

void VelmoraDoc::noteCompleteness(const std::filesystem::path& path, bool complete) {
    const auto same = [&path](const std::filesystem::path& other) { return sameFile(other, path); };
    incompleteFiles_.erase(std::remove_if(incompleteFiles_.begin(), incompleteFiles_.end(), same),
                           incompleteFiles_.end());
    if (!complete) {
        incompleteFiles_.push_back(path);
    }
}

// ---- Zones ----------------------------------------------------------------------------------------------------------

bool VelmoraDoc::readZones(const std::filesystem::path& path, zRegion& structured, zRegion_fe& unstructured) {
    // What the reader has to tell is shown once the wait cursor is gone.
    std::vector<std::string> told;
    bool read = false;
    {
        const BusyScope busy(ui_);
        read = readGeometry(
            path, readerOption, structured, unstructured, [&told](const std::string& text) { told.push_back(text); },
            progressTo(ui_));
    }
    for (const std::string& text : told) {
        ui_.showMessage({Severity::NotRead, text});
    }
    return read;
}

/// The same for a file that gives the model zones: of one that fails on the way none is taken.
bool VelmoraDoc::readModelZones(const std::filesystem::path& path, zRegion& structured, zRegion_fe& unstructured) {
    const bool read = readZones(path, structured, unstructured);
    noteCompleteness(path, read);
    return read;
}

/// The title of a model of zones is that of the file they would go to.
void VelmoraDoc::titleAsZones() {
    titleWrong_ = false;
    currentDirectory = directoryOf(chosenPath);
    setTitle(stemOf(chosenPath) + ".dat");
}

bool VelmoraDoc::readSurface(const std::filesystem::path& path) {
    zRegion structured;
    zRegion_fe incoming;
    if (!readModelZones(path, structured, incoming)) {
        return false;
    }
    takeZones(structured, incoming);
    structureKind = "uns";
    titleAsZones();
    return true;
}

/// Grids among the zones, and patches that are there, become triangles behind `incoming`; all of it goes behind the
/// zones of the model.
void VelmoraDoc::takeZones(zRegion& structured, zRegion_fe& incoming) {
    if (!patches.empty()) {
        patchesToRegion(patches, structured);
        patches.clear();
    }
    regionToSurface(structured, incoming);
    if (feRegion.blocks.empty()) {
        feRegion.title = incoming.title;
    }
    std::move(incoming.blocks.begin(), incoming.blocks.end(), std::back_inserter(feRegion.blocks));
}

bool VelmoraDoc::readDatGeometry(const std::filesystem::path& path) {
    zRegion structured;
    zRegion_fe incoming;
    if (!readModelZones(path, structured, incoming)) {
        return false;
    }
    if (!incoming.blocks.empty()) {
        takeZones(structured, incoming);
        structureKind = "uns";
        titleAsZones();
        return true;
    }
    return structured.blocks.empty() || takeStructuredZones(structured, path);
}

bool VelmoraDoc::takeStructuredZones(const zRegion& structured, const std::filesystem::path& path) {
    ZonePatches zones = zonesToPatches(structured, ZoneDetail::Thinned);
    if (zones.refusal != ZoneRefusal::None) {
        ui_.showMessage({Severity::NotRead, std::string(messageOf(zones.refusal))});
        noteCompleteness(path, false);
        setKinds("non", fileKind.c_str(), "non");
        // A model to which the file was to be appended is still there.
        checkRegularity(patches);
        return false;
    }
    if (zones.patches.empty()) {
        return false; // grids without a point make no model
    }
    std::move(zones.patches.begin(), zones.patches.end(), std::back_inserter(patches));
    pointsRead_ += zones.pointsRead;
    pointsKept_ += zones.pointsKept;
    noteCompleteness(path, zones.pointsKept >= zones.pointsRead);
    structureKind = "str";
    titleWrong_ = false;
    retitle();
    return true;
}

bool VelmoraDoc::appendUnstructuredFile(const std::filesystem::path& path, const std::string& extension) {
    if (extension != "dat" && extension != "wrl" && extension != "stl") {
        ui_.showMessage(message::fileTypeNotSupported);
        return false;
    }
    zRegion structured;
    zRegion_fe incoming;
    if (!readModelZones(path, structured, incoming)) {
        return false;
    }
    takeZones(structured, incoming);
    structureKind = "uns";
    if (appendMode) {
        takeExtension("dat");
    } else {
        titleAsZones();
    }
    return true;
}

// ---- Field files ----------------------------------------------------------------------------------------------------

bool VelmoraDoc::readField(const std::filesystem::path& path) {
    FieldReadResult read;
    {
        const BusyScope busy(ui_);
        read = readFieldFile(path, progressTo(ui_));
    }
    for (const FormatFault& fault : read.faults) {
        ui_.showMessage({read.loaded ? Severity::Warning : Severity::NotRead, fieldMessage(fault)});
    }
    if (read.opened) {
        noteCompleteness(path, read.loaded && !read.textBehind);
    }
    fieldLoaded = read.loaded;
    if (!read.loaded) {
        return false;
    }
    patches = std::move(read.patches);
    fieldPatches = std::move(read.fieldPatches);
    fieldTitleLine = std::move(read.titleLine);
    fieldVariablesLine = std::move(read.variablesLine);
    fieldCount = read.fieldCount;
    checkRegularity(patches);
    titleAsZones();
    return true;
}

} // namespace velmora
