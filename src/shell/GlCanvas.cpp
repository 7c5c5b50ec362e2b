#include "GlCanvas.h"

#include <QOpenGLContext>
#include <QOpenGLFunctions>

#include "text_bitmap.h"

namespace velmora {

QSurfaceFormat GlCanvas::surfaceFormat(const PixelFormat& format) {
    QSurfaceFormat surface;
    surface.setRenderableType(QSurfaceFormat::OpenGL);
    surface.setVersion(2, 1);
    surface.setProfile(QSurfaceFormat::CompatibilityProfile);
    surface.setSwapBehavior(format.doubleBuffered ? QSurfaceFormat::DoubleBuffer : QSurfaceFormat::SingleBuffer);
    surface.setRedBufferSize(format.colourBits / 3);
    surface.setGreenBufferSize(format.colourBits / 3);
    surface.setBlueBufferSize(format.colourBits / 3);
    surface.setAlphaBufferSize(format.alphaBits);
    surface.setDepthBufferSize(format.depthBits);
    surface.setStencilBufferSize(format.stencilBits);
    return surface;
}

bool GlCanvas::possible() {
    QOpenGLContext context;
    context.setFormat(surfaceFormat(PixelFormat{}));
    return context.create();
}

GlCanvas::GlCanvas(QWidget* parent)
    : QOpenGLWidget(parent),
      renderer_([this](const std::string& text, double scale) { return textBitmap(text, font(), scale); }) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    setFormat(surfaceFormat(PixelFormat{}));
}

GlCanvas::~GlCanvas() {
    releaseGraphics();
    if (context() != nullptr) {
        // The context goes with the base class, when this object is none any more.
        context()->disconnect(this);
    }
}

void GlCanvas::initializeGL() {
    connect(context(), &QOpenGLContext::aboutToBeDestroyed, this, &GlCanvas::releaseGraphics, Qt::UniqueConnection);
    emit contextMade();
}

bool GlCanvas::takeContext() {
    makeCurrent();
    return context() != nullptr && QOpenGLContext::currentContext() == context();
}

QString GlCanvas::version() {
    if (!takeContext()) {
        return {};
    }
    const GLubyte* words = context()->functions()->glGetString(GL_VERSION);
    QString version = words == nullptr ? QString() : QString::fromLatin1(reinterpret_cast<const char*>(words));
    doneCurrent();
    return version;
}

void GlCanvas::releaseGraphics() {
    if (takeContext()) {
        renderer_.release();
        doneCurrent();
    }
}

} // namespace velmora
