#include "captured_curve.h"

#include <utility>
#include <vector>

#include "DocumentState.h"
#include "capture_address.h"
#include "carried_values.h"
#include "patch_curves.h"

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

namespace {

/// The points of a section, or of a line one of each section that reaches it.
PointList pointsOfCurve(DocumentState& doc, bool section, std::int32_t number) {
    const std::int32_t k = doc.capture->capturedPatch;
    if (section) {
        const PointList* points = doc.sectionAt(k, number);
        return points != nullptr ? *points : PointList();
    }
    PointList points;
    for (std::int32_t n = 0; doc.sectionAt(k, n) != nullptr; ++n) {
        if (const zVec<double>* point = doc.pointAt(k, n, number)) {
            points.push_back(*point);
        }
    }
    return points;
}

} // namespace

PointList capturedCurvePoints(DocumentState& doc) {
    const bool section = doc.capture->sectionCaptured;
    return section || doc.capture->lineCaptured
               ? pointsOfCurve(doc, section, section ? doc.capture->capturedSection : doc.capture->capturedLine)
               : PointList();
}

std::vector<PointList> neighbourCurves(DocumentState& doc) {
    std::vector<PointList> curves;
    if (curveIsThere(doc)) {
        const bool section = doc.capture->sectionCaptured;
        const std::int32_t number = section ? doc.capture->capturedSection : doc.capture->capturedLine;
        for (const std::int32_t beside : {number - 1, number + 1}) {
            PointList points = pointsOfCurve(doc, section, beside);
            if (!points.empty()) {
                curves.push_back(std::move(points));
            }
        }
    }
    return curves;
}

PointList curveInHand(DocumentState& doc) {
    return curveIsThere(doc) ? capturedCurvePoints(doc) : doc.lineBuffer;
}

namespace {

/// The captured line is about to get `points`: its field values go along.
void carryLineValues(DocumentState& doc, const PointList& points) {
    Patch* const field = doc.fieldOfPatch(doc.capture->capturedPatch);
    const PointList before = capturedCurvePoints(doc);
    if (field == nullptr || before.size() != field->size() || points.size() != before.size()) {
        return;
    }
    const PatchCurve line(*field, true, doc.capture->capturedLine);
    PointList values = line.points();
    carryValues(before, points, values);
    for (std::int32_t n = 0; n < line.count(); ++n) {
        line[n] = values[static_cast<std::size_t>(n)];
    }
}

} // namespace

void putCurvePoints(DocumentState& doc, const PointList& points) {
    if (doc.capture->sectionCaptured) {
        PointList& section = *doc.sectionAt(doc.capture->capturedPatch, doc.capture->capturedSection);
        if (PointList* const field = doc.fieldOfSection(doc.capture->capturedPatch, doc.capture->capturedSection)) {
            carryValues(section, points, *field);
        }
        section = points;
    } else {
        carryLineValues(doc, points);
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
