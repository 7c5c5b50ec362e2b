#pragma once

#include <QCursor>

#include "MouseMode.h"

namespace velmora {

/// The cursor of a mouse mode; ModeNone has the standard arrow.
QCursor cursorOf(MouseMode mode);

} // namespace velmora
