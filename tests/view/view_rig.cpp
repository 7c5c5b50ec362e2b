#include "view_rig.h"

#include "VelmoraDoc.h"
#include "command_table.h"

namespace velmora::test {

ViewRig::ViewRig()
    : owned(std::make_unique<VelmoraDoc>(ui, ".")), document(*owned), doc(*owned), view(document, surface) {
    document.onNewDocument();
    view.OnSize(600, 600);
    ui.transcript.clear();
}

ViewRig::~ViewRig() = default;

void ViewRig::show(const PatchList& patches) {
    doc.patches = patches;
    doc.checkRegularity(doc.patches);
    document.updateBounds();
    paint();
    ui.transcript.clear();
    surface.calls.clear();
    surface.clears.clear();
    surface.cursors.clear();
}

void ViewRig::open(const std::filesystem::path& path) {
    document.onOpenDocument(path);
}

void ViewRig::updateBounds() {
    document.updateBounds();
}

void ViewRig::redraw() {
    document.redraw();
}

void ViewRig::redrawPicture() {
    document.redrawPicture();
}

void ViewRig::toggleSurface() {
    document.toggleSurface();
}

void ViewRig::call(const std::string& id) {
    const Command* command = findCommand(id);
    ASSERT_NE(command, nullptr) << id;
    ASSERT_TRUE(command->run) << id;
    document.runCommand(command->run);
}

} // namespace velmora::test
