#pragma once

#include <QInputEvent>
#include <QTimer>
#include <QWidget>
#include <functional>

#include "GlCanvas.h"
#include "VelmoraView.h"

namespace velmora {

/// The window of a view: it hands mouse, keys, sizes and paints to the view and carries out what the view asks, on a
/// canvas that fills it. Drawing happens inside a paint only. Where there is no OpenGL the window stays black and all
/// else works.
class GlViewWidget : public QWidget, public ViewSurface {
    Q_OBJECT

public:
    explicit GlViewWidget(QWidget* parent = nullptr);

    /// The view must outlive the widget or be taken away by a null.
    void setView(VelmoraView* view);
    bool hasContext() const { return canvas_ != nullptr && canvas_->isValid(); }
    /// Empty without a context.
    QString openGlVersion() { return hasContext() ? canvas_->version() : QString(); }

    // ---- What the view asks -----------------------------------------------------------------------------------------

    bool obtainDrawingArea() override { return true; }
    bool choosePixelFormat(const PixelFormat& format) override;
    bool selectPixelFormat() override { return true; }
    bool createContext() override { return hasContext(); }
    bool makeCurrent() override { return canvas_ != nullptr && canvas_->takeContext(); }
    bool deleteContext() override;
    void releaseDrawingArea() override {}
    void prepareContext() override;
    void clearFrame(const Colour& colour) override;
    void drawScene(const SceneFrame& frame) override;
    void finishFrame() override;
    bool swapBuffers() override { return true; } ///< the toolkit shows the frame when the paint is over
    void invertRectangle(PixelPoint from, PixelPoint to) override;
    double modelTime() const override { return canvas_ != nullptr ? canvas_->renderer().modelTime() : 0.0; }
    bool isWatched() const override { return true; }
    void showHint(const std::string& text) override;
    void awaitRest() override { restTimer_.start(); }
    double pixelScale() const override { return devicePixelRatioF(); }
    void requestRepaint() override;
    /// The toolkit keeps the frame that was painted last.
    void requestSameFrame() override;
    /// Where it says yes, Esc is not taken for the wish to leave.
    void keepOpenWhile(std::function<bool()> isMeantOtherwise) { isMeantOtherwise_ = std::move(isMeantOtherwise); }
    void requestClose() override;
    void showCursor(MouseMode mode) override;
    void confineCursor(bool confined) override { confined_ = confined; }
    void startTimer(int milliseconds) override { timer_.start(milliseconds); }
    void stopTimer() override { timer_.stop(); }
    /// The time of the mouse event in hand: a slow paint between two events makes no pause of them.
    std::int64_t clock() const override { return eventTime_; }

signals:
    /// Around each paint: boxes that the view wants to show meanwhile have to wait.
    void paintBegins();
    void paintEnds();
    /// An exception ended a paint or what the mouse began; `cause` is what it says of itself.
    void failed(const QString& cause);
    /// The left button came up and the view has dealt with it.
    void leftReleased();
    /// The view dealt with a key.
    void keyTaken();
    /// A right click, or the menu key, at a position on the screen.
    void contextMenuWanted(const QPoint& position);
    /// What the mouse points at; empty: nothing.
    void hinted(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override { mousePressEvent(event); }
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    /// The position of an event in pixels of the device; inside the view while the cursor is confined.
    PixelPoint pixelOf(const QMouseEvent& event) const;
    PixelPoint pixelAt(QPointF position) const;
    void noteTime(const QInputEvent& event);
    Viewport wholeWindow() const;
    void carryOut(const std::function<void()>& work);
    void matchSize();
    void pullCursorInside(const QMouseEvent& event);
    void releaseLeft(PixelPoint position);
    void createView();
    void paintView();

    VelmoraView* view_ = nullptr;
    GlCanvas* canvas_ = nullptr; ///< null: no OpenGL here
    QTimer timer_;
    QTimer restTimer_;
    QTimer settleTimer_;
    std::int64_t eventTime_ = 0;
    bool painting_ = false; ///< a frame of the canvas is being painted
    bool confined_ = false;
    std::function<bool()> isMeantOtherwise_;
};

} // namespace velmora
