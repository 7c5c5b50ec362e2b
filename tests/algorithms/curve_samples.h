#pragma once

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "curve_reference.h"

namespace velmora::samples {

using reference::Column;
using reference::Points;

inline constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
inline constexpr double infinite = std::numeric_limits<double>::infinity();
/// What output arrays hold before a kernel runs.
inline constexpr double untouched = -77.5;

inline std::int32_t countOf(const Column& column) {
    return static_cast<std::int32_t>(column.size());
}
inline std::int32_t countOf(const Points& points) {
    return countOf(points.x);
}

inline Points outputs(std::int32_t m) {
    const Column column(static_cast<std::size_t>(m), untouched);
    return {column, column, column};
}

/// Points on the x axis.
inline Points onAxis(const Column& x) {
    return {x, Column(x.size(), 0.0), Column(x.size(), 0.0)};
}

/// Whether two numbers have the same bits; which of the many not-a-numbers they are does not count.
inline bool sameBits(double a, double b) {
    return (std::isnan(a) && std::isnan(b)) || std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

inline testing::AssertionResult sameBits(const Column& a, const Column& b) {
    if (a.size() != b.size()) {
        return testing::AssertionFailure() << a.size() << " entries against " << b.size();
    }
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (!sameBits(a[i], b[i])) {
            return testing::AssertionFailure() << "entry " << i << ": " << std::hexfloat << a[i] << " against " << b[i];
        }
    }
    return testing::AssertionSuccess();
}

inline testing::AssertionResult sameBits(const Points& a, const Points& b) {
    for (const auto column : {&Points::x, &Points::y, &Points::z}) {
        const testing::AssertionResult result = sameBits(a.*column, b.*column);
        if (!result) {
            return result;
        }
    }
    return testing::AssertionSuccess();
}

inline void expectNear(const Column& actual, const Column& expected, double tolerance) {
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < actual.size(); ++i) {
        EXPECT_NEAR(actual[i], expected[i], tolerance) << "entry " << i;
    }
}

/// Random curves and parameters, from tame to nasty; the same ones in every run.
class Source {
public:
    explicit Source(std::uint64_t seed) : engine_(seed) {}

    double real(double from, double to) { return std::uniform_real_distribution<double>(from, to)(engine_); }
    std::int32_t whole(std::int32_t from, std::int32_t to) {
        return std::uniform_int_distribution<std::int32_t>(from, to)(engine_);
    }
    bool once(std::int32_t in) { return whole(1, in) == 1; }

    /// A number that arithmetic stumbles over.
    double nasty() {
        static const double values[] = {notANumber, infinite, -infinite, 0.0, -0.0, 1e300, -1e300, 1e-310};
        return values[whole(0, 7)];
    }

    /// n numbers that mostly rise, some equal to the one before; with `wild` some fall or are nasty.
    Column rising(std::int32_t n, bool wild) {
        Column column;
        double value = real(-1, 1);
        for (std::int32_t i = 0; i < n; ++i) {
            value += once(8) ? 0 : real(0, 1);
            if (wild && once(6)) {
                value -= real(0, 3);
            }
            column.push_back(wild && once(10) ? nasty() : value);
        }
        return column;
    }

    /// n numbers in no order.
    Column scattered(std::int32_t n, bool wild) {
        Column column;
        for (std::int32_t i = 0; i < n; ++i) {
            column.push_back(wild && once(10) ? nasty() : real(-5, 5));
        }
        return column;
    }

    /// A polyline of n points; with `wild` there are points repeated exactly or nearly, and nasty coordinates.
    Points polyline(std::int32_t n, bool wild) {
        Points points;
        double at[3] = {real(-1, 1), real(-1, 1), real(-1, 1)};
        const bool nastyToo = wild && once(4);
        for (std::int32_t i = 0; i < n; ++i) {
            const double reach = !wild || once(2) ? 1 : once(2) ? 0 : 1e-6;
            for (double& coordinate : at) {
                coordinate += real(-0.5, 1) * reach;
            }
            points.x.push_back(nastyToo && once(9) ? nasty() : at[0]);
            points.y.push_back(nastyToo && once(9) ? nasty() : at[1]);
            points.z.push_back(nastyToo && once(9) ? nasty() : at[2]);
        }
        return points;
    }

private:
    std::mt19937_64 engine_;
};

} // namespace velmora::samples
