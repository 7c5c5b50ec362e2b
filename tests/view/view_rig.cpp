#include "view_rig.h"

#include "VelmoraDoc.h"

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

void ViewRig::updateBounds() {
    document.updateBounds();
}

void ViewRig::redraw() {
    document.redraw();
}

} // namespace velmora::test
