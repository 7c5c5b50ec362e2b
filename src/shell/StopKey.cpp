#include "StopKey.h"

#include <QCoreApplication>
#include <QEvent>
#include <QKeyEvent>

namespace velmora {

bool StopKey::wasPressed() {
    pressed_ = false;
    QCoreApplication::instance()->installEventFilter(this);
    QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers);
    QCoreApplication::instance()->removeEventFilter(this);
    return pressed_;
}

// A timer whose turn is dropped has another one later.
bool StopKey::eventFilter(QObject* /*watched*/, QEvent* event) {
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::ShortcutOverride:
        pressed_ = pressed_ || static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape;
        return true;
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
    case QEvent::Close:
    case QEvent::Timer:
        return true;
    default:
        return false;
    }
}

} // namespace velmora
