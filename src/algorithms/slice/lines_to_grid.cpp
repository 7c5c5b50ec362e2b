#include "lines_to_grid.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "ProgressCounter.h"
#include "carried_values.h"
#include "polyline.h"
#include "rebreak_kernels.h"
#include "same_point.h"
#include "vectors.h"

namespace velmora {

namespace {

/// The coordinates of points, each in a sequence of its own.
struct Coordinates {
    std::vector<double> x;
    std::vector<double> y;
    std::vector<double> z;

    explicit Coordinates(std::size_t count) : x(count), y(count), z(count) {}
};

PointList resampled(const PointList& section, std::int32_t points, bool spline) {
    constexpr std::int32_t fewestToClean = 4;
    const auto wanted = static_cast<std::size_t>(std::max(points, 0));
    if (section.size() < 2 || points < 2) {
        return {points < 2 ? 0 : wanted, section.empty() ? zVec<double>() : section.front()};
    }
    Coordinates in(section.size());
    for (std::size_t i = 0; i < section.size(); ++i) {
        in.x[i] = section[i].x;
        in.y[i] = section[i].y;
        in.z[i] = section[i].z;
    }
    std::int32_t count = countOf(section);
    if (count >= fewestToClean) {
        RemoveCoincidentPoints(in.x.data(), in.y.data(), in.z.data(), count);
    }
    Coordinates out(wanted);
    if (spline) {
        SplineRebreak(in.x.data(), in.y.data(), in.z.data(), count, out.x.data(), out.y.data(), out.z.data(), points,
                      0);
    } else {
        LinearRebreak(in.x.data(), in.y.data(), in.z.data(), count, out.x.data(), out.y.data(), out.z.data(), points,
                      1);
    }
    PointList result;
    result.reserve(wanted);
    for (std::size_t i = 0; i < wanted; ++i) {
        result.emplace_back(out.x[i], out.y[i], out.z[i]);
    }
    return result;
}

} // namespace

PatchList linesToGrid(const PatchList& lines, std::int32_t points, bool spline, PatchList* values,
                      const ReportProgress& report) {
    PatchList grid;
    grid.reserve(lines.size());
    const std::vector<double> equalSteps = progressionFractions(points, 1.0);
    std::int64_t total = 0;
    for (const Patch& patch : lines) {
        total += countOf(patch);
    }
    ProgressCounter progress(report, total);
    for (std::size_t k = 0; k < lines.size(); ++k) {
        const Patch& patch = lines[k];
        Patch& sections = grid.emplace_back();
        sections.reserve(patch.size());
        for (const PointList& section : patch) {
            if (values != nullptr) {
                PointList& own = (*values)[k][sections.size()];
                own = valuesAlong(section, own, equalSteps);
            }
            sections.push_back(resampled(section, points, spline));
            progress.advance();
        }
        for (std::size_t j = 0; j + 1 < sections.size(); ++j) {
            if (alignWithPrevious(sections[j], sections[j + 1]) && values != nullptr) {
                PointList& own = (*values)[k][j + 1];
                std::reverse(own.begin(), own.end());
            }
        }
    }
    return grid;
}

bool alignWithPrevious(const PointList& previous, PointList& next) {
    const std::size_t count = next.size();
    if (previous.size() != count) {
        return false;
    }
    double forward = 0.0;
    double backward = 0.0;
    for (std::size_t i = 0; i < count; ++i) {
        forward += squaredDistance(previous[i], next[i]);
        backward += squaredDistance(previous[i], next[count - 1 - i]);
    }
    if (!(backward < forward)) {
        return false;
    }
    std::reverse(next.begin(), next.end());
    return true;
}

// ---- Alignment ------------------------------------------------------------------------------------------------------

namespace {

/// How a ring of points may be walked: from which point on, and which way.
struct Walk {
    std::size_t start = 0;
    bool backward = false;

    /// Where the walk through `count` points is after `step` steps.
    std::size_t at(std::size_t step, std::size_t count) const {
        return (backward ? start + count - step : start + step) % count;
    }
};

/// The sum of the distances from the first `count` points of `previous` to those of the walk through `ring`.
double sumOfDistances(const PointList& previous, const PointList& ring, std::size_t count, const Walk& walk) {
    double sum = 0.0;
    std::size_t at = walk.at(0, count);
    for (std::size_t i = 0; i < count; ++i) {
        sum += distance(previous[i], ring[at]);
        if (walk.backward) {
            at = at == 0 ? count - 1 : at - 1;
        } else {
            at = at + 1 == count ? 0 : at + 1;
        }
    }
    return sum;
}

double lengthOfRing(const PointList& ring, std::size_t count) {
    double length = 0.0;
    for (std::size_t i = 0; i < count; ++i) {
        length += distance(ring[i], ring[(i + 1) % count]);
    }
    return length;
}

/// How many starts behind one of that sum cannot have a sum below `least`. From each to the next every point of the
/// walk moves by one step along the ring, so that the sum changes by the ring's length at most.
std::size_t startsWithoutHope(double sum, double least, double ringLength, std::size_t count) {
    constexpr double rounding = 1e-9; // of a sum, with room to spare
    const double starts = (sum - least - rounding * sum) / ringLength;
    return starts >= 1.0 ? static_cast<std::size_t>(std::min(starts, static_cast<double>(count))) : 0;
}

Walk closestWalk(const PointList& previous, const PointList& ring, std::size_t count) {
    const double ringLength = lengthOfRing(ring, count);
    Walk best;
    double least = sumOfDistances(previous, ring, count, best);
    for (const bool backward : {false, true}) {
        for (std::size_t start = 0; start < count;) {
            const Walk walk{start, backward};
            const double sum = sumOfDistances(previous, ring, count, walk);
            if (sum < least) {
                best = walk;
                least = sum;
            }
            start += 1 + startsWithoutHope(sum, least, ringLength, count);
        }
    }
    return best;
}

/// The walk that lies closest to the section before; one that goes straight through where nothing is to change.
Walk walkBeside(const PointList& previous, const PointList& section, bool closed) {
    const std::size_t count = section.size();
    if (closed) {
        return closestWalk(previous, section, count - 1);
    }
    const Walk turned{count - 1, true};
    const bool less =
        sumOfDistances(previous, section, count, turned) < sumOfDistances(previous, section, count, Walk());
    return less ? turned : Walk();
}

/// A section that comes back to where it began.
bool isRing(const PointList& section) {
    constexpr std::size_t fewest = 4;
    return section.size() >= fewest && samePoint(section.front(), section.back());
}

PointList walkedThrough(const PointList& section, const Walk& walk, bool closed) {
    const std::size_t count = closed ? section.size() - 1 : section.size();
    PointList walked;
    walked.reserve(section.size());
    for (std::size_t i = 0; i < section.size(); ++i) {
        walked.push_back(section[walk.at(i, count)]);
    }
    return walked;
}

} // namespace

void alignSections(Patch& patch, Patch* values, const ReportProgress& report) {
    ProgressCounter progress(report, countOf(patch) - 1);
    for (std::size_t j = 1; j < patch.size(); ++j) {
        progress.advance();
        PointList& section = patch[j];
        if (section.size() != patch[j - 1].size() || section.size() < 2) {
            continue;
        }
        const bool closed = isRing(section);
        const Walk walk = walkBeside(patch[j - 1], section, closed);
        if (walk.start == 0 && !walk.backward) {
            continue;
        }
        section = walkedThrough(section, walk, closed);
        if (values != nullptr) {
            (*values)[j] = walkedThrough((*values)[j], walk, closed);
        }
    }
}

// ---- Twists ---------------------------------------------------------------------------------------------------------

namespace {

/// Points enough to tell where a section begins; its ends are among them.
PointList sampled(const PointList& section) {
    constexpr std::size_t mostPoints = 257;
    if (section.size() <= mostPoints) {
        return section;
    }
    PointList points;
    for (std::size_t i = 0; i < mostPoints; ++i) {
        points.push_back(section[i * (section.size() - 1) / (mostPoints - 1)]);
    }
    return points;
}

bool isTwisted(const PointList& previous, const PointList& section) {
    constexpr double worthTelling = 0.9;
    constexpr std::size_t partOfRing = 8;
    const bool closed = isRing(section);
    const std::size_t count = closed ? section.size() - 1 : section.size();
    const Walk walk = walkBeside(previous, section, closed);
    const std::size_t shift = std::min(walk.start, count - walk.start);
    return (walk.backward || shift * partOfRing > count) &&
           sumOfDistances(previous, section, count, walk) <
               worthTelling * sumOfDistances(previous, section, count, Walk());
}

} // namespace

std::vector<std::int32_t> twistedSections(const Patch& patch) {
    std::vector<std::int32_t> twisted;
    for (std::size_t j = 1; j < patch.size(); ++j) {
        if (patch[j].size() == patch[j - 1].size() && patch[j].size() > 1 &&
            isTwisted(sampled(patch[j - 1]), sampled(patch[j]))) {
            twisted.push_back(static_cast<std::int32_t>(j));
        }
    }
    return twisted;
}

} // namespace velmora
