#include "rescue_format.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

#include "small_models.h"
#include "small_zones.h"

namespace velmora {
namespace {

constexpr double none = std::numeric_limits<double>::quiet_NaN();

PatchList oddPatches() {
    return {{{{0.1, -0.0, 1e-308}, {1.0 / 3.0, 1e300, none}}, {}, {{5e-324, 2, 3}}}, {}, {{{7, 8, 9}}}};
}

std::string encoded(const PatchList& patches, const zRegion_fe& zones = {}) {
    return encodeRescue("/a/My Wing.apt", "my wing.apt", false, patches, zones, {}, {});
}

/// Equal to the last bit, numbers that are none among them.
bool sameBits(const PatchList& a, const PatchList& b) {
    if (a.size() != b.size()) {
        return false;
    }
    for (std::size_t k = 0; k < a.size(); ++k) {
        if (a[k].size() != b[k].size()) {
            return false;
        }
        for (std::size_t n = 0; n < a[k].size(); ++n) {
            if (a[k][n].size() != b[k][n].size()) {
                return false;
            }
            for (std::size_t m = 0; m < a[k][n].size(); ++m) {
                const auto bits = [](const zVec<double>& p) {
                    return std::array{std::bit_cast<std::uint64_t>(p.x), std::bit_cast<std::uint64_t>(p.y),
                                      std::bit_cast<std::uint64_t>(p.z)};
                };
                if (bits(a[k][n][m]) != bits(b[k][n][m])) {
                    return false;
                }
            }
        }
    }
    return true;
}

zRegion_fe twoZones() {
    zRegion_fe region;
    region.title = "body";
    region.words = {1.5, 2.5, 3.5};
    for (const char* title : {"nose", ""}) {
        auto zone = std::make_unique<zBlock_fe>(3, 4, 1);
        zone->title = title;
        zone->connectivity = {0, 2, 1, -1};
        for (const char* name : {"x", "y", "z", "p"}) {
            zone->addVariable(name)->data = {1.0 / 3.0, -0.0, 1e17 + 2};
        }
        region.blocks.push_back(std::move(zone));
    }
    return region;
}

TEST(RescueFormat, BringsPatchesBackToTheLastBit) {
    const auto model = decodeRescue(encoded(oddPatches()));
    ASSERT_TRUE(model);
    EXPECT_TRUE(sameBits(model->patches, oddPatches()));
    EXPECT_EQ(model->path, "/a/My Wing.apt");
    EXPECT_EQ(model->title, "my wing.apt");
    EXPECT_TRUE(model->zones.blocks.empty() && model->fieldPatches.empty());
    EXPECT_FALSE(model->field.loaded || model->field.mode);
}

TEST(RescueFormat, BringsZonesBack) {
    const zRegion_fe zones = twoZones();
    const auto model = decodeRescue(encoded({}, zones));
    ASSERT_TRUE(model);
    ASSERT_EQ(model->zones.blocks.size(), 2U);
    EXPECT_EQ(model->zones.title, "body");
    EXPECT_EQ(model->zones.words, zones.words);
    for (std::size_t i = 0; i < 2; ++i) {
        const zBlock_fe& zone = *model->zones.blocks[i];
        const zBlock_fe& before = *zones.blocks[i];
        EXPECT_EQ(zone.title, before.title);
        EXPECT_EQ(zone.nodeCount, 3);
        EXPECT_EQ(zone.elementCount, 1);
        EXPECT_EQ(zone.connectivitySize, 4);
        EXPECT_EQ(zone.connectivity, before.connectivity);
        ASSERT_EQ(zone.variables.size(), 4U);
        for (std::size_t v = 0; v < 4; ++v) {
            EXPECT_EQ(zone.variables[v]->name, before.variables[v]->name);
            EXPECT_EQ(zone.variables[v]->data, before.variables[v]->data);
        }
    }
}

TEST(RescueFormat, BringsFieldValuesBack) {
    const PatchList grid = {test::flatPatch(2, 3)};
    const RescuedField field{true, true, 2, "TITLE = \"a\"", "VARIABLES = x y z p q"};
    const auto model = decodeRescue(encodeRescue("/f.dat", "f.dat", false, grid, {}, oddPatches(), field));
    ASSERT_TRUE(model);
    EXPECT_TRUE(sameBits(model->fieldPatches, oddPatches()));
    EXPECT_TRUE(model->field.loaded && model->field.mode);
    EXPECT_EQ(model->field.count, 2);
    EXPECT_EQ(model->field.titleLine, field.titleLine);
    EXPECT_EQ(model->field.variablesLine, field.variablesLine);
}

TEST(RescueFormat, NoPartOfACopyIsTakenForOne) {
    const std::string whole = encoded(oddPatches(), twoZones());
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_FALSE(decodeRescue(std::string_view(whole).substr(0, length))) << length;
    }
    EXPECT_FALSE(decodeRescue(whole + "x"));
    EXPECT_TRUE(decodeRescue(whole));
}

// Each byte in turn becomes 255: counts beyond all memory among them. What comes is a model or none.
TEST(RescueFormat, DamagedBytesEndInAModelOrNone) {
    const std::string whole = encoded({test::flatPatch(2, 3)}, twoZones());
    for (std::size_t i = 0; i < whole.size(); ++i) {
        std::string damaged = whole;
        damaged[i] = '\xff';
        if (const auto model = decodeRescue(damaged)) {
            for (const auto& zone : model->zones.blocks) {
                EXPECT_TRUE(consistent(*zone)) << i;
            }
        }
    }
}

TEST(RescueFormat, KnowsAModelThatIsInNoFileOfItsOwn) {
    const auto imported = decodeRescue(encodeRescue("/d/Untitled.apt", "Untitled.apt", true, oddPatches(), {}, {}, {}));
    ASSERT_TRUE(imported);
    EXPECT_TRUE(imported->imported);
    EXPECT_FALSE(decodeRescue(encoded(oddPatches()))->imported);
}

TEST(RescueFormat, ReadsCopiesOfTheProgramBefore) {
    std::string bytes = encoded(oddPatches());
    // Title, path and the first line stand in front of the byte that is new.
    const std::size_t flag =
        std::strlen("Velmora rescue 2\n") + 8 + std::strlen("/a/My Wing.apt") + 8 + std::strlen("my wing.apt");
    bytes.erase(flag, 1);
    EXPECT_FALSE(decodeRescue(bytes));
    bytes[std::strlen("Velmora rescue ")] = '1';
    const auto model = decodeRescue(bytes);
    ASSERT_TRUE(model);
    EXPECT_FALSE(model->imported);
    EXPECT_EQ(model->path, "/a/My Wing.apt");
    EXPECT_TRUE(sameBits(model->patches, oddPatches()));
}

} // namespace
} // namespace velmora
