#pragma once

#include <QLabel>
#include <QMouseEvent>
#include <QSettings>
#include <string>

#include "FlatDesk.h"
#include "MainFrame.h"
#include "Person.h"
#include "pixel_of.h"
#include "qt_text.h"

namespace velmora::test {

/// The frame with a person in front of it, as the program starts: with no model, or with a file that is opened.
struct FrameRig {
    Person person;
    MainFrame frame;

    FrameRig() { start(); }
    explicit FrameRig(const std::filesystem::path& model) {
        start();
        frame.openFile(qtPath(model));
    }

    DocumentState& doc() { return frame.state(); }
    VelmoraDoc& document() { return frame.document(); }
    VelmoraView& view() { return frame.view(); }
    GlViewWidget& viewWidget() { return *frame.findChild<GlViewWidget*>(); }
    QString message() { return frame.findChild<QLabel*>(QStringLiteral("message"))->text(); }
    void run(const char* id) { frame.run(*findCommand(id)); }
    /// The button of a command on its tool bar; null when it has none.
    QAction* toolButton(const char* id) { return actionOf(id, true); }
    QAction* menuEntry(const char* id) { return actionOf(id, false); }

    // ---- The mouse on the view --------------------------------------------------------------------------------------

    std::uint64_t now = 1000; ///< the time of the next event, in milliseconds

    void mouse(QEvent::Type type, PixelPoint at, Qt::MouseButton button, Qt::MouseButtons held) {
        const QPointF position(at.x, at.y);
        QMouseEvent event(type, position, viewWidget().mapToGlobal(position), button, held, Qt::NoModifier);
        event.setTimestamp(now);
        QApplication::sendEvent(&viewWidget(), &event);
    }
    void press(PixelPoint at, Qt::MouseButton button = Qt::LeftButton) {
        mouse(QEvent::MouseButtonPress, at, button, button);
    }
    void moveTo(PixelPoint at, Qt::MouseButtons held = Qt::LeftButton) {
        mouse(QEvent::MouseMove, at, Qt::NoButton, held);
    }
    void release(PixelPoint at, Qt::MouseButton button = Qt::LeftButton, Qt::MouseButtons held = Qt::NoButton) {
        mouse(QEvent::MouseButtonRelease, at, button, held);
    }
    void clickOn(const zVec<double>& point) {
        const PixelPoint at = pixelOf(view(), doc(), point);
        press(at);
        release(at);
    }
    void rightClick(PixelPoint at) {
        const QPoint position(at.x, at.y);
        QContextMenuEvent event(QContextMenuEvent::Mouse, position, viewWidget().mapToGlobal(position));
        QApplication::sendEvent(&viewWidget(), &event);
    }

private:
    void start();

    QAction* actionOf(const char* id, bool onToolBar) {
        for (QAction* action : frame.findChildren<QAction*>(QString::fromLatin1(id))) {
            if ((qobject_cast<QToolBar*>(action->parent()) != nullptr) == onToolBar) {
                return action;
            }
        }
        return nullptr;
    }
};

} // namespace velmora::test
