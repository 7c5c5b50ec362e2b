#include "intersection.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "cell_search.h"
#include "parallel.h"
#include "segment_tests.h"
#include "vectors.h"

namespace velmora {

namespace {

constexpr std::size_t linesOfChunk = 16;

std::int32_t completeLines(const Patch& patch) {
    std::int32_t lines = patch.empty() ? 0 : lineCount(patch);
    for (const PointList& section : patch) {
        lines = std::min(lines, countOf(section));
    }
    return lines;
}

/// What came of one line.
struct PiercedLine {
    PiercingFailure failure = PiercingFailure::None;
    zVec<double> place;
    zVec<double> before;
    zVec<double> after;
};

/// Follows line M.
PiercedLine pierceLine(const Patch& patch, std::size_t M, const CellTree& others) {
    std::size_t from = 0;
    while (true) {
        const zVec<double>& a = patch[from][M];
        std::size_t to = from + 1;
        while (to < patch.size() && distance(a, patch[to][M]) < nearZero) {
            ++to;
        }
        if (to == patch.size()) {
            return {PiercingFailure::DoublePoint, {}, {}, {}};
        }
        const zVec<double>& b = patch[to][M];
        if (const auto found = others.pierced(a, b)) {
            return {PiercingFailure::None, found->place, a, b};
        }
        if (to + 1 == patch.size()) {
            return {PiercingFailure::NotFound, {}, {}, {}};
        }
        from = to;
    }
}

} // namespace

PiercingOutcome findPiercingPoints(const PatchList& patches, const std::vector<std::int32_t>& chosen,
                                   PiercingPoints& piercing, const ReportProgress& progress) {
    std::vector<bool> left(patches.size(), false);
    std::int64_t total = 0;
    for (const std::int32_t k : chosen) {
        left[static_cast<std::size_t>(k)] = true;
        total += completeLines(patches[static_cast<std::size_t>(k)]);
    }
    const CellTree others(patches, left);
    std::int64_t done = 0;
    for (const std::int32_t k : chosen) {
        const Patch& patch = patches[static_cast<std::size_t>(k)];
        const std::int32_t lines = completeLines(patch);
        std::vector<PiercedLine> pierced(static_cast<std::size_t>(std::max(lines, 0)));
        forEachChunk(
            pierced.size(), linesOfChunk,
            [&](std::size_t first, std::size_t last, std::size_t) {
                for (std::size_t m = first; m < last; ++m) {
                    pierced[m] = pierceLine(patch, m, others);
                }
            },
            [&](double fraction) {
                if (progress) {
                    progress((static_cast<double>(done) + fraction * lines) / static_cast<double>(total));
                }
            });
        for (std::int32_t m = 0; m < lines; ++m) {
            const PiercedLine& line = pierced[static_cast<std::size_t>(m)];
            if (line.failure != PiercingFailure::None) {
                return {line.failure, m, k};
            }
            piercing.places.push_back(line.place);
            piercing.before.push_back(line.before);
            piercing.after.push_back(line.after);
        }
        done += lines;
    }
    return {};
}

// ---- Placing --------------------------------------------------------------------------------------------------------

namespace {

zVec<double> between(const zVec<double>& a, const zVec<double>& b, double t) {
    return a + (b - a) * t;
}

/// The section at `t` between two sections, as long as the shorter one.
PointList sectionBetween(const PointList& section, const PointList& next, double t) {
    PointList points;
    for (std::size_t m = 0; m < std::min(section.size(), next.size()); ++m) {
        points.push_back(between(section[m], next[m], t));
    }
    return points;
}

/// Per section the point at `t` between points M and M + 1; a section without them has any point there.
PointList lineBetween(const Patch& patch, std::size_t M, double t) {
    PointList points;
    for (const PointList& section : patch) {
        points.push_back(M + 1 < section.size() ? between(section[M], section[M + 1], t) : zVec<double>());
    }
    return points;
}

/// The part of the way from one side of a cell to the other at which a point stands, by its distances from both.
double partOfWay(double fromFirst, double fromSecond) {
    const double both = fromFirst + fromSecond;
    return both > 0.0 ? fromFirst / both : 0.0;
}

/// The way across a cell at which `p` stands: from section N to N + 1. 0 where the sections touch.
double partAcross(const Patch& patch, std::size_t N, std::size_t M, const zVec<double>& p) {
    if (distance(patch[N][M], patch[N + 1][M]) < nearZero) {
        return 0.0;
    }
    return partOfWay(lineDistance(patch[N][M], patch[N][M + 1], p),
                     lineDistance(patch[N + 1][M], patch[N + 1][M + 1], p));
}

/// The same from point M to M + 1.
double partAlong(const Patch& patch, std::size_t N, std::size_t M, const zVec<double>& p) {
    if (distance(patch[N][M], patch[N][M + 1]) < nearZero) {
        return 0.0;
    }
    return partOfWay(lineDistance(patch[N][M], patch[N + 1][M], p),
                     lineDistance(patch[N][M + 1], patch[N + 1][M + 1], p));
}

/// Puts the piercing points on one grid, pass by pass.
class PointPlacer {
public:
    PointPlacer(PatchList patches, const std::vector<bool>& left, const PiercingPoints& piercing, double tolerance,
                const ReportProgress& progress)
        : grid_(std::move(patches), left), left_(left), piercing_(piercing), tolerance_(tolerance), progress_(progress),
          count_(piercing.places.size()), section_(count_) {}

    void placeOnPointsAndCrossEdges();
    void placeOnSectionEdges();
    void insertSections();
    void insertLines();
    std::int32_t notFound() const { return notFound_; }
    PatchList takePatches() { return grid_.takePatches(); }

private:
    struct Cells {
        PiercedCell here;      ///< in the grid that grows
        PatchList const* from; ///< the patches that values are taken from, and the cell there
        CellAddress cell;
    };
    /// The section that was inserted for a point.
    struct OwnSection {
        std::int32_t K = -1;
        std::int32_t N = -1;
    };

    std::optional<Cells> findCells(const GrowingGrid& before, std::size_t i);
    template <class Insert>
    void forOpenCells(Insert insert);
    void noteInserted(std::int32_t K, std::int32_t N);
    std::int32_t sectionOf(std::size_t i, const CellAddress& cell, const PointList& line) const;
    void advance();

    GrowingGrid grid_;
    std::vector<bool> left_;
    const PiercingPoints& piercing_;
    double tolerance_;
    const ReportProgress& progress_;
    std::size_t count_;
    std::vector<OwnSection> section_;
    std::vector<std::size_t> open_; ///< the points that have no place yet
    std::int32_t notFound_ = 0;
    std::size_t steps_ = 0;
};

void PointPlacer::advance() {
    constexpr std::size_t passes = 4;
    const std::size_t total = std::max<std::size_t>(passes * count_, 1);
    if (++steps_ % (total / 100 + 1) == 0 && progress_) {
        progress_(static_cast<double>(steps_) / static_cast<double>(total));
    }
}

void PointPlacer::placeOnPointsAndCrossEdges() {
    for (std::size_t i = 0; i < count_; ++i) {
        advance();
        const zVec<double>& p = piercing_.places[i];
        if (const auto point = grid_.pointAt(p, tolerance_)) {
            grid_.setPoint(*point, p);
        } else if (const auto edge = grid_.edgeAcross(p, tolerance_)) {
            const CellAddress& at = edge->begin;
            const Patch& patch = grid_.patches()[static_cast<std::size_t>(at.K)];
            const auto n = static_cast<std::size_t>(at.N);
            PointList section = sectionBetween(patch[n], patch[n + 1], edge->t);
            section[static_cast<std::size_t>(at.M)] = p;
            grid_.insertSection(at.K, at.N, std::move(section));
        } else {
            open_.push_back(i);
        }
    }
}

void PointPlacer::placeOnSectionEdges() {
    std::vector<std::size_t> stillOpen;
    for (const std::size_t i : open_) {
        advance();
        const zVec<double>& p = piercing_.places[i];
        if (const auto edge = grid_.edgeAlong(p, tolerance_)) {
            const CellAddress& at = edge->begin;
            const Patch& patch = grid_.patches()[static_cast<std::size_t>(at.K)];
            grid_.insertLine(at.K, at.M, lineBetween(patch, static_cast<std::size_t>(at.M), edge->t));
            grid_.setPoint({at.K, at.N, at.M + 1}, p);
        } else {
            stillOpen.push_back(i);
        }
    }
    open_ = std::move(stillOpen);
}

/// The cell of a point in the grid that grows and, by the line taken the other way round, in the grid as it was before
/// the pass. None is counted.
std::optional<PointPlacer::Cells> PointPlacer::findCells(const GrowingGrid& before, std::size_t i) {
    const auto here = grid_.pierced(piercing_.before[i], piercing_.after[i]);
    const auto there = before.pierced(piercing_.after[i], piercing_.before[i]);
    if (!here || !there) {
        ++notFound_;
        return std::nullopt;
    }
    if (here->cell.K != there->cell.K) {
        // On the border of two patches rounding decides: what is inserted must fit the patch that it goes into.
        return Cells{*here, &grid_.patches(), here->cell};
    }
    return Cells{*here, &before.patches(), there->cell};
}

void PointPlacer::noteInserted(std::int32_t K, std::int32_t N) {
    for (OwnSection& own : section_) {
        if (own.K == K && own.N >= N) {
            ++own.N;
        }
    }
}

/// Calls insert(i, cell, patch, here) for the open points whose cells are found: the cell in the patch that gives the
/// values, and its address in the grid that grows.
template <class Insert>
void PointPlacer::forOpenCells(Insert insert) {
    const GrowingGrid before = grid_;
    for (const std::size_t i : open_) {
        advance();
        if (const auto cells = findCells(before, i)) {
            const CellAddress cell = cells->cell;
            insert(i, cell, (*cells->from)[static_cast<std::size_t>(cell.K)], cells->here.cell);
        }
    }
}

void PointPlacer::insertSections() {
    forOpenCells([this](std::size_t i, const CellAddress& cell, const Patch& patch, const CellAddress& here) {
        const auto n = static_cast<std::size_t>(cell.N);
        const double t = partAcross(patch, n, static_cast<std::size_t>(cell.M), piercing_.places[i]);
        grid_.insertSection(here.K, here.N, sectionBetween(patch[n], patch[n + 1], t));
        noteInserted(here.K, here.N + 1);
        section_[i] = {here.K, here.N + 1};
    });
}

/// The section that shall have point i on the inserted line: its own one, which may lie a cell further where those of
/// other points stand close to it; without one, that of the cell's two which comes closer.
std::int32_t PointPlacer::sectionOf(std::size_t i, const CellAddress& cell, const PointList& line) const {
    const OwnSection& own = section_[i];
    if (own.K == cell.K) {
        return own.N;
    }
    const auto n = static_cast<std::size_t>(cell.N);
    const zVec<double>& p = piercing_.places[i];
    return distance(p, line[n + 1]) < distance(p, line[n]) ? cell.N + 1 : cell.N;
}

void PointPlacer::insertLines() {
    forOpenCells([this](std::size_t i, const CellAddress& cell, const Patch& patch, const CellAddress& here) {
        const auto m = static_cast<std::size_t>(cell.M);
        const double t = partAlong(patch, static_cast<std::size_t>(cell.N), m, piercing_.places[i]);
        const PointList line = lineBetween(patch, m, t);
        const std::int32_t section = sectionOf(i, here, line);
        grid_.insertLine(here.K, here.M, line);
        // The grid point that belongs to the piercing point takes its place exactly: the joint runs along such points.
        grid_.setPoint({here.K, section, here.M + 1}, piercing_.places[i]);
    });
}

} // namespace

std::int32_t placePiercingPoints(PatchList& patches, const std::vector<bool>& left, const PiercingPoints& piercing,
                                 double tolerance, PatchList& working, const ReportProgress& progress) {
    PointPlacer placer(std::move(patches), left, piercing, tolerance, progress);
    placer.placeOnPointsAndCrossEdges();
    placer.placeOnSectionEdges();
    placer.insertSections();
    placer.insertLines();
    patches = placer.takePatches();
    working = patches;
    return placer.notFound();
}

} // namespace velmora
