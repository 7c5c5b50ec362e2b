#pragma once

#include <string>
#include <string_view>

#include "characters.h"
#include "letter_case.h"

namespace velmora {

/// The letter of the axis that the name of a variable means: 'X' for "X", "x [m]", "X_m", "CoordinateX", "x/c"; NUL for
/// other names.
inline char axisOf(std::string_view name) {
    constexpr std::string_view longForm = "COORDINATE";
    std::string capitals = upperCase(name);
    capitals.erase(0, capitals.starts_with(longForm) ? longForm.size() : 0);
    const bool alone = capitals.size() == 1 || (capitals.size() > 1 && !isLetter(capitals[1]) && !isDigit(capitals[1]));
    return alone && capitals[0] >= 'X' && capitals[0] <= 'Z' ? capitals[0] : '\0';
}

} // namespace velmora
