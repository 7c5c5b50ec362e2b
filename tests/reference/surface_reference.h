#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

#include "PatchList.h"
#include "rebreak_patch_reference.h"

/// The patch operations in their plainest form: one written out for sections and one for lines, every point copied, the
/// scans as they were first told. The shipped ones must give the same bits.
namespace velmora::reference {

inline double gap(const zVec<double>& a, const zVec<double>& b) {
    const double dx = a.x - b.x;
    const double dy = a.y - b.y;
    const double dz = a.z - b.z;
    return std::sqrt(dx * dx + dy * dy + dz * dz);
}

inline Points pointsOf(const PointList& list) {
    Points points;
    for (const zVec<double>& p : list) {
        points.x.push_back(p.x);
        points.y.push_back(p.y);
        points.z.push_back(p.z);
    }
    return points;
}

inline PointList listOf(const Points& points) {
    PointList list;
    for (std::size_t i = 0; i < points.size(); ++i) {
        list.push_back({points.x[i], points.y[i], points.z[i]});
    }
    return list;
}

/// `count` outputs that lie on the curve's end until a kernel writes them.
inline Points outputsFor(const PointList& curve, std::size_t count) {
    return {Column(count, curve.back().x), Column(count, curve.back().y), Column(count, curve.back().z)};
}

inline PointList wholeLine(const Patch& patch, std::size_t j) {
    return lineOf(patch, j, 1, static_cast<int>(patch.size()));
}

inline void putLine(Patch& patch, std::size_t j, const PointList& line) {
    for (std::size_t i = 0; i < patch.size(); ++i) {
        patch[i][j] = line[i];
    }
}

// ---- Rebreak part ---------------------------------------------------------------------------------------------------

struct PartFields {
    bool spline = true;
    bool fit = false;
    bool after = false;
    int exactness = 0;
    int newCount = 2;
    double compression = 1;
    int firstPoint = 1;
    int lastPoint = 1;
};

/// What became of one section: its points, and whether the two messages would be shown.
struct PartOutcome {
    PointList section;
    bool zeroLength = false;
    bool unfitted = false;
};

inline double searchedCompression(const Points& stretch, const PartFields& f, double d1, double d2, bool& failed) {
    const double delta = d1 - d2;
    double c = f.compression;
    double lower = 0;
    double upper = 0;
    const bool above = c > 1.0000001;
    if (above) {
        lower = 1;
        upper = 10000;
    } else {
        lower = 0.0001;
        upper = 1;
    }
    for (int step = 0; step < 200; ++step) {
        const auto count = static_cast<std::size_t>(f.newCount);
        const std::size_t n = stretch.size();
        Points out{Column(count, stretch.x[n - 1]), Column(count, stretch.y[n - 1]), Column(count, stretch.z[n - 1])};
        linearRebreak(stretch, out, c);
        const PointList list = listOf(out);
        const double e = f.after ? gap(list[1], list[0]) : gap(list[count - 1], list[count - 2]);
        if (c > 0.9999999 && c < 1.0000001) {
            return c;
        }
        double t = d1;
        if (!f.after || above) {
            const bool aimsLonger = !f.after && above ? d2 >= d1 : !(d2 >= d1);
            t = aimsLonger ? d1 + delta : d1;
        }
        const double old = c;
        if (std::abs(e - t) > 0.01 * t) {
            const bool below = e < t;
            if (below != f.after) {
                lower = c;
                c = (upper + c) / 2;
            } else {
                upper = c;
                c = (c + lower) / 2;
            }
        } else if (std::abs(e - t) < 0.01 * t) {
            return c;
        }
        const double lowLimit = f.after ? (above ? 1.0001 : 0.001) : (above ? 1.00001 : 1e-5);
        const double highLimit = f.after ? (above ? 9999 : 0.99) : (above ? 9999.9999 : 0.99999);
        if (c < lowLimit || c > highLimit || c == old) {
            break;
        }
    }
    failed = true;
    return c;
}

inline PartOutcome rebreakPartOf(const PointList& section, const PartFields& f) {
    PartOutcome outcome;
    outcome.section = section;
    Points in = pointsOf(pointsFromTo(section, f.firstPoint, f.lastPoint));
    if (in.size() > 3) {
        removeCoincidentPoints(in);
    }
    if (f.lastPoint - f.firstPoint + 1 < 2 || parameters(in).back() < 1e-6) {
        outcome.zeroLength = true;
        return outcome;
    }
    double c = f.compression;
    if (f.fit) {
        const auto at = [&section](int number) { return section[static_cast<std::size_t>(number - 1)]; };
        const double d1 =
            f.after ? gap(at(f.firstPoint), at(f.firstPoint - 1)) : gap(at(f.lastPoint + 1), at(f.lastPoint));
        const double d2 =
            f.after ? gap(at(f.firstPoint - 1), at(f.firstPoint - 2)) : gap(at(f.lastPoint + 2), at(f.lastPoint + 1));
        c = searchedCompression(in, f, d1, d2, outcome.unfitted);
    }
    Points out = outputsFor(listOf(in), static_cast<std::size_t>(f.newCount));
    Column unused;
    if (f.spline) {
        splineRebreak(in, out, f.exactness, 1, c, unused, true);
    } else {
        linearRebreak(in, out, c);
    }
    outcome.section = pointsFromTo(section, 1, f.firstPoint - 1);
    for (const zVec<double>& p : listOf(out)) {
        outcome.section.push_back(p);
    }
    for (const zVec<double>& p : pointsFromTo(section, f.lastPoint + 1, static_cast<int>(section.size()))) {
        outcome.section.push_back(p);
    }
    return outcome;
}

// ---- Spacing by a law -----------------------------------------------------------------------------------------------

/// A curve with the spacing of the law, as Match border and Merge rebuild it. The law is changed in place.
inline PointList respacedByLaw(const PointList& curve, Column& law) {
    Points in = pointsOf(curve);
    if (in.size() > 3) {
        removeCoincidentPoints(in);
    }
    Points out = outputsFor(curve, curve.size());
    if (in.size() < curve.size()) {
        linearRebreakLaw(pointsOf(curve), out, law);
    } else {
        splineRebreak(in, out, 0, 3, 1, law, true);
    }
    return listOf(out);
}

inline void regridSections(Patch& patch, std::size_t j) {
    Column law = measuredLaw(patch[j]);
    for (std::size_t s = 0; s < patch.size() && law.back() > 0; ++s) {
        if (s != j) {
            patch[s] = respacedByLaw(patch[s], law);
        }
    }
}

inline void regridLines(Patch& patch, std::size_t j) {
    Column law = measuredLaw(wholeLine(patch, j));
    for (std::size_t line = 0; line < patch[0].size() && law.back() > 0; ++line) {
        if (line != j) {
            putLine(patch, line, respacedByLaw(wholeLine(patch, line), law));
        }
    }
}

// ---- Merge ----------------------------------------------------------------------------------------------------------

inline Patch mergedBySections(const Patch& base, const PatchList& others, bool matching) {
    Patch merged = base;
    Column law = measuredLaw(base.back());
    for (const Patch& other : others) {
        for (std::size_t s = 1; s < other.size(); ++s) {
            merged.push_back(matching && law.back() > 0 ? respacedByLaw(other[s], law) : other[s]);
        }
    }
    return merged;
}

inline Patch mergedByLines(const Patch& base, const PatchList& others, bool matching, bool keepFirst) {
    Patch merged = base;
    Column law = measuredLaw(wholeLine(base, base[0].size() - 1));
    for (const Patch& other : others) {
        for (std::size_t j = keepFirst ? 0 : 1; j < other[0].size(); ++j) {
            PointList line = wholeLine(other, j);
            if (matching && law.back() > 0) {
                line = respacedByLaw(line, law);
            }
            for (std::size_t i = 0; i < merged.size(); ++i) {
                merged[i].push_back(line[i]);
            }
        }
    }
    return merged;
}

// ---- Match border ---------------------------------------------------------------------------------------------------

/// Border `last` of the kind "section" or "line".
inline PointList borderPoints(const Patch& patch, bool line, bool last) {
    if (line) {
        return wholeLine(patch, last ? patch[0].size() - 1 : 0);
    }
    return last ? patch.back() : patch.front();
}

inline void putBorder(Patch& patch, bool line, bool last, const PointList& points) {
    if (line) {
        putLine(patch, last ? patch[0].size() - 1 : 0, points);
    } else {
        (last ? patch.back() : patch.front()) = points;
    }
}

/// Kinds in the order of the table: border of A, border of B (true a line), reversed.
struct PairingKind {
    bool lineOfA;
    bool lineOfB;
    bool reversed;
};
inline constexpr std::array<PairingKind, 8> pairingKinds = {{{false, false, false},
                                                             {false, false, true},
                                                             {false, true, false},
                                                             {false, true, true},
                                                             {true, false, false},
                                                             {true, false, true},
                                                             {true, true, false},
                                                             {true, true, true}}};

inline double meanGap(const PointList& a, PointList b, bool reversed) {
    if (a.size() != b.size()) {
        return -1.0;
    }
    if (reversed) {
        std::reverse(b.begin(), b.end());
    }
    double sum = 0;
    for (std::size_t k = 0; k < a.size(); ++k) {
        sum += gap(a[k], b[k]);
    }
    return sum / static_cast<double>(a.size());
}

/// False when nothing was near enough. `entry` is the choice.
inline bool matchPatches(const Patch& a, Patch& b, bool grid, int& entry) {
    std::vector<double> table(32, 1e12);
    for (std::size_t kind = 0; kind < 8; ++kind) {
        for (std::size_t i = 0; i < 2; ++i) {
            for (std::size_t j = 0; j < 2; ++j) {
                const PairingKind k = pairingKinds[kind];
                table[4 * kind + 2 * i + j] =
                    meanGap(borderPoints(a, k.lineOfA, i == 1), borderPoints(b, k.lineOfB, j == 1), k.reversed);
            }
        }
    }
    double best = 1e6;
    entry = -1;
    for (int i = 0; i < 32; ++i) {
        const double value = table[static_cast<std::size_t>(i)];
        if (best > value && value > -1e-6) {
            best = value;
            entry = i;
        }
    }
    if (entry < 0 || best > 0.1) {
        return false;
    }
    const PairingKind k = pairingKinds[static_cast<std::size_t>(entry / 4)];
    const bool lastOfB = entry % 2 == 1;
    PointList points = borderPoints(a, k.lineOfA, entry / 2 % 2 == 1);
    if (k.reversed) {
        std::reverse(points.begin(), points.end());
    }
    putBorder(b, k.lineOfB, lastOfB, points);
    if (grid && k.lineOfB) {
        regridLines(b, lastOfB ? b[0].size() - 1 : 0);
    } else if (grid) {
        regridSections(b, lastOfB ? b.size() - 1 : 0);
    }
    return true;
}

// ---- Smooth and Coons -----------------------------------------------------------------------------------------------

inline Column normalised(Column u) {
    const double total = u.back();
    for (std::size_t j = 0; j < u.size(); ++j) {
        u[j] = total < 0.0001 ? static_cast<double>(j) / static_cast<double>(u.size() - 1) : u[j] / total;
    }
    return u;
}

/// One inner curve; `scanned` points are looked at for coincident neighbours.
inline PointList smoothedCurve(const PointList& curve, Column law, std::size_t sections, std::size_t scanned,
                               int& function) {
    if (sections > 3) {
        Points looked = pointsOf(PointList(curve.begin(), curve.begin() + static_cast<std::ptrdiff_t>(scanned)));
        removeCoincidentPoints(looked);
        if (looked.size() < scanned) {
            function = 2;
        }
    }
    bool repeated = false;
    for (std::size_t j = 1; j < curve.size(); ++j) {
        repeated = repeated || gap(curve[j], curve[j - 1]) == 0;
    }
    Points out = outputsFor(curve, curve.size());
    if (function == 1 && !repeated) {
        splineRebreak(pointsOf(curve), out, 0, 3, 1, law, true);
    } else {
        linearRebreakLaw(pointsOf(curve), out, law);
    }
    return listOf(out);
}

inline void smoothedSections(Patch& patch, int& function) {
    const std::size_t N = patch.size();
    const std::size_t M = patch[0].size();
    const Column u0 = normalised(measuredLaw(patch[0]));
    const Column u1 = normalised(measuredLaw(patch[N - 1]));
    for (std::size_t i = 1; i + 1 < N; ++i) {
        Column law;
        for (std::size_t j = 0; j < M; ++j) {
            law.push_back(u0[j] + (u1[j] - u0[j]) * static_cast<double>(i) / static_cast<double>(N - 1));
        }
        patch[i] = smoothedCurve(patch[i], law, N, std::min(N, M), function);
    }
}

inline void smoothedLines(Patch& patch, int& function) {
    const std::size_t N = patch.size();
    const std::size_t M = patch[0].size();
    const Column u0 = normalised(measuredLaw(wholeLine(patch, 0)));
    const Column u1 = normalised(measuredLaw(wholeLine(patch, M - 1)));
    for (std::size_t j = 1; j + 1 < M; ++j) {
        Column law;
        for (std::size_t i = 0; i < N; ++i) {
            law.push_back(u0[i] + (u1[i] - u0[i]) * static_cast<double>(j) / static_cast<double>(M - 1));
        }
        putLine(patch, j, smoothedCurve(wholeLine(patch, j), law, N, N, function));
    }
}

inline Column coonsParameters(const PointList& section) {
    Column a = measuredLaw(section);
    const double total = a.back();
    for (std::size_t j = 1; j < a.size(); ++j) {
        a[j] = total > 0.0001 ? a[j] / total : static_cast<double>(j - 1) / static_cast<double>(a.size() - 1);
    }
    return a;
}

inline Patch coonsOf(const Patch& P) {
    const std::size_t N = P.size();
    const std::size_t M = P[0].size();
    Patch rebuilt = P;
    const double L0 = measuredLaw(wholeLine(P, 0)).back();
    const double L1 = measuredLaw(wholeLine(P, M - 1)).back();
    const Column a = coonsParameters(P[0]);
    const Column b = coonsParameters(P[N - 1]);
    double s0 = 0;
    double s1 = 0;
    for (std::size_t i = 1; i + 1 < N; ++i) {
        const double share = static_cast<double>(i - 1) / static_cast<double>(N - 1);
        s0 = L0 > 0.0001 ? s0 + gap(P[i][0], P[i - 1][0]) / L0 : share;
        s1 = L1 > 0.0001 ? s1 + gap(P[i][M - 1], P[i - 1][M - 1]) / L1 : share;
        for (std::size_t j = 1; j + 1 < M; ++j) {
            const double e = s1 - s0;
            const double d = b[j] - a[j];
            const double D = 1 - e * d;
            const double u = (a[j] + d * s0) / D;
            const double w = (s0 + e * a[j]) / D;
            const auto coordinate = [&](double zVec<double>::*x) {
                return (1 - w) * (P[0][j].*x) + w * (P[N - 1][j].*x) +
                       u * (P[i][M - 1].*x - (1 - s1) * (P[0][M - 1].*x) - s1 * (P[N - 1][M - 1].*x)) +
                       (1 - u) * (P[i][0].*x - (1 - s0) * (P[0][0].*x) - s0 * (P[N - 1][0].*x));
            };
            rebuilt[i][j] = {coordinate(&zVec<double>::x), coordinate(&zVec<double>::y), coordinate(&zVec<double>::z)};
        }
    }
    return rebuilt;
}

// ---- Split and interpolate ------------------------------------------------------------------------------------------

/// The list with patch K cut at section N; the list itself where there is nothing to cut.
inline PatchList splitList(const PatchList& list, std::size_t K, std::size_t N, bool line) {
    const std::size_t last = (line ? list[K][0].size() : list[K].size()) - 1;
    if (N == 0 || N == last) {
        return list;
    }
    PatchList out;
    for (std::size_t k = 0; k < list.size(); ++k) {
        if (k != K) {
            out.push_back(list[k]);
            continue;
        }
        Patch halves[2];
        for (std::size_t i = 0; i < list[k].size(); ++i) {
            PointList parts[2];
            for (std::size_t j = 0; j < list[k][i].size(); ++j) {
                const std::size_t at = line ? j : i;
                if (at <= N) {
                    parts[0].push_back(list[k][i][j]);
                }
                if (at >= N) {
                    parts[1].push_back(list[k][i][j]);
                }
            }
            for (std::size_t half = 0; half < 2; ++half) {
                if (!parts[half].empty()) {
                    halves[half].push_back(parts[half]);
                }
            }
        }
        out.push_back(halves[0]);
        out.push_back(halves[1]);
    }
    return out;
}

/// start + (to - from) * part / whole, point by point.
inline PointList blended(const PointList& start, const PointList& from, const PointList& to, double part,
                         double whole) {
    PointList points;
    for (std::size_t j = 0; j < start.size(); ++j) {
        points.push_back({start[j].x + (to[j].x - from[j].x) * part / whole,
                          start[j].y + (to[j].y - from[j].y) * part / whole,
                          start[j].z + (to[j].z - from[j].z) * part / whole});
    }
    return points;
}

inline PointList interpolated(const Patch& P, std::size_t N, double k) {
    if (N == 0) {
        return blended(P[0], P[0], P[1], k, 1);
    }
    if (N == P.size() - 1 || k <= 0) {
        return blended(P[N], P[N - 1], P[N], k, 1);
    }
    return blended(P[N], P[N], P[N + 1], k, 1);
}

/// `outcome`: 0 done, 1 too far, 2 double line, 3 stopped without a message.
inline PointList interpolatedTo(const Patch& P, std::size_t N, const zVec<double>& T, int& outcome) {
    std::size_t c = 0;
    for (std::size_t j = 0; j < P[N].size(); ++j) {
        if (gap(P[N][j], T) < gap(P[N][c], T)) {
            c = j;
        }
    }
    const double d = gap(P[N][c], T);
    outcome = 0;
    if (N == 0 || N == P.size() - 1) {
        const std::size_t other = N == 0 ? 1 : N - 1;
        const double g = gap(P[other][c], P[N][c]);
        if (g < 1e-8) {
            outcome = 3;
            return P[N];
        }
        const PointList plus = interpolated(P, N, d / g);
        const PointList minus = N == 0 ? blended(P[0], P[0], P[1], -(d / g), 1) : interpolated(P, N, -(d / g));
        return gap(minus[c], T) < gap(plus[c], T) ? minus : plus;
    }
    const double dPrev = gap(P[N - 1][c], P[N][c]);
    const double dNext = gap(P[N + 1][c], P[N][c]);
    if (d > dPrev && d > dNext) {
        outcome = 1;
        return P[N];
    }
    if (dNext >= gap(P[N + 1][c], T)) {
        outcome = dNext < 1e-8 ? 2 : 0;
        return outcome == 0 ? blended(P[N], P[N], P[N + 1], d, dNext) : P[N];
    }
    outcome = dPrev < 1e-8 ? 2 : 0;
    return outcome == 0 ? blended(P[N - 1], P[N - 1], P[N], gap(P[N - 1][c], T), dPrev) : P[N];
}

// ---- Correct line ---------------------------------------------------------------------------------------------------

/// The new section of A + B - 1 points from the two parts of a cut.
inline PointList joined(PointList first, PointList second, int A, int B) {
    if (second.size() < 2) {
        second = {second[0], second[0]};
    }
    PointList section;
    for (int part = 0; part < 2; ++part) {
        const PointList& curve = part == 0 ? first : second;
        Points in = pointsOf(curve);
        if (in.size() >= 3) {
            removeCoincidentPoints(in);
        }
        Points out = outputsFor(curve, static_cast<std::size_t>(part == 0 ? A : B));
        Column unused;
        splineRebreak(in, out, 0, 1, 1, unused, true);
        const PointList list = listOf(out);
        for (std::size_t i = part == 0 ? 0 : 1; i < list.size(); ++i) {
            section.push_back(list[i]);
        }
    }
    return section;
}

inline PointList resplit(const PointList& section, std::size_t split, int A, int B) {
    const auto at = section.begin() + static_cast<std::ptrdiff_t>(split);
    return joined(PointList(section.begin(), at + 1), PointList(at, section.end()), A, B);
}

inline Patch bentFromFirst(const Patch& patch, std::size_t p, std::size_t L, int A, int B, double power) {
    const std::size_t S = patch.size();
    double D = 0;
    for (std::size_t j = p + 1; j <= L; ++j) {
        D += gap(patch[S - 1][j], patch[S - 1][j - 1]);
    }
    const Column c = measuredLaw(wholeLine(patch, L));
    Patch bent = patch;
    for (std::size_t i = 1; i + 1 < S; ++i) {
        const double shift = std::pow(c[i] / c[S - 1], power) * D;
        const PointList& section = patch[i];
        PointList first;
        PointList second;
        double sum = 0;
        for (std::size_t k = p + 1; k < section.size(); ++k) {
            const double length = gap(section[k], section[k - 1]);
            if (sum + length >= shift) {
                const zVec<double> Q = section[k - 1] + (section[k] - section[k - 1]) * ((shift - sum) / length);
                first.assign(section.begin(), section.begin() + static_cast<std::ptrdiff_t>(k));
                first.push_back(Q);
                second = {Q};
                second.insert(second.end(), section.begin() + static_cast<std::ptrdiff_t>(k), section.end());
                break;
            }
            sum += length;
        }
        bent[i] = second.empty() ? resplit(section, section.size() - 1, A, B) : joined(first, second, A, B);
    }
    bent[0] = resplit(patch[0], p, A, B);
    bent[S - 1] = resplit(patch[S - 1], L, A, B);
    return bent;
}

} // namespace velmora::reference
