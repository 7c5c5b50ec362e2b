#include "ZoneIndex.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "pick_zone_reference.h"
#include "small_zones.h"

namespace velmora {
namespace {

using namespace test;
using Random = std::mt19937;

double pick(Random& random, double low, double high) {
    return std::uniform_real_distribution<>(low, high)(random);
}

/// A strip of triangles, some of them small or without an area, some with a corner that is no number.
std::unique_ptr<zBlock_fe> randomZone(Random& random) {
    std::vector<zVec<double>> nodes;
    std::vector<std::int32_t> corners;
    zVec<double> p(pick(random, -5, 5), pick(random, -5, 5), pick(random, -5, 5));
    const bool whole = random() % 3 == 0;
    for (int i = 0; i < 200; ++i) {
        p = p + zVec<double>(pick(random, -1, 1), pick(random, -1, 1), pick(random, -1, 1));
        zVec<double> node = whole ? zVec<double>(std::round(p.x), std::round(p.y), std::round(p.z)) : p;
        if (random() % 90 == 0) {
            node.x = std::numeric_limits<double>::quiet_NaN();
        }
        nodes.push_back(random() % 15 == 0 && i > 0 ? nodes.back() : node);
        if (i > 1) {
            corners.insert(corners.end(), {i - 2, i - 1, random() % 9 == 0 ? i - 2 : i});
        }
    }
    return triangleZone("zone", nodes, corners);
}

TEST(ZoneIndex, PicksAsThePlainRuleInRandomScenes) {
    Random random(7);
    int hits = 0;
    for (int scene = 0; scene < 60; ++scene) {
        zRegion_fe region;
        const int zones = 1 + static_cast<int>(random() % 4);
        for (int k = 0; k < zones; ++k) {
            region.blocks.push_back(randomZone(random));
        }
        ZoneIndex index;
        index.takeIn(region);
        for (int i = 0; i < 20; ++i) {
            PixelLine line{{pick(random, -8, 8), pick(random, -8, 8), 40},
                           {pick(random, -8, 8), pick(random, -8, 8), -40}};
            if (i % 3 == 0) {
                const auto node = static_cast<std::ptrdiff_t>(random() % 200);
                region.getNode(0, node, line.farPoint.x, line.farPoint.y, line.farPoint.z);
            }
            const std::int32_t expected = reference::pickZone(region, line);
            EXPECT_EQ(index.pickZone(region, line), expected) << "scene " << scene << " line " << i;
            hits += expected >= 0 ? 1 : 0;
        }
    }
    EXPECT_GT(hits, 100);
}

TEST(NodeIndex, FindsAsThePlainRuleInRandomScenes) {
    Random random(11);
    int found = 0;
    for (int scene = 0; scene < 40; ++scene) {
        zRegion_fe region;
        const int zones = 1 + static_cast<int>(random() % 4);
        for (int k = 0; k < zones; ++k) {
            region.blocks.push_back(randomZone(random));
        }
        NodeIndex index;
        index.takeIn(region);
        for (int i = 0; i < 20; ++i) {
            const PixelLine line{{pick(random, -8, 8), pick(random, -8, 8), 40},
                                 {pick(random, -8, 8), pick(random, -8, 8), -40}};
            PickFilter filter;
            if (i % 4 == 0) {
                filter.patches.assign(static_cast<std::size_t>(zones), false);
                filter.patches.back() = true;
            }
            const auto expected = nearestNode(region, line, filter);
            const auto nearest = index.nearest(line, filter);
            ASSERT_EQ(nearest.has_value(), expected.has_value());
            if (expected) {
                ++found;
                EXPECT_EQ(nearest->patch, expected->patch);
                EXPECT_EQ(nearest->section, -1);
                EXPECT_EQ(nearest->point, expected->point);
                EXPECT_EQ(nearest->distance, expected->distance);
            }
        }
    }
    EXPECT_GT(found, 700);
}

TEST(NodeIndex, ZoneOfFewFieldsFailsTheWholePick) {
    zRegion_fe region;
    region.blocks.push_back(oneTriangle(0, 1));
    region.blocks.push_back(oneTriangle(5, 2));
    region.blocks[1]->variables.pop_back();
    NodeIndex index;
    index.takeIn(region);
    EXPECT_FALSE(index.nearest({{1, 0, 40}, {1, 0, -40}}, {}));
}

TEST(ZoneIndex, ZoneBehindAnotherIsNotPicked) {
    zRegion_fe region;
    region.blocks.push_back(oneTriangle(0, 0));
    region.blocks.push_back(oneTriangle(0, 5));
    ZoneIndex index;
    index.takeIn(region);
    EXPECT_EQ(index.pickZone(region, {{0.2, 0.2, 40}, {0.2, 0.2, -40}}), 1);
    EXPECT_EQ(index.pickZone(region, {{0.2, 0.2, -40}, {0.2, 0.2, 40}}), 0);
    EXPECT_EQ(index.pickZone(region, {{3, 3, 40}, {3, 3, -40}}), -1);
}

TEST(ZoneIndex, SeesAMovedNodeAfterARefresh) {
    zRegion_fe region;
    region.blocks.push_back(oneTriangle(0));
    ZoneIndex index;
    index.takeIn(region);
    region.setNode(0, 1, 9, 0, 0);
    region.setNode(0, 2, 0, 9, 0);
    index.takeIn(region);
    EXPECT_EQ(index.pickZone(region, {{3, 3, 40}, {3, 3, -40}}), 0);
}

TEST(ZoneIndex, AnEmptyModelGivesNothing) {
    const zRegion_fe region;
    ZoneIndex index;
    index.takeIn(region);
    EXPECT_EQ(index.pickZone(region, {{0, 0, 1}, {0, 0, -1}}), -1);
    EXPECT_FALSE(nearestNode(region, {{0, 0, 1}, {0, 0, -1}}, {}));
}

TEST(NearestNode, IsTheFirstOfEqualDistances) {
    zRegion_fe region;
    region.blocks.push_back(oneTriangle(0, 1));
    region.blocks.push_back(oneTriangle(0, 2));
    const auto nearest = nearestNode(region, {{1, 0, 40}, {1, 0, -40}}, {});
    ASSERT_TRUE(nearest);
    EXPECT_EQ(nearest->patch, 0);
    EXPECT_EQ(nearest->point, 1);
    EXPECT_EQ(nearest->distance, 0.0);
    EXPECT_EQ(nearest->position, (zVec<double>(1, 0, 1)));
}

TEST(NearestNode, KeepsToTheZonesOfTheFilter) {
    zRegion_fe region;
    region.blocks.push_back(oneTriangle(0, 1));
    region.blocks.push_back(oneTriangle(5, 2));
    PickFilter filter;
    filter.patches = {false, true};
    const auto nearest = nearestNode(region, {{1, 0, 40}, {1, 0, -40}}, filter);
    ASSERT_TRUE(nearest);
    EXPECT_EQ(nearest->patch, 1);
    EXPECT_EQ(nearest->point, 0);
}

TEST(NearestNode, ZoneOfFewFieldsFailsTheWholePick) {
    zRegion_fe region;
    region.blocks.push_back(oneTriangle(0, 1));
    region.blocks.push_back(oneTriangle(5, 2));
    region.blocks[1]->variables.pop_back();
    EXPECT_FALSE(nearestNode(region, {{1, 0, 40}, {1, 0, -40}}, {}));
}

} // namespace
} // namespace velmora
