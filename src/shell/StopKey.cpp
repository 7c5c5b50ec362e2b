#include "StopKey.h"

#include <QCoreApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWidget>

namespace velmora {

bool StopKey::wasPressed(QWidget* button, QWidget* picture) {
    button_ = button;
    picture_ = picture;
    pressed_ = false;
    QCoreApplication::instance()->installEventFilter(this);
    QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers);
    QCoreApplication::instance()->removeEventFilter(this);
    return pressed_;
}

namespace {

bool isOn(const QWidget* button, const QPoint& place) {
    return button != nullptr && button->isVisible() && button->rect().contains(button->mapFromGlobal(place));
}

} // namespace

bool StopKey::isOfPicture(const QObject* watched) const {
    const auto* widget = qobject_cast<const QWidget*>(watched);
    return picture_ != nullptr && widget != nullptr && (widget == picture_ || picture_->isAncestorOf(widget));
}

// A timer whose turn is dropped has another one later.
bool StopKey::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::ShortcutOverride:
        pressed_ = pressed_ || static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape;
        return true;
    case QEvent::MouseButtonPress:
        pressed_ = pressed_ || isOn(button_, static_cast<QMouseEvent*>(event)->globalPosition().toPoint());
        return true;
    case QEvent::Paint:
        return isOfPicture(watched);
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
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
