#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "Placement.h"
#include "mesh_builder.h"

namespace velmora {

/// Gathers the meshes that a scene puts at several places, as long as the memory is for them: a small file can name one
/// mesh any number of times.
class PlacedMesh {
public:
    /// Whether so many more points and corners have room.
    bool hasRoom(std::uint64_t points, std::uint64_t corners) const;

    /// A zone into which the triangles go from now on, and where its points stand.
    void beginZone(std::string title, const Placement& placement);
    /// The number that the next point will have.
    std::int64_t nextPoint() const { return static_cast<std::int64_t>(mesh_.pointCount()); }
    void addPoint(const zVec<double>& point);
    /// Corners as the mesh has them; turned round where the placement is mirrored.
    void addTriangle(std::int64_t a, std::int64_t b, std::int64_t c);

    std::size_t zoneCount() const { return mesh_.zones.size(); }
    /// Tells of places that became part of points, by the format's word for what had them, and of materials where the
    /// scene has some.
    void tell(FileRead& record, const char* placed, bool materials) const;
    FileMesh& mesh() { return mesh_; }

private:
    FileMesh mesh_;
    Placement placement_;
    bool mirrored_ = false;
    std::int64_t moved_ = 0; // zones that are not where their file has their points
};

/// Makes the model of a scene's meshes, and counts its zones beside what `buildMesh` counts. A file that is not empty
/// and has no faces is told, unless the record tells more.
void buildScene(FileMesh&& mesh, bool isEmpty, const ImportOptions& options, ExchangeModel& model, FileRead& record,
                const ReportProgress& report);

} // namespace velmora
