#include "ply_import.h"

#include <gmock/gmock.h>

#include "exchange_tools.h"

namespace velmora::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Triangle = std::array<std::int32_t, 3>;

Imported read(const std::string& text, const ImportOptions& options = {}) {
    return importText(importPly, text, options);
}

std::string header(const std::string& form, const std::string& number = "double", const std::string& list = "uchar int",
                   const std::string& name = "vertex_indices") {
    return "ply\nformat " + form + " 1.0\ncomment made by hand\nelement vertex 4\nproperty " + number +
           " x\nproperty " + number + " y\nproperty " + number + " z\nelement face 2\nproperty list " + list + ' ' +
           name + "\nend_header\n";
}

const std::vector<double> points = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0};
const std::string textBody = "0 0 0\n1 0 0\n1 1 0\n0 1 0\n3 0 1 2\n3 0 2 3\n";

void expectSquare(const Imported& file) {
    ASSERT_EQ(file.model.region.blocks.size(), 1U);
    EXPECT_THAT(nodesOf(*file.model.region.blocks[0]),
                ElementsAre(Point{0, 0, 0}, Point{1, 0, 0}, Point{1, 1, 0}, Point{0, 1, 0}));
    EXPECT_THAT(trianglesOf(*file.model.region.blocks[0]), ElementsAre(Triangle{0, 1, 2}, Triangle{0, 2, 3}));
    EXPECT_TRUE(file.record.complete);
    EXPECT_TRUE(file.record.lossless);
    EXPECT_EQ(file.record.found, (Counts{{"points", 4}, {"faces", 2}, {"triangles", 2}}));
    EXPECT_EQ(file.record.kept, file.record.found);
}

TEST(PlyImport, TextIsReadWithEitherNameOfTheList) {
    expectSquare(read(header("ascii") + textBody));
    expectSquare(read(header("ascii", "float", "uint8 uint32", "vertex_index") + textBody));
    EXPECT_EQ(read(header("ascii") + textBody).record.format, "ply");
}

TEST(PlyImport, TextHasEveryDigitOfADouble) {
    const Imported file =
        read("ply\nformat ascii 1.0\nelement vertex 3\nproperty float x\nproperty float y\nproperty float z\n"
             "element face 1\nproperty list uchar int vertex_indices\nend_header\n"
             "0.1 0 0\n0.30000000000000004 0 0\n0 1e-300 0\n3 0 1 2\n");
    EXPECT_THAT(nodesOf(*file.model.region.blocks[0]),
                ElementsAre(Point{0.1, 0, 0}, Point{0.30000000000000004, 0, 0}, Point{0, 1e-300, 0}));
}

template <class Number, class Count, class Index>
void expectBinary(const std::string& number, const std::string& list) {
    for (const bool highestFirst : {false, true}) {
        Bytes bytes(highestFirst);
        bytes.addText(header(highestFirst ? "binary_big_endian" : "binary_little_endian", number, list));
        bytes.addAll<Number>(points);
        bytes.add(Count{3}).template addAll<Index>({0, 1, 2}).add(Count{3}).template addAll<Index>({0, 2, 3});
        expectSquare(read(bytes.text));
    }
}

TEST(PlyImport, BinaryNumbersOfAnyTypeAndOrderAreRead) {
    expectBinary<double, std::uint8_t, std::int32_t>("double", "uchar int");
    expectBinary<float, std::uint8_t, std::uint32_t>("float", "uchar uint");
    expectBinary<std::int8_t, std::int8_t, std::int8_t>("char", "char char");
    expectBinary<std::uint8_t, std::uint16_t, std::uint8_t>("uchar", "ushort uchar");
    expectBinary<std::int16_t, std::int16_t, std::int16_t>("short", "int16 short");
    expectBinary<std::uint16_t, std::uint32_t, std::uint16_t>("ushort", "uint32 uint16");
    expectBinary<std::int32_t, std::int32_t, std::int32_t>("int", "int int32");
    expectBinary<std::uint32_t, std::uint8_t, float>("uint", "uchar float");
    expectBinary<double, double, double>("float64", "float64 float64");
}

TEST(PlyImport, AHeaderMayEndItsLinesInAnyWay) {
    for (const std::string& end : std::vector<std::string>{"\r\n", "\r"}) {
        std::string head;
        for (const char c : header("binary_little_endian", "float")) {
            head += c == '\n' ? end : std::string(1, c);
        }
        Bytes bytes;
        bytes.addText(head).addAll<float>(points);
        bytes.add(std::uint8_t{3}).addAll<std::int32_t>({0, 1, 2}).add(std::uint8_t{3}).addAll<std::int32_t>({0, 2, 3});
        expectSquare(read(bytes.text));
    }
}

TEST(PlyImport, OtherPropertiesAndElementsArePassedOverAndTold) {
    const Imported file =
        read("ply\nformat ascii 1.0\nobj_info x\nelement camera 1\nproperty float view\nelement vertex 3\n"
             "property uchar red\nproperty double z\nproperty double y\nproperty double nx\nproperty double x\n"
             "element face 1\nproperty uchar flags\nproperty list uchar float texcoord\n"
             "property list uchar int vertex_indices\nelement edge 1\nproperty int vertex1\n"
             "end_header\n0.5\n255 0 0 1 0\n255 0 0 1 1\n255 0 1 1 0\n7 2 0.5 0.5 3 0 1 2\n0\n");
    EXPECT_THAT(cornersOf(file.model), ElementsAre(Corners{{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}}));
    EXPECT_TRUE(file.record.complete);
    EXPECT_FALSE(file.record.lossless);
    EXPECT_THAT(file.record.reasons, ElementsAre("Values that are not kept: view, red, flags, texcoord, vertex1"));
}

TEST(PlyImport, NormalsAloneAreNoLoss) {
    const Imported file =
        read("ply\nformat ascii 1.0\nelement vertex 3\nproperty float x\nproperty float y\nproperty float z\n"
             "property float nx\nproperty float ny\nproperty float nz\nelement face 1\n"
             "property list uchar int vertex_indices\nend_header\n0 0 0 0 0 1\n1 0 0 0 0 1\n0 1 0 0 0 1\n3 0 1 2\n");
    EXPECT_TRUE(file.record.lossless);
}

// Every other triangle of a strip runs the other way round; -1 begins a new one.
TEST(PlyImport, StripsBecomeTriangles) {
    const Imported file =
        read("ply\nformat ascii 1.0\nelement vertex 4\nproperty float x\nproperty float y\nproperty float z\n"
             "element tristrips 1\nproperty list int int vertex_indices\nend_header\n"
             "0 0 0\n1 0 0\n0 1 0\n1 1 0\n8 0 1 2 3 -1 3 1 0\n");
    EXPECT_THAT(trianglesOf(*file.model.region.blocks[0]),
                ElementsAre(Triangle{0, 1, 2}, Triangle{2, 1, 3}, Triangle{3, 1, 0}));
}

TEST(PlyImport, AFileThatIsCutKeepsItsWholeFaces) {
    const Imported text = read(header("ascii") + "0 0 0\n1 0 0\n1 1 0\n0 1 0\n3 0 1 2\n3 0 2");
    EXPECT_EQ(kept(text, "faces"), 1);
    EXPECT_EQ(found(text, "faces"), 2);
    EXPECT_FALSE(text.record.complete);
    EXPECT_THAT(text.record.reasons, testing::Contains("Rows of \"face\" that the file does not have: 1"));
    Bytes bytes;
    bytes.addText(header("binary_little_endian")).addAll<double>(points);
    bytes.add(std::uint8_t{3}).addAll<std::int32_t>({0, 1, 2}).add(std::uint8_t{3}).addAll<std::int32_t>({0, 2});
    EXPECT_EQ(kept(read(bytes.text), "faces"), 1);
}

TEST(PlyImport, FacesBehindTheNumberInTheHeaderAreTold) {
    const Imported file = read(header("ascii") + textBody + "3 0 1 3\n");
    ASSERT_EQ(file.model.region.blocks.size(), 1U);
    EXPECT_THAT(trianglesOf(*file.model.region.blocks[0]), ElementsAre(Triangle{0, 1, 2}, Triangle{0, 2, 3}));
    EXPECT_FALSE(file.record.complete);
    EXPECT_THAT(file.record.reasons,
                ElementsAre("What stands behind the last element that the header tells of is not read"));
    expectSquare(read(header("ascii") + textBody + " \n\n"));
}

TEST(PlyImport, ALastNumberThatGoesOnLosesItsFace) {
    const std::string whole = "ply\nformat ascii 1.0\nelement vertex 3\nproperty float x\nproperty float y\n"
                              "property float z\nelement face 1\nproperty list uchar int vertex_indices\n"
                              "end_header\n0 0 0\n1 0 0\n0 1 0\n3 0 1 2";
    EXPECT_TRUE(importText(importPly, whole + "\n").record.complete);
    EXPECT_TRUE(importText(importPly, whole).record.complete);
    EXPECT_FALSE(importText(importPly, whole + ",5\n").record.complete);
}

TEST(PlyImport, CountsThatTheFileDoesNotHaveAskForNoMemory) {
    const Imported file =
        read("ply\nformat binary_little_endian 1.0\nelement vertex 9000000000000000000\nproperty float x\n"
             "property float y\nproperty float z\nelement face 2147483647\n"
             "property list uint int vertex_indices\nend_header\n\xFF\xFF\xFF\xFF");
    EXPECT_TRUE(file.model.empty());
    EXPECT_FALSE(file.record.complete);
    const Imported list =
        read(header("binary_little_endian", "float", "uint int") + std::string(48, '\0') + "\xFF\xFF\xFF\xFF");
    EXPECT_TRUE(list.model.empty());
    EXPECT_FALSE(list.record.complete);
    const Imported rows =
        read("ply\nformat ascii 1.0\nelement nothing 9000000000000000000\nelement vertex 0\nend_header\n");
    EXPECT_TRUE(rows.model.empty());
}

TEST(PlyImport, WrongCornersLoseTheirFaceAlone) {
    const std::string body = "0 0 0\n1 0 0\n1 nan 0\n0 1 0\n";
    const Imported outside = read(header("ascii") + body + "3 0 1 4\n3 0 1 3\n");
    EXPECT_EQ(kept(outside, "faces"), 1);
    EXPECT_FALSE(outside.record.complete);
    const Imported notFinite = read(header("ascii") + body + "3 0 1 2\n3 0 1 3\n");
    EXPECT_EQ(kept(notFinite, "faces"), 1);
    EXPECT_THAT(notFinite.record.reasons, ElementsAre("Faces with coordinates that are not finite: 1"));
    const Imported negative = read(header("ascii") + textBody.substr(0, 24) + "3 0 1 -1\n3 0 1 2.5\n");
    EXPECT_TRUE(negative.model.empty());
}

TEST(PlyImport, WhatIsNoPlyFileGivesNothing) {
    for (const char* const text :
         {"x", "ply", "ply\nformat weird 1.0\nend_header\n", "ply\nformat ascii 1.0\nproperty float x\nend_header\n",
          "ply\nformat ascii 1.0\nelement vertex -1\nend_header\n", "ply\nformat ascii 1.0\nelement vertex 1\n",
          "ply\nformat ascii 1.0\nelement vertex 1\nproperty quad x\nend_header\n"}) {
        const Imported file = read(text);
        EXPECT_TRUE(file.model.empty());
        EXPECT_FALSE(file.record.complete);
        EXPECT_THAT(file.record.reasons, ElementsAre("The header is not that of a PLY file")) << text;
    }
    EXPECT_TRUE(read("").record.complete);
    EXPECT_THAT(read("").record.reasons, IsEmpty());
}

} // namespace
} // namespace velmora::test
