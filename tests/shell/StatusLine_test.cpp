#include "StatusLine.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QProgressBar>
#include <cmath>
#include <limits>

#include "Person.h"

namespace velmora::test {
namespace {

QString message(const StatusLine& line) {
    return line.findChild<QLabel*>(QStringLiteral("message"))->text();
}

TEST(StatusLine, AHintHidesTheMessageUntilItGoes) {
    StatusLine line;
    line.showText(QStringLiteral("prompt"));
    EXPECT_EQ(message(line), QStringLiteral("prompt"));
    line.showHint(QStringLiteral("hint"));
    EXPECT_EQ(message(line), QStringLiteral("hint"));
    EXPECT_EQ(line.text(), QStringLiteral("prompt")) << "the message is kept meanwhile";
    line.showHint({});
    EXPECT_EQ(message(line), QStringLiteral("prompt"));
    line.showText({});
    EXPECT_EQ(message(line), QString());
}

TEST(StatusLine, WhatTheMousePointsAtStandsBehindTheModeAndLeavesTheMessage) {
    StatusLine line;
    const auto mode = [&line] { return line.findChild<QLabel*>(QStringLiteral("mode"))->text(); };
    line.showText(QStringLiteral("prompt"));
    line.showMode(QStringLiteral("Section"));
    line.showPointed(QStringLiteral("Patch K=1"));
    EXPECT_EQ(mode(), QStringLiteral("Section: Patch K=1"));
    EXPECT_EQ(message(line), QStringLiteral("prompt"));
    line.showMode(QStringLiteral("Line"));
    EXPECT_EQ(mode(), QStringLiteral("Line: Patch K=1")) << "until it is told that nothing is there";
    line.showPointed({});
    EXPECT_EQ(mode(), QStringLiteral("Line"));
}

TEST(StatusLine, ShowsTextsAsTheyAre) {
    const StatusLine line;
    EXPECT_EQ(line.findChild<QLabel*>(QStringLiteral("message"))->textFormat(), Qt::PlainText);
}

TEST(StatusLine, ALongMessageDoesNotWidenTheFrame) {
    StatusLine line;
    const int before = line.minimumSizeHint().width();
    line.showText(QString(2000, QLatin1Char('m')));
    EXPECT_EQ(line.minimumSizeHint().width(), before);
}

TEST(StatusLine, TheIndicatorsKeepTheirPlaceWhileTheyAreOff) {
    StatusLine line;
    line.refreshLocks();
    for (const char* name : {"CAPS", "NUM", "SCRL"}) {
        const auto* indicator = line.findChild<QLabel*>(QString::fromLatin1(name));
        ASSERT_NE(indicator, nullptr) << name;
        EXPECT_EQ(indicator->text(), QString()) << "no keys are locked where there is no keyboard";
        EXPECT_GE(indicator->minimumWidth(), indicator->fontMetrics().horizontalAdvance(QString::fromLatin1(name)));
        EXPECT_FALSE(indicator->accessibleName().isEmpty());
    }
}

TEST(StatusLine, TheBarShowsWholeHundredths) {
    struct Case {
        double fraction;
        int shown;
    };
    const Case cases[] = {
        {.fraction = 0.0, .shown = 0},          {.fraction = 0.009, .shown = 0},
        {.fraction = 0.5, .shown = 50},         {.fraction = 0.999, .shown = 99},
        {.fraction = 1.0, .shown = 100},        {.fraction = 7.5, .shown = 100},
        {.fraction = -3.0, .shown = 0},         {.fraction = std::numeric_limits<double>::infinity(), .shown = 100},
        {.fraction = std::nan(""), .shown = 0},
    };
    for (const Case& c : cases) {
        StatusLine line;
        auto* bar = line.findChild<QProgressBar*>(QStringLiteral("progress"));
        EXPECT_TRUE(bar->isHidden());
        line.showProgress(c.fraction);
        EXPECT_FALSE(bar->isHidden());
        EXPECT_EQ(bar->value(), c.shown) << c.fraction;
        EXPECT_EQ(bar->maximum(), 100);
        line.hideProgress();
        EXPECT_TRUE(bar->isHidden());
    }
}

TEST(StatusLine, TheBarFollowsAndComesBackForTheNextPieceOfWork) {
    StatusLine line;
    line.show();
    auto* bar = line.findChild<QProgressBar*>(QStringLiteral("progress"));
    line.showProgress(0.2);
    line.showProgress(0.6);
    EXPECT_EQ(bar->value(), 60);
    line.hideProgress();
    line.showProgress(0.6);
    EXPECT_TRUE(bar->isVisible());
    EXPECT_GT(bar->geometry().width(), 0) << "it has its place at once";
    EXPECT_LE(bar->geometry().right(), line.width());
}

} // namespace
} // namespace velmora::test
