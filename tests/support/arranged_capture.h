#pragma once

#include "DocumentState.h"

namespace velmora::test {

// The capture as a test needs it. What a user does by a command, a test does by the command; these stand for the mouse.

inline void holdPoint(DocumentState& document, std::int32_t patch, std::int32_t section, std::int32_t point) {
    document.capture.holdPoint(patch, section, point, *document.pointAt(patch, section, point));
}

inline void holdSection(DocumentState& document, std::int32_t patch, std::int32_t section) {
    const PointList* points = document.sectionAt(patch, section);
    document.capture.holdSection(patch, section, points != nullptr ? countOf(*points) : 0);
}

inline void holdLine(DocumentState& document, std::int32_t patch, std::int32_t line) {
    document.capture.holdLine(patch, line);
}

/// The state itself, for a rule that is tested beyond what any act leads to.
inline CaptureState& arranged(Capture& capture) {
    return const_cast<CaptureState&>(*capture);
}
inline CaptureState& arranged(DocumentState& document) {
    return arranged(document.capture);
}

} // namespace velmora::test
