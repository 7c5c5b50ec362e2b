#include "dialog_tests.h"

namespace velmora::test {

namespace {

using testing::ElementsAre;

} // namespace

const Choices transformChoices = {
    {.dialog = "CFlipBlock",
     .field = "plane",
     .value = 1,
     .command = "line.flip",
     .model = {flatPatch(2, 3, 3)},
     .before = section(1, 2),
     .fields = {{"xPlane", "10"}},
     .look = pointOf(0, 1, 2),
     .expected = "18 1 3"},
    {.dialog = "CFlipBlock",
     .field = "plane",
     .value = 2,
     .command = "line.flip",
     .model = {flatPatch(2, 3, 3)},
     .before = section(1, 2),
     .fields = {{"yPlane", "10"}},
     .look = pointOf(0, 1, 2),
     .expected = "2 19 3"},
    {.dialog = "CFlipBlock",
     .field = "plane",
     .value = 3,
     .command = "model.flip",
     .model = {flatPatch(2, 3, 3)},
     .fields = {{"zPlane", "10"}},
     .look = pointOf(0, 1, 0), // its points stand in reverse order
     .expected = "2 1 17"},
    {.dialog = "CSymmetricBlock",
     .field = "plane",
     .value = 1,
     .command = "model.symmetric",
     .model = {flatPatch(2, 3, 3)},
     .fields = {{"xPlane", "10"}},
     .look = pointOf(1, 1, 2),
     .expected = "18 1 3"},
    {.dialog = "CSymmetricBlock",
     .field = "plane",
     .value = 2,
     .command = "model.symmetric",
     .model = {flatPatch(2, 3, 3)},
     .fields = {{"yPlane", "10"}},
     .look = pointOf(1, 1, 2),
     .expected = "2 19 3"},
    {.dialog = "CSymmetricBlock",
     .field = "plane",
     .value = 3,
     .command = "line.symmetric",
     .model = {flatPatch(2, 3, 3)},
     .before = section(1, 2),
     .fields = {{"zPlane", "10"}},
     .look = along(0, 1, &Vector::z),
     .expected = "3 3 3 17 17 17"},

};

INSTANTIATE_TEST_SUITE_P(Transform, DialogChoice, testing::ValuesIn(transformChoices), nameOf);

// ---- Fields ---------------------------------------------------------------------------------------------------------

TEST(DialogFields, OfScaling) {
    EXPECT_THAT(linesOf("CScaling"),
                ElementsAre("Scaling", "xCenter | X center | real | 0 | any", "yCenter | Y center | real | 0 | any",
                            "zCenter | Z center | real | 0 | any", "scale | Scale | real | 1 | any"));
}

TEST(DialogFields, OfMove) {
    EXPECT_THAT(linesOf("CBlockMove"),
                ElementsAre("Move", "deltaX | Delta X | real | 0 | any", "deltaY | Delta Y | real | 0 | any",
                            "deltaZ | Delta Z | real | 0 | any"));
}

TEST(DialogFields, OfRotation) {
    EXPECT_THAT(linesOf("CBlockRotate"),
                ElementsAre("Rotation", "x1 | X 1 | real | 0 | any", "y1 | Y 1 | real | 0 | any",
                            "z1 | Z 1 | real | 0 | any", "x2 | X 2 | real | 1 | any", "y2 | Y 2 | real | 0 | any",
                            "z2 | Z 2 | real | 0 | any", "angle | Angle of rotation  | real | 0 | any"));
}

TEST(DialogFields, OfFlipAndSymmetry) {
    for (const auto& [name, title] : {std::pair{"CFlipBlock", "Flip"}, {"CSymmetricBlock", "Symmetry"}}) {
        EXPECT_THAT(linesOf(name),
                    ElementsAre(title, "plane |  | radio | 1 | \"X=const plane\" \"Y=const plane\" \"Z=const plane\"",
                                "xPlane | X plane | real | 0 | any", "yPlane | Y plane | real | 0 | any",
                                "zPlane | Z plane | real | 0 | any"));
    }
}

TEST(PlaneDialogs, HaveTheFieldOfTheChosenPlaneAloneOn) {
    CFlipBlock flip;
    DialogForm form = describe(flip);
    openDialog(form);
    EXPECT_THAT(liveFields(form), ElementsAre("plane", "xPlane"));
    EXPECT_FALSE(setField(form, "plane", "3").has_value());
    EXPECT_THAT(liveFields(form), ElementsAre("plane", "zPlane"));
    CSymmetricBlock symmetric;
    symmetric.plane = 2;
    DialogForm other = describe(symmetric);
    openDialog(other);
    EXPECT_THAT(liveFields(other), ElementsAre("plane", "yPlane"));
}

} // namespace velmora::test
