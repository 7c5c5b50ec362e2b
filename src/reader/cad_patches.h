#pragma once

#include <cstdint>

#include <TopoDS_Face.hxx>

#include "grid_builder.h"

namespace velmora {

/// What the border of a face allows to make of it.
enum class FaceBorder {
    OnParameters, ///< it runs along the parameter lines: a patch on these
    FourSides,    ///< it is trimmed to four sides, of which one may be a point: a patch between them
    WithHoles,    ///< no patch
    OtherSides,   ///< no patch
};

struct FacePatch {
    FaceBorder border = FaceBorder::OtherSides;
    GridBlock block; ///< looks where the face looks; without a point for no patch
};

/// The points of a face as a grid.
FacePatch patchOfFace(const TopoDS_Face& face, std::int32_t sections, std::int32_t points);

} // namespace velmora
