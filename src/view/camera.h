#pragma once

#include <array>
#include <optional>

#include "zVec.h"

namespace velmora {

/// A 4 by 4 matrix in column-major order, as OpenGL keeps it: element (row, column) is m[4 * column + row].
using Matrix4 = std::array<double, 16>;

/// The rectangle of the window that is drawn to, in pixels, counted from the lower left.
struct Viewport {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

Matrix4 identityMatrix();
/// a * b: what `b` does first and `a` then.
Matrix4 operator*(const Matrix4& a, const Matrix4& b);
Matrix4 translationMatrix(const zVec<double>& offset);
Matrix4 scaleMatrix(const zVec<double>& factors);
/// A turn by `degrees` about `axis` through the origin, counter-clockwise seen from the axis's tip. Multiples of 90
/// degrees give exact sines and cosines. A turn by 0 is the identity whatever the axis; the axis need not be of unit
/// length, but one of length 0 gives no numbers.
Matrix4 rotationMatrix(double degrees, const zVec<double>& axis);
/// The projection matrices of glOrtho and glFrustum.
Matrix4 orthographicMatrix(double left, double right, double bottom, double top, double nearPlane, double farPlane);
Matrix4 frustumMatrix(double left, double right, double bottom, double top, double nearPlane, double farPlane);

/// The angles X, Y, Z in degrees from which SetEulerView rebuilds the rotation in the upper 3 by 3 part of `m`; none
/// when no combination of candidates fits within 5e-5.
std::optional<zVec<double>> eulerAngles(const Matrix4& m);

/// Window coordinates (x and y in pixels from the lower left, z the depth 0 to 1) of a model point; none when the
/// point has no image.
std::optional<zVec<double>> projectPoint(const zVec<double>& point, const Matrix4& modelView, const Matrix4& projection,
                                         const Viewport& viewport);
/// The model point at window coordinates; none when the matrices cannot be inverted.
std::optional<zVec<double>> unprojectPoint(const zVec<double>& window, const Matrix4& modelView,
                                           const Matrix4& projection, const Viewport& viewport);

} // namespace velmora
