#pragma once

#include <string_view>

namespace velmora {

/// Converts what a stream in the C locale has collected for a floating-point number: correctly rounded; one too
/// small for a double gives a zero of its sign. False when the token as a whole is no number, `value` then keeps
/// what it had, and when it is too large, `value` then becomes the limit.
bool convertDouble(std::string_view token, double& value);

} // namespace velmora
