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
    /// Zones that are not where their file has their points.
    std::int64_t movedZones() const { return moved_; }
    FileMesh& mesh() { return mesh_; }

private:
    FileMesh mesh_;
    Placement placement_;
    bool mirrored_ = false;
    std::int64_t moved_ = 0;
};

} // namespace velmora
