#pragma once

#include <cstddef>
#include <vector>

namespace velmora {

/// A point of a coordinate plane, by its first and second coordinate there.
struct PlanePoint {
    double a = 0.0;
    double b = 0.0;
};

/// Tells how near the nearest of some points of a plane is: a tree of boxes over them. The answer is that of measuring
/// every point, to the last bit, as a box is passed over only when none of its points can be nearer than one found
/// before.
class NearestMarker {
public:
    /// Points with a coordinate that is not finite are never the nearest. n log n for n points.
    explicit NearestMarker(std::vector<PlanePoint> markers);

    /// The distance from (a, b) to the nearest point; infinity when there is none, or none at a finite distance.
    double distanceFrom(double a, double b) const;

private:
    /// A node holds markers_[first] up to but not including markers_[last]; the halves of node i are 2i+1 and 2i+2.
    struct Node {
        std::size_t first = 0;
        std::size_t last = 0;
        double lowA = 0.0;
        double highA = 0.0;
        double lowB = 0.0;
        double highB = 0.0;
    };

    void build(std::size_t node, std::size_t first, std::size_t last);
    double boundOf(std::size_t node, double a, double b) const;
    void search(std::size_t node, double a, double b, double& best) const;

    std::vector<PlanePoint> markers_;
    std::vector<Node> nodes_;
};

} // namespace velmora
