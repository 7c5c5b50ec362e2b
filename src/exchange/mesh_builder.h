#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "FileRecord.h"
#include "exchange_model.h"
#include "progress.h"

namespace velmora {

/// The points of a file, a field of values for each further variable, and its polygons, each of a zone. Polygons may
/// name points that come later, or that are not there.
struct FileMesh {
    std::vector<double> x;
    std::vector<double> y;
    std::vector<double> z;
    std::vector<std::string> variables;      ///< the names of the further ones
    std::vector<std::vector<double>> values; ///< of each, one for each point
    std::vector<std::string> zones;          ///< titles
    std::vector<std::int64_t> corners;       ///< of all polygons, points from 0
    std::vector<std::size_t> polygonEnds;    ///< where each polygon's corners end
    std::vector<std::int32_t> zoneOfPolygon; ///< empty: all belong to the first zone

    std::size_t pointCount() const { return x.size(); }
    void addPoint(double px, double py, double pz) {
        x.push_back(px);
        y.push_back(py);
        z.push_back(pz);
    }
    void addPolygon(std::span<const std::int64_t> points) {
        corners.insert(corners.end(), points.begin(), points.end());
        polygonEnds.push_back(corners.size());
    }
    void addPolygon(std::initializer_list<std::int64_t> points) {
        addPolygon(std::span(points.begin(), points.size()));
    }
};

/// Makes zones of triangles of a file's polygons and puts them behind those of the model. Counts `points`, `faces` and
/// `triangles` of the record, found and kept, and tells what became of them: polygons of fewer than three corners, of
/// points that are not there or not finite are left out; those of more than three corners become triangles; triangles
/// without area stay; points that nothing uses are left out, and with `merge` equal ones become one. A zone without
/// triangles is not made.
void buildMesh(FileMesh&& mesh, const ImportOptions& options, ExchangeModel& model, FileRead& record,
               const ReportProgress& report = {});

/// The same of a format that has zones of its own: `zones` are counted too.
void buildZones(FileMesh&& mesh, const ImportOptions& options, ExchangeModel& model, FileRead& record,
                const ReportProgress& report = {});

/// Tells of a scale that is not 1.
void tellScale(const ImportOptions& options, FileRead& record);

/// The cross product of two edges is exactly 0, or is nothing that can be told.
bool hasNoArea(const zVec<double>& a, const zVec<double>& b, const zVec<double>& c);

/// A zone of these points and triangles: three points for each, from 0.
std::unique_ptr<zBlock_fe> makeZone(const std::string& title, std::array<std::vector<double>, 3>&& points,
                                    std::span<const std::int32_t> corners);

/// Finds points that are equal to the bit. For each point the number of the first one of its place among those found,
/// and how many places there are.
struct EqualPoints {
    std::vector<std::int32_t> place;
    std::int32_t count = 0;
};
EqualPoints findEqualPoints(std::span<const double> x, std::span<const double> y, std::span<const double> z);

} // namespace velmora
