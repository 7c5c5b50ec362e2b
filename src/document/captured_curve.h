#pragma once

#include "PatchList.h"

namespace velmora {

struct DocumentState;

// The captured section or line as a list of points.

/// Whether what is captured as section or line stands in the model.
bool curveIsThere(DocumentState& doc);

/// The points of the captured section, or of the captured line one of each section that reaches it.
PointList capturedCurvePoints(DocumentState& doc);

/// The points of the captured section or line, else those of the line buffer.
PointList curveInHand(DocumentState& doc);

/// The section or line before the captured one and the one behind it, of its patch, as far as there are any.
std::vector<PointList> neighbourCurves(DocumentState& doc);

/// Gives the captured curve other points: a section takes them as they are, a line one for each of its own.
void putCurvePoints(DocumentState& doc, const PointList& points);

} // namespace velmora
