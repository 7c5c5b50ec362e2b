#pragma once

#include <pybind11/pybind11.h>

#include "json_values.h"

namespace velmora {

/// A value as Python has it: objects as dictionaries, lists as lists. Bytes that are no UTF-8 come out as replacement
/// characters.
pybind11::object pythonValue(const Json& value);

} // namespace velmora
