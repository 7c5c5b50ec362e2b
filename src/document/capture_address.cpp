#include "capture_address.h"

#include <algorithm>

#include "VelmoraDoc.h"

namespace velmora {

void keepCaptureInside(VelmoraDoc& document) {
    if (document.structureKind != "str" || document.patches.empty()) {
        return;
    }
    document.capturedPatch = std::min(document.capturedPatch, countOf(document.patches) - 1);
    if (document.capturedPatch < 0) {
        return;
    }
    const Patch& patch = document.patches[static_cast<std::size_t>(document.capturedPatch)];
    document.capturedSection = std::min(document.capturedSection, countOf(patch) - 1);
    document.capturedLine = std::min(document.capturedLine, lineCount(patch) - 1);
    document.capturedPointSection = std::min(document.capturedPointSection, countOf(patch) - 1);
    if (const PointList* section = document.sectionAt(document.capturedPatch, document.capturedPointSection)) {
        document.capturedPoint = std::min(document.capturedPoint, countOf(*section) - 1);
    }
}

} // namespace velmora
