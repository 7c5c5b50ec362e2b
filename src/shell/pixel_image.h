#pragma once

#include <QImage>

#include "picture.h"

namespace velmora {

/// The pixels that OpenGL makes of the frame; a null image when it does not. Needs a context that is current.
QImage pixelImage(const SceneFrame& frame, const PictureSettings& settings);

} // namespace velmora
