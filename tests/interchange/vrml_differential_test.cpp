#include "zVRMLReader.h"

#include <array>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "triangle_tools.h"
#include "vrml_reference.h"

namespace velmora {
namespace {

constexpr std::array<std::size_t, 4> blockSizes{1, 5, 64, TextStream::defaultBlockSize};

const std::vector<std::string> splinters{" ",
                                         "\n",
                                         "{",
                                         "}",
                                         " [ ",
                                         " ] ",
                                         "(",
                                         ")",
                                         "\"",
                                         "\\",
                                         "-1 ",
                                         " -1 ",
                                         "7 ",
                                         " 1e ",
                                         "1e999 ",
                                         " 0.5 ",
                                         ",",
                                         "I",
                                         " NULL ",
                                         " TRUE ",
                                         "coord",
                                         "x ",
                                         " point [ ",
                                         " solid 5 ",
                                         "#VRML V1",
                                         "IndexedFaceSet",
                                         " coordIndex [ ",
                                         "\xff",
                                         " 99999999999 ",
                                         std::string(1, '\0')};

const std::string sample =
    "#VRML V2.0 utf8\n"
    "DEF a Shape { appearance Appearance { }\n geometry IndexedFaceSet {\n  solid FALSE creaseAngle 0.5\n"
    "  coord Coordinate { point [ 0 0 0 1 0 0\n 1 1 0 0 1 0 0.5 0.5 2.25 ] }\n"
    "  color Color { color [ 1 0 \"]}\\\"\" ( 0 ] }\n"
    "  coordIndex [ 0 1 2 3 -1 0 1 4 -1 2 3 4 1 0 ]\n } }\n"
    "Shape { geometry IndexedFaceSet { coordIndex[0 1 2 -1] texCoordIndex [ 1 2 3 [ 4 ] ]\n"
    "  coord DEF p Coordinate { point [ 1 2 3 ] } } }\n"
    "Shape { geometry IndexedFaceSet { coordIndex[2 1 0]coord Coordinate{point[0 0 0 5 0 0 0 7 0]} } }";

class VrmlDifferential : public testing::Test {
protected:
    test::TemporaryFolder folder_;

    void compare(const std::string& text, std::size_t blockSize) const {
        const std::filesystem::path file = test::writeFileText(folder_ / "model.wrl", text);
        const test::CapturedErrors silence;
        zRegion_fe region;
        const std::string error = test::readWith<zVRMLReader>(file, region, blockSize);
        const reference::TriangleFile expected = reference::readVrml(file.string());
        EXPECT_EQ(error, expected.error) << "text [" << text << "]";
        EXPECT_TRUE(test::sameZones(region, expected)) << "block " << blockSize << " text [" << text << "]";
    }
};

TEST_F(VrmlDifferential, EveryCutOfAFileIsReadAsByAStream) {
    for (std::size_t size = 0; size <= sample.size() && !HasFailure(); ++size) {
        compare(sample.substr(0, size), blockSizes[size % blockSizes.size()]);
    }
}

TEST_F(VrmlDifferential, DamagedFilesAreReadAsByAStream) {
    std::mt19937 random(43);
    for (int round = 0; round < 8000 && !HasFailure(); ++round) {
        compare(test::damaged(sample, random, splinters), blockSizes[random() % blockSizes.size()]);
    }
}

TEST_F(VrmlDifferential, WordSoupWithinANodeIsReadAsByAStream) {
    std::mt19937 random(44);
    for (int round = 0; round < 4000 && !HasFailure(); ++round) {
        std::string text = "#VRML V2.0 utf8\nIndexedFaceSet { coord Coordinate { point [ 0 0 0 1 0 0 0 1 0 ";
        for (std::size_t left = random() % 30; left > 0; --left) {
            text += splinters[random() % splinters.size()];
        }
        compare(text, blockSizes[random() % blockSizes.size()]);
    }
}

TEST_F(VrmlDifferential, DamagedFirstLinesAreReadAsByAStream) {
    std::mt19937 random(45);
    const std::vector<std::string> pieces{"#VRML V", "#vrml v", "2.0", "1.0", "2",  "0",   ".", " ",
                                          "utf8",    "\n",      "\r",  "3",   "22", "000", "x"};
    for (int round = 0; round < 4000 && !HasFailure(); ++round) {
        std::string text = round % 2 == 0 ? "#VRML V" : "";
        for (std::size_t left = random() % 7; left > 0; --left) {
            text += pieces[random() % pieces.size()];
        }
        compare(text, blockSizes[random() % blockSizes.size()]);
    }
}

} // namespace
} // namespace velmora
