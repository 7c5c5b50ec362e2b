#include <filesystem>

#include "DialogValues.h"
#include "arranged_capture.h"
#include "cut_zones.h"
#include "small_zones.h"
#include "zone_fixture.h"

namespace velmora::test {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

using Point = zVec<double>;

/// A box from the origin to (2, 3, 8) as the model wing.dat in the test's folder.
class SlicingTest : public ZoneTest {
protected:
    SlicingTest() { holdBox(); }

    void holdBox() {
        doc.feRegion.blocks.clear();
        doc.feRegion.blocks.push_back(triangleZone(
            "box", {{0, 0, 0}, {2, 0, 0}, {2, 3, 0}, {0, 3, 0}, {0, 0, 8}, {2, 0, 8}, {2, 3, 8}, {0, 3, 8}},
            {0, 2, 1, 0, 3, 2, 4, 5, 6, 4, 6, 7, 0, 1, 5, 0, 5, 4,
             1, 2, 6, 1, 6, 5, 2, 3, 7, 2, 7, 6, 3, 0, 4, 3, 4, 7}));
        doc.patches.clear();
        doc.structureKind = StructureKind::Unstructured;
        doc.fileKind = FileKind::None;
        doc.modelFile.chosenPath = folder / "Wing.stl";
        doc.modelFile.documentTitle = "wing.dat";
        doc.documentModified = false;
        updateBounds();
        forget();
    }

    void holdLines() {
        hold({{{{0, 0, 0}, {1, 0, 0}, {4, 0, 0}}, {{4, 1, 0}, {0, 1, 0}}}});
        doc.documentModified = false;
    }

    /// Sets the fields of the next dialog; then OK.
    void answer(std::vector<std::pair<std::string, std::string>> fields) { ui.dialogs.push_back(std::move(fields)); }

    /// The command was refused behind these lines, and the box is as it was.
    void expectNoResult(Lines lines) {
        lines.emplace_back("message: The conversion gives no result. The model stays as it is.");
        EXPECT_EQ(heard(), lines);
        EXPECT_EQ(elements(), 12);
        EXPECT_EQ(doc.feRegion.blocks[0]->title, "box");
        EXPECT_FALSE(doc.patchUndoReady || doc.documentModified);
    }

    std::int32_t elements() const { return doc.feRegion.blocks.at(0)->elementCount; }

    /// The names of the files in the folder.
    Lines files() const {
        Lines names;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
            names.push_back(entry.path().filename().string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    /// The box of the corners that the triangles of a file, or of the model, use.
    std::pair<Point, Point> usedBox(const zRegion_fe& region) const {
        Point lower(1e9, 1e9, 1e9);
        Point upper(-1e9, -1e9, -1e9);
        for (std::size_t k = 0; k < region.blocks.size(); ++k) {
            const zBlock_fe& zone = *region.blocks[k];
            for (std::int32_t i = 0; i < 4 * zone.elementCount; ++i) {
                Point p;
                if (region.getNode(static_cast<std::ptrdiff_t>(k), zone.connectivity[static_cast<std::size_t>(i)], p.x,
                                   p.y, p.z) == 0) {
                    lower = {std::min(lower.x, p.x), std::min(lower.y, p.y), std::min(lower.z, p.z)};
                    upper = {std::max(upper.x, p.x), std::max(upper.y, p.y), std::max(upper.z, p.z)};
                }
            }
        }
        return {lower, upper};
    }
};

using ToSkl = SlicingTest;
using ToApt = SlicingTest;
using GridKnife = SlicingTest;
using ZoneKnife = SlicingTest;
using InvisibleRemove = SlicingTest;
using SlicingDialogs = SlicingTest;

} // namespace

// ---- DAT to SKL -----------------------------------------------------------------------------------------------------

TEST_F(ToSkl, MakesOnePatchOfSectionLines) {
    answer({{"planeAxis", "3"}, {"number", "5"}});
    call("convert.toSkl");
    EXPECT_THAT(heard(), ElementsAre("dialog: CConvert_to_SKL -> ok", "title: wing.skl", "status: For Help, press F1",
                                     "status: Save writes " + (folder / "Wing.skl").string()));
    ASSERT_THAT(doc.patches, SizeIs(1));
    ASSERT_THAT(doc.patches[0], SizeIs(5));
    // Border 0.08 of steps of 2.
    EXPECT_DOUBLE_EQ(doc.patches[0][0][0].z, 0.16);
    EXPECT_DOUBLE_EQ(doc.patches[0][1][0].z, 2);
    EXPECT_DOUBLE_EQ(doc.patches[0][4][0].z, 7.84);
    EXPECT_EQ(doc.structureKind, StructureKind::Structured);
    EXPECT_EQ(doc.fileKind, FileKind::Skl);
    EXPECT_TRUE(doc.feRegion.blocks.empty());
    EXPECT_EQ(doc.modelFile.chosenPath, folder / "Wing.skl");
    EXPECT_EQ(doc.modelFile.currentPath, shownFolder() + "wing.skl");
    EXPECT_TRUE(doc.documentModified);
    EXPECT_TRUE(doc.patchUndoReady);
    EXPECT_THAT(viewCalls(), Contains("redraw"));
    EXPECT_EQ(ui.busyDepth, 0);
}

TEST_F(ToSkl, UndoBringsTheSurfaceBack) {
    answer({});
    call("convert.toSkl");
    call("patch.undo");
    EXPECT_EQ(doc.structureKind, StructureKind::Unstructured);
    EXPECT_EQ(elements(), 12);
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.dat");
    EXPECT_TRUE(doc.patches.empty());
}

TEST_F(ToSkl, CancelLeavesTheSnapshotOfTheCommandBefore) {
    doc.patchUndoReady = true;
    doc.undoPatches = KeptPatches::of({flatPatch(2, 2)});
    call("convert.toSkl");
    EXPECT_THAT(heard(), ElementsAre("dialog: CConvert_to_SKL -> cancel"));
    EXPECT_EQ(doc.structureKind, StructureKind::Unstructured);
    EXPECT_EQ(doc.undoPatches.copy(), PatchList{flatPatch(2, 2)});
    EXPECT_TRUE(doc.patchUndoReady);
    EXPECT_FALSE(doc.documentModified);
}

TEST_F(ToSkl, ConversionWithoutALineIsRefusedAndTheBodyStays) {
    using Fields = std::vector<std::pair<std::string, std::string>>;
    for (const Fields& fields : {Fields{{"number", "0"}}, Fields{{"number", "1"}},
                                 Fields{{"number", "2"}, {"border", "100"}}}) { // 200 before and behind a box of 2
        answer(fields);
        call("convert.toSkl");
        EXPECT_THAT(heard(), ElementsAre("dialog: CConvert_to_SKL -> ok",
                                         "message: The conversion gives no result. The model stays as it is."));
        EXPECT_EQ(doc.structureKind, StructureKind::Unstructured);
        EXPECT_EQ(elements(), 12);
        EXPECT_TRUE(doc.patches.empty());
        EXPECT_EQ(doc.modelFile.documentTitle, "wing.dat");
        EXPECT_FALSE(doc.patchUndoReady || doc.documentModified);
    }
}

TEST_F(ToSkl, BodyBeyondTheRangeOfTheBorderCanBeConfirmed) {
    doc.feRegion.blocks[0] = triangleZone("large", {{0, 0, 0}, {4e9, 0, 0}, {0, 4e9, 0}}, {0, 1, 2});
    ui.onDialog = [](DialogForm& form) {
        EXPECT_EQ(fieldText(*form.find("max")), "4e+09");
        EXPECT_EQ(fieldText(*form.find("border")), "1e+07"); // a hundredth would be 4e7
        EXPECT_FALSE(acceptDialog(form));
    };
    answer({{"number", "3"}, {"border", "0.5"}});
    call("convert.toSkl");
    ASSERT_THAT(doc.patches, SizeIs(1));
    EXPECT_EQ(doc.patches[0].at(1).front().x, 2e9);
}

TEST_F(ToSkl, OneTriangleOfRisingCoordinatesHasItsOwnRange) {
    doc.feRegion.blocks[0] = triangleZone("rising", {{1, 2, 3}, {2, 4, 6}, {3, 7, 9}}, {0, 1, 2});
    ui.onDialog = [](DialogForm& form) {
        EXPECT_EQ(fieldText(*form.find("min")), "1");
        EXPECT_EQ(fieldText(*form.find("max")), "3");
    };
    call("convert.toSkl");
}

TEST_F(ToSkl, LeavesRegimesAndEmptiesTheZBlock) {
    captureNode(0, 3);
    addToBlock(0);
    doc.capture.holdBlock();
    doc.showBlockOnly = true;
    answer({});
    call("convert.toSkl");
    EXPECT_FALSE(doc.capture->pointCaptured || doc.capture->patchCaptured || doc.showBlockOnly);
    EXPECT_EQ(doc.blockCount, 0);
    EXPECT_THAT(heard(), Contains("status: For Help, press F1"));
}

TEST_F(ToSkl, KeepsWhatWasTypedExceptPrecisionAndExtent) {
    answer({{"number", "7"}, {"planeAxis", "2"}, {"borderApproach", "2"}, {"yourMin", "1"}, {"precision", "0.5"}});
    call("convert.toSkl");
    holdBox();
    ui.onDialog = [](DialogForm& form) {
        EXPECT_EQ(fieldText(*form.find("number")), "7");
        EXPECT_EQ(fieldText(*form.find("planeAxis")), "2");
        EXPECT_EQ(fieldText(*form.find("borderApproach")), "2");
        EXPECT_EQ(fieldText(*form.find("precision")), "1e-04");
        EXPECT_EQ(fieldText(*form.find("min")), "0");
        EXPECT_EQ(fieldText(*form.find("max")), "3");
        EXPECT_EQ(fieldText(*form.find("border")), "0.03");
        EXPECT_EQ(fieldText(*form.find("yourMin")), "0.03");
        EXPECT_EQ(fieldText(*form.find("yourMax")), "2.97");
    };
    call("convert.toSkl");
}

TEST_F(SlicingDialogs, ToSklAxisGivesExtentAndApproachGivesLiveFields) {
    ui.onDialog = [](DialogForm& form) {
        EXPECT_TRUE(form.find("border")->on);
        EXPECT_FALSE(form.find("yourMin")->on || form.find("yourMax")->on);
        EXPECT_EQ(fieldText(*form.find("max")), "2");
        EXPECT_FALSE(setField(form, "border", "7"));
        EXPECT_FALSE(setField(form, "borderApproach", "2"));
        EXPECT_EQ(fieldText(*form.find("border")), "7"); // the axis alone gives it anew
        EXPECT_FALSE(form.find("border")->on);
        EXPECT_TRUE(form.find("yourMin")->on && form.find("yourMax")->on);
        EXPECT_FALSE(setField(form, "planeAxis", "3"));
        EXPECT_EQ(fieldText(*form.find("max")), "8");
        EXPECT_EQ(fieldText(*form.find("border")), "0.08");
        EXPECT_EQ(fieldText(*form.find("yourMax")), "7.92");
        EXPECT_TRUE(setField(form, "min", "1")); // read-only
    };
    call("convert.toSkl");
}

TEST_F(SlicingDialogs, ToSklRefusesEndsOutOfTheBodyInOrder) {
    answer({{"borderApproach", "2"}, {"yourMin", "-0.1"}, {"yourMax", "2.1"}});
    call("convert.toSkl");
    EXPECT_THAT(heard(), Contains("refused: OK: Your min choice is out of body. Try another one."));
    answer({{"borderApproach", "2"}, {"yourMin", "0"}, {"yourMax", "2.1"}});
    call("convert.toSkl");
    EXPECT_THAT(heard(), Contains("refused: OK: Your max choice is out of body. Try another one."));
    answer({{"borderApproach", "2"}, {"yourMin", "0"}, {"yourMax", "2"}});
    call("convert.toSkl");
    EXPECT_EQ(doc.fileKind, FileKind::Skl);
}

namespace {

/// How long the cut of all triangles by the plane z = `plane` is, worked out triangle by triangle; no corner may lie in
/// the plane.
double cutLength(const zRegion_fe& region, double plane) {
    double length = 0;
    for (std::size_t k = 0; k < region.blocks.size(); ++k) {
        const zBlock_fe& zone = *region.blocks[k];
        for (std::int32_t element = 0; element < zone.elementCount; ++element) {
            std::vector<Point> ends;
            Point at[3];
            for (int i = 0; i < 3; ++i) {
                const std::int32_t node =
                    zone.connectivity[4 * static_cast<std::size_t>(element) + static_cast<std::size_t>(i)];
                region.getNode(static_cast<std::ptrdiff_t>(k), node, at[i].x, at[i].y, at[i].z);
            }
            for (int i = 0; i < 3; ++i) {
                const Point& p = at[i];
                const Point& q = at[(i + 1) % 3];
                if ((p.z < plane) != (q.z < plane)) {
                    ends.push_back(p + (q - p) * ((plane - p.z) / (q.z - p.z)));
                }
            }
            if (ends.size() == 2) {
                length += std::hypot(ends[1].x - ends[0].x, ends[1].y - ends[0].y);
            }
        }
    }
    return length;
}

} // namespace

TEST_F(ToSkl, RealBodiesAreCutAllRound) {
    for (const char* const name : {VELMORA_EXAMPLES "/c172_wing.stl", VELMORA_TEST_DATA "/iea15_blade.stl"}) {
        open(name);
        zRegion_fe body;
        copyRegion(doc.feRegion, body);
        answer({{"planeAxis", "3"}, {"number", "25"}, {"border", "0.05"}});
        call("convert.toSkl");
        ASSERT_THAT(doc.patches, SizeIs(1)) << name;
        ASSERT_THAT(doc.patches[0], SizeIs(25)) << name; // one outline for each plane
        for (const PointList& section : doc.patches[0]) {
            double length = 0;
            for (std::size_t i = 1; i < section.size(); ++i) {
                EXPECT_EQ(section[i].z, section[0].z);
                length += std::hypot(section[i].x - section[i - 1].x, section[i].y - section[i - 1].y);
            }
            EXPECT_NEAR(length, cutLength(body, section[0].z), 1e-9 * length) << name;
            EXPECT_NEAR(section.front().x, section.back().x, 1e-8);
            EXPECT_NEAR(section.front().y, section.back().y, 1e-8);
        }
        answer({{"pointCount", "61"}});
        call("convert.toApt");
        for (std::size_t n = 0; n + 1 < doc.patches[0].size(); ++n) {
            double forward = 0;
            double backward = 0;
            for (std::size_t m = 0; m < 61; ++m) {
                const Point along = doc.patches[0][n][m] - doc.patches[0][n + 1][m];
                const Point against = doc.patches[0][n][m] - doc.patches[0][n + 1][60 - m];
                forward += dot(along, along);
                backward += dot(against, against);
            }
            EXPECT_LT(forward, backward) << name << ", section " << n; // neighbours run the same way round
        }
    }
}

// ---- SKL to APT -----------------------------------------------------------------------------------------------------

TEST_F(ToApt, TellsWhereTheGridTwistsUnlessLinesAreAligned) {
    const PointList lower = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 0, 0}};
    // From the opposite corner on, the same way round.
    const PointList upper = {{1, 1, 1}, {0.5, 1, 1}, {0, 1, 1}, {0, 0, 1}, {1, 0, 1}, {1, 1, 1}};
    const std::string target = "Save writes " + (folder / "wing.apt").string();
    hold({{lower, upper, upper}, {lower, lower}, {lower, upper, lower}});
    doc.modelFile.openedPath = folder / "wing.skl";
    answer({{"pointCount", "9"}, {"approximation", "2"}});
    call("convert.toApt");
    EXPECT_EQ(doc.status,
              "The grid twists at patch 1: section 2; patch 3: sections 2, 3: align lines to their neighbours. " +
                  target);
    call("patch.undo");
    answer({{"pointCount", "9"}, {"approximation", "2"}, {"align", "1"}});
    call("convert.toApt");
    EXPECT_EQ(doc.status, target);
}

TEST_F(ToApt, MakesAGridOfLines) {
    holdLines();
    ASSERT_EQ(doc.fileKind, FileKind::Skl);
    answer({{"pointCount", "5"}, {"approximation", "2"}});
    call("convert.toApt");
    EXPECT_THAT(heard(),
                ElementsAre("dialog: CConvert_SKL_to_APT -> ok", "title: wing.apt", "status: For Help, press F1",
                            "status: Save writes " + (folder / "wing.apt").string()));
    EXPECT_EQ(doc.fileKind, FileKind::Apt);
    EXPECT_EQ(doc.structureKind, StructureKind::Structured);
    EXPECT_EQ(doc.modelFile.chosenPath, folder / "wing.apt");
    EXPECT_THAT(coordinates(doc.patches[0][0]), ElementsAre(0, 1, 2, 3, 4));
    EXPECT_THAT(coordinates(doc.patches[0][1]), ElementsAre(0, 1, 2, 3, 4)); // turned
    call("patch.undo");
    EXPECT_EQ(doc.fileKind, FileKind::Skl);
    EXPECT_THAT(countsOf(doc.patches[0]), ElementsAre(3, 2));
}

TEST_F(ToApt, CancelLeavesTheSnapshotOfTheCommandBefore) {
    holdLines();
    doc.patchUndoReady = true;
    doc.undoPatches = KeptPatches::of({flatPatch(2, 2), flatPatch(3, 3)});
    call("convert.toApt");
    EXPECT_EQ(doc.fileKind, FileKind::Skl);
    EXPECT_THAT(doc.undoPatches.copy(), SizeIs(2));
    EXPECT_TRUE(doc.patchUndoReady);
    EXPECT_FALSE(doc.documentModified);
}

TEST_F(ToApt, WithoutASectionIsRefusedAndTheModelStays) {
    holdLines();
    doc.patches = {Patch(), Patch()};
    call("convert.toApt");
    EXPECT_THAT(heard(), ElementsAre("message: The conversion gives no result. The model stays as it is."));
    EXPECT_EQ(doc.fileKind, FileKind::Skl);
    EXPECT_FALSE(doc.documentModified);
}

TEST_F(ToApt, LeavesPointAndCurvesAndStaysInThePatchRegime) {
    holdLines();
    capturePoint(0, 0, 2);
    captureSection(0, 0);
    doc.capture.holdBlock();
    arranged(doc).blockStatus = "the zBlock's text";
    answer({});
    call("convert.toApt");
    EXPECT_FALSE(doc.capture->pointCaptured || doc.capture->sectionCaptured);
    EXPECT_TRUE(doc.capture->patchCaptured);
    EXPECT_THAT(heard(), Contains("status: the zBlock's text"));
}

TEST_F(ToApt, WithAPatchToAddArmedShowsItsPrompt) {
    holdLines();
    call("patch.addToBlock");
    answer({{"pointCount", "3"}});
    call("convert.toApt");
    EXPECT_TRUE(doc.capture->patchCaptureArmed);
    EXPECT_EQ(doc.status, "Save writes " + (folder / "wing.apt").string());
    call("view.fit");
    EXPECT_EQ(doc.status, "Find patch and click it") << "what covers the prompt goes with the next command";
}

// ---- Knife of grids -------------------------------------------------------------------------------------------------

TEST_F(GridKnife, HalvesTheSectionsOfTheZBlock) {
    hold({patchOf({5, 5}), patchOf({4, 4}), patchOf({1, 1})});
    addToBlock(0);
    answer({{"choice", "2"}});
    call("model.knife");
    EXPECT_THAT(coordinates(doc.patches[0][1]), ElementsAre(0, 1, 2));
    EXPECT_THAT(countsOf(doc.patches[1]), ElementsAre(4, 4));
    EXPECT_TRUE(doc.partAfter && !doc.partBefore);
    EXPECT_EQ(block(), std::vector<std::int32_t>{0});
    call("patch.undo");
    EXPECT_THAT(countsOf(doc.patches[0]), ElementsAre(5, 5));
}

TEST_F(GridKnife, HalvesAllPatchesWithoutAZBlock) {
    hold({patchOf({5, 5}), patchOf({4, 4}), patchOf({1, 1})});
    answer({{"choice", "1"}});
    call("model.knife");
    EXPECT_THAT(coordinates(doc.patches[0][0]), ElementsAre(2, 3, 4));
    EXPECT_THAT(coordinates(doc.patches[1][0]), ElementsAre(2, 3));
    EXPECT_THAT(countsOf(doc.patches[2]), ElementsAre(1, 1));
    EXPECT_TRUE(doc.partBefore && !doc.partAfter);
    EXPECT_TRUE(doc.patchUndoReady);
    EXPECT_FALSE(doc.rebuildOnUndo);
}

TEST_F(GridKnife, OpensOnTheSideOfTheLastRun) {
    hold({patchOf({5, 5})});
    ui.onDialog = [](DialogForm& form) { EXPECT_EQ(fieldText(*form.find("choice")), "2"); };
    answer({{"choice", "1"}});
    call("model.knife");
    ui.onDialog = [](DialogForm& form) { EXPECT_EQ(fieldText(*form.find("choice")), "1"); };
    call("model.knife");
}

TEST_F(GridKnife, CancelLeavesSideAndModel) {
    hold({patchOf({5, 5})});
    call("model.knife");
    EXPECT_TRUE(doc.partAfter);
    EXPECT_FALSE(doc.patchUndoReady);
    EXPECT_THAT(countsOf(doc.patches[0]), ElementsAre(5, 5));
    EXPECT_TRUE(doc.undoPatches.empty());
    EXPECT_FALSE(doc.documentModified);
}

TEST_F(GridKnife, CapturedPointPastTheEndBecomesTheLast) {
    hold({patchOf({5, 5})});
    capturePoint(0, 1, 4);
    answer({{"choice", "2"}});
    call("model.knife");
    EXPECT_EQ(doc.capture->capturedPoint, 2);
    EXPECT_EQ(doc.capture->capturedPointPos, Point(2, 1, 0));
}

// ---- Knife of triangles ---------------------------------------------------------------------------------------------

TEST_F(ZoneKnife, KeepsThePartBeforeOrAfterThePlane) {
    answer({{"planeKind", "3"}, {"section", "5"}});
    call("convert.knife");
    EXPECT_THAT(heard(), ElementsAre("dialog: CUKnife -> ok"));
    EXPECT_EQ(usedBox(doc.feRegion), std::pair(Point(0, 0, 0), Point(2, 3, 5)));
    EXPECT_TRUE(consistent(*doc.feRegion.blocks[0]));
    EXPECT_EQ(doc.feRegion.blocks[0]->connectivitySize, 4 * elements());
    EXPECT_EQ(doc.feRegion.blocks[0]->title, "z");
    EXPECT_EQ(doc.modelFile.chosenPath, folder / "Wing.stl");
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.dat");
    EXPECT_THAT(files(), IsEmpty());
    holdBox();
    answer({{"planeKind", "3"}, {"section", "5"}, {"cutKind", "2"}});
    call("convert.knife");
    EXPECT_EQ(usedBox(doc.feRegion), std::pair(Point(0, 0, 5), Point(2, 3, 8)));
}

TEST_F(ZoneKnife, UndoBringsTheWholeBack) {
    answer({{"section", "1"}});
    call("convert.knife");
    EXPECT_TRUE(doc.patchUndoReady);
    call("patch.undo");
    EXPECT_EQ(elements(), 12);
    EXPECT_EQ(doc.feRegion.blocks[0]->title, "box");
}

TEST_F(ZoneKnife, CancelLeavesTheSnapshotOfTheCommandBefore) {
    doc.patchUndoReady = true;
    doc.undoPatches = KeptPatches::of({flatPatch(2, 2)});
    call("convert.knife");
    EXPECT_EQ(elements(), 12);
    EXPECT_EQ(doc.undoPatches.copy(), PatchList{flatPatch(2, 2)});
    EXPECT_TRUE(doc.patchUndoReady);
    EXPECT_FALSE(doc.documentModified);
}

TEST_F(ZoneKnife, SectionOutOfTheBodyCutsNothing) {
    const char* const texts[] = {"message: Section X=const is out of body", "message: Section Y=const is out of body",
                                 "message: Section Z=const is out of body"};
    for (int kind = 1; kind <= 3; ++kind) {
        for (const char* const section : {"-0.001", "8.001"}) {
            answer({{"planeKind", std::to_string(kind)}, {"section", section}});
            call("convert.knife");
            EXPECT_THAT(heard(), ElementsAre("dialog: CUKnife -> ok", texts[kind - 1]));
            EXPECT_EQ(elements(), 12);
            EXPECT_FALSE(doc.patchUndoReady);
        }
    }
}

TEST_F(ZoneKnife, SectionAtTheMinimumIsInsideAndMayLeaveNothing) {
    answer({{"section", "0"}, {"cutKind", "1"}});
    call("convert.knife");
    expectNoResult({"dialog: CUKnife -> ok"});
    answer({{"section", "0"}, {"cutKind", "2"}});
    call("convert.knife");
    EXPECT_THAT(heard(), ElementsAre("dialog: CUKnife -> ok"));
    EXPECT_EQ(usedBox(doc.feRegion), std::pair(Point(0, 0, 0), Point(2, 3, 8)));
}

// Save would empty the file of the body without a question.
TEST_F(ZoneKnife, PartWithoutATriangleIsRefused) {
    answer({{"section", "2"}, {"cutKind", "2"}});
    call("convert.knife");
    expectNoResult({"dialog: CUKnife -> ok"});
    for (const auto& [x, cutKind] : {std::pair("-77", "1"), std::pair("77", "2")}) {
        answer({{"planeKind", "4"},
                {"x", x},
                {"y", "1"},
                {"z", "1"},
                {"nx", "1"},
                {"ny", "0"},
                {"nz", "0"},
                {"cutKind", cutKind}});
        call("convert.knife");
        expectNoResult({"dialog: CUKnife -> ok", "message: Warning: Point X is out of body"});
    }
}

TEST_F(ZoneKnife, PlaneBesideTheBodyMayKeepAllOfIt) {
    answer({{"planeKind", "4"}, {"x", "77"}, {"y", "1"}, {"z", "1"}, {"nx", "1"}, {"ny", "0"}, {"nz", "0"}});
    call("convert.knife");
    EXPECT_EQ(elements(), 12);
    EXPECT_EQ(usedBox(doc.feRegion), std::pair(Point(0, 0, 0), Point(2, 3, 8)));
}

TEST_F(ZoneKnife, PartsOfWhichOneHasNoTriangleAreNotSaved) {
    for (const char* const section : {"0", "2"}) {
        answer({{"planeKind", "1"}, {"section", section}, {"cutKind", "3"}});
        call("convert.knife");
        expectNoResult({"dialog: CUKnife -> ok"});
        EXPECT_THAT(files(), IsEmpty());
    }
}

TEST_F(ZoneKnife, AnyPlaneWarnsOfEachCoordinateOutOfTheBodyAndCuts) {
    answer({{"planeKind", "4"}, {"x", "-1"}, {"y", "4"}, {"z", "9"}, {"nx", "1"}, {"ny", "0"}, {"nz", "0.25"}});
    call("convert.knife"); // x + z / 4 = 1.25
    EXPECT_THAT(heard(),
                ElementsAre("dialog: CUKnife -> ok", "message: Warning: Point X is out of body",
                            "message: Warning: Point Y is out of body", "message: Warning: Point Z is out of body"));
    for (std::int32_t i = 0; i < elements(); ++i) {
        for (int corner = 0; corner < 3; ++corner) {
            const Point p =
                node(0, doc.feRegion.blocks[0]
                            ->connectivity[4 * static_cast<std::size_t>(i) + static_cast<std::size_t>(corner)]);
            EXPECT_LE(p.x + p.z / 4, 1.25 + 1e-7);
        }
    }
    EXPECT_GT(elements(), 0);
}

TEST_F(ZoneKnife, PlaneWithoutANormalCutsNothing) {
    answer({{"planeKind", "4"}, {"x", "1"}, {"y", "1"}, {"z", "1"}});
    call("convert.knife");
    EXPECT_THAT(heard(), ElementsAre("dialog: CUKnife -> ok", "message: Normal of plane is absent. Cut is impossible"));
    EXPECT_EQ(elements(), 12);
}

TEST_F(ZoneKnife, OpensAtSectionZeroWhateverWasCutBefore) {
    answer({{"section", "1"}});
    call("convert.knife");
    ui.onDialog = [](DialogForm& form) { EXPECT_EQ(fieldText(*form.find("section")), "0"); };
    call("convert.knife");
}

TEST_F(ZoneKnife, UndoneKeepsTheViewAlsoBehindAMove) {
    answer({{"deltaX", "1"}});
    call("model.move");
    answer({{"section", "2"}});
    call("convert.knife");
    viewCalls();
    call("patch.undo");
    EXPECT_THAT(viewCalls(), Not(Contains("bounds")));
}

TEST_F(ZoneKnife, ThreePointsOfTheBufferAreThePlane) {
    doc.lineBuffer = {{0, 0, 3}, {3, 0, 3}, {0, 3, 3}, {7, 7, 7}};
    doc.lineBufferFull = true;
    ui.onDialog = [](DialogForm& form) {
        EXPECT_EQ(fieldText(*form.find("x")), "1");
        EXPECT_EQ(fieldText(*form.find("z")), "3");
        EXPECT_EQ(fieldText(*form.find("nz")), "1");
        EXPECT_EQ(fieldText(*form.find("section")), "0");
        EXPECT_FALSE(form.find("x")->on);
        EXPECT_FALSE(setField(form, "planeKind", "4"));
        EXPECT_TRUE(form.find("x")->on && form.find("nz")->on);
        EXPECT_FALSE(form.find("section")->on);
        EXPECT_TRUE(setField(form, "xMax", "1")); // read-only
    };
    answer({});
    call("convert.knife");
    EXPECT_EQ(usedBox(doc.feRegion).second, Point(2, 3, 3));
    doc.lineBufferFull = false;
    doc.dialogs->knife.nz = 0.5;
    ui.onDialog = [](DialogForm& form) { EXPECT_EQ(fieldText(*form.find("nz")), "0.5"); };
    call("convert.knife");
}

TEST_F(ZoneKnife, ThreePointsAreEnoughForThePlaneAndTwoAreNot) {
    const auto openBuffer = [this](const char* text) {
        writeFileText(folder / "plane.ext", text);
        ui.files = {{folder / "plane.ext"}};
        call("buffer.open");
    };
    openBuffer("0 0 3\n3 0 3\n");
    answer({{"planeKind", "4"}});
    forget();
    call("convert.knife");
    EXPECT_THAT(heard(), ElementsAre("dialog: CUKnife -> ok", "message: Normal of plane is absent. Cut is impossible"));
    EXPECT_EQ(elements(), 12);
    openBuffer("0 0 3\n3 0 3\n0 3 3\n");
    answer({});
    forget();
    call("convert.knife");
    EXPECT_THAT(heard(), ElementsAre("dialog: CUKnife -> ok"));
    EXPECT_EQ(usedBox(doc.feRegion).second, Point(2, 3, 3));
}

TEST_F(ZoneKnife, DialogShowsTheExtentOnTheChosenAxisAndTheBox) {
    ui.onDialog = [](DialogForm& form) {
        EXPECT_EQ(fieldText(*form.find("max")), "2");
        EXPECT_FALSE(setField(form, "planeKind", "3"));
        EXPECT_EQ(fieldText(*form.find("min")), "0");
        EXPECT_EQ(fieldText(*form.find("max")), "8");
        EXPECT_EQ(fieldText(*form.find("yMax")), "3");
    };
    call("convert.knife");
}

TEST_F(ZoneKnife, SaveParts) {
    answer({{"planeKind", "2"}, {"section", "1"}, {"cutKind", "3"}});
    call("convert.knife");
    EXPECT_THAT(heard(),
                ElementsAre("dialog: CUKnife -> ok", "message: Parts are saved in dat format with indexes _1 and _2"));
    EXPECT_EQ(elements(), 12);
    EXPECT_EQ(doc.modelFile.documentTitle, "wing.dat");
    EXPECT_THAT(files(), ElementsAre("Wing_1.dat", "Wing_2.dat"));
    open(folder / "Wing_1.dat");
    EXPECT_EQ(usedBox(doc.feRegion), std::pair(Point(0, 0, 0), Point(2, 1, 8)));
    open(folder / "Wing_2.dat");
    EXPECT_EQ(usedBox(doc.feRegion), std::pair(Point(0, 1, 0), Point(2, 3, 8)));
}

TEST_F(ZoneKnife, FileOfTheTemporaryNameSurvives) {
    writeFileText(folder / "Wing_0.dat", "mine");
    writeFileText(folder / "Wing_0_1.dat", "mine too");
    answer({{"section", "1"}});
    call("convert.knife");
    EXPECT_EQ(usedBox(doc.feRegion).second, Point(1, 3, 8));
    EXPECT_THAT(files(), ElementsAre("Wing_0.dat", "Wing_0_1.dat"));
    EXPECT_EQ(fileText(folder / "Wing_0.dat"), "mine");
    EXPECT_EQ(fileText(folder / "Wing_0_1.dat"), "mine too");
}

TEST_F(ZoneKnife, LinkOfTheTemporaryNameIsNotWrittenThrough) {
    std::filesystem::create_symlink(folder / "elsewhere", folder / "Wing_0.dat");
    answer({{"section", "1"}});
    call("convert.knife");
    EXPECT_FALSE(std::filesystem::exists(folder / "elsewhere"));
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "Wing_0.dat"));
}

TEST_F(ZoneKnife, FailedWriteOfThePartsLeavesTheModel) {
    doc.modelFile.chosenPath = folder / "absent" / "wing.stl";
    answer({{"section", "1"}, {"cutKind", "3"}});
    call("convert.knife");
    EXPECT_THAT(heard(), ElementsAre("dialog: CUKnife -> ok", "message: It is impossible to save current file",
                                     "status: wing_1.dat was not written"));
    EXPECT_EQ(elements(), 12);
    EXPECT_EQ(doc.feRegion.blocks[0]->title, "box");
    EXPECT_FALSE(doc.patchUndoReady);
}

TEST_F(ZoneKnife, CutNeedsNothingBesideTheModel) {
    doc.modelFile.chosenPath = folder / "absent" / "wing.stl";
    answer({{"section", "1"}});
    call("convert.knife");
    EXPECT_EQ(usedBox(doc.feRegion).second, Point(1, 3, 8));
    EXPECT_FALSE(std::filesystem::exists(folder / "absent"));
}

TEST_F(ZoneKnife, CutWithoutRoomForItsFileLeavesTheModel) {
    const char* const before = std::getenv("TMPDIR");
    const std::string old = before == nullptr ? "" : before;
    ::setenv("TMPDIR", (folder / "absent").c_str(), 1);
    answer({{"section", "1"}});
    call("convert.knife");
    before == nullptr ? ::unsetenv("TMPDIR") : ::setenv("TMPDIR", old.c_str(), 1);
    EXPECT_THAT(heard(), ElementsAre("dialog: CUKnife -> ok", "message: It is impossible to save current file"));
    EXPECT_EQ(elements(), 12);
    EXPECT_FALSE(doc.patchUndoReady);
}

TEST_F(ZoneKnife, SurfaceWithoutTrianglesHasNoInside) {
    doc.feRegion.blocks.clear();
    answer({});
    call("convert.knife");
    EXPECT_THAT(heard(), ElementsAre("dialog: CUKnife -> ok", "message: Section X=const is out of body"));
}

TEST_F(ZoneKnife, OtherFieldsAreLeftToNoZone) {
    doc.feRegion.blocks[0]->addVariable("p");
    doc.feRegion.blocks.push_back(oneTriangle(0, 1, "second"));
    answer({{"section", "1.5"}, {"cutKind", "1"}});
    call("convert.knife");
    ASSERT_THAT(doc.feRegion.blocks, SizeIs(2));
    EXPECT_THAT(doc.feRegion.blocks[0]->variables, SizeIs(3));
    EXPECT_EQ(doc.feRegion.blocks[1]->title, "second");
    EXPECT_EQ(node(1, 1), Point(1, 0, 1));
}

// ---- Invisible remove -----------------------------------------------------------------------------------------------

TEST_F(InvisibleRemove, SaysThatNothingIsSelected) {
    call("model.invisibleRemove");
    EXPECT_THAT(heard(), ElementsAre("message: Procedure is impossible. Visible part is not selected."));
    EXPECT_EQ(elements(), 12);
    ASSERT_EQ(doc.undoRegion.blocks.size(), 1U);
    EXPECT_EQ(doc.undoRegion.blocks[0]->elementCount, 12);
    EXPECT_TRUE(doc.documentModified);
    call("patch.undo");
    EXPECT_EQ(elements(), 12);
}

} // namespace velmora::test
