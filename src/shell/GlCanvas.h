#pragma once

#include <QOpenGLWidget>

#include "GlRenderer.h"

namespace velmora {

/// An OpenGL surface with its renderer. What is painted is up to whoever listens; mouse and keys go to the parent.
class GlCanvas : public QOpenGLWidget {
    Q_OBJECT

public:
    /// The format of the toolkit's surface that fits what a view asks.
    static QSurfaceFormat surfaceFormat(const PixelFormat& format);
    /// True when the window system has OpenGL. Without it no canvas may be made: the toolkit cannot show one.
    static bool possible();

    explicit GlCanvas(QWidget* parent);
    ~GlCanvas() override;

    GlRenderer& renderer() { return renderer_; }
    /// False when there is no context.
    bool takeContext();
    /// What OpenGL says of its version; empty without a context.
    QString version();
    /// Frees what the context holds for the renderer.
    void releaseGraphics();

signals:
    /// The context is there and current.
    void contextMade();
    /// A frame is wanted; the context is current.
    void frameWanted();

protected:
    void initializeGL() override;
    void paintGL() override { emit frameWanted(); }

private:
    GlRenderer renderer_;
};

} // namespace velmora
