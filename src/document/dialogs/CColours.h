#pragma once

#include <cstdint>

#include "DialogForm.h"

namespace velmora {

/// The value by which a surface is coloured, and how values become colours.
struct CColours {
    std::int32_t quantity = 1; ///< 1 none, 2 the distances of the last Compare, 3 to 5 a field value
    std::int32_t bands = 10;   ///< 2 to 20
    bool automatic = true;     ///< the range is that of the values
    double least = 0.0;        ///< else this one
    double most = 1.0;

    bool isOn() const { return quantity > 1; }
    bool ofCompare() const { return quantity == 2; }
    /// The field value, from 0; none below.
    std::int32_t fieldIndex() const { return quantity - 3; }
};

/// The form over `values`, which must outlive it.
DialogForm describe(CColours& values);

} // namespace velmora
