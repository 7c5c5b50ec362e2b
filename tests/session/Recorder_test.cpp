#include "Recorder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CScaling.h"
#include "RecordingUi.h"
#include "messages.h"
#include "small_models.h"

namespace velmora::test {
namespace {

using testing::ElementsAre;

/// A recorder before a person, with one report that is open.
class RecorderTest : public testing::Test {
protected:
    RecordingUi person;
    Recorder recorder{person};
    CommandReport report;
    Recorder::Scope scope{recorder, report};
};

TEST_F(RecorderTest, HandsOnWhatIsSaidAndNotesIt) {
    recorder.showMessage(message::matchingImpossible);
    recorder.showStatus("ready");
    recorder.showTitle("wing.apt");
    recorder.addRecentFile("wing.apt");
    EXPECT_THAT(person.transcript,
                ElementsAre("message: Matching is impossible", "status: ready", "title: wing.apt", "recent: wing.apt"));
    ASSERT_EQ(report.messages.size(), 1U);
    EXPECT_EQ(report.messages[0].text, "Matching is impossible");
    EXPECT_EQ(report.messages[0].severity, Severity::Refused);
    EXPECT_THAT(report.statuses, ElementsAre("ready"));
    EXPECT_THAT(report.titles, ElementsAre("wing.apt"));
}

TEST_F(RecorderTest, GivesThePersonsAnswersAndNotesThem) {
    person.answers = {true, false};
    EXPECT_TRUE(recorder.ask("first"));
    EXPECT_FALSE(recorder.ask("second"));
    ASSERT_EQ(report.questions.size(), 2U);
    EXPECT_EQ(report.questions[0].text, "first");
    EXPECT_EQ(report.questions[0].answer, Answer::Yes);
    EXPECT_EQ(report.questions[1].answer, Answer::No);
}

TEST_F(RecorderTest, AWarningIsAMessageAndCalledOffTheEndOfTheWork) {
    EXPECT_TRUE(recorder.warn(message::digitsMovePoints(6, "1.5")));
    EXPECT_EQ(report.outcome(), Outcome::Ok);
    EXPECT_FALSE(recorder.gaveUp());
    person.callsOff = true;
    EXPECT_FALSE(recorder.warn(message::digitsMovePoints(6, "1.5")));
    EXPECT_EQ(report.messages.size(), 2U);
    EXPECT_TRUE(report.questions.empty()); // a script that does it again is not asked
    EXPECT_EQ(report.outcome(), Outcome::Cancelled);
    EXPECT_TRUE(recorder.gaveUp());
}

TEST_F(RecorderTest, NotesTheFieldsOfADialogAsTheyCameUpAndAsTheyWereTaken) {
    CScaling values;
    values.xCenter = 1.0;
    values.scale = 2.0;
    DialogForm form = describe(values);
    person.dialogs.push_back({{"scale", "3"}});
    EXPECT_TRUE(recorder.showDialog(form));
    EXPECT_EQ(values.scale, 3.0) << "the person works in the form itself";
    ASSERT_EQ(report.dialogs.size(), 1U);
    const CommandReport::Dialog& dialog = report.dialogs[0];
    EXPECT_EQ(dialog.name, "CScaling");
    EXPECT_TRUE(dialog.ok);
    ASSERT_EQ(dialog.fields.size(), 4U);
    EXPECT_EQ(dialog.fields[0].key, "xCenter");
    EXPECT_EQ(dialog.fields[0].taken, CommandReport::Field::Value(1.0));
    EXPECT_EQ(dialog.fields[3].key, "scale");
    EXPECT_EQ(dialog.fields[3].shown, CommandReport::Field::Value(2.0));
    EXPECT_EQ(dialog.fields[3].taken, CommandReport::Field::Value(3.0));
}

TEST_F(RecorderTest, NotesADialogThatWasCancelledAndThePointTable) {
    CScaling values;
    DialogForm form = describe(values);
    EXPECT_FALSE(recorder.showDialog(form));
    PatchList patches;
    CRegularInput table(patches);
    person.onRegularInput = [](CRegularInput&) { return true; };
    EXPECT_TRUE(recorder.showRegularInput(table));
    ASSERT_EQ(report.dialogs.size(), 2U);
    EXPECT_FALSE(report.dialogs[0].ok);
    EXPECT_EQ(report.dialogs[1].name, "CRegularInput");
    EXPECT_TRUE(report.dialogs[1].ok);
}

TEST_F(RecorderTest, NotesWhatAChooserGave) {
    person.files = {{"a.apt", "b.apt"}};
    FileRequest request;
    request.mode = ChooserMode::Append;
    request.command = "file.append";
    EXPECT_THAT(recorder.chooseFiles(request), ElementsAre("a.apt", "b.apt"));
    EXPECT_TRUE(recorder.chooseFiles(request).empty());
    ASSERT_EQ(report.choosers.size(), 2U);
    EXPECT_EQ(report.choosers[0].command, "file.append");
    EXPECT_EQ(report.choosers[0].mode, ChooserMode::Append);
    EXPECT_THAT(report.choosers[0].paths, ElementsAre("a.apt", "b.apt"));
    EXPECT_TRUE(report.choosers[1].paths.empty());
}

TEST_F(RecorderTest, NotesFilesThatWereReadAndWritten) {
    FileRead read;
    read.path = "in.stl";
    recorder.tellFileRead(read);
    FileWritten written;
    written.path = "out.stl";
    recorder.tellFileWritten(written);
    ASSERT_EQ(report.filesRead.size(), 1U);
    EXPECT_EQ(report.filesRead[0].path, "in.stl");
    ASSERT_EQ(report.filesWritten.size(), 1U);
    EXPECT_EQ(report.filesWritten[0].path, "out.stl");
}

TEST_F(RecorderTest, HandsOnTheWaitCursorAndTheProgress) {
    recorder.setBusy(true);
    recorder.showProgress(0.5);
    EXPECT_EQ(person.busyDepth, 1);
    EXPECT_THAT(person.progress, ElementsAre(0.5));
}

TEST_F(RecorderTest, WorkWithinWorkIsToldToBoth) {
    recorder.showStatus("before");
    CommandReport inner;
    {
        const Recorder::Scope innerScope(recorder, inner);
        recorder.showStatus("within");
    }
    recorder.showStatus("behind");
    EXPECT_THAT(inner.statuses, ElementsAre("within"));
    EXPECT_THAT(report.statuses, ElementsAre("before", "within", "behind"));
}

TEST(Recorder, HandsOnWhatHappensOutsideOfAnyWork) {
    RecordingUi person;
    Recorder recorder(person);
    recorder.showMessage(message::matchingImpossible);
    person.answers = {true};
    EXPECT_TRUE(recorder.ask("sure"));
    EXPECT_EQ(person.transcript.size(), 2U);
}

} // namespace
} // namespace velmora::test
