#pragma once

#include "MouseMode.h"

namespace velmora {

/// What the document needs of a view. The document calls it after each change; the view reads the document itself.
class DocumentView {
public:
    DocumentView() = default;
    DocumentView(const DocumentView&) = delete;
    DocumentView& operator=(const DocumentView&) = delete;
    virtual ~DocumentView() = default;

    /// The geometry may have changed, its box stays: build the picture anew and repaint.
    virtual void onGeometryChanged() = 0;
    /// What is shown of the same geometry, or beside it, changed: build the picture anew and repaint.
    virtual void onPictureChanged() = 0;
    /// What is captured changed: show it and repaint. Called at each move of the mouse.
    virtual void onHighlightChanged() = 0;
    /// Geometry and box changed: reset mouse mode, centre, projection and transform, build the picture, repaint.
    virtual void onBoundsChanged() = 0;
    /// Takes a mode; the mode that is on already toggles back to what the active regime needs.
    virtual void setMouseMode(MouseMode mode) = 0;
    /// Takes a mode in any case.
    virtual void forceMouseMode(MouseMode mode) = 0;
    /// Back to the idle mode: ModeNone, the arrow, a free cursor.
    virtual void resetMouseMode() = 0;
    /// The coordinate plane that the screen shows: 1 for (y, z), 2 for (x, z), 3 for (x, y), 0 for an oblique view.
    virtual int principalPlane() const = 0;
};

} // namespace velmora
