#include "PatchIndex.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "pick_patch_reference.h"
#include "small_models.h"

namespace velmora {
namespace {

using Random = std::mt19937;

double pick(Random& random, double low, double high) {
    return std::uniform_real_distribution<>(low, high)(random);
}

/// A wavy patch somewhere in a box of 10, of up to 30 by 30 points; some have collapsed borders, repeated points,
/// whole numbers for coordinates, or a hole of no numbers.
Patch randomPatch(Random& random) {
    const int sections = 1 + static_cast<int>(random() % 30);
    const int points = 1 + static_cast<int>(random() % 30);
    const zVec<double> corner(pick(random, -5, 5), pick(random, -5, 5), pick(random, -5, 5));
    const zVec<double> along(pick(random, -3, 3), pick(random, -3, 3), pick(random, -3, 3));
    const zVec<double> across(pick(random, -3, 3), pick(random, -3, 3), pick(random, -3, 3));
    const unsigned kind = random() % 6;
    Patch patch;
    for (int n = 0; n < sections; ++n) {
        PointList section;
        for (int m = 0; m < points; ++m) {
            zVec<double> p = corner + along * (m / 30.0) + across * (n / 30.0);
            p.z += 0.2 * std::sin(m * 0.7) * std::cos(n * 0.9);
            if (kind == 1 && n == 0) {
                p = corner;
            } else if (kind == 2 && m > 0 && random() % 3 == 0) {
                p = section.back();
            } else if (kind == 3) {
                p = {std::round(p.x), std::round(p.y), std::round(p.z)};
            } else if (kind == 4 && random() % 40 == 0) {
                p.y = std::numeric_limits<double>::quiet_NaN();
            }
            section.push_back(p);
        }
        patch.push_back(section);
    }
    if (kind == 5 && sections > 2) {
        patch[1].resize(static_cast<std::size_t>(points) / 2);
    }
    return patch;
}

/// A line from one side of the scene to the other; at times through points of the model or along an axis.
PixelLine randomLine(Random& random, const PatchList& list) {
    PixelLine line{{pick(random, -8, 8), pick(random, -8, 8), 40.0}, {pick(random, -8, 8), pick(random, -8, 8), -40.0}};
    const Patch& patch = list[random() % list.size()];
    const PointList& section = patch[random() % patch.size()];
    switch (random() % 4) {
    case 0:
        if (!section.empty()) {
            const zVec<double>& p = section[random() % section.size()];
            line = {{p.x, p.y, 40.0}, {p.x, p.y, -40.0}};
        }
        break;
    case 1:
        if (!section.empty()) {
            line.farPoint = section[random() % section.size()];
        }
        break;
    case 2:
        line = {{std::round(line.nearPoint.x), 1.0, 30.0}, {std::round(line.nearPoint.x), 1.0, -30.0}};
        break;
    default:
        break;
    }
    return line;
}

PatchList randomModel(Random& random) {
    PatchList list;
    const std::size_t count = 1 + random() % 8;
    for (std::size_t k = 0; k < count; ++k) {
        list.push_back(randomPatch(random));
    }
    if (random() % 3 == 0) {
        list.push_back(list.front()); // touching everywhere
    }
    return list;
}

TEST(PatchIndex, PicksThePatchThatThePlainRulePicks) {
    Random random(20260101);
    int hits = 0;
    for (int scene = 0; scene < 60; ++scene) {
        const PatchList list = randomModel(random);
        PatchIndex index;
        index.takeIn(list);
        for (int shot = 0; shot < 12; ++shot) {
            const PixelLine line = randomLine(random, list);
            const std::int32_t expected = reference::pickPatch(list, line);
            ASSERT_EQ(index.pickPatch(list, line), expected) << "scene " << scene << " shot " << shot;
            hits += expected >= 0 ? 1 : 0;
        }
    }
    EXPECT_GT(hits, 120);
}

TEST(PatchIndex, FindsTheNearestPointOfThePlainScan) {
    Random random(7);
    for (int scene = 0; scene < 150; ++scene) {
        const PatchList list = randomModel(random);
        PatchIndex index;
        index.takeIn(list);
        for (int shot = 0; shot < 20; ++shot) {
            const PixelLine line = randomLine(random, list);
            PickFilter filter;
            filter.patch = random() % 3 == 0 ? static_cast<std::int32_t>(random() % list.size()) : -1;
            filter.section = random() % 4 == 0 ? static_cast<std::int32_t>(random() % 30) : -1;
            filter.point = random() % 4 == 0 ? static_cast<std::int32_t>(random() % 30) : -1;
            if (random() % 3 == 0) {
                for (std::size_t k = 0; k < list.size(); ++k) {
                    filter.patches.push_back(random() % 2 == 0);
                }
            }
            const auto expected = nearestGridPoint(list, line, filter);
            const auto found = index.nearest(list, line, filter);
            ASSERT_EQ(found.has_value(), expected.has_value());
            if (expected) {
                ASSERT_EQ(found->patch, expected->patch);
                ASSERT_EQ(found->section, expected->section);
                ASSERT_EQ(found->point, expected->point);
                ASSERT_EQ(found->distance, expected->distance);
            }
        }
    }
}

/// 19 by 13 tiles: three floors of nodes above them. In the flat half many points are equally near.
Patch tallPatch(double height) {
    Patch patch = test::flatPatch(150, 100, height);
    for (std::size_t n = 75; n < patch.size(); ++n) {
        for (std::size_t m = 0; m < patch[n].size(); ++m) {
            patch[n][m].z += 3.0 * std::sin(0.1 * static_cast<double>(n * m % 61));
        }
    }
    return patch;
}

TEST(PatchIndex, NearestOfALargePatchIsThePlainRulesByEveryFilter) {
    const PatchList list = {tallPatch(0.0), test::flatPatch(1, 1, 7.0), tallPatch(20.0), {}};
    PatchIndex index;
    index.takeIn(list);
    int found = 0;
    for (int i = 0; i < 400; ++i) {
        const double x = i * 37 % 100 + 0.5 * (i % 3);
        const double y = i * 53 % 150 + 0.5 * (i % 2);
        const PixelLine line{{x, y, 90.0}, {x + i % 7 - 3.0, y + i % 5 - 2.0, -90.0}};
        PickFilter filter;
        filter.patch = i % 4 == 1 ? 2 : -1;
        filter.section = i % 5 == 2 ? i * 7 % 150 : -1;
        filter.point = i % 6 == 3 ? i * 11 % 100 : -1;
        if (i % 7 == 4) {
            filter.patches = {true, true, false, true};
        }
        const auto expected = nearestGridPoint(list, line, filter);
        const auto nearest = index.nearest(list, line, filter);
        ASSERT_EQ(nearest.has_value(), expected.has_value()) << i;
        if (expected) {
            ++found;
            EXPECT_EQ(nearest->patch, expected->patch) << i;
            EXPECT_EQ(nearest->section, expected->section) << i;
            EXPECT_EQ(nearest->point, expected->point) << i;
            EXPECT_EQ(nearest->distance, expected->distance) << i;
        }
    }
    EXPECT_GT(found, 300);
}

TEST(PatchIndex, ALineOfNoLengthTakesTheFirstPointAndTheFirstPatch) {
    const PatchList list = {test::flatPatch(3, 3, 1.0), test::flatPatch(3, 3, 2.0)};
    PatchIndex index;
    index.takeIn(list);
    const PixelLine line{{0.5, 0.5, 9.0}, {0.5, 0.5, 9.0}};
    const auto found = index.nearest(list, line, {});
    ASSERT_TRUE(found);
    EXPECT_EQ(found->patch, 0);
    EXPECT_EQ(found->distance, -1e10);
    EXPECT_EQ(index.pickPatch(list, line), reference::pickPatch(list, line));
}

TEST(PatchIndex, ThePatchInFrontWinsOverOneThatComesFirstInTheList) {
    const PatchList list = {test::flatPatch(3, 3, 1.0), test::flatPatch(3, 3, 2.0)};
    PatchIndex index;
    index.takeIn(list);
    const PixelLine line{{0.7, 0.4, 9.0}, {0.7, 0.4, -9.0}};
    EXPECT_EQ(index.pickPatch(list, line), 1);
}

TEST(PatchIndex, SeesAPointThatMovedAfterARefresh) {
    PatchList list = {test::flatPatch(2, 2, 0.0)};
    PatchIndex index;
    index.takeIn(list);
    list[0][1][1] = {5.0, 5.0, 0.0};
    index.takeIn(list);
    const auto found = index.nearest(list, {{5.0, 5.0, 9.0}, {5.0, 5.0, -9.0}}, {});
    ASSERT_TRUE(found);
    EXPECT_EQ(found->section, 1);
    EXPECT_EQ(found->point, 1);
}

} // namespace
} // namespace velmora
