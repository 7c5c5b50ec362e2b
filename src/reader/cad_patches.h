#pragma once

#include <cstdint>
#include <optional>

#include <TopoDS_Face.hxx>

#include "grid_builder.h"

namespace velmora {

/// The points of a face as a grid that looks where the face looks: of one whose border lies on its parameter lines on
/// these, of another one whose border has four sides and no hole between them. None for any other face.
std::optional<GridBlock> patchOfFace(const TopoDS_Face& face, std::int32_t sections, std::int32_t points);

} // namespace velmora
