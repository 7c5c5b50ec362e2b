#include "capture_address.h"

#include <algorithm>

#include "DocumentState.h"

namespace velmora {

namespace {

std::int32_t turnedRound(std::int32_t index, std::int32_t count) {
    return index >= 0 && index < count ? count - 1 - index : index;
}

} // namespace

void renumberCapture(Capture& capture, const Patch& patch, bool sections) {
    const std::int32_t count = sections ? countOf(patch) : lineCount(patch);
    if (capture->pointCaptured) {
        const std::int32_t section = capture->capturedPointSection;
        const std::int32_t point = capture->capturedPoint;
        const bool known = section >= 0 && section < countOf(patch);
        const std::int32_t points = known ? countOf(patch[static_cast<std::size_t>(section)]) : 0;
        capture.renumberPoint(sections ? turnedRound(section, count) : section,
                              sections ? point : turnedRound(point, points));
    }
    if (capture->sectionCaptured && sections) {
        capture.renumberSection(turnedRound(capture->capturedSection, count));
    } else if (capture->lineCaptured && !sections) {
        capture.renumberLine(turnedRound(capture->capturedLine, count));
    }
}

namespace {

/// Whether the sections of `a`, or the points of each, are those of `b` in the opposite order.
bool isTurnedRound(const Patch& a, const Patch& b, bool sections) {
    return sections
               ? std::equal(a.begin(), a.end(), b.rbegin(), b.rend())
               : std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const PointList& one, const PointList& other) {
                     return std::equal(one.begin(), one.end(), other.rbegin(), other.rend());
                 });
}

/// Of the section of the captured point alone, which was turned round by itself.
void turnPointBack(Capture& capture, const Patch& gone, const Patch& patch) {
    const auto n = static_cast<std::size_t>(capture->capturedPointSection);
    if (!capture->pointCaptured || capture->capturedPointSection < 0 || n >= gone.size() || n >= patch.size() ||
        gone[n] == patch[n]) {
        return;
    }
    if (std::equal(gone[n].begin(), gone[n].end(), patch[n].rbegin(), patch[n].rend())) {
        capture.renumberPoint(capture->capturedPointSection, turnedRound(capture->capturedPoint, countOf(patch[n])));
    }
}

} // namespace

void turnCaptureBack(DocumentState& document, const Patch& gone) {
    const Patch& patch = document.patches[static_cast<std::size_t>(document.capture->capturedPatch)];
    if (gone == patch) {
        return;
    }
    for (const bool sections : {false, true}) {
        if (isTurnedRound(gone, patch, sections)) {
            renumberCapture(document.capture, patch, sections);
            return;
        }
    }
    turnPointBack(document.capture, gone, patch);
}

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

void keepPointTrue(DocumentState& document) {
    if (document.capture->pointHeld()) {
        keepCaptureInside(document);
        followCapturedPoint(document);
    }
}

void takeCapturedPosition(DocumentState& document, const zVec<double>& otherwise) {
    document.capture.placePoint(document
                                    .positionAt(document.capture->capturedPatch, document.capture->capturedPointSection,
                                                document.capture->capturedPoint)
                                    .value_or(otherwise));
}

} // namespace velmora
