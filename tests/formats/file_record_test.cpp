#include "FileRecord.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FailingReads.h"
#include "apt.h"
#include "field_file.h"
#include "format_test_tools.h"
#include "point_files.h"
#include "skl.h"
#include "temporary_folder.h"

namespace velmora {
namespace {

using testing::AnyOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string fieldHead = "TITLE = \"t\"\nVARIABLES = \"x\", \"y\", \"z\", \"p\"\n";

class RecordTest : public testing::Test {
protected:
    FileRead apt(const std::string& text) {
        patches_.clear();
        return readApt(test::writeFileText(folder_ / "a.apt", text), patches_).record;
    }
    FileRead skl(const std::string& text) {
        patches_.clear();
        return readSkl(test::writeFileText(folder_ / "a.skl", text), patches_).record;
    }
    FileRead points(const std::string& text) {
        return readPointFile(test::writeFileText(folder_ / "a.ext", text)).record;
    }
    FileRead sft(const std::string& text) { return readSft(test::writeFileText(folder_ / "a.sft", text)).record; }
    FileRead field(const std::string& text) {
        return readFieldFile(test::writeFileText(folder_ / "a.dat", text)).record;
    }

    test::TemporaryFolder folder_;
    PatchList patches_;
};

/// Nothing was lost and nothing altered.
testing::AssertionResult nothingLost(const FileRead& record) {
    if (record.complete && record.lossless && !record.thinned && record.reasons.empty() && record.changed.empty() &&
        record.found == record.kept) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << testing::PrintToString(record.reasons)
                                       << testing::PrintToString(record.changed);
}

TEST(FileRead, OfWhatWasAlteredOnlyThatIsALossWhichASaveWouldNotBringBack) {
    FileRead record;
    record.changed.emplace_back("Degenerate triangles: 3");
    EXPECT_THAT(record.losses(), IsEmpty());
    record.alters("Points merged: 2");
    EXPECT_THAT(record.changed, ElementsAre("Degenerate triangles: 3", "Points merged: 2"));
    EXPECT_FALSE(record.lossless);
    EXPECT_THAT(record.losses(), ElementsAre("A save would not bring back: Points merged: 2"));
    record.losesDetail("Colours are not kept");
    EXPECT_THAT(record.losses(), ElementsAre("Colours are not kept"));
}

TEST_F(RecordTest, AWholeFileOfEachKindLosesNothing) {
    const FileRead grid = apt("2 3\n0 0 0\n1 0 0\n2 0 0\n0 1 0\n1 1 0\n2 1 0\n1 1\n5 5 5\n");
    EXPECT_TRUE(nothingLost(grid));
    EXPECT_EQ(grid.kept, (Counts{{"patches", 2}, {"points", 7}}));
    EXPECT_EQ(grid.path, folder_ / "a.apt");
    EXPECT_EQ(grid.bytes, 50U);
    EXPECT_EQ(grid.format, "apt");
    const FileRead lines = skl("2\n1\n0 0 0\n2\n1 1 1\n2 2 2\n");
    EXPECT_TRUE(nothingLost(lines));
    EXPECT_EQ(lines.kept, (Counts{{"patches", 1}, {"sections", 2}, {"points", 3}}));
    EXPECT_EQ(lines.format, "skl");
    const FileRead buffer = points("1 2 3\n4 5 6");
    EXPECT_TRUE(nothingLost(buffer));
    EXPECT_EQ(buffer.kept, (Counts{{"points", 2}}));
    const FileRead shifts = sft("1\n2\n3\n4\n5\n6\n7\n1 2 3 4 5 6 0\n");
    EXPECT_TRUE(nothingLost(shifts));
    EXPECT_EQ(shifts.kept, (Counts{{"points", 1}}));
    const FileRead flow = field(fieldHead + "ZONE I=2,J=1\n0 0 0 1\n1 0 0 2\n");
    EXPECT_TRUE(nothingLost(flow));
    EXPECT_EQ(flow.kept, (Counts{{"zones", 1}, {"points", 2}, {"variables", 4}}));
    EXPECT_EQ(flow.format, "field");
}

TEST_F(RecordTest, AnEmptyFileHoldsNothingAndLosesNothing) {
    for (const FileRead& record : {apt(""), skl(""), points(""), sft(""), field("")}) {
        EXPECT_TRUE(nothingLost(record)) << record.format;
        EXPECT_FALSE(record.keptAnything());
    }
}

TEST_F(RecordTest, WhatAWriterMakesOfEmptyPatchesLosesNothing) {
    const PatchList bare{{}, Patch(2), test::numberedPatch(2, 2)};
    ASSERT_TRUE(writeApt(folder_ / "b.apt", bare, 16));
    ASSERT_TRUE(writeSkl(folder_ / "b.skl", bare, 16));
    EXPECT_TRUE(nothingLost(readApt(folder_ / "b.apt", patches_).record));
    EXPECT_TRUE(nothingLost(readSkl(folder_ / "b.skl", patches_).record));
}

TEST_F(RecordTest, HeadersThatGiveNoPointsAreToldWithTheirLine) {
    const FileRead negative = apt("1 1\n0 0 0\n-1 5\n");
    EXPECT_THAT(negative.reasons, ElementsAre("Patch 2: the header -1 5 in line 3 gives no points"));
    EXPECT_THAT(apt("0 5\n").reasons, ElementsAre("Patch 1: the header 0 5 in line 1 gives no points"));
    EXPECT_THAT(skl("1\n1\n0 0 0\n-2\n").reasons,
                ElementsAre("Patch 2, line 4: the count -2 gives a patch without points"));
    EXPECT_THAT(skl("2\n-3\n1\n0 0 0\n").reasons,
                ElementsAre("Patch 1, line 2: the count -3 gives a section without points"));
}

TEST_F(RecordTest, WhatACountBelowZeroStandsForIsNotInTheModelAndACountOfZeroStandsForNothing) {
    for (const FileRead& wrong :
         {apt("1 1\n0 0 0\n-1 5\n"), apt("5 -1\n"), skl("1\n1\n0 0 0\n-2\n"), skl("2\n-3\n1\n0 0 0\n")}) {
        EXPECT_FALSE(wrong.complete) << testing::PrintToString(wrong.reasons);
        EXPECT_FALSE(wrong.lossless);
    }
    const FileRead empty = apt("1 1\n0 0 0\n0 5\n");
    EXPECT_TRUE(empty.complete);
    EXPECT_FALSE(empty.lossless);
    EXPECT_TRUE(nothingLost(skl("2\n0\n1\n0 0 0\n0\n")));
}

TEST_F(RecordTest, WhereTheRegularEndComesBeforeTheFilesTheRestIsToldWithItsLine) {
    const FileRead grid = apt("1 1\n0 0 0\n2/-3\n1 1 1\n");
    EXPECT_THAT(grid.reasons, ElementsAre("No header stands in line 3: what follows there is not read"));
    EXPECT_FALSE(grid.complete);
    EXPECT_EQ(countOf(grid.kept, "patches"), 1);
    EXPECT_THAT(skl("1\n1\n0 0 0\nend\n").reasons,
                ElementsAre("No number of sections stands in line 4: what follows there is not read"));
    EXPECT_THAT(points("1 2 3\nx 5 6\n7 8 9\n").reasons,
                ElementsAre("No number stands in line 2: what follows there is not read"));
    EXPECT_THAT(field(fieldHead + "ZONE I=1,J=1\n0 0 0 1\n\nZONE I=1,J=1\n0 0 0 1\n").reasons,
                ElementsAre(HasSubstr("No header of a zone stands before line 6")));
}

TEST_F(RecordTest, MarkersWithoutAPointBehindTheirTextAreToldSo) {
    EXPECT_THAT(sft("1\n2\n3\n4\n5\n6\n7\n").reasons, ElementsAre("No points stand in the file"));
}

TEST_F(RecordTest, WhatStandsBehindTheLastNumberOfAFieldZoneIsTold) {
    for (const char* const rest : {"D+05", "x1p3", ",5", " 7"}) {
        const FileRead record =
            field(fieldHead + "ZONE I=2,J=1\n0 0 0 1\n1 0 0 2" + rest + "\nZONE I=1,J=1\n0 0 0 1\n");
        EXPECT_FALSE(record.complete) << rest;
        EXPECT_EQ(countOf(record.kept, "zones"), 2) << rest;
        EXPECT_THAT(record.reasons, ElementsAre("Zone 1: what stands behind its last number in line 5 is not read"))
            << rest;
    }
    EXPECT_TRUE(nothingLost(field(fieldHead + "ZONE I=1,J=1\n0 0 0 1 \t\r\nZONE I=1,J=1\n0 0 0 1")));
}

TEST_F(RecordTest, FortranNumbersThatAreTakenForTwoAreTold) {
    const FileRead record = apt("1 2\n1.5-104 0\n1 2 3\n");
    EXPECT_FALSE(record.complete);
    EXPECT_THAT(record.reasons,
                testing::Contains("Numbers that run into the next one and were taken for two: 1, the first in line 2"));
    EXPECT_FALSE(points("1.5-104 2\n").complete);
    EXPECT_FALSE(skl("1\n1\n1.5-104 2\n").complete);
}

TEST_F(RecordTest, ABodyThatEndsEarlyIsToldWithItsLineAndNothingIsKept) {
    const FileRead grid = apt("1 1\n0 0 0\n2 2\n1 1 1\n2 2 2\n");
    EXPECT_EQ(grid.found, (Counts{{"patches", 2}, {"points", 3}}));
    EXPECT_EQ(grid.kept, (Counts{{"patches", 0}, {"points", 0}}));
    EXPECT_THAT(grid.reasons, ElementsAre("Patch 2: its header tells of 4 lines of points, which end in line 6",
                                          "An .apt file that ends early is not read at all"));
    const FileRead lines = skl("1\n1\n0 0 0\n1\n2\n1 1 1\n");
    EXPECT_EQ(lines.found, (Counts{{"patches", 2}, {"sections", 2}, {"points", 2}}));
    EXPECT_EQ(lines.kept, (Counts{{"patches", 1}, {"sections", 1}, {"points", 1}}));
    EXPECT_FALSE(lines.complete);
    const FileRead flow = field(fieldHead + "ZONE I=2,J=1\n0 0 0 1\n1 0 x 2\n");
    EXPECT_EQ(countOf(flow.found, "points"), 0);
    EXPECT_THAT(flow.reasons, ElementsAre("Zone 1: no point can be read in line 5"));
}

TEST_F(RecordTest, APointThatCannotBeReadIsToldWithItsLine) {
    const FileRead record = apt("1 1\n0 0 0\n2 1\n1 1 1\n2 two 2\n");
    EXPECT_THAT(record.reasons, ElementsAre("Patch 2: no point can be read in line 5"));
    EXPECT_EQ(countOf(record.kept, "patches"), 1);
    EXPECT_EQ(countOf(record.found, "points"), 3);
}

TEST_F(RecordTest, AnIncompleteLastPointIsTold) {
    const FileRead record = points("1 2 3\n4 5\n");
    EXPECT_EQ(record.found, (Counts{{"points", 2}}));
    EXPECT_EQ(record.kept, (Counts{{"points", 1}}));
    EXPECT_THAT(record.reasons, ElementsAre("The last point in line 3 has 2 of its 3 numbers"));
    EXPECT_THAT(sft("1\n2\n3\n4\n5\n6\n7\n1 2 3 4").reasons,
                ElementsAre("The last point in line 8 has 4 of its 7 numbers"));
    EXPECT_THAT(sft("1\n2\n").reasons,
                ElementsAre("The file ends within the seven lines of text that come before the points"));
}

TEST_F(RecordTest, AWordAtTheEndThatIsNoNumberIsToldThoughNothingStandsBehindIt) {
    for (const char* const word : {"1e999", "x", "nan", "-"}) {
        const FileRead record = points(std::string("1 2 3\n") + word);
        EXPECT_FALSE(record.complete) << word;
        EXPECT_THAT(record.reasons, ElementsAre("No number stands in line 2: what follows there is not read")) << word;
        EXPECT_EQ(countOf(record.kept, "points"), 1) << word;
        EXPECT_FALSE(sft(std::string("1\n2\n3\n4\n5\n6\n7\n1 2 3 4 5 6 0\n") + word).complete) << word;
    }
    EXPECT_TRUE(points("1 2 3\n \n\t").complete) << "blanks are none";
}

TEST_F(RecordTest, AThinnedModelIsCompleteAndNotLossless) {
    const FileRead record = apt(test::numberedApt(449, 449));
    EXPECT_EQ(countOf(record.found, "points"), 201601);
    EXPECT_EQ(countOf(record.kept, "points"), 225 * 225);
    EXPECT_TRUE(record.complete);
    EXPECT_FALSE(record.lossless);
    EXPECT_TRUE(record.thinned);
    EXPECT_THAT(record.changed, ElementsAre("Points in the file: 201601, kept: 50625 (the model is thinned)"));
}

TEST_F(RecordTest, OfManyReasonsTheFirstAreTold) {
    std::string text;
    for (int i = 0; i < 100; ++i) {
        text += "0 5\n";
    }
    const FileRead record = apt(text);
    ASSERT_EQ(record.reasons.size(), 21U);
    EXPECT_EQ(record.reasons[19], "Patch 20: the header 0 5 in line 20 gives no points");
    EXPECT_EQ(record.reasons[20], "and more of the kind");
}

TEST_F(RecordTest, AReadErrorIsAnErrorInEveryFormatAndNotTheEndOfTheFile) {
    // Each file ends well after so many bytes; the disk breaks there.
    const std::string grid = "1 1\n0 0 0\n";
    const std::string lines = "1\n1\n0 0 0\n";
    const std::string flow = fieldHead + "ZONE I=1,J=1\n0 0 0 1\n";
    const auto broken = [](const std::string& text) {
        return test::FailingReads(static_cast<std::int64_t>(text.size()));
    };
    const auto path = test::writeFileText(folder_ / "a", grid + grid);
    {
        const test::FailingReads disk = broken(grid);
        const AptReadResult result = readApt(path, patches_);
        ASSERT_FALSE(result.faults.empty());
        EXPECT_EQ(aptMessage(result.faults[0]), "The file could not be read to its end: the system reports an error");
        EXPECT_FALSE(result.endReached);
        EXPECT_FALSE(result.record.complete);
        EXPECT_THAT(result.record.reasons, ElementsAre(HasSubstr("The system could not read the file behind line")));
    }
    test::writeFileText(path, lines + lines);
    {
        const test::FailingReads disk = broken(lines);
        const SklReadResult result = readSkl(path, patches_);
        ASSERT_EQ(result.faults.size(), 1U);
        EXPECT_EQ(result.faults[0].kind, FormatFaultKind::Unread);
        EXPECT_FALSE(result.endReached);
        EXPECT_FALSE(result.record.complete);
    }
    test::writeFileText(path, flow + flow);
    {
        const test::FailingReads disk = broken(flow);
        const FieldReadResult result = readFieldFile(path);
        EXPECT_FALSE(result.loaded);
        EXPECT_THAT(result.patches, IsEmpty());
        ASSERT_EQ(result.faults.size(), 1U);
        EXPECT_EQ(result.faults[0].kind, FormatFaultKind::Unread);
    }
    test::writeFileText(path, "1 2 3\n4 5 6\n");
    {
        const test::FailingReads disk(6);
        const PointFileResult result = readPointFile(path);
        EXPECT_TRUE(result.readFailed);
        EXPECT_EQ(result.points.size(), 1U);
        EXPECT_FALSE(result.record.complete);
    }
    test::writeFileText(path, "1\n2\n3\n4\n5\n6\n7\n1 2 3 4 5 6 0\n1 2 3 4 5 6 0\n");
    {
        const test::FailingReads disk(28);
        EXPECT_TRUE(readSft(path).readFailed);
    }
    EXPECT_FALSE(readSft(path).readFailed);
}

TEST_F(RecordTest, HeadersOfLinesThatNoDataPaysForHaveALimit) {
    std::string text;
    constexpr int most = 100'000;
    text.reserve(2 * most + 100);
    for (int i = 0; i < most; ++i) {
        text += "0\n";
    }
    EXPECT_TRUE(skl(text).complete);
    const FileRead more = skl(text + "0\n");
    EXPECT_FALSE(more.complete);
    EXPECT_EQ(countOf(more.kept, "patches"), most);
    EXPECT_FALSE(skl("100001\n" + text + "0\n").complete);
}

} // namespace
} // namespace velmora
