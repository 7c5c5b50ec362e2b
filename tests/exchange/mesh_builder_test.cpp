#include "mesh_builder.h"

#include <limits>

#include <gmock/gmock.h>

#include "exchange_tools.h"

namespace velmora {
namespace {

using test::Point;
using testing::ElementsAre;

FileMesh square() {
    FileMesh mesh;
    mesh.addPoint(0, 0, 0);
    mesh.addPoint(1, 0, 0);
    mesh.addPoint(1, 1, 0);
    mesh.addPoint(0, 1, 0);
    return mesh;
}

TEST(MeshBuilder, EqualPointsAreFoundToTheBit) {
    const double least = std::numeric_limits<double>::denorm_min();
    const EqualPoints equal =
        findEqualPoints(std::vector<double>{0, 1, 0, -0.0, 1, least}, std::vector<double>{0, 2, 0, 0, 2, 0},
                        std::vector<double>{0, 3, 0, 0, 3.5, 0});
    EXPECT_THAT(equal.place, ElementsAre(0, 1, 0, 2, 3, 4));
    EXPECT_EQ(equal.count, 5);
}

TEST(MeshBuilder, AThousandCopiesOfAThousandPointsAreAThousand) {
    std::vector<double> x;
    for (int i = 0; i < 1'000'000; ++i) {
        x.push_back(0.125 * (i % 1000));
    }
    const EqualPoints equal = findEqualPoints(x, x, x);
    EXPECT_EQ(equal.count, 1000);
    EXPECT_EQ(equal.place[999'999], 999);
}

TEST(MeshBuilder, NoAreaMeansExactlyNone) {
    EXPECT_TRUE(hasNoArea({0, 0, 0}, {1, 1, 1}, {2, 2, 2}));
    EXPECT_TRUE(hasNoArea({1, 0, 0}, {1, 0, 0}, {2, 5, 2}));
    EXPECT_FALSE(hasNoArea({0, 0, 0}, {1, 0, 0}, {2, 1e-300, 0}));
}

TEST(MeshBuilder, ValuesFollowTheirPoints) {
    FileMesh mesh = square();
    mesh.addPoint(1, 0, 0); // the second one again
    mesh.variables = {"P"};
    mesh.values = {{10, 11, 12, 13, 14}};
    mesh.addPolygon({3, 1, 2});
    mesh.addPolygon({3, 4, 2});
    ImportOptions merge;
    merge.merge = true;
    ExchangeModel model;
    FileRead record;
    buildMesh(std::move(mesh), merge, model, record);
    const zBlock_fe& zone = *model.region.blocks.at(0);
    EXPECT_THAT(test::nodesOf(zone), ElementsAre(Point{1, 0, 0}, Point{1, 1, 0}, Point{0, 1, 0}));
    EXPECT_EQ(zone.variables.at(3)->name, "P");
    EXPECT_THAT(zone.variables[3]->data, ElementsAre(11, 12, 13)); // of the first of the two
    EXPECT_THAT(record.changed, ElementsAre("Points that no face uses, left out: 1", "Points merged: 1"));
}

TEST(MeshBuilder, APolygonThatCrossesItselfIsTold) {
    FileMesh mesh = square();
    mesh.addPoint(0, 3, 0);
    mesh.addPolygon({0, 2, 1, 4});
    ExchangeModel model;
    FileRead record;
    buildMesh(std::move(mesh), {}, model, record);
    EXPECT_EQ(countOf(record.kept, "triangles"), 2);
    EXPECT_THAT(record.changed, testing::Contains("Polygons whose border crosses itself: 1"));
}

TEST(MeshBuilder, AZoneWithoutTrianglesIsNotMade) {
    FileMesh mesh = square();
    mesh.zones = {"bad", "good"};
    mesh.addPolygon({0, 1, 9});
    mesh.addPolygon({0, 1, 2});
    mesh.zoneOfPolygon = {0, 1};
    ExchangeModel model;
    FileRead record;
    buildMesh(std::move(mesh), {}, model, record);
    EXPECT_THAT(test::titlesOf(model), ElementsAre("good"));
    EXPECT_FALSE(record.complete);
}

} // namespace
} // namespace velmora
