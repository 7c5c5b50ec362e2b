#include <algorithm>

#include <BRepAlgoAPI_Cut.hxx>
#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepBuilderAPI_MakePolygon.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCone.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRepPrimAPI_MakeSphere.hxx>
#include <BRepPrimAPI_MakeWedge.hxx>
#include <BRep_Builder.hxx>
#include <IGESControl_Writer.hxx>
#include <Interface_Static.hxx>
#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <STEPControl_Controller.hxx>
#include <STEPControl_Writer.hxx>
#include <TopLoc_Location.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Shell.hxx>
#include <gp_Ax2.hxx>
#include <gp_Pnt.hxx>
#include <gp_Trsf.hxx>
#include <gp_Vec.hxx>

#include "reader_fixture.h"

namespace velmora {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::SizeIs;
using testing::StartsWith;

constexpr double pi = 3.14159265358979323846;

/// Files that the library itself wrote of shapes whose size is known.
class CadReader : public test::ReaderTest {
protected:
    CadReader() { Message::DefaultMessenger()->ChangePrinters().Clear(); }

    std::filesystem::path step(const TopoDS_Shape& shape, const char* unit = "MM") const {
        const std::filesystem::path path = folder_ / "a.step";
        STEPControl_Controller::Init();
        Interface_Static::SetCVal("write.step.unit", unit);
        STEPControl_Writer writer;
        EXPECT_EQ(writer.Transfer(shape, STEPControl_AsIs), IFSelect_RetDone);
        EXPECT_EQ(writer.Write(path.c_str()), IFSelect_RetDone);
        return path;
    }
    std::filesystem::path iges(const TopoDS_Shape& shape, const char* unit = "MM") const {
        const std::filesystem::path path = folder_ / "a.igs";
        IGESControl_Writer writer(unit, 1);
        EXPECT_TRUE(writer.AddShape(shape));
        writer.ComputeModel();
        EXPECT_TRUE(writer.Write(path.c_str()));
        return path;
    }
    /// The sum of what the patches enclose, above 0 when their front is outside.
    double volumeOfPatches() const {
        double sum = 0.0;
        for (const Patch& patch : model_.patches) {
            for (std::size_t i = 0; i + 1 < patch.size(); ++i) {
                for (std::size_t j = 0; j + 1 < patch[i].size(); ++j) {
                    const zVec<double>& a = patch[i][j];
                    const zVec<double>& b = patch[i + 1][j];
                    const zVec<double>& c = patch[i + 1][j + 1];
                    const zVec<double>& d = patch[i][j + 1];
                    sum += (dot(a, cross(c, b)) + dot(a, cross(d, c))) / 6.0; // the side that the window shows in front
                }
            }
        }
        return sum;
    }
};

/// A flat face with these corners.
TopoDS_Shape flatFace(const std::vector<gp_Pnt>& corners) {
    BRepBuilderAPI_MakePolygon border;
    for (const gp_Pnt& corner : corners) {
        border.Add(corner);
    }
    border.Close();
    return BRepBuilderAPI_MakeFace(border.Wire()).Shape();
}

/// Another word in place of what the library writes.
std::string replaced(std::string text, const std::string& before, const std::string& after) {
    const std::size_t place = text.find(before);
    EXPECT_NE(place, std::string::npos) << before;
    return place == std::string::npos ? text : text.replace(place, before.size(), after);
}

TEST_F(CadReader, ABoxIsTwelveTriangles) {
    for (const std::filesystem::path& path :
         {step(BRepPrimAPI_MakeBox(1.0, 2.0, 3.0).Shape()), iges(BRepPrimAPI_MakeBox(1.0, 2.0, 3.0).Shape())}) {
        ASSERT_EQ(read(path), ImportOutcome::Done) << path;
        EXPECT_EQ(countOf(record_.kept, "triangles"), 12);
        EXPECT_NEAR(area(), 22.0, 1e-9);
        expectBox({0, 1, 0, 2, 0, 3}, 1e-9);
        EXPECT_TRUE(record_.complete);
    }
    EXPECT_EQ(record_.format, "iges");
    read(step(BRepPrimAPI_MakeBox(1.0, 2.0, 3.0).Shape()));
    EXPECT_EQ(record_.format, "step");
    EXPECT_THAT(record_.changed, Contains("Faces that became triangles: 6"));
    EXPECT_FALSE(record_.lossless);
    EXPECT_THAT(model_.region.blocks, SizeIs(1));
    EXPECT_NEAR(volume(), 6.0, 1e-9);
}

// The library leaves out a face whose plane is not there, without a word.
TEST_F(CadReader, AFaceThatIsDamagedIsTold) {
    const std::filesystem::path path = step(BRepPrimAPI_MakeBox(1.0, 2.0, 3.0).Shape());
    std::string text = test::fileText(path);
    const std::size_t plane = text.find("= PLANE(");
    ASSERT_NE(plane, std::string::npos);
    const std::size_t begin = text.rfind('\n', plane) + 1;
    text.erase(begin, text.find('\n', plane) + 1 - begin);
    ASSERT_EQ(readText("damaged.step", text), ImportOutcome::Done);
    EXPECT_FALSE(record_.complete);
    EXPECT_THAT(record_.reasons, Contains("Faces that the reader of the format does not understand: 1"));
    EXPECT_THAT(record_.changed, Contains("Faces that became triangles: 5"));
    EXPECT_EQ(countOf(record_.kept, "triangles"), 10);
}

// A shell of plates that touch nowhere is taken apart by the library, the last plate first.
TEST_F(CadReader, PlatesOfAShellStayInTheOrderOfTheFile) {
    TopoDS_Shell shell;
    const BRep_Builder builder;
    builder.MakeShell(shell);
    for (int plate = 0; plate < 5; ++plate) {
        builder.Add(
            shell,
            flatFace({{10.0 * plate, 0, 0}, {10.0 * plate + 4, 0, 0}, {10.0 * plate + 4, 3, 0}, {10.0 * plate, 3, 0}}));
    }
    const std::filesystem::path path = step(shell);
    ASSERT_EQ(read(path), ImportOutcome::Done);
    double last = -1.0;
    for (const test::Corners& corners : test::cornersOf(model_)) {
        const double least = std::min({corners[0][0], corners[1][0], corners[2][0]});
        EXPECT_GE(least, last);
        last = least;
    }
    EXPECT_EQ(last, 40.0);
    options_.cadPatches = true;
    ASSERT_EQ(read(path), ImportOutcome::Done);
    ASSERT_THAT(model_.patches, SizeIs(5));
    for (std::size_t plate = 0; plate < 5; ++plate) {
        double lowest = 1e300;
        for (const PointList& section : model_.patches[plate]) {
            for (const zVec<double>& point : section) {
                lowest = std::min(lowest, point.x);
            }
        }
        EXPECT_NEAR(lowest, 10.0 * static_cast<double>(plate), 1e-9);
    }
}

// The library computes with such numbers for minutes: what is made of them goes before it reads the file.
TEST_F(CadReader, NumbersThatAreNotFiniteCostTheirFacesAlone) {
    const std::string text = test::fileText(step(BRepPrimAPI_MakeBox(1.0, 2.0, 3.0).Shape()));
    const std::size_t vertex = text.find("VERTEX_POINT('',#") + 17;
    const std::size_t line = text.find("\n#" + text.substr(vertex, text.find(')', vertex) - vertex) + " =") + 1;
    const std::string corner = text.substr(line, text.find('\n', line) - line);
    const std::size_t first = corner.rfind('(') + 1;
    const auto with = [&](const std::string& number) {
        return replaced(text, corner, corner.substr(0, first) + number + corner.substr(corner.find(',', first)));
    };
    for (const char* number : {"1.E400", "NAN", "-INF", "1.E308"}) {
        ASSERT_EQ(readText("wild.step", with(number)), ImportOutcome::Done) << number;
        EXPECT_FALSE(record_.complete) << number;
        EXPECT_EQ(countOf(record_.kept, "triangles"), 6) << number << ": three faces meet in a corner";
        expectBox({0, 1, 0, 2, 0, 3}, 1e-9);
    }
    ASSERT_EQ(readText("named.step", replaced(text, corner, replaced(corner, "''", "'a, NAN (INF)'"))),
              ImportOutcome::Done);
    EXPECT_TRUE(record_.complete) << "a name is no number";
}

TEST_F(CadReader, CoordinatesStayInTheUnitOfTheFile) {
    const TopoDS_Shape box = BRepPrimAPI_MakeBox(25.4, 50.8, 1000.0).Shape(); // of the library's millimetres
    read(step(box, "INCH"));
    EXPECT_EQ(record_.unit, "inch");
    expectBox({0, 1, 0, 2, 0, 1000.0 / 25.4}, 1e-9);
    read(step(box, "M"));
    EXPECT_EQ(record_.unit, "metre");
    expectBox({0, 0.0254, 0, 0.0508, 0, 1}, 1e-9);
    read(step(box, "MM"));
    EXPECT_EQ(record_.unit, "millimetre");
    expectBox({0, 25.4, 0, 50.8, 0, 1000}, 1e-9);
    read(iges(box, "INCH"));
    EXPECT_EQ(record_.unit, "inch");
    expectBox({0, 1, 0, 2, 0, 1000.0 / 25.4}, 1e-6);
}

// A sphere of radius 10: no point of a triangle is further inside than was asked for.
TEST_F(CadReader, TrianglesStandWithinTheChordThatWasAskedFor) {
    const std::filesystem::path path = step(BRepPrimAPI_MakeSphere(10.0).Shape());
    std::size_t before = 0;
    for (const double chord : {1.0, 0.05}) {
        options_.chord = chord;
        ASSERT_EQ(read(path), ImportOutcome::Done);
        const std::vector<test::Corners> triangles = test::cornersOf(model_);
        EXPECT_GT(triangles.size(), before);
        before = triangles.size();
        for (const test::Corners& c : triangles) {
            const auto radius = [](double x, double y, double z) { return std::sqrt(x * x + y * y + z * z); };
            EXPECT_NEAR(radius(c[0][0], c[0][1], c[0][2]), 10.0, 1e-9);
            for (std::size_t side = 0; side < 3; ++side) {
                const test::Point& a = c.at(side);
                const test::Point& b = c.at((side + 1) % 3);
                EXPECT_GT(radius(0.5 * (a[0] + b[0]), 0.5 * (a[1] + b[1]), 0.5 * (a[2] + b[2])), 10.0 - 1.5 * chord);
            }
        }
    }
    EXPECT_GT(volume(), 0.0);
}

TEST_F(CadReader, AnErrorOfTrianglesBelowWhatIsPossibleIsTold) {
    const std::filesystem::path path = step(BRepPrimAPI_MakeBox(1.0, 2.0, 3.0).Shape());
    options_.chord = 1e-9;
    ASSERT_EQ(read(path), ImportOutcome::Done);
    EXPECT_EQ(countOf(record_.kept, "triangles"), 12);
    EXPECT_THAT(record_.changed, Contains("The error of triangles is the least that is possible, 1e-07"));
}

// Six faces, each with its border on its parameter lines, in full.
TEST_F(CadReader, FacesBecomePatchesThatLookOutwards) {
    options_.cadPatches = true;
    options_.sections = 4;
    options_.points = 5;
    ASSERT_EQ(read(step(BRepPrimAPI_MakeBox(1.0, 2.0, 3.0).Shape())), ImportOutcome::Done);
    ASSERT_THAT(model_.patches, SizeIs(6));
    for (const Patch& patch : model_.patches) {
        EXPECT_THAT(patch, SizeIs(4));
        EXPECT_THAT(patch, testing::Each(SizeIs(5)));
    }
    EXPECT_NEAR(volumeOfPatches(), 6.0, 1e-9);
    EXPECT_TRUE(record_.complete);
    EXPECT_THAT(record_.changed, Contains("Faces that became patches: 6"));
}

// The side of a cylinder runs along its parameters; its two ends have one round edge each.
TEST_F(CadReader, FacesWithoutFourSidesAreLeftOutAndTold) {
    options_.cadPatches = true;
    options_.sections = 3;
    options_.points = 73;
    ASSERT_EQ(read(step(BRepPrimAPI_MakeCylinder(2.0, 5.0).Shape())), ImportOutcome::Done);
    ASSERT_THAT(model_.patches, SizeIs(1));
    EXPECT_FALSE(record_.complete);
    EXPECT_EQ(countOf(record_.found, "faces"), 3);
    EXPECT_EQ(countOf(record_.kept, "faces"), 1);
    EXPECT_THAT(record_.reasons,
                Contains("Faces that became no patch: 2 (without a border of four sides: faces 2, 3)"));
    for (const PointList& section : model_.patches[0]) {
        for (const zVec<double>& p : section) {
            EXPECT_NEAR(std::hypot(p.x, p.y), 2.0, 1e-9);
        }
    }
    expectBox({-2, 2, -2, 2, 0, 5}, 1e-2);
    // A prism of 72 sides, without its ends: two thirds of what it encloses are seen from the origin.
    EXPECT_NEAR(volumeOfPatches(), 2.0 / 3.0 * 5.0 * 0.5 * 72 * 4.0 * std::sin(2 * pi / 72), 1e-6);
}

// A wedge's sides are trapezia, whose borders do not all run along parameters.
TEST_F(CadReader, AFaceOfFourSidesIsFilledBetweenThem) {
    options_.cadPatches = true;
    options_.sections = 3;
    options_.points = 4;
    ASSERT_EQ(read(step(BRepPrimAPI_MakeWedge(4.0, 2.0, 4.0, 1.0, 1.0, 3.0, 3.0).Shape())), ImportOutcome::Done);
    EXPECT_THAT(model_.patches, SizeIs(6));
    EXPECT_TRUE(record_.complete);
    // A frustum with squares of 16 and 4: 2 / 3 (16 + 4 + sqrt(64)).
    EXPECT_NEAR(volumeOfPatches(), 2.0 / 3.0 * 28.0, 1e-9);
    EXPECT_THAT(record_.changed, Contains(AllOf(StartsWith("Faces that became patches: 6 (between the four sides of a "
                                                           "trimmed one: faces "),
                                                EndsWith(")"))));
}

// A quarter of a cone has two straight sides, an arc, and the tip, which is a side of no length.
TEST_F(CadReader, AFaceWhoseFourthSideIsAPointBecomesAPatch) {
    options_.cadPatches = true;
    options_.sections = 5;
    options_.points = 33;
    ASSERT_EQ(read(step(BRepPrimAPI_MakeCone(3.0, 0.0, 4.0, pi / 2).Shape())), ImportOutcome::Done);
    const auto cone = std::find_if(model_.patches.begin(), model_.patches.end(), [](const Patch& patch) {
        const zVec<double>& p = patch[2][16]; // on no plane of the others
        return p.x > 0.1 && p.y > 0.1 && p.z > 0.1;
    });
    ASSERT_NE(cone, model_.patches.end());
    std::size_t tips = 0;
    for (const PointList& section : *cone) {
        for (const zVec<double>& p : section) {
            EXPECT_NEAR(std::hypot(p.x, p.y), 3.0 * (1.0 - p.z / 4.0), 1e-9);
            tips += std::abs(p.z - 4.0) < 1e-9 ? 1 : 0;
        }
    }
    EXPECT_TRUE(tips == 5 || tips == 33) << tips; // a whole side
}

// The round side of an eighth of a ball ends in the pole, a side of no length. Its three flat sides have two straight
// sides and an arc.
TEST_F(CadReader, OfAnEighthOfABallTheRoundSideAloneIsAPatch) {
    constexpr double radius = 3.0;
    options_.cadPatches = true;
    options_.sections = 7;
    options_.points = 9;
    ASSERT_EQ(read(step(BRepPrimAPI_MakeSphere(radius, 0.0, pi / 2, pi / 2).Shape())), ImportOutcome::Done);
    ASSERT_THAT(model_.patches, SizeIs(1));
    EXPECT_EQ(countOf(record_.found, "faces"), 4);
    EXPECT_EQ(countOf(record_.kept, "faces"), 1);
    EXPECT_FALSE(record_.complete);
    EXPECT_THAT(record_.reasons, Contains(StartsWith("Faces that became no patch: 3 (without a border of four sides")));
    std::size_t atPole = 0;
    for (const PointList& section : model_.patches[0]) {
        for (const zVec<double>& p : section) {
            EXPECT_NEAR(std::sqrt(dot(p, p)), radius, 1e-9);
            atPole += radius - p.z < 1e-9 ? 1 : 0;
        }
    }
    EXPECT_TRUE(atPole == 7 || atPole == 9) << atPole; // a whole side
    expectBox({0, radius, 0, radius, 0, radius}, 1e-9);
}

// A trapezium whose lowest side is of two edges: five edges, four corners. One of five corners has no such sides.
TEST_F(CadReader, EdgesThatGoOnInOneLineAreOneSide) {
    options_.cadPatches = true;
    options_.sections = 3;
    options_.points = 9;
    ASSERT_EQ(read(step(flatFace({{0, 0, 0}, {1, 0, 0}, {4, 0, 0}, {3, 2, 0}, {1, 2, 0}}))), ImportOutcome::Done);
    ASSERT_THAT(model_.patches, SizeIs(1));
    EXPECT_TRUE(record_.complete);
    expectBox({0, 4, 0, 2, 0, 0}, 1e-9);
    double area = 0.0;
    const Patch& patch = model_.patches[0];
    for (std::size_t i = 0; i + 1 < patch.size(); ++i) {
        for (std::size_t j = 0; j + 1 < patch[i].size(); ++j) {
            area += 0.5 * std::abs(cross(patch[i + 1][j + 1] - patch[i][j], patch[i + 1][j] - patch[i][j + 1]).z);
        }
    }
    EXPECT_NEAR(area, 6.0, 1e-9); // (4 + 2) / 2 * 2
    EXPECT_EQ(read(step(flatFace({{0, 0, 0}, {1, -1, 0}, {4, 0, 0}, {3, 2, 0}, {1, 2, 0}}))), ImportOutcome::Failed);
    EXPECT_THAT(record_.reasons, Contains("Faces that became no patch: 1 (without a border of four sides: face 1)"));
    EXPECT_EQ(countOf(record_.found, "faces"), 1);
}

TEST_F(CadReader, AFaceOfThreeSidesIsLeftOutAndTold) {
    options_.cadPatches = true;
    // A wedge whose upper edge has no width: two of its five faces are triangles.
    ASSERT_EQ(read(step(BRepPrimAPI_MakeWedge(4.0, 2.0, 4.0, 2.0, 0.0, 2.0, 4.0).Shape())), ImportOutcome::Done);
    EXPECT_THAT(model_.patches, SizeIs(3));
    EXPECT_FALSE(record_.complete);
    EXPECT_THAT(record_.reasons, Contains(StartsWith("Faces that became no patch: 2 (without a border of four sides")));
}

TEST_F(CadReader, ZonesHaveTheNamesOfBodiesElseOfTheirProducts) {
    const std::string text = test::fileText(step(BRepPrimAPI_MakeBox(1.0, 2.0, 3.0).Shape()));
    const std::size_t begin = text.find("PRODUCT('") + 9;
    const std::string product = text.substr(begin, text.find('\'', begin) - begin);
    std::string titled = text;
    while (titled.find(product) != std::string::npos) {
        titled = replaced(titled, product, "left wing");
    }
    readText("a.step", titled);
    EXPECT_THAT(test::titlesOf(model_), ElementsAre("left wing"));
    readText("a.step", replaced(titled, "MANIFOLD_SOLID_BREP(''", "MANIFOLD_SOLID_BREP('outer skin'"));
    EXPECT_THAT(test::titlesOf(model_), ElementsAre("outer skin"));
}

// A deck twisted up to 0.5 at one corner, and a flat side, in inches.
TEST_F(CadReader, SurfacesOfIgesAreZonesUnderTheirLabels) {
    const std::filesystem::path path = std::filesystem::path(VELMORA_TEST_DATA) / "two_surfaces.igs";
    options_.chord = 0.5;
    ASSERT_EQ(read(path), ImportOutcome::Done);
    EXPECT_THAT(test::titlesOf(model_), ElementsAre("deck", "side"));
    EXPECT_EQ(record_.unit, "inch");
    EXPECT_EQ(record_.format, "iges");
    expectBox({0, 2, 0, 1, -1, 0.5}, 1e-12);
    options_.cadPatches = true;
    options_.sections = 3;
    options_.points = 5;
    ASSERT_EQ(read(path), ImportOutcome::Done);
    ASSERT_THAT(model_.patches, SizeIs(2));
    const zVec<double>& middle = model_.patches[0][1][2];
    EXPECT_NEAR(middle.x, 1.0, 1e-12);
    EXPECT_NEAR(middle.y, 0.5, 1e-12);
    EXPECT_NEAR(middle.z, 0.125, 1e-12);
}

// One body at two places of an assembly, the second one moved by 10.
TEST_F(CadReader, EachPlaceOfABodyIsAZone) {
    const TopoDS_Shape box = BRepPrimAPI_MakeBox(1.0, 2.0, 3.0).Shape();
    gp_Trsf move;
    move.SetTranslation(gp_Vec(10.0, 0.0, 0.0));
    TopoDS_Compound both;
    const BRep_Builder builder;
    builder.MakeCompound(both);
    builder.Add(both, box);
    builder.Add(both, box.Moved(TopLoc_Location(move)));
    Interface_Static::SetIVal("write.step.assembly", 1);
    const std::string text = test::fileText(step(both));
    Interface_Static::SetIVal("write.step.assembly", 0);
    readText("a.step", replaced(text, "MANIFOLD_SOLID_BREP(''", "MANIFOLD_SOLID_BREP('fin'"));
    EXPECT_THAT(test::titlesOf(model_), ElementsAre("fin", "fin"));
    EXPECT_NEAR(volume(), 12.0, 1e-9);
    expectBox({0, 11, 0, 2, 0, 3}, 1e-9);
}

TEST_F(CadReader, AFaceWithAHoleIsLeftOut) {
    const TopoDS_Shape hole = BRepPrimAPI_MakeCylinder(gp_Ax2(gp_Pnt(2, 2, -1), gp_Dir(0, 0, 1)), 0.5, 6.0).Shape();
    options_.cadPatches = true;
    ASSERT_EQ(read(step(BRepAlgoAPI_Cut(BRepPrimAPI_MakeBox(4.0, 4.0, 4.0).Shape(), hole).Shape())),
              ImportOutcome::Done);
    EXPECT_THAT(model_.patches, SizeIs(5)); // four sides and the inside of the hole
    EXPECT_THAT(record_.reasons, Contains(StartsWith("Faces that became no patch: 2 (with holes: faces ")));
}

TEST_F(CadReader, WhatIsNoCadIsTold) {
    const std::string good = test::fileText(step(BRepPrimAPI_MakeBox(1.0, 2.0, 3.0).Shape()));
    for (const char* const name : {"b.step", "b.stp", "b.igs", "b.iges"}) {
        for (const std::string& text : {std::string("hello"), std::string(100'000, '('), std::string("ISO-10303-21;\n"),
                                        good.substr(0, good.size() / 3)}) {
            EXPECT_EQ(readText(name, text), ImportOutcome::Failed) << name << ' ' << text.substr(0, 20);
            EXPECT_FALSE(record_.complete);
        }
        EXPECT_EQ(readText(name, ""), ImportOutcome::Failed);
        EXPECT_TRUE(record_.complete);
    }
}

TEST_F(CadReader, AFileDamagedAnywhereIsSurvived) {
    const std::string good = test::fileText(step(BRepPrimAPI_MakeCylinder(2.0, 5.0).Shape()));
    for (std::size_t place = 400; place < good.size(); place += 701) {
        std::string bad = good;
        bad.replace(place, 12, "#7,#7(#7);#9");
        const ImportOutcome outcome = readText("bad.step", bad);
        EXPECT_TRUE(outcome == ImportOutcome::Done || !record_.complete) << place;
    }
}

} // namespace
} // namespace velmora
