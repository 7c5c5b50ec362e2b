#pragma once

#include "DialogForm.h"

namespace velmora {

/// Which coordinates of a curve take a value, and the values.
struct CPrescribe {
    bool useX = false;
    double x = 0.0;
    bool useY = false;
    double y = 0.0;
    bool useZ = false;
    double z = 0.0;
};

/// The form over `values`, which must outlive it.
DialogForm describe(CPrescribe& values);

} // namespace velmora
