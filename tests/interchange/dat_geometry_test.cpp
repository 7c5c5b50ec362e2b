#include "dat_geometry.h"

#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "format_test_tools.h"
#include "thinning.h"
#include "zones_reference.h"

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

const std::vector<std::string> xyz{"x", "y", "z"};

// A zone whose point (i, j) has the coordinates j, i, `number`, in fields of these names; other fields hold 99.
std::unique_ptr<zBlock> numberedZone(std::int32_t imax, std::int32_t jmax, double number = 0.0,
                                     const std::vector<std::string>& names = xyz) {
    auto zone = std::make_unique<zBlock>(imax, jmax, 1);
    zone->title = "wing";
    for (const std::string& name : names) {
        zArray<double>& field = *zone->variables.emplace_back(std::make_unique<zArray<double>>(imax, jmax, 1, name));
        const char key = name.size() == 1 ? static_cast<char>(name[0] | 0x20) : ' ';
        for (std::size_t n = 0; n < field.data.size(); ++n) {
            const auto index = static_cast<std::int32_t>(n);
            const std::int32_t row = index / imax;
            field.data[n] = key == 'x' ? row : key == 'y' ? index % imax : key == 'z' ? number : 99.0;
        }
    }
    return zone;
}

template <class... Zones>
zRegion regionOf(Zones... zones) {
    zRegion region;
    (region.blocks.push_back(std::move(zones)), ...);
    return region;
}

constexpr ZoneDetail bothDetails[]{ZoneDetail::Thinned, ZoneDetail::Whole};

void expectRefusal(const zRegion& region, ZoneRefusal refusal) {
    for (const ZoneDetail detail : bothDetails) {
        const ZonePatches result = zonesToPatches(region, detail);
        EXPECT_EQ(result.refusal, refusal);
        EXPECT_THAT(result.patches, IsEmpty());
        EXPECT_EQ(result.pointsRead, 0);
        EXPECT_EQ(result.pointsKept, 0);
    }
}

void expectPatches(const zRegion& region, const PatchList& patches, std::int32_t zonesLeftOut = 0) {
    for (const ZoneDetail detail : bothDetails) {
        const ZonePatches result = zonesToPatches(region, detail);
        EXPECT_EQ(result.refusal, ZoneRefusal::None);
        EXPECT_TRUE(test::sameModel(result.patches, patches));
        EXPECT_EQ(result.pointsRead, pointTotal(patches));
        EXPECT_EQ(result.pointsKept, pointTotal(patches));
        EXPECT_EQ(result.zonesLeftOut, zonesLeftOut);
        EXPECT_FALSE(result.thinned);
        EXPECT_FALSE(result.cutAtLimit);
    }
}

TEST(DatGeometry, TheTextsAreExact) {
    EXPECT_EQ(tooFewVariablesMessage, "Irregular structure of DAT file. The number of variables < 3");
    EXPECT_EQ(coordinatesAbsentMessage, "Irregular structure of DAT file. Variables X or Y or Z are absent");
}

TEST(DatGeometry, EachZoneBecomesAPatchOfJmaxSectionsOfImaxPoints) {
    expectPatches(regionOf(numberedZone(3, 2, 7), numberedZone(2, 4, 8)),
                  {test::numberedPatch(2, 3, 7), test::numberedPatch(4, 2, 8)});
}

TEST(DatGeometry, CoordinatesAreFoundByNameWhateverTheirCaseAndOrder) {
    expectPatches(regionOf(numberedZone(2, 3, 5, {"Cp", "Z", "y", "p", "X"}), numberedZone(2, 2, 6, {"Z", "X", "Y"})),
                  {test::numberedPatch(3, 2, 5), test::numberedPatch(2, 2, 6)});
}

TEST(DatGeometry, NoZoneChangesItsTitle) {
    const zRegion region = regionOf(numberedZone(2, 2), numberedZone(2, 2));
    zonesToPatches(region, ZoneDetail::Thinned);
    EXPECT_EQ(region.blocks[0]->title, "wing");
    EXPECT_EQ(region.blocks[1]->title, "wing");
}

TEST(DatGeometry, ARegionWithoutZonesHasNoPatchesAndIsNotRefused) {
    expectRefusal(zRegion(), ZoneRefusal::None);
}

TEST(DatGeometry, FewerThanThreeVariablesOfTheFirstZoneAreRefused) {
    expectRefusal(regionOf(numberedZone(2, 2, 0, {})), ZoneRefusal::TooFewVariables);
    expectRefusal(regionOf(numberedZone(2, 2, 0, {"x", "y"}), numberedZone(2, 2)), ZoneRefusal::TooFewVariables);
}

TEST(DatGeometry, AFirstZoneWithoutOneOfTheCoordinatesIsRefused) {
    for (const std::vector<std::string>& names : std::vector<std::vector<std::string>>{
             {"x", "y", "p"}, {"x1", "y", "z"}, {"x", "y ", "z"}, {"a", "y", "z", "xx"}, {"x", "x", "x"}}) {
        expectRefusal(regionOf(numberedZone(2, 2, 0, names), numberedZone(2, 2)), ZoneRefusal::CoordinatesAbsent);
    }
}

TEST(DatGeometry, ALaterZoneWithoutACoordinateIsLeftOut) {
    expectPatches(regionOf(numberedZone(2, 2, 1), numberedZone(2, 2, 2, {"x", "y"}),
                           numberedZone(2, 2, 3, {"x", "y", "p", "q"}), numberedZone(2, 2, 4)),
                  {test::numberedPatch(2, 2, 1), test::numberedPatch(2, 2, 4)}, 2);
}

TEST(DatGeometry, AZoneWithAShorterArrayIsLeftOut) {
    for (std::size_t field = 0; field < 3; ++field) {
        zRegion region = regionOf(numberedZone(2, 2, 1), numberedZone(2, 2, 2));
        region.blocks[0]->variables[field]->data.resize(3);
        expectPatches(region, {test::numberedPatch(2, 2, 2)}, 1);
    }
    zRegion grown = regionOf(numberedZone(2, 2, 1), numberedZone(2, 2, 2));
    grown.blocks[1]->imax = grown.blocks[1]->jmax = std::numeric_limits<std::int32_t>::max();
    expectPatches(grown, {test::numberedPatch(2, 2, 1)}, 1);
}

TEST(DatGeometry, TheShortArrayOfAnotherVariableIsNoMatter) {
    zRegion region = regionOf(numberedZone(2, 2, 1, {"x", "y", "z", "p"}));
    region.blocks[0]->variables[3]->data.clear();
    expectPatches(region, {test::numberedPatch(2, 2, 1)});
}

TEST(DatGeometry, AZoneWithoutPointsGivesAPatchWithoutSections) {
    zRegion region;
    for (const auto& [imax, jmax] : std::vector<std::pair<std::int32_t, std::int32_t>>{
             {0, 0}, {0, 2'000'000'000}, {5, 0}, {-3, -4}, {-3, 4}, {4, -3}}) {
        region.blocks.push_back(numberedZone(imax, jmax));
    }
    expectPatches(region, PatchList(6));
}

TEST(DatGeometry, OfAVolumeTheFirstLayerIsTaken) {
    zRegion region = regionOf(std::make_unique<zBlock>(2, 1, 3));
    for (const std::string& name : xyz) {
        region.blocks[0]->addVariable(name)->data = {1, 2, 3, 4, 5, 6};
    }
    expectPatches(region, {{{{1, 1, 1}, {2, 2, 2}}}});
}

TEST(DatGeometry, ACoordinateBelowMinus1e8IsZeroInAModelThatIsOpened) {
    zRegion region = regionOf(numberedZone(5, 1));
    const double infinity = std::numeric_limits<double>::infinity();
    const double justBelow = std::nextafter(-1e8, -infinity);
    region.blocks[0]->variables[0]->data = {-1e9, justBelow, -infinity, -1e8, 1e9};
    region.blocks[0]->variables[1]->data = {1, -1e9, 3, 4, 5};
    region.blocks[0]->variables[2]->data = {-2e8, 2, 3, 4, -1e300};
    EXPECT_TRUE(test::sameModel(zonesToPatches(region, ZoneDetail::Thinned).patches,
                                {{{{0, 1, 0}, {0, 0, 2}, {0, 3, 3}, {-1e8, 4, 4}, {1e9, 5, 0}}}}));
    EXPECT_TRUE(test::sameModel(
        zonesToPatches(region, ZoneDetail::Whole).patches,
        {{{{-1e9, 1, -2e8}, {justBelow, -1e9, 2}, {-infinity, 3, 3}, {-1e8, 4, 4}, {1e9, 5, -1e300}}}}));
}

// first, first + step, ... below count, and the last element of all.
std::vector<int> everyAndLast(int first, int step, int count) {
    std::vector<int> expected;
    for (int i = first; i < count - 1; i += step) {
        expected.push_back(i);
    }
    expected.push_back(count - 1);
    return expected;
}

// The numbers of the sections, or those of the points of a section, as the coordinates tell them.
std::vector<int> keptSections(const Patch& patch) {
    std::vector<int> kept;
    for (const PointList& section : patch) {
        kept.push_back(static_cast<int>(section.front().x));
    }
    return kept;
}
std::vector<int> keptPoints(const PointList& section) {
    std::vector<int> kept;
    for (const zVec<double>& point : section) {
        kept.push_back(static_cast<int>(point.y));
    }
    return kept;
}

TEST(DatThinning, ZonesOf201000PointsTogetherStayWhole) {
    const ZonePatches result =
        zonesToPatches(regionOf(numberedZone(100, 1000), numberedZone(101, 1000)), ZoneDetail::Thinned);
    EXPECT_EQ(result.pointsRead, 201'000);
    EXPECT_EQ(result.pointsKept, 201'000);
    EXPECT_FALSE(result.thinned);
    EXPECT_THAT(test::shapeOf(result.patches), ElementsAre(Pair(1000, 100), Pair(1000, 101)));
}

TEST(DatThinning, OnePointMoreKeepsEverySecond) {
    const ZonePatches result =
        zonesToPatches(regionOf(numberedZone(66, 66), numberedZone(1, 201'001 - 66 * 66)), ZoneDetail::Thinned);
    EXPECT_EQ(result.pointsRead, 201'001);
    EXPECT_TRUE(result.thinned);
    EXPECT_EQ(keptSections(result.patches[0]), everyAndLast(0, 2, 66));
    for (const PointList& section : result.patches[0]) {
        EXPECT_EQ(keptPoints(section), everyAndLast(0, 2, 66));
    }
    // The second zone begins on an even count of sections: 0, 2, ... of 196645 and so its last one too.
    EXPECT_EQ(result.patches[1].size(), 98'323U);
    EXPECT_EQ(result.pointsKept, 34 * 34 + 98'323);
}

TEST(DatThinning, BothPhasesRunOnFromZoneToZone) {
    // 67 sections of 67 points move either phase by one; the second zone begins on an odd count of both.
    const zRegion region = regionOf(numberedZone(67, 67), numberedZone(67, 67), numberedZone(450, 450));
    const ZonePatches result = zonesToPatches(region, ZoneDetail::Thinned);
    EXPECT_EQ(keptSections(result.patches[0]), everyAndLast(0, 2, 67));
    EXPECT_EQ(keptSections(result.patches[1]), everyAndLast(1, 2, 67));
    EXPECT_EQ(keptPoints(result.patches[0][0]), everyAndLast(0, 2, 67));
    // Section 1 of the second zone begins behind 68 times 67 points, an even number.
    EXPECT_EQ(keptPoints(result.patches[1][0]), everyAndLast(0, 2, 67));
    EXPECT_EQ(result.patches[1][0][0].x, 1.0);
}

TEST(DatThinning, ADirectionOfUpTo65StaysAndAZoneLeftOutMovesNoPhase) {
    zRegion region = regionOf(numberedZone(65, 67), numberedZone(67, 67), numberedZone(67, 65), numberedZone(450, 450));
    region.blocks[1]->variables[0]->data.pop_back();
    const ZonePatches result = zonesToPatches(region, ZoneDetail::Thinned);
    EXPECT_EQ(result.zonesLeftOut, 1);
    EXPECT_EQ(result.pointsRead, 65 * 67 + 67 * 65 + 450 * 450);
    ASSERT_EQ(result.patches.size(), 3U);
    EXPECT_EQ(keptSections(result.patches[0]), everyAndLast(0, 2, 67));
    EXPECT_EQ(keptPoints(result.patches[0][0]), everyAndLast(0, 1, 65));
    EXPECT_EQ(keptSections(result.patches[1]), everyAndLast(0, 1, 65));
    EXPECT_EQ(keptPoints(result.patches[1][0]), everyAndLast(1, 2, 67)) << "65 times 67 points went before";
}

TEST(DatThinning, AModelThatIsAppendedStaysWhole) {
    const ZonePatches result = zonesToPatches(regionOf(numberedZone(1600, 1600)), ZoneDetail::Whole);
    EXPECT_EQ(result.pointsRead, 2'560'000);
    EXPECT_EQ(result.pointsKept, 2'560'000);
    EXPECT_FALSE(result.thinned);
    EXPECT_FALSE(result.cutAtLimit);
    EXPECT_TRUE(test::sameModel(result.patches, {test::numberedPatch(1600, 1600)}));
}

TEST(DatThinning, RandomZonesGiveWhatThePlainRuleGives) {
    std::mt19937 random(23);
    for (const std::int32_t filler : {1, 200'000, 2'500'000, 8'300'000}) {
        zRegion region;
        for (int k = 0; k < 8; ++k) {
            region.blocks.push_back(numberedZone(60 + static_cast<std::int32_t>(random() % 12),
                                                 60 + static_cast<std::int32_t>(random() % 12),
                                                 -1e8 + (k % 2 == 0 ? k : -k)));
        }
        region.blocks.push_back(numberedZone(filler, 1));
        region.blocks.push_back(numberedZone(67, 67));
        const ZonePatches result = zonesToPatches(region, ZoneDetail::Thinned);
        const PatchList expected = reference::thinnedZones(region);
        EXPECT_TRUE(test::sameModel(result.patches, expected)) << filler;
        EXPECT_EQ(result.pointsKept, pointTotal(expected));
    }
}

// Zones that are too short to be thinned and one that is thinned, together somewhat below the limit of 2412000 points.
class DatLimitTest : public testing::Test {
protected:
    zRegion region_;

    void SetUp() override {
        for (int k = 0; k < 599; ++k) {
            region_.blocks.push_back(numberedZone(60, 65));
        }
        region_.blocks.push_back(numberedZone(25'300, 2));
    }
};

TEST_F(DatLimitTest, TheRowThatReachesTheLimitIsTheLastOfItsZoneAndOfLaterZonesTheFirstRowIsTaken) {
    const std::int64_t before = zonesToPatches(region_, ZoneDetail::Thinned).pointsKept;
    EXPECT_EQ(before, 2'336'100 + 2 * 12'651) << "both rows begin alike: 0, 2, ... 25298 and 25299";
    const std::int64_t left = keptPointLimit - before;
    ASSERT_EQ(left, 50'598);
    // 843 rows of 60 points are 50,580, and the next one goes beyond the limit.
    for (int k = 0; k < 12; ++k) {
        region_.blocks.push_back(numberedZone(60, 65));
    }
    region_.blocks.push_back(numberedZone(60, 65, 1));
    region_.blocks.push_back(numberedZone(60, 1, 2));
    region_.blocks.push_back(numberedZone(60, 65, 3));
    const ZonePatches result = zonesToPatches(region_, ZoneDetail::Thinned);
    ASSERT_EQ(result.patches.size(), 615U);
    // 12 zones have 780 rows; 63 more are within the limit and the 64th reaches it.
    EXPECT_THAT(test::shapeOf({result.patches.begin() + 611, result.patches.end()}),
                ElementsAre(Pair(65, 60), Pair(64, 60), Pair(1, 60), Pair(1, 60)));
    EXPECT_EQ(result.pointsKept, before + std::int64_t{780 + 64 + 2} * 60);
    EXPECT_TRUE(result.cutAtLimit);
    EXPECT_TRUE(test::sameModel(result.patches, reference::thinnedZones(region_)));
}

TEST_F(DatLimitTest, BehindTheLimitARowThatThePhaseLeavesOutGivesAnEmptyPatch) {
    // The last of 13 zones reaches the limit in row 64, and 39781 rows went before: an odd number.
    for (int k = 0; k < 13; ++k) {
        region_.blocks.push_back(numberedZone(60, 65));
    }
    region_.blocks.push_back(numberedZone(60, 66));
    region_.blocks.push_back(numberedZone(60, 66));
    const ZonePatches result = zonesToPatches(region_, ZoneDetail::Thinned);
    ASSERT_EQ(result.patches.size(), 615U);
    EXPECT_THAT(test::shapeOf({result.patches.begin() + 612, result.patches.end()}),
                ElementsAre(Pair(64, 60), Pair(0, 0), Pair(1, 60)));
    EXPECT_TRUE(result.cutAtLimit);
    EXPECT_TRUE(test::sameModel(result.patches, reference::thinnedZones(region_)));
}

} // namespace
} // namespace velmora
