#pragma once

#include <array>
#include <cmath>

/// Turning a point about an axis, written out case by case on plain arrays.
namespace velmora::reference {

using Triple = std::array<double, 3>;

inline Triple minus(const Triple& p, const Triple& q) {
    return {p[0] - q[0], p[1] - q[1], p[2] - q[2]};
}

inline double product(const Triple& p, const Triple& q) {
    return p[0] * q[0] + p[1] * q[1] + p[2] * q[2];
}

inline double norm(const Triple& p) {
    return std::sqrt(product(p, p));
}

inline Triple along(const Triple& start, const Triple& step, double t) {
    return {start[0] + step[0] * t, start[1] + step[1] * t, start[2] + step[2] * t};
}

/// The code of the foot of P on the line from A to B; F and d are written unless it is 0 or no case fits.
inline int foot(const Triple& A, const Triple& B, const Triple& P, Triple& F, double& d) {
    const double a = norm(minus(P, A));
    const double b = norm(minus(P, B));
    const double L = norm(minus(A, B));
    if (L < 1e-6) {
        return 0;
    }
    const double c1 = product(minus(B, A), minus(P, A)) / a / L;
    const double c2 = product(minus(A, B), minus(P, B)) / b / L;
    int code = -1;
    if (std::fabs(c1) < 0.0001) {
        code = 2;
        F = A;
        d = a;
    } else if (std::fabs(c2) < 0.0001) {
        code = 2;
        F = B;
        d = b;
    } else if (c1 > 0 && c2 > 0) {
        const double t = (a * a - b * b + L * L) * 0.5 / L / L;
        F = along(A, minus(B, A), t);
        d = norm(minus(P, F));
    } else if (c1 > 0 && c2 < 0) {
        const auto e = static_cast<float>((a * a - b * b - L * L) * 0.5 / L);
        const float t = (e + static_cast<float>(L)) / static_cast<float>(L);
        F = along(A, minus(B, A), t);
        d = static_cast<float>(norm(minus(P, F)));
        code = 1;
    } else if (c1 < 0 && c2 > 0) {
        const auto e = static_cast<float>((b * b - L * L - a * a) * 0.5 / L);
        const float t = e / static_cast<float>(L);
        F = along(A, minus(A, B), t);
        d = static_cast<float>(norm(minus(P, F)));
    }
    return code;
}

/// Turns P; false for an axis that is too short. B moves away when the foot falls on it.
inline bool turn(Triple& P, const Triple& A, Triple& B, double degrees) {
    const double radians = degrees * 0.01745329;
    for (;;) {
        Triple F = P; // what lies in an end of the axis is its own foot
        double d = 0;
        const int code = foot(A, B, P, F, d);
        if (code == 0) {
            return false;
        }
        Triple u = minus(B, F);
        const double length = norm(u);
        if (length < 1e-6) {
            B = along(A, minus(B, A), 1.5);
            continue;
        }
        if (code == 1) {
            u = {-u[0], -u[1], -u[2]};
        }
        Triple w = minus(P, F);
        const double r = norm(w);
        if (r < 9.999999747378752e-05) {
            return true;
        }
        for (int i = 0; i < 3; ++i) {
            w[i] = w[i] / r;
            u[i] = u[i] / length;
        }
        Triple n = {u[1] * w[2] - u[2] * w[1], u[2] * w[0] - u[0] * w[2], u[0] * w[1] - u[1] * w[0]};
        const double size = norm(n);
        for (int i = 0; i < 3; ++i) {
            P[i] = F[i] + w[i] * (d * std::cos(radians)) + n[i] / size * (d * std::sin(radians));
        }
        return true;
    }
}

} // namespace velmora::reference
