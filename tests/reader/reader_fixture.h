#pragma once

#include <array>
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

    double area() const { return areaOf(model_); }
    /// What the triangles enclose, above 0 when they look outwards.
    double volume() const {
        double sum = 0.0;
        for (const Corners& c : cornersOf(model_)) {
            sum += dot(vectorOf(c[0]), normalOf(c)) / 6.0;
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
