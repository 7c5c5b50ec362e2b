#include <cgnslib.h>

#include "reader_fixture.h"
#include "small_zones.h"

namespace velmora {
namespace {

using test::Corners;
using test::Point;
using testing::ElementsAre;
using testing::SizeIs;

/// A file that the library itself wrote, as other programs let it. It gives zones in the order of their names.
class CgnsFile {
public:
    CgnsFile(const std::filesystem::path& path, int cells, int space = 3) {
        EXPECT_EQ(cg_open(path.c_str(), CG_MODE_WRITE, &file_), CG_OK) << cg_get_error();
        EXPECT_EQ(cg_base_write(file_, "Base", cells, space, &base_), CG_OK);
    }
    CgnsFile(const CgnsFile&) = delete;
    CgnsFile& operator=(const CgnsFile&) = delete;
    ~CgnsFile() { EXPECT_EQ(cg_close(file_), CG_OK) << cg_get_error(); }

    void grid(const std::string& name, const std::vector<cgsize_t>& counts, const std::vector<double>& x,
              const std::vector<double>& y, const std::vector<double>& z) {
        std::vector<cgsize_t> sizes = counts;
        for (const cgsize_t count : counts) {
            sizes.push_back(count - 1);
        }
        sizes.resize(3 * counts.size(), 0);
        zone(name, sizes, CGNS_ENUMV(Structured), x, y, z);
    }
    void elements(const std::string& name, cgsize_t count, const std::vector<double>& x, const std::vector<double>& y,
                  const std::vector<double>& z) {
        zone(name, {static_cast<cgsize_t>(x.size()), count, 0}, CGNS_ENUMV(Unstructured), x, y, z);
    }
    void section(const std::string& name, CGNS_ENUMT(ElementType_t) type, cgsize_t start, cgsize_t end,
                 const std::vector<cgsize_t>& nodes) {
        int number = 0;
        EXPECT_EQ(cg_section_write(file_, base_, zone_, name.c_str(), type, start, end, 0, nodes.data(), &number),
                  CG_OK)
            << cg_get_error();
    }
    void mixed(const std::string& name, CGNS_ENUMT(ElementType_t) type, cgsize_t start, cgsize_t end,
               const std::vector<cgsize_t>& nodes, const std::vector<cgsize_t>& offsets) {
        int number = 0;
        EXPECT_EQ(cg_poly_section_write(file_, base_, zone_, name.c_str(), type, start, end, 0, nodes.data(),
                                        offsets.data(), &number),
                  CG_OK)
            << cg_get_error();
    }
    void condition(const std::string& name, const std::string& family, cgsize_t start, cgsize_t end) {
        int number = 0;
        const std::array<cgsize_t, 2> range = {start, end};
        EXPECT_EQ(cg_boco_write(file_, base_, zone_, name.c_str(), CGNS_ENUMV(BCWall), CGNS_ENUMV(PointRange), 2,
                                range.data(), &number),
                  CG_OK);
        EXPECT_EQ(cg_boco_gridlocation_write(file_, base_, zone_, number, CGNS_ENUMV(CellCenter)), CG_OK)
            << cg_get_error();
        EXPECT_EQ(cg_goto(file_, base_, "Zone_t", zone_, "ZoneBC_t", 1, "BC_t", number, "end"), CG_OK);
        EXPECT_EQ(cg_famname_write(family.c_str()), CG_OK);
    }
    void family(const std::string& name) {
        EXPECT_EQ(cg_goto(file_, base_, "Zone_t", zone_, "end"), CG_OK);
        EXPECT_EQ(cg_famname_write(name.c_str()), CG_OK);
    }
    void link(const std::string& file, const std::string& name) {
        EXPECT_EQ(cg_goto(file_, base_, "end"), CG_OK);
        EXPECT_EQ(cg_link_write("Linked", file.c_str(), name.c_str()), CG_OK) << cg_get_error();
    }

private:
    void zone(const std::string& name, const std::vector<cgsize_t>& sizes, CGNS_ENUMT(ZoneType_t) type,
              const std::vector<double>& x, const std::vector<double>& y, const std::vector<double>& z) {
        int number = 0;
        EXPECT_EQ(cg_zone_write(file_, base_, name.c_str(), sizes.data(), type, &zone_), CG_OK) << cg_get_error();
        cg_coord_write(file_, base_, zone_, CGNS_ENUMV(RealDouble), "CoordinateX", x.data(), &number);
        cg_coord_write(file_, base_, zone_, CGNS_ENUMV(RealDouble), "CoordinateY", y.data(), &number);
        if (!z.empty()) {
            cg_coord_write(file_, base_, zone_, CGNS_ENUMV(RealDouble), "CoordinateZ", z.data(), &number);
        }
    }

    int file_ = 0;
    int base_ = 0;
    int zone_ = 0;
};

class CgnsReader : public test::ReaderTest {
protected:
    std::filesystem::path path_ = folder_ / "a.cgns";
};

// Corners of the unit cube, the first index fastest.
const std::vector<double> cubeX = {0, 1, 0, 1, 0, 1, 0, 1};
const std::vector<double> cubeY = {0, 0, 1, 1, 0, 0, 1, 1};
const std::vector<double> cubeZ = {0, 0, 0, 0, 1, 1, 1, 1};

TEST_F(CgnsReader, ASurfaceGridIsAPatch) {
    {
        CgnsFile file(path_, 2);
        file.grid("first", {3, 2}, {0, 0.1, 0.2, 0, 0.1, 0.2}, {0, 0, 0, 1, 1, 1}, {5, 5, 5, 6, 6, 1.0 / 3.0});
        file.grid("second", {2, 2}, {0, 1, 0, 1}, {0, 0, 1, 1}, {0, 0, 0, 0});
    }
    ASSERT_EQ(read(path_), ImportOutcome::Done);
    ASSERT_THAT(model_.patches, SizeIs(2));
    EXPECT_THAT(test::sectionsOf(model_.patches[0]),
                ElementsAre(std::vector<Point>{{0, 0, 5}, {0.1, 0, 5}, {0.2, 0, 5}},
                            std::vector<Point>{{0, 1, 6}, {0.1, 1, 6}, {0.2, 1, 1.0 / 3.0}}));
    EXPECT_EQ(record_.format, "cgns");
    EXPECT_TRUE(record_.complete);
    EXPECT_EQ(record_.found, (Counts{{"zones", 2}, {"patches", 2}, {"sections", 4}, {"points", 10}}));
    EXPECT_EQ(record_.kept, record_.found);
}

TEST_F(CgnsReader, APlaneHasNoZ) {
    {
        CgnsFile file(path_, 2, 2);
        file.grid("plane", {2, 2}, {0, 1, 0, 1}, {0, 0, 1, 1}, {});
    }
    ASSERT_EQ(read(path_), ImportOutcome::Done);
    EXPECT_THAT(test::sectionsOf(model_.patches.at(0)),
                ElementsAre(std::vector<Point>{{0, 0, 0}, {1, 0, 0}}, std::vector<Point>{{0, 1, 0}, {1, 1, 0}}));
    EXPECT_TRUE(record_.complete);
}

TEST_F(CgnsReader, AVolumeGridGivesItsFacesWhenAskedFor) {
    {
        CgnsFile file(path_, 3);
        file.grid("block", {2, 2, 2}, cubeX, cubeY, cubeZ);
    }
    EXPECT_EQ(read(path_), ImportOutcome::Failed);
    EXPECT_THAT(record_.reasons, ElementsAre("Volume zones, whose faces were not asked for: 1"));
    options_.volumeFaces = true;
    ASSERT_EQ(read(path_), ImportOutcome::Done);
    EXPECT_THAT(model_.patches, SizeIs(6));
    expectBox({0, 1, 0, 1, 0, 1}, 0.0);
    EXPECT_THAT(record_.changed, ElementsAre("Volumes of which only the outer faces are kept: 1"));
    EXPECT_FALSE(record_.lossless);
}

TEST_F(CgnsReader, SectionsOfFacesAreZones) {
    {
        CgnsFile file(path_, 2);
        file.elements("wing", 3, {0, 1, 1, 0, 2}, {0, 0, 1, 1, 0}, {0, 0, 0, 0, 0.1});
        file.section("Quads", CGNS_ENUMV(QUAD_4), 1, 1, {1, 2, 3, 4});
        file.section("Triangles", CGNS_ENUMV(TRI_3), 2, 3, {2, 5, 3, 1, 2, 9});
    }
    ASSERT_EQ(read(path_), ImportOutcome::Done);
    EXPECT_THAT(test::titlesOf(model_), ElementsAre("Quads", "Triangles"));
    EXPECT_EQ(countOf(record_.kept, "faces"), 2);
    EXPECT_THAT(record_.reasons, ElementsAre("Faces with points that are not there: 1"));
    EXPECT_EQ(test::nodeAt(*model_.region.blocks[1], 2), (Point{2, 0, 0.1}));
}

TEST_F(CgnsReader, AFamilyGoesBeforeASectionAndASectionBeforeAZone) {
    {
        CgnsFile file(path_, 2);
        file.elements("first", 2, {0, 1, 1, 0}, {0, 0, 1, 1}, {0, 0, 0, 0});
        file.section("one", CGNS_ENUMV(TRI_3), 1, 1, {1, 2, 3});
        file.section("two", CGNS_ENUMV(TRI_3), 2, 2, {1, 3, 4});
        file.condition("wall", "Slat", 2, 2);
        file.elements("second", 1, {0, 1, 1}, {0, 0, 1}, {0, 0, 0});
        file.section("three", CGNS_ENUMV(TRI_3), 1, 1, {1, 2, 3});
        file.family("Flap");
    }
    ASSERT_EQ(read(path_), ImportOutcome::Done);
    EXPECT_THAT(test::titlesOf(model_), ElementsAre("one", "Slat", "Flap"));
}

// A cube of one brick: with faces of its own those alone, else its six sides, which enclose 1.
TEST_F(CgnsReader, VolumesGiveTheirSectionsOfFacesOrTheirOutside) {
    const std::vector<double> y = {0, 0, 1, 1, 0, 0, 1, 1};
    const std::vector<double> x = {0, 1, 1, 0, 0, 1, 1, 0};
    {
        CgnsFile file(path_, 3);
        file.elements("cube", 2, x, y, cubeZ);
        file.section("brick", CGNS_ENUMV(HEXA_8), 1, 1, {1, 2, 3, 4, 5, 6, 7, 8});
        file.section("floor", CGNS_ENUMV(QUAD_4), 2, 2, {1, 4, 3, 2});
    }
    for (const bool volumes : {false, true}) {
        options_.volumeFaces = volumes;
        ASSERT_EQ(read(path_), ImportOutcome::Done);
        EXPECT_THAT(test::titlesOf(model_), ElementsAre("floor"));
        EXPECT_EQ(countOf(record_.kept, "triangles"), 2);
        EXPECT_THAT(record_.changed, testing::Contains("Volumes of which only the outer faces are kept: 1"));
        EXPECT_FALSE(record_.lossless);
    }
    {
        CgnsFile file(path_, 3);
        file.elements("cube", 2, x, y, cubeZ);
        file.section("prisms", CGNS_ENUMV(PENTA_6), 1, 2, {1, 2, 3, 5, 6, 7, 1, 3, 4, 5, 7, 8});
    }
    options_.volumeFaces = false;
    EXPECT_EQ(read(path_), ImportOutcome::Failed);
    EXPECT_THAT(record_.reasons, ElementsAre("Volume zones, whose faces were not asked for: 1"));
    options_.volumeFaces = true;
    ASSERT_EQ(read(path_), ImportOutcome::Done);
    EXPECT_THAT(test::titlesOf(model_), ElementsAre("cube"));
    EXPECT_EQ(countOf(record_.kept, "triangles"), 12);
    EXPECT_THAT(record_.changed, testing::Contains("Volumes of which only the outer faces are kept: 1"));
    EXPECT_NEAR(volume(), 1.0, 1e-12);
    EXPECT_NEAR(area(), 6.0, 1e-12);
}

// A tetrahedron beside a pyramid in one section of mixed elements, which touch in a triangle.
TEST_F(CgnsReader, MixedElementsGiveTheirOutside) {
    {
        CgnsFile file(path_, 3);
        file.elements("mixed", 2, {0, 1, 1, 0, 0.5, 2}, {0, 0, 1, 1, 0.5, 0.5}, {0, 0, 0, 0, 1, 0.5});
        file.mixed("all", CGNS_ENUMV(MIXED), 1, 2, {CGNS_ENUMV(PYRA_5), 1, 2, 3, 4, 5, CGNS_ENUMV(TETRA_4), 2, 6, 3, 5},
                   {0, 6, 11});
    }
    options_.volumeFaces = true;
    ASSERT_EQ(read(path_), ImportOutcome::Done);
    EXPECT_EQ(countOf(record_.kept, "triangles"), 2 + 3 + 3);
    // The pyramid: a third of 1. The tetrahedron: a sixth of |(1,.5,.5) x (0,1,0) . (-.5,.5,1)| = (1 + .25) / 6.
    EXPECT_NEAR(volume(), 1.0 / 3.0 + 1.25 / 6.0, 1e-12);
}

// The same tetrahedron as polygons and a polyhedron, which names one polygon turned round.
TEST_F(CgnsReader, PolyhedraGiveTheirOutside) {
    {
        CgnsFile file(path_, 3);
        file.elements("poly", 1, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1});
        file.mixed("faces", CGNS_ENUMV(NGON_n), 1, 4, {1, 2, 3, 1, 2, 4, 2, 3, 4, 3, 1, 4}, {0, 3, 6, 9, 12});
        file.mixed("cells", CGNS_ENUMV(NFACE_n), 5, 5, {-1, 2, 3, 4}, {0, 4});
    }
    EXPECT_EQ(read(path_), ImportOutcome::Failed);
    options_.volumeFaces = true;
    ASSERT_EQ(read(path_), ImportOutcome::Done);
    EXPECT_EQ(countOf(record_.kept, "triangles"), 4);
    EXPECT_NEAR(volume(), 1.0 / 6.0, 1e-12);
}

TEST_F(CgnsReader, PolygonsOfASurfaceAreItsFaces) {
    {
        CgnsFile file(path_, 2);
        file.elements("surface", 2, {0, 1, 1, 0, 2}, {0, 0, 1, 1, 0.5}, {0, 0, 0, 0, 0});
        file.mixed("polygons", CGNS_ENUMV(NGON_n), 1, 2, {1, 2, 3, 4, 2, 5, 3}, {0, 4, 7});
    }
    ASSERT_EQ(read(path_), ImportOutcome::Done);
    EXPECT_EQ(countOf(record_.kept, "faces"), 2);
    EXPECT_EQ(countOf(record_.kept, "triangles"), 3);
    EXPECT_NEAR(area(), 1.5, 1e-12);
}

TEST_F(CgnsReader, AFileOfGridsAndElementsBecomesTriangles) {
    {
        CgnsFile file(path_, 2);
        file.grid("a grid", {2, 2}, {0, 1, 0, 1}, {0, 0, 1, 1}, {0, 0, 0, 0});
        file.elements("faces", 1, {0, 1, 1}, {0, 0, 1}, {3, 3, 3});
        file.section("s", CGNS_ENUMV(TRI_3), 1, 1, {1, 2, 3});
    }
    options_.scale = 2.0;
    ASSERT_EQ(read(path_), ImportOutcome::Done);
    EXPECT_THAT(test::titlesOf(model_), ElementsAre("a grid", "s"));
    EXPECT_EQ(countOf(record_.kept, "triangles"), 3);
    expectBox({0, 2, 0, 2, 0, 6}, 0.0);
    EXPECT_THAT(record_.changed, testing::Contains("Grids that became triangles: 1"));
    EXPECT_FALSE(record_.lossless);
}

TEST_F(CgnsReader, LinksLeadNowhereButIntoTheFolder) {
    std::filesystem::create_directory(folder_ / "own");
    { CgnsFile(folder_ / "secret.cgns", 2).grid("zone", {2, 2}, {0, 1, 0, 1}, {0, 0, 1, 1}, {0, 0, 0, 0}); }
    { CgnsFile(folder_ / "own/part.cgns", 2).grid("zone", {2, 2}, {0, 1, 0, 1}, {0, 0, 1, 1}, {0, 0, 0, 0}); }
    const auto withLink = [this](const std::string& target) {
        const std::filesystem::path path = folder_ / "own/a.cgns";
        {
            CgnsFile file(path, 2);
            file.grid("grid", {2, 2}, {0, 1, 0, 1}, {0, 0, 1, 1}, {0, 0, 0, 0});
            file.link(target, "/Base/zone");
        }
        return read(path);
    };
    for (const std::string& target : {std::string("../secret.cgns"), (folder_ / "secret.cgns").string()}) {
        EXPECT_EQ(withLink(target), ImportOutcome::Failed) << target;
        EXPECT_THAT(record_.reasons,
                    ElementsAre("Parts in files outside of the folder of this one, which are not read: 1"));
    }
}

TEST_F(CgnsReader, WhatIsNoCgnsIsTold) {
    for (const std::string& text : {std::string("hello"), std::string("\x89HDF\r\n\x1A\n") + std::string(500, '\0'),
                                    std::string(100'000, '\xFF')}) {
        EXPECT_EQ(readText("a.cgns", text), ImportOutcome::Failed);
        EXPECT_FALSE(record_.complete);
    }
    EXPECT_EQ(readText("a.cgns", ""), ImportOutcome::Failed);
    EXPECT_TRUE(record_.complete);
}

// Every damage ends with a model that is whole or a reason, never with this program.
TEST_F(CgnsReader, AFileDamagedAnywhereIsSurvived) {
    {
        CgnsFile file(path_, 2);
        file.elements("wing", 1, {0, 1, 1}, {0, 0, 1}, {0, 0, 0});
        file.section("Triangles", CGNS_ENUMV(TRI_3), 1, 1, {1, 2, 3});
    }
    const std::string good = test::fileText(path_);
    for (std::size_t place = 0; place < good.size(); place += 997) {
        std::string bad = good;
        for (std::size_t i = place; i < std::min(place + 40, bad.size()); ++i) {
            bad[i] = static_cast<char>(~bad[i]);
        }
        const ImportOutcome outcome = readText("bad.cgns", bad);
        EXPECT_TRUE(outcome == ImportOutcome::Done || !record_.complete) << place;
        EXPECT_NE(readText("short.cgns", good.substr(0, place + 1)), ImportOutcome::CannotOpen);
    }
}

// ---- Export ---------------------------------------------------------------------------------------------------------

TEST_F(CgnsReader, WhatIsWrittenComesBackToTheBit) {
    ExchangeModel grids;
    grids.patches = {{{{0.1, 0, 0}, {1, 1.0 / 3.0, 0}, {2, 0, 0}}, {{0, 1, 0}, {1, 1, 0}, {2, 1, 7}}}};
    WriteOutcome written;
    ASSERT_EQ(exportFile(path_, grids, {}, written), ExportOutcome::Done) << written.problem;
    EXPECT_EQ(written.record.format, "cgns");
    EXPECT_EQ(written.record.bytes, std::filesystem::file_size(path_));
    EXPECT_EQ(written.record.counts, (Counts{{"zones", 1}, {"patches", 1}, {"sections", 2}, {"points", 6}}));
    ASSERT_EQ(read(path_), ImportOutcome::Done);
    EXPECT_EQ(test::sectionsOf(model_.patches.at(0)), test::sectionsOf(grids.patches[0]));

    ExchangeModel zones;
    zones.region.blocks.push_back(test::triangleZone("left / side", {{0, 0, 0}, {0.1, 0, 0}, {0, 2, 0}}, {0, 1, 2}));
    zones.region.blocks.push_back(test::triangleZone("left / side", {{0, 0, 1}, {1, 0, 1}, {2, 1, 1}}, {2, 1, 0}));
    ASSERT_EQ(exportFile(path_, zones, {}, written), ExportOutcome::Done) << written.problem;
    ASSERT_EQ(read(path_), ImportOutcome::Done);
    EXPECT_EQ(test::cornersOf(model_), test::cornersOf(zones));
    EXPECT_TRUE(record_.complete);

    ExportOptions single;
    single.doublePrecision = false;
    ASSERT_EQ(exportFile(path_, zones, single, written), ExportOutcome::Done);
    ASSERT_EQ(read(path_), ImportOutcome::Done);
    EXPECT_EQ(test::nodeAt(*model_.region.blocks[0], 1)[0], static_cast<double>(0.1F));
}

// Names sort in another order than zones were written.
TEST_F(CgnsReader, WhatIsWrittenComesBackInItsOrderUnderItsTitles) {
    const std::vector<std::string> titles = {"Wing", "tail left", "Body", "Wing"};
    ExchangeModel zones;
    for (const std::string& title : titles) {
        zones.region.blocks.push_back(test::oneTriangle(0.0, static_cast<double>(zones.region.blocks.size()), title));
    }
    WriteOutcome written;
    ASSERT_EQ(exportFile(path_, zones, {}, written), ExportOutcome::Done) << written.problem;
    ASSERT_EQ(read(path_), ImportOutcome::Done);
    EXPECT_EQ(test::titlesOf(model_), titles);
    EXPECT_EQ(test::cornersOf(model_), test::cornersOf(zones));

    ExchangeModel grids;
    for (int k = 0; k < 12; ++k) {
        const double z = k;
        grids.patches.push_back({{{0, 0, z}, {1, 0, z}}, {{0, 1, z}, {1, 1, z}}});
    }
    ASSERT_EQ(exportFile(path_, grids, {}, written), ExportOutcome::Done) << written.problem;
    ASSERT_EQ(read(path_), ImportOutcome::Done);
    ASSERT_THAT(model_.patches, SizeIs(12));
    for (std::size_t k = 0; k < 12; ++k) {
        EXPECT_EQ(model_.patches[k][0][0].z, static_cast<double>(k));
    }
}

TEST_F(CgnsReader, NamesOfZonesAreTheTitlesAsFarAsTheyMay) {
    ExchangeModel zones;
    for (const char* const title : {"wing", "wing", "a/b", "", "a title of more than thirty-two letters"}) {
        zones.region.blocks.push_back(test::oneTriangle(0.0, 0.0, title));
    }
    WriteOutcome written;
    ASSERT_EQ(exportFile(path_, zones, {}, written), ExportOutcome::Done) << written.problem;
    int file = 0;
    ASSERT_EQ(cg_open(path_.c_str(), CG_MODE_READ, &file), CG_OK);
    std::vector<std::string> names;
    int cells = 0;
    int space = 0;
    std::array<char, 33> name{};
    cg_base_read(file, 1, name.data(), &cells, &space);
    for (int zone = 1; zone <= 5; ++zone) {
        std::array<cgsize_t, 9> sizes{};
        cg_zone_read(file, 1, zone, name.data(), sizes.data());
        names.emplace_back(name.data());
    }
    cg_close(file);
    std::sort(names.begin(), names.end());
    EXPECT_EQ(cells, 2);
    EXPECT_THAT(names, ElementsAre("Zone 4", "a title of more than thirty-two", "a_b", "wing", "wing 2"));
}

} // namespace
} // namespace velmora
