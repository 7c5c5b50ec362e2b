#include "GlViewWidget.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScopeGuard>
#include <algorithm>
#include <cmath>

#include "CommandGuard.h"
#include "mode_cursors.h"
#include "qt_text.h"

namespace velmora {

namespace {

/// What the toolkit counts for one notch of a wheel.
constexpr double unitsOfNotch = 120.0;
/// A camera that has not moved for so many milliseconds rests.
constexpr int restAfter = 150;
/// Some window systems show the first frame of a new size in a buffer of the old one: another follows after so many
/// milliseconds.
constexpr int settledAfter = 100;

/// What a drag with the middle button does; the keys held as it begins decide.
MouseMode navigationOf(Qt::KeyboardModifiers keys) {
    if (keys.testFlag(Qt::ShiftModifier)) {
        return ModeShift;
    }
    return keys.testFlag(Qt::ControlModifier) ? ModeScale : ModeRotate;
}

} // namespace

GlViewWidget::GlViewWidget(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("view"));
    setAccessibleName(tr("Model"));
    setFocusPolicy(Qt::StrongFocus);
    // The view follows the mouse with no button down, too.
    setMouseTracking(true);
    setMinimumSize(1, 1);
    if (GlCanvas::possible()) {
        canvas_ = new GlCanvas(this);
        connect(canvas_, &GlCanvas::contextMade, this, &GlViewWidget::createView);
        connect(canvas_, &GlCanvas::frameWanted, this, &GlViewWidget::paintView);
    }
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, [this] {
        if (view_ != nullptr) {
            carryOut([this] { view_->OnTimer(); });
        }
    });
    settleTimer_.setSingleShot(true);
    settleTimer_.setInterval(settledAfter);
    connect(&settleTimer_, &QTimer::timeout, this, &GlViewWidget::requestRepaint);
    restTimer_.setSingleShot(true);
    restTimer_.setInterval(restAfter);
    connect(&restTimer_, &QTimer::timeout, this, [this] {
        if (view_ != nullptr) {
            carryOut([this] { view_->OnRest(); });
        }
    });
}

void GlViewWidget::setView(VelmoraView* view) {
    view_ = view;
    matchSize();
}

// ---- Context --------------------------------------------------------------------------------------------------------

void GlViewWidget::createView() {
    if (view_ != nullptr) {
        view_->OnCreate();
    }
}

bool GlViewWidget::choosePixelFormat(const PixelFormat& format) {
    // The format was asked for before the window was made; whatever came draws.
    return format.doubleBuffered;
}

bool GlViewWidget::deleteContext() {
    if (canvas_ != nullptr) {
        canvas_->releaseGraphics();
    }
    return true;
}

void GlViewWidget::prepareContext() {
    canvas_->renderer().prepare();
}

// ---- Drawing --------------------------------------------------------------------------------------------------------

void GlViewWidget::requestRepaint() {
    if (canvas_ != nullptr) {
        canvas_->update();
    } else {
        update();
    }
}

void GlViewWidget::requestSameFrame() {}

/// No exception leaves through the toolkit.
void GlViewWidget::carryOut(const std::function<void()>& work) {
    try {
        work();
    } catch (const std::exception& error) {
        emit failed(qtText(causeOf(error)));
    }
}

void GlViewWidget::paintView() {
    if (view_ == nullptr) {
        return;
    }
    matchSize();
    painting_ = canvas_ != nullptr;
    emit paintBegins();
    // The end is told after an exception too: boxes wait for it.
    const auto end = qScopeGuard([this] {
        emit paintEnds();
        painting_ = false;
    });
    carryOut([this] { view_->OnDraw(); });
}

void GlViewWidget::paintEvent(QPaintEvent*) {
    if (canvas_ == nullptr) {
        // What a paint computes does not depend on whether there is a picture.
        paintView();
        QPainter(this).fillRect(rect(), Qt::black);
    }
}

void GlViewWidget::clearFrame(const Colour& colour) {
    if (painting_) {
        // Where windows have an alpha channel, none of the desktop shows through.
        canvas_->renderer().clear({colour[0], colour[1], colour[2], 1.0F});
    }
}

void GlViewWidget::drawScene(const SceneFrame& frame) {
    if (painting_) {
        canvas_->renderer().draw(frame);
    }
}

void GlViewWidget::finishFrame() {
    if (painting_) {
        canvas_->renderer().finish();
    }
}

void GlViewWidget::invertRectangle(PixelPoint from, PixelPoint to) {
    if (painting_) {
        canvas_->renderer().invertRectangle(from, to, wholeWindow());
    }
}

Viewport GlViewWidget::wholeWindow() const {
    const double ratio = devicePixelRatioF();
    return {0, 0, static_cast<int>(std::lround(width() * ratio)), static_cast<int>(std::lround(height() * ratio))};
}

void GlViewWidget::matchSize() {
    const Viewport window = wholeWindow();
    if (view_ != nullptr && (view_->viewport.width != window.width || view_->viewport.height != window.height)) {
        view_->OnSize(window.width, window.height);
    }
}

void GlViewWidget::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (canvas_ != nullptr) {
        canvas_->setGeometry(rect());
        settleTimer_.start();
    }
    matchSize();
}

// ---- Window ---------------------------------------------------------------------------------------------------------

void GlViewWidget::requestClose() {
    QMetaObject::invokeMethod(window(), &QWidget::close, Qt::QueuedConnection);
}

void GlViewWidget::showCursor(MouseMode mode) {
    setCursor(cursorOf(mode));
}

// ---- Mouse and keys -------------------------------------------------------------------------------------------------

PixelPoint GlViewWidget::pixelAt(QPointF position) const {
    const QPointF ofDevice = position * devicePixelRatioF();
    return {static_cast<int>(std::floor(ofDevice.x())), static_cast<int>(std::floor(ofDevice.y()))};
}

PixelPoint GlViewWidget::pixelOf(const QMouseEvent& event) const {
    PixelPoint pixel = pixelAt(event.position());
    if (confined_) {
        const Viewport window = wholeWindow();
        pixel.x = std::clamp(pixel.x, 0, std::max(0, window.width - 1));
        pixel.y = std::clamp(pixel.y, 0, std::max(0, window.height - 1));
    }
    return pixel;
}

void GlViewWidget::noteTime(const QInputEvent& event) {
    eventTime_ = std::max(eventTime_, static_cast<std::int64_t>(event.timestamp()));
}

void GlViewWidget::pullCursorInside(const QMouseEvent& event) {
    const QPoint position = event.position().toPoint();
    const QPoint inside(std::clamp(position.x(), 0, width() - 1), std::clamp(position.y(), 0, height() - 1));
    if (inside != position) {
        QCursor::setPos(mapToGlobal(inside));
    }
}

void GlViewWidget::mousePressEvent(QMouseEvent* event) {
    if (view_ == nullptr || view_->isNavigating()) {
        return;
    }
    noteTime(*event);
    if (event->button() == Qt::LeftButton) {
        carryOut([&] { view_->OnLeftButtonDown(pixelOf(*event)); });
    } else if (event->button() == Qt::MiddleButton) {
        carryOut([&] { view_->BeginNavigation(navigationOf(event->modifiers()), pixelOf(*event)); });
    }
}

void GlViewWidget::releaseLeft(PixelPoint position) {
    carryOut([&] { view_->OnLeftButtonUp(position); });
    requestRepaint(); // of what a regime moved on to
    emit leftReleased();
}

void GlViewWidget::mouseMoveEvent(QMouseEvent* event) {
    if (view_ == nullptr) {
        return;
    }
    noteTime(*event);
    const PixelPoint pixel = pixelOf(*event);
    if (view_->isNavigating()) {
        // A box or a menu may have taken the release.
        if (event->buttons().testFlag(Qt::MiddleButton)) {
            carryOut([&] { view_->Navigate(pixel); });
            return;
        }
        carryOut([&] { view_->EndNavigation(); });
    }
    if (view_->leftButtonDown && !event->buttons().testFlag(Qt::LeftButton)) {
        // A box or a menu took the release.
        releaseLeft(pixel);
        return;
    }
    if (confined_) {
        pullCursorInside(*event);
    }
    carryOut([&] { view_->OnMouseMove(pixel); });
}

void GlViewWidget::mouseReleaseEvent(QMouseEvent* event) {
    if (view_ != nullptr && event->button() == Qt::LeftButton) {
        noteTime(*event);
        releaseLeft(pixelOf(*event));
    } else if (view_ != nullptr && event->button() == Qt::MiddleButton) {
        carryOut([&] { view_->EndNavigation(); });
    }
}

void GlViewWidget::wheelEvent(QWheelEvent* event) {
    if (view_ == nullptr) {
        return;
    }
    noteTime(*event);
    carryOut([&] { view_->OnWheel(pixelAt(event->position()), event->angleDelta().y() / unitsOfNotch); });
    event->accept();
}

void GlViewWidget::leaveEvent(QEvent* event) {
    QWidget::leaveEvent(event);
    if (view_ != nullptr) {
        carryOut([this] { view_->OnMouseLeave(); });
    }
}

void GlViewWidget::showHint(const std::string& text) {
    emit hinted(qtText(text));
}

void GlViewWidget::contextMenuEvent(QContextMenuEvent* event) {
    // In the middle of a drag the menu would take the release of the left button.
    if (view_ != nullptr && !view_->leftButtonDown && !view_->isNavigating()) {
        emit contextMenuWanted(event->globalPos());
    }
}

void GlViewWidget::keyPressEvent(QKeyEvent* event) {
    if (view_ != nullptr && event->key() == Qt::Key_Escape) {
        if (isMeantOtherwise_ && isMeantOtherwise_()) {
            return;
        }
        view_->OnKeyDown(ViewKey::Escape);
        emit keyTaken();
        return;
    }
    QWidget::keyPressEvent(event);
}

} // namespace velmora
