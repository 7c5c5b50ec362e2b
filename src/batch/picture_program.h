#pragma once

#include "picture_file.h"

namespace velmora {

/// Draws pictures by velmora-picture, a program of its own that needs no display, so that this one needs neither
/// OpenGL nor fonts. Empty where it is not installed, or finds nothing to draw with; that is tried once.
DrawPixels programDrawer();

} // namespace velmora
