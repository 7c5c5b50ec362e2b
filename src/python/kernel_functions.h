#pragma once

#include <pybind11/pybind11.h>

namespace velmora {

/// Declares the kernels that work on arrays.
void declareKernels(pybind11::module_& module);

} // namespace velmora
