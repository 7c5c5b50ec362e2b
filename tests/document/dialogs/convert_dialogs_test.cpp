#include "corner_box.h"
#include "dialog_tests.h"

namespace velmora::test {

namespace {

using testing::ElementsAre;

/// Where the triangles begin and end along one axis.
Look extent(Coordinate axis) {
    return [=](DocumentState& doc) {
        const CornerBox box = cornerBox(doc.feRegion);
        return text({box.lower.*axis, box.upper.*axis});
    };
}

/// Two square slices; the upper one has a point in the middle of each side, and begins at the opposite corner.
Patch slices() {
    return {
        {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 0, 0}},
        {{1, 1, 1}, {0.5, 1, 1}, {0, 1, 1}, {0, 0.5, 1}, {0, 0, 1}, {0.5, 0, 1}, {1, 0, 1}, {1, 0.5, 1}, {1, 1, 1}}};
}

std::string partsOnDisk(DocumentState& doc) {
    const std::filesystem::path folder = doc.modelFile.chosenPath.parent_path();
    const bool both = std::filesystem::exists(folder / "wing_1.dat") && std::filesystem::exists(folder / "wing_2.dat");
    return (both ? "both, the model is " : "none, the model is ") + extent(&Vector::x)(doc);
}

} // namespace

const Choices convertChoices = {
    {.dialog = "CConvert_to_SKL",
     .field = "planeAxis",
     .value = 1,
     .command = "convert.toSkl",
     .fields = {{"number", "3"}},
     .look =
         [](DocumentState& doc) {
             return text({doc.patches.at(0).at(1).front().x, doc.patches.at(0).at(1).back().x});
         },
     .expected = "2 2"},
    {.dialog = "CConvert_to_SKL",
     .field = "planeAxis",
     .value = 2,
     .command = "convert.toSkl",
     .fields = {{"number", "3"}},
     .look =
         [](DocumentState& doc) {
             return text({doc.patches.at(0).at(1).front().y, doc.patches.at(0).at(1).back().y});
         },
     .expected = "3 3"},
    {.dialog = "CConvert_to_SKL",
     .field = "planeAxis",
     .value = 3,
     .command = "convert.toSkl",
     .fields = {{"number", "3"}, {"borderApproach", "2"}, {"yourMin", "1"}, {"yourMax", "6"}},
     .look = across(0, &Vector::z),
     .expected = "1 3.5 6"},
    {.dialog = "CConvert_to_SKL",
     .field = "borderApproach",
     .value = 1,
     .command = "convert.toSkl",
     .fields = {{"planeAxis", "1"}, {"number", "3"}, {"border", "0.1"}},
     .look = across(0, &Vector::x),
     .expected = "0.2 2 3.8"},
    {.dialog = "CConvert_to_SKL",
     .field = "borderApproach",
     .value = 2,
     .command = "convert.toSkl",
     .fields = {{"planeAxis", "1"}, {"number", "3"}, {"yourMin", "1"}, {"yourMax", "3"}},
     .look = across(0, &Vector::x),
     .expected = "1 2 3"},

    {.dialog = "CConvert_SKL_to_APT",
     .field = "approximation",
     .value = 1,
     .command = "convert.toApt",
     .model = {{zigzag()[0], flatPatch(1, 3)[0]}},
     .fields = {{"pointCount", "9"}},
     .look = onChords(0),
     .expected = "off the chords"},
    {.dialog = "CConvert_SKL_to_APT",
     .field = "approximation",
     .value = 2,
     .command = "convert.toApt",
     .model = {{zigzag()[0], flatPatch(1, 3)[0]}},
     .fields = {{"pointCount", "9"}},
     .look = onChords(0),
     .expected = "on the chords"},

    {.dialog = "CConvert_SKL_to_APT",
     .field = "align",
     .value = 0,
     .command = "convert.toApt",
     .model = {slices()},
     .fields = {{"approximation", "2"}, {"pointCount", "5"}},
     .look = pointOf(0, 1, 0),
     .expected = "1 1 1"},
    {.dialog = "CConvert_SKL_to_APT",
     .field = "align",
     .value = 1,
     .command = "convert.toApt",
     .model = {slices()},
     .fields = {{"approximation", "2"}, {"pointCount", "5"}},
     .look = pointOf(0, 1, 0),
     .expected = "0 0 1"},

    {.dialog = "CUKnife",
     .field = "planeKind",
     .value = 1,
     .command = "convert.knife",
     .fields = {{"section", "1"}},
     .look = extent(&Vector::x),
     .expected = "0 1"},
    {.dialog = "CUKnife",
     .field = "planeKind",
     .value = 2,
     .command = "convert.knife",
     .fields = {{"section", "1"}},
     .look = extent(&Vector::y),
     .expected = "0 1"},
    {.dialog = "CUKnife",
     .field = "planeKind",
     .value = 3,
     .command = "convert.knife",
     .fields = {{"section", "1"}},
     .look = extent(&Vector::z),
     .expected = "0 1"},
    {.dialog = "CUKnife",
     .field = "planeKind",
     .value = 4,
     .command = "convert.knife",
     .fields = {{"x", "3"}, {"y", "3"}, {"z", "4"}, {"nx", "2"}, {"ny", "0"}, {"nz", "0"}},
     .look = extent(&Vector::x),
     .expected = "0 3"},
    {.dialog = "CUKnife",
     .field = "cutKind",
     .value = 1,
     .command = "convert.knife",
     .fields = {{"section", "1"}},
     .look = partsOnDisk,
     .expected = "none, the model is 0 1"},
    {.dialog = "CUKnife",
     .field = "cutKind",
     .value = 2,
     .command = "convert.knife",
     .fields = {{"section", "1"}},
     .look = partsOnDisk,
     .expected = "none, the model is 1 4"},
    {.dialog = "CUKnife",
     .field = "cutKind",
     .value = 3,
     .command = "convert.knife",
     .fields = {{"section", "1"}},
     .look = partsOnDisk,
     .expected = "both, the model is 0 4"},

};

INSTANTIATE_TEST_SUITE_P(Convert, DialogChoice, testing::ValuesIn(convertChoices), nameOf);

// ---- Fields ---------------------------------------------------------------------------------------------------------

TEST(DialogFields, OfConvertToSkl) {
    EXPECT_THAT(linesOf("CConvert_to_SKL"),
                ElementsAre("Convert to SKL", "number | Number | int | 20 | 0 to 100000",
                            "border |  | real | 0.1 | 0 to 10000000", "min | Min | real | 0 | any | read-only",
                            "max | Max | real | 0 | any | read-only", "yourMin | Your Min choice | real | 0 | any",
                            "yourMax | Your Max choice | real | 0 | any",
                            "precision | Precision | real | 1e-04 | 1e-10 to 100",
                            "planeAxis |  | radio | 1 | \"Use x=const planes\" \"Use y=const planes\" \"Use z=const "
                            "planes\"",
                            "borderApproach |  | radio | 1 | \"Automatic\" \"Manual\""));
}

TEST(DialogFields, OfConvertToApt) {
    EXPECT_THAT(linesOf("CConvert_SKL_to_APT"),
                ElementsAre("Convert to APT", "pointCount | Number of points in sections | int | 20 | 2 to 1000000",
                            "approximation |  | radio | 1 | \"Spline approximation\" \"Linear approximation\"",
                            "align | Align lines to their neighbours | check | 0"));
}

TEST(DialogFields, OfUnstructuredKnife) {
    EXPECT_THAT(
        linesOf("CUKnife"),
        ElementsAre("Unstructured knife",
                    "planeKind |  | radio | 1 | \"Use X=const plane\" \"Use Y=const plane\" \"Use Z=const plane\" "
                    "\"Use 3D plane\"",
                    "cutKind |  | radio | 1 | \"Before\" \"After\" \"Save parts\"",
                    "min | Min | real | 0 | any | read-only", "max | Max | real | 0 | any | read-only",
                    "section | Max >Section >Min | real | 0 | any", "nx | Nx | real | 0 | any",
                    "ny | Ny | real | 0 | any", "nz | Nz | real | 0 | any", "xMin | Xmin | real | 0 | any | read-only",
                    "xMax | Xmax | real | 0 | any | read-only", "x | X | real | 0 | any",
                    "yMin | Ymin | real | 0 | any | read-only", "yMax | Ymax | real | 0 | any | read-only",
                    "y | Y | real | 0 | any", "zMin | Zmin | real | 0 | any | read-only",
                    "zMax | Zmax | real | 0 | any | read-only", "z | Z | real | 0 | any"));
}

} // namespace velmora::test
