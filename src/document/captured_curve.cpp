#include "captured_curve.h"

#include "DocumentState.h"
#include "capture_address.h"

namespace velmora {

bool curveIsThere(DocumentState& doc) {
    if (doc.structureKind != StructureKind::Structured) {
        return false;
    }
    return doc.capture->sectionCaptured
               ? doc.sectionAt(doc.capture->capturedPatch, doc.capture->capturedSection) != nullptr
               : doc.capture->lineCaptured &&
                     doc.pointAt(doc.capture->capturedPatch, 0, doc.capture->capturedLine) != nullptr;
}

PointList capturedCurvePoints(DocumentState& doc) {
    if (doc.capture->sectionCaptured) {
        const PointList* section = doc.sectionAt(doc.capture->capturedPatch, doc.capture->capturedSection);
        return section != nullptr ? *section : PointList();
    }
    PointList points;
    if (doc.capture->lineCaptured && doc.capture->capturedPatch >= 0 &&
        doc.capture->capturedPatch < countOf(doc.patches)) {
        const std::int32_t sections = countOf(doc.patches[static_cast<std::size_t>(doc.capture->capturedPatch)]);
        for (std::int32_t n = 0; n < sections; ++n) {
            if (const zVec<double>* point = doc.pointAt(doc.capture->capturedPatch, n, doc.capture->capturedLine)) {
                points.push_back(*point);
            }
        }
    }
    return points;
}

PointList curveInHand(DocumentState& doc) {
    return curveIsThere(doc) ? capturedCurvePoints(doc) : doc.lineBuffer;
}

void putCurvePoints(DocumentState& doc, const PointList& points) {
    if (doc.capture->sectionCaptured) {
        *doc.sectionAt(doc.capture->capturedPatch, doc.capture->capturedSection) = points;
    } else {
        auto position = points.begin();
        for (std::int32_t n = 0; doc.sectionAt(doc.capture->capturedPatch, n) != nullptr && position != points.end();
             ++n) {
            if (zVec<double>* point = doc.pointAt(doc.capture->capturedPatch, n, doc.capture->capturedLine)) {
                *point = *position;
                ++position;
            }
        }
    }
    keepCaptureInside(doc);
    followCapturedPoint(doc);
}

} // namespace velmora
