#pragma once

#include <cstdint>

#include "DialogForm.h"

namespace velmora {

/// How the patches of the zBlock are joined.
struct CMerge {
    std::int32_t kind = 1;     ///< 1 by sections, 2 by lines
    bool aptControl = false;   ///< shown and kept, read by nothing
    bool matching = false;     ///< appended curves take the spacing of the base's last one
    bool showDouble = false;   ///< the view shows double points after the merge
    bool deleteDouble = false; ///< shown and kept, read by nothing: field values go with their points

    bool isApt = true; ///< set by the command before the dialog opens: the model is a regular grid
};

/// The form over `values`, which must outlive it.
DialogForm describe(CMerge& values);

} // namespace velmora
