#include "zSTLReader.h"

#include <array>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "stl_reference.h"
#include "triangle_tools.h"

namespace velmora {
namespace {

constexpr std::array<std::size_t, 4> blockSizes{1, 5, 64, TextStream::defaultBlockSize};

const std::vector<std::string> splinters{
    " ",     "\n",   " solid ", " endsolid ", " facet ",    " endloop ", " x ",     " 1e ", " 1e999 ",
    "-",     ".",    "e",       "7",          " endfacet ", " vertex ",  " 1 2 3 ", "\t",   std::string(1, '\0'),
    " nan ", "\xff", " 0x1 ",   " +5 "};

const std::string sample = "solid first part\n"
                           "  facet normal 0 0 1\n    outer loop\n      vertex 0 0 0\n      vertex 1.5 0 0\n"
                           "      vertex 0 1e1 0\n    endloop\n  endfacet\n"
                           "  facet normal 0 0 1\n    outer loop\n      vertex 0 0 0\n      vertex 2 0 0\n"
                           "      vertex 2 .5 0\n      vertex 0 2 -3.25\n      vertex -1 1 0\n    endloop\n  endfacet\n"
                           "endsolid first\n"
                           "solid second\n"
                           "  facet normal 1 0 0\n    outer loop\n      vertex 0 0 0\n      vertex 0 1 0\n"
                           "      vertex 0 0 1\n    endloop\n  endfacet\n"
                           "endsolid second\n";

class StlDifferential : public testing::Test {
protected:
    test::TemporaryFolder folder_;

    void compare(const std::string& text, std::size_t blockSize) const {
        const std::filesystem::path file = test::writeFileText(folder_ / "model.stl", text);
        zRegion_fe region;
        const std::string error = test::readWith<zSTLReader>(file, region, blockSize);
        const reference::TriangleFile expected = reference::readStl(file.string());
        EXPECT_EQ(error, expected.error);
        EXPECT_TRUE(test::sameZones(region, expected)) << "block " << blockSize << " text [" << text << "]";
    }
};

TEST_F(StlDifferential, EveryCutOfAFileIsReadAsByAStream) {
    for (std::size_t size = 0; size <= sample.size() && !HasFailure(); ++size) {
        compare(sample.substr(0, size), blockSizes[size % blockSizes.size()]);
    }
}

TEST_F(StlDifferential, DamagedFilesAreReadAsByAStream) {
    std::mt19937 random(41);
    for (int round = 0; round < 6000 && !HasFailure(); ++round) {
        compare(test::damaged(sample, random, splinters), blockSizes[random() % blockSizes.size()]);
    }
}

TEST_F(StlDifferential, WordSoupIsReadAsByAStream) {
    std::mt19937 random(42);
    for (int round = 0; round < 4000 && !HasFailure(); ++round) {
        std::string text = " solid a facet normal 0 0 0 ";
        for (std::size_t left = random() % 40; left > 0; --left) {
            text += splinters[random() % splinters.size()];
        }
        compare(text, blockSizes[random() % blockSizes.size()]);
    }
}

} // namespace
} // namespace velmora
