#pragma once

#include <cstddef>

#include "DrawList.h"

namespace velmora {

struct DocumentState;

/// The picture of the document as list `number` (see listNumberFor) with about `vertices` vertices, for a camera that
/// moves: of a patch each so many sections and points, the last ones always; of a zone triangles between the middles of
/// small cubes of nodes. It has neither overlays nor accents; parts keep their colours and the side they show.
DrawList buildCoarseList(const DocumentState& document, int number, std::size_t vertices);

} // namespace velmora
