#include "capture_address.h"

#include <algorithm>

#include "DocumentState.h"

namespace velmora {

void keepCaptureInside(DocumentState& document) {
    if (document.structureKind != StructureKind::Structured || document.patches.empty()) {
        return;
    }
    Capture& capture = document.capture;
    capture.renumberPatch(std::min(capture->capturedPatch, countOf(document.patches) - 1));
    if (capture->capturedPatch < 0) {
        return;
    }
    const Patch& patch = document.patches[static_cast<std::size_t>(capture->capturedPatch)];
    capture.renumberSection(std::min(capture->capturedSection, countOf(patch) - 1));
    capture.renumberLine(std::min(capture->capturedLine, lineCount(patch) - 1));
    capture.renumberPoint(std::min(capture->capturedPointSection, countOf(patch) - 1), capture->capturedPoint);
    if (const PointList* section = document.sectionAt(capture->capturedPatch, capture->capturedPointSection)) {
        capture.renumberPoint(capture->capturedPointSection, std::min(capture->capturedPoint, countOf(*section) - 1));
    }
}

void followCapturedPoint(DocumentState& document) {
    const auto position = document.positionAt(document.capture->capturedPatch, document.capture->capturedPointSection,
                                              document.capture->capturedPoint);
    if (document.capture->pointHeld() && position) {
        document.capture.placePoint(*position);
    }
}

void takeCapturedPosition(DocumentState& document, const zVec<double>& otherwise) {
    document.capture.placePoint(document
                                    .positionAt(document.capture->capturedPatch, document.capture->capturedPointSection,
                                                document.capture->capturedPoint)
                                    .value_or(otherwise));
}

} // namespace velmora
