#pragma once

#include <vector>

#include "Comparison.h"
#include "NearestTree.h"
#include "PatchList.h"
#include "model_faces.h"
#include "progress.h"
#include "zRegion.h"

namespace velmora {

/// The parts (patches, or zones) of a model that `chosen` marks, one mark a part, in order. `surface` must not be
/// empty.
Comparison comparePatches(const PatchList& patches, const std::vector<bool>& chosen, const NearestTree& surface,
                          const ReportProgress& report = {});
Comparison compareZones(const zRegion_fe& region, const std::vector<bool>& chosen, const NearestTree& surface,
                        const ReportProgress& report = {});

/// The surface of a model as triangles: cells as the triangles a, b, c and a, c, d. `left` marks the patches and the
/// zones to be passed over by their numbers; one mark each at least.
TriangleMesh surfaceTriangles(const PatchList& patches, const zRegion_fe& region, const std::vector<bool>& left);

} // namespace velmora
