#pragma once

#include <cmath>

#include "DocumentState.h"
#include "VelmoraView.h"

namespace velmora::test {

/// The pixel of the view that shows a model point.
inline PixelPoint pixelOf(VelmoraView& view, const DocumentState& document, const zVec<double>& point) {
    view.ApplyModelTransform(document.modelCenter);
    const zVec<double> at = projectPoint(point, view.modelViewMatrix, view.projectionMatrix, view.viewport).value();
    return {static_cast<int>(std::lround(at.x)), view.viewport.height - 1 - static_cast<int>(std::lround(at.y))};
}

} // namespace velmora::test
