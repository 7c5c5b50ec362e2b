#pragma once

#include "zVec.h"

namespace velmora {

struct DocumentState;

/// After a structured model became smaller: captured numbers past its ends become the last ones.
void keepCaptureInside(DocumentState& document);

/// What is known of the captured point's place follows the model.
void followCapturedPoint(DocumentState& document);

/// The captured point stands where the model says; at `otherwise` when its numbers name none.
void takeCapturedPosition(DocumentState& document, const zVec<double>& otherwise);

} // namespace velmora
