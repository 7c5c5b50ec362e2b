#include "PlacedMesh.h"

#include <utility>

#include "FileBytes.h"
#include "read_record.h"

namespace velmora {

bool PlacedMesh::hasRoom(std::uint64_t points, std::uint64_t corners) const {
    // A point is held here and in its zone; a corner here, among those of its zone and in a zone's list.
    constexpr std::uint64_t bytesOfPoint = 56;
    constexpr std::uint64_t bytesOfCorner = 24;
    constexpr std::size_t mostZones = std::size_t{1} << 20;
    const std::uint64_t memory = memoryForImport();
    return zoneCount() < mostZones && points < memory && corners < memory &&
           bytesOfPoint * (points + mesh_.pointCount()) + bytesOfCorner * (corners + mesh_.corners.size()) < memory;
}

void PlacedMesh::beginZone(std::string title, const Placement& placement) {
    mesh_.zones.push_back(std::move(title));
    placement_ = placement;
    mirrored_ = placement.isMirrored();
    moved_ += placement == Placement() ? 0 : 1;
}

void PlacedMesh::addPoint(const zVec<double>& point) {
    const zVec<double> p = placement_ == Placement() ? point : placement_.of(point);
    mesh_.addPoint(p.x, p.y, p.z);
}

void PlacedMesh::addTriangle(std::int64_t a, std::int64_t b, std::int64_t c) {
    mesh_.addPolygon({a, mirrored_ ? c : b, mirrored_ ? b : c});
    mesh_.zoneOfPolygon.push_back(static_cast<std::int32_t>(mesh_.zones.size()) - 1);
}

void PlacedMesh::tell(FileRead& record, const char* placed, bool materials) const {
    if (moved_ > 0) {
        record.alters(std::string(placed) + " whose place became part of their points: " + std::to_string(moved_));
    }
    if (materials) {
        record.losesDetail(materialsNotKept);
    }
}

void buildScene(FileMesh&& mesh, bool isEmpty, const ImportOptions& options, ExchangeModel& model, FileRead& record,
                const ReportProgress& report) {
    if (!isEmpty && record.complete && mesh.polygonEnds.empty()) {
        record.losesGeometry(noFacesFound);
    }
    buildZones(std::move(mesh), options, model, record, report);
}

} // namespace velmora
