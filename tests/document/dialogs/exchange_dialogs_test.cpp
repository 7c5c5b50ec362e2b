#include "dialog_tests.h"

namespace velmora::test {

namespace {

using testing::ElementsAre;

std::string nodeTotal(DocumentState& doc) {
    std::int64_t nodes = 0;
    for (const auto& zone : doc.feRegion.blocks) {
        nodes += zone->nodeCount;
    }
    return std::to_string(nodes);
}

std::string triangleTotal(DocumentState& doc) {
    std::int64_t triangles = 0;
    for (const auto& zone : doc.feRegion.blocks) {
        triangles += zone->elementCount;
    }
    return std::to_string(triangles);
}

std::string patchesAndTriangles(DocumentState& doc) {
    return std::to_string(doc.patches.size()) + " patches, " + triangleTotal(doc) + " triangles";
}

/// A line, from 1, of the file "out.ply" beside the model.
Look lineOfPly(int number) {
    return [=](DocumentState& doc) {
        std::istringstream file(fileText(doc.modelFile.chosenPath.parent_path() / "out.ply"));
        std::string line;
        for (int i = 0; i < number; ++i) {
            std::getline(file, line);
        }
        return line;
    };
}

/// Three sides of a prism: each section ends where it begins.
const Patch prism = {{{0, 0, 0}, {1, 0, 0}, {0.5, 1, 0}, {0, 0, 0}}, {{0, 0, 1}, {1, 0, 1}, {0.5, 1, 1}, {0, 0, 1}}};

/// A zone of one triangle, and one of the faces of a brick.
const Steps triangleAndBrick = {{.id = "file.import", .fields = {{"volumes", "2"}}, .files = {"brick.dat"}}};

} // namespace

const Choices exchangeChoices = {
    {.dialog = "CImport",
     .field = "merge",
     .value = 0,
     .command = "file.import",
     .files = {"soup.obj"},
     .look = nodeTotal,
     .expected = "6"},
    {.dialog = "CImport",
     .field = "merge",
     .value = 1,
     .command = "file.import",
     .files = {"soup.obj"},
     .look = nodeTotal,
     .expected = "4"},
    {.dialog = "CImport",
     .field = "volumes",
     .value = 1,
     .command = "file.import",
     .files = {"brick.dat"},
     .look = triangleTotal,
     .expected = "1"},
    {.dialog = "CImport",
     .field = "volumes",
     .value = 2,
     .command = "file.import",
     .files = {"brick.dat"},
     .look = triangleTotal,
     .expected = "13"},
    {.dialog = "CImport",
     .field = "cad",
     .value = 1,
     .command = "file.import",
     .files = {"box.step"},
     .look = patchesAndTriangles,
     .expected = "0 patches, 12 triangles"},
    {.dialog = "CImport",
     .field = "cad",
     .value = 2,
     .command = "file.import",
     .files = {"box.step"},
     .look = patchesAndTriangles,
     .expected = "6 patches, 0 triangles"},
    {.dialog = "CExport",
     .field = "binary",
     .value = 0,
     .command = "file.export",
     .files = {"out.ply"},
     .look = lineOfPly(2),
     .expected = "format ascii 1.0"},
    {.dialog = "CExport",
     .field = "binary",
     .value = 1,
     .command = "file.export",
     .files = {"out.ply"},
     .look = lineOfPly(2),
     .expected = "format binary_little_endian 1.0"},
    {.dialog = "CExport",
     .field = "precision",
     .value = 1,
     .command = "file.export",
     .files = {"out.ply"},
     .look = lineOfPly(4),
     .expected = "property float x"},
    {.dialog = "CExport",
     .field = "precision",
     .value = 2,
     .command = "file.export",
     .files = {"out.ply"},
     .look = lineOfPly(4),
     .expected = "property double x"},
    {.dialog = "CExport",
     .field = "merge",
     .value = 0,
     .command = "file.export",
     .model = {prism},
     .files = {"out.ply"},
     .look = lineOfPly(3),
     .expected = "element vertex 8"},
    {.dialog = "CExport",
     .field = "merge",
     .value = 1,
     .command = "file.export",
     .model = {prism},
     .files = {"out.ply"},
     .look = lineOfPly(3),
     .expected = "element vertex 6"},
    {.dialog = "CExport",
     .field = "onlyBlock",
     .value = 0,
     .command = "file.export",
     .model = {flatPatch(2, 2), flatPatch(3, 3)},
     .before = addPatch(2),
     .files = {"out.ply"},
     .look = lineOfPly(3),
     .expected = "element vertex 13",
     .when = "with a zBlock"},
    {.dialog = "CExport",
     .field = "onlyBlock",
     .value = 1,
     .command = "file.export",
     .model = {flatPatch(2, 2), flatPatch(3, 3)},
     .before = addPatch(2),
     .files = {"out.ply"},
     .look = lineOfPly(3),
     .expected = "element vertex 9",
     .when = "with a zBlock"},
    {.dialog = "CExport",
     .field = "onlyBlock",
     .value = 1,
     .command = "file.export",
     .model = {flatPatch(2, 2), flatPatch(3, 3)},
     .files = {"out.ply"},
     .look = lineOfPly(3),
     .expected = "element vertex 13",
     .when = "with an empty zBlock"},
    {.dialog = "CExport",
     .field = "onlyBlock",
     .value = 1,
     .command = "file.export",
     .before = triangleAndBrick + addPatch(1),
     .files = {"out.ply"},
     .look = lineOfPly(3),
     .expected = "element vertex 3",
     .when = "of zones"},
};

INSTANTIATE_TEST_SUITE_P(Exchange, DialogChoice, testing::ValuesIn(exchangeChoices), nameOf);

// ---- Fields ---------------------------------------------------------------------------------------------------------

TEST(DialogFields, OfImport) {
    EXPECT_THAT(linesOf("CImport"),
                ElementsAre("Import", "merge | Merge equal points | check | 0",
                            "volumes |  | radio | 1 | \"Surface zones only\" \"Outer faces of volume zones too\"",
                            "cad |  | radio | 1 | \"CAD as triangles\" \"CAD as structured patches\"",
                            "chord | Error of triangles | real | 0.1 | any",
                            "sections | Sections of a patch | int | 33 | 2 to 10000",
                            "points | Points of a section | int | 33 | 2 to 10000", "scale | Scale | real | 1 | any"));
}

TEST(DialogFields, OfExport) {
    EXPECT_THAT(linesOf("CExport"),
                ElementsAre("Export", "digits | Digits in text | int | 17 | 6 to 17",
                            "binary | Binary, where the format can be | check | 1",
                            "precision |  | radio | 2 | \"Single precision\" \"Double precision\"",
                            "merge | Merge equal points | check | 0", "onlyBlock | Only the zBlock | check | 0"));
}

} // namespace velmora::test
