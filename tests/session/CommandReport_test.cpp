#include "CommandReport.h"

#include <gtest/gtest.h>

#include "messages.h"

namespace velmora {
namespace {

CommandReport told(const std::vector<Severity>& severities) {
    CommandReport report;
    for (const Severity severity : severities) {
        report.messages.emplace_back(severity, "text");
    }
    return report;
}

CommandReport readOf(bool complete, std::int64_t facetsKept) {
    CommandReport report;
    FileRead read;
    read.complete = complete;
    read.found = {{"facets", 7}};
    read.kept = {{"facets", facetsKept}};
    report.filesRead.push_back(read);
    return report;
}

TEST(Outcome, OfWorkThatSaidNothingIsOk) {
    EXPECT_EQ(CommandReport().outcome(), Outcome::Ok);
}

TEST(Outcome, AChooserADialogOrAQuestionMayBeCancelled) {
    CommandReport chooser;
    chooser.choosers.push_back({"file.open", ChooserMode::Open, {}});
    EXPECT_EQ(chooser.outcome(), Outcome::Cancelled);
    CommandReport dialog;
    dialog.dialogs.push_back({"CRebreak", false, {}});
    EXPECT_EQ(dialog.outcome(), Outcome::Cancelled);
    CommandReport question;
    question.questions.push_back({message::removeGeometry, Answer::No});
    EXPECT_EQ(question.outcome(), Outcome::Cancelled);
    CommandReport stopped;
    stopped.stopped = true;
    EXPECT_EQ(stopped.outcome(), Outcome::Cancelled);
}

TEST(Outcome, WhatWasAnsweredYesIsOk) {
    CommandReport report;
    report.choosers.push_back({"file.open", ChooserMode::Open, {"wing.apt"}});
    report.dialogs.push_back({"CRebreak", true, {}});
    report.questions.push_back({message::removeGeometry, Answer::Yes});
    EXPECT_EQ(report.outcome(), Outcome::Ok);
}

TEST(Outcome, LeavingWithoutSavingCancelsNothing) {
    CommandReport report;
    report.questions.push_back({message::saveBeforeExit, Answer::No});
    EXPECT_EQ(report.outcome(), Outcome::Ok);
    report.questions[0].answer = Answer::None;
    report.stayed = true;
    EXPECT_EQ(report.outcome(), Outcome::Cancelled) << "closed without an answer: the program stays";
}

TEST(Outcome, AFileThatIsReadInPartIsPartial) {
    EXPECT_EQ(readOf(true, 7).outcome(), Outcome::Ok);
    EXPECT_EQ(readOf(false, 6).outcome(), Outcome::Partial);
}

TEST(Outcome, AFileThatGivesNothingIsAFailureAnEmptyOneToo) {
    EXPECT_EQ(readOf(false, 0).outcome(), Outcome::Failed);
    EXPECT_EQ(readOf(true, 0).outcome(), Outcome::Failed);
    CommandReport names = readOf(true, 0);
    names.filesRead[0].kept.emplace_back("variables", 3);
    EXPECT_EQ(names.outcome(), Outcome::Failed) << "names of variables are no geometry";
}

TEST(Outcome, OfAMessageFollowsFromItsSeverity) {
    EXPECT_EQ(told({Severity::Info}).outcome(), Outcome::Ok);
    EXPECT_EQ(told({Severity::Warning}).outcome(), Outcome::Ok);
    EXPECT_EQ(told({Severity::Refused}).outcome(), Outcome::Refused);
    EXPECT_EQ(told({Severity::NoModel}).outcome(), Outcome::Failed);
    EXPECT_EQ(told({Severity::NotRead}).outcome(), Outcome::Failed);
    EXPECT_EQ(told({Severity::NotWritten}).outcome(), Outcome::Failed);
}

TEST(Outcome, AFileThatWasRefusedForItsTypeHasNotFailed) {
    EXPECT_EQ(told({Severity::Refused, Severity::NoModel}).outcome(), Outcome::Refused);
    EXPECT_EQ(told({Severity::NotRead, Severity::NoModel}).outcome(), Outcome::Failed);
    EXPECT_EQ(told({Severity::Warning, Severity::NoModel}).outcome(), Outcome::Failed);
}

TEST(Outcome, TheWorstCountsWhereverItStands) {
    EXPECT_EQ(told({Severity::Refused, Severity::NotWritten, Severity::Info}).outcome(), Outcome::Failed);
    EXPECT_EQ(told({Severity::NotRead, Severity::Refused}).outcome(), Outcome::Failed);
    CommandReport report = readOf(false, 6);
    report.choosers.push_back({"file.append", ChooserMode::Append, {}});
    EXPECT_EQ(report.outcome(), Outcome::Partial);
    report.messages.emplace_back(Severity::Refused, "text");
    EXPECT_EQ(report.outcome(), Outcome::Refused);
}

TEST(Outcome, StayingForASaveThatWasDeclinedIsCancelledForAnyOtherItFailed) {
    CommandReport report;
    report.stayed = true;
    EXPECT_EQ(report.outcome(), Outcome::Failed);
    report.questions.push_back({message::holdsMorePoints, Answer::No});
    EXPECT_EQ(report.outcome(), Outcome::Cancelled);
    report.messages.push_back(message::cannotSave);
    EXPECT_EQ(report.outcome(), Outcome::Failed);
}

TEST(Outcome, WhatFailedToBeWrittenIsKnownFromWhatFailedToBeRead) {
    EXPECT_TRUE(told({Severity::NotWritten}).writeFailed());
    EXPECT_FALSE(told({Severity::NotRead, Severity::NoModel, Severity::Refused}).writeFailed());
    CommandReport stayed;
    stayed.stayed = true;
    EXPECT_TRUE(stayed.writeFailed());
}

TEST(Outcome, HasANameForScripts) {
    EXPECT_STREQ(nameOf(Outcome::Ok), "ok");
    EXPECT_STREQ(nameOf(Outcome::Cancelled), "cancelled");
    EXPECT_STREQ(nameOf(Outcome::Partial), "partial");
    EXPECT_STREQ(nameOf(Outcome::Refused), "refused");
    EXPECT_STREQ(nameOf(Outcome::Failed), "failed");
}

TEST(Severities, AreToldAsInfoWarningOrError) {
    EXPECT_STREQ(nameOf(Severity::Info), "info");
    EXPECT_STREQ(nameOf(Severity::Warning), "warning");
    for (const Severity severity : {Severity::Refused, Severity::NoModel, Severity::NotRead, Severity::NotWritten}) {
        EXPECT_STREQ(nameOf(severity), "error");
    }
}

} // namespace
} // namespace velmora
