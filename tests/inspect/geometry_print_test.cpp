#include "geometry_print.h"

#include <set>

#include <gtest/gtest.h>

#include "inspected_models.h"

namespace velmora::test {

TEST(GeometryPrint, EqualGeometryHasOnePrint) {
    EXPECT_EQ(geometryPrint({flatPatch(2, 3)}, {}), geometryPrint({flatPatch(2, 3)}, {}));
    EXPECT_EQ(geometryPrint({}, triangleRegion(boxCorners(1, 2, 3), boxTriangles())),
              geometryPrint({}, triangleRegion(boxCorners(1, 2, 3), boxTriangles())));
}

TEST(GeometryPrint, WhateverChangesGivesAnother) {
    std::set<std::uint64_t> prints;
    int models = 0;
    const auto take = [&](const PatchList& patches, const zRegion_fe& region) {
        prints.insert(geometryPrint(patches, region));
        ++models;
    };
    take({}, {});
    take({{}}, {});
    take({{{}}}, {});
    take({flatPatch(2, 3)}, {});
    take({flatPatch(3, 2)}, {});
    take({flatPatch(2, 3), {}}, {});
    take({flatPatch(2, 3), flatPatch(2, 3)}, {});
    Patch moved = flatPatch(2, 3);
    moved[1][2].z = 1e-300;
    take({moved}, {});
    Patch exchanged = flatPatch(2, 3);
    std::swap(exchanged[0][0], exchanged[0][1]);
    take({exchanged}, {});
    take({}, oneTriangleRegion({0, 1, 2}));
    take({}, oneTriangleRegion({0, 2, 1}));
    take({}, oneTriangleRegion({0, 1, 2, 0, 1, 2}));
    EXPECT_EQ(static_cast<int>(prints.size()), models);
}

} // namespace velmora::test
