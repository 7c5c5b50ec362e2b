#include "mode_cursors.h"

#include <QIcon>
#include <QPixmap>

namespace velmora {

namespace {

constexpr int cursorSize = 24;

struct CursorShape {
    const char* name; ///< of the picture
    int hotX;         ///< the pixel that points
    int hotY;
};

CursorShape shapeOf(MouseMode mode) {
    switch (mode) {
    case ModeRotate:
        return {"rotate", 12, 12};
    case ModeRotateX:
        return {"rotateX", 12, 12};
    case ModeRotateY:
        return {"rotateY", 12, 12};
    case ModeRotateZ:
        return {"rotateZ", 12, 12};
    case ModeTranslateXY:
        return {"translateXY", 12, 12};
    case ModeTranslateZ:
        return {"translateZ", 12, 12};
    case ModeShift:
        return {"shift", 12, 12};
    case ModeScale:
        return {"scale", 12, 12};
    case ModeZoomIn:
        return {"zoomIn", 10, 10};
    case ModeMeasure:
    case ModePoint:
        return {"point", 12, 12};
    case ModePatch:
        return {"patch", 4, 4};
    case ModeSection:
        return {"section", 4, 4};
    case ModeLine:
        return {"line", 4, 4};
    case ModeNone:
        break;
    }
    return {nullptr, 0, 0};
}

} // namespace

QCursor cursorOf(MouseMode mode) {
    const CursorShape shape = shapeOf(mode);
    if (shape.name == nullptr) {
        return QCursor(Qt::ArrowCursor);
    }
    const QIcon picture(QStringLiteral(":/cursors/%1.svg").arg(QLatin1String(shape.name)));
    const QPixmap pixels = picture.pixmap(cursorSize, cursorSize);
    // Without the plugin that reads the pictures a cross does.
    return pixels.isNull() ? QCursor(Qt::CrossCursor) : QCursor(pixels, shape.hotX, shape.hotY);
}

} // namespace velmora
