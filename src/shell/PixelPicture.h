#pragma once

#include <QImage>

#include "picture_file.h"

namespace velmora {

/// Draws pictures with OpenGL, beside the screen; empty where there is none.
DrawPixels pixelDrawer();

/// What the view shows as it stands, for the clipboard; a null image when it cannot be drawn.
QImage viewImage(Session& session);

} // namespace velmora
