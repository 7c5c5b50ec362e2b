#pragma once

#include <array>
#include <cmath>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "exchange_tools.h"

namespace velmora::test {

/// Reads files by the process that holds the libraries.
class ReaderTest : public testing::Test {
protected:
    TemporaryFolder folder_;
    ExchangeModel model_;
    FileRead record_;
    ImportOptions options_;

    ImportOutcome read(const std::filesystem::path& path) {
        model_ = {};
        const ImportOutcome outcome = importFile(path, options_, model_, record_);
        for (const auto& zone : model_.region.blocks) {
            EXPECT_TRUE(consistent(*zone));
        }
        return outcome;
    }
    ImportOutcome readText(const std::string& name, const std::string& text) {
        return read(writeFileText(folder_ / name, text));
    }

    double area() const {
        double sum = 0.0;
        for (const Corners& c : cornersOf(model_)) {
            const zVec<double> a(c[0][0], c[0][1], c[0][2]);
            const zVec<double> n =
                cross(zVec<double>(c[1][0], c[1][1], c[1][2]) - a, zVec<double>(c[2][0], c[2][1], c[2][2]) - a);
            sum += 0.5 * std::sqrt(dot(n, n));
        }
        return sum;
    }
    /// Six times what the triangles enclose, above 0 when they look outwards.
    double volume() const {
        double sum = 0.0;
        for (const Corners& c : cornersOf(model_)) {
            sum += dot(zVec<double>(c[0][0], c[0][1], c[0][2]),
                       cross(zVec<double>(c[1][0], c[1][1], c[1][2]), zVec<double>(c[2][0], c[2][1], c[2][2]))) /
                   6.0;
        }
        return sum;
    }
    void expectBox(const std::array<double, 6>& bounds, double tolerance) const {
        zVec<double> lower(1e300, 1e300, 1e300);
        zVec<double> upper(-1e300, -1e300, -1e300);
        zoneBounds(model_.region, lower, upper);
        patchBounds(model_.patches, lower, upper);
        const std::array<double, 6> found = {lower.x, upper.x, lower.y, upper.y, lower.z, upper.z};
        for (std::size_t side = 0; side < 6; ++side) {
            EXPECT_NEAR(found.at(side), bounds.at(side), tolerance) << side;
        }
    }
};

} // namespace velmora::test
