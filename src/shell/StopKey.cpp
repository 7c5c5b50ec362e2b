#include "StopKey.h"

#include <QCoreApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWidget>
#include <algorithm>

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

/// Each part by itself: what holds a part painted by the graphics card does not have it painted.
void StopKey::makeUpForPaints() {
    for (const QPointer<QWidget>& part : unpainted_) {
        if (part != nullptr) {
            part->update();
        }
    }
    unpainted_.clear();
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
        if (!isOfPicture(watched)) {
            return false;
        }
        if (auto* const part = qobject_cast<QWidget*>(watched);
            std::find(unpainted_.begin(), unpainted_.end(), part) == unpainted_.end()) {
            unpainted_.emplace_back(part);
        }
        return true;
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
