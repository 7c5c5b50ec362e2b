#include "capture_address.h"

#include <algorithm>

#include "VelmoraDoc.h"

namespace velmora {

void keepCaptureInside(VelmoraDoc& document) {
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

} // namespace velmora
