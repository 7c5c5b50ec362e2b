#include "geometry_arrays.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace velmora {

namespace {

namespace py = pybind11;

constexpr py::ssize_t coordinates = 3;
constexpr std::int32_t cornersStored = 4; ///< of a triangle in the connectivity of a zone: three nodes and -1

py::array readOnly(py::array array) {
    array.attr("setflags")(py::arg("write") = false);
    return array;
}

double* writePoints(const PointList& points, double* to) {
    for (const zVec<double>& p : points) {
        to[0] = p.x;
        to[1] = p.y;
        to[2] = p.z;
        to += coordinates;
    }
    return to;
}

/// A shape as Python writes it.
std::string shapeText(const py::array& array) {
    return py::str(array.attr("shape")).cast<std::string>();
}

void demandShape(const py::array& array, bool holds, const std::string& what, const char* wanted) {
    if (!holds) {
        throw py::value_error(what + " has the shape " + shapeText(array) + ", not " + wanted);
    }
}

/// Counts have 32 bits, and a model of zones four entries for each triangle.
void demandRoom(py::ssize_t count, const std::string& what) {
    if (count > std::numeric_limits<std::int32_t>::max() / cornersStored) {
        throw py::value_error(what + " is too large for a model");
    }
}

void demandFinite(const NumberArray& array, const std::string& what) {
    const double* const begin = array.data();
    const double* const end = begin + array.size();
    const double* const bad = std::find_if_not(begin, end, [](double value) { return std::isfinite(value); });
    if (bad != end) {
        throw py::value_error(what + ": value " + std::to_string(bad - begin + 1) + " of " +
                              std::to_string(array.size()) + " is not finite");
    }
}

PointList pointsAt(const double* from, py::ssize_t count) {
    PointList points;
    points.reserve(static_cast<std::size_t>(count));
    for (py::ssize_t i = 0; i < count; ++i, from += coordinates) {
        points.emplace_back(from[0], from[1], from[2]);
    }
    return points;
}

bool isCoordinate(const zBlock_fe& zone, const zArray<double>* field) {
    const ZoneCoordinates axes = coordinatesOf(zone.variables);
    return field == axes.x || field == axes.y || field == axes.z;
}

py::array vertexArray(const zBlock_fe& zone) {
    NumberArray vertices({static_cast<py::ssize_t>(zone.nodeCount), coordinates});
    const ZoneCoordinates axes = coordinatesOf(zone.variables);
    double* to = vertices.mutable_data();
    for (std::size_t i = 0; i < static_cast<std::size_t>(zone.nodeCount); ++i, to += coordinates) {
        to[0] = axes ? axes.x->data[i] : 0.0;
        to[1] = axes ? axes.y->data[i] : 0.0;
        to[2] = axes ? axes.z->data[i] : 0.0;
    }
    return readOnly(std::move(vertices));
}

py::array triangleArray(const zBlock_fe& zone) {
    IndexArray triangles({static_cast<py::ssize_t>(zone.elementCount), coordinates});
    std::int32_t* to = triangles.mutable_data();
    const std::int32_t* from = zone.connectivity.data();
    for (std::int32_t i = 0; i < zone.elementCount; ++i, to += coordinates, from += cornersStored) {
        std::copy(from, from + coordinates, to);
    }
    return readOnly(std::move(triangles));
}

} // namespace

py::array pointArray(const PointList& points) {
    NumberArray array({static_cast<py::ssize_t>(points.size()), coordinates});
    writePoints(points, array.mutable_data());
    return readOnly(std::move(array));
}

py::array patchArray(const Patch& patch, std::size_t number) {
    const std::size_t length = patch.empty() ? 0 : patch.front().size();
    if (std::any_of(patch.begin(), patch.end(), [length](const PointList& s) { return s.size() != length; })) {
        throw py::value_error("the sections of patch " + std::to_string(number) +
                              " differ in length: it is no grid; read the lines");
    }
    NumberArray array({static_cast<py::ssize_t>(patch.size()), static_cast<py::ssize_t>(length), coordinates});
    double* to = array.mutable_data();
    for (const PointList& section : patch) {
        to = writePoints(section, to);
    }
    return readOnly(std::move(array));
}

py::list sectionArrays(const Patch& patch) {
    py::list sections;
    for (const PointList& section : patch) {
        sections.append(pointArray(section));
    }
    return sections;
}

py::tuple zoneArrays(const zBlock_fe& zone) {
    py::dict fields;
    for (const auto& field : zone.variables) {
        if (!isCoordinate(zone, field.get())) {
            const auto& data = field->data;
            fields[py::str(field->name)] = readOnly(NumberArray(static_cast<py::ssize_t>(data.size()), data.data()));
        }
    }
    return py::make_tuple(zone.title, vertexArray(zone), triangleArray(zone), fields);
}

PointList pointsOf(const NumberArray& array, const std::string& what) {
    demandShape(array, array.ndim() == 2 && array.shape(1) == coordinates, what, "(n, 3)");
    demandRoom(array.shape(0), what);
    demandFinite(array, what);
    return pointsAt(array.data(), array.shape(0));
}

Patch patchOf(const NumberArray& array, const std::string& what) {
    demandShape(array, array.ndim() == 3 && array.shape(2) == coordinates && array.shape(0) > 0 && array.shape(1) > 0,
                what, "(N, M, 3) with N and M of 1 or more");
    demandRoom(array.size(), what);
    demandFinite(array, what);
    Patch patch;
    patch.reserve(static_cast<std::size_t>(array.shape(0)));
    for (py::ssize_t n = 0; n < array.shape(0); ++n) {
        patch.push_back(pointsAt(array.data(n, 0, 0), array.shape(1)));
    }
    return patch;
}

std::unique_ptr<zBlock_fe> zoneOf(const NumberArray& vertices, const IndexArray& triangles, const std::string& what) {
    demandShape(vertices, vertices.ndim() == 2 && vertices.shape(1) == coordinates, what + ": vertices", "(V, 3)");
    demandShape(triangles, triangles.ndim() == 2 && triangles.shape(1) == coordinates, what + ": triangles", "(T, 3)");
    demandRoom(vertices.size(), what);
    demandRoom(triangles.size(), what);
    demandFinite(vertices, what + ": vertices");
    const auto nodes = static_cast<std::int32_t>(vertices.shape(0));
    const auto elements = static_cast<std::int32_t>(triangles.shape(0));
    const std::int32_t* const corners = triangles.data();
    const auto* const outside = std::find_if(corners, corners + triangles.size(),
                                             [nodes](std::int32_t node) { return node < 0 || node >= nodes; });
    if (outside != corners + triangles.size()) {
        throw py::value_error(what + ": triangle " + std::to_string((outside - corners) / coordinates + 1) +
                              " names vertex " + std::to_string(*outside) + ", and there are " + std::to_string(nodes) +
                              " from 0");
    }
    auto zone = std::make_unique<zBlock_fe>(nodes, cornersStored * elements, elements);
    for (std::int32_t i = 0; i < elements; ++i) {
        const std::ptrdiff_t at{i};
        std::copy_n(corners + at * coordinates, coordinates, zone->connectivity.begin() + at * cornersStored);
    }
    py::ssize_t column = 0;
    for (const char* axis : {"x", "y", "z"}) {
        std::vector<double>& values = zone->addVariable(axis)->data;
        for (py::ssize_t i = 0; i < nodes; ++i) {
            values[static_cast<std::size_t>(i)] = vertices.at(i, column);
        }
        ++column;
    }
    return zone;
}

void addField(zBlock_fe& zone, const std::string& name, const NumberArray& values) {
    if (variableNamed(zone.variables, name) != nullptr) {
        throw py::value_error("the zone has a field \"" + name + "\" already");
    }
    demandShape(values, values.ndim() == 1 && values.shape(0) == zone.nodeCount, "the field \"" + name + '"',
                "(V,), one value for each vertex");
    demandFinite(values, "the field \"" + name + '"');
    std::copy_n(values.data(), values.size(), zone.addVariable(name)->data.begin());
}

} // namespace velmora
