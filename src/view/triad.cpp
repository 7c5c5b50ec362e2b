#include <span>

#include "VelmoraView.h"

namespace velmora {

namespace {

// The triad in the upper left corner, in pixels.
constexpr double originX = 40.0;
constexpr double originBelowTop = 44.0;
constexpr double axisLength = 36.0;
constexpr double triangleX = 20.0;
constexpr double triangleY = 18.0;
/// Window depth of the triad: in front of the scene.
constexpr double triadDepth = 0.01;

constexpr Colour axisColours[3] = {{1.0F, 0.0F, 0.0F, 1.0F}, {0.0F, 1.0F, 0.0F, 1.0F}, {1.0F, 1.0F, 0.0F, 1.0F}};

struct Stroke {
    double fromX;
    double fromY;
    double toX;
    double toY;
};

/// The letters as strokes beside the tip of their axis.
constexpr Stroke letterX[] = {{4, 5, 12, -5}, {4, -5, 12, 5}};
constexpr Stroke letterY[] = {{0, 5, 4, 0}, {8, 5, 4, 0}, {4, -5, 4, 0}};
constexpr Stroke letterZ[] = {{0, 5, 8, 5}, {0, -5, 8, 5}, {0, -5, 8, -5}};
constexpr std::span<const Stroke> letters[3] = {letterX, letterY, letterZ};

} // namespace

void VelmoraView::addTriad(DrawList& list) {
    const Matrix4& m = modelViewMatrix;
    const auto tipX = [&m](std::size_t axis) { return axisLength * m[4 * axis]; };
    const auto tipY = [&m](std::size_t axis) { return axisLength * m[4 * axis + 1]; };
    // Places in pixels from the triad's origin.
    const double scale = pixelScale();
    const auto place = [this, &m, scale](double x, double y) {
        return unprojectPoint({scale * (originX + x), viewport.height + scale * (y - originBelowTop), triadDepth}, m,
                              projectionMatrix, viewport);
    };
    if (!place(0.0, 0.0)) {
        return;
    }
    const auto modelPoint = [&place](double x, double y) { return place(x, y).value_or(zVec<double>()); };
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const zVec<double> tip = modelPoint(tipX(axis), tipY(axis));
        list.begin(Primitive::Lines, axisColours[axis]);
        list.vertex(modelPoint(0.0, 0.0));
        list.vertex(tip);
        list.point(tip, 3.0F, axisColours[axis]);
    }
    for (std::size_t axis = 0; axis < 3; ++axis) {
        list.begin(Primitive::Lines, axisColours[axis]).lineWidth = 2.0F;
        for (const Stroke& stroke : letters[axis]) {
            list.vertex(modelPoint(tipX(axis) + stroke.fromX, tipY(axis) + stroke.fromY));
            list.vertex(modelPoint(tipX(axis) + stroke.toX, tipY(axis) + stroke.toY));
        }
    }
    list.begin(Primitive::Triangles, {1.0F, 1.0F, 1.0F, 1.0F}).outlineFront = true;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        list.vertex(modelPoint(triangleX * m[4 * axis], triangleY * m[4 * axis + 1]));
    }
}

} // namespace velmora
