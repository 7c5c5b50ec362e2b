#include "VelmoraDoc.h"

#include <algorithm>
#include <cmath>

#include "DialogValues.h"
#include "UserInterface.h"
#include "command_rows.h"
#include "command_rules.h"
#include "patch_quality.h"
#include "show_dialog.h"

namespace velmora {

void VelmoraDoc::FitToWindow() {
    updateBounds();
}

namespace {

void ViewFeatures(VelmoraDoc& doc) {
    doc.dialogs->features.showBlockOnly = doc.showBlockOnly;
    doc.dialogs->features.showBuffer = doc.showBuffer;
    doc.dialogs->features.showZBlockMarkers = doc.showZBlockMarkers;
    doc.dialogs->features.blockEmpty = doc.blockCount == 0;
    doc.dialogs->features.unstructured = doc.structureKind == StructureKind::Unstructured;
    if (!showDialog(doc.ui(), doc.dialogs->features)) {
        return;
    }
    doc.showBlockOnly = doc.dialogs->features.showBlockOnly;
    doc.showFirstPoints = doc.dialogs->features.showFirstPoints;
    doc.showDoublePoints = doc.dialogs->merge.showDouble = doc.dialogs->features.showDoublePoints;
    doc.showBuffer = doc.dialogs->features.showBuffer;
    doc.showZBlockMarkers = doc.dialogs->features.showZBlockMarkers;
    doc.redrawPicture();
}

bool hasReportValue(const VelmoraDoc& doc, std::int32_t index) {
    const ModelFaces model = modelFaces(doc.patches, {});
    const GridValue kind = gridValueKinds[static_cast<std::size_t>(index)];
    for (std::size_t k = 0; k < doc.patches.size(); ++k) {
        const std::vector<double> values = gridValues(kind, doc.patches[k], k, model);
        if (std::any_of(values.begin(), values.end(), [](double value) { return std::isfinite(value); })) {
            return true;
        }
    }
    return false;
}

/// Why the surface does not show the value that was chosen; empty when it does.
std::string whyWithoutColours(const VelmoraDoc& doc) {
    const CColours& chosen = doc.dialogs->colours;
    if (!chosen.isOn()) {
        return "";
    }
    if (doc.structureKind == StructureKind::Structured && doc.fileKind == FileKind::Skl) {
        return "Lines have no surface to colour";
    }
    if (chosen.ofCompare() && doc.comparison() == nullptr) {
        return "No distances to show: Compare was not run on this geometry";
    }
    if (chosen.ofField() && (!doc.fieldLoaded || chosen.fieldIndex() >= doc.fieldCount)) {
        return "The model has no such field value";
    }
    if (chosen.ofReport() && doc.structureKind != StructureKind::Structured) {
        return "Triangles have no cells to show a value of";
    }
    if (doc.structureKind == StructureKind::Structured && !hasCell(doc.patches)) {
        return "The model has no cell to colour";
    }
    if (chosen.ofReport() && !hasReportValue(doc, chosen.reportIndex())) {
        return "No cell of the model has such a value";
    }
    return doc.surfaceMode ? "" : "Colours show with Surface on";
}

/// Colours the surface by the distances of the last Compare or by a field value.
void ColourByValue(VelmoraDoc& doc) {
    if (showDialog(doc.ui(), doc.dialogs->colours)) {
        doc.redrawPicture();
        if (const std::string text = whyWithoutColours(doc); !text.empty()) {
            doc.ShowStatus(text);
        }
    }
}

} // namespace

void VelmoraDoc::ToggleBlockOnly() {
    showBlockOnly = !showBlockOnly;
    redrawPicture();
}

void VelmoraDoc::toggleSurface() {
    surfaceMode = !surfaceMode;
    redrawPicture();
}

bool VelmoraDoc::askViewing(dlgViewing& values) {
    dialogs->viewing = values;
    const bool agreed = showDialog(ui_, dialogs->viewing);
    values = dialogs->viewing;
    return agreed;
}

std::span<const Command> viewCommands() {
    using namespace rules;
    using enum MenuId;
    static const Command rows[] = {
        {.id = "block.only",
         .menuText = "Block only",
         .statusText = "Show only patches included into zBlock",
         .toolTip = "Block only",
         .icon = true,
         .run = &VelmoraDoc::ToggleBlockOnly,
         .off = noBlock,
         .checked = [](Doc d) { return d.showBlockOnly; },
         .places = {{GeneralBar, 1010}}},
        {.id = "view.fit",
         .menuText = "&Fit to Window",
         .statusText = "Fit image to the window of pane",
         .toolTip = "Fit image",
         .accelerator = "Home",
         .icon = true,
         .run = &VelmoraDoc::FitToWindow,
         .off = emptyModel,
         .places = {{View, 440}, {GeneralBar, 840}}},
        {.id = "view.colourByValue",
         .menuText = "Co&lour by Value...",
         .statusText = "Show distances of Compare, a field value or the quality of cells as colours on the surface",
         .run = &ColourByValue,
         .off = emptyModel,
         .places = {{View, 540}}},
        {.id = "view.features",
         .menuText = "&View features...",
         .statusText = "Choose what is shown beside the model",
         .run = &ViewFeatures,
         .places = {{Options, 110}}},
    };
    return rows;
}

} // namespace velmora
