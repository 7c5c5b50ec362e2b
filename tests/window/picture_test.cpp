#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QImage>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <cmath>
#include <cstdlib>

#include "Desk.h"
#include "GlViewWidget.h"
#include "RecordingUi.h"
#include "VelmoraDoc.h"
#include "arranged_capture.h"
#include "small_models.h"
#include "text_bitmap.h"

namespace velmora::test {
namespace {

constexpr int pictureWidth = 200;
constexpr int pictureHeight = 150;

/// The toolkit for the time of one test.
class Toolkit {
public:
    Toolkit() {
        QSurfaceFormat::setDefaultFormat(GlCanvas::surfaceFormat(PixelFormat{}));
        application_ = std::make_unique<QApplication>(count_, words_);
    }

private:
    int count_ = 1;
    char name_[8] = "picture";
    char* words_[2] = {name_, nullptr};
    std::unique_ptr<QApplication> application_;
};

/// A document with one view of fixed size in a window without a frame.
class Studio {
public:
    RecordingUi ui;
    VelmoraDoc document{ui, "."};

    Studio() {
        document.onNewDocument();
        widget_.setWindowFlags(Qt::BypassWindowManagerHint);
        widget_.resize(pictureWidth, pictureHeight);
        widget_.setView(&view);
        widget_.show();
        QApplication::processEvents();
    }
    Studio(const Studio&) = delete;
    Studio& operator=(const Studio&) = delete;
    ~Studio() {
        view.OnDestroy();
        widget_.setView(nullptr);
    }

    void showPatches(const PatchList& patches) {
        document.patches = patches;
        document.checkRegularity(document.patches);
        document.updateBounds();
        document.redraw();
    }

    QImage picture() {
        return widget_.findChild<QOpenGLWidget*>()->grabFramebuffer().convertToFormat(QImage::Format_RGB32);
    }

    /// Where a model point stands in the picture.
    QPoint at(const zVec<double>& point) {
        view.ApplyModelTransform(document.modelCenter);
        const auto window = projectPoint(point, view.modelViewMatrix, view.projectionMatrix, view.viewport);
        return {static_cast<int>(std::floor(window->x)), pictureHeight - 1 - static_cast<int>(std::floor(window->y))};
    }

private:
    Toolkit toolkit_;
    GlViewWidget widget_;

public:
    VelmoraView view{document, widget_};
};

bool near(const QColor& colour, const QColor& wanted, int tolerance) {
    return std::abs(colour.red() - wanted.red()) <= tolerance &&
           std::abs(colour.green() - wanted.green()) <= tolerance &&
           std::abs(colour.blue() - wanted.blue()) <= tolerance;
}

void expectColour(const QImage& picture, QPoint at, const QColor& wanted, const char* what) {
    const QColor colour = picture.pixelColor(at);
    EXPECT_TRUE(near(colour, wanted, 2)) << what << " is " << colour.name().toStdString() << " at " << at.x() << ' '
                                         << at.y() << ", wanted " << wanted.name().toStdString();
}

/// A line between two rows of pixels may go to either: one of the pixels around must have the colour.
void expectLineAt(const QImage& picture, QPoint at, const QColor& wanted, const char* what) {
    for (int y = -1; y <= 1; ++y) {
        for (int x = -1; x <= 1; ++x) {
            if (near(picture.pixelColor(at + QPoint(x, y)), wanted, 2)) {
                return;
            }
        }
    }
    ADD_FAILURE() << "no " << what << " around " << at.x() << ' ' << at.y();
}

// ---- Single pixels that follow from the rules ---------------------------------------------------

TEST(Pixels, AnEmptyDocumentIsBlack) {
    Studio studio;
    const QImage picture = studio.picture();
    ASSERT_EQ(picture.size(), QSize(pictureWidth, pictureHeight));
    QImage black(picture.size(), picture.format());
    black.fill(Qt::black);
    EXPECT_EQ(picture, black) << "no triad without a model";
}

TEST(Pixels, LinesHaveTheColourOfTheirPatch) {
    Studio studio;
    studio.showPatches({flatPatch(3, 3)});
    studio.view.runViewCommand("view.orthographic");
    const QImage picture = studio.picture();
    expectLineAt(picture, studio.at({0.5, 1.0, 0.0}), QColor::fromRgbF(0.5F, 0.5F, 1.0F), "a section");
    expectLineAt(picture, studio.at({1.0, 0.5, 0.0}), QColor::fromRgbF(0.5F, 0.5F, 1.0F), "a line");
    expectColour(picture, studio.at({0.5, 0.5, 0.0}), Qt::black, "inside a cell");
}

TEST(Pixels, TheTriadKeepsItsPlaceInPixels) {
    Studio studio;
    studio.showPatches({flatPatch(3, 3)});
    const QImage picture = studio.picture();
    // Origin 40 pixels from the left and 44 from the top, arms of 36 pixels; OpenGL counts rows from the bottom.
    expectLineAt(picture, {76, 43}, Qt::red, "the tip of X");
    expectLineAt(picture, {58, 43}, Qt::red, "the arm of X");
    expectLineAt(picture, {40, 7}, Qt::green, "the tip of Y");
    expectLineAt(picture, {40, 25}, Qt::green, "the arm of Y");
}

TEST(Pixels, ACapturedPointIsWhiteInARedFrame) {
    Studio studio;
    studio.showPatches({flatPatch(3, 3)});
    studio.view.runViewCommand("view.orthographic");
    arranged(studio.document).capturedPointPos = {1.3, 1.2, 0.0};
    arranged(studio.document).pointPicked = true;
    const QImage picture = studio.picture();
    const QPoint centre = studio.at({1.3, 1.2, 0.0});
    // The white point of 6 pixels is drawn first; of the red one of 8 pixels behind it only the border is left.
    int red = 0;
    int white = 0;
    for (int y = -5; y <= 5; ++y) {
        for (int x = -5; x <= 5; ++x) {
            const QColor colour = picture.pixelColor(centre + QPoint(x, y));
            red += colour == QColor(Qt::red) ? 1 : 0;
            white += colour == QColor(Qt::white) ? 1 : 0;
        }
    }
    EXPECT_EQ(white, 36);
    EXPECT_EQ(red, 64 - 36);
    expectColour(picture, centre, Qt::white, "the middle");
}

/// Counts the pixels of each colour in the square of 12 around a point.
int countAround(const QImage& picture, QPoint centre, const QColor& colour) {
    int found = 0;
    for (int y = -6; y < 6; ++y) {
        for (int x = -6; x < 6; ++x) {
            found += picture.pixelColor(centre + QPoint(x, y)) == colour ? 1 : 0;
        }
    }
    return found;
}

TEST(Pixels, ThePointOfBothFirstRowsIsYellow) {
    Studio studio;
    studio.showPatches({flatPatch(3, 3)});
    studio.view.runViewCommand("view.orthographic");
    studio.document.showFirstPoints = true;
    studio.document.redraw();
    const QImage picture = studio.picture();
    expectColour(picture, studio.at({0, 0, 0}), Qt::yellow, "the point of both");
    EXPECT_EQ(countAround(picture, studio.at({0, 0, 0}), Qt::red), 0);
    expectColour(picture, studio.at({1, 0, 0}), Qt::yellow, "the first section");
    expectColour(picture, studio.at({0, 1, 0}), Qt::red, "the second section");
    EXPECT_GE(countAround(picture, studio.at({0, 1, 0}), Qt::red), 34) << "no strip runs over it";
}

TEST(Pixels, APointShowsOverThoseDrawnBeforeIt) {
    Studio studio;
    PatchList model{flatPatch(3, 3)};
    model[0][1][2] = model[0][1][1];
    studio.showPatches(model);
    studio.view.runViewCommand("view.orthographic");
    studio.document.showFirstPoints = studio.document.showDoublePoints = studio.document.showZBlockMarkers = true;
    studio.document.showBuffer = studio.document.pointClipboardFull = arranged(studio.document).pointPicked = true;
    studio.document.blockCount = 1;
    studio.document.blockList[0] = 0;
    studio.document.pointClipboard = arranged(studio.document).capturedPointPos = {2, 2, 0};
    studio.document.redraw();
    const QImage picture = studio.picture();
    const QPoint twice = studio.at({1, 1, 0});
    EXPECT_EQ(countAround(picture, twice, Qt::blue), 9) << "the marker of the zBlock";
    EXPECT_EQ(countAround(picture, twice, Qt::green), 64 - 9) << "over the double point";
    const QPoint captured = studio.at({2, 2, 0});
    EXPECT_EQ(countAround(picture, captured, Qt::white), 36) << "the captured point";
    EXPECT_EQ(countAround(picture, captured, Qt::green), 64 - 36) << "over the clipboard";
}

TEST(Pixels, APointOnASurfaceIsNotLostInIt) {
    Studio studio;
    studio.showPatches({flatPatch(3, 3)});
    studio.view.runViewCommand("view.orthographic");
    studio.document.surfaceMode = studio.document.showFirstPoints = true;
    studio.document.redraw();
    EXPECT_EQ(countAround(studio.picture(), studio.at({1, 0, 0}), Qt::yellow), 36);
}

TEST(Pixels, ASurfaceIsFilledFromTheFrontAndLinesFromBehind) {
    Studio studio;
    studio.showPatches({flatPatch(3, 3)});
    studio.document.surfaceMode = true;
    studio.document.redraw();
    // The eye looks along the normal: ambient 0.2 of the material times 1 of the light and 0.2 of the scene, and
    // the full diffuse colour.
    expectColour(studio.picture(), studio.at({0.5, 0.5, 0.0}), QColor::fromRgbF(0.74F, 0.74F, 1.0F), "the front");
    studio.view.runViewCommand("view.right");
    const QImage behind = studio.picture();
    expectColour(behind, studio.at({0.5, 0.5, 0.0}), Qt::black, "between the lines of the back");
    // Behind, the light falls on the reversed normal: two-sided lighting gives the back the same colour.
    expectLineAt(behind, studio.at({0.5, 1.0, 0.0}), QColor::fromRgbF(0.74F, 0.74F, 1.0F), "line of the back");
}

TEST(Pixels, AnEditShowsAtTheNextPaint) {
    Studio studio;
    studio.showPatches({flatPatch(3, 3)});
    studio.view.runViewCommand("view.orthographic");
    expectColour(studio.picture(), studio.at({0.5, 0.5, 0.0}), Qt::black, "before");
    for (zVec<double>& point : studio.document.patches[0][1]) {
        point.y = 0.5;
    }
    studio.document.redraw();
    expectLineAt(studio.picture(), studio.at({0.5, 0.5, 0.0}), QColor::fromRgbF(0.5F, 0.5F, 1.0F), "after");
}

TEST(Pixels, InvertingARectangleTwiceChangesNothing) {
    Studio studio;
    studio.showPatches({flatPatch(3, 3)});
    const QImage before = studio.picture();
    studio.view.rubberBandShown = true;
    studio.view.rubberStart = {150, 120};
    studio.view.rubberEnd = {60, 80};
    const QImage shown = studio.picture();
    for (int y = 0; y < pictureHeight; ++y) {
        for (int x = 0; x < pictureWidth; ++x) {
            const bool inside = x >= 60 && x <= 150 && y >= 80 && y <= 120;
            const bool outline = inside && (x == 60 || x == 150 || y == 80 || y == 120);
            const QRgb old = before.pixel(x, y);
            const QRgb wanted = outline ? qRgb(255 - qRed(old), 255 - qGreen(old), 255 - qBlue(old)) : old;
            ASSERT_EQ(shown.pixel(x, y) & RGB_MASK, wanted & RGB_MASK) << x << ' ' << y;
        }
    }
}

TEST(Pixels, ATextIsDrawnAsItsBitmapFromItsPointOn) {
    const Toolkit toolkit;
    QOpenGLContext context;
    context.setFormat(GlCanvas::surfaceFormat(PixelFormat{}));
    ASSERT_TRUE(context.create());
    QOffscreenSurface surface;
    surface.setFormat(context.format());
    surface.create();
    ASSERT_TRUE(context.makeCurrent(&surface));
    QOpenGLFramebufferObject target(64, 64, QOpenGLFramebufferObject::Depth);
    target.bind();
    const TextBitmap bitmap = textBitmap("12", QFont(QStringLiteral("DejaVu Sans"), 12));
    Overlay overlay;
    overlay.texts.push_back({"12", {10.0, 20.0, 0.0}, {1.0F, 0.0F, 0.0F, 1.0F}});
    const DrawList nothing;
    SceneFrame frame;
    frame.list = &nothing;
    frame.overlay = &overlay;
    frame.modelView = identityMatrix();
    frame.projection = orthographicMatrix(0.0, 64.0, 0.0, 64.0, -1.0, 1.0);
    frame.viewport = {0, 0, 64, 64};
    std::string asked;
    GlRenderer renderer([&](const std::string& text, double) {
        asked = text;
        return bitmap;
    });
    renderer.prepare();
    renderer.clear({0.0F, 0.0F, 0.0F, 1.0F});
    renderer.draw(frame);
    renderer.finish();
    const QImage picture = target.toImage();
    renderer.release();
    EXPECT_EQ(asked, "12");
    for (int y = 0; y < bitmap.height; ++y) {
        for (int x = 0; x < bitmap.width; ++x) {
            const auto byte =
                bitmap.rows[static_cast<std::size_t>(y) * static_cast<std::size_t>((bitmap.width + 7) / 8) +
                            static_cast<std::size_t>(x / 8)];
            const bool set = (byte & (0x80 >> (x % 8))) != 0;
            EXPECT_EQ(picture.pixelColor(10 + x, 63 - 20 - y), set ? QColor(Qt::red) : QColor(Qt::black))
                << x << ' ' << y;
        }
    }
}

// ---- Whole pictures -----------------------------------------------------------------------------

/// The part of the pixels that differ by more than a shade; 1 when the sizes do.
double difference(const QImage& picture, const QImage& wanted) {
    constexpr int shade = 12;
    if (picture.size() != wanted.size()) {
        return 1.0;
    }
    int differing = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            differing += near(picture.pixelColor(x, y), wanted.pixelColor(x, y), shade) ? 0 : 1;
        }
    }
    return static_cast<double>(differing) / (picture.width() * picture.height());
}

/// Drivers round a few pixels of a line to the other side; a wrong line is ten times as much.
constexpr double mostDifference = 0.002;

/// Keeps the picture in the folder of the build beside the screenshots, and gives the stored one.
QImage storedPicture(const char* name, const QImage& picture) {
    const QDir folder(QStringLiteral(VELMORA_SCREENSHOTS "/pictures"));
    folder.mkpath(QStringLiteral("."));
    picture.save(folder.filePath(QStringLiteral("%1.png").arg(QLatin1String(name))));
    return QImage(QStringLiteral(VELMORA_PICTURES "/%1.png").arg(QLatin1String(name)));
}

void expectPicture(const char* name, const QImage& picture) {
    EXPECT_LE(difference(picture, storedPicture(name, picture)), mostDifference) << name;
}

void openSphere(Studio& studio) {
    const Desk desk("even_sphere.apt");
    studio.document.onOpenDocument(desk.model);
    studio.view.runViewCommand("view.iso");
}

void captureSection(Studio& studio) {
    holdSection(studio.document, 0, 2);
    studio.document.redraw();
}

TEST(Pictures, AShadedSphere) {
    Studio studio;
    openSphere(studio);
    expectPicture("sphere-surface", studio.picture());
}

TEST(Pictures, AWireSphereWithACapturedSection) {
    Studio studio;
    openSphere(studio);
    studio.document.surfaceMode = false;
    captureSection(studio);
    expectPicture("sphere-section", studio.picture());
}

/// Three wavy patches, one behind the other, seen obliquely. The second has a pair of equal neighbours, the third a
/// collapsed border.
PatchList waves() {
    PatchList list;
    for (int k = 0; k < 3; ++k) {
        Patch patch;
        for (int n = 0; n < 4; ++n) {
            PointList section;
            for (int m = 0; m < 6; ++m) {
                section.push_back({m + 0.2 * n, n + 4.2 * k, 0.8 * std::sin(m + 0.7 * n)});
            }
            patch.push_back(section);
        }
        list.push_back(patch);
    }
    list[1][2][3] = list[1][2][2];
    list[2][3] = PointList(6, zVec<double>(3.0, 12.0, 1.0));
    return list;
}

struct WaveStudio : Studio {
    WaveStudio() {
        showPatches(waves());
        view.SetEulerView({35.0, -25.0, 10.0});
    }
    void expect(const char* name) {
        document.redraw();
        expectPicture(name, picture());
    }
    void block(std::initializer_list<std::int32_t> members) {
        document.blockCount = 0;
        for (const std::int32_t patch : members) {
            document.blockList[static_cast<std::size_t>(document.blockCount++)] = patch;
        }
    }
};

TEST(Pictures, PatchesInTheirColoursAndTheTriad) {
    WaveStudio studio;
    studio.expect("waves");
}

TEST(Pictures, FirstPoints) {
    WaveStudio studio;
    studio.document.showFirstPoints = true;
    studio.expect("first-points");
}

TEST(Pictures, DoublePoints) {
    WaveStudio studio;
    studio.document.showDoublePoints = true;
    studio.expect("double-points");
}

TEST(Pictures, MarkersInTheZBlock) {
    WaveStudio studio;
    studio.document.showZBlockMarkers = true;
    studio.block({2, 0});
    studio.expect("zblock-markers");
}

TEST(Pictures, BuffersAndClipboard) {
    WaveStudio studio;
    studio.document.showBuffer = studio.document.pointClipboardFull = true;
    studio.document.lineBuffer = {{0, 0, 2}, {1, 0, 2}, {2, 0, 2}};
    studio.document.sftPoints = {{4, 2, 2}, {5, 2, 2}};
    studio.document.sftTargets = {{4, 3, 2}, {5, 3, 2}};
    studio.document.interLine = {{1, 8, 2}, {2, 8, 2}};
    studio.document.pointClipboard = studio.document.patches[0][3][5];
    studio.expect("buffers");
}

TEST(Pictures, ACapturedPoint) {
    WaveStudio studio;
    arranged(studio.document).capturedPointPos = studio.document.patches[1][1][4];
    arranged(studio.document).pointPicked = true;
    studio.expect("captured-point");
}

TEST(Pictures, ACapturedLine) {
    WaveStudio studio;
    holdLine(studio.document, 1, 4);
    studio.expect("captured-line");
}

TEST(Pictures, PatchesInTheZBlockAndOneToRemove) {
    WaveStudio studio;
    arranged(studio.document).patchCaptured = arranged(studio.document).patchRemoving = true;
    studio.block({0, 2});
    arranged(studio.document).patchToRemove = 2;
    studio.expect("patches-captured");
}

TEST(Pictures, TheZBlockOnly) {
    WaveStudio studio;
    studio.document.showBlockOnly = true;
    studio.block({1});
    studio.expect("block-only");
}

TEST(Pictures, MarkersWithTheirNumbers) {
    WaveStudio studio;
    studio.document.markers = {{0, 3.6, 1}, {5, 7.8, 1}};
    studio.document.markersOpen = true;
    studio.expect("markers");
}

TEST(Pictures, ComparingTellsACapturedSectionFromNone) {
    Studio studio;
    openSphere(studio);
    studio.document.surfaceMode = false;
    studio.document.redraw();
    const QImage without = studio.picture();
    captureSection(studio);
    const QImage with = studio.picture();
    EXPECT_EQ(difference(with, with), 0.0);
    EXPECT_GT(difference(without, with), mostDifference);
    EXPECT_GT(difference(without, storedPicture("sphere-section", with)), mostDifference);
}

TEST(Pictures, ComparingTellsAPictureFromTheSameMovedByAPixel) {
    Studio studio;
    openSphere(studio);
    studio.document.surfaceMode = false;
    studio.document.redraw();
    const QImage picture = studio.picture();
    EXPECT_GT(difference(picture.copy(1, 0, pictureWidth, pictureHeight), picture), mostDifference);
}

} // namespace
} // namespace velmora::test
