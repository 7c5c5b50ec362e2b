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

template <std::size_t Count>
void addLetter(DrawList& list, const Stroke (&strokes)[Count], double tipX, double tipY, const Colour& colour,
               const auto& modelPoint) {
    list.begin(Primitive::Lines, colour).lineWidth = 2.0F;
    for (const Stroke& stroke : strokes) {
        list.vertex(modelPoint(tipX + stroke.fromX, tipY + stroke.fromY));
        list.vertex(modelPoint(tipX + stroke.toX, tipY + stroke.toY));
    }
}

} // namespace

void VelmoraView::addTriad(DrawList& list) {
    const Matrix4& m = modelViewMatrix;
    const double originY = viewport.height - originBelowTop;
    if (!unprojectPoint({originX, originY, triadDepth}, m, projectionMatrix, viewport)) {
        return;
    }
    const auto modelPoint = [this, &m](double x, double y) {
        return *unprojectPoint({x, y, triadDepth}, m, projectionMatrix, viewport);
    };
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const double tipX = originX + axisLength * m[4 * axis];
        const double tipY = originY + axisLength * m[4 * axis + 1];
        const Colour& colour = axisColours[axis];
        list.begin(Primitive::Lines, colour);
        list.vertex(modelPoint(originX, originY));
        list.vertex(modelPoint(tipX, tipY));
        list.point(modelPoint(tipX, tipY), 3.0F, colour);
        switch (axis) {
        case 0:
            addLetter(list, letterX, tipX, tipY, colour, modelPoint);
            break;
        case 1:
            addLetter(list, letterY, tipX, tipY, colour, modelPoint);
            break;
        default:
            addLetter(list, letterZ, tipX, tipY, colour, modelPoint);
            break;
        }
    }
    list.begin(Primitive::Triangles, {1.0F, 1.0F, 1.0F, 1.0F}).outlineFront = true;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        list.vertex(modelPoint(originX + triangleX * m[4 * axis], originY + triangleY * m[4 * axis + 1]));
    }
}

} // namespace velmora
