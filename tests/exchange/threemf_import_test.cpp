#include "threemf_import.h"

#include <gmock/gmock.h>

#include "exchange_tools.h"
#include "small_zip.h"

namespace velmora::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

Imported read(const std::string& text, const ImportOptions& options = {}) {
    return importText(importThreemf, text, options);
}

const std::string triangleMesh = "<mesh><vertices><vertex x='0' y='0' z='0.1'/><vertex x='1' y='0' z='0'/>"
                                 "<vertex x='0' y='1e0' z='0'/></vertices><triangles><triangle v1='0' v2='1' v3='2'/>"
                                 "</triangles></mesh>";

std::string modelOf(const std::string& resources, const std::string& items, const std::string& attributes = "") {
    return "<?xml version='1.0'?><model " + attributes +
           " xmlns='http://schemas.microsoft.com/3dmanufacturing/core/2015/02'"
           " xmlns:p='http://schemas.microsoft.com/3dmanufacturing/production/2015/06'><resources>" +
           resources + "</resources><build>" + items + "</build></model>";
}

const std::string relations =
    "<Relationships xmlns='http://schemas.openxmlformats.org/package/2006/relationships'><Relationship Id='a' "
    "Target='/3D/body.model' Type='http://schemas.microsoft.com/3dmanufacturing/2013/01/3dmodel'/></Relationships>";

std::string package(const std::string& model) {
    return zipOf({{"_rels/.rels", relations}, {"3D/body.model", model}});
}

std::string object(int id, const std::string& content, const std::string& name = "") {
    return "<object id='" + std::to_string(id) + "'" + (name.empty() ? "" : " name='" + name + "'") + ">" + content +
           "</object>";
}

TEST(ThreemfImport, AnItemIsAZoneUnderItsObjectsName) {
    const Imported file =
        read(package(modelOf(object(1, triangleMesh, "wing"), "<item objectid='1'/>", "unit='inch'")));
    EXPECT_THAT(titlesOf(file.model), ElementsAre("wing"));
    EXPECT_THAT(cornersOf(file.model), ElementsAre(Corners{{{0, 0, 0.1}, {1, 0, 0}, {0, 1, 0}}}));
    EXPECT_EQ(file.record.format, "3mf");
    EXPECT_EQ(file.record.unit, "inch");
    EXPECT_TRUE(file.record.complete);
    EXPECT_TRUE(file.record.lossless);
    EXPECT_EQ(file.record.found, (Counts{{"zones", 1}, {"points", 3}, {"faces", 1}, {"triangles", 1}}));
    EXPECT_EQ(file.record.kept, file.record.found);
}

TEST(ThreemfImport, WithoutAUnitItIsMillimetresAndWithoutRelationsThePlaceIsTheUsualOne) {
    const Imported file = read(zipOf({{"3d/3DModel.model", modelOf(object(1, triangleMesh), "<item objectid='1'/>")}}));
    EXPECT_EQ(file.record.unit, "millimeter");
    EXPECT_EQ(kept(file, "triangles"), 1);
    EXPECT_TRUE(file.record.complete);
}

// (x,y,z) goes to (2x + 10, 3y + x + 20, z + 30) by the component, then to y, z, x by the item.
TEST(ThreemfImport, PlacesOfItemsAndComponentsAreApplied) {
    const Imported file = read(package(modelOf(
        object(1, triangleMesh) +
            object(2, "<components><component objectid='1' transform='2 1 0 0 3 0 0 0 1 10 20 30'/></components>"),
        "<item objectid='2' transform='0 0 1 1 0 0 0 1 0 0 0 0'/>")));
    EXPECT_THAT(cornersOf(file.model), ElementsAre(Corners{{{20, 30.1, 10}, {21, 30, 12}, {23, 30, 10}}}));
    EXPECT_THAT(file.record.changed, ElementsAre("Objects whose place became part of their points: 1"));
    EXPECT_FALSE(file.record.lossless);
    EXPECT_TRUE(file.record.complete);
}

TEST(ThreemfImport, AMirroredItemKeepsItsOutside) {
    const Imported file =
        read(package(modelOf(object(1, triangleMesh), "<item objectid='1' transform='-1 0 0 0 1 0 0 0 1 0 0 0'/>")));
    EXPECT_THAT(cornersOf(file.model), ElementsAre(Corners{{{0, 0, 0.1}, {0, 1, 0}, {-1, 0, 0}}}));
}

TEST(ThreemfImport, TheNearestNameAboveTheMeshIsTheTitle) {
    const std::string parts = "<components><component objectid='1'/></components>";
    const auto titles = [&](const std::string& resources) {
        return titlesOf(read(package(modelOf(resources, "<item objectid='2' partnumber='A-7'/>"))).model);
    };
    EXPECT_THAT(titles(object(1, triangleMesh, "mesh") + object(2, parts, "whole")), ElementsAre("mesh"));
    EXPECT_THAT(titles(object(1, triangleMesh) + object(2, parts, "whole")), ElementsAre("whole"));
    EXPECT_THAT(titles(object(1, triangleMesh) + object(2, parts)), ElementsAre("A-7"));
}

TEST(ThreemfImport, OtherPartsOfThePackageAreRead) {
    const std::string main = modelOf(object(1, "<components><component objectid='5' p:path='/3D/more/wing.model'/>"
                                               "</components>"),
                                     "<item objectid='1'/><item objectid='5' p:path='/3D/more/wing.model'/>");
    const Imported file = read(zipOf({{"_rels/.rels", relations},
                                      {"3D/body.model", main},
                                      {"3D/more/wing.model", modelOf(object(5, triangleMesh, "wing"), "")}}));
    EXPECT_THAT(titlesOf(file.model), ElementsAre("wing", "wing"));
    EXPECT_TRUE(file.record.complete);
    const Imported lacking = read(package(main));
    EXPECT_THAT(lacking.record.reasons,
                ElementsAre("Parts of the archive that are not there: 1", "Objects that are not there: 2"));
}

TEST(ThreemfImport, ObjectsThatAreNotBuiltAreTold) {
    const Imported file =
        read(package(modelOf(object(1, triangleMesh) + object(2, triangleMesh), "<item objectid='2'/>")));
    EXPECT_EQ(kept(file, "triangles"), 1);
    EXPECT_THAT(file.record.reasons, ElementsAre("Objects that are not to be built: 1"));
}

TEST(ThreemfImport, WrongNumbersLoseTheirFaceAlone) {
    std::string mesh = triangleMesh;
    mesh.replace(mesh.find("</triangles>"), 0,
                 "<triangle v1='0' v2='1' v3='3'/><triangle v1='-1' v2='1' v3='2'/><triangle v1='0' v2='1'/>");
    const Imported file = read(package(modelOf(object(1, mesh), "<item objectid='1'/><item objectid='1'/>")));
    EXPECT_EQ(kept(file, "triangles"), 2);
    EXPECT_THAT(file.record.reasons, ElementsAre("Faces with points that are not there: 6"));
    std::string points = triangleMesh;
    points.replace(points.find("x='1'"), 5, "x='?'");
    EXPECT_THAT(read(package(modelOf(object(1, points), "<item objectid='1'/>"))).record.reasons,
                ElementsAre("Faces with coordinates that are not finite: 1"));
}

TEST(ThreemfImport, ObjectsWithinThemselvesComeToAnEnd) {
    const Imported file = read(package(modelOf(
        object(1, triangleMesh + "<components><component objectid='1'/></components>"), "<item objectid='1'/>")));
    EXPECT_FALSE(file.record.complete);
    EXPECT_THAT(file.record.reasons, ElementsAre("Objects that stand within themselves: 1"));
    EXPECT_EQ(kept(file, "triangles"), 1);
}

// Sixty objects, each twice the one before: 2^60 places.
TEST(ThreemfImport, PlacesWithoutNumberComeToAnEnd) {
    std::string resources = object(1, triangleMesh);
    for (int i = 2; i <= 60; ++i) {
        const std::string part = "<component objectid='" + std::to_string(i - 1) + "'/>";
        resources += object(i, "<components>" + part + part + "</components>");
    }
    const Imported file = read(package(modelOf(resources, "<item objectid='60'/>")));
    EXPECT_FALSE(file.record.complete);
    EXPECT_LE(kept(file, "triangles"), 1 << 17);
}

TEST(ThreemfImport, EntitiesWithoutNumberComeToAnEnd) {
    std::string bomb = "<?xml version='1.0'?><!DOCTYPE model [<!ENTITY a0 'aaaaaaaaaaaaaaaa'>";
    for (int i = 1; i <= 30; ++i) {
        const std::string before = "&a" + std::to_string(i - 1) + ";";
        bomb += "<!ENTITY a" + std::to_string(i) + " '" + before + before + before + before + "'>";
    }
    const Imported file = read(package(bomb + "]><model>&a30;</model>"));
    EXPECT_THAT(file.record.reasons, ElementsAre("Parts of the archive that are damaged: 1"));
}

TEST(ThreemfImport, OfDamagedXmlTheWholePartsAreKept) {
    std::string model = modelOf(object(1, triangleMesh), "<item objectid='1'/>");
    model.resize(model.find("</build>"));
    const Imported file = read(package(model));
    EXPECT_EQ(kept(file, "triangles"), 1);
    EXPECT_THAT(file.record.reasons, ElementsAre("Parts of the archive that are damaged: 1"));
    EXPECT_FALSE(file.record.complete);
}

TEST(ThreemfImport, WhatIsNoPackageIsTold) {
    EXPECT_THAT(read("hello").record.reasons, ElementsAre("It is no archive, or a damaged one"));
    EXPECT_THAT(read(zipOf({{"a.txt", "hello"}})).record.reasons,
                ElementsAre("Parts of the archive that are not there: 1"));
    EXPECT_THAT(read(package(modelOf("", ""))).record.reasons, ElementsAre("No faces were found"));
    EXPECT_TRUE(read("").record.complete);
    EXPECT_THAT(read("").record.reasons, IsEmpty());
}

TEST(ThreemfImport, ColoursAndBeamsAreTold) {
    std::string mesh = triangleMesh;
    mesh.replace(mesh.find("v3='2'"), 6, "v3='2' pid='4' p1='0'");
    mesh.replace(mesh.find("</mesh>"), 0, "<beamlattice><beams><beam v1='0' v2='1'/></beams></beamlattice>");
    const Imported file = read(package(modelOf(object(1, mesh), "<item objectid='1'/>")));
    EXPECT_THAT(file.record.reasons,
                ElementsAre("Beams, which are no polygons: 1", "Colours and materials are not kept"));
}

// A sample that a listener stops: what it throws comes out, through the archive and the text.
TEST(ThreemfImport, WhatTheProgressThrowsComesOut) {
    ExchangeModel model;
    FileRead record;
    const std::string file = package(modelOf(object(1, triangleMesh), "<item objectid='1'/>"));
    EXPECT_THROW(importThreemf(file, {}, model, record, [](double) { throw std::runtime_error("stop"); }),
                 std::runtime_error);
}

} // namespace
} // namespace velmora::test
