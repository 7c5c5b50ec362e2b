#include "NearestMarker.h"

#include <gtest/gtest.h>

#include "curve_samples.h"
#include "marker_shift_reference.h"

namespace velmora::test {

namespace {

using samples::infinite;
using samples::notANumber;
using samples::sameBits;
using samples::Source;

} // namespace

TEST(NearestMarker, MeasuresFromTheNearestPoint) {
    const NearestMarker nearest({{0, 0}, {3, 4}, {10, 0}});
    EXPECT_EQ(nearest.distanceFrom(3, 0), 3);
    EXPECT_EQ(nearest.distanceFrom(6, 8), 5);
    EXPECT_EQ(nearest.distanceFrom(10, 0), 0);
}

TEST(NearestMarker, PassesOverPointsThatAreNotFinite) {
    EXPECT_EQ(NearestMarker({{notANumber, 0}, {0, infinite}, {5, 0}}).distanceFrom(0, 0), 5);
}

TEST(NearestMarker, OfNoPointsIsInfinitelyFar) {
    EXPECT_EQ(NearestMarker({}).distanceFrom(0, 0), infinite);
    EXPECT_EQ(NearestMarker({{infinite, infinite}}).distanceFrom(0, 0), infinite);
}

TEST(NearestMarker, IsAsFarAsThePlainScanSays) {
    Source source(10);
    for (int round = 0; round < 300; ++round) {
        std::vector<PlanePoint> markers;
        const int count = round < 40 ? round : static_cast<int>(source.real(1, 1000));
        const double size = source.once(5) ? 1e160 : 100.0;
        const bool onLine = source.once(4);
        for (int i = 0; i < count; ++i) {
            markers.push_back({source.real(-size, size), onLine ? 3.0 : source.real(-size, size)});
            if (source.once(10)) {
                markers.back() = markers[markers.size() / 2];
            }
            if (source.once(50)) {
                markers.back().a = source.once(2) ? notANumber : infinite;
            }
        }
        const NearestMarker nearest(markers);
        for (int i = 0; i < 100; ++i) {
            const double reach = source.once(10) ? 1e5 * size : 1.5 * size;
            PlanePoint at{source.real(-reach, reach), source.real(-reach, reach)};
            if (count > 0 && source.once(5)) {
                at = markers[static_cast<std::size_t>(i) % markers.size()];
            }
            ASSERT_TRUE(sameBits(nearest.distanceFrom(at.a, at.b), reference::distanceToMarkers(markers, at.a, at.b)))
                << round << " " << at.a << " " << at.b;
        }
        EXPECT_EQ(nearest.distanceFrom(notANumber, 0), infinite);
        EXPECT_EQ(nearest.distanceFrom(0, infinite), infinite);
    }
}

} // namespace velmora::test
