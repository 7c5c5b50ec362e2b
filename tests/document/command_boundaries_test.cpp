#include <ostream>
#include <set>

#include "command_rig.h"
#include "looks.h"

namespace velmora::test {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

const char* const isFull = "message: It is impossible to add one more zBlock";

/// As many patches as a zBlock can hold, and one more.
class FullBlock : public CommandRig {
protected:
    FullBlock() { hold(PatchList(blockCapacity + 1, flatPatch(2, 2))); }

    /// Selects all but the last `left` patches of the model.
    void selectAllBut(std::int32_t left) {
        for (std::int32_t k = 0; k < left; ++k) {
            runAll(addPatch(blockCapacity + 1 - k));
        }
        run({.id = "block.invert"});
        ASSERT_EQ(doc.blockCount, blockCapacity + 1 - left);
        forget();
    }
};

/// A command at the first or the last of what it takes by number.
struct Boundary {
    std::string name;
    PatchList model = {};
    Steps before = {};
    Step command;
    Look look;
    std::string expected;
};

void PrintTo(const Boundary& boundary, std::ostream* out) {
    *out << boundary.name;
}

/// Where the capture stands, with what is in hand.
std::string captured(DocumentState& doc) {
    std::ostringstream out;
    out << doc.capture->capturedPatch << ' ' << doc.capture->capturedSection << ' ' << doc.capture->capturedLine << ' '
        << doc.capture->capturedPointSection << ' ' << doc.capture->capturedPoint;
    return out.str();
}

Look acrossAndCapture(std::size_t patch, Coordinate axis = &zVec<double>::y) {
    return [=](DocumentState& doc) { return across(patch, axis)(doc) + ", " + captured(doc); };
}

Look alongAndCapture(std::size_t patch, std::size_t number) {
    return [=](DocumentState& doc) { return along(patch, number)(doc) + ", " + captured(doc); };
}

const PatchList plate = {flatPatch(3, 4)};
const PatchList plates = {flatPatch(2, 2), flatPatch(3, 3), flatPatch(4, 4)};
const Fields twice = {{"duplicateCount", "2"}};
const Fields up = {{"deltaZ", "5"}};

const std::vector<Boundary> boundaries = {
    {.name = "DeleteOfTheFirstSection",
     .model = plate,
     .before = section(1, 1),
     .command = {.id = "line.delete"},
     .look = acrossAndCapture(0),
     .expected = "1 2, 0 0 -1 -1 -1"},
    {.name = "DeleteOfTheLastSection",
     .model = plate,
     .before = section(1, 3),
     .command = {.id = "line.delete"},
     .look = acrossAndCapture(0),
     .expected = "0 1, 0 1 -1 -1 -1"},
    {.name = "DeleteOfTheFirstLine",
     .model = plate,
     .before = line(1, 1),
     .command = {.id = "line.delete"},
     .look = alongAndCapture(0, 2),
     .expected = "1 2 3, 0 -1 0 -1 -1"},
    {.name = "DeleteOfTheLastLine",
     .model = plate,
     .before = line(1, 4),
     .command = {.id = "line.delete"},
     .look = alongAndCapture(0, 2),
     .expected = "0 1 2, 0 -1 2 -1 -1"},
    {.name = "DuplicateOfTheFirstSection",
     .model = plate,
     .before = section(1, 1),
     .command = {.id = "line.duplicate", .fields = twice},
     .look = acrossAndCapture(0),
     .expected = "0 0 1 2, 0 0 -1 -1 -1"},
    {.name = "DuplicateOfTheLastSection",
     .model = plate,
     .before = section(1, 3),
     .command = {.id = "line.duplicate", .fields = twice},
     .look = acrossAndCapture(0),
     .expected = "0 1 2 2, 0 2 -1 -1 -1"},
    {.name = "DuplicateOfTheLastLine",
     .model = plate,
     .before = line(1, 4),
     .command = {.id = "line.duplicate", .fields = twice},
     .look = alongAndCapture(0, 1),
     .expected = "0 1 2 3 3, 0 -1 3 -1 -1"},
    {.name = "MoveOfTheLastSection",
     .model = plate,
     .before = section(1, 3),
     .command = {.id = "line.move", .fields = up},
     .look = across(0, &zVec<double>::z),
     .expected = "0 0 5"},
    {.name = "MoveOfTheFirstLine",
     .model = plate,
     .before = line(1, 1),
     .command = {.id = "line.move", .fields = up},
     .look = along(0, 2, &zVec<double>::z),
     .expected = "5 0 0 0"},
    {.name = "MoveOfTheLastLine",
     .model = plate,
     .before = line(1, 4),
     .command = {.id = "line.move", .fields = up},
     .look = along(0, 2, &zVec<double>::z),
     .expected = "0 0 0 5"},
    {.name = "PrescribeOfTheLastLine",
     .model = plate,
     .before = line(1, 4),
     .command = {.id = "line.prescribe", .fields = {{"useZ", "1"}, {"z", "5"}}},
     .look = along(0, 2, &zVec<double>::z),
     .expected = "0 0 0 5"},
    {.name = "SplitAtTheFirstSection",
     .model = plate,
     .before = section(1, 1),
     .command = {.id = "line.splitPatch"},
     .look = pointCounts,
     .expected = "4 4 4"},
    {.name = "SplitAtTheSectionBehindTheFirst",
     .model = plate,
     .before = section(1, 2),
     .command = {.id = "line.splitPatch"},
     .look = pointCounts,
     .expected = "4 4; 4 4"},
    {.name = "SplitAtTheLastSection",
     .model = plate,
     .before = section(1, 3),
     .command = {.id = "line.splitPatch"},
     .look = pointCounts,
     .expected = "4 4 4"},
    {.name = "SplitAtTheFirstLine",
     .model = plate,
     .before = line(1, 1),
     .command = {.id = "line.splitPatch"},
     .look = pointCounts,
     .expected = "4 4 4"},
    {.name = "SplitAtTheLineBeforeTheLast",
     .model = plate,
     .before = line(1, 3),
     .command = {.id = "line.splitPatch"},
     .look = pointCounts,
     .expected = "3 3 3; 2 2 2"},
    {.name = "SplitAtTheLastLine",
     .model = plate,
     .before = line(1, 4),
     .command = {.id = "line.splitPatch"},
     .look = pointCounts,
     .expected = "4 4 4"},
    {.name = "SplitOfTheLastPatch",
     .model = plates,
     .before = section(3, 2),
     .command = {.id = "line.splitPatch"},
     .look = pointCounts,
     .expected = "2 2; 3 3 3; 4 4; 4 4 4"},
    {.name = "RebreakOfTheLastSection",
     .model = plate,
     .before = section(1, 3),
     .command = {.id = "line.rebreak", .fields = {{"newCount", "7"}}},
     .look = [](DocumentState& doc) { return pointCounts(doc) + ", " + captured(doc); },
     .expected = "4 4 7, 0 2 -1 -1 -1"},
    {.name = "WeedingOfTwoSections",
     .model = {flatPatch(2, 4)},
     .before = line(1, 1),
     .command = {.id = "line.weeding"},
     .look = across(0),
     .expected = "1"},

    {.name = "ExtractOfTheLastPatch",
     .model = plates,
     .before = addPatch(3),
     .command = {.id = "block.extract"},
     .look = pointCounts,
     .expected = "4 4 4 4"},
    {.name = "DeleteOfTheFirstPatch",
     .model = plates,
     .before = addPatch(1),
     .command = {.id = "block.delete"},
     .look = pointCounts,
     .expected = "3 3 3; 4 4 4 4"},
    {.name = "DeleteOfFirstAndLastPatch",
     .model = plates,
     .before = addPatch(3) + addPatch(1),
     .command = {.id = "block.delete"},
     .look = pointCounts,
     .expected = "3 3 3"},
    {.name = "CopyAndPasteOfTheLastPatch",
     .model = plates,
     .before = addPatch(3) + Steps{{.id = "block.copy"}},
     .command = {.id = "block.paste"},
     .look = pointCounts,
     .expected = "2 2; 3 3 3; 4 4 4 4"},
    {.name = "CopyAndPasteOfTheFirstPatch",
     .model = plates,
     .before = addPatch(1) + Steps{{.id = "block.copy"}},
     .command = {.id = "block.paste"},
     .look = pointCounts,
     .expected = "3 3 3; 4 4 4 4; 2 2"},
    {.name = "MergeOntoTheLastPatch",
     .model = {flatPatch(2, 3), flatPatch(3, 3), flatPatch(4, 3)},
     .before = addPatch(3) + addPatch(1),
     .command = {.id = "block.merge", .fields = {{"kind", "1"}}},
     .look = pointCounts,
     .expected = "3 3 3; 3 3 3 3 3"},
    {.name = "InvertOfAllButTheLast",
     .model = plates,
     .before = addPatch(1) + addPatch(2),
     .command = {.id = "block.invert"},
     .look =
         [](DocumentState& doc) {
             return text({1.0 * doc.blockCount, 1.0 * doc.blockList[0]});
         },
     .expected = "1 2"},
    {.name = "SymmetricOfTheLastPatch",
     .model = plates,
     .before = addPatch(3),
     .command = {.id = "model.symmetric", .fields = {{"xPlane", "0"}}},
     .look = pointCounts,
     .expected = "2 2; 3 3 3; 4 4 4 4; 4 4 4 4"},

    {.name = "DeleteOfThePointBehindTheFirst",
     .model = plate,
     .before = point(1, 1, 2),
     .command = {.id = "point.delete"},
     .look = alongAndCapture(0, 0),
     .expected = "0 2 3, 0 -1 -1 0 1"},
    {.name = "DeleteOfThePointBeforeTheLast",
     .model = plate,
     .before = point(1, 3, 3),
     .command = {.id = "point.delete"},
     .look = alongAndCapture(0, 2),
     .expected = "0 1 3, 0 -1 -1 2 2"},
    {.name = "DeleteOfTheFirstPoint",
     .model = plate,
     .before = point(1, 3, 1),
     .command = {.id = "point.delete"},
     .look = along(0, 2),
     .expected = "0 1 2 3"},
    {.name = "DeleteOfTheLastPoint",
     .model = plate,
     .before = point(1, 3, 4),
     .command = {.id = "point.delete"},
     .look = along(0, 2),
     .expected = "0 1 2 3"},
    {.name = "DuplicateOfTheFirstPoint",
     .model = plate,
     .before = point(1, 1, 1),
     .command = {.id = "point.duplicate", .fields = twice},
     .look = alongAndCapture(0, 0),
     .expected = "0 0 1 2 3, 0 -1 -1 0 0"},
    {.name = "DuplicateOfTheLastPoint",
     .model = plate,
     .before = point(1, 3, 4),
     .command = {.id = "point.duplicate", .fields = twice},
     .look = alongAndCapture(0, 2),
     .expected = "0 1 2 3 3, 0 -1 -1 2 3"},
    // Of four points the second stays captured by its number, of the last two none does.
    {.name = "CutOfTheFirstPoint",
     .model = plate,
     .before = point(1, 2, 1),
     .command = {.id = "point.cut"},
     .look = alongAndCapture(0, 1),
     .expected = "1 2 3, 0 -1 -1 1 0"},
    {.name = "CutOfTheSecondPoint",
     .model = plate,
     .before = point(1, 2, 2),
     .command = {.id = "point.cut"},
     .look = alongAndCapture(0, 1),
     .expected = "0 2 3, 0 -1 -1 1 1"},
    {.name = "CutOfThePointBeforeTheLast",
     .model = plate,
     .before = point(1, 2, 3),
     .command = {.id = "point.cut"},
     .look = alongAndCapture(0, 1),
     .expected = "0 1 3, 0 -1 -1 0 0"},
    {.name = "CutOfTheLastPoint",
     .model = plate,
     .before = point(1, 2, 4),
     .command = {.id = "point.cut"},
     .look = alongAndCapture(0, 1),
     .expected = "0 1 2, 0 -1 -1 0 0"},
    {.name = "KnifeBehindTheLastPoint",
     .model = plate,
     .before = section(1, 2) + point(1, 2, 4),
     .command = {.id = "point.knifePart", .fields = {{"choice", "2"}}},
     .look = along(0, 1),
     .expected = "0 1 2 3"},
    {.name = "KnifeBeforeTheLastPoint",
     .model = plate,
     .before = section(1, 2) + point(1, 2, 4),
     .command = {.id = "point.knifePart", .fields = {{"choice", "1"}}},
     .look = along(0, 1),
     .expected = "3"},
    {.name = "ReverseWithTheFirstPoint",
     .model = plate,
     .before = section(1, 2) + point(1, 2, 1),
     .command = {.id = "point.reverseSection"},
     .look = alongAndCapture(0, 1),
     .expected = "3 2 1 0, 0 1 -1 1 3"},
    {.name = "EditOfTheLastPointOfTheLastPatch",
     .model = plates,
     .before = point(3, 4, 4),
     .command = {.id = "point.edit", .fields = {{"x", "9"}}},
     .look = along(2, 3),
     .expected = "0 1 2 9"},
    {.name = "FindOfTheLastPointOfTheLastPatch",
     .model = plates,
     .before = point(1, 1, 1),
     .command = {.id = "point.input", .fields = {{"K", "3"}, {"N", "4"}, {"M", "4"}}},
     .look = captured,
     .expected = "2 -1 -1 3 3"},
};

class CommandBoundary : public CommandRig, public testing::WithParamInterface<Boundary> {};

/// They look at nothing but the rule that turns them off.
const std::set<std::string> worksAlways = {
    "file.closeField", "file.appendCbc",     "block.paste", "block.extract",        "convert.toUnstructured",
    "convert.toApt",   "model.intersection", "model.knife", "model.lastFirstSwitch"};

class CommandThatIsOff : public CommandRig {
protected:
    /// Calls every command of the document that is off, with OK and Yes to all; the model must stay.
    void callAllThatAreOff(const std::function<void()>& holdModel) {
        holdModel();
        for (const Command& command : commandTable()) {
            if (!command.run || !isCommandOff(doc, command.id) || worksAlways.count(command.id) == 1) {
                continue;
            }
            const std::string before = Picture::ofModel(doc);
            const std::string kinds = kindsOf(doc);
            ui.answers = {true, true};
            ui.dialogs = {{}};
            ui.files.clear();
            call(command.id);
            EXPECT_EQ(Picture::ofModel(doc), before) << command.id;
            EXPECT_EQ(kindsOf(doc), kinds) << command.id;
            leaveRegimes();
            holdModel();
        }
    }
};

} // namespace

// ---- A full zBlock --------------------------------------------------------------------------------------------------

TEST_F(FullBlock, TakesNoOtherPatchByAdd) {
    selectAllBut(1);
    run({.id = "patch.addToBlock"});
    EXPECT_THAT(heard(), ElementsAre(isFull));
    EXPECT_FALSE(doc.capture->patchCaptureArmed);
    EXPECT_THAT(viewCalls(), IsEmpty());
}

TEST_F(FullBlock, TakesOneMoreBelowItsCapacity) {
    selectAllBut(2);
    run({.id = "patch.addToBlock", .click = Place{.patch = blockCapacity}});
    EXPECT_THAT(heard(), testing::Not(Contains(isFull)));
    EXPECT_EQ(doc.blockCount, blockCapacity);
    EXPECT_EQ(doc.blockList.back(), blockCapacity - 1);
}

TEST_F(FullBlock, IsMetByAClickOfCapture) {
    selectAllBut(1);
    call("patch.capture"); // it does not look at the capacity
    ASSERT_TRUE(doc.capture->patchCaptureArmed);
    forget();
    clickOn({.patch = blockCapacity + 1});
    EXPECT_THAT(heard(), ElementsAre(isFull));
    EXPECT_EQ(doc.blockCount, blockCapacity);
    EXPECT_FALSE(doc.inBlock(blockCapacity));
    EXPECT_TRUE(doc.capture->patchCaptured);
    EXPECT_EQ(watcher.drawn, Picture::ofAll(doc));
    // One that is in it already is no addition.
    call("patch.capture");
    forget();
    clickOn({.patch = 1});
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(FullBlock, IsEmptiedByNew) {
    selectAllBut(1);
    run({.id = "block.new"});
    EXPECT_THAT(heard(), testing::Not(Contains(isFull)));
    EXPECT_TRUE(doc.capture->patchCaptureArmed);
    EXPECT_EQ(doc.blockCount, 0);
    EXPECT_EQ(doc.blockList.back(), -1);
}

TEST_F(FullBlock, LosesItsFirstAndItsLastPatch) {
    selectAllBut(1);
    run({.id = "patch.removeFromBlock", .click = Place{.patch = 1}});
    EXPECT_EQ(doc.blockCount, blockCapacity - 1);
    EXPECT_EQ(doc.blockList.front(), 1);
    EXPECT_EQ(doc.blockList[blockCapacity - 2], blockCapacity - 1);
    EXPECT_EQ(doc.blockList.back(), -1);
    run({.id = "patch.removeFromBlock", .click = Place{.patch = blockCapacity}});
    EXPECT_EQ(doc.blockCount, blockCapacity - 2);
    EXPECT_EQ(doc.blockList[blockCapacity - 3], blockCapacity - 2);
    EXPECT_EQ(doc.blockList[blockCapacity - 2], -1);
}

TEST_F(FullBlock, IsDeletedToTheLastOfThem) {
    selectAllBut(1);
    run({.id = "block.delete"});
    EXPECT_EQ(doc.patches.size(), 1U);
    EXPECT_EQ(doc.blockList.back(), -1);
}

TEST_F(FullBlock, IsCopiedAndPastedWhole) {
    selectAllBut(1);
    run({.id = "block.copy"});
    run({.id = "block.paste"});
    EXPECT_EQ(countOf(doc.patches), blockCapacity + 1);
    EXPECT_EQ(doc.blockCount, blockCapacity);
    EXPECT_EQ(doc.blockList.front(), 1); // behind the one that was not in it
    EXPECT_EQ(doc.blockList.back(), blockCapacity);
}

TEST_F(FullBlock, HasItsNumbersLoweredWhenAPatchGoes) {
    PatchList lines(blockCapacity + 1, patchOf({2}));
    hold(lines);
    runAll(section(1, 1) + Steps{{.id = "line.exit"}});
    selectAllBut(1);
    runAll(section(1, 1));
    run({.id = "line.delete"});
    EXPECT_EQ(doc.blockCount, blockCapacity - 1);
    EXPECT_EQ(doc.blockList.front(), 0);
    EXPECT_EQ(doc.blockList[blockCapacity - 2], blockCapacity - 2);
    EXPECT_EQ(doc.blockList.back(), -1);
}

// ---- First and last -------------------------------------------------------------------------------------------------

TEST_P(CommandBoundary, IsAsTheRuleSays) {
    hold(GetParam().model);
    runAll(GetParam().before);
    run(GetParam().command);
    EXPECT_EQ(GetParam().look(doc), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(At, CommandBoundary, testing::ValuesIn(boundaries),
                         [](const testing::TestParamInfo<Boundary>& each) { return each.param.name; });

// ---- Nothing to work on ---------------------------------------------------------------------------------------------

TEST_F(CommandThatIsOff, LeavesAnEmptyDocument) {
    callAllThatAreOff([] {});
}

TEST_F(CommandThatIsOff, LeavesAGrid) {
    callAllThatAreOff([this] { holdGrid(); });
}

TEST_F(CommandThatIsOff, LeavesLines) {
    callAllThatAreOff([this] { holdLines(); });
}

TEST_F(CommandThatIsOff, LeavesTriangles) {
    callAllThatAreOff([this] { holdTriangles(); });
}

TEST_F(CommandRig, AModelWithoutZonesIsNotAskedForAPatch) {
    run({.id = "file.open", .files = {"some.grd"}});
    forget();
    run({.id = "patch.inputAndAdd", .fields = {{"number", "1"}}});
    EXPECT_THAT(heard(), IsEmpty());
    EXPECT_FALSE(doc.capture->patchCaptured);
}

TEST_F(CommandRig, IntersectionOfTrianglesOnlyRedraws) {
    holdTriangles();
    const std::string before = Picture::ofModel(doc);
    call("model.intersection");
    EXPECT_THAT(heard(), IsEmpty());
    EXPECT_THAT(viewCalls(), ElementsAre("redraw"));
    EXPECT_EQ(Picture::ofModel(doc), before);
}

} // namespace velmora::test
