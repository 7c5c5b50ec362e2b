#include "SegmentChainer.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>

namespace velmora {

namespace {

/// Above the largest difference of points that are the same, in parts of their largest coordinate; a power of two.
constexpr double reach = 1.0 / (std::uint64_t{1} << 33);
/// Cells have this width in parts of the power of two below the largest coordinate: wide against the reach, so that a
/// point rarely looks into more than one, and narrow against the distance of points.
constexpr int cellBits = 24;
/// Points whose exponent is below this one share a cell: their cells' width would not be a normal number.
constexpr int leastExponent = 64;

/// In SegmentChainer's `mates_`.
constexpr std::int32_t noMate = -1;
constexpr std::int32_t looksAround = -2;
/// With more ends than these in a bucket the ends have no mates: to look for them would be quadratic.
constexpr int mostOfBucket = 64;

/// Whether what comes of a number and tolerances has all its digits and a limit.
bool isMiddling(double number) {
    return number > 1e-250 && number < 1e250;
}

/// The exponent of a number as it is stored, not below `leastExponent`.
int levelOf(double magnitude) {
    const auto exponent = static_cast<int>((std::bit_cast<std::uint64_t>(magnitude) >> 52) & 0x7ff);
    return exponent < leastExponent ? leastExponent : exponent;
}

/// 1 over the width of the cells of a level; 0 puts all points of the least level into one.
double cellsPerUnit(int level) {
    if (level == leastExponent) {
        return 0.0;
    }
    return std::bit_cast<double>(static_cast<std::uint64_t>(2046 + cellBits - level) << 52);
}

std::uint32_t bucketOf(int level, std::int64_t u, std::int64_t v, std::size_t buckets) {
    constexpr std::uint64_t factors[] = {0x9e3779b97f4a7c15U, 0xc2b2ae3d27d4eb4fU, 0xff51afd7ed558ccdU};
    const std::uint64_t cell = static_cast<std::uint64_t>(u) * factors[0] + static_cast<std::uint64_t>(v) * factors[1] +
                               static_cast<std::uint64_t>(level);
    return static_cast<std::uint32_t>(((cell ^ (cell >> 32)) * factors[2]) >> 32) &
           static_cast<std::uint32_t>(buckets - 1);
}

/// Rounded down; there are less than 2^26 cells on either side.
std::int64_t cellOf(double coordinate, double perUnit) {
    const double cells = coordinate * perUnit;
    const auto cut = static_cast<std::int64_t>(cells);
    return cut - (cells < static_cast<double>(cut) ? 1 : 0);
}

/// `samePoint` with one point, which divides, behind two looks that tell nearly all others apart or the same: the
/// latter differ by rounding alone.
class SameAs {
public:
    explicit SameAs(const SlicePoint& point) : point_(point) {
        const double largest = largestCoordinate(point);
        farthest_ = reach * largest; // a point that is the same has no coordinate that is much larger
        nearest_ = isMiddling(largest) ? 0.5 * samePointTolerance * largest : -1.0;
    }

    bool operator()(const SlicePoint& other) const {
        const double dx = std::fabs(point_[0] - other[0]);
        const double dy = std::fabs(point_[1] - other[1]);
        const double dz = std::fabs(point_[2] - other[2]);
        if (dx > farthest_ || dy > farthest_ || dz > farthest_) {
            return false;
        }
        return (dx <= nearest_ && dy <= nearest_ && dz <= nearest_) || samePoint(point_, other);
    }

private:
    const SlicePoint& point_;
    double farthest_;
    double nearest_;
};

bool isSame(const SlicePoint& a, const SlicePoint& b) {
    return SameAs(a)(b);
}

/// A number past the largest ones becomes the largest.
double finite(double number) {
    constexpr double largest = std::numeric_limits<double>::max();
    return std::clamp(number, -largest, largest);
}

/// Whether `samePoint` can accept a point at all.
bool canBeSame(const SlicePoint& p, double magnitude) {
    if (isMiddling(magnitude)) {
        const double sum = p[0] + p[1] + p[2];
        return sum == sum; // all are numbers
    }
    const bool allFinite = std::isfinite(p[0]) && std::isfinite(p[1]) && std::isfinite(p[2]);
    return allFinite && (magnitude == 0.0 || std::isfinite(1.0 / magnitude));
}

/// How far a coordinate, in widths of cells, is from the middle of its cell.
double fromMiddle(double cells, std::int64_t cell) {
    return std::fabs(cells - static_cast<double>(cell) - 0.5);
}

} // namespace

// ---- PointCells -----------------------------------------------------------------------------------------------------

PointCells::PointCells(int axis) : u_(axis == 0 ? 1 : 0), v_(axis == 2 ? 1 : 2) {}

void PointCells::reset(std::size_t points, std::size_t numbers) {
    heads_.assign(std::bit_ceil(2 * points + 1), -1);
    searches_.clear();
    next_.resize(numbers);
}

void PointCells::put(const SlicePoint& point, std::int32_t number) {
    const double magnitude = largestCoordinate(point);
    if (!canBeSame(point, magnitude)) {
        return;
    }
    const int level = levelOf(magnitude);
    const double perUnit = cellsPerUnit(level);
    put(bucketOf(level, cellOf(point[u_], perUnit), cellOf(point[v_], perUnit), heads_.size()), number);
}

std::optional<std::uint32_t> PointCells::soleBucket(const SlicePoint& point) const {
    // Points that are the same are less than 1/256 of a cell's width apart, and their largest coordinates less than
    // 2^-32 of the power of two below.
    constexpr double farthestFromMiddle = 0.5 - 1.0 / 128;
    constexpr std::uint64_t digits = (std::uint64_t{1} << 52) - 1;
    constexpr std::uint64_t margin = std::uint64_t{1} << 22;
    const double magnitude = largestCoordinate(point);
    const auto bits = std::bit_cast<std::uint64_t>(magnitude);
    const double sum = point[0] + point[1] + point[2];
    if (!isMiddling(magnitude) || sum != sum || (bits & digits) - margin > digits - 2 * margin) {
        return std::nullopt;
    }
    const auto level = static_cast<int>(bits >> 52);
    const double perUnit = cellsPerUnit(level);
    const std::int64_t u = cellOf(point[u_], perUnit);
    const std::int64_t v = cellOf(point[v_], perUnit);
    if (std::max(fromMiddle(point[u_] * perUnit, u), fromMiddle(point[v_] * perUnit, v)) >= farthestFromMiddle) {
        return std::nullopt;
    }
    return bucketOf(level, u, v, heads_.size());
}

PointCells::Buckets PointCells::near(const SlicePoint& point) const {
    Buckets found;
    if (const std::optional<std::uint32_t> sole = soleBucket(point)) {
        found.bucket[found.count++] = *sole;
        return found;
    }
    const double magnitude = largestCoordinate(point);
    if (!canBeSame(point, magnitude)) {
        return found;
    }
    const double radius = magnitude * reach;
    const int lowest = levelOf(magnitude - radius);
    const int highest = levelOf(magnitude + radius);
    for (int level = lowest; level <= highest; ++level) {
        const double perUnit = cellsPerUnit(level);
        const std::int64_t lastU = cellOf(finite(point[u_] + radius), perUnit);
        const std::int64_t lastV = cellOf(finite(point[v_] + radius), perUnit);
        for (std::int64_t u = cellOf(finite(point[u_] - radius), perUnit); u <= lastU; ++u) {
            for (std::int64_t v = cellOf(finite(point[v_] - radius), perUnit); v <= lastV; ++v) {
                found.bucket[found.count++] = bucketOf(level, u, v, heads_.size());
            }
        }
    }
    return found;
}

// ---- SegmentChainer -------------------------------------------------------------------------------------------------

SegmentChainer::SegmentChainer(int axis) : ends_(axis), dots_(axis) {}

/// Puts the segments' ends into the hash, from the last to the first; degenerate segments, dots, into one of their own.
void SegmentChainer::arrange() {
    const std::size_t count = segments_.size();
    ends_.reset(count, 2 * count);
    walked_.assign(count, 0);
    onLine_.assign(2 * count, false);
    pass_ = 0;
    cursor_ = 0;
    hasDots_ = false;
    crowded_ = false;
    mates_.assign(2 * count, looksAround);
    findSoleBuckets();
    for (std::size_t i = count; i-- > 0;) {
        const SliceSegment& segment = segments_[i];
        const auto first = static_cast<std::int32_t>(2 * i);
        if (!isSame(segment.first, segment.second)) {
            putEnd(first + 1);
            putEnd(first);
            continue;
        }
        if (!hasDots_) {
            hasDots_ = true;
            dots_.reset(count, 2 * count);
        }
        dots_.put(segment.second, first + 1);
        dots_.put(segment.first, first);
    }
    if (crowded_) {
        mates_.assign(2 * count, looksAround);
    }
}

/// By itself, as it has no branches to guess: then the search for mates does not wait for it.
void SegmentChainer::findSoleBuckets() {
    soles_.resize(2 * segments_.size());
    for (std::size_t i = 0; i < segments_.size(); ++i) {
        soles_[2 * i] = ends_.soleBucket(segments_[i].first);
        soles_[2 * i + 1] = ends_.soleBucket(segments_[i].second);
    }
}

/// Puts the end of a segment that has a length into the hash; it meets those that are there and the same.
void SegmentChainer::putEnd(std::int32_t end) {
    const SlicePoint& point = pointOfEnd(end);
    if (const std::optional<std::uint32_t> sole = soles_[static_cast<std::size_t>(end)]) {
        mates_[static_cast<std::size_t>(end)] = noMate;
        meetEnds(*sole, end);
        ends_.put(*sole, end);
        return;
    }
    const PointCells::Buckets near = ends_.near(point);
    if (near.count > 0) {
        mates_[static_cast<std::size_t>(end)] = noMate;
    }
    for (int i = 0; i < near.count; ++i) {
        meetEnds(near.bucket[i], end);
    }
    ends_.put(point, end);
}

/// Makes an end and those of a bucket that are the same mates.
void SegmentChainer::meetEnds(std::uint32_t bucket, std::int32_t end) {
    const SameAs isSameAsEnd(pointOfEnd(end));
    std::int32_t& mate = mates_[static_cast<std::size_t>(end)];
    int ends = 0;
    for (std::int32_t other = ends_.head(bucket); other >= 0 && !crowded_; other = ends_.next(other)) {
        if (isSameAsEnd(pointOfEnd(other))) {
            std::int32_t& mateOfOther = mates_[static_cast<std::size_t>(other)];
            mate = mate == noMate ? other : looksAround;
            mateOfOther = mateOfOther == noMate ? end : looksAround;
        }
        crowded_ = ++ends > mostOfBucket;
    }
}

/// Whether the points of two ends are the same.
bool SegmentChainer::areSame(std::int32_t end, std::int32_t other) const {
    const std::int32_t mate = mates_[static_cast<std::size_t>(end)];
    if (mate == looksAround || mates_[static_cast<std::size_t>(other)] == looksAround) {
        return isSame(pointOfEnd(end), pointOfEnd(other));
    }
    return end == other || mate == other;
}

bool SegmentChainer::touchesLine(const PointCells& cells, const SlicePoint& point) const {
    const PointCells::Buckets near = cells.near(point);
    for (int i = 0; i < near.count; ++i) {
        for (std::int32_t end = cells.head(near.bucket[i]); end >= 0; end = cells.next(end)) {
            if (onLine_[static_cast<std::size_t>(end)] && isSame(point, pointOfEnd(end))) {
                return true;
            }
        }
    }
    return false;
}

/// Every point of a line is the end of a segment.
bool SegmentChainer::touchesLine(const SlicePoint& point) const {
    return touchesLine(ends_, point) || (hasDots_ && touchesLine(dots_, point));
}

/// A segment that cannot start a line now never can, as lines are only added; so the search goes on from the last
/// start. One that was walked touches the line that walked it.
std::optional<std::size_t> SegmentChainer::nextStart() {
    while (cursor_ < segments_.size()) {
        const std::size_t segment = cursor_++;
        const auto& [first, second] = segments_[segment];
        if (walked_[segment] == 0 && !isSame(first, second) && !touchesLine(first) && !touchesLine(second)) {
            return segment;
        }
    }
    return std::nullopt;
}

/// The ends of a bucket in the order of the segments, up to the first that the line can go on over.
void SegmentChainer::tryBucket(std::uint32_t number, const Growing& line, std::optional<Step>& best) {
    PointCells::Search& search = ends_.searchIn(number);
    if (search.search != pass_) {
        search = {ends_.head(number), pass_};
    }
    const auto wasWalked = [this](std::int32_t end) { return walked_[static_cast<std::size_t>(end / 2)] == pass_; };
    std::int32_t& head = search.head;
    while (head >= 0 && wasWalked(head)) {
        head = ends_.next(head);
    }
    const SameAs isLast(line.points.back());
    for (std::int32_t end = head; end >= 0; end = ends_.next(end)) {
        const auto segment = static_cast<std::size_t>(end / 2);
        if (best && segment >= best->segment) {
            return;
        }
        const auto& [first, second] = segments_[segment];
        if (wasWalked(end)) {
            continue;
        }
        const bool fromFirst = isLast(first);
        if (!fromFirst && !isLast(second)) {
            continue;
        }
        if (line.size() == 1 || !isSame(line.points[line.points.size() - 2], fromFirst ? second : first)) {
            best = Step{segment, fromFirst};
            return;
        }
    }
}

/// Over a degenerate segment a line goes as its first step only, and is closed by it.
void SegmentChainer::tryDots(const SlicePoint& at, std::optional<Step>& best) const {
    const PointCells::Buckets near = dots_.near(at);
    for (int i = 0; i < near.count; ++i) {
        for (std::int32_t end = dots_.head(near.bucket[i]); end >= 0; end = dots_.next(end)) {
            const auto segment = static_cast<std::size_t>(end / 2);
            if (best && segment >= best->segment) {
                break;
            }
            const auto& [first, second] = segments_[segment];
            const bool fromFirst = isSame(at, first);
            if (fromFirst || isSame(at, second)) {
                best = Step{segment, fromFirst};
                break;
            }
        }
    }
}

/// What stands at a place that has no ends but the one of the line's last point and its mate.
void SegmentChainer::tryMates(std::optional<Step>& best) const {
    const auto [mate, last] = std::pair(mates_[static_cast<std::size_t>(path_.back())], path_.back());
    for (const std::int32_t end : {std::min(mate, last), std::max(mate, last)}) {
        if (end == noMate || walked_[static_cast<std::size_t>(end / 2)] == pass_) {
            continue;
        }
        const std::int32_t behind = end % 2 == 0 ? end + 1 : end - 1;
        if (path_.size() == 1 || !areSame(path_[path_.size() - 2], behind)) {
            best = Step{static_cast<std::size_t>(end / 2), end % 2 == 0};
            return;
        }
    }
}

void SegmentChainer::tryCells(const Growing& line, std::optional<Step>& best) {
    const PointCells::Buckets near = ends_.near(line.points.back());
    for (int i = 0; i < near.count; ++i) {
        tryBucket(near.bucket[i], line, best);
    }
}

std::optional<SegmentChainer::Step> SegmentChainer::nextStep(const Growing& line) {
    std::optional<Step> best;
    const bool single = line.size() == 1;
    if (!single && areSame(path_.back(), path_.front())) {
        return best; // closed
    }
    if (mates_[static_cast<std::size_t>(path_.back())] == looksAround) {
        tryCells(line, best);
    } else {
        tryMates(best);
    }
    if (single && hasDots_) {
        tryDots(line.points.back(), best);
    }
    return best;
}

void SegmentChainer::extend(const Growing& line) {
    ++pass_;
    while (const auto step = nextStep(line)) {
        walked_[step->segment] = pass_;
        const std::size_t end = 2 * step->segment + (step->toSecond ? 1 : 0);
        onLine_[end] = true;
        path_.push_back(static_cast<std::int32_t>(end));
        line.points.push_back(pointOfEnd(path_.back()));
    }
}

void SegmentChainer::chain(std::span<const SliceSegment> segments, SliceLines& lines) {
    if (segments.empty()) {
        return;
    }
    segments_ = segments;
    arrange();
    std::size_t steps = 0;
    std::optional<std::size_t> start = nextStart();
    for (start = start.value_or(0); start; start = nextStart()) {
        const Growing line{lines.points, lines.points.size()};
        lines.points.push_back(segments[*start].first);
        onLine_[2 * *start] = true;
        path_.assign(1, static_cast<std::int32_t>(2 * *start));
        extend(line);
        std::reverse(path_.begin(), path_.end());
        std::reverse(lines.points.begin() + static_cast<std::ptrdiff_t>(line.begin), lines.points.end());
        extend(line);
        steps += line.size() - 1;
        lines.ends.push_back(lines.points.size());
        if (steps == segments.size()) {
            return;
        }
    }
}

} // namespace velmora
