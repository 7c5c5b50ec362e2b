#pragma once

#include "PatchList.h"
#include "zVec.h"

namespace velmora {

class Capture;
struct DocumentState;

/// What is captured in `patch` has another number when the order of its sections, or of their points, is turned round.
void renumberCapture(Capture& capture, const Patch& patch, bool sections);

/// The captured patch has taken the place of `gone`: where that held the same points in the opposite order, what is
/// captured stays with its points.
void turnCaptureBack(DocumentState& document, const Patch& gone);

/// After a structured model became smaller: captured numbers past its ends become the last ones.
void keepCaptureInside(DocumentState& document);

/// What is known of the captured point's place follows the model.
void followCapturedPoint(DocumentState& document);

/// A point that is held is one of the model, which has changed, and stands where the model says.
void keepPointTrue(DocumentState& document);

/// The captured point stands where the model says; at `otherwise` when its numbers name none.
void takeCapturedPosition(DocumentState& document, const zVec<double>& otherwise);

} // namespace velmora
