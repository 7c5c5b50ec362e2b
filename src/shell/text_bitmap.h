#pragma once

#include <string>

#include "GlRenderer.h"

class QFont;

namespace velmora {

/// The text in `font`, `scale` times as large, one pixel a bit, as the renderer takes it. Without anti-aliasing.
TextBitmap textBitmap(const std::string& text, const QFont& font, double scale = 1.0);

} // namespace velmora
