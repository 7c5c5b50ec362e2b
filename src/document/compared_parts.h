#pragma once

#include <vector>

namespace velmora {

struct DocumentState;

/// What Compare found of the document's geometry as it stands, part by part: a distance for each point of a patch,
/// section by section, or for each node of a zone. Parts that were not compared have none; without a comparison there
/// are no parts.
std::vector<std::vector<double>> comparedParts(const DocumentState& document);

} // namespace velmora
