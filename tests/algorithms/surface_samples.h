#pragma once

#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "PatchList.h"
#include "small_models.h"

namespace velmora::test {

using testing::DoubleNear;
using testing::ElementsAre;
using testing::Pointwise;

/// The coordinates along one axis of a section's points.
inline std::vector<double> along(const PointList& points, double zVec<double>::*axis = &zVec<double>::x) {
    std::vector<double> values;
    for (const zVec<double>& p : points) {
        values.push_back(p.*axis);
    }
    return values;
}

/// Points on the x axis at height y.
inline PointList rowAt(const std::vector<double>& x, double y = 0.0) {
    PointList row;
    for (const double value : x) {
        row.push_back({value, y, 0.0});
    }
    return row;
}

/// Points 0, 1, 2 and so on of the x axis.
inline PointList numbered(int count) {
    PointList points;
    for (int i = 0; i < count; ++i) {
        points.push_back({static_cast<double>(i), 0.0, 0.0});
    }
    return points;
}

inline Patch moved(Patch patch, const zVec<double>& by) {
    for (PointList& section : patch) {
        for (zVec<double>& p : section) {
            p = p + by;
        }
    }
    return patch;
}

} // namespace velmora::test
