#include "kernel_functions.h"

#include <algorithm>
#include <utility>

#include "Respacer.h"
#include "geometry_arrays.h"
#include "match_border.h"
#include "projection.h"
#include "slice_surface.h"
#include "target_mesh.h"

namespace velmora {

namespace {

namespace py = pybind11;

constexpr std::int32_t largestCount = 10'000'000;

/// The points of a curve, ready to be re-spaced: repeated neighbours are left out, as the command does.
Respacer respacerOf(const NumberArray& array) {
    const PointList points = pointsOf(array, "points");
    if (points.size() < 2) {
        throw py::value_error("points: a curve has 2 or more");
    }
    Respacer respacer;
    for (const zVec<double>& point : points) {
        respacer.add(point);
    }
    if (respacer.count() > 3) {
        respacer.dropCoincident();
    }
    return respacer;
}

py::array outputsOf(const Respacer& respacer, std::int32_t count) {
    PointList points;
    for (std::int32_t i = 0; i < count; ++i) {
        points.push_back(respacer.output(i));
    }
    return pointArray(points);
}

py::array rebreak(const NumberArray& points, std::int32_t count, double compression, bool spline,
                  std::int32_t exactness) {
    if (count < 2 || count > largestCount) {
        throw py::value_error("count is 2 to 10000000");
    }
    if (!(compression > 0.0)) {
        throw py::value_error("compression is above 0");
    }
    if (exactness < 0 || exactness > 100) {
        throw py::value_error("exactness is 0 to 100 percent");
    }
    Respacer respacer = respacerOf(points);
    respacer.respace(spline, count, compression, exactness);
    return outputsOf(respacer, count);
}

/// The positions rise from 0.
std::vector<double> lawOf(const NumberArray& array) {
    if (array.ndim() != 1 || array.size() < 2 || array.size() > largestCount) {
        throw py::value_error("positions have the shape (m,) with m of 2 or more");
    }
    std::vector<double> law(array.data(), array.data() + array.size());
    const bool rises = law.front() == 0.0 && std::adjacent_find(law.begin(), law.end(), [](double a, double b) {
                                                 return !(a < b);
                                             }) == law.end();
    if (!rises || !(law.back() < std::numeric_limits<double>::infinity())) {
        throw py::value_error("positions rise from 0, each above the one before, and are finite");
    }
    return law;
}

py::array rebreakByLaw(const NumberArray& points, const NumberArray& positions, bool spline, std::int32_t exactness) {
    std::vector<double> law = lawOf(positions);
    Respacer respacer = respacerOf(points);
    const auto count = static_cast<std::int32_t>(law.size());
    respacer.respaceByLaw(spline, count, exactness, law.data());
    return outputsOf(respacer, count);
}

zRegion_fe surfaceOf(const NumberArray& vertices, const IndexArray& triangles) {
    zRegion_fe region;
    region.blocks.push_back(zoneOf(vertices, triangles, "surface"));
    return region;
}

py::list slice(const NumberArray& vertices, const IndexArray& triangles, int axis, std::int32_t planes, double lower,
               double upper, double precision) {
    if (axis < 0 || axis > 2) {
        throw py::value_error("axis is 0 (x), 1 (y) or 2 (z)");
    }
    if (planes < 2 || planes > largestCount || !(lower < upper) || !(precision > 0.0)) {
        throw py::value_error("there are 2 planes or more from lower to a larger upper, and precision is above 0");
    }
    SlicePlan plan;
    plan.axis = axis;
    plan.planes = planes;
    plan.manual = true;
    plan.lower = lower;
    plan.upper = upper;
    plan.precision = precision;
    return sectionArrays(sliceSurface(surfaceOf(vertices, triangles), plan).sections);
}

/// The patch projected, and the points that met nothing and stayed.
py::tuple project(const NumberArray& patch, const NumberArray& vertices, const IndexArray& triangles) {
    PatchList patches = {patchOf(patch, "patch")};
    const zRegion_fe region = surfaceOf(vertices, triangles);
    const TriangleTree target(zoneMesh(region, {false}));
    PointList missed;
    projectPatches(patches, {0}, target, nearestElementHit, missed, [] {}, {});
    return py::make_tuple(patchArray(patches.front(), 1), pointArray(missed));
}

py::object match(const NumberArray& a, const NumberArray& b, bool grid) {
    const Patch first = patchOf(a, "a");
    Patch second = patchOf(b, "b");
    if (!matchBorder(first, second, grid)) {
        return py::none();
    }
    return patchArray(second, 1);
}

} // namespace

void declareKernels(py::module_& module) {
    using py::arg;
    module.def("rebreak", &rebreak, arg("points"), arg("count"), arg("compression"), arg("spline"), arg("exactness"));
    module.def("rebreak_by_law", &rebreakByLaw, arg("points"), arg("positions"), arg("spline"), arg("exactness"));
    module.def("slice", &slice, arg("vertices"), arg("triangles"), arg("axis"), arg("planes"), arg("lower"),
               arg("upper"), arg("precision"));
    module.def("project", &project, arg("patch"), arg("vertices"), arg("triangles"));
    module.def("match", &match, arg("a"), arg("b"), arg("grid"));
    module.attr("border_reach") = borderReach;
}

} // namespace velmora
