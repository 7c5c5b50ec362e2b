// Writes the example models into the folder given: wing.apt and body.apt. x runs aft, y up, z along the span. The step
// to the next point cross the step to the next section points outwards everywhere: that side of a surface is drawn
// filled.

#include <cmath>
#include <filesystem>
#include <iostream>
#include <numbers>
#include <string>

#include "apt.h"

namespace {

using velmora::Patch;
using velmora::PatchList;
using velmora::PointList;
using Point = velmora::zVec<double>;

constexpr double pi = std::numbers::pi;

/// Half thickness of the symmetrical four-digit aerofoil with a closed trailing edge, for a chord of 1.
double halfThickness(double x, double thickness) {
    return 5.0 * thickness *
           (0.2969 * std::sqrt(x) - 0.1260 * x - 0.3516 * x * x + 0.2843 * x * x * x - 0.1036 * x * x * x * x);
}

/// Parabolic mean line with its greatest height at 40 percent of a chord of 1.
double meanLine(double x, double height) {
    const double p = 0.4;
    return x < p ? height / (p * p) * (2 * p * x - x * x)
                 : height / ((1 - p) * (1 - p)) * ((1 - 2 * p) + 2 * p * x - x * x);
}

/// The wing's shape at a fraction of its half span, 0 to 1.
struct Station {
    double chord;
    double leadingEdge;
    double height;
    double span;
    double thickness;
    double camber;
};

Station stationAt(double fraction) {
    const double halfSpan = 6.0;
    return {2.0 - 1.2 * fraction, 2.2 * fraction,         0.35 * fraction,
            halfSpan * fraction,  0.14 - 0.04 * fraction, 0.02 * (1.0 - 0.5 * fraction)};
}

Point wingPoint(const Station& s, double x, double side) {
    const double y = meanLine(x, s.camber) + side * halfThickness(x, s.thickness);
    return {s.leadingEdge + s.chord * x, s.height + s.chord * y, s.span};
}

/// Around the profile from the upper trailing edge over the nose to the lower one, denser at the trailing edge and the
/// nose.
PointList wingSection(double fraction, int points) {
    const Station s = stationAt(fraction);
    PointList section;
    for (int m = 0; m < points; ++m) {
        const double angle = pi * (2.0 * m / (points - 1) - 1.0);
        section.push_back(wingPoint(s, 0.5 * (1.0 - std::cos(angle)), angle < 0.0 ? 1.0 : -1.0));
    }
    return section;
}

Patch wingSurface() {
    Patch patch;
    const int sections = 25;
    for (int n = 0; n < sections; ++n) {
        patch.push_back(wingSection(static_cast<double>(n) / (sections - 1), 61));
    }
    return patch;
}

/// The rounded tip: half circles over the last profile, from its lower to its upper side.
Patch wingTip() {
    const Station s = stationAt(1.0);
    Patch patch;
    const int sections = 13;
    const int points = 31;
    for (int n = 0; n < sections; ++n) {
        const double turn = pi * (sections - 1 - n) / (sections - 1);
        PointList section;
        for (int m = 0; m < points; ++m) {
            const double x = 0.5 * (1.0 - std::cos(pi * m / (points - 1)));
            const double radius = s.chord * halfThickness(x, s.thickness);
            const double middle = s.height + s.chord * meanLine(x, s.camber);
            section.push_back(
                {s.leadingEdge + s.chord * x, middle + radius * std::cos(turn), s.span + radius * std::sin(turn)});
        }
        patch.push_back(section);
    }
    return patch;
}

/// A ring of an elliptical body: half width and half height at a station. It begins at the bottom and goes over -z
/// first.
PointList ring(double x, double axisHeight, double halfWidth, double halfHeight, int points) {
    PointList section;
    for (int m = 0; m < points; ++m) {
        const double angle = 2.0 * pi * (points - 1 - m) / (points - 1);
        section.push_back({x, axisHeight - halfHeight * std::cos(angle), halfWidth * std::sin(angle)});
    }
    return section;
}

constexpr int ringPoints = 49;
constexpr double bodyWidth = 0.8;
constexpr double bodyHeight = 0.95;

/// An ellipsoidal nose that droops a little; its first section is one point.
Patch bodyNose() {
    Patch patch;
    const int sections = 17;
    for (int n = 0; n < sections; ++n) {
        const double angle = 0.5 * pi * n / (sections - 1);
        const double fullness = std::sin(angle);
        patch.push_back(ring(2.5 * (1.0 - std::cos(angle)), -0.25 * (1.0 - fullness), bodyWidth * fullness,
                             bodyHeight * fullness, ringPoints));
    }
    return patch;
}

Patch bodyMiddle() {
    Patch patch;
    const int sections = 21;
    for (int n = 0; n < sections; ++n) {
        patch.push_back(ring(2.5 + 7.0 * n / (sections - 1), 0.0, bodyWidth, bodyHeight, ringPoints));
    }
    return patch;
}

/// A tail that narrows and rises to a short edge.
Patch bodyTail() {
    Patch patch;
    const int sections = 21;
    for (int n = 0; n < sections; ++n) {
        const double t = static_cast<double>(n) / (sections - 1);
        const double narrowing = 1.0 - t * t * (3.0 - 2.0 * t);
        patch.push_back(ring(9.5 + 4.5 * t, 0.6 * t * t, bodyWidth * (0.03 + 0.97 * narrowing),
                             bodyHeight * (0.08 + 0.92 * narrowing), ringPoints));
    }
    return patch;
}

bool write(const std::filesystem::path& path, const PatchList& patches) {
    const bool written{velmora::writeApt(path, patches, 16)};
    std::cout << (written ? "wrote " : "cannot write ") << path.string() << '\n';
    return written;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: make_examples FOLDER\n";
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    const bool wing = write(folder / "wing.apt", {wingSurface(), wingTip()});
    const bool body = write(folder / "body.apt", {bodyNose(), bodyMiddle(), bodyTail()});
    return wing && body ? 0 : 1;
}
