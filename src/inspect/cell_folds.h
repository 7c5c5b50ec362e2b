#pragma once

#include <vector>

#include "EdgeTable.h"
#include "model_faces.h"

namespace velmora {

/// For each face whether it is a folded cell: its two triangles point against each other, or its normal (the sum of
/// theirs) and that of a cell of the same patch that shares an edge with it do. Triangles are never marked.
std::vector<bool> foldedCells(const ModelFaces& model, const EdgeTable& edges);

} // namespace velmora
