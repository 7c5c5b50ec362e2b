#pragma once

namespace velmora {

/// What the left mouse button does in the view. From ModePoint on a regime of the document owns the button.
enum MouseMode : int {
    ModeMeasure = -1, ///< takes the places to measure from
    ModeRotate = 0,
    ModeRotateX = 1,
    ModeRotateY = 2,
    ModeRotateZ = 3,
    ModeTranslateXY = 4,
    ModeTranslateZ = 5,
    ModeShift = 6,
    ModeScale = 7,
    ModeZoomIn = 8,
    ModeNone = 9,
    ModePoint = 10,
    ModePatch = 11,
    ModeSection = 12,
    ModeLine = 13,
};

} // namespace velmora
