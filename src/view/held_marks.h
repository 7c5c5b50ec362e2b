#pragma once

#include "DrawList.h"
#include "Pick.h"

namespace velmora {

struct DocumentState;

/// What is held beside or on the model, to be drawn over its surface: the captured section or line with its points, the
/// outline of a captured patch and of those in the zBlock, the buffer, the marker pairs and the markers. What the
/// switches hide stays hidden.
DrawList heldMarks(const DocumentState& document);

/// The captured point, as heldMarks would show it: it may move with each move of the mouse.
void addCapturedPoint(DrawList& list, const DocumentState& document);

/// What a click would take: the point, or the section, line or outline of the patch.
void addCandidate(DrawList& list, const DocumentState& document, const Pick& pick);

/// What a click would take, in words, with its numbers from 1.
std::string candidateText(const DocumentState& document, const Pick& pick);

} // namespace velmora
