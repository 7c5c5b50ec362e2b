#pragma once

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include <string>
#include <vector>

#include "PatchList.h"
#include "zRegion.h"

namespace velmora {

// Geometry as numpy arrays of doubles in C order, and back. What comes out of a model is a copy that nothing changes
// any more: it is marked read-only. What goes in is checked as the readers check a file: shapes, finite numbers,
// triangles that name nodes that exist; a ValueError names the place, counted from 1.

/// Doubles in C order; another array is converted.
using NumberArray = pybind11::array_t<double, pybind11::array::c_style | pybind11::array::forcecast>;
/// The same of node numbers.
using IndexArray = pybind11::array_t<std::int32_t, pybind11::array::c_style | pybind11::array::forcecast>;

/// (n, 3).
pybind11::array pointArray(const PointList& points);
/// (N, M, 3); a ValueError that names patch `number` where its sections differ in length.
pybind11::array patchArray(const Patch& patch, std::size_t number);
/// A list of (n, 3).
pybind11::list sectionArrays(const Patch& patch);
/// (title, vertices (V, 3), triangles (T, 3), {name: (V,)}): the fields beside the coordinates by name.
pybind11::tuple zoneArrays(const zBlock_fe& zone);

/// Of an array (n, 3); `what` names it in errors.
PointList pointsOf(const NumberArray& array, const std::string& what);
/// Of an array (N, M, 3).
Patch patchOf(const NumberArray& array, const std::string& what);
/// Of `vertices` (V, 3) and `triangles` (T, 3).
std::unique_ptr<zBlock_fe> zoneOf(const NumberArray& vertices, const IndexArray& triangles, const std::string& what);
/// Puts a field (V,) behind those of a zone.
void addField(zBlock_fe& zone, const std::string& name, const NumberArray& values);

} // namespace velmora
