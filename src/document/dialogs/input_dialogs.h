#pragma once

#include <cstdint>
#include <vector>

#include "DialogForm.h"

namespace velmora {

/// A patch by its number from 1, to join the zBlock.
struct CInputPatch {
    std::int32_t number = 1;
    std::int32_t maximum = 1; ///< patches or zones of the model
};

/// A section by its numbers from 1.
struct CInputSection {
    std::int32_t patch = 1;
    std::int32_t maximumPatches = 1;
    std::int32_t section = 1;
    std::int32_t maximumSections = 1;
};

/// A line by its numbers from 1.
struct CInputLine {
    std::int32_t patch = 1;
    std::int32_t maximumPatches = 1;
    std::int32_t line = 1;
    std::int32_t maximumLines = 1;
};

/// What the model says to the input dialogs.
struct InputContext {
    std::vector<std::int32_t> curveCounts; ///< per patch: its sections, or its lines
    std::vector<std::int32_t> block;       ///< the zBlock's patches from 0; empty: any patch will do
};

/// The form over `values`, which must outlive it. A number above the maximum is lowered, on opening and on OK.
DialogForm describe(CInputPatch& values);

/// The forms over `values`, which must outlive them. OK corrects a wrong number, says so and stays open.
DialogForm describe(CInputSection& values, InputContext context = {});
DialogForm describe(CInputLine& values, InputContext context = {});

} // namespace velmora
