#include "surface_body.h"

#include <algorithm>
#include <cmath>

#include "vectors.h"

namespace velmora {

namespace {

/// Faces that hang together, and for each whether it must be turned to agree with the first of its component.
class Components {
public:
    struct Root {
        std::uint32_t face;
        bool turned;
    };

    explicit Components(std::size_t faces) : links_(faces) {
        for (std::size_t face = 0; face < faces; ++face) {
            links_[face] = {static_cast<std::uint32_t>(face), false};
        }
    }

    /// Joins two faces that agree when exactly one of them is turned, or with `turned` false when none or both are;
    /// false when they are joined already and cannot agree so.
    bool join(std::uint32_t a, std::uint32_t b, bool turned) {
        const Root rootA = find(a);
        const Root rootB = find(b);
        const bool between = (rootA.turned != rootB.turned) != turned;
        if (rootA.face == rootB.face) {
            return !between;
        }
        // The lowest number stands for the component: its first face.
        links_[std::max(rootA.face, rootB.face)] = {std::min(rootA.face, rootB.face), between};
        return true;
    }

    /// The first face of the component, and whether `face` is turned against it.
    Root find(std::uint32_t face) {
        Root root{face, false};
        while (links_[root.face].face != root.face) {
            root = {links_[root.face].face, root.turned != links_[root.face].turned};
        }
        // What was walked through points at the root from now on.
        bool turned = root.turned;
        while (links_[face].face != face) {
            const Root link = links_[face];
            links_[face] = {root.face, turned};
            turned = turned != link.turned;
            face = link.face;
        }
        return root;
    }

private:
    std::vector<Root> links_;
};

bool hasEdges(const Face& face) {
    const FaceEdges edges(face);
    return edges.begin() != edges.end();
}

/// a . (b x c) of the face's triangles about `centre`: six times the volume between the face and the centre.
double sixfoldVolume(const SharedPoints& points, const Face& face, const zVec<double>& centre) {
    const zVec<double> a = points.at(face.corners[0]) - centre;
    const zVec<double> b = points.at(face.corners[1]) - centre;
    const zVec<double> c = points.at(face.corners[2]) - centre;
    const double first = dot(a, cross(b, c));
    return face.isCell() ? first + dot(a, cross(c, points.at(face.corners[3]) - centre)) : first;
}

double volumeOf(const ModelFaces& model, Components& components, const zVec<double>& centre) {
    std::vector<double> sums(model.faces.size(), 0.0); // of each component at its first face
    for (std::uint32_t face = 0; face < model.faces.size(); ++face) {
        if (hasEdges(model.faces[face])) {
            const auto first = components.find(face);
            const double part = sixfoldVolume(model.points, model.faces[face], centre);
            sums[first.face] += first.turned ? -part : part;
        }
    }
    double volume = 0.0;
    for (const double sum : sums) {
        volume += std::abs(sum) / 6.0;
    }
    return volume;
}

} // namespace

SurfaceBody surfaceBody(const ModelFaces& model, const EdgeTable& edges, const zVec<double>& centre) {
    SurfaceBody body;
    Components components(model.faces.size());
    bool closed = true;
    bool anyEdge = false;
    edges.forEach([&](std::int32_t lower, std::int32_t higher, std::span<const EdgeUse> uses) {
        anyEdge = true;
        if (uses.size() == 1) {
            body.openBorder += distance(model.points.at(lower), model.points.at(higher));
        }
        body.badEdges += uses.size() > 2 ? 1 : 0;
        closed = closed && uses.size() == 2;
        for (const EdgeUse& use : uses.subspan(1)) {
            // Neighbours that agree run along their edge in opposite directions.
            const bool turned = uses.front().runsDown() == use.runsDown();
            closed = components.join(uses.front().face(), use.face(), turned) && closed;
        }
    });
    for (std::uint32_t face = 0; face < model.faces.size(); ++face) {
        body.components += hasEdges(model.faces[face]) && components.find(face).face == face ? 1 : 0;
    }
    if (anyEdge && closed) {
        body.volume = volumeOf(model, components, centre);
    }
    return body;
}

} // namespace velmora
