#include "PlaneCutter.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "corner_box.h"
#include "parallel.h"

namespace velmora {

namespace {

/// So many segments a group of planes has at most, if one plane alone has not more: they stay near the processor.
constexpr std::size_t segmentsOfGroup = std::size_t{1} << 13;
constexpr std::size_t trianglesOfChunk = std::size_t{1} << 16; // their places are numbers of 16 bits
constexpr double infinity = std::numeric_limits<double>::infinity();

/// Cuts one triangle after the other by one plane.
class TriangleCut {
public:
    explicit TriangleCut(int axis) : axis_(static_cast<std::size_t>(axis)) {}

    /// The segment of the plane in the triangle; false when no edge is cut. An edge that starts on the plane is cut,
    /// one that ends on it or lies in it is not.
    bool operator()(const std::array<SlicePoint, 3>& corners, double plane, SliceSegment& segment) const {
        SlicePoint cuts[3];
        bool cut[3];
        for (std::size_t edge = 0; edge < 3; ++edge) {
            cut[edge] = cutEdge(corners[edge], corners[edge == 2 ? 0 : edge + 1], plane, cuts[edge]);
        }
        if (cut[0] && cut[1]) {
            segment = {cuts[0], cuts[1]};
        } else if (cut[1] && cut[2]) {
            segment = {cuts[1], cuts[2]};
        } else if (cut[2] && cut[0]) {
            segment = {cuts[2], cuts[0]};
        } else if (cut[0] || cut[1] || cut[2]) {
            const SlicePoint& single = cut[0] ? cuts[0] : cut[1] ? cuts[1] : cuts[2];
            segment = {single, single};
        } else {
            return false;
        }
        return true;
    }

private:
    bool cutEdge(const SlicePoint& u, const SlicePoint& v, double plane, SlicePoint& at) const {
        const double a = u[axis_];
        const double b = v[axis_];
        if (!((plane >= a && b > plane) || (plane > b && a >= plane))) {
            return false;
        }
        const double t = (plane - a) / (b - a);
        for (std::size_t i = 0; i < 3; ++i) {
            at[i] = u[i] + t * (v[i] - u[i]);
        }
        at[axis_] = plane;
        return true;
    }

    std::size_t axis_;
};

} // namespace

PlaneCutter::PlaneCutter(const zRegion_fe& region, int axis, const std::vector<double>& planes,
                         const ReportProgress& progress)
    : region_(region), axis_(axis) {
    for (const auto& zone : region.blocks) {
        axes_.push_back(zoneAxes(*zone));
    }
    arrangePlanes(planes);
    findHits(progress);
    countCandidates();
    makeGroups();
    takeHitsIntoGroups();
}

/// Sorts the planes, and parts what they span into cells, most of which have no plane or one.
void PlaneCutter::arrangePlanes(const std::vector<double>& planes) {
    for (std::size_t number = 0; number < planes.size(); ++number) {
        if (planes[number] == planes[number]) {
            planes_.push_back({planes[number], number});
        }
    }
    std::stable_sort(planes_.begin(), planes_.end(), [](const Plane& a, const Plane& b) { return a.value < b.value; });
    constexpr std::size_t cellsOfPlane = 4;
    cells_.assign(cellsOfPlane * planes_.size() + 2, 0);
    if (!planes_.empty()) {
        cellsFrom_ = planes_.front().value;
        const double perUnit = static_cast<double>(cells_.size() - 2) / (planes_.back().value - cellsFrom_);
        cellsPerUnit_ = perUnit < infinity ? perUnit : 0.0; // 0: all of them in the first cell
    }
    for (const Plane& plane : planes_) {
        ++cells_[static_cast<std::size_t>(cellOf(plane.value)) + 1];
    }
    for (std::size_t i = 1; i < cells_.size(); ++i) {
        cells_[i] += cells_[i - 1];
    }
}

/// Never falls with a rising value: what lies in a lower cell is less. A product that is not a number is in cell 0.
std::int32_t PlaneCutter::cellOf(double value) const {
    const double cell = (value - cellsFrom_) * cellsPerUnit_;
    const auto last = static_cast<std::int32_t>(cells_.size()) - 2;
    return !(cell > 0.0) ? 0 : cell < last ? static_cast<std::int32_t>(cell) : last;
}

bool PlaneCutter::planesApart() const {
    return std::adjacent_find(planes_.begin(), planes_.end(), [](const Plane& a, const Plane& b) {
               return a.value == b.value || samePlane(a.value, b.value);
           }) == planes_.end();
}

PlaneCutter::Span PlaneCutter::spanOf(double low, double high) const {
    const std::int32_t* const lowest = &cells_[static_cast<std::size_t>(cellOf(low))];
    const std::int32_t* const highest = &cells_[static_cast<std::size_t>(cellOf(high))];
    const auto first = std::lower_bound(planes_.begin() + lowest[0], planes_.begin() + lowest[1], low,
                                        [](const Plane& plane, double value) { return plane.value < value; });
    const auto end = std::upper_bound(planes_.begin() + highest[0], planes_.begin() + highest[1], high,
                                      [](double value, const Plane& plane) { return value < plane.value; });
    return {static_cast<std::int32_t>(first - planes_.begin()),     static_cast<std::int32_t>(end - planes_.begin()),
            first == planes_.begin() ? -infinity : first[-1].value, first == planes_.end() ? infinity : first->value,
            end == planes_.begin() ? -infinity : end[-1].value,     end == planes_.end() ? infinity : end->value};
}

void PlaneCutter::findHitsOf(std::uint32_t zone, std::size_t first, std::size_t last, std::vector<Hit>& hits) const {
    const double* const values = axes_[zone][static_cast<std::size_t>(axis_)];
    const std::int32_t* corners = region_.blocks[zone]->connectivity.data() + 4 * first;
    Span span = spanOf(infinity, -infinity);
    for (std::size_t element = first; element < last; ++element, corners += 4) {
        double low = infinity;
        double high = -infinity;
        for (int corner = 0; corner < 3; ++corner) {
            const double value = values[corners[corner]];
            low = value < low ? value : low;
            high = value > high ? value : high;
        }
        // Neighbours often span the same planes, or lie between the same two.
        if (!(span.lowFrom < low && low <= span.lowTo && span.highFrom <= high && high < span.highTo)) {
            span = spanOf(low, high);
        }
        for (std::int32_t plane = span.firstPlane; plane < span.endPlane;) {
            constexpr std::int32_t most = std::numeric_limits<std::uint16_t>::max();
            const std::int32_t planes = std::min(span.endPlane - plane, most);
            hits.push_back({static_cast<std::uint16_t>(element - first), static_cast<std::uint16_t>(planes), plane});
            plane += planes;
        }
    }
}

void PlaneCutter::findHits(const ReportProgress& progress) {
    const auto zones = static_cast<std::uint32_t>(region_.blocks.size());
    for (std::uint32_t zone = 0; zone < zones; ++zone) {
        if (axes_[zone][0] != nullptr && region_.blocks[zone]->elementCount > 0) {
            findHitsInZone(zone);
        }
        if (progress) {
            progress(0.3 * (zone + 1) / static_cast<double>(zones));
        }
    }
}

void PlaneCutter::findHitsInZone(std::uint32_t zone) {
    const auto triangles = static_cast<std::size_t>(region_.blocks[zone]->elementCount);
    std::vector<std::vector<Hit>> found((triangles + trianglesOfChunk - 1) / trianglesOfChunk);
    std::vector<std::vector<Hit>> gathered(workersFor(triangles, trianglesOfChunk));
    forEachChunk(triangles, trianglesOfChunk, [&](std::size_t first, std::size_t last, std::size_t worker) {
        std::vector<Hit>& hits = gathered[worker];
        hits.clear();
        hits.reserve(last - first); // of what is not filled nothing is taken from the system
        findHitsOf(zone, first, last, hits);
        found[first / trianglesOfChunk].assign(hits.begin(), hits.end()); // no more memory than they need
    });
    for (std::size_t i = 0; i < found.size(); ++i) {
        if (!found[i].empty()) {
            const std::size_t before = chunks_.empty() ? 0 : chunks_.back().firstHit + chunks_.back().hits.size();
            chunks_.push_back({zone, i * trianglesOfChunk, before, std::move(found[i])});
        }
    }
}

/// Calls `visit(hit)` for all of them in order.
template <class Visit>
void PlaneCutter::forEachHit(const Visit& visit) const {
    for (const HitChunk& chunk : chunks_) {
        std::for_each(chunk.hits.begin(), chunk.hits.end(), visit);
    }
}

void PlaneCutter::countCandidates() {
    // Differences first: up where a triangle's planes begin, down behind them.
    candidates_.assign(planes_.size() + 1, 0);
    forEachHit([this](const Hit& hit) {
        ++candidates_[static_cast<std::size_t>(hit.firstPlane)];
        --candidates_[static_cast<std::size_t>(hit.endPlane())];
    });
    for (std::size_t i = 1; i < candidates_.size(); ++i) {
        candidates_[i] += candidates_[i - 1]; // a difference below 0 wraps round and back
    }
}

void PlaneCutter::makeGroups() {
    std::size_t segments = segmentsOfGroup + 1; // the first plane opens a group
    for (std::size_t plane = 0; plane < planes_.size(); ++plane) {
        if (segments + candidates_[plane] > segmentsOfGroup) {
            groups_.push_back({plane, plane, 0, 0});
            segments = 0;
        }
        segments += candidates_[plane];
        groups_.back().endPlane = plane + 1;
    }
}

void PlaneCutter::takeHitsIntoGroups() {
    std::vector<std::uint32_t> groupOfPlane(planes_.size());
    for (std::size_t group = 0; group < groups_.size(); ++group) {
        for (std::size_t plane = groups_[group].firstPlane; plane < groups_[group].endPlane; ++plane) {
            groupOfPlane[plane] = static_cast<std::uint32_t>(group);
        }
    }
    const auto forEachGroupOf = [&](const Hit& hit, const auto& visit) {
        const std::uint32_t last = groupOfPlane[static_cast<std::size_t>(hit.endPlane()) - 1];
        for (std::uint32_t group = groupOfPlane[static_cast<std::size_t>(hit.firstPlane)]; group <= last; ++group) {
            visit(groups_[group]);
        }
    };
    forEachHit([&](const Hit& hit) { forEachGroupOf(hit, [](Group& group) { ++group.endHit; }); });
    std::size_t total = 0;
    for (Group& group : groups_) {
        group.firstHit = total;
        total += group.endHit;
        group.endHit = group.firstHit;
    }
    hitsOfGroups_.resize(total);
    std::uint32_t number = 0;
    forEachHit([&](const Hit& hit) {
        forEachGroupOf(hit, [&](Group& group) { hitsOfGroups_[group.endHit++] = number; });
        ++number;
    });
}

/// Puts what the planes of the group leave of a triangle behind the other segments of each.
void PlaneCutter::cutHit(const HitChunk& chunk, const Hit& hit, const Group& group, Workplace& workplace) const {
    const auto first = std::max(group.firstPlane, static_cast<std::size_t>(hit.firstPlane));
    const auto end = std::min(group.endPlane, static_cast<std::size_t>(hit.endPlane()));
    const auto& axes = axes_[chunk.zone];
    const std::int32_t* const nodes = &region_.blocks[chunk.zone]->connectivity[4 * (chunk.firstElement + hit.element)];
    std::array<SlicePoint, 3> corners;
    for (std::size_t corner = 0; corner < 3; ++corner) {
        corners[corner] = {axes[0][nodes[corner]], axes[1][nodes[corner]], axes[2][nodes[corner]]};
    }
    const TriangleCut cutTriangle(axis_);
    for (std::size_t plane = first; plane < end; ++plane) {
        std::size_t& place = workplace.ends[plane - group.firstPlane];
        place += cutTriangle(corners, planes_[plane].value, workplace.segments[place]) ? 1 : 0;
    }
}

void PlaneCutter::cutGroup(std::size_t number, Workplace& workplace, const TakePlane& take) const {
    const Group& group = groups_[number];
    std::vector<std::size_t>& ends = workplace.ends;
    ends.resize(group.endPlane - group.firstPlane);
    std::size_t total = 0;
    for (std::size_t plane = group.firstPlane; plane < group.endPlane; ++plane) {
        ends[plane - group.firstPlane] = total;
        total += candidates_[plane];
    }
    if (workplace.segments.size() < total) {
        workplace.segments.resize(total);
    }
    auto chunk = chunks_.begin();
    for (std::size_t i = group.firstHit; i < group.endHit; ++i) {
        while (hitsOfGroups_[i] - chunk->firstHit >= chunk->hits.size()) {
            ++chunk;
        }
        cutHit(*chunk, chunk->hits[hitsOfGroups_[i] - chunk->firstHit], group, workplace);
    }
    std::size_t begin = 0;
    for (std::size_t plane = group.firstPlane; plane < group.endPlane; ++plane) {
        const std::size_t end = ends[plane - group.firstPlane];
        if (end > begin) {
            take(planes_[plane].number, {workplace.segments.data() + begin, end - begin});
        }
        begin += candidates_[plane];
    }
}

} // namespace velmora
