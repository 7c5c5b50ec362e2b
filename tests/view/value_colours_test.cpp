#include "value_colours.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <map>
#include <utility>

#include "DialogValues.h"
#include "Digest.h"
#include "draw_rig.h"
#include "small_zones.h"
#include "vectors.h"
#include "view_rig.h"

namespace velmora {
namespace {

using namespace test;
using ::testing::DoubleNear;
using ::testing::ElementsAre;
using ::testing::Pair;
using ::testing::SizeIs;

/// As the eye weighs the parts of a colour.
double lightness(const Colour& colour) {
    return 0.2126 * static_cast<double>(colour[0]) + 0.7152 * static_cast<double>(colour[1]) +
           0.0722 * static_cast<double>(colour[2]);
}

/// The area that the triangles of each colour cover.
std::map<Colour, double> areas(const DrawList& list) {
    std::map<Colour, double> sums;
    for (const DrawBatch& batch : list.batches) {
        for (std::size_t i = 0; i + 2 < batch.vertexCount && batch.primitive == Primitive::Triangles; i += 3) {
            const zVec<double>* const p = &list.vertices[batch.firstVertex + i];
            sums[batch.colour] += lengthOf(cross(p[1] - p[0], p[2] - p[0])) / 2.0;
        }
    }
    return sums;
}

ColouredValues shown(std::vector<std::vector<double>> parts, const ValueScale& scale) {
    return {{"value", std::move(parts)}, scale};
}

DrawList colouredSurface(const DocumentState& doc, int number, const ColouredValues& values) {
    DrawList list = buildModelList(doc, number).list;
    colourByValue(list, doc, values);
    return list;
}

} // namespace

TEST(ValueScale, PartsItsRangeEvenly) {
    const ValueScale scale(-2.0, 2.0, 4);
    EXPECT_EQ(scale.bandCount(), 4);
    EXPECT_EQ(scale.edge(0), -2.0);
    EXPECT_EQ(scale.edge(1), -1.0);
    EXPECT_EQ(scale.edge(4), 2.0);
}

TEST(ValueScale, AnEdgeBelongsToTheBandAboveAndWhatIsOutsideToTheOuterOnes) {
    const ValueScale scale(0.0, 4.0, 4);
    EXPECT_EQ(scale.bandOf(0.99), 0);
    EXPECT_EQ(scale.bandOf(1.0), 1);
    EXPECT_EQ(scale.bandOf(3.0), 3);
    EXPECT_EQ(scale.bandOf(4.0), 3);
    EXPECT_EQ(scale.bandOf(-100.0), 0);
    EXPECT_EQ(scale.bandOf(100.0), 3);
}

TEST(ValueScale, TheWidestRangeHasBandsToo) {
    const double most = std::numeric_limits<double>::max();
    const ValueScale scale(-most, most, 4);
    EXPECT_EQ(scale.edge(2), 0.0);
    EXPECT_EQ(scale.bandOf(-1.0), 1);
    EXPECT_EQ(scale.bandOf(most), 3);
}

TEST(ValueScale, EachBandIsLighterThanTheOneBelow) {
    for (const std::int32_t bands : {2, 3, 10, 20}) {
        const ValueScale scale(0.0, 1.0, bands);
        for (std::int32_t band = 1; band < bands; ++band) {
            EXPECT_GT(lightness(scale.colourOf(band)), lightness(scale.colourOf(band - 1)) + 0.01) << band;
        }
    }
}

TEST(ValueScale, OfValuesIsTheirRange) {
    const double none = std::numeric_limits<double>::quiet_NaN();
    const ValueScale scale = scaleOf({"", {{3.0, none}, {}, {-1.0, 7.0}}}, 2);
    EXPECT_EQ(scale.edge(0), -1.0);
    EXPECT_EQ(scale.edge(1), 3.0);
    EXPECT_EQ(scale.edge(2), 7.0);
}

TEST(ValueScale, OfOneValueIsOneBandThatIsToldByIt) {
    const ValueScale scale = scaleOf({"", {{5.0, 5.0}}}, 2);
    ASSERT_EQ(scale.bandCount(), 1);
    EXPECT_EQ(scale.edge(0), 5.0);
    EXPECT_EQ(scale.edge(1), 5.0);
    EXPECT_EQ(scale.bandOf(5.0), 0);
    const std::vector<LegendRow> rows = legendOf(scale);
    ASSERT_THAT(rows, SizeIs(1));
    EXPECT_EQ(rows[0].text, "5");
}

TEST(ValueScale, DifferencesThatAreNoneMakeOneBand) {
    PointValues values{"", {{1.0 + 2e-7, 1.0, 1.0 + 8e-6}}, true, 1e-5};
    const std::vector<LegendRow> rows = legendOf(scaleOf(values, 5));
    ASSERT_THAT(rows, SizeIs(1));
    EXPECT_EQ(rows[0].text, "1");
    values.parts = {{3e-7, 1e-6}};
    EXPECT_EQ(legendOf(scaleOf(values, 5)).at(0).text, "0");
    values.parts = {{0.0, 1e-5}};
    EXPECT_THAT(legendOf(scaleOf(values, 5)), SizeIs(5));
    values.parts = {{0.0, 1e-30}};
    values.least = 0.0;
    EXPECT_THAT(legendOf(scaleOf(values, 5)), SizeIs(5)) << "of distances and fields each difference counts";
}

TEST(Legend, HasTheHighestBandFirst) {
    const ValueScale scale(0.0, 1.0, 2);
    const std::vector<LegendRow> rows = legendOf(scale);
    ASSERT_THAT(rows, SizeIs(2));
    EXPECT_EQ(rows[0].text, "0.5 to 1");
    EXPECT_EQ(rows[0].colour, scale.colourOf(1));
    EXPECT_EQ(rows[1].text, "0 to 0.5");
    EXPECT_EQ(rows[1].colour, scale.colourOf(0));
}

TEST(Legend, HasTheDigitsThatTellItsBandsApart) {
    // Ten bands of 2e-6 each: the sixth place behind the point, which is the seventh digit, differs.
    const std::vector<LegendRow> rows = legendOf(ValueScale(1.33982, 1.33984, 10));
    ASSERT_THAT(rows, SizeIs(10));
    EXPECT_EQ(rows[0].text, "1.339838 to 1.33984");
    EXPECT_EQ(rows[4].text, "1.33983 to 1.339832");
    EXPECT_EQ(rows[9].text, "1.33982 to 1.339822");
}

// The value of the unit square is x: the bands 0 to 1/4 and so on are strips of a quarter each.
TEST(ColourByValue, BandsEndWhereTheValueDoesAndNotAtTheGrid) {
    const DrawRig rig({square(0)});
    const ValueScale scale(0.0, 1.0, 4);
    const DrawList list = colouredSurface(rig.doc, 2, shown({{0, 1, 0, 1}}, scale));
    EXPECT_EQ(list.number, 2);
    const auto found = areas(list);
    ASSERT_THAT(found, SizeIs(4));
    for (std::int32_t band = 0; band < 4; ++band) {
        EXPECT_NEAR(found.at(scale.colourOf(band)), 0.25, 1e-15) << band;
    }
    for (const DrawBatch& batch : list.batches) {
        EXPECT_TRUE(batch.lit);
        EXPECT_TRUE(batch.readable);
        const std::int32_t band =
            scale.bandOf(list.vertices[batch.firstVertex].x * 0.5 + list.vertices[batch.firstVertex + 1].x * 0.25 +
                         list.vertices[batch.firstVertex + 2].x * 0.25);
        EXPECT_EQ(batch.colour, scale.colourOf(band));
    }
}

/// The sides that one triangle alone has, each from end to end.
std::size_t openSides(const DrawList& list) {
    using Point = std::array<double, 3>;
    std::map<std::pair<Point, Point>, int> sides;
    const auto pointOf = [](const zVec<double>& p) { return Point{p.x, p.y, p.z}; };
    for (std::size_t i = 0; i + 2 < list.vertices.size(); i += 3) {
        for (std::size_t side = 0; side < 3; ++side) {
            Point from = pointOf(list.vertices[i + side]);
            Point to = pointOf(list.vertices[i + (side + 1) % 3]);
            if (to < from) {
                std::swap(from, to);
            }
            sides[{from, to}] += from == to ? 0 : 1;
        }
    }
    return static_cast<std::size_t>(
        std::count_if(sides.begin(), sides.end(), [](const auto& side) { return side.second == 1; }));
}

// Both triangles of a cell are cut at the same values, and along their common side at the same points to the bit.
// Values rise with x: the lower and the upper side of the cell are cut by seven bands into eight parts each, those at
// the left and right stay whole.
TEST(ColourByValue, BandsAndTrianglesMeetInTheSamePoints) {
    Patch patch = {{{0.1, 0.3, 0.7}, {1.7, 0.2, 0.1}}, {{0.2, 1.9, 0.3}, {1.3, 2.3, 0.9}}};
    const DrawRig rig({patch});
    const DrawList list = colouredSurface(rig.doc, 2, shown({{0.013, 0.997, 0.027, 0.981}}, {0.0, 1.0, 8}));
    EXPECT_EQ(openSides(list), 2U * 8U + 2U);
}

TEST(ColourByValue, FacesKeepTheirSideAndNormals) {
    const DrawRig rig({square(0)});
    const DrawList list = colouredSurface(rig.doc, 2, shown({{0, 1, 0, 1}}, {0.0, 1.0, 3}));
    ASSERT_THAT(list.normals, SizeIs(list.vertices.size()));
    for (const zVec<double>& normal : list.normals) {
        expectVector(normal, {0, 0, 1}, 1e-15);
    }
    for (std::size_t i = 0; i + 2 < list.vertices.size(); i += 3) {
        const zVec<double>* const p = &list.vertices[i];
        EXPECT_GT(cross(p[1] - p[0], p[2] - p[0]).z, 0.0);
    }
}

// A section and a point count have their places: 3 points at (0, 0), (1, 0), (2, 0), then those at y = 1, with x + 10
// y.
TEST(ColourByValue, EachPointHasItsOwnValue) {
    const DrawRig rig({flatPatch(2, 3)});
    const ValueScale scale(0.0, 12.0, 12);
    const DrawList list = colouredSurface(rig.doc, 2, shown({{0, 1, 2, 10, 11, 12}}, scale));
    for (const DrawBatch& batch : list.batches) {
        for (std::size_t i = 0; i < batch.vertexCount; i += 3) {
            const zVec<double>* const p = &list.vertices[batch.firstVertex + i];
            const zVec<double> middle = (p[0] + p[1] + p[2]) / 3.0;
            EXPECT_EQ(batch.colour, scale.colourOf(scale.bandOf(middle.x + 10.0 * middle.y)));
        }
    }
}

TEST(ColourByValue, OneValueEverywhereLeavesTheTrianglesWhole) {
    const DrawRig rig({square(0)});
    const ValueScale scale(0.0, 1.0, 2);
    const DrawList list = colouredSurface(rig.doc, 2, shown({{0.5, 0.5, 0.5, 0.5}}, scale));
    EXPECT_THAT(list.vertices, SizeIs(6));
    EXPECT_THAT(areas(list), ElementsAre(Pair(scale.colourOf(1), DoubleNear(1.0, 1e-15))));
}

TEST(ColourByValue, APartWithoutValuesStaysAsItIs) {
    const DrawRig rig(squares(3));
    const DrawList plain = buildModelList(rig.doc, 2).list;
    const ValueScale scale(0.0, 1.0, 2);
    const DrawList list = colouredSurface(rig.doc, 2, shown({{}, {0, 0, 0, 0}, {}}, scale));
    ASSERT_THAT(list.batches, SizeIs(3));
    EXPECT_EQ(list.batches[0].primitive, Primitive::QuadStrip);
    EXPECT_EQ(list.batches[0].colour, plain.batches[0].colour);
    EXPECT_EQ(list.batches[1].colour, scale.colourOf(0));
    EXPECT_EQ(list.batches[2].colour, plain.batches[2].colour);
    EXPECT_EQ(list.vertices[list.batches[1].firstVertex].x, 11.0);
    EXPECT_EQ(list.vertices[list.batches[2].firstVertex].x, 21.0);
    EXPECT_EQ(list.batches[2].firstNormal, list.batches[2].firstVertex);
}

TEST(ColourByValue, AValueThatIsNoNumberLeavesThePartsColour) {
    const DrawRig rig({square(0)});
    const DrawList plain = buildModelList(rig.doc, 2).list;
    const ValueScale scale(0.0, 1.0, 2);
    // Of the two triangles one alone has the corner at (1, 0).
    const double none = std::numeric_limits<double>::quiet_NaN();
    const auto found = areas(colouredSurface(rig.doc, 2, shown({{0, none, 0, 0}}, scale)));
    EXPECT_NEAR(found.at(plain.batches[0].colour), 0.5, 1e-15);
    EXPECT_NEAR(found.at(scale.colourOf(0)), 0.5, 1e-15);
}

TEST(ColourByValue, OnlyAColourThatStandsForAValueIsShadedMildly) {
    const DrawRig rig(squares(2));
    const double none = std::numeric_limits<double>::quiet_NaN();
    const ValueScale scale(0.0, 1.0, 2);
    for (const DrawBatch& batch : colouredSurface(rig.doc, 2, shown({{0, none, 0, 0}, {}}, scale)).batches) {
        EXPECT_EQ(batch.readable, batch.colour == scale.colourOf(0));
    }
}

TEST(ColourByValue, MarksBesideTheSurfaceStayBehindIt) {
    DrawRig rig({square(0)});
    rig.doc.showFirstPoints = true;
    const DrawList plain = buildModelList(rig.doc, 2).list;
    const DrawList list = colouredSurface(rig.doc, 2, shown({{0, 0, 0, 0}}, {0.0, 1.0, 2}));
    EXPECT_EQ(list.batches.size(), plain.batches.size());
    EXPECT_EQ(list.batches.back().primitive, Primitive::Points);
    EXPECT_EQ(list.batches.back().pointSize, plain.batches.back().pointSize);
    EXPECT_EQ(list.vertices.back(), plain.vertices.back());
}

TEST(ColourByValue, OfBlockOnlyWhatIsShown) {
    DrawRig rig(squares(2));
    rig.block({1});
    rig.doc.showBlockOnly = true;
    const ValueScale scale(0.0, 1.0, 2);
    const auto found = areas(colouredSurface(rig.doc, 2, shown({{0, 0, 0, 0}, {1, 1, 1, 1}}, scale)));
    EXPECT_THAT(found, ElementsAre(Pair(scale.colourOf(1), DoubleNear(1.0, 1e-15))));
}

// The node at (4, 0) has the value 4: below 2 lie 6 of the 8 of the area, as the cut makes a triangle of half the size.
TEST(ColourByValue, ZonesHaveTheirNodesValues) {
    DrawRig rig({});
    rig.doc.structureKind = StructureKind::Unstructured;
    rig.doc.feRegion.blocks.push_back(triangleZone("a", {{0, 0, 0}, {4, 0, 0}, {0, 4, 0}}, {0, 1, 2}));
    const ValueScale scale(0.0, 4.0, 2);
    const auto found = areas(colouredSurface(rig.doc, 4, shown({{0, 4, 0}}, scale)));
    EXPECT_NEAR(found.at(scale.colourOf(0)), 6.0, 1e-14);
    EXPECT_NEAR(found.at(scale.colourOf(1)), 2.0, 1e-14);
}

// ---- Of a document --------------------------------------------------------------------------------------------------

TEST(ValuesToShow, OfACompareStandWithThePartsThatWereCompared) {
    DrawRig rig(squares(3));
    rig.doc.dialogs->colours.quantity = 2;
    EXPECT_FALSE(valuesToShow(rig.doc).has_value());
    rig.doc.foundComparison = Comparison{{true, false, true}, {1, 2, 3, 4, 5, 6, 7, 8}, 8.0, 4.5, 0.0, {}};
    rig.doc.comparedDigest = geometryDigest(rig.doc.patches, rig.doc.feRegion);
    const auto values = valuesToShow(rig.doc);
    ASSERT_TRUE(values.has_value());
    EXPECT_EQ(values->name, "Distance");
    EXPECT_THAT(values->parts, ElementsAre(ElementsAre(1, 2, 3, 4), ElementsAre(), ElementsAre(5, 6, 7, 8)));
    rig.doc.dialogs->colours.quantity = 1;
    EXPECT_FALSE(valuesToShow(rig.doc).has_value());
}

TEST(ValuesToShow, OfAFieldHaveTheNameOfItsVariable) {
    DrawRig rig(squares(1));
    rig.doc.fieldLoaded = true;
    rig.doc.fieldCount = 2;
    rig.doc.fieldVariablesLine = "VARIABLES = \"X\", \"Y\", \"Z\", \"p\", \"Mach number\"";
    rig.doc.fieldPatches = {{{{1, 5, 0}, {2, 6, 0}}, {{3, 7, 0}, {4, 8, 0}}}};
    rig.doc.dialogs->colours.quantity = 4;
    const auto values = valuesToShow(rig.doc);
    ASSERT_TRUE(values.has_value());
    EXPECT_EQ(values->name, "Mach number");
    EXPECT_THAT(values->parts, ElementsAre(ElementsAre(5, 6, 7, 8)));
    rig.doc.dialogs->colours.quantity = 5;
    EXPECT_FALSE(valuesToShow(rig.doc).has_value()) << "the file has two";
    rig.doc.dialogs->colours.quantity = 3;
    rig.doc.fieldPatches[0].pop_back();
    EXPECT_FALSE(valuesToShow(rig.doc).has_value()) << "not of the model's shape";
}

// Three cells in a row, 1, 3 and 1 long and 1 high, then the same 2 high: each is filled by its own value.
TEST(ColourByValue, ACellHasOneValueAllOver) {
    Patch patch = flatPatch(3, 4);
    const double x[] = {0, 1, 4, 5};
    for (std::size_t n = 0; n < 3; ++n) {
        for (std::size_t m = 0; m < 4; ++m) {
            patch[n][m] = {x[m], n < 2 ? static_cast<double>(n) : 3.0, 0};
        }
    }
    const DrawRig rig({patch});
    const ValueScale scale(0.0, 6.0, 6);
    ColouredValues values = shown({{0.5, 1.5, 2.5, 3.5, 4.5, 5.5}}, scale);
    values.values.ofCells = true;
    const DrawList list = colouredSurface(rig.doc, 2, values);
    EXPECT_THAT(areas(list),
                ElementsAre(Pair(scale.colourOf(0), 1.0), Pair(scale.colourOf(1), 3.0), Pair(scale.colourOf(2), 1.0),
                            Pair(scale.colourOf(3), 2.0), Pair(scale.colourOf(4), 6.0), Pair(scale.colourOf(5), 2.0)));
    // The colour of a triangle is that of the cell in which its centre lies.
    for (const DrawBatch& batch : list.batches) {
        for (std::size_t i = 0; i < batch.vertexCount; i += 3) {
            const zVec<double>* const p = &list.vertices[batch.firstVertex + i];
            const zVec<double> centre = (p[0] + p[1] + p[2]) * (1.0 / 3.0);
            const int cell = (centre.x < 1 ? 0 : centre.x < 4 ? 1 : 2) + (centre.y < 1 ? 0 : 3);
            EXPECT_EQ(batch.colour, scale.colourOf(cell));
        }
    }
}

TEST(ValuesToShow, OfTheReport) {
    DrawRig rig({square(0), square(1)});
    rig.doc.patches[1][1][1].x = 3;
    CColours& chosen = rig.doc.dialogs->colours;
    const std::vector<std::string> names = {"Aspect", "Skew", "Warp, degrees", "Growth"};
    for (std::int32_t i = 0; i < 4; ++i) {
        chosen.quantity = CColours::firstOfReport + i;
        const auto values = valuesToShow(rig.doc);
        ASSERT_TRUE(values.has_value());
        EXPECT_EQ(values->name, names[static_cast<std::size_t>(i)]);
        EXPECT_EQ(values->ofCells, i < 3);
        EXPECT_EQ(values->least, i == 2 ? 1e-3 : 1e-5);
        EXPECT_THAT(values->parts, ElementsAre(SizeIs(i < 3 ? 1 : 4), SizeIs(i < 3 ? 1 : 4)));
    }
    chosen.quantity = CColours::firstOfReport;
    EXPECT_THAT(valuesToShow(rig.doc)->parts, ElementsAre(ElementsAre(1.0), ElementsAre(2.0)));
    rig.doc.structureKind = StructureKind::Unstructured;
    EXPECT_FALSE(valuesToShow(rig.doc).has_value());
}

TEST(ColouredValues, AreNoneWhereNothingHasOne) {
    DrawRig rig({{{{0, 0, 0}}, {{1, 0, 0}}, {{3, 0, 0}}}});
    CColours& chosen = rig.doc.dialogs->colours;
    for (const std::int32_t quantity : {CColours::firstOfReport, CColours::firstOfReport + 3}) {
        chosen.quantity = quantity;
        EXPECT_FALSE(colouredValues(rig.doc).has_value()) << "sections of one point have no cell between them";
    }
    rig.doc.patches = {square(0)};
    rig.doc.fieldLoaded = true;
    rig.doc.fieldCount = 1;
    chosen.quantity = 3;
    const double none = std::numeric_limits<double>::quiet_NaN();
    rig.doc.fieldPatches = {{{{none, 0, 0}, {none, 0, 0}}, {{none, 0, 0}, {none, 0, 0}}}};
    EXPECT_FALSE(colouredValues(rig.doc).has_value()) << "no number among them";
    rig.doc.fieldPatches[0][1][1].x = 2.0;
    EXPECT_TRUE(colouredValues(rig.doc).has_value());
}

TEST(ColouredView, ShowsALegendWithTheSurface) {
    ViewRig rig;
    rig.show({square(0)});
    rig.paint();
    const std::size_t batches = rig.view.overlay().list.batches.size();
    rig.doc.fieldLoaded = true;
    rig.doc.fieldCount = 1;
    rig.doc.fieldVariablesLine = "VARIABLES = \"X\" \"Y\" \"Z\" \"p\"";
    rig.doc.fieldPatches = {{{{0, 0, 0}, {1, 0, 0}}, {{0, 0, 0}, {1, 0, 0}}}};
    rig.doc.surfaceMode = true;
    CColours& chosen = rig.doc.dialogs->colours;
    chosen.quantity = 3;
    chosen.bands = 2;
    rig.view.onPictureChanged();
    rig.paint();
    std::vector<std::string> texts;
    for (const DrawText& text : rig.view.overlay().texts) {
        texts.push_back(text.text);
    }
    EXPECT_THAT(texts, ElementsAre("p", "0.5 to 1", "0 to 0.5"));
    EXPECT_THAT(rig.view.overlay().list.batches, SizeIs(batches + 2));
    EXPECT_EQ(rig.view.batchesBeforeTriad(), 2U);
    const ValueScale scale(0.0, 1.0, 2);
    EXPECT_EQ(rig.view.overlay().list.batches[0].colour, scale.colourOf(1)) << "as the surface has it";
    EXPECT_THAT(areas(rig.view.list()), ElementsAre(Pair(scale.colourOf(0), DoubleNear(0.5, 1e-15)),
                                                    Pair(scale.colourOf(1), DoubleNear(0.5, 1e-15))));

    chosen.automatic = false;
    chosen.least = -1.0;
    chosen.most = 3.0;
    rig.view.onPictureChanged();
    rig.paint();
    EXPECT_EQ(rig.view.overlay().texts.at(1).text, "1 to 3");

    rig.doc.surfaceMode = false;
    rig.view.onPictureChanged();
    rig.paint();
    EXPECT_THAT(rig.view.overlay().texts, SizeIs(0)) << "wires have no colours";
    EXPECT_THAT(rig.view.overlay().list.batches, SizeIs(batches));
}

} // namespace velmora
