#include "camera.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "vectors.h"

namespace velmora {

namespace {

/// Sine and cosine of an angle in degrees, exact at multiples of 90.
std::pair<double, double> sineCosine(double degrees) {
    const double turned = std::fmod(degrees, 360.0);
    if (turned == 0.0) {
        return {0.0, 1.0};
    }
    if (turned == 90.0 || turned == -270.0) {
        return {1.0, 0.0};
    }
    if (turned == 180.0 || turned == -180.0) {
        return {0.0, -1.0};
    }
    if (turned == 270.0 || turned == -90.0) {
        return {-1.0, 0.0};
    }
    const double radians = turned * std::numbers::pi / 180.0;
    return {std::sin(radians), std::cos(radians)};
}

constexpr double angleTolerance = 5e-5;

/// Two candidates each for the angles of a rotation matrix, in radians, the one to try first in front.
struct AngleCandidates {
    double x[2];
    double y[2];
    double z[2];
};

AngleCandidates angleCandidates(const Matrix4& m) {
    AngleCandidates c{};
    c.y[0] = std::asin(-m[2]);
    c.y[1] = std::numbers::pi - c.y[0];
    const bool upright = std::abs(m[2]) == 1.0;
    // Rounding can take a cosine beyond 1.
    const double uprightZ = std::acos(std::clamp(m[5], -1.0, 1.0));
    if (std::abs(m[0]) > angleTolerance) {
        c.z[0] = std::atan(-m[1] / m[0]);
        c.z[1] = c.z[0] + std::numbers::pi;
    } else {
        c.z[0] = upright ? uprightZ : std::numbers::pi / 2;
        c.z[1] = -c.z[0];
    }
    if (std::abs(m[10]) > angleTolerance) {
        c.x[0] = std::atan(m[6] / m[10]);
        c.x[1] = c.x[0] + std::numbers::pi;
    } else if (upright) {
        c.x[0] = c.x[1] = 0.0;
        c.z[0] = uprightZ;
        c.z[1] = -c.z[0];
    } else {
        c.x[0] = std::numbers::pi / 2;
        c.x[1] = -c.x[0];
    }
    return c;
}

bool anglesFit(const Matrix4& m, double x, double y, double z) {
    const double cx = std::cos(x);
    const double sx = std::sin(x);
    const double cy = std::cos(y);
    const double sy = std::sin(y);
    const double cz = std::cos(z);
    const double sz = std::sin(z);
    const auto near = [](double a, double b) { return std::abs(a - b) <= angleTolerance; };
    return near(m[0], cz * cy) && near(m[1], -sz * cy) && near(m[2], -sy) && near(m[4], sx * cz * sy + cx * sz) &&
           near(m[5], cx * cz - sx * sz * sy) && near(m[6], sx * cy) && near(m[8], cx * cz * sy - sx * sz) &&
           near(m[9], -(cx * sz * sy + sx * cz)) && near(m[10], cx * cy);
}

double degreesOf(double radians) {
    const double degrees = radians / std::acos(-1.0) * 180.0;
    return std::abs(degrees) < 0.0001 ? 0.0 : degrees;
}

} // namespace

Matrix4 identityMatrix() {
    return {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
}

Matrix4 operator*(const Matrix4& a, const Matrix4& b) {
    Matrix4 product{};
    for (std::size_t column = 0; column < 4; ++column) {
        for (std::size_t row = 0; row < 4; ++row) {
            double sum = 0.0;
            for (std::size_t k = 0; k < 4; ++k) {
                sum += a[4 * k + row] * b[4 * column + k];
            }
            product[4 * column + row] = sum;
        }
    }
    return product;
}

Matrix4 translationMatrix(const zVec<double>& offset) {
    return {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, offset.x, offset.y, offset.z, 1};
}

Matrix4 scaleMatrix(const zVec<double>& factors) {
    return {factors.x, 0, 0, 0, 0, factors.y, 0, 0, 0, 0, factors.z, 0, 0, 0, 0, 1};
}

Matrix4 rotationMatrix(double degrees, const zVec<double>& axis) {
    // Whatever the axis: a drag straight towards the centre of the screen turns about none.
    if (degrees == 0.0) {
        return identityMatrix();
    }
    const auto [s, c] = sineCosine(degrees);
    const zVec<double> u = unitOf(axis);
    const double t = 1.0 - c;
    // On an axis of coordinates the diagonal is exactly 1 or the cosine: whoever reads the angles back counts on it.
    const auto diagonal = [cosine = c](double part) { return part * part + cosine * (1.0 - part * part); };
    return {diagonal(u.x),
            u.y * u.x * t + u.z * s,
            u.z * u.x * t - u.y * s,
            0,
            u.x * u.y * t - u.z * s,
            diagonal(u.y),
            u.z * u.y * t + u.x * s,
            0,
            u.x * u.z * t + u.y * s,
            u.y * u.z * t - u.x * s,
            diagonal(u.z),
            0,
            0,
            0,
            0,
            1};
}

Matrix4 orthographicMatrix(double left, double right, double bottom, double top, double nearPlane, double farPlane) {
    return {2 / (right - left),
            0,
            0,
            0,
            0,
            2 / (top - bottom),
            0,
            0,
            0,
            0,
            -2 / (farPlane - nearPlane),
            0,
            -(right + left) / (right - left),
            -(top + bottom) / (top - bottom),
            -(farPlane + nearPlane) / (farPlane - nearPlane),
            1};
}

Matrix4 frustumMatrix(double left, double right, double bottom, double top, double nearPlane, double farPlane) {
    double depth = -2 * farPlane * nearPlane / (farPlane - nearPlane);
    if (!std::isfinite(depth)) {
        depth = -2 * (farPlane / (farPlane - nearPlane)) * nearPlane; // the product alone is beyond all numbers
    }
    return {2 * nearPlane / (right - left),
            0,
            0,
            0,
            0,
            2 * nearPlane / (top - bottom),
            0,
            0,
            (right + left) / (right - left),
            (top + bottom) / (top - bottom),
            -(farPlane + nearPlane) / (farPlane - nearPlane),
            -1,
            0,
            0,
            depth,
            0};
}

std::optional<zVec<double>> eulerAngles(const Matrix4& m) {
    const AngleCandidates c = angleCandidates(m);
    for (const double y : c.y) {
        for (const double z : c.z) {
            for (const double x : c.x) {
                if (anglesFit(m, x, y, z)) {
                    // The Z angle changes sign, so that setting the three angles rebuilds the same matrix.
                    const double outZ = degreesOf(z);
                    return zVec<double>(degreesOf(x), degreesOf(y), outZ == 0.0 ? 0.0 : -outZ);
                }
            }
        }
    }
    return std::nullopt;
}

namespace {

using Vector4 = std::array<double, 4>;

Vector4 operator*(const Matrix4& m, const Vector4& v) {
    Vector4 product{};
    for (std::size_t row = 0; row < 4; ++row) {
        product[row] = m[row] * v[0] + m[4 + row] * v[1] + m[8 + row] * v[2] + m[12 + row] * v[3];
    }
    return product;
}

/// The point that four coordinates stand for; none at infinity.
std::optional<zVec<double>> pointOf(const Vector4& v) {
    if (v[3] == 0.0) {
        return std::nullopt;
    }
    return zVec<double>(v[0] / v[3], v[1] / v[3], v[2] / v[3]);
}

/// The solution of m x = v by elimination with the largest pivots; none for a matrix without an inverse.
std::optional<Vector4> solved(Matrix4 m, Vector4 v) {
    for (std::size_t column = 0; column < 4; ++column) {
        std::size_t pivot = column;
        for (std::size_t row = column + 1; row < 4; ++row) {
            if (std::abs(m[4 * column + row]) > std::abs(m[4 * column + pivot])) {
                pivot = row;
            }
        }
        if (m[4 * column + pivot] == 0.0) {
            return std::nullopt;
        }
        for (std::size_t k = column; k < 4; ++k) {
            std::swap(m[4 * k + column], m[4 * k + pivot]);
        }
        std::swap(v[column], v[pivot]);
        for (std::size_t row = column + 1; row < 4; ++row) {
            const double factor = m[4 * column + row] / m[4 * column + column];
            for (std::size_t k = column + 1; k < 4; ++k) {
                m[4 * k + row] -= factor * m[4 * k + column];
            }
            v[row] -= factor * v[column];
        }
    }
    for (std::size_t row = 4; row-- > 0;) {
        for (std::size_t k = row + 1; k < 4; ++k) {
            v[row] -= m[4 * k + row] * v[k];
        }
        v[row] /= m[4 * row + row];
    }
    return v;
}

} // namespace

std::optional<zVec<double>> projectPoint(const zVec<double>& point, const Matrix4& modelView, const Matrix4& projection,
                                         const Viewport& viewport) {
    const auto seen = pointOf(projection * (modelView * Vector4{point.x, point.y, point.z, 1.0}));
    if (!seen) {
        return std::nullopt;
    }
    return zVec<double>((seen->x * 0.5 + 0.5) * viewport.width + viewport.x,
                        (seen->y * 0.5 + 0.5) * viewport.height + viewport.y, seen->z * 0.5 + 0.5);
}

namespace {

/// Lengths outside of 1e-18 to 1e18 make products in the inverse of the matrices that no number holds.
constexpr int largestPlainExponent = 60;

/// The matrices as they would be for a model of 2^exponent its size; `projection` may change by a factor as a whole,
/// as its results are divided by their last part.
void scaleModel(Matrix4& modelView, Matrix4& projection, int exponent) {
    for (std::size_t row = 0; row < 3; ++row) {
        modelView[12 + row] = std::ldexp(modelView[12 + row], exponent);
    }
    double largest = 0.0;
    for (std::size_t i = 0; i < 12; ++i) {
        largest = std::max(largest, std::abs(projection[i]));
    }
    const int level = largest > 0.0 && std::isfinite(largest) ? -std::ilogb(largest) : 0;
    for (std::size_t i = 0; i < 16; ++i) {
        projection[i] = std::ldexp(projection[i], i < 12 ? level : level + exponent);
    }
}

} // namespace

std::optional<zVec<double>> unprojectPoint(const zVec<double>& window, const Matrix4& modelView,
                                           const Matrix4& projection, const Viewport& viewport) {
    const double distance = std::max({std::abs(modelView[12]), std::abs(modelView[13]), std::abs(modelView[14])});
    const int level = distance > 0.0 && std::isfinite(distance) ? std::ilogb(distance) : 0;
    const int exponent = std::abs(level) > largestPlainExponent ? -level : 0;
    Matrix4 scaledView = modelView;
    Matrix4 scaledProjection = projection;
    if (exponent != 0) {
        scaleModel(scaledView, scaledProjection, exponent);
    }
    const Vector4 seen = {(window.x - viewport.x) / viewport.width * 2.0 - 1.0,
                          (window.y - viewport.y) / viewport.height * 2.0 - 1.0, window.z * 2.0 - 1.0, 1.0};
    const auto found = solved(scaledProjection * scaledView, seen);
    auto point = found ? pointOf(*found) : std::nullopt;
    if (point && exponent != 0) {
        point = {std::ldexp(point->x, -exponent), std::ldexp(point->y, -exponent), std::ldexp(point->z, -exponent)};
    }
    return point;
}

} // namespace velmora
