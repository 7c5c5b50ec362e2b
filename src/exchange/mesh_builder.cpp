#include "mesh_builder.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <memory>
#include <numeric>
#include <utility>

#include "read_record.h"
#include "triangulate_polygon.h"

namespace velmora {

namespace {

constexpr std::int32_t none = -1;
/// A zone counts in 32 bits: points, and four entries for each triangle.
constexpr std::size_t mostPoints = std::numeric_limits<std::int32_t>::max();
constexpr std::size_t mostCorners = mostPoints / 4 * 3;

/// What became of the polygons.
struct Tally {
    std::int64_t foundTriangles = 0;
    std::int64_t keptFaces = 0;
    std::int64_t keptTriangles = 0;
    std::int64_t fewCorners = 0;
    std::int64_t outside = 0;
    std::int64_t notFinite = 0;
    std::int64_t split = 0; // polygons of more than three corners
    std::int64_t crossing = 0;
    std::int64_t degenerate = 0;
    std::int64_t noRoom = 0;
    std::int64_t merged = 0;
};

class MeshBuilder {
public:
    MeshBuilder(FileMesh&& mesh, const ImportOptions& options, ExchangeModel& model, FileRead& record,
                const ReportProgress& report)
        : mesh_(std::move(mesh)), options_(options), model_(model), record_(record), report_(report),
          corners_(mesh_.zones.size()) {}

    void run();

private:
    void scalePoints();
    void takePolygon(std::span<const std::int64_t> polygon, std::size_t zone);
    bool takesAll(std::span<const std::int64_t> polygon);
    void addTriangle(std::size_t zone, std::int64_t a, std::int64_t b, std::int64_t c);
    void makeZoneOf(std::size_t zone);
    std::vector<std::int32_t> pointsOf(std::span<const std::int32_t> corners);
    void addValues(zBlock_fe& zone, const std::vector<std::int32_t>& points, const EqualPoints& equal) const;
    void tell();
    zVec<double> point(std::int64_t index) const {
        const auto i = static_cast<std::size_t>(index);
        return {mesh_.x[i], mesh_.y[i], mesh_.z[i]};
    }

    FileMesh mesh_;
    const ImportOptions& options_;
    ExchangeModel& model_;
    FileRead& record_;
    const ReportProgress& report_;
    std::vector<std::vector<std::int32_t>> corners_; // of the triangles of each zone
    std::vector<std::int32_t> place_;                // of a point in the zone at hand
    std::vector<bool> used_;                         // by any zone
    std::vector<zVec<double>> polygon_;
    std::vector<std::array<std::int32_t, 3>> triangles_;
    Tally tally_;
};

void MeshBuilder::run() {
    constexpr std::size_t step = 1 << 16;
    if (mesh_.pointCount() > mostPoints) {
        tellMissing(record_, "Too many points for one model", static_cast<std::int64_t>(mesh_.pointCount()));
        return;
    }
    scalePoints();
    std::size_t begin = 0;
    for (std::size_t i = 0; i < mesh_.polygonEnds.size(); ++i) {
        const std::size_t end = mesh_.polygonEnds[i];
        takePolygon(std::span(mesh_.corners).subspan(begin, end - begin),
                    mesh_.zoneOfPolygon.empty() ? 0 : static_cast<std::size_t>(mesh_.zoneOfPolygon[i]));
        begin = end;
        if (report_ && i % step == 0) {
            report_(std::lerp(0.6, 0.9, static_cast<double>(i) / static_cast<double>(mesh_.polygonEnds.size())));
        }
    }
    place_.assign(mesh_.pointCount(), none);
    used_.assign(mesh_.pointCount(), false);
    for (std::size_t zone = 0; zone < corners_.size(); ++zone) {
        if (!corners_[zone].empty()) {
            makeZoneOf(zone);
        }
    }
    tell();
}

void MeshBuilder::scalePoints() {
    if (options_.scale != 1.0) {
        for (std::vector<double>* axis : {&mesh_.x, &mesh_.y, &mesh_.z}) {
            std::for_each(axis->begin(), axis->end(), [this](double& value) { value *= options_.scale; });
        }
    }
}

void MeshBuilder::takePolygon(std::span<const std::int64_t> polygon, std::size_t zone) {
    if (polygon.size() < 3) {
        ++tally_.fewCorners;
        return;
    }
    tally_.foundTriangles += static_cast<std::int64_t>(polygon.size()) - 2;
    if (!takesAll(polygon)) {
        return;
    }
    if (corners_[zone].size() + 3 * (polygon.size() - 2) > mostCorners) {
        ++tally_.noRoom;
        return;
    }
    ++tally_.keptFaces;
    if (polygon.size() == 3) {
        addTriangle(zone, polygon[0], polygon[1], polygon[2]);
        return;
    }
    ++tally_.split;
    polygon_.clear();
    std::transform(polygon.begin(), polygon.end(), std::back_inserter(polygon_),
                   [this](std::int64_t corner) { return point(corner); });
    triangles_.clear();
    tally_.crossing += triangulatePolygon(polygon_, triangles_) ? 0 : 1;
    for (const auto& [a, b, c] : triangles_) {
        addTriangle(zone, polygon[static_cast<std::size_t>(a)], polygon[static_cast<std::size_t>(b)],
                    polygon[static_cast<std::size_t>(c)]);
    }
}

bool MeshBuilder::takesAll(std::span<const std::int64_t> polygon) {
    const auto count = static_cast<std::int64_t>(mesh_.pointCount());
    if (std::any_of(polygon.begin(), polygon.end(), [count](std::int64_t p) { return p < 0 || p >= count; })) {
        ++tally_.outside;
        return false;
    }
    if (std::any_of(polygon.begin(), polygon.end(), [this](std::int64_t index) {
            const zVec<double> p = point(index);
            return !std::isfinite(p.x) || !std::isfinite(p.y) || !std::isfinite(p.z);
        })) {
        ++tally_.notFinite;
        return false;
    }
    return true;
}

void MeshBuilder::addTriangle(std::size_t zone, std::int64_t a, std::int64_t b, std::int64_t c) {
    for (const std::int64_t corner : {a, b, c}) {
        corners_[zone].push_back(static_cast<std::int32_t>(corner));
    }
    ++tally_.keptTriangles;
    tally_.degenerate += hasNoArea(point(a), point(b), point(c)) ? 1 : 0;
}

/// The points that triangles use, ascending; each has its place among them in `place_`.
std::vector<std::int32_t> MeshBuilder::pointsOf(std::span<const std::int32_t> corners) {
    std::vector<std::int32_t> points;
    for (const std::int32_t corner : corners) {
        const auto index = static_cast<std::size_t>(corner);
        if (place_[index] == none) {
            place_[index] = 0;
            used_[index] = true;
            points.push_back(corner);
        }
    }
    std::sort(points.begin(), points.end());
    for (std::size_t i = 0; i < points.size(); ++i) {
        place_[static_cast<std::size_t>(points[i])] = static_cast<std::int32_t>(i);
    }
    return points;
}

void MeshBuilder::makeZoneOf(std::size_t number) {
    std::vector<std::int32_t>& corners = corners_[number];
    const std::vector<std::int32_t> points = pointsOf(corners);
    std::array<std::vector<double>, 3> at;
    const std::array<const std::vector<double>*, 3> axes = {&mesh_.x, &mesh_.y, &mesh_.z};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        at.at(axis).reserve(points.size());
        for (const std::int32_t index : points) {
            at.at(axis).push_back((*axes.at(axis))[static_cast<std::size_t>(index)]);
        }
    }
    EqualPoints equal;
    if (options_.merge) {
        equal = findEqualPoints(at[0], at[1], at[2]);
        tally_.merged += static_cast<std::int64_t>(points.size()) - equal.count;
        for (std::vector<double>& axis : at) {
            std::int32_t kept = 0;
            for (std::size_t i = 0; i < axis.size(); ++i) {
                if (equal.place[i] == kept) {
                    axis[static_cast<std::size_t>(kept++)] = axis[i];
                }
            }
            axis.resize(static_cast<std::size_t>(equal.count));
        }
    }
    for (std::int32_t& corner : corners) {
        const std::int32_t place = place_[static_cast<std::size_t>(corner)];
        corner = options_.merge ? equal.place[static_cast<std::size_t>(place)] : place;
    }
    auto zone = makeZone(mesh_.zones[number], std::move(at), corners);
    addValues(*zone, points, equal);
    model_.region.blocks.push_back(std::move(zone));
    for (const std::int32_t index : points) {
        place_[static_cast<std::size_t>(index)] = none;
    }
    corners = {};
}

// Of points that became one the first one's value counts.
void MeshBuilder::addValues(zBlock_fe& zone, const std::vector<std::int32_t>& points, const EqualPoints& equal) const {
    for (std::size_t variable = 0; variable < mesh_.variables.size(); ++variable) {
        auto field = std::make_unique<zArray<double>>(zone.nodeCount, 1, 1, mesh_.variables[variable]);
        std::int32_t kept = 0;
        for (std::size_t i = 0; i < points.size(); ++i) {
            if (!options_.merge || equal.place[i] == kept) {
                field->data[static_cast<std::size_t>(kept++)] =
                    mesh_.values[variable][static_cast<std::size_t>(points[i])];
            }
        }
        zone.variables.push_back(std::move(field));
    }
}

void MeshBuilder::tell() {
    const auto points = static_cast<std::int64_t>(mesh_.pointCount());
    const auto kept = static_cast<std::int64_t>(std::count(used_.begin(), used_.end(), true));
    const std::int64_t lostFaces = static_cast<std::int64_t>(mesh_.polygonEnds.size()) - tally_.keptFaces;
    countOf(record_.found, "points") += points;
    countOf(record_.kept, "points") += kept;
    countOf(record_.found, "faces") += static_cast<std::int64_t>(mesh_.polygonEnds.size());
    countOf(record_.kept, "faces") += tally_.keptFaces;
    countOf(record_.found, "triangles") += tally_.foundTriangles;
    countOf(record_.kept, "triangles") += tally_.keptTriangles;
    tellMissing(record_, "Faces of fewer than three corners", tally_.fewCorners);
    tellMissing(record_, "Faces with points that are not there", tally_.outside);
    tellMissing(record_, "Faces with coordinates that are not finite", tally_.notFinite);
    tellMissing(record_, "Faces for which a zone has no room", tally_.noRoom);
    tellAltered(record_, "Polygons that became triangles", tally_.split);
    tellChanged(record_, "Polygons whose border crosses itself", tally_.crossing);
    tellChanged(record_, "Degenerate triangles", tally_.degenerate);
    if (lostFaces == 0) {
        tellAltered(record_, "Points that no face uses, left out", points - kept);
    }
    tellAltered(record_, "Points merged", tally_.merged);
    tellScale(options_, record_);
}

} // namespace

void buildMesh(FileMesh&& mesh, const ImportOptions& options, ExchangeModel& model, FileRead& record,
               const ReportProgress& report) {
    if (mesh.zones.empty()) {
        mesh.zones.emplace_back();
    }
    MeshBuilder(std::move(mesh), options, model, record, report).run();
}

void buildZones(FileMesh&& mesh, const ImportOptions& options, ExchangeModel& model, FileRead& record,
                const ReportProgress& report) {
    const std::size_t before = model.region.blocks.size();
    countOf(record.found, "zones") += countOf(mesh.zones);
    countOf(record.kept, "zones") += 0;
    buildMesh(std::move(mesh), options, model, record, report);
    countOf(record.kept, "zones") += static_cast<std::int64_t>(model.region.blocks.size() - before);
}

void tellScale(const ImportOptions& options, FileRead& record) {
    if (options.scale != 1.0) {
        record.alters("Coordinates scaled");
    }
}

bool hasNoArea(const zVec<double>& a, const zVec<double>& b, const zVec<double>& c) {
    return cross(b - a, c - a) == zVec<double>();
}

std::unique_ptr<zBlock_fe> makeZone(const std::string& title, std::array<std::vector<double>, 3>&& points,
                                    std::span<const std::int32_t> corners) {
    const auto nodes = static_cast<std::int32_t>(points[0].size());
    const auto elements = static_cast<std::int32_t>(corners.size() / 3);
    auto zone = std::make_unique<zBlock_fe>(nodes, 4 * elements, elements);
    zone->title = title;
    const std::array<const char*, 3> names = {"x", "y", "z"};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        zone->variables.push_back(
            std::make_unique<zArray<double>>(nodes, 1, 1, names.at(axis), std::move(points.at(axis))));
    }
    auto entry = zone->connectivity.begin();
    for (std::size_t corner = 0; corner + 2 < corners.size(); corner += 3) {
        entry = std::copy_n(corners.begin() + static_cast<std::ptrdiff_t>(corner), 3, entry);
        ++entry; // -1 behind each triangle
    }
    return zone;
}

EqualPoints findEqualPoints(std::span<const double> x, std::span<const double> y, std::span<const double> z) {
    EqualPoints result;
    result.place.resize(x.size());
    std::vector<std::int32_t> first(std::bit_ceil(2 * x.size() + 1), none); // of each slot, a point
    const auto bits = [](double value) { return std::bit_cast<std::uint64_t>(value); };
    const auto same = [&](std::size_t p, std::size_t q) {
        return bits(x[p]) == bits(x[q]) && bits(y[p]) == bits(y[q]) && bits(z[p]) == bits(z[q]);
    };
    for (std::size_t point = 0; point < x.size(); ++point) {
        std::uint64_t hash = bits(x[point]) * 0x9E3779B97F4A7C15U;
        hash = (std::rotl(hash, 29) ^ bits(y[point])) * 0xBF58476D1CE4E5B9U;
        hash = (std::rotl(hash, 31) ^ bits(z[point])) * 0x94D049BB133111EBU;
        std::size_t slot = static_cast<std::size_t>(hash ^ (hash >> 32)) & (first.size() - 1);
        while (first[slot] != none && !same(static_cast<std::size_t>(first[slot]), point)) {
            slot = (slot + 1) & (first.size() - 1);
        }
        if (first[slot] == none) {
            first[slot] = static_cast<std::int32_t>(point);
            result.place[point] = result.count++;
        } else {
            result.place[point] = result.place[static_cast<std::size_t>(first[slot])];
        }
    }
    return result;
}

} // namespace velmora
