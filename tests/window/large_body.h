#pragma once

#include <cmath>
#include <filesystem>
#include <fstream>

namespace velmora::test {

/// Writes a closed body of 2 * side * side triangles, less those at its poles: long along x, flat along z, its front
/// outside.
inline std::filesystem::path writeLargeBody(const std::filesystem::path& path, int side) {
    constexpr double pi = 3.14159265358979;
    std::ofstream file(path);
    const int rings = side - 1;
    file << "TITLE = \"body\"\nVARIABLES = \"x\" \"y\" \"z\"\nZONE T=\"body\", N=" << rings * side + 2
         << ", E=" << 2 * rings * side << ", F=FEPOINT, ET=TRIANGLE\n";
    file << "-4 0 0\n";
    for (int n = 1; n <= rings; ++n) {
        const double u = pi * n / side;
        for (int m = 0; m < side; ++m) {
            const double v = 2.0 * pi * m / side;
            const double fold = 1.0 + 0.05 * std::cos(5.0 * v) * std::sin(3.0 * u);
            file << -4.0 * std::cos(u) << ' ' << fold * std::sin(u) * std::cos(v) << ' '
                 << 0.6 * fold * std::sin(u) * std::sin(v) << '\n';
        }
    }
    file << "4 0 0\n";
    const auto node = [side](int n, int m) { return 2 + (n - 1) * side + (m % side); };
    const int last = rings * side + 2;
    for (int m = 0; m < side; ++m) {
        file << 1 << ' ' << node(1, m + 1) << ' ' << node(1, m) << '\n';
        for (int n = 1; n < rings; ++n) {
            file << node(n, m) << ' ' << node(n, m + 1) << ' ' << node(n + 1, m) << '\n'
                 << node(n, m + 1) << ' ' << node(n + 1, m + 1) << ' ' << node(n + 1, m) << '\n';
        }
        file << node(rings, m) << ' ' << node(rings, m + 1) << ' ' << last << '\n';
    }
    return path;
}

} // namespace velmora::test
