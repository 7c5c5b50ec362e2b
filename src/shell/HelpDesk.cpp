#include "HelpDesk.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QTimer>

#include "HelpWindow.h"
#include "qt_text.h"

namespace velmora {

namespace {

bool isHelpKey(const QEvent& event) {
    if (event.type() != QEvent::KeyPress) {
        return false;
    }
    const auto& key = static_cast<const QKeyEvent&>(event);
    return key.key() == Qt::Key_F1 && key.modifiers() == Qt::NoModifier;
}

} // namespace

HelpDesk::HelpDesk(QObject* parent) : QObject(parent) {
    // Menus and dialogs take all keys to themselves: the frame's own F1 does not reach it then.
    qApp->installEventFilter(this);
}

HelpDesk::~HelpDesk() {
    qApp->removeEventFilter(this);
}

void HelpDesk::open(const GuidePlace& place) {
    if (!window_) {
        window_ = std::make_unique<HelpWindow>();
    }
    window_->open(place);
}

bool HelpDesk::eventFilter(QObject* watched, QEvent* event) {
    return (isHelpKey(*event) && (helpInMenu() || helpInDialog())) || QObject::eventFilter(watched, event);
}

/// Closes the menu that is open and opens the guide at the entry that was highlighted.
bool HelpDesk::helpInMenu() {
    const auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (menu == nullptr) {
        return false;
    }
    const QAction* action = menu->activeAction();
    const Command* command = action != nullptr ? findCommand(plainBytes(action->objectName())) : nullptr;
    while (QWidget* popup = QApplication::activePopupWidget()) {
        popup->close();
    }
    QTimer::singleShot(0, this, [this, place = command != nullptr ? placeOf(*command) : GuidePlace()] { open(place); });
    return true;
}

/// A dialog lets nothing else be used but windows of its own: it gets one.
bool HelpDesk::helpInDialog() {
    QWidget* dialog = QApplication::activeModalWidget();
    if (dialog == nullptr) {
        return false;
    }
    auto* window = dialog->findChild<HelpWindow*>(QString(), Qt::FindDirectChildrenOnly);
    if (window == nullptr) {
        window = new HelpWindow(dialog);
    }
    window->open(running_ != nullptr ? placeOf(*running_) : GuidePlace());
    return true;
}

} // namespace velmora
