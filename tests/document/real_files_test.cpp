#include "document_fixture.h"

namespace velmora::test {

namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;

/// What opening a file of others must give.
struct RealGrid {
    const char* file;
    std::vector<std::pair<std::size_t, std::size_t>> patches; ///< sections and points of each
};

struct RealSurface {
    const char* file;
    std::size_t zones;
    std::int32_t nodes; ///< of all zones
    std::int32_t triangles;
    const char* firstTitle;
};

struct RefusedFile {
    const char* file;
    const char* told; ///< part of the message
};

class RealFiles : public DocumentTest {
protected:
    void open(const std::string& name) { doc.onOpenDocument(std::filesystem::path(VELMORA_TEST_DATA) / name); }

    void expectBox(const zVec<double>& lower, const zVec<double>& upper) const {
        const double tolerance = 5e-3;
        EXPECT_NEAR(doc.boxMin.x, lower.x, tolerance);
        EXPECT_NEAR(doc.boxMin.y, lower.y, tolerance);
        EXPECT_NEAR(doc.boxMin.z, lower.z, tolerance);
        EXPECT_NEAR(doc.boxMax.x, upper.x, tolerance);
        EXPECT_NEAR(doc.boxMax.y, upper.y, tolerance);
        EXPECT_NEAR(doc.boxMax.z, upper.z, tolerance);
    }
};

} // namespace

TEST_F(RealFiles, OfGridsBecomePatches) {
    const std::vector<RealGrid> grids = {
        {"m100_wingbody_block.dat", {{81, 69}, {35, 82}, {34, 82}}},
        {"wing717_point.dat", {{73, 73}, {73, 9}, {73, 73}, {73, 9}, {73, 9}}},
        {"half_cylinder.dat", {{7, 4}}},
        {"volume_block.dat", {{4, 3}}},
    };
    for (const RealGrid& grid : grids) {
        SCOPED_TRACE(grid.file);
        open(grid.file);
        EXPECT_EQ(doc.structureKind, StructureKind::Structured);
        EXPECT_EQ(doc.fileKind, FileKind::Apt);
        ASSERT_EQ(doc.patches.size(), grid.patches.size());
        for (std::size_t k = 0; k < grid.patches.size(); ++k) {
            ASSERT_EQ(doc.patches[k].size(), grid.patches[k].first) << k;
            for (const PointList& section : doc.patches[k]) {
                ASSERT_EQ(section.size(), grid.patches[k].second) << k;
            }
        }
    }
}

TEST_F(RealFiles, StandWhereTheirMakersPutThem) {
    open("m100_wingbody_block.dat");
    expectBox({0, -0.905914, -0.0994888}, {6, 0, 0.0994888});
    open("wing717_point.dat");
    expectBox({0.000359375, -0.295685, 0}, {9.00318, 0.314718, 14.0437});
    open("half_cylinder.dat");
    expectBox({-2, 0, 0}, {2, 2, 1.5});
    open("coloured_ring.dat");
    expectBox({-4, -4, -1}, {4, 4, 1});
    open("nemoh_cylinder_zone1.dat");
    expectBox({-0.35, 0, -0.63}, {0.35, 0.35, 0});
}

TEST_F(RealFiles, OneSurfaceInTwoFormatsIsTheSame) {
    open("m100_wingbody.apt");
    const PatchList native = doc.patches;
    open("m100_wingbody_block.dat");
    EXPECT_EQ(doc.patches, native);
}

TEST_F(RealFiles, VolumesGiveTheirFirstLayer) {
    open("split_volume.dat");
    EXPECT_EQ(doc.structureKind, StructureKind::Structured);
    ASSERT_EQ(doc.patches.size(), 24U);
    EXPECT_EQ(countsOf(doc.patches[0]), std::vector<std::int32_t>(4, 4));
    EXPECT_EQ(countsOf(doc.patches[23]), std::vector<std::int32_t>(5, 5));
}

TEST_F(RealFiles, OfTrianglesBecomeZones) {
    const std::vector<RealSurface> surfaces = {
        {"coloured_ring.dat", 1, 64, 128, nullptr},
        {"nemoh_cylinder_zone1.dat", 1, 2016, 1008, "zone"},
        {"iea15_blade.stl", 1, 65190, 21730, "OpenSCAD_Model"},
        {VELMORA_EXAMPLES "/c172_wing.stl", 1, 10830, 3610, "Visualization"},
        {"multibody.stl", 2, 96, 32, "bodyB"},
        {"pro2stl_cube.stl", 1, 36, 12, "PRO2STL"},
        {"half_donut.stl", 1, 858, 286, "HalfDonut.stl"},
        {"propeller_upper.stl", 1, 1563, 521, "facet"},
        {"triangle_with_two_solids.stl", 1, 3, 1, "testTriangle_1"},
        {"spider_ascii.stl", 1, 4104, 1368, "NoName_1"},
        {"many_corners.wrl", 1, 73, 10 + 2 * 60 + 12, "Zone_1"},
        {"tank.wrl", 42, 1614, 2956, "Zone_1"},
        {"empty.stl", 0, 0, 0, nullptr},
        {"binary_unit_cube.stl", 0, 0, 0, nullptr},
        {"block.wrl", 0, 0, 0, nullptr},
        {"comma_points.wrl", 0, 0, 0, nullptr},
        {"named_coordinates.wrl", 0, 0, 0, nullptr},
        {"vrml1_indexedfaceset.wrl", 0, 0, 0, nullptr},
    };
    for (const RealSurface& surface : surfaces) {
        SCOPED_TRACE(surface.file);
        open(surface.file);
        EXPECT_EQ(doc.structureKind, StructureKind::Unstructured);
        EXPECT_EQ(doc.feRegion.blocks.size(), surface.zones);
        std::int32_t nodes = 0;
        std::int32_t triangles = 0;
        for (const auto& zone : doc.feRegion.blocks) {
            nodes += zone->nodeCount;
            triangles += zone->elementCount;
            EXPECT_EQ(zone->variables.size(), 3U);
        }
        EXPECT_EQ(nodes, surface.nodes);
        EXPECT_EQ(triangles, surface.triangles);
        if (surface.firstTitle != nullptr) {
            EXPECT_EQ(doc.feRegion.blocks.front()->title, surface.firstTitle);
        }
    }
}

TEST_F(RealFiles, ThatCannotBeReadSayWhyAndLeaveNothing) {
    const std::vector<RefusedFile> refused = {
        {"unquoted_panels.dat", "Parsing Error: at the header of the zone\nZone No: 1\nZone Title: zone\n"
                                "Keyword: VARIABLES\n\nIn file:\n'zTecplotReader'"},
        {"cell_centred.dat", "Value Error: invalid data\nZone No: 2\nZone Title: PATCH\nLine Shift: 10\n"},
        {"nemoh_cylinder.dat", "at the header of the zone\nZone No: 2\nZone Title: normales\nKeyword: I\n"},
        {"wamit_cyl_pan.dat", "Irregular structure of DAT file. The number of variables < 3"},
        {"pa10_base_no_header.wrl", "Parsing Error: Is not a valid VRML file"},
    };
    for (const RefusedFile& file : refused) {
        SCOPED_TRACE(file.file);
        forget();
        open(file.file);
        const Lines told = heard();
        EXPECT_THAT(told, Contains(HasSubstr(file.told)));
        EXPECT_THAT(told, Contains("message: Open procedure is canceled"));
        EXPECT_EQ(doc.structureKind, StructureKind::None);
        EXPECT_TRUE(doc.holdsNothing());
    }
}

TEST_F(RealFiles, WithoutAPointForAnyoneOpenNothing) {
    for (const char* name : {"tetrahedra.dat", "plates_and_geometries.dat"}) {
        SCOPED_TRACE(name);
        forget();
        open(name);
        EXPECT_THAT(heard(), Contains("message: Open procedure is canceled"));
        EXPECT_TRUE(doc.holdsNothing());
    }
}

TEST_F(RealFiles, SurviveExportAndImport) {
    open("wing717_point.dat");
    const PatchList grid = doc.patches;
    ui.files.push_back({folder / "wing.dat"});
    doc.saveModelAs();
    doc.onOpenDocument(folder / "wing.dat");
    ASSERT_EQ(doc.patches.size(), grid.size());
    for (std::size_t k = 0; k < grid.size(); ++k) {
        ASSERT_EQ(countsOf(doc.patches[k]), countsOf(grid[k]));
    }
    EXPECT_NEAR(doc.patches[4][72][8].x, grid[4][72][8].x, 1e-14);
    for (const char* extension : {"wrl", "stl"}) {
        open("wing717_point.dat");
        ui.files.push_back({folder / (std::string("wing.") + extension)});
        doc.saveModelAs();
        const std::int32_t triangles = doc.feRegion.blocks[1]->elementCount;
        EXPECT_EQ(triangles, 2 * 72 * 8);
        doc.onOpenDocument(folder / (std::string("wing.") + extension));
        ASSERT_EQ(doc.feRegion.blocks.size(), 5U);
        // Triangles without an area are not written as STL.
        EXPECT_LE(doc.feRegion.blocks[1]->elementCount, triangles);
        EXPECT_GT(doc.feRegion.blocks[1]->elementCount, triangles / 2);
        expectBox({0.000359375, -0.295685, 0}, {9.00318, 0.314718, 14.0437});
    }
}

} // namespace velmora::test
