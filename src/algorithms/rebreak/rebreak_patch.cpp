#include "rebreak_patch.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "Respacer.h"
#include "parallel.h"

namespace velmora {

namespace {

std::size_t sizeOf(std::int32_t count) {
    return static_cast<std::size_t>(std::max(count, 0));
}

/// Re-spaces one stretch after the other by one law.
class StretchRebreaker {
public:
    StretchRebreaker(const RebreakLaw& law, std::vector<double> measuredLaw)
        : law_(law), measured_(std::move(measuredLaw)) {
        // The law covers every output: past the measured curve it stays at its end.
        const double end = measured_.empty() ? 0.0 : measured_.back();
        measured_.resize(std::max(measured_.size(), sizeOf(law.newCount)), end);
    }

    void clear() { respacer_.clear(); }
    void add(const zVec<double>& point) { respacer_.add(point); }
    zVec<double> output(std::int32_t i) const { return respacer_.output(i); }

    /// Fills the outputs from the points added, of which there are at least two.
    void run() {
        if (respacer_.count() > 3) {
            respacer_.dropCoincident();
        }
        if (law_.fitToLawCurve && !(measured_.back() > 0)) {
            respacer_.respace(!law_.linear, law_.newCount, 1.0, law_.exactness); // no length tells no spacing
        } else if (law_.fitToLawCurve) {
            scratchLaw_ = measured_; // the kernel changes it in place
            respacer_.respaceByLaw(!law_.linear, law_.newCount, law_.exactness, scratchLaw_.data());
        } else {
            respacer_.respace(!law_.linear, law_.newCount, law_.compression, law_.exactness);
        }
    }

private:
    const RebreakLaw& law_;
    std::vector<double> measured_;
    std::vector<double> scratchLaw_;
    Respacer respacer_;
};

/// Cuts the range of curves to the `count` curves that there are.
void cutCurves(CurveRange& curves, std::int32_t count) {
    curves.first = std::max(curves.first, 0);
    curves.last = std::min(curves.last, count);
    curves.lawCurve = std::clamp(curves.lawCurve, 0, std::max(count - 1, 0));
}

void cutStretchToSection(RebreakLaw& law, std::int32_t points) {
    if (law.firstPoint > points) {
        law.firstPoint = std::max(points - 1, 1);
    }
    law.lastPoint = std::min(law.lastPoint, points);
}

bool allOfLength(const Patch& patch, std::int32_t points) {
    return std::all_of(patch.begin(), patch.end(),
                       [points](const PointList& section) { return countOf(section) == points; });
}

constexpr std::size_t curvesOfChunk = 4;

/// The points of a section that are re-spaced, from 1.
struct Stretch {
    std::int32_t first;
    std::int32_t last;
};

void rebreakSection(PointList& section, const Stretch& stretch, std::int32_t newCount, std::size_t tailBound,
                    StretchRebreaker& rebreaker) {
    const auto first = sizeOf(stretch.first - 1);
    const auto behind = sizeOf(stretch.last);
    rebreaker.clear();
    std::for_each(section.begin() + stretch.first - 1, section.begin() + stretch.last,
                  [&](const zVec<double>& p) { rebreaker.add(p); });
    rebreaker.run();
    const std::size_t tailEnd = std::max(std::min(tailBound, section.size()), behind);
    PointList rebuilt;
    rebuilt.reserve(first + sizeOf(newCount) + (tailEnd - behind));
    rebuilt.insert(rebuilt.end(), section.begin(), section.begin() + stretch.first - 1);
    for (std::int32_t i = 0; i < newCount; ++i) {
        rebuilt.push_back(rebreaker.output(i));
    }
    rebuilt.insert(rebuilt.end(), section.begin() + stretch.last,
                   section.begin() + static_cast<std::ptrdiff_t>(tailEnd));
    section.swap(rebuilt);
}

} // namespace

void rebreakSections(Patch& patch, RebreakLaw& law, CurveRange curves) {
    cutCurves(curves, countOf(patch));
    if (curves.first >= curves.last || law.newCount < 2) {
        return;
    }
    // The law and the tail's bound are those of the captured section as it was.
    const PointList& lawSection = patch[sizeOf(curves.lawCurve)];
    const std::size_t tailBound = lawSection.size();
    const StretchRebreaker pattern(law, runningLength(lawSection.size(), [&](std::size_t i) { return lawSection[i]; }));
    // A section that is shorter than the stretch cuts it for those behind it too.
    std::vector<Stretch> stretches;
    for (std::int32_t n = curves.first; n < curves.last; ++n) {
        cutStretchToSection(law, countOf(patch[sizeOf(n)]));
        stretches.push_back({law.firstPoint, law.lastPoint});
    }
    std::vector<StretchRebreaker> rebreakers(workersFor(stretches.size(), curvesOfChunk), pattern);
    forEachChunk(stretches.size(), curvesOfChunk, [&](std::size_t begin, std::size_t end, std::size_t worker) {
        for (std::size_t i = begin; i < end; ++i) {
            if (stretches[i].last - stretches[i].first + 1 >= 2) {
                rebreakSection(patch[sizeOf(curves.first) + i], stretches[i], law.newCount, tailBound,
                               rebreakers[worker]);
            }
        }
    });
}

void rebreakLines(Patch& patch, RebreakLaw& law, CurveRange curves) {
    const std::int32_t sections = countOf(patch);
    const std::int32_t lines = lineCount(patch);
    cutCurves(curves, lines);
    law.firstPoint = std::clamp(law.firstPoint, 1, std::max(sections, 1));
    law.lastPoint = std::min(law.lastPoint, sections);
    if (curves.first >= curves.last || law.newCount < 2 || law.lastPoint - law.firstPoint + 1 < 2 ||
        !allOfLength(patch, lines)) {
        return;
    }
    const auto lawLine = sizeOf(curves.lawCurve);
    const StretchRebreaker pattern(law, runningLength(patch.size(), [&](std::size_t n) { return patch[n][lawLine]; }));

    const PointList blank(sizeOf(lines), patch.front().front());
    Patch rebuilt(patch.begin(), patch.begin() + law.firstPoint - 1);
    rebuilt.insert(rebuilt.end(), sizeOf(law.newCount), blank);
    rebuilt.insert(rebuilt.end(), patch.begin() + law.lastPoint, patch.end());

    const auto first = sizeOf(law.firstPoint - 1);
    const auto behind = sizeOf(law.lastPoint);
    std::vector<StretchRebreaker> rebreakers(workersFor(sizeOf(lines), curvesOfChunk), pattern);
    const auto rebreakLine = [&](std::size_t j, StretchRebreaker& rebreaker) {
        rebreaker.clear();
        for (std::size_t s = first; s < behind; ++s) {
            rebreaker.add(patch[s][j]);
        }
        rebreaker.run();
        for (std::int32_t i = 0; i < law.newCount; ++i) {
            rebuilt[first + sizeOf(i)][j] = rebreaker.output(i);
        }
    };
    forEachChunk(sizeOf(lines), curvesOfChunk, [&](std::size_t begin, std::size_t end, std::size_t worker) {
        for (std::size_t j = begin; j < end; ++j) {
            if (j >= sizeOf(curves.first) && j < sizeOf(curves.last)) {
                rebreakLine(j, rebreakers[worker]);
                continue;
            }
            for (std::size_t s = first; s < std::min(behind, rebuilt.size()); ++s) {
                rebuilt[s][j] = patch[s][j];
            }
        }
    });
    patch.swap(rebuilt);
}

} // namespace velmora
