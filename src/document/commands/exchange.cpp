#include "exchange.h"

#include "VelmoraDoc.h"
#include "capture_address.h"
#include "patch_curves.h"
#include "patch_order.h"

namespace velmora {

namespace {

/// What is captured keeps its place when sections and lines change their parts.
void exchangeCapture(VelmoraDoc& doc) {
    if (doc.capture->pointHeld()) {
        doc.capture.exchangePointNumbers();
        followCapturedPoint(doc);
    }
    doc.capture.exchangeSectionAndLine();
}

} // namespace

bool exchangeSectionsAndLines(VelmoraDoc& doc) {
    if (!transposePatches(doc.patches, doc.chosenMask())) {
        return false;
    }
    exchangeCapture(doc);
    return true;
}

void turnCapturedPatch(VelmoraDoc& doc) {
    if (doc.capture->capturedPatch >= 0 && doc.capture->capturedPatch < countOf(doc.patches) &&
        (doc.blockCount < 1 || doc.inBlock(doc.capture->capturedPatch))) {
        Patch& patch = doc.patches[static_cast<std::size_t>(doc.capture->capturedPatch)];
        if (isGrid(patch)) {
            if (Patch* const field = doc.fieldOfPatch(doc.capture->capturedPatch)) {
                *field = transposed(*field);
            }
            patch = transposed(patch);
        }
    }
    exchangeCapture(doc);
}

} // namespace velmora
