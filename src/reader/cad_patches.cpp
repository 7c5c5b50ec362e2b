#include "cad_patches.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

#include <BRepAdaptor_Surface.hxx>
#include <BRepTools.hxx>
#include <BRepTools_WireExplorer.hxx>
#include <BRep_Tool.hxx>
#include <Geom2d_Curve.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Wire.hxx>
#include <gp_Pnt.hxx>
#include <gp_Pnt2d.hxx>
#include <gp_Vec2d.hxx>

namespace velmora {

namespace {

/// An edge of a border in the parameters of the surface, run through in the sense of the border.
struct Edge {
    Handle(Geom2d_Curve) curve;
    double first = 0.0;
    double last = 0.0;

    /// `t` from 0 to 1.
    gp_Pnt2d at(double t) const { return curve->Value(first + t * (last - first)); }
    double length() const { return at(0.0).Distance(at(1.0)); }
};

/// A side: edges that go on in one line.
struct Side {
    std::vector<Edge> edges;

    /// `t` from 0 to 1, each edge by its length.
    gp_Pnt2d at(double t) const {
        double whole = 0.0;
        for (const Edge& edge : edges) {
            whole += edge.length();
        }
        double before = t * whole;
        for (const Edge& edge : edges) {
            const double length = edge.length();
            if (before <= length && length > 0.0) {
                return edge.at(before / length);
            }
            before -= length;
        }
        return t > 0.5 ? edges.back().at(1.0) : edges.front().at(t);
    }
};

std::vector<Edge> edgesOf(const TopoDS_Wire& wire, const TopoDS_Face& face) {
    std::vector<Edge> edges;
    for (BRepTools_WireExplorer explorer(wire, face); explorer.More(); explorer.Next()) {
        Edge edge;
        edge.curve = BRep_Tool::CurveOnSurface(explorer.Current(), face, edge.first, edge.last);
        if (edge.curve.IsNull()) {
            return {};
        }
        if (explorer.Current().Orientation() == TopAbs_REVERSED) {
            std::swap(edge.first, edge.last);
        }
        edges.push_back(edge);
    }
    return edges;
}

/// The rectangle of parameters that a face takes up.
struct Rectangle {
    double u0 = 0.0;
    double u1 = 0.0;
    double v0 = 0.0;
    double v1 = 0.0;

    gp_Pnt2d at(double u, double v) const { return {u0 + u * (u1 - u0), v0 + v * (v1 - v0)}; }

    bool hasOnBorder(const gp_Pnt2d& p) const {
        constexpr double small = 1e-6;
        const auto near = [](double a, double b, double length) { return std::abs(a - b) <= small * length; };
        return near(p.X(), u0, u1 - u0) || near(p.X(), u1, u1 - u0) || near(p.Y(), v0, v1 - v0) ||
               near(p.Y(), v1, v1 - v0);
    }
};

bool runsAlong(const std::vector<Edge>& edges, const Rectangle& rectangle) {
    constexpr int samples = 16;
    return std::all_of(edges.begin(), edges.end(), [&rectangle](const Edge& edge) {
        for (int i = 0; i <= samples; ++i) {
            if (!rectangle.hasOnBorder(edge.at(static_cast<double>(i) / samples))) {
                return false;
            }
        }
        return true;
    });
}

/// Whether one edge goes on in the direction of the one before it, the rectangle seen as a square.
bool goesOn(const Edge& before, const Edge& edge, const Rectangle& rectangle) {
    constexpr double step = 1e-3;
    constexpr double small = 1e-2; // of an angle
    const auto way = [&rectangle](const gp_Pnt2d& from, const gp_Pnt2d& to) {
        return gp_Vec2d((to.X() - from.X()) / (rectangle.u1 - rectangle.u0),
                        (to.Y() - from.Y()) / (rectangle.v1 - rectangle.v0));
    };
    const gp_Vec2d end = way(before.at(1.0 - step), before.at(1.0));
    const gp_Vec2d begin = way(edge.at(0.0), edge.at(step));
    return end.Dot(begin) > 0.0 && std::abs(end.Crossed(begin)) <= small * end.Magnitude() * begin.Magnitude();
}

/// The sides of a border: each edge where there are four, else what lies between four corners. Empty for another
/// number.
std::vector<Side> sidesOf(const std::vector<Edge>& edges, const Rectangle& rectangle) {
    const std::size_t count = edges.size();
    std::vector<std::size_t> corners; // edges that begin at one
    for (std::size_t i = 0; i < count; ++i) {
        if (count == 4 || !goesOn(edges[(i + count - 1) % count], edges[i], rectangle)) {
            corners.push_back(i);
        }
    }
    if (corners.size() != 4) {
        return {};
    }
    std::vector<Side> sides(4);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t edge = (corners[0] + i) % count;
        const auto next = std::upper_bound(corners.begin(), corners.end(), edge);
        const auto side = next == corners.begin() ? 3 : (next - corners.begin()) - 1;
        sides[static_cast<std::size_t>(side)].edges.push_back(edges[edge]);
    }
    return sides;
}

/// Between four sides in turn: `s` runs along the first and against the third, `t` along the second and against the
/// fourth.
gp_Pnt2d between(const std::vector<Side>& sides, double s, double t) {
    const gp_Pnt2d low = sides[0].at(s);
    const gp_Pnt2d right = sides[1].at(t);
    const gp_Pnt2d high = sides[2].at(1.0 - s);
    const gp_Pnt2d left = sides[3].at(1.0 - t);
    const gp_Pnt2d a = sides[0].at(0.0);
    const gp_Pnt2d b = sides[1].at(0.0);
    const gp_Pnt2d c = sides[2].at(0.0);
    const gp_Pnt2d d = sides[3].at(0.0);
    const auto blend = [s, t](double l, double r, double h, double f, double pa, double pb, double pc, double pd) {
        return (1 - t) * l + t * h + (1 - s) * f + s * r -
               ((1 - s) * (1 - t) * pa + s * (1 - t) * pb + s * t * pc + (1 - s) * t * pd);
    };
    return {blend(low.X(), right.X(), high.X(), left.X(), a.X(), b.X(), c.X(), d.X()),
            blend(low.Y(), right.Y(), high.Y(), left.Y(), a.Y(), b.Y(), c.Y(), d.Y())};
}

bool hasHoles(const TopoDS_Face& face) {
    int wires = 0;
    for (TopExp_Explorer explorer(face, TopAbs_WIRE); explorer.More(); explorer.Next()) {
        ++wires;
    }
    return wires > 1;
}

} // namespace

// A border runs with the inside at its left as seen from the surface's own outside, so that both kinds of parameters
// have the sense of the surface; a face that is turned round looks the other way.
FacePatch patchOfFace(const TopoDS_Face& given, std::int32_t sections, std::int32_t points) {
    const TopoDS_Face face = TopoDS::Face(given.Oriented(TopAbs_FORWARD));
    const TopoDS_Wire wire = BRepTools::OuterWire(face);
    if (wire.IsNull() || hasHoles(face)) {
        return {wire.IsNull() ? FaceBorder::OtherSides : FaceBorder::WithHoles, {}};
    }
    const std::vector<Edge> edges = edgesOf(wire, face);
    Rectangle rectangle;
    BRepTools::UVBounds(face, rectangle.u0, rectangle.u1, rectangle.v0, rectangle.v1);
    const bool alongLines = !edges.empty() && runsAlong(edges, rectangle);
    const std::vector<Side> sides = alongLines ? std::vector<Side>() : sidesOf(edges, rectangle);
    if (!alongLines && sides.empty()) {
        return {};
    }
    const BRepAdaptor_Surface surface(face, Standard_False);
    FacePatch patch;
    patch.border = alongLines ? FaceBorder::OnParameters : FaceBorder::FourSides;
    patch.block.i = points;
    patch.block.j = sections;
    const bool turned = given.Orientation() == TopAbs_REVERSED;
    for (std::int32_t j = 0; j < sections; ++j) {
        for (std::int32_t i = 0; i < points; ++i) {
            const double s = static_cast<double>(turned ? points - 1 - i : i) / (points - 1);
            const double t = static_cast<double>(j) / (sections - 1);
            const gp_Pnt2d place = alongLines ? rectangle.at(s, t) : between(sides, s, t);
            const gp_Pnt point = surface.Value(place.X(), place.Y());
            patch.block.x.push_back(point.X());
            patch.block.y.push_back(point.Y());
            patch.block.z.push_back(point.Z());
        }
    }
    return patch;
}

} // namespace velmora
