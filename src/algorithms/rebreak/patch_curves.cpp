#include "patch_curves.h"

#include "patch_order.h"

namespace velmora {

bool isGrid(const Patch& patch) {
    return lineCount(patch) > 0 && hasEqualSections(patch);
}

} // namespace velmora
