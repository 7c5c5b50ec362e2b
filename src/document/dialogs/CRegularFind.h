#pragma once

#include <cstdint>

#include "DialogForm.h"
#include "PatchList.h"

namespace velmora {

/// A point by its numbers from 1.
struct CRegularFind {
    std::int32_t K = 1;
    std::int32_t N = 1;
    std::int32_t M = 1;
    std::int32_t Kmax = 0;
    std::int32_t Nmax = 0;
    std::int32_t Mmax = 0;

    // What the caller's regime fixes.
    bool patchHeld = false;
    bool sectionHeld = false;
    bool lineHeld = false;
};

/// The form over `values`, counting in `list`; both must outlive it. A number that is typed is brought into its range
/// as the field is left, and never refused. Without a list the numbers stay as they are.
DialogForm describe(CRegularFind& values, const PatchList* list = nullptr);

} // namespace velmora
