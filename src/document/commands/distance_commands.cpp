#include <algorithm>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "DialogForm.h"
#include "VelmoraDoc.h"
#include "command_rows.h"
#include "compared_parts.h"
#include "field_file.h"
#include "file_types.h"
#include "messages.h"
#include "patch_text.h"
#include "path_names.h"
#include "write_files.h"

namespace velmora {

// What Compare found, as a file: a table for other programs, or the grid with its distances as a field value.

namespace {

constexpr const char* fieldName = "distance";

/// By part the distances, see comparedParts().
using Distances = std::vector<std::vector<double>>;

// ---- A table --------------------------------------------------------------------------------------------------------

void writeRow(NumberWriter& writer, std::initializer_list<std::size_t> numbers, const zVec<double>& at,
              double distance) {
    for (const std::size_t number : numbers) {
        writer.writeInt(static_cast<std::int64_t>(number));
        writer.writeChar(',');
    }
    writer.writeText(numberText(at.x) + ',' + numberText(at.y) + ',' + numberText(at.z) + ',' + numberText(distance) +
                     '\n');
}

void writePatchRows(NumberWriter& writer, const PatchList& patches, const Distances& distances) {
    writer.writeText("patch,section,point,x,y,z,distance\n");
    for (std::size_t k = 0; k < patches.size(); ++k) {
        auto next = distances[k].begin();
        for (std::size_t n = 0; n < patches[k].size() && next != distances[k].end(); ++n) {
            for (std::size_t m = 0; m < patches[k][n].size(); ++m) {
                writeRow(writer, {k + 1, n + 1, m + 1}, patches[k][n][m], *next++);
            }
        }
    }
}

void writeZoneRows(NumberWriter& writer, const zRegion_fe& region, const Distances& distances) {
    writer.writeText("zone,node,x,y,z,distance\n");
    for (std::size_t k = 0; k < region.blocks.size(); ++k) {
        const ZoneCoordinates at = coordinatesOf(region.blocks[k]->variables);
        for (std::size_t node = 0; node < distances[k].size(); ++node) {
            writeRow(writer, {k + 1, node + 1}, {at.x->data[node], at.y->data[node], at.z->data[node]},
                     distances[k][node]);
        }
    }
}

void saveTable(VelmoraDoc& doc, const std::filesystem::path& path, const Distances& distances) {
    WriteOutcome outcome;
    {
        const BusyScope busy(doc.ui());
        outcome = saveText(path, outputPrecision, [&](NumberWriter& writer) {
            if (doc.structureKind == StructureKind::Unstructured) {
                writeZoneRows(writer, doc.feRegion, distances);
            } else {
                writePatchRows(writer, doc.patches, distances);
            }
        });
    }
    outcome.record.format = "csv";
    outcome.record.counts = {{"points", static_cast<std::int64_t>(doc.comparison()->values.size())}};
    finishWriting(doc, outcome, FileContent::Export);
}

// ---- A field value --------------------------------------------------------------------------------------------------

/// The values as the first ones of a field over the patch.
Patch fieldOver(const Patch& patch, const std::vector<double>& values) {
    Patch field = patch;
    auto next = values.begin();
    for (PointList& section : field) {
        for (zVec<double>& value : section) {
            value = {*next++, 0.0, 0.0};
        }
    }
    return field;
}

/// What was compared alone: of other patches there is no distance.
void saveField(VelmoraDoc& doc, const std::filesystem::path& path, const Distances& distances) {
    PatchList compared;
    PatchList field;
    for (std::size_t k = 0; k < distances.size(); ++k) {
        if (!distances[k].empty()) {
            compared.push_back(doc.patches[k]);
            field.push_back(fieldOver(doc.patches[k], distances[k]));
        }
    }
    WriteOutcome outcome;
    {
        const BusyScope busy(doc.ui());
        outcome = writeFieldFile(path, compared, field, 1, "TITLE = \"Distances\"",
                                 std::string(R"(VARIABLES = "X", "Y", "Z", ")") + fieldName + '"', outputPrecision,
                                 progressTo(doc.ui()));
    }
    finishWriting(doc, outcome, FileContent::Export);
}

void saveZones(VelmoraDoc& doc, const std::filesystem::path& path, const Distances& distances) {
    zRegion_fe region;
    region.title = doc.feRegion.title;
    for (std::size_t k = 0; k < distances.size(); ++k) {
        if (!distances[k].empty()) {
            auto zone = cloneZone(*doc.feRegion.blocks[k]);
            zArray<double>* const there = zone->findVariable(fieldName);
            zArray<double>& values = there != nullptr ? *there : *zone->addVariable(fieldName);
            std::copy(distances[k].begin(), distances[k].end(), values.data.begin());
            region.blocks.push_back(std::move(zone));
        }
    }
    writeZones(doc, path, {}, region, FileContent::Export);
}

// ---- The command ----------------------------------------------------------------------------------------------------

/// Writes the distances of the last comparison, which is one of the model as it stands.
void SaveDistances(VelmoraDoc& doc) {
    FileRequest request;
    request.mode = ChooserMode::SaveAs;
    request.types = {{"csv", "Table"}, flowFieldType()};
    request.proposed = doc.modelFile.chosenPath.parent_path() / "distances.csv";
    request.command = "model.saveDistances";
    const auto paths = doc.ui().chooseFiles(request);
    if (paths.empty()) {
        return;
    }
    const std::filesystem::path path = fullPath(paths.front());
    const std::string extension = extensionOf(path);
    const bool isGrid = doc.structureKind == StructureKind::Structured && doc.fileKind == FileKind::Apt;
    const bool zones = doc.structureKind == StructureKind::Unstructured;
    if (extension != "csv" && (extension != "dat" || (!isGrid && !zones))) {
        doc.ui().showMessage(message::cannotBeSavedAs(extension));
        return;
    }
    if (!mayOverwrite(doc, path, TargetFrom::Chooser, FileContent::Export)) {
        return;
    }
    const Distances distances = comparedParts(doc);
    if (extension == "csv") {
        saveTable(doc, path, distances);
    } else if (zones) {
        saveZones(doc, path, distances);
    } else {
        saveField(doc, path, distances);
    }
}

} // namespace

std::span<const Command> distanceCommands() {
    using enum MenuId;
    static const Command rows[] = {
        {.id = "model.saveDistances",
         .menuText = "Save distances...",
         .statusText = "Write the distances of Compare as a table, or as a field value of the model",
         .run = &SaveDistances,
         .off = [](const DocumentState& doc) { return doc.comparison() == nullptr; },
         .places = {{Transformations, 520}}},
    };
    return rows;
}

} // namespace velmora
