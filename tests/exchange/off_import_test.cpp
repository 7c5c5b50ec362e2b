#include "off_import.h"

#include <gmock/gmock.h>

#include "exchange_tools.h"

namespace velmora::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

Imported read(const std::string& text, const ImportOptions& options = {}) {
    return importText(importOff, text, options);
}

const Corners triangle = {{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}};
const std::string body = "0 0 0\n1 0 0\n0 1 0\n3 0 1 2\n";

TEST(OffImport, EveryHeaderIsTaken) {
    for (const std::string& text : std::vector<std::string>{
             "OFF\n3 1 3\n" + body, "OFF 3 1 3\n" + body, "OFF\n# counts\n3 1\n" + body, "3 1 3\n" + body,
             "off\r\n3 1 3\r\n" + body, "# first\nOFF # header\n\n3 1 3 # counts\n" + body,
             std::string("NOFF\n3 1 3\n0 0 0 0 0 1\n1 0 0 0 0 1\n0 1 0 0 0 1\n3 0 1 2\n"),
             std::string("nOFF\n3\n3 1 3\n") + body,
             std::string("OFF 3 1 3 0 0 0 1 0 0 0 1 0 3 0 1 2").replace(9, 1, "\n")}) {
        const Imported file = read(text);
        EXPECT_THAT(cornersOf(file.model), ElementsAre(triangle)) << text;
        EXPECT_TRUE(file.record.complete) << text;
        EXPECT_TRUE(file.record.lossless) << text;
        EXPECT_EQ(file.record.format, "off");
        EXPECT_EQ(file.record.kept, (Counts{{"points", 3}, {"faces", 1}, {"triangles", 1}}));
        EXPECT_EQ(file.record.found, file.record.kept);
    }
}

TEST(OffImport, ColoursAndTexturesArePassedOverAndTold) {
    for (const char* const text : {"COFF\n3 1 3\n0 0 0 255 0 0 255\n1 0 0 0 0 0 255\n0 1 0 0 0 0 255\n3 0 1 2\n",
                                   "OFF\n3 1 3\n0 0 0\n1 0 0\n0 1 0\n3 0 1 2 255 0 0\n"}) {
        const Imported file = read(text);
        EXPECT_THAT(cornersOf(file.model), ElementsAre(triangle));
        EXPECT_TRUE(file.record.complete);
        EXPECT_THAT(file.record.reasons, ElementsAre("Colours are not kept"));
    }
    const Imported all = read(
        "STCN4OFF\n3 1 3\n0 0 0 1 0 0 1 1 1 1 1 0 0\n2 0 0 2 0 0 1 1 1 1 1 0 0\n0 1 0 1 0 0 1 1 1 1 1 0 0\n3 0 1 2\n");
    EXPECT_THAT(cornersOf(all.model), ElementsAre(triangle)); // (2, 0, 0) over 2
    EXPECT_THAT(all.record.reasons, ElementsAre("Colours are not kept", "Texture coordinates are not kept"));
}

TEST(OffImport, ABinaryFileHasTheHighestByteFirst) {
    Bytes bytes(true);
    bytes.addText("OFF BINARY\n").addAll<std::int32_t>({4, 2, 0}).addAll<float>({0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1});
    bytes.addAll<std::int32_t>({3, 0, 1, 2, 0, 3, 0, 1, 3, 0});
    const Imported file = read(bytes.text);
    EXPECT_THAT(cornersOf(file.model), ElementsAre(triangle, Corners{{{0, 0, 0}, {1, 0, 0}, {0, 0, 1}}}));
    EXPECT_TRUE(file.record.complete);
    const Imported cut = read(bytes.text.substr(0, bytes.text.size() - 5));
    EXPECT_THAT(cornersOf(cut.model), ElementsAre(triangle));
    EXPECT_FALSE(cut.record.complete);
}

TEST(OffImport, AFileThatIsCutKeepsItsWholeFaces) {
    const Imported file = read("OFF\n3 2 0\n" + body + "3 0 1");
    EXPECT_THAT(cornersOf(file.model), ElementsAre(triangle));
    EXPECT_EQ(found(file, "faces"), 2);
    EXPECT_EQ(kept(file, "faces"), 1);
    EXPECT_THAT(file.record.reasons, ElementsAre("Faces that the file does not have: 1"));
    const Imported points = read("OFF\n5 2 0\n0 0 0\n1 0 0\n");
    EXPECT_TRUE(points.model.empty());
    EXPECT_EQ(found(points, "points"), 5);
    EXPECT_FALSE(points.record.complete);
}

TEST(OffImport, FacesBehindTheNumberInTheHeaderAreTold) {
    Bytes bytes(true);
    bytes.addText("OFF BINARY\n").addAll<std::int32_t>({3, 1, 0}).addAll<float>({0, 0, 0, 1, 0, 0, 0, 1, 0});
    bytes.addAll<std::int32_t>({3, 0, 1, 2, 0, 3, 0, 1, 2, 0});
    for (const std::string& text : {"OFF\n3 1 0\n" + body + "3 0 2 1\n", bytes.text}) {
        const Imported file = read(text);
        EXPECT_THAT(cornersOf(file.model), ElementsAre(triangle));
        EXPECT_FALSE(file.record.complete);
        EXPECT_THAT(file.record.reasons,
                    ElementsAre("What stands behind the last face that the header tells of is not read"));
    }
    EXPECT_TRUE(read("OFF\n3 1 0\n" + body + "\n# end\n").record.lossless);
}

TEST(OffImport, ANumberThatGoesOnEndsTheReadingAndIsNotTakenForItsBeginning) {
    const Imported point = read("OFF\n3 1 3\n0 0 0\n1 0 0\n0 1 0,5\n3 0 1 2\n");
    EXPECT_FALSE(point.record.complete);
    EXPECT_TRUE(point.model.empty());
    const Imported corner = read("OFF\n3 2 3\n0 0 0\n1 0 0\n0 1 0\n3 0 1 2\n3 0 2 1,5\n");
    EXPECT_FALSE(corner.record.complete);
    EXPECT_THAT(cornersOf(corner.model), ElementsAre(triangle));
}

TEST(OffImport, PolygonsAndWrongCorners) {
    const Imported file = read("OFF\n4 4 0\n0 0 0\n1 0 0\n1 1 0\n0 1 0\n4 0 1 2 3\n3 0 1 4\n2 0 1\n3 0 1 -1\n");
    EXPECT_EQ(kept(file, "faces"), 1);
    EXPECT_EQ(kept(file, "triangles"), 2);
    EXPECT_THAT(file.record.reasons,
                ElementsAre("Faces of fewer than three corners: 1", "Faces with points that are not there: 2"));
    EXPECT_THAT(file.record.changed, ElementsAre("Polygons that became triangles: 1"));
}

TEST(OffImport, HugeCountsAskForNoMemory) {
    for (const char* const counts : {"9000000000000000000 1", "2147483647 2147483647", "3 9007199254740991"}) {
        const Imported file = read("OFF\n" + std::string(counts) + " 0\n0 0 0\n");
        EXPECT_TRUE(file.model.empty()) << counts;
        EXPECT_FALSE(file.record.complete);
    }
}

TEST(OffImport, WhatIsNoOffFileGivesNothing) {
    for (const char* const text :
         {"x", "OFF", "OFF\n-1 2 3\n", "OFF x", "XOFF\n3 1 3\n", "nOFF\n4\n3 1 3\n", "OFF BINARY\n\1"}) {
        const Imported file = read(text);
        EXPECT_TRUE(file.model.empty());
        EXPECT_THAT(file.record.reasons, ElementsAre("The header is not that of an OFF file")) << text;
    }
    EXPECT_THAT(read("").record.reasons, IsEmpty());
    EXPECT_TRUE(read("").record.complete);
}

} // namespace
} // namespace velmora::test
