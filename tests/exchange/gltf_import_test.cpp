#include "gltf_import.h"

#include <cmath>
#include <limits>

#include <gmock/gmock.h>

#include "exchange_tools.h"

namespace velmora::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

std::string base64(const std::string& bytes) {
    const std::string letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        std::uint32_t bits = 0;
        for (std::size_t k = 0; k < 3; ++k) {
            bits = bits << 8 | (i + k < bytes.size() ? static_cast<unsigned char>(bytes[i + k]) : 0U);
        }
        for (std::size_t k = 0; k < 4; ++k) {
            text += i + k > bytes.size() ? '=' : letters[bits >> (18 - 6 * k) & 63];
        }
    }
    return text;
}

std::string inQuotes(std::string text) {
    for (char& c : text) {
        c = c == '\'' ? '"' : c;
    }
    return text;
}

/// Four corners of a square and six indices of two bytes: 48 and 12 bytes.
std::string squareBytes() {
    Bytes bytes;
    bytes.addAll<float>({0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0});
    for (const int index : {0, 1, 2, 0, 2, 3}) {
        bytes.add(static_cast<std::uint16_t>(index));
    }
    return bytes.text;
}

const std::string squareViews =
    "'bufferViews':[{'buffer':0,'byteLength':48},{'buffer':0,'byteOffset':48,'byteLength':12}],"
    "'accessors':[{'bufferView':0,'componentType':5126,'count':4,'type':'VEC3'},"
    "{'bufferView':1,'componentType':5123,'count':6,'type':'SCALAR'}],";
const std::string squareMesh = "'meshes':[{'name':'plate','primitives':[{'attributes':{'POSITION':0},'indices':1}]}],";

std::string bufferOf(const std::string& bytes) {
    return "'buffers':[{'byteLength':" + std::to_string(bytes.size()) +
           ",'uri':'data:application/octet-stream;base64," + base64(bytes) + "'}],";
}

/// A scene with the square; `nodes` are its nodes, of which the first is the root.
std::string scene(const std::string& nodes, const std::string& mesh = squareMesh) {
    return inQuotes("{'asset':{'version':'2.0'}," + bufferOf(squareBytes()) + squareViews + mesh + "'nodes':[" + nodes +
                    "],'scenes':[{'nodes':[0]}],'scene':0}");
}

std::string chunk(const char* kind, const std::string& bytes) {
    return Bytes().add(static_cast<std::uint32_t>(bytes.size())).addText(std::string_view(kind, 4)).addText(bytes).text;
}

std::string binaryFile(const std::string& json, const std::string& bytes) {
    const std::string chunks = chunk("JSON", json) + chunk("BIN\0", bytes);
    return Bytes().addText("glTF").add(std::uint32_t{2}).add(static_cast<std::uint32_t>(12 + chunks.size())).text +
           chunks;
}

class GltfImport : public testing::Test {
protected:
    TemporaryFolder folder_;

    Imported read(const std::string& text, const ImportOptions& options = {}) {
        Imported result;
        importGltf(text, folder_.path(), options, result.model, result.record);
        for (const auto& zone : result.model.region.blocks) {
            EXPECT_TRUE(consistent(*zone));
        }
        return result;
    }
};

const Corners firstHalf = {{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}}};
const Corners secondHalf = {{{0, 0, 0}, {1, 1, 0}, {0, 1, 0}}};

TEST_F(GltfImport, AMeshOfANodeIsAZoneUnderTheNodesName) {
    const Imported file = read(scene("{'name':'left wing','mesh':0}"));
    EXPECT_THAT(titlesOf(file.model), ElementsAre("left wing"));
    EXPECT_THAT(cornersOf(file.model), ElementsAre(firstHalf, secondHalf));
    EXPECT_EQ(file.model.region.blocks[0]->nodeCount, 4);
    EXPECT_EQ(file.record.format, "gltf");
    EXPECT_TRUE(file.record.complete);
    EXPECT_EQ(file.record.found, (Counts{{"zones", 1}, {"points", 4}, {"faces", 2}, {"triangles", 2}}));
    EXPECT_EQ(file.record.kept, file.record.found);
    EXPECT_THAT(file.record.changed, IsEmpty());
}

TEST_F(GltfImport, TheNearestNameAboveTheMeshIsTheTitle) {
    EXPECT_THAT(titlesOf(read(scene("{'name':'aircraft','children':[1]},{'children':[2]},{'mesh':0}")).model),
                ElementsAre("aircraft"));
    EXPECT_THAT(titlesOf(read(scene("{'name':'aircraft','children':[1]},{'name':'tail','mesh':0}")).model),
                ElementsAre("tail"));
    EXPECT_THAT(titlesOf(read(scene("{'mesh':0}")).model), ElementsAre("plate"));
}

// A child at (0,0,1), scaled by 2, under a parent turned a quarter round z: (x,y,z) goes to (-2y, 2x, 2z + 1).
TEST_F(GltfImport, PlacesOfNodesAreApplied) {
    const double half = std::sqrt(0.5);
    const Imported file = read(scene("{'rotation':[0,0," + std::to_string(half) + "," + std::to_string(half) +
                                     "],'children':[1]},{'translation':[0,0,1],'scale':[2,2,2],'mesh':0}"));
    const std::vector<Point> wanted = {{0, 0, 1}, {0, 2, 1}, {-2, 2, 1}, {-2, 0, 1}};
    const std::vector<Point> nodes = nodesOf(*file.model.region.blocks[0]);
    ASSERT_EQ(nodes.size(), wanted.size());
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        for (std::size_t axis = 0; axis < 3; ++axis) {
            EXPECT_NEAR(nodes[i].at(axis), wanted[i].at(axis), 1e-5); // six digits of the turn
        }
    }
    EXPECT_THAT(file.record.changed, ElementsAre("Nodes whose place became part of their points: 1"));
    EXPECT_TRUE(file.record.complete);
    EXPECT_FALSE(file.record.lossless);
}

// The matrix stands column by column: (x,y,z) goes to (x + 2y + 10, y + 20, z + 30).
TEST_F(GltfImport, AMatrixIsAPlaceToo) {
    const Imported file = read(scene("{'matrix':[1,0,0,0, 2,1,0,0, 0,0,1,0, 10,20,30,1],'mesh':0}"));
    EXPECT_THAT(nodesOf(*file.model.region.blocks[0]),
                ElementsAre(Point{10, 20, 30}, Point{11, 20, 30}, Point{13, 21, 30}, Point{12, 21, 30}));
}

TEST_F(GltfImport, AMirroredNodeKeepsItsOutside) {
    const Imported file = read(scene("{'scale':[-1,1,1],'mesh':0}"));
    EXPECT_THAT(cornersOf(file.model),
                ElementsAre(Corners{{{0, 0, 0}, {-1, 1, 0}, {-1, 0, 0}}}, Corners{{{0, 0, 0}, {0, 1, 0}, {-1, 1, 0}}}));
}

TEST_F(GltfImport, AMeshThatStandsAtTwoNodesIsTwoZones) {
    const Imported file =
        read(scene("{'name':'a','mesh':0,'children':[1]},{'name':'b','translation':[5,0,0],'mesh':0}"));
    EXPECT_THAT(titlesOf(file.model), ElementsAre("a", "b"));
    EXPECT_EQ(nodeAt(*file.model.region.blocks[1], 1), (Point{6, 0, 0}));
    EXPECT_EQ(kept(file, "triangles"), 4);
}

TEST_F(GltfImport, PrimitivesOfANodeShareTheirZoneAndTheirPoints) {
    const Imported file =
        read(scene("{'mesh':0}", "'meshes':[{'primitives':[{'attributes':{'POSITION':0},'indices':1},"
                                 "{'attributes':{'POSITION':0},'mode':5},{'attributes':{'POSITION':0},'mode':6}]}],"));
    ASSERT_THAT(file.model.region.blocks, SizeIs(1));
    EXPECT_EQ(file.model.region.blocks[0]->nodeCount, 4);
    using Triangle = std::array<std::int32_t, 3>;
    EXPECT_THAT(trianglesOf(*file.model.region.blocks[0]),
                ElementsAre(Triangle{0, 1, 2}, Triangle{0, 2, 3}, Triangle{0, 1, 2}, Triangle{1, 3, 2},
                            Triangle{1, 2, 0}, Triangle{2, 3, 0}));
}

TEST_F(GltfImport, LinesAndPointsAreTold) {
    const Imported file = read(scene("{'mesh':0}", "'meshes':[{'primitives':[{'attributes':{'POSITION':0},'indices':1},"
                                                   "{'attributes':{'POSITION':0},'mode':1}]}],"));
    EXPECT_FALSE(file.record.complete);
    EXPECT_THAT(file.record.reasons, ElementsAre("Meshes of lines or points, which are no polygons: 1"));
    EXPECT_EQ(kept(file, "triangles"), 2);
}

TEST_F(GltfImport, TheBinaryFormHasItsBufferBehindTheTree) {
    const std::string json = inQuotes("{'asset':{'version':'2.0'},'buffers':[{'byteLength':60}]," + squareViews +
                                      squareMesh + "'nodes':[{'mesh':0}]}");
    EXPECT_THAT(cornersOf(read(binaryFile(json, squareBytes())).model), ElementsAre(firstHalf, secondHalf));
}

// Six bytes less: the last triangle's corners are gone, its points are not.
TEST_F(GltfImport, OfABinaryFileThatIsCutTheWholePartsAreKept) {
    const std::string json = inQuotes("{'asset':{'version':'2.0'},'buffers':[{'byteLength':60}]," + squareViews +
                                      squareMesh + "'nodes':[{'mesh':0}]}");
    std::string bytes = binaryFile(json, squareBytes());
    bytes.resize(bytes.size() - 6);
    const Imported file = read(bytes);
    EXPECT_THAT(cornersOf(file.model), ElementsAre(firstHalf));
    EXPECT_THAT(file.record.reasons, ElementsAre("The file ends too early", "Corners beyond the end of their data: 3"));
    EXPECT_FALSE(file.record.complete);
}

TEST_F(GltfImport, ABufferInTheFolderIsReadAndOneOutsideIsNot) {
    const auto with = [](const std::string& uri) {
        return inQuotes("{'asset':{'version':'2.0'},'buffers':[{'byteLength':60,'uri':'" + uri + "'}]," + squareViews +
                        squareMesh + "'nodes':[{'mesh':0}]}");
    };
    std::filesystem::create_directories(folder_ / "own/parts");
    writeFileText(folder_ / "secret.bin", squareBytes());
    writeFileText(folder_ / "own/parts/a b.bin", squareBytes());
    std::filesystem::create_symlink(folder_ / "secret.bin", folder_ / "own/link.bin");
    const std::filesystem::path own = folder_ / "own";
    const auto readIn = [&own](const std::string& text) {
        Imported result;
        importGltf(text, own, {}, result.model, result.record);
        return result;
    };
    EXPECT_THAT(cornersOf(readIn(with("parts/a%20b.bin")).model), SizeIs(2));
    for (const std::string& uri :
         {std::string("../secret.bin"), std::string("parts/../../secret.bin"), (folder_ / "secret.bin").string(),
          std::string("file:secret.bin"), std::string("http://example.org/secret.bin"), std::string("link.bin"),
          std::string("%2e%2e/secret.bin"), std::string("")}) {
        const Imported file = readIn(with(uri));
        EXPECT_TRUE(file.model.empty()) << uri;
        ASSERT_FALSE(file.record.reasons.empty()) << uri;
        EXPECT_EQ(file.record.reasons.front(), "Files outside of the folder of this one, which are not read: 1") << uri;
    }
    EXPECT_EQ(readIn(with("none.bin")).record.reasons.front(), "Buffers that are not there: 1");
}

TEST_F(GltfImport, ACornerNeverBelongsToAnotherMesh) {
    Bytes bytes;
    bytes.addAll<float>({0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0});
    for (const int index : {0, 1, 2, 0, 2, 4}) {
        bytes.add(static_cast<std::uint16_t>(index));
    }
    const Imported file = read(inQuotes("{'asset':{'version':'2.0'}," + bufferOf(bytes.text) + squareViews +
                                        squareMesh + "'nodes':[{'mesh':0},{'mesh':0}]}"));
    EXPECT_EQ(kept(file, "triangles"), 2); // of four
    EXPECT_THAT(file.record.reasons, ElementsAre("Faces with points that are not there: 2"));
}

TEST_F(GltfImport, IndicesThatAreRealNumbersReachNoPointThatIsNotThere) {
    Bytes bytes;
    bytes.addAll<float>({0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0});
    bytes.addAll<float>({0, 1, 2, 0, 2, -3.6e19F, 0, 2, 1e30F, 0, 2, std::numeric_limits<float>::quiet_NaN()});
    const std::string views =
        "'bufferViews':[{'buffer':0,'byteLength':48},{'buffer':0,'byteOffset':48,'byteLength':48}],"
        "'accessors':[{'bufferView':0,'componentType':5126,'count':4,'type':'VEC3'},"
        "{'bufferView':1,'componentType':5126,'count':12,'type':'SCALAR'}],";
    const Imported file = read(
        inQuotes("{'asset':{'version':'2.0'}," + bufferOf(bytes.text) + views + squareMesh + "'nodes':[{'mesh':0}]}"));
    EXPECT_THAT(cornersOf(file.model), ElementsAre(firstHalf));
    EXPECT_THAT(file.record.reasons, ElementsAre("Faces with points that are not there: 3"));
}

TEST_F(GltfImport, PointsMayBeWholeNumbersWithOrWithoutAScale) {
    Bytes bytes;
    for (const int value : {0, 0, 0, 255, 0, 0, 0, 51, 0}) {
        bytes.add(static_cast<std::uint8_t>(value));
    }
    const auto with = [&](const char* normalized) {
        return read(inQuotes("{'asset':{'version':'2.0'}," + bufferOf(bytes.text) +
                             "'bufferViews':[{'buffer':0,'byteLength':9}],'accessors':[{'bufferView':0,"
                             "'componentType':5121,'count':3,'type':'VEC3'" +
                             normalized +
                             "}],'meshes':[{'primitives':[{'attributes':{'POSITION':0}}]}],'nodes':[{'mesh':0}]}"));
    };
    EXPECT_THAT(cornersOf(with("").model), ElementsAre(Corners{{{0, 0, 0}, {255, 0, 0}, {0, 51, 0}}}));
    EXPECT_THAT(cornersOf(with(",'normalized':true").model), ElementsAre(Corners{{{0, 0, 0}, {1, 0, 0}, {0, 0.2, 0}}}));
}

TEST_F(GltfImport, NodesInARingAreTakenOnce) {
    const Imported file = read(scene("{'mesh':0,'children':[1]},{'children':[0,1,7]}"));
    EXPECT_EQ(kept(file, "triangles"), 2);
    EXPECT_THAT(file.record.reasons, ElementsAre("Nodes that are not there or stand in the tree twice: 3"));
}

TEST_F(GltfImport, NodesOutOfTheSceneAreTold) {
    const Imported file = read(scene("{'mesh':0},{'mesh':0}"));
    EXPECT_EQ(kept(file, "triangles"), 2);
    EXPECT_THAT(file.record.reasons, ElementsAre("Nodes with a mesh that are not in the scene: 1"));
    EXPECT_FALSE(file.record.complete);
}

/// The square with another point in place of its third one: (5, 6, 7).
std::string sparseScene(const std::string& points, int index = 2) {
    Bytes bytes;
    bytes.addText(squareBytes()).addAll<float>({5, 6, 7}).add(static_cast<std::uint16_t>(index));
    return inQuotes("{'asset':{'version':'2.0'}," + bufferOf(bytes.text) +
                    "'bufferViews':[{'buffer':0,'byteLength':48},{'buffer':0,'byteOffset':48,'byteLength':12},"
                    "{'buffer':0,'byteOffset':60,'byteLength':12},{'buffer':0,'byteOffset':72,'byteLength':2}],"
                    "'accessors':[{" +
                    points +
                    "'componentType':5126,'type':'VEC3','sparse':{'count':1,"
                    "'indices':{'bufferView':3,'componentType':5123},'values':{'bufferView':2}}},"
                    "{'bufferView':1,'componentType':5123,'count':6,'type':'SCALAR'}]," +
                    squareMesh + "'nodes':[{'mesh':0}]}");
}

TEST_F(GltfImport, SparseNumbersStandInPlaceOfOthers) {
    const Imported file = read(sparseScene("'bufferView':0,'count':4,"));
    EXPECT_THAT(nodesOf(*file.model.region.blocks[0]),
                ElementsAre(Point{0, 0, 0}, Point{1, 0, 0}, Point{5, 6, 7}, Point{0, 1, 0}));
    EXPECT_TRUE(file.record.complete);
    const Imported alone = read(sparseScene("'count':4,")); // all others are 0
    EXPECT_THAT(nodesOf(*alone.model.region.blocks[0]),
                ElementsAre(Point{0, 0, 0}, Point{0, 0, 0}, Point{5, 6, 7}, Point{0, 0, 0}));
    const Imported outside = read(sparseScene("'bufferView':0,'count':4,", 4));
    EXPECT_THAT(cornersOf(outside.model), ElementsAre(firstHalf, secondHalf));
    EXPECT_THAT(outside.record.reasons, ElementsAre("Numbers in place of others that are not there: 1"));
    const Imported huge = read(sparseScene("'count':400000000000,"));
    EXPECT_EQ(kept(huge, "triangles"), 2);
    EXPECT_THAT(huge.record.reasons, ElementsAre("Meshes for which the memory does not suffice: 1"));
}

// A compressed mesh, or view, may have the same beside it as it is.
TEST_F(GltfImport, CompressedMeshesAreTold) {
    const std::string mesh = "'meshes':[{'primitives':[{'attributes':{'POSITION':0},'indices':1,"
                             "'extensions':{'KHR_draco_mesh_compression':{}}}]}],";
    std::string text = scene("{'mesh':0}", mesh);
    EXPECT_THAT(cornersOf(read(text).model), ElementsAre(firstHalf, secondHalf));
    text.replace(text.find("{\"bufferView\":0,"), 16, "{");
    const Imported draco = read(text);
    EXPECT_TRUE(draco.model.empty());
    EXPECT_THAT(draco.record.reasons, ElementsAre("Meshes that are compressed: 1"));
    for (const char* const extension : {"EXT_meshopt_compression", "KHR_meshopt_compression"}) {
        const std::string compressed =
            inQuotes(std::string("'byteLength':48,'extensions':{'") + extension + "':{'buffer':0}}");
        text = scene("{'mesh':0}");
        text.replace(text.find("\"byteLength\":48"), 15, compressed);
        EXPECT_THAT(cornersOf(read(text).model), ElementsAre(firstHalf, secondHalf)) << extension;
        const std::size_t address = text.find(",\"uri\":");
        text.erase(address, text.find('}', address) - address);
        const Imported file = read(text);
        EXPECT_TRUE(file.model.empty()) << extension;
        EXPECT_THAT(file.record.reasons, ElementsAre("Meshes that are compressed: 1")) << extension;
    }
}

TEST_F(GltfImport, MaterialsAndSkinsAreToldAsLost) {
    const Imported file = read(scene("{'mesh':0,'skin':0}", squareMesh + "'materials':[{}],"));
    EXPECT_TRUE(file.record.complete);
    EXPECT_FALSE(file.record.lossless);
    EXPECT_THAT(file.record.reasons,
                ElementsAre("Colours and materials are not kept", "Skins, weights and animations are not applied"));
}

TEST_F(GltfImport, CountsThatNoBytesStandBehindTakeNoMemory) {
    std::string text = scene("{'mesh':0}");
    text.replace(text.find("\"count\":4"), 9, "\"count\":400000000000");
    text.replace(text.find("\"count\":6"), 9, "\"count\":600000000000");
    const Imported file = read(text);
    EXPECT_EQ(kept(file, "triangles"), 2);
    EXPECT_FALSE(file.record.complete);
    for (const char* const wrong : {"-1", "1e300", "1.5", "\"4\"", "null", "[]"}) {
        text = scene("{'mesh':0}");
        text.replace(text.find("\"count\":4"), 9, std::string("\"count\":") + wrong);
        EXPECT_TRUE(read(text).model.empty()) << wrong;
    }
}

TEST_F(GltfImport, DeepTreesAndListsComeToAnEnd) {
    EXPECT_FALSE(read(std::string(1'000'000, '[')).record.complete);
    EXPECT_FALSE(read("{\"asset\":" + std::string(1'000'000, '[') + std::string(1'000'000, ']') + "}").record.complete);
    std::string nodes = "{'children':[1]}";
    for (int i = 2; i < 100'000; ++i) {
        nodes += ",{'children':[" + std::to_string(i) + "]}";
    }
    EXPECT_EQ(kept(read(scene(nodes + ",{'mesh':0}")), "triangles"), 2);
}

TEST_F(GltfImport, WhatIsNoGltfIsTold) {
    EXPECT_THAT(read("{}").record.reasons, ElementsAre("It is no glTF"));
    EXPECT_THAT(read("[1, 2]").record.reasons, ElementsAre("It is no glTF"));
    EXPECT_THAT(read("{\"asset\":{\"version\":\"1.0\"}}").record.reasons, ElementsAre("It is not of version 2"));
    EXPECT_THAT(read("{\"asset\":{\"version\":\"2.0\"}}").record.reasons, ElementsAre("No faces were found"));
    EXPECT_THAT(read(Bytes().addText("glTF").add(std::uint32_t{1}).add(std::uint32_t{12}).text).record.reasons,
                ElementsAre("It is not of version 2"));
    EXPECT_TRUE(read("").record.complete);
}

} // namespace
} // namespace velmora::test
