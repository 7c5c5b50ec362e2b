#pragma once

#include "picture_file.h"

namespace velmora {

/// Draws pictures with OpenGL, beside the screen; empty where there is none.
DrawPixels pixelDrawer();

} // namespace velmora
